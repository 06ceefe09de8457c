#include "quiver/values/RealReader.h"

#include "quiver/foundation/Digits.h"
#include "quiver/values/NearestReal.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

namespace
{

/// The ASCII characters of a number. Nearly every number fits the room inside.
class CAsciiText
{
public:
    CAsciiText(const wchar_t* pBegin, const wchar_t* pEnd)
        : m_nLength(static_cast<std::size_t>(pEnd - pBegin))
    {
        if (m_nLength > sizeof(m_szShort))
            m_strLong.resize(m_nLength);
        m_pText = m_nLength > sizeof(m_szShort) ? m_strLong.data() : m_szShort;
        std::transform(pBegin, pEnd, m_pText, [](wchar_t c) { return static_cast<char>(c); });
    }
    CAsciiText(const CAsciiText&) = delete;
    CAsciiText& operator=(const CAsciiText&) = delete;

    std::string_view Get() const { return {m_pText, m_nLength}; }

private:
    std::size_t m_nLength;
    char* m_pText;
    char m_szShort[64];
    std::string m_strLong;
};

/// A decimal number as it was read: nMantissa times 10 to the power of nExponent, unless there are too many digits.
struct SDecimal
{
    std::uint64_t nMantissa = 0;
    std::int64_t nExponent = 0;
    std::ptrdiff_t nDigits = 0;
};

void ReadMantissa(const wchar_t*& p, SDecimal& decimal)
{
    const wchar_t* const pWhole = p;
    for (; IsDigit(*p); ++p)
        decimal.nMantissa = decimal.nMantissa * 10 + static_cast<std::uint64_t>(DigitValue(*p));
    decimal.nDigits = p - pWhole;
    if (*p != L'.')
        return;
    const wchar_t* const pFraction = ++p;
    for (; IsDigit(*p); ++p)
        decimal.nMantissa = decimal.nMantissa * 10 + static_cast<std::uint64_t>(DigitValue(*p));
    decimal.nDigits += p - pFraction;
    decimal.nExponent = pFraction - p;
}

/// Moves on only if there is a digit; a letter alone does not belong to the number.
void ReadExponent(const wchar_t*& p, SDecimal& decimal)
{
    if (*p != L'e' && *p != L'E')
        return;
    const wchar_t* pExponent = p + 1;
    const bool bNegative = ReadSign(pExponent);
    constexpr std::int64_t nLimit = std::numeric_limits<std::int64_t>::max() / 100;
    std::int64_t nExponent = 0;
    for (; IsDigit(*pExponent); p = ++pExponent)
        nExponent = std::min<std::int64_t>(nExponent * 10 + DigitValue(*pExponent), nLimit);
    decimal.nExponent += bNegative ? -nExponent : nExponent;
}

constexpr double s_powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t s_nMaxExactPower = 22;

/// Whether mantissa and power of ten are doubles without rounding. A single multiplication or division then gives the
/// nearest double, as long as the processor rounds it to a double at once.
bool IsExact(const SDecimal& decimal)
{
    constexpr std::uint64_t nMaxExactInteger = std::uint64_t{1} << std::numeric_limits<double>::digits;
    return FLT_EVAL_METHOD == 0 && decimal.nDigits < 20 && decimal.nMantissa <= nMaxExactInteger &&
           decimal.nExponent >= -s_nMaxExactPower && decimal.nExponent <= s_nMaxExactPower;
}

double ScaleExactly(const SDecimal& decimal)
{
    const auto dMantissa = static_cast<double>(decimal.nMantissa);
    return decimal.nExponent < 0 ? dMantissa / s_powersOfTen[-decimal.nExponent]
                                 : dMantissa * s_powersOfTen[decimal.nExponent];
}

double ReadByCharacters(const wchar_t* pBegin, const wchar_t* pEnd)
{
    return GetNearestReal<double>(CAsciiText(pBegin, pEnd).Get());
}

} // namespace

SNumberText<double> ReadReal(const wchar_t* lpctText)
{
    const wchar_t* p = SkipBlanks(lpctText);
    const bool bNegative = ReadSign(p);
    const wchar_t* const pMantissa = p;
    SDecimal decimal;
    ReadMantissa(p, decimal);
    if (decimal.nDigits == 0)
        return {0, false, lpctText};
    ReadExponent(p, decimal);

    const double dMagnitude = IsExact(decimal) ? ScaleExactly(decimal) : ReadByCharacters(pMantissa, p);
    return {bNegative ? -dMagnitude : dMagnitude, std::isinf(dMagnitude), p};
}

} // namespace QvXmlLib9
