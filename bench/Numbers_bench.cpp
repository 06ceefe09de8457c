// Whole and decimal numbers. Multiplication and division stand beside the plain way, which works on single digits and
// divides by repeated subtraction.

#include "quiver/values/BigInteger.h"
#include "quiver/values/Decimal.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace
{

using QvXmlLib9::CBigInteger;
using QvXmlLib9::CDecimal;

using CDigits = std::vector<wchar_t>;

std::wstring MakeDigits(std::size_t nCount, unsigned int nSeed)
{
    std::wstring strDigits;
    for (std::size_t nAt = 0; nAt < nCount; ++nAt)
    {
        nSeed = nSeed * 1103515245U + 12345U;
        strDigits += static_cast<wchar_t>(L'1' + (nSeed >> 16) % 9);
    }
    return strDigits;
}

/// Opens the routines on magnitudes.
class CMagnitude : public CBigInteger
{
public:
    using CBigInteger::Add;
    using CBigInteger::Build;
    using CBigInteger::Clean;
    using CBigInteger::Compare;
    using CBigInteger::Divide;
    using CBigInteger::Multiply;
    using CBigInteger::ShiftLeft;
    using CBigInteger::Subtract;
};

CDigits MakeMagnitude(std::size_t nCount, unsigned int nSeed)
{
    CDigits digits;
    CMagnitude::Build(MakeDigits(nCount, nSeed), digits);
    return digits;
}

CDigits PlainMultiply(const CDigits& a, const CDigits& b)
{
    CDigits product(1, 0);
    for (std::size_t nAt = 0; nAt < b.size(); ++nAt)
    {
        CDigits row;
        CMagnitude::Multiply(a, b[nAt], row);
        CMagnitude::ShiftLeft(row, static_cast<int>(nAt));
        CMagnitude::Add(product, row, product);
    }
    CMagnitude::Clean(product);
    return product;
}

CDigits PlainDivide(const CDigits& a, const CDigits& b)
{
    CDigits quotient(1, 0);
    CDigits rest = a;
    while (CMagnitude::Compare(rest, b) >= 0)
    {
        CDigits multiple = b;
        CDigits unit(1, 1);
        const int nShift = static_cast<int>(rest.size()) - static_cast<int>(b.size()) - 1;
        CMagnitude::ShiftLeft(multiple, nShift);
        CMagnitude::ShiftLeft(unit, nShift);
        for (; CMagnitude::Compare(rest, multiple) >= 0; CMagnitude::Subtract(rest, multiple, rest))
            CMagnitude::Add(quotient, unit, quotient);
    }
    return quotient;
}

void BM_IntegerParse(benchmark::State& state)
{
    const std::wstring strText = MakeDigits(static_cast<std::size_t>(state.range(0)), 1);
    if (CBigInteger(strText.c_str()).ToString() != strText)
        state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(CBigInteger(strText.c_str()));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_IntegerParse)->Arg(5)->Arg(20)->Arg(1000)->Arg(100000);

void BM_IntegerPrint(benchmark::State& state)
{
    const std::wstring strText = MakeDigits(static_cast<std::size_t>(state.range(0)), 1);
    const CBigInteger value(strText.c_str());
    if (value.ToString() != strText)
        state.SkipWithError("wrong text");
    for (auto _ : state)
        benchmark::DoNotOptimize(value.ToString());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_IntegerPrint)->Arg(5)->Arg(20)->Arg(1000)->Arg(100000);

void BM_IntegerCompare(benchmark::State& state)
{
    const std::wstring strText = MakeDigits(static_cast<std::size_t>(state.range(0)), 1);
    const CBigInteger a((strText + L"1").c_str());
    const CBigInteger b((strText + L"2").c_str());
    if (!(a < b))
        state.SkipWithError("wrong order");
    for (auto _ : state)
        benchmark::DoNotOptimize(a < b);
}
BENCHMARK(BM_IntegerCompare)->Arg(5)->Arg(100000);

void BM_IntegerAdd(benchmark::State& state)
{
    const CBigInteger a(MakeDigits(static_cast<std::size_t>(state.range(0)), 1).c_str());
    const CBigInteger b(MakeDigits(static_cast<std::size_t>(state.range(0)), 2).c_str());
    if (a + b - b != a)
        state.SkipWithError("wrong sum");
    for (auto _ : state)
        benchmark::DoNotOptimize(a + b);
}
BENCHMARK(BM_IntegerAdd)->Arg(5)->Arg(20)->Arg(1000);

template <bool bPlain>
void BM_Multiply(benchmark::State& state)
{
    const CDigits a = MakeMagnitude(static_cast<std::size_t>(state.range(0)), 1);
    const CDigits b = MakeMagnitude(static_cast<std::size_t>(state.range(0)), 2);
    CDigits product;
    CMagnitude::Multiply(a, b, product);
    if (product != PlainMultiply(a, b))
        state.SkipWithError("wrong product");
    for (auto _ : state)
    {
        if (bPlain)
            product = PlainMultiply(a, b);
        else
            CMagnitude::Multiply(a, b, product);
        benchmark::DoNotOptimize(product.data());
    }
}
BENCHMARK_TEMPLATE(BM_Multiply, true)->Arg(5)->Arg(30)->Arg(1000);
BENCHMARK_TEMPLATE(BM_Multiply, false)->Arg(5)->Arg(30)->Arg(1000)->Arg(3000);

template <bool bPlain>
void BM_Divide(benchmark::State& state)
{
    const CDigits a = MakeMagnitude(static_cast<std::size_t>(state.range(0)), 1);
    const CDigits b = MakeMagnitude(static_cast<std::size_t>(state.range(1)), 2);
    CDigits quotient;
    CDigits remainder;
    CMagnitude::Divide(a, b, quotient, remainder);
    if (quotient != PlainDivide(a, b))
        state.SkipWithError("wrong quotient");
    for (auto _ : state)
    {
        if (bPlain)
            quotient = PlainDivide(a, b);
        else
            CMagnitude::Divide(a, b, quotient, remainder);
        benchmark::DoNotOptimize(quotient.data());
    }
}
BENCHMARK_TEMPLATE(BM_Divide, true)->Args({9, 4})->Args({60, 30})->Args({1000, 500});
BENCHMARK_TEMPLATE(BM_Divide, false)->Args({9, 4})->Args({60, 30})->Args({1000, 500})->Args({6000, 3000});

void BM_SquareRoot(benchmark::State& state)
{
    const CBigInteger root(MakeDigits(static_cast<std::size_t>(state.range(0)), 1).c_str());
    const CBigInteger square = root * root;
    if (square.SquareRoot() != root)
        state.SkipWithError("wrong root");
    for (auto _ : state)
        benchmark::DoNotOptimize(square.SquareRoot());
}
BENCHMARK(BM_SquareRoot)->Arg(10)->Arg(100);

/// The texts of the benchmarks of decimals: a price, all places in use, and an exponent.
const wchar_t* const s_decimals[] = {L"1234.56", L"-98765432109876543210.123456789012345678901234567891", L"1.7E308"};

void BM_DecimalParse(benchmark::State& state)
{
    const wchar_t* const lpctText = s_decimals[state.range(0)];
    if (CDecimal(lpctText) != CDecimal(CDecimal(lpctText).ToString().c_str()))
        state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(CDecimal(lpctText));
}
BENCHMARK(BM_DecimalParse)->DenseRange(0, 2);

void BM_DecimalPrint(benchmark::State& state)
{
    const CDecimal value(s_decimals[state.range(0)]);
    if (CDecimal(value.ToString().c_str()) != value)
        state.SkipWithError("wrong text");
    for (auto _ : state)
        benchmark::DoNotOptimize(value.ToString());
}
BENCHMARK(BM_DecimalPrint)->DenseRange(0, 2);

void BM_DecimalPrintTwoPlaces(benchmark::State& state)
{
    const CDecimal value(L"1234.567");
    if (value.ToString(2) != L"1234.57")
        state.SkipWithError("wrong text");
    for (auto _ : state)
        benchmark::DoNotOptimize(value.ToString(2));
}
BENCHMARK(BM_DecimalPrintTwoPlaces);

void BM_DecimalFromDouble(benchmark::State& state)
{
    if (CDecimal(1234.56).ToString() != L"1234.5599999999999")
        state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(CDecimal(1234.56));
}
BENCHMARK(BM_DecimalFromDouble);

void BM_DecimalToDouble(benchmark::State& state)
{
    const CDecimal value(L"1234.56");
    if (value.ToDouble() != 1234.56)
        state.SkipWithError("wrong value");
    for (auto _ : state)
        benchmark::DoNotOptimize(value.ToDouble());
}
BENCHMARK(BM_DecimalToDouble);

/// The two bounds of a facet, as a setter of a generated class tests them.
void BM_DecimalCompare(benchmark::State& state)
{
    const CDecimal value(L"1234.56");
    const CDecimal minimum(L"0.01");
    const CDecimal maximum(L"1234.5601");
    if (value < minimum || value > maximum)
        state.SkipWithError("wrong order");
    for (auto _ : state)
    {
        benchmark::DoNotOptimize(value < minimum);
        benchmark::DoNotOptimize(value > maximum);
    }
}
BENCHMARK(BM_DecimalCompare);

template <class TOperation>
void CalculateDecimals(benchmark::State& state, const wchar_t* lpctExpected, TOperation operation)
{
    CDecimal a(L"1234.56");
    CDecimal b(L"-0.075");
    if (operation(a, b).ToString() != lpctExpected)
        state.SkipWithError("wrong result");
    for (auto _ : state)
        benchmark::DoNotOptimize(operation(a, b));
}

void BM_DecimalAdd(benchmark::State& state)
{
    CalculateDecimals(state, L"1234.485", [](CDecimal& a, CDecimal& b) { return a + b; });
}
BENCHMARK(BM_DecimalAdd);

void BM_DecimalMultiply(benchmark::State& state)
{
    CalculateDecimals(state, L"-92.592", [](CDecimal& a, CDecimal& b) { return a * b; });
}
BENCHMARK(BM_DecimalMultiply);

void BM_DecimalDivide(benchmark::State& state)
{
    CalculateDecimals(state, L"-16460.8", [](CDecimal& a, CDecimal& b) { return a / b; });
}
BENCHMARK(BM_DecimalDivide);

} // namespace
