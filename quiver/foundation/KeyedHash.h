#pragma once

#include <cstdint>
#include <string_view>

#if defined(_MSC_VER)
#include <intrin.h>
#endif

namespace QvXmlLib9
{

/// Numbers that every hash of the process starts from. They are drawn anew by each process, so that nobody can choose
/// texts for a document that all fall into one place of a table. Nothing that the library puts out depends on them.
struct SHashKey
{
    std::uint64_t nFirst;
    std::uint64_t nSecond;
    std::uint64_t nThird;
};

namespace Internal
{

SHashKey DrawHashKey();

} // namespace Internal

inline const SHashKey& GetHashKey()
{
    static const SHashKey s_key = Internal::DrawHashKey();
    return s_key;
}

/// Both halves of a product, folded. Every bit of the result depends on all bits of both factors, and who does not know
/// the key that has been mixed into each of them cannot say how.
inline std::uint64_t FoldedProduct(std::uint64_t nLeft, std::uint64_t nRight)
{
#if defined(_MSC_VER)
    std::uint64_t nHigh = 0;
    const std::uint64_t nLow = _umul128(nLeft, nRight, &nHigh);
    return nLow ^ nHigh;
#elif defined(__SIZEOF_INT128__)
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(nLeft) * nRight;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
    // Machines of 32 bits: by the halves of the factors.
    const std::uint64_t nLeftLow = nLeft & 0xFFFFFFFF;
    const std::uint64_t nRightLow = nRight & 0xFFFFFFFF;
    const std::uint64_t nMiddle = (nLeft >> 32) * nRightLow + (nLeftLow * nRightLow >> 32);
    const std::uint64_t nOther = nLeftLow * (nRight >> 32) + (nMiddle & 0xFFFFFFFF);
    const std::uint64_t nHigh = (nLeft >> 32) * (nRight >> 32) + (nMiddle >> 32) + (nOther >> 32);
    return nLeft * nRight ^ nHigh;
#endif
}

/// Hash of two numbers that say all there is to tell.
inline std::uint64_t HashPair(const SHashKey& key, std::uint64_t nLeft, std::uint64_t nRight)
{
    return FoldedProduct(FoldedProduct(nLeft ^ key.nFirst, nRight ^ key.nSecond) ^ key.nThird, key.nFirst);
}

/// Hash of a text, and of a number that tells equal texts apart.
std::uint64_t HashText(const SHashKey& key, std::wstring_view svText, std::uint32_t dwNumber = 0);

} // namespace QvXmlLib9
