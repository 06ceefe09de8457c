#include "quiver/values/RealWriter.h"

#include "quiver/foundation/Digits.h"
#include "quiver/values/IntegerText.h"
#include "quiver/values/NumberText.h"
#include "quiver/values/RealFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace QvXmlLib9
{

namespace
{

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

/// A number without the lower half of its digits.
double UpperHalfOf(double dValue)
{
    std::uint64_t nBits = 0;
    std::memcpy(&nBits, &dValue, sizeof(nBits));
    nBits &= ~((std::uint64_t{1} << 27) - 1);
    std::memcpy(&dValue, &nBits, sizeof(dValue));
    return dValue;
}

/// Whether "%.16g" of a number that the decimal nScaled / dScale is nearest to prints that decimal, and no inaccuracy of
/// the number.
bool HasSixteenDigits(double dMagnitude, std::uint64_t nScaled, double dScale)
{
    double dSixteenthDigit = dMagnitude < 10 ? 1e-18 : 1e-15;
    for (double dPower = dMagnitude < 10 ? 1e-2 : 1e1; dPower <= dMagnitude; dPower *= 10)
        dSixteenthDigit *= 10;
    if (UlpOf(dMagnitude) < dSixteenthDigit * 0.999)
        return true;
    // Half of that distance is too much, but the number may be nearer. Each half of it times the scale is exact, and what
    // is left of the sum, too.
    const double dUpper = UpperHalfOf(dMagnitude);
    const double dRest = (dUpper * dScale - static_cast<double>(nScaled)) + (dMagnitude - dUpper) * dScale;
    return std::fabs(dRest) < dSixteenthDigit * 0.499 * dScale;
}

/// Ten thousand times a number that is a decimal with a few fraction digits, as prices and measurements are; 0 for any
/// other.
std::uint64_t FindShortDecimal(double dValue)
{
    constexpr double dScale = 1e4;
    const double dMagnitude = std::fabs(dValue);
    if (!(dMagnitude >= 1e-3 && dMagnitude < 1e11))
        return 0;
    // Both numbers are whole and small enough to be exact, so the quotient is the number nearest to the decimal.
    const auto nScaled = static_cast<std::uint64_t>(dMagnitude * dScale + 0.5);
    return static_cast<double>(nScaled) / dScale == dMagnitude && HasSixteenDigits(dMagnitude, nScaled, dScale)
               ? nScaled
               : 0;
}

std::wstring_view PrintShortDecimal(IntegerRoom& room, double dValue)
{
    std::uint64_t nScaled = FindShortDecimal(dValue);
    if (nScaled == 0)
        return {};

    wchar_t* const pEnd = room + std::size(room);
    wchar_t* p = pEnd;
    int nPlaces = 4;
    for (; nPlaces > 1 && nScaled % 10 == 0; --nPlaces)
        nScaled /= 10;
    for (; nPlaces > 0; --nPlaces, nScaled /= 10)
        *--p = DigitOf(static_cast<unsigned int>(nScaled % 10));
    *--p = L'.';
    do
        *--p = DigitOf(static_cast<unsigned int>(nScaled % 10));
    while ((nScaled /= 10) != 0);
    if (dValue < 0)
        *--p = L'-';
    return {p, static_cast<std::size_t>(pEnd - p)};
}

/// A whole number below a power of ten; not the negative zero.
bool IsWhole(double dValue, double dLimit)
{
    return std::fabs(dValue) < dLimit && static_cast<double>(static_cast<std::int64_t>(dValue)) == dValue &&
           (dValue != 0 || !std::signbit(dValue));
}

std::wstring_view PrintWhole(IntegerRoom& room, double dValue, double dLimit)
{
    return IsWhole(dValue, dLimit) ? PrintInteger(room, static_cast<std::int64_t>(dValue)) : std::wstring_view();
}

/// What distinguishes the two floating point kinds in print.
struct SRealForm
{
    /// Significant digits without a format.
    int nPrecision;
    /// 10 to the power of nPrecision.
    double dWholeLimit;
    /// The longest text. Formats come from schemas and may ask for any width; this bounds what one value takes.
    std::size_t nMaxLength;
};

constexpr SRealForm s_r4Form = {7, 1e7, 31};
constexpr SRealForm s_r8Form = {16, 1e16, 47};

/// "%.<nPrecision>g". Whole numbers that have no more digits than that print as integers do, only faster.
void AppendGeneral(std::wstring& strOut, double dValue, const SRealForm& form)
{
    IntegerRoom room;
    std::wstring_view svShort = PrintWhole(room, dValue, form.dWholeLimit);
    if (svShort.empty() && form.nPrecision == s_r8Form.nPrecision)
        svShort = PrintShortDecimal(room, dValue);
    if (!svShort.empty())
    {
        strOut.append(svShort);
        return;
    }
    char szNumber[64];
    char* const pEnd =
        std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, std::chars_format::general, form.nPrecision).ptr;
    AppendAscii<sizeof(szNumber)>(strOut, szNumber, pEnd);
}

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
        AppendGeneral(strOut, dValue, form);
    strOut.resize(std::min(strOut.size(), nOld + form.nMaxLength));
}

} // namespace

bool IsShortR8(double dValue)
{
    return IsWhole(dValue, s_r8Form.dWholeLimit) || FindShortDecimal(dValue) != 0;
}

std::wstring_view PrintShortR8(IntegerRoom& room, double dValue)
{
    const std::wstring_view svWhole = PrintWhole(room, dValue, s_r8Form.dWholeLimit);
    return svWhole.empty() ? PrintShortDecimal(room, dValue) : svWhole;
}

void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, static_cast<double>(fValue), lpctFormat, s_r4Form);
}

void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, dValue, lpctFormat, s_r8Form);
}

} // namespace QvXmlLib9
