#pragma once

#include "quiver/document/NamespaceAliasMap.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <atomic>
#include <string>
#include <vector>

namespace QvXmlLib9
{

class CAttributeCol;

/// All options of one conversion: how tolerant reading is, what extras the document root gets on writing, and the Fast
/// Infoset settings. Every entry point of CXmlObjectBase takes one by const reference and hands it down through the
/// whole walk.
///
///     CXmlSerializationContext context;
///     context.SetIgnoreUnknownElements(true);
///     order.FromXmlFile(L"order.xml", context);
///
/// A context is plain data. It may be read by several conversions at a time as long as none changes it.
class QVXMLLIB_API CXmlSerializationContext
{
public:
    CXmlSerializationContext();
    CXmlSerializationContext(const CXmlSerializationContext& source);
    CXmlSerializationContext& operator=(const CXmlSerializationContext& source);
    virtual ~CXmlSerializationContext();

    /// The context of calls that bring none of their own. Options set on it act on every later call that uses it, in
    /// all threads; set them while the process starts.
    static CXmlSerializationContext& GetDefaultContext();

    /// Occurrence counts of collections are not enforced. Default: false.
    bool GetIgnoreInvalidCollectionCounts() const { return m_bIgnoreInvalidCollectionCounts; }
    void SetIgnoreInvalidCollectionCounts(bool bIgnore) { m_bIgnoreInvalidCollectionCounts = bIgnore; }

    /// A choice with no member found or set is no failure. Default: false.
    bool GetIgnoreMissingChoice() const { return m_bIgnoreMissingChoice; }
    void SetIgnoreMissingChoice(bool bIgnore) { m_bIgnoreMissingChoice = bIgnore; }

    /// A mandatory element that is absent is passed over. Default: false. Excludes IgnoreUnknownElements.
    bool GetIgnoreMissingMandatoryElements() const { return m_bIgnoreMissingMandatoryElements; }
    /// @throws CQvInvalidStateException if `bIgnore` is true and IgnoreUnknownElements is set; nothing changes then.
    void SetIgnoreMissingMandatoryElements(bool bIgnore);

    /// Elements that nothing claims are skipped. Default: false. Excludes IgnoreMissingMandatoryElements. Ahead of a
    /// member that may be absent, and within a collection, one takes what stands behind it along
    /// (docs/compatibility.md: Unknown elements ahead of what may be absent).
    bool GetIgnoreUnknownElements() const { return m_bIgnoreUnknownElements; }
    /// @throws CQvInvalidStateException if `bIgnore` is true and IgnoreMissingMandatoryElements is set; nothing changes
    ///         then.
    void SetIgnoreUnknownElements(bool bIgnore);

    /// Attributes that nothing claims are skipped. Default: false.
    bool GetIgnoreUnknownAttributes() const { return m_bIgnoreUnknownAttributes; }
    void SetIgnoreUnknownAttributes(bool bIgnore) { m_bIgnoreUnknownAttributes = bIgnore; }

    /// Names are matched by local name alone. Default: false. Always true with SchemaType_NoNamespaces, whatever was
    /// set.
    bool GetIgnoreNamespaces() const { return m_bIgnoreNamespaces || m_eSchemaType == SchemaType_NoNamespaces; }
    void SetIgnoreNamespaces(bool bIgnore) { m_bIgnoreNamespaces = bIgnore; }

    /// An optional attribute that holds its default is not written. Default: false.
    bool GetNoOptionalAttributeDefaultOutput() const { return m_bNoOptionalAttributeDefaultOutput; }
    void SetNoOptionalAttributeDefaultOutput(bool bNoOutput) { m_bNoOptionalAttributeDefaultOutput = bNoOutput; }

    /// `xsi:type` is written on objects that have base classes when their element name differs from the class's.
    /// Default: true.
    bool GetWriteTypeAttribute() const { return m_bWriteTypeAttribute; }
    void SetWriteTypeAttribute(bool bWrite) { m_bWriteTypeAttribute = bWrite; }

    /// CDATA section marks are dropped while parsing. Default: true. With false they become part of the text, and a
    /// text that begins with one is written as it is.
    bool GetStripCDATA() const { return m_bStripCDATA; }
    void SetStripCDATA(bool bStrip) { m_bStripCDATA = bStrip; }

    /// Kind of the schema that the classes came from. Default: SchemaType_Namespaced.
    SchemaType GetSchemaType() const { return m_eSchemaType; }
    void SetSchemaType(SchemaType eSchemaType) { m_eSchemaType = eSchemaType; }

    /// Default namespace that the root declares; empty for none, which is the default.
    std::wstring GetDefaultNamespaceURI() const { return m_strDefaultNamespaceURI; }
    /// @param lpctUri null counts as empty.
    void SetDefaultNamespaceURI(const wchar_t* lpctUri);

    /// Schema text written just inside the root's start tag; empty for none, which is the default.
    std::wstring GetInLineSchema() const { return m_strInLineSchema; }
    /// @param lpctSchema null counts as empty.
    void SetInLineSchema(const wchar_t* lpctSchema);

    /// Prefixes that the root declares, such as "xs" for "http://www.w3.org/2001/XMLSchema".
    CNamespaceAliasMap& GetNamespaceAliases() { return m_namespaceAliases; }
    const CNamespaceAliasMap& GetNamespaceAliases() const { return m_namespaceAliases; }

    /// Attributes that every root written with this context gets beside its own. The collection comes into being at the
    /// first call, which every writing of a root makes too; the caller fills it in place. Copies of the context share
    /// it from then on. The call is safe while other threads use the context; changing the collection is not.
    CSmartPtr<CAttributeCol> GetAdditionalRootAttributes() const;

    /// Fast Infoset settings.
    CFastInfosetContext& GetFIContext() { return m_fiContext; }
    const CFastInfosetContext& GetFIContext() const { return m_fiContext; }

    /// Processing instructions written ahead of the root, delimiters included, such as
    /// `<?xml-stylesheet href="a.xsl"?>`.
    std::vector<std::wstring>& GetProcessingInstructions() { return m_processingInstructions; }
    const std::vector<std::wstring>& GetProcessingInstructions() const { return m_processingInstructions; }

private:
    friend class CXmlGeneratedClass;
    friend struct SDefaultAttributes;

    /// The in-line schema without a copy.
    const std::wstring& InLineSchema() const { return m_strInLineSchema; }

    void SetAdditionalRootAttributes(CAttributeCol* pAttributes);

    std::wstring m_strDefaultNamespaceURI;
    bool m_bWriteTypeAttribute = true;
    CNamespaceAliasMap m_namespaceAliases;
    /// Holds one reference. Atomic, since a const operation that runs on any thread fills it.
    mutable std::atomic<CAttributeCol*> m_pAdditionalRootAttributes{nullptr};
    std::vector<std::wstring> m_processingInstructions;
    std::wstring m_strInLineSchema;
    bool m_bIgnoreInvalidCollectionCounts = false;
    bool m_bIgnoreMissingChoice = false;
    bool m_bIgnoreMissingMandatoryElements = false;
    bool m_bIgnoreUnknownElements = false;
    bool m_bIgnoreUnknownAttributes = false;
    bool m_bIgnoreNamespaces = false;
    SchemaType m_eSchemaType = SchemaType_Namespaced;
    bool m_bNoOptionalAttributeDefaultOutput = false;
    CFastInfosetContext m_fiContext;
    bool m_bStripCDATA = true;
};

} // namespace QvXmlLib9
