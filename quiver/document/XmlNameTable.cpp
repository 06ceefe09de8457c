#include "quiver/document/XmlNameTable.h"

#include "quiver/foundation/Encoder.h"

#include <cstdint>
#include <cstring>

namespace QvXmlLib9
{

namespace
{

std::wstring ToText(std::string_view name)
{
    std::wstring strText;
    AppendUtf8AsUtf16(strText, name);
    return strText;
}

std::wstring ToText(std::wstring_view name)
{
    return ToUtf16Units(name);
}

/// Ends and length of a name: enough to tell the names of a vocabulary apart, whatever their length.
std::uint64_t GetFingerprint(const void* pName, std::size_t nBytes)
{
    const auto* const pBytes = static_cast<const unsigned char*>(pName);
    std::uint64_t nFront = 0;
    std::uint64_t nBack = 0;
    if (nBytes >= 8)
    {
        std::memcpy(&nFront, pBytes, 8);
        std::memcpy(&nBack, pBytes + nBytes - 8, 8);
    }
    else if (nBytes >= 4)
    {
        std::memcpy(&nFront, pBytes, 4);
        std::memcpy(&nBack, pBytes + nBytes - 4, 4);
    }
    else if (nBytes > 0)
    {
        nFront = pBytes[0];
        nBack = pBytes[nBytes / 2] | static_cast<std::uint64_t>(pBytes[nBytes - 1]) << 8;
    }
    return nFront + nBack * 0xD6E8FEB86659FD93u + nBytes * 0xA0761D6478BD642Fu;
}

} // namespace

template <class Char>
std::size_t CXmlNameIndex<Char>::GetPlace(const CKeyView& key)
{
    const std::uint64_t nFingerprint = GetFingerprint(key.second.data(), key.second.size() * sizeof(Char));
    const std::uint64_t nMixed = (nFingerprint ^ reinterpret_cast<std::uintptr_t>(key.first)) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(nMixed >> 56);
}

template <class Char>
const typename CXmlNameIndex<Char>::CNamespace* CXmlNameIndex<Char>::FindNamespace(CView strNamespace)
{
    if (m_pLastNamespace == nullptr || m_pLastNamespace->first != strNamespace)
    {
        auto it = m_namespaces.find(strNamespace);
        if (it == m_namespaces.end())
            it = m_namespaces.emplace(CString(strNamespace), ToText(strNamespace)).first;
        m_pLastNamespace = &*it;
    }
    return m_pLastNamespace;
}

template <class Char>
const typename CXmlNameIndex<Char>::CName& CXmlNameIndex<Char>::FindInMap(const CKeyView& key)
{
    const auto it = m_names.find(key);
    if (it != m_names.end())
        return *it;
    SXmlName name{ToText(key.second), &key.first->second, false};
    return *m_names.emplace(std::pair(key.first, CString(key.second)), std::move(name)).first;
}

template <class Char>
const SXmlName& CXmlNameIndex<Char>::Find(CView strNamespace, CView strLocalName)
{
    const CKeyView key(FindNamespace(strNamespace), strLocalName);
    CPlace& place = m_cache[GetPlace(key)];
    for (const CName* pName : place)
    {
        if (pName != nullptr && pName->first.first == key.first && pName->first.second == strLocalName)
            return pName->second;
    }
    place[1] = place[0];
    place[0] = &FindInMap(key);
    return place[0]->second;
}

template class CXmlNameIndex<char>;
template class CXmlNameIndex<wchar_t>;

const SXmlName& CXmlNameTable::Find(const char* lpcName)
{
    if (m_pUtf8Names == nullptr)
        m_pUtf8Names = std::make_unique<CXmlNameIndex<char>>();
    const char* const lpcSeparator = std::strchr(lpcName, '|');
    if (lpcSeparator == nullptr)
        return m_pUtf8Names->Find({}, lpcName);
    return m_pUtf8Names->Find({lpcName, static_cast<std::size_t>(lpcSeparator - lpcName)}, lpcSeparator + 1);
}

const SXmlName& CXmlNameTable::Find(std::wstring_view strNamespaceURI, std::wstring_view strLocalName)
{
    if (m_pTextNames == nullptr)
        m_pTextNames = std::make_unique<CXmlNameIndex<wchar_t>>();
    return m_pTextNames->Find(strNamespaceURI, strLocalName);
}

const SXmlName& CXmlNameTable::GetEmptyName()
{
    static const std::wstring* const s_pstrEmpty = new std::wstring;
    static const SXmlName* const s_pName = new SXmlName{std::wstring(), s_pstrEmpty, false};
    return *s_pName;
}

} // namespace QvXmlLib9
