#pragma once

#include "quiver/foundation/platform/Platform.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// For the tests of the platform's file operations.

namespace QvTest
{

/// Closes its handle at the end of a test.
class CHandle
{
public:
    explicit CHandle(QvXmlLib9::Platform::Handle handle)
        : m_handle(handle)
    {
    }
    ~CHandle()
    {
        if (IsOpen())
            QvXmlLib9::Platform::CloseHandle(m_handle);
    }
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;

    bool IsOpen() const { return m_handle != QvXmlLib9::Platform::InvalidHandle && m_handle != nullptr; }
    operator QvXmlLib9::Platform::Handle() const { return m_handle; }
    QvXmlLib9::Platform::Handle Release()
    {
        const QvXmlLib9::Platform::Handle handle = m_handle;
        m_handle = nullptr;
        return handle;
    }

private:
    QvXmlLib9::Platform::Handle m_handle;
};

/// Bytes of which no two stretches are alike.
inline std::string Pattern(std::size_t nLength)
{
    std::string strBytes(nLength, 0);
    for (std::size_t i = 0; i < nLength; ++i)
        strBytes[i] = static_cast<char>(i * 7 + i / 251);
    return strBytes;
}

/// The error number of a file in a folder that is missing: POSIX does not tell it from a missing file.
#if defined(_WIN32)
inline const wchar_t* const s_lpctFolderMissing = L"00000003";
#else
inline const wchar_t* const s_lpctFolderMissing = L"00000002";
#endif

/// Longer than what is written at once.
inline const std::string s_strLong = Pattern(200000);

inline bool WriteSync(QvXmlLib9::Platform::Handle hFile, std::string_view bytes)
{
    std::uint32_t dwWritten = 0;
    return QvXmlLib9::Platform::WriteFile(hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &dwWritten,
                                          nullptr);
}

/// Begins an operation as callers do: under way or ended already, but not failed.
inline bool BeginRead(QvXmlLib9::Platform::Handle hFile, std::string& strBuffer,
                      QvXmlLib9::Platform::Overlapped& overlapped)
{
    return QvXmlLib9::Platform::ReadFile(hFile, strBuffer.data(), static_cast<std::uint32_t>(strBuffer.size()), nullptr,
                                         &overlapped) ||
           QvXmlLib9::Platform::GetLastError() == QvXmlLib9::Platform::Error_IoPending;
}

inline bool BeginWrite(QvXmlLib9::Platform::Handle hFile, std::string_view bytes,
                       QvXmlLib9::Platform::Overlapped& overlapped)
{
    return QvXmlLib9::Platform::WriteFile(hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr,
                                          &overlapped) ||
           QvXmlLib9::Platform::GetLastError() == QvXmlLib9::Platform::Error_IoPending;
}

} // namespace QvTest
