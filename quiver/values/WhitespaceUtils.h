#pragma once

#include "quiver/foundation/Export.h"

#include <string>

namespace QvXmlLib9
{

/// Carries out the `whiteSpace` facet (XML Schema Datatypes, 4.3.6) on text out of a document, before it is converted
/// to a value.
///
/// White space is exactly blank, tab, carriage return and line feed. Unlike the facet's definition, every rule but
/// "none" deletes carriage returns instead of replacing them, as the normalisation of line ends that no parser did: a
/// text "a\r\nb" has one line break, and "a\rb" collapses to "ab" (docs/compatibility.md: Carriage returns).
///
/// All functions are free of state and may be called from any thread.
class QVXMLLIB_API CWhitespaceUtils
{
public:
    /// What is done to the text. Generated code passes these numbers as integers; they never change.
    enum WhitespaceRule : int
    {
        /// Nothing; carriage returns stay too.
        WhitespaceRule_None = 0,
        /// Preserve()
        WhitespaceRule_Preserve = 1,
        /// Replace()
        WhitespaceRule_Replace = 2,
        /// Collapse()
        WhitespaceRule_Collapse = 3
    };

    CWhitespaceUtils() = delete;

    /// Gives the text as the rule leaves it.
    /// @throws CQvException "Unknown WhitespaceRule" for a number that is no rule.
    static std::wstring ApplyRule(WhitespaceRule rule, const std::wstring& text);

    /// Deletes carriage returns and keeps everything else.
    static std::wstring Preserve(const std::wstring& text);

    /// Preserve() on the first `length` characters of `text`; a length of 0 or below gives the empty string.
    static std::wstring Preserve(const wchar_t* text, int length);

    /// Deletes carriage returns and writes a blank for every tab, line feed and blank.
    static std::wstring Replace(const std::wstring& text);

    /// Deletes carriage returns, writes one blank for every run of other white space, and none at the start and the
    /// end. A text of white space alone gives the empty string.
    static std::wstring Collapse(const std::wstring& text);

    /// Whether `c` is a blank, a tab, a carriage return or a line feed.
    static bool IsWhiteSpace(wchar_t c) { return c == 0x20 || c == 0x09 || c == 0x0D || c == 0x0A; }
};

} // namespace QvXmlLib9
