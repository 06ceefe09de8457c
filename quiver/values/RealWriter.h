#pragma once

#include <string>

/// @file
/// Floating point numbers into text; see NumberText.h. Internal to the library.

namespace QvXmlLib9
{

/// Appends the lexical form of a floating point number; see CConversions::r4ToString and r8ToString.
void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat);
void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat);

} // namespace QvXmlLib9
