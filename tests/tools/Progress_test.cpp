#include "tools/common/Progress.h"

#include <gtest/gtest.h>

#include <sstream>

using quiver_tools::CProgress;

namespace
{

CProgress::Clock::time_point s_now;

CProgress::Clock::time_point AskTime()
{
    return s_now;
}

void Wait(int nMilliseconds)
{
    s_now += std::chrono::milliseconds(nMilliseconds);
}

} // namespace

TEST(Progress, AppearsAfterASecondAndGoesAway)
{
    std::ostringstream terminal;
    {
        CProgress progress(terminal, true, "quiver-fi: writing", 100000, &AskTime);
        Wait(999);
        progress.Reach(50000);
        EXPECT_EQ(terminal.str(), "");
        Wait(2001);
        progress.Reach(75000);
        EXPECT_EQ(terminal.str(), "\rquiver-fi: writing 75 %, 1 s left\x1B[K");
        // Neither too often nor for each step.
        Wait(199);
        progress.Reach(90000);
        Wait(300);
        progress.Reach(90001);
        EXPECT_EQ(terminal.str(), "\rquiver-fi: writing 75 %, 1 s left\x1B[K");
        progress.Reach(96000);
        EXPECT_EQ(terminal.str(), "\rquiver-fi: writing 75 %, 1 s left\x1B[K"
                                  "\rquiver-fi: writing 96 %, 0 s left\x1B[K");
        terminal.str("");
    }
    EXPECT_EQ(terminal.str(), "\r\x1B[K");
}

TEST(Progress, TellsMinutesWhereSecondsAreMany)
{
    struct SRow
    {
        int nSeconds;
        std::uint64_t nSteps;
        const char* lpcShown;
    };
    const SRow rows[] = {
        {10, 10000, "10 %, 90 s left"},  {11, 10000, "10 %, 99 s left"}, {12, 10000, "10 %, 2 min left"},
        {100, 5000, "5 %, 32 min left"}, {5, 100000, "100 %, 0 s left"}, {5, 120000, "100 %, 0 s left"},
    };
    for (const SRow& row : rows)
    {
        std::ostringstream terminal;
        CProgress progress(terminal, true, "at work", 100000, &AskTime);
        Wait(row.nSeconds * 1000);
        progress.Reach(row.nSteps);
        EXPECT_EQ(terminal.str(), "\rat work " + std::string(row.lpcShown) + "\x1B[K");
    }
}

TEST(Progress, GivesWayToOtherWords)
{
    std::ostringstream terminal;
    CProgress progress(terminal, true, "at work", 100000, &AskTime);
    progress.Clear();
    EXPECT_EQ(terminal.str(), "");
    Wait(2000);
    progress.Reach(50000);
    terminal.str("");
    progress.Clear();
    progress.Clear();
    EXPECT_EQ(terminal.str(), "\r\x1B[K");
}

TEST(Progress, IsSilentWhereNobodyWatchesOrNothingIsToBeDone)
{
    for (const bool bVisible : {false, true})
    {
        std::ostringstream terminal;
        {
            CProgress progress(terminal, bVisible, "at work", bVisible ? 0 : 100000, &AskTime);
            Wait(5000);
            progress.Reach(50000);
        }
        EXPECT_EQ(terminal.str(), "") << bVisible;
    }
}
