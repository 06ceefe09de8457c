// Values of each class that the printers of tools/debugger show. gdb stops in Stop and prints those of main.

#include "quiver/QvXmlLib.h"

using namespace QvXmlLib9;

namespace
{

volatile int s_nStops = 0;

/// Where the debugger stops.
__attribute__((noinline)) void Stop()
{
    s_nStops = s_nStops + 1;
}

} // namespace

int main()
{
    Register(9, 0);
    const CXmlSerializationContext context;

    const CBigInteger zero;
    const CBigInteger small(-42);
    const CBigInteger large(L"123456789012345678901234567890");
    const CBigInteger edge(L"-9223372036854775808");
    const CDecimal decimal(L"-12.050");
    const CDecimal fraction(L"-0.5");
    const CDecimal whole(L"1000");
    const CDateTime dateTime(L"2024-02-29T13:14:15.25+05:30");
    CDateTime date;
    date.ParseXSDDate(L"2024-02-29Z");
    CDateTime monthDay;
    monthDay.SetGMonthDay(12, 24);

    QvVariant nothing;
    QvVariant number;
    number.SetI4(7);
    QvVariant text;
    text.SetString(L"caf\u00E9 \U0001F600");
    QvVariant exact;
    exact.SetDecimal(CDecimal(L"3.25"));
    QvVariant day;
    day.SetDate(date);

    Ci4Col numbers(L"n", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, CWhitespaceUtils::WhitespaceRule_None,
                   nullptr);
    numbers.Add(1);
    numbers.Add(2);
    CbooleanCol truths(L"b", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, CWhitespaceUtils::WhitespaceRule_None,
                       nullptr);
    truths.Add(true);
    truths.Add(false);
    CstringCol strings(L"s", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, CWhitespaceUtils::WhitespaceRule_None,
                       nullptr);
    strings.Add(L"one");
    strings.Add(L"two");

    const CSmartPtr<CElement> spElement = new CElement(L"order");
    spElement->FromXml(L"<order xmlns='urn:a' id='7' kind='x'><item>pen</item><item>ink</item></order>");
    const CSmartPtr<CElement> spNone;
    [[maybe_unused]] const CElement* const pElement = spElement;

    CXmlDocument document(context);
    document.LoadXml(L"<order xmlns='urn:a' id='7' kind='x'><item>pen</item><item>ink</item></order>");
    [[maybe_unused]] const CXmlElement* const pParsed = document.GetDocumentElement();

    Stop();
    return 0;
}
