#include "quiver/metadata/ElementInfoChoice.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/QvVariant.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::CQvException;

CElementInfoChoice::CElementInfoChoice(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoChoice::CElementInfoChoice(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                       ItemType eItemType, const wchar_t* lpctFormat,
                                       CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                       const CPrimitiveRestrictions& restrictions)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

bool CElementInfoChoice::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    throw CQvException(L"Not implemented, should never be called");
}

CElementInfoChoiceOpt::CElementInfoChoiceOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoChoice(lpctName, lpctNamespace, nPropertyIndex)
{
    SetEmptyChoice(EmptyChoice::Allowed);
}

CElementInfoChoiceOpt::CElementInfoChoiceOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             ItemType eItemType, const wchar_t* lpctFormat,
                                             CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                             const CPrimitiveRestrictions& restrictions)
    : CElementInfoChoice(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
    SetEmptyChoice(EmptyChoice::Allowed);
}

CElementInfoChoiceCol::CElementInfoChoiceCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoChoice(lpctName, lpctNamespace, nPropertyIndex)
{
    SetEmptyChoice(EmptyChoice::UpToCollection);
}

bool CElementInfoChoiceCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                         CXmlWriter* pWriter) const
{
    return ElementToXmlCol(context, pObject, pWriter);
}

bool CElementInfoChoiceCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType eParentType)
{
    QvVariant value;
    CXmlCollectionBase* const pCollection = ExistingCollection(pObject, value);
    CXmlElement* const pNext = FromXml_Int(pCollection, pParent, *ppCurrent, context, false);
    return AcceptRun(*pCollection, ppCurrent, pNext, context, eParentType);
}

bool CElementInfoChoiceCol::AcceptRun(const CXmlCollectionBase& collection, CXmlElement** ppCurrent, CXmlElement* pNext,
                                      const CXmlSerializationContext& context, XmlElementType eParentType)
{
    if (pNext == *ppCurrent)
        return false;
    if (eParentType != ElementType_Element && !collection.IsValidCount(context))
        return false;
    *ppCurrent = pNext;
    if (eParentType == ElementType_Element)
        collection.ValidateCount(context);
    return true;
}

bool CElementInfoChoicePrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                               CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakePrim(context, pObject, ppCurrent);
}

bool CElementInfoChoiceEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                               CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
}

bool CElementInfoChoiceClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, true);
}

bool CElementInfoChoiceClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                              CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                              XmlElementType)
{
    if (m_eElementType != ElementType_Element)
        return PseudoFromXml(context, pObject, pParent, ppCurrent);
    if (!IsThisElement(context, *ppCurrent))
        return false;
    const CSmartPtr<CXmlObjectBase> spChild = NewChild(m_pfnCreate, m_nClassId);
    StoreChild(pObject, spChild);
    ReadChild(spChild, *ppCurrent, context, true);
    Consume(ppCurrent);
    return true;
}

bool CElementInfoChoiceClsOpt::PseudoFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent)
{
    if (*ppCurrent == nullptr)
        return false;
    const CSmartPtr<CXmlObjectBase> spChild = NewChild(m_pfnCreate, m_nClassId);
    StoreChild(pObject, spChild);
    if (ReadPseudoChild(spChild, pParent, ppCurrent, context))
        return true;
    StoreChild(pObject, nullptr);
    return false;
}

bool CElementInfoChoiceAbsClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                                 CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    if (!IsThisElement(context, *ppCurrent))
        return false;
    const CSmartPtr<CXmlObjectBase> spChild = m_pfnCreateFromElement(*ppCurrent);
    StoreChild(pObject, spChild);
    if (spChild == nullptr)
        return false;
    ReadChild(spChild, *ppCurrent, context, false);
    Consume(ppCurrent);
    return true;
}

bool CElementInfoChoiceUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                                CXmlElement* pParent, CXmlElement** ppCurrent,
                                                const wchar_t* lpctParentNamespace, XmlElementType)
{
    if (*ppCurrent == nullptr)
        return false;
    if (TakeNewWildcard(context, pObject, pParent, ppCurrent, lpctParentNamespace, m_strNamespaceRestriction,
                        m_strTargetNamespace))
        return true;
    StoreChild(pObject, nullptr);
    return false;
}

bool CElementInfoChoiceUntpdCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                                CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                                XmlElementType eParentType)
{
    QvVariant value;
    CXmlCollectionBase* const pCollection = ExistingCollection(pObject, value);
    CXmlElement* const pNext = ReadWildcardCol(pCollection, pParent, *ppCurrent, context);
    return AcceptRun(*pCollection, ppCurrent, pNext, context, eParentType);
}

} // namespace QvXmlLib9Data
