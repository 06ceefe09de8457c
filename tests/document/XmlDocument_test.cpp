#include "quiver/document/XmlDocument.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/foundation/platform/Platform.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace
{

namespace Platform = QvXmlLib9::Platform;

using QvTest::CFileFault;
using QvTest::CountInstances;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvTest::Outline;
using QvTest::WriteFileBytes;
using QvXmlLib9::AsyncFromXmlFile;
using QvXmlLib9::CQvException;
using QvXmlLib9::CQvZip;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlSerializationContext;

constexpr std::size_t s_nChunk = 0x20000;

std::string Repeat(const std::string& strText, std::size_t nCount)
{
    std::string strResult;
    for (std::size_t i = 0; i < nCount; ++i)
        strResult += strText;
    return strResult;
}

/// A well-formed document of exactly so many bytes.
std::string MakeDocument(std::size_t nBytes)
{
    return "<a>" + std::string(nBytes - 7, 'x') + "</a>";
}

std::string Compress(std::string strBytes, QvXmlLib9::CompressionType eType)
{
    unsigned long dwLength = static_cast<unsigned long>(strBytes.size());
    auto* pData = new unsigned char[dwLength];
    std::copy(strBytes.begin(), strBytes.end(), pData);
    CQvZip::CompressBuffer(&pData, &dwLength, eType);
    const std::unique_ptr<unsigned char[]> owner(pData);
    return std::string(reinterpret_cast<char*>(pData), dwLength);
}

void LoadStream(CXmlDocument& document, std::string strBytes)
{
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
}

/// Loads a file with the asynchronous input flag set.
void LoadOverlapped(CXmlDocument& document, const std::wstring& strFileName)
{
    struct SFlag
    {
        SFlag() { AsyncFromXmlFile(true); }
        ~SFlag() { AsyncFromXmlFile(false); }
    } const flag;
    document.Load(strFileName.c_str());
}

// --- Strings and streams --------------------------------------------------------------------------------------------

TEST(XmlDocument, ADocumentIsEmptyUntilItLoads)
{
    CXmlDocument document;
    EXPECT_EQ(nullptr, document.GetDocumentElement());
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L""));
}

TEST(XmlDocument, EveryConstructorMakesADocumentThatLoads)
{
    const CXmlSerializationContext context;
    CXmlDocument plain;
    CXmlDocument withContext(context);
    CXmlDocument withFilter([](CXmlElement*) { return true; });
    CXmlDocument withBoth([](CXmlElement*) { return true; }, context);
    for (CXmlDocument* pDocument : {&plain, &withContext, &withFilter, &withBoth})
        pDocument->LoadXml("<a><b/></a>");
    EXPECT_TEXT(L"a (b)", Outline(plain.GetDocumentElement()));
    EXPECT_TEXT(L"a (b)", Outline(withContext.GetDocumentElement()));
    EXPECT_TEXT(L"a", Outline(withFilter.GetDocumentElement()));
    EXPECT_TEXT(L"a", Outline(withBoth.GetDocumentElement()));
}

TEST(XmlDocument, AnEmptyNarrowStringIsRefused)
{
    CXmlDocument document;
    ExpectThrows<CQvException>(L"XML String is empty!", [&document] { document.LoadXml(""); });
}

TEST(XmlDocument, AnEmptyWideStringFailsInTheParser)
{
    CXmlDocument document;
    ExpectThrows<CQvException>(L"no element found at line 1", [&document] { document.LoadXml(L""); });
}

TEST(XmlDocument, AnEmptyStreamIsRefused)
{
    CXmlDocument document;
    unsigned char byData = 0;
    ExpectThrows<CQvException>(L"XML Stream is empty!", [&] { document.LoadXmlStream(&byData, 0); });
    ExpectThrows<CQvException>(L"XML Stream is empty!", [&] { document.LoadXmlStream(nullptr, 0); });
}

struct SWideRow
{
    const wchar_t* lpctXml;
    const wchar_t* lpctOutline;
};

const SWideRow s_wideRows[] = {
    {L"<a b='1'>x</a>", L"a @b='1' \"x\""},
    {L"<\xE4 \xF6='\x20AC'>\xD83D\xDE00</\xE4>", L"\xE4 @\xF6='\x20AC' \"\xD83D\xDE00\""},
    {L"<a>\U0001F600</a>", L"a \"\xD83D\xDE00\""},
    {L"<?xml version='1.0'?><a/>", L"a"},
    {L"<?xml version='1.0' encoding='UTF-16'?><a/>", L"a"},
    {L"<a>x\r\ny</a>", L"a \"x\ny\""},
    {L"<a xmlns='urn:x'/>", L"{urn:x}a"},
};

TEST(XmlDocument, AWideStringIsParsedAsUtf16)
{
    for (const SWideRow& row : s_wideRows)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctXml));
        CXmlDocument document;
        document.LoadXml(row.lpctXml);
        EXPECT_TEXT(row.lpctOutline, Outline(document.GetDocumentElement()));
    }
}

TEST(XmlDocument, AWideStringThatDeclaresUtf8OrHoldsHalfAPairFails)
{
    CXmlDocument document;
    ExpectThrows<CQvException>(L"encoding specified in XML declaration is incorrect at line 1",
                               [&] { document.LoadXml(L"<?xml version='1.0' encoding='UTF-8'?><a/>"); });
    ExpectThrows<CQvException>(L"not well-formed (invalid token) at line 1",
                               [&] { document.LoadXml(L"<a>\xDE00</a>"); });
}

TEST(XmlDocument, AStreamStaysTheCallers)
{
    CXmlDocument document;
    std::string strXml = "<a>text</a>";
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strXml.data()), static_cast<unsigned long>(strXml.size()));
    EXPECT_EQ("<a>text</a>", strXml);
    strXml.assign(strXml.size(), '?');
    EXPECT_TEXT(L"a \"text\"", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, StreamsMayBeCompressedAndStringsMayNot)
{
    const std::string strXml = "<a>" + Repeat("text ", 100) + "</a>";
    for (const auto eType : {QvXmlLib9::Compression_GZip, QvXmlLib9::Compression_ZLib})
    {
        const std::string strCompressed = Compress(strXml, eType);
        CXmlDocument document;
        LoadStream(document, strCompressed);
        EXPECT_EQ(500u, document.GetDocumentElement()->GetText().size());
        ExpectThrows<CQvException>(L"not well-formed (invalid token) at line 1",
                                   [&] { document.LoadXml(strCompressed.c_str()); });
        ExpectThrows<CQvException>(L"not well-formed (invalid token) at line 1",
                                   [&] { LoadStream(document, strCompressed.substr(0, strCompressed.size() - 5)); });
    }
}

TEST(XmlDocument, AStreamThatOnlyLooksCompressedIsParsedAsItIs)
{
    for (const char* lpcBytes :
         {"\x1F", "\x1F\x8B", "\x78\x9C", "\x78\x9C\x01\x02\x03", "xml", "hello", "8", "(", "\x08"})
    {
        SCOPED_TRACE(lpcBytes);
        CXmlDocument document;
        EXPECT_THROW(LoadStream(document, lpcBytes), CQvException);
    }
}

TEST(XmlDocument, AFailedLoadLeavesWhatWasBuiltAheadOfIt)
{
    CXmlDocument document;
    ExpectThrows<CQvException>(L"mismatched tag at line 1", [&] { LoadStream(document, "<a><b c='1'>x</b></c>"); });
    EXPECT_TEXT(L"a (b @c='1' \"x\")", Outline(document.GetDocumentElement()));
}

// --- Loading again --------------------------------------------------------------------------------------------------

TEST(XmlDocument, LoadingAgainReplacesTreeAndNamespaces)
{
    const auto elements = CountInstances(L"CXmlElement");
    CXmlDocument document;
    document.LoadXml("<a xmlns:p='urn:p'><b/></a>");
    document.LoadXml("<c xmlns:q='urn:q'/>");
    EXPECT_TEXT(L"c", Outline(document.GetDocumentElement()));
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L"p"));
    EXPECT_TEXT(L"urn:q", document.LookupNamespaceFromAlias(L"q"));
    EXPECT_EQ(elements.nLiving + 1, CountInstances(L"CXmlElement").nLiving);
    EXPECT_THROW(document.LoadXml(""), CQvException);
    EXPECT_EQ(nullptr, document.GetDocumentElement());
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(XmlDocument, AFailedTagBindsNoPrefixes)
{
    CXmlDocument document;
    EXPECT_THROW(document.LoadXml("<a xmlns:p='urn:p'><b c='1' c='2' xmlns:q='urn:q'/></a>"), CQvException);
    EXPECT_TEXT(L"urn:p", document.LookupNamespaceFromAlias(L"p"));
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L"q"));
}

TEST(XmlDocument, ADocumentLoadsAfterAFailure)
{
    CXmlDocument document;
    EXPECT_THROW(document.LoadXml("<a><b><c>"), CQvException);
    document.LoadXml("<d><e/></d>");
    EXPECT_TEXT(L"d (e)", Outline(document.GetDocumentElement()));
}

class CCleanupCounter : public CXmlDocument
{
public:
    int m_nCleanups = 0;

protected:
    void Cleanup() override
    {
        ++m_nCleanups;
        CXmlDocument::Cleanup();
    }
};

TEST(XmlDocument, EveryLoadBeginsWithTheVirtualCleanup)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("a.xml"), "<a/>");
    CCleanupCounter document;
    document.LoadXml("<a/>");
    document.LoadXml(L"<a/>");
    LoadStream(document, "<a/>");
    document.Load(dir.NameOf("a.xml").c_str());
    EXPECT_EQ(4, document.m_nCleanups);
    EXPECT_THROW(document.LoadXml(""), CQvException);
    EXPECT_EQ(5, document.m_nCleanups);
}

TEST(XmlDocument, TheSchemaTypeIsThatOfTheTimeOfConstruction)
{
    CXmlSerializationContext context;
    CXmlDocument document(context);
    context.SetSchemaType(QvXmlLib9::SchemaType_NoNamespaces);
    document.LoadXml("<p:a xmlns:p='urn:p'/>");
    EXPECT_TEXT(L"{urn:p}a", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, TheOtherOptionsAreThoseOfTheTimeOfLoading)
{
    CXmlSerializationContext context;
    CXmlDocument document(context);
    context.SetStripCDATA(false);
    document.LoadXml("<a><![CDATA[x]]></a>");
    EXPECT_TEXT(L"a \"<![CDATA[x]]>\"", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, ACopyKeepsTheTreeAlive)
{
    auto pSource = std::make_unique<CXmlDocument>();
    pSource->LoadXml("<a xmlns:p='urn:p'>text<b/></a>");
    // A copy is not counted while its destruction is, so these stay.
    static auto* const s_pCopy = new CXmlDocument(*pSource);
    CXmlDocument assigned;
    assigned = *pSource;
    pSource.reset();
    EXPECT_TEXT(L"a \"text\" (b)", Outline(s_pCopy->GetDocumentElement()));
    EXPECT_TEXT(L"urn:p", s_pCopy->LookupNamespaceFromAlias(L"p"));
    EXPECT_EQ(s_pCopy->GetDocumentElement(), assigned.GetDocumentElement());
    assigned.LoadXml("<c/>");
    EXPECT_TEXT(L"a \"text\" (b)", Outline(s_pCopy->GetDocumentElement()));
    s_pCopy->LoadXml("<d/>");
}

TEST(XmlDocument, InstancesAreCounted)
{
    const auto documents = CountInstances(L"CXmlDocument");
    {
        const CXmlDocument document;
        EXPECT_EQ(documents.nLiving + 1, CountInstances(L"CXmlDocument").nLiving);
    }
    EXPECT_EQ(documents.nLiving, CountInstances(L"CXmlDocument").nLiving);
    EXPECT_TRUE(std::has_virtual_destructor_v<CXmlDocument>);
}

// --- Filter ---------------------------------------------------------------------------------------------------------

std::vector<std::wstring> s_offered;

bool DropRecords(CXmlElement* pElement)
{
    s_offered.push_back(Outline(pElement));
    return pElement->GetLocalName() == L"r";
}

TEST(XmlDocument, TheFilterSeesEachElementWhenItIsComplete)
{
    s_offered.clear();
    CXmlDocument document(DropRecords);
    document.LoadXml("<a><r i='1'>x<s/>y</r><k/><r i='2'/><r i='3'/><k/></a>");
    const std::vector<std::wstring> expected = {
        L"s", L"r @i='1' \"xy\" (s)", L"k", L"r @i='2'", L"r @i='3'", L"k", L"a (k, k)"};
    EXPECT_EQ(expected, s_offered);
    EXPECT_TEXT(L"a (k, k)", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, WhatTheFilterDropsIsDestroyedAtOnce)
{
    static QvTest::SInstanceCounts s_before;
    s_before = CountInstances(L"CXmlElement");
    CXmlDocument document(
        [](CXmlElement* pElement)
        {
            if (pElement->GetLocalName() != L"r")
                return false;
            // The root, and this record with its child.
            EXPECT_EQ(s_before.nLiving + 3, CountInstances(L"CXmlElement").nLiving);
            return true;
        });
    document.LoadXml(("<a>" + Repeat("<r b='1'><s>text that is long</s></r>", 100) + "</a>").c_str());
    EXPECT_EQ(s_before.nLiving + 1, CountInstances(L"CXmlElement").nLiving);
    EXPECT_EQ(s_before.nTotal + 201, CountInstances(L"CXmlElement").nTotal);
}

TEST(XmlDocument, TheFilterCannotDropTheRoot)
{
    CXmlDocument document([](CXmlElement*) { return true; });
    document.LoadXml("<a>x<b><c/></b></a>");
    EXPECT_TEXT(L"a \"x\"", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, AFilterThatKeepsSomeRecordsStaysLinear)
{
    // Walking past the kept records for each dropped one would take ten thousand million steps.
    static int s_nRecords;
    s_nRecords = 0;
    CXmlDocument document([](CXmlElement* pElement)
                          { return pElement->GetLocalName() == L"r" && ++s_nRecords % 2 == 0; });
    document.LoadXml(("<a>" + Repeat("<r/>", 200000) + "</a>").c_str());
    int nKept = 0;
    for (CXmlElement* pElement = document.GetDocumentElement()->GetFirstElement(); pElement != nullptr;
         pElement = pElement->GetNextSiblingElement())
        ++nKept;
    EXPECT_EQ(100000, nKept);
}

// --- Files ----------------------------------------------------------------------------------------------------------

TEST(XmlDocument, AFileLoadsWholeOrOverlapped)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("a.xml"), "<?xml version='1.0' encoding='UTF-8'?>\n<a b='\xE2\x82\xAC'>text<c/></a>\n");
    const std::size_t nOpenFiles = CountOpenFiles();
    CXmlDocument document;
    document.Load(dir.NameOf("a.xml").c_str());
    EXPECT_TEXT(L"a @b='\x20AC' \"text\" (c)", Outline(document.GetDocumentElement()));
    LoadOverlapped(document, dir.NameOf("a.xml"));
    EXPECT_TEXT(L"a @b='\x20AC' \"text\" (c)", Outline(document.GetDocumentElement()));
    EXPECT_EQ(nOpenFiles, CountOpenFiles());
}

TEST(XmlDocument, AFileMayHaveAnyName)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80.xml"), "<a/>");
    const std::wstring strName = dir.NameOf("") + L"\xE4 \x20AC \xD83D\xDE00.xml";
    CXmlDocument document;
    document.Load(strName.c_str());
    EXPECT_TEXT(L"a", Outline(document.GetDocumentElement()));
    LoadOverlapped(document, strName);
    EXPECT_TEXT(L"a", Outline(document.GetDocumentElement()));
}

TEST(XmlDocument, AFileThatCannotBeOpenedFailsWithNameAndError)
{
    const CTempDir dir;
    const std::wstring strMissing = dir.NameOf("missing.xml");
    const std::wstring strMessage = L"Failed to open the file [" + strMissing + L"] Error [0x00000002]";
    CXmlDocument document;
    document.LoadXml("<a/>");
    ExpectThrows<CQvException>(strMessage, [&] { document.Load(strMissing.c_str()); });
    EXPECT_EQ(nullptr, document.GetDocumentElement());
    ExpectThrows<CQvException>(strMessage, [&] { LoadOverlapped(document, strMissing); });
    const std::wstring strDirectory = dir.NameOf("");
    ExpectThrows<CQvException>(L"Failed to open the file [" + strDirectory + L"] Error [0x00000005]",
                               [&] { document.Load(strDirectory.c_str()); });
}

TEST(XmlDocument, AnEmptyFileFailsInTheParser)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("empty.xml"), "");
    CXmlDocument document;
    ExpectThrows<CQvException>(L"no element found at line 1", [&] { document.Load(dir.NameOf("empty.xml").c_str()); });
    ExpectThrows<CQvException>(L"no element found at line 1",
                               [&] { LoadOverlapped(document, dir.NameOf("empty.xml")); });
}

TEST(XmlDocument, CompressedFilesLoadWholeAndNotOverlapped)
{
    const CTempDir dir;
    const std::string strXml = MakeDocument(1000);
    CXmlDocument document;
    for (const auto eType : {QvXmlLib9::Compression_GZip, QvXmlLib9::Compression_ZLib})
    {
        WriteFileBytes(dir.PathOf("a.xml.z"), Compress(strXml, eType));
        document.Load(dir.NameOf("a.xml.z").c_str());
        EXPECT_EQ(993u, document.GetDocumentElement()->GetText().size());
        ExpectThrows<CQvException>(L"not well-formed (invalid token) at line 1",
                                   [&] { LoadOverlapped(document, dir.NameOf("a.xml.z")); });
    }
}

TEST(XmlDocument, AFailedLoadKeepsAPartOfTheTreeOnlyIfItWasNotOverlapped)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("broken.xml"), "<a><b/>");
    CXmlDocument document;
    ExpectThrows<CQvException>(L"no element found at line 1", [&] { document.Load(dir.NameOf("broken.xml").c_str()); });
    EXPECT_TEXT(L"a (b)", Outline(document.GetDocumentElement()));
    ExpectThrows<CQvException>(L"no element found at line 1",
                               [&] { LoadOverlapped(document, dir.NameOf("broken.xml")); });
    EXPECT_EQ(nullptr, document.GetDocumentElement());
}

// --- Seams between chunks -------------------------------------------------------------------------------------------

TEST(XmlDocument, AFileOfAnyLengthAroundTheChunkSizeLoads)
{
    const CTempDir dir;
    const std::size_t nOpenFiles = CountOpenFiles();
    for (const std::size_t nBytes :
         {s_nChunk - 1, s_nChunk, s_nChunk + 1, 2 * s_nChunk - 1, 2 * s_nChunk, 2 * s_nChunk + 1, 5 * s_nChunk})
    {
        SCOPED_TRACE(nBytes);
        WriteFileBytes(dir.PathOf("a.xml"), MakeDocument(nBytes));
        CXmlDocument document;
        LoadOverlapped(document, dir.NameOf("a.xml"));
        ASSERT_NE(nullptr, document.GetDocumentElement());
        EXPECT_EQ(nBytes - 7, document.GetDocumentElement()->GetText().size());
    }
    EXPECT_EQ(nOpenFiles, CountOpenFiles());
}

/// Every byte of `strPayload` comes to stand first behind the seam of two chunks once.
void ExpectSameAtEverySeam(const std::string& strHead, const std::string& strFiller, const std::string& strPayload,
                           const std::string& strTail)
{
    const CTempDir dir;
    for (std::size_t nOffset = 0; nOffset <= strPayload.size(); nOffset += strFiller.size())
    {
        SCOPED_TRACE(nOffset);
        const std::size_t nFillers = (s_nChunk - strHead.size() - nOffset) / strFiller.size();
        const std::string strBytes = strHead + Repeat(strFiller, nFillers) + strPayload + strTail;
        WriteFileBytes(dir.PathOf("a.xml"), strBytes);
        CXmlDocument whole;
        whole.Load(dir.NameOf("a.xml").c_str());
        CXmlDocument overlapped;
        LoadOverlapped(overlapped, dir.NameOf("a.xml"));
        ASSERT_TRUE(Outline(whole.GetDocumentElement()) == Outline(overlapped.GetDocumentElement()));
        EXPECT_EQ(whole.LookupNamespaceFromAlias(L"p"), overlapped.LookupNamespaceFromAlias(L"p"));
    }
}

constexpr const char* s_lpcSeamPayload =
    "<p:b xmlns:p='urn:\xE2\x82\xAC' c='\xC3\xA4&#13;&amp;'>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80&#13;&lt;\r\n"
    "<!-- \xE2\x82\xAC --><?p q?><![CDATA[<\xF0\x9F\x98\x80]]>]]&gt;</p:b>";

TEST(XmlDocument, NothingIsLostAtTheSeamOfTwoChunks)
{
    ExpectSameAtEverySeam("<a>", "x", s_lpcSeamPayload, "</a>");
}

TEST(XmlDocument, NothingIsLostAtTheSeamOfTwoChunksOfUtf16)
{
    const auto ToUtf16 = [](const std::u16string& strText)
    {
        return std::string(reinterpret_cast<const char*>(strText.data()), strText.size() * 2);
    };
    ExpectSameAtEverySeam(ToUtf16(u"\uFEFF<a>"), ToUtf16(u"x"),
                          ToUtf16(u"<p:b xmlns:p='urn:\u20AC' c='\u00E4'>\u00E4\u20AC\U0001F600&#13;\r\n</p:b>"),
                          ToUtf16(u"</a>"));
}

TEST(XmlDocument, AnElementMaySpanManyChunks)
{
    const CTempDir dir;
    const std::string strLong(3 * s_nChunk + 17, 'n');
    WriteFileBytes(dir.PathOf("a.xml"), "<a b='" + strLong + "'><!--" + strLong + "--><" + strLong + "/></a>");
    CXmlDocument document;
    LoadOverlapped(document, dir.NameOf("a.xml"));
    EXPECT_EQ(strLong.size(), document.GetDocumentElement()->GetAttributes()[0]->GetValue().size());
    EXPECT_EQ(strLong.size(), document.GetDocumentElement()->GetFirstElement()->GetLocalName().size());
}

TEST(XmlDocument, TokensOfManyChunksLoadWhateverComesBehindThem)
{
    const CTempDir dir;
    // Lengths at which the last chunks come before, with and after the moment when the parser looks at the token again.
    for (const std::size_t nChunks : {2u, 3u, 4u, 5u, 7u, 8u, 9u, 31u, 32u, 33u})
    {
        SCOPED_TRACE(nChunks);
        const std::string strLong(nChunks * s_nChunk - 100, 'n');
        WriteFileBytes(dir.PathOf("a.xml"),
                       "<a><!--" + strLong + "--><b c='" + strLong + "'>text</b><?p " + strLong + "?>more</a>");
        CXmlDocument document;
        LoadOverlapped(document, dir.NameOf("a.xml"));
        CXmlElement* const pChild = document.GetDocumentElement()->GetFirstElement();
        EXPECT_EQ(strLong.size(), pChild->GetAttribute(L"c", L"").size());
        EXPECT_TEXT(L"text", pChild->GetText());
        EXPECT_TEXT(L"more", document.GetDocumentElement()->GetText());
        WriteFileBytes(dir.PathOf("a.xml"), "<a>\n<!--" + strLong + "-->\n</b>");
        ExpectThrows<CQvException>(L"mismatched tag at line 3", [&] { LoadOverlapped(document, dir.NameOf("a.xml")); });
        WriteFileBytes(dir.PathOf("a.xml"), "<a>\n<!--" + strLong);
        ExpectThrows<CQvException>(L"unclosed token at line 2", [&] { LoadOverlapped(document, dir.NameOf("a.xml")); });
    }
}

// --- Failures of file operations ------------------------------------------------------------------------------------

struct SFaultRow
{
    const char* lpcWhat;
    bool bOverlapped;
    /// Length of the document in bytes.
    std::size_t nBytes;
    Platform::EFileOperation eOperation;
    /// Which call of the operation fails, counted from 0.
    int nth;
    std::uint32_t dwError;
    /// The message, `%` standing for the file name; null where the load succeeds.
    const wchar_t* lpctMessage;
};

const SFaultRow s_faultRows[] = {
    {"opening", false, 100, Platform::FileOperation_Open, 0, 32, L"Failed to open the file [%] Error [0x00000020]"},
    {"the size", false, 100, Platform::FileOperation_Size, 0, 6,
     L"Failed to get the size of the file [%] Error [0x00000006]"},
    {"reading", false, 100, Platform::FileOperation_Read, 0, 23,
     L"Failed to read the contents of the file [%] Error [0x00000017]"},
    {"closing", false, 100, Platform::FileOperation_Close, 0, 6, nullptr},
    {"opening", true, 100, Platform::FileOperation_Open, 0, 32, L"Failed to open the file [%] Error [0x00000020]"},
    {"the event, whose null handle is no failure", true, 3 * s_nChunk, Platform::FileOperation_CreateEvent, 0, 8,
     nullptr},
    {"the first read", true, 100, Platform::FileOperation_Read, 0, 23,
     L"Failed to read the contents of the file. Error [0x00000017]"},
    {"the first read, at the end", true, 100, Platform::FileOperation_Read, 0, 38, L"no element found at line 1"},
    {"the second read", true, 2 * s_nChunk, Platform::FileOperation_Read, 1, 23,
     L"Failed to read the contents of the file. Error [0x00000017]"},
    {"the second read, at the end", true, 2 * s_nChunk, Platform::FileOperation_Read, 1, 38,
     L"no element found at line 1"},
    {"the read behind the last chunk", true, s_nChunk, Platform::FileOperation_Read, 1, 38, nullptr},
    {"the read behind the last chunk", true, s_nChunk, Platform::FileOperation_Read, 1, 23,
     L"Failed to read the contents of the file. Error [0x00000017]"},
    {"the first result, which ends the file", true, 100, Platform::FileOperation_Result, 0, 23,
     L"no element found at line 1"},
    {"the first result, turned around", true, 100, Platform::FileOperation_Result, 0, 38,
     L"Failed to read the contents of the file [%] Error [0x00000026]"},
    {"the second result, which ends the file", true, 2 * s_nChunk, Platform::FileOperation_Result, 1, 23,
     L"no element found at line 1"},
    {"the second result, turned around", true, 2 * s_nChunk, Platform::FileOperation_Result, 1, 38,
     L"Failed to read the contents of the file. Error [0x00000026]"},
    {"the result behind the last chunk, which ends the file", true, s_nChunk, Platform::FileOperation_Result, 1, 23,
     nullptr},
    {"the result behind the last chunk, turned around", true, s_nChunk, Platform::FileOperation_Result, 1, 38,
     L"Failed to read the contents of the file. Error [0x00000026]"},
    {"closing the file", true, 2 * s_nChunk, Platform::FileOperation_Close, 0, 6, nullptr},
    {"closing the event", true, 2 * s_nChunk, Platform::FileOperation_Close, 1, 6, nullptr},
};

TEST(XmlDocument, FailuresOfFileOperationsEndAsTold)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("a.xml");
    const std::size_t nOpenFiles = CountOpenFiles();
    for (const SFaultRow& row : s_faultRows)
    {
        SCOPED_TRACE(std::string(row.lpcWhat) + (row.bOverlapped ? ", overlapped, error " : ", error ") +
                     std::to_string(row.dwError));
        WriteFileBytes(dir.PathOf("a.xml"), MakeDocument(row.nBytes));
        CXmlDocument document;
        const CFileFault fault(row.eOperation, row.nth, row.dwError);
        const auto Load = [&]
        {
            row.bOverlapped ? LoadOverlapped(document, strName) : document.Load(strName.c_str());
        };
        if (row.lpctMessage == nullptr)
        {
            EXPECT_NO_THROW(Load());
            EXPECT_EQ(row.nBytes - 7, document.GetDocumentElement()->GetText().size());
        }
        else
        {
            std::wstring strMessage = row.lpctMessage;
            const std::size_t nName = strMessage.find(L'%');
            if (nName != std::wstring::npos)
                strMessage.replace(nName, 1, strName);
            ExpectThrows<CQvException>(strMessage, Load);
            EXPECT_EQ(nullptr, document.GetDocumentElement());
        }
        EXPECT_TRUE(fault.WasMet());
        EXPECT_EQ(nOpenFiles, CountOpenFiles());
    }
}

std::filesystem::path s_shrinkingFile;

// Windows keeps everybody from writing to the file, so that it is read whole there.
TEST(XmlDocument, AFileThatShrinksWhileItIsReadFails)
{
    const CTempDir dir;
    s_shrinkingFile = dir.PathOf("a.xml");
    WriteFileBytes(s_shrinkingFile, MakeDocument(100));
    Platform::SetFileFault(
        [](Platform::EFileOperation eOperation)
        {
            std::error_code error;
            if (eOperation == Platform::FileOperation_Read)
                std::filesystem::resize_file(s_shrinkingFile, 50, error);
            return Platform::Error_Success;
        });
    CXmlDocument document;
    std::wstring strMessage;
    try
    {
        document.Load(dir.NameOf("a.xml").c_str());
    }
    catch (const CQvException& exception)
    {
        strMessage = exception.GetMessageW();
    }
    Platform::SetFileFault(nullptr);
#if defined(_WIN32)
    EXPECT_TEXT(L"", strMessage);
    EXPECT_EQ(MakeDocument(100), QvTest::ReadFileBytes(s_shrinkingFile));
#else
    EXPECT_EQ(0u, strMessage.find(L"Failed to read the contents of the file [" + dir.NameOf("a.xml") + L"] Error [0x"))
        << QvTest::Show(strMessage);
#endif
}

TEST(XmlDocument, WhatTheFilterThrowsDuringAnOverlappedLoadArrivesAsAPlainException)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("a.xml"), "<a><b/>" + std::string(5 * s_nChunk, 'x') + "</a>");
    const std::size_t nOpenFiles = CountOpenFiles();
    const auto elements = CountInstances(L"CXmlElement");
    CXmlDocument document([](CXmlElement*) -> bool
                          { throw QvXmlLib9::CQvInvalidStateException(L"outer", CQvException(L"inner")); });
    ExpectThrows<CQvException>(L"outer\ninner", [&] { LoadOverlapped(document, dir.NameOf("a.xml")); });
    EXPECT_EQ(nullptr, document.GetDocumentElement());
    EXPECT_EQ(nOpenFiles, CountOpenFiles());
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(XmlDocument, WhatIsNotOfTheLibraryPassesAnOverlappedLoadUnchanged)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("a.xml"), "<a><b/>" + std::string(5 * s_nChunk, 'x') + "</a>");
    const std::size_t nOpenFiles = CountOpenFiles();
    CXmlDocument document([](CXmlElement*) -> bool { throw 42; });
    EXPECT_THROW(LoadOverlapped(document, dir.NameOf("a.xml")), int);
    EXPECT_EQ(nullptr, document.GetDocumentElement());
    EXPECT_EQ(nOpenFiles, CountOpenFiles());
}

TEST(XmlDocument, ABrokenFileIsClosedWhileItsNextChunkIsUnderWay)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("a.xml"), "<a></b>" + std::string(5 * s_nChunk, 'x'));
    const std::size_t nOpenFiles = CountOpenFiles();
    CXmlDocument document;
    ExpectThrows<CQvException>(L"mismatched tag at line 1", [&] { LoadOverlapped(document, dir.NameOf("a.xml")); });
    EXPECT_EQ(nOpenFiles, CountOpenFiles());
    document.LoadXml("<a/>");
    EXPECT_TEXT(L"a", Outline(document.GetDocumentElement()));
}

} // namespace
