#include "quiver/values/NumberText.h"

#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

using namespace QvXmlLib9;

namespace
{

/// What a reading is expected to give; `nStop` counts from the start of the text.
template <class TNumber>
struct SReadCase
{
    const wchar_t* lpctText;
    TNumber value;
    bool bOutOfRange;
    std::ptrdiff_t nStop;
};

template <class TInteger, std::size_t nCount>
void ExpectReadings(const SReadCase<TInteger> (&cases)[nCount])
{
    for (const SReadCase<TInteger>& expected : cases)
    {
        SCOPED_TRACE(expected.lpctText);
        const SNumberText<TInteger> number = ReadInteger<TInteger>(expected.lpctText);
        EXPECT_EQ(number.value, expected.value);
        EXPECT_EQ(number.bOutOfRange, expected.bOutOfRange);
        EXPECT_EQ(number.pStop - expected.lpctText, expected.nStop);
    }
}

std::wstring R4(float fValue, const wchar_t* lpctFormat = nullptr)
{
    std::wstring strText;
    AppendR4(strText, fValue, lpctFormat);
    return strText;
}

std::wstring R8(double dValue, const wchar_t* lpctFormat = nullptr)
{
    std::wstring strText;
    AppendR8(strText, dValue, lpctFormat);
    return strText;
}

std::wstring PrintByPlatform(const char* lpcFormat, double dValue)
{
    char szText[512];
    const int nLength = std::snprintf(szText, sizeof(szText), lpcFormat, dValue);
    return std::wstring(szText, szText + nLength);
}

double RandomDouble(std::mt19937_64& random)
{
    const std::uint64_t nBits = random();
    double dValue = 0;
    std::memcpy(&dValue, &nBits, sizeof(dValue));
    return std::isfinite(dValue) ? dValue : 1.0;
}

constexpr double s_dInfinity = std::numeric_limits<double>::infinity();

} // namespace

TEST(NumberText, SignedIntegersOf32BitsReadLikeWcstol)
{
    ExpectReadings<std::int32_t>({
        {L"", 0, false, 0},
        {L"0", 0, false, 1},
        {L"-0", 0, false, 2},
        {L"+7", 7, false, 2},
        {L"007", 7, false, 3},
        {L"12abc", 12, false, 2},
        {L"12 ", 12, false, 2},
        {L"1.5", 1, false, 1},
        {L"0x10", 0, false, 1},
        {L" \t\n\v\f\r42", 42, false, 8},
        {L"2147483647", 2147483647, false, 10},
        {L"-2147483648", std::numeric_limits<std::int32_t>::min(), false, 11},
        {L"2147483648", 2147483647, true, 10},
        {L"-2147483649", std::numeric_limits<std::int32_t>::min(), true, 11},
        {L"99999999999999999999999999x", 2147483647, true, 26},
    });
}

TEST(NumberText, TextWithoutDigitsStopsAtItsStart)
{
    ExpectReadings<std::int32_t>({
        {L"-", 0, false, 0},
        {L"+-1", 0, false, 0},
        {L"--1", 0, false, 0},
        {L"- 1", 0, false, 0},
        {L"   ", 0, false, 0},
        {L"  abc", 0, false, 0},
        {L"\x00A0"
         L"1",
         0, false, 0},
        {L"\xFF11", 0, false, 0},
    });
}

TEST(NumberText, UnsignedIntegersOf32BitsWrapAroundBehindAMinus)
{
    ExpectReadings<std::uint32_t>({
        {L"4294967295", 4294967295U, false, 10},
        {L"4294967296", 4294967295U, true, 10},
        {L"-1", 4294967295U, false, 2},
        {L"-4294967295", 1, false, 11},
        {L"-4294967296", 4294967295U, true, 11},
        {L"-0", 0, false, 2},
    });
}

TEST(NumberText, IntegersOf64BitsKeepTheirWholeRange)
{
    ExpectReadings<std::int64_t>({
        {L"9223372036854775807", std::numeric_limits<std::int64_t>::max(), false, 19},
        {L"9223372036854775808", std::numeric_limits<std::int64_t>::max(), true, 19},
        {L"-9223372036854775808", std::numeric_limits<std::int64_t>::min(), false, 20},
        {L"-9223372036854775809", std::numeric_limits<std::int64_t>::min(), true, 20},
    });
    ExpectReadings<std::uint64_t>({
        {L"18446744073709551615", std::numeric_limits<std::uint64_t>::max(), false, 20},
        {L"18446744073709551616", std::numeric_limits<std::uint64_t>::max(), true, 20},
        {L"18446744073709551620", std::numeric_limits<std::uint64_t>::max(), true, 20},
        {L"-1", std::numeric_limits<std::uint64_t>::max(), false, 2},
        {L"-18446744073709551615", 1, false, 21},
    });
}

TEST(NumberText, RealsReadLikeWcstodWithoutWordsAndHexadecimals)
{
    constexpr SReadCase<double> cases[] = {
        {L"", 0, false, 0},
        {L"0", 0, false, 1},
        {L"1.5", 1.5, false, 3},
        {L"-1.5", -1.5, false, 4},
        {L"+1.5", 1.5, false, 4},
        {L".5", 0.5, false, 2},
        {L"5.", 5, false, 2},
        {L"1.5x", 1.5, false, 3},
        {L"1.5.5", 1.5, false, 3},
        {L"1,5", 1, false, 1},
        {L"1e3", 1000, false, 3},
        {L"1E+3", 1000, false, 4},
        {L"1e-3", 0.001, false, 4},
        {L"1e", 1, false, 1},
        {L"1e+", 1, false, 1},
        {L"1e+x", 1, false, 1},
        {L"1d3", 1, false, 1},
        {L"0x1p3", 0, false, 1},
        {L" \t\n\v\f\r2.5 ", 2.5, false, 9},
        {L".", 0, false, 0},
        {L"-.e3", 0, false, 0},
        {L"-", 0, false, 0},
        {L" ", 0, false, 0},
        {L"nan", 0, false, 0},
        {L"inf", 0, false, 0},
        {L"INFINITY", 0, false, 0},
        {L"nan(1)", 0, false, 0},
        {L"e5", 0, false, 0},
        {L"1.7976931348623157e308", 1.7976931348623157e308, false, 22},
        {L"1e309", s_dInfinity, true, 5},
        {L"-1e309", -s_dInfinity, true, 6},
        {L"1e99999999999999999999", s_dInfinity, true, 22},
        {L"1e-400", 0, false, 6},
        {L"1e-99999999999999999999", 0, false, 23},
        {L"0e99999999999999999999", 0, false, 22},
        {L"0.0e+99999999999999999999", 0, false, 25},
        {L"4.9e-324", 4.9406564584124654e-324, false, 8},
        {L"2.4703282292062328e-324", 4.9406564584124654e-324, false, 23},
        {L"2e-324", 0, false, 6},
    };
    for (const SReadCase<double>& expected : cases)
    {
        SCOPED_TRACE(expected.lpctText);
        const SNumberText<double> number = ReadReal(expected.lpctText);
        EXPECT_EQ(number.value, expected.value);
        EXPECT_EQ(number.bOutOfRange, expected.bOutOfRange);
        EXPECT_EQ(number.pStop - expected.lpctText, expected.nStop);
    }
}

TEST(NumberText, NegativeZeroKeepsItsSign)
{
    EXPECT_TRUE(std::signbit(ReadReal(L"-0").value));
    EXPECT_TRUE(std::signbit(ReadReal(L"-1e-400").value));
    EXPECT_FALSE(std::signbit(ReadReal(L"0").value));
}

TEST(NumberText, AMillionDigitsAreReadInFull)
{
    constexpr std::size_t nMillion = 1000000;
    const std::wstring strZeros(nMillion, L'0');
    EXPECT_EQ(ReadReal((L"0." + strZeros + L"1e1000001").c_str()).value, 1.0);
    EXPECT_EQ(ReadReal((L"1" + strZeros + L"e-1000000").c_str()).value, 1.0);
    EXPECT_EQ(ReadReal((L"1" + strZeros).c_str()).value, s_dInfinity);
    EXPECT_EQ(ReadReal((L"0." + strZeros + L"1").c_str()).value, 0.0);
    EXPECT_EQ(ReadReal((L"1e" + strZeros + L"2").c_str()).value, 100.0);
    EXPECT_EQ(ReadInteger<std::int32_t>((strZeros + L"42").c_str()).value, 42);
    EXPECT_TRUE(ReadInteger<std::int32_t>((L"1" + strZeros).c_str()).bOutOfRange);
}

TEST(NumberText, AnyDoubleSurvivesSeventeenDigits)
{
    std::mt19937_64 random(20260101);
    for (int n = 0; n < 20000; ++n)
    {
        const double dValue = RandomDouble(random);
        const std::wstring strText = R8(dValue, L"%.17g");
        EXPECT_EQ(ReadReal(strText.c_str()).value, dValue) << strText;
    }
}

TEST(NumberText, RandomDecimalsReadLikeThePlatform)
{
    std::mt19937_64 random(20260104);
    for (int n = 0; n < 50000; ++n)
    {
        std::string strText = n % 2 != 0 ? "-" : "";
        const std::size_t nWhole = random() % 25;
        const std::size_t nFraction = random() % 25 + (nWhole == 0 ? 1 : 0);
        for (std::size_t nDigit = 0; nDigit < nWhole; ++nDigit)
            strText += static_cast<char>('0' + random() % 10);
        if (nFraction != 0)
            strText += '.';
        for (std::size_t nDigit = 0; nDigit < nFraction; ++nDigit)
            strText += static_cast<char>('0' + random() % 10);
        if (n % 3 != 0)
            strText += "e" + std::to_string(static_cast<int>(random() % 80) - 40);
        const std::wstring strWide(strText.begin(), strText.end());
        const SNumberText<double> number = ReadReal(strWide.c_str());
        EXPECT_EQ(number.value, std::strtod(strText.c_str(), nullptr)) << strText;
        EXPECT_EQ(*number.pStop, L'\0') << strText;
    }
}

TEST(NumberText, RandomIntegersOfTwentyDigitsReadInRangeOnlyIfTheyFit)
{
    std::mt19937_64 random(20260105);
    for (int n = 0; n < 50000; ++n)
    {
        const std::uint64_t nValue = random();
        EXPECT_EQ(ReadInteger<std::uint64_t>(std::to_wstring(nValue).c_str()).value, nValue);
        // 18446744073709551616 to 99999999999999999999
        const std::wstring strTooLarge = std::to_wstring(random() % 8 + 2) + std::to_wstring(random() % 9 + 1) +
                                         std::to_wstring(100000000000000000 + random() % 900000000000000000);
        EXPECT_TRUE(ReadInteger<std::uint64_t>(strTooLarge.c_str()).bOutOfRange) << n;
        const std::wstring strAbove =
            std::to_wstring(1844674407370955162 + random() % 100000000000000000) + std::to_wstring(random() % 10);
        EXPECT_TRUE(ReadInteger<std::uint64_t>(strAbove.c_str()).bOutOfRange) << n;
    }
}

TEST(NumberText, AppendingKeepsWhatIsThere)
{
    std::wstring strText = L"a=";
    AppendInteger(strText, -12);
    strText += L" b=";
    AppendUnsigned(strText, 34);
    strText += L" c=";
    AppendR4(strText, 1.5F, nullptr);
    strText += L" d=";
    AppendR8(strText, 2.5, L"%.2f");
    strText += L" e=";
    AppendR8(strText, s_dInfinity, nullptr);
    EXPECT_EQ(strText, L"a=-12 b=34 c=1.5 d=2.50 e=INF");
}

TEST(NumberText, IntegersPrintTheirExtremes)
{
    std::wstring strText;
    AppendInteger(strText, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(strText, L"-9223372036854775808");
    strText.clear();
    AppendUnsigned(strText, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(strText, L"18446744073709551615");
    for (std::int64_t nValue = 1; nValue < 1000000000000000000; nValue = nValue * 10 + nValue % 7)
    {
        for (const std::int64_t nNear : {nValue - 1, nValue, nValue + 1, -nValue})
        {
            strText.clear();
            AppendInteger(strText, nNear);
            EXPECT_EQ(strText, std::to_wstring(nNear));
        }
    }
}

TEST(NumberText, DefaultFormatsPrintLikeThePlatform)
{
    std::mt19937_64 random(20260102);
    for (int n = 0; n < 20000; ++n)
    {
        const double dValue = RandomDouble(random);
        EXPECT_EQ(R8(dValue), PrintByPlatform("%.16g", dValue));
        const auto fValue = static_cast<float>(std::ldexp(static_cast<double>(random() >> 40), n % 120 - 60));
        EXPECT_EQ(R4(fValue), PrintByPlatform("%.7g", static_cast<double>(fValue)));
    }
}

TEST(NumberText, WholeNumbersPrintLikeThePlatformAroundTheirLimits)
{
    for (const double dBase : {0.0, 1.0, 1e6, 1e7, 1e14, 1e15, 9007199254740992.0, 1e16, 1e17})
    {
        for (const double dOffset : {-2.0, -1.0, 0.0, 1.0, 2.0})
        {
            const double dValue = dBase + dOffset;
            EXPECT_EQ(R8(dValue), PrintByPlatform("%.16g", dValue));
            EXPECT_EQ(R8(-dValue), PrintByPlatform("%.16g", -dValue));
            const auto fValue = static_cast<float>(dValue);
            EXPECT_EQ(R4(fValue), PrintByPlatform("%.7g", static_cast<double>(fValue)));
        }
    }
}

TEST(NumberText, CallersFormatsPrintLikeThePlatform)
{
    constexpr const char* lpcFormats[] = {"%f",     "%.0f",  "%.2f",      "%.15f", "%e",     "%.3e", "%g", "%.20g",
                                          "%10.3f", "%-9gX", "%+.1f",     "% f",   "%09.2f", "%E",   "%G", "%.f",
                                          "%lf",    "%.3lf", "%% %.1f%%", "a%gb",  "%Fd",    "%.1Fs"};
    for (const char* const lpcFormat : lpcFormats)
    {
        SCOPED_TRACE(lpcFormat);
        const std::wstring strFormat(lpcFormat, lpcFormat + std::strlen(lpcFormat));
        for (const double dValue : {0.0, -0.0, 1.0, -1.5, 0.1, 123.456, 999999.5, 1e-7, 12345678.9})
            EXPECT_EQ(R8(dValue, strFormat.c_str()), PrintByPlatform(lpcFormat, dValue));
    }
}

TEST(NumberText, PrintIsCutAt31And47Characters)
{
    EXPECT_EQ(R4(1e30F, L"%f"), PrintByPlatform("%f", static_cast<double>(1e30F)).substr(0, 31));
    EXPECT_EQ(R8(1e300, L"%f"), PrintByPlatform("%f", 1e300).substr(0, 47));
    EXPECT_EQ(R8(1.5, L"%100f"), std::wstring(47, L' '));
    EXPECT_EQ(R8(1.5, L"%-100f").size(), 47U);
    EXPECT_EQ(R8(1.5, L"%.99f").size(), 47U);
    EXPECT_EQ(R4(2.5F, L"%050.1f"), std::wstring(31, L'0'));
}

TEST(NumberText, HugeWidthAndPrecisionCostNothing)
{
    EXPECT_EQ(R8(0.1, L"%.2147483647f"), PrintByPlatform("%.45f", 0.1));
    EXPECT_EQ(R8(0.1, L"%99999999999999999999f"), std::wstring(47, L' '));
    EXPECT_EQ(R8(1.5, L"%-99999999999999999999.1f"), L"1.5" + std::wstring(44, L' '));
}

TEST(NumberText, FormatOfAnythingButOneDoubleActsAsDefault)
{
    for (const wchar_t* const lpctFormat : {L"%d", L"%s", L"%n", L"%p", L"%c", L"%*f", L"%.*f", L"%f %f", L"%f%s", L"%",
                                            L"%5", L"%.", L"%l", L"x%", L"% %f", L"%I64d", L"%a", L"%2$f"})
    {
        SCOPED_TRACE(lpctFormat);
        EXPECT_EQ(R4(0.1F, lpctFormat), L"0.1");
        EXPECT_EQ(R8(0.1, lpctFormat), L"0.1");
    }
}

TEST(NumberText, FormatWithoutConversionPrintsAsItStands)
{
    EXPECT_EQ(R8(0.1, L""), L"");
    EXPECT_EQ(R8(0.1, L"none"), L"none");
    EXPECT_EQ(R8(0.1, L"100%%"), L"100%");
}

TEST(NumberText, SpecialValuesIgnoreTheFormat)
{
    for (const wchar_t* const lpctFormat : {static_cast<const wchar_t*>(nullptr), L"%.2f", L"%d", L""})
    {
        EXPECT_EQ(R8(std::numeric_limits<double>::quiet_NaN(), lpctFormat), L"NaN");
        EXPECT_EQ(R8(s_dInfinity, lpctFormat), L"INF");
        EXPECT_EQ(R8(-s_dInfinity, lpctFormat), L"-INF");
        EXPECT_EQ(R4(std::numeric_limits<float>::quiet_NaN(), lpctFormat), L"NaN");
        EXPECT_EQ(R4(std::numeric_limits<float>::infinity(), lpctFormat), L"INF");
        EXPECT_EQ(R4(-std::numeric_limits<float>::infinity(), lpctFormat), L"-INF");
    }
}

TEST(NumberText, ACommaDecimalLocaleChangesNothing)
{
    const std::string strOld = std::setlocale(LC_ALL, nullptr);
    bool bChanged = false;
    for (const char* const lpcLocale : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE"})
        bChanged = bChanged || std::setlocale(LC_ALL, lpcLocale) != nullptr;
    RecordProperty("locale", bChanged ? "comma-decimal" : "none installed");
    EXPECT_EQ(R8(1.5), L"1.5");
    EXPECT_EQ(R8(1.5, L"%.2f"), L"1.50");
    EXPECT_EQ(R8(1.5, L"%6.2f"), L"  1.50");
    EXPECT_EQ(ReadReal(L"1.5").value, 1.5);
    std::setlocale(LC_ALL, strOld.c_str());
}
