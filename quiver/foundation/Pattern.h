#pragma once

#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// Tests a value against a regular expression of XML Schema (the `pattern` facet), as a match of the whole value.
///
/// The expression is translated to the dialect of PCRE: `\i`, `\I`, `\c` and `\C` and the blocks `\p{IsBasicLatin}`,
/// `\p{IsLatin-1Supplement}`, `\p{IsLatinExtended-A}` and `\p{IsLatinExtended-B}` by approximations, everything else as
/// it stands. Only the first match that PCRE finds at the start of the value counts, and it must reach the value's end:
/// the order of alternatives matters, `a|ab` does not match "ab" (docs/compatibility.md: First match of a pattern).
///
/// A match that PCRE gives up (its limit on backtracking) is no match. The answer for a value is the same in every
/// thread and at every time.
///
/// @param strPattern the facet's expression in UTF-8.
/// @param strValue the text under test.
/// @return whether the whole value matches.
/// @throws CQvException "Invalid Regular Expression: %s Error: '%s'" with the value and PCRE's text when the expression
///         cannot be compiled; "The value is too long to be matched against its pattern" when the match would need more
///         than 64 megabytes for backtracking, or, for an expression that cannot become machine code, more than half of
///         the stack that is left. PCRE2 uses none of the stack for those; it may take more than 64 megabytes if they have
///         thousands of groups.
///
/// May be called from any thread, and while threads and static objects die. Compiled expressions are remembered, which
/// no caller can tell.
bool PatternMatch(const std::string& strPattern, const std::wstring& strValue);

/// The same for an expression that is a literal, and a value in well-formed UTF-8. Nothing is converted from the second
/// value on.
bool PatternMatch(const wchar_t* lpctPattern, std::string_view svValue);

} // namespace QvXmlLib9
