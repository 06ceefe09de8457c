// The purchase order document, of about 1 MB of XML text, in every form that objects are written in: its length, and
// how fast it is written and read. Rates count the bytes of the same document as XML text without indentation, whatever
// the form, so that they can be compared.

#include "bench/PurchaseOrderDocument.h"

#include <benchmark/benchmark.h>

#include <utility>

using namespace QvXmlLib9;
using namespace order;
using namespace bench;

namespace
{

constexpr wchar_t s_szNamespace[] = L"urn:example:order";

/// One way to write the document.
struct SForm
{
    bool bFastInfoset;
    bool bSuggestedValues;
    bool bVocabulary;
    CompressionType eCompression;
};

/// What generated code would do: all names of the schema, known to both sides.
void FillVocabulary(CFastInfosetContext& context)
{
    CFIVocabulary& vocabulary = *context.GetVocabulary();
    for (const wchar_t* const lpctName :
         {L"purchaseOrder", L"shipTo", L"name", L"street", L"city", L"postcode", L"express", L"billTo", L"comment",
          L"item", L"product", L"quantity", L"price", L"note"})
        vocabulary.AddElement(L"", s_szNamespace, lpctName);
    for (const wchar_t* const lpctName : {L"number", L"currency", L"part"})
        vocabulary.AddAttribute(L"", L"", lpctName);
    context.SetUseGeneratedVocabulary(true);
}

CXmlSerializationContext FormContext(const SForm& form)
{
    CXmlSerializationContext context = Context();
    if (form.bSuggestedValues)
        context.GetFIContext().SetSuggestedValues();
    if (form.bVocabulary)
        FillVocabulary(context.GetFIContext());
    return context;
}

CBinaryData Write(CPurchaseOrder& purchaseOrder, const SForm& form, const CXmlSerializationContext& context)
{
    if (form.bFastInfoset)
        return purchaseOrder.ToFastInfosetStream(FInfoDecl_None, context, form.eCompression);
    return purchaseOrder.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, context, form.eCompression);
}

/// Counts the bytes of XML text, and tells the length of the form.
void Count(benchmark::State& state, CPurchaseOrder& purchaseOrder, const CBinaryData& data)
{
    const CBinaryData text = Write(purchaseOrder, {false, false, false, Compression_None}, Context());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.GetLength()));
    state.counters["bytes"] = static_cast<double>(data.GetLength());
}

void WriteForm(benchmark::State& state, const SForm& form)
{
    const CXmlSerializationContext context = FormContext(form);
    CPurchaseOrder purchaseOrder;
    Read(purchaseOrder, Document(static_cast<std::size_t>(state.range(0))), context);
    CBinaryData data;
    for (auto _ : state)
        data = Write(purchaseOrder, form, context);
    Count(state, purchaseOrder, data);
}

void ReadForm(benchmark::State& state, const SForm& form)
{
    const CXmlSerializationContext context = FormContext(form);
    CPurchaseOrder purchaseOrder;
    Read(purchaseOrder, Document(static_cast<std::size_t>(state.range(0))), context);
    const CBinaryData data = Write(purchaseOrder, form, context);
    CPurchaseOrder again;
    for (auto _ : state)
        again.FromXmlStream(data, context);
    if (again.ToXml(false, false, EOLType_LF, context) != purchaseOrder.ToXml(false, false, EOLType_LF, context))
        Fail("the document was not read as it was written");
    Count(state, purchaseOrder, data);
}

void Register(const char* lpcName, const SForm& form)
{
    for (const auto& [lpcStep, pfnStep] : {std::pair("Write/", WriteForm), std::pair("Read/", ReadForm)})
    {
        benchmark::RegisterBenchmark((std::string(lpcStep) + lpcName).c_str(), pfnStep, form)
            ->Arg(1000)
            ->Arg(1000000)
            ->Unit(benchmark::kMicrosecond);
    }
}

const bool s_bRegistered = []
{
    Register("xml", {false, false, false, Compression_None});
    Register("xml_gzip", {false, false, false, Compression_GZip});
    Register("fast_infoset", {true, false, false, Compression_None});
    Register("fast_infoset_suggested_values", {true, true, false, Compression_None});
    Register("fast_infoset_vocabulary", {true, false, true, Compression_None});
    Register("fast_infoset_suggested_values_vocabulary", {true, true, true, Compression_None});
    Register("fast_infoset_gzip", {true, false, false, Compression_GZip});
    Register("fast_infoset_suggested_values_gzip", {true, true, false, Compression_GZip});
    return true;
}();

} // namespace
