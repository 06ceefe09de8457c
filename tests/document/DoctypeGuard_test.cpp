#include "quiver/document/DoctypeGuard.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

using QvTest::ExpectThrows;
using QvTest::RunOnStack;
using QvXmlLib9::CDoctypeGuard;
using QvXmlLib9::CQvException;

namespace
{

const wchar_t s_szTooDeep[] = L"The entities of the document are nested too deeply to be processed";

constexpr std::size_t s_nSmallStack = 128 * 1024;

struct SEntity
{
    std::string strName;
    std::string strText;
};

std::string Name(int n)
{
    return "a" + std::to_string(n);
}

/// a0 without references, a1 with one to a0, and so on.
std::vector<SEntity> Chain(int nCount)
{
    std::vector<SEntity> entities{{Name(0), "x"}};
    for (int n = 1; n < nCount; ++n)
        entities.push_back({Name(n), "&" + Name(n - 1) + ";"});
    return entities;
}

void Add(CDoctypeGuard& guard, const std::vector<SEntity>& entities)
{
    for (const SEntity& entity : entities)
        guard.AddEntity(entity.strName, entity.strText);
}

void ExpectTooDeep(const std::vector<SEntity>& entities)
{
    CDoctypeGuard guard;
    ExpectThrows<CQvException>(s_szTooDeep, [&] { RunOnStack(s_nSmallStack, [&] { Add(guard, entities); }); });
}

void ExpectFits(const std::vector<SEntity>& entities)
{
    CDoctypeGuard guard;
    EXPECT_NO_THROW(RunOnStack(s_nSmallStack, [&] { Add(guard, entities); }));
}

} // namespace

TEST(DoctypeGuard, AChainOfEntitiesMayBeAsLongAsTheStackHolds)
{
    ExpectFits(Chain(50));
    ExpectTooDeep(Chain(500));
    CDoctypeGuard guard;
    EXPECT_NO_THROW(RunOnStack(16 * s_nSmallStack, [&] { Add(guard, Chain(500)); }));
}

TEST(DoctypeGuard, TheOrderOfTheDeclarationsDoesNotMatter)
{
    const std::vector<SEntity> few = Chain(25);
    ExpectFits({few.rbegin(), few.rend()});
    const std::vector<SEntity> many = Chain(500);
    ExpectTooDeep({many.rbegin(), many.rend()});

    // Runs of ten that look backward, joined by references that look forward.
    std::vector<SEntity> mixed;
    for (int nRun = 49; nRun >= 0; --nRun)
        mixed.insert(mixed.end(), many.begin() + nRun * 10, many.begin() + nRun * 10 + 10);
    ExpectTooDeep(mixed);
}

TEST(DoctypeGuard, ManyReferencesSideBySideAreNotDeep)
{
    std::vector<SEntity> entities{{"all", ""}};
    for (int n = 0; n < 5000; ++n)
        entities.front().strText += "&" + Name(n) + ";";
    for (int n = 0; n < 5000; ++n)
        entities.push_back({Name(n), "x"});
    ExpectFits(entities);
    std::swap(entities.front(), entities.back());
    ExpectFits(entities);
}

TEST(DoctypeGuard, OnlyReferencesToEntitiesCount)
{
    for (const char* lpcText : {"&#38;a;", "&#60;", "&", "a & b;", "&a", "&<;", ";"})
    {
        SCOPED_TRACE(lpcText);
        std::vector<SEntity> entities;
        for (int n = 0; n < 500; ++n)
            entities.push_back({n == 0 ? "a" : Name(n), lpcText});
        ExpectFits(entities);
    }
    // The last reference of a text counts as the first one does.
    std::vector<SEntity> entities = Chain(500);
    for (SEntity& entity : entities)
        entity.strText = "&b;& &#65;" + entity.strText + "&b;";
    ExpectTooDeep(entities);
}

TEST(DoctypeGuard, EntitiesThatReferToThemselvesAreLeftToTheParser)
{
    ExpectFits({{"a", "&b;"}, {"b", "&a;"}, {"c", "&c;"}});
    // A ring is as deep as it is long.
    std::vector<SEntity> ring = Chain(500);
    ring.front().strText = "&" + Name(499) + ";";
    ExpectTooDeep(ring);
}

TEST(DoctypeGuard, TakesLinearTime)
{
    std::vector<SEntity> entities;
    for (int n = 0; n < 100000; ++n)
        entities.push_back({Name(n), "&" + Name(99999 - n) + ";&&&&" + Name(n)});
    const auto start = std::chrono::steady_clock::now();
    RunOnStack(std::size_t{1024} * 1024 * 1024,
               [&]
               {
                   CDoctypeGuard guard;
                   Add(guard, entities);
               });
    EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 10);
}

TEST(DoctypeGuard, AttributesAreCountedForEachElement)
{
    CDoctypeGuard guard;
    for (int nElement = 0; nElement < 3; ++nElement)
    {
        for (std::size_t n = 0; n < CDoctypeGuard::s_nMaxAttributesOfElement; ++n)
            ASSERT_NO_THROW(guard.AddAttribute(Name(nElement))) << n;
    }
    EXPECT_EQ(1000u, guard.GetMostAttributesOfElement());
    for (const char* lpcElement : {"a2", "a0"})
    {
        ExpectThrows<CQvException>(L"The document type declares more than 1000 attributes of one element",
                                   [&] { guard.AddAttribute(lpcElement); });
    }
    EXPECT_NO_THROW(guard.AddAttribute("b"));
}

TEST(DoctypeGuard, TellsHowManyPrefixesATagOfAnEntityCanHave)
{
    CDoctypeGuard guard;
    EXPECT_EQ(0u, guard.GetMostPrefixesOfEntity());
    Add(guard, {{"a", "<a p:b='' p:c=''/>"}, {"b", "<p:a/>"}});
    EXPECT_EQ(2u, guard.GetMostPrefixesOfEntity());
}
