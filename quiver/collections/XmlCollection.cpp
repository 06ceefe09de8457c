#include "quiver/collections/XmlCollection.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace QvXmlLib9
{

// --- CXmlCollectionBase ---------------------------------------------------------------------------------------------

CXmlCollectionBase::CXmlCollectionBase()
    : CXmlCollectionBase(L"", L"", 0, -1)
{
}

CXmlCollectionBase::CXmlCollectionBase(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs,
                                       int nMaxOccurs)
    : m_strNamespace(lpctNamespace)
    , m_nMinOccurs(nMinOccurs)
    , m_nMaxOccurs(nMaxOccurs)
{
    SetElementName(lpctElementName);
}

CXmlCollectionBase::CXmlCollectionBase(const CXmlCollectionBase& source) = default;
CXmlCollectionBase& CXmlCollectionBase::operator=(const CXmlCollectionBase& source) = default;
CXmlCollectionBase::~CXmlCollectionBase() = default;

CXmlObjectBase* CXmlCollectionBase::GetBase()
{
    return this;
}

std::wstring CXmlCollectionBase::GetNamespace() const
{
    return m_strNamespace.Get();
}

std::wstring CXmlCollectionBase::GetTargetNamespace() const
{
    throw CQvException(L"CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection (program "
                       L"logic error)");
}

void CXmlCollectionBase::AttributesToXml_Int(CXmlWriter* /*pWriter*/, const CXmlSerializationContext& /*context*/) const
{
}

void CXmlCollectionBase::ValidateCount(const CXmlSerializationContext& context) const
{
    if (context.GetIgnoreInvalidCollectionCounts())
        return;
    const int nCount = GetCount();
    if (nCount > m_nMaxOccurs && m_nMaxOccurs != -1)
        throw CQvValidationException(
            FormatString(L"The Maximum number of [%s] elements allowed in this collection is %d", ElementName().c_str(),
                         m_nMaxOccurs));
    if (nCount < m_nMinOccurs)
        throw CQvValidationException(
            FormatString(L"The Minimum number of [%s] elements allowed in this collection is %d", ElementName().c_str(),
                         m_nMinOccurs));
}

bool CXmlCollectionBase::IsValidCount(const CXmlSerializationContext& context) const
{
    if (context.GetIgnoreInvalidCollectionCounts())
        return true;
    const int nCount = GetCount();
    return (nCount <= m_nMaxOccurs || m_nMaxOccurs == -1) && nCount >= m_nMinOccurs;
}

void CXmlCollectionBase::AddEventListener(IEventSink* pSink)
{
    m_lstEventListeners.push_back(pSink);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* pSink)
{
    if (m_nDelivering == 0)
        m_lstEventListeners.remove(pSink);
    else
        std::replace(m_lstEventListeners.begin(), m_lstEventListeners.end(), pSink, static_cast<IEventSink*>(nullptr));
}

template <class TDeliver>
void CXmlCollectionBase::Deliver(TDeliver DeliverTo)
{
    if (m_lstEventListeners.empty())
        return;

    struct CDelivery
    {
        explicit CDelivery(CXmlCollectionBase& collection)
            : m_collection(collection)
        {
            ++m_collection.m_nDelivering;
        }
        ~CDelivery()
        {
            if (--m_collection.m_nDelivering == 0)
                m_collection.m_lstEventListeners.remove(nullptr);
        }
        CXmlCollectionBase& m_collection;
    };

    const CDelivery delivery(*this);
    for (IEventSink* pSink : m_lstEventListeners)
    {
        if (pSink != nullptr)
            DeliverTo(pSink);
    }
}

void CXmlCollectionBase::FireOnCollectionAdd(void* pItem)
{
    Deliver([&](IEventSink* pSink) { FireOnCollectionAddEvent(pSink, this, pItem); });
}

void CXmlCollectionBase::FireOnCollectionAddComplete(void* pItem)
{
    Deliver([&](IEventSink* pSink) { FireOnCollectionAddCompleteEvent(pSink, this, pItem); });
}

void CXmlCollectionBase::FireOnCollectionChange()
{
    Deliver([&](IEventSink* pSink) { FireOnCollectionChangeEvent(pSink, this); });
}

void CXmlCollectionBase::FireOnCollectionRemove(int nIndex)
{
    Deliver([&](IEventSink* pSink) { FireOnCollectionRemoveEvent(pSink, this, nIndex); });
}

void CXmlCollectionBase::FireOnCollectionRemoveComplete(int nIndex)
{
    Deliver([&](IEventSink* pSink) { FireOnCollectionRemoveCompleteEvent(pSink, this, nIndex); });
}

void CXmlCollectionBase::Throw_IfIndexIsOutOfRange(int nIndex) const
{
    const int nCount = GetCount();
    if (nIndex > nCount - 1 || nIndex < 0)
        throw CQvInvalidParamException(FormatString(L"Index %d is out of range, use 0 - %d", nIndex, nCount));
}

// --- Nodes ----------------------------------------------------------------------------------------------------------

namespace
{

/// A removal that has been announced. A listener may remove the node itself, and what it adds next may lie at the same
/// address, so the removals of a thread in progress are told which nodes go.
class CRemoval
{
public:
    explicit CRemoval(CNode* pNode)
        : m_pNode(pNode)
        , m_pOuter(t_pInnermost)
    {
        t_pInnermost = this;
    }
    ~CRemoval() { t_pInnermost = m_pOuter; }
    CRemoval(const CRemoval&) = delete;
    CRemoval& operator=(const CRemoval&) = delete;

    bool IsDone() const { return m_pNode == nullptr; }

    static void SetDone(const CNode* pNode)
    {
        for (CRemoval* pRemoval = t_pInnermost; pRemoval != nullptr; pRemoval = pRemoval->m_pOuter)
        {
            if (pRemoval->m_pNode == pNode)
                pRemoval->m_pNode = nullptr;
        }
    }

private:
    static thread_local CRemoval* t_pInnermost;

    const CNode* m_pNode;
    CRemoval* m_pOuter;
};
thread_local CRemoval* CRemoval::t_pInnermost = nullptr;

/// Where a thread found the last node that it asked for by position.
struct SPlace
{
    std::uint64_t m_nOrderId = 0;
    int m_nIndex = 0;
    CNode* m_pNode = nullptr;
};
thread_local SPlace t_lastPlace;

/// So near an end of the list, remembering the place is not worth it.
constexpr int s_nNearEnd = 8;

[[noreturn]] void Throw_NotFound()
{
    throw CQvInvalidParamException(L"The object was not found in the collection");
}

CNode* Step(CNode* pNode, int nSteps)
{
    for (; nSteps > 0 && pNode != nullptr; --nSteps)
        pNode = pNode->m_pNext;
    for (; nSteps < 0 && pNode != nullptr; ++nSteps)
        pNode = pNode->m_pPrev;
    return pNode;
}

} // namespace

// --- CXmlCollection -------------------------------------------------------------------------------------------------

CXmlCollection::CXmlCollection() = default;

CXmlCollection::CXmlCollection(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs,
                               int nMaxOccurs)
    : CXmlCollectionBase(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CXmlCollection::CXmlCollection(const CXmlCollection& source) = default;
CXmlCollection& CXmlCollection::operator=(const CXmlCollection& source) = default;

CXmlCollection::~CXmlCollection()
{
    // With nobody to hear of it there is nothing to announce.
    while (m_pHead != nullptr && !HasListeners())
        Discard(m_pHead);
    while (m_pHead != nullptr)
    {
        CNode* const pNode = m_pHead;
        try
        {
            Clear();
        }
        catch (...)
        {
            // A destructor has nobody to report to, so what a listener throws ends here. The others hear of the items
            // that are left.
            if (pNode == m_pHead)
                Discard(pNode);
        }
    }
}

int CXmlCollection::GetCount() const
{
    return m_nCount;
}

void CXmlCollection::Clear()
{
    while (m_nCount >= 1)
        Remove(0);
}

void CXmlCollection::Remove(int nIndex)
{
    RemoveNode(GetNodeAtIndex(nIndex));
}

void CXmlCollection::AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const
{
    for (const CNode* pNode = m_pHead; pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::AttributesToXml_Int(pNode->m_pItem->GetBase(), pWriter, context);
}

void CXmlCollection::AppendItem(CXmlObjectBase* pItem)
{
    InsertItem(pItem, [] { return nullptr; });
}

void CXmlCollection::AppendItem(CSmartPtr<CXmlObjectBase>&& spItem)
{
    if (spItem == nullptr || HasListeners())
    {
        AppendItem(static_cast<CXmlObjectBase*>(spItem));
        return;
    }
    // With nobody to hear of it there is nothing to keep the item for meanwhile.
    auto pNode = std::make_unique<CNode>();
    pNode->m_pItem = std::move(spItem);
    Link(pNode.release(), nullptr);
}

void CXmlCollection::PrependItem(CXmlObjectBase* pItem)
{
    InsertItem(pItem, [this] { return m_pHead; });
}

void CXmlCollection::AddAfterItem(const CXmlObjectBase* pExisting, CXmlObjectBase* pNew)
{
    if (pExisting == nullptr)
        PrependItem(pNew);
    else
        InsertItem(pNew, [&] { return GetNodeForItem(pExisting)->m_pNext; });
}

void CXmlCollection::AddBeforeItem(const CXmlObjectBase* pExisting, CXmlObjectBase* pNew)
{
    if (pExisting == nullptr)
        AppendItem(pNew);
    else
        InsertItem(pNew, [&] { return GetNodeForItem(pExisting); });
}

void CXmlCollection::AddItemAt(int nIndex, CXmlObjectBase* pItem)
{
    const auto CheckPosition = [&]
    {
        if (nIndex < 0 || nIndex > m_nCount)
            throw CQvInvalidParamException(L"Index out of range");
    };
    CheckPosition();
    const auto FindNext = [&]
    {
        // Listeners that heard of the addition may have removed items.
        CheckPosition();
        return nIndex == m_nCount ? nullptr : WalkTo(nIndex);
    };
    InsertItem(pItem, FindNext);
}

CNode* CXmlCollection::GetNodeAtIndex(int nIndex) const
{
    Throw_IfIndexIsOutOfRange(nIndex);
    return WalkTo(nIndex);
}

CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* pItem) const
{
    const CXmlObjectBase* const pBase = pItem != nullptr ? pItem->GetBase() : nullptr;
    for (CNode* pNode = m_pHead; pNode != nullptr; pNode = pNode->m_pNext)
    {
        if (pNode->m_pItem->GetBase() == pBase)
            return pNode;
    }
    Throw_NotFound();
}

void CXmlCollection::RemoveNode(CNode* pNode)
{
    if (HasListeners())
    {
        const CRemoval removal(pNode);
        FireOnCollectionRemove(-1);
        if (removal.IsDone())
            Throw_NotFound();
    }
    Discard(pNode);
    FireOnCollectionRemoveComplete(-1);
    FireOnCollectionChange();
}

/// Keeps an item while it is being added: a listener may let it go while others are still to hear of it.
class CXmlCollection::CNewItem
{
public:
    explicit CNewItem(CXmlObjectBase& item)
        : m_item(item)
        , m_bOwned(item.AddRef() > 1)
    {
    }
    /// An item that had no reference is the caller's, and stays so if nobody took it.
    ~CNewItem()
    {
        if (m_bOwned)
            m_item.Release();
        else
            m_item.ReleaseWithoutDestruction();
    }
    CNewItem(const CNewItem&) = delete;
    CNewItem& operator=(const CNewItem&) = delete;

    /// The collection has a reference now.
    void SetTaken() { m_bOwned = true; }

private:
    CXmlObjectBase& m_item;
    bool m_bOwned;
};

/// Adds an item ahead of the node that `FindNext` gives, or last if that is null.
template <class TFindNext>
void CXmlCollection::InsertItem(CXmlObjectBase* pItem, TFindNext FindNext)
{
    if (pItem == nullptr)
        throw CQvInvalidParamException(L"The item of a collection may not be NULL");
    CNewItem newItem(*pItem);
    FireOnCollectionAdd(pItem);
    auto pNode = std::make_unique<CNode>();
    CNode* const pNext = FindNext();
    pNode->m_pItem = pItem;
    newItem.SetTaken();
    Link(pNode.release(), pNext);
    FireOnCollectionAddComplete(pItem);
    FireOnCollectionChange();
}

void CXmlCollection::Link(CNode* pNode, CNode* pNext)
{
    pNode->m_pNext = pNext;
    pNode->m_pPrev = pNext != nullptr ? pNext->m_pPrev : m_pTail;
    (pNode->m_pPrev != nullptr ? pNode->m_pPrev->m_pNext : m_pHead) = pNode;
    (pNext != nullptr ? pNext->m_pPrev : m_pTail) = pNode;
    m_order.Reset();
    ++m_nCount;
}

/// Takes a node out of the list and frees it, without an event.
void CXmlCollection::Discard(CNode* pNode)
{
    if (pNode->m_pNext == nullptr && pNode->m_pPrev == nullptr)
        QV_ASSERT(m_pTail == pNode);
    (pNode->m_pPrev != nullptr ? pNode->m_pPrev->m_pNext : m_pHead) = pNode->m_pNext;
    (pNode->m_pNext != nullptr ? pNode->m_pNext->m_pPrev : m_pTail) = pNode->m_pPrev;
    m_order.Reset();
    CRemoval::SetDone(pNode);
    delete pNode;
    --m_nCount;
}

/// The node at a position that exists. Loops over positions are common, so the place is remembered: each thread keeps
/// its last one, and the name of the order tells whether it still holds.
CNode* CXmlCollection::WalkTo(int nIndex) const
{
    const int nFromTail = nIndex - (m_nCount - 1);
    CNode* pStart = nIndex <= -nFromTail ? m_pHead : m_pTail;
    int nSteps = nIndex <= -nFromTail ? nIndex : nFromTail;
    const bool bFarFromEnds = std::abs(nSteps) > s_nNearEnd;
    if (bFarFromEnds && t_lastPlace.m_nOrderId == GetOrderId() &&
        std::abs(nIndex - t_lastPlace.m_nIndex) < std::abs(nSteps))
    {
        pStart = t_lastPlace.m_pNode;
        nSteps = nIndex - t_lastPlace.m_nIndex;
    }

    CNode* const pNode = Step(pStart, nSteps);
    QV_ASSERT_MSG(pNode != nullptr, "pNode != NULL");
    if (pNode == nullptr)
        throw CQvInvalidParamException(FormatString(L"Index %d is out of range, use 0 - %d", nIndex, m_nCount));
    if (bFarFromEnds)
        t_lastPlace = {GetOrderId(), nIndex, pNode};
    return pNode;
}

/// The name of the present order; no two orders ever have the same one.
std::uint64_t CXmlCollection::GetOrderId() const
{
    std::uint64_t nOrderId = m_order.m_nId.load(std::memory_order_relaxed);
    if (nOrderId == 0)
    {
        static std::atomic<std::uint64_t> s_nLastOrderId{0};
        nOrderId = ++s_nLastOrderId;
        m_order.m_nId.store(nOrderId, std::memory_order_relaxed);
    }
    return nOrderId;
}

} // namespace QvXmlLib9
