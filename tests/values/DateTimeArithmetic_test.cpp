#include "quiver/values/DateTime.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

using namespace QvXmlLib9;
using QvTest::Date;
using QvTest::DateTime;
using QvTest::ExpectThrows;
using QvTest::Span;
using QvTest::Time;

// --- Comparison -----------------------------------------------------------------------------------------------------

namespace
{

constexpr CDateTime::DTCompareResult Equal = CDateTime::DTCompareResult_Equal;
constexpr CDateTime::DTCompareResult Less = CDateTime::DTCompareResult_LessThan;
constexpr CDateTime::DTCompareResult Greater = CDateTime::DTCompareResult_GreaterThan;
constexpr CDateTime::DTCompareResult Indeterminate = CDateTime::DTCompareResult_Indeterminate;

struct SOrder
{
    const wchar_t* lpctA;
    const wchar_t* lpctB;
    CDateTime::DTCompareResult eResult;
};

void ExpectOrder(CDateTime (*pfnParse)(const wchar_t*), const std::vector<SOrder>& orders)
{
    for (const SOrder& order : orders)
        EXPECT_EQ(order.eResult, pfnParse(order.lpctA).CompareTo(pfnParse(order.lpctB)))
            << QvTest::Show(order.lpctA) << " against " << QvTest::Show(order.lpctB);
}

} // namespace

TEST(DateTimeArithmeticTest, ValuesOfOneKindCompareFieldByField)
{
    const std::vector<SOrder> orders = {
        {L"2001-03-05T12:30:15", L"2001-03-05T12:30:15", Equal},
        {L"2000-03-05T12:30:15", L"2001-03-05T12:30:15", Less},
        {L"2001-03-06T12:30:15", L"2001-03-05T12:30:15", Greater},
        {L"2001-03-05T11:30:15", L"2001-03-05T12:30:15", Less},
        {L"2001-03-05T12:31:15", L"2001-03-05T12:30:15", Greater},
        {L"2001-03-05T12:30:14", L"2001-03-05T12:30:15", Less},
        {L"2001-03-05T12:30:15.5", L"2001-03-05T12:30:15", Greater},
        {L"2001-03-05T12:30:15.000000001", L"2001-03-05T12:30:15.000000002", Less},
        {L"-0002-03-05T12:30:15", L"-0001-03-05T12:30:15", Less},
    };
    ExpectOrder(DateTime, orders);
    const std::vector<SOrder> dates = {
        {L"2001", L"2002", Less},
        {L"2001", L"2001", Equal},
        {L"---05", L"---06", Less},
        {L"--03-05", L"--03-04", Greater},
    };
    ExpectOrder(Date, dates);
    const std::vector<SOrder> times = {
        {L"12:00:00", L"12:00:00.000", Equal},
        {L"12:00:00", L"13:00:00", Less},
    };
    ExpectOrder(Time, times);
}

TEST(DateTimeArithmeticTest, ValuesThatDifferOnlyInTheMonthAreEqual)
{
    const std::vector<SOrder> orders = {
        {L"2001-03-05", L"2001-04-05", Equal}, {L"2001-12-05", L"2001-01-06", Less},
        {L"2001-03", L"2001-04", Equal},       {L"--03", L"--04", Equal},
        {L"--03-05", L"--04-05", Equal},
    };
    ExpectOrder(Date, orders);
}

TEST(DateTimeArithmeticTest, YearsOfDifferentSignHaveNoOrder)
{
    const std::vector<SOrder> orders = {
        {L"-0001", L"0001", Indeterminate},
        {L"0001", L"-0001", Indeterminate},
        {L"-0001-01-01", L"0001-01-01", Indeterminate},
    };
    ExpectOrder(Date, orders);
}

TEST(DateTimeArithmeticTest, KindsWithDifferentFieldsHaveNoOrder)
{
    EXPECT_EQ(Indeterminate, Date(L"2001").CompareTo(Time(L"12:00:00")));
    EXPECT_EQ(Indeterminate, Date(L"2001-03-05").CompareTo(Date(L"2001-03")));
    EXPECT_EQ(Indeterminate, Date(L"2001-03-05").CompareTo(Date(L"2001")));
    EXPECT_EQ(Indeterminate, DateTime(L"2001-03-05T01:00:00").CompareTo(Date(L"2001-03-05")));
    // A field of 0 is above the -1 of a field that is not there, and no sign tells them apart.
    EXPECT_EQ(Greater, DateTime(L"2001-03-05T00:00:00").CompareTo(Date(L"2001-03-05")));
    EXPECT_EQ(Less, Date(L"2001-03-05").CompareTo(DateTime(L"2001-03-05T00:00:00")));
    // The year decides before the missing field is seen.
    EXPECT_EQ(Less, Date(L"2000").CompareTo(Date(L"2001-03-05")));
    // Year -1 is what stands for no year.
    EXPECT_EQ(Greater, Time(L"00:00:00").CompareTo(Date(L"-0001")));
    EXPECT_EQ(Equal, CDateTime().CompareTo(CDateTime()));
}

TEST(DateTimeArithmeticTest, ComparisonFailsWhenOnlyTheSecondSideHasAMonth)
{
    ExpectThrows<CQvInvalidStateException>(L"Failed to GetMonth. Invalid Date Type: gYear.",
                                           [] { Date(L"2001").CompareTo(Date(L"2001-03-05")); });
    ExpectThrows<CQvInvalidStateException>(L"Failed to GetMonth. Invalid Date Type: gDay.",
                                           [] { Date(L"---05").CompareTo(Date(L"--03-05")); });
    ExpectThrows<CQvInvalidStateException>(L"Failed to GetMonth. Invalid Date Type: time.",
                                           [] { (void)(Time(L"12:00:00") == Date(L"--03")); });
}

TEST(DateTimeArithmeticTest, OffsetsAreTakenOutBeforeComparing)
{
    const std::vector<SOrder> orders = {
        {L"2001-03-05T12:00:00Z", L"2001-03-05T13:00:00+01:00", Equal},
        {L"2001-03-05T12:00:00-01:00", L"2001-03-05T13:00:00Z", Equal},
        {L"2001-03-05T12:00:00+05:00", L"2001-03-05T12:00:00+04:00", Less},
        {L"2001-03-06T01:00:00+02:00", L"2001-03-05T22:00:00Z", Greater},
    };
    ExpectOrder(DateTime, orders);
    const std::vector<SOrder> times = {
        {L"12:00:00Z", L"13:00:00+01:00", Equal},
        {L"23:30:00-01:00", L"00:30:00Z", Equal},
    };
    ExpectOrder(Time, times);
}

TEST(DateTimeArithmeticTest, ValueWithoutAZoneIsTriedAt14HoursAheadAndAtItself)
{
    const std::vector<SOrder> orders = {
        // Only the first side has a zone: less than the other one 14 hours early, or greater than
        // it as it stands.
        {L"2001-03-05T12:00:00Z", L"2001-03-06T03:00:00", Less},
        {L"2001-03-05T12:00:00Z", L"2001-03-06T02:00:00", Indeterminate},
        {L"2001-03-05T12:00:00Z", L"2001-03-05T12:00:00", Indeterminate},
        {L"2001-03-05T12:00:01Z", L"2001-03-05T12:00:00", Greater},
        {L"2001-03-05T11:59:59Z", L"2001-03-05T12:00:00", Indeterminate},
        {L"2001-03-05T13:00:00+01:00", L"2001-03-05T12:00:00", Indeterminate},
        // Only the second side has one: the mirror image.
        {L"2001-03-06T03:00:00", L"2001-03-05T12:00:00Z", Greater},
        {L"2001-03-06T02:00:00", L"2001-03-05T12:00:00Z", Indeterminate},
        {L"2001-03-05T12:00:00", L"2001-03-05T12:00:00Z", Indeterminate},
        {L"2001-03-05T11:59:59", L"2001-03-05T12:00:00Z", Less},
        {L"2001-03-05T12:00:01", L"2001-03-05T12:00:00Z", Indeterminate},
    };
    ExpectOrder(DateTime, orders);
}

TEST(DateTimeArithmeticTest, OperatorsFollowTheComparison)
{
    const CDateTime a = Date(L"2001");
    const CDateTime b = Date(L"2002");
    const CDateTime z = Date(L"-0001");
    const struct
    {
        const CDateTime& a;
        const CDateTime& b;
        bool bEqual, bUnequal, bLess, bGreater, bLessEqual, bGreaterEqual;
    } cases[] = {
        {a, a, true, false, false, false, true, true},
        {a, b, false, true, true, false, true, false},
        {b, a, false, true, false, true, false, true},
        {a, z, false, true, false, false, false, false},
    };
    for (const auto& c : cases)
    {
        EXPECT_EQ(c.bEqual, c.a == c.b);
        EXPECT_EQ(c.bUnequal, c.a != c.b);
        EXPECT_EQ(c.bLess, c.a < c.b);
        EXPECT_EQ(c.bGreater, c.a > c.b);
        EXPECT_EQ(c.bLessEqual, c.a <= c.b);
        EXPECT_EQ(c.bGreaterEqual, c.a >= c.b);
    }
}

// --- Arithmetic -----------------------------------------------------------------------------------------------------

TEST(DateTimeArithmeticTest, AddsDurationsByTheCalendar)
{
    const struct
    {
        const wchar_t* lpctStart;
        const wchar_t* lpctSpan;
        const wchar_t* lpctSum;
    } cases[] = {
        {L"2001-03-05T12:30:15", L"P1Y", L"2002-03-05T12:30:15"},
        {L"2001-11-05T12:30:15", L"P3M", L"2002-02-05T12:30:15"},
        {L"2001-12-05T12:30:15", L"P25M", L"2004-01-05T12:30:15"},
        {L"2001-02-28T12:30:15", L"P1D", L"2001-03-01T12:30:15"},
        {L"2000-02-28T12:30:15", L"P1D", L"2000-02-29T12:30:15"},
        {L"2001-12-31T23:59:59.999999999", L"PT0.000000001S", L"2002-01-01T00:00:00"},
        {L"2001-03-05T12:30:15", L"PT36H", L"2001-03-07T00:30:15"},
        {L"2001-03-05T12:30:15", L"P3DT30M", L"2001-03-08T13:00:15"},
        {L"2001-03-05T12:30:15", L"PT1000000S", L"2001-03-17T02:16:55"},
        {L"2001-03-05T12:30:15", L"P400D", L"2002-04-09T12:30:15"},
        {L"2001-03-05T12:30:15", L"-P1Y", L"2000-03-05T12:30:15"},
        {L"2001-03-05T12:30:15", L"-P3M", L"2000-12-05T12:30:15"},
        {L"2001-03-01T12:30:15", L"-P1D", L"2001-02-28T12:30:15"},
        {L"2000-03-01T12:30:15", L"-P1D", L"2000-02-29T12:30:15"},
        {L"2001-01-01T00:00:00", L"-PT0.000000001S", L"2000-12-31T23:59:59.999999999"},
        {L"2001-03-05T12:30:15", L"-P400D", L"2000-01-30T12:30:15"},
        {L"2001-03-05T12:30:15.5Z", L"P1D", L"2001-03-06T12:30:15.5Z"},
        {L"2001-03-05T12:30:15-05:00", L"P1D", L"2001-03-06T12:30:15-05:00"},
    };
    for (const auto& c : cases)
    {
        const CDateTime start = DateTime(c.lpctStart);
        EXPECT_TEXT(c.lpctSum, (start + Span(c.lpctSpan)).ToString());
        CDateTime sum = start;
        EXPECT_EQ(&sum, &(sum += Span(c.lpctSpan)));
        EXPECT_TEXT(c.lpctSum, sum.ToString());
    }
}

TEST(DateTimeArithmeticTest, MonthsDoNotCutTheDay)
{
    EXPECT_TEXT(L"2001-02-31", (Date(L"2001-01-31") + Span(L"P1M")).ToString());
    EXPECT_TEXT(L"2001-02-29", (Date(L"2000-02-29") + Span(L"P1Y")).ToString());
    // From a day behind the end of its month, days move on to the next month and back within this one.
    EXPECT_TEXT(L"2001-03-04", (Date(L"2001-01-31") + Span(L"P1M1D")).ToString());
    EXPECT_TEXT(L"2001-02-30", (Date(L"2001-03-31") + Span(L"-P1M1D")).ToString());
}

TEST(DateTimeArithmeticTest, SumsAreNotChecked)
{
    EXPECT_TEXT(L"0000-01-01", (Date(L"-0001-01-01") + Span(L"P1Y")).ToString());
    EXPECT_TEXT(L"10000-01-01", (Date(L"9999-12-31") + Span(L"P1D")).ToString());
    EXPECT_TEXT(L"-32768-01-01", (Date(L"9999-12-31") + Span(L"P22768Y1D")).ToString());
}

TEST(DateTimeArithmeticTest, SubtractionUsesTheSizeOfTheSpan)
{
    const CDateTime start = Date(L"2001-03-05");
    EXPECT_TEXT(L"2001-03-04", (start - Span(L"P1D")).ToString());
    EXPECT_TEXT(L"2001-03-04", (start - Span(L"-P1D")).ToString());
    CDateTime dt = start;
    EXPECT_EQ(&dt, &(dt -= Span(L"-P1D")));
    EXPECT_TEXT(L"2001-03-04", dt.ToString());
}

TEST(DateTimeArithmeticTest, DifferenceOfTwoValuesIsAlwaysTheZeroSpan)
{
    EXPECT_TEXT(L"P", (Date(L"2001-03-05") - Date(L"1999-01-01")).ToString());
}

TEST(DateTimeArithmeticTest, AdditionChangesTheFieldsThatTheKindDoesNotUse)
{
    // Without a month, its 0 counts as the December before.
    EXPECT_TEXT(L"2000", (Date(L"2001") + Span(L"PT0S")).ToString());
    EXPECT_TEXT(L"2001", (Date(L"2001") + Span(L"P1M")).ToString());
    EXPECT_TEXT(L"12:00:00", (Time(L"12:00:00") + Span(L"P1D")).ToString());
    EXPECT_TEXT(L"01:00:00", (Time(L"23:00:00") + Span(L"PT2H")).ToString());
    // A time is a time whatever else it holds, but its comparison with a date sees it no differently.
    EXPECT_EQ(Equal, (Time(L"12:00:00") + Span(L"P1D")).CompareTo(Time(L"12:00:00")));
    // An offset moves a year into the one before.
    EXPECT_TEXT(L"2000+00:00", Date(L"2001+05:00").GetNormalized().ToString());
}

TEST(DateTimeArithmeticTest, CarriesAreComputedInSinglePrecision)
{
    // 20000001 is 20000000 in single precision, so the odd second is lost.
    EXPECT_TEXT(L"2001-08-20T11:33:20", (DateTime(L"2001-01-01T00:00:00") + Span(L"PT20000001S")).ToString());
    // Up to 2^24 nothing is lost.
    EXPECT_TEXT(L"2001-07-14T04:20:16", (DateTime(L"2001-01-01T00:00:00") + Span(L"PT16777216S")).ToString());
    EXPECT_TEXT(L"2001-07-14T04:20:15", (DateTime(L"2001-01-01T00:00:00") + Span(L"PT16777215S")).ToString());
}

namespace
{

/// The addition as it is defined, step by step: the yardstick for the fast one.
struct SPlainDateTime
{
    std::int16_t year;
    int month, day, hour, minute, second, milli, micro, nano;

    static float Quotient(std::int64_t a, int b) { return std::floor(static_cast<float>(a) / static_cast<float>(b)); }
    static int Modulo(std::int64_t a, int b)
    {
        const float fProduct = Quotient(a, b) * static_cast<float>(b);
        return static_cast<int>(static_cast<float>(a) - fProduct);
    }
    static bool IsLeap(int y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }
    static int Length(int y, int m)
    {
        static const int lengths[] = {31, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        return m == 2 && !IsLeap(y) ? 28 : lengths[m];
    }

    void Add(const CDateTimeSpan& span)
    {
        const int s = span.IsNegative() ? -1 : 1;
        std::int64_t t = month + s * static_cast<std::int64_t>(span.GetMonths());
        std::int64_t carry = static_cast<std::int64_t>(Quotient(t - 1, 12));
        month = Modulo(t - 1, 12) + 1;
        year = static_cast<std::int16_t>(year + carry + s * span.GetYears());
        carry = 0;
        AddTo(nano, s * static_cast<std::int64_t>(span.GetNanoSeconds()), 1000, carry);
        AddTo(micro, s * static_cast<std::int64_t>(span.GetMicroSeconds()), 1000, carry);
        AddTo(milli, s * static_cast<std::int64_t>(span.GetMilliSeconds()), 1000, carry);
        AddTo(second, s * static_cast<std::int64_t>(span.GetSeconds()), 60, carry);
        AddTo(minute, s * static_cast<std::int64_t>(span.GetMinutes()), 60, carry);
        AddTo(hour, s * static_cast<std::int64_t>(span.GetHours()), 24, carry);
        AddDays(carry + s * static_cast<std::int64_t>(span.GetDays()));
    }

    static void AddTo(int& nField, std::int64_t nAmount, int nBase, std::int64_t& carry)
    {
        const std::int64_t t = nField + nAmount + carry;
        carry = static_cast<std::int64_t>(Quotient(t, nBase));
        nField = Modulo(t, nBase);
    }

    void AddDays(std::int64_t d)
    {
        int m = month;
        while (d != 0)
        {
            if (d < 0 && day - 1 < -d)
            {
                d += day;
                --m;
                day = Length(year, m);
            }
            else if (d < 0)
            {
                day = static_cast<int>(day + d);
                d = 0;
            }
            else if (day + d <= Length(year, m))
            {
                day = static_cast<int>(day + d);
                d = 0;
            }
            else
            {
                d -= Length(year, m) + 1 - day;
                day = 1;
                ++m;
            }
            if (m == 0)
            {
                year = static_cast<std::int16_t>(year - 1);
                m = 12;
            }
            else if (m == 13)
            {
                year = static_cast<std::int16_t>(year + 1);
                m = 1;
            }
        }
        month = m;
    }
};

SPlainDateTime FieldsOf(const CDateTime& dt)
{
    return {dt.GetYear(),   dt.GetMonth(),       dt.GetDay(),         dt.GetHour(),      dt.GetMinute(),
            dt.GetSecond(), dt.GetMilliSecond(), dt.GetMicroSecond(), dt.GetNanoSecond()};
}

void ExpectSameSum(const CDateTime& start, const CDateTimeSpan& span)
{
    SPlainDateTime plain = FieldsOf(start);
    plain.Add(span);
    const SPlainDateTime sum = FieldsOf(start + span);
    const auto fields = [](const SPlainDateTime& f)
    {
        return std::vector<int>{f.year, f.month, f.day, f.hour, f.minute, f.second, f.milli, f.micro, f.nano};
    };
    ASSERT_EQ(fields(plain), fields(sum)) << QvTest::Show(start.ToString()) << " and " << QvTest::Show(span.ToString());
}

} // namespace

TEST(DateTimeArithmeticTest, SumsAgreeWithTheDayByDayDefinition)
{
    std::mt19937 random(20010305);
    const auto number = [&](int nLeast, int nMost)
    {
        return std::uniform_int_distribution<int>(nLeast, nMost)(random);
    };
    for (int i = 0; i < 20000; ++i)
    {
        CDateTime start(CDateTime::dt_dateTime);
        start.SetYear(static_cast<short>(i % 2 == 0 ? number(1, 3000) : number(-32768, 32767)));
        start.SetMonth(static_cast<unsigned char>(number(0, 12)));
        // Also days that no month has.
        start.SetDay(static_cast<unsigned char>(i % 5 == 0 ? number(0, 255) : number(1, 31)));
        start.SetHour(static_cast<unsigned char>(number(0, 23)));
        start.SetMinute(static_cast<unsigned char>(number(0, 59)));
        start.SetSecond(static_cast<unsigned char>(number(0, 59)));
        start.SetNanoSecond(static_cast<unsigned short>(number(0, 999)));
        const int nMostDays = i % 3 == 0 ? 40 : i % 3 == 1 ? 1000 : 500000;
        CDateTimeSpan span(static_cast<unsigned short>(number(0, 300)), static_cast<unsigned long>(number(0, 100)),
                           static_cast<unsigned long>(number(0, nMostDays)), static_cast<unsigned long>(number(0, 100)),
                           static_cast<unsigned __int64>(number(0, 10000)),
                           static_cast<unsigned __int64>(number(0, 20000000)),
                           static_cast<unsigned short>(number(0, 65535)), static_cast<unsigned short>(number(0, 65535)),
                           static_cast<unsigned short>(number(0, 65535)));
        if (number(0, 1) == 1)
            span.Negate();
        ASSERT_NO_FATAL_FAILURE(ExpectSameSum(start, span));
    }
}

TEST(DateTimeArithmeticTest, YearWrapsWhileDaysAreCounted)
{
    const CDateTime start = DateTime(L"2001-03-05T12:30:15");
    for (const unsigned long nDays : {11000000ul, 23000000ul, 23936533ul, 24000000ul, 47873066ul, 50000000ul})
    {
        CDateTimeSpan span(0, 0, nDays, 0, 0, 0);
        ASSERT_NO_FATAL_FAILURE(ExpectSameSum(start, span));
        span.Negate();
        ASSERT_NO_FATAL_FAILURE(ExpectSameSum(start, span));
    }
}

TEST(DateTimeArithmeticTest, LargestSpansEndInADefinedSum)
{
    const CDateTime start = DateTime(L"2001-03-05T12:30:15");
    constexpr unsigned __int64 nMost = ~0ull;
    for (const bool bNegative : {false, true})
    {
        const CDateTimeSpan spans[] = {
            CDateTimeSpan(0, 0, 4294967295ul, 0, 0, 0),
            CDateTimeSpan(65535, 4294967295ul, 0, 0, 0, 0),
            CDateTimeSpan(4294967295ul, 0, 0),
            CDateTimeSpan(0, nMost, 0),
            CDateTimeSpan(0, 0, nMost),
            CDateTimeSpan(65535, 4294967295ul, 4294967295ul, 4294967295ul, nMost, nMost, 65535, 65535, 65535),
        };
        for (CDateTimeSpan span : spans)
        {
            if (bNegative)
                span.Negate();
            EXPECT_FALSE((start + span).ToString().empty());
        }
    }
}

TEST(DateTimeArithmeticTest, MonthsBeyondSinglePrecisionStayDefined)
{
    // Rounding carries the month out of the year; a day that moves brings it back into one.
    const CDateTime start = DateTime(L"2001-03-05T12:30:15");
    for (unsigned long nMonths = 4294967295ul; nMonths > 4294966295ul; --nMonths)
    {
        const CDateTime sum = start + CDateTimeSpan(0, nMonths, 60, 0, 0, 0);
        EXPECT_GE(sum.GetMonth(), 1);
        EXPECT_LE(sum.GetMonth(), 12);
        EXPECT_GE(sum.GetDay(), 1);
        EXPECT_LE(sum.GetDay(), 31);
    }
}
