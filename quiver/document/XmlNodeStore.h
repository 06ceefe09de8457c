#pragma once

#include "quiver/document/PrefixScopes.h"
#include "quiver/document/TreeMemory.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlNameTable.h"
#include "quiver/document/XmlText.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace QvXmlLib9
{

class CXmlDocument;

/// Memory for objects of one size. Slots that are given back are handed out again, so that a document whose elements
/// are dropped as they are read stays small; the memory itself goes with the pool.
class CXmlNodePool
{
public:
    /// @param nSlotSize bytes of one object, a multiple of its alignment and not below a pointer's size.
    /// @param bSeparate every slot is an allocation of its own, as `new` makes them, so that `delete` may free it and
    ///        memory checkers see each object.
    /// @param memory outlives the pool.
    CXmlNodePool(CTreeMemory& memory, std::size_t nSlotSize, bool bSeparate);

    /// The slots must all have been given back, or hold nothing that needs a destructor.
    ~CXmlNodePool();
    CXmlNodePool(const CXmlNodePool&) = delete;
    CXmlNodePool& operator=(const CXmlNodePool&) = delete;

    void* Allocate()
    {
        if (m_pFree != nullptr)
        {
            SFreeSlot* const pSlot = m_pFree;
            m_pFree = pSlot->pNext;
            return pSlot;
        }
        if (m_pNext == m_pEnd)
            return AllocateFromNewBlock();
        unsigned char* const pSlot = m_pNext;
        m_pNext += m_nSlotSize;
        return pSlot;
    }

    void Free(void* pSlot) noexcept;

private:
    struct SFreeSlot
    {
        SFreeSlot* pNext;
    };

    void* AllocateFromNewBlock();

    CTreeMemory& m_memory;
    const std::size_t m_nSlotSize;
    const bool m_bSeparate;
    std::size_t m_nNextBlockSize;
    SFreeSlot* m_pFree = nullptr;
    unsigned char* m_pNext = nullptr;
    unsigned char* m_pEnd = nullptr;
    std::vector<CTreeMemory::CBlock> m_blocks;
};

/// Owns the nodes, names and texts of one tree: that of a document, or that of an element which stands on its own.
class CXmlNodeStore
{
public:
    /// The store of a document; it owns the root that is handed to it.
    explicit CXmlNodeStore(const CXmlDocument* pDocument);

    /// The store of an element on its own, which destroys the store when it dies.
    CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner);

    ~CXmlNodeStore();
    CXmlNodeStore(const CXmlNodeStore&) = delete;
    CXmlNodeStore& operator=(const CXmlNodeStore&) = delete;

    const CXmlDocument* GetDocument() const { return m_pDocument; }
    bool IsOwnedBy(const CXmlElement* pElement) const { return m_pOwner == pElement; }

    CXmlNameTable& Names() { return m_names; }
    CXmlTextArena& Texts() { return m_texts; }

    /// A text that nodes may share; it lives as long as the store.
    /// @param fnAppend gets an arena and a text without content, and appends what it is to be.
    template <class Append>
    CXmlText* NewSharedText(Append fnAppend)
    {
        m_sharedTexts.push_back(nullptr);
        CXmlText*& pText = m_sharedTexts.back();
        fnAppend(m_sharedArena, pText);
        if (pText != nullptr)
            CXmlTextArena::Share(*pText);
        return pText;
    }

    /// The name of an element that has not got one yet.
    const SXmlName& GetEmptyName() const { return m_emptyName; }

    /// The attributes of elements without any; the list lives as long as the process.
    static const std::vector<CXmlAttribute*>& GetNoAttributes();

    /// How many elements and attributes the tree has had.
    std::uint64_t GetNodeCount() const { return m_nNodes; }

    /// A new element that stands nowhere yet.
    CXmlElement* NewElement(const SXmlName& name);
    CXmlAttribute* NewAttribute(const SXmlName& name);

    /// Between these two the nodes made are counted together, at the end. Nobody may look at the counts meanwhile.
    /// @{
    void BeginCountingTogether() { m_bCountsTogether = !m_bSeparate; }
    void EndCountingTogether() noexcept;
    /// @}

    /// Says that a node is going to have memory that does not come from here, a text that became a string or a list of
    /// attributes, or that nodes have gone ahead of the others. Any other tree goes as a whole. Any number of threads
    /// may say so at the same time.
    void NoteOwnership()
    {
        if (!m_bOwnsMore.load(std::memory_order_relaxed))
            m_bOwnsMore.store(true, std::memory_order_relaxed);
    }

    /// What it takes to undo an element: the sibling ahead of it, and where the texts stood.
    struct SMark
    {
        CXmlElement* pBefore;
        CXmlTextArena::SMark texts;
    };

    /// Notes the state ahead of an element that may be dropped at its end.
    void PushMark(CXmlElement* pBefore) { m_marks.push_back({pBefore, m_texts.GetMark()}); }
    SMark PopMark();

    /// A declaration of the element that is made next.
    void DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strUri);

    /// Gives an element the declarations that were made for it; see CPrefixScopes::Attach.
    void AttachPrefixes(const CXmlElement& element, bool bRoot, bool bKept)
    {
        if (m_pPrefixes != nullptr && m_pPrefixes->HasNext())
            m_pPrefixes->Attach(element, bRoot, bKept);
    }

    /// What a prefix stands for at an element, null if nobody declared it.
    const std::wstring* FindPrefix(const CXmlElement& element, std::wstring_view prefix) const;

    /// Makes the store own `pRoot` together with what is below it.
    void SetRoot(CXmlElement* pRoot) { m_pRoot = pRoot; }

    /// Destroys an element that stands in no list any more, with all that is below it. The stack that this takes does
    /// not depend on the depth of the tree.
    void Destroy(CXmlElement* pElement) noexcept;

    /// Destroys the children, attributes and text of an element.
    void DestroyContent(CXmlElement& element) noexcept;

private:
    CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner, bool bSeparate);

    /// The nodes of one class.
    struct SNodes
    {
        CInstanceMonitor::ClassType* pRecord = nullptr;
        std::uint64_t nLiving = 0;
        /// Living ones that the record does not know of yet.
        std::uint64_t nUncounted = 0;
    };

    template <class TNode>
    TNode* NewNode(CXmlNodePool& pool, SNodes& nodes, const SXmlName& name);
    static void CountNew(SNodes& nodes) noexcept;
    static void CountGone(SNodes& nodes) noexcept;
    bool GoesAsAWhole() const;
    void DestroyAttributes(CXmlElement& element) noexcept;

    const bool m_bSeparate;
    bool m_bCountsTogether = false;
    std::atomic<bool> m_bOwnsMore{false};
    const std::uint64_t m_nGeneration;
    const CXmlDocument* m_pDocument;
    const CXmlElement* m_pOwner;
    CXmlElement* m_pRoot = nullptr;
    CXmlNameTable m_names;
    const SXmlName m_emptyName;
    CTreeMemory m_memory;
    CXmlTextArena m_texts;
    CXmlTextArena m_sharedArena;
    std::vector<CXmlText*> m_sharedTexts;
    CXmlNodePool m_elementPool;
    CXmlNodePool m_attributePool;
    SNodes m_elements;
    SNodes m_attributes;
    std::vector<SMark> m_marks;
    std::unique_ptr<CPrefixScopes> m_pPrefixes;
    std::uint64_t m_nNodes = 0;
};

} // namespace QvXmlLib9
