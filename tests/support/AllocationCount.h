#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

/// @file
/// Counts the allocations of the whole program. It replaces the global operators, so one source of a test program
/// includes it, and no more than one.

namespace QvTest
{

inline std::atomic<std::size_t> g_nAllocations{0};

/// How many allocations `action` makes.
template <class TAction>
std::size_t CountAllocations(TAction&& action)
{
    const std::size_t nBefore = g_nAllocations;
    action();
    return g_nAllocations - nBefore;
}

} // namespace QvTest

// Kept out of line: inlined, they look to the compiler like memory of one kind released as the other.

[[gnu::noinline]] void* operator new(std::size_t nSize)
{
    ++QvTest::g_nAllocations;
    if (void* const p = std::malloc(nSize != 0 ? nSize : 1))
        return p;
    throw std::bad_alloc();
}

[[gnu::noinline]] void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept
{
    ++QvTest::g_nAllocations;
    return std::malloc(nSize != 0 ? nSize : 1);
}

[[gnu::noinline]] void operator delete(void* p) noexcept
{
    std::free(p);
}

[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}

// Those of arrays call the others, but for the ones of sanitizers.

[[gnu::noinline]] void* operator new[](std::size_t nSize)
{
    return operator new(nSize);
}

[[gnu::noinline]] void* operator new[](std::size_t nSize, const std::nothrow_t& nothrow) noexcept
{
    return operator new(nSize, nothrow);
}

[[gnu::noinline]] void operator delete[](void* p) noexcept
{
    std::free(p);
}

[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept
{
    std::free(p);
}
