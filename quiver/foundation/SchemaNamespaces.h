#pragma once

/// @file
/// The namespaces that XML Schema gives its own names (XML Schema Part 1, 2.6 and Part 2, 3.1).

namespace QvXmlLib9
{

/// Of the built-in types.
inline constexpr wchar_t g_lpctXsdNamespace[] = L"http://www.w3.org/2001/XMLSchema";

/// Of `type`, `nil` and the locations of schemas, which any document may hold.
inline constexpr wchar_t g_lpctXsiNamespace[] = L"http://www.w3.org/2001/XMLSchema-instance";

} // namespace QvXmlLib9
