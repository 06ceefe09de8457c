#pragma once

#include <cstddef>
#include <string_view>

namespace quiver_fi
{

/// Whether UTF-16 text is a name without a colon (Namespaces in XML 1.0, NCName).
bool IsNCName(std::wstring_view svUnits);

/// Where the characters of names begin that stand directly ahead of a position; the position itself if there are none.
std::size_t FindNameBefore(std::wstring_view svUnits, std::size_t nPosition);

/// Position of the first unit that XML 1.0 text cannot hold (2.2, Char), or npos.
std::size_t FindUnprintable(std::wstring_view svUnits);

} // namespace quiver_fi
