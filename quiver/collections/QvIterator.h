#pragma once

#include "quiver/collections/XmlCollection.h"
#include "quiver/foundation/Exceptions.h"

#include <cstddef>
#include <iterator>

namespace QvXmlLib9
{

/// Walks the items of a collection of objects in order, at the cost of one step an item:
///
///     for (CQvIterator<CElement> it = spChildren->begin(); it != spChildren->end(); ++it)
///         Print(it->GetName());
///
/// or `for (CElement& child : *spChildren)`. It stays valid while items are added, and while other items than its own
/// are removed.
/// @tparam T class of the items.
template <class T>
class CQvIterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;

    /// The end of every collection.
    CQvIterator() = default;

    /// @param pNode the node to stand on; null is the end.
    explicit CQvIterator(CNode* pNode)
        : m_pNode(pNode)
    {
    }

    /// The item. It stays the collection's; put it into a CSmartPtr to keep it.
    /// @throws CQvException "No More Elements in the Collection" at the end.
    T& operator*() const
    {
        Throw_IfAtEnd();
        return static_cast<T&>(*m_pNode->m_pItem);
    }

    T* operator->() const { return &**this; }

    /// @throws CQvException "No More Elements in the Collection" at the end.
    CQvIterator& operator++()
    {
        Throw_IfAtEnd();
        m_pNode = m_pNode->m_pNext;
        return *this;
    }

    CQvIterator operator++(int)
    {
        const CQvIterator former = *this;
        ++*this;
        return former;
    }

    /// Iterators on distinct nodes are equal when the nodes hold the same object.
    bool operator==(const CQvIterator& other) const
    {
        if (m_pNode == other.m_pNode)
            return true;
        if (m_pNode == nullptr || other.m_pNode == nullptr)
            return false;
        return &*m_pNode->m_pItem == &*other.m_pNode->m_pItem;
    }

    bool operator!=(const CQvIterator& other) const { return !(*this == other); }

private:
    void Throw_IfAtEnd() const
    {
        if (m_pNode == nullptr)
            throw CQvException(L"No More Elements in the Collection");
    }

    CNode* m_pNode = nullptr;
};

} // namespace QvXmlLib9
