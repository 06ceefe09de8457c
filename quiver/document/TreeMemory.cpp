#include "quiver/document/TreeMemory.h"

#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <functional>
#include <new>

namespace QvXmlLib9
{

namespace
{

/// A tree that fits in this is not worth large pages.
constexpr std::size_t s_nSmallTree = 1024 * 1024;

constexpr std::size_t s_nFirstChunk = 2 * 1024 * 1024;
constexpr std::size_t s_nLargestChunk = 16 * 1024 * 1024;

} // namespace

CTreeMemory::~CTreeMemory()
{
    for (const SChunk& chunk : m_chunks)
        Platform::FreeLarge(chunk.pBytes, chunk.nSize);
}

unsigned char* CTreeMemory::AllocateBytes(std::size_t nSize)
{
    if (m_bSmall || nSize != s_nLargestBlockSize || m_nSmall < s_nSmallTree)
    {
        auto* const pBlock = static_cast<unsigned char*>(::operator new(nSize));
        m_nSmall += nSize;
        return pBlock;
    }
    if (m_pFree != nullptr)
    {
        SFreeBlock* const pBlock = m_pFree;
        m_pFree = pBlock->pNext;
        return reinterpret_cast<unsigned char*>(pBlock);
    }
    if (m_pNext == m_pEnd && !AddChunk())
        return static_cast<unsigned char*>(::operator new(nSize));
    unsigned char* const pBlock = m_pNext;
    m_pNext += nSize;
    return pBlock;
}

/// @return false where the system has no large piece left; the heap may still have a small one.
bool CTreeMemory::AddChunk()
{
    m_chunks.reserve(m_chunks.size() + 1);
    const std::size_t nSize = m_chunks.empty() ? s_nFirstChunk : std::min(2 * m_chunks.back().nSize, s_nLargestChunk);
    auto* const pBytes = static_cast<unsigned char*>(Platform::AllocateLarge(nSize));
    if (pBytes == nullptr)
        return false;
    m_chunks.push_back({pBytes, nSize});
    m_pNext = pBytes;
    m_pEnd = pBytes + nSize;
    return true;
}

void CTreeMemory::Free(unsigned char* pBlock) noexcept
{
    const auto IsIn = [pBlock](const SChunk& chunk)
    {
        return !std::less<>()(pBlock, chunk.pBytes) && std::less<>()(pBlock, chunk.pBytes + chunk.nSize);
    };
    if (std::any_of(m_chunks.begin(), m_chunks.end(), IsIn))
        m_pFree = new (pBlock) SFreeBlock{m_pFree};
    else
        ::operator delete(pBlock);
}

} // namespace QvXmlLib9
