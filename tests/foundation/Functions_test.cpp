#include "quiver/foundation/Functions.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/platform/Platform.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <limits>
#include <string>
#include <vector>

using namespace QvXmlLib9;

// --- FormatString: text ---------------------------------------------------------------------------------------------

TEST(FunctionsTest, TextWithoutConversionsComesBack)
{
    EXPECT_TEXT(L"", FormatString(L""));
    EXPECT_TEXT(L"plain text", FormatString(L"plain text"));
    EXPECT_TEXT(L"100%", FormatString(L"100%%"));
    EXPECT_TEXT(L"%s", FormatString(L"%%s"));
}

TEST(FunctionsTest, SmallSIsWideAndCapitalSIsNarrow)
{
    EXPECT_TEXT(L"[wide] [narrow]", FormatString(L"[%s] [%S]", L"wide", "narrow"));
    EXPECT_TEXT(L"wide wide", FormatString(L"%ls %lS", L"wide", L"wide"));
    EXPECT_TEXT(L"narrow narrow", FormatString(L"%hs %hS", "narrow", "narrow"));
}

TEST(FunctionsTest, SmallCIsWideAndCapitalCIsNarrow)
{
    EXPECT_TEXT(L"\x4E00 n", FormatString(L"%c %C", 0x4E00, 'n'));
    EXPECT_TEXT(L"\x4E00 \x4E01", FormatString(L"%lc %lC", 0x4E00, 0x4E01));
    EXPECT_TEXT(L"n", FormatString(L"%hc", 'n'));
}

TEST(FunctionsTest, NarrowBytesKeepTheirNumbers)
{
    EXPECT_TEXT(L"\x00E9", FormatString(L"%S", "\xE9"));
    EXPECT_TEXT(L"\x00E9", FormatString(L"%C", '\xE9'));
    EXPECT_TEXT(L"\x00E9", FormatString(L"%hc", '\xE9'));
}

TEST(FunctionsTest, EmptyStringYieldsNothing)
{
    EXPECT_TEXT(L"[]", FormatString(L"[%s]", L""));
    EXPECT_TEXT(L"[]", FormatString(L"[%S]", ""));
}

TEST(FunctionsTest, NullStringSaysSo)
{
    EXPECT_TEXT(L"[(null)]", FormatString(L"[%s]", static_cast<const wchar_t*>(nullptr)));
    EXPECT_TEXT(L"[(null)]", FormatString(L"[%S]", static_cast<const char*>(nullptr)));
    EXPECT_TEXT(L"[(nu]", FormatString(L"[%.3s]", static_cast<const wchar_t*>(nullptr)));
}

TEST(FunctionsTest, WidthPadsAndPrecisionCutsText)
{
    EXPECT_TEXT(L"[   ab]", FormatString(L"[%5s]", L"ab"));
    EXPECT_TEXT(L"[ab   ]", FormatString(L"[%-5s]", L"ab"));
    EXPECT_TEXT(L"[abcdef]", FormatString(L"[%5s]", L"abcdef"));
    EXPECT_TEXT(L"[abc]", FormatString(L"[%.3s]", L"abcdef"));
    EXPECT_TEXT(L"[  abc]", FormatString(L"[%5.3s]", L"abcdef"));
    EXPECT_TEXT(L"[]", FormatString(L"[%.0s]", L"abc"));
    EXPECT_TEXT(L"[]", FormatString(L"[%.s]", L"abc"));
    EXPECT_TEXT(L"[  ab|abc]", FormatString(L"[%*s|%.*s]", 4, L"ab", 3, L"abcdef"));
    EXPECT_TEXT(L"[  x|x  ]", FormatString(L"[%3c|%-3c]", L'x', L'x'));
}

TEST(FunctionsTest, PrecisionSparesTextWithoutAnEnd)
{
    const wchar_t wide[] = {L'a', L'b'};
    const char narrow[] = {'c', 'd'};
    EXPECT_TEXT(L"abcd", FormatString(L"%.2s%.2S", wide, narrow));
}

TEST(FunctionsTest, WholeCodePointsBecomeTheirTwoUnits)
{
    const std::wstring strPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    const wchar_t whole[] = L"\U0001F600";
    EXPECT_TEXT(L"[" + strPair + L"]", FormatString(L"[%s]", whole));
    // In the format too, and widths count units.
    EXPECT_TEXT(strPair, FormatString(whole));
    EXPECT_TEXT(L" " + strPair, FormatString(L"%3s", whole));
#if WCHAR_MAX > 0xFFFF
    EXPECT_TEXT(strPair, FormatString(L"%c", 0x1F600));
    // What is no code point at all does not pass either.
    EXPECT_TEXT(L"\xFFFD", FormatString(L"%c", 0x110000));
    EXPECT_TEXT(L"\xFFFD", FormatString(L"%c", -1));
#endif
}

TEST(FunctionsTest, ResultHasNoLengthLimit)
{
    const std::wstring strLong(1000000, L'x');
    EXPECT_TEXT(L"<" + strLong + L">" + strLong, FormatString(L"<%s>%s", strLong.c_str(), strLong.c_str()));
    EXPECT_EQ(70000u, FormatString(L"%70000d", 1).size());
    EXPECT_EQ(70002u, FormatString(L"%.70000f", 1.5).size());
}

// --- FormatString: integers -----------------------------------------------------------------------------------------

TEST(FunctionsTest, IntegersPrintInEachBase)
{
    EXPECT_TEXT(L"42 -42 42 4294967254", FormatString(L"%d %d %u %u", 42, -42, 42, -42));
    EXPECT_TEXT(L"42 -42", FormatString(L"%i %i", 42, -42));
    EXPECT_TEXT(L"52 2a 2A ffffffff", FormatString(L"%o %x %X %x", 42, 42, 42, -1));
    EXPECT_TEXT(L"0 0 0 0", FormatString(L"%d %u %o %x", 0, 0, 0, 0));
    EXPECT_TEXT(L"-2147483648 2147483647 4294967295", FormatString(L"%d %d %u", INT_MIN, INT_MAX, UINT_MAX));
}

TEST(FunctionsTest, FlagsWidthAndPrecisionActOnIntegers)
{
    EXPECT_TEXT(L"[   42|42   |00042|+42| 42]", FormatString(L"[%5d|%-5d|%05d|%+d|% d]", 42, 42, 42, 42, 42));
    EXPECT_TEXT(L"[  -42|-42  |-0042|-42|-42]", FormatString(L"[%5d|%-5d|%05d|%+d|% d]", -42, -42, -42, -42, -42));
    EXPECT_TEXT(L"[0042| 0042|-0042|  0042]", FormatString(L"[%.4d|%5.4d|%.4d|%06.4d]", 42, 42, -42, 42));
    EXPECT_TEXT(L"[0x2a|0X2A|052|0|0|0x002a]", FormatString(L"[%#x|%#X|%#o|%#x|%#o|%#06x]", 42, 42, 42, 0, 0, 42));
    EXPECT_TEXT(L"[|  |0]", FormatString(L"[%.0d|%2.0d|%#.0o]", 0, 0, 0));
    EXPECT_TEXT(L"[   42|0042]", FormatString(L"[%*d|%.*d]", 5, 42, 4, 42));
    EXPECT_TEXT(L"[+42]", FormatString(L"[% +d]", 42));
    EXPECT_TEXT(L"[42|42]", FormatString(L"[%+u|% u]", 42, 42));
    EXPECT_TEXT(L"[42   ]", FormatString(L"[%-05d]", 42));
    EXPECT_TEXT(L"[0x80004005]", FormatString(L"[0x%08X]", static_cast<int>(0x80004005)));
}

TEST(FunctionsTest, LongIntegersPrintTheir32Bits)
{
    EXPECT_TEXT(L"-5 5 4294967295", FormatString(L"%ld %li %lu", -5L, 5L, 4294967295UL));
    EXPECT_TEXT(L"-1 4294967295 ffffffff", FormatString(L"%ld %lu %lx", -1L, -1L, -1L));
    EXPECT_TEXT(L"-2147483648 2147483647", FormatString(L"%ld %ld", -2147483647L - 1, 2147483647L));
    // Arguments that follow are found.
    EXPECT_TEXT(L"7 text", FormatString(L"%lu %s", 7UL, L"text"));
    if (sizeof(long) > 4)
    {
        EXPECT_TEXT(L"1 x", FormatString(L"%ld %s", static_cast<long>(0x100000001ll), L"x"));
        EXPECT_TEXT(L"4294967295", FormatString(L"%lu", ULONG_MAX));
    }
}

TEST(FunctionsTest, ShortIntegersPrintTheir16Bits)
{
    EXPECT_TEXT(L"-1 65535 1 ffff", FormatString(L"%hd %hu %hd %hx", 65535, 65535, 65537, -1));
}

TEST(FunctionsTest, OtherSizePrefixesAreSkipped)
{
    EXPECT_TEXT(L"1 2 3 4", FormatString(L"%Fd %Ld %Nd %Fs", 1, 2, 3, L"4"));
    EXPECT_TEXT(L"1.5 1.500000", FormatString(L"%Lg %Ff", 1.5, 1.5));
    EXPECT_TEXT(L"1.5e+00", FormatString(L"%.1Fe", 1.5));
}

TEST(FunctionsTest, PointersPrintInHexadecimal)
{
    EXPECT_TEXT(L"0x1f", FormatString(L"%p", reinterpret_cast<void*>(0x1F)));
    EXPECT_TEXT(L"[    0x1f]", FormatString(L"[%8p]", reinterpret_cast<void*>(0x1F)));
}

TEST(FunctionsTest, CountConversionConsumesItsPointerAndWritesNothing)
{
    int nCount = 7;
    EXPECT_TEXT(L"ab 5", FormatString(L"a%nb %d", &nCount, 5));
    EXPECT_EQ(7, nCount);
}

// --- FormatString: doubles ------------------------------------------------------------------------------------------

TEST(FunctionsTest, DoublesPrintWithAPointInEveryLocale)
{
    EXPECT_TEXT(L"1.500000", FormatString(L"%f", 1.5));
    EXPECT_TEXT(L"1.500000e+00", FormatString(L"%e", 1.5));
    EXPECT_TEXT(L"1.5", FormatString(L"%g", 1.5));
    EXPECT_TEXT(L"1e+06", FormatString(L"%g", 999999.5));
    const char* const lpcLocale = std::getenv("LC_ALL");
    if (lpcLocale != nullptr && std::strcmp(lpcLocale, "de_DE.UTF-8") == 0)
    {
        EXPECT_STREQ(",", std::localeconv()->decimal_point);
    }
}

TEST(FunctionsTest, DoublesAgreeWithThePrintfOfTheCLocale)
{
    const double values[] = {0.0,
                             -0.0,
                             1.0,
                             -1.5,
                             0.1,
                             123456.789,
                             1e-5,
                             9.99999e-5,
                             0.0001,
                             1e15,
                             1e16,
                             1e21,
                             1e100,
                             123456789,
                             0.5,
                             2.5,
                             1e-310,
                             5e-324,
                             1.7976931348623157e308,
                             1.0 / 3,
                             999999,
                             1e6,
                             999998.5,
                             1234567.0,
                             INFINITY,
                             -INFINITY,
                             NAN};
    const char* const formats[] = {"%f",    "%e",    "%g",     "%G",      "%.0f",    "%.3f",  "%.0e",
                                   "%.0g",  "%.10g", "%.16g",  "%.17g",   "%#f",     "%#.0f", "%#g",
                                   "%#.0e", "%#.3g", "%10.2f", "%-10.2f", "%010.2f", "%+f",   "% f",
                                   "%+.3g", "%.7g",  "%E",     "%020e",   "%+020g",  "%.40f", "%#.10G"};
    const std::string strLocale = std::setlocale(LC_NUMERIC, nullptr);
    std::setlocale(LC_NUMERIC, "C");
    for (const char* lpcFormat : formats)
    {
        for (const double dValue : values)
        {
            char szExpected[1024];
            std::snprintf(szExpected, sizeof(szExpected), lpcFormat, std::isnan(dValue) ? std::fabs(dValue) : dValue);
            const std::string strFormat = lpcFormat;
            EXPECT_TEXT(std::wstring(szExpected, szExpected + std::strlen(szExpected)),
                        FormatString(std::wstring(strFormat.begin(), strFormat.end()).c_str(),
                                     std::isnan(dValue) ? std::fabs(dValue) : dValue))
                << lpcFormat << " of " << dValue;
        }
    }
    std::setlocale(LC_NUMERIC, strLocale.c_str());
}

// --- FormatString: programming errors -------------------------------------------------------------------------------

#if defined(QUIVER_DIAGNOSTICS)

TEST(FunctionsDeathTest, BadFormatsStopAtAnAssertion)
{
    EXPECT_DEATH(FormatString(L"%*d", -1, 5), "Assertion failed: nWidth >= 0, .*Functions.cpp, line");
    EXPECT_DEATH(FormatString(L"%.*d", -1, 5), "Assertion failed: nPrecision >= 0, .*Functions.cpp, line");
    EXPECT_DEATH(FormatString(L"%I64d", 5LL), "Assertion failed: FALSE, .*Functions.cpp, line");
    EXPECT_DEATH(FormatString(L"%y", 5), "Assertion failed: FALSE, .*Functions.cpp, line");
    EXPECT_DEATH(FormatString(L"50%"), "Assertion failed: FALSE, .*Functions.cpp, line");
}

TEST(FunctionsDeathTest, AssertionNamesConditionUnitAndLine)
{
    EXPECT_DEATH(QV_ASSERT(1 + 1 == 3), "Assertion failed: 1 \\+ 1 == 3, .*Functions_test.cpp, line [0-9]+");
    EXPECT_DEATH(QV_ASSERT_MSG(false, "p!=NULL"), "Assertion failed: p!=NULL, .*Functions_test.cpp, line [0-9]+");
    QV_ASSERT(1 + 1 == 2);
}

TEST(FunctionsDeathTest, ReplacementsWithoutAnEndStopAtAnAssertion)
{
    std::string strText = "aa";
    EXPECT_DEATH(ReplaceAll(strText, "", "x"), "Assertion failed: bEnds");
    EXPECT_DEATH(ReplaceAll(strText, "a", "bab"), "Assertion failed: bEnds");
}

#else

TEST(FunctionsTest, BadFormatsDoNoHarmWithoutAssertions)
{
    EXPECT_TEXT(L"5", FormatString(L"%*d", -1, 5));
    EXPECT_TEXT(L"[]", FormatString(L"[%.*d]", -1, 0));
    EXPECT_TEXT(L"5000000000", FormatString(L"%I64d", 5000000000LL));
    EXPECT_TEXT(L"[]", FormatString(L"[%y]"));
    EXPECT_TEXT(L"50", FormatString(L"50%"));
    EXPECT_TEXT(L"50", FormatString(L"50%-5.3l"));
}

TEST(FunctionsTest, ConditionOfAnAssertionIsNotEvaluatedWithoutAssertions)
{
    int nEvaluated = 0;
    QV_ASSERT(++nEvaluated == 7);
    EXPECT_EQ(0, nEvaluated);
}

TEST(FunctionsTest, ReplacementsWithoutAnEndChangeNothingWithoutAssertions)
{
    std::string strText = "aa";
    ReplaceAll(strText, "", "x");
    ReplaceAll(strText, "a", "bab");
    EXPECT_EQ("aa", strText);
}

#endif

// --- OutputTrace ----------------------------------------------------------------------------------------------------

namespace
{

std::vector<std::wstring> g_slices;

/// Collects the trace for as long as it lives.
class CTraceSink
{
public:
    CTraceSink()
        : m_pfnOld(Platform::SetDebugOutputSink([](const wchar_t* lpctText) { g_slices.emplace_back(lpctText); }))
    {
        g_slices.clear();
    }
    ~CTraceSink() { Platform::SetDebugOutputSink(m_pfnOld); }
    CTraceSink(const CTraceSink&) = delete;
    CTraceSink& operator=(const CTraceSink&) = delete;

private:
    Platform::PfnDebugOutput m_pfnOld;
};

} // namespace

TEST(FunctionsTest, TraceIsFormatted)
{
    const CTraceSink sink;
    OutputTrace(L"%s = %d\n", L"name", 5);
    EXPECT_EQ(std::vector<std::wstring>{L"name = 5\n"}, g_slices);
}

TEST(FunctionsTest, TraceGoesOutInSlicesOf128Characters)
{
    for (const std::size_t nLength : {1u, 127u, 128u, 129u, 256u, 300u, 32767u})
    {
        const CTraceSink sink;
        std::wstring strText;
        for (std::size_t i = 0; i < nLength; ++i)
            strText += static_cast<wchar_t>(L'a' + i % 26);
        OutputTrace(L"%s", strText.c_str());
        ASSERT_EQ((nLength + 127) / 128, g_slices.size());
        std::wstring strTogether;
        for (std::size_t i = 0; i < g_slices.size(); ++i)
        {
            EXPECT_EQ(i + 1 < g_slices.size() ? 128 : (nLength - 1) % 128 + 1, g_slices[i].size());
            strTogether += g_slices[i];
        }
        EXPECT_TEXT(strText, strTogether);
    }
}

TEST(FunctionsTest, EmptyTraceSendsNothing)
{
    const CTraceSink sink;
    OutputTrace(L"");
    EXPECT_TRUE(g_slices.empty());
}

TEST(FunctionsTest, TraceBeyondTheBufferIsDropped)
{
    const CTraceSink sink;
    OutputTrace(L"%s", std::wstring(32769, L'x').c_str());
    OutputTrace(L"%s", std::wstring(100000, L'x').c_str());
    EXPECT_TRUE(g_slices.empty());
}

#if defined(QUIVER_DIAGNOSTICS)

TEST(FunctionsDeathTest, TraceOfExactlyTheBufferStopsAtAnAssertion)
{
    EXPECT_DEATH(OutputTrace(L"%s", std::wstring(32768, L'x').c_str()), "Assertion failed: nBuf < TRACE_BUFFER_LEN");
}

TEST(FunctionsTest, TraceGoesToStandardErrorInDiagnosticBuilds)
{
    ::testing::internal::CaptureStderr();
    OutputTrace(L"name \x00E9\n");
    EXPECT_EQ("name \\u00E9\n", ::testing::internal::GetCapturedStderr());
}

#else

TEST(FunctionsTest, TraceOfExactlyTheBufferIsDroppedWithoutAssertions)
{
    const CTraceSink sink;
    OutputTrace(L"%s", std::wstring(32768, L'x').c_str());
    EXPECT_TRUE(g_slices.empty());
}

TEST(FunctionsTest, TraceGoesNowhereWithoutDiagnostics)
{
    ::testing::internal::CaptureStderr();
    OutputTrace(L"name\n");
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
}

#endif

// --- Text helpers ---------------------------------------------------------------------------------------------------

TEST(FunctionsTest, NullFormatIsAnEmptyText)
{
    const wchar_t* const lpctNull = nullptr;
    EXPECT_TEXT(L"", FormatString(lpctNull));
}

TEST(FunctionsTest, ReplaceAllMayReplaceTheTextItself)
{
    std::string strText = "aa";
    ReplaceAll(strText, strText, "b");
    EXPECT_EQ("b", strText);
    std::string strOther = "b";
    ReplaceAll(strText, strOther, "xyz");
    EXPECT_EQ("xyz", strText);
    ReplaceAll(strText, "a", strText);
    EXPECT_EQ("xyz", strText);
}

TEST(FunctionsTest, ReplaceAllReplacesEveryOccurrence)
{
    const struct
    {
        const char* lpcText;
        const char* lpcNeedle;
        const char* lpcReplacement;
        const char* lpcResult;
    } cases[] = {
        {"", "a", "b", ""},
        {"xyz", "a", "b", "xyz"},
        {"aaa", "a", "b", "bbb"},
        {"aaa", "a", "", ""},
        {"abcabc", "bc", "x", "axax"},
        {"a.b.c", ".", "::", "a::b::c"},
        // After each replacement the text counts as new.
        {"aaaa", "aa", "a", "a"},
        {"aabb", "ab", "", ""},
        {"abbb", "ab", "a", "a"},
        {"aaab", "ab", "ba", "baaa"},
        {"a->>b", "->", "-", "a-b"},
    };
    for (const auto& c : cases)
    {
        std::string strText = c.lpcText;
        ReplaceAll(strText, c.lpcNeedle, c.lpcReplacement);
        EXPECT_EQ(c.lpcResult, strText) << c.lpcText;
        const auto widen = [](const std::string& s)
        {
            return std::wstring(s.begin(), s.end());
        };
        std::wstring strWide = widen(c.lpcText);
        ReplaceAll(strWide, widen(c.lpcNeedle), widen(c.lpcReplacement));
        EXPECT_TEXT(widen(c.lpcResult), strWide);
    }
}

TEST(FunctionsTest, FormatPaddedPutsZerosInFront)
{
    EXPECT_TEXT(L"07", FormatPadded(7, 2));
    EXPECT_TEXT(L"123", FormatPadded(123, 2));
    EXPECT_TEXT(L"0", FormatPadded(0, 0));
    EXPECT_TEXT(L"0000", FormatPadded(0, 4));
    EXPECT_TEXT(L"2147483647", FormatPadded(2147483647u, 3));
    EXPECT_EQ(255u, FormatPadded(1, 255).size());
}

TEST(FunctionsTest, FormatPaddedTakesLargeValuesForNegativeOnes)
{
    EXPECT_TEXT(L"-1", FormatPadded(4294967295u, 2));
    EXPECT_TEXT(L"-001", FormatPadded(4294967295u, 4));
    EXPECT_TEXT(L"-2147483648", FormatPadded(2147483648u, 2));
}

TEST(FunctionsTest, TrimTrailingZerosKeepsTheFirstCharacter)
{
    EXPECT_TEXT(L"1", TrimTrailingZeros(L"100"));
    EXPECT_TEXT(L"101", TrimTrailingZeros(L"101"));
    EXPECT_TEXT(L"0", TrimTrailingZeros(L"000"));
    EXPECT_TEXT(L"0", TrimTrailingZeros(L"0"));
    EXPECT_TEXT(L"001", TrimTrailingZeros(L"0010"));
    EXPECT_TEXT(L"", TrimTrailingZeros(L""));
}

TEST(FunctionsTest, FormatFractionEndsAtTheLastDigitThatCounts)
{
    const struct
    {
        unsigned short milli, micro, nano;
        const wchar_t* lpctText;
    } cases[] = {
        {0, 0, 0, L""},           {100, 0, 0, L".1"},       {0, 1, 0, L".000001"},
        {5, 0, 10, L".00500001"}, {0, 0, 1, L".000000001"}, {123, 456, 789, L".123456789"},
        {120, 0, 0, L".12"},      {1, 200, 0, L".0012"},    {0, 100, 0, L".0001"},
        {0, 0, 900, L".0000009"},
    };
    for (const auto& c : cases)
        EXPECT_TEXT(c.lpctText, FormatFraction(c.milli, c.micro, c.nano));
}

TEST(FunctionsTest, WritePaddedReturnsTheEndOfWhatItWrote)
{
    wchar_t szText[32] = {};
    EXPECT_EQ(szText + 20, WritePadded(szText, ~0ull, 3));
    EXPECT_TEXT(L"18446744073709551615", szText);
    EXPECT_EQ(szText + 3, WritePadded(szText, 7, 3));
    EXPECT_TEXT(L"007", std::wstring(szText, 3));
    EXPECT_EQ(szText + 1, WritePadded(szText, 0, 0));
    EXPECT_TEXT(L"0", std::wstring(szText, 1));
}
