#include "quiver/document/ExpatReader.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <expat.h>
#include <new>
#include <string_view>

namespace QvXmlLib9
{

static_assert(sizeof(XML_Char) == 1, "The handlers take UTF-8.");

namespace
{

/// The parser copies what it is given, so it gets a long document in pieces that stay in the processor's cache.
constexpr std::size_t s_nPiece = 0x10000;

constexpr XML_Char s_cNamespaceSeparator = '|';

// A prefix stands for a namespace of any length, and a document type declaration gives attributes to elements of four
// characters: the parser's protection against entities counts neither. What it makes of them may come to so many units,
// or to so many times the input if that is more; documents in use stay far below either.
constexpr std::uint64_t s_nHandedOverFree = 16 * 1024 * 1024;
constexpr std::uint64_t s_nHandedOverPerByte = 100;

/// Namespaces up to this length do not count: they cost no more than the node whose name has them.
constexpr std::size_t s_nShortNamespace = 256;

void SetText(std::wstring& strText, const char* lpcUtf8)
{
    strText.clear();
    if (lpcUtf8 != nullptr)
        AppendUtf8AsUtf16(strText, lpcUtf8);
}

} // namespace

void CExpatReader::SParserDeleter::operator()(XML_ParserStruct* pParser) const
{
    XML_ParserFree(pParser);
}

CExpatReader::CExpatReader(CXmlDocument& doc)
    : CInstanceMonitor(L"CExpatReader")
    , m_doc(doc)
    , m_nAllowance(s_nHandedOverFree)
{
}

CExpatReader::~CExpatReader() = default;

void CExpatReader::Init()
{
    m_parser.reset(m_doc.m_eSchemaType == SchemaType_NoNamespaces ? XML_ParserCreate(nullptr)
                                                                  : XML_ParserCreateNS(nullptr, s_cNamespaceSeparator));
    if (m_parser == nullptr)
        throw std::bad_alloc();
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), OnStartElement, OnEndElement);
    // The list of prefixes is never unwound, so the end of a declaration is of no interest.
    XML_SetNamespaceDeclHandler(m_parser.get(), OnStartNamespace, nullptr);
    XML_SetCharacterDataHandler(m_parser.get(), OnText);
    if (!m_doc.m_pContext->GetStripCDATA())
        XML_SetCdataSectionHandler(m_parser.get(), OnStartCdata, OnEndCdata);
}

void CExpatReader::Parse(bool bFinal)
{
    std::string_view data(reinterpret_cast<const char*>(m_doc.m_pbyData), m_doc.m_dwDataLen);
    while (data.size() > std::max(s_nPiece, m_nUnfinished))
    {
        const std::size_t nPiece = std::max(s_nPiece, m_nUnfinished);
        Feed(data.substr(0, nPiece), false);
        data.remove_prefix(nPiece);
    }
    Feed(data, bFinal);
    if (bFinal)
        m_parser.reset();
}

/// Hands a piece on, or keeps it for later. The parser begins an unfinished token anew with every piece; so that a very
/// long one does not cost the square of its length, the parser gets to see it again only when it has doubled.
void CExpatReader::Feed(std::string_view piece, bool bFinal)
{
    if (m_strDeferred.empty() && (bFinal || piece.size() >= m_nUnfinished))
    {
        Give(piece, bFinal);
        return;
    }
    m_strDeferred.append(piece);
    if (!bFinal && m_strDeferred.size() < m_nUnfinished)
        return;
    Give(m_strDeferred, bFinal);
    m_strDeferred.clear();
}

void CExpatReader::Give(std::string_view piece, bool bFinal)
{
    if (XML_Parse(m_parser.get(), piece.data(), static_cast<int>(piece.size()), bFinal) != XML_STATUS_OK)
        Fail();
    m_nGiven += piece.size();
    const XML_Index nToken = XML_GetCurrentByteIndex(m_parser.get());
    m_nUnfinished = nToken < 0 ? 0 : m_nGiven - static_cast<std::size_t>(nToken);
}

void CExpatReader::Fail()
{
    if (m_pFailure != nullptr)
        std::rethrow_exception(m_pFailure);
    const auto nLine = static_cast<int>(XML_GetCurrentLineNumber(m_parser.get()));
    const char* const lpcError = XML_ErrorString(XML_GetErrorCode(m_parser.get()));
    m_parser.reset();
    throw CQvException(FormatString(L"%S at line %d", lpcError, nLine));
}

void CExpatReader::CountNamespace(std::size_t nUnits)
{
    if (nUnits > s_nShortNamespace)
        CountHandedOver(nUnits);
}

void CExpatReader::CountHandedOver(std::size_t nUnits)
{
    m_nHandedOver += nUnits;
    if (m_nHandedOver <= m_nAllowance)
        return;
    const XML_Index nInput = XML_GetCurrentByteIndex(m_parser.get());
    m_nAllowance =
        std::max(s_nHandedOverFree, s_nHandedOverPerByte * static_cast<std::uint64_t>(std::max<XML_Index>(nInput, 0)));
    if (m_nHandedOver > m_nAllowance)
        throw CQvException(L"The namespaces and default values of the document are out of proportion to its length");
}

/// No exception may pass through the parser, which is C: it waits until the parser has come to its stop.
template <class Action>
void CExpatReader::Handle(void* pUserData, Action action)
{
    auto* const pThis = static_cast<CExpatReader*>(pUserData);
    if (pThis->m_pFailure != nullptr)
        return;
    try
    {
        action(*pThis);
    }
    catch (...)
    {
        pThis->m_pFailure = std::current_exception();
        XML_StopParser(pThis->m_parser.get(), XML_FALSE);
    }
}

template <class Action>
void CExpatReader::HandleText(void* pUserData, Action action)
{
    QV_ASSERT_MSG(pUserData != nullptr, "pThis != NULL");
    Handle(pUserData,
           [&action](CExpatReader& reader)
           {
               const std::vector<CXmlElement*>& stack = reader.m_doc.m_pElementStack;
               QV_ASSERT_MSG(stack.size() > 0, "pThis->m_doc.m_pElementStack.size() > 0");
               QV_ASSERT_MSG(stack.back() != nullptr, "pThis->m_doc.m_pElementStack.back() != NULL");
               action(stack.back());
           });
}

void CExpatReader::OnStartElement(void* pUserData, const char* lpcName, const char** ppAttributes)
{
    Handle(pUserData,
           [lpcName, ppAttributes](CExpatReader& reader)
           {
               CXmlDocument& doc = reader.m_doc;
               const SXmlName& name = doc.Store().Names().Find(lpcName);
               reader.CountNamespace(name.pstrNamespaceURI->size());
               CXmlElement* const pElement =
                   doc.m_pDocumentElement != nullptr ? doc.AddChildElement(name) : doc.AddDocElement(name);
               if (*ppAttributes != nullptr)
                   reader.AddAttributes(pElement, ppAttributes);
           });
}

void CExpatReader::AddAttributes(CXmlElement* pElement, const char** ppAttributes)
{
    const char** const ppDefaults = ppAttributes + XML_GetSpecifiedAttributeCount(m_parser.get());
    for (const char** ppNext = ppAttributes; *ppNext != nullptr; ppNext += 2)
    {
        const SXmlName& name = m_doc.Store().Names().Find(ppNext[0]);
        const std::string_view value(ppNext[1]);
        CountNamespace(name.pstrNamespaceURI->size());
        if (ppNext >= ppDefaults)
            CountHandedOver(sizeof(CXmlAttribute) + value.size());
        CXmlDocument::AddElementAttribute(pElement, name, value);
    }
}

void CExpatReader::OnEndElement(void* pUserData, const char*)
{
    Handle(pUserData, [](CExpatReader& reader) { reader.m_doc.EndElement(); });
}

void CExpatReader::OnStartNamespace(void* pUserData, const char* lpcPrefix, const char* lpcURI)
{
    Handle(pUserData,
           [lpcPrefix, lpcURI](CExpatReader& reader)
           {
               reader.CountNamespace(lpcURI != nullptr ? std::strlen(lpcURI) : 0);
               SetText(reader.m_strPrefix, lpcPrefix);
               SetText(reader.m_strURI, lpcURI);
               reader.m_doc.m_namespaces[reader.m_strPrefix] = reader.m_strURI;
           });
}

void CExpatReader::OnText(void* pUserData, const char* lpcText, int nLength)
{
    HandleText(pUserData,
               [lpcText, nLength](CXmlElement* pElement) {
                   CXmlDocument::AppendTextExcludingCR(pElement,
                                                       std::string_view(lpcText, static_cast<std::size_t>(nLength)));
               });
}

void CExpatReader::OnStartCdata(void* pUserData)
{
    HandleText(pUserData, [](CXmlElement* pElement) { CXmlDocument::AppendTextExcludingCR(pElement, L"<![CDATA["); });
}

void CExpatReader::OnEndCdata(void* pUserData)
{
    HandleText(pUserData, [](CXmlElement* pElement) { CXmlDocument::AppendTextExcludingCR(pElement, L"]]>"); });
}

} // namespace QvXmlLib9
