#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace quiver_tools
{

/// One line on a terminal, rewritten in place, that tells how far long work has come and how long the rest will take. It
/// appears after a second, and goes away when the work is done.
class CProgress
{
public:
    using Clock = std::chrono::steady_clock;

    /// What tells the time; tests have one of their own.
    using AskTime = Clock::time_point (*)();

    /// @param terminal where the line stands; must live as long as it.
    /// @param bVisible somebody watches `terminal`.
    /// @param strWhat who does what: "quiver-fi: writing".
    /// @param nTotal steps in all.
    CProgress(std::ostream& terminal, bool bVisible, std::string strWhat, std::uint64_t nTotal,
              AskTime pAskTime = &Clock::now);
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

    std::ostream& m_terminal;
    std::string m_strWhat;
    std::uint64_t m_nTotal;
    std::uint64_t m_nAsked = 0;
    AskTime m_pAskTime;
    Clock::time_point m_begin;
    Clock::time_point m_next;
    bool m_bVisible;
    bool m_bShown = false;
};

} // namespace quiver_tools
