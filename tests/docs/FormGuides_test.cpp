// The code of the guides in docs/guides about the forms of a document: large files, Fast Infoset, compression.
#include "Order.h"
#include "Readings.h"
#include "quiver/QvXmlLib.h"
#include "tests/docs/PageDirectory.h"
#include "tests/support/Expect.h"

#include <string>

namespace
{

using namespace QvXmlLib9;
using order::CPurchaseOrder;
using QvTest::ExpectThrows;

// [snippet large-files-filter]
struct STotals
{
    CXmlSerializationContext context;
    weather::CReading reading; // one object for all records: reading resets it
    int nReadings = 0;
    CDecimal sum;
};
STotals* g_pTotals = nullptr;

// Called with every element when its end tag has been read, innermost first. True: take it out of the tree.
bool TakeReading(CXmlElement* pElement)
{
    if (pElement->GetLocalName() != L"reading")
        return false;
    g_pTotals->reading.FromXmlElement(pElement, g_pTotals->context);
    g_pTotals->sum += g_pTotals->reading.GetTemperature();
    ++g_pTotals->nReadings;
    return true;
}
// [end]

class FormGuides : public QvTest::CPageTest
{
protected:
    FormGuides()
    {
        Take({"examples/purchase_order/order.xml", "examples/large_file/readings.xml",
              "examples/large_file/broken.xml"});
    }
    ~FormGuides() override
    {
        AsyncFromXmlFile(false);
        AsyncToXmlFile(false);
    }

    static std::wstring Text(const CXmlObjectBase& object)
    {
        return object.ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
    }

    static void Read(CPurchaseOrder& order, const wchar_t* lpctFile = L"order.xml")
    {
        order.FromXmlFile(lpctFile, CXmlSerializationContext::GetDefaultContext());
    }
};

TEST_F(FormGuides, LargeFilesAreReadRecordByRecord)
{
    // [snippet large-files]
    STotals totals;
    g_pTotals = &totals;
    AsyncFromXmlFile(true); // for the whole process, while it starts
    CXmlDocument document(&TakeReading, totals.context);
    document.Load(L"readings.xml");
    // [end]
    EXPECT_EQ(3, totals.nReadings);
    EXPECT_TEXT(L"-26.75", totals.sum.ToString());
    EXPECT_EQ(nullptr, document.GetDocumentElement()->GetFirstElement());

    // What the filter throws ends the load.
    EXPECT_THROW(document.Load(L"broken.xml"), CQvException);
    EXPECT_EQ(4, totals.nReadings);
}

TEST_F(FormGuides, LargeFilesAreWrittenWhileTheyAreProduced)
{
    CPurchaseOrder order;
    Read(order);
    const CXmlSerializationContext context;
    // [snippet large-files-writing]
    AsyncToXmlFile(true); // for the whole process, while it starts
    order.ToXmlFile(L"huge.xml", true, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
    // [end]
    CPurchaseOrder again;
    Read(again, L"huge.xml");
    EXPECT_TEXT(Text(order), Text(again));
}

TEST_F(FormGuides, OverlappedReadingTakesPlainTextOnly)
{
    CPurchaseOrder order;
    Read(order);
    const CXmlSerializationContext context;
    order.ToXmlFile(L"order.xml.gz", true, false, Encoding_UTF8, EOLType_LF, context, Compression_GZip);
    AsyncFromXmlFile(true);
    EXPECT_THROW(Read(order, L"order.xml.gz"), CQvException);
    AsyncFromXmlFile(false);
    EXPECT_NO_THROW(Read(order, L"order.xml.gz"));
}

TEST_F(FormGuides, FastInfoset)
{
    CPurchaseOrder order;
    Read(order);
    CPurchaseOrder again;
    // [snippet fast-infoset-guide]
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:order");
    order.ToFastInfosetFile(L"order.fi", FInfoDecl_None, context, Compression_None);
    again.FromXmlFile(L"order.fi", context); // recognised by its first bytes
    // [end]
    EXPECT_TEXT(Text(order), Text(again));
}

TEST_F(FormGuides, Compression)
{
    CPurchaseOrder order;
    Read(order);
    CPurchaseOrder again;
    // [snippet compression]
    const CXmlSerializationContext context;
    order.ToXmlFile(L"order.xml.gz", true, false, Encoding_UTF8, EOLType_LF, context, Compression_GZip);
    const CBinaryData data =
        order.ToXmlStream(true, false, Encoding_UTF8, EOLType_LF, context, Compression_ZLib); // streams only

    again.FromXmlFile(L"order.xml.gz", context); // recognised, whatever the file is called
    again.FromXmlStream(data, context);
    // [end]
    EXPECT_TEXT(Text(order), Text(again));
    EXPECT_LT(data.GetLength(), Text(order).size());
    ExpectThrows<CQvException>(
        L"ZLIB Compression only available for To Stream methods.",
        [&] { order.ToXmlFile(L"order.z", true, false, Encoding_UTF8, EOLType_LF, context, Compression_ZLib); });
}

TEST_F(FormGuides, ShortDocumentsDoNotCompress)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"", L"##any", L"");
    const CElement& object = *spElement;
    const CXmlSerializationContext context;
    CBinaryData data;
    // [snippet compression-short]
    try
    {
        data = object.ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, context, Compression_GZip);
    }
    catch (const CQvException&) // compressed it would be longer
    {
        data = object.ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
    }
    // [end]
    EXPECT_EQ("<a/>", std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength()));
}

} // namespace
