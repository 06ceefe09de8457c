// Random numbers, calculated by CBigInteger and CDecimal and again by a plain model of their rules over GMP. The model
// favours being obviously right: every rule is a line or two on whole numbers, at whatever cost.

#include "quiver/foundation/Exceptions.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/Decimal.h"
#include "tests/support/NearestDouble.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace QvXmlLib9
{
namespace
{

std::wstring Widen(const std::string& str)
{
    return std::wstring(str.begin(), str.end());
}

mpz_class PowerOfTen(unsigned long nExponent)
{
    mpz_class power;
    mpz_ui_pow_ui(power.get_mpz_t(), 10, nExponent);
    return power;
}

/// A sign and a magnitude, so that zero has a sign too.
struct SModelInteger
{
    int nSign = 1;
    mpz_class magnitude;

    SModelInteger() = default;
    SModelInteger(int nSignOf, const mpz_class& magnitudeOf)
        : nSign(nSignOf)
        , magnitude(magnitudeOf)
    {
    }
    explicit SModelInteger(const mpz_class& value)
        : nSign(value < 0 ? -1 : 1)
        , magnitude(abs(value))
    {
    }

    bool IsZero() const { return magnitude == 0; }
    mpz_class Value() const { return nSign * magnitude; }
    std::wstring Text() const { return Widen(Value().get_str()); }
    SModelInteger Negated() const { return {-nSign, magnitude}; }
};

SModelInteger operator+(const SModelInteger& a, const SModelInteger& b)
{
    return a.nSign == b.nSign ? SModelInteger(a.nSign, a.magnitude + b.magnitude)
                              : SModelInteger(a.Value() + b.Value());
}

SModelInteger operator*(const SModelInteger& a, const SModelInteger& b)
{
    return {a.nSign * b.nSign, a.magnitude * b.magnitude};
}

SModelInteger Quotient(const SModelInteger& a, const SModelInteger& b)
{
    return a.IsZero() ? SModelInteger() : SModelInteger(a.nSign * b.nSign, a.magnitude / b.magnitude);
}

SModelInteger Remainder(const SModelInteger& a, const SModelInteger& b)
{
    return a.IsZero() ? SModelInteger() : SModelInteger(a.nSign, a.magnitude % b.magnitude);
}

bool IsBelow(const SModelInteger& a, const SModelInteger& b)
{
    return a.nSign != b.nSign ? a.nSign < b.nSign : a.Value() < b.Value();
}

bool AreEqual(const SModelInteger& a, const SModelInteger& b)
{
    return a.Value() == b.Value();
}

bool IsAtMost(const SModelInteger& a, const SModelInteger& b)
{
    return !IsBelow(b, a);
}

/// Whole part and fraction as CDecimal keeps them, each with a sign that zero has too.
struct SModelDecimal
{
    SModelInteger whole;
    SModelInteger fraction;
    int nDivider = 1;

    bool IsZero() const { return whole.IsZero() && fraction.IsZero(); }

    void Negate()
    {
        whole = whole.Negated();
        fraction = fraction.Negated();
    }

    void Rationalise()
    {
        for (; nDivider > 1 && fraction.magnitude % 10 == 0; --nDivider)
            fraction = Quotient(fraction, SModelInteger(10));
    }

    void ChangeFractionalDivider(int nPlaces)
    {
        if (nDivider <= nPlaces)
        {
            fraction.magnitude *= PowerOfTen(static_cast<unsigned long>(nPlaces - nDivider));
            nDivider = nPlaces;
            return;
        }
        const mpz_class power = PowerOfTen(static_cast<unsigned long>(nDivider - nPlaces));
        const bool bRoundUp = fraction.magnitude % power > power / 2;
        const SModelInteger carry(fraction.nSign, 1);
        fraction = Quotient(fraction, SModelInteger(power));
        nDivider = nPlaces;
        SModelInteger& part = nDivider == 0 ? whole : fraction;
        if (bRoundUp)
            part = part + carry;
    }

    void Limit()
    {
        if (nDivider > CDecimal::GetMaxDecimalPlaces())
            ChangeFractionalDivider(CDecimal::GetMaxDecimalPlaces());
    }

    std::wstring FractionText() const
    {
        const std::wstring strDigits = Widen(fraction.magnitude.get_str());
        const std::size_t nPlaces = static_cast<std::size_t>(nDivider);
        return std::wstring(nPlaces > strDigits.size() ? nPlaces - strDigits.size() : 0, L'0') + strDigits;
    }

    std::wstring Text() const
    {
        if (fraction.IsZero())
            return whole.Text();
        return (whole.nSign < 0 ? L"-" : L"") + Widen(whole.magnitude.get_str()) + L"." + FractionText();
    }
};

int Normalize(SModelDecimal& a, SModelDecimal& b)
{
    const int nDivider = std::max(a.nDivider, b.nDivider);
    a.ChangeFractionalDivider(nDivider);
    b.ChangeFractionalDivider(nDivider);
    return nDivider;
}

SModelDecimal operator+(SModelDecimal a, SModelDecimal b)
{
    const int nDivider = Normalize(a, b);
    const mpz_class limit = PowerOfTen(static_cast<unsigned long>(nDivider));
    SModelInteger f = a.fraction + b.fraction;
    SModelInteger w = a.whole + b.whole;
    const auto moveUnit = [&](int nSign)
    {
        f = f + SModelInteger(mpz_class(-nSign * limit));
        w = w + SModelInteger(mpz_class(nSign));
    };
    while (f.Value() >= limit)
        moveUnit(1);
    while (f.Value() <= -limit)
        moveUnit(-1);
    if (w.Value() > 0 && f.Value() < 0)
        moveUnit(-1);
    if (w.Value() < 0 && f.Value() > 0)
        moveUnit(1);
    if (w.IsZero())
        w.nSign = f.nSign;
    SModelDecimal sum{w, f, nDivider};
    sum.Rationalise();
    return sum;
}

SModelDecimal FromScaled(const SModelInteger& scaled, int nDivider)
{
    const SModelInteger power(PowerOfTen(static_cast<unsigned long>(nDivider)));
    SModelDecimal result{Quotient(scaled, power), Remainder(scaled, power), nDivider};
    result.Rationalise();
    result.Limit();
    return result;
}

SModelDecimal operator*(SModelDecimal a, SModelDecimal b)
{
    const int nDivider = Normalize(a, b);
    const SModelInteger p1(PowerOfTen(static_cast<unsigned long>(nDivider)));
    const SModelInteger p2(PowerOfTen(static_cast<unsigned long>(2 * nDivider)));
    return FromScaled(a.whole * b.whole * p2 + a.whole * b.fraction * p1 + a.fraction * b.whole * p1 +
                          a.fraction * b.fraction,
                      2 * nDivider);
}

SModelDecimal operator/(SModelDecimal a, SModelDecimal b)
{
    const int nDivider = Normalize(a, b);
    const int nPlaces = CDecimal::GetMaxDecimalPlaces() + 2;
    const SModelInteger p1(PowerOfTen(static_cast<unsigned long>(nDivider)));
    const SModelInteger p2(PowerOfTen(static_cast<unsigned long>(nPlaces)));
    return FromScaled(Quotient((p1 * a.whole + a.fraction) * p2, p1 * b.whole + b.fraction), nPlaces);
}

/// `compare` decides on the fractions where the whole parts are equal.
template <class TCompare>
bool IsOrdered(SModelDecimal a, SModelDecimal b, TCompare compare)
{
    Normalize(a, b);
    // Only in a number that is zero does a fraction of zero count with its sign.
    for (SModelDecimal* p : {&a, &b})
    {
        if (p->fraction.IsZero() && !p->IsZero())
            p->fraction.nSign = 1;
    }
    return IsBelow(a.whole, b.whole) || (AreEqual(a.whole, b.whole) && compare(a.fraction, b.fraction));
}

bool IsBelow(const SModelDecimal& a, const SModelDecimal& b)
{
    return IsOrdered(a, b, [](const SModelInteger& x, const SModelInteger& y) { return IsBelow(x, y); });
}

bool IsAtMost(const SModelDecimal& a, const SModelDecimal& b)
{
    return IsOrdered(a, b, [](const SModelInteger& x, const SModelInteger& y) { return IsAtMost(x, y); });
}

bool AreEqual(SModelDecimal a, SModelDecimal b)
{
    Normalize(a, b);
    return AreEqual(a.whole, b.whole) && AreEqual(a.fraction, b.fraction);
}

mpz_class DigitsValue(const std::wstring& strDigits)
{
    return strDigits.empty() ? mpz_class(0) : mpz_class(std::string(strDigits.begin(), strDigits.end()), 10);
}

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

bool IsIn(wchar_t c, const std::wstring& strSet)
{
    return strSet.find(c) != std::wstring::npos;
}

/// The value of a text, or nothing, and then the position where it fails.
std::optional<SModelDecimal> ModelParse(const std::wstring& strText, std::size_t& nPosition)
{
    const std::wstring strSpace = L" \t\r\n";
    const auto charAt = [&](std::size_t nAt)
    {
        return nAt < strText.size() ? strText[nAt] : L'\0';
    };
    std::wstring strWhole;
    std::wstring strFraction;
    std::wstring strExponent;
    wchar_t cSign = L'+';
    wchar_t cExponentSign = L'+';
    std::size_t& n = nPosition;
    for (n = 0; IsDigit(charAt(n)) || IsIn(charAt(n), L"+-" + strSpace); ++n)
    {
        if (IsDigit(charAt(n)))
            strWhole += charAt(n);
        else if (!IsIn(charAt(n), strSpace))
            cSign = charAt(n);
    }
    if (charAt(n) == L'.')
    {
        for (++n; IsDigit(charAt(n)) || IsIn(charAt(n), strSpace); ++n)
            if (IsDigit(charAt(n)))
                strFraction += charAt(n);
    }
    if (IsIn(charAt(n), L"eE"))
    {
        for (++n; IsIn(charAt(n), L"+-" + strSpace); ++n)
            if (!IsIn(charAt(n), strSpace))
                cExponentSign = charAt(n);
        for (; IsDigit(charAt(n)); ++n)
            strExponent += charAt(n);
    }
    if (n < strText.size())
        return std::nullopt;

    const int nPlaces = std::max(static_cast<int>(strFraction.size()), 1);
    SModelDecimal value{SModelInteger(DigitsValue(strWhole)), SModelInteger(DigitsValue(strFraction)), nPlaces};
    if (cSign == L'-')
        value.Negate();
    if (!strExponent.empty())
    {
        SModelDecimal scale;
        scale.whole = SModelInteger(PowerOfTen(DigitsValue(strExponent).get_ui()));
        value = cExponentSign == L'-' ? value / scale : value * scale;
    }
    value.Rationalise();
    value.Limit();
    return value;
}

SModelDecimal ModelOf(const std::wstring& strText)
{
    std::size_t nPosition = 0;
    return ModelParse(strText, nPosition).value();
}

std::wstring ModelToString(SModelDecimal value, int nPlaces)
{
    const std::wstring strHalf = std::wstring(value.whole.nSign < 0 ? L"-" : L"") + L"0." +
                                 std::wstring(static_cast<std::size_t>(nPlaces), L'0') + L"5";
    const SModelDecimal sum = ModelOf(strHalf) + value;
    return (sum.whole.nSign < 0 ? L"-" : L"") + Widen(sum.whole.magnitude.get_str()) + L"." +
           sum.FractionText().substr(0, static_cast<std::size_t>(nPlaces));
}

SModelInteger ModelToInteger(SModelDecimal value)
{
    value.ChangeFractionalDivider(0);
    return value.whole;
}

/// The value of a text as CBigInteger reads it, or nothing.
std::optional<SModelInteger> ModelParseInteger(const std::wstring& strText)
{
    if (strText.find_first_not_of(L"0123456789-+ \n\r\t") != std::wstring::npos)
    {
        std::size_t nPosition = 0;
        const std::optional<SModelDecimal> value = ModelParse(strText, nPosition);
        return value ? std::optional<SModelInteger>(ModelToInteger(*value)) : std::nullopt;
    }
    const std::size_t nFirst = strText.find_first_not_of(L' ');
    if (nFirst == std::wstring::npos)
        return SModelInteger();
    const std::wstring strCut = strText.substr(nFirst, strText.find_last_not_of(L' ') - nFirst + 1);
    std::size_t nRun = strCut.size();
    while (nRun > 0 && IsDigit(strCut[nRun - 1]))
        --nRun;
    return SModelInteger(strCut[0] == L'-' ? -1 : 1, DigitsValue(strCut.substr(nRun)));
}

/// Makes numbers whose digits are likely to meet the corners of the algorithms.
class CNumberMaker
{
public:
    std::size_t Below(std::size_t nLimit) { return static_cast<std::size_t>(m_random() % nLimit); }

    std::wstring Digits(std::size_t nCount)
    {
        std::wstring strDigits;
        while (strDigits.size() < nCount)
            strDigits += Run(1 + Below(12));
        strDigits.resize(nCount);
        return strDigits;
    }

    std::wstring Sign() { return Below(2) == 0 ? L"-" : L""; }

    /// Mostly as short as the numbers of documents, at times much longer.
    std::size_t Length()
    {
        const std::size_t nKind = Below(20);
        if (nKind == 0)
            return 1 + Below(400);
        return 1 + Below(nKind < 8 ? 60 : 20);
    }

    std::wstring Integer() { return Sign() + Digits(Length()); }

    std::wstring Decimal() { return Sign() + Digits(Below(30)) + L"." + Digits(Below(45)); }

    /// Characters that numbers are made of, in any order.
    std::wstring NearlyNumber()
    {
        static const std::wstring strAlphabet = L"0011223456789999  --++..eE\t\r\nx";
        std::wstring strText;
        for (std::size_t nLeft = Below(12); nLeft > 0; --nLeft)
            strText += strAlphabet[Below(strAlphabet.size())];
        return strText;
    }

private:
    std::wstring Run(std::size_t nCount)
    {
        switch (Below(5))
        {
        case 0:
            return std::wstring(nCount, L'0');
        case 1:
            return std::wstring(nCount, L'9');
        case 2:
            return L"5" + std::wstring(nCount - 1, L'0');
        default:
            std::wstring strRun;
            while (strRun.size() < nCount)
                strRun += static_cast<wchar_t>(L'0' + Below(10));
            return strRun;
        }
    }

    std::mt19937_64 m_random{20110911};
};

template <class TNumber, class TModel>
void ExpectSame(const TNumber& actual, const TModel& expected, const char* lpcWhat)
{
    EXPECT_EQ(actual.ToString(), expected.Text()) << lpcWhat;
    EXPECT_EQ(actual < TNumber(0), IsBelow(expected, TModel())) << lpcWhat << ", sign of the result";
}

template <class TNumber, class TModel>
void ExpectSameOrder(const TNumber& a, const TNumber& b, const TModel& modelA, const TModel& modelB)
{
    const bool bEqual = AreEqual(modelA, modelB);
    EXPECT_EQ(a == b, bEqual);
    EXPECT_EQ(a != b, !bEqual);
    EXPECT_EQ(a < b, IsBelow(modelA, modelB));
    EXPECT_EQ(a > b, IsBelow(modelB, modelA));
    EXPECT_EQ(a <= b, IsAtMost(modelA, modelB));
    EXPECT_EQ(a >= b, IsAtMost(modelB, modelA));
}

/// All operations on one pair of integers.
void CompareIntegers(const std::wstring& strA, const std::wstring& strB)
{
    SCOPED_TRACE(::testing::Message() << strA << L" and " << strB);
    const CBigInteger a(strA.c_str());
    const CBigInteger b(strB.c_str());
    const SModelInteger modelA = ModelParseInteger(strA).value();
    const SModelInteger modelB = ModelParseInteger(strB).value();
    ExpectSame(a, modelA, "parse");
    ExpectSame(a + b, modelA + modelB, "+");
    ExpectSame(a - b, modelA + modelB.Negated(), "-");
    ExpectSame(a * b, modelA * modelB, "*");
    ExpectSameOrder(a, b, modelA, modelB);
    if (modelB.IsZero())
        return;
    ExpectSame(a / b, Quotient(modelA, modelB), "/");
    ExpectSame(a % b.GetAbs(), Remainder(modelA, modelB), "%");
}

TEST(BigIntegerReference, CalculatesLikeTheModel)
{
    CNumberMaker maker;
    for (int nCase = 0; nCase < 40000 && !HasFailure(); ++nCase)
        CompareIntegers(maker.Integer(), maker.Integer());
}

TEST(BigIntegerReference, DividesLikeTheModelWhereLimbsAreExtreme)
{
    // Such limbs are what makes the estimate of a quotient's limb too large.
    const wchar_t* const limbs[] = {L"000000000", L"000000001", L"499999999", L"500000000",
                                    L"500000001", L"999999998", L"999999999", L"123456789"};
    CNumberMaker maker;
    const auto number = [&](std::size_t nLimbs)
    {
        std::wstring strNumber = maker.Digits(1 + maker.Below(9));
        for (; nLimbs > 0; --nLimbs)
            strNumber += limbs[maker.Below(8)];
        return strNumber;
    };
    for (int nCase = 0; nCase < 20000 && !HasFailure(); ++nCase)
    {
        const std::size_t nLimbs = maker.Below(5);
        CompareIntegers(number(nLimbs + maker.Below(5)), number(nLimbs));
    }
}

TEST(BigIntegerReference, ConvertsToInt64LikeTheModel)
{
    CNumberMaker maker;
    for (int nCase = 0; nCase < 5000; ++nCase)
    {
        const std::wstring strText = maker.Sign() + maker.Digits(1 + maker.Below(18));
        const CBigInteger value(strText.c_str());
        std::uint32_t nPower = 1;
        std::int64_t nExpected = 0;
        mpz_class rest = ModelParseInteger(strText)->magnitude;
        for (; rest > 0; rest /= 10, nPower *= 10)
            nExpected += std::uint32_t{static_cast<std::uint32_t>(mpz_class(rest % 10).get_ui()) * nPower};
        ASSERT_EQ(static_cast<__int64>(value), value < CBigInteger(0) ? -nExpected : nExpected) << strText;
    }
}

TEST(BigIntegerReference, TakesRootsLikeTheModel)
{
    CNumberMaker maker;
    for (int nCase = 0; nCase < 2000; ++nCase)
    {
        const std::wstring strText = L"1" + maker.Digits(maker.Length());
        const mpz_class root = sqrt(DigitsValue(strText));
        ASSERT_EQ(CBigInteger(strText.c_str()).SquareRoot().ToString(), Widen(root.get_str())) << strText;
    }
}

std::wstring RefusedAt(std::size_t nPosition, const std::wstring& strText)
{
    return L"The string representing a Decimal, contained an invalid char at position " + std::to_wstring(nPosition) +
           L" [" + strText + L"]";
}

TEST(BigNumberReference, ParsesLikeTheModelOrFailsAtTheSamePosition)
{
    CNumberMaker maker;
    for (int nCase = 0; nCase < 30000 && !HasFailure(); ++nCase)
    {
        const std::wstring strText = maker.NearlyNumber();
        // Exponents near and beyond the limit have tests of their own.
        const std::size_t nExponent = strText.find_first_of(L"eE");
        if (nExponent != std::wstring::npos && strText.size() - nExponent > 4)
            continue;
        SCOPED_TRACE(::testing::Message() << L"[" << strText << L"]");
        std::size_t nPosition = 0;
        const std::optional<SModelDecimal> expected = ModelParse(strText, nPosition);
        const std::optional<SModelInteger> expectedInteger = ModelParseInteger(strText);
        try
        {
            ExpectSame(CDecimal(strText.c_str()), expected.value_or(SModelDecimal()), "decimal");
            EXPECT_TRUE(expected.has_value());
        }
        catch (const CQvInvalidValueException& ex)
        {
            EXPECT_FALSE(expected.has_value());
            EXPECT_EQ(ex.GetMessageW(), RefusedAt(nPosition, strText));
        }
        try
        {
            ExpectSame(CBigInteger(strText.c_str()), expectedInteger.value_or(SModelInteger()), "integer");
            EXPECT_TRUE(expectedInteger.has_value());
        }
        catch (const CQvInvalidValueException&)
        {
            EXPECT_FALSE(expectedInteger.has_value());
        }
    }
}

void CompareConversions(const CDecimal& value, const SModelDecimal& model)
{
    const mpz_class rounded = ModelToInteger(model).Value();
    EXPECT_EQ(value.ToBigInteger().ToString(), Widen(rounded.get_str()));
    if (abs(model.whole.Value()) < mpz_class("9223372036854775808"))
    {
        EXPECT_EQ(std::to_string(value.ToLongLong()), model.whole.Value().get_str());
    }
    if (abs(rounded) < mpz_class("2147483648"))
    {
        EXPECT_EQ(value.ToLong(), rounded.get_si());
    }
    const std::wstring strText = model.Text();
    EXPECT_EQ(value.ToDouble(), QvTest::ReadDouble(std::string(strText.begin(), strText.end())));
}

/// All operations on one pair of decimals.
void CompareDecimals(const std::wstring& strA, const std::wstring& strB, int nPlaces)
{
    SCOPED_TRACE(::testing::Message() << strA << L" and " << strB << L" with " << CDecimal::GetMaxDecimalPlaces());
    CDecimal a(strA.c_str());
    CDecimal b(strB.c_str());
    const SModelDecimal modelA = ModelOf(strA);
    const SModelDecimal modelB = ModelOf(strB);
    SModelDecimal modelMinusB = modelB;
    modelMinusB.Negate();
    ExpectSame(a, modelA, "parse");
    ExpectSame(a + b, modelA + modelB, "+");
    ExpectSame(a - b, modelA + modelMinusB, "-");
    ExpectSame(a * b, modelA * modelB, "*");
    if (!AreEqual(modelB, SModelDecimal()))
        ExpectSame(a / b, modelA / modelB, "/");
    ExpectSameOrder(a, b, modelA, modelB);
    const SModelDecimal sum = modelA + modelB;
    ExpectSameOrder(a + b, a, sum, modelA);
    ExpectSameOrder(a + b - b, a, sum + modelMinusB, modelA);
    EXPECT_EQ(a.ToString(nPlaces), ModelToString(modelA, nPlaces)) << nPlaces;
    EXPECT_EQ((a + b).ToString(nPlaces), ModelToString(sum, nPlaces)) << nPlaces;
    CompareConversions(a, modelA);
}

TEST(DecimalReference, CalculatesLikeTheModel)
{
    CNumberMaker maker;
    const int nBefore = CDecimal::GetMaxDecimalPlaces();
    for (const int nMaximum : {30, 30, 30, 0, 1, 2, 3, 10, 50})
    {
        CDecimal::SetMaxDecimalPlaces(nMaximum);
        for (int nCase = 0; nCase < 4000 && !HasFailure(); ++nCase)
            CompareDecimals(maker.Decimal(), maker.Decimal(), static_cast<int>(maker.Below(40)));
    }
    CDecimal::SetMaxDecimalPlaces(nBefore);
}

TEST(DecimalReference, KeepsTheSignsOfZeroLikeTheModel)
{
    const wchar_t* const texts[] = {L"0",     L"-0",  L"-0.0",  L"-.0",   L"0.00",   L"-0.00", L"-0E5", L"-1E-40",
                                    L"-0.04", L"0.1", L"-0.06", L"-0.96", L"-0.040", L"5",     L"-5",   L"-5.00"};
    const int nBefore = CDecimal::GetMaxDecimalPlaces();
    for (const int nMaximum : {30, 0, 1, 2})
    {
        CDecimal::SetMaxDecimalPlaces(nMaximum);
        for (const wchar_t* lpctA : texts)
        {
            for (const wchar_t* lpctB : texts)
            {
                for (const int nPlaces : {0, 1, 2, 30})
                    CompareDecimals(lpctA, lpctB, nPlaces);
            }
        }
    }
    CDecimal::SetMaxDecimalPlaces(nBefore);
}

} // namespace
} // namespace QvXmlLib9
