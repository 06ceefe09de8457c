#include "quiver/values/NumberText.h"

#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <type_traits>

namespace QvXmlLib9
{

namespace
{

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

void AppendAscii(std::wstring& strOut, const char* pBegin, const char* pEnd)
{
    const std::size_t nOld = strOut.size();
    strOut.resize(nOld + static_cast<std::size_t>(pEnd - pBegin));
    std::transform(pBegin, pEnd, &strOut[nOld], [](char c) { return static_cast<wchar_t>(c); });
}

template <class TInteger>
void AppendDigits(std::wstring& strOut, TInteger nValue)
{
    char szDigits[24];
    AppendAscii(strOut, szDigits, std::to_chars(szDigits, szDigits + sizeof(szDigits), nValue).ptr);
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
    AppendAscii(strOut, szNumber,
                std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, eFormat, nPrecision).ptr);
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

/// "%.<nPrecision>g". Whole numbers that have no more digits than that print as integers do, only faster.
void AppendGeneral(std::wstring& strOut, double dValue, int nPrecision, double dWholeLimit)
{
    if (std::fabs(dValue) < dWholeLimit && (dValue != 0 || !std::signbit(dValue)))
    {
        const auto nWhole = static_cast<std::int64_t>(dValue);
        if (static_cast<double>(nWhole) == dValue)
            return AppendInteger(strOut, nWhole);
    }
    char szNumber[64];
    char* const pEnd =
        std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, std::chars_format::general, nPrecision).ptr;
    AppendAscii(strOut, szNumber, pEnd);
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

    const auto nLimit = static_cast<std::uint64_t>(Limits::max()) + (Limits::is_signed && bNegative ? 1U : 0U);
    std::uint64_t nMagnitude = 0;
    bool bOutOfRange = false;
    for (; IsDigit(*p); ++p)
    {
        const auto nDigit = static_cast<std::uint64_t>(*p - L'0');
        bOutOfRange = bOutOfRange || nMagnitude > (nLimit - nDigit) / 10;
        if (!bOutOfRange)
            nMagnitude = nMagnitude * 10 + nDigit;
    }
    if (bOutOfRange)
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
    while (IsDigit(*p))
        ++p;
    std::ptrdiff_t nDigits = p - pMantissa;
    if (*p == L'.')
    {
        const wchar_t* const pFraction = ++p;
        while (IsDigit(*p))
            ++p;
        nDigits += p - pFraction;
    }
    if (nDigits == 0)
        return {0, false, lpctText};
    if (*p == L'e' || *p == L'E')
    {
        const wchar_t* pExponent = p + 1;
        ReadSign(pExponent);
        for (; IsDigit(*pExponent); ++pExponent)
            p = pExponent + 1;
    }

    const CAsciiText text(pMantissa, p);
    const std::string_view number = text.Get();
    double dValue = 0;
    const std::from_chars_result result = std::from_chars(number.data(), number.data() + number.size(), dValue);
    if (result.ec == std::errc::result_out_of_range)
        dValue = ExponentOf(number) > 0 ? std::numeric_limits<double>::infinity() : 0;
    return {bNegative ? -dValue : dValue, std::isinf(dValue), p};
}

void AppendInteger(std::wstring& strOut, std::int64_t nValue)
{
    AppendDigits(strOut, nValue);
}

void AppendUnsigned(std::wstring& strOut, std::uint64_t nValue)
{
    AppendDigits(strOut, nValue);
}

void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, static_cast<double>(fValue), lpctFormat, {7, 1e7, 31});
}

void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, dValue, lpctFormat, {16, 1e16, 47});
}

} // namespace QvXmlLib9
