#include "quiver/values/NumberText.h"

#include "tests/support/Expect.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <random>

using namespace QvXmlLib9;

namespace
{

std::wstring Reference(double dValue)
{
    char szNumber[64];
    const char* const pEnd = std::to_chars(szNumber, std::end(szNumber), dValue, std::chars_format::general, 16).ptr;
    return std::wstring(static_cast<const char*>(szNumber), pEnd);
}

std::wstring R8(double dValue)
{
    std::wstring strText;
    AppendR8(strText, dValue, nullptr);
    return strText;
}

} // namespace

TEST(NumberText, ADoublePrintsWithSixteenDigitsOnEveryPath)
{
    // Some of these take a short cut for decimals of a few digits, and 9.95 must not: its sixteenth digit is not that
    // of 9.95.
    for (const double dValue :
         {0.1,           0.5,         9.95, 148.95, -39.98,     4.5,     0.001,     0.0001,    0.9999,
          99999999999.9, 123456.7891, 0.3,  2.675,  1e-3,       8.41553, 46.574210, 1.1,       7.7,
          9.7,           9.99,        0.07, -0.25,  1e10 + 0.1, 5e-324,  1.7e308,   0.1 + 0.2, 1.0 / 3})
        EXPECT_TEXT(Reference(dValue), R8(dValue));
    EXPECT_TEXT(L"9.949999999999999", R8(9.95));
    EXPECT_TEXT(L"148.95", R8(148.95));
    EXPECT_TEXT(L"-0.25", R8(-0.25));
}

TEST(NumberText, ShortDecimalsPrintAsTheGeneralRoutineDoes)
{
    std::mt19937_64 random(20260521);
    for (int n = 0; n < 300000; ++n)
    {
        const int nDigits = static_cast<int>(random() % 15) + 1;
        const double dScale = std::pow(10.0, static_cast<double>(random() % 7));
        const auto nWhole = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(std::pow(10.0, nDigits)));
        const double dValue = static_cast<double>(nWhole) / dScale * (n % 2 == 0 ? 1 : -1);
        if (dValue == 0)
            continue;
        ASSERT_PRED_FORMAT2(QvTest::TextEquals, Reference(dValue), R8(dValue));
        const double dNeighbour = std::nextafter(dValue, n % 3 == 0 ? 1e300 : -1e300);
        ASSERT_PRED_FORMAT2(QvTest::TextEquals, Reference(dNeighbour), R8(dNeighbour));
    }
}

TEST(NumberText, IntegersReadAsFarAsTheyGo)
{
    struct
    {
        const wchar_t* lpctText;
        std::int32_t nValue;
        bool bOutOfRange;
        std::ptrdiff_t nStop;
    } const cases[] = {
        {L"", 0, false, 0},
        {L"-", 0, false, 0},
        {L" \t\n\v\f\r+7x", 7, false, 8},
        {L"-2147483648", INT32_MIN, false, 11},
        {L"2147483648", INT32_MAX, true, 10},
        {L"-2147483649", INT32_MIN, true, 11},
        {L"99999999999999999999999", INT32_MAX, true, 23},
        {L"12 34", 12, false, 2},
    };
    for (const auto& row : cases)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctText));
        const SNumberText<std::int32_t> number = ReadInteger<std::int32_t>(row.lpctText);
        EXPECT_EQ(number.value, row.nValue);
        EXPECT_EQ(number.bOutOfRange, row.bOutOfRange);
        EXPECT_EQ(number.pStop - row.lpctText, row.nStop);
    }
    EXPECT_EQ(ReadInteger<std::uint32_t>(L"-1").value, 4294967295U);
    EXPECT_EQ(ReadInteger<std::uint64_t>(L"-1").value, UINT64_MAX);
}

TEST(NumberText, RealNumbersReadToTheNearestDouble)
{
    EXPECT_EQ(ReadReal(L"0.1").value, 0.1);
    EXPECT_EQ(ReadReal(L"-1.5e3x").value, -1500.0);
    EXPECT_EQ(ReadReal(L"9007199254740993").value, 9007199254740992.0);
    EXPECT_EQ(ReadReal(L"1e400").value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(ReadReal(L"1e-400").value, 0.0);
    const wchar_t* const lpctWord = L"inf";
    EXPECT_EQ(ReadReal(lpctWord).pStop, lpctWord);
}
