#pragma once

#include "quiver/foundation/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

/// From texts or qualified names to their indexes in a Fast Infoset table: 1 for the first key added, 2 for the second,
/// and so on. A search builds no string, and a copy of the map is a copy of three blocks of memory.
class QVXMLLIB_API CFIIndexMap
{
public:
    /// X.891, 8.4: no table holds more entries than this.
    static constexpr std::size_t s_nMaxEntries = 1048576;

    /// A text, or a qualified name in three parts. Parts that are not there are empty.
    struct SKey
    {
        std::wstring_view strText;
        std::wstring_view strNamespace = {};
        std::wstring_view strPrefix = {};
    };

    /// Index of a key, or 0 if it is not in the map.
    std::uint32_t Find(const SKey& key) const;

    /// Adds a key with the next index. A key that is there keeps its index; a full map stays as it is.
    void Add(const SKey& key);

    std::size_t GetCount() const { return m_entries.size(); }

    /// The key of an index from 1 to `GetCount()`; valid until the next change.
    SKey GetKey(std::size_t nIndex) const;

private:
    struct SEntry
    {
        std::uint64_t nHash;
        /// Where in `m_strText` the three parts stand, one behind the other.
        std::size_t nOffset;
        std::size_t nText;
        std::size_t nNamespace;
        std::size_t nPrefix;
    };

    static std::uint64_t Hash(const SKey& key);
    std::size_t FindSlot(const SKey& key, std::uint64_t nHash) const;
    void Grow();

    std::vector<SEntry> m_entries;
    std::wstring m_strText;
    /// Open addressing, a power of two in size; 0 is a free slot, any other value an index.
    std::vector<std::uint32_t> m_slots;
};

} // namespace QvXmlLib9
