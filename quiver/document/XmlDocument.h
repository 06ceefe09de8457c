#pragma once

#include "quiver/document/XmlElement.h"
#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace QvXmlLib9
{

class CXmlSerializationContext;

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
    /// Gives up the tree, the namespaces and the input. Every load begins with it.
    virtual void Cleanup();

private:
    friend class CExpatReader;
    friend class CFastInfosetReader;

    class CInput;
    struct SFileInput;

    void Init();
    void LoadWhole(const wchar_t* lpctFileName);
    void LoadOverlapped(const wchar_t* lpctFileName);
    bool ReadChunkFromFile(unsigned char* pBuffer);
    void AsyncParse(bool bFinal);
    bool GetChunk(bool bWait, std::uint32_t& dwRead);
    void TakeChunk(std::uint32_t dwRead);
    void ParseChunks(bool bFinal);
    void Parse();
    void ParseUncompressed();
    void ParseText();
    void Throw_IfNoRoot() const;

    /// The document's record of a name. Ask once for a name that will occur often, and build with the record.
    const SXmlName& InternName(const std::wstring& strNamespaceURI, const std::wstring& strLocalName);

    /// Makes the root element and opens it.
    CXmlElement* AddDocElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName);
    CXmlElement* AddDocElement(const SXmlName& name);

    /// Makes a child of the innermost open element and opens it.
    CXmlElement* AddChildElement(const wchar_t* lpctNamespaceUri, const wchar_t* lpctLocalName);
    CXmlElement* AddChildElement(const SXmlName& name);

    /// Closes the innermost open element and offers it to the filter.
    void EndElement();

    static void AddElementAttribute(CXmlElement* pElement, const std::wstring& strLocalName,
                                    const std::wstring& strValue, const std::wstring& strNamespaceURI);
    static void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, const std::wstring& strValue);
    static void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, std::string_view utf8Value);
    /// @param pValue what MakeSharedValue has made.
    static void AddElementAttribute(CXmlElement* pElement, const SXmlName& name, CXmlText* pValue);

    /// Appends text up to its end or its first zero unit, without the carriage returns.
    static void AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText);
    static void AppendTextExcludingCR(CXmlElement* pElement, const wchar_t* lpctText, unsigned long ulLength);
    static void AppendTextExcludingCR(CXmlElement* pElement, std::string_view utf8Text);

    /// A value that any number of attributes may have at the price of one, or a text for elements without text; null if
    /// it is empty.
    template <class Char>
    CXmlText* MakeSharedValue(std::basic_string_view<Char> value);
    template <class Char>
    CXmlText* MakeSharedText(std::basic_string_view<Char> text);

    static bool HasText(const CXmlElement* pElement) { return pElement->m_pText != nullptr; }
    /// @param pText what MakeSharedText has made.
    static void SetSharedText(CXmlElement* pElement, CXmlText* pText) { pElement->m_pText = pText; }

    CXmlNodeStore& Store();

    /// The tree with all its nodes and names; null as long as there is none. Shared with copies of this document.
    std::shared_ptr<CXmlNodeStore> m_pStore;
    CXmlElement* m_pDocumentElement = nullptr;
    /// The path of open elements, innermost at the back.
    std::vector<CXmlElement*> m_pElementStack;
    /// Prefix to URI, for the whole document.
    std::map<std::wstring, std::wstring, std::less<>> m_namespaces;
    /// The input of the load in progress, null otherwise; the current chunk during an overlapped load.
    const unsigned char* m_pbyData = nullptr;
    unsigned long m_dwDataLen = 0;
    /// The file of an overlapped load in progress; null otherwise.
    SFileInput* m_pFileInput = nullptr;
    SchemaType m_eSchemaType;
    PfnElementFilter m_pfnElementFilter = nullptr;
    const CXmlSerializationContext* m_pContext;
};

} // namespace QvXmlLib9
