#pragma once

#include "quiver/collections/Attribute.h"
#include "quiver/collections/QvIterator.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"

#include <string>

/// @file
/// Open content: what `xs:any` admits, and a small XML tree for use on its own.
///
///     CSmartPtr<CElement> spNote = new CElement(L"note", L"urn:notes");
///     spNote->GetAttributes()->Add(L"id", L"7", L"");
///     spNote->GetChildElements()->Add(L"line")->SetText(L"Call back");
///     std::wstring strXml = spNote->ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
///
/// A tree may be nested as deeply as memory allows: reading, copying, writing and destroying it take no stack for the
/// depth.

namespace QvXmlLib9Data
{
class CElementInfo;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

class CElementCol;

/// A free-form element: a name, a namespace, text, attributes and children. The positions of text among children are
/// not kept; the text is written behind the children.
class QVXMLLIB_API CElement : public CXmlObjectBase
{
public:
    /// An element without a namespace. Children added by name alone get the namespace "##any" then, which marks that no
    /// fixed namespace applies.
    /// @throws CQvInvalidNamespaceException "Element Name must have a value" if `lpctName` is null.
    explicit CElement(const wchar_t* lpctName);

    /// An element whose namespace is its own restriction.
    /// @throws CQvInvalidNamespaceException "Invalid Namespace [%s]" if `lpctNamespace` is one of the keywords "##any",
    ///         "##other", "##local", "##targetNamespace"; and if either is null.
    CElement(const wchar_t* lpctName, const wchar_t* lpctNamespace);

    /// @param lpctName local name.
    /// @param lpctNamespace namespace URI; null counts as empty.
    /// @param lpctRestriction which namespaces are allowed when the element is read; see
    ///        CXmlObjectBase::IsNamespaceValid.
    /// @param lpctTargetNamespace target namespace of the schema.
    /// @throws CQvInvalidNamespaceException "Element Name must have a value", "Namespace Restriction must have a value"
    ///         or "Target Namespace must have a value" if one of the others is null; and if the restriction does not
    ///         allow the namespace.
    CElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
             const wchar_t* lpctTargetNamespace);

    /// Turns an object into a tree, by writing it and parsing what was written.
    /// @param pObject the object; it is not kept.
    /// @param lpctDefaultNamespace default namespace to write the tree with, from here on too: an element that has one
    ///        is written by a writer of its own, without its attributes, and to XML text only. Null or empty for none.
    /// @throws CQvInvalidParamException if `pObject` is null; and what ToXmlStream throws.
    CElement(CXmlObjectBase* pObject, const wchar_t* lpctDefaultNamespace);

    ~CElement() override;

    CXmlObjectBase* GetBase() override;
    using CXmlObjectBase::GetBase;

    /// The namespace URI, empty for none.
    std::wstring GetNamespace() const override;

    /// Local name.
    std::wstring GetName() const { return m_strName; }
    void SetName(const wchar_t* lpctName);

    /// All text of the element itself.
    std::wstring GetText() const { return m_strText; }
    void SetText(const wchar_t* lpctText);

    /// The new namespace is not tested against the restriction.
    void SetNamespace(const wchar_t* lpctNamespace);

    /// The attributes; never null.
    CSmartPtr<CAttributeCol> GetAttributes() const { return m_spAttributes; }

    /// The children; never null.
    CSmartPtr<CElementCol> GetChildElements() const { return m_spChildElements; }

    /// Tests the namespaces of the element, of its attributes, and of everything below it against a restriction.
    /// Nothing is stored.
    /// @throws CQvInvalidNamespaceException "The namespace %s in the class %s is invalid against restriction %s", with
    ///         the name of this element first and its namespace second, whichever namespace failed
    ///         (docs/compatibility.md: Names in namespace failures).
    void SetNamespaceRestrictions(const wchar_t* lpctRestriction, const wchar_t* lpctTargetNamespace);

    /// Reads the root of a document into this element, on the default context: its name, namespace and text replace
    /// those of the element, its attributes and children are added.
    /// @throws CQvException for text that is not well-formed. A root whose namespace the element's restriction does not
    ///         allow is not read, without a failure.
    void FromXml(const wchar_t* lpctXml);
    using CXmlObjectBase::FromXml;

    /// A deep copy, without the listeners and without the default namespace.
    /// @throws CQvInvalidNamespaceException if a namespace was changed to one that the restriction does not allow.
    CSmartPtr<CElement> Clone() const;

protected:
    friend class CElementCol;

    void Init(const wchar_t* lpctName, const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
              const wchar_t* lpctTargetNamespace);

    /// Replaces name, namespace, text, attributes and children by those of a parsed element. An attribute named "xmlns"
    /// sets the default namespace too.
    void CopyXmlElement(CXmlElement* pElement);

    std::wstring GetTargetNamespace() const override;
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// Reads `pCurrent` itself, unlike the same operation of generated classes, which reads the children of an element.
    /// @param pParent not used.
    /// @param pCurrent the element to read; null consumes nothing and gives null.
    /// @return the next sibling; `pCurrent` if the restriction does not allow its namespace.
    /// @throws CQvInvalidNamespaceException for an attribute that is not allowed.
    CXmlElement* FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    // Hooks ahead of a change, with the new text. They do nothing, and no event goes out.
    void FireOnChangeName(const wchar_t* lpctName);
    void FireOnChangeNamespace(const wchar_t* lpctNamespace);
    void FireOnChangeText(const wchar_t* lpctText);

private:
    CElement(const std::wstring& strName, const CSharedText& strNamespace, const CSharedText& strRestriction,
             const CSharedText& strTargetNamespace);
    void InitShared(const std::wstring& strName, const CSharedText& strNamespace, const CSharedText& strRestriction,
                    const CSharedText& strTargetNamespace);

    template <class TEnter, class TLeave>
    void Walk(TEnter Enter, TLeave Leave) const;
    const CNode* FirstChildNode() const;
    CSmartPtr<CElement> CloneAlone() const;

    void WriteStart(CXmlWriter* pWriter, const wchar_t* lpctNamespaceUri,
                    const CXmlSerializationContext& context) const;
    void WriteSpliced(CXmlWriter* pWriter, bool bOptionalChoice) const;
    static const CElement* AsPlainElement(const CXmlObjectBase& object);

    static CSmartPtr<CElement> Read(CXmlElement& source, const CSharedText& strLikelyNamespace,
                                    const CSharedText& strTargetNamespace, const CXmlSerializationContext& context);
    CSmartPtr<CElement> NewCopiedChild(CXmlElement& source) const;
    void CopyAlone(CXmlElement& source);

    std::wstring m_strName;
    std::wstring m_strText;
    CSharedText m_strNamespace;
    CSharedText m_strNamespaceRestriction;
    CSharedText m_strTargetNamespace;
    CSmartPtr<CAttributeCol> m_spAttributes;
    CSmartPtr<CElementCol> m_spChildElements;
    CSharedText m_strDefaultNamespace;
};

/// Elements of any name. The restriction given at construction tests the namespace given there and no more: afterwards
/// the collection takes elements of every namespace, and any number of them
/// (docs/compatibility.md: Restrictions of open collections).
class QVXMLLIB_API CElementCol : public CXmlCollection
{
public:
    /// @param lpctNamespace namespace of items that are added without one. Where it is empty and `lpctRestriction`
    ///        begins with a keyword ("##..."), the restriction text takes its place.
    /// @param lpctRestriction which namespaces are allowed; see CXmlObjectBase::IsNamespaceValid.
    /// @param lpctTargetNamespace target namespace of the schema.
    /// @param nMinOccurs, nMaxOccurs not kept: the collection is never short or over.
    /// @throws CQvInvalidNamespaceException if the restriction does not allow the namespace.
    ///
    /// Null counts as empty.
    CElementCol(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction, const wchar_t* lpctTargetNamespace,
                int nMinOccurs, int nMaxOccurs);
    ~CElementCol() override;

    /// The target namespace, not that of the items (docs/compatibility.md: Namespaces of open collections).
    std::wstring GetNamespace() const override;

    /// Adds an element in the namespace of the collection.
    /// @throws CQvInvalidStateException "A Namespace has not been set for this Collection".
    CSmartPtr<CElement> Add(const wchar_t* lpctName);

    /// Adds an element.
    CSmartPtr<CElement> Add(const wchar_t* lpctName, const wchar_t* lpctNamespace);

    /// Adds an element that exists already.
    CSmartPtr<CElement> Add(CElement* pElement);

    /// Adds `pNew` behind `pExisting`, or as the first one if `pExisting` is null.
    /// @throws CQvInvalidParamException "The object was not found in the collection".
    void AddAfter(const CElement* pExisting, CElement* pNew);

    /// Adds `pNew` ahead of `pExisting`, or as the last one if `pExisting` is null.
    /// @throws CQvInvalidParamException "The object was not found in the collection".
    void AddBefore(const CElement* pExisting, CElement* pNew);

    /// The element at a position.
    /// @throws CQvInvalidParamException as Remove does.
    CSmartPtr<CElement> Item(int nIndex) const;

    CQvIterator<CElement> begin() const { return CQvIterator<CElement>(GetHeadNode()); }
    CQvIterator<CElement> end() const { return CQvIterator<CElement>(); }

    /// A deep copy, without the listeners.
    /// @throws CQvInvalidNamespaceException as CElement::Clone does.
    CSmartPtr<CElementCol> Clone() const;

protected:
    friend class CElement;
    friend class QvXmlLib9Data::CElementInfo;

    std::wstring GetTargetNamespace() const override;
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// Reads `pCurrent` and its siblings.
    /// @return the first one that was not consumed, or null.
    CXmlElement* FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    /// Reads the run of siblings, from `pCurrent` on, that have one name and namespace: a wildcard member that has a
    /// name of its own.
    /// @return the first one that was not consumed, or null.
    virtual CXmlElement* FromXmlLockElementName_Int(std::wstring strName, std::wstring strNamespace,
                                                    CXmlElement* pParent, CXmlElement* pCurrent,
                                                    const CXmlSerializationContext& context);

private:
    CElementCol(const CSharedText& strNamespace, const CSharedText& strTargetNamespace);
    CSmartPtr<CElement> AppendNew(const wchar_t* lpctName, const CSharedText& strNamespace);
    CSmartPtr<CElementCol> CloneAlone() const;

    CSharedText m_strElementNamespace;
    CSharedText m_strTargetNamespace;
};

} // namespace QvXmlLib9
