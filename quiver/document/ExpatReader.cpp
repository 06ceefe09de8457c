#include "quiver/document/ExpatReader.h"

#include "quiver/document/XmlTreeBuilder.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <expat.h>
#include <new>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

static_assert(sizeof(XML_Char) == 1, "The handlers take UTF-8.");

namespace
{

/// The parser copies what it is given, so it gets a long document in pieces that stay in the processor's cache.
constexpr std::size_t s_nPiece = 0x10000;

/// What the parser gives where there is no index.
constexpr XML_Index s_nNoIndex = -1;

constexpr XML_Char s_szNamespaceSeparator[] = "|";

// A prefix stands for a namespace of any length, and a document type declaration gives attributes to elements of four
// characters: the parser's protection against entities counts neither. What it makes of them may come to so many units,
// or to so many times the input if that is more; documents in use stay far below either.
constexpr std::uint64_t s_nHandedOverFree = 16 * 1024 * 1024;
constexpr std::uint64_t s_nHandedOverPerByte = 100;

/// Namespaces up to this length do not count: they cost no more than the node whose name has them.
constexpr std::size_t s_nShortNamespace = 256;

/// How many prefixed names a piece of a document can have at the most, in every encoding that the parser knows.
std::size_t CountColons(std::string_view piece)
{
    return static_cast<std::size_t>(std::count(piece.begin(), piece.end(), ':'));
}

/// What a handler of the parser that is running on this thread has thrown.
thread_local const std::exception_ptr* s_ppFailure = nullptr;

/// The parser goes on with a start tag after it has been told to stop, and that may take very long; without memory it
/// gives up.
bool IsStopping()
{
    return s_ppFailure != nullptr && *s_ppFailure != nullptr;
}

void* Allocate(std::size_t nSize)
{
    return IsStopping() ? nullptr : std::malloc(nSize);
}

void* Reallocate(void* pBlock, std::size_t nSize)
{
    return IsStopping() ? nullptr : std::realloc(pBlock, nSize);
}

constexpr XML_Memory_Handling_Suite s_memory{Allocate, Reallocate, std::free};

/// Marks the time in which a parser runs; one may run inside a handler of another.
class CRunningParser
{
public:
    explicit CRunningParser(const std::exception_ptr& pFailure)
        : m_ppOuter(std::exchange(s_ppFailure, &pFailure))
    {
    }
    ~CRunningParser() { s_ppFailure = m_ppOuter; }
    CRunningParser(const CRunningParser&) = delete;
    CRunningParser& operator=(const CRunningParser&) = delete;

private:
    const std::exception_ptr* const m_ppOuter;
};

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

CExpatReader::CExpatReader(CXmlTreeBuilder& doc, const SExpatOptions& options)
    : CInstanceMonitor(L"CExpatReader")
    , m_doc(doc)
    , m_options(options)
    , m_nAllowance(s_nHandedOverFree)
{
}

CExpatReader::~CExpatReader() = default;

void CExpatReader::Init()
{
    m_parser.reset(XML_ParserCreate_MM(nullptr, &s_memory, m_options.bNamespaces ? s_szNamespaceSeparator : nullptr));
    if (m_parser == nullptr)
        throw std::bad_alloc();
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), OnStartElement, OnEndElement);
    // The list of prefixes is never unwound, so the end of a declaration is of no interest.
    XML_SetNamespaceDeclHandler(m_parser.get(), OnStartNamespace, nullptr);
    XML_SetCharacterDataHandler(m_parser.get(), OnText);
    XML_SetEntityDeclHandler(m_parser.get(), OnEntityDeclaration);
    XML_SetAttlistDeclHandler(m_parser.get(), OnAttributeDeclaration);
    if (m_options.bKeepCDATA)
        XML_SetCdataSectionHandler(m_parser.get(), OnStartCdata, OnEndCdata);
}

void CExpatReader::Parse(std::string_view data, bool bFinal)
{
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
    m_nGiven += piece.size();
    if (HasLongNamespace())
        CheckPrefixes(m_nUnfinishedPrefixes + CountColons(piece));
    Run(piece, bFinal);
    const XML_Index nToken = XML_GetCurrentByteIndex(m_parser.get());
    m_nUnfinished = nToken == s_nNoIndex ? 0 : GetBytesBehind(m_nGiven, nToken);
    if (!HasLongNamespace())
        return;
    if (m_nUnfinished <= piece.size())
        m_nUnfinishedPrefixes = CountColons(piece.substr(piece.size() - m_nUnfinished));
    else
        m_nUnfinishedPrefixes += CountColons(piece);
}

void CExpatReader::Run(std::string_view piece, bool bFinal)
{
    const CRunningParser running(m_pFailure);
    if (XML_Parse(m_parser.get(), piece.data(), static_cast<int>(piece.size()), bFinal) != XML_STATUS_OK)
        Fail();
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
    Throw_IfOutOfProportion(m_nHandedOver);
}

void CExpatReader::Throw_IfOutOfProportion(std::uint64_t nUnits)
{
    if (nUnits <= m_nAllowance)
        return;
    m_nAllowance = std::max(s_nHandedOverFree, s_nHandedOverPerByte * m_nGiven);
    if (nUnits > m_nAllowance)
        throw CQvException(L"The namespaces and default values of the document are out of proportion to its length");
}

void CExpatReader::NoteNamespace(std::size_t nUnits)
{
    CountNamespace(nUnits);
    if (nUnits <= m_nLongestNamespace)
        return;
    m_nLongestNamespace = nUnits;
    if (HasLongNamespace())
        CheckPrefixes(CountPrefixesAhead());
}

bool CExpatReader::HasLongNamespace() const
{
    return m_nLongestNamespace > s_nShortNamespace;
}

/// The parser writes out the namespace of every attribute of a start tag before it hands the tag over, so the
/// proportion must be right ahead of that.
/// @param nPrefixes how many prefixed names there can be in one tag of what the parser has been given.
void CExpatReader::CheckPrefixes(std::size_t nPrefixes)
{
    const std::uint64_t nMost =
        std::max(nPrefixes, m_doctype.GetMostPrefixesOfEntity()) + m_doctype.GetMostAttributesOfElement();
    Throw_IfOutOfProportion(nMost * m_nLongestNamespace);
}

/// How many prefixed names there can be from the present start tag on.
std::size_t CExpatReader::CountPrefixesAhead() const
{
    int nOffset = 0;
    int nSize = 0;
    const char* const pBuffer = XML_GetInputContext(m_parser.get(), &nOffset, &nSize);
    // A parser that does not show its input leaves no more to say than that names take more than a byte.
    if (pBuffer == nullptr)
    {
        const XML_Index nTag = XML_GetCurrentByteIndex(m_parser.get());
        return GetBytesBehind(m_nGiven, nTag == s_nNoIndex ? 0 : nTag);
    }
    return CountColons(
        std::string_view(pBuffer, static_cast<std::size_t>(nSize)).substr(static_cast<std::size_t>(nOffset)));
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
               CXmlTreeBuilder& doc = reader.m_doc;
               QV_ASSERT_MSG(doc.HasOpenElement(), "pThis->m_doc.m_pElementStack.size() > 0");
               QV_ASSERT_MSG(doc.GetOpenElement() != nullptr, "pThis->m_doc.m_pElementStack.back() != NULL");
               action(doc, doc.GetOpenElement());
           });
}

void CExpatReader::OnStartElement(void* pUserData, const char* lpcName, const char** ppAttributes)
{
    Handle(pUserData,
           [lpcName, ppAttributes](CExpatReader& reader)
           {
               const SXmlName& name = reader.m_doc.InternName(lpcName);
               reader.CountNamespace(name.pstrNamespaceURI->size());
               CXmlElement* const pElement = reader.m_doc.AddElement(name);
               if (*ppAttributes != nullptr)
                   reader.AddAttributes(pElement, ppAttributes);
           });
}

void CExpatReader::AddAttributes(CXmlElement* pElement, const char** ppAttributes)
{
    const char** const ppDefaults = ppAttributes + XML_GetSpecifiedAttributeCount(m_parser.get());
    for (const char** ppNext = ppAttributes; *ppNext != nullptr; ppNext += 2)
    {
        const SXmlName& name = m_doc.InternName(ppNext[0]);
        const std::string_view value(ppNext[1]);
        CountNamespace(name.pstrNamespaceURI->size());
        if (ppNext >= ppDefaults)
            CountHandedOver(sizeof(CXmlAttribute) + value.size());
        m_doc.AddElementAttribute(pElement, name, value);
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
               reader.NoteNamespace(lpcURI != nullptr ? std::strlen(lpcURI) : 0);
               SetText(reader.m_strPrefix, lpcPrefix);
               SetText(reader.m_strURI, lpcURI);
               reader.m_doc.SetNamespace(reader.m_strPrefix, reader.m_strURI);
           });
}

void CExpatReader::OnText(void* pUserData, const char* lpcText, int nLength)
{
    HandleText(pUserData, [lpcText, nLength](CXmlTreeBuilder& doc, CXmlElement*)
               { doc.AddText(std::string_view(lpcText, static_cast<std::size_t>(nLength))); });
}

void CExpatReader::OnStartCdata(void* pUserData)
{
    HandleText(pUserData, [](CXmlTreeBuilder& doc, CXmlElement*) { doc.AddText("<![CDATA["); });
}

void CExpatReader::OnEndCdata(void* pUserData)
{
    HandleText(pUserData, [](CXmlTreeBuilder& doc, CXmlElement*) { doc.AddText("]]>"); });
}

void CExpatReader::OnEntityDeclaration(void* pUserData, const char* lpcName, int nIsParameterEntity,
                                       const char* lpcText, int nLength, const char* /*lpcBase*/,
                                       const char* /*lpcSystemId*/, const char* /*lpcPublicId*/,
                                       const char* /*lpcNotation*/)
{
    // Parameter entities are not expanded, and entities outside the document not read.
    if (nIsParameterEntity != 0 || lpcText == nullptr)
        return;
    Handle(pUserData, [lpcName, lpcText, nLength](CExpatReader& reader)
           { reader.m_doctype.AddEntity(lpcName, std::string_view(lpcText, static_cast<std::size_t>(nLength))); });
}

void CExpatReader::OnAttributeDeclaration(void* pUserData, const char* lpcElement, const char* /*lpcAttribute*/,
                                          const char* /*lpcType*/, const char* /*lpcDefault*/, int /*nIsRequired*/)
{
    Handle(pUserData, [lpcElement](CExpatReader& reader) { reader.m_doctype.AddAttribute(lpcElement); });
}

} // namespace QvXmlLib9
