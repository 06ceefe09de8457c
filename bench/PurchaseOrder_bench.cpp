// Reading and writing the purchase order document, scaled to 1 KB, 1 MB and 20 MB, in bytes of XML per second; expat
// alone on the same bytes, with handlers that do nothing, is the floor.

#include "bench/PurchaseOrderDocument.h"

#include "quiver/document/XmlDocument.h"

#include <benchmark/benchmark.h>
#include <expat.h>

#include <future>
#include <string>
#include <thread>

using namespace QvXmlLib9;
using namespace order;
using namespace bench;

namespace
{

void CountBytes(benchmark::State& state, std::size_t nBytes)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(nBytes));
}

void ExpatAlone(benchmark::State& state)
{
    const std::string& strXml = Document(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
    {
        const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
        XML_SetElementHandler(
            parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
        XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
        if (XML_Parse(parser, strXml.data(), static_cast<int>(strXml.size()), XML_TRUE) != XML_STATUS_OK)
            Fail("expat refused the document");
        XML_ParserFree(parser);
    }
    CountBytes(state, strXml.size());
}

void LoadTree(benchmark::State& state)
{
    const std::string& strXml = Document(static_cast<std::size_t>(state.range(0)));
    const CXmlSerializationContext context = Context();
    for (auto _ : state)
    {
        CXmlDocument document(context);
        document.LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(strXml.data())),
                               static_cast<unsigned long>(strXml.size()));
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
    CountBytes(state, strXml.size());
}

/// The objects' share of reading: the tree is there already.
void BindTree(benchmark::State& state)
{
    const std::string& strXml = Document(static_cast<std::size_t>(state.range(0)));
    const CXmlSerializationContext context = Context();
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(strXml.data())),
                           static_cast<unsigned long>(strXml.size()));
    CPurchaseOrder purchaseOrder;
    for (auto _ : state)
        purchaseOrder.FromXmlElement(document.GetDocumentElement(), context);
    CountBytes(state, strXml.size());
}

void ReadObjects(benchmark::State& state)
{
    const std::string& strXml = Document(static_cast<std::size_t>(state.range(0)));
    const CXmlSerializationContext context = Context();
    CPurchaseOrder purchaseOrder;
    Read(purchaseOrder, strXml, context);
    if (purchaseOrder.GetItem()->Item(0)->GetProduct() != L"Article number 0")
        Fail("the document was not read");
    for (auto _ : state)
        Read(purchaseOrder, strXml, context);
    CountBytes(state, strXml.size());
}

/// A process of two threads counts references, and hands out memory, by locked instructions. Beside a thread that only
/// waits, one document costs what it costs there without anybody who competes for caches and memory.
void ReadObjectsBesideAThread(benchmark::State& state)
{
    std::promise<void> end;
    std::thread waiting([&] { end.get_future().wait(); });
    ReadObjects(state);
    end.set_value();
    waiting.join();
}

/// Rates count the bytes that are written: without indentation the document is shorter than the one read.
void WriteUtf8(benchmark::State& state)
{
    const CXmlSerializationContext context = Context();
    CPurchaseOrder purchaseOrder;
    Read(purchaseOrder, Document(static_cast<std::size_t>(state.range(0))), context);
    const auto write = [&]
    {
        return purchaseOrder.ToXmlStream(true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    };
    const CBinaryData data = write();
    CPurchaseOrder again;
    again.FromXmlStream(data, context);
    if (again.ToXml(false, false, EOLType_LF, context) != purchaseOrder.ToXml(false, false, EOLType_LF, context))
        Fail("the document was not written as it was read");
    for (auto _ : state)
        benchmark::DoNotOptimize(write());
    CountBytes(state, data.GetLength());
}

void WriteWide(benchmark::State& state)
{
    const CXmlSerializationContext context = Context();
    CPurchaseOrder purchaseOrder;
    Read(purchaseOrder, Document(static_cast<std::size_t>(state.range(0))), context);
    const std::size_t nLength = purchaseOrder.ToXml(true, true, EOLType_LF, context).size();
    for (auto _ : state)
        benchmark::DoNotOptimize(purchaseOrder.ToXml(true, true, EOLType_LF, context));
    CountBytes(state, nLength);
}

} // namespace

BENCHMARK(ExpatAlone)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadTree)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BindTree)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadObjects)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadObjects)->Arg(1000)->Arg(1000000)->ThreadRange(1, 2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ReadObjectsBesideAThread)->Arg(1000000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(WriteUtf8)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteWide)->Arg(1000)->Arg(1000000)->Arg(20000000)->Unit(benchmark::kMillisecond);
