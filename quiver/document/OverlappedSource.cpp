#include "quiver/document/OverlappedSource.h"

#include "quiver/foundation/Functions.h"

namespace QvXmlLib9
{

namespace
{

CQvException MakeChunkException()
{
    return CQvException(
        FormatString(L"Failed to read the contents of the file. Error [0x%08x]", Platform::GetLastError()));
}

} // namespace

COverlappedSource::COverlappedSource(const wchar_t* lpctFileName)
    : m_pbyData(new unsigned char[s_dwChunkSize])
    , m_file(lpctFileName, true)
    , m_event(Platform::CreateAutoResetEvent())
{
    if (m_event.Get() == Platform::InvalidHandle)
        throw CSourceFile::MakeException(L"Failed to create event for file overlap [%s] error [0x%08X]", lpctFileName);
    const bool bEof = ReadChunkFromFile(m_pbyData.get());
    std::uint32_t dwRead = 0;
    if (!FinishChunk(!bEof, dwRead))
        throw CSourceFile::MakeException(L"Failed to read the contents of the file [%s] Error [0x%08x]", lpctFileName);
    TakeChunk(dwRead);
}

void COverlappedSource::Close()
{
    m_file.Close();
    m_event.Close();
}

void COverlappedSource::ReadAhead()
{
    if (m_pbySpare == nullptr)
        m_pbySpare.reset(new unsigned char[s_dwChunkSize]);
    m_bChunkEof = ReadChunkFromFile(m_pbySpare.get());
}

void COverlappedSource::Advance()
{
    std::uint32_t dwRead = 0;
    if (!FinishChunk(!m_bChunkEof, dwRead))
        throw MakeChunkException();
    m_pbyData.swap(m_pbySpare);
    TakeChunk(dwRead);
}

/// Begins a read; true if it has failed at the end of the file.
bool COverlappedSource::ReadChunkFromFile(unsigned char* pBuffer)
{
    m_overlapped = Platform::Overlapped();
    m_overlapped.hEvent = m_event.Get();
    m_overlapped.Offset = static_cast<std::uint32_t>(m_nFileOffset);
    m_overlapped.OffsetHigh = static_cast<std::uint32_t>(m_nFileOffset >> 32);
    if (Platform::ReadFile(m_file.Get(), pBuffer, s_dwChunkSize, nullptr, &m_overlapped))
        return false;
    const std::uint32_t dwError = Platform::GetLastError();
    if (dwError == Platform::Error_IoPending)
        return false;
    if (dwError == Platform::Error_HandleEof)
        return true;
    CQvException exception = MakeChunkException();
    Close();
    throw exception;
}

/// Takes the result of the read that ReadChunkFromFile has begun; false if it is the failure of an end of file.
bool COverlappedSource::FinishChunk(bool bWait, std::uint32_t& dwRead)
{
    dwRead = 0;
    if (Platform::GetOverlappedResult(m_file.Get(), &m_overlapped, &dwRead, bWait))
        return true;
    // An end of file that is reported only here is the failure, while any other error counts as the end of the file
    // (docs/compatibility.md: End of an overlapped file).
    dwRead = 0;
    return Platform::GetLastError() != Platform::Error_HandleEof;
}

void COverlappedSource::TakeChunk(std::uint32_t dwRead)
{
    m_nFileOffset += dwRead;
    m_dwDataLen = dwRead;
}

} // namespace QvXmlLib9
