#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// White space, names and lists in attribute values of schema documents.

namespace quiver_gen::schema
{

/// White space as XML counts it.
constexpr bool IsSpace(char ch)
{
    return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n';
}

/// The text without white space at its ends.
std::string_view Trim(std::string_view svText);

/// White space at the ends removed, other runs of it made one blank.
std::string Collapse(std::string_view svText);

/// Each tab and line end made a blank.
std::string ReplaceSpaces(std::string_view svText);

/// Parts between white space.
std::vector<std::string_view> SplitList(std::string_view svText);

/// Whether a text is a Name, NCName or Nmtoken of XML 1.0 (fifth edition).
bool IsName(std::string_view svText);
bool IsNCName(std::string_view svText);
bool IsNmtoken(std::string_view svText);

/// Whether a text is an NCName, or two with a colon between.
bool IsQName(std::string_view svText);

/// Decodes one code point of UTF-8.
/// @param nIndex moved behind it.
/// @return 0xFFFD for what is not well-formed.
char32_t NextCodePoint(std::string_view svText, std::size_t& nIndex);

/// Code points in a text.
std::size_t CountCodePoints(std::string_view svText);

/// A non-negative integer as the schema language writes it: an optional plus sign, digits.
/// @param nValue the number, or the largest of its type if it is above that.
bool ParseCount(std::string_view svText, std::uint64_t& nValue);

} // namespace quiver_gen::schema
