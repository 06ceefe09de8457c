#include "quiver/foundation/KeyedHash.h"

#include <chrono>
#include <cstddef>
#include <cstring>
#include <exception>
#include <random>

namespace QvXmlLib9
{

namespace
{

std::uint64_t Load(const void* pFrom, std::size_t nBytes)
{
    std::uint64_t nValue = 0;
    if (nBytes != 0)
        std::memcpy(&nValue, pFrom, nBytes);
    return nValue;
}

} // namespace

SHashKey Internal::DrawHashKey()
{
    SHashKey key{0x9E3779B97F4A7C15u, 0xD6E8FEB86659FD93u, 0xA0761D6478BD642Fu};
    try
    {
        std::random_device source;
        for (std::uint64_t* const pnPart : {&key.nFirst, &key.nSecond, &key.nThird})
            *pnPart ^= static_cast<std::uint64_t>(source()) << 32 | source();
    }
    catch (const std::exception&)
    {
        // A system without a source of randomness: what remains is when the process asks, and where its memory lies.
        const auto nNow = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        key.nFirst ^= FoldedProduct(nNow, key.nSecond);
        key.nSecond ^= FoldedProduct(reinterpret_cast<std::uintptr_t>(&key), key.nThird);
    }
    return key;
}

std::uint64_t HashText(const SHashKey& key, std::wstring_view svText, std::uint32_t dwNumber)
{
    constexpr std::size_t nHalf = sizeof(std::uint64_t);
    const auto* pNext = reinterpret_cast<const unsigned char*>(svText.data());
    std::size_t nLeft = svText.size() * sizeof(wchar_t);
    std::uint64_t nHash = key.nSecond ^ dwNumber;
    for (; nLeft > 2 * nHalf; nLeft -= 2 * nHalf, pNext += 2 * nHalf)
        nHash = FoldedProduct(Load(pNext, nHalf) ^ key.nFirst, Load(pNext + nHalf, nHalf) ^ nHash);
    const std::size_t nFront = nLeft < nHalf ? nLeft : nHalf;
    nHash = FoldedProduct(Load(pNext, nFront) ^ key.nFirst, Load(pNext + nFront, nLeft - nFront) ^ nHash);
    return FoldedProduct(nHash ^ svText.size(), key.nThird);
}

} // namespace QvXmlLib9
