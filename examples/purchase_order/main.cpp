// The classes of this program are made of order.xsd during the build. It reads a purchase order, prints what it holds,
// changes a quantity, adds a billing address, and writes it formatted.
//
//     purchase_order IN.xml [OUT.xml]
//
// Without OUT.xml the document goes to standard output. A file that breaks the schema ends in the chain of messages on
// standard error, outermost element first, and exit status 1.

#include "Factory.h"

#include "examples/common/Console.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace order;
using example::Narrow;
using example::Widen;

namespace
{

/// Pads by characters, which is close enough to columns for the names of a small table.
std::string Column(const std::wstring& strText, std::size_t nWidth)
{
    return Narrow(strText) + std::string(strText.size() < nWidth ? nWidth - strText.size() : 0, ' ');
}

void PrintAddress(const char* lpcLabel, const CAddress& address)
{
    std::printf("%s %s, %s, %s %s\n", lpcLabel, Narrow(address.GetName()).c_str(), Narrow(address.GetStreet()).c_str(),
                Narrow(address.GetPostcode().value_or(L"")).c_str(), Narrow(address.GetCity()).c_str());
}

void PrintOrder(const CPurchaseOrder& purchaseOrder)
{
    std::printf("Order %d%s\n", purchaseOrder.GetNumber(),
                purchaseOrder.GetExpress().value_or(false) ? ", express" : "");
    PrintAddress("Ship to:", *purchaseOrder.GetShipTo());
    if (purchaseOrder.GetBillTo() != nullptr)
        PrintAddress("Bill to:", *purchaseOrder.GetBillTo());
    std::printf("%-8s %s %8s %10s\n", "part", Column(L"product", 26).c_str(), "quantity", "price");
    double dTotal = 0;
    for (const CItem& item : *purchaseOrder.GetItem())
    {
        std::printf("%-8s %s %8d %10.2f\n", Narrow(item.GetPart()).c_str(), Column(item.GetProduct(), 26).c_str(),
                    item.GetQuantity(), item.GetPrice());
        dTotal += item.GetQuantity() * item.GetPrice();
    }
    std::printf("%-8s %26s %8s %10.2f %s\n\n", "total", "", "", dTotal, Narrow(purchaseOrder.GetCurrency()).c_str());
}

void ChangeOrder(CPurchaseOrder& purchaseOrder)
{
    const CSmartPtr<CItem> spFirst = purchaseOrder.GetItem()->Item(0);
    spFirst->SetQuantity(spFirst->GetQuantity() + 1);

    const CSmartPtr<CAddress> spBillTo = new CAddress(L"billTo");
    spBillTo->SetName(L"Robert Smith");
    spBillTo->SetStreet(L"8 Oak Avenue");
    spBillTo->SetCity(L"Old Town");
    purchaseOrder.SetBillTo(spBillTo);
}

int Work(const std::wstring& strIn, const std::wstring& strOut)
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:order");

    const CSmartPtr<CPurchaseOrder> spOrder = CFactory::PurchaseOrder();
    spOrder->FromXmlFile(strIn.c_str(), context);
    PrintOrder(*spOrder);
    ChangeOrder(*spOrder);
    if (!strOut.empty())
        spOrder->ToXmlFile(strOut.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    else
        std::printf("%s", Narrow(spOrder->ToXml(true, true, EOLType_LF, context)).c_str());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::wstring> files = example::GetArguments(argc, argv);
    if (files.empty() || files.size() > 2)
    {
        std::fprintf(stderr, "usage: %s IN.xml [OUT.xml]\n", argv[0]);
        return 2;
    }
    return example::Run([&] { return Work(files[0], files.size() == 2 ? files[1] : L""); });
}
