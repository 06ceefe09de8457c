// The code of docs/fast_infoset.md.
#include "OrderRoots.h"
#include "tests/docs/PageDirectory.h"
#include "tests/support/Expect.h"

namespace
{

using namespace QvXmlLib9;
using namespace order;

// [snippet fast-infoset-vocabulary]
void AgreeOnOrders(CFastInfosetContext& context)
{
    CFIVocabulary* pVocabulary = context.GetVocabulary();
    pVocabulary->AddElement(L"", L"urn:example:order", L"purchaseOrder");
    pVocabulary->AddElement(L"", L"urn:example:order", L"item");
    pVocabulary->AddAttribute(L"", L"", L"number");
    pVocabulary->AddAttributeValue(L"EUR");
    pVocabulary->AddElementValue(L"true");
    context.SetExternalVocabularyURI(L"urn:example:order:vocabulary:1");
    context.SetUseGeneratedVocabulary(true);
}
// [end]

class FastInfosetPage : public QvTest::CPageTest
{
protected:
    FastInfosetPage()
    {
        Take({"examples/purchase_order/order.xml"});
        order.FromXmlFile(L"order.xml", CXmlSerializationContext::GetDefaultContext());
        m_strText = Text(order);
    }

    static std::wstring Text(const CPurchaseOrder& purchaseOrder)
    {
        return purchaseOrder.ToXml(false, true, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
    }

    CPurchaseOrder order;
    CPurchaseOrder again;
    std::wstring m_strText;
};

} // namespace

TEST_F(FastInfosetPage, DocumentsAreWrittenAndRecognised)
{
    // [snippet fast-infoset]
    CXmlSerializationContext context;
    CBinaryData document = order.ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
    order.ToFastInfosetFile(L"order.fi", FInfoDecl_None, context, Compression_GZip);

    again.FromXmlStream(document, context);
    again.FromXmlFile(L"order.fi", context);
    // [end]
    EXPECT_TEXT(m_strText, Text(again));
    EXPECT_EQ(0xE0, document.GetData()[0]);
}

TEST_F(FastInfosetPage, BothSidesAgreeOnAVocabulary)
{
    CXmlSerializationContext plain;
    plain.SetDefaultNamespaceURI(L"urn:example:order");
    CXmlSerializationContext agreed(plain);
    AgreeOnOrders(agreed.GetFIContext());

    const CBinaryData document = order.ToFastInfosetStream(FInfoDecl_None, agreed, Compression_None);
    again.FromXmlStream(document, agreed);
    EXPECT_TEXT(m_strText, Text(again));
    EXPECT_LT(document.GetLength(), order.ToFastInfosetStream(FInfoDecl_None, plain, Compression_None).GetLength());
}

TEST_F(FastInfosetPage, ATypeMayHaveAnEncodingOfItsOwn)
{
    CXmlSerializationContext context;
    context.GetFIContext().SetSuggestedValues();
    // [snippet fast-infoset-duration]
    context.GetFIContext().SetEncoding(ItemType_duration, {0, 0});
    // [end]
    EXPECT_EQ(0u, context.GetFIContext().GetEncoding(ItemType_duration).m_dwType);
}
