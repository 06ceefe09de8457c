#pragma once

#include "quiver/values/NumberText.h"

/// @file
/// Floating point numbers out of text; see NumberText.h. Internal to the library.

namespace QvXmlLib9
{

/// Reads a decimal number as `wcstod` does: blanks, one sign, digits with at most one point, an exponent if one is
/// complete. No digit gives 0. Words ("inf", "nan") and hexadecimal numbers are none. What is too large gives an
/// infinity, out of range; what is too small gives 0 or a denormal number, in range.
SNumberText<double> ReadReal(const wchar_t* lpctText);

} // namespace QvXmlLib9
