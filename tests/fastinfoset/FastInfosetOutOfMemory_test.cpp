#include "quiver/document/XmlDocument.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryStream.h"
#include "tests/support/Expect.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

using namespace QvXmlLib9;
using QvTest::CountInstances;

namespace
{

/// Runs `action` with the first allocation failing, then with the second, and so on until it succeeds.
/// @return how many times it failed.
template <class TAction>
int FailEachAllocation(TAction action)
{
    for (int nFailures = 0;; ++nFailures)
    {
        bool bFailed = false;
        QvTest::g_nAllocationsLeft = nFailures;
        try
        {
            action();
        }
        catch (const std::bad_alloc&)
        {
            bFailed = true;
        }
        QvTest::g_nAllocationsLeft = -1;
        for (const wchar_t* lpctClass : {L"CXmlWriterContext", L"CFastInfosetWriter", L"CFastInfosetReader",
                                         L"CBinaryStream", L"CXmlDocument", L"CXmlElement", L"CXmlAttribute"})
            EXPECT_EQ(0, CountInstances(lpctClass).nLiving) << QvTest::Show(lpctClass);
        if (!bFailed)
            return nFailures;
    }
}

CBinaryData WriteDocument()
{
    CFastInfosetContext context;
    context.SetSuggestedValues();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context, &stream);
    writer.Open();
    writer.WriteHeader(FInfoDecl_None);
    writer.AddNamespaceMapping(L"p", L"urn:some-namespace");
    writer.StartElement(L"document", L"urn:some-namespace");
    writer.WriteAttribute(L"attribute", L"urn:another-namespace", L"a longer value", ItemType_string);
    writer.StartElement(L"element", L"");
    writer.WriteText(L"12.50", ItemType_decimal);
    writer.EndElement();
    writer.EndElement();
    writer.WriteTerminator();
    writer.Close();
    return stream.GetData();
}

} // namespace

TEST(FastInfosetOutOfMemory, WritingFailsCleanlyWhereverMemoryEnds)
{
    const QvTest::Octets expected = QvTest::OctetsOf(WriteDocument());
    CBinaryData written;
    EXPECT_GT(FailEachAllocation([&] { written = WriteDocument(); }), 20);
    EXPECT_EQ(expected, QvTest::OctetsOf(written));
}

TEST(FastInfosetOutOfMemory, ReadingFailsCleanlyWhereverMemoryEnds)
{
    const CBinaryData data = WriteDocument();
    std::wstring strText;
    EXPECT_GT(FailEachAllocation(
                  [&]
                  {
                      CXmlDocument document;
                      document.LoadXmlStream(data.GetData(), data.GetLength());
                      strText = document.GetDocumentElement()->GetFirstElement()->GetText();
                  }),
              20);
    EXPECT_TEXT(L"12.50", strText);
}
