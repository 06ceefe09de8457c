#include "quiver/generated/Value.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/LexicalForm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace QvXmlLib9;

namespace
{

enum class EColour : int
{
    Red,
    DarkBlue
};

struct SColour
{
    using Value = EColour;
    static const CSimpleType& Type()
    {
        static constexpr const wchar_t* s_values[] = {L"red", L"dark blue"};
        static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).Values(s_values);
        return s_type;
    }
};

template <class TItem>
struct SListOf
{
    using Value = std::vector<typename TItem::Value>;
    using Item = TItem;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType::ListOf(&TItem::Type);
        return s_type;
    }
};

/// Reads a text, prints it, and reads that again; a writer gets the same text.
template <class TType>
std::wstring Printed(const wchar_t* lpctText)
{
    const auto value = ValueOf<TType>(lpctText, L"x");
    const std::wstring strText = ValueText(TType::Type(), value);
    EXPECT_EQ(ValueText(TType::Type(), ValueOf<TType>(strText, L"x")), strText);
    QvVariant variant;
    StoreValue(TType::Type(), value, variant);
    EXPECT_EQ(variant.ToString(nullptr), strText);
    EXPECT_EQ(ValueText(TType::Type(), CheckedValue<TType>(value, L"x")), strText);
    return strText;
}

template <class TType>
ItemType KindOf(const wchar_t* lpctText)
{
    QvVariant variant;
    StoreValue(TType::Type(), ValueOf<TType>(lpctText, L"x"), variant);
    return variant.GetTypeAsEnum();
}

} // namespace

TEST(Value, PrintsWhatItReads)
{
    EXPECT_EQ(Printed<xs::String>(L" a "), L" a ");
    EXPECT_EQ(Printed<xs::Token>(L" a  b "), L"a b");
    EXPECT_EQ(Printed<xs::Boolean>(L" 1 "), L"true");
    EXPECT_EQ(Printed<xs::Boolean>(L"false"), L"false");
    EXPECT_EQ(Printed<xs::Byte>(L"-128"), L"-128");
    EXPECT_EQ(Printed<xs::UnsignedByte>(L"+255"), L"255");
    EXPECT_EQ(Printed<xs::Short>(L"-32768"), L"-32768");
    EXPECT_EQ(Printed<xs::UnsignedShort>(L"65535"), L"65535");
    EXPECT_EQ(Printed<xs::Int>(L"-2147483648"), L"-2147483648");
    EXPECT_EQ(Printed<xs::UnsignedInt>(L"4294967295"), L"4294967295");
    EXPECT_EQ(Printed<xs::Long>(L"-9223372036854775808"), L"-9223372036854775808");
    EXPECT_EQ(Printed<xs::Long>(L"9223372036854775807"), L"9223372036854775807");
    EXPECT_EQ(Printed<xs::UnsignedLong>(L"18446744073709551615"), L"18446744073709551615");
    EXPECT_EQ(Printed<xs::Integer>(L"-99999999999999999999999"), L"-99999999999999999999999");
    EXPECT_EQ(Printed<xs::Integer64>(L"-0042"), L"-42");
    EXPECT_EQ(Printed<xs::Decimal>(L"0012.500"), L"12.5");
    EXPECT_EQ(Printed<xs::HexBinary>(L"0aff"), L"0AFF");
    EXPECT_EQ(Printed<xs::HexBinary>(L""), L"");
    EXPECT_EQ(Printed<xs::Base64Binary>(L"A A E ="), L"AAE=");
    EXPECT_EQ(Printed<xs::Base64Binary>(L""), L"");
    EXPECT_EQ(Printed<SColour>(L" dark   blue"), L"dark blue");
    EXPECT_EQ(Printed<SListOf<xs::Int>>(L" 1  02 "), L"1 2");
    EXPECT_EQ(Printed<SListOf<xs::Boolean>>(L"1 0 true"), L"true false true");
    EXPECT_EQ(Printed<SListOf<xs::Date>>(L"2001-01-01 2002-01-01Z"), L"2001-01-01 2002-01-01Z");
    EXPECT_EQ(Printed<SListOf<xs::Token>>(L""), L"");
}

TEST(Value, PrintsDates)
{
    EXPECT_EQ(Printed<xs::DateTime>(L"2001-02-03T04:05:06.700Z"), L"2001-02-03T04:05:06.7Z");
    EXPECT_EQ(Printed<xs::DateTime>(L"-0044-03-15T12:00:00.123456789012-05:30"),
              L"-0044-03-15T12:00:00.123456789-05:30");
    EXPECT_EQ(Printed<xs::DateTime>(L"2001-12-31T24:00:00+14:00"), L"2002-01-01T00:00:00+14:00");
    EXPECT_EQ(Printed<xs::Date>(L"-0004-02-29"), L"-0004-02-29");
    EXPECT_EQ(Printed<xs::Date>(L"2001-01-01-01:00"), L"2001-01-01-01:00");
    EXPECT_EQ(Printed<xs::Date>(L"2001-01-01-00:00"), L"2001-01-01+00:00");
    EXPECT_EQ(Printed<xs::Time>(L"24:00:00"), L"00:00:00");
    EXPECT_EQ(Printed<xs::Time>(L"00:00:00.000000001Z"), L"00:00:00.000000001Z");
    EXPECT_EQ(Printed<xs::GYearMonth>(L"2001-12Z"), L"2001-12Z");
    EXPECT_EQ(Printed<xs::GYear>(L"-0001+00:30"), L"-0001+00:30");
    EXPECT_EQ(Printed<xs::GMonthDay>(L"--02-29"), L"--02-29");
    EXPECT_EQ(Printed<xs::GDay>(L"---31-05:00"), L"---31-05:00");
    EXPECT_EQ(Printed<xs::GMonth>(L"--12Z"), L"--12Z");
}

TEST(Value, PrintsDurations)
{
    EXPECT_EQ(Printed<xs::Duration>(L"-P1Y2M3DT4H5M6.000700S"), L"-P1Y2M3DT4H5M6.0007S");
    EXPECT_EQ(Printed<xs::Duration>(L"P0Y"), L"PT0S");
    EXPECT_EQ(Printed<xs::Duration>(L"-PT0S"), L"-PT0S");
    EXPECT_EQ(Printed<xs::Duration>(L"P65535Y4294967295M4294967295DT4294967295H9999999999M9999999999.123456789S"),
              L"P65535Y4294967295M4294967295DT4294967295H9999999999M9999999999.123456789S");
    EXPECT_EQ(ValueText(xs::Duration::Type(), CDateTimeSpan()), L"PT0S");
}

TEST(Value, KeepsTheDigitsOfNumbers)
{
    EXPECT_EQ(Printed<xs::Double>(L"0.1"), L"0.1");
    EXPECT_EQ(Printed<xs::Double>(L"-INF"), L"-INF");
    EXPECT_EQ(Printed<xs::Double>(L"NaN"), L"NaN");
    EXPECT_EQ(Printed<xs::Float>(L"0.1"), L"0.1");
    EXPECT_EQ(Printed<xs::Float>(L"-1.4832814E28"), L"-1.4832814e+28");
    EXPECT_EQ(Printed<xs::Float>(L"16777217.5"), L"16777218");
    for (const double d : {0.1, 1.0 / 3, 0.30000000000000004, std::numeric_limits<double>::max(),
                           std::numeric_limits<double>::denorm_min(), -123456789.123456789})
        EXPECT_EQ(ValueOf<xs::Double>(ValueText(xs::Double::Type(), d), L"x"), d);
    for (const float f :
         {0.1f, 1.0f / 3, std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(), 16777217.0f})
        EXPECT_EQ(ValueOf<xs::Float>(ValueText(xs::Float::Type(), f), L"x"), f);
    QvVariant variant;
    StoreValue(xs::Double::Type(), 0.30000000000000004, variant);
    EXPECT_EQ(variant.ToString(nullptr), L"0.30000000000000004");
}

TEST(Value, GoesToTheWriterAsItsKind)
{
    EXPECT_EQ(KindOf<xs::String>(L"a"), ItemType_string);
    EXPECT_EQ(KindOf<xs::Boolean>(L"1"), ItemType_boolean);
    EXPECT_EQ(KindOf<xs::Byte>(L"1"), ItemType_i1);
    EXPECT_EQ(KindOf<xs::Short>(L"1"), ItemType_i2);
    EXPECT_EQ(KindOf<xs::Int>(L"1"), ItemType_i4);
    EXPECT_EQ(KindOf<xs::Long>(L"1"), ItemType_i8);
    EXPECT_EQ(KindOf<xs::UnsignedByte>(L"1"), ItemType_ui1);
    EXPECT_EQ(KindOf<xs::UnsignedShort>(L"1"), ItemType_ui2);
    EXPECT_EQ(KindOf<xs::UnsignedInt>(L"1"), ItemType_ui4);
    EXPECT_EQ(KindOf<xs::UnsignedLong>(L"1"), ItemType_ui8);
    EXPECT_EQ(KindOf<xs::Float>(L"0.5"), ItemType_r4);
    EXPECT_EQ(KindOf<xs::Double>(L"0.5"), ItemType_r8);
    EXPECT_EQ(KindOf<xs::Double>(L"0.30000000000000004"), ItemType_string);
    EXPECT_EQ(KindOf<xs::Decimal>(L"1"), ItemType_decimal);
    EXPECT_EQ(KindOf<xs::Integer>(L"1"), ItemType_integer);
    EXPECT_EQ(KindOf<xs::DateTime>(L"2001-01-01T00:00:00"), ItemType_datetime);
    EXPECT_EQ(KindOf<xs::Date>(L"2001-01-01"), ItemType_date);
    EXPECT_EQ(KindOf<xs::Time>(L"00:00:00"), ItemType_time);
    EXPECT_EQ(KindOf<xs::GYearMonth>(L"2001-01"), ItemType_yearMonth);
    EXPECT_EQ(KindOf<xs::GMonthDay>(L"--01-01"), ItemType_monthDay);
    EXPECT_EQ(KindOf<xs::GYear>(L"2001Z"), ItemType_string);
    EXPECT_EQ(KindOf<xs::GMonth>(L"--01"), ItemType_string);
    EXPECT_EQ(KindOf<xs::GDay>(L"---01"), ItemType_string);
    EXPECT_EQ(KindOf<xs::Duration>(L"P1Y"), ItemType_duration);
    EXPECT_EQ(KindOf<xs::Duration>(L"PT0S"), ItemType_string);
    EXPECT_EQ(KindOf<xs::HexBinary>(L"00"), ItemType_hexBinary);
    EXPECT_EQ(KindOf<xs::Base64Binary>(L"AAAA"), ItemType_base64Binary);
    EXPECT_EQ(KindOf<SColour>(L"red"), ItemType_string);
    EXPECT_EQ(KindOf<SListOf<xs::Int>>(L"1 2"), ItemType_string);
}

TEST(Value, ChecksWhatAProgramGives)
{
    EXPECT_EQ(CheckedValue<xs::Token>(L" a  b ", L"x"), L"a b");
    EXPECT_EQ(CheckedValue<xs::String>(L" a ", L"x"), L" a ");
    EXPECT_THROW(CheckedValue<xs::NCName>(L"a:b", L"x"), CQvInvalidValueException);
    EXPECT_THROW(CheckedValue<xs::Date>(CDateTime(L"2001-01-01T00:00:00"), L"x"), CQvInvalidValueException);
    EXPECT_THROW(CheckedValue<xs::Date>(CDateTime(), L"x"), CQvInvalidValueException);
    EXPECT_THROW(CheckedValue<xs::Duration>(CDateTimeSpan(0, 99999999999, 0), L"x"), CQvInvalidValueException);
    EXPECT_THROW(CheckedValue<xs::PositiveInteger>(CBigInteger(L"0"), L"x"), CQvInvalidValueException);
    EXPECT_THROW(CheckedValue<SColour>(static_cast<EColour>(2), L"x"), CQvInvalidParamException);
    EXPECT_THROW(CheckedValue<SColour>(static_cast<EColour>(-1), L"x"), CQvInvalidParamException);
    EXPECT_THROW(CheckedValue<SListOf<xs::Token>>({L"a b"}, L"x"), CQvInvalidValueException);
    try
    {
        ValueOf<xs::Int>(L" 1x ", L"quantity");
        FAIL() << "that is no number";
    }
    catch (const CQvInvalidValueException& ex)
    {
        EXPECT_EQ(ex.GetFullMessage(), L"Invalid Value for quantity [1x]\nThe value is no xs:int");
    }
}

TEST(Value, BuildsListsOfItemsThatCanBeRead)
{
    std::wstring strText;
    AppendListItem(strText, L"a");
    AppendListItem(strText, L"b");
    EXPECT_EQ(strText, L"a b");
    for (const wchar_t* lpctItem : {L"", L" ", L"a b", L"a\t"})
    {
        try
        {
            AppendListItem(strText, lpctItem);
            ADD_FAILURE() << ::testing::PrintToString(std::wstring(lpctItem)) << " was taken";
        }
        catch (const CQvInvalidValueException& ex)
        {
            EXPECT_EQ(ex.GetMessageW(),
                      L"The item [" + std::wstring(lpctItem) + L"] of a list is empty or holds white space");
        }
    }
    EXPECT_EQ(strText, L"a b");
    EXPECT_EQ(ListItems(SListOf<xs::Token>::Type(), L" a\n b "), (std::vector<std::wstring>{L"a", L"b"}));
}

TEST(Value, TellsFormsFromValues)
{
    EXPECT_TRUE(HasForm(xs::Byte::Type().GetForm(), L"128"));
    EXPECT_FALSE(IsInValueSpace(xs::Byte::Type(), L"128"));
    EXPECT_TRUE(IsInValueSpace(xs::Byte::Type(), L"-00000000000000000000000128"));
    EXPECT_FALSE(IsInValueSpace(xs::UnsignedLong::Type(), L"99999999999999999999999999"));
    EXPECT_FALSE(IsInValueSpace(xs::Date::Type(), L"10000-01-01"));
    EXPECT_FALSE(IsInValueSpace(xs::Time::Type(), L"00:00:00-00:59"));
    EXPECT_TRUE(IsInValueSpace(xs::Time::Type(), L"00:00:00-01:59"));
    EXPECT_TRUE(IsInValueSpace(xs::Integer::Type(), L"99999999999999999999999999"));
}

TEST(Value, ConvertsToUtf8AndBack)
{
    EXPECT_EQ(ToUtf8(std::wstring(L"a\u00E9\xD83D\xDE00")), "a\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_EQ(FromUtf8(std::string("a\xC3\xA9\xF0\x9F\x98\x80")), L"a\u00E9\xD83D\xDE00");
    EXPECT_EQ(ToUtf8(L"a\u00E9"), "a\xC3\xA9");
    EXPECT_EQ(FromUtf8("a\xC3\xA9"), L"a\u00E9");
    EXPECT_EQ(ToUtf8(std::optional<std::wstring>()), std::nullopt);
    EXPECT_EQ(FromUtf8(std::optional<std::string>()), std::nullopt);
    EXPECT_EQ(*ToUtf8(std::optional<std::wstring>(L"a")), "a");
    EXPECT_EQ(*FromUtf8(std::optional<std::string>("a")), L"a");
    EXPECT_EQ(ToUtf8(std::vector<std::wstring>{L"a", L""}), (std::vector<std::string>{"a", ""}));
    EXPECT_EQ(FromUtf8(std::vector<std::string>{"a", ""}), (std::vector<std::wstring>{L"a", L""}));
    EXPECT_EQ(ToUtf8(std::optional<std::vector<std::wstring>>()), std::nullopt);
    EXPECT_EQ(FromUtf8(std::optional<std::vector<std::string>>()), std::nullopt);
    EXPECT_EQ(*ToUtf8(std::optional<std::vector<std::wstring>>({L"a", L"b"})), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(*FromUtf8(std::optional<std::vector<std::string>>({"a", "b"})), (std::vector<std::wstring>{L"a", L"b"}));
    try
    {
        ToUtf8(std::wstring(L"\xD800"));
        FAIL() << "half a pair is no text";
    }
    catch (const CQvInvalidValueException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"The text is not well-formed");
    }
    try
    {
        FromUtf8(std::string("\xFF"));
        FAIL() << "these bytes are no text";
    }
    catch (const CQvInvalidValueException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"The text is not well-formed UTF-8");
    }
}
