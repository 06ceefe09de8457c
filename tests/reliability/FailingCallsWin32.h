#pragma once

#include "quiver/QvXmlLib.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/reliability/ImportTable.h"
#include "tests/support/Files.h"
#include "tests/support/PlatformFiles.h"

#include <atomic>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <thread>

/// @file
/// The calls of Windows, those that the C library makes included.

namespace faults
{

inline constexpr int s_nDenied = ERROR_ACCESS_DENIED;
inline constexpr int s_nTooManyOpen = ERROR_TOO_MANY_OPEN_FILES;
inline constexpr int s_nBroken = ERROR_IO_DEVICE;
inline constexpr int s_nDiskFull = ERROR_DISK_FULL;
inline constexpr int s_nQuota = 1295; // ERROR_DISK_QUOTA_EXCEEDED, which not all headers have
/// Who breaks off a call of Windows means it.
inline constexpr int s_nBrokenOff = ERROR_OPERATION_ABORTED;
inline constexpr bool s_bBrokenOffIsHarmless = false;
/// A file gives less than it was asked at its end, and takes less than it was given when the disk is full.
inline constexpr bool s_bShortReadIsHarmless = false;
inline constexpr bool s_bShortWriteIsHarmless = false;

/// Records of overlapped operations whose end is a failure.
inline std::set<const OVERLAPPED*> g_failedOperations;
/// The longest that a file may get; negative where it may get as long as it will.
inline std::int64_t g_nFileLimit = -1;

inline bool FailsNow(ECall eCall)
{
    if (!IsDue(eCall) || g_pFault->nError == 0)
        return false;
    ::SetLastError(static_cast<DWORD>(g_pFault->nError));
    return true;
}

/// Length that a transfer is left with, or -1 for one that fails.
inline std::int64_t GetAllowed(ECall eCall, DWORD dwLength)
{
    if (!IsDue(eCall))
        return dwLength;
    ::SetLastError(static_cast<DWORD>(g_pFault->nError));
    return g_pFault->nError != 0 ? -1 : dwLength > 1 ? 1 : dwLength;
}

/// Pipes, consoles, events and threads are left alone.
inline bool IsFile(HANDLE hFile)
{
    return (g_pFault != nullptr || g_nFileLimit >= 0) && ::GetFileType(hFile) == FILE_TYPE_DISK;
}

struct SCalls
{
    decltype(&::CreateFileW) pfnCreateFileW = nullptr;
    decltype(&::CreateFileA) pfnCreateFileA = nullptr;
    decltype(&::CreateDirectoryW) pfnCreateDirectoryW = nullptr;
    decltype(&::ReadFile) pfnReadFile = nullptr;
    decltype(&::WriteFile) pfnWriteFile = nullptr;
    decltype(&::GetOverlappedResult) pfnGetOverlappedResult = nullptr;
    decltype(&::CloseHandle) pfnCloseHandle = nullptr;
    decltype(&::GetFileSizeEx) pfnGetFileSizeEx = nullptr;
    decltype(&::GetFileAttributesExW) pfnGetFileAttributesExW = nullptr;
    decltype(&::GetFileAttributesW) pfnGetFileAttributesW = nullptr;
    decltype(&::GetFileInformationByHandle) pfnGetFileInformationByHandle = nullptr;
    decltype(&::MoveFileExW) pfnMoveFileExW = nullptr;
};

inline SCalls g_real;

inline HANDLE WINAPI CreateFileWOrFail(LPCWSTR lpctName, DWORD dwAccess, DWORD dwSharing,
                                       LPSECURITY_ATTRIBUTES pSecurity, DWORD dwDisposition, DWORD dwFlags,
                                       HANDLE hTemplate)
{
    return FailsNow(ECall::Open)
               ? INVALID_HANDLE_VALUE
               : g_real.pfnCreateFileW(lpctName, dwAccess, dwSharing, pSecurity, dwDisposition, dwFlags, hTemplate);
}

inline HANDLE WINAPI CreateFileAOrFail(LPCSTR lpcName, DWORD dwAccess, DWORD dwSharing, LPSECURITY_ATTRIBUTES pSecurity,
                                       DWORD dwDisposition, DWORD dwFlags, HANDLE hTemplate)
{
    return FailsNow(ECall::Open)
               ? INVALID_HANDLE_VALUE
               : g_real.pfnCreateFileA(lpcName, dwAccess, dwSharing, pSecurity, dwDisposition, dwFlags, hTemplate);
}

inline BOOL WINAPI CreateDirectoryWOrFail(LPCWSTR lpctName, LPSECURITY_ATTRIBUTES pSecurity)
{
    return FailsNow(ECall::Open) ? FALSE : g_real.pfnCreateDirectoryW(lpctName, pSecurity);
}

/// An overlapped operation counts twice: it may fail as it begins, and in the end.
inline bool BeginsWell(ECall eCall, const OVERLAPPED* pOverlapped)
{
    if (FailsNow(eCall))
        return false;
    if (FailsNow(eCall))
        g_failedOperations.insert(pOverlapped);
    return true;
}

inline BOOL WINAPI ReadFileOrFail(HANDLE hFile, LPVOID pBuffer, DWORD dwLength, LPDWORD pdwRead,
                                  LPOVERLAPPED pOverlapped)
{
    if (!IsFile(hFile))
        return g_real.pfnReadFile(hFile, pBuffer, dwLength, pdwRead, pOverlapped);
    if (pOverlapped != nullptr)
        return BeginsWell(ECall::Read, pOverlapped) ? g_real.pfnReadFile(hFile, pBuffer, dwLength, pdwRead, pOverlapped)
                                                    : FALSE;
    const std::int64_t nAllowed = GetAllowed(ECall::Read, dwLength);
    return nAllowed < 0 ? FALSE : g_real.pfnReadFile(hFile, pBuffer, static_cast<DWORD>(nAllowed), pdwRead, nullptr);
}

/// Whether there is room for what is to be written.
inline bool IsRoom(HANDLE hFile, DWORD dwLength, const OVERLAPPED* pOverlapped)
{
    LARGE_INTEGER from = {};
    if (pOverlapped != nullptr)
        from.QuadPart = static_cast<LONGLONG>(std::uint64_t{pOverlapped->OffsetHigh} << 32 | pOverlapped->Offset);
    else
        ::SetFilePointerEx(hFile, {}, &from, FILE_CURRENT);
    if (g_nFileLimit < 0 || from.QuadPart + dwLength <= g_nFileLimit)
        return true;
    ::SetLastError(ERROR_DISK_FULL);
    return false;
}

inline BOOL WINAPI WriteFileOrFail(HANDLE hFile, LPCVOID pBuffer, DWORD dwLength, LPDWORD pdwWritten,
                                   LPOVERLAPPED pOverlapped)
{
    if (!IsFile(hFile))
        return g_real.pfnWriteFile(hFile, pBuffer, dwLength, pdwWritten, pOverlapped);
    if (!IsRoom(hFile, dwLength, pOverlapped))
        return FALSE;
    if (pOverlapped != nullptr)
        return BeginsWell(ECall::Write, pOverlapped)
                   ? g_real.pfnWriteFile(hFile, pBuffer, dwLength, pdwWritten, pOverlapped)
                   : FALSE;
    const std::int64_t nAllowed = GetAllowed(ECall::Write, dwLength);
    return nAllowed < 0 ? FALSE
                        : g_real.pfnWriteFile(hFile, pBuffer, static_cast<DWORD>(nAllowed), pdwWritten, nullptr);
}

inline BOOL WINAPI GetOverlappedResultOrFail(HANDLE hFile, LPOVERLAPPED pOverlapped, LPDWORD pdwBytes, BOOL bWait)
{
    const BOOL bDone = g_real.pfnGetOverlappedResult(hFile, pOverlapped, pdwBytes, bWait);
    if (!bDone || g_failedOperations.erase(pOverlapped) == 0)
        return bDone;
    *pdwBytes = 0;
    ::SetLastError(ERROR_IO_DEVICE);
    return FALSE;
}

inline BOOL WINAPI CloseHandleOrFail(HANDLE hFile)
{
    const bool bFails = IsFile(hFile) && FailsNow(ECall::Close);
    const BOOL bDone = g_real.pfnCloseHandle(hFile);
    if (bFails)
        ::SetLastError(static_cast<DWORD>(g_pFault->nError));
    return bFails ? FALSE : bDone;
}

inline BOOL WINAPI GetFileSizeExOrFail(HANDLE hFile, PLARGE_INTEGER pSize)
{
    return FailsNow(ECall::Status) ? FALSE : g_real.pfnGetFileSizeEx(hFile, pSize);
}

inline BOOL WINAPI GetFileAttributesExWOrFail(LPCWSTR lpctName, GET_FILEEX_INFO_LEVELS eLevel, LPVOID pInformation)
{
    return FailsNow(ECall::Status) ? FALSE : g_real.pfnGetFileAttributesExW(lpctName, eLevel, pInformation);
}

inline DWORD WINAPI GetFileAttributesWOrFail(LPCWSTR lpctName)
{
    return FailsNow(ECall::Status) ? INVALID_FILE_ATTRIBUTES : g_real.pfnGetFileAttributesW(lpctName);
}

inline BOOL WINAPI GetFileInformationByHandleOrFail(HANDLE hFile, LPBY_HANDLE_FILE_INFORMATION pInformation)
{
    return FailsNow(ECall::Status) ? FALSE : g_real.pfnGetFileInformationByHandle(hFile, pInformation);
}

inline BOOL WINAPI MoveFileExWOrFail(LPCWSTR lpctOld, LPCWSTR lpctNew, DWORD dwFlags)
{
    return FailsNow(ECall::Rename) ? FALSE : g_real.pfnMoveFileExW(lpctOld, lpctNew, dwFlags);
}

/// Replaces the calls ahead of the first test.
inline const bool g_bReplaced = []
{
    g_real.pfnCreateFileW = Replace("CreateFileW", CreateFileWOrFail);
    g_real.pfnCreateFileA = Replace("CreateFileA", CreateFileAOrFail);
    g_real.pfnCreateDirectoryW = Replace("CreateDirectoryW", CreateDirectoryWOrFail);
    g_real.pfnReadFile = Replace("ReadFile", ReadFileOrFail);
    g_real.pfnWriteFile = Replace("WriteFile", WriteFileOrFail);
    g_real.pfnGetOverlappedResult = Replace("GetOverlappedResult", GetOverlappedResultOrFail);
    g_real.pfnCloseHandle = Replace("CloseHandle", CloseHandleOrFail);
    g_real.pfnGetFileSizeEx = Replace("GetFileSizeEx", GetFileSizeExOrFail);
    g_real.pfnGetFileAttributesExW = Replace("GetFileAttributesExW", GetFileAttributesExWOrFail);
    g_real.pfnGetFileAttributesW = Replace("GetFileAttributesW", GetFileAttributesWOrFail);
    g_real.pfnGetFileInformationByHandle = Replace("GetFileInformationByHandle", GetFileInformationByHandleOrFail);
    g_real.pfnMoveFileExW = Replace("MoveFileExW", MoveFileExWOrFail);
    return true;
}();

class CInForce
{
public:
    explicit CInForce(SFault& fault) { g_pFault = &fault; }
    ~CInForce()
    {
        g_pFault = nullptr;
        g_failedOperations.clear();
    }
    CInForce(const CInForce&) = delete;
    CInForce& operator=(const CInForce&) = delete;
};

/// @param nBytes the longest that a file may get.
class CFileLimit
{
public:
    explicit CFileLimit(std::uint64_t nBytes) { g_nFileLimit = static_cast<std::int64_t>(nBytes); }
    ~CFileLimit() { g_nFileLimit = -1; }
    CFileLimit(const CFileLimit&) = delete;
    CFileLimit& operator=(const CFileLimit&) = delete;
};

class CFullDevice
{
public:
    std::wstring GetName() const { return m_dir.NameOf("file"); }

private:
    QvTest::CTempDir m_dir;
    CFileLimit m_limit{0};
};

/// Stops the thread and lets it go on, as debuggers and collectors of garbage do.
class CInterruptions
{
public:
    CInterruptions()
    {
        EXPECT_TRUE(::DuplicateHandle(::GetCurrentProcess(), ::GetCurrentThread(), ::GetCurrentProcess(), &m_hThread, 0,
                                      FALSE, DUPLICATE_SAME_ACCESS));
        s_nCount = 0;
        m_interrupter = std::thread(
            [this]
            {
                // What the other holds when it is stopped must not be waited for until it goes on.
                while (!m_bEnd)
                {
                    ::Sleep(1);
                    if (::SuspendThread(m_hThread) != static_cast<DWORD>(-1))
                    {
                        ::ResumeThread(m_hThread);
                        ++s_nCount;
                    }
                }
            });
    }
    ~CInterruptions()
    {
        m_bEnd = true;
        m_interrupter.join();
        ::CloseHandle(m_hThread);
    }
    CInterruptions(const CInterruptions&) = delete;
    CInterruptions& operator=(const CInterruptions&) = delete;

    static int GetCount() { return s_nCount; }

private:
    static inline std::atomic<int> s_nCount{0};
    HANDLE m_hThread = nullptr;
    std::atomic<bool> m_bEnd{false};
    std::thread m_interrupter;
};

class CPipe
{
public:
    CPipe()
        : m_strName(L"\\\\.\\pipe\\quiver-" + std::to_wstring(::GetCurrentProcessId()))
        , m_hPipe(::CreateNamedPipeW(m_strName.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096,
                                     0, nullptr))
    {
        EXPECT_NE(INVALID_HANDLE_VALUE, m_hPipe);
    }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;

    /// Reads what comes to its end: in pieces, for a pipe of Windows has no length, and a read of it takes what one write gave.
    void LoadInto(QvXmlLib9::CXmlDocument& document) const
    {
        const QvTest::CHandle hFile(QvXmlLib9::Platform::OpenFileForReading(m_strName.c_str(), false));
        EXPECT_TRUE(hFile.IsOpen());
        std::string strText;
        unsigned char piece[64];
        std::uint32_t dwRead = 0;
        while (QvXmlLib9::Platform::ReadFile(hFile, piece, sizeof(piece), &dwRead, nullptr) && dwRead != 0)
            strText.append(reinterpret_cast<const char*>(piece), dwRead);
        document.LoadXmlStream(reinterpret_cast<unsigned char*>(strText.data()),
                               static_cast<unsigned long>(strText.size()));
    }
    /// Waits for the reader.
    void Connect() { ::ConnectNamedPipe(m_hPipe, nullptr); }
    void Close() { ::CloseHandle(m_hPipe); }
    bool Write(std::string_view svBytes)
    {
        DWORD dwWritten = 0;
        return ::WriteFile(m_hPipe, svBytes.data(), static_cast<DWORD>(svBytes.size()), &dwWritten, nullptr) &&
               dwWritten == svBytes.size();
    }

private:
    std::wstring m_strName;
    HANDLE m_hPipe;
};

} // namespace faults
