#pragma once

#include "quiver/values/NumberText.h"

#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// Whole numbers of up to 64 bits to and from text; see NumberText.h. Internal to the library.

namespace QvXmlLib9
{

/// Reads a decimal integer as `wcstol` and its kin do: blanks (blank, tab, line feed, vertical tab, form feed, carriage
/// return), one sign, digits. No digit gives 0. For unsigned types a minus sign negates modulo the width of the type.
/// @tparam TInteger std::int32_t, std::uint32_t, std::int64_t or std::uint64_t.
template <class TInteger>
SNumberText<TInteger> ReadInteger(const wchar_t* lpctText);

/// Room for any of the numbers.
using IntegerRoom = wchar_t[24];

/// Decimal digits, with a minus sign if negative.
/// @param room where they are put; it has to live as long as the result.
std::wstring_view PrintInteger(IntegerRoom& room, std::int64_t nValue);
std::wstring_view PrintUnsigned(IntegerRoom& room, std::uint64_t nValue);

/// Appends decimal digits, with a minus sign if negative.
void AppendInteger(std::wstring& strOut, std::int64_t nValue);
void AppendUnsigned(std::wstring& strOut, std::uint64_t nValue);

} // namespace QvXmlLib9
