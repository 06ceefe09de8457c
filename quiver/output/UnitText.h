#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// Whether a text is as the library holds text: neither a zero unit nor a whole code point above 0xFFFF in it. Nearly
/// every text is, so this is what to ask before anything is copied.
inline bool IsUnitText(std::wstring_view svText)
{
    // 0 less 1, and what is above 0xFFFF, have bits in the upper half. No early way out, so that the loop becomes
    // vector instructions.
    std::uint32_t nAll = 0;
    for (const wchar_t c : svText)
        nAll |= static_cast<std::uint32_t>(c) | (static_cast<std::uint32_t>(c) - 1);
    return (nAll & 0xFFFF0000) == 0;
}

/// What ToUnitText does for a text that is not so.
std::wstring_view MakeUnitText(std::wstring_view svText, std::wstring& strBuffer);

/// An argument's text up to its first zero unit, as UTF-16 units.
/// @param strBuffer takes the text where it differs from what the caller gave.
inline std::wstring_view ToUnitText(std::wstring_view svText, std::wstring& strBuffer)
{
    return IsUnitText(svText) ? svText : MakeUnitText(svText, strBuffer);
}

} // namespace QvXmlLib9
