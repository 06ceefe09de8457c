#include "quiver/collections/SharedText.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

TEST(SharedText, HoldsACopyOfAText)
{
    std::wstring strText = L"urn:a";
    const CSharedText text(strText.c_str());
    const CSharedText same(strText);
    strText = L"xxxxx";
    EXPECT_TEXT(L"urn:a", text.Get());
    EXPECT_TEXT(L"urn:a", same.Get());
    EXPECT_TEXT(L"urn:a", std::wstring(text.c_str()));
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_FALSE(text.IsAny());
}

TEST(SharedText, NullAndNothingAreTheEmptyText)
{
    for (const CSharedText& text : {CSharedText(), CSharedText(static_cast<const wchar_t*>(nullptr)), CSharedText(L""),
                                    CSharedText(std::wstring())})
    {
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_TEXT(L"", text.Get());
    }
}

TEST(SharedText, CopiesShareOneText)
{
    const CSharedText text(L"urn:a");
    CSharedText copy(text);
    EXPECT_EQ(&text.Get(), &copy.Get());
    copy = CSharedText(L"urn:b");
    EXPECT_TEXT(L"urn:a", text.Get());
}

TEST(SharedText, KnowsTheRestrictionThatAllowsAll)
{
    EXPECT_TRUE(CSharedText::Any().IsAny());
    EXPECT_TEXT(L"##any", CSharedText::Any().Get());
    EXPECT_TRUE(CSharedText(L"##any").IsAny());
    EXPECT_TRUE(CSharedText(std::wstring(L"##any")).IsAny());
    EXPECT_FALSE(CSharedText(L"##any ##local").IsAny());
    EXPECT_FALSE(CSharedText().IsAny());
}

TEST(SharedText, MatchingSharesAnEqualTextAndTakesAnother)
{
    const CSharedText text(L"urn:a");
    EXPECT_EQ(&text.Get(), &text.Matching(L"urn:a").Get());
    EXPECT_TEXT(L"urn:b", text.Matching(L"urn:b").Get());
    EXPECT_TRUE(text.Matching(L"").IsEmpty());
    EXPECT_TRUE(CSharedText().Matching(L"").IsEmpty());
}

TEST(SharedText, AnEmptyTextIsMadeOfNull)
{
    EXPECT_TEXT(L"", std::wstring(TextOrEmpty(nullptr)));
    EXPECT_TEXT(L"x", std::wstring(TextOrEmpty(L"x")));
}

} // namespace
