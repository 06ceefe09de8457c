#pragma once

#include <cstdint>
#include <string>

/// @file
/// Numbers to and from text, the way the C library's `wcsto...` and `printf` do it in the C locale, whatever the locale
/// of the process and the width of `long`. Internal to the library.

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

/// Reads a decimal integer as `wcstol` and its kin do: blanks (blank, tab, line feed, vertical tab, form feed, carriage
/// return), one sign, digits. No digit gives 0. For unsigned types a minus sign negates modulo the width of the type.
/// @tparam TInteger std::int32_t, std::uint32_t, std::int64_t or std::uint64_t.
template <class TInteger>
SNumberText<TInteger> ReadInteger(const wchar_t* lpctText);

/// Reads a decimal number as `wcstod` does: blanks, one sign, digits with at most one point, an exponent if one is
/// complete. No digit gives 0. Words ("inf", "nan") and hexadecimal numbers are none. What is too large gives an
/// infinity, out of range; what is too small gives 0 or a denormal number, in range.
SNumberText<double> ReadReal(const wchar_t* lpctText);

/// Appends decimal digits, with a minus sign if negative.
void AppendInteger(std::wstring& strOut, std::int64_t nValue);
void AppendUnsigned(std::wstring& strOut, std::uint64_t nValue);

/// Appends the lexical form of a floating point number; see CConversions::r4ToString and r8ToString.
void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat);
void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat);

} // namespace QvXmlLib9
