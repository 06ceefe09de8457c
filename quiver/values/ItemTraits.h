#pragma once

#include "quiver/values/Conversions.h"
#include "quiver/values/IntegerText.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/QvVariant.h"
#include "quiver/values/RealWriter.h"

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

/// @file
/// What belongs to each kind of simple value, in one table: its C++ type, its conversions, its place in a QvVariant.
/// Whatever is done for every kind is written once over this table. Internal to the library.
///
///     const auto value = SItemTraits<ItemType_i4>::FromString(strText, rule); // a long
///     VisitItemType(eType, [&](auto traits) { ...decltype(traits)::s_eType... });

namespace QvXmlLib9
{

namespace ItemTraitsDetail
{

template <ItemType eType, auto pfnToString, auto pfnFromString, auto pfnGet, auto pfnSet>
struct SRow
{
    static constexpr ItemType s_eType = eType;

    /// The C++ type of the kind.
    using Value = std::invoke_result_t<decltype(pfnFromString), const std::wstring&, CWhitespaceUtils::WhitespaceRule>;

    /// How a function takes a value: objects by reference.
    using Argument = std::conditional_t<std::is_class_v<Value>, const Value&, Value>;

    static Value FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
    {
        return pfnFromString(value, rule);
    }

    /// `format` matters to the kinds that have one; see CConversions.
    static std::wstring ToString(Argument value, const wchar_t* format)
    {
        if constexpr (std::is_invocable_v<decltype(pfnToString), Argument, const wchar_t*>)
            return pfnToString(value, format);
        else
            return static_cast<void>(format), pfnToString(value);
    }

    /// The value of a variant that holds this kind; asserted there. Large objects are not copied.
    static decltype(auto) Get(const QvVariant& value) { return (value.*pfnGet)(); }

    static void Set(QvVariant& target, Value&& value) { (target.*pfnSet)(std::move(value)); }
};

} // namespace ItemTraitsDetail

/// The row of one kind; see ItemTraitsDetail::SRow for its members.
template <ItemType eType>
struct SItemTraits;

template <>
struct SItemTraits<ItemType_hexBinary>
    : ItemTraitsDetail::SRow<ItemType_hexBinary, &CConversions::hexBinaryToString, &CConversions::hexBinaryFromString,
                             &QvVariant::HexBinaryRef, &QvVariant::SetHexBinary>
{
};
template <>
struct SItemTraits<ItemType_base64Binary>
    : ItemTraitsDetail::SRow<ItemType_base64Binary, &CConversions::base64BinaryToString,
                             &CConversions::base64BinaryFromString, &QvVariant::Base64BinaryRef,
                             &QvVariant::SetBase64Binary>
{
};
template <>
struct SItemTraits<ItemType_i1>
    : ItemTraitsDetail::SRow<ItemType_i1, &CConversions::i1ToString, &CConversions::i1FromString, &QvVariant::GetI1,
                             &QvVariant::SetI1>
{
};
template <>
struct SItemTraits<ItemType_i2>
    : ItemTraitsDetail::SRow<ItemType_i2, &CConversions::i2ToString, &CConversions::i2FromString, &QvVariant::GetI2,
                             &QvVariant::SetI2>
{
};
template <>
struct SItemTraits<ItemType_i4>
    : ItemTraitsDetail::SRow<ItemType_i4, &CConversions::i4ToString, &CConversions::i4FromString, &QvVariant::GetI4,
                             &QvVariant::SetI4>
{
};
template <>
struct SItemTraits<ItemType_i8>
    : ItemTraitsDetail::SRow<ItemType_i8, &CConversions::i8ToString, &CConversions::i8FromString, &QvVariant::GetI8,
                             &QvVariant::SetI8>
{
};
template <>
struct SItemTraits<ItemType_ui1>
    : ItemTraitsDetail::SRow<ItemType_ui1, &CConversions::ui1ToString, &CConversions::ui1FromString, &QvVariant::GetUI1,
                             &QvVariant::SetUI1>
{
};
template <>
struct SItemTraits<ItemType_ui2>
    : ItemTraitsDetail::SRow<ItemType_ui2, &CConversions::ui2ToString, &CConversions::ui2FromString, &QvVariant::GetUI2,
                             &QvVariant::SetUI2>
{
};
template <>
struct SItemTraits<ItemType_ui4>
    : ItemTraitsDetail::SRow<ItemType_ui4, &CConversions::ui4ToString, &CConversions::ui4FromString, &QvVariant::GetUI4,
                             &QvVariant::SetUI4>
{
};
template <>
struct SItemTraits<ItemType_ui8>
    : ItemTraitsDetail::SRow<ItemType_ui8, &CConversions::ui8ToString, &CConversions::ui8FromString, &QvVariant::GetUI8,
                             &QvVariant::SetUI8>
{
};
template <>
struct SItemTraits<ItemType_r4>
    : ItemTraitsDetail::SRow<ItemType_r4, &CConversions::r4ToString, &CConversions::r4FromString, &QvVariant::GetR4,
                             &QvVariant::SetR4>
{
};
template <>
struct SItemTraits<ItemType_r8>
    : ItemTraitsDetail::SRow<ItemType_r8, &CConversions::r8ToString, &CConversions::r8FromString, &QvVariant::GetR8,
                             &QvVariant::SetR8>
{
};
template <>
struct SItemTraits<ItemType_duration>
    : ItemTraitsDetail::SRow<ItemType_duration, &CConversions::durationToString, &CConversions::durationFromString,
                             &QvVariant::GetDuration, &QvVariant::SetDuration>
{
};
template <>
struct SItemTraits<ItemType_yearMonth>
    : ItemTraitsDetail::SRow<ItemType_yearMonth, &CConversions::yearMonthToString, &CConversions::yearMonthFromString,
                             &QvVariant::GetYearMonth, &QvVariant::SetYearMonth>
{
};
template <>
struct SItemTraits<ItemType_monthDay>
    : ItemTraitsDetail::SRow<ItemType_monthDay, &CConversions::monthDayToString, &CConversions::monthDayFromString,
                             &QvVariant::GetMonthDay, &QvVariant::SetMonthDay>
{
};
template <>
struct SItemTraits<ItemType_year>
    : ItemTraitsDetail::SRow<ItemType_year, &CConversions::yearToString, &CConversions::yearFromString,
                             &QvVariant::GetYear, &QvVariant::SetYear>
{
};
template <>
struct SItemTraits<ItemType_month>
    : ItemTraitsDetail::SRow<ItemType_month, &CConversions::monthToString, &CConversions::monthFromString,
                             &QvVariant::GetMonth, &QvVariant::SetMonth>
{
};
template <>
struct SItemTraits<ItemType_day>
    : ItemTraitsDetail::SRow<ItemType_day, &CConversions::dayToString, &CConversions::dayFromString, &QvVariant::GetDay,
                             &QvVariant::SetDay>
{
};
template <>
struct SItemTraits<ItemType_date>
    : ItemTraitsDetail::SRow<ItemType_date, &CConversions::dateToString, &CConversions::dateFromString,
                             &QvVariant::GetDate, &QvVariant::SetDate>
{
};
template <>
struct SItemTraits<ItemType_datetime>
    : ItemTraitsDetail::SRow<ItemType_datetime, &CConversions::datetimeToString, &CConversions::datetimeFromString,
                             &QvVariant::GetDateTime, &QvVariant::SetDateTime>
{
};
template <>
struct SItemTraits<ItemType_time>
    : ItemTraitsDetail::SRow<ItemType_time, &CConversions::timeToString, &CConversions::timeFromString,
                             &QvVariant::GetTime, &QvVariant::SetTime>
{
};
template <>
struct SItemTraits<ItemType_char>
    : ItemTraitsDetail::SRow<ItemType_char, &CConversions::charToString, &CConversions::charFromString,
                             &QvVariant::GetChar, &QvVariant::SetChar>
{
};
template <>
struct SItemTraits<ItemType_string>
    : ItemTraitsDetail::SRow<ItemType_string, &CConversions::stringToString, &CConversions::stringFromString,
                             &QvVariant::StringRef, &QvVariant::SetString>
{
};
template <>
struct SItemTraits<ItemType_boolean>
    : ItemTraitsDetail::SRow<ItemType_boolean, &CConversions::booleanToString, &CConversions::booleanFromString,
                             &QvVariant::GetBoolean, &QvVariant::SetBoolean>
{
};
template <>
struct SItemTraits<ItemType_decimal>
    : ItemTraitsDetail::SRow<ItemType_decimal, &CConversions::decimalToString, &CConversions::decimalFromString,
                             &QvVariant::DecimalRef, &QvVariant::SetDecimal>
{
};
template <>
struct SItemTraits<ItemType_integer>
    : ItemTraitsDetail::SRow<ItemType_integer, &CConversions::integerToString, &CConversions::integerFromString,
                             &QvVariant::IntegerRef, &QvVariant::SetInteger>
{
};

/// Calls `visitor` with the row of `eType`, an SItemTraits by value, and returns true. A number that names no simple
/// value (invalid, object, collection, unknown) returns false without a call.
template <class TVisitor>
bool VisitItemType(ItemType eType, TVisitor&& visitor)
{
    switch (eType)
    {
    case ItemType_hexBinary:
        visitor(SItemTraits<ItemType_hexBinary>());
        return true;
    case ItemType_base64Binary:
        visitor(SItemTraits<ItemType_base64Binary>());
        return true;
    case ItemType_i1:
        visitor(SItemTraits<ItemType_i1>());
        return true;
    case ItemType_i2:
        visitor(SItemTraits<ItemType_i2>());
        return true;
    case ItemType_i4:
        visitor(SItemTraits<ItemType_i4>());
        return true;
    case ItemType_i8:
        visitor(SItemTraits<ItemType_i8>());
        return true;
    case ItemType_ui1:
        visitor(SItemTraits<ItemType_ui1>());
        return true;
    case ItemType_ui2:
        visitor(SItemTraits<ItemType_ui2>());
        return true;
    case ItemType_ui4:
        visitor(SItemTraits<ItemType_ui4>());
        return true;
    case ItemType_ui8:
        visitor(SItemTraits<ItemType_ui8>());
        return true;
    case ItemType_r4:
        visitor(SItemTraits<ItemType_r4>());
        return true;
    case ItemType_r8:
        visitor(SItemTraits<ItemType_r8>());
        return true;
    case ItemType_duration:
        visitor(SItemTraits<ItemType_duration>());
        return true;
    case ItemType_yearMonth:
        visitor(SItemTraits<ItemType_yearMonth>());
        return true;
    case ItemType_monthDay:
        visitor(SItemTraits<ItemType_monthDay>());
        return true;
    case ItemType_year:
        visitor(SItemTraits<ItemType_year>());
        return true;
    case ItemType_month:
        visitor(SItemTraits<ItemType_month>());
        return true;
    case ItemType_day:
        visitor(SItemTraits<ItemType_day>());
        return true;
    case ItemType_date:
        visitor(SItemTraits<ItemType_date>());
        return true;
    case ItemType_datetime:
        visitor(SItemTraits<ItemType_datetime>());
        return true;
    case ItemType_time:
        visitor(SItemTraits<ItemType_time>());
        return true;
    case ItemType_char:
        visitor(SItemTraits<ItemType_char>());
        return true;
    case ItemType_string:
        visitor(SItemTraits<ItemType_string>());
        return true;
    case ItemType_boolean:
        visitor(SItemTraits<ItemType_boolean>());
        return true;
    case ItemType_decimal:
        visitor(SItemTraits<ItemType_decimal>());
        return true;
    case ItemType_integer:
        visitor(SItemTraits<ItemType_integer>());
        return true;
    case ItemType_Invalid:
    case ItemType_XmlObjectBase:
    case ItemType_XmlCollection:
        break;
    }
    return false;
}

/// Appends the lexical form of a value, so that one buffer can serve many values. The same text as ToString of the row.
template <ItemType eType>
void AppendItemText(std::wstring& strOut, typename SItemTraits<eType>::Argument value, const wchar_t* format)
{
    if constexpr (eType == ItemType_string)
        strOut += value;
    else if constexpr (eType == ItemType_r4)
        AppendR4(strOut, value, format);
    else if constexpr (eType == ItemType_r8)
        AppendR8(strOut, value, format);
    else if constexpr (eType == ItemType_i2 || eType == ItemType_i8)
        AppendInteger(strOut, value);
    else if constexpr (eType == ItemType_ui1 || eType == ItemType_ui2 || eType == ItemType_ui8)
        AppendUnsigned(strOut, value);
    else if constexpr (eType == ItemType_i4)
        AppendInteger(strOut, static_cast<std::int32_t>(value));
    else if constexpr (eType == ItemType_ui4)
        AppendUnsigned(strOut, static_cast<std::uint32_t>(value));
    else if constexpr (eType == ItemType_boolean)
        strOut += value ? L"true" : L"false";
    else
        strOut += SItemTraits<eType>::ToString(value, format);
}

} // namespace QvXmlLib9
