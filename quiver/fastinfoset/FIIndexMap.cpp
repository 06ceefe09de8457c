#include "quiver/fastinfoset/FIIndexMap.h"

#include "quiver/foundation/KeyedHash.h"

namespace QvXmlLib9
{

namespace
{

constexpr std::size_t s_nFirstSlots = 32;

} // namespace

// --- CFIIndexMap ---------------------------------------------------------------------------------------------------

std::uint32_t CFIIndexMap::Hash(std::wstring_view svText, std::uint32_t dwNumber)
{
    return static_cast<std::uint32_t>(HashText(GetHashKey(), svText, dwNumber));
}

std::size_t CFIIndexMap::FindSlot(std::wstring_view svText, std::uint32_t dwNumber, std::uint32_t dwHash) const
{
    const std::size_t nMask = m_slots.size() - 1;
    std::size_t nSlot = dwHash & nMask;
    for (; m_slots[nSlot].dwIndex != 0; nSlot = (nSlot + 1) & nMask)
    {
        if (m_slots[nSlot].dwHash != dwHash)
            continue;
        if (IsAt(m_slots[nSlot].dwIndex, svText, dwNumber))
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

CFIIndexMap::SPlace CFIIndexMap::Locate(std::wstring_view svText) const
{
    SPlace place;
    if (IsShort(svText, 0))
    {
        if (m_shortSlots.empty())
            return place;
        place.nSlot = FindSlot(SShortSlot(svText));
        place.dwIndex = m_shortSlots[place.nSlot].dwIndex;
        return place;
    }
    if (m_slots.empty())
        return place;
    place.dwHash = Hash(svText, 0);
    place.nSlot = FindSlot(svText, 0, place.dwHash);
    place.dwIndex = m_slots[place.nSlot].dwIndex;
    return place;
}

void CFIIndexMap::AddLocated(std::wstring_view svText, const SPlace& place)
{
    const bool bShort = IsShort(svText, 0);
    if (m_entries.size() >= s_nMaxEntries || (bShort ? IsShortFull() : IsFull()))
    {
        Add(svText);
    }
    else if (bShort)
    {
        SShortSlot text(svText);
        text.dwIndex = AddEntry(svText, 0);
        m_shortSlots[place.nSlot] = text;
        ++m_nShort;
    }
    else
    {
        m_slots[place.nSlot] = {AddEntry(svText, 0), place.dwHash};
    }
}

std::uint32_t CFIIndexMap::Add(std::wstring_view svText, std::uint32_t dwNumber)
{
    if (m_entries.size() >= s_nMaxEntries)
        return Find(svText, dwNumber);
    if (IsShort(svText, dwNumber))
        return AddShort(svText);
    if (IsFull())
        Grow();
    const std::uint32_t dwHash = Hash(svText, dwNumber);
    SSlot& slot = m_slots[FindSlot(svText, dwNumber, dwHash)];
    if (slot.dwIndex == 0)
        slot = {AddEntry(svText, dwNumber), dwHash};
    return slot.dwIndex;
}

void CFIIndexMap::AddAgain(std::wstring_view svText, std::uint32_t dwNumber)
{
    if (m_entries.size() < s_nMaxEntries)
        AddEntry(svText, dwNumber);
}

std::uint32_t CFIIndexMap::AddShort(std::wstring_view svText)
{
    if (IsShortFull())
        GrowShort();
    SShortSlot text(svText);
    SShortSlot& slot = m_shortSlots[FindSlot(text)];
    if (slot.dwIndex == 0)
    {
        text.dwIndex = AddEntry(svText, 0);
        slot = text;
        ++m_nShort;
    }
    return slot.dwIndex;
}

std::uint32_t CFIIndexMap::AddEntry(std::wstring_view svText, std::uint32_t dwNumber)
{
    const std::size_t nOffset = m_strTexts.size();
    m_strTexts.append(svText);
    m_entries.push_back({nOffset, svText.size(), dwNumber});
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

CFINameMap::Qualifier CFINameMap::FindQualifier(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    if (IsLastQualifier(svPrefix, svNamespace))
        return m_lastQualifier;
    const std::uint32_t dwPrefix = svPrefix.empty() ? 0 : m_prefixes.Find(svPrefix);
    if (dwPrefix == 0 && !svPrefix.empty())
        return s_nUnknownQualifier;
    const bool bNone = svPrefix.empty() && svNamespace.empty();
    const Qualifier qualifier = bNone ? s_nNoQualifier : m_qualifiers.Find(svNamespace, dwPrefix);
    if (!bNone && qualifier == 0)
        return s_nUnknownQualifier;
    SetLastQualifier(svPrefix, svNamespace, qualifier);
    return qualifier;
}

std::uint32_t CFINameMap::Find(std::wstring_view svLocalName, Qualifier qualifier)
{
    const std::uint32_t dwExpected = m_followers.empty() ? 0 : m_followers[m_dwLast];
    if (dwExpected != 0 && m_localNames.IsAt(dwExpected, svLocalName, qualifier))
    {
        m_dwLast = dwExpected;
        return dwExpected;
    }
    const std::uint32_t dwIndex = m_localNames.Find(svLocalName, qualifier);
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
    if (!IsLastQualifier(name.svPrefix, name.svNamespace))
    {
        const bool bNone = name.svNamespace.empty() && name.svPrefix.empty();
        const std::uint32_t dwPrefix = name.svPrefix.empty() ? 0 : m_prefixes.Add(name.svPrefix);
        SetLastQualifier(name.svPrefix, name.svNamespace,
                         bNone ? s_nNoQualifier : m_qualifiers.Add(name.svNamespace, dwPrefix));
    }
    m_localNames.Add(name.svLocalName, m_lastQualifier);
}

void CFINameMap::AddAgain(const SName& name)
{
    m_localNames.AddAgain(name.svLocalName, FindQualifier(name.svPrefix, name.svNamespace));
}

void CFINameMap::SetLastQualifier(std::wstring_view svPrefix, std::wstring_view svNamespace, Qualifier qualifier)
{
    m_strLastPrefix = svPrefix;
    m_strLastNamespace = svNamespace;
    m_lastQualifier = qualifier;
}

CFINameMap::SName CFINameMap::GetName(std::uint32_t dwIndex) const
{
    SName name;
    name.svLocalName = m_localNames.GetText(dwIndex);
    const std::uint32_t dwQualifier = m_localNames.GetNumber(dwIndex);
    if (dwQualifier == 0)
        return name;
    name.svNamespace = m_qualifiers.GetText(dwQualifier);
    const std::uint32_t dwPrefix = m_qualifiers.GetNumber(dwQualifier);
    if (dwPrefix != 0)
        name.svPrefix = m_prefixes.GetText(dwPrefix);
    return name;
}

} // namespace QvXmlLib9
