#pragma once

#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlName.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9Data
{
class CTreeText;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

class CXmlDocument;
class CXmlNodeStore;
class CXmlText;

/// One element of a parsed document. The tree has what binding needs and no more: child elements in order, attributes,
/// the text directly inside the element, and for each node a local name and a namespace that are already resolved.
/// Comments, processing instructions, prefixes and the position of text among child elements are not kept.
///
///     for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr;
///          pChild = pChild->GetNextSiblingElement())
///     {
///         Use(pChild->GetLocalName(), pChild->GetText());
///     }
///
/// The document owns the tree: no pointer into it is valid once the document loads again or dies. Callers only read,
/// and a finished tree may be read from several threads at a time.
class QVXMLLIB_API CXmlElement : public CInstanceMonitor
{
public:
    /// Copies every field as it stands, so that both elements claim the same children and attributes. The copy can be
    /// looked at; it must never be destroyed, nor the target of an assignment.
    CXmlElement(const CXmlElement& source);
    CXmlElement& operator=(const CXmlElement& source);

    /// The first child element, or null.
    CXmlElement* GetFirstElement() { return m_pFirstChild; }

    /// The next child element of the same parent, or null.
    CXmlElement* GetNextSiblingElement() { return m_pNextSibling; }

    /// The attributes in document order. Namespace declarations are among them only in a document parsed without
    /// namespace processing.
    const std::vector<CXmlAttribute*>& GetAttributes() const;

    /// The name without any prefix.
    const std::wstring& GetLocalName() const { return m_pName->strLocalName; }

    /// The namespace; empty for none.
    const std::wstring& GetNamespaceURI() const { return *m_pName->pstrNamespaceURI; }

    /// All character data directly inside the element, before, between and after its child elements, joined in document
    /// order: "xy" for `a` in `<a>x<b/>y</a>`. Carriage returns are dropped.
    const std::wstring& GetText() const;

    /// The same for a caller who needs the text only once: the tree keeps text in a smaller form until GetText asks for
    /// it, and this way it stays so.
    /// @param strBuffer may take the text.
    /// @return the text; valid until `strBuffer` changes or the tree dies.
    const std::wstring& GetText(std::wstring& strBuffer) const;

    /// The document that the element belongs to.
    const CXmlDocument* GetDocument() const;

    /// The value of the first attribute with this name and namespace. If there is none, an empty string that lives as
    /// long as the process; an absent attribute and an empty one look the same.
    const std::wstring& GetAttribute(const std::wstring& strLocalName, const std::wstring& strNamespaceURI) const;

    /// What a prefix stands for where the element is: the nearest declaration counts. The empty prefix stands for the
    /// default namespace.
    /// @return null if no declaration is known. Documents that are read without namespaces have none, nor have elements
    ///         on their own; in a document that is read through a filter the first declaration of a prefix counts.
    const std::wstring* FindPrefix(std::wstring_view svPrefix) const;

protected:
    /// An element on its own: no parent, no name, no text. What is added to it belongs to it.
    /// @param pDocument what GetDocument shall return for the element and all below it; may be null.
    explicit CXmlElement(const CXmlDocument* pDocument);

    /// Destroys the whole tree below the element, in constant stack whatever its depth.
    virtual ~CXmlElement();

    /// Appends a new child element without a name and returns it; it belongs to this element.
    CXmlElement* CreateNewChildElement();

    /// Takes the last child out of the list and returns it, alive; null if there is none.
    CXmlElement* RemoveLastChildElement();

    /// Appends an attribute. Duplicates are not looked for.
    void AddAttribute(const std::wstring& strLocalName, const std::wstring& strValue,
                      const std::wstring& strNamespaceURI);

    /// Appends to the element's text, in amortised linear time.
    void AppendText(const wchar_t* lpctText);
    void AppendText(const wchar_t* lpctText, int nLength);

    void SetElementName(const std::wstring& strLocalName);
    void SetNamespace(const std::wstring& strNamespaceURI);

private:
    friend class CAttributesOf;
    friend class CGeneratedObject;
    friend class CXmlTreeBuilder;
    friend class CXmlNodeStore;
    friend class CReadBudget;
    friend class QvXmlLib9Data::CTreeText;

    explicit CXmlElement(const SXmlName& name);
    CXmlElement(const SXmlName& name, SCountedTogether record)
        : CInstanceMonitor(record)
        , m_pName(&name)
    {
    }

    static CInstanceClass& InstanceClass();

    CXmlNodeStore& Store() const { return *m_pName->pStore; }

    bool HasText() const;
    bool HasTextBesideWhiteSpace() const;

    // Named apart from the operations above, so that derived classes can lift those as a whole into their interface.
    CXmlElement* NewChild(const SXmlName& name);
    CXmlAttribute& NewAttribute(const SXmlName& name);
    const std::vector<CXmlAttribute*>& MakeAttributeList() const;
    CXmlElement* RemoveLastChild(CXmlElement* pBeforeLast);

    // A large document has millions of these, so there is nothing in them that can be found another way: the store
    // comes by the name, attributes and text by pointers that are null where there are none.
    CXmlElement* m_pNextSibling = nullptr;
    CXmlElement* m_pFirstChild = nullptr;
    CXmlElement* m_pLastChild = nullptr;
    CXmlAttribute* m_pLastAttribute = nullptr;
    CXmlText* m_pText = nullptr;
    const SXmlName* m_pName;
};

} // namespace QvXmlLib9
