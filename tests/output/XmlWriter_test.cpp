#include "quiver/output/XmlWriter.h"

#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/RecordingWriter.h"

#include <memory>
#include <random>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

/// A writer that opens and closes scopes and does nothing else, with the bookkeeping laid open.
class CScopeWriter : public QvTest::CRecordingWriter
{
public:
    void StartElement(std::wstring_view svName, std::wstring_view svNamespace) override
    {
        m_pContext = CreateContext(svName, svNamespace);
    }
    void EndElement() override { PopContext(); }

    std::wstring Prefix(std::wstring_view svNamespace) const
    {
        const std::wstring* const pstrPrefix = FindPrefix(svNamespace);
        return pstrPrefix != nullptr ? *pstrPrefix : L"(none)";
    }
    std::wstring Default() const { return std::wstring(GetDefaultNamespace()); }

    using CXmlWriter::CXmlWriterContext;

    /// The open element at a depth, 0 for the root.
    CXmlWriterContext& At(std::size_t nDepth) const
    {
        CXmlWriterContext* pContext = m_pContext;
        while (pContext->m_dwDepth != nDepth)
            pContext = pContext->m_pParent;
        return *pContext;
    }
};

/// "prefix=namespace" for each entry, in order.
std::wstring Text(const CXmlWriter::NamespaceMap& map)
{
    std::wstring strText;
    for (const auto& [strNamespace, strPrefix] : map)
    {
        if (strPrefix != L"xml")
            strText += strPrefix + L"=" + strNamespace + L" ";
    }
    return strText;
}

/// The plain way: each element that sets something copies the map of the enclosing one.
struct SPlainScope
{
    bool bInherits = true;
    std::wstring strDefault;
    CXmlWriter::NamespaceMap map;
};

struct SPlainScopes
{
    SPlainScope& OwnerOf(std::size_t n)
    {
        while (scopes[n].bInherits)
            --n;
        return scopes[n];
    }
    void Own(std::size_t n)
    {
        if (!scopes[n].bInherits)
            return;
        const SPlainScope copy = OwnerOf(n);
        scopes[n] = copy;
    }
    std::wstring Value(std::size_t n, const std::wstring& strNamespace) { return OwnerOf(n).map[strNamespace]; }

    std::vector<SPlainScope> scopes;
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

TEST(XmlWriter, AGeneratedPrefixIsTheFirstThatAMapDoesNotHave)
{
    const struct
    {
        CXmlWriter::NamespaceMap map;
        const wchar_t* lpctPrefix;
    } cases[] = {
        {{}, L"AA"},
        {{{L"urn:a", L"xml"}}, L"AA"},
        {{{L"urn:a", L"AA"}}, L"AB"},
        {{{L"urn:a", L"AB"}}, L"AA"},
        {{{L"urn:a", L"AB"}, {L"urn:b", L"AA"}}, L"AC"},
        {{{L"urn:a", L"AA"}, {L"urn:b", L"AA"}, {L"urn:c", L""}}, L"AB"},
    };
    for (const auto& row : cases)
        EXPECT_TEXT(row.lpctPrefix, CXmlWriter::GeneratePrefix(row.map)) << testing::PrintToString(Text(row.map));

    CXmlWriter::NamespaceMap map;
    for (unsigned int n = 0; n < 50000; ++n)
        map[L"urn:" + std::to_wstring(n)] = CXmlWriter::FormatPrefix(n);
    EXPECT_TEXT(CXmlWriter::FormatPrefix(50000), CXmlWriter::GeneratePrefix(map));
}

TEST(XmlWriter, AnElementInheritsUntilItSetsSomething)
{
    CScopeWriter writer;
    writer.SetDefaultNamespace(L"urn:d");
    writer.AddNamespaceMapping(L"p", L"urn:p");
    for (const wchar_t* lpctName : {L"a", L"b", L"c"})
        writer.StartElement(lpctName, L"");
    CScopeWriter::CXmlWriterContext& a = writer.At(0);
    CScopeWriter::CXmlWriterContext& b = writer.At(1);
    CScopeWriter::CXmlWriterContext& c = writer.At(2);
    EXPECT_TEXT(L"urn:d", c.GetDefaultNamespace());
    EXPECT_TEXT(L"p=urn:p ", Text(c.GetNamespaceMap()));

    b.SetNamespaceMapValue(L"urn:b", L"b");
    EXPECT_TEXT(L"p=urn:p ", Text(a.GetNamespaceMap()));
    EXPECT_TEXT(L"b=urn:b p=urn:p ", Text(b.GetNamespaceMap()));
    EXPECT_TEXT(L"b=urn:b p=urn:p ", Text(c.GetNamespaceMap()));
    EXPECT_TEXT(L"b", writer.Prefix(L"urn:b"));

    // The element inside has a copy by now, which neither kind of change reaches.
    a.SetNamespaceMapValue(L"urn:a", L"a");
    a.SetDefaultNamespace(L"urn:other");
    EXPECT_TEXT(L"a=urn:a p=urn:p ", Text(a.GetNamespaceMap()));
    EXPECT_TEXT(L"urn:other", a.GetDefaultNamespace());
    EXPECT_TEXT(L"b=urn:b p=urn:p ", Text(b.GetNamespaceMap()));
    EXPECT_TEXT(L"urn:d", c.GetDefaultNamespace());
    EXPECT_TEXT(L"(none)", writer.Prefix(L"urn:a"));
    EXPECT_TEXT(L"urn:d", writer.Default());

    writer.EndElement();
    writer.EndElement();
    EXPECT_TEXT(L"a", writer.Prefix(L"urn:a"));
    EXPECT_TEXT(L"(none)", writer.Prefix(L"urn:b"));
    EXPECT_TEXT(L"urn:other", writer.Default());
}

TEST(XmlWriter, AskingForThePrefixOfAnUnknownNamespaceEntersIt)
{
    CScopeWriter writer;
    writer.StartElement(L"a", L"");
    writer.StartElement(L"b", L"");
    CScopeWriter::CXmlWriterContext& b = writer.At(1);
    EXPECT_TEXT(L"", b.GetNamespaceMapValue(L"urn:\U0001F600"));
    EXPECT_TEXT(L"=urn:\xD83D\xDE00 ", Text(writer.At(0).GetNamespaceMap())) << "the root's scope is the one in force";
    b.SetNamespaceMapValue(L"urn:b", L"b");
    EXPECT_TEXT(L"b", b.GetNamespaceMapValue(L"urn:b"));
    EXPECT_TEXT(L"b", b.GetNamespaceMapValue(std::wstring(L"urn:b")));
    EXPECT_TEXT(L"", b.GetNamespaceMapValue(static_cast<const wchar_t*>(nullptr)));
    EXPECT_TEXT(L"", writer.At(0).GetNamespaceMapValue(L"urn:b"));
    EXPECT_TEXT(L"b", b.GetNamespaceMapValue(L"urn:b"));
}

TEST(XmlWriter, ScopesBehaveAsMapsThatElementsCopyWhenTheySetSomething)
{
    std::mt19937 random(815);
    CScopeWriter writer;
    SPlainScopes plain;
    writer.StartElement(L"e", L"");
    plain.scopes.push_back({false, L"", {{L"http://www.w3.org/XML/1998/namespace", L"xml"}}});
    for (int nStep = 0; nStep < 20000; ++nStep)
    {
        const std::size_t nDepth = random() % plain.scopes.size();
        const std::wstring strNamespace = L"urn:" + std::to_wstring(random() % 8);
        const std::wstring strPrefix = CXmlWriter::FormatPrefix(static_cast<unsigned int>(random() % 6));
        switch (random() % 8)
        {
        case 0:
        case 1:
            writer.StartElement(L"e", L"");
            plain.scopes.emplace_back();
            break;
        case 2:
        case 3:
            if (plain.scopes.size() > 1)
            {
                writer.EndElement();
                plain.scopes.pop_back();
            }
            break;
        case 4:
            writer.At(nDepth).SetDefaultNamespace(strNamespace);
            plain.Own(nDepth);
            plain.scopes[nDepth].strDefault = strNamespace;
            break;
        case 5:
            writer.At(nDepth).SetNamespaceMapValue(strNamespace, strPrefix);
            plain.Own(nDepth);
            plain.scopes[nDepth].map[strNamespace] = strPrefix;
            break;
        case 6:
            ASSERT_EQ(plain.Value(nDepth, strNamespace), writer.At(nDepth).GetNamespaceMapValue(strNamespace));
            break;
        default:
            ASSERT_EQ(plain.OwnerOf(nDepth).strDefault, writer.At(nDepth).GetDefaultNamespace());
            ASSERT_EQ(plain.OwnerOf(nDepth).map, writer.At(nDepth).GetNamespaceMap());
            ASSERT_EQ(plain.OwnerOf(plain.scopes.size() - 1).strDefault, writer.Default());
            break;
        }
    }
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
    const auto before = QvTest::CountInstances(L"CXmlWriterContext");
    {
        CScopeWriter writer;
        for (int n = 0; n < 1000; ++n)
            writer.StartElement(L"a", L"urn:a");
        EXPECT_EQ(before.nLiving + 1000, QvTest::CountInstances(L"CXmlWriterContext").nLiving);
    }
    EXPECT_EQ(before.nLiving, QvTest::CountInstances(L"CXmlWriterContext").nLiving);
    EXPECT_EQ(before.nTotal + 1000, QvTest::CountInstances(L"CXmlWriterContext").nTotal);
}
