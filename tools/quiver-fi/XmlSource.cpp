#include "tools/quiver-fi/XmlSource.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"

#include <algorithm>
#include <exception>
#include <expat.h>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

/// No character of XML text, so that it divides names without doubt.
constexpr XML_Char s_cSeparator = '\f';

/// The parser counts the bytes of a piece in an int. It begins an unfinished token anew with every piece, so that there
/// should be few.
constexpr std::size_t s_nPiece = 0x40000000;

struct SParserDeleter
{
    void operator()(XML_ParserStruct* pParser) const { XML_ParserFree(pParser); }
};

/// What the library refuses is refused: damage, and documents that would need memory or time out of proportion. The
/// elements are let go as soon as they are complete.
void CheckByLibrary(std::string& strXml)
{
    const CXmlSerializationContext context;
    CXmlDocument document([](CXmlElement*) { return true; }, context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strXml.data()), static_cast<unsigned long>(strXml.size()));
}

class CXmlSource
{
public:
    explicit CXmlSource(CDocument& document);

    void Parse(std::string_view svXml);
    bool IsOutsideIgnored() const { return m_bOutsideIgnored; }

private:
    static void OnStart(void* pSource, const XML_Char* lpcName, const XML_Char** ppAttributes);
    static void OnEnd(void* pSource, const XML_Char* lpcName);
    static void OnDeclaration(void* pSource, const XML_Char* lpcPrefix, const XML_Char* lpcNamespace);
    static void OnText(void* pSource, const XML_Char* lpcText, int nLength);
    static int OnNotStandalone(void* pSource);
    static int OnExternalEntity(XML_Parser parser, const XML_Char* lpcContext, const XML_Char* lpcBase,
                                const XML_Char* lpcSystemId, const XML_Char* lpcPublicId);
    static void OnSkippedEntity(void* pSource, const XML_Char* lpcName, int bParameter);

    template <class Action>
    static void Handle(void* pSource, Action action);

    CDocument::NameId InternName(const XML_Char* lpcName);
    [[noreturn]] void RefuseEntity() const;

    CDocument& m_document;
    std::unique_ptr<XML_ParserStruct, SParserDeleter> m_parser;
    /// Names as the parser gives them.
    std::map<std::string, CDocument::NameId, std::less<>> m_names;
    bool m_bOutsideIgnored = false;
    /// What a handler has thrown, on its way past the parser's frames, which are C.
    std::exception_ptr m_pFailure;
};

CXmlSource::CXmlSource(CDocument& document)
    : m_document(document)
    , m_parser(XML_ParserCreateNS(nullptr, s_cSeparator))
{
    if (m_parser == nullptr)
        throw std::bad_alloc();
    XML_SetUserData(m_parser.get(), this);
    XML_SetElementHandler(m_parser.get(), OnStart, OnEnd);
    XML_SetStartNamespaceDeclHandler(m_parser.get(), OnDeclaration);
    XML_SetCharacterDataHandler(m_parser.get(), OnText);
    XML_SetNotStandaloneHandler(m_parser.get(), OnNotStandalone);
    XML_SetExternalEntityRefHandler(m_parser.get(), OnExternalEntity);
    XML_SetExternalEntityRefHandlerArg(m_parser.get(), this);
    XML_SetSkippedEntityHandler(m_parser.get(), OnSkippedEntity);
}

void CXmlSource::Parse(std::string_view svXml)
{
    bool bFinal = false;
    while (!bFinal)
    {
        const std::string_view piece = svXml.substr(0, s_nPiece);
        svXml.remove_prefix(piece.size());
        bFinal = svXml.empty();
        const XML_Status eStatus = XML_Parse(m_parser.get(), piece.data(), static_cast<int>(piece.size()), bFinal);
        if (m_pFailure != nullptr)
            std::rethrow_exception(m_pFailure);
        if (eStatus != XML_STATUS_OK)
            throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(m_parser.get())));
    }
}

template <class Action>
void CXmlSource::Handle(void* pSource, Action action)
{
    auto* const pThis = static_cast<CXmlSource*>(pSource);
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

CDocument::NameId CXmlSource::InternName(const XML_Char* lpcName)
{
    const std::string_view svName(lpcName);
    const auto it = m_names.find(svName);
    if (it != m_names.end())
        return it->second;
    const std::size_t nSeparator = svName.find(s_cSeparator);
    const bool bNamespace = nSeparator != std::string_view::npos;
    const CDocument::TextId dwNamespace =
        m_document.InternText(bNamespace ? svName.substr(0, nSeparator) : std::string_view());
    const CDocument::NameId dwName =
        m_document.InternName(dwNamespace, bNamespace ? svName.substr(nSeparator + 1) : svName);
    m_names.emplace(svName, dwName);
    return dwName;
}

void CXmlSource::OnStart(void* pSource, const XML_Char* lpcName, const XML_Char** ppAttributes)
{
    Handle(pSource,
           [lpcName, ppAttributes](CXmlSource& source)
           {
               source.m_document.StartElement(source.InternName(lpcName));
               for (const XML_Char** ppNext = ppAttributes; *ppNext != nullptr; ppNext += 2)
                   source.m_document.AddAttribute(source.InternName(ppNext[0]), source.m_document.Store(ppNext[1]));
           });
}

void CXmlSource::OnEnd(void* pSource, const XML_Char*)
{
    Handle(pSource, [](CXmlSource& source) { source.m_document.EndElement(); });
}

void CXmlSource::OnDeclaration(void* pSource, const XML_Char* lpcPrefix, const XML_Char* lpcNamespace)
{
    Handle(pSource,
           [lpcPrefix, lpcNamespace](CXmlSource& source)
           {
               CDocument& document = source.m_document;
               document.Declare(document.InternText(lpcPrefix != nullptr ? lpcPrefix : ""),
                                document.InternText(lpcNamespace != nullptr ? lpcNamespace : ""));
           });
}

void CXmlSource::OnText(void* pSource, const XML_Char* lpcText, int nLength)
{
    Handle(pSource, [lpcText, nLength](CXmlSource& source)
           { source.m_document.AppendText(std::string_view(lpcText, static_cast<std::size_t>(nLength))); });
}

/// Called for an external subset and for references to parameter entities, none of which are read.
int CXmlSource::OnNotStandalone(void* pSource)
{
    static_cast<CXmlSource*>(pSource)->m_bOutsideIgnored = true;
    return XML_STATUS_OK;
}

int CXmlSource::OnExternalEntity(XML_Parser parser, const XML_Char*, const XML_Char*, const XML_Char*, const XML_Char*)
{
    // The argument set above comes in the parser's place.
    Handle(static_cast<void*>(parser), [](CXmlSource& source) { source.RefuseEntity(); });
    return XML_STATUS_ERROR;
}

void CXmlSource::OnSkippedEntity(void* pSource, const XML_Char*, int bParameter)
{
    if (bParameter == 0)
        Handle(pSource, [](CXmlSource& source) { source.RefuseEntity(); });
}

void CXmlSource::RefuseEntity() const
{
    const auto nLine = static_cast<unsigned long>(XML_GetCurrentLineNumber(m_parser.get()));
    throw std::runtime_error("the text of an entity at line " + std::to_string(nLine) +
                             " lies outside the document, and is not read");
}

} // namespace

void ReadXml(std::string& strXml, CDocument& document, const SStreams& streams)
{
    CheckByLibrary(strXml);
    CXmlSource source(document);
    source.Parse(strXml);
    if (source.IsOutsideIgnored())
    {
        streams.err << "quiver-fi: warning: parts of the document type declaration lie outside the document and are "
                       "not read; their entities and default values are missing\n";
    }
}

} // namespace quiver_fi
