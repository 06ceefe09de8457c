#pragma once

/// @file
/// Decimal digits of text. Internal to the library.

namespace QvXmlLib9
{

/// Whether `c` is one of 0 to 9. Digits of other scripts are none: no value of a document is written in them.
constexpr bool IsDigit(wchar_t c)
{
    return c >= L'0' && c <= L'9';
}

/// The number that a digit stands for.
/// @param c must be a digit.
constexpr int DigitValue(wchar_t c)
{
    return static_cast<int>(c - L'0');
}

/// The digit of a number.
/// @param nValue 0 to 9.
constexpr wchar_t DigitOf(unsigned int nValue)
{
    return static_cast<wchar_t>(L'0' + static_cast<wchar_t>(nValue));
}

} // namespace QvXmlLib9
