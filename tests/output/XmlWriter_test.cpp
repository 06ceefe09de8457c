#include "quiver/output/XmlWriter.h"

#include "quiver/foundation/MemoryLeakHelp.h"
#include "tests/support/Expect.h"
#include "tests/support/RecordingWriter.h"

#include <memory>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

/// A writer that opens and closes scopes and does nothing else, with the bookkeeping laid open.
class CScopeWriter : public QvTest::CRecordingWriter
{
public:
    void StartElement(std::wstring_view strName, std::wstring_view strNamespace) override
    {
        m_pContext = CreateContext(strName, strNamespace);
    }
    void EndElement() override { PopContext(); }

    std::wstring Prefix(std::wstring_view strNamespace) const
    {
        const std::wstring* const pstrPrefix = FindPrefix(strNamespace);
        return pstrPrefix != nullptr ? *pstrPrefix : L"(none)";
    }
    std::wstring Default() const { return std::wstring(GetDefaultNamespace()); }
};

} // namespace

TEST(XmlWriter, PrefixesAreTwoLettersCountedUpAndRunPastZ)
{
    EXPECT_TEXT(L"AA", CXmlWriter::FormatPrefix(0));
    EXPECT_TEXT(L"AB", CXmlWriter::FormatPrefix(1));
    EXPECT_TEXT(L"AZ", CXmlWriter::FormatPrefix(25));
    EXPECT_TEXT(L"BA", CXmlWriter::FormatPrefix(26));
    EXPECT_TEXT(L"ZZ", CXmlWriter::FormatPrefix(675));
    EXPECT_TEXT(L"[A", CXmlWriter::FormatPrefix(676));
}

TEST(XmlWriter, WhatIsSetAheadOfTheRootHoldsInTheWholeDocument)
{
    CScopeWriter writer;
    writer.SetDefaultNamespace(L"urn:d");
    writer.AddNamespaceMapping(L"p", L"urn:p");
    writer.StartElement(L"a", L"");
    writer.StartElement(L"b", L"");
    EXPECT_TEXT(L"urn:d", writer.Default());
    EXPECT_TEXT(L"p", writer.Prefix(L"urn:p"));
    EXPECT_TEXT(L"xml", writer.Prefix(L"http://www.w3.org/XML/1998/namespace"));
}

TEST(XmlWriter, WhatIsSetOnAnOpenElementEndsWithIt)
{
    CScopeWriter writer;
    writer.StartElement(L"a", L"");
    writer.StartElement(L"b", L"");
    writer.SetDefaultNamespace(L"urn:inner");
    writer.AddNamespaceMapping(L"i", L"urn:i");
    EXPECT_TEXT(L"urn:inner", writer.Default());
    EXPECT_TEXT(L"i", writer.Prefix(L"urn:i"));
    writer.EndElement();
    EXPECT_TEXT(L"", writer.Default());
    EXPECT_TEXT(L"(none)", writer.Prefix(L"urn:i"));
}

TEST(XmlWriter, ANewMappingKeepsTheDefaultNamespaceOfTheEnclosingScope)
{
    CScopeWriter writer;
    writer.SetDefaultNamespace(L"urn:d");
    writer.StartElement(L"a", L"");
    writer.StartElement(L"b", L"");
    writer.AddNamespaceMapping(L"i", L"urn:i");
    EXPECT_TEXT(L"urn:d", writer.Default());
}

TEST(XmlWriter, ClosingWithAnElementOpenIsRefused)
{
    CScopeWriter writer;
    writer.StartElement(L"a", L"");
    ExpectThrows<CQvException>(L"An Element has not been closed.", [&] { writer.Close(); });
    writer.EndElement();
    EXPECT_NO_THROW(writer.Close());
}

TEST(XmlWriter, AnAbandonedWriterGivesUpAllItsRecords)
{
    {
        CScopeWriter writer;
        for (int n = 0; n < 1000; ++n)
            writer.StartElement(L"a", L"urn:a");
    }
    EXPECT_EQ(CInstanceMonitor::DumpState().find(L"--> CXmlWriterContext"), std::wstring::npos);
}
