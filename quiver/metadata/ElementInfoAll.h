#pragma once

#include "quiver/metadata/ElementInfo.h"

/// @file
/// The members of an all group: each child at most once, in any order. The walk passes over the members until the
/// cursor stops moving; ElementFromXml only says whether the member consumed something, and never throws for a missing
/// element. Validate decides afterwards whether a member that was not found is a failure.
/// IgnoreMissingMandatoryElements does not excuse one.
///
/// The arguments of the constructors are those of ElementInfoSeq.h.

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

protected:
    /// The verdict on a mandatory member.
    /// @throws CQvValidationException "Failed to find the mandatory element [%s]" if the member was not found and
    ///         `bThrowIfMissing` is set.
    bool ValidateMandatory(bool bFound, bool bThrowIfMissing) const;
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

/// A mandatory element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimMnd : public CElementInfoAll
{
public:
    CElementInfoAllPrimMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                           ItemType eItemType, const wchar_t* lpctFormat,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                           const CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

/// An optional element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimOpt : public CElementInfoAll
{
public:
    CElementInfoAllPrimOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                           ItemType eItemType, const wchar_t* lpctFormat,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                           const CPrimitiveRestrictions& restrictions);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
};

/// A mandatory element whose type is an enumeration.
class QVXMLLIB_API CElementInfoAllEnumMnd : public CElementInfoAll
{
public:
    CElementInfoAllEnumMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                           PfnEnumToString pfnToString, PfnEnumFromString pfnFromString);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

private:
    PfnEnumToString m_pfnToString;
    PfnEnumFromString m_pfnFromString;
};

/// An optional element whose type is an enumeration.
class QVXMLLIB_API CElementInfoAllEnumOpt : public CElementInfoAll
{
public:
    CElementInfoAllEnumOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                           PfnEnumToString pfnToString, PfnEnumFromString pfnFromString);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

private:
    PfnEnumToString m_pfnToString;
    PfnEnumFromString m_pfnFromString;
};

/// A mandatory child of a known class, filled in place. With an element of its own and no required content it may be
/// missing; a pseudo child may not, whatever `bContentRequired` says. That is the reverse of the sequence, and meant.
class QVXMLLIB_API CElementInfoAllClsMnd : public CElementInfoAll
{
public:
    CElementInfoAllClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                          XmlElementType eElementType, PfnCreate pfnCreate, int nClassId, bool bContentRequired);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
    [[maybe_unused]] PfnCreate m_pfnCreate;
    [[maybe_unused]] int m_nClassId;
    bool m_bContentRequired;
};

/// An optional child of a known class.
class QVXMLLIB_API CElementInfoAllClsOpt : public CElementInfoAll
{
public:
    CElementInfoAllClsOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                          XmlElementType eElementType, PfnCreate pfnCreate, int nClassId);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
    PfnCreate m_pfnCreate;
    int m_nClassId;
};

/// A mandatory child whose class follows from the element found. It can be written; reading it always throws.
class QVXMLLIB_API CElementInfoAllAbsClsMnd : public CElementInfoAll
{
public:
    CElementInfoAllAbsClsMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                             XmlElementType eElementType, PfnCreateFromElement pfnCreateFromElement, int nReserved);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
    [[maybe_unused]] PfnCreateFromElement m_pfnCreateFromElement;
    [[maybe_unused]] int m_nReserved;
};

/// An optional child whose class follows from the element found. It can be written; reading it always throws.
class QVXMLLIB_API CElementInfoAllAbsClsOpt : public CElementInfoAll
{
public:
    CElementInfoAllAbsClsOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                             XmlElementType eElementType, PfnCreateFromElement pfnCreateFromElement);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;
    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
    [[maybe_unused]] PfnCreateFromElement m_pfnCreateFromElement;
};

/// `xs:any` that occurs once. Names work as in CElementInfoSeqUntpdMnd.
class QVXMLLIB_API CElementInfoAllUntpdMnd : public CElementInfoAll
{
public:
    CElementInfoAllUntpdMnd(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                            const wchar_t* lpctNamespaceRestriction, const wchar_t* lpctTargetNamespace);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

private:
    std::wstring m_strNamespaceRestriction;
    std::wstring m_strTargetNamespace;
};

/// `xs:any` that occurs at most once.
class QVXMLLIB_API CElementInfoAllUntpdOpt : public CElementInfoAll
{
public:
    CElementInfoAllUntpdOpt(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                            const wchar_t* lpctNamespaceRestriction, const wchar_t* lpctTargetNamespace);

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override;
    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override;
    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override;

private:
    std::wstring m_strNamespaceRestriction;
    std::wstring m_strTargetNamespace;
};

/// A repeating element of a simple type.
class QVXMLLIB_API CElementInfoAllPrimCol : public CElementInfoAllCol
{
public:
    CElementInfoAllPrimCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
};

/// A repeating `xs:any`.
class QVXMLLIB_API CElementInfoAllUntpdCol : public CElementInfoAllCol
{
public:
    CElementInfoAllUntpdCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);
};

/// A repeating child of a known class.
class QVXMLLIB_API CElementInfoAllClsCol : public CElementInfoAllCol
{
public:
    CElementInfoAllClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                          XmlElementType eElementType);

    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
};

/// A repeating child whose class follows from the element found.
class QVXMLLIB_API CElementInfoAllAbsClsCol : public CElementInfoAllCol
{
public:
    CElementInfoAllAbsClsCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                             XmlElementType eElementType);

    void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const override;

private:
    XmlElementType m_eElementType;
};

} // namespace QvXmlLib9Data
