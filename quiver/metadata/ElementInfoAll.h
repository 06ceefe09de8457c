#pragma once

#include "quiver/metadata/ElementInfoKinds.h"

/// @file
/// The members of an all group: each child at most once, in any order. The walk passes over the members until the
/// cursor stops moving; ElementFromXml only says whether the member consumed something, and never throws for a missing
/// element. Validate decides afterwards whether a member that was not found is a failure.
/// IgnoreMissingMandatoryElements does not excuse one.
///
/// What the kinds of members have in common, and the arguments of the constructors: ElementInfoKinds.h.

namespace QvXmlLib9Data
{

/// A member of an all group.
class QVXMLLIB_API CElementInfoAll : public CElementInfo
{
public:
    CElementInfoAll(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
    CElementInfoAll(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                    const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                    const CPrimitiveRestrictions& restrictions);
};

/// A member of an all group that is no collection. Nothing in the library derives from it.
class QVXMLLIB_API CElementInfoAllNonCol : public CElementInfoAll
{
public:
    CElementInfoAllNonCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
};

/// Stands in the interface for a repeating enumeration; it implements nothing.
class QVXMLLIB_API CElementInfoAllEnumCol : public CElementInfoAll
{
public:
    CElementInfoAllEnumCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
};

/// A member that an all group has to have.
class QVXMLLIB_API CElementInfoAllMnd : public CElementInfoAll
{
public:
    using CElementInfoAll::CElementInfoAll;

    /// @throws CQvValidationException "Failed to find the mandatory element [%s]" if the member was not found and
    ///         `bThrowIfMissing` is set.
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

/// A member that an all group may lack.
class QVXMLLIB_API CElementInfoAllOpt : public CElementInfoAll
{
public:
    using CElementInfoAll::CElementInfoAll;

    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

/// A repeating member of an all group. It can be written; reading a class that has one ends in the exception of
/// Validate, since an all group admits each child once.
class QVXMLLIB_API CElementInfoAllCol : public CElementInfoAll
{
public:
    CElementInfoAllCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

extern template class CElementInfoPrim<CElementInfoAllMnd>;
extern template class CElementInfoEnum<CElementInfoAllMnd>;
extern template class CElementInfoCls<CElementInfoAllMnd>;
extern template class CElementInfoAbsCls<CElementInfoAllMnd>;
extern template class CElementInfoUntpd<CElementInfoAllMnd>;
extern template class CElementInfoPrim<CElementInfoAllOpt>;
extern template class CElementInfoEnum<CElementInfoAllOpt>;
extern template class CElementInfoCls<CElementInfoAllOpt>;
extern template class CElementInfoAbsCls<CElementInfoAllOpt>;
extern template class CElementInfoUntpd<CElementInfoAllOpt>;
extern template class CElementInfoClsCol<CElementInfoAllCol>;

/// A mandatory element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimMnd : public CElementInfoPrim<CElementInfoAllMnd>
{
public:
    using CElementInfoPrim::CElementInfoPrim;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An optional element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimOpt : public CElementInfoPrim<CElementInfoAllOpt>
{
public:
    using CElementInfoPrim::CElementInfoPrim;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory element whose type is an enumeration.
class QVXMLLIB_API CElementInfoAllEnumMnd : public CElementInfoEnum<CElementInfoAllMnd>
{
public:
    using CElementInfoEnum::CElementInfoEnum;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An optional element whose type is an enumeration.
class QVXMLLIB_API CElementInfoAllEnumOpt : public CElementInfoEnum<CElementInfoAllOpt>
{
public:
    using CElementInfoEnum::CElementInfoEnum;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory child of a known class, filled in place. With an element of its own and no required content it may be
/// missing; a pseudo child may not, whatever `bContentRequired` says. That is the reverse of the sequence
/// (docs/compatibility.md: Required content in an all group).
class QVXMLLIB_API CElementInfoAllClsMnd : public CElementInfoCls<CElementInfoAllMnd>
{
public:
    CElementInfoAllClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                          XmlElementType eElementType, PfnCreate pfnCreate, int nClassId, bool bContentRequired);

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

private:
    bool m_bContentRequired;
};

/// An optional child of a known class.
class QVXMLLIB_API CElementInfoAllClsOpt : public CElementInfoCls<CElementInfoAllOpt>
{
public:
    using CElementInfoCls::CElementInfoCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory child whose class follows from the element found. It can be written; reading it always throws.
class QVXMLLIB_API CElementInfoAllAbsClsMnd : public CElementInfoAbsCls<CElementInfoAllMnd>
{
public:
    CElementInfoAllAbsClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                             XmlElementType eElementType, PfnCreateFromElement pfnCreateFromElement, int nReserved);

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;

private:
    [[maybe_unused]] int m_nReserved;
};

/// An optional child whose class follows from the element found. It can be written; reading it always throws.
class QVXMLLIB_API CElementInfoAllAbsClsOpt : public CElementInfoAbsCls<CElementInfoAllOpt>
{
public:
    using CElementInfoAbsCls::CElementInfoAbsCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// `xs:any` that occurs once. Names work as in CElementInfoSeqUntpdMnd.
class QVXMLLIB_API CElementInfoAllUntpdMnd : public CElementInfoUntpd<CElementInfoAllMnd>
{
public:
    using CElementInfoUntpd::CElementInfoUntpd;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// `xs:any` that occurs at most once.
class QVXMLLIB_API CElementInfoAllUntpdOpt : public CElementInfoUntpd<CElementInfoAllOpt>
{
public:
    using CElementInfoUntpd::CElementInfoUntpd;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A repeating element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimCol : public CElementInfoAllCol
{
public:
    using CElementInfoAllCol::CElementInfoAllCol;
};

/// A repeating `xs:any`.
class QVXMLLIB_API CElementInfoAllUntpdCol : public CElementInfoAllCol
{
public:
    using CElementInfoAllCol::CElementInfoAllCol;
};

/// A repeating child of a known class.
class QVXMLLIB_API CElementInfoAllClsCol : public CElementInfoClsCol<CElementInfoAllCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

/// A repeating child whose class follows from the element found.
class QVXMLLIB_API CElementInfoAllAbsClsCol : public CElementInfoClsCol<CElementInfoAllCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

} // namespace QvXmlLib9Data
