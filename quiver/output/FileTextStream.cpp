#include "quiver/output/FileTextStream.h"

#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <utility>

namespace QvXmlLib9
{

CFileTextStream::CFileTextStream(std::wstring strFileName, XmlEncoding eEncoding)
    : CTextStream(L"CFileTextStream", eEncoding)
    , m_strFileName(std::move(strFileName))
{
}

CFileTextStream::~CFileTextStream()
{
    CloseHandles();
}

void CFileTextStream::Open()
{
    CTextStream::Open();
    CloseHandles();
    const Platform::Handle hFile = Platform::CreateFileForWriting(m_strFileName.c_str(), true);
    if (hFile == Platform::InvalidHandle)
        Throw_FileWriteFailed(m_strFileName, Platform::GetLastError());
    m_hFile = hFile;
    m_hEvent = Platform::CreateAutoResetEvent();
    if (m_hEvent == nullptr)
    {
        const std::uint32_t dwError = Platform::GetLastError();
        CloseHandles();
        throw CQvException(FormatString(L"Failed to create event for file overlap [%s] error [0x%08X]",
                                        m_strFileName.c_str(), dwError));
    }
    m_nFilePos = 0;
    if (!BeginWrite(GetByteOrderMark(GetEncoding())))
    {
        const std::uint32_t dwError = Platform::GetLastError();
        CloseHandles();
        Throw_FileWriteFailed(m_strFileName, dwError);
    }
}

void CFileTextStream::Close()
{
    Flush();
    WaitForWrite();
    if (!CloseHandles())
        Throw_WriteFailed();
    CTextStream::Close();
}

void CFileTextStream::Flush()
{
    if (GetLength() == 0)
        return;
    WaitForWrite();
    m_data = GetBinaryData();
    if (!BeginWrite(m_data.GetView()))
        Throw_WriteFailed();
    m_buffer.Reset();
}

/// Begins to write bytes, which must stay where they are until the write has ended. No bytes end at once.
bool CFileTextStream::BeginWrite(std::string_view bytes)
{
    m_overlapped = Platform::Overlapped();
    m_overlapped.hEvent = m_hEvent;
    m_overlapped.Offset = static_cast<std::uint32_t>(m_nFilePos);
    m_overlapped.OffsetHigh = static_cast<std::uint32_t>(m_nFilePos >> 32);
    return bytes.empty() ||
           Platform::WriteFile(m_hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr,
                               &m_overlapped) ||
           Platform::GetLastError() == Platform::Error_IoPending;
}

void CFileTextStream::WaitForWrite()
{
    std::uint32_t dwWritten = 0;
    if (!Platform::GetOverlappedResult(m_hFile, &m_overlapped, &dwWritten, true) &&
        Platform::GetLastError() != Platform::Error_IoPending)
        Throw_WriteFailed();
    m_nFilePos += dwWritten;
}

/// False if the system reports a failure at closing the file, which it may have kept to itself until then.
bool CFileTextStream::CloseHandles()
{
    // The file goes first: that ends the write under way, and only then may the event and the bytes go.
    const bool bClosed = m_hFile == nullptr || Platform::CloseHandle(m_hFile);
    m_hFile = nullptr;
    if (m_hEvent != nullptr)
        Platform::CloseHandle(m_hEvent);
    m_hEvent = nullptr;
    return bClosed;
}

void CFileTextStream::Throw_WriteFailed()
{
    const std::uint32_t dwError = Platform::GetLastError();
    CloseHandles();
    throw CQvException(FormatString(L"Failed to write data to the file. Error [0x%08X]", dwError));
}

} // namespace QvXmlLib9
