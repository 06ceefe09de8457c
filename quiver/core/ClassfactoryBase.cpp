#include "quiver/core/ClassfactoryBase.h"

#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/SchemaNamespaces.h"

namespace QvXmlLib9
{

namespace
{

const std::wstring& XsiType(CXmlElement* pElement)
{
    return pElement->GetAttribute(L"type", g_lpctXsiNamespace);
}

} // namespace

CClassfactoryBase::~CClassfactoryBase() = default;

std::wstring CClassfactoryBase::GetElementType(CXmlElement* pElement)
{
    const std::wstring& strType = XsiType(pElement);
    const std::size_t nColon = strType.find(L':');
    return nColon == std::wstring::npos ? strType : strType.substr(nColon + 1);
}

std::wstring CClassfactoryBase::GetElementTypeNamespaceUri(CXmlElement* pElement)
{
    const std::wstring& strType = XsiType(pElement);
    const std::size_t nColon = strType.find(L':');
    const CXmlDocument* const pDocument = pElement->GetDocument();
    if (nColon != std::wstring::npos && pDocument != nullptr)
    {
        const std::wstring strUri = pDocument->LookupNamespaceFromAlias(strType.substr(0, nColon).c_str());
        if (!strUri.empty())
            return strUri;
    }
    // An unprefixed name, or a prefix that nobody declared, belongs to the element's own namespace. Declarations are
    // kept by the document, so an element on its own has none.
    return pElement->GetNamespaceURI();
}

} // namespace QvXmlLib9
