#include "quiver/values/WhitespaceUtils.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

using namespace QvXmlLib9;
using Utils = CWhitespaceUtils;
using QvTest::ExpectThrows;

namespace
{

struct SCase
{
    const wchar_t* lpctText;
    const wchar_t* lpctPreserved;
    const wchar_t* lpctReplaced;
    const wchar_t* lpctCollapsed;
};

const SCase s_cases[] = {
    {L"", L"", L"", L""},
    {L"a", L"a", L"a", L"a"},
    {L"abc", L"abc", L"abc", L"abc"},
    {L" ", L" ", L" ", L""},
    {L"\t\n ", L"\t\n ", L"   ", L""},
    {L"\r", L"", L"", L""},
    {L"\r\r", L"", L"", L""},
    {L"a b", L"a b", L"a b", L"a b"},
    {L"a\r", L"a", L"a", L"a"},
    {L"a\rb", L"ab", L"ab", L"ab"},
    {L"a\r\nb", L"a\nb", L"a b", L"a b"},
    {L"a\n\rb", L"a\nb", L"a b", L"a b"},
    {L"a \r b", L"a  b", L"a  b", L"a b"},
    {L"a\tb\r\nc", L"a\tb\nc", L"a b c", L"a b c"},
    {L"  a \t\n b  ", L"  a \t\n b  ", L"  a    b  ", L"a b"},
    {L"\ra\r \r", L"a ", L"a ", L"a"},
    {L" \ra", L" a", L" a", L"a"},
    {L"a\x00A0 \fb", L"a\x00A0 \fb", L"a\x00A0 \fb", L"a\x00A0 \fb"},
};

} // namespace

TEST(WhitespaceUtilsTest, RulesHaveTheirNumbers)
{
    EXPECT_EQ(0, Utils::WhitespaceRule_None);
    EXPECT_EQ(1, Utils::WhitespaceRule_Preserve);
    EXPECT_EQ(2, Utils::WhitespaceRule_Replace);
    EXPECT_EQ(3, Utils::WhitespaceRule_Collapse);
}

TEST(WhitespaceUtilsTest, EachRuleTransformsTheText)
{
    for (const SCase& c : s_cases)
    {
        SCOPED_TRACE(QvTest::Show(c.lpctText));
        const std::wstring strText = c.lpctText;
        EXPECT_TEXT(c.lpctPreserved, Utils::Preserve(strText));
        EXPECT_TEXT(c.lpctPreserved, Utils::Preserve(strText.data(), static_cast<int>(strText.size())));
        EXPECT_TEXT(c.lpctReplaced, Utils::Replace(strText));
        EXPECT_TEXT(c.lpctCollapsed, Utils::Collapse(strText));
    }
}

TEST(WhitespaceUtilsTest, ApplyRuleTakesTheTransformationOfTheRule)
{
    for (const SCase& c : s_cases)
    {
        SCOPED_TRACE(QvTest::Show(c.lpctText));
        EXPECT_TEXT(c.lpctText, Utils::ApplyRule(Utils::WhitespaceRule_None, c.lpctText));
        EXPECT_TEXT(c.lpctPreserved, Utils::ApplyRule(Utils::WhitespaceRule_Preserve, c.lpctText));
        EXPECT_TEXT(c.lpctReplaced, Utils::ApplyRule(Utils::WhitespaceRule_Replace, c.lpctText));
        EXPECT_TEXT(c.lpctCollapsed, Utils::ApplyRule(Utils::WhitespaceRule_Collapse, c.lpctText));
    }
}

TEST(WhitespaceUtilsTest, NoRuleKeepsCarriageReturns)
{
    EXPECT_TEXT(L"a\r", Utils::ApplyRule(Utils::WhitespaceRule_None, L"a\r"));
}

TEST(WhitespaceUtilsTest, CarriageReturnAloneIsNoBlank)
{
    EXPECT_TEXT(L"ab", Utils::Collapse(L"a\rb"));
    EXPECT_TEXT(L"ab", Utils::Replace(L"a\rb"));
}

TEST(WhitespaceUtilsTest, UnknownRulesFail)
{
    for (const int nRule : {4, -1, 1000})
        ExpectThrows<CQvException>(L"Unknown WhitespaceRule",
                                   [&] { Utils::ApplyRule(static_cast<Utils::WhitespaceRule>(nRule), L"a"); });
}

TEST(WhitespaceUtilsTest, CountedTextMayHoldZerosAndMayBeEmpty)
{
    const wchar_t text[] = {L'a', 0, L'\r', L'b'};
    EXPECT_TEXT(std::wstring({L'a', 0, L'b'}), Utils::Preserve(text, 4));
    EXPECT_TEXT(L"a", Utils::Preserve(text, 1));
    EXPECT_TEXT(L"", Utils::Preserve(text, 0));
    EXPECT_TEXT(L"", Utils::Preserve(text, -1));
    EXPECT_TEXT(L"", Utils::Preserve(nullptr, 0));
    EXPECT_TEXT(std::wstring({L'a', 0, L' ', L'b'}), Utils::Collapse(std::wstring({L' ', L'a', 0, L'\n', L'b'})));
}

TEST(WhitespaceUtilsTest, OnlyFourCharactersAreWhiteSpace)
{
    for (int c = 0; c <= 0xFFFF; ++c)
        EXPECT_EQ(c == 0x20 || c == 0x09 || c == 0x0D || c == 0x0A, Utils::IsWhiteSpace(static_cast<wchar_t>(c))) << c;
        // Also where a wide character has more bits than the shift of a table could take.
#if WCHAR_MAX > 0xFFFF
    EXPECT_FALSE(Utils::IsWhiteSpace(static_cast<wchar_t>(0x10020)));
#endif
}

TEST(WhitespaceUtilsTest, LongTextsAgreeWithTheDefinitionCharacterByCharacter)
{
    std::mt19937 random(1);
    const wchar_t alphabet[] = {L' ', L'\t', L'\r', L'\n', L'a', L'b', 0x4E00, 0xD83D, 0xDE00};
    for (int nText = 0; nText < 2000; ++nText)
    {
        std::wstring strText;
        const int nPlain = static_cast<int>(random() % 9) + 1;
        for (auto i = random() % 200; i != 0; --i)
            strText += alphabet[random() % 9 < static_cast<unsigned>(nPlain) ? 4 + random() % 5 : random() % 4];
        std::wstring strPreserved, strReplaced, strCollapsed;
        for (const wchar_t c : strText)
        {
            if (c == L'\r')
                continue;
            const bool bBlank = c == L' ' || c == L'\t' || c == L'\n';
            strPreserved += c;
            strReplaced += bBlank ? L' ' : c;
            if (!bBlank || (!strCollapsed.empty() && strCollapsed.back() != L' '))
                strCollapsed += bBlank ? L' ' : c;
        }
        if (!strCollapsed.empty() && strCollapsed.back() == L' ')
            strCollapsed.pop_back();
        ASSERT_PRED_FORMAT2(QvTest::TextEquals, strPreserved, Utils::Preserve(strText));
        ASSERT_PRED_FORMAT2(QvTest::TextEquals, strReplaced, Utils::Replace(strText));
        ASSERT_PRED_FORMAT2(QvTest::TextEquals, strCollapsed, Utils::Collapse(strText));
    }
}

TEST(WhitespaceUtilsTest, EachRuleAllocatesNoMoreThanTheResult)
{
    const std::wstring strText = L"  some text\r\n\twith white space  ";
    const std::wstring strPlain = L"some_text_without_white_space";
    for (int nRule = 0; nRule <= 3; ++nRule)
    {
        const auto rule = static_cast<Utils::WhitespaceRule>(nRule);
        EXPECT_EQ(1u, QvTest::CountAllocations([&] { Utils::ApplyRule(rule, strText); }));
        EXPECT_EQ(1u, QvTest::CountAllocations([&] { Utils::ApplyRule(rule, strPlain); }));
    }
}
