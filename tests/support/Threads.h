#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <thread>
#include <vector>

/// @file
/// Work that many threads begin together.

namespace QvTest
{

inline constexpr std::size_t s_nThreads = 16;

/// Runs `work` on so many threads, which begin together, with the number of the thread: the first use of everything is to
/// be a race.
inline void AtOnce(const std::function<void(std::size_t)>& work, std::size_t nThreads = s_nThreads)
{
    std::atomic<std::size_t> nReady{0};
    std::vector<std::thread> threads;
    for (std::size_t nThread = 0; nThread < nThreads; ++nThread)
    {
        threads.emplace_back(
            [&work, &nReady, nThread, nThreads]
            {
                for (++nReady; nReady < nThreads;)
                    std::this_thread::yield();
                work(nThread);
            });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace QvTest
