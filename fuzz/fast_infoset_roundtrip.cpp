// What can be read from text, as an invoice or as open content, can be written as Fast Infoset under the options that
// the first byte picks, and comes back the same.

#include "Invoice.h"
#include "Settings.h"
#include "fuzz/FuzzInput.h"

using namespace QvXmlLib9;

namespace
{

CXmlSerializationContext Context(std::uint8_t nOptions)
{
    CXmlSerializationContext context;
    context.SetIgnoreInvalidCollectionCounts((nOptions & 1) != 0);
    context.SetIgnoreUnknownAttributes((nOptions & 2) != 0);
    context.SetIgnoreMissingMandatoryElements((nOptions & 4) != 0);
    if ((nOptions & 8) != 0)
        context.GetFIContext().SetSuggestedValues();
    context.GetFIContext().SetAttributeMaxAddLength((nOptions & 16) != 0 ? 1000 : 0);
    context.GetFIContext().SetElementMaxAddLength((nOptions & 32) != 0 ? 1000 : 0);
    return context;
}

template <class TRoot>
void Check(std::vector<std::uint8_t> bytes, const CXmlSerializationContext& context, FInfoDecl eDecl)
{
    const CSmartPtr<TRoot> spRoot = new TRoot;
    spRoot->FromXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()), context);
    const std::wstring strXml = spRoot->ToXml(false, false, EOLType_LF, context);
    if (fuzz::IsMixed(strXml))
        return;
    const CBinaryData infoset = spRoot->ToFastInfosetStream(eDecl, context, Compression_None);
    const CSmartPtr<TRoot> spAgain = new TRoot;
    fuzz::Require(fuzz::Succeeds([&] { spAgain->FromXmlStream(infoset, context); }), "what was written can be read");
    fuzz::Require(spAgain->ToXml(false, false, EOLType_LF, context) == strXml, "Fast Infoset and text say the same");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize == 0)
        return 0;
    const CXmlSerializationContext context = Context(pData[0]);
    const std::vector<std::uint8_t> bytes(pData + 1, pData + nSize);
    const auto eDecl = static_cast<FInfoDecl>(nSize % 10);
    if ((pData[0] & 64) != 0)
        fuzz::Succeeds([&] { Check<invoice::CInvoice>(bytes, context, eDecl); });
    else
        fuzz::Succeeds([&] { Check<settings::CSettings>(bytes, context, eDecl); });
    return 0;
}
