#include "quiver/document/SourceFile.h"

#include "quiver/foundation/Functions.h"

#include <cstdint>

namespace QvXmlLib9
{

void CSourceHandle::Close()
{
    if (m_handle != nullptr && m_handle != Platform::InvalidHandle)
        Platform::CloseHandle(m_handle);
    m_handle = nullptr;
}

CSourceFile::CSourceFile(const wchar_t* lpctFileName, bool bOverlapped)
    : CSourceHandle(Platform::OpenFileForReading(lpctFileName, bOverlapped))
{
    if (Get() == Platform::InvalidHandle)
        throw MakeException(L"Failed to open the file [%s] Error [0x%08x]", lpctFileName);
}

CQvException CSourceFile::MakeException(const wchar_t* lpctFormat, const wchar_t* lpctFileName)
{
    const std::uint32_t dwError = Platform::GetLastError();
    return CQvException(FormatString(lpctFormat, lpctFileName, dwError));
}

} // namespace QvXmlLib9
