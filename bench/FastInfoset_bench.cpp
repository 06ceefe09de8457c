// Fast Infoset beside XML text: writing the same elements, and reading them into the tree.

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

constexpr int s_nOrders = 100000;

/// The values of the document, printed beforehand so that only the writers are measured.
const std::wstring& NumberText(int n)
{
    static const std::vector<std::wstring> s_texts = []
    {
        std::vector<std::wstring> texts;
        for (int nText = 0; nText < 10000; ++nText)
            texts.push_back(std::to_wstring(nText));
        return texts;
    }();
    return s_texts[static_cast<std::size_t>(n) % s_texts.size()];
}

void WriteOrders(CXmlWriter& writer)
{
    constexpr wchar_t szNamespace[] = L"http://www.example.com/purchase-order";
    writer.SetDefaultNamespace(szNamespace);
    writer.StartElement(L"orders", szNamespace);
    for (int n = 0; n < s_nOrders; ++n)
    {
        writer.StartElement(L"order", szNamespace);
        writer.WriteAttribute(L"number", L"", NumberText(n), ItemType_i4);
        writer.WriteAttribute(L"date", L"", L"2024-05-06", ItemType_date);
        writer.StartElement(L"customer", szNamespace);
        writer.WriteText(L"Robert Smith and Sons", ItemType_string);
        writer.EndElement();
        writer.StartElement(L"quantity", szNamespace);
        writer.WriteText(NumberText(n * 7), ItemType_i4);
        writer.EndElement();
        writer.StartElement(L"price", szNamespace);
        writer.WriteText(L"148.95", ItemType_decimal);
        writer.EndElement();
        writer.EndElement();
    }
    writer.EndElement();
}

CBinaryData WriteText()
{
    CTextStream stream(Encoding_UTF8);
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetFormatted(false);
    WriteOrders(writer);
    writer.Close();
    return stream.GetBinaryData();
}

CFastInfosetContext MakeContext(bool bSuggestedValues)
{
    CFastInfosetContext context;
    if (bSuggestedValues)
        context.SetSuggestedValues();
    return context;
}

CBinaryData WriteFastInfoset(const CFastInfosetContext& context)
{
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    WriteOrders(writer);
    writer.WriteTerminator();
    writer.Close();
    return stream.GetData();
}

void Count(benchmark::State& state, const CBinaryData& document)
{
    state.counters["document bytes"] = static_cast<double>(document.GetLength());
    state.SetItemsProcessed(state.iterations() * s_nOrders * 4);
}

void WriteAsText(benchmark::State& state)
{
    CBinaryData document;
    for (auto _ : state)
        document = WriteText();
    Count(state, document);
}

void WriteAsFastInfoset(benchmark::State& state, bool bSuggestedValues)
{
    const CFastInfosetContext context = MakeContext(bSuggestedValues);
    CBinaryData document;
    for (auto _ : state)
        document = WriteFastInfoset(context);
    Count(state, document);
}

int CountElements(CXmlElement* pElement)
{
    int nCount = 1;
    for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        nCount += CountElements(pChild);
    return nCount;
}

void Load(benchmark::State& state, const CBinaryData& data)
{
    {
        CXmlDocument document;
        document.LoadXmlStream(data.GetData(), data.GetLength());
        CXmlElement* const pOrder = document.GetDocumentElement()->GetFirstElement();
        if (CountElements(document.GetDocumentElement()) != s_nOrders * 4 + 1 ||
            pOrder->GetAttribute(L"date", L"") != L"2024-05-06" ||
            pOrder->GetFirstElement()->GetText() != L"Robert Smith and Sons")
        {
            state.SkipWithError("the document does not come back");
            return;
        }
    }
    for (auto _ : state)
    {
        CXmlDocument document;
        document.LoadXmlStream(data.GetData(), data.GetLength());
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
    Count(state, data);
}

void ReadText(benchmark::State& state)
{
    Load(state, WriteText());
}

void ReadFastInfoset(benchmark::State& state, bool bSuggestedValues)
{
    Load(state, WriteFastInfoset(MakeContext(bSuggestedValues)));
}

BENCHMARK(WriteAsText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteAsFastInfoset, PlainValues, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteAsFastInfoset, SuggestedValues, true)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadFastInfoset, PlainValues, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadFastInfoset, SuggestedValues, true)->Unit(benchmark::kMillisecond);

} // namespace
