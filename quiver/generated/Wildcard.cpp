#include "quiver/generated/Wildcard.h"

#include "quiver/collections/Element.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>

namespace QvXmlLib9
{

bool SWildcard::Allows(const std::wstring& strNamespace) const
{
    const bool bListed = std::any_of(ppUris, ppUris + nUris,
                                     [&strNamespace](const wchar_t* lpctUri) { return strNamespace == lpctUri; });
    return eKind == Any || bListed == (eKind == List);
}

bool SWildcard::Allows(const std::wstring& strNamespace, const std::wstring& strLocalName) const
{
    return Allows(strNamespace) && (lpctElementName == nullptr || strLocalName == lpctElementName);
}

void SWildcard::Throw_IfForbidden(const CElement& element) const
{
    const std::wstring strNamespace = element.GetNamespace();
    const std::wstring strName = element.GetName();
    if (!Allows(strNamespace, strName))
        throw CQvValidationException(FormatString(L"The element [%s] of the namespace [%s] may not stand here",
                                                  strName.c_str(), strNamespace.c_str()));
}

} // namespace QvXmlLib9
