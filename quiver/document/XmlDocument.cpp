#include "quiver/document/XmlDocument.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/ExpatReader.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/fastinfoset/FastInfosetReader.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace QvXmlLib9
{

namespace
{

constexpr std::uint32_t s_dwChunkSize = 0x20000;

/// Set by AsyncFromXmlFile.
bool s_bAsyncFromXmlFile = false;

/// Lengths of input have 32 bits; what is longer is read by its low word.
template <class Integer>
unsigned long ToDword(Integer nLength)
{
    return static_cast<unsigned long>(nLength) & 0xFFFFFFFF;
}

CQvException MakeFileException(const wchar_t* lpctFormat, const wchar_t* lpctFileName)
{
    const std::uint32_t dwError = Platform::GetLastError();
    return CQvException(FormatString(lpctFormat, lpctFileName, dwError));
}

CQvException MakeChunkException()
{
    return CQvException(
        FormatString(L"Failed to read the contents of the file. Error [0x%08x]", Platform::GetLastError()));
}

/// An open file or event that is closed on every path.
class CHandle
{
public:
    explicit CHandle(Platform::Handle handle = nullptr)
        : m_handle(handle)
    {
    }
    ~CHandle() { Close(); }
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;

    Platform::Handle Get() const { return m_handle; }
    void Set(Platform::Handle handle) { m_handle = handle; }
    void Close()
    {
        if (m_handle != nullptr && m_handle != Platform::InvalidHandle)
            Platform::CloseHandle(m_handle);
        m_handle = nullptr;
    }

private:
    Platform::Handle m_handle;
};

void OpenFile(CHandle& hFile, const wchar_t* lpctFileName, bool bOverlapped)
{
    hFile.Set(Platform::OpenFileForReading(lpctFileName, bOverlapped));
    if (hFile.Get() == Platform::InvalidHandle)
        throw MakeFileException(L"Failed to open the file [%s] Error [0x%08x]", lpctFileName);
}

/// Whether data can be a gzip or zlib stream, by the first bytes of their headers (RFC 1952, 2.3.1; RFC 1950, 2.2).
/// Text of XML never can, and is spared a copy and an attempt to inflate it.
bool LooksCompressed(const unsigned char* pbyData, unsigned long dwDataLen)
{
    return dwDataLen > 0 && (pbyData[0] == 0x1F || (pbyData[0] & 0x0F) == 8);
}

template <class Char>
void AppendRuns(CXmlTextArena& texts, CXmlText*& pText, std::basic_string_view<Char> text)
{
    constexpr Char cCarriageReturn = 0x000D;
    while (!text.empty())
    {
        const std::basic_string_view<Char> run = text.substr(0, text.find(cCarriageReturn));
        if (!run.empty())
            texts.Append(pText, run);
        text.remove_prefix(std::min(run.size() + 1, text.size()));
    }
}

} // namespace

/// Lends the document its input for the time of a load.
class CXmlDocument::CInput
{
public:
    CInput(CXmlDocument& doc, const unsigned char* pbyData, unsigned long dwDataLen)
        : m_doc(doc)
    {
        m_doc.m_pbyData = pbyData;
        m_doc.m_dwDataLen = dwDataLen;
    }
    ~CInput()
    {
        m_doc.m_pbyData = nullptr;
        m_doc.m_dwDataLen = 0;
    }
    CInput(const CInput&) = delete;
    CInput& operator=(const CInput&) = delete;

private:
    CXmlDocument& m_doc;
};

/// The file of an overlapped load. Closing the file ends a read that is still under way, so the buffers go last.
struct CXmlDocument::SFileInput
{
    explicit SFileInput(CXmlDocument& doc_)
        : doc(doc_)
        , pbyData(new unsigned char[s_dwChunkSize])
    {
        doc.m_pFileInput = this;
    }
    ~SFileInput()
    {
        Close();
        doc.m_pFileInput = nullptr;
        doc.m_pbyData = nullptr;
        doc.m_dwDataLen = 0;
    }
    SFileInput(const SFileInput&) = delete;
    SFileInput& operator=(const SFileInput&) = delete;

    void Close()
    {
        hFile.Close();
        hEvent.Close();
    }

    CXmlDocument& doc;
    std::unique_ptr<unsigned char[]> pbyData;
    std::unique_ptr<unsigned char[]> pbySpare;
    Platform::Overlapped overlapped;
    std::uint64_t nFileOffset = 0;
    CHandle hEvent;
    CHandle hFile;
};

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
    m_pElementStack.clear();
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
    const CInput input(*this, reinterpret_cast<const unsigned char*>(lpcXml), ToDword(nLength));
    ParseText();
}

void CXmlDocument::LoadXml(const wchar_t* lpctXml)
{
    Cleanup();
    const std::wstring_view text(lpctXml);
    const std::size_t nBytes = (GetUtf16Length(text) + 1) * 2;
    const unsigned long dwDataLen = ToDword(nBytes);
    if (dwDataLen == 0)
        throw CQvException(L"XML String is empty!");
    const std::unique_ptr<unsigned char[]> pbyData(new unsigned char[nBytes]);
    pbyData[0] = 0xFF;
    pbyData[1] = 0xFE;
    WriteUtf16LittleEndian(text, pbyData.get() + 2);
    const CInput input(*this, pbyData.get(), dwDataLen);
    ParseText();
}

void CXmlDocument::LoadXmlStream(unsigned char* const pData, unsigned long ulLength)
{
    Cleanup();
    if (ulLength == 0)
        throw CQvException(L"XML Stream is empty!");
    const CInput input(*this, pData, ToDword(ulLength));
    Parse();
}

void CXmlDocument::Load(const wchar_t* lpctFileName)
{
    Cleanup();
    if (s_bAsyncFromXmlFile)
        LoadOverlapped(lpctFileName);
    else
        LoadWhole(lpctFileName);
}

void CXmlDocument::LoadWhole(const wchar_t* lpctFileName)
{
    CHandle hFile;
    OpenFile(hFile, lpctFileName, false);
    std::uint32_t dwHigh = 0;
    const std::uint32_t dwSize = Platform::GetFileSize(hFile.Get(), &dwHigh);
    if (dwHigh == 0xFFFFFFFF)
        throw MakeFileException(L"Failed to get the size of the file [%s] Error [0x%08x]", lpctFileName);
    const std::unique_ptr<unsigned char[]> pbyData(new unsigned char[dwSize]);
    std::uint32_t dwRead = 0;
    if (!Platform::ReadFile(hFile.Get(), pbyData.get(), dwSize, &dwRead, nullptr) || dwRead < dwSize)
        throw MakeFileException(L"Failed to read the contents of the file [%s] Error [0x%08x]", lpctFileName);
    hFile.Close();
    const CInput input(*this, pbyData.get(), dwSize);
    Parse();
}

void CXmlDocument::LoadOverlapped(const wchar_t* lpctFileName)
{
    SFileInput file(*this);
    OpenFile(file.hFile, lpctFileName, true);
    file.hEvent.Set(Platform::CreateAutoResetEvent());
    if (file.hEvent.Get() == Platform::InvalidHandle)
        throw MakeFileException(L"Failed to create event for file overlap [%s] error [0x%08X]", lpctFileName);
    const bool bEof = ReadChunkFromFile(file.pbyData.get());
    std::uint32_t dwRead = 0;
    if (!GetChunk(!bEof, dwRead))
        throw MakeFileException(L"Failed to read the contents of the file [%s] Error [0x%08x]", lpctFileName);
    TakeChunk(dwRead);
    AsyncParse(dwRead < s_dwChunkSize);
}

bool CXmlDocument::ReadChunkFromFile(unsigned char* pBuffer)
{
    SFileInput& file = *m_pFileInput;
    file.overlapped = Platform::Overlapped();
    file.overlapped.hEvent = file.hEvent.Get();
    file.overlapped.Offset = static_cast<std::uint32_t>(file.nFileOffset);
    file.overlapped.OffsetHigh = static_cast<std::uint32_t>(file.nFileOffset >> 32);
    if (Platform::ReadFile(file.hFile.Get(), pBuffer, s_dwChunkSize, nullptr, &file.overlapped))
        return false;
    const std::uint32_t dwError = Platform::GetLastError();
    if (dwError == Platform::Error_IoPending)
        return false;
    if (dwError == Platform::Error_HandleEof)
        return true;
    CQvException exception = MakeChunkException();
    file.Close();
    throw exception;
}

/// Takes the result of the read that ReadChunkFromFile has begun; false if it is the failure of an end of file.
bool CXmlDocument::GetChunk(bool bWait, std::uint32_t& dwRead)
{
    dwRead = 0;
    SFileInput& file = *m_pFileInput;
    if (Platform::GetOverlappedResult(file.hFile.Get(), &file.overlapped, &dwRead, bWait))
        return true;
    // An end of file that is reported only here is the failure, while any other error counts as the end of the file
    // (docs/compatibility.md: End of an overlapped file).
    dwRead = 0;
    return Platform::GetLastError() != Platform::Error_HandleEof;
}

void CXmlDocument::TakeChunk(std::uint32_t dwRead)
{
    m_pFileInput->nFileOffset += dwRead;
    m_pbyData = m_pFileInput->pbyData.get();
    m_dwDataLen = dwRead;
}

void CXmlDocument::AsyncParse(bool bFinal)
{
    try
    {
        ParseChunks(bFinal);
    }
    catch (const CQvException& exception)
    {
        m_pFileInput->Close();
        Cleanup();
        throw CQvException(exception);
    }
    catch (...)
    {
        m_pFileInput->Close();
        Cleanup();
        throw;
    }
}

void CXmlDocument::ParseChunks(bool bFinal)
{
    CExpatReader reader(*this);
    reader.Init();
    SFileInput& file = *m_pFileInput;
    file.pbySpare.reset(new unsigned char[s_dwChunkSize]);
    while (!bFinal)
    {
        const bool bChunkEof = ReadChunkFromFile(file.pbySpare.get());
        reader.Parse(false);
        std::uint32_t dwRead = 0;
        if (!GetChunk(!bChunkEof, dwRead))
            throw MakeChunkException();
        file.pbyData.swap(file.pbySpare);
        TakeChunk(dwRead);
        bFinal = dwRead < s_dwChunkSize;
    }
    reader.Parse(true);
    Throw_IfNoRoot();
}

void CXmlDocument::Parse()
{
    if (!LooksCompressed(m_pbyData, m_dwDataLen))
    {
        ParseUncompressed();
        return;
    }
    unsigned long dwDataLen = m_dwDataLen;
    std::unique_ptr<unsigned char[]> pbyData(new unsigned char[dwDataLen]);
    std::memcpy(pbyData.get(), m_pbyData, dwDataLen);
    unsigned char* pbyInflated = pbyData.get();
    CQvZip::DecompressBuffer(&pbyInflated, &dwDataLen);
    static_cast<void>(pbyData.release());
    pbyData.reset(pbyInflated);
    const CInput input(*this, pbyData.get(), dwDataLen);
    ParseUncompressed();
}

void CXmlDocument::ParseUncompressed()
{
    CFastInfosetReader reader(&m_pContext->GetFIContext(), this);
    if (!reader.Parse())
        ParseText();
}

void CXmlDocument::ParseText()
{
    CExpatReader reader(*this);
    reader.Init();
    reader.Parse(true);
    Throw_IfNoRoot();
}

void CXmlDocument::Throw_IfNoRoot() const
{
    if (m_pDocumentElement == nullptr)
        throw CQvException(L"Invalid or empty XML document");
}

std::wstring CXmlDocument::LookupNamespaceFromAlias(const wchar_t* lpctAlias) const
{
    const auto it = m_namespaces.find(ToUtf16Units(lpctAlias));
    return it != m_namespaces.end() ? it->second : std::wstring();
}

CXmlNodeStore& CXmlDocument::Store()
{
    if (m_pStore == nullptr)
        m_pStore = std::make_shared<CXmlNodeStore>(this);
    return *m_pStore;
}

const SXmlName& CXmlDocument::InternName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName)
{
    return Store().Names().Find(strNamespaceURI, strLocalName);
}

CXmlElement* CXmlDocument::AddDocElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName)
{
    return AddDocElement(InternName(lpctNamespaceUri, lpctLocalName));
}

CXmlElement* CXmlDocument::AddDocElement(const SXmlName& name)
{
    if (m_pfnElementFilter != nullptr)
        Store().PushMark(nullptr);
    m_pDocumentElement = Store().NewElement(name);
    Store().SetRoot(m_pDocumentElement);
    m_pElementStack.push_back(m_pDocumentElement);
    return m_pDocumentElement;
}

CXmlElement* CXmlDocument::AddChildElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName)
{
    return AddChildElement(InternName(lpctNamespaceUri, lpctLocalName));
}

CXmlElement* CXmlDocument::AddChildElement(const SXmlName& name)
{
    CXmlElement& parent = *m_pElementStack.back();
    if (m_pfnElementFilter != nullptr)
        Store().PushMark(parent.m_pLastChild);
    CXmlElement* const pElement = parent.NewChild(name);
    m_pElementStack.push_back(pElement);
    return pElement;
}

void CXmlDocument::EndElement()
{
    CXmlElement* const pElement = m_pElementStack.back();
    m_pElementStack.pop_back();
    if (m_pfnElementFilter == nullptr)
        return;
    const CXmlNodeStore::SMark mark = Store().PopMark();
    if (!m_pfnElementFilter(pElement) || m_pElementStack.empty())
        return;
    Store().Destroy(m_pElementStack.back()->RemoveLastChild(mark.pBefore));
    Store().Texts().Rewind(mark.texts);
}

void CXmlDocument::AddElementAttribute(CXmlElement* pElement, const std::wstring& strLocalName,
                                       const std::wstring& strValue, const std::wstring& strNamespaceURI)
{
    pElement->AddAttribute(strLocalName, strValue, strNamespaceURI);
}

void CXmlDocument::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, const std::wstring& strValue)
{
    pElement->Store().Texts().Append(pElement->NewAttribute(name).m_pValue, strValue);
}

void CXmlDocument::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::string_view utf8Value)
{
    pElement->Store().Texts().Append(pElement->NewAttribute(name).m_pValue, utf8Value);
}

void CXmlDocument::AddElementAttribute(CXmlElement* pElement, const SXmlName& name, CXmlText* pValue)
{
    pElement->NewAttribute(name).m_pValue = pValue;
}

template <class Char>
CXmlText* CXmlDocument::MakeSharedValue(std::basic_string_view<Char> value)
{
    return Store().NewSharedText([value](CXmlTextArena& texts, CXmlText*& pText) { texts.Append(pText, value); });
}

template <class Char>
CXmlText* CXmlDocument::MakeSharedText(std::basic_string_view<Char> text)
{
    text = text.substr(0, text.find(Char()));
    return Store().NewSharedText([text](CXmlTextArena& texts, CXmlText*& pText) { AppendRuns(texts, pText, text); });
}

template CXmlText* CXmlDocument::MakeSharedValue(std::string_view value);
template CXmlText* CXmlDocument::MakeSharedValue(std::wstring_view value);
template CXmlText* CXmlDocument::MakeSharedText(std::string_view text);
template CXmlText* CXmlDocument::MakeSharedText(std::wstring_view text);

void CXmlDocument::AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText)
{
    AppendTextExcludingCR(pElement, lpctText, 0xFFFFFFFF);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText, unsigned long ulLength)
{
    const wchar_t* lpctEnd = lpctText;
    for (; ulLength > 0 && *lpctEnd != 0; --ulLength)
        ++lpctEnd;
    AppendRuns(pElement->Store().Texts(), pElement->m_pText,
               std::wstring_view(lpctText, static_cast<std::size_t>(lpctEnd - lpctText)));
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* pElement, std::string_view utf8Text)
{
    AppendRuns(pElement->Store().Texts(), pElement->m_pText, utf8Text);
}

} // namespace QvXmlLib9
