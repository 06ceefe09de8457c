#include "quiver/foundation/StackGuard.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/platform/Platform.h"
#include "tests/support/Expect.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

using namespace QvXmlLib9;

namespace
{

/// Goes down until the guard throws, and tells how deep it came. Each level takes about a kilobyte.
int Descend(int nLevel, int& nDeepest)
{
    volatile char frame[1024] = {};
    Throw_IfStackIsLow();
    nDeepest = nLevel;
    return nLevel < 0 ? 0 : Descend(nLevel + 1, nDeepest) + frame[0];
}

int DeepestOn(std::size_t nStackBytes)
{
    int nDeepest = 0;
    QvTest::RunOnStack(nStackBytes,
                       [&]
                       {
                           QvTest::ExpectThrows<CQvException>(L"The document is nested too deeply to be processed",
                                                              [&] { Descend(1, nDeepest); });
                       });
    return nDeepest;
}

} // namespace

TEST(StackGuardTest, EndlessRecursionEndsInAnException)
{
    EXPECT_GT(DeepestOn(1024 * 1024), 100);
}

TEST(StackGuardTest, DepthGrowsWithTheStack)
{
    const int nSmall = DeepestOn(1024 * 1024);
    const int nLarge = DeepestOn(16 * 1024 * 1024);
    EXPECT_GT(nLarge, 8 * nSmall);
}

TEST(StackGuardTest, SmallStacksKeepAQuarter)
{
    EXPECT_GT(DeepestOn(64 * 1024), 5);
    EXPECT_GT(DeepestOn(128 * 1024), 10);
}

TEST(StackGuardTest, RecursionIsPossibleAgainAfterwards)
{
    QvTest::RunOnStack(256 * 1024,
                       []
                       {
                           for (int nRound = 0; nRound < 3; ++nRound)
                           {
                               int nDeepest = 0;
                               EXPECT_THROW(Descend(1, nDeepest), CQvException);
                               EXPECT_NO_THROW(Throw_IfStackIsLow());
                           }
                       });
}

TEST(StackGuardTest, PlatformKnowsTheStackOfEachThread)
{
    EXPECT_GT(Platform::GetStackSize(), 0u);
    EXPECT_LE(Platform::GetStackBytesLeft(), Platform::GetStackSize());
    for (const std::size_t nBytes : {std::size_t{128} * 1024, std::size_t{4} * 1024 * 1024})
    {
        QvTest::RunOnStack(nBytes,
                           [&]
                           {
                               EXPECT_GE(Platform::GetStackSize(), nBytes);
                               EXPECT_LT(Platform::GetStackBytesLeft(), Platform::GetStackSize());
                               EXPECT_GT(Platform::GetStackBytesLeft(), nBytes / 2);
                           });
    }
}

TEST(StackGuardTest, MainThreadHasRoom)
{
    EXPECT_NO_THROW(Throw_IfStackIsLow());
}

TEST(StackGuardTest, WhatIsUsableIsWhatIsLeftLessTheReserve)
{
    for (const std::size_t nStack : {std::size_t{128 * 1024}, std::size_t{4 * 1024 * 1024}})
    {
        QvTest::RunOnStack(nStack,
                           [nStack]
                           {
                               // The system may give a thread more than was asked for.
                               const std::size_t nSize = Platform::GetStackSize();
                               const std::size_t nUsable = GetUsableStackBytes();
                               EXPECT_GT(nUsable, nStack / 2);
                               EXPECT_LE(nUsable, nSize - std::min<std::size_t>(nSize / 4, 256 * 1024));
                           });
    }
}
