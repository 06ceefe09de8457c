#include "quiver/document/DocumentSource.h"

#include "quiver/document/SourceFile.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/foundation/platform/Platform.h"

#include <cstdint>
#include <cstring>

namespace QvXmlLib9
{

namespace
{

unsigned long ToDword(std::size_t nLength)
{
    return static_cast<unsigned long>(nLength) & 0xFFFFFFFF;
}

} // namespace

CDocumentSource CDocumentSource::FromMemory(const void* pData, std::size_t nLength)
{
    return CDocumentSource(static_cast<const unsigned char*>(pData), ToDword(nLength));
}

CDocumentSource CDocumentSource::FromText(std::wstring_view text)
{
    const std::size_t nBytes = (GetUtf16Length(text) + 1) * 2;
    const unsigned long dwDataLen = ToDword(nBytes);
    if (dwDataLen == 0)
        throw CQvException(L"XML String is empty!");
    std::unique_ptr<unsigned char[]> pbyData(new unsigned char[nBytes]);
    pbyData[0] = 0xFF;
    pbyData[1] = 0xFE;
    WriteUtf16LittleEndian(text, pbyData.get() + 2);
    return CDocumentSource(std::move(pbyData), dwDataLen);
}

CDocumentSource CDocumentSource::FromFile(const wchar_t* lpctFileName)
{
    const CSourceFile file(lpctFileName, false);
    std::uint32_t dwHigh = 0;
    const std::uint32_t dwSize = Platform::GetFileSize(file.Get(), &dwHigh);
    if (dwHigh == 0xFFFFFFFF)
        throw CSourceFile::MakeException(L"Failed to get the size of the file [%s] Error [0x%08x]", lpctFileName);
    std::unique_ptr<unsigned char[]> pbyData(new unsigned char[dwSize]);
    std::uint32_t dwRead = 0;
    if (!Platform::ReadFile(file.Get(), pbyData.get(), dwSize, &dwRead, nullptr) || dwRead < dwSize)
        throw CSourceFile::MakeException(L"Failed to read the contents of the file [%s] Error [0x%08x]", lpctFileName);
    return CDocumentSource(std::move(pbyData), dwSize);
}

/// Whether the bytes can be a gzip or zlib stream, by the first ones of their headers (RFC 1952, 2.3.1; RFC 1950, 2.2).
/// Text of XML never can, and is spared a copy and an attempt to inflate it.
bool CDocumentSource::LooksCompressed() const
{
    return m_dwDataLen > 0 && (m_pbyData[0] == 0x1F || (m_pbyData[0] & 0x0F) == 8);
}

CDocumentSource CDocumentSource::Inflate(CDocumentSource source)
{
    if (!source.LooksCompressed())
        return source;
    unsigned long dwDataLen = source.m_dwDataLen;
    std::unique_ptr<unsigned char[]> pbyData(new unsigned char[dwDataLen]);
    std::memcpy(pbyData.get(), source.m_pbyData, dwDataLen);
    unsigned char* pbyInflated = pbyData.get();
    CQvZip::DecompressBuffer(&pbyInflated, &dwDataLen);
    static_cast<void>(pbyData.release());
    pbyData.reset(pbyInflated);
    return CDocumentSource(std::move(pbyData), dwDataLen);
}

} // namespace QvXmlLib9
