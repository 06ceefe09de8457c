#include "tools/quiver-fi/InspectorTables.h"

#include "tools/quiver-fi/Text.h"

#include "quiver/fastinfoset/FIAlphabet.h"
#include "quiver/fastinfoset/FastInfosetBinaryData.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <limits>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

/// Units of a text that are shown unless it is wanted whole.
constexpr std::size_t s_nShortLimit = 60;

/// Octets that a text which is shown in part is made of. A character has up to four of them; the number is a multiple
/// of what a value takes under any algorithm.
constexpr std::size_t s_nShortOctets = 480;

constexpr std::uint32_t s_dwFirstOwnAlphabet = 16;
constexpr std::uint32_t s_dwFirstOwnAlgorithm = 32;
constexpr std::uint32_t s_dwBoolean = 6;

constexpr std::wstring_view s_alphabets[] = {L"0123456789-+.e ", L"0123456789-:TZ "};
constexpr const char* s_algorithms[] = {"hexadecimal", "base64", "short",  "int",  "long",
                                        "boolean",     "float",  "double", "uuid", "cdata"};

std::wstring DecodeUtf8Octets(std::string_view octets)
{
    std::wstring strText;
    if (!AppendUtf8AsUtf16(strText, octets))
        strText += L'\xFFFD';
    return strText;
}

std::wstring DecodeUtf16BigEndian(std::string_view octets)
{
    std::wstring strText;
    for (std::size_t n = 0; n + 1 < octets.size(); n += 2)
    {
        const unsigned nHigh = static_cast<unsigned char>(octets[n]);
        strText += static_cast<wchar_t>(nHigh << 8 | static_cast<unsigned char>(octets[n + 1]));
    }
    return strText;
}

/// A list of truth values in bits (X.891, 10.8): the first four bits tell how many are unused at the end.
std::wstring DecodeBooleans(std::string_view octets)
{
    const unsigned nUnused = static_cast<unsigned char>(octets.front()) >> 4;
    constexpr std::size_t nFirst = 4;
    const std::size_t nBits = octets.size() * 8;
    if (nUnused > 7 || nBits < nFirst + nUnused + 1)
        throw CQvException(L"Invalid value for BOOLEAN byte encoding.");
    std::wstring strText;
    for (std::size_t n = nFirst; n < nBits - nUnused; ++n)
    {
        if (!strText.empty())
            strText += L' ';
        const unsigned nOctet = static_cast<unsigned char>(octets[n / 8]);
        strText += (nOctet >> (7 - n % 8) & 1) != 0 ? L"true" : L"false";
    }
    return strText;
}

/// The front of a long text, cut where a character begins.
SEncodedText Shorten(SEncodedText text)
{
    if (text.octets.size() <= s_nShortOctets)
        return text;
    std::size_t nLength = s_nShortOctets;
    const bool bUtf8 = text.eForm == EForm::Utf8 || (text.eForm == EForm::Algorithm && text.dwIndex == g_dwCdata);
    while (bUtf8 && nLength > s_nShortOctets - 4 && (static_cast<unsigned char>(text.octets[nLength]) & 0xC0) == 0x80)
        --nLength;
    text.octets = text.octets.substr(0, nLength);
    return text;
}

} // namespace

// --- One table ------------------------------------------------------------------------------------------------------

template <class TEntry>
std::string CVocabularyTable<TEntry>::Add(const TEntry& entry)
{
    if (m_entries.size() >= s_nLimit)
        return " (table full)";
    m_entries.push_back(entry);
    return m_bExternal ? " +[?]" : " +[" + std::to_string(m_entries.size() + m_dwFirst - 1) + "]";
}

template <class TEntry>
std::uint32_t CVocabularyTable<TEntry>::Check(std::uint32_t dwIndex) const
{
    if (m_bExternal)
        return 0;
    if (dwIndex < m_dwFirst || dwIndex - m_dwFirst >= m_entries.size())
    {
        std::wstring strName;
        AppendUtf8AsUtf16(strName, m_strName);
        throw CQvException(FormatString(L"There is no %s [%d]; entries: %d.", strName.c_str(),
                                        static_cast<int>(dwIndex), static_cast<int>(m_entries.size())));
    }
    return dwIndex - m_dwFirst + 1;
}

template class CVocabularyTable<SEncodedText>;
template class CVocabularyTable<SName>;

// --- All tables -----------------------------------------------------------------------------------------------------

CTables::CTables(bool bWholeValues)
    : alphabets("restricted alphabet", s_dwFirstOwnAlphabet)
    , algorithms("encoding algorithm", s_dwFirstOwnAlgorithm)
    , prefixes("prefix")
    , namespaces("namespace")
    , localNames("local name")
    , otherNames("other name")
    , otherURIs("other URI")
    , attributeValues("attribute value")
    , chunks("text")
    , otherStrings("other string")
    , elements("element name")
    , attributes("attribute name")
    , m_nLiteralLimit(bWholeValues ? std::numeric_limits<std::size_t>::max() : s_nShortLimit)
{
    // Every document has these two (X.891, 7.2.21 and 7.2.22).
    prefixes.Add({"xml"});
    namespaces.Add({"http://www.w3.org/XML/1998/namespace"});
}

void CTables::SetExternal()
{
    for (CTable* const pTable : {&alphabets, &algorithms, &prefixes, &namespaces, &localNames, &otherNames, &otherURIs,
                                 &attributeValues, &chunks, &otherStrings})
        pTable->SetExternal();
    elements.SetExternal();
    attributes.SetExternal();
}

std::wstring CTables::GetAlphabet(std::uint32_t dwIndex) const
{
    if (dwIndex <= std::size(s_alphabets))
        return std::wstring(s_alphabets[dwIndex - 1]);
    return DecodeUtf8Octets(alphabets.Get(dwIndex).octets);
}

std::wstring CTables::DecodeAlphabet(const SEncodedText& text) const
{
    std::wstring strText;
    const std::wstring strAlphabet = GetAlphabet(text.dwIndex);
    // Behind an external vocabulary, the alphabet is not known.
    if (!alphabets.IsExternal() || text.dwIndex <= std::size(s_alphabets))
        DecodeRestrictedAlphabetString(strText, strAlphabet, text.octets);
    return strText;
}

std::wstring CTables::Decode(const SEncodedText& text) const
{
    switch (text.eForm)
    {
    case EForm::Utf8:
        return DecodeUtf8Octets(text.octets);
    case EForm::Utf16:
        return DecodeUtf16BigEndian(text.octets);
    case EForm::Alphabet:
        return DecodeAlphabet(text);
    default:
        break;
    }
    if (text.dwIndex == g_dwCdata)
        return DecodeUtf8Octets(text.octets);
    if (text.dwIndex == s_dwBoolean && !text.octets.empty())
        return DecodeBooleans(text.octets);
    // What an algorithm of somebody's own means nobody knows here; its octets are shown.
    return CFastInfosetBinaryData::Decode(text.octets, text.dwIndex < g_dwCdata ? text.dwIndex : 1);
}

std::string CTables::Show(const SEncodedText& text, std::size_t nLimit) const
{
    std::string strShown;
    if (text.eForm == EForm::Utf16)
        strShown = "UTF-16 ";
    else if (text.eForm == EForm::Alphabet)
        strShown = "alphabet " + std::to_string(text.dwIndex) + ' ';
    else if (text.eForm == EForm::Algorithm && text.dwIndex <= g_dwCdata)
        strShown = std::string(s_algorithms[text.dwIndex - 1]) + ' ';
    else if (text.eForm == EForm::Algorithm)
        strShown = "algorithm " + std::to_string(text.dwIndex) + ' ';
    return strShown + Quote(Decode(text), nLimit);
}

std::string CTables::Show(const SEncodedText& text) const
{
    return Show(text, m_nLiteralLimit);
}

std::string CTables::ShowRepeated(std::uint32_t dwIndex, const CTable& table) const
{
    const std::string strIndex = " [" + std::to_string(dwIndex) + "]";
    const std::uint32_t nPlace = table.Check(dwIndex);
    return nPlace == 0 ? strIndex : strIndex + ' ' + Show(Shorten(table.GetAt(nPlace)), s_nShortLimit);
}

std::string CTables::ShowPart(std::uint32_t nPlace, const CTable& table) const
{
    if (nPlace == 0)
        return "?";
    const std::string strQuoted = Quote(Decode(Shorten(table.GetAt(nPlace))), s_nShortLimit);
    return strQuoted.substr(1, strQuoted.size() - 2);
}

std::string CTables::ShowShort(const SName& name) const
{
    const std::string strLocalName = ShowPart(name.dwLocalName, localNames);
    return name.dwPrefix == 0 ? strLocalName : ShowPart(name.dwPrefix, prefixes) + ':' + strLocalName;
}

std::string CTables::Show(const SName& name) const
{
    const std::string strName = ShowShort(name);
    return name.dwNamespace == 0 ? strName : strName + " {" + ShowPart(name.dwNamespace, namespaces) + '}';
}

std::string CTables::GetSizes() const
{
    std::string strSizes;
    const auto fnAdd = [&strSizes](const auto& table)
    {
        if (table.GetSize() != 0)
            strSizes += "\n  " + table.GetName() + ": " + std::to_string(table.GetSize());
    };
    fnAdd(elements);
    fnAdd(attributes);
    for (const CTable* const pTable : {&prefixes, &namespaces, &localNames, &attributeValues, &chunks, &otherNames,
                                       &otherURIs, &otherStrings, &alphabets, &algorithms})
        fnAdd(*pTable);
    return strSizes;
}

} // namespace quiver_fi
