#pragma once

#include <cstdlib>
#include <new>

/// @file
/// Replaces the allocation of the whole program, so that its n-th one can be made to fail. To be included by one source
/// of a program.

namespace QvTest
{

/// Allocations that still succeed; negative where all do.
inline long g_nAllocationsLeft = -1;

inline void* AllocateOrFail(std::size_t nSize)
{
    if (g_nAllocationsLeft == 0)
        throw std::bad_alloc();
    if (g_nAllocationsLeft > 0)
        --g_nAllocationsLeft;
    void* const pMemory = std::malloc(nSize);
    if (pMemory == nullptr)
        throw std::bad_alloc();
    return pMemory;
}

} // namespace QvTest

void* operator new(std::size_t nSize)
{
    return QvTest::AllocateOrFail(nSize);
}
void* operator new[](std::size_t nSize)
{
    return QvTest::AllocateOrFail(nSize);
}
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    return QvTest::g_nAllocationsLeft == 0 ? nullptr : std::malloc(nSize);
}
void operator delete(void* pMemory) noexcept
{
    std::free(pMemory);
}
void operator delete[](void* pMemory) noexcept
{
    std::free(pMemory);
}
void operator delete(void* pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}
void operator delete[](void* pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}
