#include "quiver/values/NearestReal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace QvXmlLib9;

namespace
{

constexpr double s_dInfinity = std::numeric_limits<double>::infinity();

struct SRow
{
    std::string strText;
    double dValue;
};

TEST(NearestReal, DigitsPointAndExponentMakeANumber)
{
    const std::string strZeros(400, '0');
    const SRow rows[] = {
        {"0", 0},
        {"12", 12},
        {"1.5", 1.5},
        {".5", 0.5},
        {"5.", 5},
        {"-0.25", -0.25},
        {"1.5e3", 1500},
        {"1.5E+3", 1500},
        {"25e-2", 0.25},
        {"0.1", 0.1},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993.0000000000000000000000000000000000000000000000000000000000001", 9007199254740994.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"5e-324", std::numeric_limits<double>::denorm_min()},
        {"0e99999999999999999999", 0},
        {"0." + strZeros + "1e+401", 1},
        {"1" + strZeros + "e-400", 1},
        {"1" + strZeros + ".5e-400", 1},
    };
    for (const SRow& row : rows)
        EXPECT_EQ(GetNearestReal<double>(row.strText), row.dValue) << row.strText;
    EXPECT_TRUE(std::signbit(GetNearestReal<double>("-0.0")));
}

TEST(NearestReal, WhatIsTooLargeIsInfinite)
{
    const std::string strZeros(400, '0');
    for (const std::string& strText : {std::string("1e309"), "1" + strZeros, "1" + strZeros + "e-10",
                                       "1" + strZeros + ".5", "0." + strZeros + "1e+800", strZeros + "1e309",
                                       std::string("1e99999999999999999999"), std::string("1e9223372036854775807")})
    {
        EXPECT_EQ(GetNearestReal<double>(strText), s_dInfinity) << strText;
        EXPECT_EQ(GetNearestReal<double>("-" + strText), -s_dInfinity) << strText;
    }
}

TEST(NearestReal, WhatIsTooSmallIsZeroOfItsSign)
{
    const std::string strZeros(400, '0');
    for (const std::string& strText :
         {std::string("1e-400"), "0." + strZeros + "1", "0." + strZeros + "1e10", "." + strZeros + "1",
          "1" + strZeros + ".5e-800", strZeros + "1e-400", std::string("1e-99999999999999999999")})
    {
        EXPECT_EQ(GetNearestReal<double>(strText), 0) << strText;
        EXPECT_FALSE(std::signbit(GetNearestReal<double>(strText))) << strText;
        EXPECT_TRUE(std::signbit(GetNearestReal<double>("-" + strText))) << strText;
    }
}

TEST(NearestReal, FloatsAreRoundedOnce)
{
    // Rounded to a double first, this is halfway between two floats.
    EXPECT_EQ(GetNearestReal<float>("1.00000017881393432617187499"), 1.00000011920928955078125F);
    EXPECT_EQ(GetNearestReal<float>("3.4028235e38"), std::numeric_limits<float>::max());
    EXPECT_EQ(GetNearestReal<float>("1e39"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(GetNearestReal<float>("-1e39"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(GetNearestReal<float>("1e-50"), 0);
}

} // namespace
