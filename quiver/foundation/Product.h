#pragma once

/// @file
/// What the product says about itself in its messages.

namespace QvXmlLib9
{

/// Where users are sent for help.
inline constexpr wchar_t g_szSupportAddress[] = L"support@quiver-xml.example";

} // namespace QvXmlLib9
