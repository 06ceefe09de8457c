#pragma once

#include "tools/quiver-fi/Files.h"

#include <chrono>
#include <cstdint>

namespace quiver_fi
{

/// One line on standard error, rewritten in place, that tells how far long work has come. It appears only on a
/// terminal, after a second, and goes away when the work is done.
class CProgress
{
public:
    using Clock = std::chrono::steady_clock;

    /// @param streams must live as long as the line.
    /// @param lpcWhat what is being done: "writing".
    /// @param nTotal steps in all.
    CProgress(const SStreams& streams, const char* lpcWhat, std::uint64_t nTotal);
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;
    ~CProgress();

    /// Tells that so many steps have been made in all.
    void Reach(std::uint64_t nSteps)
    {
        // The clock is asked now and then only.
        if (m_bVisible && nSteps - m_nAsked >= s_nStepsBetween)
            Ask(nSteps);
    }

    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    static constexpr std::uint64_t s_nStepsBetween = 4096;

    void Ask(std::uint64_t nSteps);

    const SStreams& m_streams;
    const char* m_lpcWhat;
    std::uint64_t m_nTotal;
    std::uint64_t m_nAsked = 0;
    Clock::time_point m_next;
    bool m_bVisible;
    bool m_bShown = false;
};

} // namespace quiver_fi
