#pragma once

#include "tests/reliability/FailingMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>

/// @file
/// The functions of the C library, whose places the program takes.

#if defined(__SANITIZE_ADDRESS__)
#define QUIVER_REAL(name) __interceptor_##name
#else
#define QUIVER_REAL(name) __libc_##name
#endif

extern "C"
{
    void* QUIVER_REAL(malloc)(std::size_t nSize);
    void* QUIVER_REAL(calloc)(std::size_t nCount, std::size_t nSize);
    void* QUIVER_REAL(realloc)(void* pMemory, std::size_t nSize);

    void* malloc(std::size_t nSize) noexcept
    {
        return faults::IsMemoryOut() ? nullptr : QUIVER_REAL(malloc)(nSize);
    }
    void* calloc(std::size_t nCount, std::size_t nSize) noexcept
    {
        return faults::IsMemoryOut() ? nullptr : QUIVER_REAL(calloc)(nCount, nSize);
    }
    void* realloc(void* pMemory, std::size_t nSize) noexcept
    {
        return faults::IsMemoryOut() ? nullptr : QUIVER_REAL(realloc)(pMemory, nSize);
    }
}

#undef QUIVER_REAL

#if defined(__SANITIZE_ADDRESS__)

// The operators of the sanitizer do not go by the functions above.

inline void* NewOrThrow(std::size_t nSize)
{
    if (void* const pMemory = malloc(nSize != 0 ? nSize : 1))
        return pMemory;
    throw std::bad_alloc();
}

void* operator new(std::size_t nSize)
{
    return NewOrThrow(nSize);
}
void* operator new[](std::size_t nSize)
{
    return NewOrThrow(nSize);
}
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    return malloc(nSize != 0 ? nSize : 1);
}
void* operator new[](std::size_t nSize, const std::nothrow_t&) noexcept
{
    return malloc(nSize != 0 ? nSize : 1);
}
void operator delete(void* pMemory) noexcept
{
    free(pMemory);
}
void operator delete[](void* pMemory) noexcept
{
    free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept
{
    free(pMemory);
}
void operator delete[](void* pMemory, std::size_t) noexcept
{
    free(pMemory);
}

/// The table that the loader makes for each thread: the sanitizer knows it by the caller of its calloc, which is not the
/// loader here.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:allocate_dtv\n";
}

#endif
