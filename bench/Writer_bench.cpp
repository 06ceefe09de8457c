// Writing XML text, beside what it is measured against: expat reading the same document.

#include "quiver/foundation/BinaryData.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"

#include <benchmark/benchmark.h>
#include <expat.h>

#include <string>

using namespace QvXmlLib9;

namespace
{

constexpr int s_nElements = 1000000;

/// Some 20 MB: a flat list of short values, as in `<item>12345678</item>`.
void WriteValues(CXmlWriter& writer)
{
    writer.StartElement(L"list", L"");
    for (int n = 1; n < s_nElements; ++n)
    {
        writer.StartElement(L"item", L"");
        writer.WriteText(L"123456", ItemType_i4);
        writer.EndElement();
    }
    writer.EndElement();
}

/// Names in a default namespace, attributes, nested elements.
void WriteRecords(CXmlWriter& writer)
{
    constexpr wchar_t szNamespace[] = L"http://www.example.com/purchase-order";
    writer.SetDefaultNamespace(szNamespace);
    writer.StartElement(L"orders", szNamespace);
    for (int n = 0; n < s_nElements / 4; ++n)
    {
        writer.StartElement(L"order", szNamespace);
        writer.WriteAttribute(L"id", L"", L"A-4711", ItemType_string);
        writer.WriteAttribute(L"date", L"", L"2024-05-06", ItemType_date);
        writer.StartElement(L"name", szNamespace);
        writer.WriteText(L"Smith & Sons", ItemType_string);
        writer.EndElement();
        writer.StartElement(L"count", szNamespace);
        writer.WriteText(L"12", ItemType_i4);
        writer.EndElement();
        writer.StartElement(L"note", szNamespace);
        writer.EndElement();
        writer.EndElement();
    }
    writer.EndElement();
}

/// A namespace without a prefix, declared anew on every element.
void WriteDeclarations(CXmlWriter& writer)
{
    writer.StartElement(L"list", L"");
    for (int n = 1; n < s_nElements / 4; ++n)
    {
        writer.StartElement(L"item", L"http://www.example.com/other");
        writer.EndElement();
    }
    writer.EndElement();
}

using PfnWrite = void (*)(CXmlWriter&);

void WriteTo(CTextStream& stream, PfnWrite pfnWrite, bool bFormatted)
{
    CXmlTextWriter writer(&stream);
    writer.Open();
    writer.SetFormatted(bFormatted);
    writer.WriteXmlDeclaration();
    pfnWrite(writer);
    writer.Close();
}

void Write(benchmark::State& state, PfnWrite pfnWrite, bool bFormatted)
{
    std::size_t nUnits = 0;
    for (auto _ : state)
    {
        CTextStream stream(Encoding_UTF8);
        WriteTo(stream, pfnWrite, bFormatted);
        nUnits = stream.GetLength();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(nUnits) * static_cast<std::int64_t>(state.iterations()));
}

void WriteUtf8(benchmark::State& state, PfnWrite pfnWrite)
{
    std::size_t nBytes = 0;
    for (auto _ : state)
    {
        CTextStream stream(Encoding_UTF8);
        WriteTo(stream, pfnWrite, true);
        nBytes = stream.GetBinaryData().GetLength();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(nBytes) * static_cast<std::int64_t>(state.iterations()));
}

/// expat alone, with handlers that do nothing, on what WriteUtf8 makes.
void ParseWithExpat(benchmark::State& state, PfnWrite pfnWrite)
{
    CTextStream stream(Encoding_UTF8);
    WriteTo(stream, pfnWrite, true);
    const CBinaryData document = stream.GetBinaryData();
    for (auto _ : state)
    {
        XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
        XML_SetElementHandler(
            parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
        XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
        if (XML_Parse(parser, reinterpret_cast<const char*>(document.GetData()), static_cast<int>(document.GetLength()),
                      1) != XML_STATUS_OK)
            state.SkipWithError("the document is not well-formed");
        XML_ParserFree(parser);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(document.GetLength()) *
                            static_cast<std::int64_t>(state.iterations()));
}

/// What writing through `std::wstring` costs at the least, to compare with.
void AppendToString(benchmark::State& state)
{
    std::size_t nUnits = 0;
    for (auto _ : state)
    {
        std::wstring strText = L"<list>\n";
        for (int n = 1; n < s_nElements; ++n)
        {
            strText += L"\t<";
            strText += L"item";
            strText += L'>';
            strText += L"123456";
            strText += L"</";
            strText += L"item";
            strText += L">\n";
        }
        strText += L"</list>\n";
        nUnits = strText.size();
        benchmark::DoNotOptimize(strText.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(nUnits) * static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK_CAPTURE(Write, Values, WriteValues, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, ValuesFormatted, WriteValues, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, Records, WriteRecords, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Write, Declarations, WriteDeclarations, true)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendToString)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteUtf8, Values, WriteValues)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteUtf8, Records, WriteRecords)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ParseWithExpat, Values, WriteValues)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ParseWithExpat, Records, WriteRecords)->Unit(benchmark::kMillisecond);

} // namespace
