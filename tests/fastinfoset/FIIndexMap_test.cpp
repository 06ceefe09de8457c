#include "quiver/fastinfoset/FIIndexMap.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using QvXmlLib9::CFIIndexMap;

TEST(FIIndexMap, HoldsNothingAtFirst)
{
    CFIIndexMap map;
    EXPECT_EQ(0u, map.GetCount());
    EXPECT_EQ(0u, map.Find({L""}));
    EXPECT_EQ(0u, map.Find({L"a", L"urn:a", L"p"}));
}

TEST(FIIndexMap, IndexesCountUpFromOneAndAKeyKeepsItsFirst)
{
    CFIIndexMap map;
    map.Add({L"a"});
    map.Add({L"b"});
    map.Add({L"a"});
    map.Add({L"c"});
    EXPECT_EQ(3u, map.GetCount());
    EXPECT_EQ(1u, map.Find({L"a"}));
    EXPECT_EQ(2u, map.Find({L"b"}));
    EXPECT_EQ(3u, map.Find({L"c"}));
    EXPECT_TEXT(L"b", std::wstring(map.GetKey(2).strText));
}

TEST(FIIndexMap, NamesDifferByEveryPart)
{
    CFIIndexMap map;
    const CFIIndexMap::SKey keys[] = {
        {L"a"},  {L"a", L"u"},       {L"a", L"", L"p"},  {L"a", L"u", L"p"}, {L"a", L"p", L"u"},
        {L"au"}, {L"a", L"up"},      {L"aup"},           {L"", L"a"},        {L"", L"", L"a"},
        {L""},   {L"a", L"u", L"q"}, {L"a", L"v", L"p"}, {L"b", L"u", L"p"},
    };
    for (const CFIIndexMap::SKey& key : keys)
        map.Add(key);
    std::uint32_t nIndex = 0;
    for (const CFIIndexMap::SKey& key : keys)
    {
        EXPECT_EQ(++nIndex, map.Find(key));
        const CFIIndexMap::SKey found = map.GetKey(nIndex);
        EXPECT_TEXT(std::wstring(key.strText), std::wstring(found.strText));
        EXPECT_TEXT(std::wstring(key.strNamespace), std::wstring(found.strNamespace));
        EXPECT_TEXT(std::wstring(key.strPrefix), std::wstring(found.strPrefix));
    }
}

TEST(FIIndexMap, ACopyIsIndependent)
{
    CFIIndexMap map;
    map.Add({L"a"});
    CFIIndexMap copy = map;
    copy.Add({L"b"});
    map.Add({L"c"});
    EXPECT_EQ(2u, copy.Find({L"b"}));
    EXPECT_EQ(0u, copy.Find({L"c"}));
    EXPECT_EQ(2u, map.Find({L"c"}));
    EXPECT_EQ(1u, copy.Find({L"a"}));
}

TEST(FIIndexMap, WhatIsAddedToAFullMapIsDropped)
{
    CFIIndexMap map;
    for (std::size_t n = 1; n <= CFIIndexMap::s_nMaxEntries; ++n)
        map.Add({std::to_wstring(n)});
    EXPECT_EQ(1048576u, map.GetCount());
    EXPECT_EQ(1048576u, map.Find({L"1048576"}));
    map.Add({L"one more"});
    EXPECT_EQ(1048576u, map.GetCount());
    EXPECT_EQ(0u, map.Find({L"one more"}));
    EXPECT_EQ(1u, map.Find({L"1"}));
}
