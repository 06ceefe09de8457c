#include "quiver/generated/DocumentValue.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/generated/BuiltinTypes.h"
#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

enum class EPaint : int
{
    Red,
    DarkBlue,
    Green
};

struct SPaint
{
    using Value = EPaint;
    static const CSimpleType& Type()
    {
        static constexpr const wchar_t* s_values[] = {L"red", L"dark blue", L"gr\x00FCn"};
        static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).Values(s_values);
        return s_type;
    }
};

struct SPrice
{
    using Value = double;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type =
            CSimpleType(xs::Double::s_type).MinInclusive(L"-1.5").MaxExclusive(L"1e3");
        return s_type;
    }
};

struct SStamp
{
    using Value = double;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::Double::s_type).Pattern(L"\\d\\.\\d");
        return s_type;
    }
};

struct SCount
{
    using Value = int;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type).MinExclusive(L"-5").MaxInclusive(L"+42");
        return s_type;
    }
};

struct SEvenDigits
{
    using Value = int;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type).Pattern(L"(..)*");
        return s_type;
    }
};

struct SCode
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type =
            CSimpleType(xs::String::s_type).Pattern(L"[A-Z\x00C4]{2}\\d*").MinLength(2).MaxLength(4);
        return s_type;
    }
};

struct SLine
{
    using Value = std::wstring;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::NormalizedString::s_type).MaxLength(5);
        return s_type;
    }
};

struct SDay
{
    using Value = CDateTime;
    static const CSimpleType& Type()
    {
        static constexpr CSimpleType s_type = CSimpleType(xs::Date::s_type).MinInclusive(L"2000-01-01");
        return s_type;
    }
};

const std::vector<std::wstring>& Texts()
{
    static const std::vector<std::wstring> s_texts = {
        L"",
        L" ",
        L"0",
        L"-0",
        L"+0",
        L"7",
        L" 7",
        L"7 ",
        L"42",
        L"43",
        L"+42",
        L"-5",
        L"-4",
        L"--4",
        L"+-4",
        L"-",
        L"+",
        L"127",
        L"128",
        L"-128",
        L"-129",
        L"255",
        L"256",
        L"32767",
        L"32768",
        L"65535",
        L"65536",
        L"2147483647",
        L"2147483648",
        L"-2147483648",
        L"-2147483649",
        L"4294967295",
        L"4294967296",
        L"9223372036854775807",
        L"9223372036854775808",
        L"-9223372036854775808",
        L"-9223372036854775809",
        L"18446744073709551615",
        L"18446744073709551616",
        L"000000000000000000000000000000000000000000000000000000000000000000000000007",
        L"1.5",
        L"-1.5",
        L"-1.51",
        L".5",
        L"5.",
        L".",
        L"1e2",
        L"1E+2",
        L"1e",
        L"1e3",
        L"999.99",
        L"1e999",
        L"-1e999",
        L"1e-999",
        L"NaN",
        L"INF",
        L"-INF",
        L"+INF",
        L"inf",
        L"0x10",
        L"1e39",
        L"3.4028236e38",
        L"0.1",
        L"1 2",
        L"\x0661",
        L"7\x00A0",
        L"true",
        L"false",
        L"TRUE",
        L"tru",
        L"red",
        L"dark blue",
        L"dark  blue",
        L" red",
        L"gr\x00FCn",
        L"green",
        L"AB",
        L"AB12",
        L"AB123",
        L"A",
        L"\x00C4\x00C4",
        L"\x00C4\x00C4"
        L"12",
        L"a\tb",
        L"a\rb",
        L"a  b",
        L"\xD83D\xDE00",
        L"\xD83D\xDE00\xD83D\xDE00\xD83D\xDE00",
        L"2020-02-29",
        L"2021-02-29",
        L"1999-12-31",
        L"2020-02-29Z",
        L"2020-02-29+14:00",
        L"2020-02-29-00:30",
        L"12020-01-01",
        L"2020-02-29T12:00:00.5",
        L"24:00:00",
        L"12:30:00Z",
        L"2020",
        L"--02-29",
        L"---31",
        L"--12",
        L"a:b",
        L"x y z"};
    return s_texts;
}

std::string Utf8Of(const std::wstring& strText)
{
    std::string strUtf8;
    AppendUtf8(strUtf8, strText);
    return strUtf8;
}

/// What becomes of a text that a record hands to a member: what the member writes, or the messages.
template <class TMember, class TSet>
std::wstring Outcome(TSet fnSet)
{
    TMember member;
    QvVariant value;
    fnSet(value);
    std::wstring strWritten;
    const std::wstring strMessages = MessagesOf(
        [&]
        {
            member.Access(false, value, L"x");
            QvVariant written;
            member.Access(true, written, L"x");
            strWritten = L"written: " + (written.IsValid() ? written.ToString(nullptr) : L"unset");
        });
    return strMessages + strWritten;
}

template <class TMember>
void ExpectSameByEitherWay()
{
    for (const std::wstring& strText : Texts())
    {
        const std::string strUtf8 = Utf8Of(strText);
        EXPECT_EQ(Outcome<TMember>([&](QvVariant& value) { value.SetString(strText); }),
                  Outcome<TMember>([&](QvVariant& value) { value.SetUtf8(strUtf8); }))
            << strUtf8 << " as " << testing::internal::GetTypeName<TMember>();
    }
}

template <class... TTypes>
void ExpectSameForMembers()
{
    (ExpectSameByEitherWay<CRequired<TTypes>>(), ...);
    (ExpectSameByEitherWay<COptional<TTypes>>(), ...);
}

constexpr wchar_t s_lpctSeven[] = L"7";

template <class TType>
bool IsReadAtOnce(std::string_view svUtf8)
{
    typename TType::Value value{};
    return ReadUtf8(TType::Type(), svUtf8, value);
}

} // namespace

TEST(DocumentValue, ADocumentsUtf8IsReadAsItsTextIs)
{
    ExpectSameForMembers<xs::Boolean, xs::Byte, xs::Short, xs::Int, xs::Long, xs::UnsignedByte, xs::UnsignedShort,
                         xs::UnsignedInt, xs::UnsignedLong, xs::Float, xs::Double, xs::Decimal, xs::Integer>();
    ExpectSameForMembers<xs::DateTime, xs::Date, xs::Time, xs::GYear, xs::GMonthDay, xs::GDay, xs::GMonth>();
    ExpectSameForMembers<xs::String, xs::NormalizedString, xs::Token, xs::NCName, xs::HexBinary>();
    ExpectSameForMembers<SPaint, SPrice, SStamp, SCount, SEvenDigits, SCode, SLine, SDay>();
    ExpectSameByEitherWay<CRequired<xs::Int, SDefault<s_lpctSeven>>>();
    ExpectSameByEitherWay<COptional<xs::String, SDefault<s_lpctSeven>>>();
    ExpectSameByEitherWay<COptional<xs::Int, SFixed<s_lpctSeven>>>();
    ExpectSameByEitherWay<CDefaulted<xs::String, SFixed<s_lpctSeven>>>();
    ExpectSameByEitherWay<CDefaulted<xs::Int, SDefault<s_lpctSeven>>>();
}

TEST(DocumentValue, CommonValuesNeedNoText)
{
    EXPECT_TRUE(IsReadAtOnce<xs::Int>("-17"));
    EXPECT_TRUE(IsReadAtOnce<xs::UnsignedLong>("17"));
    EXPECT_TRUE(IsReadAtOnce<xs::Boolean>("true"));
    EXPECT_TRUE(IsReadAtOnce<xs::Float>("0.5"));
    EXPECT_TRUE(IsReadAtOnce<SPrice>("-1.5"));
    EXPECT_FALSE(IsReadAtOnce<SPrice>("1000"));
    EXPECT_FALSE(IsReadAtOnce<SStamp>("1.5"));
    EXPECT_TRUE(IsReadAtOnce<SCount>("42"));
    EXPECT_FALSE(IsReadAtOnce<SCount>("-5"));
    EXPECT_TRUE(IsReadAtOnce<SPaint>("dark blue"));
    EXPECT_FALSE(IsReadAtOnce<SPaint>("blue"));
    EXPECT_TRUE(IsReadAtOnce<xs::DateTime>("2020-02-29T12:00:00Z"));
    EXPECT_FALSE(IsReadAtOnce<xs::DateTime>("2021-02-29T12:00:00Z"));
    EXPECT_TRUE(SCode::Type().TakesUtf8("AB12"));
    EXPECT_FALSE(SCode::Type().TakesUtf8("AB123"));
    EXPECT_TRUE(SLine::Type().TakesUtf8("a b"));
    EXPECT_FALSE(SLine::Type().TakesUtf8("a\tb"));
}

TEST(DocumentValue, ATextBecomesAStringWhenItIsAskedFor)
{
    CRequired<xs::String> member;
    QvVariant value;
    std::string strUtf8 = "gr\xC3\xBCn";
    value.SetUtf8(strUtf8);
    member.Access(false, value, L"x");
    strUtf8 = "gone!";
    EXPECT_TRUE(member.IsSet());
    const CRequired<xs::String> copy = member;
    const std::wstring& strText = member.Get();
    EXPECT_EQ(strText, L"gr\x00FCn");
    EXPECT_EQ(&member.Get(), &strText);
    EXPECT_EQ(copy.Get(), L"gr\x00FCn");

    COptional<xs::String> optional;
    value.SetUtf8("abc");
    optional.Access(false, value, L"x");
    EXPECT_TRUE(optional.IsSet());
    EXPECT_EQ(optional.Get(), std::optional<std::wstring>(L"abc"));
    optional.Reset();
    EXPECT_EQ(optional.Get(), std::nullopt);
}
