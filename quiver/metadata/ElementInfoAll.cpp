#include "quiver/metadata/ElementInfoAll.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Product.h"
#include "quiver/values/QvVariant.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::CQvException;
using QvXmlLib9::ToUtf16Units;

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

bool CElementInfoAll::ValidateMandatory(bool bFound, bool bThrowIfMissing) const
{
    if (!bFound && bThrowIfMissing)
        ThrowMissing(L"Failed to find the mandatory element [%s]", GetElementName());
    return bFound;
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

CElementInfoAllPrimMnd::CElementInfoAllPrimMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex, ItemType eItemType, const wchar_t* lpctFormat,
                                               CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

bool CElementInfoAllPrimMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                          CXmlWriter* pWriter) const
{
    return ElementToXmlPrim(context, pObject, pWriter);
}

bool CElementInfoAllPrimMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakePrim(context, pObject, ppCurrent);
}

bool CElementInfoAllPrimMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                      bool bThrowIfMissing) const
{
    return ValidateMandatory(bFound, bThrowIfMissing);
}

CElementInfoAllPrimOpt::CElementInfoAllPrimOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex, ItemType eItemType, const wchar_t* lpctFormat,
                                               CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                               const CPrimitiveRestrictions& restrictions)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

bool CElementInfoAllPrimOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                          CXmlWriter* pWriter) const
{
    return ElementToXmlPrimOpt(context, pObject, pWriter);
}

bool CElementInfoAllPrimOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakePrim(context, pObject, ppCurrent);
}

bool CElementInfoAllPrimOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

CElementInfoAllEnumMnd::CElementInfoAllEnumMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex, PfnEnumToString pfnToString,
                                               PfnEnumFromString pfnFromString)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_pfnToString(pfnToString)
    , m_pfnFromString(pfnFromString)
{
}

bool CElementInfoAllEnumMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                          CXmlWriter* pWriter) const
{
    return ElementToXmlEnum(context, pObject, pWriter, m_pfnToString);
}

bool CElementInfoAllEnumMnd::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
}

bool CElementInfoAllEnumMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                      bool bThrowIfMissing) const
{
    return ValidateMandatory(bFound, bThrowIfMissing);
}

CElementInfoAllEnumOpt::CElementInfoAllEnumOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex, PfnEnumToString pfnToString,
                                               PfnEnumFromString pfnFromString)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_pfnToString(pfnToString)
    , m_pfnFromString(pfnFromString)
{
}

bool CElementInfoAllEnumOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                          CXmlWriter* pWriter) const
{
    return ElementToXmlEnumOpt(context, pObject, pWriter, m_pfnToString);
}

bool CElementInfoAllEnumOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                            CXmlElement*, CXmlElement** ppCurrent, const wchar_t*, XmlElementType)
{
    return TakeEnum(context, pObject, ppCurrent, m_pfnFromString);
}

bool CElementInfoAllEnumOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

CElementInfoAllClsMnd::CElementInfoAllClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             XmlElementType eElementType, PfnCreate pfnCreate, int nClassId,
                                             bool bContentRequired)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreate(pfnCreate)
    , m_nClassId(nClassId)
    , m_bContentRequired(bContentRequired)
{
}

bool CElementInfoAllClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                         CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
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

bool CElementInfoAllClsMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                     bool bThrowIfMissing) const
{
    if (!bFound && bThrowIfMissing && m_eElementType != ElementType_Pseudo && !m_bContentRequired)
        return true;
    return ValidateMandatory(bFound, bThrowIfMissing);
}

void CElementInfoAllClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

CElementInfoAllClsOpt::CElementInfoAllClsOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             XmlElementType eElementType, PfnCreate pfnCreate, int nClassId)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreate(pfnCreate)
    , m_nClassId(nClassId)
{
}

bool CElementInfoAllClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                         CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
}

bool CElementInfoAllClsOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                           CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t*,
                                           XmlElementType)
{
    return TakeNewChild(context, pObject, pParent, ppCurrent, m_eElementType, m_pfnCreate, m_nClassId);
}

bool CElementInfoAllClsOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

void CElementInfoAllClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

CElementInfoAllAbsClsMnd::CElementInfoAllAbsClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                   int nPropertyIndex, XmlElementType eElementType,
                                                   PfnCreateFromElement pfnCreateFromElement, int nReserved)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreateFromElement(pfnCreateFromElement)
    , m_nReserved(nReserved)
{
}

bool CElementInfoAllAbsClsMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
}

bool CElementInfoAllAbsClsMnd::ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass*, CXmlElement*,
                                              CXmlElement**, const wchar_t*, XmlElementType)
{
    ThrowNotImplemented(L"CElementInfoAllAbsClsMnd");
}

bool CElementInfoAllAbsClsMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                        bool bThrowIfMissing) const
{
    return ValidateMandatory(bFound, bThrowIfMissing);
}

void CElementInfoAllAbsClsMnd::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

CElementInfoAllAbsClsOpt::CElementInfoAllAbsClsOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                   int nPropertyIndex, XmlElementType eElementType,
                                                   PfnCreateFromElement pfnCreateFromElement)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreateFromElement(pfnCreateFromElement)
{
}

bool CElementInfoAllAbsClsOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
}

bool CElementInfoAllAbsClsOpt::ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass*, CXmlElement*,
                                              CXmlElement**, const wchar_t*, XmlElementType)
{
    ThrowNotImplemented(L"CElementInfoAllAbsClsOpt");
}

bool CElementInfoAllAbsClsOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

void CElementInfoAllAbsClsOpt::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

CElementInfoAllUntpdMnd::CElementInfoAllUntpdMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                 int nPropertyIndex, const wchar_t* lpctNamespaceRestriction,
                                                 const wchar_t* lpctTargetNamespace)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_strNamespaceRestriction(ToUtf16Units(lpctNamespaceRestriction))
    , m_strTargetNamespace(ToUtf16Units(lpctTargetNamespace))
{
}

bool CElementInfoAllUntpdMnd::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                           CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
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

bool CElementInfoAllUntpdMnd::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool bFound,
                                       bool bThrowIfMissing) const
{
    return ValidateMandatory(bFound, bThrowIfMissing);
}

CElementInfoAllUntpdOpt::CElementInfoAllUntpdOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                 int nPropertyIndex, const wchar_t* lpctNamespaceRestriction,
                                                 const wchar_t* lpctTargetNamespace)
    : CElementInfoAll(lpctName, lpctNamespace, nPropertyIndex)
    , m_strNamespaceRestriction(ToUtf16Units(lpctNamespaceRestriction))
    , m_strTargetNamespace(ToUtf16Units(lpctTargetNamespace))
{
}

bool CElementInfoAllUntpdOpt::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                           CXmlWriter* pWriter) const
{
    return ElementToXmlCls(context, pObject, pWriter, false);
}

bool CElementInfoAllUntpdOpt::ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                             CXmlElement* pParent, CXmlElement** ppCurrent,
                                             const wchar_t* lpctParentNamespace, XmlElementType)
{
    return TakeNewWildcard(context, pObject, pParent, ppCurrent, lpctParentNamespace, m_strNamespaceRestriction,
                           m_strTargetNamespace);
}

bool CElementInfoAllUntpdOpt::Validate(const CXmlSerializationContext&, const CXmlGeneratedClass*, bool, bool) const
{
    return true;
}

CElementInfoAllPrimCol::CElementInfoAllPrimCol(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex)
    : CElementInfoAllCol(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoAllUntpdCol::CElementInfoAllUntpdCol(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                 int nPropertyIndex)
    : CElementInfoAllCol(lpctName, lpctNamespace, nPropertyIndex)
{
}

CElementInfoAllClsCol::CElementInfoAllClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             XmlElementType eElementType)
    : CElementInfoAllCol(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
{
}

void CElementInfoAllClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                      const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoColAttributesToXml(context, pObject, pWriter, m_eElementType);
}

CElementInfoAllAbsClsCol::CElementInfoAllAbsClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                   int nPropertyIndex, XmlElementType eElementType)
    : CElementInfoAllCol(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
{
}

void CElementInfoAllAbsClsCol::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                         const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    PseudoColAttributesToXml(context, pObject, pWriter, m_eElementType);
}

} // namespace QvXmlLib9Data
