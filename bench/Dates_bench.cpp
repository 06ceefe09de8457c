// Dates, durations, white space and patterns. Beside each stands the plain way with what the standard library or PCRE
// offers.

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Pattern.h"
#include "quiver/values/DateTime.h"
#include "quiver/values/DateTimeSpan.h"
#include "quiver/values/WhitespaceUtils.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <cwchar>
#include <iomanip>
#include <pcre.h>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using QvXmlLib9::CDateTime;
using QvXmlLib9::CDateTimeSpan;
using QvXmlLib9::CWhitespaceUtils;

const wchar_t* const s_lpctDateTime = L"2001-03-05T12:30:15.678+01:00";
const wchar_t* const s_lpctDate = L"2001-03-05";

void Expect(benchmark::State& state, bool bRight)
{
    if (!bRight)
        state.SkipWithError("wrong answer");
}

// --- Parsing and printing -------------------------------------------------------------------------------------------

void ParseDateTime(benchmark::State& state)
{
    CDateTime dt;
    for (auto _ : state)
    {
        dt.ParseXSDDateTime(s_lpctDateTime);
        benchmark::DoNotOptimize(dt);
    }
    Expect(state, dt.ToString() == s_lpctDateTime);
}
BENCHMARK(ParseDateTime);

void ParseDateTimeWithScanf(benchmark::State& state)
{
    std::array<int, 9> fields = {};
    for (auto _ : state)
    {
        std::swscanf(s_lpctDateTime, L"%4d-%2d-%2dT%2d:%2d:%2d.%3d%3d:%2d", &fields[0], &fields[1], &fields[2],
                     &fields[3], &fields[4], &fields[5], &fields[6], &fields[7], &fields[8]);
        benchmark::DoNotOptimize(fields);
    }
    Expect(state, fields[0] == 2001 && fields[6] == 678);
}
BENCHMARK(ParseDateTimeWithScanf);

void ParseDateTimeWithStream(benchmark::State& state)
{
    std::tm fields = {};
    for (auto _ : state)
    {
        std::wistringstream stream(s_lpctDateTime);
        stream >> std::get_time(&fields, L"%Y-%m-%dT%H:%M:%S");
        benchmark::DoNotOptimize(fields);
    }
    Expect(state, fields.tm_year == 101 && fields.tm_sec == 15);
}
BENCHMARK(ParseDateTimeWithStream);

void ParseDate(benchmark::State& state)
{
    CDateTime dt;
    for (auto _ : state)
    {
        dt.ParseXSDDate(s_lpctDate);
        benchmark::DoNotOptimize(dt);
    }
    Expect(state, dt.ToString() == s_lpctDate);
}
BENCHMARK(ParseDate);

void PrintDateTime(benchmark::State& state)
{
    const CDateTime dt(s_lpctDateTime);
    std::wstring strText;
    for (auto _ : state)
    {
        strText = dt.ToString();
        benchmark::DoNotOptimize(strText);
    }
    Expect(state, strText == s_lpctDateTime);
}
BENCHMARK(PrintDateTime);

void PrintDateTimeWithPrintf(benchmark::State& state)
{
    std::wstring strText;
    for (auto _ : state)
    {
        wchar_t szText[64];
        const int nLength = std::swprintf(szText, 64, L"%04d-%02d-%02dT%02d:%02d:%02d.%03d%+03d:%02d", 2001, 3, 5, 12,
                                          30, 15, 678, 1, 0);
        strText.assign(szText, static_cast<std::size_t>(nLength));
        benchmark::DoNotOptimize(strText);
    }
    Expect(state, strText == s_lpctDateTime);
}
BENCHMARK(PrintDateTimeWithPrintf);

void ParseAndPrintDuration(benchmark::State& state)
{
    const std::wstring strDuration = L"P1Y2M3DT4H5M6.7S";
    CDateTimeSpan span;
    std::wstring strText;
    for (auto _ : state)
    {
        span.ParseXSDDuration(strDuration.c_str());
        strText = span.ToString();
        benchmark::DoNotOptimize(strText);
    }
    Expect(state, strText == strDuration);
}
BENCHMARK(ParseAndPrintDuration);

// --- Comparison and arithmetic --------------------------------------------------------------------------------------

void CompareDateTimes(benchmark::State& state)
{
    const CDateTime a(L"2001-03-05T12:30:15");
    const CDateTime b(L"2001-03-05T12:30:16");
    bool bLess = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(bLess = a < b);
    Expect(state, bLess);
}
BENCHMARK(CompareDateTimes);

void CompareDateTimesWithOffsets(benchmark::State& state)
{
    const CDateTime a(L"2001-03-05T12:30:15+01:00");
    const CDateTime b(L"2001-03-05T12:30:15-01:00");
    bool bLess = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(bLess = a < b);
    Expect(state, bLess);
}
BENCHMARK(CompareDateTimesWithOffsets);

void CompareTimesWithMktime(benchmark::State& state)
{
    std::tm a = {};
    a.tm_year = 101;
    a.tm_mon = 2;
    a.tm_mday = 5;
    std::tm b = a;
    b.tm_hour = 2;
    bool bLess = false;
    for (auto _ : state)
    {
        std::tm copyA = a;
        std::tm copyB = b;
        benchmark::DoNotOptimize(bLess = std::mktime(&copyA) < std::mktime(&copyB));
    }
    Expect(state, bLess);
}
BENCHMARK(CompareTimesWithMktime);

void AddDays(benchmark::State& state)
{
    const CDateTime start(L"2001-03-05T12:30:15");
    const CDateTimeSpan span(0, 0, static_cast<unsigned long>(state.range(0)), 0, 0, 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(start + span);
}
BENCHMARK(AddDays)->Arg(1)->Arg(1000)->Arg(1000000)->Arg(4294967295);

bool IsLeapYear(int nYear)
{
    return nYear % 4 == 0 && (nYear % 100 != 0 || nYear % 400 == 0);
}

void AddDaysMonthByMonth(benchmark::State& state)
{
    static const int s_lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (auto _ : state)
    {
        std::int16_t nYear = 2001;
        int nMonth = 2;
        std::int64_t nDay = 5 + state.range(0);
        for (;;)
        {
            const int nLength = s_lengths[nMonth] + (nMonth == 1 && IsLeapYear(nYear) ? 1 : 0);
            if (nDay <= nLength)
                break;
            nDay -= nLength;
            if (++nMonth == 12)
            {
                nMonth = 0;
                nYear = static_cast<std::int16_t>(nYear + 1);
            }
        }
        benchmark::DoNotOptimize(nDay);
    }
}
BENCHMARK(AddDaysMonthByMonth)->Arg(1)->Arg(1000)->Arg(1000000);

// --- White space ----------------------------------------------------------------------------------------------------

std::wstring MakeText(std::size_t nLength, bool bWhiteSpace)
{
    std::wstring strText;
    while (strText.size() < nLength)
        strText += bWhiteSpace ? L"some text\r\n\twith white space " : L"a_text_without_any_of_it";
    return strText;
}

template <std::wstring (*pfnRule)(const std::wstring&), bool bWhiteSpace>
void ApplyRule(benchmark::State& state)
{
    const std::wstring strText = MakeText(static_cast<std::size_t>(state.range(0)), bWhiteSpace);
    for (auto _ : state)
        benchmark::DoNotOptimize(pfnRule(strText));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * strText.size() * sizeof(wchar_t)));
}

std::wstring PlainCollapse(const std::wstring& strText)
{
    std::wstring strOut;
    for (const wchar_t c : strText)
    {
        const bool bBlank = c == L' ' || c == L'\t' || c == L'\n';
        if (c == L'\r' || (bBlank && (strOut.empty() || strOut.back() == L' ')))
            continue;
        strOut += bBlank ? L' ' : c;
    }
    if (!strOut.empty() && strOut.back() == L' ')
        strOut.pop_back();
    return strOut;
}

BENCHMARK(ApplyRule<static_cast<std::wstring (*)(const std::wstring&)>(CWhitespaceUtils::Preserve), true>)
    ->Name("PreserveText")
    ->Arg(20)
    ->Arg(10000);
BENCHMARK(ApplyRule<CWhitespaceUtils::Replace, true>)->Name("ReplaceText")->Arg(20)->Arg(10000);
BENCHMARK(ApplyRule<CWhitespaceUtils::Collapse, true>)->Name("CollapseText")->Arg(20)->Arg(10000);
BENCHMARK(ApplyRule<CWhitespaceUtils::Collapse, false>)->Name("CollapseTextWithoutWhiteSpace")->Arg(20)->Arg(10000);
BENCHMARK(ApplyRule<PlainCollapse, true>)->Name("PlainCollapseText")->Arg(20)->Arg(10000);
BENCHMARK(ApplyRule<PlainCollapse, false>)->Name("PlainCollapseTextWithoutWhiteSpace")->Arg(20)->Arg(10000);

// --- Patterns -------------------------------------------------------------------------------------------------------

const char* const s_lpcPattern = "[A-Z]{2}\\d{6}(-[a-z]+)*";
const wchar_t* const s_lpctValue = L"AB123456-some-words";

void MatchPattern(benchmark::State& state)
{
    const std::string strPattern = s_lpcPattern;
    const std::wstring strValue = s_lpctValue;
    bool bMatches = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(bMatches = QvXmlLib9::PatternMatch(strPattern, strValue));
    Expect(state, bMatches);
}
BENCHMARK(MatchPattern);

void MatchManyPatterns(benchmark::State& state)
{
    std::vector<std::string> patterns;
    for (int i = 0; i < state.range(0); ++i)
        patterns.push_back(s_lpcPattern + std::string("x") + std::to_string(i) + "?");
    const std::wstring strValue = s_lpctValue;
    std::size_t nAt = 0;
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(QvXmlLib9::PatternMatch(patterns[nAt], strValue));
        nAt = nAt + 1 < patterns.size() ? nAt + 1 : 0;
    }
}
BENCHMARK(MatchManyPatterns)->Arg(20)->Arg(1000);

bool Execute(const pcre* pPattern, const std::wstring& strValue)
{
    std::string strSubject;
    QvXmlLib9::AppendUtf8(strSubject, strValue);
    std::array<int, 6> offsets = {};
    const int nLength = static_cast<int>(strSubject.size());
    const int nResult = pcre_exec(pPattern, nullptr, strSubject.data(), nLength, 0, PCRE_ANCHORED, offsets.data(),
                                  static_cast<int>(offsets.size()));
    return nResult > 0 && offsets[1] == nLength;
}

pcre* Compile()
{
    const char* lpcError = nullptr;
    int nAt = 0;
    return pcre_compile(s_lpcPattern, PCRE_UTF8, &lpcError, &nAt, nullptr);
}

void CompileAndExecuteWithPcre(benchmark::State& state)
{
    const std::wstring strValue = s_lpctValue;
    bool bMatches = false;
    for (auto _ : state)
    {
        pcre* const pPattern = Compile();
        benchmark::DoNotOptimize(bMatches = Execute(pPattern, strValue));
        pcre_free(pPattern);
    }
    Expect(state, bMatches);
}
BENCHMARK(CompileAndExecuteWithPcre);

void ExecuteWithPcre(benchmark::State& state)
{
    const std::wstring strValue = s_lpctValue;
    pcre* const pPattern = Compile();
    bool bMatches = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(bMatches = Execute(pPattern, strValue));
    pcre_free(pPattern);
    Expect(state, bMatches);
}
BENCHMARK(ExecuteWithPcre);

void MatchLongValue(benchmark::State& state)
{
    const std::wstring strValue(static_cast<std::size_t>(state.range(0)), L'a');
    bool bMatches = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(bMatches = QvXmlLib9::PatternMatch("(a|b)*", strValue));
    Expect(state, bMatches);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * strValue.size() * sizeof(wchar_t)));
}
BENCHMARK(MatchLongValue)->Arg(100)->Arg(10000)->Arg(1000000);

} // namespace
