#pragma once

#include "quiver/collections/QvIterator.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"

#include <string>

/// @file
/// The attributes of open content: what `xs:anyAttribute` admits, the attributes of a CElement, and the additional root
/// attributes of a CXmlSerializationContext.
///
///     spElement->GetAttributes()->Add(L"lang", L"en", L"http://www.w3.org/XML/1998/namespace");
///     for (CAttribute& attribute : *spElement->GetAttributes())
///         std::wcout << attribute.GetName() << L'=' << attribute.GetValue() << L'\n';

namespace QvXmlLib9
{

/// One attribute of any name and namespace. Attributes are made by `CAttributeCol::Add`, and are read by the collection
/// too: reading one on its own throws.
class QVXMLLIB_API CAttribute : public CXmlObjectBase
{
public:
    ~CAttribute() override;

    CXmlObjectBase* GetBase() override;
    using CXmlObjectBase::GetBase;

    /// The namespace URI, empty for none.
    std::wstring GetNamespace() const override;

    /// Local name.
    std::wstring GetName() const { return m_strName; }
    void SetName(const wchar_t* lpctName);

    std::wstring GetValue() const { return m_strValue; }
    void SetValue(const wchar_t* lpctValue);

    /// The new namespace is not tested against any restriction.
    void SetNamespace(const wchar_t* lpctNamespace);

    /// A new attribute with the same name, value and namespace.
    CSmartPtr<CAttribute> Clone() const;

protected:
    friend class CAttributeCol;

    CAttribute(const wchar_t* lpctName, const wchar_t* lpctValue, const wchar_t* lpctNamespace);

    std::wstring GetTargetNamespace() const override;
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// @throws CQvException "This should be done by the collection", always.
    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    // Hooks ahead of a change, with the new text. They do nothing, and no event goes out.
    void FireOnChangeName(const wchar_t* lpctName);
    void FireOnChangeNamespace(const wchar_t* lpctNamespace);
    void FireOnChangeText(const wchar_t* lpctText);

private:
    CAttribute(const std::wstring& strName, const std::wstring& strValue, const CSharedText& strNamespace);

    std::wstring m_strName;
    std::wstring m_strValue;
    CSharedText m_strNamespace;
};

/// Attributes of any name, from the namespaces that a wildcard allows. The count is not limited.
class QVXMLLIB_API CAttributeCol : public CXmlCollection
{
public:
    /// @param lpctNamespace namespace of items that are added without one. Where it is empty, the first token of
    ///        `lpctRestriction` takes its place, provided that this is a URI and no keyword.
    /// @param lpctRestriction which namespaces are allowed; see CXmlObjectBase::IsNamespaceValid.
    /// @param lpctTargetNamespace target namespace of the schema.
    ///
    /// Null counts as empty.
    CAttributeCol(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction, const wchar_t* lpctTargetNamespace);
    ~CAttributeCol() override;

    /// Adds an attribute with an empty value, in the namespace of the collection.
    /// @throws CQvInvalidNamespaceException if the restriction does not allow that namespace.
    CSmartPtr<CAttribute> Add(const wchar_t* lpctName);

    /// Adds an attribute in the namespace of the collection.
    /// @throws CQvInvalidNamespaceException if the restriction does not allow that namespace.
    CSmartPtr<CAttribute> Add(const wchar_t* lpctName, const wchar_t* lpctValue);

    /// Adds an attribute. Duplicates are not looked for.
    /// @throws CQvInvalidNamespaceException if the restriction does not allow `lpctNamespace`.
    CSmartPtr<CAttribute> Add(const wchar_t* lpctName, const wchar_t* lpctValue, const wchar_t* lpctNamespace);

    /// Adds an attribute that exists already. Its namespace is not tested.
    CSmartPtr<CAttribute> Add(CAttribute* pAttribute);

    /// Adds `pNew` behind `pExisting`, or as the first one if `pExisting` is null. Its namespace is not tested.
    /// @throws CQvInvalidParamException "The object was not found in the collection".
    void AddAfter(const CAttribute* pExisting, CAttribute* pNew);

    /// Adds `pNew` ahead of `pExisting`, or as the last one if `pExisting` is null. Its namespace is not tested.
    /// @throws CQvInvalidParamException "The object was not found in the collection".
    void AddBefore(const CAttribute* pExisting, CAttribute* pNew);

    /// The attribute at a position.
    /// @throws CQvInvalidParamException as Remove does.
    CSmartPtr<CAttribute> Item(int nIndex) const;

    CQvIterator<CAttribute> begin() const { return CQvIterator<CAttribute>(GetHeadNode()); }
    CQvIterator<CAttribute> end() const { return CQvIterator<CAttribute>(); }

    /// A deep copy, without the listeners.
    CSmartPtr<CAttributeCol> Clone() const;

protected:
    friend class CElement;

    std::wstring GetTargetNamespace() const override;

    /// Writes the attributes on the element that is open in the writer.
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// Adds the attributes of `pElement`.
    /// @return `pFirstChild`, unchanged.
    /// @throws CQvInvalidNamespaceException "Invalid Attribute [%s]. The attributes namespace is Inappropriate." at the
    ///         first attribute whose namespace is not allowed; those ahead of it have been added by then.
    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

private:
    CAttributeCol(const CSharedText& strNamespace, const CSharedText& strRestriction,
                  const CSharedText& strTargetNamespace);
    CSmartPtr<CAttribute> Append(const std::wstring& strName, const std::wstring& strValue,
                                 const CSharedText& strNamespace);
    bool IsAllowed(const std::wstring& strNamespace) const;

    CSharedText m_strNamespaceRestriction;
    CSharedText m_strTargetNamespace;
};

} // namespace QvXmlLib9
