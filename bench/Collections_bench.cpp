#include "quiver/collections/Element.h"
#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

// Open content and typed collections: making, reading, copying, writing, access by position, emptying from the front.
// Where the library has a fast way, the plain one stands beside it. Every benchmark checks its answer before it
// measures.

using namespace QvXmlLib9;

namespace
{

const bool s_bRegistered = (Register(9, 0), true);

void Check(bool bCorrect)
{
    if (!bCorrect)
        std::abort();
}

void SetItems(benchmark::State& state, int nItems)
{
    state.SetItemsProcessed(state.iterations() * nItems);
}

/// The protected conversions, in reach.
struct CAccess : CXmlObjectBase
{
    static void Write(const CXmlObjectBase* pObject, CXmlWriter& writer, const CXmlSerializationContext& context)
    {
        CXmlObjectBase::ToXml_Int(pObject, &writer, false, L"", context, false);
    }
    static CXmlElement* Read(CXmlObjectBase* pObject, CXmlElement* pParent, CXmlElement* pCurrent,
                             const CXmlSerializationContext& context)
    {
        return CXmlObjectBase::FromXml_Int(pObject, pParent, pCurrent, context);
    }
};

// --- Open content ---------------------------------------------------------------------------------------------------

constexpr int s_nRecords = 2000;
constexpr int s_nElements = 1 + 3 * s_nRecords;

std::wstring RecordsXml()
{
    std::wstring strXml = L"<records xmlns='http://www.example.org/records'>";
    for (int i = 0; i < s_nRecords; ++i)
        strXml += L"<record id='" + std::to_wstring(i) +
                  L"'><title>Some title of a record</title><price>19.95</price></record>";
    return strXml + L"</records>";
}

CSmartPtr<CElement> ReadRecords()
{
    CSmartPtr<CElement> spRoot = new CElement(L"");
    spRoot->FromXml(RecordsXml().c_str());
    Check(spRoot->GetChildElements()->GetCount() == s_nRecords);
    return spRoot;
}

void Element_MakeAndDestroy(benchmark::State& state)
{
    for (auto _ : state)
    {
        const CSmartPtr<CElement> spElement = new CElement(L"record", L"http://www.example.org/records");
        benchmark::DoNotOptimize(spElement);
    }
    SetItems(state, 1);
}
BENCHMARK(Element_MakeAndDestroy);

/// From the parsed tree, without the parser.
void Element_Read(benchmark::State& state)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXml(RecordsXml().c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    ReadRecords();
    for (auto _ : state)
    {
        const CSmartPtr<CElement> spRoot = new CElement(L"");
        CAccess::Read(spRoot, pRoot, pRoot, context);
    }
    SetItems(state, s_nElements);
}
BENCHMARK(Element_Read)->Unit(benchmark::kMillisecond);

void Element_Clone(benchmark::State& state)
{
    const CSmartPtr<CElement> spRoot = ReadRecords();
    Check(spRoot->Clone()->GetChildElements()->GetCount() == s_nRecords);
    for (auto _ : state)
        benchmark::DoNotOptimize(spRoot->Clone());
    SetItems(state, s_nElements);
}
BENCHMARK(Element_Clone)->Unit(benchmark::kMillisecond);

void Element_Write(benchmark::State& state)
{
    const CXmlSerializationContext context;
    const CSmartPtr<CElement> spRoot = ReadRecords();
    const std::wstring strXml = spRoot->ToXml(false, false, EOLType_LF, context);
    CSmartPtr<CElement> spAgain = new CElement(L"");
    spAgain->FromXml(strXml.c_str());
    Check(spAgain->ToXml(false, false, EOLType_LF, context) == strXml);
    for (auto _ : state)
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        writer.SetFormatted(false);
        CAccess::Write(spRoot, writer, context);
        benchmark::DoNotOptimize(stream.GetLength());
    }
    SetItems(state, s_nElements);
}
BENCHMARK(Element_Write)->Unit(benchmark::kMillisecond);

// --- Access by position ---------------------------------------------------------------------------------------------

constexpr int s_nItems = 10000;

CSmartPtr<CElementCol> MakeList()
{
    CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##any", L"", 0, -1);
    for (int i = 0; i < s_nItems; ++i)
        spCol->Add(L"item", L"");
    return spCol;
}

void List_Iterate(benchmark::State& state)
{
    const CSmartPtr<CElementCol> spCol = MakeList();
    for (auto _ : state)
    {
        for (CElement& element : *spCol)
            benchmark::DoNotOptimize(&element);
    }
    SetItems(state, s_nItems);
}
BENCHMARK(List_Iterate);

void List_ByPosition(benchmark::State& state)
{
    const CSmartPtr<CElementCol> spCol = MakeList();
    int nIndex = 0;
    for (const CElement& element : *spCol)
        Check(spCol->Item(nIndex++) == &element);
    for (auto _ : state)
    {
        for (int i = 0; i < s_nItems; ++i)
            benchmark::DoNotOptimize(spCol->Item(i));
    }
    SetItems(state, s_nItems);
}
BENCHMARK(List_ByPosition);

/// The plain way: every position is walked to from the head.
void List_ByPositionFromTheHead(benchmark::State& state)
{
    const CSmartPtr<CElementCol> spCol = MakeList();
    for (auto _ : state)
    {
        for (int i = 0; i < s_nItems; ++i)
        {
            CQvIterator<CElement> it = spCol->begin();
            for (int nSteps = i; nSteps > 0; --nSteps)
                ++it;
            benchmark::DoNotOptimize(&*it);
        }
    }
    SetItems(state, s_nItems);
}
BENCHMARK(List_ByPositionFromTheHead)->Unit(benchmark::kMillisecond);

// --- Typed collections ----------------------------------------------------------------------------------------------

CSmartPtr<Ci4Col> MakeNumbers(const wchar_t* lpctMaxInclusive)
{
    return new Ci4Col(L"item", L"", 0, -1, L"", -1, -1, L"", lpctMaxInclusive, L"", L"", -1,
                      CWhitespaceUtils::WhitespaceRule_Collapse, nullptr);
}

void Fill(Ci4Col& numbers)
{
    for (int i = 0; i < s_nItems; ++i)
        numbers.Add(i);
}

void Typed_Add(benchmark::State& state)
{
    const wchar_t* const lpctMaxInclusive = state.range(0) != 0 ? L"10000" : L"";
    for (auto _ : state)
    {
        const CSmartPtr<Ci4Col> spNumbers = MakeNumbers(lpctMaxInclusive);
        Fill(*spNumbers);
        benchmark::DoNotOptimize(spNumbers->GetCount());
    }
    SetItems(state, s_nItems);
}
BENCHMARK(Typed_Add)->ArgName("bounded")->Arg(0)->Arg(1);

void Typed_Read(benchmark::State& state)
{
    std::wstring strXml = L"<r>";
    for (int i = 0; i < s_nItems; ++i)
        strXml += L"<item>" + std::to_wstring(i) + L"</item>";
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXml((strXml + L"</r>").c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    for (auto _ : state)
    {
        const CSmartPtr<Ci4Col> spNumbers = MakeNumbers(L"");
        CAccess::Read(spNumbers, pRoot, pRoot->GetFirstElement(), context);
        Check(spNumbers->GetCount() == s_nItems);
    }
    SetItems(state, s_nItems);
}
BENCHMARK(Typed_Read);

void Typed_Write(benchmark::State& state)
{
    const CXmlSerializationContext context;
    const CSmartPtr<Ci4Col> spNumbers = MakeNumbers(L"");
    Fill(*spNumbers);
    for (auto _ : state)
    {
        CTextStream stream;
        CXmlTextWriter writer(&stream);
        writer.Open();
        CAccess::Write(spNumbers, writer, context);
        benchmark::DoNotOptimize(stream.GetLength());
    }
    SetItems(state, s_nItems);
}
BENCHMARK(Typed_Write);

void Typed_FillAndClear(benchmark::State& state)
{
    for (auto _ : state)
    {
        const CSmartPtr<Ci4Col> spNumbers = MakeNumbers(L"");
        Fill(*spNumbers);
        spNumbers->Clear();
        Check(spNumbers->GetCount() == 0);
    }
    SetItems(state, s_nItems);
}
BENCHMARK(Typed_FillAndClear);

/// The plain way: the front is erased from the vector each time.
void Typed_FillAndEraseTheFront(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::vector<long> numbers;
        for (int i = 0; i < s_nItems; ++i)
            numbers.push_back(i);
        while (!numbers.empty())
        {
            numbers.erase(numbers.begin());
            benchmark::ClobberMemory();
        }
    }
    SetItems(state, s_nItems);
}
BENCHMARK(Typed_FillAndEraseTheFront);

} // namespace
