#pragma once

#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/ShortText.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace QvXmlLib9Data
{
class CAttributeInfo;
class CElementInfo;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

class CBinaryData;
class CElement;
class CXmlCollection;
class CXmlCollectionBase;
class CXmlDocument;
class CXmlElement;
class CXmlObjectBase;
class CXmlWriter;

/// Announces the version of the class generator. Generated code calls it when it is loaded; every conversion fails
/// unless the version announced is the library's own, 9.0. Call it before objects are used on several threads.
QVXMLLIB_API void Register(int nMajor, int nMinor);

/// Makes `ToXmlFile` write uncompressed files by overlapped output while the document is still being produced, instead
/// of building the whole document first. Process-wide, initially false; set it before objects are used on several
/// threads.
QVXMLLIB_API void AsyncToXmlFile(bool bAsync);

/// Receives the changes of collections. An object that wants them registers itself with
/// `CXmlCollectionBase::AddEventListener`; events arrive on the thread that changes the collection.
class QVXMLLIB_API IEventSink
{
public:
    enum MsgType : int
    {
        /// The collection has changed as a whole; no data.
        MsgType_Change = 0,
        /// An item is about to be added; the data are the item as the collection passes it.
        MsgType_Add = 1,
        /// An item was added; data as for MsgType_Add.
        MsgType_AddComplete = 2,
        /// An item is about to be removed; the data point to its index, an `int` that is valid during the call, or are
        /// null where the index is not known.
        MsgType_Remove = 3,
        /// An item was removed; data as for MsgType_Remove.
        MsgType_RemoveComplete = 4
    };

    /// @param pMsgSource the collection.
    /// @param eMsgType what happens.
    /// @param pData see MsgType.
    virtual void OnEvent(CXmlObjectBase* pMsgSource, IEventSink::MsgType eMsgType, void* pData) = 0;

protected:
    IEventSink() = default;
    IEventSink(const IEventSink&) = default;
    IEventSink& operator=(const IEventSink&) = default;
    ~IEventSink() = default;
};

/// Root of everything that can be bound to XML: generated classes, collections, open content. It gives each object a
/// name, an intrusive reference count, and the public conversions.
///
///     CSmartPtr<CPurchaseOrder> spOrder = new CPurchaseOrder;
///     spOrder->FromXmlFile(L"order.xml", CXmlSerializationContext::GetDefaultContext());
///     std::wstring strXml = spOrder->ToXml(true, true, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
///
/// Conversions take no lock: two threads may convert different objects at the same time. Every conversion throws
/// CQvException ("Wrong Version ...") when generated code of another version than 9.0 was registered, or none at all.
///
/// The order of the virtual operations is a contract with generated code that is compiled elsewhere.
class QVXMLLIB_API CXmlObjectBase : public IEventSink, public virtual CInstanceMonitor
{
protected:
    /// Does nothing; override it to receive events.
    void OnEvent(CXmlObjectBase* pMsgSource, IEventSink::MsgType eMsgType, void* pData) override;

public:
    /// The object itself. Every implementation returns `this`.
    virtual CXmlObjectBase* GetBase() = 0;

    /// Writes the object as an XML file, which is created anew.
    /// @param lpctFileName path of the file.
    /// @param bIncludeDocHeader write the XML declaration.
    /// @param bFormat indent, one element to a line.
    /// @param eEncoding byte form; the UTF-16 forms put the mark FF FE at the beginning of the file.
    /// @param eEOLType line ending.
    /// @param context the options.
    /// @param eCompression none or gzip.
    /// @throws CQvException for zlib compression, and for files that cannot be written, with the path and the error
    ///         code.
    virtual void ToXmlFile(const wchar_t* lpctFileName, bool bIncludeDocHeader, bool bFormat, XmlEncoding eEncoding,
                           EOLType eEOLType, const CXmlSerializationContext& context,
                           CompressionType eCompression) const;

    /// Writes the object as a Fast Infoset file (ITU-T X.891), which is created anew.
    /// @param eDecl the XML declaration to begin with, if any.
    /// @throws CQvException for zlib compression, for files that cannot be written, and for values that do not fit the
    ///         encoding chosen for them.
    virtual void ToFastInfosetFile(const wchar_t* lpctFileName, FInfoDecl eDecl,
                                   const CXmlSerializationContext& context, CompressionType eCompression) const;

    /// The object as XML text in memory; a declaration names no encoding.
    virtual std::wstring ToXml(bool bIncludeDocHeader, bool bFormat, EOLType eEOLType,
                               const CXmlSerializationContext& context) const;

    /// The object as the bytes of an XML document, without a byte order mark.
    /// @throws CQvException for Encoding_None, which has no bytes, and for data that compression would not make
    ///         smaller.
    virtual CBinaryData ToXmlStream(bool bIncludeDocHeader, bool bFormat, XmlEncoding eEncoding, EOLType eEOLType,
                                    const CXmlSerializationContext& context, CompressionType eCompression) const;

    /// The object as the octets of a Fast Infoset document (ITU-T X.891).
    virtual CBinaryData ToFastInfosetStream(FInfoDecl eDecl, const CXmlSerializationContext& context,
                                            CompressionType eCompression) const;

    /// Fills the object from a file: XML text, or unless overlapped input is on Fast Infoset or either of them
    /// compressed with gzip or zlib.
    ///
    /// The object can be read into again and again; each read resets it first. When reading fails, the object keeps
    /// what had been stored up to the failure.
    /// @throws CQvException for files that cannot be read and text that is not well-formed; CQvValidationException, one
    ///         link for each element level, for documents that break the schema.
    virtual void FromXmlFile(const wchar_t* lpctFileName, const CXmlSerializationContext& context);

    /// Fills the object from XML text.
    virtual void FromXml(const wchar_t* lpctXml, const CXmlSerializationContext& context);

    /// Fills the object from XML in bytes, whose encoding is what the declaration says, UTF-8 if it says nothing.
    /// @throws CQvException "XML String is empty!" for an empty string.
    virtual void FromXml(const char* lpcXml, const CXmlSerializationContext& context);

    /// Fills the object from bytes: XML text or Fast Infoset, plain or compressed with gzip or zlib.
    virtual void FromXmlStream(const CBinaryData& data, const CXmlSerializationContext& context);

    /// @param pData the bytes; they stay the caller's.
    /// @param ulLength count of bytes.
    virtual void FromXmlStream(unsigned char* const pData, unsigned long ulLength,
                               const CXmlSerializationContext& context);

    /// Fills the object from open content.
    virtual void FromXmlElement(const CElement* pElement, const CXmlSerializationContext& context);

    /// Fills the object from an element of a parsed tree, which stays the caller's.
    virtual void FromXmlElement(const CXmlElement* pElement, const CXmlSerializationContext& context);

protected:
    virtual ~CXmlObjectBase();

    /// Namespace of the object's element when it is the root of a document.
    virtual std::wstring GetTargetNamespace() const = 0;

public:
    /// Namespace that the object hands to its metadata as the parent's namespace.
    virtual std::wstring GetNamespace() const = 0;

protected:
    /// Writes the object's attributes to the element that is open in the writer. Does nothing here.
    virtual void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const;

    /// Writes the object.
    /// @param pWriter where to.
    /// @param bIsRoot the object is the root of the document, and gets the extras of the context.
    /// @param lpctNamespaceUri namespace of the object's element.
    /// @param context the options.
    /// @param bOptionalChoice an object that is a choice may be empty.
    virtual void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                           const CXmlSerializationContext& context, bool bOptionalChoice) const = 0;

    /// Reads the object.
    /// @param pElement the element whose attributes and children are read.
    /// @param pFirstChild the child to begin with, or null.
    /// @param context the options.
    /// @param bOptionalChoice an object that is a choice may stay empty.
    /// @return the next child that has not been consumed, or null.
    virtual CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild,
                                     const CXmlSerializationContext& context, bool bOptionalChoice) = 0;

public:
    /// Adds one reference. Meant for CSmartPtr alone.
    /// @return the new count.
    long AddRef();

    /// Takes one reference away, and destroys the object when none is left. Meant for CSmartPtr alone. An object that
    /// never had a reference is not destroyed by it.
    ///
    /// Objects that hold each other may be nested to any depth: where the stack runs low, the destruction of the inner
    /// ones is put off until the outermost call on the thread, which returns when all of them are gone.
    /// @return the new count.
    long Release();

    /// The object itself, for const callers.
    const CXmlObjectBase* GetBase() const;

    CXmlObjectBase& operator=(const CXmlObjectBase& source);

    /// Local name under which the object is written.
    std::wstring GetElementName() const { return std::wstring(m_strElementName.View()); }

protected:
    /// The first object of the process reports a wrong generator version, once.
    CXmlObjectBase();

    /// Copies the element name, and the reference count too: the copy does not start at 0.
    /// (docs/compatibility.md: Copies of counted objects)
    CXmlObjectBase(const CXmlObjectBase& source);

    /// @param lpctName the name, copied; null counts as empty.
    void SetElementName(const wchar_t* lpctName);

    /// The element name without a copy.
    const CShortText& ElementName() const { return m_strElementName; }

    // With these an object drives the protected operations of another one.
    static void ToXml_Int(const CXmlObjectBase* pObj, CXmlWriter* pWriter, bool bIsRoot,
                          const wchar_t* lpctNamespaceUri, const CXmlSerializationContext& context,
                          bool bOptionalChoice);
    static void AttributesToXml_Int(const CXmlObjectBase* pObj, CXmlWriter* pWriter,
                                    const CXmlSerializationContext& context);
    static CXmlElement* FromXml_Int(CXmlObjectBase* pObj, CXmlElement* pElement, CXmlElement* pFirstChild,
                                    const CXmlSerializationContext& context);
    static void SetElementName(CXmlObjectBase* pObj, const wchar_t* lpctName);

    /// @throws CQvInvalidParamException if `pValue` is null. For setters of mandatory properties.
    void Throw_IfPropertyIsNull(CXmlObjectBase* pValue, const wchar_t* lpctPropertyName);

    /// @throws CQvInvalidParamException if `pValue` is there and has another element name. For setters.
    void Throw_IfElementNameDiffers(CXmlObjectBase* pValue, const wchar_t* lpctElementName);

    /// Whether a namespace fits the constraint of a wildcard (XML Schema Part 1, 3.10.1).
    ///
    /// A list of several tokens is served by its first token alone, beyond which only an empty namespace, or one that
    /// equals the whole list, passes (docs/compatibility.md: Lists of namespaces).
    /// @param lpctNamespace the namespace under test.
    /// @param lpctAllowedList "##any", "##other", "##local", "##targetNamespace" or URIs, separated by blanks.
    /// @param lpctTargetNamespace the target namespace of the schema.
    bool IsNamespaceValid(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                          const wchar_t* lpctTargetNamespace) const;

    /// @throws CQvInvalidNamespaceException if IsNamespaceValid says no.
    void TestNamespace(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                       const wchar_t* lpctTargetNamespace) const;

    /// Whether an element has the name given; namespaces count unless the context says otherwise.
    bool DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* pElement,
                              const wchar_t* lpctName, const wchar_t* lpctNamespace) const;

    // Each of these delivers one event to a listener; the source is what GetBase of the collection gives. The sink is
    // not tested for null. An index of -1 goes out as null data.
    static void FireOnCollectionChangeEvent(IEventSink* pSink, CXmlCollectionBase* pCollection);
    static void FireOnCollectionAddEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, void* pItem);
    static void FireOnCollectionAddCompleteEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, void* pItem);
    static void FireOnCollectionRemoveEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, int nIndex);
    static void FireOnCollectionRemoveCompleteEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, int nIndex);

    // A generated class for a choice keeps the name of its selected member in a string, empty for none, and keeps it
    // right with these.

    /// Confirms or clears a selection. It cannot make a first one: an empty selection differs from every name.
    /// @throws CQvInvalidStateException if `bValid` is true and another member, or none, is selected.
    void Choice_SetElementValid(bool bValid, const wchar_t* lpctName, std::wstring& strCurrent);

    /// To be called when the member `lpctName` is assigned `pValue`. A null assigned while nothing is selected selects
    /// the member (docs/compatibility.md: Null in a choice).
    /// @throws CQvInvalidStateException if another member is selected and `pValue` is not null.
    void Choice_SelectElement(const wchar_t* lpctName, CXmlObjectBase* pValue, std::wstring& strCurrent);

    /// To be called when the collection of the member `lpctName` has changed and holds `lCount` items now.
    /// @throws CQvInvalidStateException if another member is selected and `lCount` is not 0.
    void Choice_CollectionChanged(const wchar_t* lpctName, long lCount, std::wstring& strCurrent);

    /// One step of reading a collection member of a choice: unless a member was read already (`lCount` above 0), lets
    /// the collection read at the cursor; if it consumed anything, moves the cursor, checks the occurrence count and
    /// counts one.
    void Choice_Read_Collection(CXmlCollectionBase* pCollection, CXmlElement* pElement, CXmlElement*& pCurrent,
                                long& lCount, const CXmlSerializationContext& context);

private:
    friend class QvXmlLib9Data::CAttributeInfo;
    friend class QvXmlLib9Data::CElementInfo;
    friend class CXmlCollection;

    /// Takes one reference away and leaves an object without any to the caller.
    void ReleaseWithoutDestruction();

    /// Destroys an object without references. It may hold the only reference to another one, and so on to any depth;
    /// where the stack would not bear that, the object is left to the outermost destruction of the thread.
    void Destroy();
    void DestroyNow();

    /// TestNamespace for the metadata, which test without an object.
    static void Throw_IfNamespaceIsInvalid(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                                           const wchar_t* lpctTargetNamespace);

    void WriteRoot(CXmlWriter& writer, const CXmlSerializationContext& context) const;
    void ReadRoot(CXmlDocument& document, const CXmlSerializationContext& context);

    CShortText m_strElementName;
    /// The count of references. While an object without any waits for its destruction, the next one that waits.
    std::atomic<std::intptr_t> m_nRefCount{0};
};

} // namespace QvXmlLib9
