#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Pieces of C++ source as text: literals, comments, and lists broken into lines as the house's formatting breaks them.

namespace quiver_gen::cpp
{

/// Width of a line.
constexpr std::size_t s_nColumns = 120;

/// A wide string literal in ASCII that means the same with a wchar_t of 16 and of 32 bits.
/// @param svText UTF-8. What is not well-formed becomes U+FFFD.
std::string WideLiteral(std::string_view svText);

/// The same as literals that stand one behind the other, each at most nWidth columns wide.
/// @param nWidth at least 32.
std::vector<std::string> WideLiterals(std::string_view svText, std::size_t nWidth);

/// A literal of char for UTF-8 text.
std::string NarrowLiteral(std::string_view svText);

/// A text that a line comment can hold: on one line, white space collapsed, without characters that do not print or
/// that change the direction of the text, and without what would continue the line.
std::string CommentText(std::string_view svText);

/// Comment lines, wrapped at the width of a line, each ended by a line feed.
/// @param paragraphs separated by an empty comment line; one without text is left out.
/// @param svMark `///` or `//`.
std::string CommentLines(const std::vector<std::string>& paragraphs, std::size_t nIndent, std::string_view svMark);

/// A list between a head and a tail, such as the arguments of a call. Where it does not fit into a line, as many items
/// as fit stand in each, below the first one.
/// @param svHead up to the opening bracket, without the indentation.
/// @return the lines, indented, the last one without a line feed.
std::string Arrange(std::size_t nIndent, std::string_view svHead, const std::vector<std::string>& items,
                    std::string_view svTail);

/// Columns that UTF-8 text takes, counted in code points.
std::size_t CountColumns(std::string_view svText);

} // namespace quiver_gen::cpp
