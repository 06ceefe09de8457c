#pragma once

#include "quiver/metadata/ElementInfoKinds.h"

/// @file
/// The members of a sequence. The walk asks them once, in table order, over the children of an element.
///
/// What a mandatory member does when the element under the cursor is not its own depends on the object being read. If
/// that has an element of its own, the member throws, unless the context lets it skip unknown elements or excuses
/// missing ones. If it is a pseudo class, the member returns false and leaves it to the enclosing group to try
/// something else. An optional member is satisfied in any case.
///
/// What the kinds of members have in common, and the arguments of the constructors: ElementInfoKinds.h.

namespace QvXmlLib9Data
{

/// A member of a sequence.
class QVXMLLIB_API CElementInfoSeq : public CElementInfo
{
public:
    CElementInfoSeq(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
    CElementInfoSeq(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                    const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                    const CPrimitiveRestrictions& restrictions);

    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

protected:
    /// What a mandatory member under a pseudo parent does, where unknown elements are ignored, with one that is not its
    /// own.
    enum class PseudoMiss
    {
        GiveUp,
        SkipUnknown
    };

    /// How the search for a mandatory member's element ended.
    enum class Search
    {
        /// The cursor stands on it.
        Found,
        /// It is missing, and the context says that it may be.
        Excused,
        /// It is missing, and the enclosing group is to decide.
        Missing
    };

    /// Finds the element of a mandatory member, skipping unknown ones where the context says so.
    /// @throws CQvValidationException "Failed to find a required element [%s]" if there is none, the parent has an
    ///         element of its own and the context does not excuse it.
    Search FindMandatory(const CXmlSerializationContext& context, CXmlElement** ppCurrent, XmlElementType eParentType,
                         PseudoMiss ePseudoMiss) const;

    /// @throws CQvValidationException "Failed to find a required element [%s]" if the parent has an element of its own;
    ///         a pseudo parent goes on without this member.
    void Throw_IfMissingIsFatal(XmlElementType eParentType) const;

    /// The same whatever the parent is.
    [[noreturn]] void ThrowRequiredIsMissing() const;

    /// Reads a child with an element of its own, stores it, and moves the cursor on.
    void ReadThenStoreChild(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                            CXmlElement** ppCurrent, CXmlObjectBase* pChild);
};

/// A member of a sequence that is no collection. Nothing in the library derives from it.
class QVXMLLIB_API CElementInfoSeqNonCol : public CElementInfoSeq
{
public:
    CElementInfoSeqNonCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
};

/// A repeating member of a sequence. The collection reads and writes its own run of elements; the record checks the
/// occurrence count, before writing and after reading.
class QVXMLLIB_API CElementInfoSeqCol : public CElementInfoSeq
{
public:
    CElementInfoSeqCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;

protected:
    /// Whether the occurrence count after reading is valid; where the parent has an element of its own, an invalid one
    /// throws.
    static bool AcceptCount(const CXmlCollectionBase& collection, const CXmlSerializationContext& context,
                            XmlElementType eParentType);
};

extern template class CElementInfoPrim<CElementInfoSeq>;
extern template class CElementInfoEnum<CElementInfoSeq>;
extern template class CElementInfoCls<CElementInfoSeq>;
extern template class CElementInfoAbsCls<CElementInfoSeq>;
extern template class CElementInfoUntpd<CElementInfoSeq>;
extern template class CElementInfoClsCol<CElementInfoSeqCol>;

/// A mandatory element of a simple type.
class QVXMLLIB_API CElementInfoSeqPrimMnd : public CElementInfoPrim<CElementInfoSeq>
{
public:
    using CElementInfoPrim::CElementInfoPrim;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An optional element of a simple type.
class QVXMLLIB_API CElementInfoSeqPrimOpt : public CElementInfoPrim<CElementInfoSeq>
{
public:
    using CElementInfoPrim::CElementInfoPrim;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory element whose type is an enumeration. Under a pseudo parent it does not skip unknown elements, unlike
/// CElementInfoSeqPrimMnd (docs/compatibility.md: Unknown elements ahead of an enumeration).
class QVXMLLIB_API CElementInfoSeqEnumMnd : public CElementInfoEnum<CElementInfoSeq>
{
public:
    using CElementInfoEnum::CElementInfoEnum;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An optional element whose type is an enumeration.
class QVXMLLIB_API CElementInfoSeqEnumOpt : public CElementInfoEnum<CElementInfoSeq>
{
public:
    using CElementInfoEnum::CElementInfoEnum;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory child of a known class. The generated constructor makes the child, and reading fills it in place.
class QVXMLLIB_API CElementInfoSeqClsMnd : public CElementInfoCls<CElementInfoSeq>
{
public:
    CElementInfoSeqClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                          XmlElementType eElementType, PfnCreate pfnCreate, int nClassId, bool bContentRequired);

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;

private:
    bool PseudoFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                       CXmlElement** ppCurrent, XmlElementType eParentType);

    bool m_bContentRequired;
};

/// An optional child of a known class. It is read first and stored afterwards; a pseudo child that consumes nothing is
/// not stored.
class QVXMLLIB_API CElementInfoSeqClsOpt : public CElementInfoCls<CElementInfoSeq>
{
public:
    using CElementInfoCls::CElementInfoCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A mandatory child whose class follows from the element found. It always has an element of its own on reading, skips
/// no unknown elements, and is not excused by IgnoreMissingMandatoryElements.
class QVXMLLIB_API CElementInfoSeqAbsClsMnd : public CElementInfoAbsCls<CElementInfoSeq>
{
public:
    using CElementInfoAbsCls::CElementInfoAbsCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// An optional child whose class follows from the element found. An element for which no class fits stays unread.
class QVXMLLIB_API CElementInfoSeqAbsClsOpt : public CElementInfoAbsCls<CElementInfoSeq>
{
public:
    using CElementInfoAbsCls::CElementInfoAbsCls;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// `xs:any` that occurs once. The generated constructor makes the CElement. The name "AnyElement" admits any local
/// name; any other name admits that name alone.
class QVXMLLIB_API CElementInfoSeqUntpdMnd : public CElementInfoUntpd<CElementInfoSeq>
{
public:
    using CElementInfoUntpd::CElementInfoUntpd;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// `xs:any` that occurs at most once.
class QVXMLLIB_API CElementInfoSeqUntpdOpt : public CElementInfoUntpd<CElementInfoSeq>
{
public:
    using CElementInfoUntpd::CElementInfoUntpd;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

/// A repeating element of a simple type.
class QVXMLLIB_API CElementInfoSeqPrimCol : public CElementInfoSeqCol
{
public:
    using CElementInfoSeqCol::CElementInfoSeqCol;
};

/// A repeating element whose type is an enumeration.
class QVXMLLIB_API CElementInfoSeqEnumCol : public CElementInfoSeqCol
{
public:
    using CElementInfoSeqCol::CElementInfoSeqCol;
};

/// A repeating child of a known class.
class QVXMLLIB_API CElementInfoSeqClsCol : public CElementInfoClsCol<CElementInfoSeqCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

/// A repeating child whose class follows from the element found.
class QVXMLLIB_API CElementInfoSeqAbsClsCol : public CElementInfoClsCol<CElementInfoSeqCol>
{
public:
    using CElementInfoClsCol::CElementInfoClsCol;
};

/// `xs:any` that may repeat; its property is a CElementCol. With a name other than "AnyElement" it takes the run of
/// elements that have that name and the namespace of the first.
class QVXMLLIB_API CElementInfoSeqUntpdCol : public CElementInfoSeqCol
{
public:
    using CElementInfoSeqCol::CElementInfoSeqCol;

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
};

} // namespace QvXmlLib9Data
