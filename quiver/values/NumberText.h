#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

/// @file
/// What reading and printing of numbers share. Numbers pass to and from text the way the C library's `wcsto...` and
/// `printf` do it in the C locale, whatever the locale of the process and the width of `long`: see IntegerText.h,
/// RealReader.h and RealWriter.h. Internal to the library.

namespace QvXmlLib9
{

/// What was read at the start of a text.
template <class TNumber>
struct SNumberText
{
    TNumber value;
    /// The number did not fit; `value` is the nearest that does.
    bool bOutOfRange;
    /// The first element that does not belong to the number; the start of the text when there is no number.
    const wchar_t* pStop;
};

/// Skips what may stand ahead of a number: blanks, tabs, line feeds, vertical tabs, form feeds, carriage returns.
inline const wchar_t* SkipBlanks(const wchar_t* p)
{
    while (*p == L' ' || (*p >= L'\t' && *p <= L'\r'))
        ++p;
    return p;
}

/// Moves behind one sign, if there is one.
/// @return whether it is a minus sign.
inline bool ReadSign(const wchar_t*& p)
{
    const bool bNegative = *p == L'-';
    if (bNegative || *p == L'+')
        ++p;
    return bNegative;
}

/// Appends ASCII characters.
/// @tparam nRoom the most characters that there can be.
template <std::size_t nRoom>
void AppendAscii(std::wstring& strOut, const char* pBegin, const char* pEnd)
{
    wchar_t szWide[nRoom];
    const auto nLength = static_cast<std::size_t>(pEnd - pBegin);
    std::transform(pBegin, pEnd, szWide, [](char c) { return static_cast<wchar_t>(c); });
    strOut.append(szWide, nLength);
}

} // namespace QvXmlLib9
