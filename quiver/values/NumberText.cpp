#include "quiver/values/NumberText.h"

#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>
#include <type_traits>

namespace QvXmlLib9
{

namespace
{

/// Significant digits that a double prints with by default.
constexpr int s_nDoublePrecision = 16;

bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

const wchar_t* SkipBlanks(const wchar_t* p)
{
    while (*p == L' ' || (*p >= L'\t' && *p <= L'\r'))
        ++p;
    return p;
}

bool ReadSign(const wchar_t*& p)
{
    const bool bNegative = *p == L'-';
    if (bNegative || *p == L'+')
        ++p;
    return bNegative;
}

/// Reads digits to their end.
/// @return false if they do not fit 64 bits.
bool ReadMagnitude(const wchar_t*& p, std::uint64_t& nMagnitude)
{
    while (*p == L'0')
        ++p;
    const wchar_t* const pFirst = p;
    for (; IsDigit(*p); ++p)
        nMagnitude = nMagnitude * 10 + static_cast<std::uint64_t>(*p - L'0');
    // Every number of 19 digits fits. One of 20 digits that begins with 1 has wrapped around once if it came out
    // smaller than it must be; the others have surely.
    const std::ptrdiff_t nDigits = p - pFirst;
    return nDigits < 20 || (nDigits == 20 && *pFirst == L'1' && nMagnitude >= 10000000000000000000U);
}

/// The ASCII characters of a number for std::from_chars. Nearly every number fits the room inside.
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

/// The decimal exponent of the first digit that is not 0, which tells what is too large from what is too small.
std::int64_t ExponentOf(std::string_view number)
{
    const std::size_t nExponentAt = std::min(number.find('e'), number.find('E'));
    const std::string_view mantissa = number.substr(0, nExponentAt);
    const std::size_t nPoint = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t nFirst = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    const auto nPlace = static_cast<std::int64_t>(nPoint) - static_cast<std::int64_t>(nFirst);
    if (nExponentAt == std::string_view::npos)
        return nPlace;

    std::string_view exponent = number.substr(nExponentAt + 1);
    const bool bNegative = exponent.front() == '-';
    if (bNegative || exponent.front() == '+')
        exponent.remove_prefix(1);
    constexpr std::int64_t nLimit = std::numeric_limits<std::int64_t>::max() / 100;
    std::int64_t nExponent = 0;
    for (const char c : exponent)
        nExponent = std::min(nExponent * 10 + (c - '0'), nLimit);
    return nPlace + (bNegative ? -nExponent : nExponent);
}

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
        decimal.nMantissa = decimal.nMantissa * 10 + static_cast<std::uint64_t>(*p - L'0');
    decimal.nDigits = p - pWhole;
    if (*p != L'.')
        return;
    const wchar_t* const pFraction = ++p;
    for (; IsDigit(*p); ++p)
        decimal.nMantissa = decimal.nMantissa * 10 + static_cast<std::uint64_t>(*p - L'0');
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
        nExponent = std::min<std::int64_t>(nExponent * 10 + (*pExponent - L'0'), nLimit);
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
    const CAsciiText text(pBegin, pEnd);
    const std::string_view number = text.Get();
    double dValue = 0;
    const std::from_chars_result result = std::from_chars(number.data(), number.data() + number.size(), dValue);
    if (result.ec == std::errc::result_out_of_range)
        return ExponentOf(number) > 0 ? std::numeric_limits<double>::infinity() : 0;
    return dValue;
}

/// @tparam nRoom the most characters that there can be.
template <std::size_t nRoom>
void AppendAscii(std::wstring& strOut, const char* pBegin, const char* pEnd)
{
    wchar_t szWide[nRoom];
    const auto nLength = static_cast<std::size_t>(pEnd - pBegin);
    std::transform(pBegin, pEnd, szWide, [](char c) { return static_cast<wchar_t>(c); });
    strOut.append(szWide, nLength);
}

wchar_t DigitOf(unsigned int nDigit)
{
    return static_cast<wchar_t>(L'0' + static_cast<wchar_t>(nDigit));
}

void AppendDigits(std::wstring& strOut, std::uint64_t nMagnitude, bool bNegative)
{
    wchar_t szDigits[24];
    wchar_t* const pEnd = szDigits + std::size(szDigits);
    wchar_t* p = pEnd;
    // Two digits a division by 100 take half the time of one a division by 10.
    while (nMagnitude >= 100)
    {
        const auto nPair = static_cast<unsigned int>(nMagnitude % 100);
        nMagnitude /= 100;
        *--p = DigitOf(nPair % 10);
        *--p = DigitOf(nPair / 10);
    }
    const auto nRest = static_cast<unsigned int>(nMagnitude);
    *--p = DigitOf(nRest % 10);
    if (nRest >= 10)
        *--p = DigitOf(nRest / 10);
    if (bNegative)
        *--p = L'-';
    strOut.append(p, static_cast<std::size_t>(pEnd - p));
}

// More than any finite double needs: no format prints other characters at the front for larger numbers than these.
constexpr int s_nMaxPrecision = 1100;
constexpr int s_nMaxWidth = 2000;

void CopyNumber(std::wstring& strOut, const wchar_t*& p, int nMax)
{
    int nNumber = 0;
    if (!IsDigit(*p))
        return;
    for (; IsDigit(*p); ++p)
        nNumber = std::min(nNumber * 10 + static_cast<int>(*p - L'0'), nMax);
    AppendInteger(strOut, nNumber);
}

/// Copies what follows a percent sign, in a form that FormatString prints with bounded memory.
/// @return whether it is a conversion of one double.
bool CopyConversion(std::wstring& strOut, const wchar_t*& p)
{
    constexpr std::wstring_view flags = L"-+ #0";
    constexpr std::wstring_view sizes = L"hlL";
    constexpr std::wstring_view conversions = L"eEfFgG";
    while (*p != 0 && flags.find(*p) != std::wstring_view::npos)
        strOut += *p++;
    CopyNumber(strOut, p, s_nMaxWidth);
    if (*p == L'.')
    {
        strOut += *p++;
        CopyNumber(strOut, p, s_nMaxPrecision);
    }
    while (*p != 0 && sizes.find(*p) != std::wstring_view::npos)
        ++p;
    if (*p == 0 || conversions.find(*p) == std::wstring_view::npos)
        return false;
    // FormatString takes an F ahead of certain letters for a size; a finite number prints alike with f.
    strOut += *p == L'F' ? L'f' : *p;
    ++p;
    return true;
}

/// Makes a format that is safe to print one double with.
/// @return false if `lpctFormat` asks for anything else, where `printf` would read arguments that are not there.
bool CopyRealFormat(std::wstring& strOut, const wchar_t* lpctFormat)
{
    bool bConversionSeen = false;
    for (const wchar_t* p = lpctFormat; *p != 0;)
    {
        strOut += *p;
        if (*p++ != L'%')
            continue;
        if (*p == L'%')
        {
            strOut += *p++;
            continue;
        }
        if (bConversionSeen || !CopyConversion(strOut, p))
            return false;
        bConversionSeen = true;
    }
    return true;
}

/// Prints the formats that are nothing but "%.<up to two digits><e, f or g>", which are nearly all that are used.
bool AppendByPlainFormat(std::wstring& strOut, double dValue, const wchar_t* p)
{
    if (*p++ != L'%' || *p++ != L'.')
        return false;
    int nPrecision = 0;
    for (int n = 0; n < 2 && IsDigit(*p); ++n)
        nPrecision = nPrecision * 10 + static_cast<int>(*p++ - L'0');
    std::chars_format eFormat = std::chars_format::general;
    if (*p == L'f')
        eFormat = std::chars_format::fixed;
    else if (*p == L'e')
        eFormat = std::chars_format::scientific;
    else if (*p != L'g')
        return false;
    if (p[1] != 0)
        return false;
    char szNumber[512];
    char* const pEnd = std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, eFormat, nPrecision).ptr;
    AppendAscii<sizeof(szNumber)>(strOut, szNumber, pEnd);
    return true;
}

bool AppendByFormat(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    if (AppendByPlainFormat(strOut, dValue, lpctFormat))
        return true;
    std::wstring strFormat;
    if (!CopyRealFormat(strFormat, lpctFormat))
        return false;
    strOut += FormatString(strFormat.c_str(), dValue);
    return true;
}

/// Distance of a positive normal number from the next greater one.
double UlpOf(double dValue)
{
    std::uint64_t nBits = 0;
    std::memcpy(&nBits, &dValue, sizeof(nBits));
    const std::uint64_t nUlpBits = (nBits & 0x7FF0000000000000U) - (std::uint64_t{52} << 52);
    double dUlp = 0;
    std::memcpy(&dUlp, &nUlpBits, sizeof(dUlp));
    return dUlp;
}

/// "%.16g" of a number that is a decimal of a few fraction digits, as prices and measurements are. The decimal is what
/// prints as long as the number's own inaccuracy lies below the sixteenth digit; otherwise nothing is appended.
bool AppendShortDecimal(std::wstring& strOut, double dValue)
{
    static constexpr double s_dScales[] = {1e1, 1e2, 1e3, 1e4};
    const double dMagnitude = std::fabs(dValue);
    if (!(dMagnitude >= 1e-3 && dMagnitude < 1e11))
        return false;
    for (std::size_t n = 0; n < std::size(s_dScales); ++n)
    {
        // Both numbers are whole and small enough to be exact, so the quotient is the number nearest to the decimal.
        const auto nScaled = static_cast<std::int64_t>(dMagnitude * s_dScales[n] + 0.5);
        if (static_cast<double>(nScaled) / s_dScales[n] != dMagnitude)
            continue;
        double dSixteenthDigit = 1e-18;
        for (double dPower = 1e-2; dPower <= dMagnitude; dPower *= 10)
            dSixteenthDigit *= 10;
        if (UlpOf(dMagnitude) >= dSixteenthDigit * 0.999)
            return false;
        const auto nScale = static_cast<std::int64_t>(s_dScales[n]);
        if (dValue < 0)
            strOut += L'-';
        AppendInteger(strOut, nScaled / nScale);
        strOut += L'.';
        for (std::int64_t nFraction = nScaled % nScale, nPlace = nScale / 10; nPlace != 0; nPlace /= 10)
            strOut += static_cast<wchar_t>(L'0' + nFraction / nPlace % 10);
        return true;
    }
    return false;
}

/// "%.<nPrecision>g". Whole numbers that have no more digits than that print as integers do, only faster.
void AppendGeneral(std::wstring& strOut, double dValue, int nPrecision, double dWholeLimit)
{
    if (std::fabs(dValue) < dWholeLimit && (dValue != 0 || !std::signbit(dValue)))
    {
        const auto nWhole = static_cast<std::int64_t>(dValue);
        if (static_cast<double>(nWhole) == dValue)
            return AppendInteger(strOut, nWhole);
    }
    if (nPrecision == s_nDoublePrecision && AppendShortDecimal(strOut, dValue))
        return;
    char szNumber[64];
    char* const pEnd =
        std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, std::chars_format::general, nPrecision).ptr;
    AppendAscii<sizeof(szNumber)>(strOut, szNumber, pEnd);
}

/// What distinguishes the two floating point kinds in print.
struct SRealForm
{
    int nPrecision;
    /// 10 to the power of nPrecision
    double dWholeLimit;
    std::size_t nMaxLength;
};

void AppendReal(std::wstring& strOut, double dValue, const wchar_t* lpctFormat, const SRealForm& form)
{
    if (std::isnan(dValue))
    {
        strOut += L"NaN";
        return;
    }
    if (std::isinf(dValue))
    {
        strOut += dValue < 0 ? L"-INF" : L"INF";
        return;
    }
    const std::size_t nOld = strOut.size();
    if (lpctFormat == nullptr || !AppendByFormat(strOut, dValue, lpctFormat))
        AppendGeneral(strOut, dValue, form.nPrecision, form.dWholeLimit);
    strOut.resize(std::min(strOut.size(), nOld + form.nMaxLength));
}

} // namespace

template <class TInteger>
SNumberText<TInteger> ReadInteger(const wchar_t* lpctText)
{
    using Limits = std::numeric_limits<TInteger>;
    const wchar_t* p = SkipBlanks(lpctText);
    const bool bNegative = ReadSign(p);
    if (!IsDigit(*p))
        return {0, false, lpctText};

    std::uint64_t nMagnitude = 0;
    const bool bFits = ReadMagnitude(p, nMagnitude);
    const auto nLimit = static_cast<std::uint64_t>(Limits::max()) + (Limits::is_signed && bNegative ? 1U : 0U);
    if (!bFits || nMagnitude > nLimit)
        return {Limits::is_signed && bNegative ? Limits::min() : Limits::max(), true, p};
    return {static_cast<TInteger>(bNegative ? 0 - nMagnitude : nMagnitude), false, p};
}

template SNumberText<std::int32_t> ReadInteger<std::int32_t>(const wchar_t*);
template SNumberText<std::uint32_t> ReadInteger<std::uint32_t>(const wchar_t*);
template SNumberText<std::int64_t> ReadInteger<std::int64_t>(const wchar_t*);
template SNumberText<std::uint64_t> ReadInteger<std::uint64_t>(const wchar_t*);

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

void AppendInteger(std::wstring& strOut, std::int64_t nValue)
{
    const auto nMagnitude = static_cast<std::uint64_t>(nValue);
    AppendDigits(strOut, nValue < 0 ? 0 - nMagnitude : nMagnitude, nValue < 0);
}

void AppendUnsigned(std::wstring& strOut, std::uint64_t nValue)
{
    AppendDigits(strOut, nValue, false);
}

void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, static_cast<double>(fValue), lpctFormat, {7, 1e7, 31});
}

void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, dValue, lpctFormat, {s_nDoublePrecision, 1e16, 47});
}

} // namespace QvXmlLib9
