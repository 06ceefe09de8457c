// The code of README.md.
#include "OrderRoots.h"
#include "quiver/QvXmlLib.h"
#include "tests/docs/PageDirectory.h"
#include "tests/support/Expect.h"

#include <string>

namespace
{

using namespace QvXmlLib9;
using namespace order;
// The page has the factory under the name that it gets by default.
using CFactory = COrderRoots;

const char* const s_lpcOrder = "examples/purchase_order/order.xml";

int s_nDropped = 0;

bool DropRecord(CXmlElement* pElement)
{
    const bool bItem = pElement->GetLocalName() == L"item";
    s_nDropped += bItem ? 1 : 0;
    return bItem;
}

class ReadmeSnippets : public QvTest::CPageTest
{
protected:
    ReadmeSnippets() { Take({s_lpcOrder}); }
    ~ReadmeSnippets() override
    {
        AsyncFromXmlFile(false);
        AsyncToXmlFile(false);
    }

    static CSmartPtr<CPurchaseOrder> Read(const wchar_t* lpctFile)
    {
        const CSmartPtr<CPurchaseOrder> spOrder = CFactory::PurchaseOrder();
        spOrder->FromXmlFile(lpctFile, CXmlSerializationContext::GetDefaultContext());
        return spOrder;
    }
};

} // namespace

TEST_F(ReadmeSnippets, FiveLinesReadChangeAndWrite)
{
    // [snippet readme-five-lines]
    const CXmlSerializationContext context;
    const CSmartPtr<CPurchaseOrder> spOrder = CFactory::PurchaseOrder();
    spOrder->FromXmlFile(L"order.xml", context);
    spOrder->GetItem()->Item(0)->SetQuantity(3);
    spOrder->ToXmlFile(L"order.xml", true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    // [end]
    EXPECT_EQ(3, Read(L"order.xml")->GetItem()->Item(0)->GetQuantity());
}

TEST_F(ReadmeSnippets, InputForms)
{
    const CSmartPtr<CPurchaseOrder> spOrder = Read(L"order.xml");
    const CXmlSerializationContext context;
    const std::wstring strText = spOrder->ToXml(false, false, EOLType_LF, context);
    const std::string strBytes = ToUtf8(strText);
    const CBinaryData data = spOrder->ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
    spOrder->ToXmlFile(L"order.xml.gz", true, true, Encoding_UTF8, EOLType_LF, context, Compression_GZip);
    spOrder->ToXmlFile(L"huge.xml", true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    const CSmartPtr<CElement> spElement = new CElement(L"any", L"", L"##any", L"");
    spElement->FromXml(strText.c_str());

    CPurchaseOrder order;
    // [snippet readme-input]
    order.FromXml(strText.c_str(), context); // wide text

    order.FromXml(strBytes.c_str(), context); // bytes that end in a zero

    order.FromXmlStream(data, context); // bytes, any form, detected

    order.FromXmlFile(L"order.xml.gz", context); // any form, detected

    AsyncFromXmlFile(true);                  // once, while the process starts
    order.FromXmlFile(L"huge.xml", context); // two chunks of 128 KiB at a time

    CXmlDocument document(&DropRecord, context); // bool DropRecord(CXmlElement*)
    document.Load(L"huge.xml");                  // each record is dropped after its end tag

    CXmlDocument whole(context);
    whole.Load(L"huge.xml");
    order.FromXmlElement(whole.GetDocumentElement(), context); // an element of a parsed document

    order.FromXmlElement(spElement, context); // what an xs:any held
    // [end]
    EXPECT_TEXT(strText, order.ToXml(false, false, EOLType_LF, context));
    EXPECT_EQ(3, s_nDropped);
}

TEST_F(ReadmeSnippets, OutputForms)
{
    const CSmartPtr<CPurchaseOrder> spOrder = Read(L"order.xml");
    CPurchaseOrder& order = *spOrder;
    // [snippet readme-output]
    CXmlSerializationContext context;
    std::wstring strXml = order.ToXml(true, true, EOLType_LF, context); // declaration, indented

    CBinaryData data = order.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, context, Compression_GZip);

    order.ToXmlFile(L"order.xml", true, true, Encoding_UTF16, EOLType_CRLF, context, Compression_None);

    AsyncToXmlFile(true); // once, while the process starts
    order.ToXmlFile(L"huge.xml", true, false, Encoding_UTF8, EOLType_LF, context, Compression_None);

    context.GetFIContext().SetSuggestedValues(); // numbers as numbers, dates packed
    order.ToFastInfosetFile(L"order.fi", FInfoDecl_None, context, Compression_None);
    // [end]
    for (const wchar_t* const lpctFile : {L"order.xml", L"huge.xml", L"order.fi"})
        EXPECT_TEXT(strXml, Read(lpctFile)->ToXml(true, true, EOLType_LF, context));
    CPurchaseOrder again;
    again.FromXmlStream(data, context);
    EXPECT_TEXT(strXml, again.ToXml(true, true, EOLType_LF, context));
}
