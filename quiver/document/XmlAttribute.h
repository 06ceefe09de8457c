#pragma once

#include "quiver/document/XmlName.h"
#include "quiver/foundation/MemoryLeakHelp.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib9Data
{
class CTreeText;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

class CXmlText;

/// One attribute of an element in a parsed document: its resolved name and its value. Belongs to its CXmlElement and
/// dies with it; a finished document may be read from several threads.
class QVXMLLIB_API CXmlAttribute : public CInstanceMonitor
{
public:
    /// The copy is independent of the document that `source` belongs to.
    CXmlAttribute(const CXmlAttribute& source);
    CXmlAttribute& operator=(const CXmlAttribute& source);

    /// The name without any prefix.
    const std::wstring& GetLocalName() const { return m_pName->strLocalName; }

    /// The value as the parser gave it: references are replaced and white space is normalised (XML 1.0, 3.3.3).
    const std::wstring& GetValue() const;

    /// The same for a caller who needs the value only once; see CXmlElement::GetText.
    const std::wstring& GetValue(std::wstring& strBuffer) const;

    /// The namespace that the prefix stood for; empty for none.
    const std::wstring& GetNamespaceURI() const { return *m_pName->pstrNamespaceURI; }

    /// Whether this is `xmlns`, `type`, `schemaLocation` or `noNamespaceSchemaLocation` of the namespaces
    /// "http://www.w3.org/2001/XMLSchema-instance" or "http://www.w3.org/2000/xmlns/". The binding passes over them.
    bool IsNamespaceAttribute() const;

    /// Whether this is `nil` of one of those two namespaces; `nil` of the second counts too.
    bool IsNilAttribute() const;

protected:
    CXmlAttribute(const std::wstring& strLocalName, const std::wstring& strValue, const std::wstring& strNamespaceURI);
    virtual ~CXmlAttribute();

private:
    friend class CAttributesOf;
    friend class CXmlTreeBuilder;
    friend class CXmlElement;
    friend class CXmlNodeStore;
    friend class QvXmlLib9Data::CTreeText;

    struct SOwnData;

    /// @param name a record of the document, which outlives this attribute.
    explicit CXmlAttribute(const SXmlName& name);
    CXmlAttribute(const SXmlName& name, SCountedTogether record)
        : CInstanceMonitor(record)
        , m_pName(&name)
    {
    }

    static CInstanceClass& InstanceClass();

    void NoteOwnership() const;
    void Take(std::unique_ptr<SOwnData> pOwn);
    void Release();

    const SXmlName* m_pName;
    /// Null for an empty value.
    CXmlText* m_pValue = nullptr;
    /// The next attribute of the element, the first one behind the last.
    CXmlAttribute* m_pNext = nullptr;
    /// In the first attribute, all of them in the form that callers want, once one has asked.
    std::atomic<std::vector<CXmlAttribute*>*> m_pList{nullptr};
};

} // namespace QvXmlLib9
