#include "quiver/values/BigInteger.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/values/Decimal.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace QvXmlLib9
{
namespace
{

/// What a static object sees that is built before the library's own unit would be in plain link order.
const std::wstring s_strEarlyMaximum = CBigInteger::MAX_LONGLONG.ToString();
const std::wstring s_strEarlyMinimum = CBigInteger::MIN_DOUBLE.ToString();

/// Opens the routines on magnitudes, and makes numbers of sign and digits.
class CMagnitude : public CBigInteger
{
public:
    CMagnitude(int nSign, const std::vector<wchar_t>& digits)
        : CBigInteger(nSign, digits)
    {
    }

    using CBigInteger::Add;
    using CBigInteger::Build;
    using CBigInteger::BuildDouble;
    using CBigInteger::BuildDWORDLONG;
    using CBigInteger::Clean;
    using CBigInteger::Compare;
    using CBigInteger::Divide;
    using CBigInteger::Multiply;
    using CBigInteger::Position;
    using CBigInteger::Pow10;
    using CBigInteger::ShiftLeft;
    using CBigInteger::Subtract;
};

using CDigits = std::vector<wchar_t>;

/// The digits of a text, for expectations that read like numbers.
CDigits Digits(const std::wstring& strNumber)
{
    CDigits digits;
    for (auto it = strNumber.rbegin(); it != strNumber.rend(); ++it)
        digits.push_back(static_cast<wchar_t>(*it - L'0'));
    return digits;
}

CBigInteger Big(const std::wstring& strNumber)
{
    return CBigInteger(strNumber.c_str());
}

template <class TOperation>
std::wstring FailureOf(TOperation operation)
{
    try
    {
        operation();
    }
    catch (const CQvInvalidValueException& ex)
    {
        return ex.GetFullMessage();
    }
    return L"no CQvInvalidValueException";
}

std::wstring InvalidChar(const std::wstring& strPosition, const std::wstring& strText)
{
    return L"The string representing a Decimal, contained an invalid char at position " + strPosition + L" [" +
           strText + L"]";
}

bool IsNegativeZero(const CBigInteger& value)
{
    return value == CBigInteger(0) && value < CBigInteger(0);
}

struct SText
{
    const wchar_t* lpctText;
    const wchar_t* lpctExpected;
};

TEST(BigIntegerParse, ReadsPlainIntegers)
{
    const SText cases[] = {{L"0", L"0"},
                           {L"7", L"7"},
                           {L"-7", L"-7"},
                           {L"000123", L"123"},
                           {L"-000123", L"-123"},
                           {L"0000", L"0"},
                           {L"123456789012345678901234567890", L"123456789012345678901234567890"},
                           {L"-98765432109876543210", L"-98765432109876543210"}};
    for (const SText& row : cases)
        EXPECT_EQ(CBigInteger(row.lpctText).ToString(), row.lpctExpected) << row.lpctText;
}

TEST(BigIntegerParse, ReadsTheRunOfDigitsAtTheEnd)
{
    const SText cases[] = {{L"+12", L"12"},  {L"+7", L"7"},     {L"4 2", L"2"},  {L"12 34", L"34"},     {L"1-2", L"2"},
                           {L"-1-2", L"-2"}, {L"- 5", L"-5"},   {L"--5", L"-5"}, {L"-+5", L"-5"},       {L"+-5", L"5"},
                           {L"1\t2", L"2"},  {L"1\r\n2", L"2"}, {L"\n-5", L"5"}, {L"1 2 3 0045", L"45"}};
    for (const SText& row : cases)
        EXPECT_EQ(CBigInteger(row.lpctText).ToString(), row.lpctExpected) << row.lpctText;
}

TEST(BigIntegerParse, CutsBlanksAtBothEndsButNoOtherWhiteSpace)
{
    EXPECT_EQ(CBigInteger(L"  42  ").ToString(), L"42");
    EXPECT_EQ(CBigInteger(L"  -42  ").ToString(), L"-42");
    EXPECT_EQ(CBigInteger(L"\t42").ToString(), L"42");
    EXPECT_EQ(CBigInteger(L"42\t").ToString(), L"0");
}

TEST(BigIntegerParse, TakesTextWithoutDigitsAtTheEndForZero)
{
    for (const wchar_t* lpctText :
         {L"", L" ", L"   ", L"-", L" - ", L"+", L"--", L"12\n", L"12\r", L"5-", L"12 +", L"\n"})
    {
        EXPECT_EQ(CBigInteger(lpctText).ToString(), L"0") << lpctText;
        EXPECT_EQ(CBigInteger(lpctText), CBigInteger(0)) << lpctText;
        EXPECT_EQ((CBigInteger(lpctText) + CBigInteger(3)).ToString(), L"3") << lpctText;
    }
    EXPECT_TRUE(IsNegativeZero(CBigInteger(L"-")));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"")));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"5-")));
}

TEST(BigIntegerParse, TakesANullPointerForAnEmptyText)
{
    const wchar_t* const lpctNull = nullptr;
    EXPECT_EQ(CBigInteger(lpctNull).ToString(), L"0");
}

TEST(BigIntegerParse, RoundsADecimalTextWithTiesTowardZero)
{
    const SText cases[] = {{L"2.5", L"2"},     {L"2.6", L"3"},    {L"-2.5", L"-2"},  {L"-2.6", L"-3"},
                           {L"2.50001", L"3"}, {L"1E3", L"1000"}, {L"2e0", L"2"},    {L"25E-1", L"2"},
                           {L"26E-1", L"3"},   {L".", L"0"},      {L"1-2.0", L"-12"}};
    for (const SText& row : cases)
        EXPECT_EQ(CBigInteger(row.lpctText).ToString(), row.lpctExpected) << row.lpctText;
}

TEST(BigIntegerParse, RefusesOtherTextWithTheWordsOfDecimal)
{
    EXPECT_EQ(FailureOf([] { CBigInteger(L"abc"); }), InvalidChar(L"0", L"abc"));
    EXPECT_EQ(FailureOf([] { CBigInteger(L"12x"); }), InvalidChar(L"2", L"12x"));
    EXPECT_EQ(FailureOf([] { CBigInteger(L"1\u00A02"); }), InvalidChar(L"1", L"1\u00A02"));
    EXPECT_EQ(FailureOf([] { CBigInteger(L"\u0663"); }), InvalidChar(L"0", L"\u0663"));
}

TEST(BigIntegerParse, KeepsTheValueWhenATextIsRefused)
{
    CBigInteger value(77);
    EXPECT_THROW(value.Parse(L"7a"), CQvInvalidValueException);
    EXPECT_EQ(value.ToString(), L"77");
    value.Parse(L"-8");
    EXPECT_EQ(value.ToString(), L"-8");
    value.Parse(L"9");
    EXPECT_EQ(value.ToString(), L"9");
}

TEST(BigIntegerParse, ReadsPrintsAndComparesAHundredThousandDigits)
{
    const std::wstring strText = L"-1" + std::wstring(99999, L'7');
    const CBigInteger value(strText.c_str());
    EXPECT_EQ(value.ToString(), strText);
    EXPECT_EQ(value, Big(strText));
    EXPECT_LT(value, Big(L"-1" + std::wstring(99998, L'7') + L"6"));
    EXPECT_GT(value, Big(L"-1" + std::wstring(99998, L'7') + L"8"));
}

TEST(BigIntegerParse, RefusesALongTextThatIsNoPlainIntegerAtTheFirstDigitThatDoesNotFit)
{
    const std::wstring strText = std::wstring(100000, L'1') + L".5";
    EXPECT_EQ(FailureOf([&] { Big(strText); }), InvalidChar(L"512", strText));
}

TEST(BigIntegerParse, RefusesAnExponentThatWouldExhaustMemory)
{
    EXPECT_EQ(FailureOf([] { CBigInteger(L"1E2147483647"); }), InvalidChar(L"6", L"1E2147483647"));
    EXPECT_EQ(CBigInteger(L"1E-99999999").ToString(), L"0");
    EXPECT_EQ(CBigInteger(L"1E308").ToString(), L"1" + std::wstring(308, L'0'));
}

TEST(BigIntegerConstruct, IsZeroByDefault)
{
    const CBigInteger value;
    EXPECT_EQ(value.ToString(), L"0");
    EXPECT_EQ(value, CBigInteger(0));
    EXPECT_FALSE(value < CBigInteger(0));
}

TEST(BigIntegerConstruct, TakesTheWholeRangeOfInt)
{
    for (const int nValue : {0, 1, -1, 9, 10, 1234567, INT_MAX, INT_MIN, -INT_MAX})
        EXPECT_EQ(CBigInteger(nValue).ToString(), std::to_wstring(nValue));
}

TEST(BigIntegerConstruct, TakesTheWholeRangeOfInt64)
{
    for (const __int64 nValue : {0LL, 1LL, -1LL, 5000000000LL, -5000000000LL, LLONG_MAX, LLONG_MIN})
        EXPECT_EQ(CBigInteger(nValue).ToString(), std::to_wstring(nValue));
}

TEST(BigIntegerConstruct, RoundsADoubleWithHalvesDown)
{
    const std::pair<double, const wchar_t*> cases[] = {{0.0, L"0"},
                                                       {0.5, L"0"},
                                                       {0.51, L"1"},
                                                       {1.5, L"1"},
                                                       {2.5, L"2"},
                                                       {2.51, L"3"},
                                                       {-2.5, L"-2"},
                                                       {-2.51, L"-3"},
                                                       {-0.5, L"0"},
                                                       {1e3, L"1000"},
                                                       {4503599627370495.0, L"4503599627370495"},
                                                       {1e22, L"10000000000000000000000"}};
    for (const auto& [dValue, lpctExpected] : cases)
        EXPECT_EQ(CBigInteger(dValue).ToString(), lpctExpected) << dValue;
}

TEST(BigIntegerConstruct, KeepsTheSignOfADoubleThatRoundsToZero)
{
    EXPECT_TRUE(IsNegativeZero(CBigInteger(-0.3)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(-0.0)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(0.3)));
}

TEST(BigIntegerConstruct, GivesTheDigitsOfRepeatedDivisionForAHugeDouble)
{
    // Each division rounds, which shows in the digits beyond the precision of a double.
    EXPECT_EQ(CBigInteger(1e23).ToString(), L"100000000000000000000002");
    EXPECT_EQ(CBigInteger(4503599627370497.0).ToString(), L"4503599627370496");
    EXPECT_EQ(CBigInteger(std::numeric_limits<double>::max()).ToString(),
              L"179769313486231680088648464220646842686668242844028646442228680066046004606080400844208228060084840044"
              L"686866242482868202680268820402884062800406622428864666882406066422426822086680426404402040202424880224"
              L"808280820888844286620802664406086660842040886824002682662666864246642840408646468824200860804260804068"
              L"888");
}

TEST(BigIntegerConstruct, TakesNotANumberForZeroAndRefusesInfinity)
{
    EXPECT_EQ(CBigInteger(std::numeric_limits<double>::quiet_NaN()), CBigInteger(0));
    const double dInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(FailureOf([=] { CBigInteger value(dInfinity); }), InvalidChar(L"0", L"inf\n"));
    EXPECT_EQ(FailureOf([=] { CBigInteger value(-dInfinity); }), InvalidChar(L"1", L"-inf\n"));
}

TEST(BigIntegerConstruct, RoundsADecimalWithTiesTowardZero)
{
    EXPECT_EQ(CBigInteger(CDecimal(L"2.5")).ToString(), L"2");
    EXPECT_EQ(CBigInteger(CDecimal(L"-2.51")).ToString(), L"-3");
    EXPECT_TRUE(IsNegativeZero(CBigInteger(CDecimal(L"-0.5"))));
}

TEST(BigIntegerConstruct, CopiesAndMovesValueAndSign)
{
    const CBigInteger original(L"-123");
    CBigInteger copy(original);
    EXPECT_EQ(copy, original);
    CBigInteger moved(std::move(copy));
    EXPECT_EQ(moved, original);
    copy = original;
    EXPECT_EQ(copy.ToString(), L"-123");
    CBigInteger target(5);
    target = std::move(moved);
    EXPECT_EQ(target.ToString(), L"-123");
}

TEST(BigIntegerConstants, AreTheBoundsOfTheNumberTypes)
{
    EXPECT_EQ(CBigInteger::MAX_LONG.ToString(), L"2147483647");
    EXPECT_EQ(CBigInteger::MIN_LONG.ToString(), L"-2147483648");
    EXPECT_EQ(CBigInteger::MAX_LONGLONG.ToString(), L"9223372036854775807");
    EXPECT_EQ(CBigInteger::MIN_LONGLONG.ToString(), L"-9223372036854775808");
    EXPECT_EQ(CBigInteger::MAX_DOUBLE.ToString(), L"17" + std::wstring(307, L'0'));
    EXPECT_EQ(CBigInteger::MIN_DOUBLE.ToString(), L"-17" + std::wstring(307, L'0'));
}

TEST(BigIntegerConstants, AreThereForStaticObjectsOfOtherUnits)
{
    EXPECT_EQ(s_strEarlyMaximum, L"9223372036854775807");
    EXPECT_EQ(s_strEarlyMinimum, L"-17" + std::wstring(307, L'0'));
}

TEST(BigIntegerToString, PrintsAnyZeroWithoutASign)
{
    EXPECT_EQ(CBigInteger(L"-0").ToString(), L"0");
    EXPECT_EQ(CMagnitude(-1, {}).ToString(), L"0");
    EXPECT_EQ(CMagnitude(1, {}).ToString(), L"0");
}

TEST(BigIntegerCompare, OrdersBySignAndMagnitude)
{
    const std::vector<std::wstring> ascending = {L"-100000000000000000000",
                                                 L"-99999999999999999999",
                                                 L"-12",
                                                 L"-11",
                                                 L"-9",
                                                 L"-1",
                                                 L"0",
                                                 L"1",
                                                 L"9",
                                                 L"10",
                                                 L"11",
                                                 L"99999999999999999999",
                                                 L"100000000000000000000"};
    for (std::size_t nLeft = 0; nLeft < ascending.size(); ++nLeft)
    {
        for (std::size_t nRight = 0; nRight < ascending.size(); ++nRight)
        {
            const CBigInteger left = Big(ascending[nLeft]);
            const CBigInteger right = Big(ascending[nRight]);
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

TEST(BigIntegerCompare, NegativeZeroEqualsZeroAndIsOrderedBelowIt)
{
    const CBigInteger negative(L"-0");
    const CBigInteger zero(0);
    EXPECT_TRUE(negative == zero);
    EXPECT_FALSE(negative != zero);
    EXPECT_TRUE(negative < zero);
    EXPECT_TRUE(zero > negative);
    EXPECT_TRUE(negative <= zero);
    EXPECT_FALSE(negative >= zero);
    EXPECT_FALSE(zero <= negative);
    EXPECT_TRUE(negative > CBigInteger(-1));
    EXPECT_FALSE(negative < negative);
}

struct SOperation
{
    const wchar_t* lpctLeft;
    const wchar_t* lpctRight;
    const wchar_t* lpctExpected;
};

TEST(BigIntegerAdd, AddsAllSigns)
{
    const SOperation cases[] = {{L"0", L"0", L"0"},
                                {L"1", L"2", L"3"},
                                {L"999", L"1", L"1000"},
                                {L"1", L"999", L"1000"},
                                {L"-1", L"-2", L"-3"},
                                {L"5", L"-3", L"2"},
                                {L"3", L"-5", L"-2"},
                                {L"-3", L"5", L"2"},
                                {L"-1000", L"1", L"-999"},
                                {L"5", L"-5", L"0"},
                                {L"99999999999999999999", L"1", L"100000000000000000000"}};
    for (const SOperation& row : cases)
    {
        const CBigInteger left(row.lpctLeft);
        const CBigInteger right(row.lpctRight);
        SCOPED_TRACE(::testing::Message() << row.lpctLeft << L" + " << row.lpctRight);
        EXPECT_EQ((left + right).ToString(), row.lpctExpected);
        CBigInteger sum(left);
        EXPECT_EQ(&(sum += right), &sum);
        EXPECT_EQ(sum.ToString(), row.lpctExpected);
        EXPECT_EQ((left - right.GetNegative()).ToString(), row.lpctExpected);
        CBigInteger difference(left);
        EXPECT_EQ(&(difference -= right.GetNegative()), &difference);
        EXPECT_EQ(difference.ToString(), row.lpctExpected);
    }
}

TEST(BigIntegerAdd, EqualMagnitudesOfOppositeSignGiveThePlainZero)
{
    EXPECT_FALSE(IsNegativeZero(CBigInteger(-5) + CBigInteger(5)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(5) + CBigInteger(-5)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"-0") + CBigInteger(0)));
    EXPECT_TRUE(IsNegativeZero(CBigInteger(L"-0") + CBigInteger(L"-0")));
    EXPECT_TRUE(IsNegativeZero(CBigInteger(L"-0") - CBigInteger(0)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(-5) - CBigInteger(-5)));
}

TEST(BigIntegerAdd, WorksOnItself)
{
    CBigInteger value(L"-75");
    const CBigInteger& same = value;
    value += same;
    EXPECT_EQ(value.ToString(), L"-150");
    value -= same;
    EXPECT_EQ(value.ToString(), L"0");
    EXPECT_FALSE(IsNegativeZero(value));
}

TEST(BigIntegerMultiply, MultipliesAllSigns)
{
    const SOperation cases[] = {
        {L"0", L"5", L"0"},
        {L"3", L"4", L"12"},
        {L"-3", L"4", L"-12"},
        {L"-3", L"-4", L"12"},
        {L"100", L"2500", L"250000"},
        {L"999999999", L"999999999", L"999999998000000001"},
        {L"123456789012345678901234567890", L"987654321098765432109876543210",
         L"121932631137021795226185032733622923332237463801111263526900"},
        {L"99999999999999999999999999999999999999", L"9", L"899999999999999999999999999999999999991"}};
    for (const SOperation& row : cases)
    {
        SCOPED_TRACE(::testing::Message() << row.lpctLeft << L" * " << row.lpctRight);
        CBigInteger product = CBigInteger(row.lpctLeft) * CBigInteger(row.lpctRight);
        EXPECT_EQ(product.ToString(), row.lpctExpected);
        product = CBigInteger(row.lpctRight);
        EXPECT_EQ(&(product *= CBigInteger(row.lpctLeft)), &product);
        EXPECT_EQ(product.ToString(), row.lpctExpected);
    }
}

TEST(BigIntegerMultiply, ZeroCarriesTheProductOfTheSigns)
{
    EXPECT_TRUE(IsNegativeZero(CBigInteger(0) * CBigInteger(-5)));
    EXPECT_TRUE(IsNegativeZero(CBigInteger(L"-0") * CBigInteger(5)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"-0") * CBigInteger(-5)));
}

TEST(BigIntegerMultiply, WorksOnItself)
{
    CBigInteger value(L"-12345678901234567890");
    value *= value;
    EXPECT_EQ(value.ToString(), L"152415787532388367501905199875019052100");
}

TEST(BigIntegerDivide, CutsTowardZero)
{
    const SOperation cases[] = {{L"7", L"2", L"3"},
                                {L"-7", L"2", L"-3"},
                                {L"7", L"-2", L"-3"},
                                {L"-7", L"-2", L"3"},
                                {L"1", L"2", L"0"},
                                {L"0", L"-2", L"0"},
                                {L"6", L"6", L"1"},
                                {L"123456", L"1000", L"123"},
                                {L"100000000000000000000000000000", L"3", L"33333333333333333333333333333"},
                                {L"100000000000000000000000000000", L"7000000000000", L"14285714285714285"},
                                {L"121932631137021795226185032733622923332237463801111263526900",
                                 L"987654321098765432109876543210", L"123456789012345678901234567890"}};
    for (const SOperation& row : cases)
    {
        EXPECT_EQ((CBigInteger(row.lpctLeft) / CBigInteger(row.lpctRight)).ToString(), row.lpctExpected)
            << row.lpctLeft << L" / " << row.lpctRight;
    }
}

TEST(BigIntegerDivide, AZeroQuotientCarriesASignButNotThatOfAZeroDividend)
{
    EXPECT_TRUE(IsNegativeZero(CBigInteger(-1) / CBigInteger(2)));
    EXPECT_TRUE(IsNegativeZero(CBigInteger(1) / CBigInteger(-2)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"-0") / CBigInteger(2)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(0) / CBigInteger(-2)));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"-0") % CBigInteger(2)));
    EXPECT_TRUE(IsNegativeZero(CBigInteger(-4) % CBigInteger(2)));
}

TEST(BigIntegerDivide, RefusesAZeroDivisor)
{
    const wchar_t* const lpctMessage = L"ERROR: Overflow in operator/.";
    EXPECT_EQ(FailureOf([] { CBigInteger(1) / CBigInteger(0); }), lpctMessage);
    EXPECT_EQ(FailureOf([] { CBigInteger(0) / CBigInteger(0); }), lpctMessage);
    EXPECT_EQ(FailureOf([] { CBigInteger(1) / CBigInteger(L"-0"); }), lpctMessage);
}

TEST(BigIntegerDivide, RemainderTakesTheSignOfTheDividend)
{
    const SOperation cases[] = {{L"7", L"2", L"1"},
                                {L"-7", L"2", L"-1"},
                                {L"0", L"2", L"0"},
                                {L"1", L"2", L"1"},
                                {L"123456", L"1000", L"456"},
                                {L"100000", L"1000", L"0"},
                                {L"-123456789012345678901234567890", L"1000000007", L"-197434842"}};
    for (const SOperation& row : cases)
    {
        SCOPED_TRACE(::testing::Message() << row.lpctLeft << L" % " << row.lpctRight);
        CBigInteger value(row.lpctLeft);
        EXPECT_EQ((value % CBigInteger(row.lpctRight)).ToString(), row.lpctExpected);
        EXPECT_EQ(&(value %= CBigInteger(row.lpctRight)), &value);
        EXPECT_EQ(value.ToString(), row.lpctExpected);
    }
}

TEST(BigIntegerDivide, RemainderRefusesANegativeDivisor)
{
    EXPECT_EQ(FailureOf([] { CBigInteger(7) % CBigInteger(-2); }), L"ERROR: Overflow in operator%.");
    EXPECT_EQ(FailureOf([] { CBigInteger(0) % CBigInteger(-2); }), L"ERROR: Overflow in operator%.");
    EXPECT_EQ(FailureOf([] { CBigInteger(7) %= CBigInteger(-2); }), L"ERROR: Overflow in operator%=.");
}

TEST(BigIntegerDivide, RemainderRefusesAZeroDivisor)
{
    EXPECT_EQ(FailureOf([] { CBigInteger(7) % CBigInteger(0); }), L"ERROR: Overflow in operator%.");
    EXPECT_EQ(FailureOf([] { CBigInteger(7) % CBigInteger(L"-0"); }), L"ERROR: Overflow in operator%.");
    EXPECT_EQ(FailureOf([] { CBigInteger(7) %= CBigInteger(0); }), L"ERROR: Overflow in operator%=.");
}

TEST(BigIntegerDivide, AssigningQuotientRefusesANegativeDivisorWhichTheBinaryOneAccepts)
{
    CBigInteger value(7);
    EXPECT_EQ(FailureOf([&] { value /= CBigInteger(-2); }), L"ERROR: Overflow in operator /=.");
    EXPECT_EQ(value.ToString(), L"7");
    EXPECT_EQ(FailureOf([&] { value /= CBigInteger(0); }), L"ERROR: Overflow in operator /=.");
    EXPECT_EQ(&(value /= CBigInteger(2)), &value);
    EXPECT_EQ(value.ToString(), L"3");
    EXPECT_EQ((value / CBigInteger(-2)).ToString(), L"-1");
}

TEST(BigIntegerDivide, AssigningAndRemainderGiveZeroForZeroByZero)
{
    CBigInteger zero(0);
    EXPECT_EQ((zero % CBigInteger(0)).ToString(), L"0");
    EXPECT_EQ((zero %= CBigInteger(0)).ToString(), L"0");
    EXPECT_EQ((zero /= CBigInteger(0)).ToString(), L"0");
}

TEST(BigIntegerDivide, WorksOnItself)
{
    CBigInteger value(L"-123456789012345678901234567890");
    CBigInteger positive = value.GetAbs();
    EXPECT_EQ((value / value).ToString(), L"1");
    const CBigInteger& same = positive;
    positive /= same;
    EXPECT_EQ(positive.ToString(), L"1");
    positive %= same;
    EXPECT_EQ(positive.ToString(), L"0");
}

TEST(BigIntegerSign, UnaryMinusChangesTheObjectItself)
{
    CBigInteger value(5);
    EXPECT_EQ(&-value, &value);
    EXPECT_EQ(value.ToString(), L"-5");
    -value;
    EXPECT_EQ(value.ToString(), L"5");
}

TEST(BigIntegerSign, NegateAndAbsChangeTheObjectAndTheirGettersDoNot)
{
    CBigInteger value(5);
    value.Negate();
    EXPECT_EQ(value.ToString(), L"-5");
    EXPECT_EQ(value.GetNegative().ToString(), L"5");
    EXPECT_EQ(value.GetAbs().ToString(), L"5");
    EXPECT_EQ(value.ToString(), L"-5");
    value.Abs();
    value.Abs();
    EXPECT_EQ(value.ToString(), L"5");
    EXPECT_TRUE(IsNegativeZero(CBigInteger(0).GetNegative()));
    EXPECT_FALSE(IsNegativeZero(CBigInteger(L"-0").GetAbs()));
}

TEST(BigIntegerConvert, IntHasItsWholeRange)
{
    for (const int nValue : {0, 7, -7, INT_MAX, INT_MIN})
        EXPECT_EQ(static_cast<int>(CBigInteger(nValue)), nValue);
    for (const wchar_t* lpctText : {L"2147483648", L"-2147483649", L"100000000000000000000", L"-99999999999999999999"})
        EXPECT_EQ(FailureOf([=] { static_cast<void>(static_cast<int>(CBigInteger(lpctText))); }),
                  L"ERROR: Value out of bound of int.");
    EXPECT_EQ(static_cast<int>(CMagnitude(1, {})), 0);
}

TEST(BigIntegerConvert, Int64IsExactUpTo4999999999)
{
    for (const __int64 nValue : {0LL, 9LL, -9LL, 4294967296LL, 4999999999LL, -4999999999LL})
        EXPECT_EQ(static_cast<__int64>(CBigInteger(nValue)), nValue);
}

TEST(BigIntegerConvert, Int64WrapsPowersAndProductsAt32BitsAbove4999999999)
{
    const std::pair<__int64, __int64> cases[] = {{5000000000LL, 705032704LL},   {-5000000000LL, -705032704LL},
                                                 {9999999999LL, 1410065407LL},  {10000000000LL, 1410065408LL},
                                                 {50000000000LL, 2755359744LL}, {100000000000LL, 1215752192LL}};
    for (const auto& [nValue, nExpected] : cases)
        EXPECT_EQ(static_cast<__int64>(CBigInteger(nValue)), nExpected) << nValue;
}

TEST(BigIntegerConvert, Int64RefusesWhatDoesNotFit)
{
    for (const wchar_t* lpctText : {L"9223372036854775808", L"-9223372036854775809", L"100000000000000000000"})
        EXPECT_EQ(FailureOf([=] { static_cast<void>(static_cast<__int64>(CBigInteger(lpctText))); }),
                  L"ERROR: Value out of bound of LONGLONG.");
    // They fit, and wrap nevertheless (docs/compatibility.md: Big integers as 64 bits).
    EXPECT_EQ(static_cast<__int64>(CBigInteger::MIN_LONGLONG), -25769803776LL);
    EXPECT_EQ(static_cast<__int64>(CBigInteger::MAX_LONGLONG), 25769803775LL);
}

TEST(BigIntegerSquareRoot, IsTheFloorOfTheRoot)
{
    const SText cases[] = {{L"1", L"1"},
                           {L"2", L"1"},
                           {L"3", L"1"},
                           {L"4", L"2"},
                           {L"15", L"3"},
                           {L"16", L"4"},
                           {L"17", L"4"},
                           {L"99", L"9"},
                           {L"100", L"10"},
                           {L"9999", L"99"},
                           {L"10000", L"100"},
                           {L"15241578753238836750190519987501905210", L"3904046458898617762"},
                           {L"152415787532388367501905199875019052100", L"12345678901234567890"},
                           {L"152415787532388367501905199875019052099", L"12345678901234567889"}};
    for (const SText& row : cases)
        EXPECT_EQ(CBigInteger(row.lpctText).SquareRoot().ToString(), row.lpctExpected) << row.lpctText;
}

TEST(BigIntegerSquareRoot, RefusesANegativeNumber)
{
    const wchar_t* const lpctMessage = L"ERROR: Negative Number in function SquareRoot().";
    EXPECT_EQ(FailureOf([] { CBigInteger(-1).SquareRoot(); }), lpctMessage);
    EXPECT_EQ(FailureOf([] { CBigInteger(L"-0").SquareRoot(); }), lpctMessage);
}

TEST(BigIntegerSquareRoot, OfZeroFailsInTheDivision)
{
    EXPECT_EQ(FailureOf([] { CBigInteger(0).SquareRoot(); }), L"ERROR: Overflow in operator/.");
}

TEST(BigIntegerPow10, IsAOneWithZeros)
{
    EXPECT_EQ(CBigInteger::Pow10(0).ToString(), L"1");
    EXPECT_EQ(CBigInteger::Pow10(3).ToString(), L"1000");
    EXPECT_EQ(CBigInteger::Pow10(50).ToString(), L"1" + std::wstring(50, L'0'));
}

TEST(BigIntegerMagnitude, BuildsFromNumbersTextAndDoubles)
{
    CDigits digits = {9, 9, 9, 9};
    CMagnitude::Build(0U, digits);
    EXPECT_EQ(digits, Digits(L"0"));
    CMagnitude::Build(UINT_MAX, digits);
    EXPECT_EQ(digits, Digits(L"4294967295"));
    CMagnitude::BuildDWORDLONG(ULLONG_MAX, digits);
    EXPECT_EQ(digits, Digits(L"18446744073709551615"));
    CMagnitude::BuildDouble(12.5, digits);
    EXPECT_EQ(digits, Digits(L"12"));
    CMagnitude::Build(std::wstring(L"99x0042"), digits);
    EXPECT_EQ(digits, Digits(L"42"));
    CMagnitude::Build(std::wstring(L"42x"), digits);
    EXPECT_EQ(digits, Digits(L"0"));
}

TEST(BigIntegerMagnitude, CleanRemovesHighZerosAndLeavesOneDigit)
{
    const std::pair<CDigits, CDigits> cases[] = {
        {{}, {0}}, {{0}, {0}}, {{0, 0, 0}, {0}}, {{1, 0, 2, 0, 0}, {1, 0, 2}}, {{5}, {5}}};
    for (const auto& [given, expected] : cases)
    {
        CDigits digits = given;
        CMagnitude::Clean(digits);
        EXPECT_EQ(digits, expected);
    }
}

TEST(BigIntegerMagnitude, CompareGivesOneZeroOrMinusOne)
{
    EXPECT_EQ(CMagnitude::Compare(Digits(L"10"), Digits(L"9")), 1);
    EXPECT_EQ(CMagnitude::Compare(Digits(L"9"), Digits(L"10")), -1);
    EXPECT_EQ(CMagnitude::Compare(Digits(L"219"), Digits(L"228")), -1);
    EXPECT_EQ(CMagnitude::Compare(Digits(L"228"), Digits(L"219")), 1);
    EXPECT_EQ(CMagnitude::Compare(Digits(L"228"), Digits(L"228")), 0);
}

TEST(BigIntegerMagnitude, ResultsMayReplaceAnOperand)
{
    CDigits a = Digits(L"95");
    CDigits b = Digits(L"1005");
    CMagnitude::Add(a, b, a);
    EXPECT_EQ(a, Digits(L"1100"));
    CMagnitude::Subtract(a, b, b);
    EXPECT_EQ(b, Digits(L"95"));
    CMagnitude::Multiply(b, 7, b);
    EXPECT_EQ(b, Digits(L"665"));
    CMagnitude::Multiply(b, b, b);
    EXPECT_EQ(b, Digits(L"442225"));
    CMagnitude::Divide(b, a, a, b);
    EXPECT_EQ(a, Digits(L"402"));
    EXPECT_EQ(b, Digits(L"25"));
}

TEST(BigIntegerMagnitude, MultipliesByADigit)
{
    CDigits out;
    CMagnitude::Multiply(Digits(L"98"), 0, out);
    EXPECT_EQ(out, Digits(L"0"));
    CMagnitude::Multiply(Digits(L"98"), 1, out);
    EXPECT_EQ(out, Digits(L"98"));
    CMagnitude::Multiply(Digits(L"98"), 9, out);
    EXPECT_EQ(out, Digits(L"882"));
}

TEST(BigIntegerMagnitude, ShiftsAndCountsDigits)
{
    CDigits digits = Digits(L"12");
    CMagnitude::ShiftLeft(digits, 3);
    EXPECT_EQ(digits, Digits(L"12000"));
    CMagnitude::ShiftLeft(digits, 0);
    CMagnitude::ShiftLeft(digits, -1);
    EXPECT_EQ(digits, Digits(L"12000"));
    EXPECT_EQ(CMagnitude::Position(digits), 5);
    EXPECT_EQ(CMagnitude::Position({}), 1);
    CMagnitude::Pow10(4, digits);
    EXPECT_EQ(digits, Digits(L"10000"));
}

TEST(BigIntegerMagnitude, DivideByZeroGivesZeroAndTheDividend)
{
    CDigits quotient;
    CDigits remainder;
    CMagnitude::Divide(Digits(L"17"), Digits(L"0"), quotient, remainder);
    EXPECT_EQ(quotient, Digits(L"0"));
    EXPECT_EQ(remainder, Digits(L"17"));
}

TEST(BigIntegerMagnitude, AnEmptyVectorCountsAsZeroInEveryOperation)
{
    const CMagnitude empty(1, {});
    const CBigInteger seven(7);
    EXPECT_EQ((empty + seven).ToString(), L"7");
    EXPECT_EQ((empty - seven).ToString(), L"-7");
    EXPECT_EQ((empty * seven).ToString(), L"0");
    EXPECT_EQ((empty / seven).ToString(), L"0");
    EXPECT_EQ((empty % seven).ToString(), L"0");
    EXPECT_THROW(seven / empty, CQvInvalidValueException);
    EXPECT_TRUE(empty < seven);
}

} // namespace
} // namespace QvXmlLib9
