#include "quiver/values/IntegerText.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

using namespace QvXmlLib9;

TEST(IntegerText, IntegersReadAsFarAsTheyGo)
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

TEST(IntegerText, IntegersPrintAtTheirEnds)
{
    const auto fnSigned = [](std::int64_t nValue)
    {
        std::wstring strText = L"=";
        AppendInteger(strText, nValue);
        return strText;
    };
    const auto fnUnsigned = [](std::uint64_t nValue)
    {
        std::wstring strText = L"=";
        AppendUnsigned(strText, nValue);
        return strText;
    };
    EXPECT_TEXT(L"=0", fnSigned(0));
    EXPECT_TEXT(L"=-1", fnSigned(-1));
    EXPECT_TEXT(L"=100", fnSigned(100));
    EXPECT_TEXT(L"=9223372036854775807", fnSigned(INT64_MAX));
    EXPECT_TEXT(L"=-9223372036854775808", fnSigned(INT64_MIN));
    EXPECT_TEXT(L"=99", fnUnsigned(99));
    EXPECT_TEXT(L"=18446744073709551615", fnUnsigned(UINT64_MAX));
}
