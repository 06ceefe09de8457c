#include "tools/common/Progress.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace quiver_tools
{

namespace
{

using Seconds = std::chrono::duration<double>;

constexpr std::chrono::milliseconds s_firstAfter(1000);
constexpr std::chrono::milliseconds s_nextAfter(200);
constexpr std::uint64_t s_nSecondsShown = 100;

/// "12 s", and minutes where nobody counts seconds any more.
std::string FormatTime(Seconds time)
{
    const auto nSeconds = static_cast<std::uint64_t>(time.count() + 0.5);
    return nSeconds < s_nSecondsShown ? std::to_string(nSeconds) + " s" : std::to_string((nSeconds + 30) / 60) + " min";
}

} // namespace

CProgress::CProgress(std::ostream& terminal, bool bVisible, std::string strWhat, std::uint64_t nTotal, AskTime pAskTime)
    : m_terminal(terminal)
    , m_strWhat(std::move(strWhat))
    , m_nTotal(nTotal)
    , m_pAskTime(pAskTime)
    , m_begin(pAskTime())
    , m_next(m_begin + s_firstAfter)
    , m_bVisible(bVisible && nTotal != 0)
{
}

CProgress::~CProgress()
{
    Clear();
}

void CProgress::Clear()
{
    if (m_bShown)
        m_terminal << "\r\x1B[K" << std::flush;
    m_bShown = false;
}

void CProgress::Ask(std::uint64_t nSteps)
{
    m_nAsked = nSteps;
    const Clock::time_point now = m_pAskTime();
    if (now < m_next)
        return;
    m_next = now + s_nextAfter;
    m_bShown = true;
    // A file may have grown since it was measured.
    const double dDone = static_cast<double>(std::min(nSteps, m_nTotal)) / static_cast<double>(m_nTotal);
    const Seconds left = Seconds(now - m_begin) * ((1 - dDone) / dDone);
    m_terminal << '\r' << m_strWhat << ' ' << static_cast<int>(dDone * 100) << " %, " << FormatTime(left)
               << " left\x1B[K" << std::flush;
}

} // namespace quiver_tools
