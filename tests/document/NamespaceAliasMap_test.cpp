#include "quiver/document/NamespaceAliasMap.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

using QvXmlLib9::CNamespaceAliasMap;
using QvXmlLib9::CQvException;

TEST(NamespaceAliasMap, StartsEmpty)
{
    const CNamespaceAliasMap map;
    EXPECT_EQ(0, map.GetNamespaceCount());
    EXPECT_FALSE(map.DoesAliasExist(L"xml"));
    EXPECT_FALSE(map.DoesNamespaceExist(L""));
}

TEST(NamespaceAliasMap, AddingANamespaceAgainReplacesItsAlias)
{
    CNamespaceAliasMap map;
    map.Add(L"a", L"urn:x");
    map.Add(L"b", L"urn:x");
    EXPECT_EQ(1, map.GetNamespaceCount());
    EXPECT_TEXT(L"b", map.GetAliasFromNamespace(L"urn:x"));
    EXPECT_FALSE(map.DoesAliasExist(L"a"));
}

TEST(NamespaceAliasMap, TheLowerUriWinsWhereTwoNamespacesShareAnAlias)
{
    CNamespaceAliasMap map;
    map.Add(L"a", L"urn:y");
    map.Add(L"a", L"urn:x");
    EXPECT_EQ(2, map.GetNamespaceCount());
    EXPECT_TEXT(L"urn:x", map.GetNamespaceFromAlias(L"a"));
}

TEST(NamespaceAliasMap, AskingForTheAliasOfAnUnknownNamespaceEntersItWithAnEmptyAlias)
{
    const CNamespaceAliasMap map;
    EXPECT_TEXT(L"", map.GetAliasFromNamespace(L"urn:z"));
    EXPECT_EQ(1, map.GetNamespaceCount());
    EXPECT_TRUE(map.DoesNamespaceExist(L"urn:z"));
    EXPECT_TRUE(map.DoesAliasExist(L""));
    EXPECT_TEXT(L"urn:z", map.GetNamespaceFromAlias(L""));
}

TEST(NamespaceAliasMap, AskingWhetherANamespaceExistsChangesNothing)
{
    const CNamespaceAliasMap map;
    EXPECT_FALSE(map.DoesNamespaceExist(L"urn:z"));
    EXPECT_EQ(0, map.GetNamespaceCount());
}

TEST(NamespaceAliasMap, AnUnknownAliasThrows)
{
    CNamespaceAliasMap map;
    map.Add(L"b", L"urn:b");
    EXPECT_FALSE(map.DoesAliasExist(L"a"));
    QvTest::ExpectThrows<CQvException>(L"Namespace alias [a] not found", [&map] { map.GetNamespaceFromAlias(L"a"); });
    QvTest::ExpectThrows<CQvException>(L"Namespace alias [] not found", [&map] { map.GetNamespaceFromAlias(L""); });
    QvTest::ExpectThrows<CQvException>(L"Namespace alias [B] not found", [&map] { map.GetNamespaceFromAlias(L"B"); });
}

TEST(NamespaceAliasMap, NamespacesStandInTheOrderOfTheirUris)
{
    CNamespaceAliasMap map;
    map.Add(L"1", L"urn:b");
    map.Add(L"2", L"urn:a");
    map.Add(L"3", L"urn:B");
    EXPECT_TEXT(L"urn:B", map.GetNamespaceAt(0));
    EXPECT_TEXT(L"urn:a", map.GetNamespaceAt(1));
    EXPECT_TEXT(L"urn:b", map.GetNamespaceAt(2));
}

TEST(NamespaceAliasMap, NamespacesOutsideTheBasicPlaneStandInTheOrderOfTheirCodeUnits)
{
    CNamespaceAliasMap map;
    map.Add(L"1", L"\xFF21");
    map.Add(L"2", L"\U0001F600");
    EXPECT_TEXT(L"\xD83D\xDE00", map.GetNamespaceAt(0));
    EXPECT_TEXT(L"\xFF21", map.GetNamespaceAt(1));
    EXPECT_TRUE(map.DoesNamespaceExist(L"\U0001F600"));
    EXPECT_TRUE(map.DoesNamespaceExist(L"\xD83D\xDE00"));
}

TEST(NamespaceAliasMap, ANegativeIndexGivesTheFirstNamespaceAndOnePastTheEndNone)
{
    CNamespaceAliasMap map;
    map.Add(L"b", L"urn:b");
    map.Add(L"a", L"urn:a");
    EXPECT_TEXT(L"urn:a", map.GetNamespaceAt(-1));
    EXPECT_TEXT(L"urn:a", map.GetNamespaceAt(-2147483647 - 1));
    EXPECT_TEXT(L"", map.GetNamespaceAt(2));
    EXPECT_TEXT(L"", CNamespaceAliasMap().GetNamespaceAt(0));
}

TEST(NamespaceAliasMap, AllEntriesCanBeWalkedInTheirOrder)
{
    CNamespaceAliasMap map;
    map.Add(L"b", L"urn:y");
    map.Add(L"a", L"urn:z");
    map.Add(L"c", L"urn:x");
    std::wstring strSeen;
    for (const auto& [strNamespace, strAlias] : map.GetEntries())
        strSeen += strAlias + L"=" + strNamespace + L" ";
    EXPECT_TEXT(L"c=urn:x b=urn:y a=urn:z ", strSeen);
}

TEST(NamespaceAliasMap, RemovingTakesOneNamespaceAndPassesOverAnUnknownOne)
{
    CNamespaceAliasMap map;
    map.Add(L"a", L"urn:a");
    map.Add(L"b", L"urn:b");
    map.RemoveNamespace(L"urn:a");
    map.RemoveNamespace(L"urn:c");
    EXPECT_EQ(1, map.GetNamespaceCount());
    EXPECT_FALSE(map.DoesNamespaceExist(L"urn:a"));
    EXPECT_TRUE(map.DoesAliasExist(L"b"));
}

TEST(NamespaceAliasMap, CopiesLiveOnTheirOwn)
{
    CNamespaceAliasMap source;
    source.Add(L"a", L"urn:a");
    CNamespaceAliasMap copy(source);
    CNamespaceAliasMap assigned;
    assigned.Add(L"z", L"urn:z");
    assigned = source;
    source.Add(L"b", L"urn:b");
    EXPECT_EQ(1, copy.GetNamespaceCount());
    EXPECT_EQ(1, assigned.GetNamespaceCount());
    EXPECT_TEXT(L"urn:a", assigned.GetNamespaceFromAlias(L"a"));
}

TEST(NamespaceAliasMap, HasAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<CNamespaceAliasMap>);
}

} // namespace
