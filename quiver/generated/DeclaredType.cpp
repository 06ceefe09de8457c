#include "quiver/generated/DeclaredType.h"

#include "quiver/document/XmlElement.h"
#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/generated/BuiltinTypes.h"

namespace QvXmlLib9
{

SDeclaredType::SDeclaredType(const CXmlElement& element)
{
    const std::wstring strType = xs::QName::Type().Normalize(element.GetAttribute(L"type", g_lpctXsiNamespace));
    const std::size_t nColon = strType.find(L':');
    bSaid = !strType.empty();
    bPrefix = nColon != std::wstring::npos;
    strPrefix = strType.substr(0, bPrefix ? nColon : 0);
    strName = strType.substr(bPrefix ? nColon + 1 : 0);
    pUri = element.FindPrefix(strPrefix);
}

} // namespace QvXmlLib9
