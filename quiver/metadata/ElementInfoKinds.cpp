#include "quiver/metadata/ElementInfoKinds.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::ToUtf16Units;

template <class TGroup>
CElementInfoPrim<TGroup>::CElementInfoPrim(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                           ItemType eItemType, const wchar_t* lpctFormat,
                                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                           const CPrimitiveRestrictions& restrictions)
    : TGroup(lpctName, lpctNamespace, nPropertyIndex, eItemType, lpctFormat, eWhitespaceRule, restrictions)
{
}

template <class TGroup>
bool CElementInfoPrim<TGroup>::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter) const
{
    return this->ElementToXmlPrim(context, pObject, pWriter);
}

template <class TGroup>
CElementInfoEnum<TGroup>::CElementInfoEnum(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                           PfnEnumToString pfnToString, PfnEnumFromString pfnFromString)
    : TGroup(lpctName, lpctNamespace, nPropertyIndex)
    , m_pfnToString(pfnToString)
    , m_pfnFromString(pfnFromString)
{
}

template <class TGroup>
bool CElementInfoEnum<TGroup>::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter) const
{
    return this->ElementToXmlEnum(context, pObject, pWriter, m_pfnToString);
}

template <class TGroup>
CElementInfoCls<TGroup>::CElementInfoCls(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                         XmlElementType eElementType, PfnCreate pfnCreate, int nClassId)
    : TGroup(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreate(pfnCreate)
    , m_nClassId(nClassId)
{
}

template <class TGroup>
bool CElementInfoCls<TGroup>::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                           CXmlWriter* pWriter) const
{
    return this->ElementToXmlCls(context, pObject, pWriter, false);
}

template <class TGroup>
void CElementInfoCls<TGroup>::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                        const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    this->PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

template <class TGroup>
CElementInfoAbsCls<TGroup>::CElementInfoAbsCls(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                               int nPropertyIndex, XmlElementType eElementType,
                                               PfnCreateFromElement pfnCreateFromElement)
    : TGroup(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
    , m_pfnCreateFromElement(pfnCreateFromElement)
{
}

template <class TGroup>
bool CElementInfoAbsCls<TGroup>::ElementToXml(const CXmlSerializationContext& context,
                                              const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    return this->ElementToXmlCls(context, pObject, pWriter, false);
}

template <class TGroup>
void CElementInfoAbsCls<TGroup>::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                           const CXmlGeneratedClass* pObject, CXmlWriter* pWriter) const
{
    this->PseudoObjectAttributesToXml(context, pObject, pWriter, m_eElementType);
}

template <class TGroup>
CElementInfoUntpd<TGroup>::CElementInfoUntpd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                             const wchar_t* lpctNamespaceRestriction,
                                             const wchar_t* lpctTargetNamespace)
    : TGroup(lpctName, lpctNamespace, nPropertyIndex)
    , m_strNamespaceRestriction(ToUtf16Units(lpctNamespaceRestriction))
    , m_strTargetNamespace(ToUtf16Units(lpctTargetNamespace))
{
}

template <class TGroup>
bool CElementInfoUntpd<TGroup>::ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                             CXmlWriter* pWriter) const
{
    return this->ElementToXmlCls(context, pObject, pWriter, false);
}

template <class TGroupCol>
CElementInfoClsCol<TGroupCol>::CElementInfoClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                  int nPropertyIndex, XmlElementType eElementType)
    : TGroupCol(lpctName, lpctNamespace, nPropertyIndex)
    , m_eElementType(eElementType)
{
}

template <class TGroupCol>
void CElementInfoClsCol<TGroupCol>::PseudoChildAttributeToXml(const CXmlSerializationContext& context,
                                                              const CXmlGeneratedClass* pObject,
                                                              CXmlWriter* pWriter) const
{
    this->PseudoColAttributesToXml(context, pObject, pWriter, m_eElementType);
}

template class CElementInfoPrim<CElementInfoSeq>;
template class CElementInfoEnum<CElementInfoSeq>;
template class CElementInfoCls<CElementInfoSeq>;
template class CElementInfoAbsCls<CElementInfoSeq>;
template class CElementInfoUntpd<CElementInfoSeq>;
template class CElementInfoClsCol<CElementInfoSeqCol>;

template class CElementInfoPrim<CElementInfoChoiceOpt>;
template class CElementInfoEnum<CElementInfoChoiceOpt>;
template class CElementInfoCls<CElementInfoChoiceOpt>;
template class CElementInfoAbsCls<CElementInfoChoiceOpt>;
template class CElementInfoUntpd<CElementInfoChoiceOpt>;
template class CElementInfoClsCol<CElementInfoChoiceCol>;

template class CElementInfoPrim<CElementInfoAllMnd>;
template class CElementInfoEnum<CElementInfoAllMnd>;
template class CElementInfoCls<CElementInfoAllMnd>;
template class CElementInfoAbsCls<CElementInfoAllMnd>;
template class CElementInfoUntpd<CElementInfoAllMnd>;

template class CElementInfoPrim<CElementInfoAllOpt>;
template class CElementInfoEnum<CElementInfoAllOpt>;
template class CElementInfoCls<CElementInfoAllOpt>;
template class CElementInfoAbsCls<CElementInfoAllOpt>;
template class CElementInfoUntpd<CElementInfoAllOpt>;
template class CElementInfoClsCol<CElementInfoAllCol>;

} // namespace QvXmlLib9Data
