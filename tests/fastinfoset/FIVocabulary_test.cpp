#include "quiver/fastinfoset/FIVocabulary.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using QvXmlLib9::CFIVocabulary;

namespace
{

using Texts = std::vector<std::wstring>;

Texts TextsOf(const CFIVocabulary::CFIStringTable& table)
{
    return Texts(table.begin(), table.end());
}

/// The three indexes of each name, prefix first.
using Names = std::vector<std::vector<std::uint32_t>>;

Names NamesOf(const CFIVocabulary::CFIQNameTable& table)
{
    Names names;
    for (const CFIVocabulary::CQNameParts& parts : table)
        names.push_back({parts.m_dwPrefixIndex, parts.m_dwNamespaceIndex, parts.m_dwLocalNameIndex});
    return names;
}

std::string Dumped(const CFIVocabulary& vocabulary)
{
    ::testing::internal::CaptureStdout();
    vocabulary.Dump();
    std::fflush(stdout);
    return ::testing::internal::GetCapturedStdout();
}

} // namespace

TEST(FIVocabulary, BeginsWithTheBuiltInEntries)
{
    const CFIVocabulary vocabulary;
    EXPECT_EQ(Texts{L"xml"}, TextsOf(vocabulary.GetPrefixNamesTable()));
    EXPECT_EQ(Texts{L"http://www.w3.org/XML/1998/namespace"}, TextsOf(vocabulary.GetNamespaceNamesTable()));
    EXPECT_EQ(Texts{}, TextsOf(vocabulary.GetLocalNamesTable()));
    EXPECT_EQ(Texts{}, TextsOf(vocabulary.GetAttributeValuesTable()));
    EXPECT_EQ(Texts{}, TextsOf(vocabulary.GetCharacterChunksTable()));
    EXPECT_EQ(Names{}, NamesOf(vocabulary.GetAttributeNamesTable()));
    EXPECT_EQ(Names{}, NamesOf(vocabulary.GetElementNamesTable()));
}

TEST(FIVocabulary, AnAttributeWithALocalNameAlone)
{
    CFIVocabulary vocabulary;
    vocabulary.AddAttribute(L"", L"", L"id");
    EXPECT_EQ((Names{{0, 0, 1}}), NamesOf(vocabulary.GetAttributeNamesTable()));
    EXPECT_EQ(Texts{L"id"}, TextsOf(vocabulary.GetLocalNamesTable()));
    EXPECT_EQ(1u, TextsOf(vocabulary.GetPrefixNamesTable()).size());
    EXPECT_EQ(1u, TextsOf(vocabulary.GetNamespaceNamesTable()).size());
}

TEST(FIVocabulary, ANameIsEnteredOnce)
{
    CFIVocabulary vocabulary;
    for (int n = 0; n < 2; ++n)
    {
        vocabulary.AddAttribute(L"", L"", L"id");
        vocabulary.AddElement(L"p", L"urn:p", L"a");
    }
    EXPECT_EQ((Names{{0, 0, 1}}), NamesOf(vocabulary.GetAttributeNamesTable()));
    EXPECT_EQ((Names{{2, 2, 2}}), NamesOf(vocabulary.GetElementNamesTable()));
}

TEST(FIVocabulary, ElementsAndAttributesShareThePartsOfNamesButNotTheNames)
{
    CFIVocabulary vocabulary;
    vocabulary.AddElement(L"", L"", L"a");
    vocabulary.AddAttribute(L"", L"", L"a");
    vocabulary.AddElement(L"xml", L"http://www.w3.org/XML/1998/namespace", L"a");
    vocabulary.AddElement(L"", L"urn:p", L"b");
    vocabulary.AddAttribute(L"p", L"urn:p", L"b");
    EXPECT_EQ((Names{{0, 0, 1}, {1, 1, 1}, {0, 2, 2}}), NamesOf(vocabulary.GetElementNamesTable()));
    EXPECT_EQ((Names{{0, 0, 1}, {2, 2, 2}}), NamesOf(vocabulary.GetAttributeNamesTable()));
    EXPECT_EQ((Texts{L"a", L"b"}), TextsOf(vocabulary.GetLocalNamesTable()));
    EXPECT_EQ((Texts{L"xml", L"p"}), TextsOf(vocabulary.GetPrefixNamesTable()));
}

TEST(FIVocabulary, AnEmptyLocalNameIsAnEntryToo)
{
    CFIVocabulary vocabulary;
    vocabulary.AddElement(L"", L"", L"");
    EXPECT_EQ((Names{{0, 0, 1}}), NamesOf(vocabulary.GetElementNamesTable()));
    EXPECT_EQ(Texts{L""}, TextsOf(vocabulary.GetLocalNamesTable()));
}

TEST(FIVocabulary, ATextAddedTwiceMakesTwoEntriesOfWhichTheFirstIsUsed)
{
    CFIVocabulary vocabulary;
    vocabulary.AddLocalName(L"a");
    vocabulary.AddLocalName(L"a");
    EXPECT_EQ((Texts{L"a", L"a"}), TextsOf(vocabulary.GetLocalNamesTable()));
    vocabulary.AddElement(L"", L"", L"a");
    EXPECT_EQ((Names{{0, 0, 1}}), NamesOf(vocabulary.GetElementNamesTable()));
    EXPECT_NE(std::string::npos, Dumped(vocabulary).find("\nLocal Names\na, 1\n\n"));
}

TEST(FIVocabulary, EveryTextGoesToItsOwnTable)
{
    CFIVocabulary vocabulary;
    vocabulary.AddAttributeValue(L"v");
    vocabulary.AddElementValue(L"t");
    vocabulary.AddPrefixName(L"p");
    vocabulary.AddNamespaceName(L"urn:n");
    vocabulary.AddLocalName(L"l");
    EXPECT_EQ(Texts{L"v"}, TextsOf(vocabulary.GetAttributeValuesTable()));
    EXPECT_EQ(Texts{L"t"}, TextsOf(vocabulary.GetCharacterChunksTable()));
    EXPECT_EQ((Texts{L"xml", L"p"}), TextsOf(vocabulary.GetPrefixNamesTable()));
    EXPECT_EQ((Texts{L"http://www.w3.org/XML/1998/namespace", L"urn:n"}), TextsOf(vocabulary.GetNamespaceNamesTable()));
    EXPECT_EQ(Texts{L"l"}, TextsOf(vocabulary.GetLocalNamesTable()));
}

TEST(FIVocabulary, TextsEndAtAZeroUnitAndHoldUtf16Units)
{
    CFIVocabulary vocabulary;
    vocabulary.AddAttributeValue(std::wstring_view(L"a\0b", 3));
    vocabulary.AddAttributeValue(L"\U0001F600");
    EXPECT_EQ((Texts{L"a", {0xD83D, 0xDE00}}), TextsOf(vocabulary.GetAttributeValuesTable()));
    vocabulary.AddElement(std::wstring_view(L"p\0x", 3), std::wstring_view(L"u\0x", 3), std::wstring_view(L"l\0x", 3));
    vocabulary.AddElement(L"p", L"u", L"l");
    EXPECT_EQ(1u, NamesOf(vocabulary.GetElementNamesTable()).size());
}

TEST(FIVocabulary, WhatIsAddedToAFullTableIsDropped)
{
    CFIVocabulary vocabulary;
    for (int n = 1; n <= 1048576; ++n)
        vocabulary.AddAttributeValue(std::to_wstring(n));
    EXPECT_EQ(1048576u, TextsOf(vocabulary.GetAttributeValuesTable()).size());
    vocabulary.AddAttributeValue(L"one more");
    EXPECT_EQ(1048576u, TextsOf(vocabulary.GetAttributeValuesTable()).size());
    EXPECT_TEXT(L"1048576", TextsOf(vocabulary.GetAttributeValuesTable()).back());
}

TEST(FIVocabulary, ANameBeyondAFullTableIsDropped)
{
    CFIVocabulary vocabulary;
    for (int n = 1; n <= 1048577; ++n)
        vocabulary.AddElement(L"", L"", std::to_wstring(n));
    EXPECT_EQ(1048576u, NamesOf(vocabulary.GetElementNamesTable()).size());
    EXPECT_EQ(1048576u, TextsOf(vocabulary.GetLocalNamesTable()).size());
}

TEST(FIVocabulary, TablesAreCopiedOneByOne)
{
    CFIVocabulary vocabulary;
    vocabulary.AddLocalName(L"a");
    vocabulary.AddElement(L"", L"", L"a");
    const CFIVocabulary::CFIStringTable strings = vocabulary.GetLocalNamesTable();
    CFIVocabulary::CFIQNameTable names;
    names = vocabulary.GetElementNamesTable();
    vocabulary.AddElement(L"", L"", L"b");
    EXPECT_EQ(Texts{L"a"}, TextsOf(strings));
    EXPECT_EQ((Names{{0, 0, 1}}), NamesOf(names));
}

TEST(FIVocabulary, DumpPrintsWhatTextsAreFoundBy)
{
    CFIVocabulary vocabulary;
    vocabulary.AddAttribute(L"p", L"urn:p", L"x");
    vocabulary.AddAttribute(L"", L"", L"y");
    vocabulary.AddAttributeValue(L"v\u00E9");
    vocabulary.AddElementValue(L"t");
    vocabulary.AddElement(L"", L"", L"e");
    EXPECT_EQ("\n** Dumping FI Tables **\n"
              "\nAttr Names\nx\1urn:p\1p, 1\ny\1\1, 2\n"
              "\nAttr Values\nv\xC3\xA9, 1\n"
              "\nCharacter Chunks\nt, 1\n"
              "\nElement Names\ne\1\1, 1\n"
              "\nLocal Names\nx, 1\ny, 2\ne, 3\n"
              "\nNamespace Names\nhttp://www.w3.org/XML/1998/namespace, 1\nurn:p, 2\n"
              "\nPrefix Names\nxml, 1\np, 2\n",
              Dumped(vocabulary));
}
