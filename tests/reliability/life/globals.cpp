// Objects of generated classes in static storage: made, read and written before `main` and after it, by destructors and by
// `atexit`, in an order that nobody has arranged. Compiled three times with another place in the order of initialisation, and
// linked with the shared and with the static library.

#include "Invoice.h"
#include "Order.h"

#include "quiver/QvXmlLib.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

using namespace QvXmlLib9;

namespace
{

const wchar_t s_szOrder[] =
    L"<o:purchaseOrder xmlns:o='urn:example:order' number='7'><o:shipTo><o:name>N</o:name><o:street>S</o:street>"
    L"<o:city>C</o:city></o:shipTo><o:item part='123-AB'><o:product>P</o:product><o:quantity>3</o:quantity>"
    L"<o:price>0.5</o:price></o:item></o:purchaseOrder>";

/// Ends the process with the message where something is wrong, whenever that is.
void Require(bool bTrue, const char* lpcWhen, const char* lpcWhat)
{
    if (bTrue)
        return;
    std::fprintf(stderr, "globals: %s: %s\n", lpcWhen, lpcWhat);
    std::_Exit(1);
}

void Convert(order::CPurchaseOrder& document, const char* lpcWhen)
{
    try
    {
        const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
        document.FromXml(s_szOrder, context);
        Require(document.GetItem()->Item(0)->GetPart() == L"123-AB", lpcWhen, "a value was not read");
        const std::wstring strText = document.ToXml(false, true, EOLType_LF, context);
        const CSmartPtr<order::CPurchaseOrder> spAgain = new order::CPurchaseOrder;
        spAgain->FromXmlStream(document.ToFastInfosetStream(FInfoDecl_V10, context, Compression_GZip), context);
        Require(spAgain->ToXml(false, true, EOLType_LF, context) == strText, lpcWhen, "it does not come back the same");
        spAgain->FromXmlStream(
            document.ToXmlStream(true, true, Encoding_UTF16, EOLType_CRLF, context, Compression_None), context);
        Require(spAgain->ToXml(false, true, EOLType_LF, context) == strText, lpcWhen,
                "octets do not come back the same");
    }
    catch (const CQvException& exception)
    {
        std::fprintf(stderr, "%ls\n", exception.GetFullMessage().c_str());
        Require(false, lpcWhen, "a good document is refused");
    }
    try
    {
        document.GetItem()->Item(0)->SetPart(L"no part");
        Require(false, lpcWhen, "a bad value passes");
    }
    catch (const CQvException& exception)
    {
        Require(exception.GetFullMessage().find(L"Invalid Value for part [no part]") != std::wstring::npos, lpcWhen,
                "the message of a bad value is another one");
    }
}

/// Holds an object from before `main` until after it.
struct SHolder
{
    SHolder(const char* lpcName, bool bUseAtStart)
        : m_lpcName(lpcName)
        , m_spOrder(new order::CPurchaseOrder)
    {
        if (bUseAtStart)
            Convert(*m_spOrder, lpcName);
    }
    ~SHolder() { Convert(*m_spOrder, m_lpcName); }
    SHolder(const SHolder&) = delete;
    SHolder& operator=(const SHolder&) = delete;

    const char* m_lpcName;
    CSmartPtr<order::CPurchaseOrder> m_spOrder;
};

void AtExit()
{
    Convert(*CSmartPtr<order::CPurchaseOrder>(new order::CPurchaseOrder), "at exit");
}

/// With the object of a class that nobody else uses.
struct SOnlyAtTheEnd
{
    ~SOnlyAtTheEnd()
    {
        try
        {
            const CSmartPtr<invoice::CInvoice> spInvoice = new invoice::CInvoice;
            spInvoice->SetNumber(L"AB-1234");
            Require(spInvoice->GetNumber() == L"AB-1234", "first use at the end", "a value was not kept");
        }
        catch (const CQvException&)
        {
            Require(false, "first use at the end", "a good value is refused");
        }
    }
};

/// Code of generated classes announces its version among the objects without a priority; ahead of them it has to be done.
struct SRegister
{
    SRegister() { Register(9, 0); }
};

#if defined(QV_PRIORITY)
SRegister s_register __attribute__((init_priority(QV_PRIORITY)));
SOnlyAtTheEnd s_onlyAtTheEnd __attribute__((init_priority(QV_PRIORITY)));
SHolder s_unused __attribute__((init_priority(QV_PRIORITY))) ("held, and used after main alone", false);
SHolder s_used __attribute__((init_priority(QV_PRIORITY))) ("held, and used before main and after it", true);
#else
SOnlyAtTheEnd s_onlyAtTheEnd;
SHolder s_unused("held, and used after main alone", false);
SHolder s_used("held, and used before main and after it", true);
#endif

/// Registered ahead of `main`, and so called behind the destructors of what is made later.
const int s_nAtExit = std::atexit(&AtExit);

} // namespace

int main()
{
    Require(s_nAtExit == 0 && std::atexit(&AtExit) == 0, "main", "a function cannot be registered");
    Convert(*s_used.m_spOrder, "main");
    // A thread of its own that ends, and one that is still there when the process ends.
    std::thread([] { Convert(*CSmartPtr<order::CPurchaseOrder>(new order::CPurchaseOrder), "a thread"); }).join();
    static const SHolder s_late("made in main", true);
    return 0;
}
