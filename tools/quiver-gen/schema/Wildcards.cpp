#include "tools/quiver-gen/schema/Wildcards.h"

#include <algorithm>
#include <unordered_set>

namespace quiver_gen::schema
{

namespace
{

using ENamespaces = SWildcard::ENamespaces;
using CNames = std::vector<std::string>;

/// The names that are, or are not, among others.
CNames Filter(const CNames& names, const CNames& others, bool bAmong)
{
    const std::unordered_set<std::string> known(others.begin(), others.end());
    CNames result;
    for (const std::string& strName : names)
        if ((known.count(strName) > 0) == bAmong)
            result.push_back(strName);
    return result;
}

CNames Join(CNames names, const CNames& others)
{
    const CNames further = Filter(others, names, false);
    names.insert(names.end(), further.begin(), further.end());
    return names;
}

} // namespace

void IntersectNamespaces(SWildcard& wildcard, const SWildcard& other)
{
    if (other.eNamespaces == ENamespaces::Any)
        return;
    if (wildcard.eNamespaces == ENamespaces::Any)
    {
        wildcard.eNamespaces = other.eNamespaces;
        wildcard.namespaces = other.namespaces;
    }
    else if (wildcard.eNamespaces == ENamespaces::List)
        wildcard.namespaces = Filter(wildcard.namespaces, other.namespaces, other.eNamespaces == ENamespaces::List);
    else if (other.eNamespaces == ENamespaces::Not)
        wildcard.namespaces = Join(std::move(wildcard.namespaces), other.namespaces);
    else
    {
        wildcard.eNamespaces = ENamespaces::List;
        wildcard.namespaces = Filter(other.namespaces, wildcard.namespaces, false);
    }
}

void UniteNamespaces(SWildcard& wildcard, const SWildcard& other)
{
    if (wildcard.eNamespaces == ENamespaces::Any || other.eNamespaces == ENamespaces::Any)
    {
        wildcard.eNamespaces = ENamespaces::Any;
        wildcard.namespaces.clear();
    }
    else if (wildcard.eNamespaces == ENamespaces::List && other.eNamespaces == ENamespaces::List)
        wildcard.namespaces = Join(std::move(wildcard.namespaces), other.namespaces);
    else
    {
        // What is refused is what both refuse.
        const bool bNot = wildcard.eNamespaces == ENamespaces::Not;
        const CNames& refused = bNot ? wildcard.namespaces : other.namespaces;
        const CNames& others = bNot ? other.namespaces : wildcard.namespaces;
        const bool bBothNot = bNot && other.eNamespaces == ENamespaces::Not;
        wildcard.namespaces = Filter(refused, others, bBothNot);
        wildcard.eNamespaces = wildcard.namespaces.empty() ? ENamespaces::Any : ENamespaces::Not;
    }
}

bool IsSubset(const SWildcard& wildcard, const SWildcard& of)
{
    if (of.eNamespaces == ENamespaces::Any)
        return true;
    switch (wildcard.eNamespaces)
    {
    case ENamespaces::Any:
        return false;
    case ENamespaces::Not:
        return of.eNamespaces == ENamespaces::Not && Filter(of.namespaces, wildcard.namespaces, false).empty();
    case ENamespaces::List:
        break;
    }
    return Filter(wildcard.namespaces, of.namespaces, of.eNamespaces == ENamespaces::Not).empty();
}

} // namespace quiver_gen::schema
