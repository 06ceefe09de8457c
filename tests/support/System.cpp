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
    // Nothing lists the handles of a process, but it is known how many there are, and they are small multiples of 4.
    DWORD dwLeft = 0;
    EXPECT_TRUE(::GetProcessHandleCount(::GetCurrentProcess(), &dwLeft));
    std::size_t nCount = 0;
    for (std::uintptr_t nHandle = 4; nHandle < 4096 && dwLeft > 0; nHandle += 4)
    {
        DWORD dwFlags = 0;
        const auto hAny = reinterpret_cast<HANDLE>(nHandle);
        if (!::GetHandleInformation(hAny, &dwFlags))
            continue;
        --dwLeft;
        nCount += ::GetFileType(hAny) == FILE_TYPE_DISK ? 1 : 0;
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
