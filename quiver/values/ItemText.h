#pragma once

#include "quiver/values/IntegerText.h"

#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// Lexical forms that come without a string of their own, for writing many values into one buffer. The conversions of
/// CConversions print by these, too. Internal to the library.

namespace QvXmlLib9
{

/// Appends a byte as a signed number, whether or not a plain `char` has a sign.
inline void AppendI1(std::wstring& strOut, char value)
{
    AppendInteger(strOut, static_cast<signed char>(value));
}

/// Appends the low 32 bits of a `long`, which may be wider than the kind that it carries.
inline void AppendI4(std::wstring& strOut, long value)
{
    AppendInteger(strOut, static_cast<std::int32_t>(value));
}

/// The same without a sign.
inline void AppendUI4(std::wstring& strOut, unsigned long value)
{
    AppendUnsigned(strOut, static_cast<std::uint32_t>(value));
}

/// A text as it stands.
inline std::wstring_view ViewOf(const std::wstring& strValue)
{
    return strValue;
}

/// "true" or "false".
inline std::wstring_view WordOf(bool bValue)
{
    return bValue ? L"true" : L"false";
}

} // namespace QvXmlLib9
