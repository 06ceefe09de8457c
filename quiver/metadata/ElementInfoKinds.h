#pragma once

#include "quiver/metadata/ElementInfo.h"

/// @file
/// What the records of one kind of value have in common, whatever the model group: the constructor, the members,
/// writing, and the attributes of pseudo children. A record of the families adds how it is read:
///
///     class CElementInfoSeqPrimMnd : public CElementInfoPrim<CElementInfoSeq>   // kind Prim in the group Seq
///     {
///     public:
///         using CElementInfoPrim::CElementInfoPrim;   // the constructor is that of the kind
///         bool ElementFromXml(...) override;          // what this record alone does
///     };
///
/// The constructors of all records take, in this order and as far as they have them:
/// - `lpctName`, `lpctNamespace`, `nPropertyIndex`: local name and namespace URI of the element, key of the property;
/// - `eItemType`, `lpctFormat`, `eWhitespaceRule`, `restrictions`: the simple type, see CElementInfo;
/// - `pfnToString`, `pfnFromString`: the enumeration's conversions;
/// - `eElementType`: whether the child has an element of its own;
/// - `pfnCreate`, `nClassId`, or `pfnCreateFromElement`: how a child is made;
/// - `bContentRequired`: a pseudo child must consume something;
/// - `lpctNamespaceRestriction`, `lpctTargetNamespace`: which namespaces a wildcard admits, as told at
///   `CXmlObjectBase::IsNamespaceValid`.
///
/// Texts are copied, but for `lpctFormat`.
///
/// The templates are compiled once, in ElementInfoKinds.cpp; each family declares the ones it uses.
/// @tparam TGroup the base in the family: CElementInfoSeq, or a class such as CElementInfoAllMnd that says what a
///         member that is missing means there.

namespace QvXmlLib9Data
{

/// A value of a simple type. Mandatory and optional ones are written alike: an unset property writes nothing.
template <class TGroup>
class QVXMLLIB_API CElementInfoPrim : public TGroup
{
public:
    CElementInfoPrim(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                     const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                     const CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
};

/// A value of an enumeration.
template <class TGroup>
class QVXMLLIB_API CElementInfoEnum : public TGroup
{
public:
    CElementInfoEnum(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                     PfnEnumToString pfnToString, PfnEnumFromString pfnFromString);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;

protected:
    PfnEnumToString m_pfnToString;
    PfnEnumFromString m_pfnFromString;
};

/// A child of a known class.
template <class TGroup>
class QVXMLLIB_API CElementInfoCls : public TGroup
{
public:
    CElementInfoCls(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                    XmlElementType eElementType, PfnCreate pfnCreate, int nClassId);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

protected:
    friend class QvXmlLib9::CXmlGeneratedClass;

    XmlElementType m_eElementType;
    PfnCreate m_pfnCreate;
    int m_nClassId;
};

/// A child whose class follows from the element found.
template <class TGroup>
class QVXMLLIB_API CElementInfoAbsCls : public TGroup
{
public:
    CElementInfoAbsCls(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                       XmlElementType eElementType, PfnCreateFromElement pfnCreateFromElement);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

protected:
    XmlElementType m_eElementType;
    PfnCreateFromElement m_pfnCreateFromElement;
};

/// `xs:any` that occurs at most once: the child is a CElement.
template <class TGroup>
class QVXMLLIB_API CElementInfoUntpd : public TGroup
{
public:
    CElementInfoUntpd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                      const wchar_t* lpctNamespaceRestriction, const wchar_t* lpctTargetNamespace);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;

protected:
    std::wstring m_strNamespaceRestriction;
    std::wstring m_strTargetNamespace;
};

/// Repeating children, of a known class or of classes that follow from the elements found: the collection tells these
/// two apart. Reading and writing are those of the group.
/// @tparam TGroupCol the base of the collections in the family.
template <class TGroupCol>
class QVXMLLIB_API CElementInfoClsCol : public TGroupCol
{
public:
    CElementInfoClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                       XmlElementType eElementType);

    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

protected:
    XmlElementType m_eElementType;
};

} // namespace QvXmlLib9Data
