#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quiver_fi
{

/// How a string stands in a document (X.891, 7.17); the numbers are the standard's.
enum class EForm : unsigned char
{
    Utf8 = 0,
    Utf16 = 1,
    Alphabet = 2,
    Algorithm = 3
};

/// A string as it stands in a document: octets of the document and how to take them.
struct SEncodedText
{
    std::string_view octets;
    EForm eForm = EForm::Utf8;
    /// Of the alphabet or the algorithm, from 1.
    std::uint32_t dwIndex = 0;
};

/// A qualified name as places in the tables of its parts; 0 for a part that is absent or unknown.
struct SName
{
    std::uint32_t dwPrefix = 0;
    std::uint32_t dwNamespace = 0;
    std::uint32_t dwLocalName = 0;
};

/// One of the tables of a document (X.891, 8), of strings or of qualified names. Indexes begin at 1, or further up
/// where the standard keeps the lower ones for itself.
template <class TEntry>
class CVocabularyTable
{
public:
    explicit CVocabularyTable(std::string strName, std::uint32_t dwFirst = 1)
        : m_strName(std::move(strName))
        , m_dwFirst(dwFirst)
    {
    }

    /// What one entry is called: "local name".
    const std::string& GetName() const { return m_strName; }

    /// Makes indexes unknown: entries that nobody knows stand in front of this table's own.
    void SetExternal() { m_bExternal = true; }
    bool IsExternal() const { return m_bExternal; }

    /// Enters an entry if the table is not full, and returns how the listing tells it: " +[1]".
    std::string Add(const TEntry& entry);

    /// Place of the entry added last, from 1.
    std::uint32_t GetLast() const { return static_cast<std::uint32_t>(m_entries.size()); }

    /// @return the place of an index, from 1; 0 where indexes are unknown.
    /// @throws QvXmlLib9::CQvException for an index without an entry.
    std::uint32_t Check(std::uint32_t dwIndex) const;

    /// The entry at an index, which is checked; an empty one where indexes are unknown.
    TEntry Get(std::uint32_t dwIndex) const { return GetAt(Check(dwIndex)); }

    /// The entry at a place; an empty one at place 0.
    TEntry GetAt(std::uint32_t nPlace) const { return nPlace == 0 ? TEntry() : m_entries[nPlace - 1]; }

    std::size_t GetSize() const { return m_entries.size(); }
    bool IsFull() const { return m_entries.size() >= s_nLimit; }

private:
    static constexpr std::size_t s_nLimit = 1024 * 1024;

    std::string m_strName;
    std::uint32_t m_dwFirst;
    bool m_bExternal = false;
    std::vector<TEntry> m_entries;
};

/// The number of the algorithm that stands for text only (X.891, 10.11); those above are somebody's own.
constexpr std::uint32_t g_dwCdata = 10;

using CTable = CVocabularyTable<SEncodedText>;
using CNameTable = CVocabularyTable<SName>;

/// All tables of a document, and what their entries look like in the listing.
class CTables
{
public:
    /// @param bWholeValues literal values are shown in full length.
    explicit CTables(bool bWholeValues);

    void SetExternal();

    /// A literal string: its form, unless it is UTF-8, and its text between quotes.
    /// @throws QvXmlLib9::CQvException if the octets are none of the form.
    std::string Show(const SEncodedText& text) const;

    /// The text of a literal string. What is not well-formed, and the octets of an unknown algorithm, are shown
    /// somehow.
    /// @throws QvXmlLib9::CQvException if the octets are none of the form.
    std::wstring Decode(const SEncodedText& text) const;

    /// The characters of a restricted alphabet, built-in or the document's.
    /// @throws QvXmlLib9::CQvException if there is none of that number.
    std::wstring GetAlphabet(std::uint32_t dwIndex) const;

    /// " [1] "text"", cut short if it is long.
    std::string ShowRepeated(std::uint32_t dwIndex, const CTable& table) const;

    /// Prefix, local name and namespace.
    std::string Show(const SName& name) const;

    /// Prefix and local name.
    std::string ShowShort(const SName& name) const;

    /// " 3 local names, ..." for the tables that hold anything.
    std::string GetSizes() const;

    CTable alphabets;
    CTable algorithms;
    CTable prefixes;
    CTable namespaces;
    CTable localNames;
    CTable otherNames;
    CTable otherURIs;
    CTable attributeValues;
    CTable chunks;
    CTable otherStrings;
    CNameTable elements;
    CNameTable attributes;

private:
    std::string Show(const SEncodedText& text, std::size_t nLimit) const;
    std::wstring DecodeAlphabet(const SEncodedText& text) const;
    std::string ShowPart(std::uint32_t dwIndex, const CTable& table) const;

    std::size_t m_nLiteralLimit;
};

} // namespace quiver_fi
