#include "quiver/foundation/MemoryLeakHelp.h"

#include "tests/support/FailingAllocation.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace
{

class CMonitored : public CInstanceMonitor
{
public:
    CMonitored()
        : CInstanceMonitor(L"Monitored")
    {
    }
};

} // namespace

TEST(MemoryLeakHelpOutOfMemory, DestructionCountsWithoutMemory)
{
    auto pObject = std::make_unique<CMonitored>();
    std::thread(
        [&]
        {
            // The thread's first object, for which it would set up its table.
            QvTest::g_nAllocationsLeft = 0;
            pObject.reset();
            QvTest::g_nAllocationsLeft = -1;
        })
        .join();
    EXPECT_EQ(0, QvTest::CountInstances(L"Monitored").nLiving);
    EXPECT_EQ(1, QvTest::CountInstances(L"Monitored").nTotal);
}

TEST(MemoryLeakHelpOutOfMemory, CreationCountsAllOrNothing)
{
    int nFailures = 0;
    for (int nAllocations = 0; nFailures == nAllocations; ++nAllocations)
    {
        std::thread(
            [&]
            {
                try
                {
                    QvTest::g_nAllocationsLeft = nAllocations;
                    const CMonitored object;
                    QvTest::g_nAllocationsLeft = -1;
                }
                catch (const std::bad_alloc&)
                {
                    QvTest::g_nAllocationsLeft = -1;
                    ++nFailures;
                }
            })
            .join();
        EXPECT_EQ(0, QvTest::CountInstances(L"Monitored").nLiving);
    }
    EXPECT_LT(0, nFailures);
}
