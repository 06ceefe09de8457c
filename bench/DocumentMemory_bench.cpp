#include "quiver/document/XmlDocument.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

/// @file
/// Memory that a load takes at its peak, for files of 5, 50 and 500 MB. An overlapped load with a filter that drops
/// each record is to stay flat whatever the length of the file; a plain load, measured up to 50 MB, keeps the whole
/// tree.
///
/// The counters `start` and `peak` are the bytes that the process has in memory, as Linux tells it.

namespace
{

using QvXmlLib9::AsyncFromXmlFile;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;

/// A size in /proc/self/status; 0 where there is none.
benchmark::Counter ReadStatus(const std::string& strName)
{
    double nKilobytes = 0;
    std::ifstream stream("/proc/self/status");
    for (std::string strLine; std::getline(stream, strLine);)
    {
        if (strLine.compare(0, strName.size(), strName) == 0)
            nKilobytes = std::stod(strLine.substr(strName.size() + 1));
    }
    return benchmark::Counter(1024 * nKilobytes, benchmark::Counter::kDefaults, benchmark::Counter::kIs1024);
}

/// Lets the peak start from the present size.
void ResetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

/// A file of about so many bytes, removed in the end.
class CRecordFile
{
public:
    explicit CRecordFile(std::int64_t nBytes)
        : m_path(std::filesystem::temp_directory_path() / "quiver_memory_bench.xml")
    {
        std::ofstream stream(m_path, std::ios::binary);
        stream << "<?xml version='1.0' encoding='UTF-8'?><orders xmlns='http://www.example.com/PurchaseOrder'>";
        for (; stream.tellp() < nBytes; ++m_nRecords)
        {
            stream << "<order id='" << m_nRecords << "'><date>2024-02-29</date><items>";
            for (int i = 0; i < 10; ++i)
                stream << "<item><sku>872-AA</sku><name>Lawnmower, electric</name><price>148.95</price></item>";
            stream << "</items></order>";
        }
        stream << "</orders>";
    }
    ~CRecordFile() { std::filesystem::remove(m_path); }
    CRecordFile(const CRecordFile&) = delete;
    CRecordFile& operator=(const CRecordFile&) = delete;

    std::filesystem::path m_path;
    std::int64_t m_nRecords = 0;
};

std::int64_t s_nDropped;

bool DropOrders(CXmlElement* pElement)
{
    const bool bDrop = pElement->GetLocalName() == L"order";
    s_nDropped += bDrop;
    return bDrop;
}

void Measure(benchmark::State& state, CXmlDocument::PfnElementFilter pfnFilter)
{
    const CRecordFile file(state.range(0) * 1000000);
    ResetPeak();
    state.counters["start"] = ReadStatus("VmRSS:");
    for (auto _ : state)
    {
        s_nDropped = 0;
        CXmlDocument document(pfnFilter);
        document.Load(file.m_path.wstring().c_str());
        if (pfnFilter != nullptr && s_nDropped != file.m_nRecords)
            state.SkipWithError("records got lost");
    }
    state.counters["peak"] = ReadStatus("VmHWM:");
    state.SetBytesProcessed(state.iterations() * state.range(0) * 1000000);
}

void FilteredOverlapped(benchmark::State& state)
{
    AsyncFromXmlFile(true);
    Measure(state, DropOrders);
    AsyncFromXmlFile(false);
}

void Whole(benchmark::State& state)
{
    Measure(state, nullptr);
}

BENCHMARK(FilteredOverlapped)->Arg(5)->Arg(50)->Arg(500)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Whole)->Arg(5)->Arg(50)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
