#pragma once

#include "quiver/core/XmlObjectBase.h"

namespace QvTest
{

/// The protected conversions of any object, as the metadata and other objects reach them.
class CProtectedAccess : public QvXmlLib9::CXmlObjectBase
{
public:
    static void Write(const QvXmlLib9::CXmlObjectBase* pObject, QvXmlLib9::CXmlWriter& writer,
                      const QvXmlLib9::CXmlSerializationContext& context, const wchar_t* lpctNamespace = L"urn:ignored")
    {
        CXmlObjectBase::ToXml_Int(pObject, &writer, false, lpctNamespace, context, false);
    }

    static void WriteAttributes(const QvXmlLib9::CXmlObjectBase* pObject, QvXmlLib9::CXmlWriter& writer,
                                const QvXmlLib9::CXmlSerializationContext& context)
    {
        CXmlObjectBase::AttributesToXml_Int(pObject, &writer, context);
    }

    static QvXmlLib9::CXmlElement* Read(QvXmlLib9::CXmlObjectBase* pObject, QvXmlLib9::CXmlElement* pParent,
                                        QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context)
    {
        return CXmlObjectBase::FromXml_Int(pObject, pParent, pCurrent, context);
    }
};

} // namespace QvTest
