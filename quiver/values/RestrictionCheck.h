#pragma once

#include "quiver/values/ItemTraits.h"
#include "quiver/values/PrimitiveRestrictions.h"

/// @file
/// The facets of a simple type applied to one value. Internal to the library: generated code checks through the
/// metadata records.
///
/// The name of the element or attribute goes into messages only. A value that passes returns silently; one that breaks
/// a facet throws `CQvException` "Invalid Value for %s [%s]", once, however many facets it breaks. A bound that the
/// kind cannot read throws what its conversion throws, and a pattern that cannot be used throws `CQvException` with the
/// text of that failure ahead of the words above. Any thread may check.

namespace QvXmlLib9
{

/// The bounds of a CPrimitiveRestrictions as values of one kind.
class CParsedBounds
{
public:
    virtual ~CParsedBounds();
    CParsedBounds(const CParsedBounds&) = delete;
    CParsedBounds& operator=(const CParsedBounds&) = delete;

    /// The kind that the bounds were read as.
    ItemType GetItemType() const { return m_eItemType; }

    /// The bound on decimal places when they were read: decimals and integers are rounded to it.
    int GetMaxDecimalPlaces() const { return m_nMaxDecimalPlaces; }

protected:
    explicit CParsedBounds(ItemType eItemType);

private:
    const ItemType m_eItemType;
    const int m_nMaxDecimalPlaces;
};

/// Checks a value of one kind:
///
///     CheckRestriction<ItemType_i4>(GetElementName().c_str(), lValue, m_restrictions);
///
/// There is a function for every kind from ItemType_hexBinary to ItemType_integer except ItemType_char, which has no
/// facets. Binary kinds know lengths, strings lengths and the pattern, booleans nothing, all others the bounds.
template <ItemType eType>
void CheckRestriction(const wchar_t* name, typename SItemTraits<eType>::Argument value,
                      const CPrimitiveRestrictions& restrictions);

/// Checks the value of a variant as one of kind `type`, which it must hold.
/// @throws CQvInvalidValueException "unknown type [%s]", with the kind that the variant holds, when `type` has no
///         facets.
void CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                      const CPrimitiveRestrictions& restrictions);

} // namespace QvXmlLib9
