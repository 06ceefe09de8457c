#pragma once

#include "quiver/values/IntegerText.h"

#include <string>
#include <string_view>

/// @file
/// Floating point numbers into text; see NumberText.h. Internal to the library.

namespace QvXmlLib9
{

/// Whether a number needs few digits: a whole number, or one with up to four fraction digits. Most numbers of documents
/// are such, and what is printed of them reads back as the same number.
bool IsShortR8(double dValue);

/// Prints such a number, as r8ToString does.
/// @param room where the digits are put; it has to live as long as the result.
/// @return the text, empty for any other number.
std::wstring_view PrintShortR8(IntegerRoom& room, double dValue);

/// Appends the lexical form of a floating point number; see CConversions::r4ToString and r8ToString.
void AppendR4(std::wstring& strOut, float fValue, const wchar_t* lpctFormat);
void AppendR8(std::wstring& strOut, double dValue, const wchar_t* lpctFormat);

} // namespace QvXmlLib9
