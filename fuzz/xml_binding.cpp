// Any document read into generated classes, under the options that the first byte picks. What could be read can be
// written, and is read as it was written.

#include "Invoice.h"
#include "fuzz/FuzzInput.h"

#include <vector>

using namespace QvXmlLib9;

namespace
{

CXmlSerializationContext Context(std::uint8_t nOptions)
{
    CXmlSerializationContext context;
    context.SetIgnoreInvalidCollectionCounts((nOptions & 1) != 0);
    context.SetIgnoreMissingChoice((nOptions & 2) != 0);
    context.SetIgnoreUnknownAttributes((nOptions & 4) != 0);
    context.SetIgnoreNamespaces((nOptions & 8) != 0);
    if ((nOptions & 48) == 16)
        context.SetIgnoreUnknownElements(true);
    if ((nOptions & 48) == 32)
        context.SetIgnoreMissingMandatoryElements(true);
    return context;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize == 0)
        return 0;
    const CXmlSerializationContext context = Context(pData[0]);
    std::vector<std::uint8_t> bytes(pData + 1, pData + nSize);
    const CSmartPtr<invoice::CInvoice> spDocument = new invoice::CInvoice;
    std::wstring strXml;
    const auto Read = [&]
    {
        spDocument->FromXmlStream(bytes.data(), static_cast<unsigned long>(bytes.size()), context);
    };
    const auto Write = [&]
    {
        strXml = spDocument->ToXml(false, false, EOLType_LF, context);
    };
    if (!fuzz::Succeeds(Read) || !fuzz::Succeeds(Write))
        return 0;
    // Meant, and not kept: tabs in attributes, text that looks like a CDATA section, and a duration of nothing, which
    // prints as "P".
    if (strXml.find(L'\t') != std::wstring::npos || strXml.find(L"><![CDATA[") != std::wstring::npos ||
        strXml.find(L">P<") != std::wstring::npos)
        return 0;
    const CSmartPtr<invoice::CInvoice> spAgain = new invoice::CInvoice;
    fuzz::Require(fuzz::Succeeds([&] { spAgain->FromXml(strXml.c_str(), context); }), "what was written can be read");
    fuzz::Require(spAgain->ToXml(false, false, EOLType_LF, context) == strXml, "what was written is read as it was");
    return 0;
}
