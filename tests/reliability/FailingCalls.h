#pragma once

#include <aio.h>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <functional>
#include <set>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

/// @file
/// Stands between the whole program and the calls of the system that open, read, write and close files, so that the n-th one can
/// be made to fail, to do less than it was asked, or to have something done ahead of it. To be included by one source of a program.

namespace faults
{

enum class ECall
{
    Open,
    Read,
    Write,
    Close,
    Status, ///< of a file
    Rename,
    Any
};

/// The fault that is in force: the n-th call of a kind, counted from 0.
struct SFault
{
    ECall eCall = ECall::Any;
    int nAhead = 0;
    int nErrno = 0;                ///< what it fails with; 0 for a call that does less
    bool bForever = false;         ///< all calls from there on
    std::function<void()> fnAhead; ///< done ahead of the call, which then goes on
    bool bMet = false;
};

inline SFault* g_pFault = nullptr;
/// Control blocks of asynchronous operations whose end is a failure.
inline std::set<const aiocb*> g_failedOperations;

/// Whether the present call is the one. Calls of what is done ahead are let through.
inline bool IsDue(ECall eCall)
{
    SFault* const pFault = g_pFault;
    if (pFault == nullptr || (pFault->eCall != ECall::Any && pFault->eCall != eCall))
        return false;
    if (pFault->nAhead-- != 0 && !(pFault->bForever && pFault->bMet))
        return false;
    pFault->bMet = true;
    if (pFault->fnAhead != nullptr)
    {
        g_pFault = nullptr;
        pFault->fnAhead();
        g_pFault = pFault;
        return false;
    }
    return true;
}

inline bool FailsNow(ECall eCall)
{
    if (!IsDue(eCall) || g_pFault->nErrno == 0)
        return false;
    errno = g_pFault->nErrno;
    return true;
}

/// Length that a transfer is left with, or -1 for one that fails.
inline ssize_t GetAllowed(ECall eCall, size_t nLength)
{
    if (!IsDue(eCall))
        return static_cast<ssize_t>(nLength);
    errno = g_pFault->nErrno;
    return g_pFault->nErrno != 0 ? -1 : nLength > 1 ? 1 : static_cast<ssize_t>(nLength);
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
