#include "quiver/generated/Wildcard.h"

#include <algorithm>

namespace QvXmlLib9
{

bool SWildcard::Allows(const std::wstring& strNamespace) const
{
    const bool bListed = std::any_of(ppUris, ppUris + nUris,
                                     [&strNamespace](const wchar_t* lpctUri) { return strNamespace == lpctUri; });
    return eKind == Any || bListed == (eKind == List);
}

} // namespace QvXmlLib9
