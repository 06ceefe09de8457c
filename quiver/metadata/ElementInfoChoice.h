#pragma once

#include "quiver/metadata/ElementInfoKinds.h"

/// @file
/// The alternatives of a choice. The walk offers them the element under the cursor in table order, and the first that
/// consumes something wins. An alternative that finds nothing returns false and never throws: whether the whole choice
/// may stay empty is the walk's decision.
///
/// An alternative stores its child before it reads it, so that the object knows at once which alternative was taken,
/// and clears it again if it turns out empty. No alternative skips unknown elements.
///
/// What the kinds of members have in common, and the arguments of the constructors: ElementInfoKinds.h.

namespace QvXmlLib9Data
{

/// An alternative of a choice. One that derives from this class itself does not allow the choice to stay empty; the
/// others say so by their bases, CElementInfoChoiceOpt and CElementInfoChoiceCol.
class QVXMLLIB_API CElementInfoChoice : public CElementInfo
{
public:
    CElementInfoChoice(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
    CElementInfoChoice(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                       const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                       const CPrimitiveRestrictions& restrictions);

    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

/// An alternative that occurs once if it is the one taken. A choice that has such an alternative may stay empty.
class QVXMLLIB_API CElementInfoChoiceOpt : public CElementInfoChoice
{
public:
    CElementInfoChoiceOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
    CElementInfoChoiceOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                          const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                          const CPrimitiveRestrictions& restrictions);
};

/// A repeating alternative. The occurrence count is checked after reading; on writing the collection checks it itself.
class QVXMLLIB_API CElementInfoChoiceCol : public CElementInfoChoice
{
public:
    CElementInfoChoiceCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;

protected:
    /// Takes over what a collection has read up to `pNext`. In a pseudo class an invalid count leaves the cursor where
    /// it was, although the items stay in the collection; elsewhere it throws.
    /// @return whether something was consumed.
    static bool AcceptRun(const CXmlCollectionBase& collection, CXmlElement** ppCurrent, CXmlElement* pNext,
                          const CXmlSerializationContext& context, XmlElementType eParentType);
};

extern template class CElementInfoPrim<CElementInfoChoiceOpt>;
extern template class CElementInfoEnum<CElementInfoChoiceOpt>;
extern template class CElementInfoCls<CElementInfoChoiceOpt>;
extern template class CElementInfoAbsCls<CElementInfoChoiceOpt>;
extern template class CElementInfoUntpd<CElementInfoChoiceOpt>;
extern template class CElementInfoClsCol<CElementInfoChoiceCol>;

/// An alternative of a simple type.
class QVXMLLIB_API CElementInfoChoicePrimOpt : public CElementInfoPrim<CElementInfoChoiceOpt>
{
public:
    using CElementInfoPrim::CElementInfoPrim;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An alternative whose type is an enumeration.
class QVXMLLIB_API CElementInfoChoiceEnumOpt : public CElementInfoEnum<CElementInfoChoiceOpt>
{
public:
    using CElementInfoEnum::CElementInfoEnum;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An alternative of a known class. With an element of its own it lets the child, should that be a choice itself, be
/// empty without complaint, for this alternative has been selected already.
class QVXMLLIB_API CElementInfoChoiceClsOpt : public CElementInfoCls<CElementInfoChoiceOpt>
{
public:
    using CElementInfoCls::CElementInfoCls;

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;

private:
    bool PseudoFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                       CXmlElement** ppCurrent);
};

/// An alternative whose class follows from the element found. Where no class fits, null is stored and the next
/// alternative is offered the element.
class QVXMLLIB_API CElementInfoChoiceAbsClsOpt : public CElementInfoAbsCls<CElementInfoChoiceOpt>
{
public:
    using CElementInfoAbsCls::CElementInfoAbsCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// `xs:any` as an alternative. If it consumes nothing, the property is cleared, whatever it held.
class QVXMLLIB_API CElementInfoChoiceUntpdOpt : public CElementInfoUntpd<CElementInfoChoiceOpt>
{
public:
    using CElementInfoUntpd::CElementInfoUntpd;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A repeating alternative of a simple type.
class QVXMLLIB_API CElementInfoChoicePrimCol : public CElementInfoChoiceCol
{
public:
    using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

/// A repeating alternative whose type is an enumeration.
class QVXMLLIB_API CElementInfoChoiceEnumCol : public CElementInfoChoiceCol
{
public:
    using CElementInfoChoiceCol::CElementInfoChoiceCol;
};

/// A repeating alternative of a known class.
class QVXMLLIB_API CElementInfoChoiceClsCol : public CElementInfoClsCol<CElementInfoChoiceCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

/// A repeating alternative whose class follows from the element found.
class QVXMLLIB_API CElementInfoChoiceAbsClsCol : public CElementInfoClsCol<CElementInfoChoiceCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

/// A repeating `xs:any` as an alternative; its property is a CElementCol. Names work as in CElementInfoSeqUntpdCol.
class QVXMLLIB_API CElementInfoChoiceUntpdCol : public CElementInfoChoiceCol
{
public:
    using CElementInfoChoiceCol::CElementInfoChoiceCol;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

} // namespace QvXmlLib9Data
