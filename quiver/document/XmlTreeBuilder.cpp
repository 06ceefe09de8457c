#include "quiver/document/XmlTreeBuilder.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace QvXmlLib9
{

namespace
{

template <class Char>
void AppendRuns(CXmlTextArena& texts, CXmlText*& pText, std::basic_string_view<Char> text)
{
    constexpr Char cCarriageReturn = 0x000D;
    for (auto nRun = text.find(cCarriageReturn); nRun != text.npos; nRun = text.find(cCarriageReturn))
    {
        if (nRun > 0)
            texts.Append(pText, text.substr(0, nRun));
        text.remove_prefix(nRun + 1);
    }
    if (!text.empty())
        texts.Append(pText, text);
}

/// White space of a greater length is not shared.
constexpr std::size_t s_nMostBlanks = 4096;

bool IsBlank(std::string_view utf8Text)
{
    return std::all_of(utf8Text.begin(), utf8Text.end(), [](char c) { return c == ' ' || c == '\n' || c == '\t'; });
}

template <class Char>
std::basic_string_view<Char> CutAtZero(std::basic_string_view<Char> text)
{
    return text.substr(0, text.find(Char()));
}

} // namespace

CXmlTreeBuilder::CXmlTreeBuilder(CXmlNodeStore& store, CXmlElement*& pDocumentElement, CNamespaces& namespaces,
                                 PfnElementFilter pfnElementFilter)
    : m_store(store)
    , m_pDocumentElement(pDocumentElement)
    , m_namespaces(namespaces)
    , m_pfnElementFilter(pfnElementFilter)
{
    // A filter may look at the counts.
    if (m_pfnElementFilter == nullptr)
        m_store.BeginCountingTogether();
}

CXmlTreeBuilder::~CXmlTreeBuilder()
{
    // A load that failed leaves what it has got; what memory cannot hold is not among it.
    try
    {
        while (!m_blanks.empty())
            AppendBlanks();
    }
    catch (const std::bad_alloc&)
    {
    }
    m_store.EndCountingTogether();
}

void CXmlTreeBuilder::SetNamespace(const std::wstring& strPrefix, const std::wstring& strURI)
{
    m_namespaces[strPrefix] = strURI;
    m_store.DeclarePrefix(strPrefix, strURI);
}

const SXmlName& CXmlTreeBuilder::InternName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName)
{
    return m_store.Names().Find(strNamespaceURI, strLocalName);
}

CFITreeBuilder::SNameParts CXmlTreeBuilder::GetParts(const SXmlName& name) const
{
    return {*name.pstrNamespaceURI, name.strLocalName};
}

const SXmlName& CXmlTreeBuilder::GetName(const CXmlElement* pElement) const
{
    return *pElement->m_pName;
}

CXmlElement* CXmlTreeBuilder::AddDocElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName)
{
    return AddDocElement(InternName(lpctNamespaceUri, lpctLocalName));
}

CXmlElement* CXmlTreeBuilder::AddDocElement(const SXmlName& name)
{
    if (m_pfnElementFilter != nullptr)
        m_store.PushMark(nullptr);
    m_pDocumentElement = m_store.NewElement(name);
    m_store.SetRoot(m_pDocumentElement);
    m_store.AttachPrefixes(*m_pDocumentElement, true, m_pfnElementFilter == nullptr);
    m_pElementStack.push_back(m_pDocumentElement);
    return m_pDocumentElement;
}

CXmlElement* CXmlTreeBuilder::AddChildElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName)
{
    return AddChildElement(InternName(lpctNamespaceUri, lpctLocalName));
}

CXmlElement* CXmlTreeBuilder::AddChildElement(const SXmlName& name)
{
    CXmlElement& parent = *m_pElementStack.back();
    if (m_pfnElementFilter != nullptr)
        m_store.PushMark(parent.m_pLastChild);
    CXmlElement* const pElement = parent.NewChild(name);
    m_store.AttachPrefixes(*pElement, false, m_pfnElementFilter == nullptr);
    m_pElementStack.push_back(pElement);
    return pElement;
}

void CXmlTreeBuilder::AddBlanks(CXmlElement& element, std::string_view utf8Text)
{
    const bool bBlank = IsBlank(utf8Text);
    const bool bBegins = !HasBlanks();
    const std::size_t nStart = bBegins ? m_strBlanks.size() : m_blanks.back().nStart;
    if (bBlank && m_strBlanks.size() - nStart + utf8Text.size() <= s_nMostBlanks)
    {
        if (bBegins)
            m_blanks.push_back({&element, nStart});
        m_strBlanks.append(utf8Text);
        return;
    }
    if (!bBegins)
        AppendBlanks();
    AppendTextExcludingCR(&element, utf8Text);
}

/// Makes the innermost white space a text of its element alone.
void CXmlTreeBuilder::AppendBlanks()
{
    const SBlanks blanks = m_blanks.back();
    m_blanks.pop_back();
    m_store.Texts().Append(blanks.pElement->m_pText, std::string_view(m_strBlanks).substr(blanks.nStart));
    m_strBlanks.resize(blanks.nStart);
}

/// Makes the white space of the innermost open element, which is all its text, one that elements share.
void CXmlTreeBuilder::EndBlanks()
{
    CXmlText* const pShared = FindShared(std::string_view(m_strBlanks).substr(m_blanks.back().nStart));
    if (pShared == nullptr)
        return AppendBlanks();
    m_blanks.back().pElement->m_pText = pShared;
    m_strBlanks.resize(m_blanks.back().nStart);
    m_blanks.pop_back();
}

/// What elements share of a text that is white space; null for any other, and where sharing does not pay.
CXmlText* CXmlTreeBuilder::FindShared(std::string_view svText)
{
    // So few nodes that it does not, or so many different texts.
    constexpr std::uint64_t nFewNodes = 256;
    constexpr std::size_t nMostShared = 1024;
    if (m_store.GetNodeCount() < nFewNodes)
        return nullptr;
    CXmlText*& pShared = m_sharedBlanks[svText.size() % m_sharedBlanks.size()];
    std::string_view svShared;
    if (pShared != nullptr && pShared->GetUtf8(svShared) && svShared == svText)
        return pShared;
    if (m_nSharedBlanks == nMostShared || svText.size() > s_nMostBlanks || !IsBlank(svText))
        return nullptr;
    ++m_nSharedBlanks;
    return pShared = NewSharedValue(svText);
}

void CXmlTreeBuilder::EndElement()
{
    if (HasBlanks())
        EndBlanks();
    CXmlElement* const pElement = m_pElementStack.back();
    m_pElementStack.pop_back();
    if (m_pfnElementFilter == nullptr)
        return;
    const CXmlNodeStore::SMark mark = m_store.PopMark();
    if (!m_pfnElementFilter(pElement) || m_pElementStack.empty())
        return;
    m_store.Destroy(m_pElementStack.back()->RemoveLastChild(mark.pBefore));
    m_store.Texts().Rewind(mark.texts);
}

void CXmlTreeBuilder::AddElementAttribute(CXmlElement* pElement, const std::wstring& strLocalName,
                                          const std::wstring& strValue, const std::wstring& strNamespaceURI)
{
    pElement->AddAttribute(strLocalName, strValue, strNamespaceURI);
}

void CXmlTreeBuilder::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::wstring_view value)
{
    m_store.Texts().Append(pElement->NewAttribute(name).m_pValue, value);
}

void CXmlTreeBuilder::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::string_view utf8Value)
{
    m_store.Texts().Append(pElement->NewAttribute(name).m_pValue, utf8Value);
}

void CXmlTreeBuilder::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, CXmlText* pValue)
{
    pElement->NewAttribute(name).m_pValue = pValue;
}

void CXmlTreeBuilder::AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText)
{
    AppendTextExcludingCR(pElement, lpctText, 0xFFFFFFFF);
}

void CXmlTreeBuilder::AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText, unsigned long ulLength)
{
    const wchar_t* lpctEnd = lpctText;
    for (; ulLength > 0 && *lpctEnd != 0; --ulLength)
        ++lpctEnd;
    AppendRuns(pElement->Store().Texts(), pElement->m_pText,
               std::wstring_view(lpctText, static_cast<std::size_t>(lpctEnd - lpctText)));
}

void CXmlTreeBuilder::AppendTextExcludingCR(CXmlElement* pElement, std::wstring_view text)
{
    AppendRuns(m_store.Texts(), pElement->m_pText, CutAtZero(text));
}

void CXmlTreeBuilder::AppendTextExcludingCR(CXmlElement* pElement, std::string_view utf8Text)
{
    AppendRuns(m_store.Texts(), pElement->m_pText, utf8Text);
}

template <class Char>
CXmlText* CXmlTreeBuilder::NewSharedValue(std::basic_string_view<Char> value)
{
    return m_store.NewSharedText([value](CXmlTextArena& texts, CXmlText*& pText) { texts.Append(pText, value); });
}

template <class Char>
CXmlText* CXmlTreeBuilder::NewSharedText(std::basic_string_view<Char> text)
{
    text = CutAtZero(text);
    return m_store.NewSharedText([text](CXmlTextArena& texts, CXmlText*& pText) { AppendRuns(texts, pText, text); });
}

CXmlText* CXmlTreeBuilder::MakeSharedValue(std::string_view utf8Value)
{
    return NewSharedValue(utf8Value);
}

CXmlText* CXmlTreeBuilder::MakeSharedValue(std::wstring_view value)
{
    return NewSharedValue(value);
}

CXmlText* CXmlTreeBuilder::MakeSharedText(std::string_view utf8Text)
{
    return NewSharedText(utf8Text);
}

CXmlText* CXmlTreeBuilder::MakeSharedText(std::wstring_view text)
{
    return NewSharedText(text);
}

} // namespace QvXmlLib9
