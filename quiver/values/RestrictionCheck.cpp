#include "quiver/values/RestrictionCheck.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Pattern.h"

namespace QvXmlLib9
{

namespace RestrictionCheckDetail
{

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

void ThrowInvalid(const wchar_t* lpctName, const std::wstring& strValue)
{
    throw CQvException(FormatString(L"Invalid Value for %s [%s]", lpctName, strValue.c_str()));
}

} // namespace RestrictionCheckDetail

namespace
{

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

void CheckRestriction(const wchar_t* name, const QvVariant& value, ItemType type,
                      const CPrimitiveRestrictions& restrictions)
{
    const bool bKnown = VisitItemType(type,
                                      [&](auto traits)
                                      {
                                          constexpr ItemType eType = decltype(traits)::s_eType;
                                          if constexpr (s_bHasFacets<eType>)
                                              CheckRestriction<eType>(name, traits.Get(value), restrictions);
                                          else
                                              ThrowUnknownType(value);
                                      });
    if (!bKnown)
        ThrowUnknownType(value);
}

} // namespace QvXmlLib9
