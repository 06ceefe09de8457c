// What a program outside the library does with classes that were made of a schema during its build.

#include "Factory.h"

#include <cstdio>
#include <string>

using namespace QvXmlLib9;
using namespace shelf;

namespace
{

std::wstring Document(const std::wstring& strIsbn)
{
    return L"<shelf xmlns=\"urn:example:shelf\"><book isbn=\"" + strIsbn + L"\"><title>Bees</title></book></shelf>";
}

bool IsReadAndWritten()
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:shelf");
    const std::wstring strXml = Document(L"9783161484100");
    const CSmartPtr<CShelf> spShelf = CFactory::Shelf();
    spShelf->FromXml(strXml.c_str(), context);
    return spShelf->GetBook()->Item(0)->GetTitle() == L"Bees" &&
           spShelf->ToXml(false, false, EOLType_LF, context) == strXml;
}

bool IsRefused()
{
    try
    {
        const CSmartPtr<CShelf> spShelf = CFactory::Shelf();
        spShelf->FromXml(Document(L"978").c_str(), CXmlSerializationContext::GetDefaultContext());
    }
    catch (const CQvValidationException& ex)
    {
        return ex.GetFullMessage().find(L"Invalid Value for isbn [978]") != std::wstring::npos;
    }
    return false;
}

} // namespace

int main()
{
    if (!IsReadAndWritten() || !IsRefused())
    {
        std::fputs("generated: failed\n", stderr);
        return 1;
    }
    std::puts("generated: ok");
    return 0;
}
