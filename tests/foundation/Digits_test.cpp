#include "quiver/foundation/Digits.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;

TEST(Digits, OnlyThoseOfAsciiAreDigits)
{
    for (wchar_t c = 0; c < 0x1000; ++c)
        EXPECT_EQ(IsDigit(c), c >= 48 && c <= 57) << static_cast<int>(c);
    EXPECT_FALSE(IsDigit(L'\xFF10'));
}

TEST(Digits, NumbersAndDigitsBelongTogether)
{
    for (unsigned int n = 0; n < 10; ++n)
    {
        EXPECT_TRUE(IsDigit(DigitOf(n)));
        EXPECT_EQ(DigitValue(DigitOf(n)), static_cast<int>(n));
    }
    EXPECT_EQ(DigitOf(7), L'7');
}
