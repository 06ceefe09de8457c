#include "quiver/document/XmlNodeStore.h"

#include <algorithm>
#include <new>

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

// A short document fits into the first block; long ones soon get by with few allocations.
constexpr std::size_t s_nFirstBlockSize = 2 * 1024;
constexpr std::size_t s_nLargestBlockSize = 64 * 1024;

#if defined(QV_SEPARATE_NODES)
// A pointer into a dead tree would otherwise go unnoticed.
constexpr bool s_bSeparateNodes = true;
#else
constexpr bool s_bSeparateNodes = false;
#endif

} // namespace

CXmlNodePool::CXmlNodePool(std::size_t nSlotSize, bool bSeparate)
    : m_nSlotSize(nSlotSize)
    , m_bSeparate(bSeparate)
    , m_nNextBlockSize(s_nFirstBlockSize)
{
}

CXmlNodePool::~CXmlNodePool() = default;

void* CXmlNodePool::AllocateFromNewBlock()
{
    if (m_bSeparate)
        return ::operator new(m_nSlotSize);
    const std::size_t nSize = m_nNextBlockSize / m_nSlotSize * m_nSlotSize;
    m_blocks.emplace_back(new unsigned char[nSize]);
    m_nNextBlockSize = std::min(2 * m_nNextBlockSize, s_nLargestBlockSize);
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
    : m_pDocument(pDocument)
    , m_elements(sizeof(CXmlElement), s_bSeparateNodes)
    , m_attributes(sizeof(CXmlAttribute), s_bSeparateNodes)
{
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner)
    : m_pDocument(pDocument)
    , m_pOwner(pOwner)
    , m_elements(sizeof(CXmlElement), true)
    , m_attributes(sizeof(CXmlAttribute), true)
{
}

CXmlNodeStore::~CXmlNodeStore()
{
    if (m_pRoot != nullptr)
        Destroy(m_pRoot);
}

CXmlElement* CXmlNodeStore::NewElement(const SXmlName& name)
{
    void* const pSlot = m_elements.Allocate();
    try
    {
        return new (pSlot) CXmlElement(*this, name);
    }
    catch (...)
    {
        m_elements.Free(pSlot);
        throw;
    }
}

CXmlAttribute* CXmlNodeStore::NewAttribute(const SXmlName& name)
{
    void* const pSlot = m_attributes.Allocate();
    try
    {
        return new (pSlot) CXmlAttribute(name);
    }
    catch (...)
    {
        m_attributes.Free(pSlot);
        throw;
    }
}

void CXmlNodeStore::DestroyAttributes(CXmlElement& element) noexcept
{
    for (CXmlAttribute* pAttribute : element.m_attributes)
    {
        pAttribute->CXmlAttribute::~CXmlAttribute();
        m_attributes.Free(pAttribute);
    }
    element.m_attributes.clear();
}

void CXmlNodeStore::Destroy(CXmlElement* pElement) noexcept
{
    pElement->m_pNextSibling = nullptr;
    while (pElement != nullptr)
    {
        CXmlElement* pNext = pElement->m_pNextSibling;
        if (pElement->m_pFirstChild != nullptr)
        {
            // The children take the place of their parent in the list of what is still to be destroyed.
            pElement->m_pLastChild->m_pNextSibling = pNext;
            pNext = pElement->m_pFirstChild;
            pElement->m_pFirstChild = nullptr;
        }
        DestroyAttributes(*pElement);
        pElement->CXmlElement::~CXmlElement();
        m_elements.Free(pElement);
        pElement = pNext;
    }
}

void CXmlNodeStore::DestroyContent(CXmlElement& element) noexcept
{
    CXmlElement* pChild = element.m_pFirstChild;
    element.m_pFirstChild = element.m_pLastChild = element.m_pBeforeLastChild = nullptr;
    while (pChild != nullptr)
    {
        CXmlElement* const pNext = pChild->m_pNextSibling;
        Destroy(pChild);
        pChild = pNext;
    }
    DestroyAttributes(element);
}

} // namespace QvXmlLib9
