#include "quiver/values/RealWriter.h"

#include "tests/support/Expect.h"
#include "tests/support/NearestDouble.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

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

TEST(RealWriter, ADoublePrintsWithSixteenDigitsOnEveryPath)
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

TEST(RealWriter, ShortDecimalsPrintAsTheGeneralRoutineDoes)
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

TEST(RealWriter, TextsBeyondTheLongestAreCutOff)
{
    std::wstring strText = L"=";
    AppendR4(strText, 1.5F, L"%40.1f");
    EXPECT_TEXT(L"=" + std::wstring(31, L' '), strText);
    strText = L"=";
    AppendR8(strText, 1.5, L"%50.1f");
    EXPECT_TEXT(L"=" + std::wstring(47, L' '), strText);
    strText = L"=";
    AppendR8(strText, 1.5, L"%47.1f");
    EXPECT_TEXT(L"=" + std::wstring(44, L' ') + L"1.5", strText);
}

TEST(RealWriter, WhatPrintsShortPrintsAsAnyOtherAndReadsBack)
{
    std::mt19937_64 random(20260522);
    int nShort = 0;
    for (int n = 0; n < 100000; ++n)
    {
        const double dScale = std::pow(10.0, static_cast<double>(random() % 6));
        const double dValue =
            static_cast<double>(static_cast<std::int64_t>(random() % 10000000000) - 5000000000) / dScale;
        IntegerRoom room;
        const std::wstring_view svText = PrintShortR8(room, dValue);
        if (svText.empty())
            continue;
        ++nShort;
        ASSERT_EQ(svText, R8(dValue));
        ASSERT_EQ(QvTest::ReadDouble(std::string(svText.begin(), svText.end())), dValue);
    }
    EXPECT_GT(nShort, 50000);

    IntegerRoom room;
    for (const double dValue : {-0.0, 0.1 + 0.2, 1e300, 9.95, std::nan(""), HUGE_VAL, -HUGE_VAL, 1e16})
        EXPECT_TRUE(PrintShortR8(room, dValue).empty()) << dValue;
    EXPECT_EQ(PrintShortR8(room, 0), L"0");
    EXPECT_EQ(PrintShortR8(room, 9007199254740992.0), L"9007199254740992");
}
