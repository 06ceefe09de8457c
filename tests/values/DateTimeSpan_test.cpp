#include "quiver/values/DateTimeSpan.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;
using QvTest::Span;

namespace
{

using Fields = std::vector<unsigned __int64>;

Fields FieldsOf(const CDateTimeSpan& span)
{
    return {span.GetYears(),   span.GetMonths(),       span.GetDays(),         span.GetHours(),      span.GetMinutes(),
            span.GetSeconds(), span.GetMilliSeconds(), span.GetMicroSeconds(), span.GetNanoSeconds()};
}

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

TEST(DateTimeSpanTest, DefaultSpanIsZeroAndPrintsAsP)
{
    const CDateTimeSpan span;
    EXPECT_EQ(Fields(9, 0), FieldsOf(span));
    EXPECT_FALSE(span.IsNegative());
    EXPECT_TEXT(L"P", span.ToString());
}

TEST(DateTimeSpanTest, IsAValueWithAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor<CDateTimeSpan>::value);
    EXPECT_TRUE(std::is_copy_constructible<CDateTimeSpan>::value);
    EXPECT_TRUE(std::is_copy_assignable<CDateTimeSpan>::value);
}

TEST(DateTimeSpanTest, ConstructorsStoreTheirArguments)
{
    EXPECT_EQ((Fields{0, 0, 0, 1, 2, 3, 0, 0, 0}), FieldsOf(CDateTimeSpan(1, 2, 3)));
    EXPECT_EQ((Fields{1, 2, 3, 4, 5, 6, 0, 0, 0}), FieldsOf(CDateTimeSpan(1, 2, 3, 4, 5, 6)));
    EXPECT_EQ((Fields{1, 2, 3, 4, 5, 6, 7, 8, 9}), FieldsOf(CDateTimeSpan(1, 2, 3, 4, 5, 6, 7, 8, 9)));
    const CDateTimeSpan copy = Span(L"-P1Y2M3DT4H5M6.7S");
    EXPECT_TEXT(L"-P1Y2M3DT4H5M6.7S", copy.ToString());
}

TEST(DateTimeSpanTest, SettersOfTheWholeSpanClearItAndItsSign)
{
    CDateTimeSpan span = Span(L"-P1Y2M3DT4H5M6.789S");
    span.SetDateTimeSpan(1, 2, 3);
    EXPECT_FALSE(span.IsNegative());
    EXPECT_EQ((Fields{0, 0, 0, 1, 2, 3, 0, 0, 0}), FieldsOf(span));
    span.SetDateTimeSpan(1, 2, 3, 4, 5, 6, 7, 8, 9);
    span.Negate();
    EXPECT_EQ((Fields{1, 2, 3, 4, 5, 6, 7, 8, 9}), FieldsOf(span));
    span.SetDateTimeSpan(1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(span.IsNegative());
    EXPECT_EQ((Fields{1, 2, 3, 4, 5, 6, 0, 0, 0}), FieldsOf(span));
}

TEST(DateTimeSpanTest, FieldsComeBackAsSetWithoutACheck)
{
    CDateTimeSpan span;
    span.SetYears(65535);
    span.SetMonths(4294967295ul);
    span.SetDays(4294967294ul);
    span.SetHours(4294967293ul);
    span.SetMinutes(~0ull);
    span.SetSeconds(~0ull - 1);
    span.SetMilliSeconds(65535);
    span.SetMicroSeconds(65534);
    span.SetNanoSeconds(65533);
    EXPECT_EQ((Fields{65535, 4294967295, 4294967294, 4294967293, ~0ull, ~0ull - 1, 65535, 65534, 65533}),
              FieldsOf(span));
    EXPECT_TEXT(L"P65535Y4294967295M4294967294DT4294967293H18446744073709551615M18446744073709551614."
                L"655356553465533S",
                span.ToString());
}

TEST(DateTimeSpanTest, MonthsDaysAndHoursHave32Bits)
{
    const unsigned long nWide = static_cast<unsigned long>(0x100000007ull);
    const CDateTimeSpan span(0, nWide, nWide, nWide, 0, 0);
    EXPECT_EQ(7u, span.GetMonths());
    EXPECT_EQ(7u, span.GetDays());
    EXPECT_EQ(7u, span.GetHours());
}

// --- Parsing --------------------------------------------------------------------------------------------------------

TEST(DateTimeSpanTest, ReadsEveryFieldAndPrintsItBack)
{
    const CDateTimeSpan span = Span(L"P1Y2M3DT4H5M6.7S");
    EXPECT_EQ((Fields{1, 2, 3, 4, 5, 6, 700, 0, 0}), FieldsOf(span));
    EXPECT_FALSE(span.IsNegative());
    EXPECT_TEXT(L"P1Y2M3DT4H5M6.7S", span.ToString());
}

TEST(DateTimeSpanTest, AcceptsTheseTexts)
{
    const struct
    {
        const wchar_t* lpctText;
        Fields fields;
        const wchar_t* lpctPrinted;
    } cases[] = {
        {L"P1Y", {1, 0, 0, 0, 0, 0, 0, 0, 0}, L"P1Y"},
        {L"P2M", {0, 2, 0, 0, 0, 0, 0, 0, 0}, L"P2M"},
        {L"P3D", {0, 0, 3, 0, 0, 0, 0, 0, 0}, L"P3D"},
        {L"PT4H", {0, 0, 0, 4, 0, 0, 0, 0, 0}, L"PT4H"},
        {L"PT5M", {0, 0, 0, 0, 5, 0, 0, 0, 0}, L"PT5M"},
        {L"PT6S", {0, 0, 0, 0, 0, 6, 0, 0, 0}, L"PT6S"},
        {L"PT4H6S", {0, 0, 0, 4, 0, 6, 0, 0, 0}, L"PT4H6S"},
        {L"P1YT6S", {1, 0, 0, 0, 0, 6, 0, 0, 0}, L"P1YT6S"},
        {L"P0012Y", {12, 0, 0, 0, 0, 0, 0, 0, 0}, L"P12Y"},
        // A number may be missing, and is 0 then.
        {L"PY", {0, 0, 0, 0, 0, 0, 0, 0, 0}, L"P"},
        {L"PTS", {0, 0, 0, 0, 0, 0, 0, 0, 0}, L"P"},
        // Digits ahead of the T are read and left.
        {L"P7T1S", {0, 0, 0, 0, 0, 1, 0, 0, 0}, L"PT1S"},
        {L"PT0S", {0, 0, 0, 0, 0, 0, 0, 0, 0}, L"P"},
        {L"PT.5S", {0, 0, 0, 0, 0, 0, 500, 0, 0}, L"PT0.5S"},
        {L"PT1.S", {0, 0, 0, 0, 0, 1, 0, 0, 0}, L"PT1S"},
        {L"PT1.", {0, 0, 0, 0, 0, 1, 0, 0, 0}, L"PT1S"},
        {L"PT1.000001S", {0, 0, 0, 0, 0, 1, 0, 1, 0}, L"PT1.000001S"},
        {L"PT1.120S", {0, 0, 0, 0, 0, 1, 120, 0, 0}, L"PT1.12S"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(QvTest::Show(c.lpctText));
        CDateTimeSpan span;
        ASSERT_NO_THROW(span.ParseXSDDuration(c.lpctText));
        EXPECT_EQ(c.fields, FieldsOf(span));
        EXPECT_TEXT(c.lpctPrinted, span.ToString());
    }
}

TEST(DateTimeSpanTest, LastDigitOfTheFractionIsAllThatStaysOfTheNanoseconds)
{
    EXPECT_EQ((Fields{0, 0, 0, 0, 0, 1, 123, 456, 9}), FieldsOf(Span(L"PT1.123456789S")));
    EXPECT_EQ((Fields{0, 0, 0, 0, 0, 1, 123, 456, 7}), FieldsOf(Span(L"PT1.1234567S")));
    EXPECT_EQ((Fields{0, 0, 0, 0, 0, 1, 123, 456, 8}), FieldsOf(Span(L"PT1.12345678S")));
    EXPECT_TEXT(L"PT1.123456009S", Span(L"PT1.123456789S").ToString());
}

TEST(DateTimeSpanTest, YearsMayStandAnywhereAndTheLastOnesWin)
{
    EXPECT_EQ((Fields{2, 1, 0, 0, 0, 0, 0, 0, 0}), FieldsOf(Span(L"P1M2Y")));
    EXPECT_EQ((Fields{2, 0, 0, 0, 0, 0, 0, 0, 0}), FieldsOf(Span(L"P1Y2Y")));
    EXPECT_EQ((Fields{3, 0, 2, 0, 0, 0, 0, 0, 0}), FieldsOf(Span(L"P1Y2D3Y")));
    // Behind the T they start the date anew, where M means months.
    EXPECT_EQ((Fields{3, 4, 0, 2, 0, 0, 0, 0, 0}), FieldsOf(Span(L"PT2H3Y4M")));
    EXPECT_EQ((Fields{3, 0, 0, 0, 0, 2, 0, 0, 0}), FieldsOf(Span(L"PT2S3Y")));
}

TEST(DateTimeSpanTest, FractionsAddUpWhenYearsLetThemComeTwice)
{
    EXPECT_EQ((Fields{1, 0, 0, 0, 0, 2, 1000, 0, 0}), FieldsOf(Span(L"PT1.5S1YT2.5S")));
}

TEST(DateTimeSpanTest, NumbersWrapWithoutNotice)
{
    EXPECT_EQ(4464u, Span(L"P70000Y").GetYears());
    EXPECT_EQ(0u, Span(L"P65536Y").GetYears());
    EXPECT_EQ(4294967295u, Span(L"P4294967295M").GetMonths());
    EXPECT_EQ(0u, Span(L"P4294967296M").GetMonths());
    EXPECT_EQ(1u, Span(L"PT4294967297S").GetSeconds());
    EXPECT_EQ(1u, Span(L"PT4294967297M").GetMinutes());
    EXPECT_EQ(1215752191u, Span(L"P99999999999D").GetDays());
}

TEST(DateTimeSpanTest, RefusesOtherTexts)
{
    for (const wchar_t* lpctText :
         {L"P",       L"-P",    L"PT",     L"P1YT",     L"-",        L"--P1D",    L"+P1D",   L"p1D",
          L"1Y",      L"P1",    L"P1Y2",   L"PT1",      L"P1H",      L"P1S",      L"PT1D",   L"P1D2M",
          L"P1D2D",   L"P1M2M", L"PTT1S",  L"PT1H2H",   L"PT1M2H",   L"PT1M2M",   L"PT1S2M", L"PT1S2S",
          L"PT1S.5S", L"PT1.5", L"PT1.5M", L"PT1.5.5S", L"PT1.5S1S", L"P1.5Y",    L"P1.5D",  L"P-1Y",
          L"P1Y ",    L" P1Y",  L"P1y",    L"P1YZ",     L"\x0660",   L"P\x0661Y", L"P1D1.5S"})
    {
        CDateTimeSpan span;
        ExpectThrows<CQvInvalidValueException>(std::wstring(L"Invalid XSD Duration [") + lpctText +
                                                   L"] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]",
                                               [&] { span.ParseXSDDuration(lpctText); });
    }
}

TEST(DateTimeSpanTest, OtherFailuresSayWhy)
{
    CDateTimeSpan span;
    ExpectThrows<CQvInvalidValueException>(L"Invalid XSD Duration (Null String)",
                                           [&] { span.ParseXSDDuration(nullptr); });
    ExpectThrows<CQvInvalidValueException>(L"Invalid XSD Duration (Empty String)", [&] { span.ParseXSDDuration(L""); });
    ExpectThrows<CQvInvalidValueException>(L"Invalid XSD Duration [PT1.1234567890S] Fraction part too long",
                                           [&] { span.ParseXSDDuration(L"PT1.1234567890S"); });
}

TEST(DateTimeSpanTest, FailureKeepsWhatWasReadAndForgetsWhatWasThere)
{
    CDateTimeSpan span = Span(L"-P1Y2M3DT4H5M6.7S");
    EXPECT_THROW(span.ParseXSDDuration(L"P9Y8X"), CQvInvalidValueException);
    EXPECT_EQ((Fields{9, 0, 0, 0, 0, 0, 0, 0, 0}), FieldsOf(span));
    EXPECT_FALSE(span.IsNegative());
}

TEST(DateTimeSpanTest, PrintingAndParsingDoNotAllocateBeyondTheResult)
{
    CDateTimeSpan span;
    std::wstring strText;
    EXPECT_EQ(0u, QvTest::CountAllocations([&] { span.ParseXSDDuration(L"P1Y2M3DT4H5M6.7S"); }));
    EXPECT_EQ(1u, QvTest::CountAllocations([&] { strText = span.ToString(); }));
}

// --- Sign -----------------------------------------------------------------------------------------------------------

TEST(DateTimeSpanTest, NegativeOfANegativeSpanStaysNegative)
{
    CDateTimeSpan span = Span(L"-P1D");
    EXPECT_TRUE(span.IsNegative());
    EXPECT_TRUE(span.GetAsNegative().IsNegative());
    EXPECT_TEXT(L"-P1D", span.GetAsNegative().ToString());
    span.Negate();
    EXPECT_FALSE(span.IsNegative());
    EXPECT_TEXT(L"-P1D", span.GetAsNegative().ToString());
    EXPECT_TEXT(L"P1D", span.ToString());
}

TEST(DateTimeSpanTest, NegativeZeroPrintsItsSign)
{
    EXPECT_TEXT(L"-P", Span(L"-PT0S").ToString());
}

// --- Printing -------------------------------------------------------------------------------------------------------

TEST(DateTimeSpanTest, ZeroSpanPrintsWhatTheParserRefuses)
{
    const std::wstring strText = Span(L"PT0S").ToString();
    EXPECT_TEXT(L"P", strText);
    EXPECT_THROW(Span(strText.c_str()), CQvInvalidValueException);
}

TEST(DateTimeSpanTest, FractionAlonePrintsASecondOfZero)
{
    EXPECT_TEXT(L"PT0.001S", CDateTimeSpan(0, 0, 0, 0, 0, 0, 1, 0, 0).ToString());
    EXPECT_TEXT(L"PT0.000001S", CDateTimeSpan(0, 0, 0, 0, 0, 0, 0, 1, 0).ToString());
    EXPECT_TEXT(L"PT0.000000001S", CDateTimeSpan(0, 0, 0, 0, 0, 0, 0, 0, 1).ToString());
    EXPECT_TEXT(L"PT0.00500001S", CDateTimeSpan(0, 0, 0, 0, 0, 0, 5, 0, 10).ToString());
}

// --- Comparison -----------------------------------------------------------------------------------------------------

TEST(DateTimeSpanTest, ComparesByTheFourStartingDates)
{
    constexpr auto Equal = CDateTime::DTCompareResult_Equal;
    constexpr auto Less = CDateTime::DTCompareResult_LessThan;
    constexpr auto Greater = CDateTime::DTCompareResult_GreaterThan;
    constexpr auto Indeterminate = CDateTime::DTCompareResult_Indeterminate;
    const struct
    {
        const wchar_t* lpctA;
        const wchar_t* lpctB;
        CDateTime::DTCompareResult eResult;
    } cases[] = {
        {L"P1D", L"P1D", Equal},
        {L"P1D", L"PT24H", Equal},
        {L"P1D", L"P2D", Less},
        {L"P2D", L"P1D", Greater},
        {L"P1Y", L"P12M", Equal},
        {L"P1Y", L"P2Y", Less},
        {L"P1Y", L"-P1Y", Greater},
        {L"P1M", L"P30D", Indeterminate},
        {L"P30D", L"P1M", Indeterminate},
        // The first date gives the same day, the ones around the end of February another.
        {L"P1M", L"P31D", Indeterminate},
        {L"P1Y", L"P365D", Indeterminate},
        {L"P1Y", L"P366D", Indeterminate},
        {L"P1Y", L"P367D", Less},
        {L"P4Y", L"P1461D", Indeterminate},
        // Neither the time of day nor the month counts.
        {L"PT1H", L"PT2H", Equal},
        {L"PT23H59M59S", L"PT0S", Equal},
        {L"PT1H", L"PT25H", Less},
        {L"P1M", L"P2M", Equal},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.eResult, Span(c.lpctA).CompareTo(Span(c.lpctB)))
            << QvTest::Show(c.lpctA) << " against " << QvTest::Show(c.lpctB);
}

TEST(DateTimeSpanTest, YearsOfDifferentSignAreIndeterminate)
{
    EXPECT_EQ(CDateTime::DTCompareResult_Indeterminate, Span(L"-P3000Y").CompareTo(Span(L"P1D")));
}

TEST(DateTimeSpanTest, OperatorsFollowTheComparison)
{
    const CDateTimeSpan day = Span(L"P1D");
    const CDateTimeSpan twoDays = Span(L"P2D");
    const CDateTimeSpan month = Span(L"P1M");
    const CDateTimeSpan thirtyDays = Span(L"P30D");
    EXPECT_TRUE(day == day);
    EXPECT_FALSE(day != day);
    EXPECT_TRUE(day < twoDays);
    EXPECT_FALSE(day > twoDays);
    EXPECT_TRUE(twoDays > day);
    EXPECT_FALSE(twoDays < day);
    EXPECT_TRUE(day != twoDays);
    EXPECT_FALSE(month == thirtyDays);
    EXPECT_TRUE(month != thirtyDays);
    EXPECT_FALSE(month < thirtyDays);
    EXPECT_FALSE(month > thirtyDays);
}
