#include "tests/reliability/Cost.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <linux/perf_event.h>
#include <malloc.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#if defined(QUIVER_TEST_WITH_VALGRIND)
#include <valgrind/callgrind.h>
#endif

// --- Memory -----------------------------------------------------------------------------------------------------------
//
// Of the whole program, the parsers and compressors of other libraries included, so by the functions of the C library.

namespace
{

std::atomic<std::int64_t> g_nLiving{0};
std::atomic<std::int64_t> g_nPeak{0};

void* Count(void* pMemory)
{
    const std::int64_t nNow = g_nLiving += static_cast<std::int64_t>(malloc_usable_size(pMemory));
    if (nNow > g_nPeak)
        g_nPeak = nNow;
    return pMemory;
}

void Forget(void* pMemory)
{
    g_nLiving -= static_cast<std::int64_t>(malloc_usable_size(pMemory));
}

} // namespace

extern "C"
{
    void* __libc_malloc(std::size_t nSize);
    void* __libc_calloc(std::size_t nCount, std::size_t nSize);
    void* __libc_realloc(void* pMemory, std::size_t nSize);
    void* __libc_memalign(std::size_t nAlignment, std::size_t nSize);
    void __libc_free(void* pMemory);

    void* malloc(std::size_t nSize)
    {
        return Count(__libc_malloc(nSize));
    }
    void* calloc(std::size_t nCount, std::size_t nSize)
    {
        return Count(__libc_calloc(nCount, nSize));
    }
    void* realloc(void* pMemory, std::size_t nSize)
    {
        Forget(pMemory);
        void* const pNew = __libc_realloc(pMemory, nSize);
        Count(pNew != nullptr || nSize == 0 ? pNew : pMemory);
        return pNew;
    }
    void* aligned_alloc(std::size_t nAlignment, std::size_t nSize)
    {
        return Count(__libc_memalign(nAlignment, nSize));
    }
    void free(void* pMemory)
    {
        Forget(pMemory);
        __libc_free(pMemory);
    }

    void* mmap(void* pWhere, std::size_t nSize, int nProtection, int nFlags, int nFile, off_t nOffset)
    {
        const long nResult = syscall(SYS_mmap, pWhere, nSize, nProtection, nFlags, nFile, nOffset);
        if (nResult != -1)
        {
            const std::int64_t nNow = g_nLiving += static_cast<std::int64_t>(nSize);
            if (nNow > g_nPeak)
                g_nPeak = nNow;
        }
        return reinterpret_cast<void*>(nResult);
    }
    int munmap(void* pMemory, std::size_t nSize)
    {
        const long nResult = syscall(SYS_munmap, pMemory, nSize);
        if (nResult == 0)
            g_nLiving -= static_cast<std::int64_t>(nSize);
        return static_cast<int>(nResult);
    }
}

namespace cost
{

namespace
{

ECounter s_eCounter = ECounter::None;
int s_nPerf = -1;

bool OpenPerf()
{
    perf_event_attr attributes = {};
    attributes.type = PERF_TYPE_HARDWARE;
    attributes.size = sizeof(attributes);
    attributes.config = PERF_COUNT_HW_INSTRUCTIONS;
    attributes.disabled = 1;
    attributes.exclude_kernel = 1;
    attributes.exclude_hv = 1;
    s_nPerf = static_cast<int>(syscall(SYS_perf_event_open, &attributes, 0, -1, -1, 0));
    return s_nPerf >= 0;
}

std::uint64_t CountByPerf(const std::function<void()>& fnAction)
{
    ioctl(s_nPerf, PERF_EVENT_IOC_RESET, 0);
    ioctl(s_nPerf, PERF_EVENT_IOC_ENABLE, 0);
    fnAction();
    ioctl(s_nPerf, PERF_EVENT_IOC_DISABLE, 0);
    std::uint64_t nCount = 0;
    return ::read(s_nPerf, &nCount, sizeof(nCount)) == sizeof(nCount) ? nCount : 0;
}

std::uint64_t CountByClock(const std::function<void()>& fnAction)
{
    timespec before = {};
    timespec after = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &before);
    fnAction();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &after);
    return static_cast<std::uint64_t>((after.tv_sec - before.tv_sec) * 1000000000 + after.tv_nsec - before.tv_nsec);
}

#if defined(QUIVER_TEST_WITH_VALGRIND)

/// The files that valgrind writes are FOLDER/out.1 and so on, as scripts/check_cost.sh asks for; the last line that counts says the sum.
std::uint64_t CountByCallgrind(const std::function<void()>& fnAction)
{
    static int s_nDumps = 0;
    CALLGRIND_ZERO_STATS;
    fnAction();
    CALLGRIND_DUMP_STATS;
    const std::string strFile = std::string(std::getenv("QUIVER_CALLGRIND_OUT")) + "." + std::to_string(++s_nDumps);
    std::FILE* const pFile = std::fopen(strFile.c_str(), "rb");
    if (pFile == nullptr)
        return 0;
    char szTail[257] = {};
    std::fseek(pFile, -256, SEEK_END);
    const std::size_t nRead = std::fread(szTail, 1, 256, pFile);
    std::fclose(pFile);
    std::remove(strFile.c_str());
    szTail[nRead] = 0;
    const char* const lpcTotals = std::strstr(szTail, "totals: ");
    return lpcTotals != nullptr ? std::strtoull(lpcTotals + 8, nullptr, 10) : 0;
}

bool OpenCallgrind()
{
    return RUNNING_ON_VALGRIND != 0 && std::getenv("QUIVER_CALLGRIND_OUT") != nullptr;
}

#else

std::uint64_t CountByCallgrind(const std::function<void()>& fnAction)
{
    fnAction();
    return 0;
}

bool OpenCallgrind()
{
    return false;
}

#endif

std::uint64_t CountSteps(const std::function<void()>& fnAction)
{
    switch (s_eCounter)
    {
    case ECounter::Perf:
        return CountByPerf(fnAction);
    case ECounter::Callgrind:
        return CountByCallgrind(fnAction);
    case ECounter::Clock:
        return CountByClock(fnAction);
    case ECounter::None:
        break;
    }
    std::fputs("cost: no counter is open\n", stderr);
    std::abort();
}

} // namespace

bool OpenCounter(ECounter eCounter)
{
    s_eCounter = eCounter;
    if (eCounter == ECounter::Perf && !OpenPerf())
        return false;
    if (eCounter == ECounter::Callgrind && !OpenCallgrind())
        return false;
    // A counter that does not count would pass everything.
    volatile std::uint64_t nSum = 0;
    const auto Work = [&nSum]
    {
        for (int n = 0; n < 1000000; ++n)
            nSum = nSum + 1;
    };
    return CountSteps(Work) >= 100000;
}

SUse Measure(const std::function<void()>& fnAction)
{
    SUse use;
    const std::int64_t nBefore = g_nLiving;
    g_nPeak = nBefore;
    use.nSteps = CountSteps(fnAction);
    use.nPeakBytes = static_cast<std::uint64_t>(std::max<std::int64_t>(g_nPeak - nBefore, 0));
    return use;
}

} // namespace cost
