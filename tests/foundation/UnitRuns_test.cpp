#include "quiver/foundation/UnitRuns.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

/// What lies behind the room that a function is given.
constexpr wchar_t s_cUntouched = 0x1234;

bool IsPlain(char32_t c)
{
    return c <= 0xFFFF && std::wstring_view(L"\0\n\r\"&<>", 7).find(static_cast<wchar_t>(c)) == std::wstring_view::npos;
}

void ExpectPlainCopied(const std::wstring& strText, std::size_t nPlain)
{
    std::vector<wchar_t> out(strText.size() + 8, s_cUntouched);
    ASSERT_EQ(nPlain, CopyPlainUnits(strText.data(), strText.size(), out.data()));
    EXPECT_TRUE(strText.compare(0, nPlain, out.data(), nPlain) == 0);
    for (std::size_t n = strText.size(); n < out.size(); ++n)
        ASSERT_EQ(s_cUntouched, out[n]);
}

} // namespace

TEST(UnitRuns, EveryUnitIsPlainOrEndsTheRunAtEveryPlace)
{
    std::vector<wchar_t> units;
    for (wchar_t c = 0; c < 0x180; ++c)
        units.push_back(c);
    for (const std::uint32_t n :
         {0x7FFEu, 0x7FFFu, 0x8000u, 0xD800u, 0xFFFFu, 0x10000u, 0x10FFFFu, 0x80000000u, 0xFFFFFFFFu})
        units.push_back(static_cast<wchar_t>(n));
    for (const wchar_t c : units)
    {
        SCOPED_TRACE(static_cast<std::uint32_t>(c));
        for (std::size_t nLength = 1; nLength < 21; ++nLength)
        {
            for (std::size_t nAt = 0; nAt < nLength; ++nAt)
            {
                std::wstring strText(nLength, L'x');
                strText[nAt] = c;
                ExpectPlainCopied(strText, IsPlain(static_cast<char32_t>(c)) ? nLength : nAt);
            }
        }
    }
    ExpectPlainCopied(L"", 0);
}

TEST(UnitRuns, TheFirstOfSeveralUnitsEndsTheRun)
{
    for (std::size_t nFirst = 0; nFirst < 20; ++nFirst)
    {
        for (std::size_t nSecond = nFirst + 1; nSecond < 20; ++nSecond)
        {
            std::wstring strText(20, L'\t');
            strText[nFirst] = strText[nSecond] = L'&';
            ExpectPlainCopied(strText, nFirst);
        }
    }
}

TEST(UnitRuns, AsciiIsWidenedAndNothingElseTakenForIt)
{
    for (std::size_t nLength = 0; nLength < 40; ++nLength)
    {
        std::string strText;
        for (std::size_t n = 0; n < nLength; ++n)
            strText += static_cast<char>(127 - n);
        std::vector<wchar_t> out(nLength + 8, s_cUntouched);
        ASSERT_EQ(nLength, WidenAscii(strText.data(), nLength, out.data()));
        EXPECT_TRUE(std::wstring(strText.begin(), strText.end()) == std::wstring(out.data(), nLength));
        for (std::size_t n = nLength; n < out.size(); ++n)
            ASSERT_EQ(s_cUntouched, out[n]);
        for (std::size_t n = 0; n < nLength; ++n)
        {
            std::string strOther = strText;
            strOther[n] = static_cast<char>(0x80);
            EXPECT_GT(nLength, WidenAscii(strOther.data(), nLength, out.data())) << n;
        }
    }
}

TEST(UnitRuns, OnlyAsciiWithoutZeroIsNarrowed)
{
    for (std::size_t nLength = 0; nLength < 40; ++nLength)
    {
        std::wstring strText;
        for (std::size_t n = 0; n < nLength; ++n)
            strText += static_cast<wchar_t>(n % 2 == 0 ? 1 + n : 127 - n);
        std::vector<unsigned char> out(nLength + 8, 0xEE);
        ASSERT_TRUE(NarrowAscii(strText.data(), nLength, out.data()));
        EXPECT_TRUE(std::string(strText.begin(), strText.end()) == std::string(out.begin(), out.end() - 8));
        for (std::size_t n = nLength; n < out.size(); ++n)
            ASSERT_EQ(0xEE, out[n]);
        for (const std::uint32_t nOther : {0u, 0x80u, 0x100u, 0xFFFFu, 0x10041u, 0x80000041u})
        {
            // Where a wide character has 16 bits, these are others.
            if (static_cast<std::uint32_t>(static_cast<wchar_t>(nOther)) != nOther)
                continue;
            for (std::size_t n = 0; n < nLength; ++n)
            {
                std::wstring strOther = strText;
                strOther[n] = static_cast<wchar_t>(nOther);
                EXPECT_FALSE(NarrowAscii(strOther.data(), nLength, out.data())) << n;
            }
        }
    }
}

TEST(UnitRuns, AsciiIsToldAtEveryPlace)
{
    for (std::size_t nLength = 0; nLength < 40; ++nLength)
    {
        EXPECT_TRUE(IsAscii(std::string(nLength, '\x7F')));
        for (std::size_t n = 0; n < nLength; ++n)
        {
            std::string strText(nLength, 'x');
            strText[n] = '\x80';
            EXPECT_FALSE(IsAscii(strText)) << nLength << ", " << n;
        }
    }
}
