#include "quiver/generated/Wildcard.h"

#include "quiver/collections/Element.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>
#include <vector>

namespace QvXmlLib9
{

bool SWildcard::Allows(const std::wstring& strNamespace) const
{
    const bool bListed = std::any_of(ppUris, ppUris + nUris,
                                     [&strNamespace](const wchar_t* lpctUri) { return strNamespace == lpctUri; });
    return eKind == Any || bListed == (eKind == List);
}

void DropLayout(CElement& element)
{
    std::vector<CElement*> waiting{&element};
    while (!waiting.empty())
    {
        CElement& next = *waiting.back();
        waiting.pop_back();
        const CSmartPtr<CElementCol> spChildren = next.GetChildElements();
        if (spChildren->GetCount() == 0)
            continue;
        const std::wstring strText = next.GetText();
        if (!strText.empty() && std::all_of(strText.begin(), strText.end(), CWhitespaceUtils::IsWhiteSpace))
            next.SetText(L"");
        for (CElement& child : *spChildren)
            waiting.push_back(&child);
    }
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
