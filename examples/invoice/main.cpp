// Reads an invoice, checks its sum, settles the open delivery, adds a line, writes it, and reads it again to see that
// nothing was lost.
//
//     invoice IN.xml [OUT.xml]

#include "Factory.h"

#include "examples/common/Console.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace QvXmlLib9;
using namespace invoice;
using example::Narrow;

namespace
{

/// Hours of a duration, exact to the minute.
CDecimal Hours(const CDateTimeSpan& span)
{
    const long nMinutes = static_cast<long>(span.GetDays() * 24 * 60 + span.GetHours() * 60 + span.GetMinutes());
    return CDecimal(nMinutes) / CDecimal(60);
}

/// Price of a line, with a description.
CDecimal Price(const CLine& line, std::wstring& strText)
{
    if (const auto* const pProduct = dynamic_cast<const CProductLine*>(&line))
    {
        strText = FormatString(L"%s: %d pieces", pProduct->GetText().c_str(), pProduct->GetQuantity());
        return CDecimal(pProduct->GetUnitPrice()) * CDecimal(pProduct->GetQuantity());
    }
    const auto& service = dynamic_cast<const CServiceLine&>(line);
    strText = FormatString(L"%s: %s", service.GetText().c_str(), service.GetTime().ToString().c_str());
    return Hours(service.GetTime()) * service.GetHourlyRate();
}

CDecimal Sum(const CInvoice& document, bool bPrint)
{
    CDecimal sum;
    for (const CLine& line : *document.GetLine())
    {
        std::wstring strText;
        const CDecimal price = Price(line, strText);
        if (bPrint)
            std::printf("  %-32s %10s\n", Narrow(strText).c_str(), Narrow(price.ToString(2)).c_str());
        sum += price;
    }
    return sum;
}

void Report(const CInvoice& document)
{
    std::printf("Invoice %s of %s\n", Narrow(document.GetNumber()).c_str(),
                Narrow(document.GetIssued().ToString()).c_str());
    if (const auto* const pCompany = dynamic_cast<const CCompany*>(static_cast<CParty*>(document.GetBuyer())))
        std::printf("  buyer: %s, %s\n", Narrow(pCompany->GetName()).c_str(),
                    Narrow(pCompany->GetAddress()->GetCity()).c_str());
    const CSmartPtr<CDelivery> spDelivery = document.GetDelivery();
    if (spDelivery != nullptr)
        std::printf("  delivery: %s\n",
                    spDelivery->IsNil() ? "open" : Narrow(spDelivery->GetDate().ToString()).c_str());
    const CDecimal sum = Sum(document, true);
    std::printf("  paid by %s, total %s, lines add up to %s\n", Narrow(document.GetPayment()->GetSelected()).c_str(),
                Narrow(document.GetTotal().ToString()).c_str(), Narrow(sum.ToString()).c_str());
}

void Change(CInvoice& document)
{
    const CSmartPtr<CDelivery> spDelivery = document.GetDelivery();
    spDelivery->SetNil(false);
    spDelivery->SetDate(CConversions::dateFromString(L"2026-04-02", CWhitespaceUtils::WhitespaceRule_None));
    spDelivery->SetCarrier(std::wstring(L"Own van"));

    const CSmartPtr<CProductLine> spLine = new CProductLine(L"line");
    spLine->SetArticle(L"4712-05");
    spLine->SetText(L"Seal ring <set>");
    spLine->SetQuantity(4);
    spLine->SetUnitPrice(CDecimal(L"2.20"));
    document.GetLine()->Add(spLine);
    document.SetTotal(Sum(document, false));
}

int Work(const std::wstring& strIn, const std::wstring& strOut)
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:invoice");
    context.GetNamespaceAliases().Add(L"xsi", L"http://www.w3.org/2001/XMLSchema-instance");

    const CSmartPtr<CInvoice> spDocument = CFactory::Invoice();
    spDocument->FromXmlFile(strIn.c_str(), context);
    Report(*spDocument);
    Change(*spDocument);

    const std::wstring strXml = spDocument->ToXml(true, true, EOLType_LF, context);
    const CSmartPtr<CInvoice> spAgain = CFactory::Invoice();
    spAgain->FromXml(strXml.c_str(), context);
    if (spAgain->ToXml(true, true, EOLType_LF, context) != strXml)
    {
        std::fprintf(stderr, "the document changed on its way\n");
        return 1;
    }
    std::printf("written and read again: equal\n");
    Report(*spAgain);
    if (!strOut.empty())
        spDocument->ToXmlFile(strOut.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
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
