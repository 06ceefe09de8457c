#include "quiver/output/NamespaceScopes.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/KeyedHash.h"

namespace QvXmlLib9
{

namespace
{

constexpr std::size_t s_nFirstBuckets = 16;

std::size_t Hash(std::wstring_view svText)
{
    return static_cast<std::size_t>(HashText(GetHashKey(), svText));
}

} // namespace

std::size_t CNamespaceScopes::Find(std::wstring_view svNamespace) const
{
    if (m_nLastFound < m_nCount && m_bindings[m_nLastFound].strNamespace == svNamespace)
        return m_nLastFound;
    if (m_nCount == 0)
        return s_nNotFound;
    const std::size_t nFound = FindHashed(svNamespace, Hash(svNamespace));
    if (nFound != s_nNotFound)
        m_nLastFound = nFound;
    return nFound;
}

std::size_t CNamespaceScopes::FindHashed(std::wstring_view svNamespace, std::size_t nHash) const
{
    // The newest binding of a namespace comes first in its chain and hides the others.
    for (std::uint32_t n = m_byNamespace[nHash & (m_byNamespace.size() - 1)]; n != s_nNone;
         n = m_bindings[n].nNextByNamespace)
    {
        if (m_bindings[n].nNamespaceHash == nHash && m_bindings[n].strNamespace == svNamespace)
            return m_bindings[n].bUnbinds ? s_nNotFound : n;
    }
    return s_nNotFound;
}

bool CNamespaceScopes::IsPrefixBound(std::wstring_view svPrefix) const
{
    if (m_nCount == 0)
        return false;
    const std::size_t nHash = Hash(svPrefix);
    for (std::uint32_t n = m_byPrefix[nHash & (m_byPrefix.size() - 1)]; n != s_nNone; n = m_bindings[n].nNextByPrefix)
    {
        const SBinding& binding = m_bindings[n];
        if (binding.nPrefixHash == nHash && binding.strPrefix == svPrefix &&
            FindHashed(binding.strNamespace, binding.nNamespaceHash) == n)
            return true;
    }
    return false;
}

std::size_t CNamespaceScopes::Bind(std::wstring_view svNamespace, std::wstring_view svPrefix)
{
    const std::size_t nHash = Hash(svNamespace);
    const bool bHides = m_nCount != 0 && FindHashed(svNamespace, nHash) != s_nNotFound;

    if (m_nCount == m_bindings.size())
        m_bindings.emplace_back();
    SBinding& binding = m_bindings[m_nCount];
    binding.strNamespace = svNamespace;
    binding.strPrefix = svPrefix;
    binding.bUnbinds = false;
    binding.nNamespaceHash = nHash;
    binding.nPrefixHash = Hash(svPrefix);
    binding.nFirstFreePrefix = m_nFirstFreePrefix;
    if (m_nCount + 1 > m_byNamespace.size())
        GrowBuckets();
    Link(static_cast<std::uint32_t>(m_nCount));

    // A binding that is hidden gives its prefix back, which may be a low one.
    if (bHides)
        m_nFirstFreePrefix = 0;
    m_nLastFound = m_nCount;
    return m_nCount++;
}

void CNamespaceScopes::Unbind(std::wstring_view svNamespace)
{
    m_bindings[Bind(svNamespace, {})].bUnbinds = true;
    m_nLastFound = s_nNotFound;
}

std::wstring CNamespaceScopes::GeneratePrefix()
{
    std::wstring strPrefix = FormatPrefix(m_nFirstFreePrefix);
    while (IsPrefixBound(strPrefix))
        strPrefix = FormatPrefix(++m_nFirstFreePrefix);
    return strPrefix;
}

std::wstring CNamespaceScopes::FormatPrefix(unsigned int n)
{
    return {static_cast<wchar_t>((65 + n / 26) & 0xFFFF), static_cast<wchar_t>(65 + n % 26)};
}

void CNamespaceScopes::DropTo(std::size_t nCount)
{
    QV_ASSERT(nCount <= m_nCount);
    while (m_nCount > nCount)
    {
        --m_nCount;
        Unlink(static_cast<std::uint32_t>(m_nCount));
        m_nFirstFreePrefix = m_bindings[m_nCount].nFirstFreePrefix;
    }
}

void CNamespaceScopes::Link(std::uint32_t nBinding)
{
    SBinding& binding = m_bindings[nBinding];
    std::uint32_t& nByNamespace = m_byNamespace[binding.nNamespaceHash & (m_byNamespace.size() - 1)];
    std::uint32_t& nByPrefix = m_byPrefix[binding.nPrefixHash & (m_byPrefix.size() - 1)];
    binding.nNextByNamespace = nByNamespace;
    binding.nNextByPrefix = nByPrefix;
    nByNamespace = nByPrefix = nBinding;
}

void CNamespaceScopes::Unlink(std::uint32_t nBinding)
{
    const SBinding& binding = m_bindings[nBinding];
    m_byNamespace[binding.nNamespaceHash & (m_byNamespace.size() - 1)] = binding.nNextByNamespace;
    m_byPrefix[binding.nPrefixHash & (m_byPrefix.size() - 1)] = binding.nNextByPrefix;
}

void CNamespaceScopes::GrowBuckets()
{
    const std::size_t nBuckets = m_byNamespace.empty() ? s_nFirstBuckets : m_byNamespace.size() * 2;
    m_byNamespace.assign(nBuckets, s_nNone);
    m_byPrefix.assign(nBuckets, s_nNone);
    for (std::size_t n = 0; n < m_nCount; ++n)
        Link(static_cast<std::uint32_t>(n));
}

} // namespace QvXmlLib9
