#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace QvXmlLib9
{

class CXmlElement;

/// Which namespace a prefix stands for where an element is. Nearly all documents bind a prefix once; only of those
/// bound again it is kept which element did so.
class CPrefixScopes
{
public:
    CPrefixScopes() = default;
    CPrefixScopes(const CPrefixScopes&) = delete;
    CPrefixScopes& operator=(const CPrefixScopes&) = delete;

    /// A declaration of the element that comes next. The empty prefix stands for the default namespace.
    void Declare(const std::wstring& strPrefix, const std::wstring& strUri) { m_next.emplace_back(strPrefix, strUri); }

    bool HasNext() const { return !m_next.empty(); }

    /// The element to which the declarations belong.
    /// @param bKept false if it may be destroyed ahead of the tree: of its declarations the first ones count then.
    void Attach(const CXmlElement& element, bool bRoot, bool bKept);

    /// @param pRoot the tree, for the way to the element.
    /// @return null if nobody declared the prefix.
    const std::wstring* Find(CXmlElement* pRoot, const CXmlElement& element, std::wstring_view prefix) const;

private:
    using CDeclarations = std::vector<std::pair<std::wstring, std::wstring>>;
    using CParents = std::unordered_map<const CXmlElement*, const CXmlElement*>;

    const CParents& GetParents(CXmlElement* pRoot) const;

    CDeclarations m_next;
    std::map<std::wstring, std::wstring, std::less<>> m_first;
    std::set<std::wstring, std::less<>> m_rebound;
    std::unordered_map<const CXmlElement*, CDeclarations> m_declarations;
    /// Made for the first who asks for a prefix that was bound again: elements do not know their parents.
    mutable CParents m_parents;
    mutable std::once_flag m_parentsMade;
};

} // namespace QvXmlLib9
