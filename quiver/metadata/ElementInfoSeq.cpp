#include "quiver/metadata/ElementInfoSeq.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/document/ReadBudget.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/QvVariant.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::CQvException;
using QvXmlLib9::CReadBudget;

CElementInfoSeq::CElementInfoSeq(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoSeq::CElementInfoSeq(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                 ItemType eItemType, const wchar_t* lpctFormat,
                                 CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                 const CPrimitiveRestrictions& restrictions)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

bool CElementInfoSeq::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    throw CQvException(L"Not implemented, should never be called");
}

CElementInfoSeq::Search CElementInfoSeq::FindMandatory(const CXmlSerializationContext& context, CXmlElement** ppCurrent,
                                                       XmlElementType eParentType, PseudoMiss ePseudoMiss) const
{
    const bool bRealParent = eParentType == ElementType_Element;
    const bool bMaySkip = context.GetIgnoreUnknownElements() && (bRealParent || ePseudoMiss == PseudoMiss::SkipUnknown);
    std::uint64_t nSkipped = 0;
    while (!IsThisElement(context, *ppCurrent))
    {
        if (bRealParent && context.GetIgnoreMissingMandatoryElements())
            return Search::Excused;
        if (!bMaySkip || *ppCurrent == nullptr)
        {
            // A group gives the cursor back now, and the same elements may be skipped again.
            if (nSkipped != 0 && !bRealParent)
                CReadBudget::SpendCurrent(nSkipped);
            Throw_IfMissingIsFatal(eParentType);
            return Search::Missing;
        }
        Consume(ppCurrent);
        ++nSkipped;
    }
    return Search::Found;
}

void CElementInfoSeq::Throw_IfMissingIsFatal(XmlElementType eParentType) const
{
    if (eParentType == ElementType_Element)
        ThrowRequiredIsMissing();
}

void CElementInfoSeq::ThrowRequiredIsMissing() const
{
    ThrowMissing(L"Failed to find a required element [%s]", GetElementName());
}

void CElementInfoSeq::ReadThenStoreChild(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                         CXmlElement** ppCurrent, CXmlObjectBase* pChild)
{
    ReadChild(pChild, *ppCurrent, context, false);
    StoreChild(pObject, pChild);
    Consume(ppCurrent);
}

CElementInfoSeqNonCol::CElementInfoSeqNonCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoSeq(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoSeqCol::CElementInfoSeqCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoSeq(lpctName, lpctNamespace, nPropertyIndex)
{
}

bool CElementInfoSeqCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                      CXmlWriter* pWriter) const
{
    return ElementToXmlCountedCol(context, pObject, pWriter);
}

bool CElementInfoSeqCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                        CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                        XmlElementType eParentType)
{
    QvVariant value;
    CXmlCollectionBase* const pCollection = ExistingCollection(pObject, value);
    *ppCurrent = FromXml_Int(pCollection, pParent, *ppCurrent, context, false);
    return AcceptCount(*pCollection, context, eParentType);
}

bool CElementInfoSeqCol::AcceptCount(const CXmlCollectionBase& collection, const CXmlSerializationContext& context,
                                     XmlElementType eParentType)
{
    if (eParentType != ElementType_Element)
        return collection.IsValidCount(context);
    collection.ValidateCount(context);
    return true;
}

bool CElementInfoSeqPrimMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*,
                                            XmlElementType eParentType)
{
    const Search eSearch = FindMandatory(context, ppCurrent, eParentType, PseudoMiss::SkipUnknown);
    if (eSearch != Search::Found)
        return eSearch == Search::Excused;
    StorePrim(pObject, ppCurrent);
    return true;
}

bool CElementInfoSeqPrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    TakePrim(context, pObject, ppCurrent);
    return true;
}

bool CElementInfoSeqEnumMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*,
                                            XmlElementType eParentType)
{
    const Search eSearch = FindMandatory(context, ppCurrent, eParentType, PseudoMiss::GiveUp);
    if (eSearch != Search::Found)
        return eSearch == Search::Excused;
    StoreEnum(pObject, ppCurrent, m_pfnFromString);
    return true;
}

bool CElementInfoSeqEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
    return true;
}

CElementInfoSeqClsMnd::CElementInfoSeqClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             XmlElementType eElementType, PfnCreate pfnCreate, int nClassId,
                                             bool bContentRequired)
    : CElementInfoCls(lpctName, lpctNamespace, nPropertyIndex, eElementType, pfnCreate, nClassId)
    , m_bContentRequired(bContentRequired)
{
}

bool CElementInfoSeqClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType eParentType)
{
    if (m_eElementType != ElementType_Element)
        return PseudoFromXml(context, pObject, pParent, ppCurrent, eParentType);

    const Search eSearch = FindMandatory(context, ppCurrent, eParentType, PseudoMiss::GiveUp);
    if (eSearch != Search::Found)
        return eSearch == Search::Excused;
    QvVariant value;
    ReadChild(ExistingChild(pObject, value), *ppCurrent, context, false);
    Consume(ppCurrent);
    return true;
}

bool CElementInfoSeqClsMnd::PseudoFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                          CXmlElement* pParent, CXmlElement** ppCurrent, XmlElementType eParentType)
{
    const bool bAtEnd = *ppCurrent == nullptr;
    QvVariant value;
    if (!(bAtEnd && m_bContentRequired) && ReadPseudoChild(ExistingChild(pObject, value), pParent, ppCurrent, context))
        return true;
    if (m_bContentRequired)
    {
        Throw_IfMissingIsFatal(eParentType);
        return false;
    }
    // An element that the child left alone may be one that the walk skips; it asks again behind it then.
    return bAtEnd || eParentType != ElementType_Element || !context.GetIgnoreUnknownElements();
}

bool CElementInfoSeqClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType)
{
    TakeNewChild(context, pObject, pParent, ppCurrent, m_eElementType, m_pfnCreate, m_nClassId);
    return true;
}

bool CElementInfoSeqAbsClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                              CXmlElement*, CXmlElement** ppCurrent, const wchar_t*,
                                              XmlElementType eParentType)
{
    CSmartPtr<CXmlObjectBase> spChild;
    if (IsThisElement(context, *ppCurrent))
        spChild = m_pfnCreateFromElement(*ppCurrent);
    if (spChild != nullptr)
    {
        ReadThenStoreChild(context, pObject, ppCurrent, spChild);
        return true;
    }
    if (eParentType == ElementType_Element)
        ThrowMissing(L"Failed to find a suitable substitution element for [%s]", GetElementName());
    return false;
}

bool CElementInfoSeqAbsClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                              CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    if (!IsThisElement(context, *ppCurrent))
        return true;
    const CSmartPtr<CXmlObjectBase> spChild = m_pfnCreateFromElement(*ppCurrent);
    if (spChild != nullptr)
        ReadThenStoreChild(context, pObject, ppCurrent, spChild);
    return true;
}

bool CElementInfoSeqUntpdMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                             XmlElementType eParentType)
{
    // With nothing left this one fails under a pseudo parent too.
    if (*ppCurrent == nullptr)
        ThrowRequiredIsMissing();
    QvVariant value;
    CXmlElement* const pNext = ReadWildcard(ExistingChild(pObject, value), pParent, *ppCurrent, context);
    if (pNext == *ppCurrent)
    {
        if (eParentType == ElementType_Element)
            ThrowMissing(L"Failed to find the required element from namespace [%s]", GetElementNamespace());
        return false;
    }
    *ppCurrent = pNext;
    return true;
}

bool CElementInfoSeqUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent,
                                             const wchar_t* lpctParentNamespace, XmlElementType)
{
    TakeNewWildcard(context, pObject, pParent, ppCurrent, lpctParentNamespace, m_strNamespaceRestriction,
                    m_strTargetNamespace);
    return true;
}

bool CElementInfoSeqUntpdCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                             XmlElementType eParentType)
{
    QvVariant value;
    CXmlCollectionBase* const pCollection = ExistingCollection(pObject, value);
    *ppCurrent = ReadWildcardCol(pCollection, pParent, *ppCurrent, context);
    return AcceptCount(*pCollection, context, eParentType);
}

} // namespace QvXmlLib9Data
