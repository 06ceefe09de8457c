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
            strOut += DigitOf(static_cast<unsigned int>(nFraction / nPlace % 10));
        return true;
    }
    return false;
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
    if (std::fabs(dValue) < form.dWholeLimit && (dValue != 0 || !std::signbit(dValue)))
    {
        const auto nWhole = static_cast<std::int64_t>(dValue);
        if (static_cast<double>(nWhole) == dValue)
            return AppendInteger(strOut, nWhole);
    }
    if (form.nPrecision == s_r8Form.nPrecision && AppendShortDecimal(strOut, dValue))
        return;
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

void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, static_cast<double>(fValue), lpctFormat, s_r4Form);
}

void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    AppendReal(strOut, dValue, lpctFormat, s_r8Form);
}

} // namespace QvXmlLib9
