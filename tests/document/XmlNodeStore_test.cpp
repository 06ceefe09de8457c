#include "quiver/document/XmlNodeStore.h"

#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

namespace
{

using QvTest::CountInstances;
using QvXmlLib9::CTreeMemory;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlNodePool;
using QvXmlLib9::CXmlNodeStore;

TEST(XmlNodeStore, SlotsOfAPoolAreApartAndAligned)
{
    for (const bool bSeparate : {false, true})
    {
        CTreeMemory memory(false);
        CXmlNodePool pool(memory, 24, bSeparate);
        std::set<std::uintptr_t> slots;
        std::vector<void*> all;
        for (int i = 0; i < 10000; ++i)
        {
            void* const pSlot = pool.Allocate();
            std::memset(pSlot, 0xAA, 24);
            const auto nAddress = reinterpret_cast<std::uintptr_t>(pSlot);
            EXPECT_EQ(0u, nAddress % alignof(void*));
            const auto next = slots.lower_bound(nAddress);
            ASSERT_TRUE(next == slots.end() || *next >= nAddress + 24);
            ASSERT_TRUE(next == slots.begin() || *std::prev(next) + 24 <= nAddress);
            slots.insert(next, nAddress);
            all.push_back(pSlot);
        }
        for (void* pSlot : all)
            pool.Free(pSlot);
    }
}

TEST(XmlNodeStore, FreedSlotsAreUsedAgain)
{
    CTreeMemory memory(false);
    CXmlNodePool pool(memory, 64, false);
    void* const pFirst = pool.Allocate();
    void* const pSecond = pool.Allocate();
    pool.Free(pFirst);
    pool.Free(pSecond);
    EXPECT_EQ(pSecond, pool.Allocate());
    EXPECT_EQ(pFirst, pool.Allocate());
}

TEST(XmlNodeStore, TheRootDiesWithTheStore)
{
    const auto elements = CountInstances(L"CXmlElement");
    {
        CXmlNodeStore store(nullptr);
        store.SetRoot(store.NewElement(store.GetEmptyName()));
        EXPECT_EQ(elements.nLiving + 1, CountInstances(L"CXmlElement").nLiving);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(XmlNodeStore, MarksComeBackInReverseOrder)
{
    CXmlNodeStore store(nullptr);
    CXmlElement* const pElement = store.NewElement(store.GetEmptyName());
    store.PushMark(nullptr);
    store.PushMark(pElement);
    EXPECT_EQ(pElement, store.PopMark().pBefore);
    EXPECT_EQ(nullptr, store.PopMark().pBefore);
    store.Destroy(pElement);
}

} // namespace
