#include "quiver/values/RealFormat.h"

#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;

TEST(RealFormat, FormatsOfOneNumberPrint)
{
    const struct
    {
        const wchar_t* lpctFormat;
        const wchar_t* lpctExpected;
    } rows[] = {
        {L"%.2f", L"1234.57"},
        {L"%.3e", L"1.235e+03"},
        {L"%.6g", L"1234.57"},
        {L"%010.2f", L"0001234.57"},
        {L"%F", L"1234.567800"},
        {L"%lf", L"1234.567800"},
        {L"about %.0f%%", L"about 1235%"},
        {L"%.2f m", L"1234.57 m"},
        {L"no number", L"no number"},
        {L"", L""},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctFormat));
        std::wstring strText = L"=";
        EXPECT_TRUE(AppendByFormat(strText, 1234.5678, row.lpctFormat));
        EXPECT_TEXT(std::wstring(L"=") + row.lpctExpected, strText);
    }
}

TEST(RealFormat, FormatsOfAnythingElsePrintNothing)
{
    for (const wchar_t* const lpctFormat :
         {L"%d", L"%s", L"%", L"%.2", L"%*f", L"%.*f", L"%f %f", L"%n", L"%a", L"%/2f", L"/.2f%"})
    {
        SCOPED_TRACE(QvTest::Show(lpctFormat));
        std::wstring strText = L"=";
        EXPECT_FALSE(AppendByFormat(strText, 1234.5678, lpctFormat));
        EXPECT_TEXT(L"=", strText);
    }
}

TEST(RealFormat, WidthAndPrecisionAreBounded)
{
    std::wstring strText;
    EXPECT_TRUE(AppendByFormat(strText, 1.5, L"%999999999.1f"));
    EXPECT_EQ(strText.size(), 2000U);
    strText.clear();
    EXPECT_TRUE(AppendByFormat(strText, 1.5, L"%.999999999f"));
    EXPECT_EQ(strText.size(), 1102U);
}
