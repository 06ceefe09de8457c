#pragma once

// What a program asks the operating system about itself.

#include <cstdio>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
// Ahead of the others, of which one needs it.
#include <windows.h>

#include <io.h>
#include <psapi.h>
#else
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace example
{

/// Whether somebody watches standard error.
inline bool IsErrorOutputATerminal()
{
#if defined(_WIN32)
    return ::_isatty(2) != 0;
#else
    return ::isatty(STDERR_FILENO) != 0;
#endif
}

/// The most memory that the process has had at a time, in bytes.
inline double GetPeakMemory()
{
#if defined(_WIN32)
    PROCESS_MEMORY_COUNTERS counters{};
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters));
    return static_cast<double>(counters.PeakWorkingSetSize);
#else
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
#endif
}

} // namespace example
