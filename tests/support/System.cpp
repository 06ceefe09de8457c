#include "tests/support/System.h"

#include "tests/support/Files.h"

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
// Ahead of the header that needs it.
#include <windows.h>

#include <psapi.h>
#else
#include <sys/resource.h>
#endif

namespace QvTest
{

#if defined(_WIN32)

std::size_t CountOpenFiles()
{
    // Nothing lists the handles of a process, but they are multiples of 4, of which the system gives the lowest.
    constexpr int nLongestGap = 64;
    std::size_t nCount = 0;
    int nGap = 0;
    for (std::uintptr_t nHandle = 4; nGap < nLongestGap; nHandle += 4)
    {
        DWORD dwFlags = 0;
        const auto hAny = reinterpret_cast<HANDLE>(nHandle);
        const bool bIsOpen = ::GetHandleInformation(hAny, &dwFlags) != FALSE;
        nGap = bIsOpen ? 0 : nGap + 1;
        nCount += bIsOpen && ::GetFileType(hAny) == FILE_TYPE_DISK ? 1 : 0;
    }
    return nCount;
}

std::uint64_t GetPeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    EXPECT_TRUE(::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters)));
    return counters.PeakWorkingSetSize;
}

#else

std::size_t CountOpenFiles()
{
    std::error_code error;
    std::size_t nCount = 0;
    for (std::filesystem::directory_iterator it("/proc/self/fd", error), end; it != end; it.increment(error))
        ++nCount;
    return nCount;
}

std::uint64_t GetPeakMemory()
{
    rusage usage{};
    EXPECT_EQ(0, ::getrusage(RUSAGE_SELF, &usage));
    return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

#endif

} // namespace QvTest
