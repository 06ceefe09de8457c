#include "quiver/metadata/TreeText.h"

#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlText.h"
#include "quiver/values/QvVariant.h"

#include <string_view>

namespace QvXmlLib9Data
{

using QvXmlLib9::CXmlText;
using QvXmlLib9::QvVariant;

namespace
{

/// @param pText null for an empty text.
void StoreText(const CXmlText* pText, QvVariant& value)
{
    std::string_view svUtf8;
    if (pText == nullptr || pText->GetUtf8(svUtf8))
        value.SetUtf8(svUtf8);
    else
        value.SetString(pText->Get());
}

} // namespace

void CTreeText::Store(const QvXmlLib9::CXmlElement& element, QvVariant& value)
{
    StoreText(element.m_pText, value);
}

void CTreeText::Store(const QvXmlLib9::CXmlAttribute& attribute, QvVariant& value)
{
    StoreText(attribute.m_pValue, value);
}

} // namespace QvXmlLib9Data
