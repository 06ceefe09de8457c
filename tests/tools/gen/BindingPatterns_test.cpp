#include "quiver/foundation/Pattern.h"
#include "tools/quiver-gen/binding/Patterns.h"
#include "tools/quiver-gen/binding/UnicodeBlocks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace quiver_gen::binding;

namespace
{

struct SPatternCase
{
    const char* lpctName;
    const char* lpctPattern;
    std::vector<std::wstring> matches;
    std::vector<std::wstring> others;
};

void PrintTo(const SPatternCase& item, std::ostream* pOut)
{
    *pOut << item.lpctPattern;
}

class BindingPatterns : public testing::TestWithParam<SPatternCase>
{
};

const SPatternCase s_cases[] = {
    {"Literal", "abc", {L"abc"}, {L"", L"ab", L"abcd", L"xabc", L"abc\n"}},
    {"Empty", "", {L""}, {L"a"}},
    {"WholeValueOnly", "a|ab", {L"a", L"ab"}, {L"abb", L"b"}},
    {"LongestOfAlternatives", "(a|ab)(c|bcd)", {L"abcd", L"ac", L"abc"}, {L"abd"}},
    {"EmptyAlternative", "a||(b|)c", {L"a", L"", L"bc", L"c"}, {L"b"}},
    {"AnchorsAreCharacters", "^a$", {L"^a$"}, {L"a", L"^a", L"a$"}},
    {"AnchorsInBrackets", "[$^]+", {L"^", L"$", L"$^"}, {L"a"}},
    {"DotIsNoLineEnd",
     "a.b",
     {L"axb", L"a\tb",
      L"a\x0B"
      L"b",
      L"a\x85"
      L"b"},
     {L"a\nb", L"a\rb", L"ab"}},
    {"DotAndCharactersAboveTheBasicPlane", ".{2}", {L"\U0001F600x"}, {L"\U0001F600"}},
    {"Quantifiers", "a?b*c+d{2}e{1,}f{0,2}", {L"cdde", L"abbccddeeff"}, {L"cde", L"cddefff", L"dde"}},
    {"LargeQuantity", "[a-z]{0,65535}", {L"", L"abc"}, {L"A"}},
    {"BracesWithoutNumbers", "a{x}|{", {L"a{x}", L"{"}, {L"a"}},
    {"EscapedMarks", "\\\\\\|\\.\\?\\*\\+\\(\\)\\{\\}\\-\\[\\]\\^", {L"\\|.?*+(){}-[]^"}, {L"|.?*+(){}-[]^"}},
    {"EscapedControls", "\\n\\r\\t", {L"\n\r\t"}, {L"nrt"}},
    {"EscapedDollar", "a\\$", {L"a$"}, {L"a"}},
    {"BackslashBeforeLetters", "\\\\i\\\\c\\\\p\\{IsBasicLatin\\}", {L"\\i\\c\\p{IsBasicLatin}"}, {L"ab"}},
    {"Digits", "\\d+", {L"012", L"\x0661\x0662"}, {L"", L"1a", L"\x00B2"}},
    {"NoDigits", "\\D+", {L"ab ", L"\x00B2"}, {L"a1"}},
    {"Space", "\\s+", {L" \t\r\n"}, {L"\x00A0", L"a", L"\x2003"}},
    {"NoSpace", "\\S+", {L"ab", L"\x00A0"}, {L"a b"}},
    {"Words", "\\w+", {L"aB9\x00E9\x4E2D+$"}, {L"a b", L"a-b", L"a_b", L"!"}},
    {"NoWords", "\\W+", {L"-_ !"}, {L"a", L"+"}},
    {"Names",
     "\\i\\c*",
     {L"xs:name", L"_a-b.1", L":", L"\x00E9t\x00E9", L"\x4E2D", L"\U00010000"},
     {L"1a", L"-a", L".", L"a b", L"a+", L""}},
    {"NoNames", "\\I\\C", {L"1 ", L"-+"}, {L"a ", L"11"}},
    {"NamesInBrackets", "[\\i\\-][\\c/]+", {L"a/b", L"-1", L":-."}, {L"1a", L"a b"}},
    {"NoNamesInBrackets", "[\\I\\C]+", {L"1- +", L"-"}, {L"a"}},
    {"ClassesInBrackets", "[\\d\\s.,]+", {L"1, 2.", L"\t"}, {L"a", L"-"}},
    {"NegatedClasses", "[^\\d\\s]+", {L"ab", L"-x"}, {L"a1", L"a b", L"a\n"}},
    {"AllCharacters", "[\\s\\S]*", {L"", L"a\n\r b"}, {}},
    {"WordsInBrackets", "[\\w.]+", {L"a.b", L"$"}, {L"a-b"}},
    {"Ranges", "[a-c0-9_]+", {L"abc09_"}, {L"d", L"-"}},
    {"HyphenFirst", "[-a]+", {L"-a"}, {L"b"}},
    {"HyphenLast", "[a-]+", {L"-a"}, {L"b"}},
    {"HyphenBehindRange", "[a-c-]+", {L"a-c"}, {L"d"}},
    {"HyphenEscaped", "[a\\-c]+", {L"a-c"}, {L"b"}},
    {"CaretInside", "[a^]+", {L"^a"}, {L"b"}},
    {"RangeOfEscapes", "[\\t-\\r]+", {L"\t\n\r"}, {L" "}},
    {"RangeAboveTheBasicPlane", "[\U00010000-\U0001F600]+", {L"\U0001F5FF"}, {L"\U0001F601", L"a"}},
    {"RangeAcrossSurrogates", "[\x7E-\xEF\xBF\xBD]+", {L"\x4E2D~"}, {L"a"}},
    {"Subtraction", "[a-z-[aeiou]]+", {L"xyz"}, {L"abc", L"-", L""}},
    {"SubtractionFromNegated", "[^a-z-[0-9]]+", {L"AB-", L" "}, {L"a", L"1"}},
    {"SubtractionOfNegated", "[a-z-[^aeiou]]+", {L"aei"}, {L"x", L"1"}},
    {"SubtractionTwice", "[\\w-[\\d-[5]]]+", {L"ab5"}, {L"4", L"-"}},
    {"SubtractionOfClass", "[\\i-[:]][\\c-[:]]*", {L"name", L"a.b"}, {L"a:b", L":a"}},
    {"Category", "\\p{Lu}\\p{Ll}+", {L"Abc", L"\x00C9t"}, {L"abc", L"A1"}},
    {"NoCategory", "\\P{L}+", {L"12 "}, {L"1a"}},
    {"CategoryInBrackets", "[\\p{L}\\p{Nd}]+", {L"aB1"}, {L"-"}},
    {"Block", "\\p{IsBasicLatin}+", {L"abc~"}, {L"\x00E9"}},
    {"NoBlock", "\\P{IsBasicLatin}+", {L"\x00E9\x4E2D"}, {L"a"}},
    {"BlocksInBrackets", "[\\p{IsGreek}\\p{IsLatin-1Supplement}]+", {L"\x03B1\x00E9"}, {L"a"}},
    {"BlockThatTheRuntimeGetsWrong", "\\p{IsLatinExtended-B}", {L"\x0180", L"\x024F"}, {L"\x0250", L"a"}},
    {"BlockOfTwoRanges", "\\p{IsSpecials}", {L"\xFEFF", L"\xFFFD"}, {L"\xFFEF"}},
    {"GroupsDoNotCapture", "(a)(b)\\(1\\)", {L"ab(1)"}, {L"ab1"}},
    {"SpecialSyntaxIsText", "a#b !=:<>", {L"a#b !=:<>"}, {L"a"}},
    {"Backtracking", "(x+x+)+y", {L"xxy"}, {L"xx"}},
    {"Currency", "[A-Z]{3,3}", {L"EUR"}, {L"EURO", L"eur"}},
    {"Bic", "[A-Z]{6,6}[A-Z2-9][A-NP-Z0-9]([A-Z0-9]{3,3}){0,1}", {L"DEUTDEFF", L"DEUTDEFF500"}, {L"DEUTDEFF50"}},
};

TEST_P(BindingPatterns, MatchAsInSchemas)
{
    const auto strPattern = TranslatePattern(GetParam().lpctPattern);
    ASSERT_TRUE(strPattern) << GetParam().lpctPattern;
    const std::string strCombined = CombinePatterns({{*strPattern}});
    EXPECT_TRUE(IsUsable(strCombined)) << strCombined;
    for (const std::wstring& strValue : GetParam().matches)
        EXPECT_TRUE(QvXmlLib9::PatternMatch(strCombined, strValue))
            << strCombined << " refuses " << testing::PrintToString(strValue);
    for (const std::wstring& strValue : GetParam().others)
        EXPECT_FALSE(QvXmlLib9::PatternMatch(strCombined, strValue))
            << strCombined << " takes " << testing::PrintToString(strValue);
}

INSTANTIATE_TEST_SUITE_P(All, BindingPatterns, testing::ValuesIn(s_cases),
                         [](const auto& test) { return std::string(test.param.lpctName); });

TEST(BindingPattern, ReadsWellWhereItIsSimple)
{
    EXPECT_EQ(TranslatePattern("\\d{3}-[A-Z]{2}"), "\\p{Nd}{3}-[A-Z]{2}");
    EXPECT_EQ(TranslatePattern("(a|b)*\\s."), "(?:a|b)*\\s[^\\n\\r]");
}

TEST(BindingPattern, IsRefusedWhereItCannotBeTranslated)
{
    for (const char* lpctPattern : {"(",      ")",        "a)",         "[",
                                    "[a",     "[]",       "[^]",        "[a-",
                                    "[a-z",   "[z-a]",    "[a-\\d]",    "[a[b]]",
                                    "*",      "a**",      "a+?",        "a|*",
                                    "?",      "]",        "\\",         "\\x",
                                    "\\1",    "\\b",      "\\p",        "\\p{",
                                    "\\p{L",  "\\p{Xx}",  "\\pL",       "\\p{IsNowhere}",
                                    "\\p{}",  "a{70000}", "a{1,70000}", "a{99999999999999999999}",
                                    "[a-[b]", "[a-[b]c]", "(?:a)"})
        EXPECT_FALSE(TranslatePattern(lpctPattern)) << lpctPattern;
}

TEST(BindingPattern, NestsToALimit)
{
    const auto nested = [](int nDepth)
    {
        return std::string(static_cast<std::size_t>(nDepth), '(') + "a" +
               std::string(static_cast<std::size_t>(nDepth), ')');
    };
    const auto strPattern = TranslatePattern(nested(100));
    ASSERT_TRUE(strPattern);
    EXPECT_TRUE(QvXmlLib9::PatternMatch(CombinePatterns({{*strPattern}}), L"a"));
    EXPECT_FALSE(TranslatePattern(nested(100'000)));
    std::string strClasses;
    for (int n = 0; n < 100'000; ++n)
        strClasses += "[a-";
    EXPECT_FALSE(TranslatePattern(strClasses));
}

TEST(BindingPattern, OfEachStepOneMustMatch)
{
    const std::string strCombined = CombinePatterns({{"a.*", "b.*"}, {".*x"}, {".{3}", ".{4}"}});
    EXPECT_EQ(strCombined, "(?=(?:a.*|b.*)\\z)(?=(?:.*x)\\z)(?:.{3}|.{4})\\z");
    for (const wchar_t* lpctValue : {L"a1x", L"b12x"})
        EXPECT_TRUE(QvXmlLib9::PatternMatch(strCombined, lpctValue)) << testing::PrintToString(lpctValue);
    for (const wchar_t* lpctValue : {L"c1x", L"a12", L"ax", L"a123x", L""})
        EXPECT_FALSE(QvXmlLib9::PatternMatch(strCombined, lpctValue)) << testing::PrintToString(lpctValue);
    EXPECT_EQ(CombinePatterns({}), "");
}

TEST(BindingPattern, IsUnusableWhereTheRuntimeRefusesIt)
{
    EXPECT_TRUE(IsUsable(CombinePatterns({{"a{1,5}"}})));
    EXPECT_FALSE(IsUsable(CombinePatterns({{"(?:(?:ab){1,1000}){1,1000}"}})));
}

TEST(UnicodeBlocks, ComplementEachOther)
{
    for (const CCodeRanges* pRanges : {&GetNameStartCharacters(), &GetNameCharacters()})
    {
        const CCodeRanges others = Complement(*pRanges);
        const CCodeRanges again = Complement(others);
        ASSERT_EQ(again.size(), pRanges->size());
        for (std::size_t n = 0; n < again.size(); ++n)
        {
            EXPECT_EQ(again[n].nFirst, (*pRanges)[n].nFirst);
            EXPECT_EQ(again[n].nLast, (*pRanges)[n].nLast);
        }
    }
}

TEST(UnicodeBlocks, AreKnownByTheirNamesInPatterns)
{
    EXPECT_TRUE(FindBlock("CJKUnifiedIdeographs"));
    EXPECT_TRUE(FindBlock("SupplementaryPrivateUseArea-B"));
    EXPECT_FALSE(FindBlock("Basic Latin"));
    EXPECT_FALSE(FindBlock(""));
}

} // namespace
