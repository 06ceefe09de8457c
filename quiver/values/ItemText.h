#pragma once

#include "quiver/values/IntegerText.h"

#include <cstdint>
#include <string>

/// @file
/// Lexical forms that are appended to a buffer, so that writing a value takes no string of its own. The conversions of
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

/// Appends a text as it stands.
inline void AppendString(std::wstring& strOut, const std::wstring& strValue)
{
    strOut += strValue;
}

/// Appends "true" or "false".
inline void AppendBoolean(std::wstring& strOut, bool bValue)
{
    strOut += bValue ? L"true" : L"false";
}

} // namespace QvXmlLib9
