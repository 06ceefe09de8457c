#pragma once

#include "quiver/document/XmlElement.h"
#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

class COverlappedSource;
class CXmlSerializationContext;
class CDocumentSource;
class CXmlTreeBuilder;
struct SExpatOptions;

/// Switches reading of files by CXmlDocument::Load to overlapped input: the next 128 KiB are fetched while the present
/// ones are parsed, and the file is never in memory as a whole. Files must then be plain XML text; compressed files and
/// Fast Infoset documents are not recognised. Off by default. Set it before documents are used on several threads.
QVXMLLIB_API void AsyncFromXmlFile(bool bAsync);

/// Turns a file, a block of memory or a string into a tree of CXmlElement, and keeps the tree and the document's
/// namespace declarations as long as it lives:
///
///     CXmlDocument document(context);
///     document.Load(L"order.xml");
///     CXmlElement* pRoot = document.GetDocumentElement();
///
/// Encodings are told by the byte order mark and the XML declaration. Load and LoadXmlStream also take documents that
/// are compressed with gzip or zlib (RFC 1952, RFC 1950), and Fast Infoset documents (ITU-T Rec. X.891).
///
/// A document can be loaded again; the former tree dies. After a load that failed, what was parsed ahead of the failure
/// may still be there. A document is used by one thread at a time.
class QVXMLLIB_API CXmlDocument : public CInstanceMonitor
{
public:
    /// Called with each element when it is complete, its descendants included. If the result is true the element is
    /// taken out of its parent and destroyed, so that a document of any length can be processed piece by piece in
    /// little memory. A result of true for the root is without effect. What the filter throws ends the load and
    /// arrives at its caller. Elements of Fast Infoset documents are not offered.
    using PfnElementFilter = bool (*)(CXmlElement* pElement);

    /// A document with the default context, CXmlSerializationContext::GetDefaultContext(), and without a filter.
    CXmlDocument();

    /// @param context held by reference; it must outlive the document. Its schema type counts as it is now, its other
    ///        options as they are when a load begins.
    explicit CXmlDocument(const CXmlSerializationContext& context);

    /// @param pfnElementFilter may be null.
    explicit CXmlDocument(PfnElementFilter pfnElementFilter);
    CXmlDocument(PfnElementFilter pfnElementFilter, const CXmlSerializationContext& context);

    /// The copy claims the tree of `source`, whose elements go on naming `source` as their document.
    CXmlDocument(const CXmlDocument& source);
    CXmlDocument& operator=(const CXmlDocument& source);

    virtual ~CXmlDocument();

    /// Loads a file.
    /// @throws CQvException "Failed to open the file [%s] Error [0x%08x]" and its like with the platform's error
    ///         number, or the parser's message as "%s at line %d".
    void Load(const wchar_t* lpctFileName);

    /// Loads a document held in bytes: its encoding is what its declaration says, UTF-8 if it says nothing.
    /// @throws CQvException "XML String is empty!", or the parser's message as "%s at line %d".
    void LoadXml(const char* lpcXml);

    /// Loads a document held in UTF-16 code units. A declaration in it that names an encoding other than UTF-16 is a
    /// failure.
    /// @throws CQvException the parser's message as "%s at line %d".
    void LoadXml(const wchar_t* lpctXml);

    /// Loads a document from a block of memory, which stays the caller's.
    /// @param ulLength count of bytes, of 32 bits.
    /// @throws CQvException "XML Stream is empty!", or the parser's message as "%s at line %d".
    void LoadXmlStream(unsigned char* const pData, unsigned long ulLength);

    /// The root element, or null before the first load.
    CXmlElement* GetDocumentElement() { return m_pDocumentElement; }

    /// The URI that a prefix was bound to, or an empty string; the empty prefix stands for the default namespace. There
    /// is one flat list for the whole document, in which the last declaration of a prefix in document order counts,
    /// whatever its scope (docs/compatibility.md: Prefixes of a document).
    std::wstring LookupNamespaceFromAlias(const wchar_t* lpctAlias) const;

protected:
    /// Gives up the tree and the namespaces. Every load begins with it.
    virtual void Cleanup();

private:
    void Init();
    void AsyncParse(COverlappedSource& source);
    void ParseChunks(COverlappedSource& source);
    void Parse(CDocumentSource source);
    bool ParseFastInfoset(const CDocumentSource& source);
    void ParseText(const CDocumentSource& source);
    bool ScanText(const wchar_t* lpctXml);
    bool Scan(std::string_view document, bool bText);
    void RunExpat(const CDocumentSource& source);
    void Throw_IfNoRoot() const;

    CXmlTreeBuilder MakeBuilder();
    SExpatOptions GetExpatOptions() const;

    /// The tree with all its nodes and names; null ahead of the first load. Shared with copies of this document.
    std::shared_ptr<CXmlNodeStore> m_pStore;
    CXmlElement* m_pDocumentElement = nullptr;
    /// Prefix to URI, for the whole document.
    std::map<std::wstring, std::wstring, std::less<>> m_namespaces;
    SchemaType m_eSchemaType;
    PfnElementFilter m_pfnElementFilter = nullptr;
    const CXmlSerializationContext* m_pContext;
};

} // namespace QvXmlLib9
