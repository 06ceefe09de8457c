#include "quiver/values/ItemText.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;

namespace
{

template <class TAppend, class TValue>
std::wstring TextBy(TAppend pfnAppend, TValue value)
{
    std::wstring strText = L"=";
    pfnAppend(strText, value);
    return strText;
}

} // namespace

TEST(ItemText, ABytePrintsWithItsSign)
{
    EXPECT_TEXT(L"=-128", TextBy(&AppendI1, static_cast<char>(0x80)));
    EXPECT_TEXT(L"=127", TextBy(&AppendI1, static_cast<char>(0x7F)));
}

TEST(ItemText, TheLow32BitsOfALongPrint)
{
    EXPECT_TEXT(L"=-1", TextBy(&AppendI4, static_cast<long>(0x1FFFFFFFFLL)));
    EXPECT_TEXT(L"=-2147483648", TextBy(&AppendI4, -2147483647L - 1));
    EXPECT_TEXT(L"=4294967295", TextBy(&AppendUI4, static_cast<unsigned long>(0x1FFFFFFFFLL)));
}

TEST(ItemText, WordsAndTextAreSeenAsTheyStand)
{
    EXPECT_TEXT(L"true", std::wstring(WordOf(true)));
    EXPECT_TEXT(L"false", std::wstring(WordOf(false)));
    const std::wstring strText(L" a\0b ", 5);
    EXPECT_EQ(ViewOf(strText).data(), strText.data());
    EXPECT_EQ(ViewOf(strText).size(), strText.size());
}
