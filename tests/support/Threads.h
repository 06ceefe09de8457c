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

/// Runs `work` on all threads, which begin together, with the number of the thread.
inline void AtOnce(const std::function<void(std::size_t)>& work)
{
    std::atomic<std::size_t> nReady{0};
    std::vector<std::thread> threads;
    for (std::size_t nThread = 0; nThread < s_nThreads; ++nThread)
    {
        threads.emplace_back(
            [&work, &nReady, nThread]
            {
                for (++nReady; nReady < s_nThreads;)
                    std::this_thread::yield();
                work(nThread);
            });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace QvTest
