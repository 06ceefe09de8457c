#include "quiver/document/TreeMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <vector>

using QvXmlLib9::CTreeMemory;

TEST(TreeMemory, BlocksAreApartAlignedAndWritable)
{
    for (const bool bSmall : {false, true})
    {
        CTreeMemory memory(bSmall);
        std::vector<CTreeMemory::CBlock> blocks;
        std::map<std::uintptr_t, std::size_t> places;
        // Beyond what comes from the heap, and into the second large piece.
        for (int i = 0; i < 100; ++i)
        {
            const std::size_t nSize = i % 10 == 0 ? CTreeMemory::s_nFirstBlockSize : CTreeMemory::s_nLargestBlockSize;
            blocks.push_back(memory.Allocate(nSize));
            std::memset(blocks.back().get(), 0xAA, nSize);
            const auto nAddress = reinterpret_cast<std::uintptr_t>(blocks.back().get());
            EXPECT_EQ(0u, nAddress % alignof(void*));
            const auto next = places.lower_bound(nAddress);
            ASSERT_TRUE(next == places.end() || next->first >= nAddress + nSize);
            ASSERT_TRUE(next == places.begin() || std::prev(next)->first + std::prev(next)->second <= nAddress);
            places.emplace(nAddress, nSize);
        }
    }
}

TEST(TreeMemory, PiecesOfLargePagesAreUsedAgain)
{
    CTreeMemory memory(false);
    std::vector<CTreeMemory::CBlock> blocks;
    for (int i = 0; i < 40; ++i)
        blocks.push_back(memory.Allocate(CTreeMemory::s_nLargestBlockSize));
    const unsigned char* const pLast = blocks.back().get();
    blocks.pop_back();
    EXPECT_EQ(pLast, memory.Allocate(CTreeMemory::s_nLargestBlockSize).get());
}
