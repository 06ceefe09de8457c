#include "quiver/document/XmlScannedNames.h"

#include "quiver/document/XmlCharacters.h"
#include "quiver/document/XmlTreeBuilder.h"
#include "quiver/foundation/Encoder.h"

#include <algorithm>

namespace QvXmlLib9
{

namespace
{

constexpr std::string_view s_svXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view s_svXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

/// The parser's names have it between namespace and local name.
constexpr char s_cSeparator = '|';

/// Longer ones count against a bound, and whoever reads the document otherwise keeps that account.
constexpr std::size_t s_nLongestNamespace = 256;

constexpr bool IsAsciiLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

constexpr bool IsAsciiNameCharacter(char c)
{
    return IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

constexpr std::array<bool, 256> MakeNameBytes()
{
    std::array<bool, 256> bytes{};
    for (std::size_t n = 0; n < bytes.size(); ++n)
        bytes[n] = n >= 0x80 || n == ':' || IsAsciiNameCharacter(static_cast<char>(n));
    return bytes;
}

/// Whether these bytes, which are all bytes of names, are a name.
bool IsName(std::string_view name, bool bColons)
{
    const char* p = name.data();
    const char* const pEnd = p + name.size();
    for (const char* const pBegin = p; p != pEnd;)
    {
        if (static_cast<signed char>(*p) >= 0)
        {
            const bool bGood = p == pBegin ? IsAsciiLetter(*p) : *p != ':';
            if (!bGood && !(bColons && *p == ':'))
                return false;
            ++p;
            continue;
        }
        char32_t c = 0;
        const bool bFirst = p == pBegin;
        p = ReadXmlCharacter(p, pEnd, c);
        if (p == nullptr || !(bFirst ? IsXmlLetter(c) : IsXmlNameCharacter(c)))
            return false;
    }
    return !name.empty();
}

void SetEnds(SScannedName& name)
{
    const std::size_t nLength = name.svName.size();
    const std::size_t nHead = std::min<std::size_t>(nLength, 8);
    constexpr unsigned char ones[8] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    std::memcpy(&name.nHeadMask, ones, nHead);
    std::memcpy(&name.nHead, name.svName.data(), nHead);
    std::memcpy(&name.nTail, name.svName.data() + nLength - nHead, nHead);
}

std::size_t GetPlace(std::string_view name, std::size_t nPlaces)
{
    const std::size_t nHead = std::min<std::size_t>(name.size(), 8);
    std::uint64_t nFront = 0;
    std::uint64_t nBack = 0;
    std::memcpy(&nFront, name.data(), nHead);
    std::memcpy(&nBack, name.data() + name.size() - nHead, nHead);
    const std::uint64_t nMixed = (nFront + nBack * 0xD6E8FEB86659FD93u + name.size()) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(nMixed >> 32) % nPlaces;
}

} // namespace

const std::array<bool, 256> CXmlScannedNames::s_nameBytes = MakeNameBytes();

CXmlScannedNames::CXmlScannedNames(CXmlTreeBuilder& builder, bool bNamespaces)
    : m_builder(builder)
    , m_bNamespaces(bNamespaces)
{
    m_none.pNamespace = m_default.pNamespace = &FindNamespace({});
}

SScannedName* CXmlScannedNames::Find(const char*& p)
{
    const char* const pBegin = p;
    while (IsNameByte(*p))
        ++p;
    const std::string_view name(pBegin, static_cast<std::size_t>(p - pBegin));
    if (name.empty())
        return nullptr;
    SScannedName*& pPlace = m_cache[GetPlace(name, m_cache.size())];
    if (pPlace == nullptr || pPlace->svName != name)
    {
        SScannedName* const pName = FindInMap(name);
        if (pName == nullptr)
            return nullptr;
        pPlace = pName;
    }
    m_pLast->pFollower = pPlace;
    return m_pLast = pPlace;
}

SScannedName* CXmlScannedNames::FindInMap(std::string_view name)
{
    const auto it = m_names.find(name);
    if (it != m_names.end())
        return &it->second;
    SScannedName scanned{};
    scanned.svName = name;
    if (!Describe(scanned))
        return nullptr;
    SetEnds(scanned);
    return &m_names.emplace(name, scanned).first->second;
}

/// Takes a name apart; false if it is none.
bool CXmlScannedNames::Describe(SScannedName& name)
{
    name.svLocalName = name.svName;
    name.pAttributePrefix = &m_none;
    name.pElementPrefix = &m_none;
    if (!m_bNamespaces)
        return IsName(name.svName, true);
    const std::size_t nColon = name.svName.find(':');
    if (nColon == std::string_view::npos)
    {
        name.pElementPrefix = &m_default;
        if (name.svName == "xmlns")
            name.pDeclared = &m_default;
        return IsName(name.svName, false);
    }
    const std::string_view prefix = name.svName.substr(0, nColon);
    name.svLocalName = name.svName.substr(nColon + 1);
    if (!IsName(prefix, false) || !IsName(name.svLocalName, false))
        return false;
    name.pElementPrefix = name.pAttributePrefix = &FindPrefix(prefix);
    if (prefix == "xmlns")
        name.pDeclared = &FindPrefix(name.svLocalName);
    return true;
}

SScannedPrefix& CXmlScannedNames::FindPrefix(std::string_view prefix)
{
    const auto [it, bNew] = m_prefixes.try_emplace(prefix);
    if (bNew)
    {
        it->second.svPrefix = prefix;
        if (prefix == "xml")
            it->second.pNamespace = &FindNamespace(s_svXmlNamespace);
    }
    return it->second;
}

const SScannedNamespace& CXmlScannedNames::FindNamespace(std::string_view svNamespace)
{
    const auto it = m_namespaces.find(svNamespace);
    if (it != m_namespaces.end())
        return *it;
    return *m_namespaces.emplace(svNamespace, &m_builder.MakeNamespace(svNamespace)).first;
}

bool CXmlScannedNames::Bind(SScannedPrefix& prefix, std::string_view svNamespace)
{
    if (svNamespace.empty() && &prefix != &m_default)
        return false;
    if (prefix.svPrefix == "xml" || prefix.svPrefix == "xmlns")
        return false;
    if (svNamespace == s_svXmlNamespace || svNamespace == s_svXmlnsNamespace)
        return false;
    if (svNamespace.size() > s_nLongestNamespace || svNamespace.find(s_cSeparator) != std::string_view::npos)
        return false;
    const SScannedNamespace& found = FindNamespace(svNamespace);
    m_bindings.push_back({&prefix, prefix.pNamespace});
    prefix.pNamespace = &found;
    // The builder hears once of a prefix that stands for one namespace, and of each element that declares another one.
    // Ahead of the first default namespace there was none.
    prefix.bChanges =
        prefix.bChanges || &prefix == &m_default || (prefix.pListed != nullptr && prefix.pListed != &found);
    if (!prefix.bChanges && prefix.pListed == &found)
        return true;
    m_strPrefix.clear();
    AppendUtf8AsUtf16(m_strPrefix, prefix.svPrefix);
    m_builder.SetNamespace(m_strPrefix, *found.second);
    prefix.pListed = &found;
    return true;
}

const SXmlName* CXmlScannedNames::FindMeaning(SScannedName& name, const SScannedPrefix& prefix,
                                              SScannedName::SMeaning& meaning)
{
    const SScannedNamespace* const pNamespace = prefix.pNamespace;
    if (pNamespace == nullptr)
        return nullptr;
    if (meaning.pName == nullptr)
    {
        meaning = {pNamespace, &m_builder.MakeName(*pNamespace->second, name.svLocalName)};
        return meaning.pName;
    }
    // A name that changes its namespace may do so any number of times, and back.
    m_strName = pNamespace->first;
    if (!m_strName.empty())
        m_strName += s_cSeparator;
    m_strName += name.svLocalName;
    meaning = {pNamespace, &m_builder.InternName(m_strName.c_str())};
    return meaning.pName;
}

} // namespace QvXmlLib9
