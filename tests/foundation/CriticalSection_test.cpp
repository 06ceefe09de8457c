#include "quiver/foundation/CriticalSection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <type_traits>
#include <vector>

TEST(CriticalSectionTest, LetsOneThreadInAtATime)
{
    CQVCriticalSection cs;
    int nCount = 0;
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 8; ++nThread)
    {
        threads.emplace_back(
            [&]
            {
                for (int i = 0; i < 10000; ++i)
                {
                    cs.Enter();
                    ++nCount;
                    cs.Leave();
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(80000, nCount);
}

namespace
{

/// Enters from a constructor that may run ahead of every other one in static storage.
struct SEarlyUser
{
    SEarlyUser();
};
const SEarlyUser s_earlyUser;
CQVCriticalSection s_cs;
bool s_bEnteredEarly = false;

SEarlyUser::SEarlyUser()
{
    const CQVCriticalSectionLock lock(s_cs);
    s_bEnteredEarly = true;
}

} // namespace

TEST(CriticalSectionTest, MayBeEnteredAheadOfDynamicInitialisation)
{
    EXPECT_TRUE(s_bEnteredEarly);
}

TEST(CriticalSectionTest, FirstEntryOfManyThreadsMakesOneLock)
{
    for (int nRound = 0; nRound < 200; ++nRound)
    {
        CQVCriticalSection cs;
        int nCount = 0;
        std::vector<std::thread> threads;
        for (int nThread = 0; nThread < 4; ++nThread)
        {
            threads.emplace_back(
                [&]
                {
                    const CQVCriticalSectionLock lock(cs);
                    ++nCount;
                });
        }
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(4, nCount);
    }
}

TEST(CriticalSectionTest, ThreadThatHoldsItMayEnterAgain)
{
    CQVCriticalSection cs;
    cs.Enter();
    cs.Enter();
    std::atomic<bool> bEntered{false};
    std::thread other(
        [&]
        {
            cs.Enter();
            bEntered = true;
            cs.Leave();
        });
    cs.Leave();
    // Still held once.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(bEntered);
    cs.Leave();
    other.join();
    EXPECT_TRUE(bEntered);
}

TEST(CriticalSectionTest, ScopedLockLeavesOnEveryPath)
{
    CQVCriticalSection cs;
    try
    {
        const CQVCriticalSectionLock lock(cs);
        throw 1;
    }
    catch (int)
    {
    }
    bool bEntered = false;
    std::thread(
        [&]
        {
            const CQVCriticalSectionLock lock(cs);
            bEntered = true;
        })
        .join();
    EXPECT_TRUE(bEntered);
}

TEST(CriticalSectionTest, HasAVirtualDestructorAndIsNotCopied)
{
    EXPECT_TRUE(std::has_virtual_destructor<CQVCriticalSection>::value);
    EXPECT_FALSE(std::is_copy_constructible<CQVCriticalSection>::value);
}
