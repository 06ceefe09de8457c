#pragma once

#include "quiver/metadata/ElementInfo.h"

#include <string_view>

namespace QvXmlLib9
{
class CXmlAttribute;
} // namespace QvXmlLib9

namespace QvXmlLib9Data
{

using QvXmlLib9::CXmlAttribute;

/// Describes one attribute of a generated class: the counterpart of CElementInfo. The records stand in a table ended by
/// a null pointer. CXmlGeneratedClass offers each attribute of an element to the records in order until one claims it,
/// then lets each report what is missing.
///
/// Namespace declarations, `xsi:type`, the schema locations and `xsi:nil` never arrive here.
///
/// Records do not change after construction, so any number of threads may use them at the same time. The order of the
/// virtual operations is a contract with generated code.
class QVXMLLIB_API CAttributeInfo
{
public:
    CAttributeInfo(const CAttributeInfo&) = default;
    CAttributeInfo& operator=(const CAttributeInfo&) = default;
    virtual ~CAttributeInfo();

    /// Writes the attribute on the element that is open in the writer. An unset optional attribute writes nothing; nor
    /// does one that holds its default, compared as text, where the context says so.
    /// @throws CQvException if the value breaks a facet or a required attribute has no value.
    virtual void AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                CXmlWriter* pWriter) const = 0;

    /// Stores the attribute's value if the attribute is this record's.
    /// @return whether it was.
    virtual bool AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                  CXmlAttribute* pAttribute) = 0;

    /// @param bFound whether AttributeFromXml claimed an attribute.
    /// @throws CQvValidationException if a required attribute is missing. No option excuses it.
    virtual void Validate(const CXmlSerializationContext& context, bool bFound) const = 0;

protected:
    /// @param lpctName local name of the attribute.
    /// @param lpctNamespace its namespace URI, usually empty.
    /// @param nPropertyIndex key under which the generated class exposes the attribute.
    /// @param bOptional false for a required attribute.
    /// @param lpctDefault default or fixed text of the schema, empty for none. It is not applied on reading: that is
    ///        the generated constructor's affair.
    CAttributeInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, bool bOptional,
                   const wchar_t* lpctDefault);

    /// Whether the attribute is this record's: the local name counts, and the namespace too unless the context ignores
    /// namespaces. Null never is.
    bool IsThisAttribute(const CXmlSerializationContext& context, CXmlAttribute* pAttribute) const;

    void AccessProperty(CXmlGeneratedClass* pObject, bool bRead, QvVariant& value);
    void ReadProperty(const CXmlGeneratedClass* pObject, QvVariant& value) const;

    /// @throws CQvInvalidNamespaceException if the namespace does not fit the restriction.
    static void TestNamespace(const std::wstring& strNamespace, const std::wstring& strRestriction,
                              const std::wstring& strTargetNamespace);

    // The protected operations of another object.
    static void ToXml_Int(const CXmlObjectBase* pObject, CXmlWriter* pWriter, bool bIsRoot,
                          const wchar_t* lpctNamespaceUri, const CXmlSerializationContext& context);
    static std::wstring GetTargetNamespace(const CXmlObjectBase* pObject);

    /// Whether there is nothing to write because the value of an optional attribute is not set.
    bool IsUnset(const QvVariant& value) const;

    /// Whether the text is an optional attribute's default that the context keeps out of the document. "1.0" does not
    /// suppress a value that prints as "1".
    bool IsSuppressedDefault(const CXmlSerializationContext& context, std::wstring_view svText) const;

    /// @throws CQvValidationException if the attribute is required and was not found.
    void Throw_IfRequiredIsMissing(bool bFound) const;

    std::wstring m_strName;
    std::wstring m_strNamespace;
    int m_nPropertyIndex;
    bool m_bOptional;
    std::wstring m_strDefault;
};

/// An attribute of a simple type.
///
/// It compares namespaces even where the context ignores them, unlike CAttributeInfoEnum
/// (docs/compatibility.md: Namespaces of attributes).
class QVXMLLIB_API CAttributeInfoPrimitive : public CAttributeInfo
{
public:
    /// @param lpctFormat format for `QvVariant::ToString`, or null. The pointer is kept: pass a string of static
    ///        lifetime.
    CAttributeInfoPrimitive(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, bool bOptional,
                            ItemType eItemType, const wchar_t* lpctFormat,
                            CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                            const CPrimitiveRestrictions& restrictions, const wchar_t* lpctDefault);

    void AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                        CXmlWriter* pWriter) const override;
    bool AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                          CXmlAttribute* pAttribute) override;
    void Validate(const CXmlSerializationContext& context, bool bFound) const override;

    /// Tests a value against the facets of this attribute. Generated setters call it.
    /// @throws CQvException if the value breaks a facet.
    void CheckRestriction(QvVariant value) const;

private:
    CPrimitiveRestrictions m_restrictions;
    ItemType m_eItemType;
    const wchar_t* m_pszFormat;
    CWhitespaceUtils::WhitespaceRule m_eWhitespaceRule;
};

/// An attribute whose type is an enumeration. Its property travels as ItemType_i4.
class QVXMLLIB_API CAttributeInfoEnum : public CAttributeInfo
{
public:
    CAttributeInfoEnum(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, bool bOptional,
                       PfnEnumToString pfnToString, PfnEnumFromString pfnFromString, const wchar_t* lpctDefault);

    void AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                        CXmlWriter* pWriter) const override;
    bool AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                          CXmlAttribute* pAttribute) override;
    void Validate(const CXmlSerializationContext& context, bool bFound) const override;

private:
    PfnEnumFromString m_pfnFromString;
    PfnEnumToString m_pfnToString;
};

/// `xs:anyAttribute`. Its property is a CAttributeCol.
///
/// It claims every attribute that reaches it, so it stands last in the table. An attribute from a namespace that is not
/// allowed throws instead of counting as unknown.
class QVXMLLIB_API CAttributeInfoAny : public CAttributeInfo
{
public:
    /// @param lpctNamespaceRestriction "##any", "##other", "##local", "##targetNamespace" or URIs.
    /// @param lpctTargetNamespace target namespace of the schema.
    CAttributeInfoAny(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, bool bOptional,
                      const wchar_t* lpctNamespaceRestriction, const wchar_t* lpctTargetNamespace,
                      const wchar_t* lpctDefault);

    void AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                        CXmlWriter* pWriter) const override;
    bool AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                          CXmlAttribute* pAttribute) override;
    void Validate(const CXmlSerializationContext& context, bool bFound) const override;

private:
    std::wstring m_strNamespaceRestriction;
    std::wstring m_strTargetNamespace;
};

} // namespace QvXmlLib9Data
