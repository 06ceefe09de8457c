#include "quiver/values/NumberText.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;

TEST(NumberText, OnlyTheSixBlanksAreSkipped)
{
    EXPECT_TEXT(L"7", SkipBlanks(L" \t\n\v\f\r7"));
    EXPECT_TEXT(L"\x0E", SkipBlanks(L"\x0E"));
    EXPECT_TEXT(L"\x08", SkipBlanks(L"\x08"));
    EXPECT_TEXT(L"\xA0", SkipBlanks(L"\xA0"));
    EXPECT_TEXT(L"", SkipBlanks(L" "));
}

TEST(NumberText, OneSignIsRead)
{
    const struct
    {
        const wchar_t* lpctText;
        bool bNegative;
        const wchar_t* lpctRest;
    } rows[] = {
        {L"-1", true, L"1"}, {L"+1", false, L"1"}, {L"1", false, L"1"}, {L"--1", true, L"-1"}, {L"", false, L""}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctText));
        const wchar_t* p = row.lpctText;
        EXPECT_EQ(ReadSign(p), row.bNegative);
        EXPECT_TEXT(row.lpctRest, p);
    }
}

TEST(NumberText, AsciiIsAppendedWide)
{
    std::wstring strText = L"=";
    const std::string strAscii = "-1.5e+300";
    AppendAscii<16>(strText, strAscii.data(), strAscii.data() + strAscii.size());
    EXPECT_TEXT(L"=-1.5e+300", strText);
}
