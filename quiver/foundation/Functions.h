#pragma once

#include "quiver/foundation/Export.h"

#include <cstdarg>
#include <string>

namespace QvXmlLib9
{

/// Formats like `printf`, with the wide meaning of the conversions, whatever the platform and the locale: `%s` and `%c`
/// take wide text, `%S` and `%C` narrow text. Flags, width, precision, `*` and the conversions
/// `d i u o x X c C s S e E f F g G p %` are understood. `%d` and its kin print 32-bit values; 64-bit values are turned
/// into text by `CConversions` instead. A null string prints as "(null)". The result has no length limit and holds
/// UTF-16 code units only.
///
///     FormatString(L"Failed to find a required element [%s]", strName.c_str());
QVXMLLIB_API std::wstring FormatString(const wchar_t* format, ...);

/// FormatString on a list of arguments.
std::wstring FormatStringV(const wchar_t* format, std::va_list args);

/// Writes a formatted text to the debug trace, in slices of 128 characters. The trace goes to standard error in
/// diagnostic builds and nowhere in others. A text longer than 32767 characters is dropped.
void OutputTrace(const wchar_t* format, ...);

} // namespace QvXmlLib9
