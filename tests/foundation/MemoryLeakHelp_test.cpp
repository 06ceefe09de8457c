#include "quiver/foundation/MemoryLeakHelp.h"

#include "quiver/foundation/InstanceCounts.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using QvTest::CountInstances;

namespace
{

const std::wstring s_strHeader = L"Instances of classes still in existence/Total Number of instances created\n";

class CMonitored : public CInstanceMonitor
{
public:
    explicit CMonitored(const wchar_t* lpctName)
        : CInstanceMonitor(lpctName)
    {
    }
};

CInstanceClass s_placed(L"Placed");

/// Counts through the place of its class.
class CPlaced : public CInstanceMonitor
{
public:
    CPlaced()
        : CInstanceMonitor(s_placed)
    {
    }
};

/// Begins with an empty list.
class MemoryLeakHelpTest : public ::testing::Test
{
protected:
    void SetUp() override { CInstanceMonitor::Cleanup(); }
    void TearDown() override { CInstanceMonitor::Cleanup(); }
};

using MemoryLeakHelpDeathTest = MemoryLeakHelpTest;

void ExpectCounts(const wchar_t* lpctName, long nLiving, long nTotal)
{
    EXPECT_EQ(nLiving, CountInstances(lpctName).nLiving) << QvTest::Show(lpctName);
    EXPECT_EQ(nTotal, CountInstances(lpctName).nTotal) << QvTest::Show(lpctName);
}

} // namespace

TEST_F(MemoryLeakHelpTest, EmptyListIsTheHeaderAlone)
{
    EXPECT_TEXT(s_strHeader, CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, ReportListsClassesInOrderOfFirstCreationAndMarksSurvivors)
{
    const CMonitored zebra(L"Zebra");
    {
        const CMonitored ant(L"Ant");
        const CMonitored secondAnt(L"Ant");
    }
    const CMonitored secondZebra(L"Zebra");
    const CMonitored bear(L"Bear");
    EXPECT_TEXT(s_strHeader + L"--> Zebra = 2/2\n    Ant = 0/2\n--> Bear = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, NamesDifferByCase)
{
    const CMonitored lower(L"name");
    const CMonitored upper(L"NAME");
    EXPECT_TEXT(s_strHeader + L"--> name = 1/1\n--> NAME = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, NameIsComparedByTextAndCopied)
{
    wchar_t szName[] = L"First";
    const CMonitored first(szName);
    szName[0] = L'f';
    const CMonitored second(szName);
    const std::wstring strSame = L"First";
    const CMonitored third(strSame.c_str());
    EXPECT_TEXT(s_strHeader + L"--> First = 2/2\n--> first = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, NamesMayHoldFormatCharacters)
{
    const CMonitored odd(L"%s%d%n");
    EXPECT_TEXT(s_strHeader + L"--> %s%d%n = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, NullNameIsAnEmptyOne)
{
    const CMonitored unnamed(nullptr);
    const CMonitored empty(L"");
    EXPECT_TEXT(s_strHeader + L"-->  = 2/2", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, CleanupForgetsAndClassesStartAnew)
{
    {
        const CMonitored a(L"A");
        const CMonitored b(L"B");
    }
    CInstanceMonitor::Cleanup();
    EXPECT_TEXT(s_strHeader, CInstanceMonitor::DumpState());
    const CMonitored b(L"B");
    EXPECT_TEXT(s_strHeader + L"--> B = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, InstancesMadeForNothingAreForgotten)
{
    const CMonitored kept(L"A");
    for (int n = 0; n < 3; ++n)
        const CMonitored dropped(L"A");
    ForgetInstances(L"A", 3);
    ExpectCounts(L"A", 1, 1);
    ForgetInstances(L"B", 0);
    EXPECT_TEXT(s_strHeader + L"--> A = 1/1", CInstanceMonitor::DumpState());
    // Those of another thread, which has ended, stay what they are.
    std::thread([] { const CMonitored dropped(L"A"); }).join();
    ForgetInstances(L"A", 0);
    ExpectCounts(L"A", 1, 2);
}

TEST_F(MemoryLeakHelpTest, ObjectsMayOutliveCleanup)
{
    auto pOld = std::make_unique<CMonitored>(L"A");
    CInstanceMonitor::Cleanup();
    const CMonitored fresh(L"A");
    pOld.reset();
    EXPECT_TEXT(s_strHeader + L"--> A = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, CopyIsNotCountedButItsDestructionIs)
{
    // Never destroyed, so that the count does not fall below zero.
    alignas(CMonitored) static unsigned char s_forever[sizeof(CMonitored)];
    new (s_forever) CMonitored(L"A");
    const CMonitored original(L"A");
    {
        const CMonitored copy(original);
        ExpectCounts(L"A", 2, 2);
    }
    ExpectCounts(L"A", 1, 2);
}

TEST_F(MemoryLeakHelpTest, AssignmentSharesTheRecordOfItsSource)
{
    const CMonitored a(L"A");
    const CMonitored b(L"B");
    auto pLikeB = std::make_unique<CMonitored>(L"A");
    auto pLikeA = std::make_unique<CMonitored>(L"B");
    *pLikeB = b;
    *pLikeA = a;
    ExpectCounts(L"A", 2, 2);
    ExpectCounts(L"B", 2, 2);
    pLikeB.reset();
    ExpectCounts(L"A", 2, 2);
    ExpectCounts(L"B", 1, 2);
    pLikeA.reset();
    ExpectCounts(L"A", 1, 2);
    ExpectCounts(L"B", 1, 2);
}

#if defined(QUIVER_DIAGNOSTICS)

TEST_F(MemoryLeakHelpDeathTest, CountBelowZeroStopsAtAnAssertion)
{
    EXPECT_DEATH(
        {
            const CMonitored original(L"A");
            const CMonitored copy(original);
        },
        "Assertion failed: m_pct->lInstanceCount >= 0, .*MemoryLeakHelp.cpp, line");
}

TEST(InstanceTrackerDeathTest, TheTraceNamesTheInstancesAtUnload)
{
    // The program starts anew for this, so that its trace begins with the load of the library.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            CInstanceMonitor::Cleanup();
            static const CMonitored* const s_pLeak = new CMonitored(L"100%d");
            std::exit(s_pLeak == nullptr);
        },
        ::testing::ExitedWithCode(0),
        "Starting to track Class instances\n(.|\n)*Dumping Class instances\n"
        "Instances of classes still in existence/Total Number of instances created\n--> 100%d = 1/1\n");
}

TEST(InstanceTrackerDeathTest, TheTraceNamesNothingOfTheLibrarysOwn)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(0), ::testing::ExitedWithCode(0),
                ::testing::AllOf(::testing::HasSubstr("Dumping Class instances\n"),
                                 ::testing::Not(::testing::HasSubstr("-->"))));
}

#else

TEST_F(MemoryLeakHelpTest, CountMayFallBelowZeroWithoutAssertions)
{
    {
        const CMonitored original(L"A");
        const CMonitored copy(original);
    }
    EXPECT_TEXT(s_strHeader + L"    A = -1/1", CInstanceMonitor::DumpState());
}

#endif

TEST_F(MemoryLeakHelpTest, ManyClassesAreCounted)
{
    // More than a thread's own table has room for, and more addresses of names than it remembers.
    constexpr int nClasses = 70000;
    std::deque<std::wstring> names;
    std::vector<std::unique_ptr<CMonitored>> objects;
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        for (int i = 0; i < nClasses; ++i)
        {
            names.push_back(L"Class" + std::to_wstring(i));
            objects.push_back(std::make_unique<CMonitored>(names.back().c_str()));
        }
    }
    for (const wchar_t* lpctName : {L"Class0", L"Class1499", L"Class65535", L"Class69999"})
        ExpectCounts(lpctName, 3, 3);
    objects.clear();
    for (const wchar_t* lpctName : {L"Class0", L"Class1499", L"Class65535", L"Class69999"})
        ExpectCounts(lpctName, 0, 3);
}

namespace
{

/// The least time that an object took, of several attempts.
double MeasureObject(std::size_t nClasses)
{
    std::deque<std::wstring> names;
    while (names.size() < nClasses)
        names.push_back(L"Measured" + std::to_wstring(names.size()));
    double dLeast = 1.0;
    for (int nAttempt = 0; nAttempt < 5; ++nAttempt)
    {
        constexpr int nObjects = 20000;
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < nObjects; ++i)
            const CMonitored counted(names[static_cast<std::size_t>(i) % nClasses].c_str());
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        dLeast = std::min(dLeast, elapsed.count() / nObjects);
    }
    return dLeast;
}

} // namespace

TEST_F(MemoryLeakHelpTest, ObjectCostsTheSameHoweverManyClassesThereAre)
{
    const double dFew = MeasureObject(10);
    const double dMany = MeasureObject(5000);
    EXPECT_LT(dMany, 30 * dFew) << "seconds an object, with 10 classes " << dFew << ", with 5000 " << dMany;
}

TEST_F(MemoryLeakHelpTest, PlaceOfAClassCountsLikeItsName)
{
    const CMonitored before(L"Before");
    const CPlaced placed;
    {
        const CPlaced second;
        const CMonitored byName(L"Placed");
        EXPECT_TEXT(s_strHeader + L"--> Before = 1/1\n--> Placed = 3/3", CInstanceMonitor::DumpState());
    }
    EXPECT_TEXT(s_strHeader + L"--> Before = 1/1\n--> Placed = 1/3", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, PlaceOfAClassStartsAnewAfterCleanup)
{
    auto pOld = std::make_unique<CPlaced>();
    CInstanceMonitor::Cleanup();
    EXPECT_TEXT(s_strHeader, CInstanceMonitor::DumpState());
    const CPlaced fresh;
    EXPECT_TEXT(s_strHeader + L"--> Placed = 1/1", CInstanceMonitor::DumpState());
    pOld.reset();
    EXPECT_TEXT(s_strHeader + L"--> Placed = 1/1", CInstanceMonitor::DumpState());
}

TEST_F(MemoryLeakHelpTest, PlaceOfAClassServesManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 8; ++nThread)
    {
        threads.emplace_back(
            []
            {
                for (int i = 0; i < 20000; ++i)
                    const CPlaced object;
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    ExpectCounts(L"Placed", 0, 160000);
}

TEST_F(MemoryLeakHelpTest, ObjectsAreMadeOnManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 8; ++nThread)
    {
        threads.emplace_back(
            [nThread]
            {
                const std::wstring strOwn = L"Own" + std::to_wstring(nThread);
                for (int i = 0; i < 20000; ++i)
                {
                    const CMonitored common(L"Common");
                    const CMonitored own(strOwn.c_str());
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    ExpectCounts(L"Common", 0, 160000);
    for (int nThread = 0; nThread < 8; ++nThread)
        ExpectCounts((L"Own" + std::to_wstring(nThread)).c_str(), 0, 20000);
}

TEST_F(MemoryLeakHelpTest, ObjectsThatOutliveTheirThreadStayCounted)
{
    std::unique_ptr<CMonitored> pObject;
    std::thread([&] { pObject = std::make_unique<CMonitored>(L"A"); }).join();
    ExpectCounts(L"A", 1, 1);
    std::thread([&] { pObject.reset(); }).join();
    ExpectCounts(L"A", 0, 1);
}

TEST_F(MemoryLeakHelpTest, ObjectsDestroyedOnAnotherThreadNeverCountBelowZero)
{
    // One thread makes what the other destroys, so that each alone would have an impossible count.
    std::mutex mutex;
    std::deque<std::unique_ptr<CMonitored>> queue;
    std::atomic<bool> bDone{false};
    constexpr int nObjects = 30000;
    std::thread maker(
        [&]
        {
            for (int i = 0; i < nObjects; ++i)
            {
                auto pObject = std::make_unique<CMonitored>(L"A");
                const std::lock_guard<std::mutex> lock(mutex);
                queue.push_back(std::move(pObject));
            }
            bDone = true;
        });
    std::thread destroyer(
        [&]
        {
            for (int nDestroyed = 0; nDestroyed < nObjects;)
            {
                std::unique_ptr<CMonitored> pObject;
                {
                    const std::lock_guard<std::mutex> lock(mutex);
                    if (queue.empty())
                        continue;
                    pObject = std::move(queue.front());
                    queue.pop_front();
                }
                pObject.reset();
                ++nDestroyed;
            }
        });
    std::thread bystander(
        [&]
        {
            while (!bDone)
                const CMonitored object(L"A");
        });
    while (!bDone)
        EXPECT_GE(CountInstances(L"A").nLiving, 0);
    maker.join();
    destroyer.join();
    bystander.join();
    EXPECT_EQ(0, CountInstances(L"A").nLiving);
}

namespace
{

struct SDestroyedLate
{
    ~SDestroyedLate()
    {
        // A thread's own objects may die after its counts have been added up.
        const CMonitored object(L"Late");
    }
};

} // namespace

TEST_F(MemoryLeakHelpTest, ObjectsAreCountedWhileAThreadEnds)
{
    std::thread(
        []
        {
            thread_local const SDestroyedLate t_late;
            static_cast<void>(&t_late);
            const CMonitored object(L"Late");
        })
        .join();
    ExpectCounts(L"Late", 0, 2);
}
