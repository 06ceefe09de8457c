#pragma once

#include <string>

/// @file
/// Floating point numbers by a format of `printf`. Internal to the library.

namespace QvXmlLib9
{

/// Prints one finite number by a format. Width and precision are held to what any number needs, so that a format out
/// of a schema cannot ask for memory without bound.
/// @param lpctFormat text with at most one conversion of the kinds e, E, f, F, g and G; two percent signs are one.
/// @return false, with nothing appended, if the format asks for anything else, where `printf` would read arguments that
///         are not there.
bool AppendByFormat(std::wstring& strOut, double dValue, const wchar_t* lpctFormat);

} // namespace QvXmlLib9
