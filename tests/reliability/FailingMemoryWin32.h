#pragma once

#include "tests/reliability/FailingMemory.h"

#include <utility>

/// @file
/// The memory of Windows: a heap, from which the C library takes what it gives to the operators and functions of the languages, and
/// pages.

namespace faults
{

struct SMemoryCalls
{
    decltype(&::HeapAlloc) pfnHeapAlloc = nullptr;
    decltype(&::HeapReAlloc) pfnHeapReAlloc = nullptr;
    decltype(&::VirtualAlloc) pfnVirtualAlloc = nullptr;
};

inline SMemoryCalls g_realMemory;

inline LPVOID WINAPI HeapAllocOrFail(HANDLE hHeap, DWORD dwFlags, SIZE_T nBytes)
{
    return IsMemoryOut() ? nullptr : g_realMemory.pfnHeapAlloc(hHeap, dwFlags, nBytes);
}

inline LPVOID WINAPI HeapReAllocOrFail(HANDLE hHeap, DWORD dwFlags, LPVOID pMemory, SIZE_T nBytes)
{
    return IsMemoryOut() ? nullptr : g_realMemory.pfnHeapReAlloc(hHeap, dwFlags, pMemory, nBytes);
}

inline LPVOID WINAPI VirtualAllocOrFail(LPVOID pWhere, SIZE_T nBytes, DWORD dwKind, DWORD dwRights)
{
    if (!IsMemoryOut())
        return g_realMemory.pfnVirtualAlloc(pWhere, nBytes, dwKind, dwRights);
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

/// Replaces the calls ahead of the first test.
inline const bool g_bMemoryReplaced = []
{
    g_realMemory.pfnHeapAlloc = Replace("HeapAlloc", HeapAllocOrFail);
    g_realMemory.pfnHeapReAlloc = Replace("HeapReAlloc", HeapReAllocOrFail);
    g_realMemory.pfnVirtualAlloc = Replace("VirtualAlloc", VirtualAllocOrFail);
    return true;
}();

} // namespace faults

// Variables of a thread are allocated when the thread asks for them first, by the library of GCC for MinGW, which ends the process
// where there is no memory: that allocation is let through. The linker leads the calls here.
extern "C" void* __real___emutls_get_address(void* pVariable);
extern "C" void* __wrap___emutls_get_address(void* pVariable)
{
    const long nLeft = faults::IsOfTheThread() ? std::exchange(faults::g_nAllocationsLeft, -1) : -1;
    void* const pOfThread = __real___emutls_get_address(pVariable);
    if (nLeft >= 0)
        faults::g_nAllocationsLeft = nLeft;
    return pOfThread;
}
