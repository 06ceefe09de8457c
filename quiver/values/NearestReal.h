#pragma once

#include <string_view>

/// @file
/// Floating point numbers out of digits, in any locale and with any C++ library. Internal to the library and its tools.

namespace QvXmlLib9
{

/// Reads a decimal number: digits with at most one point, then perhaps an exponent. A minus sign may stand ahead of it.
/// @tparam TReal float or double.
/// @return the nearest number; an infinity for what is too large, and 0 for what is too small.
template <class TReal>
TReal GetNearestReal(std::string_view number);

} // namespace QvXmlLib9
