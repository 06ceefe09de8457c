#include "quiver/document/XmlTreeBuilder.h"

#include "quiver/foundation/Encoder.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace
{

using QvTest::CountInstances;
using QvTest::Outline;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlNodeStore;
using QvXmlLib9::CXmlText;
using QvXmlLib9::CXmlTreeBuilder;
using QvXmlLib9::SXmlName;

/// A tree and its builder.
struct STree
{
    explicit STree(CXmlTreeBuilder::PfnElementFilter pfnFilter = nullptr)
        : builder(store, pRoot, namespaces, pfnFilter)
    {
    }

    std::wstring Show() const { return Outline(pRoot); }

    CXmlNodeStore store{nullptr};
    CXmlElement* pRoot = nullptr;
    CXmlTreeBuilder::CNamespaces namespaces;
    CXmlTreeBuilder builder;
};

TEST(XmlTreeBuilder, ThereIsNoTreeUntilThereIsARoot)
{
    const STree tree;
    EXPECT_EQ(nullptr, tree.pRoot);
    EXPECT_FALSE(tree.builder.HasOpenElement());
}

TEST(XmlTreeBuilder, ElementsBecomeChildrenOfTheInnermostOpenOne)
{
    STree tree;
    CXmlElement* const pRoot = tree.builder.AddElement(tree.builder.InternName("a"));
    EXPECT_EQ(pRoot, tree.pRoot);
    EXPECT_EQ(pRoot, tree.builder.GetOpenElement());
    CXmlElement* const pChild = tree.builder.AddElement(tree.builder.InternName("b"));
    EXPECT_EQ(pChild, tree.builder.GetOpenElement());
    tree.builder.AddElement(tree.builder.InternName("c"));
    tree.builder.EndElement();
    tree.builder.CloseElement();
    EXPECT_EQ(pRoot, tree.builder.GetOpenElement());
    tree.builder.AddElement(tree.builder.InternName("d"));
    // What has been built is there before its end has come.
    EXPECT_TEXT(L"a (b (c), d)", tree.Show());
}

TEST(XmlTreeBuilder, ElementsMayBeAddedByTheTextOfTheirNames)
{
    STree tree;
    tree.builder.AddDocElement(L"urn:x", L"a");
    tree.builder.AddChildElement(L"", L"b");
    EXPECT_TEXT(L"{urn:x}a (b)", tree.Show());
}

TEST(XmlTreeBuilder, ANameHasOneRecordInEachForm)
{
    STree tree;
    const SXmlName& utf8 = tree.builder.InternName("urn:\xE2\x82\xAC|b");
    EXPECT_EQ(&utf8, &tree.builder.InternName("urn:\xE2\x82\xAC|b"));
    EXPECT_TEXT(L"urn:\x20AC", tree.builder.GetParts(utf8).strNamespaceURI);
    EXPECT_TEXT(L"b", tree.builder.GetParts(utf8).strLocalName);
    const SXmlName& text = tree.builder.InternName(L"urn:x", L"b");
    EXPECT_EQ(&text, &tree.builder.InternName(L"urn:x", L"b"));
    EXPECT_EQ(&text, &tree.builder.GetName(tree.builder.AddElement(text)));
}

TEST(XmlTreeBuilder, AttributesComeInEveryForm)
{
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    CXmlElement* const pRoot = builder.AddElement(builder.InternName("r"));
    builder.AddElementAttribute(pRoot, L"a", L"1", L"urn:x");
    builder.AddElementAttribute(pRoot, builder.InternName("b"), std::wstring_view(L"\x20AC\r"));
    builder.AddElementAttribute(pRoot, builder.InternName("c"), std::string_view("\xE2\x82\xAC\r"));
    CXmlText* const pShared = builder.MakeSharedValue("shared");
    builder.AddElementAttribute(pRoot, builder.InternName("d"), pShared);
    builder.AddElementAttribute(pRoot, builder.InternName("e"), pShared);
    builder.AddElementAttribute(pRoot, builder.InternName("f"), builder.MakeSharedValue(L"wide"));
    builder.AddElementAttribute(pRoot, builder.InternName("g"), static_cast<CXmlText*>(nullptr));
    EXPECT_TEXT(L"r @{urn:x}a='1' @b='\x20AC\r' @c='\x20AC\r' @d='shared' @e='shared' @f='wide' @g=''", tree.Show());
    EXPECT_EQ(&pRoot->GetAttributes()[3]->GetValue(), &pRoot->GetAttributes()[4]->GetValue());
}

TEST(XmlTreeBuilder, TextLosesCarriageReturnsAndEndsAtZero)
{
    using namespace std::string_view_literals;
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    CXmlElement* const pRoot = builder.AddElement(builder.InternName("r"));
    EXPECT_FALSE(builder.HasText(pRoot));
    builder.AppendTextExcludingCR(pRoot, "\r\r"sv);
    EXPECT_FALSE(builder.HasText(pRoot));
    builder.AppendTextExcludingCR(pRoot, "a\rb\r"sv);
    EXPECT_TRUE(builder.HasText(pRoot));
    builder.AppendTextExcludingCR(pRoot, L"\rc\x20AC");
    builder.AppendTextExcludingCR(pRoot, L"d\reXX", 3);
    builder.AppendTextExcludingCR(pRoot, L"f\0XX", 4);
    builder.AppendTextExcludingCR(pRoot, L"g\r\0XX"sv);
    EXPECT_TEXT(L"r \"abc\x20AC"
                L"defg\"",
                tree.Show());
}

TEST(XmlTreeBuilder, ATextMayBeSharedByElements)
{
    using namespace std::string_view_literals;
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    builder.AddElement(builder.InternName("r"));
    CXmlText* const pText = builder.MakeSharedText("x\ry\0z"sv);
    std::vector<CXmlElement*> elements;
    for (const char* lpcName : {"a", "b", "c"})
    {
        elements.push_back(builder.AddElement(builder.InternName(lpcName)));
        builder.SetSharedText(elements.back(), pText);
        builder.EndElement();
    }
    EXPECT_TRUE(builder.HasText(elements[0]));
    // Who appends gets a copy.
    builder.AppendTextExcludingCR(elements[2], "!"sv);
    EXPECT_TEXT(L"r (a \"xy\", b \"xy\", c \"xy!\")", tree.Show());
    EXPECT_EQ(&elements[0]->GetText(), &elements[1]->GetText());
    EXPECT_EQ(nullptr, builder.MakeSharedText(L"\r"));
}

TEST(XmlTreeBuilder, TextOfOpenElementsIsJoinedWhateverItIsMadeOf)
{
    const std::string_view pieces[] = {"\n", "  ", "\t", "x", " \xC2\xA0", "\r", "", "\n\r ", "y "};
    std::mt19937 random(7);
    for (int nTree = 0; nTree < 300; ++nTree)
    {
        STree tree;
        std::vector<std::wstring> texts(1);
        std::vector<std::pair<CXmlElement*, std::wstring>> expected;
        tree.builder.AddElement(tree.builder.InternName("r"));
        for (int n = 0; n < 40; ++n)
        {
            switch (random() % 5)
            {
            case 0:
                tree.builder.AddElement(tree.builder.InternName("e"));
                texts.emplace_back();
                break;
            case 1:
                if (texts.size() == 1)
                    break;
                expected.emplace_back(tree.builder.GetOpenElement(), texts.back());
                tree.builder.EndElement();
                texts.pop_back();
                break;
            default:
                const std::string_view svPiece = pieces[random() % (nTree % 2 == 0 ? 3 : std::size(pieces))];
                tree.builder.AddText(svPiece);
                std::wstring strPiece;
                QvXmlLib9::AppendUtf8AsUtf16(strPiece, svPiece);
                strPiece.erase(std::remove(strPiece.begin(), strPiece.end(), L'\r'), strPiece.end());
                texts.back() += strPiece;
            }
        }
        for (; !texts.empty(); texts.pop_back())
        {
            expected.emplace_back(tree.builder.GetOpenElement(), texts.back());
            tree.builder.EndElement();
        }
        for (const auto& [pElement, strText] : expected)
            ASSERT_EQ(pElement->GetText(), strText) << nTree;
    }
}

TEST(XmlTreeBuilder, ElementsOfALargeTreeShareTheWhiteSpaceBetweenTheirChildren)
{
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    builder.AddElement(builder.InternName("r"));
    std::vector<CXmlElement*> elements;
    for (int i = 0; i < 400; ++i)
    {
        elements.push_back(builder.AddElement(builder.InternName("e")));
        if (i % 2 == 0)
        {
            builder.AddText("\n");
            builder.AddText("  ");
        }
        builder.AddElement(builder.InternName("f"));
        builder.EndElement();
        if (i % 2 == 0)
            builder.AddText("\n");
        else
            builder.SetText(elements.back(), "\n  \n");
        builder.EndElement();
    }
    EXPECT_TEXT(L"\n  \n", elements[0]->GetText());
    EXPECT_TEXT(L"\n  \n", elements[399]->GetText());
    EXPECT_EQ(&elements[398]->GetText(), &elements[399]->GetText());
    EXPECT_EQ(&elements[397]->GetText(), &elements[399]->GetText());
}

TEST(XmlTreeBuilder, TheWhiteSpaceOfEachLevelIsItsOwn)
{
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    CXmlElement* const pRoot = builder.AddElement(builder.InternName("r"));
    std::string strRoot;
    // Ahead of and behind the number of nodes from which on white space is shared.
    for (int i = 0; i < 200; ++i)
    {
        builder.AddText("\n");
        strRoot += "\n";
        CXmlElement* const pOuter = builder.AddElement(builder.InternName("a"));
        builder.AddText("\n ");
        CXmlElement* const pMiddle = builder.AddElement(builder.InternName("b"));
        builder.AddText("\n  ");
        CXmlElement* const pInner = builder.AddElement(builder.InternName("c"));
        builder.AddText("\t");
        builder.EndElement();
        builder.AddText("\n ");
        builder.EndElement();
        builder.AddText(i % 2 == 0 ? "\n" : "x");
        builder.EndElement();
        ASSERT_EQ(L"\t", pInner->GetText()) << i;
        ASSERT_EQ(L"\n  \n ", pMiddle->GetText()) << i;
        ASSERT_EQ(i % 2 == 0 ? L"\n \n" : L"\n x", pOuter->GetText()) << i;
    }
    builder.EndElement();
    EXPECT_TEXT(std::wstring(strRoot.begin(), strRoot.end()), pRoot->GetText());
}

TEST(XmlTreeBuilder, TextThatIsMoreThanWhiteSpaceIsNotShared)
{
    STree tree;
    CXmlTreeBuilder& builder = tree.builder;
    builder.AddElement(builder.InternName("r"));
    std::vector<CXmlElement*> elements;
    for (int i = 0; i < 400; ++i)
    {
        elements.push_back(builder.AddElement(builder.InternName("e")));
        builder.SetText(elements.back(), i % 2 == 0 ? " x" : "  ");
        builder.EndElement();
    }
    EXPECT_TEXT(L" x", elements[396]->GetText());
    EXPECT_TEXT(L" x", elements[398]->GetText());
    EXPECT_NE(&elements[396]->GetText(), &elements[398]->GetText());
    EXPECT_TEXT(L"  ", elements[399]->GetText());
}

TEST(XmlTreeBuilder, WhiteSpaceOfElementsThatStayOpenIsKept)
{
    STree tree;
    CXmlElement* pRoot = nullptr;
    CXmlElement* pChild = nullptr;
    {
        CXmlTreeBuilder builder(tree.store, tree.pRoot, tree.namespaces, nullptr);
        pRoot = builder.AddElement(builder.InternName("r"));
        builder.AddText("\n ");
        pChild = builder.AddElement(builder.InternName("e"));
        builder.AddText("\n  ");
    }
    EXPECT_TEXT(L"\n ", pRoot->GetText());
    EXPECT_TEXT(L"\n  ", pChild->GetText());
}

TEST(XmlTreeBuilder, TheLastBindingOfAPrefixCounts)
{
    STree tree;
    tree.builder.SetNamespace(L"p", L"urn:p");
    tree.builder.SetNamespace(L"", L"urn:x");
    tree.builder.SetNamespace(L"p", L"urn:q");
    const CXmlTreeBuilder::CNamespaces expected = {{L"", L"urn:x"}, {L"p", L"urn:q"}};
    EXPECT_EQ(expected, tree.namespaces);
}

bool DropRecords(CXmlElement* pElement)
{
    return pElement->GetLocalName() == L"r";
}

TEST(XmlTreeBuilder, WhatTheFilterDropsIsDestroyedAtItsEnd)
{
    const auto elements = CountInstances(L"CXmlElement");
    STree tree(DropRecords);
    CXmlTreeBuilder& builder = tree.builder;
    builder.AddElement(builder.InternName("r"));
    for (const char* lpcName : {"a", "r", "b", "r"})
    {
        builder.AppendTextExcludingCR(builder.AddElement(builder.InternName(lpcName)), std::string_view("text"));
        builder.AddElement(builder.InternName("s"));
        builder.EndElement();
        builder.EndElement();
    }
    // The root stays, whatever the filter says.
    builder.EndElement();
    EXPECT_TEXT(L"r (a \"text\" (s), b \"text\" (s))", tree.Show());
    EXPECT_EQ(elements.nLiving + 5, CountInstances(L"CXmlElement").nLiving);
}

TEST(XmlTreeBuilder, CloseElementDoesNotAskTheFilter)
{
    STree tree(DropRecords);
    tree.builder.AddElement(tree.builder.InternName("a"));
    tree.builder.AddElement(tree.builder.InternName("r"));
    tree.builder.CloseElement();
    EXPECT_TEXT(L"a (r)", tree.Show());
}

} // namespace
