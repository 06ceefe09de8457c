#include "quiver/values/Decimal.h"

#include "quiver/foundation/Exceptions.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

namespace QvXmlLib9
{
namespace
{

/// What a static object sees that is built before the library's own unit would be in plain link order.
const double s_dEarly = CDecimal(L"-1.5").ToDouble();
const __int64 s_nEarly = CDecimal(L"9223372036854775807").ToLongLong();

/// Sets the process-wide maximum for one test.
class CMaxDecimalPlaces
{
public:
    explicit CMaxDecimalPlaces(int nPlaces)
        : m_nBefore(CDecimal::GetMaxDecimalPlaces())
    {
        CDecimal::SetMaxDecimalPlaces(nPlaces);
    }

    ~CMaxDecimalPlaces() { CDecimal::SetMaxDecimalPlaces(m_nBefore); }

    CMaxDecimalPlaces(const CMaxDecimalPlaces&) = delete;
    CMaxDecimalPlaces& operator=(const CMaxDecimalPlaces&) = delete;

private:
    int m_nBefore;
};

CDecimal Dec(const std::wstring& strNumber)
{
    return CDecimal(strNumber.c_str());
}

std::wstring Text(const std::wstring& strNumber)
{
    return Dec(strNumber).ToString();
}

template <class TException = CQvInvalidValueException, class TOperation>
std::wstring FailureOf(TOperation operation)
{
    try
    {
        operation();
    }
    catch (const TException& ex)
    {
        return ex.GetFullMessage();
    }
    return L"no such exception";
}

std::wstring InvalidChar(std::size_t nPosition, const std::wstring& strText)
{
    return L"The string representing a Decimal, contained an invalid char at position " + std::to_wstring(nPosition) +
           L" [" + strText + L"]";
}

bool IsNegativeZero(const CDecimal& value)
{
    return value == CDecimal(0) && value < CDecimal(0);
}

struct SText
{
    const wchar_t* lpctText;
    const wchar_t* lpctExpected;
};

struct SInvalid
{
    const wchar_t* lpctText;
    std::size_t nPosition;
};

struct SOperation
{
    const wchar_t* lpctLeft;
    const wchar_t* lpctRight;
    const wchar_t* lpctExpected;
};

TEST(DecimalParse, ReadsWholePartAndFraction)
{
    const SText cases[] = {{L"0", L"0"},         {L"5", L"5"},        {L"1.5", L"1.5"},   {L"1.50", L"1.5"},
                           {L"1.0", L"1"},       {L"1.", L"1"},       {L".5", L"0.5"},    {L".", L"0"},
                           {L"", L"0"},          {L"0.05", L"0.05"},  {L"-0.5", L"-0.5"}, {L"-1.05", L"-1.05"},
                           {L"+3.25", L"3.25"},  {L"007.70", L"7.7"}, {L"-0", L"0"},      {L"-0.00", L"0"},
                           {L"10.010", L"10.01"}};
    for (const SText& row : cases)
        EXPECT_EQ(Text(row.lpctText), row.lpctExpected) << row.lpctText;
}

TEST(DecimalParse, TakesSignsAnywhereBeforeThePointAndTheLastOneWins)
{
    const SText cases[] = {{L"--5", L"-5"},  {L"5-", L"-5"},     {L"1-2", L"-12"}, {L"-1+2", L"12"},
                           {L"-+-5", L"-5"}, {L"5-.5", L"-5.5"}, {L"- 5", L"-5"},  {L"+-", L"0"}};
    for (const SText& row : cases)
        EXPECT_EQ(Text(row.lpctText), row.lpctExpected) << row.lpctText;
}

TEST(DecimalParse, PassesOverWhiteSpaceInBothParts)
{
    const SText cases[] = {{L"1 000", L"1000"}, {L" \t\r\n12 . 3 4 \n", L"12.34"}, {L"1. 5", L"1.5"}, {L"\n", L"0"}};
    for (const SText& row : cases)
        EXPECT_EQ(Text(row.lpctText), row.lpctExpected) << row.lpctText;
}

TEST(DecimalParse, AppliesTheExponent)
{
    const SText cases[] = {{L"1e3", L"1000"},    {L"1E-2", L"0.01"},      {L"1.5e1", L"15"},       {L"-1.5E+1", L"-15"},
                           {L"1.25e1", L"12.5"}, {L"12.5E-1", L"1.25"},   {L"e5", L"0"},           {L".5e1", L"5"},
                           {L"1e", L"1"},        {L"1e+", L"1"},          {L"1e-", L"1"},          {L"1e0", L"1"},
                           {L"1e -+2", L"100"},  {L"1e+ - \t2", L"0.01"}, {L"1e0000003", L"1000"}, {L"0e5", L"0"}};
    for (const SText& row : cases)
        EXPECT_EQ(Text(row.lpctText), row.lpctExpected) << row.lpctText;
}

TEST(DecimalParse, NamesThePositionOfAnInvalidCharacter)
{
    const SInvalid cases[] = {{L"abc", 0},  {L"1.2.3", 3}, {L"1x", 1},     {L"1.5x", 3},  {L"1.-5", 2}, {L"1e5x", 3},
                              {L"1e5 ", 3}, {L"1e5.", 3},  {L"1e5e", 3},   {L"1ex", 2},   {L"1e2-", 3}, {L" \u00A0", 1},
                              {L"1,5", 1},  {L"INF", 0},   {L"\u0664", 0}, {L"1e1 2", 3}, {L"12\f", 2}};
    for (const SInvalid& row : cases)
        EXPECT_EQ(FailureOf([&] { CDecimal value(row.lpctText); }), InvalidChar(row.nPosition, row.lpctText));
}

TEST(DecimalParse, NamesAnInvalidTextInUtf16)
{
    const std::wstring strPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_EQ(FailureOf([] { CDecimal value(L"1\U0001F600"); }), InvalidChar(1, L"1" + strPair));
}

TEST(DecimalParse, TakesANullPointerForAnEmptyText)
{
    const wchar_t* const lpctNull = nullptr;
    EXPECT_EQ(CDecimal(lpctNull).ToString(), L"0");
}

TEST(DecimalParse, RefusesThe513thDigitOfAPart)
{
    const std::wstring strDigits(512, L'7');
    EXPECT_EQ(Text(strDigits), strDigits);
    EXPECT_EQ(FailureOf([&] { Dec(strDigits + L"7"); }), InvalidChar(512, strDigits + L"7"));
    EXPECT_EQ(FailureOf([&] { Dec(L"-" + strDigits + L"7.5"); }), InvalidChar(513, L"-" + strDigits + L"7.5"));
    EXPECT_EQ(Text(L"0." + strDigits), L"0." + std::wstring(29, L'7') + L"8");
    EXPECT_EQ(FailureOf([&] { Dec(L"0." + strDigits + L"7"); }), InvalidChar(514, L"0." + strDigits + L"7"));
}

TEST(DecimalParse, RefusesThe33rdDigitOfAnExponent)
{
    const std::wstring strText = L"1e" + std::wstring(31, L'0') + L"3";
    EXPECT_EQ(Text(strText), L"1000");
    const std::wstring strLong = L"1e" + std::wstring(32, L'0') + L"3";
    EXPECT_EQ(FailureOf([&] { Dec(strLong); }), InvalidChar(34, strLong));
}

TEST(DecimalParse, RefusesAnExponentAboveTheLimit)
{
    EXPECT_EQ(CDecimal::MAX_EXPONENT, 10000);
    EXPECT_EQ(Text(L"1E10000"), L"1" + std::wstring(10000, L'0'));
    const SInvalid cases[] = {{L"1E10001", 6}, {L"1E99999", 6}, {L"1E2147483647", 6}, {L"-0.01E10001", 10}};
    for (const SInvalid& row : cases)
        EXPECT_EQ(FailureOf([&] { CDecimal value(row.lpctText); }), InvalidChar(row.nPosition, row.lpctText));
}

TEST(DecimalParse, NeedsNoLimitWhereTheResultIsZero)
{
    const wchar_t* const zeros[] = {L"0E20000",
                                    L"0E99999999999999999999999999",
                                    L"-0.000E2147483648",
                                    L"1E-10000",
                                    L"1E-10001",
                                    L"-9E-99999",
                                    L"1E-99999999",
                                    L"1E-99999999999999999999999999",
                                    L".E10001"};
    for (const wchar_t* lpctText : zeros)
    {
        EXPECT_EQ(Text(lpctText), L"0") << lpctText;
        EXPECT_FALSE(IsNegativeZero(CDecimal(lpctText))) << lpctText;
    }
    EXPECT_EQ(CBigInteger(L"0E20000").ToString(), L"0");
    const std::wstring strLong = L"0E" + std::wstring(33, L'1');
    EXPECT_EQ(FailureOf([&] { Dec(strLong); }), InvalidChar(34, strLong));
}

TEST(DecimalParse, ANegativeExponentCountsInFull)
{
    const std::wstring strNines(512, L'9');
    EXPECT_EQ(Text(strNines + L"E-10001"), L"0");
    const CMaxDecimalPlaces places(CDecimal::MAX_DECIMAL_PLACES);
    EXPECT_EQ(Dec(strNines + L"E-10512").ToString(9999), L"0." + std::wstring(9999, L'0'));
    EXPECT_TRUE(Dec(strNines + L"E-10512") == Dec(L"1E-10000"));
    EXPECT_TRUE(Dec(strNines + L"E-10511") == Dec(L"1E-9999"));
    EXPECT_TRUE(Dec(strNines + L"E-10513") == CDecimal(0));
    EXPECT_TRUE(Dec(L"19E-10001") == Dec(L"2E-10000"));
    EXPECT_TRUE(Dec(L"15E-10001") == Dec(L"1E-10000"));
}

TEST(DecimalParse, ReadsEveryMagnitudeOfADouble)
{
    EXPECT_EQ(Text(L"1E308"), L"1" + std::wstring(308, L'0'));
    EXPECT_EQ(Text(L"1E-30"), L"0." + std::wstring(29, L'0') + L"1");
    EXPECT_EQ(Text(L"9E-31"), L"0." + std::wstring(29, L'0') + L"1");
    EXPECT_EQ(Text(L"5E-31"), L"0");
}

TEST(DecimalParse, RoundsTheThirtiethDigitWithTiesTowardZero)
{
    const std::wstring strZeros(29, L'0');
    EXPECT_EQ(Text(L"0." + strZeros + L"16"), L"0." + strZeros + L"2");
    EXPECT_EQ(Text(L"0." + strZeros + L"15"), L"0." + strZeros + L"1");
    EXPECT_EQ(Text(L"0." + strZeros + L"15000"), L"0." + strZeros + L"1");
    EXPECT_EQ(Text(L"0." + strZeros + L"15001"), L"0." + strZeros + L"2");
    EXPECT_EQ(Text(L"-0." + strZeros + L"16"), L"-0." + strZeros + L"2");
    EXPECT_EQ(Text(L"-0." + strZeros + L"15"), L"-0." + strZeros + L"1");
}

TEST(DecimalParse, CutsAQuotientOfANegativeExponentBeforeItRoundsIt)
{
    // Two places behind the maximum, the digits after 50 are gone, and what is left is a tie.
    EXPECT_EQ(Text(L"0.1500001E-29"), L"0." + std::wstring(29, L'0') + L"1");
    EXPECT_EQ(Text(L"0." + std::wstring(29, L'0') + L"1500001"), L"0." + std::wstring(29, L'0') + L"2");
}

TEST(DecimalRounding, DoesNotCarryAFullFractionIntoTheWholePart)
{
    const CMaxDecimalPlaces places(2);
    EXPECT_EQ(Text(L"0.999"), L"0.100");
    EXPECT_EQ(Text(L"-0.999"), L"-0.100");
    EXPECT_EQ(Text(L"7.996"), L"7.100");
    EXPECT_EQ(Text(L"0.995"), L"0.99");
    EXPECT_LT(Dec(L"0.999"), Dec(L"1"));
    EXPECT_GT(Dec(L"0.999"), Dec(L"0.99"));
}

TEST(DecimalRounding, AFullFractionCarriesInASumAndInAProduct)
{
    const CMaxDecimalPlaces places(2);
    EXPECT_EQ((Dec(L"0.999") + Dec(L"0")).ToString(), L"1");
    EXPECT_EQ((Dec(L"0.999") + Dec(L"0.999")).ToString(), L"2");
    EXPECT_EQ((Dec(L"-0.999") - Dec(L"0.5")).ToString(), L"-1.5");
    EXPECT_EQ((Dec(L"0.999") * Dec(L"3")).ToString(), L"3");
    EXPECT_EQ((Dec(L"0.999") / Dec(L"2")).ToString(), L"0.5");
    EXPECT_EQ(Dec(L"0.999").ToString(2), L"1.0");
}

TEST(DecimalConstruct, IsZeroByDefault)
{
    EXPECT_EQ(CDecimal().ToString(), L"0");
    EXPECT_FALSE(IsNegativeZero(CDecimal()));
}

TEST(DecimalConstruct, TakesIntegers)
{
    for (const int nValue : {0, 1, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(CDecimal(nValue).ToString(), std::to_wstring(nValue));
    for (const long nValue : {0L, 2147483647L, -2147483647L - 1L})
        EXPECT_EQ(CDecimal(nValue).ToString(), std::to_wstring(nValue));
    for (const __int64 nValue : {0LL, LLONG_MAX, LLONG_MIN})
        EXPECT_EQ(CDecimal(nValue).ToString(), std::to_wstring(nValue));
    EXPECT_EQ(CDecimal(CBigInteger(L"-123456789012345678901234567890")).ToString(), L"-123456789012345678901234567890");
}

TEST(DecimalConstruct, ANegativeIntegerIsTheSameNumberAsItsText)
{
    const CDecimal values[] = {CDecimal(-5),   CDecimal(-5L), CDecimal(-5LL), CDecimal(CBigInteger(-5)),
                               CDecimal(-5.0), Dec(L"-5"),    Dec(L"-5.00")};
    for (const CDecimal& left : values)
    {
        for (const CDecimal& right : values)
        {
            EXPECT_TRUE(left == right);
            EXPECT_FALSE(left < right);
            EXPECT_FALSE(left > right);
            EXPECT_EQ((CDecimal(left) - right).ToString(), L"0");
            EXPECT_EQ((CDecimal(L"-3") - left).ToString(), L"2");
            EXPECT_EQ((left.GetNegative() + right.GetNegative()).ToString(), L"10");
        }
    }
}

TEST(DecimalConstruct, TakesADoubleWithThirteenPlaces)
{
    const std::pair<double, const wchar_t*> cases[] = {{0.1, L"0.1"},
                                                       {1e-14, L"0"},
                                                       {-2.5, L"-2.5"},
                                                       {0.0, L"0"},
                                                       {-0.0, L"0"},
                                                       {1.23456789012345678, L"1.2345678901235"},
                                                       {6e-14, L"0.0000000000001"},
                                                       {123456789.125, L"123456789.125"},
                                                       {1e22, L"10000000000000000000000"},
                                                       {1e23, L"99999999999999991611392"}};
    for (const auto& [dValue, lpctExpected] : cases)
        EXPECT_EQ(CDecimal(dValue).ToString(), lpctExpected) << dValue;
    EXPECT_EQ(CDecimal(std::numeric_limits<double>::max()).ToString().size(), 309U);
    EXPECT_TRUE(IsNegativeZero(CDecimal(-0.0)));
}

TEST(DecimalConstruct, RefusesADoubleThatIsNoFiniteNumber)
{
    const double dInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(FailureOf([=] { CDecimal value(dInfinity); }), InvalidChar(0, L"inf\n"));
    EXPECT_EQ(FailureOf([=] { CDecimal value(-dInfinity); }), InvalidChar(1, L"-inf\n"));
    const double dNotANumber = std::copysign(std::numeric_limits<double>::quiet_NaN(), 1.0);
    EXPECT_EQ(FailureOf([=] { CDecimal value(dNotANumber); }), InvalidChar(0, L"nan\n"));
}

TEST(DecimalConstruct, CopiesAndMoves)
{
    const CDecimal original(L"-1.25");
    CDecimal copy(original);
    CDecimal moved(std::move(copy));
    EXPECT_EQ(moved.ToString(), L"-1.25");
    copy = moved;
    EXPECT_EQ(copy.ToString(), L"-1.25");
    CDecimal target;
    target = std::move(moved);
    EXPECT_EQ(target.ToString(), L"-1.25");
}

TEST(DecimalCompare, OrdersBySignWholePartAndFraction)
{
    const std::vector<std::wstring> ascending = {
        L"-100", L"-2.5", L"-2.05", L"-2", L"-0.51", L"-0.5", L"-0.05", L"0",   L"0.005",
        L"0.05", L"0.5",  L"0.51",  L"1",  L"2",     L"2.05", L"2.5",   L"100", L"99999999999999999999.5"};
    for (std::size_t nLeft = 0; nLeft < ascending.size(); ++nLeft)
    {
        for (std::size_t nRight = 0; nRight < ascending.size(); ++nRight)
        {
            const CDecimal left = Dec(ascending[nLeft]);
            const CDecimal right = Dec(ascending[nRight]);
            SCOPED_TRACE(::testing::Message() << ascending[nLeft] << L" and " << ascending[nRight]);
            EXPECT_EQ(left == right, nLeft == nRight);
            EXPECT_EQ(left != right, nLeft != nRight);
            EXPECT_EQ(left < right, nLeft < nRight);
            EXPECT_EQ(left <= right, nLeft <= nRight);
            EXPECT_EQ(left > right, nLeft > nRight);
            EXPECT_EQ(left >= right, nLeft >= nRight);
        }
    }
}

TEST(DecimalCompare, EqualNumbersAreEqualHoweverTheyAreWritten)
{
    EXPECT_TRUE(Dec(L"1.50") == Dec(L"1.5"));
    EXPECT_TRUE(Dec(L"1") == Dec(L"1.000"));
    EXPECT_TRUE(Dec(L"-6.00") <= Dec(L"-6"));
    EXPECT_TRUE(Dec(L"-6.00") >= Dec(L"-6"));
    EXPECT_TRUE(Dec(L"-2") * Dec(L"3") <= Dec(L"-6"));
    EXPECT_FALSE(Dec(L"-5.5") + Dec(L"0.5") > Dec(L"-5"));
    EXPECT_TRUE(Dec(L"1") / Dec(L"3") == Dec(L"0." + std::wstring(30, L'3')));
}

struct SZero
{
    CDecimal value;
    const char* lpcWhat;
    bool bNotBelow;
};

TEST(DecimalCompare, NegativeZeroEqualsZeroAndIsOrderedBelowIt)
{
    // Two places or more that are all zero leave no sign in the fraction, and then the number is not below zero enough
    // to fail a bound of zero.
    const SZero zeros[] = {{Dec(L"-0"), "-0", false},
                           {Dec(L"-0.0"), "-0.0", false},
                           {CDecimal(0).GetNegative(), "0, negated", false},
                           {Dec(L"-0.00"), "-0.00", true},
                           {Dec(L"-0.000"), "-0.000", true},
                           {CDecimal(-0.0), "the double -0.0", true},
                           {CDecimal(-1e-14), "the double -1e-14", true},
                           {CDecimal(CBigInteger(L"-0")), "the integer -0", true}};
    for (const SZero& row : zeros)
    {
        SCOPED_TRACE(row.lpcWhat);
        EXPECT_TRUE(row.value == CDecimal(0));
        EXPECT_FALSE(row.value != CDecimal(0));
        EXPECT_TRUE(row.value < CDecimal(0));
        EXPECT_TRUE(row.value <= CDecimal(0));
        EXPECT_FALSE(row.value > CDecimal(0));
        EXPECT_EQ(row.value >= CDecimal(0), row.bNotBelow);
        EXPECT_TRUE(CDecimal(0) > row.value);
        EXPECT_EQ(CDecimal(0) <= row.value, row.bNotBelow);
        EXPECT_TRUE(row.value == Dec(L"-0"));
        EXPECT_FALSE(row.value < Dec(L"-0"));
        EXPECT_TRUE(row.value >= Dec(L"-0"));
        EXPECT_TRUE(row.value > Dec(L"-0.05"));
        EXPECT_TRUE(row.value < Dec(L"0.05"));
    }
}

TEST(DecimalSign, ZeroKeepsItInParsingRoundingAndNegationOnly)
{
    EXPECT_TRUE(IsNegativeZero(Dec(L"-0")));
    EXPECT_TRUE(IsNegativeZero(CDecimal(0).GetNegative()));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-1E-40")));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-0E5")));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-0") * CDecimal(5)));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-0") / CDecimal(5)));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-5") + Dec(L"5")));
    EXPECT_TRUE(IsNegativeZero(Dec(L"-0") + Dec(L"-0")));
    EXPECT_FALSE(IsNegativeZero(Dec(L"-0.00") + Dec(L"-0.00")));
    EXPECT_FALSE(IsNegativeZero(CDecimal(-0.0) + Dec(L"-0")));
    const CMaxDecimalPlaces places(1);
    EXPECT_TRUE(IsNegativeZero(Dec(L"-0.01")));
}

TEST(DecimalSign, NegateFlipsBothPartsAndGetNegativeLeavesTheObject)
{
    CDecimal value(L"-1.25");
    EXPECT_EQ(value.GetNegative().ToString(), L"1.25");
    EXPECT_EQ(value.ToString(), L"-1.25");
    value.Negate();
    EXPECT_EQ(value.ToString(), L"1.25");
    value.Negate();
    EXPECT_EQ(value.ToString(), L"-1.25");
    EXPECT_EQ(Dec(L"0.5").GetNegative().ToString(), L"-0.5");
}

TEST(DecimalAdd, AddsAndSubtractsAllSigns)
{
    const SOperation cases[] = {{L"1.5", L"2.25", L"3.75"},
                                {L"0.5", L"0.5", L"1"},
                                {L"0.9", L"0.95", L"1.85"},
                                {L"-0.9", L"-0.95", L"-1.85"},
                                {L"5", L"-3.25", L"1.75"},
                                {L"-5", L"3.25", L"-1.75"},
                                {L"3.25", L"-5", L"-1.75"},
                                {L"0.25", L"-0.5", L"-0.25"},
                                {L"1.25", L"-1.25", L"0"},
                                {L"1", L"-0.25", L"0.75"},
                                {L"-1", L"0.25", L"-0.75"},
                                {L"0.1", L"0.2", L"0.3"},
                                {L"99999999999999999999.99", L"0.01", L"100000000000000000000"}};
    for (const SOperation& row : cases)
    {
        SCOPED_TRACE(::testing::Message() << row.lpctLeft << L" + " << row.lpctRight);
        CDecimal left(row.lpctLeft);
        const CDecimal right(row.lpctRight);
        EXPECT_EQ((left + right).ToString(), row.lpctExpected);
        EXPECT_EQ((left - right.GetNegative()).ToString(), row.lpctExpected);
        EXPECT_EQ(left.ToString(), row.lpctLeft);
        EXPECT_EQ(&(left += right), &left);
        EXPECT_EQ(left.ToString(), row.lpctExpected);
        left = CDecimal(row.lpctLeft);
        EXPECT_EQ(&(left -= right.GetNegative()), &left);
        EXPECT_EQ(left.ToString(), row.lpctExpected);
    }
}

TEST(DecimalAdd, KeepsAllPlacesOfItsOperands)
{
    CDecimal fine(L"0.123456");
    const CMaxDecimalPlaces places(2);
    EXPECT_EQ((fine + CDecimal(1)).ToString(), L"1.123456");
    EXPECT_EQ((fine * CDecimal(1)).ToString(), L"0.12");
    EXPECT_EQ((fine / CDecimal(1)).ToString(), L"0.12");
}

TEST(DecimalAdd, IncrementsAndDecrements)
{
    CDecimal value(L"-0.5");
    EXPECT_EQ((value++).ToString(), L"-0.5");
    EXPECT_EQ(value.ToString(), L"0.5");
    EXPECT_EQ(&++value, &value);
    EXPECT_EQ(value.ToString(), L"1.5");
    EXPECT_EQ((value--).ToString(), L"1.5");
    EXPECT_EQ(value.ToString(), L"0.5");
    EXPECT_EQ(&--value, &value);
    EXPECT_EQ(value.ToString(), L"-0.5");
}

TEST(DecimalAdd, WorksOnItself)
{
    CDecimal value(L"-1.75");
    const CDecimal& same = value;
    value += same;
    EXPECT_EQ(value.ToString(), L"-3.5");
    value *= same;
    EXPECT_EQ(value.ToString(), L"12.25");
    value /= same;
    EXPECT_EQ(value.ToString(), L"1");
    value -= same;
    EXPECT_EQ(value.ToString(), L"0");
}

TEST(DecimalMultiply, MultipliesExactlyUpToTheMaximumOfPlaces)
{
    const SOperation cases[] = {
        {L"1.5", L"2", L"3"},
        {L"-1.5", L"2.5", L"-3.75"},
        {L"-0.5", L"-0.5", L"0.25"},
        {L"0", L"-3", L"0"},
        {L"19.99", L"3", L"59.97"},
        {L"0.00000000000000000001", L"0.0000000001", L"0.000000000000000000000000000001"},
        {L"0.00000000000000000001", L"0.00000000006", L"0.000000000000000000000000000001"},
        {L"0.00000000000000000001", L"0.00000000005", L"0"},
        {L"123456789.123456789", L"987654321.987654321", L"121932631356500531.347203169112635269"}};
    for (const SOperation& row : cases)
    {
        SCOPED_TRACE(::testing::Message() << row.lpctLeft << L" * " << row.lpctRight);
        CDecimal value(row.lpctLeft);
        EXPECT_EQ((value * CDecimal(row.lpctRight)).ToString(), row.lpctExpected);
        EXPECT_EQ(&(value *= CDecimal(row.lpctRight)), &value);
        EXPECT_EQ(value.ToString(), row.lpctExpected);
    }
}

TEST(DecimalDivide, CutsTwoPlacesBehindTheMaximumAndRoundsThere)
{
    const std::wstring strThrees(30, L'3');
    const std::wstring strSixes(29, L'6');
    EXPECT_EQ((CDecimal(1) / CDecimal(3)).ToString(), L"0." + strThrees);
    EXPECT_EQ((CDecimal(2) / CDecimal(3)).ToString(), L"0." + strSixes + L"7");
    EXPECT_EQ((CDecimal(-2) / CDecimal(3)).ToString(), L"-0." + strSixes + L"7");
    EXPECT_EQ((CDecimal(-2) / CDecimal(-3)).ToString(), L"0." + strSixes + L"7");
    EXPECT_EQ((Dec(L"7.5") / Dec(L"0.25")).ToString(), L"30");
    EXPECT_EQ((Dec(L"0") / Dec(L"-0.25")).ToString(), L"0");
    EXPECT_EQ((Dec(L"1E-30") / Dec(L"1E20")).ToString(), L"0");
    CDecimal value(L"7.5");
    EXPECT_EQ(&(value /= CDecimal(2)), &value);
    EXPECT_EQ(value.ToString(), L"3.75");
}

TEST(DecimalDivide, RefusesAZeroDivisor)
{
    for (const wchar_t* lpctZero : {L"0", L"-0", L"0.00"})
    {
        CDecimal value(L"1.5");
        const CDecimal zero(lpctZero);
        EXPECT_EQ(FailureOf([&] { value / zero; }), L"ERROR: Overflow in operator/.");
        EXPECT_EQ(FailureOf([&] { value /= zero; }), L"ERROR: Overflow in operator/.");
        EXPECT_EQ(value.ToString(), L"1.5");
    }
}

TEST(DecimalToString, CutsATextWithAFractionAfter1024Characters)
{
    CDecimal large(L"1E1100");
    EXPECT_EQ(large.ToString().size(), 1101U);
    EXPECT_EQ((large + Dec(L"0.5")).ToString(), L"1" + std::wstring(1023, L'0'));
    CDecimal fitting(L"1E1021");
    EXPECT_EQ((fitting + Dec(L"0.5")).ToString(), L"1" + std::wstring(1021, L'0') + L".5");
    EXPECT_EQ((fitting + Dec(L"0.25")).ToString(), L"1" + std::wstring(1021, L'0') + L".2");
}

struct SPlaces
{
    const wchar_t* lpctText;
    int nPlaces;
    const wchar_t* lpctExpected;
};

TEST(DecimalToStringPlaces, RoundsTiesAwayFromZero)
{
    const SPlaces cases[] = {{L"1.005", 2, L"1.01"}, {L"-1.005", 2, L"-1.01"}, {L"1.004", 2, L"1.00"},
                             {L"1.234", 2, L"1.23"}, {L"-1.234", 2, L"-1.23"}, {L"1.5", 3, L"1.500"},
                             {L"0.004", 2, L"0.00"}, {L"-0.004", 2, L"-0.00"}, {L"-0.5", 1, L"-0.5"},
                             {L"12", 2, L"12.00"},   {L"0", 2, L"0.00"},       {L"-0", 2, L"-0.00"},
                             {L"0.05", 1, L"0.1"},   {L"-7.77", 1, L"-7.8"},   {L"1.0049", 3, L"1.005"}};
    for (const SPlaces& row : cases)
        EXPECT_EQ(CDecimal(row.lpctText).ToString(row.nPlaces), row.lpctExpected) << row.lpctText;
}

TEST(DecimalToStringPlaces, ZeroPlacesLeaveThePoint)
{
    const SPlaces cases[] = {{L"2.5", 0, L"3."}, {L"2.4", 0, L"2."}, {L"-2.5", 0, L"-3."}, {L"0", 0, L"0."}};
    for (const SPlaces& row : cases)
        EXPECT_EQ(CDecimal(row.lpctText).ToString(row.nPlaces), row.lpctExpected) << row.lpctText;
}

TEST(DecimalToStringPlaces, ZerosAtTheEndOfASumAreNotPrinted)
{
    const SPlaces cases[] = {{L"0.995", 2, L"1.0"}, {L"-0.995", 2, L"-1.0"}, {L"1.195", 2, L"1.2"}};
    for (const SPlaces& row : cases)
        EXPECT_EQ(CDecimal(row.lpctText).ToString(row.nPlaces), row.lpctExpected) << row.lpctText;
}

TEST(DecimalToStringPlaces, NegativePlacesWorkLikeZero)
{
    for (const int nPlaces : {-1, -2, -5, INT_MIN})
        EXPECT_EQ(Dec(L"2.5").ToString(nPlaces), L"3.");
}

TEST(DecimalToStringPlaces, NothingIsRoundedFromTheMaximumOfPlacesOn)
{
    {
        CDecimal sum = Dec(L"0.55");
        const CMaxDecimalPlaces places(1);
        EXPECT_EQ(sum.ToString(0), L"1.");
        EXPECT_EQ(sum.ToString(1), L"0.5");
    }
    EXPECT_EQ(Dec(L"1.5").ToString(29), L"1.5" + std::wstring(28, L'0'));
    EXPECT_EQ(Dec(L"1.5").ToString(30), L"1.5");
    EXPECT_EQ(Dec(L"-1.5").ToString(600), L"-1.5");
    EXPECT_EQ(Dec(L"-0").ToString(600), L"-0.0");
    EXPECT_EQ(Dec(L"-0.00").ToString(30), L"0.0");
    EXPECT_EQ(CDecimal(-0.0).ToString(30), L"0.0");
    EXPECT_EQ(CDecimal(-1e-14).ToString(31), L"0.0");
    EXPECT_EQ(Dec(L"1.5").ToString(INT_MAX), L"1.5");
}

TEST(DecimalToLongLong, CutsTheFraction)
{
    const std::pair<const wchar_t*, __int64> cases[] = {{L"2.5", 2},
                                                        {L"2.96", 2},
                                                        {L"1.96", 1},
                                                        {L"-1.96", -1},
                                                        {L"-0.99", 0},
                                                        {L"0", 0},
                                                        {L"9223372036854775807.99", LLONG_MAX},
                                                        {L"-9223372036854775808.99", LLONG_MIN},
                                                        {L"5000000000", 5000000000LL}};
    for (const auto& [lpctText, nExpected] : cases)
        EXPECT_EQ(CDecimal(lpctText).ToLongLong(), nExpected) << lpctText;
}

TEST(DecimalToLongLong, RefusesWhatDoesNotFit)
{
    for (const wchar_t* lpctText : {L"9223372036854775808", L"-9223372036854775809", L"1E100"})
        EXPECT_EQ(FailureOf<CQvOverFlowException>([=] { CDecimal(lpctText).ToLongLong(); }),
                  L"The Decimal value if to large to fit into a LONGLONG");
}

TEST(DecimalToLong, RoundsTiesTowardZeroUnlikeToLongLong)
{
    const std::pair<const wchar_t*, long> cases[] = {{L"2.5", 2},
                                                     {L"2.6", 3},
                                                     {L"2.51", 3},
                                                     {L"2.96", 3},
                                                     {L"-2.5", -2},
                                                     {L"-2.6", -3},
                                                     {L"-0.4", 0},
                                                     {L"-0.6", -1},
                                                     {L"0.999", 1},
                                                     {L"7", 7},
                                                     {L"2147483647.5", 2147483647L},
                                                     {L"-2147483648.5", -2147483647L - 1L}};
    for (const auto& [lpctText, nExpected] : cases)
        EXPECT_EQ(CDecimal(lpctText).ToLong(), nExpected) << lpctText;
}

TEST(DecimalToLong, RefusesWhatDoesNotFit32Bits)
{
    for (const wchar_t* lpctText : {L"2147483648", L"2147483647.6", L"-2147483649", L"-2147483648.6", L"1E100"})
        EXPECT_EQ(FailureOf<CQvOverFlowException>([=] { CDecimal(lpctText).ToLong(); }),
                  L"The Decimal value if to large to fit into a LONG");
}

TEST(DecimalToDouble, GivesTheNearestDouble)
{
    const std::pair<const wchar_t*, double> cases[] = {{L"0", 0.0},
                                                       {L"0.1", 0.1},
                                                       {L"-2.5", -2.5},
                                                       {L"1E23", 1e23},
                                                       {L"9007199254740993", 9007199254740992.0},
                                                       {L"9007199254740993.1", 9007199254740994.0},
                                                       {L"1.7E+308", 1.7e308},
                                                       {L"-1.7E+308", -1.7e308},
                                                       {L"1E-30", 1e-30}};
    for (const auto& [lpctText, dExpected] : cases)
        EXPECT_EQ(CDecimal(lpctText).ToDouble(), dExpected) << lpctText;
}

TEST(DecimalToDouble, RefusesAWholePartBeyondTheBounds)
{
    CDecimal largest(L"1.7E308");
    EXPECT_EQ((largest + Dec(L"0.5")).ToDouble(), 1.7e308);
    largest += CDecimal(1);
    for (const CDecimal& value : {largest, largest.GetNegative(), Dec(L"1.71E308"), Dec(L"2E308"), Dec(L"-1E309")})
        EXPECT_EQ(FailureOf<CQvOverFlowException>([&] { value.ToDouble(); }),
                  L"The Decimal value if to large to fit into a Double");
}

TEST(DecimalToDouble, GivesSubnormalNumbersAndASignedZeroBelowThem)
{
    const CMaxDecimalPlaces places(1000);
    EXPECT_EQ(Dec(L"1E-320").ToDouble(), 1e-320);
    EXPECT_EQ(Dec(L"1E-400").ToDouble(), 0.0);
    EXPECT_FALSE(std::signbit(Dec(L"1E-400").ToDouble()));
    EXPECT_EQ(Dec(L"-1E-400").ToDouble(), 0.0);
    EXPECT_TRUE(std::signbit(Dec(L"-1E-400").ToDouble()));
}

TEST(DecimalToBigInteger, RoundsTiesTowardZero)
{
    const SText cases[] = {{L"2.5", L"2"},    {L"2.51", L"3"},  {L"-2.5", L"-2"},
                           {L"-2.51", L"-3"}, {L"-0.6", L"-1"}, {L"99999999999999999999.6", L"100000000000000000000"}};
    for (const SText& row : cases)
        EXPECT_EQ(CDecimal(row.lpctText).ToBigInteger().ToString(), row.lpctExpected) << row.lpctText;
}

TEST(DecimalMaxPlaces, IsThirtyAndKeepsWhatItWasGiven)
{
    EXPECT_EQ(CDecimal::GetMaxDecimalPlaces(), 30);
    for (const int nPlaces : {0, 5, -3, INT_MIN, INT_MAX})
    {
        const CMaxDecimalPlaces places(nPlaces);
        EXPECT_EQ(CDecimal::GetMaxDecimalPlaces(), nPlaces);
    }
}

TEST(DecimalMaxPlaces, ZeroRoundsResultsToWholeNumbers)
{
    const CMaxDecimalPlaces places(0);
    EXPECT_EQ(Text(L"2.5"), L"2");
    EXPECT_EQ(Text(L"2.6"), L"3");
    EXPECT_EQ(Text(L"-0.6"), L"-1");
    EXPECT_EQ((CDecimal(7) / CDecimal(4)).ToString(), L"2");
    EXPECT_EQ((Dec(L"3") * Dec(L"4")).ToString(), L"12");
    EXPECT_EQ((Dec(L"3") + Dec(L"4")).ToString(), L"7");
    EXPECT_EQ((Dec(L"3") - Dec(L"4")).ToString(), L"-1");
    EXPECT_EQ(Text(L"15E-1"), L"1");
    EXPECT_EQ(Dec(L"5").ToString(2), L"5.0");
    EXPECT_EQ(Dec(L"5").ToLong(), 5);
    EXPECT_TRUE(Dec(L"5") == Dec(L"5.1"));
}

TEST(DecimalMaxPlaces, ANegativeNumberCutsResultsToWholeNumbers)
{
    for (const int nPlaces : {-1, -2, -3, -1000, INT_MIN})
    {
        const CMaxDecimalPlaces places(nPlaces);
        EXPECT_EQ(Text(L"2.99"), L"2");
        EXPECT_EQ(Text(L"-0.6"), L"0");
        EXPECT_EQ(Text(L"99E-1"), L"9");
        EXPECT_EQ((CDecimal(7) / CDecimal(4)).ToString(), L"1");
        EXPECT_EQ((Dec(L"3") * Dec(L"4")).ToString(), L"12");
        EXPECT_EQ((Dec(L"3") + Dec(L"4")).ToString(), L"7");
        EXPECT_EQ(Dec(L"5").ToString(2), L"5.0");
        EXPECT_TRUE(Dec(L"5.9") == Dec(L"5"));
    }
}

TEST(DecimalMaxPlaces, AHugeNumberWorksLikeTheLargestThatIsKept)
{
    EXPECT_EQ(CDecimal::MAX_DECIMAL_PLACES, 10000);
    for (const int nPlaces : {10000, 10001, INT_MAX})
    {
        const CMaxDecimalPlaces places(nPlaces);
        CDecimal third = CDecimal(1) / CDecimal(3);
        EXPECT_EQ(third.ToString(9999), L"0." + std::wstring(9999, L'3'));
        EXPECT_TRUE(third * CDecimal(3) < CDecimal(1));
        EXPECT_TRUE(third * Dec(L"3") + Dec(L"1E-10000") == CDecimal(1));
        EXPECT_EQ(Text(L"1E-10000").size(), 1024U);
    }
}

TEST(DecimalMaxPlaces, ValuesThatExistStayAsTheyAre)
{
    const CDecimal value(L"1.23456");
    const CMaxDecimalPlaces places(2);
    EXPECT_EQ(value.ToString(), L"1.23456");
    EXPECT_EQ(CDecimal(value).ToString(), L"1.23456");
    EXPECT_GT(value, Dec(L"1.23"));
}

TEST(DecimalStatics, ServeStaticObjectsOfOtherUnits)
{
    EXPECT_EQ(s_dEarly, -1.5);
    EXPECT_EQ(s_nEarly, LLONG_MAX);
}

/// A locale with a comma for a point and dots between thousands.
class CCommaPoint : public std::numpunct<char>
{
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(DecimalLocale, ChangesNothing)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CCommaPoint));
    // Not every machine has one of these; the facet above is there in any case.
    for (const char* lpcName : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"})
        static_cast<void>(std::setlocale(LC_ALL, lpcName));
    const std::wstring strDouble = CDecimal(1234567.25).ToString();
    const double dDouble = Dec(L"1234567.25").ToDouble();
    const std::wstring strPlaces = Dec(L"1234567.25").ToString(1);
    std::setlocale(LC_ALL, "C");
    std::locale::global(before);
    EXPECT_EQ(strDouble, L"1234567.25");
    EXPECT_EQ(dDouble, 1234567.25);
    EXPECT_EQ(strPlaces, L"1234567.3");
}

} // namespace
} // namespace QvXmlLib9
