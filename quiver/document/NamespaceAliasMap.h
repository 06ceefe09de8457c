#pragma once

#include "quiver/foundation/Export.h"

#include <map>
#include <string>

namespace QvXmlLib9
{

/// The prefixes that a caller wants declared on the root element of what is written. One alias for each namespace; two
/// namespaces may carry the same alias. Declarations come out in the order of the namespace URIs, by code units, not in
/// the order of adding.
///
///     context.GetNamespaceAliases().Add(L"po", L"http://www.example.com/po");
///
/// Starts empty and plays no part in reading. Not for use by several threads while one of them changes it, and
/// GetAliasFromNamespace may be such a change.
class QVXMLLIB_API CNamespaceAliasMap
{
public:
    CNamespaceAliasMap();
    CNamespaceAliasMap(const CNamespaceAliasMap& source);
    CNamespaceAliasMap& operator=(const CNamespaceAliasMap& source);
    virtual ~CNamespaceAliasMap();

    /// Gives a namespace its alias, in place of the one that it had.
    void Add(const wchar_t* lpctAlias, const wchar_t* lpctNamespaceURI);

    /// Removes a namespace; one that is unknown is no failure.
    void RemoveNamespace(const wchar_t* lpctNamespaceURI);

    /// The namespace that carries the alias; the lowest URI if several do.
    /// @throws CQvException "Namespace alias [%s] not found" if none does.
    std::wstring GetNamespaceFromAlias(const wchar_t* lpctAlias) const;

    /// The alias of the namespace. An unknown namespace is entered with an empty alias, which is returned; from then on
    /// it counts, and is written, like any other. Ask DoesNamespaceExist first where that is not wanted.
    std::wstring GetAliasFromNamespace(const wchar_t* lpctNamespaceURI) const;

    bool DoesNamespaceExist(const wchar_t* lpctNamespaceURI) const;
    bool DoesAliasExist(const wchar_t* lpctAlias) const;

    int GetNamespaceCount() const;

    /// The URI at a position in the order of URIs.
    /// @param nIndex 0 to GetNamespaceCount() - 1. A negative index gives the first entry, one past the end an empty
    ///        string.
    ///
    /// Each call walks the map from its start; to see all entries of a large map, walk GetEntries.
    std::wstring GetNamespaceAt(int nIndex) const;

    /// The aliases by namespace, in the order of the URIs. The reference is good as long as the map.
    const std::map<std::wstring, std::wstring>& GetEntries() const { return m_mapNamespaces; }

private:
    /// Mutable, since asking for an unknown namespace's alias enters it.
    mutable std::map<std::wstring, std::wstring> m_mapNamespaces;
};

} // namespace QvXmlLib9
