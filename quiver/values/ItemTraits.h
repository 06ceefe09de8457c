#pragma once

#include "quiver/values/Conversions.h"
#include "quiver/values/ItemText.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/QvVariant.h"
#include "quiver/values/RealWriter.h"

#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

/// @file
/// What belongs to each kind of simple value, in one list: its name, its conversions, its place in a QvVariant. A new
/// kind is a row of it, and whatever is done for every kind is written once over it. Internal to the library.
///
///     const auto value = SItemTraits<ItemType_i4>::FromString(strText, rule); // a long
///     VisitItemType(eType, [&](auto traits) { ...decltype(traits)::s_eType... });

namespace QvXmlLib9
{

/// A row of the list.
template <class TPrint, class TRead, class TGet, class THeld>
struct SItemKind
{
    ItemType eType;
    /// What QvVariant::GetType calls the kind.
    const wchar_t* lpctName;
    /// Appends the lexical form to a buffer, or returns it as a string or a view; takes the format behind the value if
    /// the kind has one.
    TPrint pfnPrint;
    TRead pfnRead;
    /// The getter of QvVariant; the one by reference where there is one.
    TGet pfnGet;
    /// The member of the union in QvVariant; objects are pointed to.
    THeld pHeld;
};
template <class TPrint, class TRead, class TGet, class THeld>
SItemKind(ItemType, const wchar_t*, TPrint, TRead, TGet, THeld) -> SItemKind<TPrint, TRead, TGet, THeld>;

/// Every kind, in the order of the numbers.
inline constexpr std::tuple s_itemKinds = {
    SItemKind{ItemType_hexBinary, L"hexBinary", &CConversions::hexBinaryToString, &CConversions::hexBinaryFromString,
              &QvVariant::HexBinaryRef, &QvVariant::m_pBinaryData},
    SItemKind{ItemType_base64Binary, L"base64Binary", &CConversions::base64BinaryToString,
              &CConversions::base64BinaryFromString, &QvVariant::Base64BinaryRef, &QvVariant::m_pBinaryData},
    SItemKind{ItemType_i1, L"i1", &AppendI1, &CConversions::i1FromString, &QvVariant::GetI1, &QvVariant::m_i1},
    SItemKind{ItemType_i2, L"i2", &AppendInteger, &CConversions::i2FromString, &QvVariant::GetI2, &QvVariant::m_i2},
    SItemKind{ItemType_i4, L"i4", &AppendI4, &CConversions::i4FromString, &QvVariant::GetI4, &QvVariant::m_i4},
    SItemKind{ItemType_i8, L"i8", &AppendInteger, &CConversions::i8FromString, &QvVariant::GetI8, &QvVariant::m_i8},
    SItemKind{ItemType_ui1, L"ui1", &AppendUnsigned, &CConversions::ui1FromString, &QvVariant::GetUI1,
              &QvVariant::m_ui1},
    SItemKind{ItemType_ui2, L"ui2", &AppendUnsigned, &CConversions::ui2FromString, &QvVariant::GetUI2,
              &QvVariant::m_ui2},
    SItemKind{ItemType_ui4, L"ui4", &AppendUI4, &CConversions::ui4FromString, &QvVariant::GetUI4, &QvVariant::m_ui4},
    SItemKind{ItemType_ui8, L"ui8", &AppendUnsigned, &CConversions::ui8FromString, &QvVariant::GetUI8,
              &QvVariant::m_ui8},
    SItemKind{ItemType_r4, L"r4", &AppendR4, &CConversions::r4FromString, &QvVariant::GetR4, &QvVariant::m_r4},
    SItemKind{ItemType_r8, L"r8", &AppendR8, &CConversions::r8FromString, &QvVariant::GetR8, &QvVariant::m_r8},
    SItemKind{ItemType_duration, L"duration", &CConversions::durationToString, &CConversions::durationFromString,
              &QvVariant::GetDuration, &QvVariant::m_pDateTimeSpan},
    SItemKind{ItemType_yearMonth, L"yearMonth", &CConversions::yearMonthToString, &CConversions::yearMonthFromString,
              &QvVariant::GetYearMonth, &QvVariant::m_pDateTime},
    SItemKind{ItemType_monthDay, L"monthDay", &CConversions::monthDayToString, &CConversions::monthDayFromString,
              &QvVariant::GetMonthDay, &QvVariant::m_pDateTime},
    SItemKind{ItemType_year, L"year", &AppendUnsigned, &CConversions::yearFromString, &QvVariant::GetYear,
              &QvVariant::m_year},
    SItemKind{ItemType_month, L"month", &CConversions::monthToString, &CConversions::monthFromString,
              &QvVariant::GetMonth, &QvVariant::m_month},
    SItemKind{ItemType_day, L"day", &CConversions::dayToString, &CConversions::dayFromString, &QvVariant::GetDay,
              &QvVariant::m_day},
    SItemKind{ItemType_date, L"date", &CConversions::dateToString, &CConversions::dateFromString, &QvVariant::GetDate,
              &QvVariant::m_pDateTime},
    SItemKind{ItemType_datetime, L"datetime", &CConversions::datetimeToString, &CConversions::datetimeFromString,
              &QvVariant::GetDateTime, &QvVariant::m_pDateTime},
    SItemKind{ItemType_time, L"time", &CConversions::timeToString, &CConversions::timeFromString, &QvVariant::GetTime,
              &QvVariant::m_pDateTime},
    SItemKind{ItemType_char, L"char", &CConversions::charToString, &CConversions::charFromString, &QvVariant::GetChar,
              &QvVariant::m_char},
    SItemKind{ItemType_string, L"string", &ViewOf, &CConversions::stringFromString, &QvVariant::StringRef,
              &QvVariant::m_pString},
    SItemKind{ItemType_boolean, L"boolean", &WordOf, &CConversions::booleanFromString, &QvVariant::GetBoolean,
              &QvVariant::m_boolean},
    SItemKind{ItemType_decimal, L"decimal", &CConversions::decimalToString, &CConversions::decimalFromString,
              &QvVariant::DecimalRef, &QvVariant::m_pDecimal},
    SItemKind{ItemType_integer, L"integer", &CConversions::integerToString, &CConversions::integerFromString,
              &QvVariant::IntegerRef, &QvVariant::m_pBigInteger},
};

/// One number for each row.
using ItemKindIndexes = std::make_index_sequence<std::tuple_size_v<decltype(s_itemKinds)>>;

namespace ItemTraitsDetail
{

template <std::size_t... nIndex>
constexpr bool IsInOrder(std::index_sequence<nIndex...>)
{
    return ((std::get<nIndex>(s_itemKinds).eType == static_cast<int>(nIndex) + 1) && ...);
}

template <class TMember>
struct SHeld;
template <class T>
struct SHeld<T QvVariant::*>
{
    using Value = std::remove_pointer_t<T>;
    static constexpr bool s_bIsObject = std::is_pointer_v<T>;
};

} // namespace ItemTraitsDetail

static_assert(std::tuple_size_v<decltype(s_itemKinds)> == ItemType_integer, "every kind has a row");
static_assert(ItemTraitsDetail::IsInOrder(ItemKindIndexes()), "rows are found by the number of their kind");

/// One kind, as its row of the list tells it.
template <ItemType eType>
struct SItemTraits
{
    static constexpr ItemType s_eType = eType;
    static constexpr const auto& s_kind = std::get<static_cast<std::size_t>(eType) - 1>(s_itemKinds);
    static constexpr auto s_pHeld = s_kind.pHeld;

    /// The C++ type of the kind.
    using Value = typename ItemTraitsDetail::SHeld<std::remove_const_t<decltype(s_pHeld)>>::Value;

    /// Whether a QvVariant holds an object of this kind, and not bits.
    static constexpr bool s_bIsObject = ItemTraitsDetail::SHeld<std::remove_const_t<decltype(s_pHeld)>>::s_bIsObject;

    /// How a function takes a value: objects by reference.
    using Argument = std::conditional_t<std::is_class_v<Value>, const Value&, Value>;

    static Value FromString(const std::wstring& value, CWhitespaceUtils::WhitespaceRule rule)
    {
        return s_kind.pfnRead(value, rule);
    }

    /// Appends the lexical form of a value, so that one buffer can serve many values.
    /// @param format matters to the kinds that have one; see CConversions.
    static void AppendText(std::wstring& strOut, Argument value, [[maybe_unused]] const wchar_t* format)
    {
        using TPrint = decltype(s_kind.pfnPrint);
        if constexpr (std::is_invocable_v<TPrint, std::wstring&, Argument, const wchar_t*>)
            s_kind.pfnPrint(strOut, value, format);
        else if constexpr (std::is_invocable_v<TPrint, std::wstring&, Argument>)
            s_kind.pfnPrint(strOut, value);
        else if constexpr (std::is_invocable_v<TPrint, Argument, const wchar_t*>)
            strOut += s_kind.pfnPrint(value, format);
        else
            strOut += s_kind.pfnPrint(value);
    }

    /// The same text as a string.
    static std::wstring ToString(Argument value, [[maybe_unused]] const wchar_t* format)
    {
        using TPrint = decltype(s_kind.pfnPrint);
        if constexpr (std::is_invocable_v<TPrint, Argument, const wchar_t*>)
            return s_kind.pfnPrint(value, format);
        else if constexpr (std::is_invocable_v<TPrint, Argument>)
            return std::wstring(s_kind.pfnPrint(value));
        else
            return AppendedText(value, format);
    }

    /// The value of a variant that holds this kind; asserted there. Large objects are not copied.
    static decltype(auto) Get(const QvVariant& value) { return (value.*s_kind.pfnGet)(); }

private:
    static std::wstring AppendedText(Argument value, const wchar_t* format)
    {
        std::wstring strText;
        AppendText(strText, value, format);
        return strText;
    }
};

namespace ItemTraitsDetail
{

template <class TVisitor, std::size_t... nIndex>
bool Visit(ItemType eType, TVisitor& visitor, std::index_sequence<nIndex...>)
{
    // Compilers make a switch of this.
    return ((eType == static_cast<ItemType>(nIndex + 1) &&
             (visitor(SItemTraits<static_cast<ItemType>(nIndex + 1)>()), true)) ||
            ...);
}

} // namespace ItemTraitsDetail

/// Calls `visitor` with the traits of `eType`, an SItemTraits by value, and returns true. A number that names no simple
/// value (invalid, object, collection, unknown) returns false without a call.
template <class TVisitor>
bool VisitItemType(ItemType eType, TVisitor&& visitor)
{
    return ItemTraitsDetail::Visit(eType, visitor, ItemKindIndexes());
}

/// The same as AppendText of the traits.
template <ItemType eType>
void AppendItemText(std::wstring& strOut, typename SItemTraits<eType>::Argument value, const wchar_t* format)
{
    SItemTraits<eType>::AppendText(strOut, value, format);
}

} // namespace QvXmlLib9
