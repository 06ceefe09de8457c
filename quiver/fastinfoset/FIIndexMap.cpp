#include "quiver/fastinfoset/FIIndexMap.h"

#include "quiver/foundation/KeyedHash.h"

namespace QvXmlLib9
{

namespace
{

constexpr std::size_t s_nFirstSlots = 32;

} // namespace

// --- CFIIndexMap ---------------------------------------------------------------------------------------------------

std::uint32_t CFIIndexMap::Hash(std::wstring_view strText, std::uint32_t dwNumber)
{
    return static_cast<std::uint32_t>(HashText(GetHashKey(), strText, dwNumber));
}

std::size_t CFIIndexMap::FindSlot(std::wstring_view strText, std::uint32_t dwNumber, std::uint32_t dwHash) const
{
    const std::size_t nMask = m_slots.size() - 1;
    std::size_t nSlot = dwHash & nMask;
    for (; m_slots[nSlot].dwIndex != 0; nSlot = (nSlot + 1) & nMask)
    {
        if (m_slots[nSlot].dwHash != dwHash)
            continue;
        if (IsAt(m_slots[nSlot].dwIndex, strText, dwNumber))
            break;
    }
    return nSlot;
}

std::size_t CFIIndexMap::FindSlot(const SShortSlot& text) const
{
    const std::size_t nMask = m_shortSlots.size() - 1;
    std::size_t nSlot = static_cast<std::size_t>(HashPair(GetHashKey(), text.nFirstUnits, text.nLastUnits)) & nMask;
    while (m_shortSlots[nSlot].dwIndex != 0 && !m_shortSlots[nSlot].HasText(text))
        nSlot = (nSlot + 1) & nMask;
    return nSlot;
}

std::uint32_t CFIIndexMap::Add(std::wstring_view strText, std::uint32_t dwNumber)
{
    if (m_entries.size() >= s_nMaxEntries)
        return Find(strText, dwNumber);
    if (IsShort(strText, dwNumber))
        return AddShort(strText);
    if ((m_entries.size() - m_nShort + 1) * 2 > m_slots.size())
        Grow();
    const std::uint32_t dwHash = Hash(strText, dwNumber);
    SSlot& slot = m_slots[FindSlot(strText, dwNumber, dwHash)];
    if (slot.dwIndex == 0)
        slot = {AddEntry(strText, dwNumber), dwHash};
    return slot.dwIndex;
}

void CFIIndexMap::AddAgain(std::wstring_view strText, std::uint32_t dwNumber)
{
    if (m_entries.size() < s_nMaxEntries)
        AddEntry(strText, dwNumber);
}

std::uint32_t CFIIndexMap::AddShort(std::wstring_view strText)
{
    if ((m_nShort + 1) * 4 > m_shortSlots.size() * 3)
        GrowShort();
    SShortSlot text(strText);
    SShortSlot& slot = m_shortSlots[FindSlot(text)];
    if (slot.dwIndex == 0)
    {
        text.dwIndex = AddEntry(strText, 0);
        slot = text;
        ++m_nShort;
    }
    return slot.dwIndex;
}

std::uint32_t CFIIndexMap::AddEntry(std::wstring_view strText, std::uint32_t dwNumber)
{
    const std::size_t nOffset = m_strTexts.size();
    m_strTexts.append(strText);
    m_entries.push_back({nOffset, strText.size(), dwNumber});
    return static_cast<std::uint32_t>(m_entries.size());
}

std::wstring_view CFIIndexMap::GetText(std::uint32_t dwIndex) const
{
    const SEntry& entry = m_entries[dwIndex - 1];
    return std::wstring_view(m_strTexts).substr(entry.nOffset, entry.nLength);
}

void CFIIndexMap::Grow()
{
    std::vector<SSlot> slots(m_slots.empty() ? s_nFirstSlots : m_slots.size() * 2);
    const std::size_t nMask = slots.size() - 1;
    for (const SSlot& slot : m_slots)
    {
        if (slot.dwIndex == 0)
            continue;
        std::size_t nSlot = slot.dwHash & nMask;
        while (slots[nSlot].dwIndex != 0)
            nSlot = (nSlot + 1) & nMask;
        slots[nSlot] = slot;
    }
    m_slots.swap(slots);
}

void CFIIndexMap::GrowShort()
{
    std::vector<SShortSlot> slots(m_shortSlots.empty() ? s_nFirstSlots : m_shortSlots.size() * 2);
    m_shortSlots.swap(slots);
    for (const SShortSlot& slot : slots)
    {
        if (slot.dwIndex != 0)
            m_shortSlots[FindSlot(slot)] = slot;
    }
}

// --- CFINameMap -----------------------------------------------------------------------------------------------------

CFINameMap::Qualifier CFINameMap::FindQualifier(std::wstring_view strPrefix, std::wstring_view strNamespace)
{
    if (IsLastQualifier(strPrefix, strNamespace))
        return m_lastQualifier;
    const std::uint32_t dwPrefix = strPrefix.empty() ? 0 : m_prefixes.Find(strPrefix);
    if (dwPrefix == 0 && !strPrefix.empty())
        return s_nUnknownQualifier;
    const bool bNone = strPrefix.empty() && strNamespace.empty();
    const Qualifier qualifier = bNone ? s_nNoQualifier : m_qualifiers.Find(strNamespace, dwPrefix);
    if (!bNone && qualifier == 0)
        return s_nUnknownQualifier;
    SetLastQualifier(strPrefix, strNamespace, qualifier);
    return qualifier;
}

std::uint32_t CFINameMap::Find(std::wstring_view strLocalName, Qualifier qualifier)
{
    const std::uint32_t dwExpected = m_followers.empty() ? 0 : m_followers[m_dwLast];
    if (dwExpected != 0 && m_localNames.IsAt(dwExpected, strLocalName, qualifier))
    {
        m_dwLast = dwExpected;
        return dwExpected;
    }
    const std::uint32_t dwIndex = m_localNames.Find(strLocalName, qualifier);
    if (dwIndex != 0)
    {
        m_followers.resize(m_localNames.GetCount() + 1);
        m_followers[m_dwLast] = dwIndex;
        m_dwLast = dwIndex;
    }
    return dwIndex;
}

void CFINameMap::Add(const SName& name)
{
    if (m_localNames.GetCount() >= CFIIndexMap::s_nMaxEntries)
        return;
    if (!IsLastQualifier(name.strPrefix, name.strNamespace))
    {
        const bool bNone = name.strNamespace.empty() && name.strPrefix.empty();
        const std::uint32_t dwPrefix = name.strPrefix.empty() ? 0 : m_prefixes.Add(name.strPrefix);
        SetLastQualifier(name.strPrefix, name.strNamespace,
                         bNone ? s_nNoQualifier : m_qualifiers.Add(name.strNamespace, dwPrefix));
    }
    m_localNames.Add(name.strLocalName, m_lastQualifier);
}

void CFINameMap::AddAgain(const SName& name)
{
    m_localNames.AddAgain(name.strLocalName, FindQualifier(name.strPrefix, name.strNamespace));
}

void CFINameMap::SetLastQualifier(std::wstring_view strPrefix, std::wstring_view strNamespace, Qualifier qualifier)
{
    m_strLastPrefix = strPrefix;
    m_strLastNamespace = strNamespace;
    m_lastQualifier = qualifier;
}

CFINameMap::SName CFINameMap::GetName(std::uint32_t dwIndex) const
{
    SName name;
    name.strLocalName = m_localNames.GetText(dwIndex);
    const std::uint32_t dwQualifier = m_localNames.GetNumber(dwIndex);
    if (dwQualifier == 0)
        return name;
    name.strNamespace = m_qualifiers.GetText(dwQualifier);
    const std::uint32_t dwPrefix = m_qualifiers.GetNumber(dwQualifier);
    if (dwPrefix != 0)
        name.strPrefix = m_prefixes.GetText(dwPrefix);
    return name;
}

} // namespace QvXmlLib9
