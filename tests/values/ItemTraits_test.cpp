#include "quiver/values/ItemTraits.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

using namespace QvXmlLib9;

TEST(ItemTraits, EveryKindOfSimpleValueIsVisitedAsItself)
{
    for (int nType = ItemType_hexBinary; nType <= ItemType_integer; ++nType)
    {
        ItemType eVisited = ItemType_Invalid;
        EXPECT_TRUE(
            VisitItemType(static_cast<ItemType>(nType), [&](auto traits) { eVisited = decltype(traits)::s_eType; }));
        EXPECT_EQ(eVisited, nType);
    }
}

TEST(ItemTraits, NumbersOfNoSimpleValueAreNotVisited)
{
    for (const int nType : {0, 27, 28, 29, 1000, -1})
        EXPECT_FALSE(VisitItemType(static_cast<ItemType>(nType), [](auto) { ADD_FAILURE(); }));
}

TEST(ItemTraits, TypesAreThoseOfTheInterface)
{
    EXPECT_TRUE((std::is_same_v<SItemTraits<ItemType_i4>::Value, long>));
    EXPECT_TRUE((std::is_same_v<SItemTraits<ItemType_i4>::Argument, long>));
    EXPECT_TRUE((std::is_same_v<SItemTraits<ItemType_year>::Value, unsigned short>));
    EXPECT_TRUE((std::is_same_v<SItemTraits<ItemType_decimal>::Argument, const CDecimal&>));
    EXPECT_TRUE((std::is_same_v<SItemTraits<ItemType_string>::Argument, const std::wstring&>));
}

TEST(ItemTraits, TheNamesAreThoseOfTheInterface)
{
    EXPECT_TEXT(L"i4", SItemTraits<ItemType_i4>::s_kind.lpctName);
    EXPECT_TEXT(L"hexBinary", SItemTraits<ItemType_hexBinary>::s_kind.lpctName);
    EXPECT_TEXT(L"integer", SItemTraits<ItemType_integer>::s_kind.lpctName);
}

TEST(ItemTraits, BothFormsOfTextAreThatOfTheConversion)
{
    const auto fnExpectText = [](auto traits, auto value, const wchar_t* lpctFormat, const std::wstring& strExpected)
    {
        using Traits = decltype(traits);
        std::wstring strText = L"=";
        AppendItemText<Traits::s_eType>(strText, value, lpctFormat);
        EXPECT_TEXT(L"=" + strExpected, strText);
        EXPECT_TEXT(strExpected, Traits::ToString(value, lpctFormat));
    };
    CBinaryData data;
    data.SetAsHexString(L"0AFF");
    CDateTime date;
    date.ParseXSDDate(L"2001-05-31");
    CDateTimeSpan span;
    span.ParseXSDDuration(L"P1Y2M");
    using C = CConversions;
    fnExpectText(SItemTraits<ItemType_hexBinary>(), data, nullptr, C::hexBinaryToString(data));
    fnExpectText(SItemTraits<ItemType_base64Binary>(), data, nullptr, C::base64BinaryToString(data));
    fnExpectText(SItemTraits<ItemType_i1>(), static_cast<char>(-5), nullptr, C::i1ToString(static_cast<char>(-5)));
    fnExpectText(SItemTraits<ItemType_i2>(), static_cast<short>(-300), nullptr,
                 C::i2ToString(static_cast<short>(-300)));
    fnExpectText(SItemTraits<ItemType_i4>(), -2147483647L - 1, nullptr, C::i4ToString(-2147483647L - 1));
    fnExpectText(SItemTraits<ItemType_i4>(), static_cast<long>(0x1FFFFFFFFLL), nullptr,
                 C::i4ToString(static_cast<long>(0x1FFFFFFFFLL)));
    fnExpectText(SItemTraits<ItemType_i8>(), -5000000000LL, nullptr, C::i8ToString(-5000000000LL));
    fnExpectText(SItemTraits<ItemType_ui1>(), static_cast<unsigned char>(255), nullptr,
                 C::ui1ToString(static_cast<unsigned char>(255)));
    fnExpectText(SItemTraits<ItemType_ui2>(), static_cast<unsigned short>(65535), nullptr,
                 C::ui2ToString(static_cast<unsigned short>(65535)));
    fnExpectText(SItemTraits<ItemType_ui4>(), 4294967295UL, nullptr, C::ui4ToString(4294967295UL));
    fnExpectText(SItemTraits<ItemType_ui4>(), static_cast<unsigned long>(0x1FFFFFFFFLL), nullptr,
                 C::ui4ToString(static_cast<unsigned long>(0x1FFFFFFFFLL)));
    fnExpectText(SItemTraits<ItemType_ui8>(), 18446744073709551615ULL, nullptr,
                 C::ui8ToString(18446744073709551615ULL));
    fnExpectText(SItemTraits<ItemType_r4>(), 1.5F, L"%.3f", C::r4ToString(1.5F, L"%.3f"));
    fnExpectText(SItemTraits<ItemType_r8>(), 1e300, L"%f", C::r8ToString(1e300, L"%f"));
    fnExpectText(SItemTraits<ItemType_duration>(), span, nullptr, C::durationToString(span));
    fnExpectText(SItemTraits<ItemType_yearMonth>(), date, nullptr, C::yearMonthToString(date));
    fnExpectText(SItemTraits<ItemType_monthDay>(), date, nullptr, C::monthDayToString(date));
    fnExpectText(SItemTraits<ItemType_year>(), static_cast<unsigned short>(7), nullptr,
                 C::yearToString(static_cast<unsigned short>(7)));
    fnExpectText(SItemTraits<ItemType_month>(), static_cast<unsigned char>(7), nullptr,
                 C::monthToString(static_cast<unsigned char>(7)));
    fnExpectText(SItemTraits<ItemType_day>(), static_cast<unsigned char>(7), nullptr,
                 C::dayToString(static_cast<unsigned char>(7)));
    fnExpectText(SItemTraits<ItemType_date>(), date, nullptr, C::dateToString(date));
    fnExpectText(SItemTraits<ItemType_datetime>(), date, nullptr, C::datetimeToString(date));
    fnExpectText(SItemTraits<ItemType_time>(), date, nullptr, C::timeToString(date));
    fnExpectText(SItemTraits<ItemType_char>(), L'x', nullptr, C::charToString(L'x'));
    fnExpectText(SItemTraits<ItemType_string>(), std::wstring(L"text"), nullptr,
                 C::stringToString(std::wstring(L"text")));
    fnExpectText(SItemTraits<ItemType_boolean>(), true, nullptr, C::booleanToString(true));
    fnExpectText(SItemTraits<ItemType_boolean>(), false, nullptr, C::booleanToString(false));
    fnExpectText(SItemTraits<ItemType_decimal>(), CDecimal(L"1.25"), L"1", C::decimalToString(CDecimal(L"1.25"), L"1"));
    fnExpectText(SItemTraits<ItemType_integer>(), CBigInteger(L"99999999999999999999"), nullptr,
                 C::integerToString(CBigInteger(L"99999999999999999999")));
    fnExpectText(SItemTraits<ItemType_i1>(), static_cast<char>(-128), nullptr, L"-128");
    fnExpectText(SItemTraits<ItemType_i4>(), static_cast<long>(0x1FFFFFFFFLL), nullptr, L"-1");
    fnExpectText(SItemTraits<ItemType_ui4>(), static_cast<unsigned long>(0x1FFFFFFFFLL), nullptr, L"4294967295");
    fnExpectText(SItemTraits<ItemType_boolean>(), true, nullptr, L"true");
    fnExpectText(SItemTraits<ItemType_boolean>(), false, nullptr, L"false");
    fnExpectText(SItemTraits<ItemType_r8>(), 1.25, L"%.1f", L"1.2");
}
