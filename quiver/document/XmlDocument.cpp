#include "quiver/document/XmlDocument.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/DocumentSource.h"
#include "quiver/document/ExpatReader.h"
#include "quiver/document/OverlappedSource.h"
#if defined(QUIVER_SCANNER)
#include "quiver/document/XmlScanner.h"
#endif
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
    CXmlTreeBuilder builder = MakeBuilder();
    CFastInfosetReader reader(&m_pContext->GetFIContext(), &builder);
    if (!reader.Parse(source.GetData()))
        ParseText(source);
}

void CXmlDocument::ParseText(const CDocumentSource& source)
{
    if (!ScanBytes(source.GetData()))
        RunExpat(source);
}

#if defined(QUIVER_SCANNER)

/// @param scan gets a scanner and tells whether it did not give up; if it did, nothing is left of it.
template <class Scan>
bool CXmlDocument::TryToScan(Scan scan)
{
    // Elements are offered to a filter while there is still something to come, which may yet turn out to be wrong.
    if (m_pfnElementFilter != nullptr)
        return false;
    CXmlScanner::SMade made;
    {
        CXmlTreeBuilder builder = MakeBuilder();
        CXmlScanner scanner(builder, GetExpatOptions());
        if (scan(scanner))
            return true;
        made = scanner.GetMade();
    }
    m_namespaces.clear();
    m_pDocumentElement = nullptr;
    m_pStore.reset();
    made.Forget();
    return false;
}

bool CXmlDocument::ScanBytes(std::string_view document)
{
    return TryToScan([document](CXmlScanner& scanner) { return scanner.ScanBytes(document); });
}

bool CXmlDocument::ScanText(const wchar_t* lpctXml)
{
    if (m_pfnElementFilter != nullptr)
        return false;
    std::string strDocument;
    if (!AppendUtf8(strDocument, lpctXml))
        return false;
    return TryToScan([&strDocument](CXmlScanner& scanner) { return scanner.ScanText(strDocument); });
}

#else

bool CXmlDocument::ScanBytes(std::string_view /*document*/)
{
    return false;
}

bool CXmlDocument::ScanText(const wchar_t* /*lpctXml*/)
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
