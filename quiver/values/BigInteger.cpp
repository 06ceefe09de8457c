#include "quiver/values/BigInteger.h"

#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/Decimal.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

namespace
{

using CDigits = std::vector<wchar_t>;

/// Multiplication and division of longer numbers work on "limbs" of nine digits, the least significant first.
using CLimbs = std::vector<std::uint32_t>;

constexpr std::uint32_t s_nLimbBase = 1000000000;
constexpr std::size_t s_nLimbDigits = 9;

/// Any number of so many digits fits an unsigned 64-bit word.
constexpr std::size_t s_nWordDigits = 19;

bool IsZero(const CDigits& digits)
{
    return digits.empty() || (digits.size() == 1 && digits[0] == 0);
}

/// The number of zeros at the low end of a number that is not zero.
std::size_t CountLowZeros(const CDigits& digits)
{
    std::size_t nZeros = 0;
    while (digits[nZeros] == 0)
        ++nZeros;
    return nZeros;
}

/// The value of `nCount` digits, at most s_nWordDigits.
std::uint64_t ToWord(const wchar_t* pLow, std::size_t nCount)
{
    std::uint64_t nWord = 0;
    while (nCount > 0)
        nWord = nWord * 10 + static_cast<std::uint64_t>(pLow[--nCount]);
    return nWord;
}

void AppendWord(CDigits& digits, std::uint64_t nWord)
{
    do
    {
        digits.push_back(static_cast<wchar_t>(nWord % 10));
        nWord /= 10;
    } while (nWord != 0);
}

CLimbs ToLimbs(const wchar_t* pLow, std::size_t nCount)
{
    CLimbs limbs;
    limbs.reserve(nCount / s_nLimbDigits + 2);
    for (std::size_t nAt = 0; nAt < nCount; nAt += s_nLimbDigits)
        limbs.push_back(static_cast<std::uint32_t>(ToWord(pLow + nAt, std::min(s_nLimbDigits, nCount - nAt))));
    return limbs;
}

/// Appends nine digits a limb, hence zeros at the high end too.
void AppendLimbs(CDigits& digits, const CLimbs& limbs)
{
    digits.reserve(digits.size() + limbs.size() * s_nLimbDigits);
    for (std::uint32_t nLimb : limbs)
    {
        for (std::size_t nDigit = 0; nDigit < s_nLimbDigits; ++nDigit, nLimb /= 10)
            digits.push_back(static_cast<wchar_t>(nLimb % 10));
    }
}

CLimbs MultiplyLimbs(const CLimbs& a, const CLimbs& b)
{
    CLimbs product(a.size() + b.size());
    for (std::size_t nB = 0; nB < b.size(); ++nB)
    {
        std::uint64_t nCarry = 0;
        for (std::size_t nA = 0; nA < a.size(); ++nA)
        {
            nCarry += std::uint64_t{a[nA]} * b[nB] + product[nA + nB];
            product[nA + nB] = static_cast<std::uint32_t>(nCarry % s_nLimbBase);
            nCarry /= s_nLimbBase;
        }
        product[nB + a.size()] = static_cast<std::uint32_t>(nCarry);
    }
    return product;
}

/// Multiplies in place, growing by one limb.
void MultiplyByLimb(CLimbs& limbs, std::uint32_t nFactor)
{
    std::uint64_t nCarry = 0;
    for (std::uint32_t& nLimb : limbs)
    {
        nCarry += std::uint64_t{nLimb} * nFactor;
        nLimb = static_cast<std::uint32_t>(nCarry % s_nLimbBase);
        nCarry /= s_nLimbBase;
    }
    limbs.push_back(static_cast<std::uint32_t>(nCarry));
}

/// Divides in place and gives the remainder.
std::uint32_t DivideByLimb(CLimbs& limbs, std::uint32_t nDivisor)
{
    std::uint64_t nRest = 0;
    for (std::size_t nAt = limbs.size(); nAt-- > 0;)
    {
        nRest = nRest * s_nLimbBase + limbs[nAt];
        limbs[nAt] = static_cast<std::uint32_t>(nRest / nDivisor);
        nRest %= nDivisor;
    }
    return static_cast<std::uint32_t>(nRest);
}

/// The limb of the quotient for which the high limbs of dividend and divisor speak; at most one too large.
std::uint64_t EstimateLimb(const std::uint32_t* pDividend, const CLimbs& divisor)
{
    const std::size_t nSize = divisor.size();
    const std::uint64_t nHigh = std::uint64_t{pDividend[nSize]} * s_nLimbBase + pDividend[nSize - 1];
    std::uint64_t nGuess = nHigh / divisor[nSize - 1];
    std::uint64_t nRest = nHigh % divisor[nSize - 1];
    while (nRest < s_nLimbBase &&
           (nGuess >= s_nLimbBase || nGuess * divisor[nSize - 2] > nRest * s_nLimbBase + pDividend[nSize - 2]))
    {
        --nGuess;
        nRest += divisor[nSize - 1];
    }
    return nGuess;
}

/// Subtracts `nFactor` times the divisor, and tells whether that was once too often; the result then lacks a borrow.
bool SubtractMultiple(std::uint32_t* pDividend, const CLimbs& divisor, std::uint64_t nFactor)
{
    std::uint64_t nCarry = 0;
    for (std::size_t nAt = 0; nAt <= divisor.size(); ++nAt)
    {
        nCarry += nAt < divisor.size() ? nFactor * divisor[nAt] : 0;
        const auto nSubtrahend = static_cast<std::uint32_t>(nCarry % s_nLimbBase);
        nCarry /= s_nLimbBase;
        const bool bBorrow = pDividend[nAt] < nSubtrahend;
        pDividend[nAt] += (bBorrow ? s_nLimbBase : 0) - nSubtrahend;
        nCarry += bBorrow ? 1 : 0;
    }
    return nCarry != 0;
}

/// Takes back one subtraction of the divisor. The carry out of the top cancels the missing borrow.
void AddBack(std::uint32_t* pDividend, const CLimbs& divisor)
{
    std::uint32_t nCarry = 0;
    for (std::size_t nAt = 0; nAt <= divisor.size(); ++nAt)
    {
        const std::uint32_t nSum = pDividend[nAt] + (nAt < divisor.size() ? divisor[nAt] : 0) + nCarry;
        nCarry = nSum >= s_nLimbBase ? 1 : 0;
        pDividend[nAt] = nSum - nCarry * s_nLimbBase;
    }
}

/// Long division by a divisor of at least two limbs, whose highest is not zero (Knuth, The Art of Computer Programming,
/// 4.3.1, algorithm D). The dividend becomes the remainder, the quotient is returned.
CLimbs DivideLimbs(CLimbs& dividend, CLimbs divisor)
{
    // With a high limb of at least half the base, an estimate is never far off.
    const std::uint32_t nScale = s_nLimbBase / (divisor.back() + 1);
    MultiplyByLimb(dividend, nScale);
    MultiplyByLimb(divisor, nScale);
    divisor.pop_back();

    CLimbs quotient(dividend.size() - divisor.size());
    for (std::size_t nAt = quotient.size(); nAt-- > 0;)
    {
        std::uint32_t* const pDividend = dividend.data() + nAt;
        std::uint64_t nLimb = EstimateLimb(pDividend, divisor);
        if (SubtractMultiple(pDividend, divisor, nLimb))
        {
            --nLimb;
            AddBack(pDividend, divisor);
        }
        quotient[nAt] = static_cast<std::uint32_t>(nLimb);
    }
    DivideByLimb(dividend, nScale);
    return quotient;
}

/// Divides the numbers of `nA` and `nB` digits, neither of them zero, and appends the results; they may have zeros at
/// the high end.
void DivideDigits(const wchar_t* pA, std::size_t nA, const wchar_t* pB, std::size_t nB, CDigits& quotient,
                  CDigits& remainder)
{
    if (nA <= s_nWordDigits)
    {
        const std::uint64_t nDividend = ToWord(pA, nA);
        const std::uint64_t nDivisor = ToWord(pB, nB);
        AppendWord(quotient, nDividend / nDivisor);
        AppendWord(remainder, nDividend % nDivisor);
        return;
    }
    CLimbs dividend = ToLimbs(pA, nA);
    if (nB <= s_nLimbDigits)
    {
        AppendWord(remainder, DivideByLimb(dividend, static_cast<std::uint32_t>(ToWord(pB, nB))));
        AppendLimbs(quotient, dividend);
        return;
    }
    AppendLimbs(quotient, DivideLimbs(dividend, ToLimbs(pB, nB)));
    AppendLimbs(remainder, dividend);
}

/// Whether the text is made of digits, signs and white space alone.
bool IsPlainInteger(const wchar_t* p)
{
    for (;; ++p)
    {
        while (IsDigit(*p))
            ++p;
        if (*p == 0)
            return true;
        if (*p != L'-' && *p != L'+' && !CWhitespaceUtils::IsWhiteSpace(*p))
            return false;
    }
}

} // namespace

// Static objects of other units, and of programs that link the static library, may use the constants.
#if defined(__GNUC__) && !defined(__APPLE__)
#define QV_EARLY_OBJECT __attribute__((init_priority(200)))
#else
#define QV_EARLY_OBJECT
#endif
#if defined(_MSC_VER)
#pragma init_seg(lib)
#endif

const CBigInteger CBigInteger::MAX_LONG QV_EARLY_OBJECT(CDecimal(L"2147483647"));
const CBigInteger CBigInteger::MIN_LONG QV_EARLY_OBJECT(CDecimal(L"-2147483648"));
const CBigInteger CBigInteger::MAX_LONGLONG QV_EARLY_OBJECT(CDecimal(L"9223372036854775807"));
const CBigInteger CBigInteger::MIN_LONGLONG QV_EARLY_OBJECT(CDecimal(L"-9223372036854775808"));
const CBigInteger CBigInteger::MAX_DOUBLE QV_EARLY_OBJECT(CDecimal(L"1.7E+308"));
const CBigInteger CBigInteger::MIN_DOUBLE QV_EARLY_OBJECT(CDecimal(L"-1.7E+308"));

#undef QV_EARLY_OBJECT

CBigInteger::CBigInteger()
    : m_sign(1)
{
    // No digit is zero as well, and takes no memory: most numbers that are made are given a value next.
}

CBigInteger::CBigInteger(int nValue)
    : m_sign(nValue < 0 ? -1 : 1)
{
    const auto nBits = static_cast<unsigned int>(nValue);
    Build(nValue < 0 ? 0 - nBits : nBits, m_digits);
}

CBigInteger::CBigInteger(__int64 nValue)
    : m_sign(nValue < 0 ? -1 : 1)
{
    const auto nBits = static_cast<unsigned __int64>(nValue);
    BuildDWORDLONG(nValue < 0 ? 0 - nBits : nBits, m_digits);
}

CBigInteger::CBigInteger(double dValue)
    : m_sign(dValue >= 0.0 ? 1 : -1)
{
    // CDecimal has the words for a value that has no digits.
    if (std::isinf(dValue))
        *this = CDecimal(dValue).ToBigInteger();
    else
        BuildDouble(m_sign > 0 ? dValue : -dValue, m_digits);
}

CBigInteger::CBigInteger(const CDecimal& value)
    : CBigInteger(value.ToBigInteger())
{
}

CBigInteger::CBigInteger(const wchar_t* lpctValue)
    : m_sign(1)
{
    Parse(lpctValue);
}

CBigInteger::CBigInteger(int nSign, const std::vector<wchar_t>& digits)
    : m_sign(nSign)
    , m_digits(digits)
{
}

CBigInteger::CBigInteger(int nSign, std::vector<wchar_t>&& digits)
    : m_sign(nSign)
    , m_digits(std::move(digits))
{
}

CBigInteger::CBigInteger(const CBigInteger& source) = default;

CBigInteger::CBigInteger(CBigInteger&& source) noexcept = default;

CBigInteger& CBigInteger::operator=(const CBigInteger& source) = default;

CBigInteger& CBigInteger::operator=(CBigInteger&& source) noexcept = default;

CBigInteger::~CBigInteger() = default;

void CBigInteger::Parse(const wchar_t* lpctValue)
{
    if (lpctValue == nullptr)
        lpctValue = L"";
    if (!IsPlainInteger(lpctValue))
    {
        *this = CDecimal(lpctValue).ToBigInteger();
        return;
    }
    std::wstring_view text(lpctValue);
    while (!text.empty() && text.front() == L' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ')
        text.remove_suffix(1);
    const bool bNegative = !text.empty() && text.front() == L'-';
    std::vector<wchar_t> digits;
    BuildFromEnd(text, digits);
    m_digits.swap(digits);
    m_sign = bNegative ? -1 : 1;
}

std::wstring CBigInteger::ToString() const
{
    if (IsZero(m_digits))
        return L"0";
    std::wstring strText;
    strText.reserve(m_digits.size() + 1);
    if (m_sign < 0)
        strText += L'-';
    AppendDigits(strText);
    return strText;
}

void CBigInteger::AppendDigits(std::wstring& strText) const
{
    if (m_digits.empty())
    {
        strText += L'0';
        return;
    }
    const std::size_t nStart = strText.size();
    strText.resize(nStart + m_digits.size());
    std::transform(m_digits.rbegin(), m_digits.rend(), strText.begin() + static_cast<std::ptrdiff_t>(nStart),
                   [](wchar_t c) { return static_cast<wchar_t>(L'0' + c); });
}

bool CBigInteger::IsZeroValue() const
{
    return IsZero(m_digits);
}

int CBigInteger::Order(const CBigInteger& other) const
{
    return m_sign != other.m_sign ? m_sign : m_sign * Compare(m_digits, other.m_digits);
}

bool CBigInteger::operator==(const CBigInteger& other) const
{
    return Compare(m_digits, other.m_digits) == 0 && (m_sign == other.m_sign || IsZero(m_digits));
}

bool CBigInteger::operator!=(const CBigInteger& other) const
{
    return !(*this == other);
}

bool CBigInteger::operator<(const CBigInteger& other) const
{
    return Order(other) < 0;
}

bool CBigInteger::operator<=(const CBigInteger& other) const
{
    return Order(other) <= 0;
}

bool CBigInteger::operator>(const CBigInteger& other) const
{
    return Order(other) > 0;
}

bool CBigInteger::operator>=(const CBigInteger& other) const
{
    return Order(other) >= 0;
}

CBigInteger CBigInteger::operator+(const CBigInteger& other) const
{
    CBigInteger result(*this);
    result.Accumulate(other, other.m_sign);
    return result;
}

CBigInteger CBigInteger::operator-(const CBigInteger& other) const
{
    CBigInteger result(*this);
    result.Accumulate(other, -other.m_sign);
    return result;
}

CBigInteger CBigInteger::operator*(const CBigInteger& other) const
{
    std::vector<wchar_t> product;
    Multiply(m_digits, other.m_digits, product);
    return CBigInteger(m_sign * other.m_sign, std::move(product));
}

CBigInteger CBigInteger::operator/(const CBigInteger& other) const
{
    if (IsZero(other.m_digits))
        throw CQvInvalidValueException(L"ERROR: Overflow in operator/.");
    return Quotient(other);
}

CBigInteger CBigInteger::operator%(const CBigInteger& other) const
{
    Throw_IfNoDivisor(other, L"ERROR: Overflow in operator%.");
    return Remainder(other);
}

CBigInteger& CBigInteger::operator+=(const CBigInteger& other)
{
    Accumulate(other, other.m_sign);
    return *this;
}

CBigInteger& CBigInteger::operator-=(const CBigInteger& other)
{
    Accumulate(other, -other.m_sign);
    return *this;
}

CBigInteger& CBigInteger::operator*=(const CBigInteger& other)
{
    return *this = *this * other;
}

CBigInteger& CBigInteger::operator/=(const CBigInteger& other)
{
    Throw_IfNoDivisor(other, L"ERROR: Overflow in operator /=.");
    return *this = Quotient(other);
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& other)
{
    Throw_IfNoDivisor(other, L"ERROR: Overflow in operator%=.");
    return *this = Remainder(other);
}

void CBigInteger::Accumulate(const CBigInteger& other, int nSign)
{
    if (m_sign == nSign)
    {
        Add(m_digits, other.m_digits, m_digits);
        return;
    }
    switch (Compare(m_digits, other.m_digits))
    {
    case 0:
        *this = CBigInteger();
        break;
    case 1:
        Subtract(m_digits, other.m_digits, m_digits);
        break;
    default:
        Subtract(other.m_digits, m_digits, m_digits);
        m_sign = nSign;
        break;
    }
}

void CBigInteger::Throw_IfNoDivisor(const CBigInteger& divisor, const wchar_t* lpctMessage) const
{
    // A negative divisor is refused here, other than by operator/; and zero divided by zero is zero.
    if (divisor.m_sign < 0 || (IsZero(divisor.m_digits) && !IsZero(m_digits)))
        throw CQvInvalidValueException(lpctMessage);
}

CBigInteger CBigInteger::Quotient(const CBigInteger& divisor) const
{
    if (IsZero(m_digits))
        return CBigInteger();
    std::vector<wchar_t> quotient;
    std::vector<wchar_t> remainder;
    Divide(m_digits, divisor.m_digits, quotient, remainder);
    return CBigInteger(m_sign * divisor.m_sign, std::move(quotient));
}

CBigInteger CBigInteger::Remainder(const CBigInteger& divisor) const
{
    if (IsZero(m_digits))
        return CBigInteger();
    std::vector<wchar_t> quotient;
    std::vector<wchar_t> remainder;
    Divide(m_digits, divisor.m_digits, quotient, remainder);
    return CBigInteger(m_sign, std::move(remainder));
}

CBigInteger& CBigInteger::operator-()
{
    Negate();
    return *this;
}

void CBigInteger::Negate()
{
    m_sign = m_sign == -1 ? 1 : -1;
}

void CBigInteger::Abs()
{
    m_sign = 1;
}

CBigInteger CBigInteger::GetNegative() const
{
    CBigInteger result(*this);
    result.Negate();
    return result;
}

CBigInteger CBigInteger::GetAbs() const
{
    CBigInteger result(*this);
    result.Abs();
    return result;
}

bool CBigInteger::FitsInteger(unsigned __int64 nMaximum) const
{
    // The negative bound is one larger, as two's complement has it.
    const unsigned __int64 nBound = nMaximum + (m_sign < 0 ? 1 : 0);
    return m_digits.size() <= s_nWordDigits && ToWord(m_digits.data(), m_digits.size()) <= nBound;
}

__int64 CBigInteger::ToInteger() const
{
    const auto nMagnitude = static_cast<unsigned __int64>(ToWord(m_digits.data(), m_digits.size()));
    return static_cast<__int64>(m_sign < 0 ? 0 - nMagnitude : nMagnitude);
}

CBigInteger::operator int() const
{
    if (!FitsInteger(INT_MAX))
        throw CQvInvalidValueException(L"ERROR: Value out of bound of int.");
    return static_cast<int>(ToInteger());
}

CBigInteger::operator __int64() const
{
    if (!FitsInteger(LLONG_MAX))
        throw CQvInvalidValueException(L"ERROR: Value out of bound of LONGLONG.");
    // Meant to wrap at 32 bits, in the power and in each product.
    std::uint32_t nPower = 1;
    __int64 nSum = 0;
    for (const wchar_t cDigit : m_digits)
    {
        nSum += std::uint32_t{static_cast<std::uint32_t>(cDigit) * nPower};
        nPower *= 10;
    }
    return m_sign < 0 ? -nSum : nSum;
}

CBigInteger CBigInteger::SquareRoot() const
{
    if (m_sign < 0)
        throw CQvInvalidValueException(L"ERROR: Negative Number in function SquareRoot().");
    // Starts above the root, from where the steps go down until they reach it.
    CBigInteger x = Pow10(static_cast<unsigned int>((Position(m_digits) - 1) / 2 + 1));
    const CBigInteger two(2);
    for (;;)
    {
        CBigInteger next = (x + *this / x) / two;
        if (next >= x)
            return x;
        x = std::move(next);
    }
}

CBigInteger CBigInteger::Pow10(unsigned int nExponent)
{
    CBigInteger result;
    Pow10(nExponent, result.m_digits);
    return result;
}

void CBigInteger::Build(unsigned int nValue, std::vector<wchar_t>& digits)
{
    BuildDWORDLONG(nValue, digits);
}

void CBigInteger::BuildDWORDLONG(unsigned __int64 nValue, std::vector<wchar_t>& digits)
{
    digits.clear();
    AppendWord(digits, nValue);
}

void CBigInteger::BuildDouble(double dValue, std::vector<wchar_t>& digits)
{
    digits.clear();
    dValue = std::ceil(dValue - 0.5);
    while (dValue > 0.0)
    {
        digits.push_back(static_cast<wchar_t>(std::fmod(dValue, 10.0)));
        dValue = std::trunc(dValue / 10.0);
    }
    Clean(digits);
}

void CBigInteger::Build(const std::wstring& strValue, std::vector<wchar_t>& digits)
{
    BuildFromEnd(strValue, digits);
}

void CBigInteger::BuildFromEnd(std::wstring_view text, std::vector<wchar_t>& digits)
{
    const auto itRun = std::find_if_not(text.rbegin(), text.rend(), [](wchar_t c) { return IsDigit(c); });
    const auto nCount = static_cast<std::size_t>(itRun - text.rbegin());
    BuildDigits(text.data() + (text.size() - nCount), nCount, digits);
    Clean(digits);
}

void CBigInteger::BuildDigits(const wchar_t* pFirst, std::size_t nCount, std::vector<wchar_t>& digits)
{
    const wchar_t* const pEnd = pFirst + nCount;
    pFirst = std::find_if(pFirst, pEnd, [](wchar_t c) { return c != L'0'; });
    nCount = static_cast<std::size_t>(pEnd - pFirst);
    digits.resize(nCount);
    std::transform(pFirst, pEnd, digits.rbegin(), [](wchar_t c) { return static_cast<wchar_t>(c - L'0'); });
}

void CBigInteger::Clean(std::vector<wchar_t>& digits)
{
    while (!digits.empty() && digits.back() == 0)
        digits.pop_back();
    if (digits.empty())
        digits.push_back(0);
}

int CBigInteger::Compare(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b)
{
    // Zero has one digit or none.
    if (a.empty() || b.empty())
        return static_cast<int>(!IsZero(a)) - static_cast<int>(!IsZero(b));
    if (a.size() != b.size())
        return a.size() > b.size() ? 1 : -1;
    const auto itDifference = std::mismatch(a.rbegin(), a.rend(), b.rbegin());
    if (itDifference.first == a.rend())
        return 0;
    return *itDifference.first > *itDifference.second ? 1 : -1;
}

void CBigInteger::Add(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out)
{
    const std::size_t nA = a.size();
    const std::size_t nB = b.size();
    const std::size_t nSize = std::max(nA, nB);
    out.resize(nSize);
    int nCarry = 0;
    for (std::size_t nAt = 0; nAt < nSize; ++nAt)
    {
        const int nSum = (nAt < nA ? static_cast<int>(a[nAt]) : 0) + (nAt < nB ? static_cast<int>(b[nAt]) : 0) + nCarry;
        nCarry = nSum >= 10 ? 1 : 0;
        out[nAt] = static_cast<wchar_t>(nSum - nCarry * 10);
    }
    if (nCarry != 0)
        out.push_back(1);
}

void CBigInteger::Subtract(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out)
{
    const std::size_t nSize = a.size();
    const std::size_t nB = b.size();
    out.resize(nSize);
    int nBorrow = 0;
    for (std::size_t nAt = 0; nAt < nSize; ++nAt)
    {
        const int nDifference = static_cast<int>(a[nAt]) - (nAt < nB ? static_cast<int>(b[nAt]) : 0) - nBorrow;
        nBorrow = nDifference < 0 ? 1 : 0;
        out[nAt] = static_cast<wchar_t>(nDifference + nBorrow * 10);
    }
    Clean(out);
}

void CBigInteger::Multiply(const std::vector<wchar_t>& a, wchar_t cDigit, std::vector<wchar_t>& out)
{
    if (cDigit == 0)
    {
        out.assign(1, 0);
        return;
    }
    const std::size_t nSize = a.size();
    out.resize(nSize);
    int nCarry = 0;
    for (std::size_t nAt = 0; nAt < nSize; ++nAt)
    {
        nCarry += static_cast<int>(cDigit) * static_cast<int>(a[nAt]);
        out[nAt] = static_cast<wchar_t>(nCarry % 10);
        nCarry /= 10;
    }
    if (nCarry != 0)
        out.push_back(static_cast<wchar_t>(nCarry));
}

void CBigInteger::Multiply(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& out)
{
    if (IsZero(a) || IsZero(b))
    {
        out.assign(1, 0);
        return;
    }
    // Powers of ten are frequent, and mere shifts.
    const std::size_t nLowA = CountLowZeros(a);
    const std::size_t nLowB = CountLowZeros(b);
    const std::size_t nA = a.size() - nLowA;
    const std::size_t nB = b.size() - nLowB;
    std::vector<wchar_t> product;
    product.reserve(a.size() + b.size() + s_nLimbDigits);
    product.resize(nLowA + nLowB);
    if (nA + nB <= s_nWordDigits)
        AppendWord(product, ToWord(a.data() + nLowA, nA) * ToWord(b.data() + nLowB, nB));
    else
        AppendLimbs(product, MultiplyLimbs(ToLimbs(a.data() + nLowA, nA), ToLimbs(b.data() + nLowB, nB)));
    Clean(product);
    out.swap(product);
}

void CBigInteger::ShiftLeft(std::vector<wchar_t>& digits, int nCount)
{
    if (nCount > 0)
        digits.insert(digits.begin(), static_cast<std::size_t>(nCount), L'\0');
}

int CBigInteger::Position(const std::vector<wchar_t>& digits)
{
    return std::max(static_cast<int>(digits.size()), 1);
}

void CBigInteger::Pow10(unsigned int nExponent, std::vector<wchar_t>& out)
{
    out.assign(std::size_t{nExponent} + 1, 0);
    out.back() = 1;
}

void CBigInteger::Divide(const std::vector<wchar_t>& a, const std::vector<wchar_t>& b, std::vector<wchar_t>& quotient,
                         std::vector<wchar_t>& remainder)
{
    std::vector<wchar_t> q;
    std::vector<wchar_t> r;
    if (IsZero(b) || Compare(a, b) < 0)
    {
        r = a;
    }
    else
    {
        // Zeros at the low end of the divisor pass the digits of the dividend there on to the remainder.
        const std::size_t nLow = CountLowZeros(b);
        const auto itHigh = a.begin() + static_cast<std::ptrdiff_t>(nLow);
        r.assign(a.begin(), itHigh);
        if (b.size() - nLow == 1 && b.back() == 1)
            q.assign(itHigh, a.end());
        else
            DivideDigits(a.data() + nLow, a.size() - nLow, b.data() + nLow, b.size() - nLow, q, r);
    }
    Clean(q);
    Clean(r);
    quotient.swap(q);
    remainder.swap(r);
}

} // namespace QvXmlLib9
