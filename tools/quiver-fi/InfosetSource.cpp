#include "tools/quiver-fi/InfosetSource.h"

#include "tools/quiver-fi/Inspector.h"
#include "tools/quiver-fi/Text.h"
#include "tools/quiver-fi/XmlNames.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <stdexcept>

namespace quiver_fi
{

namespace
{

/// Namespaces up to this length do not count: they cost no more than the element whose name has them.
constexpr std::size_t s_nShortNamespace = 256;

/// The bits of a character in a restricted alphabet (X.891, C.19): one value more than there are characters must fit.
std::size_t WidthOf(std::size_t nCharacters)
{
    std::size_t nWidth = 2;
    while (std::size_t{1} << nWidth <= nCharacters)
        ++nWidth;
    return nWidth;
}

class CInfosetSource : public IInfosetHandler
{
public:
    explicit CInfosetSource(CDocument& document)
        : m_document(document)
    {
    }

    void Begin(const CTables& tables) override { m_pTables = &tables; }
    void OnExternalVocabulary(const SEncodedText& uri) override;
    void OnDeclaration(std::uint32_t nPrefix, std::uint32_t nNamespace) override;
    void OnElement(const SName& name) override;
    void OnAttribute(const SName& name, const SValue& value) override;
    void OnText(const SValue& value) override;
    void OnEntityReference() override;
    void OnEndOfElement() override { m_document.EndElement(); }
    void OnEndOfDocument(std::size_t nBehind) override;

private:
    using Ranges = std::vector<std::optional<CDocument::SRange>>;
    using TextIds = std::vector<std::optional<CDocument::TextId>>;

    CDocument::TextId FindText(std::uint32_t nPlace, const CTable& table, TextIds& ids);
    CDocument::NameId FindName(const SName& name);
    void Count(std::uint64_t nOctets);
    CDocument::SRange FindValue(const SValue& value, Ranges& ranges);
    CDocument::SRange Store(const SEncodedText& text);
    std::string Decode(const SEncodedText& text) const;
    void CheckAlphabet(const SEncodedText& text, std::size_t nUnits) const;

    CDocument& m_document;
    const CTables* m_pTables = nullptr;
    // What has been made of the entries of tables, by their places.
    std::map<std::array<std::uint32_t, 3>, CDocument::NameId> m_names;
    TextIds m_prefixes;
    TextIds m_namespaces;
    Ranges m_attributeValues;
    Ranges m_chunks;
    /// What names and repeated values come to, wherever they stand.
    std::uint64_t m_nOctets = 0;
    bool m_bDefaultDeclared = false;
    bool m_bRootSeen = false;
};

/// Checks what will stand in XML text.
void CheckText(std::wstring_view svUnits)
{
    const std::size_t nPosition = FindUnprintable(svUnits);
    if (nPosition != std::wstring_view::npos)
    {
        throw std::runtime_error("the document holds the character " +
                                 std::to_string(static_cast<unsigned long>(svUnits[nPosition])) +
                                 ", which XML text cannot hold");
    }
}

void CInfosetSource::OnExternalVocabulary(const SEncodedText& uri)
{
    throw std::runtime_error("the document needs the external vocabulary " + m_pTables->Show(uri) +
                             ", which is not known here");
}

/// The number under which the document has an entry of a table.
CDocument::TextId CInfosetSource::FindText(std::uint32_t nPlace, const CTable& table, TextIds& ids)
{
    if (nPlace == 0)
        return CDocument::s_dwNone;
    ids.resize(std::max<std::size_t>(ids.size(), nPlace));
    std::optional<CDocument::TextId>& id = ids[nPlace - 1];
    if (!id)
    {
        const std::string_view octets = table.GetAt(nPlace).octets;
        CheckText(Widen(octets));
        id = m_document.InternText(octets);
    }
    return *id;
}

void CInfosetSource::OnDeclaration(std::uint32_t nPrefix, std::uint32_t nNamespace)
{
    const CDocument::TextId dwPrefix = FindText(nPrefix, m_pTables->prefixes, m_prefixes);
    m_bDefaultDeclared = m_bDefaultDeclared || dwPrefix == CDocument::s_dwNone;
    m_document.Declare(dwPrefix, FindText(nNamespace, m_pTables->namespaces, m_namespaces));
}

CDocument::NameId CInfosetSource::FindName(const SName& name)
{
    const auto [it, bNew] = m_names.try_emplace({name.dwPrefix, name.dwNamespace, name.dwLocalName});
    if (bNew)
    {
        const CDocument::TextId dwNamespace = FindText(name.dwNamespace, m_pTables->namespaces, m_namespaces);
        if (name.dwPrefix != 0)
            m_document.SuggestPrefix(FindText(name.dwPrefix, m_pTables->prefixes, m_prefixes), dwNamespace);
        it->second = m_document.InternName(dwNamespace, m_pTables->localNames.GetAt(name.dwLocalName).octets);
    }
    const CDocument::SName& known = m_document.GetName(it->second);
    const std::size_t nNamespace = m_document.GetText(known.dwNamespace).size();
    Count(known.strLocalName.size() + (nNamespace > s_nShortNamespace ? nNamespace : 0));
    return it->second;
}

/// A few octets can repeat a long name or value without end.
void CInfosetSource::Count(std::uint64_t nOctets)
{
    m_nOctets += nOctets;
    if (m_nOctets > s_nLengthLimit)
        throw std::runtime_error(g_szTooLong);
}

void CInfosetSource::OnElement(const SName& name)
{
    const CDocument::NameId dwName = FindName(name);
    const CDocument::TextId dwNamespace = m_document.GetName(dwName).dwNamespace;
    // Names need no declarations here. A root without a prefix wants its namespace to be the default.
    if (!m_bRootSeen && !m_bDefaultDeclared && name.dwPrefix == 0 && dwNamespace != CDocument::s_dwNone &&
        dwNamespace != CDocument::s_dwXmlNamespace)
        m_document.Declare(CDocument::s_dwNone, dwNamespace);
    m_bRootSeen = true;
    m_document.StartElement(dwName);
}

void CInfosetSource::OnAttribute(const SName& name, const SValue& value)
{
    m_document.AddAttribute(FindName(name), FindValue(value, m_attributeValues));
}

void CInfosetSource::OnText(const SValue& value)
{
    m_document.AddText(FindValue(value, m_chunks));
}

/// What repeats is stored once.
CDocument::SRange CInfosetSource::FindValue(const SValue& value, Ranges& ranges)
{
    if (value.nPlace == 0)
        return Store(value.text);
    ranges.resize(std::max<std::size_t>(ranges.size(), value.nPlace));
    std::optional<CDocument::SRange>& range = ranges[value.nPlace - 1];
    if (!range)
        range = Store(value.text);
    Count(range->nLength);
    return *range;
}

CDocument::SRange CInfosetSource::Store(const SEncodedText& text)
{
    const bool bUtf8 = text.eForm == EForm::Utf8 || (text.eForm == EForm::Algorithm && text.dwIndex == g_dwCdata);
    if (!bUtf8)
        return m_document.Store(Decode(text));
    CheckText(Widen(text.octets));
    return m_document.Store(text.octets);
}

std::string CInfosetSource::Decode(const SEncodedText& text) const
{
    if (text.eForm == EForm::Algorithm && text.dwIndex > g_dwCdata)
    {
        throw std::runtime_error("the document holds a value in the encoding algorithm " +
                                 std::to_string(text.dwIndex) + ", which is not known here");
    }
    if (text.eForm == EForm::Utf16 && text.octets.size() % 2 != 0)
        throw std::runtime_error("the document holds half a unit of UTF-16");
    const std::wstring strUnits = m_pTables->Decode(text);
    if (text.eForm == EForm::Alphabet)
        CheckAlphabet(text, strUnits.size());
    CheckText(strUnits);
    return Narrow(strUnits);
}

/// Whether the alphabet has a unit for every character, and the text has not ended ahead of its octets.
void CInfosetSource::CheckAlphabet(const SEncodedText& text, std::size_t nUnits) const
{
    const std::wstring strAlphabet = m_pTables->GetAlphabet(text.dwIndex);
    if (std::any_of(strAlphabet.begin(), strAlphabet.end(), [](wchar_t c) { return c >= 0xD800 && c <= 0xDFFF; }) ||
        strAlphabet.find(L'\xFFFD') != std::wstring::npos)
        throw std::runtime_error("the document holds a restricted alphabet that is not known here");
    if ((nUnits * WidthOf(strAlphabet.size()) + 7) / 8 != text.octets.size())
        throw std::runtime_error("the document holds a text in an alphabet that ends ahead of its octets");
}

void CInfosetSource::OnEntityReference()
{
    throw std::runtime_error("the document holds a reference to an entity, but not its text");
}

void CInfosetSource::OnEndOfDocument(std::size_t nBehind)
{
    if (nBehind != 0)
        throw std::runtime_error("something follows the document, octets: " + std::to_string(nBehind));
}

} // namespace

void ReadInfoset(std::string_view octets, CDocument& document, const SStreams& streams)
{
    CInfosetSource source(document);
    WalkInfoset(octets, source, streams);
}

} // namespace quiver_fi
