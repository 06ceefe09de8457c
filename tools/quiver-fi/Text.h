#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quiver_fi
{

/// UTF-16 units of UTF-8 text.
/// @throws std::runtime_error for octets that are not UTF-8.
void Widen(std::string_view svUtf8, std::wstring& strUnits);
std::wstring Widen(std::string_view svUtf8);

/// UTF-8 form of UTF-16 units.
/// @throws std::runtime_error for an unpaired surrogate, which UTF-8 has no form for.
std::string Narrow(std::wstring_view svUnits);

/// Whether there is nothing but white space.
bool IsBlank(std::string_view svUtf8);

void AppendHex(std::string& strOut, std::size_t nValue, int nDigits);

/// UTF-16 text between quotes, printable on one line whatever it holds, in UTF-8.
/// @param nLimit units after which it is cut short.
std::string Quote(std::wstring_view svUnits, std::size_t nLimit = static_cast<std::size_t>(-1));

/// UTF-8 text between quotes.
std::string Quote(std::string_view svUtf8);

/// A message as it may go to a terminal: what would move the cursor or turn the direction of writing is told by its
/// number, and so are octets that are not UTF-8, which a file name can hold.
std::string EscapeControls(std::string_view svMessage);

} // namespace quiver_fi
