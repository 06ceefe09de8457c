#include "quiver/document/XmlNameTable.h"

#include "quiver/foundation/Encoder.h"

#include <cstdint>
#include <cstring>

namespace QvXmlLib9
{

namespace
{

/// Stands between namespace and local name in the parser's names.
constexpr char s_cSeparator = '|';

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
const typename CXmlNameIndex<Char>::CNamespace* CXmlNameIndex<Char>::FindNamespace(CView svNamespace)
{
    if (m_pLastNamespace == nullptr || m_pLastNamespace->first != svNamespace)
    {
        auto it = m_namespaces.find(svNamespace);
        if (it == m_namespaces.end())
            it = m_namespaces.emplace(CString(svNamespace), ToText(svNamespace)).first;
        m_pLastNamespace = &*it;
    }
    return m_pLastNamespace;
}

template <class Char>
typename CXmlNameIndex<Char>::CName& CXmlNameIndex<Char>::FindInMap(const CKeyView& key)
{
    const auto it = m_names.find(key);
    if (it != m_names.end())
        return *it;
    SEntry entry{{ToText(key.second), &key.first->second, m_pStore}, nullptr};
    return *m_names.emplace(std::pair(key.first, CString(key.second)), std::move(entry)).first;
}

template <class Char>
typename CXmlNameIndex<Char>::CName& CXmlNameIndex<Char>::Find(CView svNamespace, CView svLocalName)
{
    const CKeyView key(FindNamespace(svNamespace), svLocalName);
    CPlace& place = m_cache[GetPlace(key)];
    for (CName* pName : place)
    {
        if (pName != nullptr && pName->first.first == key.first && pName->first.second == svLocalName)
            return *pName;
    }
    place[1] = place[0];
    place[0] = &FindInMap(key);
    return *place[0];
}

template class CXmlNameIndex<char>;
template class CXmlNameIndex<wchar_t>;

/// Compares without looking for the length of a name that may turn out to be another one.
bool CXmlNameTable::IsName(const CUtf8Index::CName& name, const char* lpcName)
{
    const std::string& strNamespace = name.first.first->first;
    if (!strNamespace.empty())
    {
        const std::size_t nLength = strNamespace.size();
        if (std::strncmp(lpcName, strNamespace.c_str(), nLength) != 0 || lpcName[nLength] != s_cSeparator)
            return false;
        lpcName += nLength + 1;
    }
    return std::strcmp(lpcName, name.first.second.c_str()) == 0;
}

CXmlNameTable::CUtf8Index::CName& CXmlNameTable::FindInIndex(const char* lpcName)
{
    if (m_pUtf8Names == nullptr)
        m_pUtf8Names = std::make_unique<CUtf8Index>(m_pStore);
    const char* const lpcSeparator = std::strchr(lpcName, s_cSeparator);
    if (lpcSeparator == nullptr)
        return m_pUtf8Names->Find({}, lpcName);
    return m_pUtf8Names->Find({lpcName, static_cast<std::size_t>(lpcSeparator - lpcName)}, lpcSeparator + 1);
}

const SXmlName& CXmlNameTable::Find(const char* lpcName)
{
    CUtf8Index::CName* pName = m_pLast != nullptr ? m_pLast->second.pFollower : nullptr;
    if (pName == nullptr || !IsName(*pName, lpcName))
    {
        pName = &FindInIndex(lpcName);
        if (m_pLast != nullptr)
            m_pLast->second.pFollower = pName;
    }
    m_pLast = pName;
    return pName->second.name;
}

const SXmlName& CXmlNameTable::Make(const std::wstring& strNamespaceURI, std::string_view utf8LocalName)
{
    m_made.push_front({ToText(utf8LocalName), &strNamespaceURI, m_pStore});
    return m_made.front();
}

const std::wstring& CXmlNameTable::MakeNamespace(std::string_view utf8NamespaceURI)
{
    m_madeNamespaces.push_front(ToText(utf8NamespaceURI));
    return m_madeNamespaces.front();
}

const SXmlName& CXmlNameTable::Find(std::wstring_view svNamespaceURI, std::wstring_view svLocalName)
{
    if (m_pTextNames == nullptr)
        m_pTextNames = std::make_unique<CTextIndex>(m_pStore);
    return m_pTextNames->Find(svNamespaceURI, svLocalName).second.name;
}

} // namespace QvXmlLib9
