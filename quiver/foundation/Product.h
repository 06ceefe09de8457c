#pragma once

/// @file
/// What the product says about itself in its messages.

namespace QvXmlLib9
{

/// Where users are sent for help.
inline constexpr wchar_t g_szSupportAddress[] = L"support@quiver-xml.example";

/// The library's version, as the project's CMakeLists.txt has it.
inline constexpr int g_nVersionMajor = QUIVER_VERSION_MAJOR;
inline constexpr int g_nVersionMinor = QUIVER_VERSION_MINOR;

} // namespace QvXmlLib9
