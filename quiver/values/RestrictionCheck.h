#pragma once

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/ItemTraits.h"
#include "quiver/values/PrimitiveRestrictions.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

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

namespace RestrictionCheckDetail
{

/// In the order in which they are tested.
enum EBound
{
    Bound_MinInclusive,
    Bound_MaxInclusive,
    Bound_MinExclusive,
    Bound_MaxExclusive,
    Bound_Count
};

const std::wstring& TextOf(const CPrimitiveRestrictions& restrictions, EBound eBound);

template <class T>
constexpr bool s_bIsOrdered = std::is_same_v<T, CDateTime> || std::is_same_v<T, CDateTimeSpan>;

/// Values in the partial order of XML Schema. What cannot be compared is not rejected.
template <class T>
bool IsWithinOrdered(const T& value, EBound eBound, const T& bound)
{
    const CDateTime::DTCompareResult eResult = value.CompareTo(bound);
    switch (eBound)
    {
    case Bound_MinInclusive:
        return eResult != CDateTime::DTCompareResult_LessThan;
    case Bound_MaxInclusive:
        return eResult != CDateTime::DTCompareResult_GreaterThan;
    case Bound_MinExclusive:
        return eResult == CDateTime::DTCompareResult_GreaterThan || eResult == CDateTime::DTCompareResult_Indeterminate;
    case Bound_MaxExclusive:
        return eResult == CDateTime::DTCompareResult_LessThan || eResult == CDateTime::DTCompareResult_Indeterminate;
    case Bound_Count:
        break;
    }
    return true;
}

/// Written so that what is not a number is within no bound.
template <class T>
bool IsWithinNumber(const T& value, EBound eBound, const T& bound)
{
    switch (eBound)
    {
    case Bound_MinInclusive:
        return value >= bound;
    case Bound_MaxInclusive:
        return value <= bound;
    case Bound_MinExclusive:
        return value > bound;
    case Bound_MaxExclusive:
        return value < bound;
    case Bound_Count:
        break;
    }
    return true;
}

template <class T>
bool IsWithin(const T& value, EBound eBound, const T& bound)
{
    if constexpr (s_bIsOrdered<T>)
        return IsWithinOrdered(value, eBound, bound);
    else if constexpr (std::is_same_v<T, char>)
        // A plain char is unsigned on some platforms.
        return IsWithinNumber(static_cast<signed char>(value), eBound, static_cast<signed char>(bound));
    else
        return IsWithinNumber(value, eBound, bound);
}

template <ItemType eType>
class CTypedBounds final : public CParsedBounds
{
public:
    using Value = typename SItemTraits<eType>::Value;

    CTypedBounds()
        : CParsedBounds(eType)
    {
    }

    std::optional<Value> m_bounds[Bound_Count];
};

/// Reads each bound only when all bounds ahead of it are kept, as a bound that cannot be read fails the check.
template <ItemType eType>
bool IsWithinUnreadBounds(typename SItemTraits<eType>::Argument value, const CPrimitiveRestrictions& restrictions)
{
    auto pBounds = std::make_unique<CTypedBounds<eType>>();
    for (int nBound = 0; nBound < Bound_Count; ++nBound)
    {
        const auto eBound = static_cast<EBound>(nBound);
        const std::wstring& strBound = TextOf(restrictions, eBound);
        if (strBound.empty())
            continue;
        pBounds->m_bounds[eBound] = SItemTraits<eType>::FromString(strBound, CWhitespaceUtils::WhitespaceRule_Collapse);
        if (!IsWithin(value, eBound, *pBounds->m_bounds[eBound]))
            return false;
    }
    if (restrictions.GetParsedBounds() == nullptr)
        restrictions.RememberParsedBounds(std::move(pBounds));
    return true;
}

/// Whether reading the bounds as this kind would give the same values again.
template <ItemType eType>
bool IsCurrent(const CParsedBounds& bounds)
{
    constexpr bool bRounded = eType == ItemType_decimal || eType == ItemType_integer;
    return bounds.GetItemType() == eType &&
           (!bRounded || bounds.GetMaxDecimalPlaces() == CDecimal::GetMaxDecimalPlaces());
}

template <ItemType eType>
bool IsWithinBounds(typename SItemTraits<eType>::Argument value, const CPrimitiveRestrictions& restrictions)
{
    if (!restrictions.HasBounds())
        return true;
    const CParsedBounds* const pParsed = restrictions.GetParsedBounds();
    if (pParsed == nullptr || !IsCurrent<eType>(*pParsed))
        return IsWithinUnreadBounds<eType>(value, restrictions);

    const auto& bounds = static_cast<const CTypedBounds<eType>*>(pParsed)->m_bounds;
    for (int nBound = 0; nBound < Bound_Count; ++nBound)
    {
        if (bounds[nBound] && !IsWithin(value, static_cast<EBound>(nBound), *bounds[nBound]))
            return false;
    }
    return true;
}

/// @param fnLength asked only if there is a facet to compare with.
template <class TLength>
bool HasValidLength(TLength fnLength, const CPrimitiveRestrictions& restrictions)
{
    const int nMin = restrictions.GetMinLength();
    const int nMax = restrictions.GetMaxLength();
    const int nExact = restrictions.GetLength();
    if (nMin < 0 && nMax < 0 && nExact < 0)
        return true;
    const std::uint64_t nLength = fnLength();
    return (nMin < 0 || nLength >= static_cast<std::uint64_t>(nMin)) &&
           (nMax < 0 || nLength <= static_cast<std::uint64_t>(nMax)) &&
           (nExact < 0 || nLength == static_cast<std::uint64_t>(nExact));
}

bool MatchesPattern(const wchar_t* lpctName, const std::wstring& strValue, const CPrimitiveRestrictions& restrictions);

template <ItemType eType>
bool IsValid(const wchar_t* lpctName, typename SItemTraits<eType>::Argument value,
             const CPrimitiveRestrictions& restrictions)
{
    using Value = typename SItemTraits<eType>::Value;
    if constexpr (std::is_same_v<Value, CBinaryData>)
        return HasValidLength([&] { return value.IsEmpty() ? 0 : value.GetLength(); }, restrictions);
    else if constexpr (std::is_same_v<Value, std::wstring>)
        return HasValidLength([&] { return GetUtf16Length(value); }, restrictions) &&
               MatchesPattern(lpctName, value, restrictions);
    else if constexpr (std::is_same_v<Value, bool>)
        return true;
    else
        return IsWithinBounds<eType>(value, restrictions);
}

/// How a value is shown in messages; not always its lexical form.
template <ItemType eType>
std::wstring Describe(typename SItemTraits<eType>::Argument value)
{
    using Value = typename SItemTraits<eType>::Value;
    if constexpr (std::is_same_v<Value, CBinaryData>)
        return value.GetAsHexString();
    else if constexpr (std::is_floating_point_v<Value>)
        return FormatString(L"%f", static_cast<double>(value));
    else if constexpr (eType == ItemType_i1)
        return CConversions::i1ToString(value);
    else if constexpr (std::is_integral_v<Value> && eType != ItemType_i8 && eType != ItemType_ui8)
        return CConversions::i4ToString(static_cast<std::int32_t>(value));
    else
        return SItemTraits<eType>::ToString(value, nullptr);
}

[[noreturn]] void ThrowInvalid(const wchar_t* lpctName, const std::wstring& strValue);

} // namespace RestrictionCheckDetail

/// Whether a value of the kind can be checked at all.
template <ItemType eType>
inline constexpr bool s_bHasFacets = eType != ItemType_char;

/// Checks a value of one kind:
///
///     CheckRestriction<ItemType_i4>(GetElementName().c_str(), lValue, m_restrictions);
///
/// There is a check for every kind of SItemTraits except ItemType_char, which has no facets. Binary kinds know lengths,
/// strings lengths and the pattern, booleans nothing, all others the bounds.
template <ItemType eType>
void CheckRestriction(const wchar_t* name, typename SItemTraits<eType>::Argument value,
                      const CPrimitiveRestrictions& restrictions)
{
    static_assert(s_bHasFacets<eType>);
    using namespace RestrictionCheckDetail;
    if (!IsValid<eType>(name, value, restrictions))
        ThrowInvalid(name, Describe<eType>(value));
}

/// Checks the value of a variant as one of kind `type`, which it must hold.
/// @throws CQvInvalidValueException "unknown type [%s]", with the kind that the variant holds, when `type` has no
///         facets.
void CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                      const CPrimitiveRestrictions& restrictions);

} // namespace QvXmlLib9
