#include "quiver/values/RestrictionCheck.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Pattern.h"
#include "quiver/values/NumberText.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace QvXmlLib9
{

namespace
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

const std::wstring& TextOf(const CPrimitiveRestrictions& restrictions, EBound eBound)
{
    switch (eBound)
    {
    case Bound_MinInclusive:
        return restrictions.GetMinInclusive();
    case Bound_MaxInclusive:
        return restrictions.GetMaxInclusive();
    case Bound_MinExclusive:
        return restrictions.GetMinExclusive();
    case Bound_MaxExclusive:
    case Bound_Count:
        break;
    }
    return restrictions.GetMaxExclusive();
}

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

bool MatchesPattern(const wchar_t* lpctName, const std::wstring& strValue, const CPrimitiveRestrictions& restrictions)
{
    if (restrictions.GetPattern().empty())
        return true;
    try
    {
        return PatternMatch(restrictions.GetPatternUtf8(), strValue);
    }
    catch (const CQvException& ex)
    {
        throw CQvException(
            FormatString(L"%s\nInvalid Value for %s [%s]", ex.GetFullMessage().c_str(), lpctName, strValue.c_str()));
    }
}

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

[[noreturn]] void ThrowUnknownType(const QvVariant& value)
{
    throw CQvInvalidValueException(L"unknown type [" + value.GetType() + L"]");
}

} // namespace

CParsedBounds::CParsedBounds(ItemType eItemType)
    : m_eItemType(eItemType)
    , m_nMaxDecimalPlaces(CDecimal::GetMaxDecimalPlaces())
{
}

CParsedBounds::~CParsedBounds() = default;

template <ItemType eType>
void CheckRestriction(const wchar_t* name, typename SItemTraits<eType>::Argument value,
                      const CPrimitiveRestrictions& restrictions)
{
    if (!IsValid<eType>(name, value, restrictions))
        throw CQvException(FormatString(L"Invalid Value for %s [%s]", name, Describe<eType>(value).c_str()));
}

void CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                      const CPrimitiveRestrictions& restrictions)
{
    const bool bKnown = VisitItemType(type,
                                      [&](auto traits)
                                      {
                                          using Traits = decltype(traits);
                                          if constexpr (Traits::s_eType == ItemType_char)
                                              ThrowUnknownType(value);
                                          else
                                              CheckRestriction<Traits::s_eType>(name, Traits::Get(value), restrictions);
                                      });
    if (!bKnown)
        ThrowUnknownType(value);
}

template <ItemType eType>
using Argument = typename SItemTraits<eType>::Argument;
using Name = const wchar_t*;
using Facets = const CPrimitiveRestrictions&;

template void CheckRestriction<ItemType_hexBinary>(Name, Argument<ItemType_hexBinary>, Facets);
template void CheckRestriction<ItemType_base64Binary>(Name, Argument<ItemType_base64Binary>, Facets);
template void CheckRestriction<ItemType_i1>(Name, Argument<ItemType_i1>, Facets);
template void CheckRestriction<ItemType_i2>(Name, Argument<ItemType_i2>, Facets);
template void CheckRestriction<ItemType_i4>(Name, Argument<ItemType_i4>, Facets);
template void CheckRestriction<ItemType_i8>(Name, Argument<ItemType_i8>, Facets);
template void CheckRestriction<ItemType_ui1>(Name, Argument<ItemType_ui1>, Facets);
template void CheckRestriction<ItemType_ui2>(Name, Argument<ItemType_ui2>, Facets);
template void CheckRestriction<ItemType_ui4>(Name, Argument<ItemType_ui4>, Facets);
template void CheckRestriction<ItemType_ui8>(Name, Argument<ItemType_ui8>, Facets);
template void CheckRestriction<ItemType_r4>(Name, Argument<ItemType_r4>, Facets);
template void CheckRestriction<ItemType_r8>(Name, Argument<ItemType_r8>, Facets);
template void CheckRestriction<ItemType_duration>(Name, Argument<ItemType_duration>, Facets);
template void CheckRestriction<ItemType_yearMonth>(Name, Argument<ItemType_yearMonth>, Facets);
template void CheckRestriction<ItemType_monthDay>(Name, Argument<ItemType_monthDay>, Facets);
template void CheckRestriction<ItemType_year>(Name, Argument<ItemType_year>, Facets);
template void CheckRestriction<ItemType_month>(Name, Argument<ItemType_month>, Facets);
template void CheckRestriction<ItemType_day>(Name, Argument<ItemType_day>, Facets);
template void CheckRestriction<ItemType_date>(Name, Argument<ItemType_date>, Facets);
template void CheckRestriction<ItemType_datetime>(Name, Argument<ItemType_datetime>, Facets);
template void CheckRestriction<ItemType_time>(Name, Argument<ItemType_time>, Facets);
template void CheckRestriction<ItemType_string>(Name, Argument<ItemType_string>, Facets);
template void CheckRestriction<ItemType_boolean>(Name, Argument<ItemType_boolean>, Facets);
template void CheckRestriction<ItemType_decimal>(Name, Argument<ItemType_decimal>, Facets);
template void CheckRestriction<ItemType_integer>(Name, Argument<ItemType_integer>, Facets);

} // namespace QvXmlLib9
