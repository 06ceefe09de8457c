#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quiver_fi
{

/// Told of a document that nobody could read again.
inline constexpr char g_szTooLong[] = "the document is longer than 4294967295 bytes as XML text";

/// A document as the list of what occurs in it, in document order, so that text keeps its place among elements and
/// prefixes keep the elements that they are declared on. All text is UTF-8.
///
/// Whatever could not be written again is refused while the document is built: names that are none in XML, two
/// attributes of one name, attributes that look like declarations, and namespaces that XML keeps for itself.
class CDocument
{
public:
    /// A number that stands for a prefix or a namespace; 0 for the empty one.
    using TextId = std::uint32_t;
    using NameId = std::uint32_t;

    enum class EKind : unsigned char
    {
        /// Stands ahead of the start of the element that it belongs to.
        Declaration,
        Start,
        Attribute,
        Text,
        End
    };

    struct SName
    {
        TextId dwNamespace;
        std::string strLocalName;
    };

    /// Octets of a value or a text, wherever they occur.
    struct SRange
    {
        std::uint64_t nOffset = 0;
        std::uint64_t nLength = 0;
    };

    struct SEvent
    {
        EKind eKind;
        /// The name of an element or attribute, or a declared prefix.
        std::uint32_t dwName;
        /// The value of an attribute, a text, or the declared namespace as the offset.
        SRange range;
    };

    CDocument();

    // --- Building ---

    TextId InternText(std::string_view svText);

    /// @throws std::runtime_error for a name that is none in XML, or a namespace that cannot be declared.
    NameId InternName(TextId dwNamespace, std::string_view svLocalName);

    /// Remembers the text of a value.
    SRange Store(std::string_view svText);

    /// Declares a prefix on the element that starts next; the empty prefix stands for the default namespace.
    /// @throws std::runtime_error for what XML does not admit.
    void Declare(TextId dwPrefix, TextId dwNamespace);

    /// A prefix under which names of a namespace occur, though nothing may declare it.
    void SuggestPrefix(TextId dwPrefix, TextId dwNamespace);

    void StartElement(NameId dwName);
    void AddAttribute(NameId dwName, SRange value);

    /// Adds a text of its own, though another may stand before it.
    void AddText(SRange text);

    /// Adds to the text that came last, or begins one. Not to be mixed with AddText in one document.
    void AppendText(std::string_view svText);

    void EndElement();

    // --- Reading ---

    const std::vector<SEvent>& GetEvents() const { return m_events; }
    const std::string& GetText(TextId dwText) const { return m_texts[dwText]; }
    const SName& GetName(NameId dwName) const { return m_names[dwName]; }
    std::size_t GetNameCount() const { return m_names.size(); }
    std::size_t GetTextCount() const { return m_texts.size(); }
    std::string_view GetValue(const SRange& range) const
    {
        return std::string_view(m_strValues)
            .substr(static_cast<std::size_t>(range.nOffset), static_cast<std::size_t>(range.nLength));
    }
    static TextId GetDeclaredNamespace(const SEvent& event) { return static_cast<TextId>(event.range.nOffset); }
    const std::vector<std::pair<TextId, TextId>>& GetSuggestedPrefixes() const { return m_suggested; }

    /// The name as messages show it.
    std::string Show(NameId dwName) const;

    static constexpr TextId s_dwNone = 0;
    static constexpr TextId s_dwXmlPrefix = 1;
    static constexpr TextId s_dwXmlNamespace = 2;

private:
    void CheckNamespace(TextId dwNamespace) const;
    void CheckLocalName(std::string_view svLocalName) const;

    std::vector<SEvent> m_events;
    std::string m_strValues;
    // Ordered, since what stands in documents must not choose how long a search takes.
    std::deque<std::string> m_texts;
    std::map<std::string_view, TextId> m_textIds;
    std::deque<SName> m_names;
    std::map<std::pair<TextId, std::string_view>, NameId> m_nameIds;
    std::vector<std::pair<TextId, TextId>> m_suggested;
    std::set<std::pair<TextId, TextId>> m_suggestedSet;
    /// The element on which a name was last an attribute, and a prefix was last declared, counted from 1.
    std::vector<std::uint64_t> m_lastElementOfName;
    std::vector<std::uint64_t> m_lastElementOfPrefix;
    std::uint64_t m_nElements = 0;
};

} // namespace quiver_fi
