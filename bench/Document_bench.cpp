#include "quiver/document/XmlDocument.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <expat.h>
#include <string>

/// @file
/// Loading of documents, with the parser alone over the same bytes as the floor: expat with handlers that do nothing.

namespace
{

using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;

/// One order of about 1000 bytes with 50 elements, as the records of large documents are.
std::string MakeOrder(int nOrder)
{
    const std::string strNumber = std::to_string(1000000 + nOrder);
    std::string strXml = "<order id='" + strNumber +
                         "'><date>2024-02-29</date><to><name>Ada Lovelace</name><street>12 Main St</street>"
                         "<city>Zurich</city><zip>8001</zip></to><items>";
    for (int i = 0; i < 8; ++i)
        strXml += "<item><sku>" + std::to_string(872 + i) + "-AA</sku><name>Lawnmower, electric</name><qty>" +
                  std::to_string(i + 1) + "</qty><price>148.95</price></item>";
    return strXml + "</items></order>";
}

/// Orders up to about `nBytes` bytes.
std::string MakeDocument(std::size_t nBytes)
{
    std::string strXml = "<?xml version='1.0' encoding='UTF-8'?><orders xmlns='http://www.example.com/PurchaseOrder'>";
    for (int nOrder = 0; strXml.size() + 1000 <= nBytes || nOrder == 0; ++nOrder)
        strXml += MakeOrder(nOrder);
    return strXml + "</orders>";
}

void XMLCALL IgnoreStart(void* pUserData, const XML_Char*, const XML_Char**)
{
    ++*static_cast<std::size_t*>(pUserData);
}
void XMLCALL IgnoreEnd(void*, const XML_Char*)
{
}
void XMLCALL IgnoreText(void*, const XML_Char*, int)
{
}
void XMLCALL IgnoreNamespace(void*, const XML_Char*, const XML_Char*)
{
}

std::size_t ParseOnly(const std::string& strXml)
{
    std::size_t nElements = 0;
    const XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetUserData(parser, &nElements);
    XML_SetElementHandler(parser, IgnoreStart, IgnoreEnd);
    XML_SetNamespaceDeclHandler(parser, IgnoreNamespace, nullptr);
    XML_SetCharacterDataHandler(parser, IgnoreText);
    // In pieces, since it copies what it is given.
    for (std::size_t nDone = 0; nDone < strXml.size();)
    {
        const std::size_t nPiece = std::min<std::size_t>(strXml.size() - nDone, 0x10000);
        if (XML_Parse(parser, strXml.data() + nDone, static_cast<int>(nPiece), nDone + nPiece == strXml.size()) !=
            XML_STATUS_OK)
            std::abort();
        nDone += nPiece;
    }
    XML_ParserFree(parser);
    return nElements;
}

std::size_t CountElements(CXmlElement* pElement)
{
    std::size_t nElements = 1;
    for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        nElements += CountElements(pChild);
    return nElements;
}

/// Reports bytes per second and the count of elements.
void Report(benchmark::State& state, std::size_t nBytes, std::size_t nElements)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(nBytes) * static_cast<std::int64_t>(state.iterations()));
    state.counters["elements"] = static_cast<double>(nElements);
}

void ExpatAlone(benchmark::State& state)
{
    const std::string strXml = MakeDocument(static_cast<std::size_t>(state.range(0)));
    std::size_t nElements = 0;
    for (auto _ : state)
        nElements = ParseOnly(strXml);
    Report(state, strXml.size(), nElements);
}

/// Loads `text` and destroys the tree again.
template <class Text>
void Load(benchmark::State& state, const Text& text, std::size_t nBytes, std::size_t nElements)
{
    {
        CXmlDocument document;
        document.LoadXml(text.c_str());
        if (CountElements(document.GetDocumentElement()) != nElements)
            state.SkipWithError("elements got lost");
    }
    for (auto _ : state)
    {
        CXmlDocument document;
        document.LoadXml(text.c_str());
        benchmark::DoNotOptimize(document.GetDocumentElement());
    }
    Report(state, nBytes, nElements);
}

void LoadXmlNarrow(benchmark::State& state)
{
    const std::string strXml = MakeDocument(static_cast<std::size_t>(state.range(0)));
    Load(state, strXml, strXml.size(), ParseOnly(strXml));
}

void LoadXmlWide(benchmark::State& state)
{
    const std::string strXml = MakeDocument(static_cast<std::size_t>(state.range(0)));
    std::wstring strWide(strXml.begin(), strXml.end());
    strWide.replace(0, strWide.find(L"?>") + 2, L"");
    Load(state, strWide, strXml.size(), ParseOnly(strXml));
}

/// Each order is dropped as soon as it is complete.
void LoadXmlFiltered(benchmark::State& state)
{
    const std::string strXml = MakeDocument(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
    {
        CXmlDocument document([](CXmlElement* pElement) { return pElement->GetLocalName() == L"order"; });
        document.LoadXml(strXml.c_str());
        if (document.GetDocumentElement()->GetFirstElement() != nullptr)
            state.SkipWithError("orders are left");
    }
    Report(state, strXml.size(), ParseOnly(strXml));
}

void Sizes(benchmark::internal::Benchmark* pBenchmark)
{
    for (const int nBytes : {1000, 1000000, 20000000})
        pBenchmark->Arg(nBytes);
    pBenchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK(ExpatAlone)->Apply(Sizes);
BENCHMARK(LoadXmlNarrow)->Apply(Sizes);
BENCHMARK(LoadXmlFiltered)->Apply(Sizes);
BENCHMARK(LoadXmlWide)->Apply(Sizes);

} // namespace
