#include "quiver/output/NamespaceScopes.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

using QvXmlLib9::CNamespaceScopes;

namespace
{

/// The prefix of a namespace, or "(none)".
std::wstring PrefixOf(const CNamespaceScopes& scopes, const std::wstring& strNamespace)
{
    const std::size_t nBinding = scopes.Find(strNamespace);
    return nBinding == CNamespaceScopes::s_nNotFound ? L"(none)" : scopes.GetPrefix(nBinding);
}

} // namespace

TEST(NamespaceScopes, NothingIsBoundAtFirst)
{
    CNamespaceScopes scopes;
    EXPECT_TEXT(L"(none)", PrefixOf(scopes, L"urn:a"));
    EXPECT_TEXT(L"AA", scopes.GeneratePrefix());
    EXPECT_EQ(0u, scopes.GetCount());
}

TEST(NamespaceScopes, TheNewestBindingOfANamespaceHolds)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", L"p");
    scopes.Bind(L"urn:b", L"q");
    scopes.Bind(L"urn:a", L"r");
    EXPECT_TEXT(L"r", PrefixOf(scopes, L"urn:a"));
    EXPECT_TEXT(L"q", PrefixOf(scopes, L"urn:b"));
    scopes.DropTo(2);
    EXPECT_TEXT(L"p", PrefixOf(scopes, L"urn:a"));
    scopes.DropTo(0);
    EXPECT_TEXT(L"(none)", PrefixOf(scopes, L"urn:a"));
}

TEST(NamespaceScopes, AnUnboundNamespaceIsUnknownUntilThatIsDropped)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", L"AA");
    scopes.Unbind(L"urn:a");
    EXPECT_TEXT(L"(none)", PrefixOf(scopes, L"urn:a"));
    EXPECT_TEXT(L"AA", scopes.GeneratePrefix());
    EXPECT_FALSE(scopes.IsUnbinding(0));
    EXPECT_TRUE(scopes.IsUnbinding(1));
    EXPECT_TEXT(L"urn:a", scopes.GetNamespace(1));
    scopes.DropTo(1);
    EXPECT_TEXT(L"AA", PrefixOf(scopes, L"urn:a"));
}

TEST(NamespaceScopes, TwoNamespacesMayShareAPrefix)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", L"p");
    scopes.Bind(L"urn:b", L"p");
    EXPECT_TEXT(L"p", PrefixOf(scopes, L"urn:a"));
    EXPECT_TEXT(L"p", PrefixOf(scopes, L"urn:b"));
}

TEST(NamespaceScopes, PrefixesAreTwoLettersCountedUp)
{
    const struct
    {
        unsigned int n;
        std::wstring strPrefix;
    } rows[] = {{0, L"AA"},
                {1, L"AB"},
                {25, L"AZ"},
                {26, L"BA"},
                {675, L"ZZ"},
                {676, L"[A"},
                {701, L"[Z"},
                {702, L"\\A"},
                {26 * 62, {65 + 62, L'A'}},
                {26 * 1000 + 3, {65 + 1000, L'D'}}};
    for (const auto& row : rows)
        EXPECT_TEXT(row.strPrefix, CNamespaceScopes::FormatPrefix(row.n));
}

TEST(NamespaceScopes, AGeneratedPrefixIsTheFirstThatNoNamespaceHas)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", L"AB");
    EXPECT_TEXT(L"AA", scopes.GeneratePrefix());
    scopes.Bind(L"urn:b", L"AA");
    EXPECT_TEXT(L"AC", scopes.GeneratePrefix());
}

TEST(NamespaceScopes, ADroppedPrefixIsFreeAgain)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", scopes.GeneratePrefix());
    scopes.Bind(L"urn:b", scopes.GeneratePrefix());
    EXPECT_TEXT(L"AC", scopes.GeneratePrefix());
    scopes.DropTo(1);
    EXPECT_TEXT(L"AB", scopes.GeneratePrefix());
    scopes.DropTo(0);
    EXPECT_TEXT(L"AA", scopes.GeneratePrefix());
}

TEST(NamespaceScopes, AHiddenBindingGivesItsPrefixBack)
{
    CNamespaceScopes scopes;
    scopes.Bind(L"urn:a", L"AA");
    scopes.Bind(L"urn:b", L"AB");
    EXPECT_TEXT(L"AC", scopes.GeneratePrefix());
    scopes.Bind(L"urn:a", L"own");
    EXPECT_TEXT(L"AA", scopes.GeneratePrefix());
    scopes.DropTo(2);
    EXPECT_TEXT(L"AC", scopes.GeneratePrefix());
}

// The stack against the plain way: a map that every scope copies.
TEST(NamespaceScopes, BehavesAsMapsThatEveryScopeCopies)
{
    std::mt19937 random(4711);
    CNamespaceScopes scopes;
    std::vector<std::map<std::wstring, std::wstring>> maps(1);
    std::vector<std::size_t> counts{0};
    for (int nStep = 0; nStep < 20000; ++nStep)
    {
        const std::wstring strNamespace = L"urn:" + std::to_wstring(random() % 60);
        switch (random() % 7)
        {
        case 0:
            maps.push_back(maps.back());
            counts.push_back(scopes.GetCount());
            break;
        case 1:
            if (maps.size() == 1)
                break;
            maps.pop_back();
            scopes.DropTo(counts.back());
            counts.pop_back();
            break;
        case 2:
        {
            unsigned int n = 0;
            const auto fnTaken = [&](const std::wstring& strPrefix)
            {
                for (const auto& entry : maps.back())
                {
                    if (entry.second == strPrefix)
                        return true;
                }
                return false;
            };
            while (fnTaken(CNamespaceScopes::FormatPrefix(n)))
                ++n;
            const std::wstring strPrefix = scopes.GeneratePrefix();
            ASSERT_EQ(CNamespaceScopes::FormatPrefix(n), strPrefix);
            scopes.Bind(strNamespace, strPrefix);
            maps.back()[strNamespace] = strPrefix;
            break;
        }
        case 3:
        {
            const std::wstring strPrefix = CNamespaceScopes::FormatPrefix(static_cast<unsigned int>(random() % 40));
            scopes.Bind(strNamespace, strPrefix);
            maps.back()[strNamespace] = strPrefix;
            break;
        }
        case 4:
            scopes.Unbind(strNamespace);
            maps.back().erase(strNamespace);
            break;
        default:
        {
            const auto it = maps.back().find(strNamespace);
            ASSERT_EQ(it == maps.back().end() ? L"(none)" : it->second, PrefixOf(scopes, strNamespace));
            break;
        }
        }
    }
}

TEST(NamespaceScopes, ManyNamespacesAreFoundAndNamedWithoutAWalkOverAll)
{
    CNamespaceScopes scopes;
    for (unsigned int n = 0; n < 200000; ++n)
    {
        const std::wstring strPrefix = scopes.GeneratePrefix();
        ASSERT_EQ(CNamespaceScopes::FormatPrefix(n), strPrefix);
        scopes.Bind(L"urn:" + std::to_wstring(n), strPrefix);
    }
    EXPECT_TEXT(L"AB", PrefixOf(scopes, L"urn:1"));
    EXPECT_TEXT(CNamespaceScopes::FormatPrefix(199999), PrefixOf(scopes, L"urn:199999"));
}
