#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace QvXmlLib9
{

/// A table that a document begins with and adds to: what was agreed on in advance is shared by all documents, and only
/// the rest belongs to this one.
template <class TEntry>
class CFITable
{
public:
    /// Begins anew with the entries of a table, which must stay as it is as long as this one is used.
    void Begin(const std::vector<TEntry>& agreed)
    {
        m_pAgreed = &agreed;
        m_own.clear();
    }

    void Clear()
    {
        m_pAgreed = nullptr;
        m_own.clear();
    }

    std::size_t GetCount() const { return GetAgreedCount() + m_own.size(); }

    /// @param nIndex from 0. The reference is good until an entry is added.
    const TEntry& operator[](std::size_t nIndex) const
    {
        const std::size_t nAgreed = GetAgreedCount();
        return nIndex < nAgreed ? (*m_pAgreed)[nIndex] : m_own[nIndex - nAgreed];
    }

    void Add(TEntry entry) { m_own.push_back(std::move(entry)); }

private:
    std::size_t GetAgreedCount() const { return m_pAgreed != nullptr ? m_pAgreed->size() : 0; }

    const std::vector<TEntry>* m_pAgreed = nullptr;
    std::vector<TEntry> m_own;
};

} // namespace QvXmlLib9
