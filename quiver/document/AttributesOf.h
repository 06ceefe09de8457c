#pragma once

#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"

#include <cstddef>
#include <iterator>

namespace QvXmlLib9
{

/// The attributes of an element in document order, without the vector that CXmlElement::GetAttributes makes when it is
/// asked for the first time:
///
///     for (CXmlAttribute* pAttribute : CAttributesOf(element))
class CAttributesOf
{
public:
    class CIterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = CXmlAttribute*;
        using difference_type = std::ptrdiff_t;
        using pointer = CXmlAttribute* const*;
        using reference = CXmlAttribute*;

        CIterator(CXmlAttribute* pAttribute, const CXmlAttribute* pLast)
            : m_pAttribute(pAttribute)
            , m_pLast(pLast)
        {
        }
        CXmlAttribute* operator*() const { return m_pAttribute; }
        CIterator& operator++()
        {
            m_pAttribute = m_pAttribute != m_pLast ? m_pAttribute->m_pNext : nullptr;
            return *this;
        }
        bool operator==(const CIterator& other) const { return m_pAttribute == other.m_pAttribute; }
        bool operator!=(const CIterator& other) const { return m_pAttribute != other.m_pAttribute; }

    private:
        CXmlAttribute* m_pAttribute;
        const CXmlAttribute* m_pLast;
    };

    explicit CAttributesOf(const CXmlElement& element)
        : m_pLast(element.m_pLastAttribute)
    {
    }

    bool IsEmpty() const { return m_pLast == nullptr; }
    CIterator begin() const { return {m_pLast != nullptr ? m_pLast->m_pNext : nullptr, m_pLast}; }
    CIterator end() const { return {nullptr, m_pLast}; }

private:
    const CXmlAttribute* m_pLast;
};

} // namespace QvXmlLib9
