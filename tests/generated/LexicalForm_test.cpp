#include "quiver/generated/LexicalForm.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

using Type = CSimpleType;

std::string Shown(const std::wstring& strText)
{
    return ::testing::PrintToString(strText);
}

SDateFields Date(Type::EForm eForm, const wchar_t* lpctText)
{
    SDateFields fields;
    EXPECT_TRUE(HasForm(eForm, lpctText)) << Shown(lpctText);
    EXPECT_TRUE(ReadDateFields(eForm, lpctText, fields)) << Shown(lpctText);
    return fields;
}

SDurationFields Duration(const wchar_t* lpctText)
{
    SDurationFields fields;
    EXPECT_TRUE(HasForm(Type::Form_Duration, lpctText)) << Shown(lpctText);
    EXPECT_TRUE(ReadDurationFields(lpctText, fields)) << Shown(lpctText);
    return fields;
}

ValueOrder Reverse(ValueOrder eOrder)
{
    return eOrder == ValueOrder::Below ? ValueOrder::Above : eOrder == ValueOrder::Above ? ValueOrder::Below : eOrder;
}

} // namespace

TEST(LexicalForm, KnowsTheFormOfEachType)
{
    const struct
    {
        Type::EForm eForm;
        std::vector<const wchar_t*> right;
        std::vector<const wchar_t*> wrong;
    } cases[] = {
        {Type::Form_Text, {L"", L" ", L"a\tb"}, {}},
        {Type::Form_Boolean, {L"true", L"false", L"1", L"0"}, {L"", L"TRUE", L"True", L"2", L"01", L"yes", L" true"}},
        {Type::Form_Integer,
         {L"0", L"-0", L"+0", L"007", L"-99999999999999999999999"},
         {L"", L"-", L"+", L"1.0", L"1.", L"1e5", L"--1", L"+-1", L"1 1", L"0x1", L"\u0663"}},
        {Type::Form_Decimal,
         {L"0", L"1.", L".1", L"+.5", L"-00012.5000", L"-0.0"},
         {L"", L".", L"-", L"-.", L"1e5", L"1,5", L"1.2.3", L"INF", L"NaN", L" 1"}},
        {Type::Form_Float,
         {L"0", L"1.", L".1", L"1e5", L"1E+5", L"-1.5e-007", L"INF", L"-INF", L"NaN", L"1e400"},
         {L"", L".", L"1e", L"1e+", L"e5", L"1e5.0", L"+INF", L"inf", L"nan", L"-NaN", L"Infinity", L"0x1p3", L"1f"}},
        {Type::Form_DateTime,
         {L"2001-01-01T00:00:00", L"-0001-12-31T24:00:00", L"2001-01-01T12:00:00.123456789012+14:00",
          L"12001-01-01T00:00:00Z"},
         {L"", L"2001-01-01", L"2001-01-01 00:00:00", L"2001-01-01t00:00:00", L"T00:00:00", L"2001-01-01T",
          L"2001-01-01T00:00", L"2001-01-01T00:00:00.", L"2001-01-01T1:00:00", L"2001-01-01T00:00:00 Z"}},
        {Type::Form_Date,
         {L"2001-01-01", L"-2001-01-01", L"0001-01-01Z", L"2001-01-01-05:00", L"10000-01-01"},
         {L"", L"+2001-01-01", L"201-01-01", L"2001-1-01", L"2001-01-1", L"02001-01-01", L"2001/01/01", L"20010101",
          L"2001-01-01z", L"2001-01-01+1:00", L"2001-01-01+0100", L"2001-01-01Z+01:00", L"2001-01", L"--2001-01-01"}},
        {Type::Form_Time,
         {L"00:00:00", L"24:00:00", L"12:00:00.5Z", L"12:00:00-14:00"},
         {L"", L"12:00", L"1:00:00", L"12:00:00.", L"-12:00:00", L"12:00:00+14", L"120000"}},
        {Type::Form_YearMonth, {L"2001-01", L"-0001-12Z"}, {L"", L"2001", L"2001-1", L"2001-01-01", L"02001-01"}},
        {Type::Form_Year, {L"2001", L"-2001", L"12001", L"2001+14:00"}, {L"", L"201", L"+2001", L"02001", L"2001-05"}},
        {Type::Form_MonthDay, {L"--02-29", L"--12-31Z"}, {L"", L"--1-1", L"-01-01", L"--0101", L"01-01"}},
        {Type::Form_Day, {L"---01", L"---31-05:00"}, {L"", L"---1", L"--31", L"31", L"---311"}},
        {Type::Form_Month, {L"--01", L"--12Z"}, {L"", L"--1", L"-01", L"01", L"--01--"}},
        {Type::Form_Duration,
         {L"P1Y", L"-P1Y2M3DT4H5M6.7S", L"PT0S", L"P1YT1S", L"PT36H", L"P00001M"},
         {L"",    L"P",     L"-P",    L"PT",    L"P1YT",   L"+P1Y",   L"P-1Y",      L"1Y",    L"p1y",
          L"P1S", L"P1H",   L"P1M1Y", L"P1Y1Y", L"PT1S1M", L"PT1.5H", L"P1.5Y",     L"PT1.S", L"PT.5S",
          L"P1",  L"P1YT1", L"11Y",   L"-11Y",  L"PP1Y",   L"P1W",    L"P1YT1HT1M", L"P1TH"}},
        {Type::Form_HexBinary, {L"", L"00", L"0fA9"}, {L"0", L"0g", L"0 0", L"000"}},
        {Type::Form_Base64Binary,
         {L"", L"AAAA", L"AAA=", L"AA==", L"A A A A", L"AA= =", L"+/+/", L"AAE=", L"AQ=="},
         {L"A", L"AA", L"AAA", L"AA=", L"A===", L"====", L"=", L"AB==", L"AAB=", L"AA=A", L"AA==AAAA", L"A-_A",
          L"AAAA="}},
        {Type::Form_Name,
         {L"a", L"_a", L":a", L"a:b", L"::", L"a-b.c\u00B7", L"\u00E9", L"a\u2040", L"\U00010000", L"\xD800\xDC00"},
         {L"", L"1a", L"-a", L".a", L"a b", L"\u0300a", L"a\u2041", L"\u00D7", L"\xD800", L"\xDC00"}},
        {Type::Form_NCName,
         {L"a", L"_1", L"\xD800\xDC00", L"\xDB7F\xDFFF"},
         {L"", L":a", L"a:b", L"a:", L"1a", L"\xDB80\xDC00", L"a\xD800", L"\xDC00"}},
        {Type::Form_NmToken, {L"a", L"1a", L"-", L".", L":", L"\u0300a"}, {L"", L"a b", L"a,b"}},
        {Type::Form_Language,
         {L"en", L"EN-us", L"x-klingon", L"abcdefgh", L"en-12345678"},
         {L"", L"abcdefghi", L"en-", L"-en", L"en--us", L"e1", L"en_US", L"en-123456789", L"\u00E4"}},
        {Type::Form_QName, {L"a", L"a:b", L"_:_"}, {L"", L":a", L"a:", L"a:b:c", L"1:a", L"a:1", L":"}}};
    for (const auto& c : cases)
    {
        for (const wchar_t* lpctText : c.right)
            EXPECT_TRUE(HasForm(c.eForm, lpctText)) << "form " << int(c.eForm) << " of " << Shown(lpctText);
        for (const wchar_t* lpctText : c.wrong)
            EXPECT_FALSE(HasForm(c.eForm, lpctText)) << "form " << int(c.eForm) << " of " << Shown(lpctText);
    }
}

TEST(LexicalForm, RefusesDatesThatDoNotExist)
{
    const struct
    {
        Type::EForm eForm;
        const wchar_t* lpctText;
        bool bExists;
    } cases[] = {{Type::Form_Date, L"2000-02-29", true},
                 {Type::Form_Date, L"1900-02-29", false},
                 {Type::Form_Date, L"2004-02-29", true},
                 {Type::Form_Date, L"2001-02-29", false},
                 {Type::Form_Date, L"-0004-02-29", true},
                 {Type::Form_Date, L"-0001-02-29", false},
                 {Type::Form_Date, L"0000-01-01", false},
                 {Type::Form_Date, L"-0000-01-01", false},
                 {Type::Form_Date, L"9999999999-12-31", true},
                 {Type::Form_Date, L"99999999999-12-31", false},
                 {Type::Form_Date, L"2001-00-01", false},
                 {Type::Form_Date, L"2001-13-01", false},
                 {Type::Form_Date, L"2001-01-00", false},
                 {Type::Form_Date, L"2001-01-32", false},
                 {Type::Form_Date, L"2001-04-31", false},
                 {Type::Form_Date, L"2001-01-01+14:00", true},
                 {Type::Form_Date, L"2001-01-01-14:00", true},
                 {Type::Form_Date, L"2001-01-01+14:01", false},
                 {Type::Form_Date, L"2001-01-01-13:60", false},
                 {Type::Form_Time, L"23:59:59", true},
                 {Type::Form_Time, L"24:00:00.000", true},
                 {Type::Form_Time, L"24:00:01", false},
                 {Type::Form_Time, L"24:00:00.1", false},
                 {Type::Form_Time, L"25:00:00", false},
                 {Type::Form_Time, L"23:60:00", false},
                 {Type::Form_Time, L"23:59:60", false},
                 {Type::Form_YearMonth, L"2001-13", false},
                 {Type::Form_Year, L"0000", false},
                 {Type::Form_MonthDay, L"--02-29", true},
                 {Type::Form_MonthDay, L"--02-30", false},
                 {Type::Form_MonthDay, L"--04-31", false},
                 {Type::Form_Day, L"---31", true},
                 {Type::Form_Day, L"---32", false},
                 {Type::Form_Day, L"---00", false},
                 {Type::Form_Month, L"--00", false},
                 {Type::Form_Month, L"--13", false}};
    for (const auto& c : cases)
    {
        SDateFields fields;
        ASSERT_TRUE(HasForm(c.eForm, c.lpctText)) << Shown(c.lpctText);
        EXPECT_EQ(ReadDateFields(c.eForm, c.lpctText, fields), c.bExists) << Shown(c.lpctText);
    }
}

TEST(LexicalForm, ReadsTheFieldsOfDates)
{
    const SDateFields fields = Date(Type::Form_DateTime, L"-0044-03-15T01:02:03.0456789012-05:30");
    EXPECT_EQ(fields.nYear, -44);
    EXPECT_EQ(fields.nMonth, 3);
    EXPECT_EQ(fields.nDay, 15);
    EXPECT_EQ(fields.nHour, 1);
    EXPECT_EQ(fields.nMinute, 2);
    EXPECT_EQ(fields.nSecond, 3);
    EXPECT_EQ(fields.nNanosecond, 45678901u);
    EXPECT_TRUE(fields.bZone);
    EXPECT_EQ(fields.nZoneMinutes, -330);
}

TEST(LexicalForm, CarriesTheEndOfADay)
{
    const struct
    {
        const wchar_t* lpctText;
        long long nYear;
        int nMonth;
        int nDay;
    } cases[] = {{L"2001-01-01T24:00:00", 2001, 1, 2},
                 {L"2001-02-28T24:00:00", 2001, 3, 1},
                 {L"2004-02-28T24:00:00", 2004, 2, 29},
                 {L"2001-12-31T24:00:00", 2002, 1, 1},
                 {L"-0001-12-31T24:00:00", 1, 1, 1}};
    for (const auto& c : cases)
    {
        const SDateFields fields = Date(Type::Form_DateTime, c.lpctText);
        EXPECT_EQ(fields.nYear, c.nYear) << Shown(c.lpctText);
        EXPECT_EQ(fields.nMonth, c.nMonth) << Shown(c.lpctText);
        EXPECT_EQ(fields.nDay, c.nDay) << Shown(c.lpctText);
        EXPECT_EQ(fields.nHour, 0) << Shown(c.lpctText);
    }
    EXPECT_EQ(Date(Type::Form_Time, L"24:00:00").nHour, 0);
}

TEST(LexicalForm, OrdersDates)
{
    const struct
    {
        Type::EForm eForm;
        const wchar_t* lpctLeft;
        const wchar_t* lpctRight;
        ValueOrder eOrder;
    } cases[] = {{Type::Form_Date, L"2001-01-01", L"2001-01-02", ValueOrder::Below},
                 {Type::Form_Date, L"2001-02-28", L"2001-03-01", ValueOrder::Below},
                 {Type::Form_Date, L"-0002-01-01", L"-0001-01-01", ValueOrder::Below},
                 {Type::Form_Date, L"-0001-12-31", L"0001-01-01", ValueOrder::Below},
                 {Type::Form_Date, L"12001-01-01", L"2001-01-01", ValueOrder::Above},
                 {Type::Form_Date, L"2001-01-01Z", L"2001-01-01+00:00", ValueOrder::Equal},
                 {Type::Form_Date, L"2001-01-01+14:00", L"2001-01-01Z", ValueOrder::Below},
                 {Type::Form_Date, L"2001-01-01+12:00", L"2000-12-31-12:00", ValueOrder::Equal},
                 {Type::Form_Date, L"2001-01-01", L"2001-01-01Z", ValueOrder::None},
                 {Type::Form_Date, L"2001-01-01", L"2001-01-02Z", ValueOrder::Below},
                 {Type::Form_Date, L"2001-01-01", L"2001-01-01-14:00", ValueOrder::None},
                 {Type::Form_DateTime, L"2000-01-15T00:00:00", L"2000-02-15T00:00:00", ValueOrder::Below},
                 {Type::Form_DateTime, L"2000-01-15T12:00:00", L"2000-01-16T12:00:00Z", ValueOrder::Below},
                 {Type::Form_DateTime, L"2000-01-01T12:00:00", L"1999-12-31T23:00:00Z", ValueOrder::None},
                 {Type::Form_DateTime, L"2000-01-16T12:00:00", L"2000-01-16T12:00:00Z", ValueOrder::None},
                 {Type::Form_DateTime, L"2000-01-16T00:00:00", L"2000-01-16T12:00:00Z", ValueOrder::None},
                 {Type::Form_DateTime, L"2000-01-15T12:00:00+14:00", L"2000-01-15T13:00:00", ValueOrder::Below},
                 {Type::Form_DateTime, L"2000-01-15T12:00:00+14:00", L"2000-01-15T11:00:00", ValueOrder::None},
                 {Type::Form_DateTime, L"2000-01-15T12:00:00-14:00", L"2000-01-15T11:00:00", ValueOrder::Above},
                 {Type::Form_DateTime, L"2000-01-15T12:00:00-14:00", L"2000-01-15T13:00:00", ValueOrder::None},
                 {Type::Form_DateTime, L"2001-01-01T24:00:00", L"2001-01-02T00:00:00", ValueOrder::Equal},
                 {Type::Form_DateTime, L"2001-01-01T00:00:00.1", L"2001-01-01T00:00:00.10", ValueOrder::Equal},
                 {Type::Form_DateTime, L"2001-01-01T00:00:00.1", L"2001-01-01T00:00:00.09", ValueOrder::Above},
                 {Type::Form_Time, L"12:00:00+14:00", L"12:00:00Z", ValueOrder::Below},
                 {Type::Form_Time, L"24:00:00", L"00:00:00", ValueOrder::Equal},
                 {Type::Form_Year, L"2001", L"2001Z", ValueOrder::None},
                 {Type::Form_Year, L"2001", L"2002Z", ValueOrder::Below},
                 {Type::Form_YearMonth, L"2001-12", L"2002-01", ValueOrder::Below},
                 {Type::Form_MonthDay, L"--02-29", L"--03-01", ValueOrder::Below},
                 {Type::Form_Month, L"--02", L"--10", ValueOrder::Below},
                 {Type::Form_Day, L"---09", L"---31", ValueOrder::Below}};
    for (const auto& c : cases)
    {
        const SDateFields left = Date(c.eForm, c.lpctLeft);
        const SDateFields right = Date(c.eForm, c.lpctRight);
        EXPECT_EQ(CompareDates(left, right), c.eOrder) << Shown(c.lpctLeft) << " and " << Shown(c.lpctRight);
        EXPECT_EQ(CompareDates(right, left), Reverse(c.eOrder)) << Shown(c.lpctRight) << " and " << Shown(c.lpctLeft);
    }
}

TEST(LexicalForm, OrdersDurations)
{
    const struct
    {
        const wchar_t* lpctLeft;
        const wchar_t* lpctRight;
        ValueOrder eOrder;
    } cases[] = {{L"P1Y", L"P12M", ValueOrder::Equal},
                 {L"P1Y", L"P364D", ValueOrder::Above},
                 {L"P1Y", L"P365D", ValueOrder::None},
                 {L"P1Y", L"P366D", ValueOrder::None},
                 {L"P1Y", L"P367D", ValueOrder::Below},
                 {L"P1M", L"P27D", ValueOrder::Above},
                 {L"P1M", L"P28D", ValueOrder::None},
                 {L"P1M", L"P31D", ValueOrder::None},
                 {L"P1M", L"P32D", ValueOrder::Below},
                 {L"P5M", L"P149D", ValueOrder::Above},
                 {L"P5M", L"P150D", ValueOrder::None},
                 {L"P5M", L"P154D", ValueOrder::Below},
                 {L"PT1H", L"PT60M", ValueOrder::Equal},
                 {L"PT24H", L"P1D", ValueOrder::Equal},
                 {L"PT1M", L"PT60S", ValueOrder::Equal},
                 {L"PT61S", L"PT1M", ValueOrder::Above},
                 {L"PT0.1S", L"PT0.100S", ValueOrder::Equal},
                 {L"PT0S", L"P0Y", ValueOrder::Equal},
                 {L"-P1D", L"P1D", ValueOrder::Below},
                 {L"-P2D", L"-P1D", ValueOrder::Below},
                 {L"-PT0.1S", L"PT0S", ValueOrder::Below},
                 {L"P9999999999Y", L"P9999999998Y", ValueOrder::Above},
                 {L"-P9999999999D", L"-P9999999998D", ValueOrder::Below},
                 {L"PT9999999999H", L"PT9999999998H", ValueOrder::Above}};
    for (const auto& c : cases)
    {
        const SDurationFields left = Duration(c.lpctLeft);
        const SDurationFields right = Duration(c.lpctRight);
        EXPECT_EQ(CompareDurations(left, right), c.eOrder) << Shown(c.lpctLeft) << " and " << Shown(c.lpctRight);
        EXPECT_EQ(CompareDurations(right, left), Reverse(c.eOrder))
            << Shown(c.lpctRight) << " and " << Shown(c.lpctLeft);
    }
}

TEST(LexicalForm, ReadsTheFieldsOfDurations)
{
    const SDurationFields fields = Duration(L"-P1Y2M3DT4H5M6.7S");
    EXPECT_TRUE(fields.bNegative);
    EXPECT_EQ(fields.nYears, 1u);
    EXPECT_EQ(fields.nMonths, 2u);
    EXPECT_EQ(fields.nDays, 3u);
    EXPECT_EQ(fields.nHours, 4u);
    EXPECT_EQ(fields.nMinutes, 5u);
    EXPECT_EQ(fields.nSeconds, 6u);
    EXPECT_EQ(fields.nNanosecond, 700000000u);
    EXPECT_EQ(Duration(L"P00000000000000000007Y").nYears, 7u);
    SDurationFields tooLarge;
    EXPECT_FALSE(ReadDurationFields(L"P10000000000Y", tooLarge));
    EXPECT_FALSE(ReadDurationFields(L"PT99999999999999999999999.5S", tooLarge));
}

TEST(LexicalForm, OrdersDecimalsOfAnyLength)
{
    const struct
    {
        const wchar_t* lpctLeft;
        const wchar_t* lpctRight;
        int nOrder;
    } cases[] = {{L"1", L"1.0", 0},
                 {L"-0", L"0.00", 0},
                 {L"007", L"7", 0},
                 {L"+1", L"1", 0},
                 {L".5", L"0.50", 0},
                 {L"1", L"2", -1},
                 {L"9", L"10", -1},
                 {L"-9", L"-10", 1},
                 {L"-1", L"1", -1},
                 {L"0.1", L"0.09", 1},
                 {L"0.10", L"0.101", -1},
                 {L"-0.1", L"-0.09", -1},
                 {L"1.", L"1", 0},
                 {L"-0.0001", L"0", -1},
                 {L"12345678901234567890123.5", L"12345678901234567890123.49", 1}};
    for (const auto& c : cases)
    {
        const auto Sign = [](int n)
        {
            return n < 0 ? -1 : n > 0 ? 1 : 0;
        };
        EXPECT_EQ(Sign(CompareDecimals(c.lpctLeft, c.lpctRight)), c.nOrder)
            << Shown(c.lpctLeft) << " and " << Shown(c.lpctRight);
        EXPECT_EQ(Sign(CompareDecimals(c.lpctRight, c.lpctLeft)), -c.nOrder)
            << Shown(c.lpctRight) << " and " << Shown(c.lpctLeft);
    }
}

TEST(LexicalForm, CountsTheDigitsThatMatter)
{
    const struct
    {
        const wchar_t* lpctText;
        std::size_t nTotal;
        std::size_t nFraction;
    } cases[] = {
        {L"0", 0, 0},   {L"-1", 1, 0}, {L"0012.500", 3, 1}, {L"100", 3, 0},   {L"0.001", 1, 3},
        {L".10", 1, 1}, {L"1.", 1, 0}, {L"0.0", 0, 0},      {L"10.01", 4, 2}, {L"+123456789012345678901.5", 22, 1}};
    for (const auto& c : cases)
    {
        EXPECT_EQ(CountDigits(c.lpctText).nTotal, c.nTotal) << Shown(c.lpctText);
        EXPECT_EQ(CountDigits(c.lpctText).nFraction, c.nFraction) << Shown(c.lpctText);
    }
}

TEST(LexicalForm, CountsCharactersAndOctets)
{
    EXPECT_EQ(CountCharacters(L""), 0u);
    EXPECT_EQ(CountCharacters(L"a\u00E9"), 2u);
    EXPECT_EQ(CountCharacters(L"\xD83D\xDE00x"), 2u);
    EXPECT_EQ(CountCharacters(L"\U0001F600"), 1u);
    EXPECT_EQ(CountCharacters(L"\xD83D"), 1u);
    EXPECT_EQ(CountCharacters(L"\xD83D\xD83D"), 2u);
    EXPECT_EQ(CountBase64Octets(L""), 0u);
    EXPECT_EQ(CountBase64Octets(L"AA =="), 1u);
    EXPECT_EQ(CountBase64Octets(L"AAA="), 2u);
    EXPECT_EQ(CountBase64Octets(L"AAAA AAAA"), 6u);
}

TEST(LexicalForm, ComparesBase64WithoutBlanks)
{
    EXPECT_TRUE(AreEqualBase64(L"A A AA", L"AAAA"));
    EXPECT_TRUE(AreEqualBase64(L"AA==", L"AA= ="));
    EXPECT_TRUE(AreEqualBase64(L"", L""));
    EXPECT_FALSE(AreEqualBase64(L"AAAA", L"AAAB"));
    EXPECT_FALSE(AreEqualBase64(L"AAAA", L"aAAA"));
    EXPECT_FALSE(AreEqualBase64(L"AAAA", L""));
}

TEST(LexicalForm, SplitsLists)
{
    using Items = std::vector<std::wstring_view>;
    EXPECT_EQ(SplitList(L""), Items());
    EXPECT_EQ(SplitList(L" \t\n"), Items());
    EXPECT_EQ(SplitList(L"a"), Items({L"a"}));
    EXPECT_EQ(SplitList(L" a  b\nc\t"), Items({L"a", L"b", L"c"}));
}
