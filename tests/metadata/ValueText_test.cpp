#include "quiver/metadata/ValueText.h"

#include "quiver/foundation/Exceptions.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

using namespace QvXmlLib9;
using QvXmlLib9Data::CValueText;

TEST(ValueText, IsWhatTheVariantPrints)
{
    struct SCase
    {
        ItemType eType;
        const wchar_t* lpctText;
    };
    const SCase cases[] = {
        {ItemType_string, L""},
        {ItemType_string, L"some text"},
        {ItemType_boolean, L"true"},
        {ItemType_boolean, L"false"},
        {ItemType_i1, L"-128"},
        {ItemType_i2, L"-32768"},
        {ItemType_i4, L"-2147483648"},
        {ItemType_i8, L"-9223372036854775808"},
        {ItemType_ui1, L"255"},
        {ItemType_ui2, L"65535"},
        {ItemType_ui4, L"4294967295"},
        {ItemType_ui8, L"18446744073709551615"},
        {ItemType_r4, L"1.5"},
        {ItemType_r8, L"148.95"},
        {ItemType_r8, L"0"},
        {ItemType_r8, L"-0"},
        {ItemType_r8, L"NaN"},
        {ItemType_r8, L"-INF"},
        {ItemType_r8, L"1e+100"},
        {ItemType_year, L"2024"},
        {ItemType_date, L"2024-05-06"},
        {ItemType_time, L"10:20:30"},
        {ItemType_duration, L"P1Y"},
        {ItemType_decimal, L"1.50"},
        {ItemType_integer, L"123456789012345678901234567890"},
        {ItemType_hexBinary, L"0AFF"},
        {ItemType_char, L"c"},
    };
    for (const SCase& test : cases)
    {
        QvVariant value;
        value.FromString(test.lpctText, test.eType, CWhitespaceUtils::WhitespaceRule_None);
        EXPECT_EQ(CValueText(value).Get(), value.ToString(nullptr)) << test.eType;
        EXPECT_EQ(CValueText(value, L"%.3f").Get(), value.ToString(L"%.3f")) << test.eType;
    }
}

TEST(ValueText, IsTheTextThatADocumentLends)
{
    const std::string strLent = "lent";
    for (const std::string& strUtf8 : {std::string(), strLent, std::string(64, 'x'), std::string(65, 'x'),
                                       std::string("\xC3\xA4 \xF0\x9F\x98\x80"), std::string(40, 'y') + "\xC3\xA4"})
    {
        QvVariant lent;
        lent.LetBorrow();
        lent.SetStringRef(std::string_view(strUtf8));
        QvVariant kept;
        kept.SetStringRef(std::string_view(strUtf8));
        std::string_view svUtf8;
        EXPECT_TRUE(lent.GetUtf8(svUtf8)) << strUtf8;
        EXPECT_FALSE(kept.GetUtf8(svUtf8)) << strUtf8;
        EXPECT_EQ(CValueText(lent).Get(), kept.StringRef()) << strUtf8;
        EXPECT_EQ(CValueText(kept).Get(), kept.StringRef()) << strUtf8;
        EXPECT_EQ(lent.StringRef(), kept.StringRef()) << strUtf8;
    }
    QvVariant value;
    value.LetBorrow();
    value.SetStringRef(std::string_view("\xC3\xA4 \xF0\x9F\x98\x80"));
    EXPECT_EQ(CValueText(value).Get(), L"\xE4 \xD83D\xDE00");
}

TEST(ValueText, KeepsTheLowBitsOfALong)
{
    if constexpr (sizeof(long) == 8)
    {
        QvVariant value;
        value.m_type = ItemType_i4;
        value.m_i4 = std::numeric_limits<long>::max();
        EXPECT_EQ(CValueText(value).Get(), value.ToString(nullptr));
        value.m_type = ItemType_ui4;
        value.m_ui4 = std::numeric_limits<unsigned long>::max();
        EXPECT_EQ(CValueText(value).Get(), value.ToString(nullptr));
    }
}

TEST(ValueText, NoTextIsRefused)
{
    const QvVariant value;
    EXPECT_THROW(CValueText text(value), CQvException);
}
