#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// Whether a text is as the library holds text: neither a zero unit nor a whole code point above 0xFFFF in it. Nearly
/// every text is, so this is what to ask before anything is copied.
inline bool IsUnitText(std::wstring_view strText)
{
    for (const wchar_t c : strText)
    {
        if (static_cast<std::uint32_t>(c) - 1 >= 0xFFFF)
            return false;
    }
    return true;
}

/// An argument's text up to its first zero unit, as UTF-16 units.
/// @param strBuffer takes the text where it differs from what the caller gave.
std::wstring_view ToUnitText(std::wstring_view strText, std::wstring& strBuffer);

} // namespace QvXmlLib9
