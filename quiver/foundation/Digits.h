#pragma once

#include <cstdint>

/// @file
/// Decimal digits of text. Internal to the library.

namespace QvXmlLib9
{

/// Whether `c` is one of 0 to 9. Digits of other scripts are none: no value of a document is written in them.
constexpr bool IsDigit(wchar_t c)
{
    // One comparison, which compilers do not always make of two where this stands in a loop.
    return static_cast<std::uint32_t>(c) - static_cast<std::uint32_t>(L'0') < 10U;
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
