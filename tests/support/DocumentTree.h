#pragma once

#include "quiver/document/XmlElement.h"

#include <string>

namespace QvTest
{

inline std::wstring ShowName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName)
{
    return strNamespaceURI.empty() ? strLocalName : L"{" + strNamespaceURI + L"}" + strLocalName;
}

/// A parsed element on one line: name, attributes, text, children. `<a b="1">x<c/>y</a>` shows as `a @b='1' "xy" (c)`,
/// and names in a namespace as `{uri}name`.
inline std::wstring Outline(QvXmlLib9::CXmlElement* pElement)
{
    if (pElement == nullptr)
        return L"(null)";
    std::wstring strOutline = ShowName(pElement->GetNamespaceURI(), pElement->GetLocalName());
    for (const QvXmlLib9::CXmlAttribute* pAttribute : pElement->GetAttributes())
        strOutline += L" @" + ShowName(pAttribute->GetNamespaceURI(), pAttribute->GetLocalName()) + L"='" +
                      pAttribute->GetValue() + L"'";
    if (!pElement->GetText().empty())
        strOutline += L" \"" + pElement->GetText() + L"\"";
    if (pElement->GetFirstElement() == nullptr)
        return strOutline;
    std::wstring strChildren;
    for (QvXmlLib9::CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr;
         pChild = pChild->GetNextSiblingElement())
        strChildren += (strChildren.empty() ? L"" : L", ") + Outline(pChild);
    return strOutline + L" (" + strChildren + L")";
}

} // namespace QvTest
