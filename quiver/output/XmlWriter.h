#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/output/NamespaceScopes.h"
#include "quiver/output/ShortUnits.h"
#include "quiver/values/ItemType.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QvXmlLib9
{

/// The sink to which every bindable object writes itself: elements, attributes, text and namespaces, not bytes.
/// `CXmlTextWriter` makes XML text of them, `CFastInfosetWriter` a Fast Infoset document.
///
///     writer.Open();
///     writer.SetDefaultNamespace(L"urn:a");
///     writer.StartElement(L"order", L"urn:a");
///     writer.WriteAttribute(L"id", L"", L"1", ItemType_i4);
///     writer.StartElement(L"item", L"urn:a");
///     writer.WriteText(L"a<b", ItemType_string);
///     writer.EndElement();
///     writer.EndElement();
///     writer.Close();
///
/// Elements nest properly; the attributes of an element come before its text and its children. What applies to the root
/// (default namespace, prefixes, comments, processing instructions) comes before it is started.
///
/// Every text argument ends at its first zero unit, as zero-terminated text does, and may be forgotten by the caller
/// when the call returns. A code point above 0xFFFF in one element of the text is written as its surrogate pair.
///
/// A writer is used by one thread, for one document, and is then destroyed. It can be destroyed at any time, also with
/// elements open.
class QVXMLLIB_API CXmlWriter : public CInstanceMonitor
{
public:
    CXmlWriter(const CXmlWriter&) = delete;
    CXmlWriter& operator=(const CXmlWriter&) = delete;

    // The order of the virtual operations is part of the interface.

    ~CXmlWriter() override;

    /// Starts output.
    virtual void Open();

    /// Ends output.
    /// @throws CQvException "An Element has not been closed."
    virtual void Close();

    /// Sets the default namespace: of the document before the root is started, of the open element's scope afterwards.
    /// Names in the default namespace are written without a prefix. Only the document's is declared in the output.
    virtual void SetDefaultNamespace(std::wstring_view svNamespace);

    /// Binds a prefix to a namespace, for the document before the root is started, for the open element's scope
    /// afterwards. Only the document's bindings are declared in the output.
    virtual void AddNamespaceMapping(std::wstring_view svPrefix, std::wstring_view svNamespace);

    /// Writes a comment.
    /// @param svText what stands between the delimiters.
    virtual void WriteComment(std::wstring_view svText) = 0;

    /// Writes a processing instruction.
    /// @param svText the whole instruction, delimiters included.
    virtual void WriteProcessingInstruction(std::wstring_view svText) = 0;

    /// Writes schema text into the element whose start tag is open.
    virtual void WriteInlineSchema(std::wstring_view svText) = 0;

    /// Starts an element inside the one that is open, or the root.
    /// @param svName the local name.
    /// @param svNamespace the namespace URI, empty for none. A namespace without a prefix gets one.
    virtual void StartElement(std::wstring_view svName, std::wstring_view svNamespace) = 0;

    /// Writes text into the open element. Empty text writes nothing.
    /// @param eType the kind of value that the text was made of; a binary format encodes it accordingly.
    virtual void WriteText(std::wstring_view svValue, ItemType eType) = 0;

    /// Ends the open element.
    virtual void EndElement() = 0;

    /// Writes an attribute of the open element.
    /// @param svNamespace the namespace URI, empty for none.
    /// @param eType as for WriteText.
    /// @throws CQvException "Attributes must be added before elements" once the element has text or a child.
    virtual void WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace, std::wstring_view svValue,
                                ItemType eType) = 0;

    /// Writes the attribute `xsi:type` of the open element.
    /// @param svTypeNamespace the namespace of the type, empty for none.
    /// @param svTypeName the local name of the type.
    /// @throws CQvException as for WriteAttribute.
    virtual void WriteXsiType(std::wstring_view svTypeNamespace, std::wstring_view svTypeName, ItemType eType) = 0;

    /// Writes the attribute `xsi:nil` of the open element, with the value "true".
    /// @throws CQvException as for WriteAttribute.
    virtual void WriteXsiNil() = 0;

    /// Makes sure that a value on the open element, or inside it, can name a namespace: declares a prefix unless one is
    /// in force. To be called ahead of the element's attributes.
    /// @param svPrefix the prefix to declare if it is free.
    /// @return the prefix in force; empty for the default namespace and for none.
    std::wstring DeclareForValue(std::wstring_view svPrefix, std::wstring_view svNamespace);

    /// Prefixes by namespace, in the order of the URIs.
    using NamespaceMap = std::map<std::wstring, std::wstring>;

    /// The first of the prefixes that FormatPrefix makes of 0, 1, 2, ... that no namespace of `map` has.
    static std::wstring GeneratePrefix(const NamespaceMap& map);

    /// The prefix of a number: AA, AB, ..., AZ, BA, ... There is no bound: from 676 on the first unit lies behind "Z".
    static std::wstring FormatPrefix(unsigned int n) { return CNamespaceScopes::FormatPrefix(n); }

protected:
    /// The record of an open element.
    class CXmlWriterContext;

    /// How a writer declares a prefix for a value. Not one of the virtual operations, whose number is fixed.
    using PfnDeclareForValue = std::wstring (*)(CXmlWriter& writer, std::wstring_view svPrefix,
                                                std::wstring_view svNamespace);

    /// @param lpctClassName the name under which instances are counted.
    /// @param pfnDeclareForValue null where no value needs a prefix.
    explicit CXmlWriter(const wchar_t* lpctClassName, PfnDeclareForValue pfnDeclareForValue = nullptr);

    /// A record for an element inside the open one, or for a root, whose scope then begins with the document's default
    /// namespace and bindings. It does not become the open element yet. The writer owns it.
    CXmlWriterContext* CreateContext(std::wstring_view svName, std::wstring_view svNamespace);

    /// Gives the open element's record up, and with it what its scope declared; the enclosing element, if there is one,
    /// becomes the open one.
    void PopContext();

    // The following work on the scope of the innermost record, whether it is the open element's already or not.

    /// Default namespace of the scope; empty for none.
    std::wstring_view GetDefaultNamespace() const { return m_defaultNamespaces.back(); }

    /// How names in the namespace of an element are written.
    struct SElementPrefix
    {
        /// Without a prefix: there is no namespace, or it is the default one.
        bool bBare = true;
        /// The prefix bound to the namespace otherwise, null if there is none yet.
        const std::wstring* pstrPrefix = nullptr;
    };

    /// The prefix of the innermost record's namespace; valid until the scope changes.
    const SElementPrefix& GetElementPrefix(const CXmlWriterContext& context);

    /// Another number whenever default namespace or bindings of the scope may have changed.
    std::uint64_t GetScopeVersion() const { return m_nScopeVersion; }

    /// Whether what a writer has made of an element's name still holds: the same namespace, in the same scope.
    inline bool IsTagCurrent(const CXmlWriterContext& context) const;
    inline void SetTagCurrent(CXmlWriterContext& context) const;
    /// Makes all of that invalid.
    void ForgetTags() { ++m_nScopeVersion; }

    /// The prefix bound to a namespace, or null; valid until the next binding.
    const std::wstring* FindPrefix(std::wstring_view svNamespace) const
    {
        const std::size_t nBinding = m_scopes.Find(svNamespace);
        return nBinding == CNamespaceScopes::s_nNotFound ? nullptr : &m_scopes.GetPrefix(nBinding);
    }

    /// The prefix bound to a namespace. An unknown namespace gets an empty prefix in the nearest scope that has
    /// bindings of its own, and is known from then on.
    const std::wstring& GetNamespaceMapValue(std::wstring_view svNamespace);

    /// Binds a prefix in the scope of `context`.
    void SetNamespaceMapValue(CXmlWriterContext& context, std::wstring_view svNamespace, std::wstring_view svPrefix);

    /// The same with a prefix of choice if no namespace has it.
    const std::wstring& BindPrefix(CXmlWriterContext& context, std::wstring_view svNamespace,
                                   std::wstring_view svPrefix);

    /// Whether an element has declared anything, as few have.
    static inline bool HasOwnScope(const CXmlWriterContext& context);

    /// What an element that has a scope of its own and no content yet has bound, by prefix and namespace.
    std::vector<std::pair<std::wstring, std::wstring>> GetOwnBindings(const CXmlWriterContext& context) const;

    /// A prefix that no namespace has, bound to `strNamespace` in the scope of `context`.
    const std::wstring& BindGeneratedPrefix(CXmlWriterContext& context, std::wstring_view svNamespace);

    /// The open element. Calling for one while none is open is a programming error.
    CXmlWriterContext& GetOpenElement() const;

    /// The open element, to which attributes can still be added.
    /// @throws CQvException "Attributes must be added before elements"
    CXmlWriterContext& GetOpenStartTag() const;

    /// Default namespace set before the root was started.
    std::wstring m_strDefaultNamespace;
    /// The innermost open element, null while there is none.
    CXmlWriterContext* m_pContext = nullptr;
    /// Bindings made before the root was started, and "xml".
    NamespaceMap m_mapNamespaces;

private:
    const PfnDeclareForValue m_pfnDeclareForValue;
    /// What one scope declares and inherits, in full.
    struct SScope
    {
        CXmlWriterContext* pContext;
        std::wstring strDefaultNamespace;
        NamespaceMap mapNamespaces;
    };

    const std::wstring& Bind(std::wstring_view svNamespace, std::wstring_view svPrefix);
    void BeginScope(CXmlWriterContext& context);
    void SetScopeDefaultNamespace(CXmlWriterContext& context, std::wstring_view svNamespace);
    bool HasInnerScopes(const CXmlWriterContext& context) const;
    CXmlWriterContext& GetScopeOwner(CXmlWriterContext& context) const;
    std::size_t GetBindingsEnd(const CXmlWriterContext& context) const;
    const std::wstring& GetDefaultNamespace(const CXmlWriterContext& context) const;
    NamespaceMap GetNamespaceMap(const CXmlWriterContext& context) const;
    template <class TChange>
    void ChangeOuterScope(const CXmlWriterContext& context, TChange Change);
    void RestoreScopes(const std::vector<SScope>& scopes);
    void RestoreBindings(const NamespaceMap& mapOuter, const NamespaceMap& mapInner);
    void BeginRootScope(CXmlWriterContext& context);
    void DropContextsTo(std::size_t nCount);
    CXmlWriterContext& TakeContext(std::wstring_view svName);
    CXmlWriterContext& FindContext(std::wstring_view svName);
    CXmlWriterContext& TakeSpareContext();
    void SetContextNamespace(CXmlWriterContext& context, std::wstring_view svNamespace);

    /// A record and the key of its name.
    struct SNamed
    {
        std::uint64_t nKey = 0;
        CXmlWriterContext* pContext = nullptr;
    };

    /// All records. One that was given up keeps its name, with what the writer made of it, and serves the next element
    /// of that name.
    std::vector<std::unique_ptr<CXmlWriterContext>> m_pool;
    /// Records by name: a few places for each key.
    static constexpr std::size_t s_nNamed = 64;
    static constexpr std::size_t s_nPlaces = 4;
    std::array<SNamed, s_nNamed> m_named{};
    /// Records that found no such place and are not in use.
    std::vector<CXmlWriterContext*> m_spare;
    CXmlWriterContext* m_pLastTaken = nullptr;
    /// Records in use, by depth.
    std::vector<CXmlWriterContext*> m_contexts;
    CNamespaceScopes m_scopes;
    /// Default namespaces of the scopes that have set one, innermost last.
    std::vector<std::wstring> m_defaultNamespaces;
    std::uint64_t m_nScopeVersion = 1;
    std::uint64_t m_nNamespaceIds = 0;
    /// What GetElementPrefix returned last, and for which namespace and scope: nearly always those of the next call.
    SElementPrefix m_lastPrefix;
    std::uint64_t m_nLastPrefixNamespaceId = 0;
    std::uint64_t m_nLastPrefixVersion = 0;
};

/// One open element. A scope pays for namespace data only when it declares something.
///
/// The operations work on every element that is open, not only on the innermost. An element inherits the namespace data
/// of the enclosing one until it sets some of its own; from then on it has a copy, which changes of the enclosing
/// element do not reach any more. They take constant time on the innermost scope, but for GetNamespaceMap; changing an
/// enclosing scope while an inner one has a copy takes as long as all the bindings in force.
class QVXMLLIB_API CXmlWriter::CXmlWriterContext
{
public:
    /// Default namespace in force in the element; empty for none.
    std::wstring GetDefaultNamespace() const;

    /// Sets the default namespace of the element and of those inside it that have no namespace data of their own.
    void SetDefaultNamespace(std::wstring_view svNamespace);

    /// A copy of the bindings in force in the element.
    NamespaceMap GetNamespaceMap() const;

    /// The prefix bound to a namespace. An unknown one is entered with an empty prefix, in the scope that the element
    /// has or inherits, and is known from then on.
    std::wstring GetNamespaceMapValue(const std::wstring& strNamespace);
    /// @param lpctNamespace null counts as empty.
    std::wstring GetNamespaceMapValue(const wchar_t* lpctNamespace);

    /// Binds a prefix to a namespace in the element and in those inside it that have no namespace data of their own. It
    /// is not declared in the output by that.
    void SetNamespaceMapValue(std::wstring_view svNamespace, std::wstring_view svPrefix);

    /// Child elements started inside this element.
    std::uint32_t m_dwChildCount = 0;
    /// 0 for the root.
    std::uint32_t m_dwDepth = 0;
    /// Attributes may still be added.
    bool m_bStartTagOpen = true;
    /// Used by `CFastInfosetWriter`: the list of attributes has begun.
    bool m_bAttributesOpen = false;
    /// Used by `CXmlTextWriter`: how the start tag begins, and the end tag with what follows it.
    CShortUnits m_startTag;
    CShortUnits m_endTag;
    /// Used by `CFastInfosetWriter`: the index of the name.
    std::uint32_t m_dwNameIndex = 0;
    std::wstring m_strElementName;
    /// The namespace as given to `StartElement`.
    std::wstring_view m_svNamespace;
    /// Equal for records only if their namespaces are equal.
    std::uint64_t m_nNamespaceId = 0;
    CXmlWriterContext* m_pParent = nullptr;

private:
    friend class CXmlWriter;

    CXmlWriter* m_pWriter = nullptr;
    bool m_bInUse = false;
    /// It belongs to none of the places by name.
    bool m_bSpare = false;
    /// The record that was taken behind this one the last time.
    CXmlWriterContext* m_pFollower = nullptr;
    /// For which namespace and scope the writer has made something of the name.
    std::uint64_t m_nTagNamespaceId = 0;
    std::uint64_t m_nTagVersion = 0;

    /// The scope has declared nothing of its own so far.
    bool m_bInheritsNamespaces = true;
    bool m_bOwnsDefaultNamespace = false;
    /// Bindings that were there when the scope declared its first.
    std::size_t m_nOuterBindings = 0;
    /// What `m_svNamespace` refers to unless the enclosing element has the same namespace.
    std::wstring m_strNamespaceBuffer;
    std::uint64_t m_nNamespaceBufferId = 0;
    /// The record is counted as an instance while it stands for an element.
    CInstanceMonitor::ClassType* m_pct = nullptr;
};

inline bool CXmlWriter::HasOwnScope(const CXmlWriterContext& context)
{
    return !context.m_bInheritsNamespaces;
}

inline bool CXmlWriter::IsTagCurrent(const CXmlWriterContext& context) const
{
    return context.m_nTagVersion == m_nScopeVersion && context.m_nTagNamespaceId == context.m_nNamespaceId;
}

inline void CXmlWriter::SetTagCurrent(CXmlWriterContext& context) const
{
    context.m_nTagVersion = m_nScopeVersion;
    context.m_nTagNamespaceId = context.m_nNamespaceId;
}

} // namespace QvXmlLib9
