#include "tools/quiver-fi/Progress.h"

#include <ostream>

namespace quiver_fi
{

namespace
{

constexpr std::chrono::milliseconds s_firstAfter(1000);
constexpr std::chrono::milliseconds s_nextAfter(200);

} // namespace

CProgress::CProgress(const SStreams& streams, const char* lpcWhat, std::uint64_t nTotal)
    : m_streams(streams)
    , m_lpcWhat(lpcWhat)
    , m_nTotal(nTotal)
    , m_next(Clock::now() + s_firstAfter)
    , m_bVisible(streams.bErrIsTerminal && nTotal != 0)
{
}

CProgress::~CProgress()
{
    Clear();
}

void CProgress::Clear()
{
    if (m_bShown)
        m_streams.err << "\r\x1B[K" << std::flush;
    m_bShown = false;
}

void CProgress::Ask(std::uint64_t nSteps)
{
    m_nAsked = nSteps;
    const Clock::time_point now = Clock::now();
    if (now < m_next)
        return;
    m_next = now + s_nextAfter;
    m_bShown = true;
    m_streams.err << "\rquiver-fi: " << m_lpcWhat << ' ' << nSteps * 100 / m_nTotal << " %\x1B[K" << std::flush;
}

} // namespace quiver_fi
