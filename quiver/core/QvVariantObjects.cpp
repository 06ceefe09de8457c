// The part of QvVariant that knows objects and collections. It stands here because both are classes of higher layers
// than the values.

#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Assert.h"
#include "quiver/values/QvVariant.h"

namespace QvXmlLib9
{

namespace
{

/// Adds the reference that a variant is to hold, ahead of dropping its former value: the object may live by that alone.
template <class T>
T* AddReferenceTo(T* pObject)
{
    if (pObject != nullptr)
        pObject->AddRef();
    return pObject;
}

} // namespace

void QvVariant::AddReference() const noexcept
{
    AddReferenceTo(XmlObjectPtr());
}

void QvVariant::ReleaseReference() noexcept
{
    if (CXmlObjectBase* const pObject = XmlObjectPtr())
        pObject->Release();
}

void QvVariant::SetXmlObject(CXmlObjectBase* pObject)
{
    AddReferenceTo(pObject);
    Clear();
    m_pXmlObject = pObject;
    m_type = ItemType_XmlObjectBase;
}

CSmartPtr<CXmlObjectBase> QvVariant::GetXmlObject() const
{
    return XmlObjectPtr();
}

void QvVariant::SetXmlCollection(CXmlCollectionBase* pCollection)
{
    AddReferenceTo(pCollection);
    Clear();
    m_pXmlCol = pCollection;
    m_type = ItemType_XmlCollection;
}

CSmartPtr<CXmlCollectionBase> QvVariant::GetXmlCollection() const
{
    return XmlCollectionPtr();
}

CXmlObjectBase* QvVariant::XmlObjectPtr() const
{
    // A collection is an object too.
    if (m_type == ItemType_XmlCollection)
        return m_pXmlCol;
    QV_ASSERT(m_type == ItemType_XmlObjectBase);
    return m_type == ItemType_XmlObjectBase ? m_pXmlObject : nullptr;
}

CXmlCollectionBase* QvVariant::XmlCollectionPtr() const
{
    QV_ASSERT_MSG(m_type == ItemType_XmlCollection && m_pXmlCol != nullptr,
                  "m_type == ItemType_XmlCollection && m_pXmlCol != NULL");
    return m_type == ItemType_XmlCollection ? m_pXmlCol : nullptr;
}

} // namespace QvXmlLib9
