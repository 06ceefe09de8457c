#include "quiver/foundation/KeyedHash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <vector>

using namespace QvXmlLib9;

namespace
{

constexpr SHashKey s_key{0x0123456789ABCDEF, 0x243F6A8885A308D3, 0x13198A2E03707344};

/// What is left of a hash in a table of 256 places must be spread over all of them.
void ExpectSpread(const std::vector<std::uint64_t>& hashes)
{
    std::vector<std::size_t> places(256);
    for (const std::uint64_t nHash : hashes)
        ++places[nHash & 255];
    const std::size_t nFair = hashes.size() / places.size();
    for (std::size_t n = 0; n < places.size(); ++n)
    {
        EXPECT_GT(places[n], nFair / 2) << "place " << n;
        EXPECT_LT(places[n], nFair * 2) << "place " << n;
    }
}

} // namespace

TEST(KeyedHash, ProductsFoldBothHalvesOnEveryMachine)
{
    const struct
    {
        std::uint64_t nLeft;
        std::uint64_t nRight;
        std::uint64_t nFolded;
    } cases[] = {
        {0x0, 0x5, 0x0},
        {0x1, 0x123456789ABCDEF0, 0x123456789ABCDEF0},
        {0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFE00000001},
        {0x100000000, 0x100000000, 0x1},
        {0x123456789ABCDEF0, 0xFEDCBA9876543210, 0x317228F48165BB22},
        {0xFFFFFFFFFFFFFFFF, 0x100000001, 0xFFFFFFFFFFFFFFFF},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.nFolded, FoldedProduct(c.nLeft, c.nRight)) << c.nLeft << " times " << c.nRight;
}

TEST(KeyedHash, TextsThatDifferInOnePlaceOrInLengthHaveDifferentHashes)
{
    std::set<std::uint64_t> hashes;
    std::size_t nTexts = 0;
    for (std::size_t nLength = 0; nLength < 40; ++nLength)
    {
        std::wstring strText(nLength, L'x');
        hashes.insert(HashText(s_key, strText));
        ++nTexts;
        for (std::size_t n = 0; n < nLength; ++n, ++nTexts)
        {
            strText[n] = L'y';
            hashes.insert(HashText(s_key, strText));
            strText[n] = L'x';
        }
    }
    EXPECT_EQ(nTexts, hashes.size());
}

TEST(KeyedHash, EqualTextsHaveEqualHashesWhereverTheyStand)
{
    const std::wstring strText = L"a text of some length";
    EXPECT_EQ(HashText(s_key, strText), HashText(s_key, std::wstring_view(L"-" + strText).substr(1)));
    EXPECT_EQ(HashText(s_key, std::wstring_view()), HashText(s_key, L""));
}

TEST(KeyedHash, TheNumberTellsEqualTextsApart)
{
    for (const wchar_t* lpctText : {L"", L"a", L"a text of some length"})
        EXPECT_NE(HashText(s_key, lpctText, 1), HashText(s_key, lpctText, 2));
}

TEST(KeyedHash, EveryPartOfTheKeyChangesEveryHash)
{
    for (std::uint64_t SHashKey::*pnPart : {&SHashKey::nFirst, &SHashKey::nSecond, &SHashKey::nThird})
    {
        SHashKey other = s_key;
        ++(other.*pnPart);
        for (const wchar_t* lpctText : {L"", L"a", L"a text of some length"})
            EXPECT_NE(HashText(s_key, lpctText), HashText(other, lpctText));
        EXPECT_NE(HashPair(s_key, 1, 2), HashPair(other, 1, 2));
    }
}

TEST(KeyedHash, NeighboursAreSpread)
{
    constexpr std::uint64_t nCount = 100000;
    std::vector<std::uint64_t> texts;
    std::vector<std::uint64_t> lowPairs;
    std::vector<std::uint64_t> highPairs;
    for (std::uint64_t n = 0; n < nCount; ++n)
    {
        texts.push_back(HashText(s_key, L"urn:" + std::to_wstring(n)));
        lowPairs.push_back(HashPair(s_key, n, 0));
        highPairs.push_back(HashPair(s_key, n << 40, 0));
    }
    for (const auto& hashes : {texts, lowPairs, highPairs})
        ExpectSpread(hashes);
}

TEST(KeyedHash, EveryDrawGivesAnotherKeyAndTheProcessKeepsOne)
{
    const SHashKey first = Internal::DrawHashKey();
    const SHashKey second = Internal::DrawHashKey();
    EXPECT_NE(std::tie(first.nFirst, first.nSecond, first.nThird),
              std::tie(second.nFirst, second.nSecond, second.nThird));
    EXPECT_EQ(&GetHashKey(), &GetHashKey());
}
