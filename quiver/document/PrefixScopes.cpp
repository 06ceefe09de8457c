#include "quiver/document/PrefixScopes.h"

#include "quiver/document/XmlElement.h"

#include <algorithm>

namespace QvXmlLib9
{

void CPrefixScopes::Attach(const CXmlElement& element, bool bRoot, bool bKept)
{
    for (auto& [strPrefix, strUri] : m_next)
    {
        // Ahead of the first default namespace there was none, and that is a binding too.
        const bool bDefaultWithin = strPrefix.empty() && !bRoot;
        const auto it = m_first.try_emplace(strPrefix, bDefaultWithin ? std::wstring() : strUri).first;
        if (!bKept || (it->second == strUri && m_rebound.count(strPrefix) == 0))
            continue;
        m_rebound.insert(strPrefix);
        m_declarations[&element].emplace_back(std::move(strPrefix), std::move(strUri));
    }
    m_next.clear();
}

const CPrefixScopes::CParents& CPrefixScopes::GetParents(CXmlElement* pRoot) const
{
    std::call_once(m_parentsMade,
                   [this, pRoot]
                   {
                       std::vector<CXmlElement*> waiting;
                       if (pRoot != nullptr)
                           waiting.push_back(pRoot);
                       while (!waiting.empty())
                       {
                           CXmlElement* const pParent = waiting.back();
                           waiting.pop_back();
                           for (CXmlElement* pChild = pParent->GetFirstElement(); pChild != nullptr;
                                pChild = pChild->GetNextSiblingElement())
                           {
                               m_parents[pChild] = pParent;
                               waiting.push_back(pChild);
                           }
                       }
                   });
    return m_parents;
}

const std::wstring* CPrefixScopes::Find(CXmlElement* pRoot, const CXmlElement& element, std::wstring_view prefix) const
{
    const auto first = m_first.find(prefix);
    if (first == m_first.end())
    {
        // No default namespace is no namespace.
        static const std::wstring& s_strNone = *new std::wstring;
        return prefix.empty() ? &s_strNone : nullptr;
    }
    if (m_rebound.count(prefix) == 0)
        return &first->second;
    const CParents& parents = GetParents(pRoot);
    for (const CXmlElement* pElement = &element; pElement != nullptr;)
    {
        if (const auto own = m_declarations.find(pElement); own != m_declarations.end())
        {
            const auto it = std::find_if(own->second.begin(), own->second.end(),
                                         [prefix](const auto& declaration) { return declaration.first == prefix; });
            if (it != own->second.end())
                return &it->second;
        }
        const auto parent = parents.find(pElement);
        pElement = parent == parents.end() ? nullptr : parent->second;
    }
    return &first->second;
}

} // namespace QvXmlLib9
