#pragma once

#include "quiver/collections/SharedText.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"

#include <atomic>
#include <cstdint>
#include <list>
#include <string>

/// @file
/// The two abstract layers below every repeated element: CXmlCollectionBase, which knows how often the element may
/// occur and who wants to hear of changes, and CXmlCollection, the list of objects from which the collections of
/// generated classes derive. A generated collection is a typed shell:
///
///     class COrderCol : public CXmlCollection
///     {
///     public:
///         COrderCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
///             : CInstanceMonitor(L"COrderCol"), CXmlCollection(lpctName, lpctNamespace, nMinOccurs, nMaxOccurs) {}
///         void Add(COrder* pOrder) { AppendItem(pOrder); }
///         CSmartPtr<COrder> Item(int nIndex) const { return static_cast<COrder*>(ItemAt(nIndex)); }
///         CQvIterator<COrder> begin() const { return CQvIterator<COrder>(GetHeadNode()); }
///         CQvIterator<COrder> end() const { return CQvIterator<COrder>(nullptr); }
///         // ... and ToXml_Int and FromXml_Int, see CXmlCollection
///     };

namespace QvXmlLib9
{

/// A repeated element. The collection is itself a CXmlObjectBase, so that one property of a generated class can be read
/// and written like any other bound object; its element name is the name of its items.
///
/// Counts are not enforced when items are added: a collection may hold too many until it is validated.
///
/// A collection belongs to one thread at a time. The order of the virtual operations is a contract with generated code.
class QVXMLLIB_API CXmlCollectionBase : public CXmlObjectBase
{
public:
    CXmlObjectBase* GetBase() override;
    using CXmlObjectBase::GetBase;

    /// Namespace URI of the items.
    std::wstring GetNamespace() const override;

    /// Count of items.
    virtual int GetCount() const = 0;

    /// Removes all items, one by one from the front, so that each removal is announced.
    virtual void Clear() = 0;

    /// Removes the item at a position.
    /// @param nIndex 0 to GetCount() - 1.
    /// @throws CQvInvalidParamException "Index %d is out of range, use 0 - %d" with GetCount() as the second number
    ///         (docs/compatibility.md: Ranges in messages).
    virtual void Remove(int nIndex) = 0;

    /// Tests the count of items against the limits, unless the context ignores invalid counts.
    /// @throws CQvValidationException "The Maximum number of [%s] elements allowed in this collection is %d", or "The
    ///         Minimum number of ...".
    virtual void ValidateCount(const CXmlSerializationContext& context) const;

    /// Whether ValidateCount would pass.
    virtual bool IsValidCount(const CXmlSerializationContext& context) const;

    /// Smallest valid count.
    int GetMinOccurs() const { return m_nMinOccurs; }

    /// Greatest valid count; -1 means unbounded.
    int GetMaxOccurs() const { return m_nMaxOccurs; }

    /// Delivers every change of the item set to `pSink` from now on, after the listeners that are there already. A
    /// listener added twice hears everything twice; null is passed over.
    ///
    /// The sink is not owned: remove it before it dies. It may change the listeners, and the collection, while an
    /// event is delivered. An exception that it throws ends the operation where it stands: an item whose addition was
    /// only announced is not added, one whose addition was reported complete stays.
    void AddEventListener(IEventSink* pSink);

    /// Removes every entry of `pSink`; a listener added twice goes at once.
    void RemoveEventListener(IEventSink* pSink);

protected:
    /// No name, no namespace, any count.
    CXmlCollectionBase();

    /// @param lpctElementName local name of the items.
    /// @param lpctNamespace namespace URI of the items, empty for none.
    /// @param nMinOccurs smallest valid count.
    /// @param nMaxOccurs greatest valid count, -1 for unbounded.
    CXmlCollectionBase(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);

    CXmlCollectionBase(const CXmlCollectionBase& source);
    CXmlCollectionBase& operator=(const CXmlCollectionBase& source);
    ~CXmlCollectionBase() override;

    /// A collection of generated objects is never the root of a document.
    /// @throws CQvException always.
    std::wstring GetTargetNamespace() const override;

    /// Does nothing.
    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const override;

    // Derived classes call these around each change of the item set.

    /// Before an item is added.
    /// @param pItem what the listeners get as data: the object, or the address of the value.
    void FireOnCollectionAdd(void* pItem);
    /// After an item was added.
    void FireOnCollectionAddComplete(void* pItem);
    /// After every change, last.
    void FireOnCollectionChange();
    /// Before an item is removed.
    /// @param nIndex its position, -1 if that is not known.
    void FireOnCollectionRemove(int nIndex);
    /// After an item was removed.
    void FireOnCollectionRemoveComplete(int nIndex);

    /// Namespace URI of the items, without a copy.
    const CSharedText& ItemNamespace() const { return m_strNamespace; }
    void SetItemNamespace(const CSharedText& strNamespace) { m_strNamespace = strNamespace; }

    bool HasListeners() const { return !m_lstEventListeners.empty(); }

    /// @throws CQvInvalidParamException as Remove does, unless there is an item at that position.
    void Throw_IfIndexIsOutOfRange(int nIndex) const;

private:
    template <class TDeliver>
    void Deliver(TDeliver DeliverTo);

    CSharedText m_strNamespace;
    std::list<IEventSink*> m_lstEventListeners;
    int m_nMinOccurs;
    int m_nMaxOccurs;
    /// Deliveries in progress. Meanwhile a listener that goes leaves a null behind, so that the walk stays valid.
    int m_nDelivering = 0;
};

/// One place of a CXmlCollection. The node holds one reference to its item.
struct CNode
{
    CSmartPtr<CXmlObjectBase> m_pItem;
    CNode* m_pNext = nullptr;
    CNode* m_pPrev = nullptr;
};

/// A list of objects in document order: the base of the collections of generated classes, of CElementCol and of
/// CAttributeCol.
///
/// A derived class supplies the two operations that are still pure:
/// - `ToXml_Int` writes all items in order, each with its own element.
/// - `FromXml_Int(pParent, pCurrent, context, bOptionalChoice)` starts at `pCurrent`, reads items while they match, and
///   returns the first element that it did not consume, or null.
///
/// Events: MsgType_Add, then MsgType_AddComplete and MsgType_Change, with the item as data (a `CXmlObjectBase*`);
/// MsgType_Remove, then MsgType_RemoveComplete and MsgType_Change, without data, since the list does not know the
/// position. The destructor clears the list, so listeners that are still registered then hear of it.
///
/// Walking with CQvIterator costs a step an item. Access by position walks from the nearest place known: either end, or
/// the position that this thread asked for last.
///
/// The order of the virtual operations is a contract with generated code.
class QVXMLLIB_API CXmlCollection : public CXmlCollectionBase
{
public:
    int GetCount() const override;
    void Clear() override;
    void Remove(int nIndex) override;

protected:
    /// No name, no namespace, any count.
    CXmlCollection();

    /// See CXmlCollectionBase.
    CXmlCollection(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);

    /// Copies the list's ends, not its items: the two objects share the nodes and must not both be destroyed. That is
    /// meant; the deep copies are `CElementCol::Clone` and `CAttributeCol::Clone`.
    CXmlCollection(const CXmlCollection& source);
    CXmlCollection& operator=(const CXmlCollection& source);

    ~CXmlCollection() override;

    /// Writes the attributes of each item in order: the attributes of pseudo children reach the enclosing element in
    /// this way.
    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const override;

    // The operations that typed shells forward to. Each takes a reference to the item before the first event, and gives
    // it up again if it fails from there on: an item that had no reference before has none again, and is still the
    // caller's. An item must not be null (CQvInvalidParamException).

    /// Adds a last item.
    void AppendItem(CXmlObjectBase* pItem);
    /// The same with a reference that is not needed any more. The collection may take it over.
    void AppendItem(CSmartPtr<CXmlObjectBase>&& spItem);

    /// Adds a first item.
    void PrependItem(CXmlObjectBase* pItem);

    /// Adds an item behind `pExisting`, or as the first one if `pExisting` is null.
    /// @throws CQvInvalidParamException "The object was not found in the collection"; the addition has been announced
    ///         by then.
    void AddAfterItem(const CXmlObjectBase* pExisting, CXmlObjectBase* pNew);

    /// Adds an item ahead of `pExisting`, or as the last one if `pExisting` is null.
    /// @throws CQvInvalidParamException as AddAfterItem does.
    void AddBeforeItem(const CXmlObjectBase* pExisting, CXmlObjectBase* pNew);

    /// Adds an item so that it gets a position.
    /// @param nIndex 0 to GetCount().
    /// @throws CQvInvalidParamException "Index out of range", before any event.
    void AddItemAt(int nIndex, CXmlObjectBase* pItem);

    /// The node at a position.
    /// @throws CQvInvalidParamException as Remove does.
    CNode* GetNodeAtIndex(int nIndex) const;

    /// The item at a position.
    /// @throws CQvInvalidParamException as Remove does.
    CXmlObjectBase* ItemAt(int nIndex) const { return GetNodeAtIndex(nIndex)->m_pItem; }

    /// The first node that holds this very object; content is never compared.
    /// @throws CQvInvalidParamException "The object was not found in the collection".
    CNode* GetNodeForItem(const CXmlObjectBase* pItem) const;

    /// Takes a node out of the list and frees it.
    /// @throws CQvInvalidParamException "The object was not found in the collection" if a listener that heard of the
    ///         removal has removed the node already.
    void RemoveNode(CNode* pNode);

    /// The first node, or null: where `begin()` of a derived class starts.
    CNode* GetHeadNode() const { return m_pHead; }

private:
    /// Names the present order of the items, so that a position once found can be trusted. 0 until it is needed, and
    /// after each change; a copy of the list needs a name of its own.
    struct SOrderId
    {
        SOrderId() = default;
        SOrderId(const SOrderId&) noexcept {}
        SOrderId& operator=(const SOrderId&) noexcept
        {
            Reset();
            return *this;
        }
        void Reset() { m_nId.store(0, std::memory_order_relaxed); }
        std::atomic<std::uint64_t> m_nId{0};
    };

    class CNewItem;

    template <class TFindNext>
    void InsertItem(CXmlObjectBase* pItem, TFindNext FindNext);
    void Link(CNode* pNode, CNode* pNext);
    void Discard(CNode* pNode);
    CNode* WalkTo(int nIndex) const;
    std::uint64_t GetOrderId() const;

    CNode* m_pHead = nullptr;
    CNode* m_pTail = nullptr;
    int m_nCount = 0;
    mutable SOrderId m_order;
};

} // namespace QvXmlLib9
