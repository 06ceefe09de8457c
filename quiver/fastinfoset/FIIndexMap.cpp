#include "quiver/fastinfoset/FIIndexMap.h"

#include <cstring>

namespace QvXmlLib9
{

namespace
{

constexpr std::size_t s_nFirstSlots = 32;

std::uint64_t Mix(std::uint64_t nHash, std::uint64_t nValue)
{
    nHash = (nHash ^ nValue) * 0x9E3779B97F4A7C15u;
    return nHash ^ (nHash >> 29);
}

std::uint64_t HashText(std::uint64_t nHash, std::wstring_view strText)
{
    constexpr std::size_t nStep = sizeof(std::uint64_t) / sizeof(wchar_t);
    nHash = Mix(nHash, strText.size());
    while (strText.size() >= nStep)
    {
        std::uint64_t nValue = 0;
        std::memcpy(&nValue, strText.data(), sizeof(nValue));
        nHash = Mix(nHash, nValue);
        strText.remove_prefix(nStep);
    }
    for (const wchar_t c : strText)
        nHash = Mix(nHash, static_cast<std::uint64_t>(c));
    return nHash;
}

} // namespace

std::uint64_t CFIIndexMap::Hash(const SKey& key)
{
    std::uint64_t nHash = HashText(0, key.strText);
    if (!key.strNamespace.empty())
        nHash = HashText(nHash, key.strNamespace);
    if (!key.strPrefix.empty())
        nHash = HashText(nHash, key.strPrefix);
    return nHash;
}

std::uint32_t CFIIndexMap::Find(const SKey& key) const
{
    return m_slots.empty() ? 0 : m_slots[FindSlot(key, Hash(key))];
}

std::size_t CFIIndexMap::FindSlot(const SKey& key, std::uint64_t nHash) const
{
    const std::size_t nMask = m_slots.size() - 1;
    std::size_t nSlot = static_cast<std::size_t>(nHash) & nMask;
    for (; m_slots[nSlot] != 0; nSlot = (nSlot + 1) & nMask)
    {
        if (m_entries[m_slots[nSlot] - 1].nHash != nHash)
            continue;
        const SKey found = GetKey(m_slots[nSlot]);
        if (found.strText == key.strText && found.strNamespace == key.strNamespace && found.strPrefix == key.strPrefix)
            break;
    }
    return nSlot;
}

void CFIIndexMap::Add(const SKey& key)
{
    if (m_entries.size() >= s_nMaxEntries)
        return;
    if ((m_entries.size() + 1) * 2 > m_slots.size())
        Grow();
    const std::uint64_t nHash = Hash(key);
    const std::size_t nSlot = FindSlot(key, nHash);
    if (m_slots[nSlot] != 0)
        return;
    const std::size_t nOffset = m_strText.size();
    m_strText.append(key.strText).append(key.strNamespace).append(key.strPrefix);
    m_entries.push_back({nHash, nOffset, key.strText.size(), key.strNamespace.size(), key.strPrefix.size()});
    m_slots[nSlot] = static_cast<std::uint32_t>(m_entries.size());
}

CFIIndexMap::SKey CFIIndexMap::GetKey(std::size_t nIndex) const
{
    const SEntry& entry = m_entries[nIndex - 1];
    const std::wstring_view strText(m_strText);
    return {strText.substr(entry.nOffset, entry.nText), strText.substr(entry.nOffset + entry.nText, entry.nNamespace),
            strText.substr(entry.nOffset + entry.nText + entry.nNamespace, entry.nPrefix)};
}

void CFIIndexMap::Grow()
{
    m_slots.assign(m_slots.empty() ? s_nFirstSlots : m_slots.size() * 2, 0);
    const std::size_t nMask = m_slots.size() - 1;
    for (std::size_t n = 0; n < m_entries.size(); ++n)
    {
        std::size_t nSlot = static_cast<std::size_t>(m_entries[n].nHash) & nMask;
        while (m_slots[nSlot] != 0)
            nSlot = (nSlot + 1) & nMask;
        m_slots[nSlot] = static_cast<std::uint32_t>(n + 1);
    }
}

} // namespace QvXmlLib9
