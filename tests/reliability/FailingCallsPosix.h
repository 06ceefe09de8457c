#pragma once

#include "quiver/QvXmlLib.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/support/Files.h"

#include <aio.h>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

/// @file
/// The calls of POSIX: functions of the C library, whose places the program takes.

namespace faults
{

inline constexpr int s_nDenied = EACCES;
inline constexpr int s_nTooManyOpen = EMFILE;
inline constexpr int s_nBroken = EIO;
inline constexpr int s_nDiskFull = ENOSPC;
inline constexpr int s_nQuota = EDQUOT;
/// A call that a signal broke off is begun again.
inline constexpr int s_nBrokenOff = EINTR;
inline constexpr bool s_bBrokenOffIsHarmless = true;
/// One that does less is followed by another for the rest.
inline constexpr bool s_bShortReadIsHarmless = true;
inline constexpr bool s_bShortWriteIsHarmless = true;

/// Control blocks of asynchronous operations whose end is a failure.
inline std::set<const aiocb*> g_failedOperations;

inline bool FailsNow(ECall eCall)
{
    if (!IsDue(eCall) || g_pFault->nError == 0)
        return false;
    errno = g_pFault->nError;
    return true;
}

/// Length that a transfer is left with, or -1 for one that fails.
inline ssize_t GetAllowed(ECall eCall, size_t nLength)
{
    if (!IsDue(eCall))
        return static_cast<ssize_t>(nLength);
    errno = g_pFault->nError;
    return g_pFault->nError != 0 ? -1 : nLength > 1 ? 1 : static_cast<ssize_t>(nLength);
}

template <class TFunction>
TFunction* Real(const char* lpcName)
{
    return reinterpret_cast<TFunction*>(dlsym(RTLD_NEXT, lpcName));
}

/// Puts a fault in force for as long as it lives.
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
    explicit CFileLimit(std::uint64_t nBytes)
    {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = nBytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFileLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        ::signal(SIGXFSZ, SIG_DFL);
    }
    CFileLimit(const CFileLimit&) = delete;
    CFileLimit& operator=(const CFileLimit&) = delete;

private:
    rlimit m_before = {};
};

class CFullDevice
{
public:
    CFullDevice() { EXPECT_TRUE(std::filesystem::exists("/dev/full")); }
    std::wstring GetName() const { return L"/dev/full"; }
};

inline std::sig_atomic_t volatile g_nInterruptions = 0;

/// Signals.
class CInterruptions
{
public:
    CInterruptions()
    {
        g_nInterruptions = 0;
        struct sigaction action = {};
        action.sa_handler = [](int)
        {
            g_nInterruptions = g_nInterruptions + 1;
        };
        ::sigaction(SIGALRM, &action, &m_before);
        const itimerval timer = {{0, 1000}, {0, 1000}};
        ::setitimer(ITIMER_REAL, &timer, nullptr);
    }
    ~CInterruptions()
    {
        const itimerval none = {};
        ::setitimer(ITIMER_REAL, &none, nullptr);
        ::sigaction(SIGALRM, &m_before, nullptr);
    }
    CInterruptions(const CInterruptions&) = delete;
    CInterruptions& operator=(const CInterruptions&) = delete;

    static int GetCount() { return static_cast<int>(g_nInterruptions); }

private:
    struct sigaction m_before = {};
};

class CPipe
{
public:
    CPipe() { EXPECT_EQ(0, ::mkfifo(m_dir.PathOf("pipe").c_str(), 0600)); }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;

    /// Reads what comes to its end.
    void LoadInto(QvXmlLib9::CXmlDocument& document) const
    {
        QvXmlLib9::AsyncFromXmlFile(true);
        document.Load(m_dir.NameOf("pipe").c_str());
    }
    /// Waits for the reader. From here on interruptions are for other threads.
    void Connect()
    {
        sigset_t alarms;
        sigemptyset(&alarms);
        sigaddset(&alarms, SIGALRM);
        pthread_sigmask(SIG_BLOCK, &alarms, nullptr);
        m_nFile = ::open(m_dir.PathOf("pipe").c_str(), O_WRONLY);
    }
    void Close() { ::close(m_nFile); }
    bool Write(std::string_view svBytes)
    {
        return ::write(m_nFile, svBytes.data(), svBytes.size()) == static_cast<ssize_t>(svBytes.size());
    }

private:
    QvTest::CTempDir m_dir;
    int m_nFile = -1;
};

} // namespace faults

#define QUIVER_REAL(name) static const auto s_pfnReal = faults::Real<decltype(name)>(#name)

extern "C"
{
    int open(const char* lpcName, int nFlags, ...)
    {
        QUIVER_REAL(open);
        va_list arguments;
        va_start(arguments, nFlags);
        const mode_t mode = (nFlags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return faults::FailsNow(faults::ECall::Open) ? -1 : s_pfnReal(lpcName, nFlags, mode);
    }
    FILE* fopen(const char* lpcName, const char* lpcMode)
    {
        QUIVER_REAL(fopen);
        return faults::FailsNow(faults::ECall::Open) ? nullptr : s_pfnReal(lpcName, lpcMode);
    }
    FILE* fopen64(const char* lpcName, const char* lpcMode)
    {
        QUIVER_REAL(fopen64);
        return faults::FailsNow(faults::ECall::Open) ? nullptr : s_pfnReal(lpcName, lpcMode);
    }
    ssize_t read(int nFile, void* pBuffer, size_t nLength)
    {
        QUIVER_REAL(read);
        const ssize_t nAllowed = faults::GetAllowed(faults::ECall::Read, nLength);
        return nAllowed < 0 ? -1 : s_pfnReal(nFile, pBuffer, static_cast<size_t>(nAllowed));
    }
    ssize_t pread(int nFile, void* pBuffer, size_t nLength, off_t nOffset)
    {
        QUIVER_REAL(pread);
        const ssize_t nAllowed = faults::GetAllowed(faults::ECall::Read, nLength);
        return nAllowed < 0 ? -1 : s_pfnReal(nFile, pBuffer, static_cast<size_t>(nAllowed), nOffset);
    }
    ssize_t write(int nFile, const void* pBuffer, size_t nLength)
    {
        QUIVER_REAL(write);
        const ssize_t nAllowed = faults::GetAllowed(faults::ECall::Write, nLength);
        return nAllowed < 0 ? -1 : s_pfnReal(nFile, pBuffer, static_cast<size_t>(nAllowed));
    }
    ssize_t pwrite(int nFile, const void* pBuffer, size_t nLength, off_t nOffset)
    {
        QUIVER_REAL(pwrite);
        const ssize_t nAllowed = faults::GetAllowed(faults::ECall::Write, nLength);
        return nAllowed < 0 ? -1 : s_pfnReal(nFile, pBuffer, static_cast<size_t>(nAllowed), nOffset);
    }
    ssize_t writev(int nFile, const iovec* pParts, int nParts)
    {
        QUIVER_REAL(writev);
        // One that does less writes an octet of the first part that has any.
        for (int n = 0; n < nParts; ++n)
        {
            if (pParts[n].iov_len == 0)
                continue;
            const ssize_t nAllowed = faults::GetAllowed(faults::ECall::Write, pParts[n].iov_len);
            if (nAllowed < 0)
                return -1;
            if (static_cast<size_t>(nAllowed) < pParts[n].iov_len)
                return ::write(nFile, pParts[n].iov_base, static_cast<size_t>(nAllowed));
            break;
        }
        return s_pfnReal(nFile, pParts, nParts);
    }
    int close(int nFile)
    {
        QUIVER_REAL(close);
        const bool bFails = faults::FailsNow(faults::ECall::Close);
        const int nErrno = errno;
        const int nResult = s_pfnReal(nFile);
        errno = bFails ? nErrno : errno;
        return bFails ? -1 : nResult;
    }
    int fclose(FILE* pFile)
    {
        QUIVER_REAL(fclose);
        const bool bFails = faults::FailsNow(faults::ECall::Close);
        const int nErrno = errno;
        const int nResult = s_pfnReal(pFile);
        errno = bFails ? nErrno : errno;
        return bFails ? EOF : nResult;
    }
    int fstat(int nFile, struct stat* pStatus) noexcept
    {
        QUIVER_REAL(fstat);
        return faults::FailsNow(faults::ECall::Status) ? -1 : s_pfnReal(nFile, pStatus);
    }
    int stat(const char* lpcName, struct stat* pStatus) noexcept
    {
        QUIVER_REAL(stat);
        return faults::FailsNow(faults::ECall::Status) ? -1 : s_pfnReal(lpcName, pStatus);
    }
    int rename(const char* lpcOld, const char* lpcNew) noexcept
    {
        QUIVER_REAL(rename);
        return faults::FailsNow(faults::ECall::Rename) ? -1 : s_pfnReal(lpcOld, lpcNew);
    }
    int mkdir(const char* lpcName, mode_t mode) noexcept
    {
        QUIVER_REAL(mkdir);
        return faults::FailsNow(faults::ECall::Open) ? -1 : s_pfnReal(lpcName, mode);
    }

    // An asynchronous operation counts twice: it may fail as it begins, and in the end. No signal reaches what carries it out.
    int aio_read(aiocb* pBlock) noexcept
    {
        QUIVER_REAL(aio_read);
        if (faults::FailsNow(faults::ECall::Read))
            return -1;
        if (faults::FailsNow(faults::ECall::Read) && errno != EINTR)
            faults::g_failedOperations.insert(pBlock);
        return s_pfnReal(pBlock);
    }
    int aio_write(aiocb* pBlock) noexcept
    {
        QUIVER_REAL(aio_write);
        if (faults::FailsNow(faults::ECall::Write))
            return -1;
        if (faults::FailsNow(faults::ECall::Write) && errno != EINTR)
            faults::g_failedOperations.insert(pBlock);
        return s_pfnReal(pBlock);
    }
    int aio_error(const aiocb* pBlock) noexcept
    {
        QUIVER_REAL(aio_error);
        const int nResult = s_pfnReal(pBlock);
        return nResult != EINPROGRESS && faults::g_failedOperations.count(pBlock) > 0 ? EIO : nResult;
    }
    ssize_t aio_return(aiocb* pBlock) noexcept
    {
        QUIVER_REAL(aio_return);
        return faults::g_failedOperations.erase(pBlock) > 0 ? (s_pfnReal(pBlock), -1) : s_pfnReal(pBlock);
    }
}

#undef QUIVER_REAL
