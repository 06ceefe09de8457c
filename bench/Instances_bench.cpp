// What it costs an object to be counted, by the number of classes in use: a schema of many types brings thousands.
// Beside it the plain way, a table of counts behind one lock.

#include "quiver/foundation/MemoryLeakHelp.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{

class CMonitored : public CInstanceMonitor
{
public:
    explicit CMonitored(const wchar_t* lpctName)
        : CInstanceMonitor(lpctName)
    {
    }
};

/// Names as generated code has them: each at a place of its own that never changes.
std::vector<std::wstring> MakeNames(std::size_t nClasses)
{
    std::vector<std::wstring> names;
    for (std::size_t n = 0; n < nClasses; ++n)
        names.push_back(L"CPurchaseOrderLineOfKind" + std::to_wstring(n));
    return names;
}

/// Whether each name stands in the report as often as objects were made.
bool IsCounted(const std::vector<std::wstring>& names, const wchar_t* lpctCounts)
{
    const std::wstring strState = CInstanceMonitor::DumpState() + L"\n";
    for (const std::wstring& strName : names)
    {
        if (strState.find(L"    " + strName + lpctCounts) == std::wstring::npos)
            return false;
    }
    return true;
}

/// Makes and destroys an object of each class in turn.
void Objects(benchmark::State& state)
{
    const std::vector<std::wstring> names = MakeNames(static_cast<std::size_t>(state.range(0)));
    CInstanceMonitor::Cleanup();
    for (const std::wstring& strName : names)
        const CMonitored counted(strName.c_str());
    if (!IsCounted(names, L" = 0/1\n"))
        state.SkipWithError("objects were not counted");
    std::size_t nAt = 0;
    for (auto _ : state)
    {
        const CMonitored counted(names[nAt].c_str());
        benchmark::DoNotOptimize(&counted);
        if (++nAt == names.size())
            nAt = 0;
    }
    CInstanceMonitor::Cleanup();
}
BENCHMARK(Objects)->Arg(10)->Arg(1000)->Arg(5000);

void PlainTable(benchmark::State& state)
{
    struct SCounts
    {
        long lLiving = 0;
        long lTotal = 0;
    };
    const std::vector<std::wstring> names = MakeNames(static_cast<std::size_t>(state.range(0)));
    std::mutex mutex;
    std::unordered_map<std::wstring, SCounts> counts;
    const auto count = [&](const wchar_t* lpctName, long lMore)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        SCounts& c = counts[lpctName];
        c.lLiving += lMore;
        c.lTotal += lMore > 0;
    };
    std::size_t nAt = 0;
    for (auto _ : state)
    {
        count(names[nAt].c_str(), 1);
        count(names[nAt].c_str(), -1);
        if (++nAt == names.size())
            nAt = 0;
    }
    if (counts[names[0]].lLiving != 0)
        state.SkipWithError("objects were not counted");
}
BENCHMARK(PlainTable)->Arg(10)->Arg(1000)->Arg(5000);

} // namespace
