#include "quiver/fastinfoset/FIIndexMap.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using QvXmlLib9::CFIIndexMap;
using QvXmlLib9::CFINameMap;

namespace
{

using SName = CFINameMap::SName;

void ExpectName(const SName& expected, const SName& actual)
{
    EXPECT_TEXT(std::wstring(expected.svPrefix), std::wstring(actual.svPrefix));
    EXPECT_TEXT(std::wstring(expected.svNamespace), std::wstring(actual.svNamespace));
    EXPECT_TEXT(std::wstring(expected.svLocalName), std::wstring(actual.svLocalName));
}

} // namespace

TEST(FIIndexMap, HoldsNothingAtFirst)
{
    CFIIndexMap map;
    EXPECT_EQ(0u, map.GetCount());
    for (const wchar_t* lpctText : {L"", L"a", L"a longer text"})
        EXPECT_EQ(0u, map.Find(lpctText));
}

TEST(FIIndexMap, IndexesCountUpFromOneAndATextKeepsItsFirst)
{
    CFIIndexMap map;
    EXPECT_EQ(1u, map.Add(L"a"));
    EXPECT_EQ(2u, map.Add(L"a longer text"));
    EXPECT_EQ(1u, map.Add(L"a"));
    EXPECT_EQ(2u, map.Add(L"a longer text"));
    EXPECT_EQ(3u, map.Add(L"c"));
    EXPECT_EQ(3u, map.GetCount());
    EXPECT_EQ(1u, map.Find(L"a"));
    EXPECT_EQ(2u, map.Find(L"a longer text"));
    EXPECT_TEXT(L"a longer text", std::wstring(map.GetText(2)));
    EXPECT_TEXT(L"c", std::wstring(map.GetText(3)));
}

TEST(FIIndexMap, TextsOfEveryLengthAreToldApart)
{
    // Each differs from the others in one place, or in length.
    std::vector<std::wstring> texts;
    for (std::size_t nLength = 0; nLength < 20; ++nLength)
    {
        texts.push_back(std::wstring(nLength, L'x'));
        for (std::size_t n = 0; n < nLength; ++n)
        {
            texts.push_back(std::wstring(nLength, L'x'));
            texts.back()[n] = 0xFFFF;
            texts.push_back(std::wstring(nLength, L'x'));
            texts.back()[n] = 1;
        }
    }
    CFIIndexMap map;
    std::uint32_t dwIndex = 0;
    for (const std::wstring& strText : texts)
    {
        EXPECT_EQ(0u, map.Find(strText)) << QvTest::Show(strText);
        EXPECT_EQ(++dwIndex, map.Add(strText)) << QvTest::Show(strText);
    }
    dwIndex = 0;
    for (const std::wstring& strText : texts)
    {
        EXPECT_EQ(++dwIndex, map.Find(strText)) << QvTest::Show(strText);
        EXPECT_TEXT(strText, std::wstring(map.GetText(dwIndex)));
        EXPECT_TRUE(map.IsAt(dwIndex, strText, 0));
        EXPECT_FALSE(map.IsAt(dwIndex, strText, 1));
        EXPECT_FALSE(map.IsAt(dwIndex, strText + L"x", 0));
    }
}

TEST(FIIndexMap, ATextWithAnotherNumberIsAnother)
{
    CFIIndexMap map;
    EXPECT_EQ(1u, map.Add(L"a"));
    EXPECT_EQ(2u, map.Add(L"a", 1));
    EXPECT_EQ(3u, map.Add(L"a", 2));
    EXPECT_EQ(4u, map.Add(L"", 1));
    EXPECT_EQ(1u, map.Find(L"a"));
    EXPECT_EQ(2u, map.Find(L"a", 1));
    EXPECT_EQ(0u, map.Find(L"a", 3));
    EXPECT_EQ(2u, map.GetNumber(3));
}

TEST(FIIndexMap, ACopyIsIndependent)
{
    CFIIndexMap map;
    map.Add(L"a");
    CFIIndexMap copy = map;
    copy.Add(L"b");
    map.Add(L"c");
    EXPECT_EQ(2u, copy.Find(L"b"));
    EXPECT_EQ(0u, copy.Find(L"c"));
    EXPECT_EQ(2u, map.Find(L"c"));
    EXPECT_EQ(1u, copy.Find(L"a"));
}

TEST(FIIndexMap, WhatIsAddedToAFullMapIsDropped)
{
    CFIIndexMap map;
    for (std::size_t n = 1; n <= CFIIndexMap::s_nMaxEntries; ++n)
        map.Add(std::to_wstring(n));
    EXPECT_EQ(1048576u, map.GetCount());
    EXPECT_EQ(1048576u, map.Find(L"1048576"));
    for (const wchar_t* lpctText : {L"more", L"another one more"})
    {
        EXPECT_EQ(0u, map.Add(lpctText));
        EXPECT_EQ(0u, map.Find(lpctText));
    }
    EXPECT_EQ(1048576u, map.GetCount());
    EXPECT_EQ(1u, map.Add(L"1"));
}

namespace
{

/// Texts of four units for which a multiplication by a fixed odd number, as tables often mix, gives the same high bits.
std::vector<std::wstring> MakeCollidingTexts(std::size_t nCount)
{
    constexpr std::uint64_t nFactor = 0x9E3779B97F4A7C15u;
    std::uint64_t nInverse = nFactor;
    for (int n = 0; n < 6; ++n)
        nInverse *= 2 - nFactor * nInverse;
    std::vector<std::wstring> texts;
    for (std::uint64_t nProduct = 0x1234567800000000u; texts.size() < nCount; ++nProduct)
    {
        const std::uint64_t nUnits = nProduct * nInverse;
        std::wstring strText;
        for (int n = 0; n < 4; ++n)
            strText += static_cast<wchar_t>(nUnits >> (16 * n) & 0xFFFF);
        if (std::all_of(strText.begin(), strText.end(), [](wchar_t c) { return c >= 0x20 && c < 0xD800; }))
            texts.push_back(strText);
    }
    return texts;
}

double SecondsToAdd(const std::vector<std::wstring>& texts)
{
    const auto start = std::chrono::steady_clock::now();
    CFIIndexMap map;
    for (const std::wstring& strText : texts)
        map.Add(strText);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

TEST(FIIndexMap, ChosenTextsTakeNoLongerThanOthers)
{
    constexpr std::size_t nCount = 50000;
    const std::vector<std::wstring> chosen = MakeCollidingTexts(nCount);
    std::vector<std::wstring> others;
    for (std::size_t n = 0; n < nCount; ++n)
        others.push_back(std::to_wstring(n));
    // A table that all of them meet in one place takes hundreds of times as long.
    EXPECT_LT(SecondsToAdd(chosen), 0.05 + 8 * SecondsToAdd(others));
}

TEST(FIIndexMap, ATextThatIsAddedAgainKeepsItsIndexAndTakesOneMore)
{
    CFIIndexMap map;
    for (const wchar_t* lpctText : {L"a", L"a longer text"})
    {
        const std::uint32_t dwIndex = map.Add(lpctText);
        for (int n = 0; n < 100; ++n)
            map.AddAgain(lpctText);
        EXPECT_EQ(dwIndex, map.Find(lpctText));
        EXPECT_EQ(dwIndex + 100, map.GetCount());
        EXPECT_TEXT(lpctText, std::wstring(map.GetText(dwIndex + 100)));
    }
    EXPECT_EQ(203u, map.Add(L"b"));
}

TEST(FINameMap, ANameThatIsAddedAgainKeepsItsIndexAndTakesOneMore)
{
    CFINameMap map;
    const SName name{L"p", L"urn:a", L"a"};
    map.Add(name);
    map.Add({L"q", L"urn:b", L"b"});
    map.AddAgain(name);
    EXPECT_EQ(1u, map.Find(name));
    EXPECT_EQ(3u, map.GetCount());
    ExpectName(name, map.GetName(3));
    map.Add({L"", L"", L"c"});
    EXPECT_EQ(4u, map.Find({L"", L"", L"c"}));
}

TEST(FINameMap, NamesDifferByEveryPart)
{
    CFINameMap map;
    const SName names[] = {
        {L"", L"", L"a"},  {L"", L"u", L"a"},  {L"p", L"", L"a"},  {L"p", L"u", L"a"}, {L"u", L"p", L"a"},
        {L"", L"", L"au"}, {L"", L"up", L"a"}, {L"", L"", L"aup"}, {L"", L"a", L""},   {L"a", L"", L""},
        {L"", L"", L""},   {L"q", L"u", L"a"}, {L"p", L"v", L"a"}, {L"p", L"u", L"b"},
    };
    EXPECT_EQ(0u, map.Find(names[0]));
    for (const SName& name : names)
    {
        EXPECT_EQ(0u, map.Find(name));
        map.Add(name);
        map.Add(name);
    }
    EXPECT_EQ(14u, map.GetCount());
    // Thrice, so that names are also found by what came behind them before.
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        std::uint32_t dwIndex = 0;
        for (const SName& name : names)
        {
            EXPECT_EQ(++dwIndex, map.Find(name));
            ExpectName(name, map.GetName(dwIndex));
        }
    }
    for (const SName& name : {SName{L"p", L"u", L"c"}, SName{L"", L"w", L"a"}, SName{L"r", L"u", L"a"}})
        EXPECT_EQ(0u, map.Find(name));
}

TEST(FINameMap, NamesOfOneQualifierAreFoundByTheirLocalNames)
{
    CFINameMap map;
    map.Add({L"p", L"u", L"a"});
    map.Add({L"", L"", L"a"});
    map.Add({L"p", L"u", L"b"});
    const CFINameMap::Qualifier qualifier = map.FindQualifier(L"p", L"u");
    EXPECT_EQ(1u, map.Find(L"a", qualifier));
    EXPECT_EQ(3u, map.Find(L"b", qualifier));
    EXPECT_EQ(0u, map.Find(L"c", qualifier));
    EXPECT_EQ(2u, map.Find(L"a", CFINameMap::s_nNoQualifier));
    EXPECT_EQ(CFINameMap::s_nNoQualifier, map.FindQualifier(L"", L""));
    for (const auto& [lpctPrefix, lpctNamespace] :
         {std::pair(L"p", L"v"), std::pair(L"q", L"u"), std::pair(L"", L"u"), std::pair(L"p", L"")})
    {
        EXPECT_EQ(CFINameMap::s_nUnknownQualifier, map.FindQualifier(lpctPrefix, lpctNamespace));
        EXPECT_EQ(0u, map.Find(L"a", map.FindQualifier(lpctPrefix, lpctNamespace)));
    }
}

TEST(FINameMap, WhatIsAddedToAFullMapIsDropped)
{
    CFINameMap map;
    for (std::size_t n = 1; n <= CFIIndexMap::s_nMaxEntries; ++n)
        map.Add({L"", L"u", std::to_wstring(n)});
    map.Add({L"", L"u", L"one more"});
    map.Add({L"", L"v", L"1"});
    EXPECT_EQ(1048576u, map.GetCount());
    EXPECT_EQ(0u, map.Find({L"", L"u", L"one more"}));
    EXPECT_EQ(0u, map.Find({L"", L"v", L"1"}));
    EXPECT_EQ(1u, map.Find({L"", L"u", L"1"}));
}

TEST(FIIndexMap, WhatIsLocatedAndAddedIsFoundLikeAnyOther)
{
    CFIIndexMap located;
    CFIIndexMap added;
    for (int n = 0; n < 3000; ++n)
    {
        // Short texts and long ones, each of them twice.
        const std::wstring strText = (n % 3 == 0 ? L"a longer text " : L"") + std::to_wstring(n / 2);
        const CFIIndexMap::SPlace place = located.Locate(strText);
        EXPECT_EQ(place.dwIndex, added.Find(strText));
        if (place.dwIndex == 0)
            located.AddLocated(strText, place);
        added.Add(strText);
        ASSERT_EQ(located.Find(strText), added.Find(strText));
        ASSERT_EQ(located.GetCount(), added.GetCount());
    }
    for (std::uint32_t dwIndex = 1; dwIndex <= added.GetCount(); ++dwIndex)
        ASSERT_EQ(located.GetText(dwIndex), added.GetText(dwIndex));
}

TEST(FIIndexMap, AFullMapStaysAsItIsAlsoForLocatedTexts)
{
    CFIIndexMap map;
    while (map.GetCount() < CFIIndexMap::s_nMaxEntries)
        map.AddAgain(L"x");
    for (const wchar_t* const lpctText : {L"short", L"a longer text"})
    {
        map.AddLocated(lpctText, map.Locate(lpctText));
        EXPECT_EQ(map.Find(lpctText), 0U);
    }
    EXPECT_EQ(map.GetCount(), CFIIndexMap::s_nMaxEntries);
}
