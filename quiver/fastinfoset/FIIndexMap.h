#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// From texts to their indexes in a Fast Infoset table: 1 for the first text added, 2 for the second, and so on. A
/// search builds no string, and a copy is a copy of three blocks of memory.
///
/// Where one text can stand in several places, a number tells them apart. Texts are UTF-16 units, none of them 0.
class CFIIndexMap
{
public:
    /// X.891, 8.4: no table holds more entries than this.
    static constexpr std::size_t s_nMaxEntries = 1048576;

    /// Index of a text, or 0 if it is not in the map.
    std::uint32_t Find(std::wstring_view svText, std::uint32_t dwNumber = 0) const
    {
        if (IsShort(svText, dwNumber))
            return m_shortSlots.empty() ? 0 : m_shortSlots[FindSlot(SShortSlot(svText))].dwIndex;
        return m_slots.empty() ? 0 : m_slots[FindSlot(svText, dwNumber, Hash(svText, dwNumber))].dwIndex;
    }

    /// Whether `Find` would give this index.
    bool IsAt(std::uint32_t dwIndex, std::wstring_view svText, std::uint32_t dwNumber) const
    {
        const SEntry& entry = m_entries[dwIndex - 1];
        return entry.dwNumber == dwNumber && entry.nLength == svText.size() &&
               std::equal(svText.begin(), svText.end(),
                          m_strTexts.begin() + static_cast<std::ptrdiff_t>(entry.nOffset));
    }

    /// Where a text stands, or would.
    struct SPlace
    {
        /// 0 if it is not in the map.
        std::uint32_t dwIndex = 0;
        std::uint32_t dwHash = 0;
        std::size_t nSlot = 0;
    };

    /// Find for who may add the text next.
    SPlace Locate(std::wstring_view svText) const;

    /// Adds a text that Locate has not found in the map as it is now.
    void AddLocated(std::wstring_view svText, const SPlace& place);

    /// Adds a text with the next index. A text that is there keeps its index; a full map stays as it is.
    /// @return the text's index, 0 if the map is full.
    std::uint32_t Add(std::wstring_view svText, std::uint32_t dwNumber = 0);

    /// Gives the next index to a text that is there already: it keeps its first one, and the next text gets one more.
    void AddAgain(std::wstring_view svText, std::uint32_t dwNumber = 0);

    std::size_t GetCount() const { return m_entries.size(); }

    /// The text of an index from 1 to `GetCount()`; valid until the next change.
    std::wstring_view GetText(std::uint32_t dwIndex) const;
    std::uint32_t GetNumber(std::uint32_t dwIndex) const { return m_entries[dwIndex - 1].dwNumber; }

private:
    struct SEntry
    {
        /// Where in `m_strTexts` the text stands.
        std::size_t nOffset;
        std::size_t nLength;
        std::uint32_t dwNumber;
    };

    struct SSlot
    {
        /// 0 for a free slot.
        std::uint32_t dwIndex = 0;
        std::uint32_t dwHash = 0;
    };

    /// A slot that holds all of a text, so that a search looks at no other memory.
    struct SShortSlot
    {
        static constexpr std::size_t s_nMaxUnits = 6;

        SShortSlot() = default;
        explicit SShortSlot(std::wstring_view svText)
        {
            for (std::size_t n = 0; n < svText.size(); ++n)
            {
                if (n < 4)
                    nFirstUnits |= static_cast<std::uint64_t>(svText[n]) << (16 * n);
                else
                    nLastUnits |= static_cast<std::uint32_t>(svText[n]) << (16 * (n - 4));
            }
        }
        bool HasText(const SShortSlot& other) const
        {
            return nFirstUnits == other.nFirstUnits && nLastUnits == other.nLastUnits;
        }

        std::uint64_t nFirstUnits = 0;
        std::uint32_t nLastUnits = 0;
        /// 0 for a free slot.
        std::uint32_t dwIndex = 0;
    };

    static bool IsShort(std::wstring_view svText, std::uint32_t dwNumber)
    {
        return svText.size() <= SShortSlot::s_nMaxUnits && dwNumber == 0;
    }
    /// Whether the slots have to grow before another text comes.
    bool IsFull() const { return (m_entries.size() - m_nShort + 1) * 2 > m_slots.size(); }
    bool IsShortFull() const { return (m_nShort + 1) * 4 > m_shortSlots.size() * 3; }
    std::uint32_t AddShort(std::wstring_view svText);
    std::uint32_t AddEntry(std::wstring_view svText, std::uint32_t dwNumber);
    std::size_t FindSlot(const SShortSlot& text) const;
    static std::uint32_t Hash(std::wstring_view svText, std::uint32_t dwNumber);
    std::size_t FindSlot(std::wstring_view svText, std::uint32_t dwNumber, std::uint32_t dwHash) const;
    void Grow();
    void GrowShort();

    std::vector<SEntry> m_entries;
    std::wstring m_strTexts;
    // Open addressing, powers of two in size.
    std::vector<SSlot> m_slots;
    std::vector<SShortSlot> m_shortSlots;
    std::size_t m_nShort = 0;
};

/// From qualified names to their indexes, as CFIIndexMap. Elements of a document follow each other in patterns, so what
/// came behind a name the last time is tried first.
class CFINameMap
{
public:
    /// Parts that are not there are empty.
    struct SName
    {
        std::wstring_view svPrefix;
        std::wstring_view svNamespace;
        std::wstring_view svLocalName;
    };

    /// A namespace with its prefix that is in the map.
    using Qualifier = std::uint32_t;
    static constexpr Qualifier s_nNoQualifier = 0;
    static constexpr Qualifier s_nUnknownQualifier = 0xFFFFFFFF;

    /// The qualifier of namespace and prefix, so that several names with it can be found by their local names;
    /// `s_nUnknownQualifier` if no name in the map has it.
    Qualifier FindQualifier(std::wstring_view svPrefix, std::wstring_view svNamespace);

    /// Index of a name, or 0 if it is not in the map.
    std::uint32_t Find(std::wstring_view svLocalName, Qualifier qualifier);
    std::uint32_t Find(const SName& name)
    {
        return Find(name.svLocalName, FindQualifier(name.svPrefix, name.svNamespace));
    }

    /// Adds a name with the next index. A name that is there keeps its index; a full map stays as it is.
    void Add(const SName& name);

    /// Gives the next index to a name that is there already, as CFIIndexMap does.
    void AddAgain(const SName& name);

    std::size_t GetCount() const { return m_localNames.GetCount(); }

    /// The name of an index from 1 to `GetCount()`; valid until the next change.
    SName GetName(std::uint32_t dwIndex) const;

private:
    bool IsLastQualifier(std::wstring_view svPrefix, std::wstring_view svNamespace) const
    {
        return svNamespace == m_strLastNamespace && svPrefix == m_strLastPrefix;
    }
    void SetLastQualifier(std::wstring_view svPrefix, std::wstring_view svNamespace, Qualifier qualifier);

    /// Prefixes; namespaces with the index of the prefix, or 0 for none; local names with the index of that pair, or 0
    /// if there is neither namespace nor prefix.
    CFIIndexMap m_prefixes;
    CFIIndexMap m_qualifiers;
    CFIIndexMap m_localNames;
    /// Namespace and prefix of the last name, which the next one is likely to share.
    std::wstring m_strLastNamespace;
    std::wstring m_strLastPrefix;
    Qualifier m_lastQualifier = s_nNoQualifier;
    /// The last name found, and for each name the one found behind it the last time; 0 for none.
    std::uint32_t m_dwLast = 0;
    std::vector<std::uint32_t> m_followers;
};

} // namespace QvXmlLib9
