#include "quiver/document/NamespaceAliasMap.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <iterator>

namespace QvXmlLib9
{

namespace
{

template <class Map>
auto FindAlias(const Map& mapNamespaces, const wchar_t* lpctAlias)
{
    return std::find_if(mapNamespaces.begin(), mapNamespaces.end(),
                        [strAlias = ToUtf16Units(lpctAlias)](const auto& entry) { return entry.second == strAlias; });
}

} // namespace

CNamespaceAliasMap::CNamespaceAliasMap() = default;
CNamespaceAliasMap::CNamespaceAliasMap(const CNamespaceAliasMap& source) = default;
CNamespaceAliasMap& CNamespaceAliasMap::operator=(const CNamespaceAliasMap& source) = default;
CNamespaceAliasMap::~CNamespaceAliasMap() = default;

void CNamespaceAliasMap::Add(const wchar_t* lpctAlias, const wchar_t* lpctNamespaceURI)
{
    m_mapNamespaces[ToUtf16Units(lpctNamespaceURI)] = ToUtf16Units(lpctAlias);
}

void CNamespaceAliasMap::RemoveNamespace(const wchar_t* lpctNamespaceURI)
{
    m_mapNamespaces.erase(ToUtf16Units(lpctNamespaceURI));
}

std::wstring CNamespaceAliasMap::GetNamespaceFromAlias(const wchar_t* lpctAlias) const
{
    const auto it = FindAlias(m_mapNamespaces, lpctAlias);
    if (it == m_mapNamespaces.end())
        throw CQvException(FormatString(L"Namespace alias [%s] not found", ToUtf16Units(lpctAlias).c_str()));
    return it->first;
}

std::wstring CNamespaceAliasMap::GetAliasFromNamespace(const wchar_t* lpctNamespaceURI) const
{
    return m_mapNamespaces[ToUtf16Units(lpctNamespaceURI)];
}

bool CNamespaceAliasMap::DoesNamespaceExist(const wchar_t* lpctNamespaceURI) const
{
    return m_mapNamespaces.find(ToUtf16Units(lpctNamespaceURI)) != m_mapNamespaces.end();
}

bool CNamespaceAliasMap::DoesAliasExist(const wchar_t* lpctAlias) const
{
    return FindAlias(m_mapNamespaces, lpctAlias) != m_mapNamespaces.end();
}

int CNamespaceAliasMap::GetNamespaceCount() const
{
    return static_cast<int>(m_mapNamespaces.size());
}

std::wstring CNamespaceAliasMap::GetNamespaceAt(int nIndex) const
{
    if (nIndex >= GetNamespaceCount())
        return {};
    return std::next(m_mapNamespaces.begin(), std::max(nIndex, 0))->first;
}

} // namespace QvXmlLib9
