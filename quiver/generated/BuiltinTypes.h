#pragma once

#include "quiver/foundation/BinaryData.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/values/BigInteger.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/Decimal.h"

#include <string>
#include <vector>

/// @file
/// The built-in types of XML Schema (Part 2, section 3), a struct each, as generated code has one for each simple type
/// of its schema: `Value` is how a value is held, `Type()` tells form and facets.

namespace QvXmlLib9
{
namespace xs
{

/// What the structs below have in common.
/// @tparam TSelf the struct, which has a constant `s_type`.
template <class TSelf, class TValue>
struct SBuiltin
{
    using Value = TValue;
    static const CSimpleType& Type() { return TSelf::s_type; }
};

struct AnySimpleType : SBuiltin<AnySimpleType, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:anySimpleType", CSimpleType::Form_Text, ItemType_string,
                                        CWhitespaceUtils::WhitespaceRule_None};
};

/// The text of an element with mixed content, all pieces joined.
struct MixedText : SBuiltin<MixedText, std::wstring>
{
    static constexpr CSimpleType s_type = AnySimpleType::s_type;
};

struct String : SBuiltin<String, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:string", CSimpleType::Form_Text, ItemType_string,
                                        CWhitespaceUtils::WhitespaceRule_None};
};

struct NormalizedString : SBuiltin<NormalizedString, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:normalizedString", CSimpleType::Form_Text, ItemType_string,
                                        CWhitespaceUtils::WhitespaceRule_Replace};
};

struct Token : SBuiltin<Token, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:token", CSimpleType::Form_Text, ItemType_string};
};

struct Language : SBuiltin<Language, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:language", CSimpleType::Form_Language, ItemType_string};
};

struct Name : SBuiltin<Name, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:Name", CSimpleType::Form_Name, ItemType_string};
};

struct NCName : SBuiltin<NCName, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:NCName", CSimpleType::Form_NCName, ItemType_string};
};

struct ID : SBuiltin<ID, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:ID", CSimpleType::Form_NCName, ItemType_string};
};

struct IDREF : SBuiltin<IDREF, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:IDREF", CSimpleType::Form_NCName, ItemType_string};
};

struct ENTITY : SBuiltin<ENTITY, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:ENTITY", CSimpleType::Form_NCName, ItemType_string};
};

struct NMTOKEN : SBuiltin<NMTOKEN, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:NMTOKEN", CSimpleType::Form_NmToken, ItemType_string};
};

struct IDREFS : SBuiltin<IDREFS, std::vector<std::wstring>>
{
    using Item = IDREF;
    static constexpr CSimpleType s_type = CSimpleType::ListOf(&IDREF::Type).MinLength(1);
};

struct ENTITIES : SBuiltin<ENTITIES, std::vector<std::wstring>>
{
    using Item = ENTITY;
    static constexpr CSimpleType s_type = CSimpleType::ListOf(&ENTITY::Type).MinLength(1);
};

struct NMTOKENS : SBuiltin<NMTOKENS, std::vector<std::wstring>>
{
    using Item = NMTOKEN;
    static constexpr CSimpleType s_type = CSimpleType::ListOf(&NMTOKEN::Type).MinLength(1);
};

/// Any text is taken: what an address may hold has no form that XML Schema would check.
struct AnyURI : SBuiltin<AnyURI, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:anyURI", CSimpleType::Form_Text, ItemType_string};
};

/// Held with its prefix. What that stands for is known to the object that holds the value (CGeneratedObject).
struct QName : SBuiltin<QName, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:QName", CSimpleType::Form_QName, ItemType_string};
};

struct NOTATION : SBuiltin<NOTATION, std::wstring>
{
    static constexpr CSimpleType s_type{L"xs:NOTATION", CSimpleType::Form_QName, ItemType_string};
};

struct Boolean : SBuiltin<Boolean, bool>
{
    static constexpr CSimpleType s_type{L"xs:boolean", CSimpleType::Form_Boolean, ItemType_boolean};
};

struct Float : SBuiltin<Float, float>
{
    static constexpr CSimpleType s_type{L"xs:float", CSimpleType::Form_Float, ItemType_r4};
};

struct Double : SBuiltin<Double, double>
{
    static constexpr CSimpleType s_type{L"xs:double", CSimpleType::Form_Float, ItemType_r8};
};

struct Decimal : SBuiltin<Decimal, CDecimal>
{
    static constexpr CSimpleType s_type{L"xs:decimal", CSimpleType::Form_Decimal, ItemType_decimal};
};

struct Integer : SBuiltin<Integer, CBigInteger>
{
    static constexpr CSimpleType s_type{L"xs:integer", CSimpleType::Form_Integer, ItemType_integer};
};

struct NonPositiveInteger : SBuiltin<NonPositiveInteger, CBigInteger>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:nonPositiveInteger", CSimpleType::Form_Integer, ItemType_integer).MaxInclusive(L"0");
};

struct NegativeInteger : SBuiltin<NegativeInteger, CBigInteger>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:negativeInteger", CSimpleType::Form_Integer, ItemType_integer).MaxInclusive(L"-1");
};

struct NonNegativeInteger : SBuiltin<NonNegativeInteger, CBigInteger>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:nonNegativeInteger", CSimpleType::Form_Integer, ItemType_integer).MinInclusive(L"0");
};

struct PositiveInteger : SBuiltin<PositiveInteger, CBigInteger>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:positiveInteger", CSimpleType::Form_Integer, ItemType_integer).MinInclusive(L"1");
};

/// @name Integers of any length, held in 64 bits: what does not fit is refused
/// @{
struct Integer64 : SBuiltin<Integer64, long long>
{
    static constexpr CSimpleType s_type{L"xs:integer of 64 bits", CSimpleType::Form_Integer, ItemType_i8};
};

struct NonPositiveInteger64 : SBuiltin<NonPositiveInteger64, long long>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:nonPositiveInteger of 64 bits", CSimpleType::Form_Integer, ItemType_i8).MaxInclusive(L"0");
};

struct NegativeInteger64 : SBuiltin<NegativeInteger64, long long>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:negativeInteger of 64 bits", CSimpleType::Form_Integer, ItemType_i8).MaxInclusive(L"-1");
};

struct NonNegativeInteger64 : SBuiltin<NonNegativeInteger64, long long>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:nonNegativeInteger of 64 bits", CSimpleType::Form_Integer, ItemType_i8).MinInclusive(L"0");
};

struct PositiveInteger64 : SBuiltin<PositiveInteger64, long long>
{
    static constexpr CSimpleType s_type =
        CSimpleType(L"xs:positiveInteger of 64 bits", CSimpleType::Form_Integer, ItemType_i8).MinInclusive(L"1");
};
/// @}

struct Long : SBuiltin<Long, long long>
{
    static constexpr CSimpleType s_type{L"xs:long", CSimpleType::Form_Integer, ItemType_i8};
};

struct Int : SBuiltin<Int, int>
{
    static constexpr CSimpleType s_type{L"xs:int", CSimpleType::Form_Integer, ItemType_i4};
};

struct Short : SBuiltin<Short, short>
{
    static constexpr CSimpleType s_type{L"xs:short", CSimpleType::Form_Integer, ItemType_i2};
};

struct Byte : SBuiltin<Byte, signed char>
{
    static constexpr CSimpleType s_type{L"xs:byte", CSimpleType::Form_Integer, ItemType_i1};
};

struct UnsignedLong : SBuiltin<UnsignedLong, unsigned long long>
{
    static constexpr CSimpleType s_type{L"xs:unsignedLong", CSimpleType::Form_Integer, ItemType_ui8};
};

struct UnsignedInt : SBuiltin<UnsignedInt, unsigned int>
{
    static constexpr CSimpleType s_type{L"xs:unsignedInt", CSimpleType::Form_Integer, ItemType_ui4};
};

struct UnsignedShort : SBuiltin<UnsignedShort, unsigned short>
{
    static constexpr CSimpleType s_type{L"xs:unsignedShort", CSimpleType::Form_Integer, ItemType_ui2};
};

struct UnsignedByte : SBuiltin<UnsignedByte, unsigned char>
{
    static constexpr CSimpleType s_type{L"xs:unsignedByte", CSimpleType::Form_Integer, ItemType_ui1};
};

struct Duration : SBuiltin<Duration, CDateTimeSpan>
{
    static constexpr CSimpleType s_type{L"xs:duration", CSimpleType::Form_Duration, ItemType_duration};
};

struct DateTime : SBuiltin<DateTime, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:dateTime", CSimpleType::Form_DateTime, ItemType_datetime};
};

struct Date : SBuiltin<Date, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:date", CSimpleType::Form_Date, ItemType_date};
};

struct Time : SBuiltin<Time, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:time", CSimpleType::Form_Time, ItemType_time};
};

struct GYearMonth : SBuiltin<GYearMonth, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:gYearMonth", CSimpleType::Form_YearMonth, ItemType_yearMonth};
};

/// Years, months and days are values with a zone here, not the bare numbers of ItemType_year.
struct GYear : SBuiltin<GYear, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:gYear", CSimpleType::Form_Year, ItemType_string};
};

struct GMonthDay : SBuiltin<GMonthDay, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:gMonthDay", CSimpleType::Form_MonthDay, ItemType_monthDay};
};

struct GDay : SBuiltin<GDay, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:gDay", CSimpleType::Form_Day, ItemType_string};
};

struct GMonth : SBuiltin<GMonth, CDateTime>
{
    static constexpr CSimpleType s_type{L"xs:gMonth", CSimpleType::Form_Month, ItemType_string};
};

struct HexBinary : SBuiltin<HexBinary, CBinaryData>
{
    static constexpr CSimpleType s_type{L"xs:hexBinary", CSimpleType::Form_HexBinary, ItemType_hexBinary};
};

struct Base64Binary : SBuiltin<Base64Binary, CBinaryData>
{
    static constexpr CSimpleType s_type{L"xs:base64Binary", CSimpleType::Form_Base64Binary, ItemType_base64Binary};
};

} // namespace xs
} // namespace QvXmlLib9
