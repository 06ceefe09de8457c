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

TEST(ItemTraits, AppendedTextIsTheTextOfTheConversion)
{
    const auto fnExpectSame = [](auto traits, auto value, const wchar_t* lpctFormat)
    {
        using Traits = decltype(traits);
        std::wstring strText = L"=";
        AppendItemText<Traits::s_eType>(strText, value, lpctFormat);
        EXPECT_TEXT(L"=" + Traits::ToString(value, lpctFormat), strText);
    };
    fnExpectSame(SItemTraits<ItemType_i1>(), static_cast<char>(-5), nullptr);
    fnExpectSame(SItemTraits<ItemType_i2>(), static_cast<short>(-300), nullptr);
    fnExpectSame(SItemTraits<ItemType_i4>(), -2147483647L - 1, nullptr);
    fnExpectSame(SItemTraits<ItemType_i4>(), static_cast<long>(0x1FFFFFFFFLL), nullptr);
    fnExpectSame(SItemTraits<ItemType_i8>(), -5000000000LL, nullptr);
    fnExpectSame(SItemTraits<ItemType_ui1>(), static_cast<unsigned char>(255), nullptr);
    fnExpectSame(SItemTraits<ItemType_ui2>(), static_cast<unsigned short>(65535), nullptr);
    fnExpectSame(SItemTraits<ItemType_ui4>(), 4294967295UL, nullptr);
    fnExpectSame(SItemTraits<ItemType_ui4>(), static_cast<unsigned long>(0x1FFFFFFFFLL), nullptr);
    fnExpectSame(SItemTraits<ItemType_ui8>(), 18446744073709551615ULL, nullptr);
    fnExpectSame(SItemTraits<ItemType_r4>(), 1.5F, L"%.3f");
    fnExpectSame(SItemTraits<ItemType_r8>(), 1e300, L"%f");
    fnExpectSame(SItemTraits<ItemType_year>(), static_cast<unsigned short>(7), nullptr);
    fnExpectSame(SItemTraits<ItemType_month>(), static_cast<unsigned char>(7), nullptr);
    fnExpectSame(SItemTraits<ItemType_day>(), static_cast<unsigned char>(7), nullptr);
    fnExpectSame(SItemTraits<ItemType_char>(), L'x', nullptr);
    fnExpectSame(SItemTraits<ItemType_string>(), std::wstring(L"text"), nullptr);
    fnExpectSame(SItemTraits<ItemType_boolean>(), true, nullptr);
    fnExpectSame(SItemTraits<ItemType_boolean>(), false, nullptr);
    fnExpectSame(SItemTraits<ItemType_decimal>(), CDecimal(L"1.25"), L"1");
    fnExpectSame(SItemTraits<ItemType_integer>(), CBigInteger(L"99999999999999999999"), nullptr);
}
