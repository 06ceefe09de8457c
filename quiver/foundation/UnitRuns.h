#pragma once

#include <cstddef>
#include <string_view>

/// @file
/// Runs of units that are copied without a look at each. Where there are vector instructions they take eight units at a
/// time, and the last four or eight once more rather than one by one.

namespace QvXmlLib9
{

/// Copies the units that a text begins with and that stand for themselves in XML text: all but `"`, `&`, `<`, `>`, line
/// feeds and carriage returns, 0, which ends a text, and what is above 0xFFFF. All of `pTo` up to `nUnits` may be written
/// to.
/// @return how many they are.
std::size_t CopyPlainUnits(const wchar_t* pFrom, std::size_t nUnits, wchar_t* pTo);

/// Writes the ASCII that a text begins with, one unit a byte. All of `pTo` up to `nBytes` may be written to.
/// @return `nBytes` if all of the text is ASCII, less otherwise.
std::size_t WidenAscii(const char* pFrom, std::size_t nBytes, wchar_t* pTo);

/// Writes a text that is ASCII without a zero unit, one byte a unit. All of `pTo` up to `nUnits` may be written to.
/// @return whether it is such a text.
bool NarrowAscii(const wchar_t* pFrom, std::size_t nUnits, unsigned char* pTo);

/// Whether no byte of a text is above ASCII.
bool IsAscii(std::string_view svText);

} // namespace QvXmlLib9
