#pragma once

#include <string_view>

namespace quiver_fi
{

/// Whether UTF-16 text is a name without a colon (Namespaces in XML 1.0, NCName).
bool IsNCName(std::wstring_view strUnits);

/// Position of the first unit that XML 1.0 text cannot hold (2.2, Char), or npos.
std::size_t FindUnprintable(std::wstring_view strUnits);

} // namespace quiver_fi
