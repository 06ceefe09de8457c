#include "quiver/document/XmlNodeStore.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#define QV_SEPARATE_NODES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QV_SEPARATE_NODES 1
#endif
#endif

namespace QvXmlLib9
{

namespace
{

#if defined(QV_SEPARATE_NODES)
// A pointer into a dead tree would otherwise go unnoticed.
constexpr bool s_bSeparateNodes = true;
#else
constexpr bool s_bSeparateNodes = false;
#endif

/// Makes an object in a slot, which goes back if that fails.
template <class Make>
auto Construct(CXmlNodePool& pool, Make make)
{
    void* const pSlot = pool.Allocate();
    try
    {
        return make(pSlot);
    }
    catch (...)
    {
        pool.Free(pSlot);
        throw;
    }
}

} // namespace

CXmlNodePool::CXmlNodePool(CTreeMemory& memory, std::size_t nSlotSize, bool bSeparate)
    : m_memory(memory)
    , m_nSlotSize(nSlotSize)
    , m_bSeparate(bSeparate)
    , m_nNextBlockSize(CTreeMemory::s_nFirstBlockSize)
{
}

CXmlNodePool::~CXmlNodePool() = default;

void* CXmlNodePool::AllocateFromNewBlock()
{
    if (m_bSeparate)
        return ::operator new(m_nSlotSize);
    m_blocks.push_back(m_memory.Allocate(m_nNextBlockSize));
    const std::size_t nSize = m_nNextBlockSize / m_nSlotSize * m_nSlotSize;
    m_nNextBlockSize = std::min(2 * m_nNextBlockSize, CTreeMemory::s_nLargestBlockSize);
    unsigned char* const pBlock = m_blocks.back().get();
    m_pNext = pBlock + m_nSlotSize;
    m_pEnd = pBlock + nSize;
    return pBlock;
}

void CXmlNodePool::Free(void* pSlot) noexcept
{
    if (m_bSeparate)
        ::operator delete(pSlot);
    else
        m_pFree = new (pSlot) SFreeSlot{m_pFree};
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument)
    : CXmlNodeStore(pDocument, nullptr, s_bSeparateNodes)
{
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner)
    : CXmlNodeStore(pDocument, pOwner, true)
{
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner, bool bSeparate)
    : m_bSeparate(bSeparate)
    , m_nGeneration(CInstanceClass::GetGeneration())
    , m_pDocument(pDocument)
    , m_pOwner(pOwner)
    , m_names(this)
    , m_emptyName{std::wstring(), &CXmlText::GetEmpty(), this}
    , m_memory(bSeparate)
    , m_texts(m_memory)
    , m_sharedArena(m_memory)
    , m_elementPool(m_memory, sizeof(CXmlElement), bSeparate)
    , m_attributePool(m_memory, sizeof(CXmlAttribute), bSeparate)
{
}

CXmlNodeStore::~CXmlNodeStore()
{
    EndCountingTogether();
    if (GoesAsAWhole())
    {
        CountGone(m_elements);
        CountGone(m_attributes);
        m_texts.DestroyStrings();
    }
    else if (m_pRoot != nullptr)
        Destroy(m_pRoot);
    for (CXmlText* pText : m_sharedTexts)
    {
        if (pText != nullptr)
            std::destroy_at(pText);
    }
}

/// Whether no node has anything that its destructor would have to give back. The counts are those of the time when the
/// store was made, so what was counted anew since then is counted node by node.
bool CXmlNodeStore::GoesAsAWhole() const
{
    return !m_bSeparate && !m_bOwnsMore.load(std::memory_order_relaxed) &&
           m_nGeneration == CInstanceClass::GetGeneration();
}

void CXmlNodeStore::CountNew(SNodes& nodes) noexcept
{
    if (nodes.nUncounted != 0)
        CInstanceClass::CountCreations(*nodes.pRecord, std::exchange(nodes.nUncounted, 0));
}

void CXmlNodeStore::CountGone(SNodes& nodes) noexcept
{
    if (nodes.nLiving != 0)
        CInstanceClass::CountDestructions(*nodes.pRecord, nodes.nLiving);
}

void CXmlNodeStore::EndCountingTogether() noexcept
{
    m_bCountsTogether = false;
    CountNew(m_elements);
    CountNew(m_attributes);
}

const std::vector<CXmlAttribute*>& CXmlNodeStore::GetNoAttributes()
{
    static const auto* const s_pNone = new std::vector<CXmlAttribute*>;
    return *s_pNone;
}

template <class TNode>
TNode* CXmlNodeStore::NewNode(CXmlNodePool& pool, SNodes& nodes, const SXmlName& name)
{
    if (nodes.pRecord == nullptr)
        nodes.pRecord = TNode::InstanceClass().GetRecord();
    TNode* pNode = nullptr;
    if (m_bCountsTogether)
    {
        pNode = new (pool.Allocate()) TNode(name, CInstanceMonitor::SCountedTogether{nodes.pRecord});
        ++nodes.nUncounted;
    }
    else
        pNode = Construct(pool, [&name](void* pSlot) { return new (pSlot) TNode(name); });
    ++nodes.nLiving;
    ++m_nNodes;
    return pNode;
}

CXmlElement* CXmlNodeStore::NewElement(const SXmlName& name)
{
    return NewNode<CXmlElement>(m_elementPool, m_elements, name);
}

CXmlAttribute* CXmlNodeStore::NewAttribute(const SXmlName& name)
{
    return NewNode<CXmlAttribute>(m_attributePool, m_attributes, name);
}

void CXmlNodeStore::DeclarePrefix(const std::wstring& strPrefix, const std::wstring& strUri)
{
    if (m_pPrefixes == nullptr)
        m_pPrefixes = std::make_unique<CPrefixScopes>();
    m_pPrefixes->Declare(strPrefix, strUri);
}

const std::wstring* CXmlNodeStore::FindPrefix(const CXmlElement& element, std::wstring_view prefix) const
{
    return m_pPrefixes != nullptr ? m_pPrefixes->Find(m_pRoot, element, prefix) : nullptr;
}

CXmlNodeStore::SMark CXmlNodeStore::PopMark()
{
    const SMark mark = m_marks.back();
    m_marks.pop_back();
    return mark;
}

void CXmlNodeStore::DestroyAttributes(CXmlElement& element) noexcept
{
    CXmlAttribute* const pLast = std::exchange(element.m_pLastAttribute, nullptr);
    CXmlAttribute* pNext = pLast->m_pNext;
    delete pNext->m_pList.load(std::memory_order_acquire);
    for (bool bLast = false; !bLast;)
    {
        CXmlAttribute* const pAttribute = pNext;
        pNext = pAttribute->m_pNext;
        bLast = pAttribute == pLast;
        pAttribute->CXmlAttribute::~CXmlAttribute();
        m_attributePool.Free(pAttribute);
        --m_attributes.nLiving;
    }
}

void CXmlNodeStore::Destroy(CXmlElement* pElement) noexcept
{
    // What has gone by itself must not go again with the whole.
    NoteOwnership();
    pElement->m_pNextSibling = nullptr;
    while (pElement != nullptr)
    {
        CXmlElement* pNext = pElement->m_pNextSibling;
        if (pElement->m_pFirstChild != nullptr)
        {
            // The children take the place of their parent in the list of what is still to be destroyed.
            pElement->m_pLastChild->m_pNextSibling = pNext;
            pNext = std::exchange(pElement->m_pFirstChild, nullptr);
        }
        pElement->CXmlElement::~CXmlElement();
        m_elementPool.Free(pElement);
        --m_elements.nLiving;
        pElement = pNext;
    }
}

void CXmlNodeStore::DestroyContent(CXmlElement& element) noexcept
{
    CXmlElement* pChild = std::exchange(element.m_pFirstChild, nullptr);
    while (pChild != nullptr)
    {
        CXmlElement* const pNext = pChild->m_pNextSibling;
        Destroy(pChild);
        pChild = pNext;
    }
    if (element.m_pLastAttribute != nullptr)
        DestroyAttributes(element);
    if (element.m_pText != nullptr)
        std::exchange(element.m_pText, nullptr)->Release();
}

} // namespace QvXmlLib9
