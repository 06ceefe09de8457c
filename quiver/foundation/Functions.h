#pragma once

#include "quiver/foundation/Export.h"

#include <cstdarg>
#include <string>

namespace QvXmlLib9
{

/// Formats like `printf`, with the wide meaning of the conversions, whatever the platform and the locale: `%s` and `%c`
/// take wide text, `%S` and `%C` narrow text; ahead of any of them `h` means narrow and `l` wide. Flags, width,
/// precision, `*` and the conversions `d i u o x X c C s S e E f F g G p n %` are understood; `%n` takes its pointer
/// and writes nothing through it. `%d` and its kin print 32-bit values, also with `l`, and 16-bit values with `h`;
/// 64-bit values are turned into text by `CConversions` instead. The size prefixes `F`, `L` and `N` are skipped. A null
/// string prints as "(null)". The result has no length limit and holds UTF-16 code units only. Any other format is a
/// programming error.
///
///     FormatString(L"Failed to find a required element [%s]", strName.c_str());
QVXMLLIB_API std::wstring FormatString(const wchar_t* format, ...);

/// FormatString on a list of arguments.
std::wstring FormatStringV(const wchar_t* format, std::va_list args);

/// Writes a formatted text to the debug trace, in slices of 128 characters. The trace goes to standard error in
/// diagnostic builds and nowhere in others. A text longer than 32767 characters is dropped.
void OutputTrace(const wchar_t* format, ...);

/// Replaces every occurrence of `needle`, also those that a replacement brings about together with its surroundings:
/// after each replacement the text counts as new. `needle` must not be empty nor occur in `replacement`.
void ReplaceAll(std::string& text, const std::string& needle, const std::string& replacement);
void ReplaceAll(std::wstring& text, const std::wstring& needle, const std::wstring& replacement);

/// Prints `value` in decimal with zeros in front up to `width` characters. Values beyond 2147483647 print as the
/// negative numbers of the same 32 bits.
std::wstring FormatPadded(unsigned int value, unsigned char width);

/// Cuts the zeros at the end; the first character always stays.
std::wstring TrimTrailingZeros(std::wstring digits);

/// Writes `nValue` in decimal with zeros in front up to `nWidth` characters. There must be room for 20 characters or
/// the width, whichever is more.
/// @return the end of what was written.
wchar_t* WritePadded(wchar_t* p, unsigned long long nValue, int nWidth);

/// Writes what FormatFraction gives, 16 characters at most.
/// @return the end of what was written.
wchar_t* WriteFraction(wchar_t* p, unsigned short milli, unsigned short micro, unsigned short nano);

/// The fraction of a seconds field: "." and the groups of three digits up to the last that is not 0, without zeros at
/// the end; empty if all three are 0.
std::wstring FormatFraction(unsigned short milli, unsigned short micro, unsigned short nano);

} // namespace QvXmlLib9
