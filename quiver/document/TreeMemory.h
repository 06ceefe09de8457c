#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace QvXmlLib9
{

/// The blocks that the nodes and texts of one tree lie in. A small tree takes them from the heap; those of a large one
/// are pieces of large pages, which cost a fraction at their first use and go at once.
class CTreeMemory
{
public:
    static constexpr std::size_t s_nFirstBlockSize = 2 * 1024;
    static constexpr std::size_t s_nLargestBlockSize = 64 * 1024;

    struct SFree
    {
        CTreeMemory* pMemory;
        void operator()(unsigned char* pBlock) const { pMemory->Free(pBlock); }
    };
    using CBlock = std::unique_ptr<unsigned char[], SFree>;

    /// @param bSmall everything comes from the heap, so that memory checkers see it.
    explicit CTreeMemory(bool bSmall)
        : m_bSmall(bSmall)
    {
    }

    /// The blocks must all have been given back.
    ~CTreeMemory();
    CTreeMemory(const CTreeMemory&) = delete;
    CTreeMemory& operator=(const CTreeMemory&) = delete;

    CBlock Allocate(std::size_t nSize) { return CBlock(AllocateBytes(nSize), SFree{this}); }

private:
    struct SChunk
    {
        unsigned char* pBytes;
        std::size_t nSize;
    };
    struct SFreeBlock
    {
        SFreeBlock* pNext;
    };

    unsigned char* AllocateBytes(std::size_t nSize);
    bool AddChunk();
    void Free(unsigned char* pBlock) noexcept;

    const bool m_bSmall;
    /// What has come from the heap.
    std::size_t m_nSmall = 0;
    std::vector<SChunk> m_chunks;
    unsigned char* m_pNext = nullptr;
    unsigned char* m_pEnd = nullptr;
    SFreeBlock* m_pFree = nullptr;
};

} // namespace QvXmlLib9
