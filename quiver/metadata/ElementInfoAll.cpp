#include "quiver/metadata/ElementInfoAll.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Product.h"
#include "quiver/values/QvVariant.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::CQvException;

namespace
{

[[noreturn]] void ThrowNotImplemented(const wchar_t* lpctClassName)
{
    throw CQvException(std::wstring(lpctClassName) + L"::ElementFromXml, has not been implemented fully, contact " +
                       QvXmlLib9::g_szSupportAddress);
}

} // namespace

CElementInfoAll::CElementInfoAll(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoAll::CElementInfoAll(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                 ItemType eItemType, const wchar_t* lpctFormat,
                                 CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                 const CPrimitiveRestrictions& restrictions)
    : CElementInfo(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

bool CElementInfoAllMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                  bool bThrowIfMissing) const
{
    if (!bFound && bThrowIfMissing)
        ThrowMissing(L"Failed to find the mandatory element [%s]", GetElementName());
    return bFound;
}

bool CElementInfoAllOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

CElementInfoAllNonCol::CElementInfoAllNonCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoAllEnumCol::CElementInfoAllEnumCol(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoAllCol::CElementInfoAllCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
{
}

bool CElementInfoAllCol::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                      CXmlWriter* pWriter) const
{
    return ElementToXmlCountedCol(context, pObject, pWriter);
}

bool CElementInfoAllCol::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                        CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    QvVariant value;
    *ppCurrent = FromXml_Int(ExistingCollection(pObject, value), pParent, *ppCurrent, context, false);
    return false;
}

bool CElementInfoAllCol::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    throw CQvException(L"Not implemented, should never be called");
}

bool CElementInfoAllPrimMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakePrim(context, pObject, ppCurrent);
}

bool CElementInfoAllPrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakePrim(context, pObject, ppCurrent);
}

bool CElementInfoAllEnumMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
}

bool CElementInfoAllEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
}

CElementInfoAllClsMnd::CElementInfoAllClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             XmlElementType eElementType, PfnCreate pfnCreate, int nClassId,
                                             bool bContentRequired)
    : CElementInfoCls(lpctName, lpctNamespace, nPropertyIndex, eElementType, pfnCreate, nClassId)
    , m_bContentRequired(bContentRequired)
{
}

bool CElementInfoAllClsMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType)
{
    QvVariant value;
    if (m_eElementType != ElementType_Element)
        return ReadPseudoChild(ExistingChild(pObject, value), pParent, ppCurrent, context);
    if (!IsThisElement(context, *ppCurrent))
        return false;
    ReadChild(ExistingChild(pObject, value), *ppCurrent, context, false);
    Consume(ppCurrent);
    return true;
}

bool CElementInfoAllClsMnd::Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                     bool bFound, bool bThrowIfMissing) const
{
    if (!bFound && bThrowIfMissing && m_eElementType != ElementType_Pseudo && !m_bContentRequired)
        return true;
    return CElementInfoAllMnd::Validate(context, pObject, bFound, bThrowIfMissing);
}

bool CElementInfoAllClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType)
{
    return TakeNewChild(context, pObject, pParent, ppCurrent, m_eElementType, m_pfnCreate, m_nClassId);
}

CElementInfoAllAbsClsMnd::CElementInfoAllAbsClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                   int nPropertyIndex, XmlElementType eElementType,
                                                   PfnCreateFromElement pfnCreateFromElement, int nReserved)
    : CElementInfoAbsCls(lpctName, lpctNamespace, nPropertyIndex, eElementType, pfnCreateFromElement)
    , m_nReserved(nReserved)
{
}

bool CElementInfoAllAbsClsMnd::ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass*, CXmlElement*,
                                              CXmlElement**, const wchar_t*, XmlElementType)
{
    ThrowNotImplemented(L"CElementInfoAllAbsClsMnd");
}

bool CElementInfoAllAbsClsOpt::ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass*, CXmlElement*,
                                              CXmlElement**, const wchar_t*, XmlElementType)
{
    ThrowNotImplemented(L"CElementInfoAllAbsClsOpt");
}

bool CElementInfoAllUntpdMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                             XmlElementType)
{
    if (*ppCurrent == nullptr)
        return false;
    QvVariant value;
    CXmlElement* const pStart = *ppCurrent;
    *ppCurrent = ReadWildcard(ExistingChild(pObject, value), pParent, pStart, context);
    return *ppCurrent != pStart;
}

bool CElementInfoAllUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent,
                                             const wchar_t* lpctParentNamespace, XmlElementType)
{
    return TakeNewWildcard(context, pObject, pParent, ppCurrent, lpctParentNamespace, m_strNamespaceRestriction,
                           m_strTargetNamespace);
}

} // namespace QvXmlLib9Data
