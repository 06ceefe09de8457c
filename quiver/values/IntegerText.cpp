#include "quiver/values/IntegerText.h"

#include "quiver/foundation/Digits.h"

#include <cstddef>
#include <iterator>
#include <limits>

namespace QvXmlLib9
{

namespace
{

/// Reads digits to their end.
/// @return false if they do not fit 64 bits.
bool ReadMagnitude(const wchar_t*& p, std::uint64_t& nMagnitude)
{
    while (*p == L'0')
        ++p;
    const wchar_t* const pFirst = p;
    for (; IsDigit(*p); ++p)
        nMagnitude = nMagnitude * 10 + static_cast<std::uint64_t>(DigitValue(*p));
    // Every number of 19 digits fits. One of 20 digits that begins with 1 has wrapped around once if it came out
    // smaller than it must be; the others have surely.
    const std::ptrdiff_t nDigits = p - pFirst;
    return nDigits < 20 || (nDigits == 20 && *pFirst == L'1' && nMagnitude >= 10000000000000000000U);
}

std::wstring_view PrintMagnitude(IntegerRoom& room, std::uint64_t nMagnitude, bool bNegative)
{
    wchar_t* const pEnd = room + std::size(room);
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
    return {p, static_cast<std::size_t>(pEnd - p)};
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

std::wstring_view PrintInteger(IntegerRoom& room, std::int64_t nValue)
{
    const auto nMagnitude = static_cast<std::uint64_t>(nValue);
    return PrintMagnitude(room, nValue < 0 ? 0 - nMagnitude : nMagnitude, nValue < 0);
}

std::wstring_view PrintUnsigned(IntegerRoom& room, std::uint64_t nValue)
{
    return PrintMagnitude(room, nValue, false);
}

void AppendInteger(std::wstring& strOut, std::int64_t nValue)
{
    IntegerRoom room;
    strOut.append(PrintInteger(room, nValue));
}

void AppendUnsigned(std::wstring& strOut, std::uint64_t nValue)
{
    IntegerRoom room;
    strOut.append(PrintUnsigned(room, nValue));
}

} // namespace QvXmlLib9
