#include "quiver/document/XmlDocument.h"

#include "quiver/document/DocumentSource.h"
#include "quiver/document/ExpatReader.h"
#include "quiver/document/OverlappedSource.h"
#if defined(QUIVER_SCANNER)
#include "quiver/document/XmlScanner.h"
#endif
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/document/XmlTreeBuilder.h"
#include "quiver/fastinfoset/FastInfosetReader.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"

#include <cstring>
#include <utility>

namespace QvXmlLib9
{

namespace
{

/// Set by AsyncFromXmlFile.
bool s_bAsyncFromXmlFile = false;

} // namespace

void AsyncFromXmlFile(bool bAsync)
{
    s_bAsyncFromXmlFile = bAsync;
}

CXmlDocument::CXmlDocument()
    : CXmlDocument(nullptr, CXmlSerializationContext::GetDefaultContext())
{
}

CXmlDocument::CXmlDocument(const CXmlSerializationContext& context)
    : CXmlDocument(nullptr, context)
{
}

CXmlDocument::CXmlDocument(PfnElementFilter pfnElementFilter)
    : CXmlDocument(pfnElementFilter, CXmlSerializationContext::GetDefaultContext())
{
}

CXmlDocument::CXmlDocument(PfnElementFilter pfnElementFilter, const CXmlSerializationContext& context)
    : CInstanceMonitor(L"CXmlDocument")
    , m_pfnElementFilter(pfnElementFilter)
    , m_pContext(&context)
{
    Init();
}

CXmlDocument::CXmlDocument(const CXmlDocument& source) = default;
CXmlDocument& CXmlDocument::operator=(const CXmlDocument& source) = default;
CXmlDocument::~CXmlDocument() = default;

void CXmlDocument::Init()
{
    m_eSchemaType = m_pContext->GetSchemaType();
}

void CXmlDocument::Cleanup()
{
    m_namespaces.clear();
    m_pDocumentElement = nullptr;
    m_pStore.reset();
}

void CXmlDocument::LoadXml(const char* lpcXml)
{
    Cleanup();
    const std::size_t nLength = std::strlen(lpcXml);
    if (nLength == 0)
        throw CQvException(L"XML String is empty!");
    ParseText(CDocumentSource::FromMemory(lpcXml, nLength));
}

void CXmlDocument::LoadXml(const wchar_t* lpctXml)
{
    Cleanup();
    if (!ScanText(lpctXml))
        RunExpat(CDocumentSource::FromText(lpctXml));
}

void CXmlDocument::LoadXmlStream(unsigned char* const pData, unsigned long ulLength)
{
    Cleanup();
    if (ulLength == 0)
        throw CQvException(L"XML Stream is empty!");
    Parse(CDocumentSource::FromMemory(pData, ulLength));
}

void CXmlDocument::Load(const wchar_t* lpctFileName)
{
    Cleanup();
    if (!s_bAsyncFromXmlFile)
    {
        Parse(CDocumentSource::FromFile(lpctFileName));
        return;
    }
    COverlappedSource source(lpctFileName);
    AsyncParse(source);
}

void CXmlDocument::AsyncParse(COverlappedSource& source)
{
    try
    {
        ParseChunks(source);
    }
    catch (const CQvException& exception)
    {
        source.Close();
        Cleanup();
        throw CQvException(exception);
    }
    catch (...)
    {
        source.Close();
        Cleanup();
        throw;
    }
}

void CXmlDocument::ParseChunks(COverlappedSource& source)
{
    CXmlTreeBuilder builder = MakeBuilder();
    CExpatReader reader(builder, GetExpatOptions());
    reader.Init();
    for (; !source.IsLast(); source.Advance())
    {
        source.ReadAhead();
        reader.Parse(source.GetChunk(), false);
    }
    reader.Parse(source.GetChunk(), true);
    Throw_IfNoRoot();
}

void CXmlDocument::Parse(CDocumentSource source)
{
    source = CDocumentSource::Inflate(std::move(source));
    if (!ParseFastInfoset(source))
        ParseText(source);
}

/// @return false if the document is none, and nothing has been made of it.
bool CXmlDocument::ParseFastInfoset(const CDocumentSource& source)
{
    CXmlTreeBuilder builder = MakeBuilder();
    CFastInfosetReader reader(&m_pContext->GetFIContext(), &builder);
    return reader.Parse(source.GetData());
}

void CXmlDocument::ParseText(const CDocumentSource& source)
{
    if (!Scan(source.GetData(), false))
        RunExpat(source);
}

#if defined(QUIVER_SCANNER)

/// Reads the document by the scanner, for which it is encoded anew.
bool CXmlDocument::ScanText(const wchar_t* lpctXml)
{
    std::string strDocument;
    return m_pfnElementFilter == nullptr && AppendUtf8(strDocument, lpctXml) && Scan(strDocument, true);
}

/// Reads the document by the scanner; if that gives up, nothing is left of what it made.
/// @param bText whether the document was text of the library, and may say that it is UTF-16.
bool CXmlDocument::Scan(std::string_view document, bool bText)
{
    // Elements are offered to a filter while there is still something to come, which may yet turn out to be wrong.
    if (m_pfnElementFilter != nullptr)
        return false;
    CXmlScanner::SMade made;
    {
        CXmlTreeBuilder builder = MakeBuilder();
        CXmlScanner scanner(builder, GetExpatOptions());
        if (bText ? scanner.ScanText(document) : scanner.ScanBytes(document))
            return true;
        made = scanner.GetMade();
    }
    m_namespaces.clear();
    m_pDocumentElement = nullptr;
    m_pStore.reset();
    made.Forget();
    return false;
}

#else

bool CXmlDocument::ScanText(const wchar_t* /*lpctXml*/)
{
    return false;
}

bool CXmlDocument::Scan(std::string_view /*document*/, bool /*bText*/)
{
    return false;
}

#endif

void CXmlDocument::RunExpat(const CDocumentSource& source)
{
    CXmlTreeBuilder builder = MakeBuilder();
    CExpatReader reader(builder, GetExpatOptions());
    reader.Init();
    reader.Parse(source.GetData(), true);
    Throw_IfNoRoot();
}

void CXmlDocument::Throw_IfNoRoot() const
{
    if (m_pDocumentElement == nullptr)
        throw CQvException(L"Invalid or empty XML document");
}

CXmlTreeBuilder CXmlDocument::MakeBuilder()
{
    if (m_pStore == nullptr)
        m_pStore = std::make_shared<CXmlNodeStore>(this);
    return CXmlTreeBuilder(*m_pStore, m_pDocumentElement, m_namespaces, m_pfnElementFilter);
}

SExpatOptions CXmlDocument::GetExpatOptions() const
{
    return {m_eSchemaType != SchemaType_NoNamespaces, !m_pContext->GetStripCDATA()};
}

std::wstring CXmlDocument::LookupNamespaceFromAlias(const wchar_t* lpctAlias) const
{
    const auto it = m_namespaces.find(ToUtf16Units(lpctAlias));
    return it != m_namespaces.end() ? it->second : std::wstring();
}

} // namespace QvXmlLib9
