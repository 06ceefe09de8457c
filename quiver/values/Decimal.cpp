#include "quiver/values/Decimal.h"

#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/NearestReal.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace QvXmlLib9
{

namespace
{

using CDigits = std::vector<wchar_t>;

/// How many digits a text may have in its whole part and in its fraction, and in its exponent.
constexpr std::size_t s_nMaxPartDigits = 512;
constexpr std::size_t s_nMaxExponentDigits = 32;

/// A negative exponent that takes every digit of a text behind the places that are kept; larger ones mean the same.
constexpr int s_nZeroExponent = CDecimal::MAX_DECIMAL_PLACES + static_cast<int>(s_nMaxPartDigits) + 2;

/// The longest text of a number with a fraction.
constexpr std::size_t s_nMaxTextLength = 1024;

/// The number of digits of CBigInteger::MAX_DOUBLE.
constexpr std::size_t s_nDoubleDigits = 309;

/// The digits of a part of a text, without anything that stood among them.
struct SPart
{
    wchar_t sz[s_nMaxPartDigits];
    std::size_t nCount = 0;

    bool IsZero() const
    {
        return std::all_of(sz, sz + nCount, [](wchar_t c) { return c == L'0'; });
    }
};

bool IsSign(wchar_t c)
{
    return c == L'-' || c == L'+';
}

/// Reads a text piece by piece, and fails at the first character that does not fit.
class CDecimalReader
{
public:
    explicit CDecimalReader(const wchar_t* lpctText)
        : m_lpctText(lpctText)
        , m_pAt(lpctText)
    {
    }

    void Read()
    {
        ReadWhole();
        if (*m_pAt == L'.')
            ReadFraction();
        if (*m_pAt == L'e' || *m_pAt == L'E')
            ReadExponent();
        if (*m_pAt != 0)
            Fail();
    }

    bool IsNegative() const { return m_bNegative; }
    /// Whether all digits ahead of the exponent are 0.
    bool IsZero() const { return m_whole.IsZero() && m_fraction.IsZero(); }
    const SPart& GetWhole() const { return m_whole; }
    const SPart& GetFraction() const { return m_fraction; }
    bool HasExponent() const { return m_nExponentDigits != 0; }
    bool IsExponentNegative() const { return m_bExponentNegative; }
    unsigned int GetExponent() const { return static_cast<unsigned int>(m_nExponent); }

private:
    [[noreturn]] void Fail() const
    {
        throw CQvInvalidValueException(
            FormatString(L"The string representing a Decimal, contained an invalid char at position %d [%s]",
                         static_cast<int>(m_pAt - m_lpctText), m_lpctText));
    }

    void CollectDigit(SPart& part) const
    {
        if (part.nCount == s_nMaxPartDigits)
            Fail();
        part.sz[part.nCount++] = *m_pAt;
    }

    void ReadWhole()
    {
        for (;; ++m_pAt)
        {
            if (IsDigit(*m_pAt))
                CollectDigit(m_whole);
            else if (IsSign(*m_pAt))
                m_bNegative = *m_pAt == L'-';
            else if (!CWhitespaceUtils::IsWhiteSpace(*m_pAt))
                return;
        }
    }

    void ReadFraction()
    {
        for (++m_pAt;; ++m_pAt)
        {
            if (IsDigit(*m_pAt))
                CollectDigit(m_fraction);
            else if (!CWhitespaceUtils::IsWhiteSpace(*m_pAt))
                return;
        }
    }

    void ReadExponent()
    {
        for (++m_pAt; IsSign(*m_pAt) || CWhitespaceUtils::IsWhiteSpace(*m_pAt); ++m_pAt)
        {
            if (IsSign(*m_pAt))
                m_bExponentNegative = *m_pAt == L'-';
        }
        for (; IsDigit(*m_pAt); ++m_pAt)
        {
            m_nExponent = std::min(m_nExponent * 10 + DigitValue(*m_pAt), s_nZeroExponent);
            const bool bTooLarge = m_nExponent > CDecimal::MAX_EXPONENT && !m_bExponentNegative && !IsZero();
            if (++m_nExponentDigits > s_nMaxExponentDigits || bTooLarge)
                Fail();
        }
    }

    const wchar_t* m_lpctText;
    const wchar_t* m_pAt;
    bool m_bNegative = false;
    SPart m_whole;
    SPart m_fraction;
    std::size_t m_nExponentDigits = 0;
    bool m_bExponentNegative = false;
    int m_nExponent = 0;
};

/// Compares the fractions of two numbers, as if both stood for the larger number of places.
int CompareFractions(const CDigits& a, int nDividerA, const CDigits& b, int nDividerB)
{
    const int nDivider = std::max(nDividerA, nDividerB);
    const auto nShiftA = static_cast<std::size_t>(nDivider - nDividerA);
    const auto nShiftB = static_cast<std::size_t>(nDivider - nDividerB);
    const std::size_t nSize = std::max(a.size() + nShiftA, b.size() + nShiftB);
    const auto digitAt = [](const CDigits& digits, std::size_t nShift, std::size_t nAt)
    {
        return nAt >= nShift && nAt - nShift < digits.size() ? digits[nAt - nShift] : L'\0';
    };
    for (std::size_t nAt = nSize; nAt-- > 0;)
    {
        const wchar_t cA = digitAt(a, nShiftA, nAt);
        const wchar_t cB = digitAt(b, nShiftB, nAt);
        if (cA != cB)
            return cA > cB ? 1 : -1;
    }
    return 0;
}

/// Whether the lowest `nCount` digits, at least one, are more than half of what one digit above them is worth.
bool IsMoreThanHalf(const CDigits& digits, std::size_t nCount)
{
    if (nCount > digits.size())
        return false;
    const wchar_t cHigh = digits[nCount - 1];
    if (cHigh != 5)
        return cHigh > 5;
    const auto itEnd = digits.begin() + static_cast<std::ptrdiff_t>(nCount - 1);
    return std::any_of(digits.begin(), itEnd, [](wchar_t c) { return c != 0; });
}

CBigInteger GetDoubleBound()
{
    return CBigInteger(17) * CBigInteger::Pow10(s_nDoubleDigits - 2);
}

} // namespace

int CDecimal::m_maxDivider = 30;

CDecimal::CDecimal()
    : m_divider(1)
{
}

CDecimal::CDecimal(int nValue)
    : CDecimal(static_cast<__int64>(nValue))
{
}

CDecimal::CDecimal(long nValue)
    : CDecimal(static_cast<__int64>(nValue))
{
}

CDecimal::CDecimal(__int64 nValue)
    : m_whole(nValue)
    , m_divider(1)
{
}

CDecimal::CDecimal(double dValue)
    : m_divider(1)
{
    Parse(FormatString(L"%.13f\n", dValue).c_str());
}

CDecimal::CDecimal(const wchar_t* lpctValue)
    : m_divider(1)
{
    Parse(lpctValue != nullptr ? lpctValue : L"");
}

CDecimal::CDecimal(const CBigInteger& value)
    : m_whole(value)
    , m_divider(1)
{
}

CDecimal::CDecimal(const CBigInteger& whole, const CBigInteger& fraction, int nDivider)
    : m_whole(whole)
    , m_fraction(fraction)
    , m_divider(nDivider)
{
}

CDecimal::CDecimal(const CDecimal& source) = default;

CDecimal::CDecimal(CDecimal&& source) noexcept = default;

CDecimal& CDecimal::operator=(const CDecimal& source) = default;

CDecimal& CDecimal::operator=(CDecimal&& source) noexcept = default;

CDecimal::~CDecimal() = default;

void CDecimal::Parse(const wchar_t* lpctValue)
{
    CDecimalReader reader(lpctValue);
    reader.Read();
    const SPart& whole = reader.GetWhole();
    const SPart& fraction = reader.GetFraction();
    CBigInteger::BuildDigits(whole.sz, whole.nCount, m_whole.m_digits);
    CBigInteger::BuildDigits(fraction.sz, fraction.nCount, m_fraction.m_digits);
    m_divider = std::max(static_cast<int>(fraction.nCount), 1);
    if (reader.IsNegative())
        Negate();
    if (reader.HasExponent())
    {
        // No power of ten makes more of a zero, but any takes its sign.
        const CDecimal scale(CBigInteger::Pow10(reader.IsZero() ? 0 : reader.GetExponent()));
        if (reader.IsExponentNegative())
            *this /= scale;
        else
            *this *= scale;
    }
    Rationalise();
    LimitPlaces();
}

void CDecimal::Rationalise()
{
    CDigits& digits = m_fraction.m_digits;
    const auto nMost = static_cast<std::size_t>(std::max(m_divider - 1, 0));
    if (m_fraction.IsZeroValue())
    {
        // Only a fraction of a single place keeps the sign of its zero: "-0.0" is below zero in both parts, "-0.00" is
        // not, which decides whether the number reaches a bound of zero.
        if (nMost != 0)
            m_fraction.m_sign = 1;
        m_divider -= static_cast<int>(nMost);
        return;
    }
    std::size_t nZeros = 0;
    while (nZeros < nMost && digits[nZeros] == 0)
        ++nZeros;
    digits.erase(digits.begin(), digits.begin() + static_cast<std::ptrdiff_t>(nZeros));
    m_divider -= static_cast<int>(nZeros);
}

void CDecimal::ChangeFractionalDivider(int nDivider)
{
    CDigits& digits = m_fraction.m_digits;
    if (m_divider <= nDivider)
    {
        if (!m_fraction.IsZeroValue())
            CBigInteger::ShiftLeft(digits, nDivider - m_divider);
        m_divider = nDivider;
        return;
    }
    const auto nCut = static_cast<std::size_t>(m_divider - nDivider);
    const bool bRoundUp = IsMoreThanHalf(digits, nCut);
    if (m_fraction.IsZeroValue())
        m_fraction.m_sign = 1;
    digits.erase(digits.begin(), digits.begin() + static_cast<std::ptrdiff_t>(std::min(nCut, digits.size())));
    CBigInteger::Clean(digits);
    m_divider = std::max(nDivider, 0);
    // A fraction that becomes a whole unit here is not carried over (docs/compatibility.md: Rounding of decimals).
    if (bRoundUp)
        (m_divider == 0 ? m_whole : m_fraction) += CBigInteger(m_whole.m_sign);
}

int CDecimal::Normalize(CDecimal& a, CDecimal& b)
{
    const int nDivider = std::max(a.m_divider, b.m_divider);
    a.ChangeFractionalDivider(nDivider);
    b.ChangeFractionalDivider(nDivider);
    return nDivider;
}

int CDecimal::GetWorkingPlaces()
{
    return std::clamp(m_maxDivider, -1, MAX_DECIMAL_PLACES);
}

void CDecimal::LimitPlaces()
{
    const int nPlaces = GetWorkingPlaces();
    if (m_divider > nPlaces)
        ChangeFractionalDivider(nPlaces);
}

std::vector<wchar_t> CDecimal::GetMantissa() const
{
    CDigits mantissa(m_whole.m_digits);
    CBigInteger::ShiftLeft(mantissa, m_divider);
    CBigInteger::Add(mantissa, m_fraction.m_digits, mantissa);
    CBigInteger::Clean(mantissa);
    return mantissa;
}

CDecimal CDecimal::FromMantissa(int nSign, const std::vector<wchar_t>& mantissa, int nDivider)
{
    CDecimal result;
    result.m_divider = nDivider;
    const auto nPlaces = static_cast<std::ptrdiff_t>(std::min(static_cast<std::size_t>(nDivider), mantissa.size()));
    const auto itPoint = mantissa.begin() + nPlaces;
    result.m_whole.m_digits.assign(itPoint, mantissa.end());
    result.m_fraction.m_digits.assign(mantissa.begin(), itPoint);
    CBigInteger::Clean(result.m_whole.m_digits);
    CBigInteger::Clean(result.m_fraction.m_digits);
    // A product or quotient that is zero has no sign.
    if (nSign < 0 && !(result.m_whole.IsZeroValue() && result.m_fraction.IsZeroValue()))
        result.Negate();
    result.Rationalise();
    result.LimitPlaces();
    return result;
}

CDecimal CDecimal::SumWith(CDecimal addend) const
{
    CDecimal sum(*this);
    const int nDivider = Normalize(sum, addend);
    sum.m_fraction += addend.m_fraction;
    sum.m_whole += addend.m_whole;
    sum.SettleFraction(nDivider);
    sum.Rationalise();
    return sum;
}

void CDecimal::SettleFraction(int nDivider)
{
    const auto moveUnit = [&](int nSign)
    {
        m_fraction.Accumulate(CBigInteger::Pow10(static_cast<unsigned int>(nDivider)), -nSign);
        m_whole += CBigInteger(nSign);
    };
    while (!m_fraction.IsZeroValue() && m_fraction.m_digits.size() > static_cast<std::size_t>(nDivider))
        moveUnit(m_fraction.m_sign);
    if (m_whole.m_sign != m_fraction.m_sign && !m_whole.IsZeroValue() && !m_fraction.IsZeroValue())
        moveUnit(m_fraction.m_sign);
    if (m_whole.IsZeroValue())
        m_whole.m_sign = m_fraction.m_sign;
}

CDecimal CDecimal::operator+(const CDecimal& other)
{
    return SumWith(other);
}

CDecimal CDecimal::operator-(const CDecimal& other)
{
    return SumWith(other.GetNegative());
}

CDecimal CDecimal::operator*(const CDecimal& other)
{
    CDigits product;
    CBigInteger::Multiply(GetMantissa(), other.GetMantissa(), product);
    return FromMantissa(m_whole.m_sign * other.m_whole.m_sign, product, m_divider + other.m_divider);
}

CDecimal CDecimal::operator/(const CDecimal& other)
{
    // Two more places than are kept; with a negative maximum none of them matters.
    const int nPlaces = GetWorkingPlaces() + 2;
    const int nShift = nPlaces + other.m_divider - m_divider;
    CBigInteger dividend(m_whole.m_sign, GetMantissa());
    CBigInteger divisor(other.m_whole.m_sign, other.GetMantissa());
    CBigInteger& scaled = nShift >= 0 ? dividend : divisor;
    if (!scaled.IsZeroValue())
        CBigInteger::ShiftLeft(scaled.m_digits, std::abs(nShift));
    const CBigInteger quotient = dividend / divisor;
    return FromMantissa(quotient.m_sign, quotient.m_digits, nPlaces);
}

CDecimal& CDecimal::operator+=(const CDecimal& other)
{
    return *this = *this + other;
}

CDecimal& CDecimal::operator-=(const CDecimal& other)
{
    return *this = *this - other;
}

CDecimal& CDecimal::operator*=(const CDecimal& other)
{
    return *this = *this * other;
}

CDecimal& CDecimal::operator/=(const CDecimal& other)
{
    return *this = *this / other;
}

CDecimal& CDecimal::operator++()
{
    return *this += CDecimal(1);
}

CDecimal CDecimal::operator++(int)
{
    CDecimal before(*this);
    ++*this;
    return before;
}

CDecimal& CDecimal::operator--()
{
    return *this -= CDecimal(1);
}

CDecimal CDecimal::operator--(int)
{
    CDecimal before(*this);
    --*this;
    return before;
}

int CDecimal::Order(const CDecimal& other) const
{
    if (const int nOrder = m_whole.Order(other.m_whole); nOrder != 0)
        return nOrder;
    // A fraction has the sign of its whole part; where it is zero, its own sign does not count.
    return m_whole.m_sign *
           CompareFractions(m_fraction.m_digits, m_divider, other.m_fraction.m_digits, other.m_divider);
}

bool CDecimal::IsZeroValue() const
{
    return m_whole.IsZeroValue() && m_fraction.IsZeroValue();
}

bool CDecimal::IsBelow(const CDecimal& other, bool bOrEqual) const
{
    if (IsZeroValue() && other.IsZeroValue())
    {
        if (m_whole.m_sign < other.m_whole.m_sign)
            return true;
        return bOrEqual ? m_fraction.m_sign <= other.m_fraction.m_sign : m_fraction.m_sign < other.m_fraction.m_sign;
    }
    const int nOrder = Order(other);
    return nOrder < 0 || (bOrEqual && nOrder == 0);
}

bool CDecimal::operator==(const CDecimal& other) const
{
    return (IsZeroValue() && other.IsZeroValue()) || Order(other) == 0;
}

bool CDecimal::operator!=(const CDecimal& other) const
{
    return !(*this == other);
}

bool CDecimal::operator<(const CDecimal& other) const
{
    return IsBelow(other, false);
}

bool CDecimal::operator<=(const CDecimal& other) const
{
    return IsBelow(other, true);
}

bool CDecimal::operator>(const CDecimal& other) const
{
    return other.IsBelow(*this, false);
}

bool CDecimal::operator>=(const CDecimal& other) const
{
    return other.IsBelow(*this, true);
}

void CDecimal::Negate()
{
    m_whole.Negate();
    m_fraction.Negate();
}

CDecimal CDecimal::GetNegative() const
{
    CDecimal result(*this);
    result.Negate();
    return result;
}

void CDecimal::AppendFraction(std::wstring& strText) const
{
    const auto nPlaces = static_cast<std::size_t>(m_divider);
    const std::size_t nDigits = std::max<std::size_t>(m_fraction.m_digits.size(), 1);
    strText.append(nPlaces > nDigits ? nPlaces - nDigits : 0, L'0');
    m_fraction.AppendDigits(strText);
}

std::wstring CDecimal::ToString() const
{
    if (m_fraction.IsZeroValue())
        return m_whole.ToString();
    std::wstring strText;
    strText.reserve(m_whole.m_digits.size() + static_cast<std::size_t>(m_divider) + 3);
    if (m_whole.m_sign < 0)
        strText += L'-';
    m_whole.AppendDigits(strText);
    strText += L'.';
    AppendFraction(strText);
    if (strText.size() > s_nMaxTextLength)
        strText.resize(s_nMaxTextLength);
    return strText;
}

std::wstring CDecimal::ToString(int nPlaces) const
{
    nPlaces = std::max(nPlaces, 0);
    // Half a unit of the last place, which counts only if a parsed text could hold it.
    const bool bRounds = nPlaces < GetWorkingPlaces();
    CDecimal rounded(CBigInteger(), CBigInteger(bRounds ? 5 : 0), bRounds ? nPlaces + 1 : 1);
    if (m_whole.m_sign < 0)
        rounded.Negate();
    rounded += *this;

    std::wstring strFraction;
    rounded.AppendFraction(strFraction);
    std::wstring strText;
    if (rounded.m_whole.m_sign < 0)
        strText += L'-';
    rounded.m_whole.AppendDigits(strText);
    strText += L'.';
    return strText.append(strFraction, 0, static_cast<std::size_t>(nPlaces));
}

__int64 CDecimal::ToLongLong() const
{
    // Rounding to one place never changes the whole part, whereas without a place it would.
    if (!m_whole.FitsInteger(std::numeric_limits<__int64>::max()))
        throw CQvOverFlowException(L"The Decimal value if to large to fit into a LONGLONG");
    return m_whole.ToInteger();
}

long CDecimal::ToLong() const
{
    const CBigInteger whole = ToBigInteger();
    if (!whole.FitsInteger(std::numeric_limits<std::int32_t>::max()))
        throw CQvOverFlowException(L"The Decimal value if to large to fit into a LONG");
    return static_cast<long>(whole.ToInteger());
}

double CDecimal::ToDouble() const
{
    // Not compared with the constants themselves: static objects may call this before those exist.
    const bool bLong = m_whole.m_digits.size() >= s_nDoubleDigits;
    if (bLong && CBigInteger::Compare(m_whole.m_digits, GetDoubleBound().m_digits) > 0)
        throw CQvOverFlowException(L"The Decimal value if to large to fit into a Double");
    const std::wstring strWide = ToString();
    std::string strText(strWide.size(), '\0');
    std::transform(strWide.begin(), strWide.end(), strText.begin(), [](wchar_t c) { return static_cast<char>(c); });
    return GetNearestReal<double>(strText);
}

CBigInteger CDecimal::ToBigInteger() const
{
    CDecimal rounded(*this);
    rounded.ChangeFractionalDivider(0);
    return std::move(rounded.m_whole);
}

int CDecimal::GetMaxDecimalPlaces()
{
    return m_maxDivider;
}

void CDecimal::SetMaxDecimalPlaces(int nPlaces)
{
    m_maxDivider = nPlaces;
}

} // namespace QvXmlLib9
