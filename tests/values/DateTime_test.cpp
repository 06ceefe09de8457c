#include "quiver/values/DateTime.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/platform/SystemTimeFields.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Dates.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

using namespace QvXmlLib9;
using QvTest::Date;
using QvTest::DateTime;
using QvTest::ExpectThrows;
using QvTest::OneOfEachKind;
using QvTest::Time;

namespace
{

using Setter = std::function<void(CDateTime&)>;
using Parser = void (CDateTime::*)(const wchar_t*);

} // namespace

// --- Kinds ----------------------------------------------------------------------------------------------------------

TEST(DateTimeTest, KindsHaveTheirNumbersAndNames)
{
    const struct
    {
        CDateTime::DTType eType;
        int nNumber;
        const wchar_t* lpctName;
    } kinds[] = {
        {CDateTime::dt_yearZero, 0, L"yearZero"},   {CDateTime::dt_dateTime, 1, L"dateTime"},
        {CDateTime::dt_date, 2, L"date"},           {CDateTime::dt_gYearMonth, 3, L"gYearMonth"},
        {CDateTime::dt_gYear, 4, L"gYear"},         {CDateTime::dt_time, 5, L"time"},
        {CDateTime::dt_gDay, 6, L"gDay"},           {CDateTime::dt_gMonth, 7, L"gMonth"},
        {CDateTime::dt_gMonthDay, 8, L"gMonthDay"},
    };
    for (const auto& kind : kinds)
    {
        EXPECT_EQ(kind.nNumber, kind.eType);
        const CDateTime dt(kind.eType);
        EXPECT_EQ(kind.eType, dt.GetType());
        EXPECT_TEXT(kind.lpctName, dt.GetTypeAsString());
    }
}

TEST(DateTimeTest, CompareResultsHaveTheirNumbers)
{
    EXPECT_EQ(0, CDateTime::DTCompareResult_Equal);
    EXPECT_EQ(1, CDateTime::DTCompareResult_LessThan);
    EXPECT_EQ(2, CDateTime::DTCompareResult_GreaterThan);
    EXPECT_EQ(3, CDateTime::DTCompareResult_Indeterminate);
}

TEST(DateTimeTest, IsAValueWithAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor<CDateTime>::value);
    EXPECT_TRUE(std::is_copy_constructible<CDateTime>::value);
    EXPECT_TRUE(std::is_copy_assignable<CDateTime>::value);
}

TEST(DateTimeTest, DefaultObjectIsEmptyAndHasNoText)
{
    const CDateTime dt;
    EXPECT_EQ(CDateTime::dt_yearZero, dt.GetType());
    EXPECT_FALSE(dt.IsUTC());
    EXPECT_FALSE(dt.HasTimeZone());
    ExpectThrows<CQvInvalidValueException>(L"Date Not Set", [&] { dt.ToString(); });
}

TEST(DateTimeTest, ObjectOfAKindWithoutFieldsHasNoTextUnlessItIsATime)
{
    for (int nType = 0; nType <= 8; ++nType)
    {
        const CDateTime dt(static_cast<CDateTime::DTType>(nType));
        if (nType == CDateTime::dt_time)
            EXPECT_TEXT(L"00:00:00", dt.ToString());
        else
            ExpectThrows<CQvInvalidValueException>(L"Date Not Set", [&] { dt.ToString(); });
    }
}

TEST(DateTimeTest, CopiesCarryEveryFieldAndFlag)
{
    const CDateTime source = DateTime(L"-0044-03-15T12:30:15.123456789-05:30");
    const CDateTime copy = source;
    CDateTime assigned = Date(L"2001");
    assigned = source;
    EXPECT_TEXT(L"-0044-03-15T12:30:15.123456789-05:30", copy.ToString());
    EXPECT_TEXT(L"-0044-03-15T12:30:15.123456789-05:30", assigned.ToString());
}

// --- Parsing and printing -------------------------------------------------------------------------------------------

namespace
{

struct SLexicalForm
{
    const wchar_t* lpctText;
    CDateTime::DTType eType;
    /// Null where the text comes back as it was.
    const wchar_t* lpctPrinted;
};

void ExpectForms(Parser pfnParse, const std::vector<SLexicalForm>& forms)
{
    for (const SLexicalForm& form : forms)
    {
        SCOPED_TRACE(QvTest::Show(form.lpctText));
        CDateTime dt;
        ASSERT_NO_THROW((dt.*pfnParse)(form.lpctText));
        EXPECT_EQ(form.eType, dt.GetType());
        EXPECT_TEXT(form.lpctPrinted ? form.lpctPrinted : form.lpctText, dt.ToString());
    }
}

struct SBadText
{
    const wchar_t* lpctText;
    const wchar_t* lpctMessage;
};

void ExpectFailures(Parser pfnParse, const std::vector<SBadText>& texts)
{
    for (const SBadText& text : texts)
    {
        SCOPED_TRACE(text.lpctText ? QvTest::Show(text.lpctText) : "null");
        CDateTime dt;
        ExpectThrows<CQvInvalidValueException>(text.lpctMessage, [&] { (dt.*pfnParse)(text.lpctText); });
    }
}

} // namespace

TEST(DateTimeTest, DateParserTakesTheKindFromTheText)
{
    const std::vector<SLexicalForm> forms = {
        {L"2001", CDateTime::dt_gYear, nullptr},         {L"-2001", CDateTime::dt_gYear, nullptr},
        {L"2001-03", CDateTime::dt_gYearMonth, nullptr}, {L"-2001-03", CDateTime::dt_gYearMonth, nullptr},
        {L"2001-03-05", CDateTime::dt_date, nullptr},    {L"-0001-01-01", CDateTime::dt_date, nullptr},
        {L"9999-12-31", CDateTime::dt_date, nullptr},    {L"-9999-12-31", CDateTime::dt_date, nullptr},
        {L"--12", CDateTime::dt_gMonth, nullptr},        {L"---05", CDateTime::dt_gDay, nullptr},
        {L"--03-05", CDateTime::dt_gMonthDay, nullptr},
    };
    ExpectForms(&CDateTime::ParseXSDDate, forms);
}

TEST(DateTimeTest, EveryDateFormTakesAZone)
{
    const std::vector<SLexicalForm> forms = {
        {L"2001Z", CDateTime::dt_gYear, nullptr},
        {L"2001+05:00", CDateTime::dt_gYear, nullptr},
        {L"-2001-05:00", CDateTime::dt_gYear, nullptr},
        {L"2001-03Z", CDateTime::dt_gYearMonth, nullptr},
        {L"2001-03-13:59", CDateTime::dt_gYearMonth, nullptr},
        {L"2001-03-05Z", CDateTime::dt_date, nullptr},
        {L"2001-03-05+23:59", CDateTime::dt_date, nullptr},
        {L"2001-03-05-23:59", CDateTime::dt_date, nullptr},
        {L"--12Z", CDateTime::dt_gMonth, nullptr},
        {L"--12-08:00", CDateTime::dt_gMonth, nullptr},
        {L"---05Z", CDateTime::dt_gDay, nullptr},
        {L"---05+00:00", CDateTime::dt_gDay, nullptr},
        {L"--03-05Z", CDateTime::dt_gMonthDay, nullptr},
        {L"--03-05+01:00", CDateTime::dt_gMonthDay, nullptr},
    };
    ExpectForms(&CDateTime::ParseXSDDate, forms);
}

TEST(DateTimeTest, OldFormOfAMonthIsAcceptedWithAnyTwoCharacters)
{
    const std::vector<SLexicalForm> forms = {
        {L"--12--", CDateTime::dt_gMonth, L"--12"},
        {L"--12xy", CDateTime::dt_gMonth, L"--12"},
        {L"--12--Z", CDateTime::dt_gMonth, L"--12Z"},
        {L"--12--+01:00", CDateTime::dt_gMonth, L"--12+01:00"},
    };
    ExpectForms(&CDateTime::ParseXSDDate, forms);
}

TEST(DateTimeTest, LengthsCountUtf16Units)
{
    // A whole code point above 0xFFFF counts as its two units, like the pair itself.
    const std::wstring strWhole = L"--12\U0001F600";
    const std::wstring strPair = std::wstring(L"--12") + static_cast<wchar_t>(0xD83D) + static_cast<wchar_t>(0xDE00);
    EXPECT_TEXT(L"--12", Date(strPair.c_str()).ToString());
    EXPECT_TEXT(L"--12", Date(strWhole.c_str()).ToString());
}

TEST(DateTimeTest, FailuresOfTheDateParserSayWhy)
{
    const std::vector<SBadText> texts = {
        {nullptr, L"Invalid Date (Null String)"},
        {L"", L"Invalid Date (Empty String)"},
        {L"2001-01-01T12:00:00", L"Invalid Date ('T' not allowed)"},
        {L"T", L"Invalid Date ('T' not allowed)"},
        {L"2001-01-01+01:00Z", L"Invalid Date (Bad Zone value)"},
        {L"201", L"Invalid XSD Date [201] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"12001", L"Invalid XSD Date [12001] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"12001-01-01", L"Invalid XSD Date [12001-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"+2001", L"Invalid XSD Date [+2001] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001/01/01", L"Invalid XSD Date [2001/01/01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001-01/01", L"Invalid XSD Date [2001-01/01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001-1-001", L"Invalid XSD Date [2001-1-001] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001-0a", L"Invalid XSD Date [2001-0a] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001-01-0a", L"Invalid XSD Date [2001-01-0a] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"20o1-01-01", L"Invalid XSD Date [20o1-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"-", L"Invalid XSD Date [-] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--", L"Invalid XSD Date [--] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--1", L"Invalid XSD Date [--1] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--xx", L"Invalid XSD Date [--xx] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--x1--", L"Invalid XSD Date [--x1--] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"---x1", L"Invalid XSD Date [---x1] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--123", L"Invalid XSD Date [--123] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--03/05", L"Invalid XSD Date [--03/05] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--03-0x", L"Invalid XSD Date [--03-0x] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--x3-05", L"Invalid XSD Date [--x3-05] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"--03-055", L"Invalid XSD Date [--03-055] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"Z", L"Invalid XSD Date [Z] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L":", L"Invalid XSD Date [:] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"01:00", L"Invalid XSD Date [01:00] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"+01:00", L"Invalid XSD Date [+01:00] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"\x0662\x0660\x0660\x0661", L"Invalid XSD Date [\x0662\x0660\x0660\x0661] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
    };
    ExpectFailures(&CDateTime::ParseXSDDate, texts);
}

TEST(DateTimeTest, TextWithAColonButNoOffsetPassesWithoutAZone)
{
    const CDateTime dt = Date(L"2001-01-01 05:00");
    EXPECT_FALSE(dt.IsUTC());
    EXPECT_TEXT(L"2001-01-01", dt.ToString());
}

TEST(DateTimeTest, TimeFormsComeBackWithoutNeedlessDigits)
{
    const std::vector<SLexicalForm> forms = {
        {L"00:00:00", CDateTime::dt_time, nullptr},
        {L"23:59:59", CDateTime::dt_time, nullptr},
        {L"12:30:00.", CDateTime::dt_time, L"12:30:00"},
        {L"12:30:00.5", CDateTime::dt_time, nullptr},
        {L"12:30:00.05", CDateTime::dt_time, nullptr},
        {L"12:30:00.100", CDateTime::dt_time, L"12:30:00.1"},
        {L"12:30:00.1200", CDateTime::dt_time, L"12:30:00.12"},
        {L"12:30:00.000001", CDateTime::dt_time, nullptr},
        {L"12:30:00.000000001", CDateTime::dt_time, nullptr},
        {L"12:30:00.123456789", CDateTime::dt_time, nullptr},
        {L"12:30:00.123456780", CDateTime::dt_time, L"12:30:00.12345678"},
        {L"12:30:00.000000000", CDateTime::dt_time, L"12:30:00"},
        {L"12:30:00Z", CDateTime::dt_time, nullptr},
        {L"12:30:00.5Z", CDateTime::dt_time, nullptr},
        {L"12:30:00+01:30", CDateTime::dt_time, nullptr},
        {L"12:30:00.25-23:59", CDateTime::dt_time, nullptr},
    };
    ExpectForms(&CDateTime::ParseXSDTime, forms);
}

TEST(DateTimeTest, FractionIsReadInThreeGroups)
{
    const CDateTime dt = Time(L"12:30:00.1234567");
    EXPECT_EQ(123, dt.GetMilliSecond());
    EXPECT_EQ(456, dt.GetMicroSecond());
    EXPECT_EQ(700, dt.GetNanoSecond());
}

TEST(DateTimeTest, OffsetOf24HoursIsReadAsZero)
{
    const CDateTime dt = Time(L"12:30:00+24:00");
    EXPECT_TRUE(dt.HasTimeZone());
    EXPECT_EQ(0, dt.GetZoneHour());
    EXPECT_TEXT(L"12:30:00+00:00", dt.ToString());
    EXPECT_TEXT(L"12:30:00+00:59", Time(L"12:30:00-24:59").ToString());
}

TEST(DateTimeTest, OffsetKeepsItsSignOnlyInTheHour)
{
    EXPECT_TEXT(L"12:30:00+00:30", Time(L"12:30:00-00:30").ToString());
}

TEST(DateTimeTest, JunkBehindATimeIsIgnored)
{
    for (const wchar_t* lpctText : {L"12:00:00abc", L"12:00:00 ", L"12:00:00,5", L"12:00:00.abc", L"12:00:00z"})
    {
        const CDateTime dt = Time(lpctText);
        EXPECT_FALSE(dt.IsUTC());
        EXPECT_TEXT(L"12:00:00", dt.ToString());
    }
    EXPECT_TEXT(L"12:00:00Z", Time(L"12:00:00Zjunk").ToString());
}

TEST(DateTimeTest, FailuresOfTheTimeParserSayWhy)
{
    const std::vector<SBadText> texts = {
        {nullptr, L"Invalid Time (Null String)"},
        {L"", L"Invalid XSD Time (Empty String)"},
        {L"12:00", L"Invalid XSD Time [12:00] expected hh:mm:ss[.ff]"},
        {L"12:00:0", L"Invalid XSD Time [12:00:0] expected hh:mm:ss[.ff]"},
        {L"24:00:00", L"Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]"},
        {L"12:60:00", L"Invalid XSD Time [12:60:00] expected hh:mm:ss[.ff]"},
        {L"23:59:60", L"Invalid XSD Time [23:59:60] expected hh:mm:ss[.ff]"},
        {L"1a:00:00", L"Invalid XSD Time [1a:00:00] expected hh:mm:ss[.ff]"},
        {L"12-00:00", L"Invalid XSD Time [12-00:00] expected hh:mm:ss[.ff]"},
        {L"12:00-00", L"Invalid XSD Time [12:00-00] expected hh:mm:ss[.ff]"},
        {L"12:00:x0", L"Invalid XSD Time [12:00:x0] expected hh:mm:ss[.ff]"},
        {L"12:x0:00", L"Invalid XSD Time [12:x0:00] expected hh:mm:ss[.ff]"},
        {L"12:30:00.1234567891", L"Invalid XSD Time [12:30:00.1234567891] Fraction part too long"},
        {L"12:30:00+1:00", L"Invalid XSD Time Zone [+1:00]"},
        {L"12:30:00+01:000", L"Invalid XSD Time Zone [+01:000]"},
        {L"12:30:00-0100", L"Invalid XSD Time Zone [-0100]"},
        {L"12:30:00-01:0x", L"Invalid XSD Time Zone [-01:0x]"},
        {L"12:30:00-x1:00", L"Invalid XSD Time Zone [-x1:00]"},
        {L"12:30:00-01-00", L"Invalid XSD Time Zone [-01-00]"},
        {L"12:30:00+", L"Invalid XSD Time Zone [+]"},
        {L"12:30:00+25:00", L"Invalid TimeZone [25:0]"},
        {L"12:30:00-25:00", L"Invalid TimeZone [-25:0]"},
        {L"12:30:00+01:60", L"Invalid TimeZone [1:60]"},
    };
    ExpectFailures(&CDateTime::ParseXSDTime, texts);
}

TEST(DateTimeTest, DateTimeFormsComeBack)
{
    const std::vector<SLexicalForm> forms = {
        {L"2001-03-05T12:30:00", CDateTime::dt_dateTime, nullptr},
        {L"-0001-12-31T00:00:00Z", CDateTime::dt_dateTime, nullptr},
        {L"2001-03-05T12:30:00.000000001+14:00", CDateTime::dt_dateTime, nullptr},
        {L"2001-03-05T12:30:00.120-01:00", CDateTime::dt_dateTime, L"2001-03-05T12:30:00.12-01:00"},
        {L"2001-03-05T12:30:00abc", CDateTime::dt_dateTime, L"2001-03-05T12:30:00"},
    };
    ExpectForms(&CDateTime::ParseXSDDateTime, forms);
}

TEST(DateTimeTest, ZoneMayStandBehindTheDateToo)
{
    const std::vector<SLexicalForm> forms = {
        {L"2001-03-05ZT12:30:00", CDateTime::dt_dateTime, L"2001-03-05T12:30:00Z"},
        {L"2001-03-05+01:00T12:30:00", CDateTime::dt_dateTime, L"2001-03-05T12:30:00+01:00"},
        {L"2001-03-05+01:00T12:30:00Z", CDateTime::dt_dateTime, L"2001-03-05T12:30:00Z"},
    };
    ExpectForms(&CDateTime::ParseXSDDateTime, forms);
}

TEST(DateTimeTest, FailuresOfTheDateTimeParserSayWhy)
{
    const std::vector<SBadText> texts = {
        {nullptr, L"Invalid DateTime (Null String)"},
        {L"", L"Invalid XSD DateTime []"},
        {L"2001-01-01", L"Invalid XSD DateTime [2001-01-01]"},
        {L"2001-01-01t12:00:00", L"Invalid XSD DateTime [2001-01-01t12:00:00]"},
        {L"T12:00:00", L"Invalid Date (Empty String)"},
        {L"2001T12:00:00", L"Invalid XSD DateTime [2001T12:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {L"2001-01T12:00:00", L"Invalid XSD DateTime [2001-01T12:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {L"--01-01T12:00:00", L"Invalid XSD DateTime [--01-01T12:00:00] expected CCYY-MM-DDThh:mm:ss[.ff]"},
        {L"2001-1-1T12:00:00", L"Invalid XSD Date [2001-1-1] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
        {L"2001-01-01T", L"Invalid XSD Time (Empty String)"},
        {L"2001-01-01T24:00:00", L"Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]"},
        {L"2001-01-01TT12:00:00", L"Invalid XSD Time [T12:00:00] expected hh:mm:ss[.ff]"},
        {L"2001-02-29T12:00:00", L"Invalid Day [29] (1 <= day <= days in month"},
    };
    ExpectFailures(&CDateTime::ParseXSDDateTime, texts);
}

TEST(DateTimeTest, ConstructorFromTextPassesFailuresOn)
{
    ExpectThrows<CQvInvalidValueException>(L"Invalid XSD DateTime [x]", [] { CDateTime dt(L"x"); });
    EXPECT_TEXT(L"2001-03-05T12:30:00", CDateTime(L"2001-03-05T12:30:00").ToString());
}

TEST(DateTimeTest, ParsersForgetTheKindAndTheZoneOfTheObject)
{
    CDateTime dt = DateTime(L"2001-03-05T12:30:00.5+01:00");
    dt.ParseXSDDate(L"2002");
    EXPECT_EQ(CDateTime::dt_gYear, dt.GetType());
    EXPECT_TEXT(L"2002", dt.ToString());
    dt.ParseXSDTime(L"01:02:03");
    EXPECT_TEXT(L"01:02:03", dt.ToString());
    dt.ParseXSDDateTime(L"2003-04-05T06:07:08");
    EXPECT_TEXT(L"2003-04-05T06:07:08", dt.ToString());
}

TEST(DateTimeTest, FieldsAreCheckedAfterParsing)
{
    const std::vector<SBadText> texts = {
        {L"0000-01-01", L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {L"-0000", L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {L"2001-00-01", L"Invalid Month [0] (1 <= month <= 12)"},
        {L"2001-13-01", L"Invalid Month [13] (1 <= month <= 12)"},
        {L"--00", L"Invalid Month [0] (1 <= month <= 12)"},
        {L"--13", L"Invalid Month [13] (1 <= month <= 12)"},
        {L"--13-01", L"Invalid Month [13] (1 <= month <= 12)"},
        // The month is looked at ahead of the year.
        {L"0000-13", L"Invalid Month [13] (1 <= month <= 12)"},
        {L"2001-01-00", L"Invalid Day [0] (1 <= day <= days in month"},
        {L"2001-01-32", L"Invalid Day [32] (1 <= day <= days in month"},
        {L"2001-04-31", L"Invalid Day [31] (1 <= day <= days in month"},
        {L"--01-00", L"Invalid Day [0] (1 <= day <= days in month)"},
        {L"--02-30", L"Invalid Day [30] (1 <= day <= days in month)"},
        {L"--04-31", L"Invalid Day [31] (1 <= day <= days in month)"},
        {L"---00", L"Invalid Day [0] (1 <= day <= 31)"},
    };
    ExpectFailures(&CDateTime::ParseXSDDate, texts);
}

TEST(DateTimeTest, LeapDayNeedsALeapYear)
{
    for (const wchar_t* lpctText : {L"2000-02-29", L"2004-02-29", L"2400-02-29", L"-0004-02-29", L"-0400-02-29"})
        EXPECT_TEXT(lpctText, Date(lpctText).ToString());
    for (const wchar_t* lpctText : {L"2001-02-29", L"1900-02-29", L"2100-02-29", L"-0001-02-29", L"-0100-02-29"})
        ExpectThrows<CQvInvalidValueException>(L"Invalid Day [29] (1 <= day <= days in month", [&] { Date(lpctText); });
}

TEST(DateTimeTest, LeapDayWithoutAYearAlwaysPasses)
{
    EXPECT_TEXT(L"--02-29", Date(L"--02-29").ToString());
}

TEST(DateTimeTest, DayWithoutAMonthHasNoUpperBound)
{
    EXPECT_TEXT(L"---45", Date(L"---45").ToString());
    EXPECT_TEXT(L"---99", Date(L"---99").ToString());
    CDateTime dt;
    dt.SetGDay(255);
    EXPECT_TEXT(L"---255", dt.ToString());
}

TEST(DateTimeTest, FormatSIsTheLexicalFormAndOthersAreNot)
{
    const CDateTime dt = Date(L"2001-03-05");
    EXPECT_TEXT(L"2001-03-05", dt.ToString(L"s"));
    EXPECT_TEXT(L"", dt.ToString(nullptr));
    EXPECT_TEXT(L"", dt.ToString(L"G"));
    EXPECT_TEXT(L"Unknown Format: x", dt.ToString(L"x"));
    EXPECT_TEXT(L"Unknown Format: ", dt.ToString(L""));
    EXPECT_TEXT(L"Unknown Format: ss", dt.ToString(L"ss"));
    for (const wchar_t* lpctFormat : {static_cast<const wchar_t*>(nullptr), L"G", L"s", L"x"})
        ExpectThrows<CQvInvalidValueException>(L"Date Not Set", [&] { CDateTime().ToString(lpctFormat); });
}

TEST(DateTimeTest, NumbersBeyondTheirRangePrintInFull)
{
    CDateTime dt(CDateTime::dt_dateTime);
    dt.SetYear(-32768);
    dt.SetMonth(255);
    dt.SetDay(254);
    dt.SetHour(253);
    dt.SetMinute(252);
    dt.SetSecond(251);
    dt.SetMilliSecond(65535);
    dt.SetMicroSecond(65534);
    dt.SetNanoSecond(65533);
    dt.SetTimeZone(-23, 59);
    EXPECT_TEXT(L"-32768-255-254T253:252:251.655356553465533-23:59", dt.ToString());
}

TEST(DateTimeTest, PrintingAndParsingDoNotAllocateBeyondTheResult)
{
    CDateTime dt;
    std::wstring strText;
    EXPECT_EQ(0u, QvTest::CountAllocations([&] { dt.ParseXSDDateTime(L"2001-03-05T12:30:00.123456789+01:00"); }));
    EXPECT_EQ(0u, QvTest::CountAllocations([&] { dt.ParseXSDDate(L"--03-05-11:30"); }));
    EXPECT_EQ(0u, QvTest::CountAllocations([&] { dt.ParseXSDTime(L"12:30:00.5Z"); }));
    dt.ParseXSDDateTime(L"2001-03-05T12:30:00.123456789+01:00");
    EXPECT_EQ(1u, QvTest::CountAllocations([&] { strText = dt.ToString(); }));
}

// --- Setting a whole value ------------------------------------------------------------------------------------------

TEST(DateTimeTest, SettersGiveTheirKind)
{
    const struct
    {
        Setter set;
        CDateTime::DTType eType;
        const wchar_t* lpctText;
    } cases[] = {
        {[](CDateTime& dt) { dt.SetDateTime(2001, 3, 5, 12, 30, 15); }, CDateTime::dt_dateTime, L"2001-03-05T12:30:15"},
        {[](CDateTime& dt) { dt.SetDateTime(2001, 3, 5, 12, 30, 15, 1, 2, 3); }, CDateTime::dt_dateTime,
         L"2001-03-05T12:30:15.001002003"},
        {[](CDateTime& dt) { dt.SetDate(-1, 2, 28); }, CDateTime::dt_date, L"-0001-02-28"},
        {[](CDateTime& dt) { dt.SetTime(12, 30, 15); }, CDateTime::dt_time, L"12:30:15"},
        {[](CDateTime& dt) { dt.SetTime(12, 30, 15, 1, 2, 3); }, CDateTime::dt_time, L"12:30:15.001002003"},
        {[](CDateTime& dt) { dt.SetFracTime(1, 2, 3); }, CDateTime::dt_time, L"00:00:00.001002003"},
        {[](CDateTime& dt) { dt.SetGYear(2001); }, CDateTime::dt_gYear, L"2001"},
        {[](CDateTime& dt) { dt.SetGYearMonth(2001, 3); }, CDateTime::dt_gYearMonth, L"2001-03"},
        {[](CDateTime& dt) { dt.SetGMonth(3); }, CDateTime::dt_gMonth, L"--03"},
        {[](CDateTime& dt) { dt.SetGMonthDay(3, 5); }, CDateTime::dt_gMonthDay, L"--03-05"},
        {[](CDateTime& dt) { dt.SetGDay(5); }, CDateTime::dt_gDay, L"---05"},
    };
    for (const auto& c : cases)
    {
        CDateTime dt;
        c.set(dt);
        EXPECT_EQ(c.eType, dt.GetType());
        EXPECT_TEXT(c.lpctText, dt.ToString());
    }
}

TEST(DateTimeTest, SettersRefuseAnObjectOfAnotherKind)
{
    const struct
    {
        Setter set;
        CDateTime::DTType eType;
        const wchar_t* lpctName;
    } cases[] = {
        {[](CDateTime& dt) { dt.SetDateTime(2001, 3, 5, 12, 30, 15); }, CDateTime::dt_dateTime, L"dateTime"},
        {[](CDateTime& dt) { dt.SetDate(2001, 3, 5); }, CDateTime::dt_date, L"date"},
        {[](CDateTime& dt) { dt.SetGYearMonth(2001, 3); }, CDateTime::dt_gYearMonth, L"gYearMonth"},
        {[](CDateTime& dt) { dt.SetGYear(2001); }, CDateTime::dt_gYear, L"gYear"},
        {[](CDateTime& dt) { dt.SetTime(12, 30, 15); }, CDateTime::dt_time, L"time"},
        {[](CDateTime& dt) { dt.SetFracTime(1, 2, 3); }, CDateTime::dt_time, L"time"},
        {[](CDateTime& dt) { dt.SetGDay(5); }, CDateTime::dt_gDay, L"gDay"},
        {[](CDateTime& dt) { dt.SetGMonth(3); }, CDateTime::dt_gMonth, L"gMonth"},
        {[](CDateTime& dt) { dt.SetGMonthDay(3, 5); }, CDateTime::dt_gMonthDay, L"gMonthDay"},
        {[](CDateTime& dt) { dt = 0LL; }, CDateTime::dt_dateTime, L"dateTime"},
    };
    for (const auto& c : cases)
    {
        for (CDateTime dt : OneOfEachKind())
        {
            if (dt.GetType() == CDateTime::dt_yearZero || dt.GetType() == c.eType)
                EXPECT_NO_THROW(c.set(dt));
            else
                ExpectThrows<CQvInvalidStateException>(std::wstring(L"Failed to copy CDateTime. Invalid Date Type: ") +
                                                           c.lpctName + L", expected: " + dt.GetTypeAsString() + L".",
                                                       [&] { c.set(dt); });
        }
    }
}

TEST(DateTimeTest, SettersDropTheZone)
{
    CDateTime dt = Date(L"2001-03-05+01:00");
    dt.SetDate(2002, 4, 6);
    EXPECT_FALSE(dt.IsUTC());
    EXPECT_TEXT(L"2002-04-06", dt.ToString());
}

TEST(DateTimeTest, SettersCheckTheirRanges)
{
    const struct
    {
        Setter set;
        const wchar_t* lpctMessage;
    } cases[] = {
        {[](CDateTime& dt) { dt.SetDate(0, 1, 1); }, L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {[](CDateTime& dt) { dt.SetDate(10000, 1, 1); }, L"Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)"},
        {[](CDateTime& dt) { dt.SetGYear(-10000); }, L"Invalid Year [-10000] (-9999 <= year <= 9999 && year != 0)"},
        {[](CDateTime& dt) { dt.SetGMonth(255); }, L"Invalid Month [255] (1 <= month <= 12)"},
        {[](CDateTime& dt) { dt.SetGMonthDay(2, 30); }, L"Invalid Day [30] (1 <= day <= days in month)"},
        {[](CDateTime& dt) { dt.SetGDay(0); }, L"Invalid Day [0] (1 <= day <= 31)"},
        {[](CDateTime& dt) { dt.SetDate(2001, 2, 29); }, L"Invalid Day [29] (1 <= day <= days in month"},
        {[](CDateTime& dt) { dt.SetTime(24, 0, 0); }, L"Invalid Hour [24] (0 <= hour <= 23)"},
        {[](CDateTime& dt) { dt.SetTime(0, 60, 0); }, L"Invalid Minute [60] (0 <= minute <= 59)"},
        {[](CDateTime& dt) { dt.SetTime(0, 0, 60); }, L"Invalid Second [60] (0 <= second <= 59)"},
        {[](CDateTime& dt) { dt.SetFracTime(1000, 0, 0); }, L"Invalid Milli-Second [1000] (0 <= milli <= 999)"},
        {[](CDateTime& dt) { dt.SetFracTime(0, 1000, 0); }, L"Invalid Micro-Second [1000] (0 <= micro <= 999)"},
        {[](CDateTime& dt) { dt.SetFracTime(0, 0, 65535); }, L"Invalid Nano-Second [65535] (0 <= nano <= 999)"},
        // In this order: month, year, day, time.
        {[](CDateTime& dt) { dt.SetDateTime(0, 13, 32, 24, 60, 60); }, L"Invalid Month [13] (1 <= month <= 12)"},
        {[](CDateTime& dt) { dt.SetDateTime(0, 12, 32, 24, 60, 60); },
         L"Invalid Year [0] (-9999 <= year <= 9999 && year != 0)"},
        {[](CDateTime& dt) { dt.SetDateTime(1, 12, 32, 24, 60, 60); }, L"Invalid Day [32] (1 <= day <= days in month"},
        {[](CDateTime& dt) { dt.SetDateTime(1, 12, 31, 24, 60, 60); }, L"Invalid Hour [24] (0 <= hour <= 23)"},
        {[](CDateTime& dt) { dt.SetDateTime(1, 12, 31, 23, 60, 60); }, L"Invalid Minute [60] (0 <= minute <= 59)"},
    };
    for (const auto& c : cases)
    {
        CDateTime dt;
        ExpectThrows<CQvInvalidValueException>(c.lpctMessage, [&] { c.set(dt); });
    }
}

TEST(DateTimeTest, ConstructorsFromNumbersGiveTheEmptyObjectForABadValue)
{
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(2001, 13, 1).GetType());
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(2001, 2, 29, 0, 0, 0).GetType());
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(2001, 1, 1, 0, 0, 0, 0, 0, 1000).GetType());
    ExpectThrows<CQvInvalidValueException>(L"Date Not Set", [] { CDateTime(2001, 13, 1).ToString(); });

    EXPECT_TEXT(L"2001-12-01", CDateTime(2001, 12, 1).ToString());
    EXPECT_TEXT(L"2001-12-01T01:02:03", CDateTime(2001, 12, 1, 1, 2, 3).ToString());
    EXPECT_TEXT(L"2001-12-01T01:02:03.000000999", CDateTime(2001, 12, 1, 1, 2, 3, 0, 0, 999).ToString());
}

TEST(DateTimeTest, TakesSecondsSince1970AsUtc)
{
    const struct
    {
        __int64 nTime;
        const wchar_t* lpctText;
    } cases[] = {
        {0, L"1970-01-01T00:00:00"},  {951782400, L"2000-02-29T00:00:00"},    {983795415, L"2001-03-05T12:30:15"},
        {-1, L"1969-12-31T23:59:59"}, {253402300799, L"9999-12-31T23:59:59"}, {-62135596800, L"0001-01-01T00:00:00"},
    };
    for (const auto& c : cases)
    {
        CDateTime assigned;
        assigned = c.nTime;
        EXPECT_TEXT(c.lpctText, assigned.ToString());
        EXPECT_TEXT(c.lpctText, CDateTime(c.nTime).ToString());
        EXPECT_FALSE(assigned.IsUTC());
    }
}

TEST(DateTimeTest, TimesBeyondTheYearsGiveTheEmptyObjectOrFail)
{
    CDateTime dt;
    ExpectThrows<CQvInvalidValueException>(L"Invalid Year [10000] (-9999 <= year <= 9999 && year != 0)",
                                           [&] { dt = 253402300800LL; });
    // Two thousand years beyond what the 16 bits of the field hold must not come back as the year 2000.
    ExpectThrows<CQvInvalidValueException>(L"Invalid Year [32767] (-9999 <= year <= 9999 && year != 0)",
                                           [] { CDateTime() = 2068000000000LL; });
    ExpectThrows<CQvInvalidValueException>(L"Failed to convert the time to a date", [] { CDateTime() = INT64_MAX; });
    ExpectThrows<CQvInvalidValueException>(L"Failed to convert the time to a date", [] { CDateTime() = INT64_MIN; });
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(253402300800LL).GetType());
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(static_cast<__int64>(INT64_MAX)).GetType());
}

TEST(DateTimeTest, TakesASystemTimeToTheMillisecond)
{
    _SYSTEMTIME time = {};
    time.wYear = 2001;
    time.wMonth = 3;
    time.wDay = 5;
    time.wHour = 12;
    time.wMinute = 30;
    time.wSecond = 15;
    time.wMilliseconds = 678;
    CDateTime dt;
    dt = time;
    EXPECT_TEXT(L"2001-03-05T12:30:15.678", dt.ToString());
    EXPECT_TEXT(L"2001-03-05T12:30:15.678", CDateTime(time).ToString());

    // What 8 bits cannot hold must not come back as a month.
    time.wMonth = 256 + 3;
    ExpectThrows<CQvInvalidValueException>(L"Invalid Month [255] (1 <= month <= 12)", [&] { CDateTime() = time; });
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(time).GetType());
}

TEST(DateTimeTest, TakesAFileTimeAsUtc)
{
    const struct
    {
        std::uint64_t nTicks;
        const wchar_t* lpctText;
    } cases[] = {
        {0, L"1601-01-01T00:00:00"},
        {116444736000000000, L"1970-01-01T00:00:00"},
        {126282690156780000, L"2001-03-05T12:30:15.678"},
        {126282690156789999, L"2001-03-05T12:30:15.678"},
    };
    for (const auto& c : cases)
    {
        _FILETIME time = {};
        time.dwLowDateTime = static_cast<unsigned int>(c.nTicks);
        time.dwHighDateTime = static_cast<unsigned int>(c.nTicks >> 32);
        CDateTime dt;
        dt = time;
        EXPECT_TEXT(c.lpctText, dt.ToString());
        EXPECT_TEXT(c.lpctText, CDateTime(time).ToString());
    }
}

TEST(DateTimeTest, FileTimesThatAreNoTimesFail)
{
    _FILETIME time = {};
    time.dwHighDateTime = 0x80000000;
    CDateTime dt;
    ExpectThrows<CQvInvalidValueException>(L"Failed to convert FILETIME to SYSTEMTIME", [&] { dt = time; });
    EXPECT_EQ(CDateTime::dt_yearZero, CDateTime(time).GetType());
    time.dwHighDateTime = 0x7FFFFFFF;
    ExpectThrows<CQvInvalidValueException>(L"Invalid Year [30828] (-9999 <= year <= 9999 && year != 0)",
                                           [&] { dt = time; });
}

TEST(DateTimeTest, ConvertsToTheKindsThatTheFieldsSufficeFor)
{
    // From (row) to (column) by number of the kind.
    const bool allowed[9][9] = {
        {true, false, false, false, false, false, false, false, false},
        {true, true, true, true, true, true, true, true, true},
        {true, false, true, true, true, false, true, true, true},
        {true, false, false, true, true, false, false, true, false},
        {true, false, false, false, true, false, false, false, false},
        {true, false, false, false, false, true, false, false, false},
        {true, false, false, false, false, false, true, false, false},
        {true, false, false, false, false, false, false, true, false},
        {true, false, false, false, false, false, true, true, true},
    };
    const std::vector<CDateTime> sources = OneOfEachKind();
    for (std::size_t nFrom = 0; nFrom < 9; ++nFrom)
    {
        for (std::size_t nTo = 0; nTo < 9; ++nTo)
        {
            SCOPED_TRACE(::testing::Message() << "from " << nFrom << " to " << nTo);
            const auto eTarget = static_cast<CDateTime::DTType>(nTo);
            CDateTime dt;
            if (allowed[nFrom][nTo])
            {
                dt.SetDateTime(sources[nFrom], eTarget);
                EXPECT_EQ(eTarget, dt.GetType());
            }
            else
            {
                ExpectThrows<CQvInvalidValueException>(
                    L"Attempting to set a CDateTime of type " + CDateTime(eTarget).GetTypeAsString() +
                        L" using an XmlDateTime of type " + sources[nFrom].GetTypeAsString() +
                        L". The source CDateTime does not contian enough data to allow the conversion.",
                    [&] { dt.SetDateTime(sources[nFrom], eTarget); });
            }
        }
    }
}

TEST(DateTimeTest, ConversionCopiesAlsoWhatTheTargetDoesNotUse)
{
    CDateTime dt = Time(L"01:02:03");
    dt.SetDateTime(DateTime(L"2001-03-05T12:30:15.5+01:00"), CDateTime::dt_gMonth);
    EXPECT_TEXT(L"--03+01:00", dt.ToString());
    EXPECT_TRUE(dt.HasTimeZone());
    dt.SetDateTime(dt, CDateTime::dt_yearZero);
    EXPECT_EQ(CDateTime::dt_yearZero, dt.GetType());
    ExpectThrows<CQvInvalidValueException>(L"Date Not Set", [&] { dt.ToString(); });
}

TEST(DateTimeTest, ConversionDoesNotCheckRanges)
{
    CDateTime source = Date(L"2001-03-05");
    source.SetMonth(13);
    CDateTime dt;
    dt.SetDateTime(source, CDateTime::dt_gMonth);
    EXPECT_TEXT(L"--13", dt.ToString());
}

TEST(DateTimeTest, KindsOutsideTheTableAreRefused)
{
    const auto eUnknown = static_cast<CDateTime::DTType>(9);
    const auto eNegative = static_cast<CDateTime::DTType>(-1);
    CDateTime dt;
    ExpectThrows<CQvInvalidValueException>(L"Unknown date type 9.",
                                           [&] { dt.SetDateTime(CDateTime(CDateTime::dt_dateTime), eUnknown); });
    ExpectThrows<CQvInvalidValueException>(L"Unknown date type 9.",
                                           [&] { dt.SetDateTime(CDateTime(eUnknown), CDateTime::dt_date); });
    ExpectThrows<CQvInvalidValueException>(L"Unknown date type -1.",
                                           [&] { dt.SetDateTime(CDateTime(eNegative), CDateTime::dt_date); });
    ExpectThrows<CQvInvalidStateException>(L"Failed to GetYear. Invalid Date Type: unknown.",
                                           [&] { CDateTime(eUnknown).GetYear(); });
}

// --- Fields ---------------------------------------------------------------------------------------------------------

TEST(DateTimeTest, FieldsExistForTheirKindsOnly)
{
    const struct
    {
        const wchar_t* lpctName;
        std::vector<int> kinds;
        Setter get;
        Setter set;
    } fields[] = {
        {L"GetYear",
         {1, 2, 3, 4},
         [](CDateTime& dt) { dt.GetYear(); },
         [](CDateTime& dt)
         {
             dt.SetYear(7);
         }},
        {L"GetMonth",
         {1, 2, 3, 7, 8},
         [](CDateTime& dt) { dt.GetMonth(); },
         [](CDateTime& dt)
         {
             dt.SetMonth(7);
         }},
        {L"GetDay",
         {1, 2, 6, 8},
         [](CDateTime& dt) { dt.GetDay(); },
         [](CDateTime& dt)
         {
             dt.SetDay(7);
         }},
        {L"GetHour",
         {1, 5},
         [](CDateTime& dt) { dt.GetHour(); },
         [](CDateTime& dt)
         {
             dt.SetHour(7);
         }},
        {L"GetMinute",
         {1, 5},
         [](CDateTime& dt) { dt.GetMinute(); },
         [](CDateTime& dt)
         {
             dt.SetMinute(7);
         }},
        {L"GetSecond",
         {1, 5},
         [](CDateTime& dt) { dt.GetSecond(); },
         [](CDateTime& dt)
         {
             dt.SetSecond(7);
         }},
        {L"GetMilliSecond",
         {1, 5},
         [](CDateTime& dt) { dt.GetMilliSecond(); },
         [](CDateTime& dt)
         {
             dt.SetMilliSecond(7);
         }},
        {L"GetMicroSecond",
         {1, 5},
         [](CDateTime& dt) { dt.GetMicroSecond(); },
         [](CDateTime& dt)
         {
             dt.SetMicroSecond(7);
         }},
        {L"GetNanoSecond",
         {1, 5},
         [](CDateTime& dt) { dt.GetNanoSecond(); },
         [](CDateTime& dt)
         {
             dt.SetNanoSecond(7);
         }},
        {L"GetRealSecond", {1, 5}, [](CDateTime& dt) { dt.GetRealSecond(); }, nullptr},
        {L"GetDayOfWeek", {1, 2}, [](CDateTime& dt) { dt.GetDayOfWeek(); }, nullptr},
        {L"GetDayOfYear", {1, 2}, [](CDateTime& dt) { dt.GetDayOfYear(); }, nullptr},
    };
    for (const auto& field : fields)
    {
        for (CDateTime dt : OneOfEachKind())
        {
            const bool bHasField = std::count(field.kinds.begin(), field.kinds.end(), dt.GetType()) != 0;
            for (const Setter& access : {field.get, field.set})
            {
                if (!access)
                    continue;
                if (bHasField)
                    EXPECT_NO_THROW(access(dt));
                else
                    ExpectThrows<CQvInvalidStateException>(std::wstring(L"Failed to ") + field.lpctName +
                                                               L". Invalid Date Type: " + dt.GetTypeAsString() + L".",
                                                           [&] { access(dt); });
            }
        }
    }
}

TEST(DateTimeTest, FieldsComeBackAsSetWithoutACheck)
{
    CDateTime dt(CDateTime::dt_dateTime);
    dt.SetYear(-32768);
    dt.SetMonth(0);
    dt.SetDay(255);
    dt.SetHour(99);
    dt.SetMinute(98);
    dt.SetSecond(97);
    dt.SetMilliSecond(65535);
    dt.SetMicroSecond(65534);
    dt.SetNanoSecond(65533);
    EXPECT_EQ(-32768, dt.GetYear());
    EXPECT_EQ(0, dt.GetMonth());
    EXPECT_EQ(255, dt.GetDay());
    EXPECT_EQ(99, dt.GetHour());
    EXPECT_EQ(98, dt.GetMinute());
    EXPECT_EQ(97, dt.GetSecond());
    EXPECT_EQ(65535, dt.GetMilliSecond());
    EXPECT_EQ(65534, dt.GetMicroSecond());
    EXPECT_EQ(65533, dt.GetNanoSecond());
}

TEST(DateTimeTest, RealSecondAddsTheFraction)
{
    EXPECT_DOUBLE_EQ(15.123456789, Time(L"12:30:15.123456789").GetRealSecond());
    EXPECT_DOUBLE_EQ(0.0, Time(L"12:30:00").GetRealSecond());
}

// --- Zone -----------------------------------------------------------------------------------------------------------

TEST(DateTimeTest, IsUtcHoldsForEveryZoneAndHasTimeZoneForOffsetsOnly)
{
    EXPECT_FALSE(Time(L"12:00:00").IsUTC());
    EXPECT_FALSE(Time(L"12:00:00").HasTimeZone());
    EXPECT_TRUE(Time(L"12:00:00Z").IsUTC());
    EXPECT_FALSE(Time(L"12:00:00Z").HasTimeZone());
    EXPECT_TRUE(Time(L"12:00:00+01:00").IsUTC());
    EXPECT_TRUE(Time(L"12:00:00+01:00").HasTimeZone());
}

TEST(DateTimeTest, SetUtcReplacesAnOffset)
{
    CDateTime dt = Time(L"12:00:00-05:30");
    EXPECT_EQ(-5, dt.GetZoneHour());
    EXPECT_EQ(30, dt.GetZoneMinute());
    dt.SetUTC();
    EXPECT_TEXT(L"12:00:00Z", dt.ToString());
    dt.SetTimeZone(0, 0);
    EXPECT_EQ(0, dt.GetZoneHour());
    EXPECT_EQ(0, dt.GetZoneMinute());
    EXPECT_TEXT(L"12:00:00+00:00", dt.ToString());
}

TEST(DateTimeTest, ZoneFieldsExistForOffsetsOnly)
{
    for (const CDateTime& dt : {Time(L"12:00:00"), Time(L"12:00:00Z")})
    {
        ExpectThrows<CQvInvalidStateException>(L"TimeZone is not been used", [&] { dt.GetZoneHour(); });
        ExpectThrows<CQvInvalidStateException>(L"TimeZone is not been used", [&] { dt.GetZoneMinute(); });
    }
}

TEST(DateTimeTest, OffsetsAreCheckedAndABadOneChangesNothing)
{
    CDateTime dt = Time(L"12:00:00Z");
    dt.SetTimeZone(23, 59);
    dt.SetTimeZone(-23, 59);
    ExpectThrows<CQvInvalidValueException>(L"Invalid TimeZone [24:0]", [&] { dt.SetTimeZone(24, 0); });
    ExpectThrows<CQvInvalidValueException>(L"Invalid TimeZone [-24:1]", [&] { dt.SetTimeZone(-24, 1); });
    ExpectThrows<CQvInvalidValueException>(L"Invalid TimeZone [0:60]", [&] { dt.SetTimeZone(0, 60); });
    EXPECT_TEXT(L"12:00:00-23:59", dt.ToString());
}

TEST(DateTimeTest, NormalizedValueIsTheSameMomentAtOffsetZero)
{
    const struct
    {
        const wchar_t* lpctText;
        const wchar_t* lpctNormalized;
    } cases[] = {
        {L"2001-03-05T12:30:00+01:30", L"2001-03-05T11:00:00+00:00"},
        {L"2001-03-05T12:30:00-01:30", L"2001-03-05T14:00:00+00:00"},
        {L"2001-03-01T00:30:00+01:00", L"2001-02-28T23:30:00+00:00"},
        {L"2000-03-01T00:30:00+01:00", L"2000-02-29T23:30:00+00:00"},
        {L"2001-12-31T23:30:00-01:00", L"2002-01-01T00:30:00+00:00"},
        {L"2001-01-01T00:00:00+00:01", L"2000-12-31T23:59:00+00:00"},
        {L"2001-03-05T12:30:00Z", L"2001-03-05T12:30:00Z"},
        {L"2001-03-05T12:30:00", L"2001-03-05T12:30:00"},
    };
    for (const auto& c : cases)
        EXPECT_TEXT(c.lpctNormalized, DateTime(c.lpctText).GetNormalized().ToString());
    EXPECT_TEXT(L"23:30:00+00:00", Time(L"00:30:00+01:00").GetNormalized().ToString());
    EXPECT_TEXT(L"2001-03-04+00:00", Date(L"2001-03-05+01:00").GetNormalized().ToString());
}

// --- Conversion -----------------------------------------------------------------------------------------------------

TEST(DateTimeTest, OnlyDatesHaveATimeInSeconds)
{
    for (const CDateTime& dt : OneOfEachKind())
    {
        if (dt.GetType() == CDateTime::dt_dateTime || dt.GetType() == CDateTime::dt_date)
            EXPECT_EQ(dt.GetType() == CDateTime::dt_date ? 983750400LL : 983795415LL, dt.GetTime());
        else
            ExpectThrows<CQvInvalidValueException>(
                L"Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: " + dt.GetTypeAsString() +
                    L".",
                [&] { dt.GetTime(); });
    }
}

TEST(DateTimeTest, SecondsSince1970ComeBack)
{
    for (const __int64 nTime : {86400LL, 951782400LL, 983795415LL, 1700000000LL})
        EXPECT_EQ(nTime, CDateTime(nTime).GetTime());
}

TEST(DateTimeTest, OnlyADateTimeHasASystemTime)
{
    for (const CDateTime& dt : OneOfEachKind())
    {
        if (dt.GetType() != CDateTime::dt_dateTime)
            ExpectThrows<CQvInvalidValueException>(
                L"Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: " + dt.GetTypeAsString() +
                    L".",
                [&] { dt.GetAsSystemTime(); });
    }
}

TEST(DateTimeTest, LeapDayCountsAheadOfItselfInTheDayOfTheYear)
{
    const struct
    {
        const wchar_t* lpctText;
        int nDay;
    } cases[] = {
        {L"2000-01-01", 2},  {L"2000-02-29", 61}, {L"2000-03-01", 60},  {L"2000-12-31", 365}, {L"2001-01-01", 1},
        {L"2001-02-28", 59}, {L"2001-03-01", 60}, {L"2001-12-31", 365}, {L"1900-01-01", 1},   {L"-0004-01-01", 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.nDay, Date(c.lpctText).GetDayOfYear()) << QvTest::Show(c.lpctText);
    EXPECT_EQ(60, DateTime(L"2000-03-01T23:00:00").GetDayOfYear());
}

TEST(DateTimeTest, DayOfTheYearStaysInsideItsTable)
{
    CDateTime dt = Date(L"2001-03-05");
    dt.SetMonth(13);
    EXPECT_EQ(370, dt.GetDayOfYear());
    dt.SetMonth(255);
    EXPECT_EQ(370, dt.GetDayOfYear());
    dt.SetMonth(0);
    EXPECT_EQ(5, dt.GetDayOfYear());
}
