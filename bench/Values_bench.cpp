// Simple values per second: text to value and back, facets, and what a variant costs; beside each the plain way with
// the standard library or PCRE. Every benchmark checks its answer before it measures.

#include "quiver/values/ItemTraits.h"
#include "quiver/values/RestrictionCheck.h"

#include <benchmark/benchmark.h>
#include <pcre.h>

#include <charconv>
#include <string>
#include <string_view>

using namespace QvXmlLib9;

namespace
{

constexpr auto s_eCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

/// A typical text of each kind.
const wchar_t* SampleOf(ItemType eType)
{
    switch (eType)
    {
    case ItemType_hexBinary:
        return L"00112233445566778899AABBCCDDEEFF";
    case ItemType_base64Binary:
        return L"ABEiM0RVZneImaq7zN3u/w==";
    case ItemType_i1:
        return L"-128";
    case ItemType_i2:
        return L"-32768";
    case ItemType_i4:
        return L"-1234567";
    case ItemType_i8:
        return L"-123456789012345";
    case ItemType_ui1:
        return L"255";
    case ItemType_ui2:
        return L"65535";
    case ItemType_ui4:
        return L"1234567";
    case ItemType_ui8:
        return L"123456789012345";
    case ItemType_r4:
        return L"1234.567";
    case ItemType_r8:
        return L"-1234567.890625";
    case ItemType_duration:
        return L"P1Y2M3DT4H5M6S";
    case ItemType_yearMonth:
        return L"2001-05";
    case ItemType_monthDay:
        return L"--05-31";
    case ItemType_year:
        return L"2001";
    case ItemType_month:
        return L"--05";
    case ItemType_day:
        return L"---31";
    case ItemType_date:
        return L"2001-05-31";
    case ItemType_datetime:
        return L"2001-05-31T23:59:59.125Z";
    case ItemType_time:
        return L"23:59:59";
    case ItemType_char:
        return L"x";
    case ItemType_string:
        return L"The quick brown fox jumps over the lazy dog";
    case ItemType_boolean:
        return L"true";
    case ItemType_decimal:
        return L"12345.67";
    case ItemType_integer:
        return L"123456789012345678901234567890";
    case ItemType_Invalid:
    case ItemType_XmlObjectBase:
    case ItemType_XmlCollection:
        break;
    }
    return L"";
}

void CountValues(benchmark::State& state)
{
    state.SetItemsProcessed(state.iterations());
}

// --- Conversions ------------------------------------------------------------------------------------------------

template <ItemType eType>
void FromText(benchmark::State& state)
{
    const std::wstring strText = SampleOf(eType);
    if (SItemTraits<eType>::ToString(SItemTraits<eType>::FromString(strText, s_eCollapse), nullptr) != strText)
        return state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(SItemTraits<eType>::FromString(strText, s_eCollapse));
    CountValues(state);
}

template <ItemType eType>
void ToText(benchmark::State& state)
{
    const std::wstring strText = SampleOf(eType);
    const auto value = SItemTraits<eType>::FromString(strText, s_eCollapse);
    if (SItemTraits<eType>::ToString(value, nullptr) != strText)
        return state.SkipWithError("wrong text");
    for (auto _ : state)
        benchmark::DoNotOptimize(SItemTraits<eType>::ToString(value, nullptr));
    CountValues(state);
}

template <ItemType eType>
void AppendText(benchmark::State& state)
{
    const auto value = SItemTraits<eType>::FromString(SampleOf(eType), s_eCollapse);
    std::wstring strText;
    for (auto _ : state)
    {
        strText.clear();
        AppendItemText<eType>(strText, value, nullptr);
        benchmark::DoNotOptimize(strText.data());
    }
    if (strText != SampleOf(eType))
        return state.SkipWithError("wrong text");
    CountValues(state);
}

void RegisterConversions()
{
    for (int nType = ItemType_hexBinary; nType <= ItemType_integer; ++nType)
    {
        QvVariant value;
        value.m_type = static_cast<ItemType>(nType);
        const std::wstring strName = value.GetType();
        value.m_type = ItemType_Invalid;
        const std::string strItem(strName.begin(), strName.end());
        VisitItemType(static_cast<ItemType>(nType),
                      [&](auto traits)
                      {
                          constexpr ItemType eType = decltype(traits)::s_eType;
                          benchmark::RegisterBenchmark(("FromText/" + strItem).c_str(), &FromText<eType>);
                          benchmark::RegisterBenchmark(("ToText/" + strItem).c_str(), &ToText<eType>);
                          benchmark::RegisterBenchmark(("AppendText/" + strItem).c_str(), &AppendText<eType>);
                      });
    }
}

/// The least that any program does: digits out of bytes, without white space rules, failures and wide text.
template <class TNumber>
void PlainFromChars(benchmark::State& state, std::string_view text)
{
    for (auto _ : state)
    {
        TNumber value = 0;
        benchmark::DoNotOptimize(text);
        std::from_chars(text.data(), text.data() + text.size(), value);
        benchmark::DoNotOptimize(value);
    }
    CountValues(state);
}

template <class TNumber>
void PlainToChars(benchmark::State& state, TNumber value)
{
    char szText[64];
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(value);
        benchmark::DoNotOptimize(std::to_chars(szText, szText + sizeof(szText), value));
        benchmark::DoNotOptimize(szText[0]);
    }
    CountValues(state);
}

void PlainToChars16Digits(benchmark::State& state, double dValue)
{
    char szText[64];
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(dValue);
        benchmark::DoNotOptimize(
            std::to_chars(szText, szText + sizeof(szText), dValue, std::chars_format::general, 16));
        benchmark::DoNotOptimize(szText[0]);
    }
    CountValues(state);
}

BENCHMARK_CAPTURE(PlainToChars16Digits, r8, -1234567.890625);

// --- White space ------------------------------------------------------------------------------------------------

void FromTextWithBlanks(benchmark::State& state)
{
    const std::wstring strText = L"\n        -1234567\n    ";
    if (CConversions::i4FromString(strText, s_eCollapse) != -1234567)
        return state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(CConversions::i4FromString(strText, s_eCollapse));
    CountValues(state);
}
BENCHMARK(FromTextWithBlanks);

void RealByFormat(benchmark::State& state, const wchar_t* lpctFormat, const wchar_t* lpctExpected)
{
    std::wstring strText;
    for (auto _ : state)
    {
        strText.clear();
        AppendR8(strText, 1234.5678, lpctFormat);
        benchmark::DoNotOptimize(strText.data());
    }
    if (strText != lpctExpected)
        return state.SkipWithError("wrong text");
    CountValues(state);
}
BENCHMARK_CAPTURE(RealByFormat, plain, L"%.2f", L"1234.57");
BENCHMARK_CAPTURE(RealByFormat, padded, L"%010.2f", L"0001234.57");

// --- Facets -----------------------------------------------------------------------------------------------------

template <ItemType eType>
void CheckBounds(benchmark::State& state, const wchar_t* lpctMin, const wchar_t* lpctMax, const wchar_t* lpctValue)
{
    CPrimitiveRestrictions restrictions(L"", -1, -1, lpctMin, lpctMax, L"", L"", -1);
    benchmark::DoNotOptimize(restrictions);
    const auto value = SItemTraits<eType>::FromString(lpctValue, s_eCollapse);
    for (auto _ : state)
    {
        CheckRestriction<eType>(L"item", value, restrictions);
        benchmark::ClobberMemory();
    }
    CountValues(state);
}

void CheckLength(benchmark::State& state)
{
    const CPrimitiveRestrictions restrictions(L"", 1, 100, L"", L"", L"", L"", -1);
    const std::wstring strValue = SampleOf(ItemType_string);
    for (auto _ : state)
        CheckRestriction<ItemType_string>(L"item", strValue, restrictions);
    CountValues(state);
}
BENCHMARK(CheckLength);

constexpr const char* s_lpcPattern = "[A-Z]{2}[0-9]{2}([A-Z0-9]{4}){3}";
constexpr const char* s_lpcMatch = "DE89370400440532";

void CheckPattern(benchmark::State& state)
{
    const std::wstring strPattern(s_lpcPattern, s_lpcPattern + std::string_view(s_lpcPattern).size());
    const CPrimitiveRestrictions restrictions(strPattern.c_str(), -1, -1, L"", L"", L"", L"", -1);
    const std::wstring strValue(s_lpcMatch, s_lpcMatch + std::string_view(s_lpcMatch).size());
    for (auto _ : state)
        CheckRestriction<ItemType_string>(L"item", strValue, restrictions);
    CountValues(state);
}
BENCHMARK(CheckPattern);

/// @return whether the whole subject matches.
bool ExecutePcre(const pcre* pExpression, std::string_view subject)
{
    int offsets[30];
    const int nResult = pcre_exec(pExpression, nullptr, subject.data(), static_cast<int>(subject.size()), 0,
                                  PCRE_ANCHORED, offsets, 30);
    return nResult > 0 && offsets[0] == 0 && offsets[1] == static_cast<int>(subject.size());
}

pcre* CompilePcre()
{
    const char* lpcError = nullptr;
    int nErrorAt = 0;
    return pcre_compile(s_lpcPattern, PCRE_UTF8, &lpcError, &nErrorAt, nullptr);
}

void PlainPcreCompiledOnce(benchmark::State& state)
{
    pcre* const pExpression = CompilePcre();
    if (pExpression == nullptr || !ExecutePcre(pExpression, s_lpcMatch))
        return state.SkipWithError("no match");
    for (auto _ : state)
        benchmark::DoNotOptimize(ExecutePcre(pExpression, s_lpcMatch));
    pcre_free(pExpression);
    CountValues(state);
}
BENCHMARK(PlainPcreCompiledOnce);

void PlainPcreCompiledForEachValue(benchmark::State& state)
{
    for (auto _ : state)
    {
        pcre* const pExpression = CompilePcre();
        benchmark::DoNotOptimize(ExecutePcre(pExpression, s_lpcMatch));
        pcre_free(pExpression);
    }
    CountValues(state);
}
BENCHMARK(PlainPcreCompiledForEachValue);

// --- Variants ---------------------------------------------------------------------------------------------------

void VariantScalar(benchmark::State& state)
{
    for (auto _ : state)
    {
        QvVariant value;
        value.SetI4(5);
        benchmark::DoNotOptimize(value.GetI4());
    }
    CountValues(state);
}
BENCHMARK(VariantScalar);

void VariantInvalid(benchmark::State& state)
{
    for (auto _ : state)
    {
        const QvVariant value;
        benchmark::DoNotOptimize(value.IsValid());
    }
    CountValues(state);
}
BENCHMARK(VariantInvalid);

template <ItemType eType>
void VariantReadAndPrint(benchmark::State& state)
{
    const std::wstring strText = SampleOf(eType);
    std::wstring strOut;
    for (auto _ : state)
    {
        QvVariant value;
        value.FromString(strText, eType, s_eCollapse);
        strOut.clear();
        value.AppendText(strOut, nullptr);
        benchmark::DoNotOptimize(strOut.data());
    }
    if (strOut != strText)
        return state.SkipWithError("wrong text");
    CountValues(state);
}
BENCHMARK_TEMPLATE(VariantReadAndPrint, ItemType_i4);
BENCHMARK_TEMPLATE(VariantReadAndPrint, ItemType_string);
BENCHMARK_TEMPLATE(VariantReadAndPrint, ItemType_date);
BENCHMARK_TEMPLATE(VariantReadAndPrint, ItemType_decimal);

template <ItemType eType>
void VariantCopy(benchmark::State& state)
{
    QvVariant source;
    source.FromString(SampleOf(eType), eType, s_eCollapse);
    for (auto _ : state)
    {
        const QvVariant copy(source);
        benchmark::DoNotOptimize(copy.m_type);
    }
    CountValues(state);
}
BENCHMARK_TEMPLATE(VariantCopy, ItemType_i4);
BENCHMARK_TEMPLATE(VariantCopy, ItemType_string);
BENCHMARK_TEMPLATE(VariantCopy, ItemType_datetime);
BENCHMARK_TEMPLATE(VariantCopy, ItemType_decimal);

void RegisterTemplates()
{
    benchmark::RegisterBenchmark("PlainFromChars/i4", &PlainFromChars<int>, std::string_view("-1234567"));
    benchmark::RegisterBenchmark("PlainFromChars/i8", &PlainFromChars<long long>, std::string_view("-123456789012345"));
    benchmark::RegisterBenchmark("PlainFromChars/r8", &PlainFromChars<double>, std::string_view("-1234567.890625"));
    benchmark::RegisterBenchmark("PlainToChars/i4", &PlainToChars<int>, -1234567);
    benchmark::RegisterBenchmark("PlainToChars/i8", &PlainToChars<long long>, -123456789012345);
    benchmark::RegisterBenchmark("PlainToChars/r8", &PlainToChars<double>, -1234567.890625);
    benchmark::RegisterBenchmark("CheckBounds/i4", &CheckBounds<ItemType_i4>, L"1", L"9999999", L"1234567");
    benchmark::RegisterBenchmark("CheckBounds/i4WithoutBounds", &CheckBounds<ItemType_i4>, L"", L"", L"1234567");
    benchmark::RegisterBenchmark("CheckBounds/r8", &CheckBounds<ItemType_r8>, L"0.5", L"1e9", L"1234567.5");
    benchmark::RegisterBenchmark("CheckBounds/date", &CheckBounds<ItemType_date>, L"2000-01-01", L"2099-12-31",
                                 L"2001-05-31");
    benchmark::RegisterBenchmark("CheckBounds/decimal", &CheckBounds<ItemType_decimal>, L"0.01", L"99999.99",
                                 L"12345.67");
}

[[maybe_unused]] const bool s_bRegistered = (RegisterConversions(), RegisterTemplates(), true);

} // namespace
