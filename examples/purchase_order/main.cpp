// Reads a purchase order, prints what it holds, changes a quantity, adds a billing address, and writes it formatted.
//
//     purchase_order IN.xml [OUT.xml]
//
// Without OUT.xml the document goes to standard output. A file that breaks the schema ends in the chain of messages on
// standard error, outermost element first, and exit status 1.

#include "PurchaseOrder.h"

#include <cstdio>
#include <string>

using namespace QvXmlLib9;
using namespace order;

namespace
{

std::string Narrow(const std::wstring& strText)
{
    const CBinaryData data = EncodeUtf8(strText.c_str());
    return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

std::wstring Widen(const char* lpcText)
{
    const std::string strText = lpcText;
    return DecodeUtf8(reinterpret_cast<const unsigned char*>(strText.data()),
                      static_cast<unsigned long>(strText.size()));
}

/// Pads by characters, which is close enough to columns for the names of a small table.
std::string Column(const std::wstring& strText, std::size_t nWidth)
{
    return Narrow(strText) + std::string(strText.size() < nWidth ? nWidth - strText.size() : 0, ' ');
}

void PrintAddress(const char* lpcLabel, const CAddress* pAddress)
{
    if (pAddress == nullptr)
        return;
    std::printf("%s %s, %s, %s %s\n", lpcLabel, Narrow(pAddress->GetName()).c_str(),
                Narrow(pAddress->GetStreet()).c_str(), Narrow(pAddress->GetPostcode().value_or(L"")).c_str(),
                Narrow(pAddress->GetCity()).c_str());
}

void PrintOrder(const CPurchaseOrder& purchaseOrder)
{
    std::printf("Order %d%s\n", purchaseOrder.GetNumber(),
                purchaseOrder.GetExpress().value_or(false) ? ", express" : "");
    PrintAddress("Ship to:", purchaseOrder.GetShipTo());
    PrintAddress("Bill to:", purchaseOrder.GetBillTo());
    std::printf("%-8s %s %8s %10s\n", "part", Column(L"product", 26).c_str(), "quantity", "price");
    double dTotal = 0;
    for (const CSmartPtr<CItem> spItem : *purchaseOrder.GetItems())
    {
        std::printf("%-8s %s %8d %10.2f\n", Narrow(spItem->GetPart()).c_str(), Column(spItem->GetProduct(), 26).c_str(),
                    spItem->GetQuantity(), spItem->GetPrice());
        dTotal += spItem->GetQuantity() * spItem->GetPrice();
    }
    std::printf("%-8s %26s %8s %10.2f %s\n\n", "total", "", "", dTotal, Narrow(purchaseOrder.GetCurrency()).c_str());
}

void ChangeOrder(CPurchaseOrder& purchaseOrder)
{
    const CSmartPtr<CItem> spFirst = purchaseOrder.GetItems()->Item(0);
    spFirst->SetQuantity(spFirst->GetQuantity() + 1);

    const CSmartPtr<CAddress> spBillTo = new CAddress(L"billTo");
    spBillTo->SetName(L"Robert Smith");
    spBillTo->SetStreet(L"8 Oak Avenue");
    spBillTo->SetCity(L"Old Town");
    purchaseOrder.SetBillTo(spBillTo);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3)
    {
        std::fprintf(stderr, "usage: %s IN.xml [OUT.xml]\n", argv[0]);
        return 2;
    }
    try
    {
        CXmlSerializationContext context;
        context.SetDefaultNamespaceURI(L"urn:example:order");

        const CSmartPtr<CPurchaseOrder> spOrder = new CPurchaseOrder;
        spOrder->FromXmlFile(Widen(argv[1]).c_str(), context);
        PrintOrder(*spOrder);
        ChangeOrder(*spOrder);
        if (argc == 3)
            spOrder->ToXmlFile(Widen(argv[2]).c_str(), true, true, Encoding_UTF8, EOLType_LF, context,
                               Compression_None);
        else
            std::printf("%s", Narrow(spOrder->ToXml(true, true, EOLType_LF, context)).c_str());
    }
    catch (const CQvException& ex)
    {
        std::fprintf(stderr, "%s\n", Narrow(ex.GetFullMessage()).c_str());
        return 1;
    }
    return 0;
}
