#include "quiver/output/UnitText.h"

#include "tests/support/Expect.h"

using namespace QvXmlLib9;

TEST(UnitText, PlainTextIsHandedBackWithoutACopy)
{
    const std::wstring strText = L"caf\u00E9 \xD83D\xDE00";
    std::wstring strBuffer = L"untouched";
    EXPECT_TRUE(IsUnitText(strText));
    EXPECT_EQ(ToUnitText(strText, strBuffer).data(), strText.data());
    EXPECT_TEXT(L"untouched", strBuffer);
}

TEST(UnitText, TextEndsAtItsFirstZeroUnit)
{
    const std::wstring strText(L"ab\0cd", 5);
    std::wstring strBuffer;
    EXPECT_FALSE(IsUnitText(strText));
    EXPECT_TEXT(L"ab", std::wstring(ToUnitText(strText, strBuffer)));
}

TEST(UnitText, WholeCodePointsBecomeTheirPair)
{
    const std::wstring strText(L"x\U0001F600\0\U0001F601", 4);
    std::wstring strBuffer;
    EXPECT_FALSE(IsUnitText(strText));
    EXPECT_TEXT(L"x\xD83D\xDE00", std::wstring(ToUnitText(strText, strBuffer)));
}
