#include "quiver/document/XmlDocument.h"

#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

namespace
{

using QvTest::CountInstances;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;

bool DropSome(CXmlElement* pElement)
{
    return pElement->GetLocalName() == L"dropped";
}

/// Runs `load` with the first allocation failing, then with the second, and so on until it succeeds.
/// @return how many times it failed.
template <class Load>
int FailEachAllocation(Load load, CXmlDocument::PfnElementFilter pfnFilter = DropSome)
{
    const auto elements = CountInstances(L"CXmlElement");
    const auto attributes = CountInstances(L"CXmlAttribute");
    for (int nFailures = 0;; ++nFailures)
    {
        bool bFailed = false;
        {
            CXmlDocument document(pfnFilter);
            QvTest::g_nAllocationsLeft = nFailures;
            try
            {
                load(document);
            }
            catch (const std::bad_alloc&)
            {
                bFailed = true;
            }
            QvTest::g_nAllocationsLeft = -1;
            const std::wstring strOutline = QvTest::Outline(document.GetDocumentElement());
            if (!bFailed)
            {
                const std::wstring strDropped = pfnFilter == nullptr ? L", dropped @a='1' (b \"text\")" : L"";
                EXPECT_TEXT(L"{urn:x}root @{urn:x}attribute='value' \"some longer text, and more\" ({urn:x}kept" +
                                strDropped + L")",
                            strOutline);
            }
        }
        EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
        EXPECT_EQ(attributes.nLiving, CountInstances(L"CXmlAttribute").nLiving);
        if (!bFailed)
            return nFailures;
    }
}

constexpr const char* s_lpcXml = "<x:root xmlns:x='urn:x' x:attribute='value'>some longer text,<x:kept/>"
                                 "<dropped a='1'><b>text</b></dropped> and more</x:root>";

TEST(XmlDocumentOutOfMemory, LoadingAStringFailsCleanlyWhereverMemoryEnds)
{
    EXPECT_GT(FailEachAllocation([](CXmlDocument& document) { document.LoadXml(s_lpcXml); }), 10);
}

TEST(XmlDocumentOutOfMemory, LoadingAWideStringFailsCleanlyWhereverMemoryEnds)
{
    const std::wstring strXml(s_lpcXml, s_lpcXml + std::char_traits<char>::length(s_lpcXml));
    EXPECT_GT(FailEachAllocation([&strXml](CXmlDocument& document) { document.LoadXml(strXml.c_str()); }), 10);
}

TEST(XmlDocumentOutOfMemory, LoadingWithoutAFilterFailsCleanlyWhereverMemoryEnds)
{
    const std::wstring strXml(s_lpcXml, s_lpcXml + std::char_traits<char>::length(s_lpcXml));
    EXPECT_GT(FailEachAllocation([](CXmlDocument& document) { document.LoadXml(s_lpcXml); }, nullptr), 10);
    EXPECT_GT(FailEachAllocation([&strXml](CXmlDocument& document) { document.LoadXml(strXml.c_str()); }, nullptr), 10);
}

TEST(XmlDocumentOutOfMemory, LoadingAFileFailsCleanlyWhereverMemoryEnds)
{
    const QvTest::CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a.xml"), s_lpcXml);
    const std::wstring strName = dir.NameOf("a.xml");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (const bool bAsync : {false, true})
    {
        QvXmlLib9::AsyncFromXmlFile(bAsync);
        EXPECT_GT(FailEachAllocation([&strName](CXmlDocument& document) { document.Load(strName.c_str()); }), 10);
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
    QvXmlLib9::AsyncFromXmlFile(false);
}

TEST(XmlDocumentOutOfMemory, AskingForTextFailsCleanly)
{
    CXmlDocument document;
    document.LoadXml("<a>some longer text</a>");
    QvTest::g_nAllocationsLeft = 0;
    EXPECT_THROW(document.GetDocumentElement()->GetText(), std::bad_alloc);
    QvTest::g_nAllocationsLeft = -1;
    EXPECT_TEXT(L"some longer text", document.GetDocumentElement()->GetText());
}

} // namespace
