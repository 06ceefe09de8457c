#pragma once

#include <cerrno>

#if defined(_WIN32)
#include "tests/reliability/ImportTable.h"
#endif

/// @file
/// Stands between the whole program, the C library and the libraries that parse and compress included, and its memory, so that the
/// n-th allocation of a thread can be made to fail. To be included by one source of a program.

namespace faults
{

#if defined(_WIN32)
// Of the first thread alone: what belongs to each thread is in memory that the compiler's library allocates when it is asked for.
#define QUIVER_OF_A_THREAD
inline const DWORD g_dwThread = ::GetCurrentThreadId();
inline bool IsOfTheThread()
{
    return ::GetCurrentThreadId() == g_dwThread;
}
#else
#define QUIVER_OF_A_THREAD thread_local
inline bool IsOfTheThread()
{
    return true;
}
#endif

/// Allocations of the thread that still succeed; negative where all do.
inline QUIVER_OF_A_THREAD long g_nAllocationsLeft = -1;
/// Whether all that come behind the one that fails do so too.
inline QUIVER_OF_A_THREAD bool g_bForever = false;
inline QUIVER_OF_A_THREAD long g_nFailed = 0;

#undef QUIVER_OF_A_THREAD

inline bool IsMemoryOut()
{
    if (!IsOfTheThread() || g_nAllocationsLeft < 0)
        return false;
    if (g_nAllocationsLeft > 0)
    {
        --g_nAllocationsLeft;
        return false;
    }
    if (!g_bForever)
        g_nAllocationsLeft = -1;
    ++g_nFailed;
    errno = ENOMEM;
    return true;
}

} // namespace faults

#if defined(_WIN32)
#include "tests/reliability/FailingMemoryWin32.h"
#else
#include "tests/reliability/FailingMemoryPosix.h"
#endif
