#include "quiver/generated/SimpleType.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/generated/BuiltinTypes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

/// What is wrong with a text, empty for nothing.
std::wstring Fault(const CSimpleType& type, const std::wstring& strText)
{
    try
    {
        type.Check(type.Normalize(strText), L"x");
    }
    catch (const CQvInvalidValueException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"Invalid Value for x [" + type.Normalize(strText) + L"]");
        EXPECT_FALSE(type.IsValid(type.Normalize(strText)));
        EXPECT_NE(ex.GetInnerException(), nullptr);
        return ex.GetInnerException()->GetMessageW();
    }
    EXPECT_TRUE(type.IsValid(type.Normalize(strText)));
    return std::wstring();
}

struct SCase
{
    CSimpleType type;
    const wchar_t* lpctText;
    const wchar_t* lpctFault;
};

void Check(const std::vector<SCase>& cases)
{
    for (std::size_t n = 0; n < cases.size(); ++n)
    {
        SCOPED_TRACE(::testing::Message()
                     << "case " << n << ", " << ::testing::PrintToString(std::wstring(cases[n].lpctText)));
        EXPECT_EQ(Fault(cases[n].type, cases[n].lpctText), cases[n].lpctFault);
    }
}

const CSimpleType& SmallInt()
{
    static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type).MaxInclusive(L"9");
    return s_type;
}

const CSimpleType& ColourName()
{
    static constexpr const wchar_t* s_values[] = {L"red", L"dark blue"};
    static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).Values(s_values);
    return s_type;
}

} // namespace

TEST(SimpleType, NamesTheFormThatIsMissed)
{
    const struct
    {
        const CSimpleType& type;
        const wchar_t* lpctText;
        const wchar_t* lpctName;
    } cases[] = {{xs::Boolean::Type(), L"2", L"xs:boolean"},
                 {xs::Integer::Type(), L"1.0", L"xs:integer"},
                 {xs::Integer64::Type(), L"9223372036854775808", L"xs:integer of 64 bits"},
                 {xs::Long::Type(), L"-9223372036854775809", L"xs:long"},
                 {xs::Int::Type(), L"2147483648", L"xs:int"},
                 {xs::Short::Type(), L"-32769", L"xs:short"},
                 {xs::Byte::Type(), L"128", L"xs:byte"},
                 {xs::UnsignedLong::Type(), L"18446744073709551616", L"xs:unsignedLong"},
                 {xs::UnsignedInt::Type(), L"4294967296", L"xs:unsignedInt"},
                 {xs::UnsignedShort::Type(), L"-1", L"xs:unsignedShort"},
                 {xs::UnsignedByte::Type(), L"256", L"xs:unsignedByte"},
                 {xs::Decimal::Type(), L"1e5", L"xs:decimal"},
                 {xs::Float::Type(), L"+INF", L"xs:float"},
                 {xs::Double::Type(), L"nan", L"xs:double"},
                 {xs::DateTime::Type(), L"2001-01-01", L"xs:dateTime"},
                 {xs::Date::Type(), L"2001-02-29", L"xs:date"},
                 {xs::Date::Type(), L"10000-01-01", L"xs:date"},
                 {xs::DateTime::Type(), L"9999-12-31T24:00:00", L"xs:dateTime"},
                 {xs::Date::Type(), L"2001-01-01-00:30", L"xs:date"},
                 {xs::Time::Type(), L"24:00:01", L"xs:time"},
                 {xs::GYear::Type(), L"0000", L"xs:gYear"},
                 {xs::GYearMonth::Type(), L"2001-13", L"xs:gYearMonth"},
                 {xs::GMonth::Type(), L"--13", L"xs:gMonth"},
                 {xs::GMonthDay::Type(), L"--02-30", L"xs:gMonthDay"},
                 {xs::GDay::Type(), L"---32", L"xs:gDay"},
                 {xs::Duration::Type(), L"P", L"xs:duration"},
                 {xs::Duration::Type(), L"P65536Y", L"xs:duration"},
                 {xs::Duration::Type(), L"P4294967296M", L"xs:duration"},
                 {xs::HexBinary::Type(), L"0", L"xs:hexBinary"},
                 {xs::Base64Binary::Type(), L"AB==", L"xs:base64Binary"},
                 {xs::Name::Type(), L"1", L"xs:Name"},
                 {xs::NCName::Type(), L"a:b", L"xs:NCName"},
                 {xs::ID::Type(), L"1", L"xs:ID"},
                 {xs::IDREF::Type(), L"1", L"xs:IDREF"},
                 {xs::ENTITY::Type(), L"", L"xs:ENTITY"},
                 {xs::NMTOKEN::Type(), L"a b", L"xs:NMTOKEN"},
                 {xs::Language::Type(), L"e1", L"xs:language"},
                 {xs::QName::Type(), L"a:", L"xs:QName"},
                 {xs::NOTATION::Type(), L":a", L"xs:NOTATION"}};
    for (const auto& c : cases)
        EXPECT_EQ(Fault(c.type, c.lpctText), std::wstring(L"The value is no ") + c.lpctName);
}

TEST(SimpleType, HoldsTheIntegersOfTheirBounds)
{
    Check({{xs::NonNegativeInteger::Type(), L"-0", L""},
           {xs::NonNegativeInteger::Type(), L"-1", L"The value is below 0"},
           {xs::PositiveInteger::Type(), L"99999999999999999999", L""},
           {xs::PositiveInteger::Type(), L"0", L"The value is below 1"},
           {xs::NonPositiveInteger::Type(), L"+0", L""},
           {xs::NonPositiveInteger::Type(), L"1", L"The value is above 0"},
           {xs::NegativeInteger::Type(), L"-99999999999999999999", L""},
           {xs::NegativeInteger::Type(), L"0", L"The value is above -1"},
           {xs::NonNegativeInteger64::Type(), L"-1", L"The value is below 0"},
           {xs::PositiveInteger64::Type(), L"0", L"The value is below 1"},
           {xs::NonPositiveInteger64::Type(), L"1", L"The value is above 0"},
           {xs::NegativeInteger64::Type(), L"0", L"The value is above -1"},
           {xs::Long::Type(), L"-9223372036854775808", L""},
           {xs::UnsignedLong::Type(), L"18446744073709551615", L""},
           {xs::UnsignedByte::Type(), L"-0", L""},
           {xs::Byte::Type(), L"-128", L""}});
}

TEST(SimpleType, ChecksBoundsAtThemAndOnePast)
{
    const CSimpleType number = xs::Decimal::s_type;
    Check({{number.MinInclusive(L"1.5"), L"1.50", L""},
           {number.MinInclusive(L"1.5"), L"1.49", L"The value is below 1.5"},
           {number.MaxInclusive(L"1.5"), L"01.5", L""},
           {number.MaxInclusive(L"1.5"), L"1.51", L"The value is above 1.5"},
           {number.MinExclusive(L"1.5"), L"1.51", L""},
           {number.MinExclusive(L"1.5"), L"1.5", L"The value is not above 1.5"},
           {number.MaxExclusive(L"1.5"), L"1.49", L""},
           {number.MaxExclusive(L"1.5"), L"1.50", L"The value is not below 1.5"},
           {xs::Double::s_type.MaxInclusive(L"5"), L"5.0E0", L""},
           {xs::Double::s_type.MaxInclusive(L"5"), L"5.1", L"The value is above 5"},
           {xs::Double::s_type.MaxInclusive(L"5"), L"NaN", L"The value is above 5"},
           {xs::Double::s_type.MinInclusive(L"-INF"), L"-INF", L""},
           {xs::Double::s_type.MinInclusive(L"NaN"), L"NaN", L""},
           {xs::Double::s_type.MinInclusive(L"NaN"), L"1", L"The value is below NaN"},
           {xs::Float::s_type.MaxExclusive(L"INF"), L"1e30", L""},
           {xs::Date::s_type.MinInclusive(L"2001-01-01"), L"2001-01-01", L""},
           {xs::Date::s_type.MinInclusive(L"2001-01-01"), L"2000-12-31", L"The value is below 2001-01-01"},
           {xs::Date::s_type.MinInclusive(L"2001-01-01"), L"2001-01-01Z", L"The value is below 2001-01-01"},
           {xs::Date::s_type.MinInclusive(L"2001-01-01"), L"2001-01-02Z", L""},
           {xs::Date::s_type.MaxExclusive(L"99999999999-01-01"), L"2001-01-01",
            L"The value is not below 99999999999-01-01"},
           {xs::Duration::s_type.MaxInclusive(L"P1M"), L"P28D", L"The value is above P1M"},
           {xs::Duration::s_type.MaxInclusive(L"P1M"), L"P27D", L""},
           {xs::Duration::s_type.MinExclusive(L"PT1H"), L"PT60M", L"The value is not above PT1H"},
           {xs::Duration::s_type.MinExclusive(L"P99999999999Y"), L"P1Y", L"The value is not above P99999999999Y"}});
}

TEST(SimpleType, CountsLengthsAndDigits)
{
    const CSimpleType text = xs::String::s_type;
    Check({{text.Length(2), L"ab", L""},
           {text.Length(2), L"a", L"The value is shorter than 2"},
           {text.Length(2), L"abc", L"The value is longer than 2"},
           {text.MinLength(0), L"", L""},
           {text.MaxLength(0), L"", L""},
           {text.MaxLength(0), L" ", L"The value is longer than 0"},
           {text.MaxLength(2), L"\xD83D\xDE00\xD83D\xDE00", L""},
           {text.MaxLength(1), L"\xD83D\xDE00\xD83D\xDE00", L"The value is longer than 1"},
           {xs::Token::s_type.Length(1), L"  a ", L""},
           {xs::HexBinary::s_type.Length(2), L"00ff", L""},
           {xs::HexBinary::s_type.Length(2), L"00", L"The value is shorter than 2"},
           {xs::Base64Binary::s_type.MaxLength(1), L"AA = =", L""},
           {xs::Base64Binary::s_type.MaxLength(1), L"AAA=", L"The value is longer than 1"},
           {xs::Decimal::s_type.TotalDigits(3), L"-0012.30", L""},
           {xs::Decimal::s_type.TotalDigits(3), L"12.34", L"The value has more digits than 3"},
           {xs::Decimal::s_type.FractionDigits(0), L"5.00", L""},
           {xs::Decimal::s_type.FractionDigits(1), L"0.01", L"The value has more fraction digits than 1"},
           {xs::Int::s_type.TotalDigits(2), L"100", L"The value has more digits than 2"}});
}

TEST(SimpleType, CountsTheCharactersOfUtf8)
{
    const CSimpleType type = CSimpleType(xs::String::s_type).MinLength(2).MaxLength(3);
    for (const char* const lpcText : {"ab", "abc", "\xC3\xA9\xE2\x82\xAC", "\xF0\x9F\x98\x80xy"})
        EXPECT_TRUE(type.TakesUtf8(lpcText)) << lpcText;
    for (const char* const lpcText : {"", "a", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "abcd"})
        EXPECT_FALSE(type.TakesUtf8(lpcText)) << lpcText;
}

TEST(SimpleType, MatchesPatternsWithTheWholeValue)
{
    const CSimpleType text = xs::String::s_type;
    Check({{text.Pattern(L"[A-Z]{3}-\\d+"), L"ABC-1", L""},
           {text.Pattern(L"[A-Z]{3}-\\d+"), L"ABC-1 ", L"The value does not match the pattern [A-Z]{3}-\\d+"},
           {text.Pattern(L""), L"", L""},
           {text.Pattern(L""), L"a", L"The value does not match the pattern "},
           {text.Pattern(L"(?:a|ab)\\z"), L"ab", L""},
           {text.Pattern(L"\u00E4+"), L"\u00E4\u00E4", L""},
           {xs::Int::s_type.Pattern(L"\\d\\d"), L" 42 ", L""},
           {xs::Int::s_type.Pattern(L"\\d\\d"), L"042", L"The value does not match the pattern \\d\\d"}});
    EXPECT_THROW(text.Pattern(L"(").IsValid(L"a"), CQvException);
}

TEST(SimpleType, TreatsWhiteSpace)
{
    const CSimpleType keep = xs::String::s_type;
    const CSimpleType replace = xs::NormalizedString::s_type;
    const CSimpleType collapse = xs::Token::s_type;
    const struct
    {
        const wchar_t* lpctText;
        const wchar_t* lpctReplaced;
        const wchar_t* lpctCollapsed;
    } cases[] = {{L"", L"", L""},
                 {L" ", L" ", L""},
                 {L"\t\r\n ", L"    ", L""},
                 {L"a", L"a", L"a"},
                 {L" a\tb\r\nc ", L" a b  c ", L"a b c"},
                 {L"a\u00A0b", L"a\u00A0b", L"a\u00A0b"}};
    for (const auto& c : cases)
    {
        EXPECT_EQ(keep.Normalize(c.lpctText), c.lpctText);
        EXPECT_EQ(replace.Normalize(c.lpctText), c.lpctReplaced);
        EXPECT_EQ(collapse.Normalize(c.lpctText), c.lpctCollapsed);
        EXPECT_EQ(keep.WhiteSpace(CWhitespaceUtils::WhitespaceRule_Collapse).Normalize(c.lpctText), c.lpctCollapsed);
    }
}

TEST(SimpleType, ComparesEnumerationsByValue)
{
    static constexpr const wchar_t* s_integers[] = {L"1", L"20"};
    static constexpr const wchar_t* s_decimals[] = {L"1.5", L"0"};
    static constexpr const wchar_t* s_floats[] = {L"1e1", L"NaN", L"INF"};
    static constexpr const wchar_t* s_flags[] = {L"true"};
    static constexpr const wchar_t* s_dates[] = {L"2001-01-01Z", L"2002-01-01"};
    static constexpr const wchar_t* s_durations[] = {L"P1Y"};
    static constexpr const wchar_t* s_hex[] = {L"0aFF"};
    static constexpr const wchar_t* s_base64[] = {L"AAAA"};
    static constexpr const wchar_t* s_texts[] = {L"1"};
    static constexpr const wchar_t* s_lists[] = {L"1 2"};
    static constexpr PfnSimpleType s_members[] = {&xs::Int::Type, &ColourName};
    static constexpr const wchar_t* s_either[] = {L"7", L"dark blue"};
    const CSimpleType list = CSimpleType::ListOf(&xs::Int::Type).Values(s_lists);
    const CSimpleType either = CSimpleType::UnionOf(s_members).Values(s_either);
    const struct
    {
        CSimpleType type;
        const wchar_t* lpctText;
        int nPlace;
    } cases[] = {{xs::Int::s_type.Values(s_integers), L"+020", 1},
                 {xs::Int::s_type.Values(s_integers), L"2", -1},
                 {xs::Decimal::s_type.Values(s_decimals), L"01.50", 0},
                 {xs::Decimal::s_type.Values(s_decimals), L"-0.0", 1},
                 {xs::Double::s_type.Values(s_floats), L"10", 0},
                 {xs::Double::s_type.Values(s_floats), L"NaN", 1},
                 {xs::Double::s_type.Values(s_floats), L"-INF", -1},
                 {xs::Boolean::s_type.Values(s_flags), L"1", 0},
                 {xs::Boolean::s_type.Values(s_flags), L"0", -1},
                 {xs::Date::s_type.Values(s_dates), L"2001-01-01+00:00", 0},
                 {xs::Date::s_type.Values(s_dates), L"2001-01-01", -1},
                 {xs::Date::s_type.Values(s_dates), L"2002-01-01", 1},
                 {xs::Duration::s_type.Values(s_durations), L"P12M", 0},
                 {xs::Duration::s_type.Values(s_durations), L"P365D", -1},
                 {xs::HexBinary::s_type.Values(s_hex), L"0Aff", 0},
                 {xs::HexBinary::s_type.Values(s_hex), L"0A", -1},
                 {xs::Base64Binary::s_type.Values(s_base64), L"A A A A", 0},
                 {xs::String::s_type.Values(s_texts), L"01", -1},
                 {list, L"01 +2", 0},
                 {list, L"1 2 3", -1},
                 {list, L"1", -1},
                 {either, L" 07", 0},
                 {either, L"dark  blue", 1},
                 {either, L"red", -1}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(c.lpctText)));
        EXPECT_EQ(c.type.FindValue(c.lpctText), c.nPlace);
        EXPECT_EQ(Fault(c.type, c.lpctText), c.nPlace < 0 ? L"The value is none of the enumeration" : L"");
    }
}

TEST(SimpleType, ChecksListsAndTheirItems)
{
    const CSimpleType list = CSimpleType::ListOf(&SmallInt);
    Check({{list, L"", L""},
           {list, L" 1  9\t", L""},
           {list, L"1 x", L"Item [x]: The value is no xs:int"},
           {list, L"1 10", L"Item [10]: The value is above 9"},
           {list.Length(2), L"1 2", L""},
           {list.Length(2), L"1", L"The value is shorter than 2"},
           {list.MaxLength(2), L"1 2 3", L"The value is longer than 2"},
           {list.Pattern(L"1.*"), L"1 2", L""},
           {list.Pattern(L"1.*"), L"2 1", L"The value does not match the pattern 1.*"},
           {xs::NMTOKENS::Type(), L"", L"The value is shorter than 1"},
           {xs::IDREFS::Type(), L"a 1", L"Item [1]: The value is no xs:IDREF"},
           {xs::ENTITIES::Type(), L"a b", L""}});
    EXPECT_EQ(&list.GetItem(), &SmallInt());
}

TEST(SimpleType, TakesAUnionsFirstMemberThatFits)
{
    static constexpr PfnSimpleType s_members[] = {&SmallInt, &ColourName};
    const CSimpleType either = CSimpleType::UnionOf(s_members);
    Check({{either, L" 9 ", L""},
           {either, L"dark   blue", L""},
           {either, L"10", L"The value is of none of the types that it may have"},
           {either, L"", L"The value is of none of the types that it may have"},
           {either.Pattern(L"\\d"), L"red", L"The value does not match the pattern \\d"}});
}

TEST(SimpleType, IsMadeOfTypesThatAreNoConstants)
{
    const std::wstring strBound = L"9";
    const CSimpleType digit = CSimpleType(xs::Int::Type()).MaxInclusive(strBound.c_str());
    const std::vector<const wchar_t*> words = {L"none", L"all"};
    const CSimpleType word = CSimpleType(xs::Token::Type()).Values(words.data(), words.size());
    const std::vector<const CSimpleType*> members = {&digit, &word};
    const CSimpleType either = CSimpleType::UnionOf(members.data(), members.size());
    const CSimpleType list = CSimpleType::ListOf(either);
    Check({{list, L" 9  all ", L""},
           {list, L"1 10", L"Item [10]: The value is of none of the types that it may have"},
           {either, L" none", L""},
           {word, L"some", L"The value is none of the enumeration"}});
    EXPECT_EQ(&list.GetItem(), &either);
    EXPECT_EQ(word.FindValue(L"all"), 1);
    const std::vector<const wchar_t*> pairs = {L"1 none", L"2 all"};
    const CSimpleType pair = list.Values(pairs.data(), pairs.size());
    EXPECT_EQ(pair.FindValue(L"02 all"), 1) << "the items are compared as values of their member types";
}

TEST(SimpleType, GivesTheTextsOfItsValues)
{
    EXPECT_STREQ(ColourName().GetValueText(1), L"dark blue");
    try
    {
        ColourName().GetValueText(2);
        FAIL() << "there is no third value";
    }
    catch (const CQvInvalidParamException& ex)
    {
        EXPECT_EQ(ex.GetMessageW(), L"The enumeration has no value 2");
    }
}

TEST(SimpleType, KnowsWhichTypesTakeAnyValueOfTheirClass)
{
    for (const CSimpleType* pType : {&xs::String::Type(), &xs::Int::Type(), &xs::Decimal::Type(), &xs::Double::Type(),
                                     &xs::Boolean::Type(), &xs::HexBinary::Type()})
        EXPECT_FALSE(pType->HasChecks());
    for (const CSimpleType* pType : {&xs::NCName::Type(), &xs::Date::Type(), &xs::Duration::Type(), &SmallInt(),
                                     &ColourName(), &xs::NMTOKENS::Type(), &xs::NonNegativeInteger::Type()})
        EXPECT_TRUE(pType->HasChecks());
}
