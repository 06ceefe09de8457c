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

// A short document fits into the first block; long ones soon get by with few allocations.
constexpr std::size_t s_nFirstBlockSize = 2 * 1024;
constexpr std::size_t s_nLargestBlockSize = 64 * 1024;

#if defined(QV_SEPARATE_NODES)
// A pointer into a dead tree would otherwise go unnoticed.
constexpr bool s_bSeparateNodes = true;
#else
constexpr bool s_bSeparateNodes = false;
#endif

using CAttributeList = std::vector<CXmlAttribute*>;

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
    : CXmlNodeStore(pDocument, nullptr, s_bSeparateNodes)
{
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner)
    : CXmlNodeStore(pDocument, pOwner, true)
{
}

CXmlNodeStore::CXmlNodeStore(const CXmlDocument* pDocument, const CXmlElement* pOwner, bool bSeparate)
    : m_pDocument(pDocument)
    , m_pOwner(pOwner)
    , m_names(this)
    , m_emptyName{std::wstring(), &CXmlText::GetEmpty(), this}
    , m_elements(sizeof(CXmlElement), bSeparate)
    , m_attributes(sizeof(CXmlAttribute), bSeparate)
    , m_attributeLists(sizeof(CAttributeList), bSeparate)
{
}

CXmlNodeStore::~CXmlNodeStore()
{
    if (m_pRoot != nullptr)
        Destroy(m_pRoot);
    for (CXmlText* pText : m_sharedTexts)
    {
        if (pText != nullptr)
            std::destroy_at(pText);
    }
}

const std::vector<CXmlAttribute*>& CXmlNodeStore::GetNoAttributes()
{
    static const CAttributeList* const s_pNone = new CAttributeList;
    return *s_pNone;
}

CXmlElement* CXmlNodeStore::NewElement(const SXmlName& name)
{
    ++m_nNodes;
    return Construct(m_elements, [&name](void* pSlot) { return new (pSlot) CXmlElement(name); });
}

CXmlAttribute* CXmlNodeStore::NewAttribute(const SXmlName& name)
{
    ++m_nNodes;
    return Construct(m_attributes, [&name](void* pSlot) { return new (pSlot) CXmlAttribute(name); });
}

std::vector<CXmlAttribute*>* CXmlNodeStore::NewAttributeList()
{
    return Construct(m_attributeLists, [](void* pSlot) { return new (pSlot) CAttributeList; });
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
    for (CXmlAttribute* pAttribute : *element.m_pAttributes)
    {
        pAttribute->CXmlAttribute::~CXmlAttribute();
        m_attributes.Free(pAttribute);
    }
    std::destroy_at(element.m_pAttributes);
    m_attributeLists.Free(std::exchange(element.m_pAttributes, nullptr));
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
            pNext = std::exchange(pElement->m_pFirstChild, nullptr);
        }
        pElement->CXmlElement::~CXmlElement();
        m_elements.Free(pElement);
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
    if (element.m_pAttributes != nullptr)
        DestroyAttributes(element);
    if (element.m_pText != nullptr)
        std::exchange(element.m_pText, nullptr)->Release();
}

} // namespace QvXmlLib9
