#include "tests/support/Files.h"
#include "tests/support/Process.h"
#include "tests/support/ToolRun.h"

#include "tools/quiver-fi/InfosetSource.h"
#include "tools/quiver-fi/Options.h"
#include "tools/quiver-fi/ValueType.h"
#include "tools/quiver-fi/XmlNames.h"

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/QvZip.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <sstream>
#include <streambuf>

using namespace QvTest;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace
{

std::string Encode(const std::string& strXml, std::vector<std::string> options = {})
{
    const SToolRun run = PipeThrough("encode", strXml, std::move(options));
    EXPECT_EQ(run.nStatus, 0) << run.strErr;
    return run.strOut;
}

std::string Decode(const std::string& strDocument,
                   std::vector<std::string> options = {"--no-format", "--no-declaration"})
{
    const SToolRun run = PipeThrough("decode", strDocument, std::move(options));
    EXPECT_EQ(run.nStatus, 0) << run.strErr;
    return run.strOut;
}

std::string Inspect(const std::string& strDocument, std::vector<std::string> options = {})
{
    const SToolRun run = PipeThrough("inspect", strDocument, std::move(options));
    EXPECT_EQ(run.nStatus, 0) << run.strErr;
    return run.strOut;
}

std::string GZip(const std::string& strBytes)
{
    std::string strCopy = strBytes;
    QvXmlLib9::CBinaryData data(reinterpret_cast<unsigned char*>(strCopy.data()),
                                static_cast<unsigned long>(strCopy.size()), false);
    QvXmlLib9::CQvZip::Compress(data, QvXmlLib9::Compression_GZip);
    return {reinterpret_cast<const char*>(data.GetData()), data.GetLength()};
}

const std::string s_strLong(400, 'x');

} // namespace

// --- encode and decode ----------------------------------------------------------------------------------------------

TEST(QuiverFi, EncodesTheSmallestDocument)
{
    EXPECT_EQ(Encode("<a/>"), Octets("E0 00 00 01 00 38 F0 3C 00 61 FF"));
}

TEST(QuiverFi, EncodesAttributesAndText)
{
    EXPECT_EQ(Encode("<a x='1'>hi</a>"), Octets("E0 00 00 01 00 78 F0 3C 00 61 78 00 78 40 31 F0 91 68 69 FF"));
}

TEST(QuiverFi, GivesBackWhatItEncoded)
{
    for (const char* const lpcXml :
         {"<a/>", "<a x=\"1\" y=\"\">text</a>", "<a><b><c/></b><b>1</b></a>", "<a xmlns=\"urn:a\"><b c=\"d\"/></a>",
          "<a xmlns=\"urn:a\" xmlns:ns1=\"urn:b\"><ns1:b ns1:c=\"d\"/></a>", "<ns1:a xmlns:ns1=\"urn:a\"><b/></ns1:a>",
          "<a xml:lang=\"en\">A &lt; B &amp; C</a>", "<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</a>",
          "<\xC3\xA9>1</\xC3\xA9>", "<ns1:a xmlns:ns1=\"urn:x&amp;y&lt;&quot;\"><b/></ns1:a>", "<a b=\"1&#xA;2\"/>",
          "<xml:a/>"})
        EXPECT_EQ(Decode(Encode(lpcXml)), lpcXml);
}

namespace
{

const std::string s_strXsi = "http://www.w3.org/2001/XMLSchema-instance";

struct SPair
{
    std::string strXml;
    std::string strBack;
};

void ExpectBack(std::initializer_list<SPair> pairs)
{
    for (const SPair& pair : pairs)
    {
        const std::string strBack = Decode(Encode(pair.strXml));
        EXPECT_EQ(strBack, pair.strBack) << pair.strXml;
        EXPECT_EQ(Decode(Encode(strBack)), strBack) << "the second time differs";
    }
}

void ExpectRefused(const std::string& strCommand, const std::string& strInput, const std::string& strMessage)
{
    const SToolRun run = PipeThrough(strCommand, strInput);
    EXPECT_EQ(run.nStatus, 1) << strMessage;
    EXPECT_EQ(run.strErr, "quiver-fi: standard input: " + strMessage + "\n");
    EXPECT_EQ(run.strOut, "");
}

} // namespace

TEST(QuiverFi, DeclaresEveryNamespaceOnTheRoot)
{
    ExpectBack({
        {"<a><p:b xmlns:p='urn:1'><p:c p:d=''/></p:b></a>", "<a xmlns:p=\"urn:1\"><p:b><p:c p:d=\"\"/></p:b></a>"},
        // One prefix, two namespaces, in nested and in sibling scopes.
        {"<a><p:b xmlns:p='urn:1'><p:c xmlns:p='urn:2' p:d=''/></p:b></a>",
         "<a xmlns:p=\"urn:1\" xmlns:ns1=\"urn:2\"><p:b><ns1:c ns1:d=\"\"/></p:b></a>"},
        {"<a><p:b xmlns:p='urn:1'/><p:b xmlns:p='urn:2'/></a>",
         "<a xmlns:p=\"urn:1\" xmlns:ns1=\"urn:2\"><p:b/><ns1:b/></a>"},
        // Generated prefixes keep clear of others.
        {"<a><ns1:b xmlns:ns1='urn:1'/><ns1:b xmlns:ns1='urn:2'/></a>",
         "<a xmlns:ns1=\"urn:1\" xmlns:ns2=\"urn:2\"><ns1:b/><ns2:b/></a>"},
        {"<a xmlns:p='http://www.w3.org/XML/1998/namespace2'><p:b p:c='1'/></a>",
         "<a xmlns:p=\"http://www.w3.org/XML/1998/namespace2\"><p:b p:c=\"1\"/></a>"},
    });
}

TEST(QuiverFi, KeepsTheDefaultNamespaceOfTheRootUnlessANameHasNone)
{
    ExpectBack({
        {"<p:a xmlns:p='urn:1'><p:b/></p:a>", "<p:a xmlns:p=\"urn:1\"><p:b/></p:a>"},
        {"<p:a xmlns:p='urn:1'><b/></p:a>", "<p:a xmlns:p=\"urn:1\"><b/></p:a>"},
        {"<a xmlns='urn:1'><b xmlns=''/></a>", "<ns1:a xmlns:ns1=\"urn:1\"><b/></ns1:a>"},
        {"<a xmlns='urn:1'><b xmlns='urn:2'/></a>", "<a xmlns=\"urn:1\" xmlns:ns1=\"urn:2\"><ns1:b/></a>"},
        {"<a xmlns='urn:1' xmlns:p='urn:1' p:b=''/>", "<a xmlns=\"urn:1\" xmlns:p=\"urn:1\" p:b=\"\"/>"},
        {"<p:a xmlns:p='urn:1' xmlns='urn:2'/>", "<p:a xmlns=\"urn:2\" xmlns:p=\"urn:1\"/>"},
        {"<a><b xmlns='urn:1'/></a>", "<a xmlns:ns1=\"urn:1\"><ns1:b/></a>"},
    });
}

TEST(QuiverFi, DeclaresThePrefixesOfTypes)
{
    const std::string strI = "xmlns:i='" + s_strXsi + "'";
    const std::string strBackI = "xmlns:i=\"" + s_strXsi + "\"";
    ExpectBack({
        {"<a " + strI + " xmlns:q='urn:q' i:type=' q:T '/>",
         "<a xmlns:q=\"urn:q\" " + strBackI + " i:type=\" q:T \"/>"},
        {"<a xmlns='urn:a' " + strI + " xmlns:q='urn:a' i:type='q:T'/>",
         "<a xmlns=\"urn:a\" xmlns:q=\"urn:a\" " + strBackI + " i:type=\"q:T\"/>"},
        {"<a xmlns='urn:a' " + strI + " i:type='T'/>", "<a xmlns=\"urn:a\" " + strBackI + " i:type=\"T\"/>"},
        // A type without a namespace keeps the default namespace away.
        {"<p:a xmlns:p='urn:a' xmlns='urn:a' " + strI + "><p:b xmlns='' i:type='T'/></p:a>",
         "<p:a " + strBackI + " xmlns:p=\"urn:a\"><p:b i:type=\"T\"/></p:a>"},
        // A type in another default namespace gets a prefix, and so does one whose prefix means something else.
        {"<a " + strI + "><p:b xmlns:p='urn:1' xmlns='urn:2' i:type='T'/></a>",
         "<a xmlns:ns1=\"urn:2\" " + strBackI + " xmlns:p=\"urn:1\"><p:b i:type=\"ns1:T\"/></a>"},
        {"<a " + strI + "><b xmlns:q='urn:1' i:type='q:T'/><b xmlns:q='urn:2' i:type=' q:T'/></a>",
         "<a xmlns:q=\"urn:1\" xmlns:ns1=\"urn:2\" " + strBackI + "><b i:type=\"q:T\"/><b i:type=\"ns1:T\"/></a>"},
        {"<a " + strI + " i:type='none:T'/>", "<a " + strBackI + " i:type=\"none:T\"/>"},
        {"<a " + strI + " i:type=''/>", "<a " + strBackI + " i:type=\"\"/>"},
    });
}

TEST(QuiverFi, DeclaresThePrefixesOfNamesInValues)
{
    ExpectBack({
        {"<a xmlns:p='urn:1'>p:T</a>", "<a xmlns:p=\"urn:1\">p:T</a>"},
        {"<a><b xmlns:p='urn:1' c='/p:x/p:y'/></a>", "<a xmlns:p=\"urn:1\"><b c=\"/p:x/p:y\"/></a>"},
        // The first declaration of the prefix must give way to the one that a value needs.
        {"<a><p:b xmlns:p='urn:1'/><b xmlns:p='urn:2'>(p:T)</b></a>",
         "<a xmlns:p=\"urn:2\" xmlns:ns1=\"urn:1\"><ns1:b/><b>(p:T)</b></a>"},
        {"<a xmlns='urn:1' xmlns:p='urn:1'><b>p:T</b></a>", "<a xmlns=\"urn:1\" xmlns:p=\"urn:1\"><b>p:T</b></a>"},
        // What is bound to nothing means nothing.
        {"<a><b xmlns:p='urn:1'/><c>p:T 12:30 http://x</c><b xmlns:p='urn:2'/></a>",
         "<a xmlns:p=\"urn:1\"><b/><c>p:T 12:30 http://x</c><b/></a>"},
    });
}

TEST(QuiverFi, RefusesValuesWhosePrefixesCannotBeKept)
{
    ExpectRefused("encode", "<a><b xmlns:p='urn:1'>p:T</b><b xmlns:p='urn:2' c='p:T'/></a>",
                  "values of the document use the prefix \"p\" for two namespaces, \"urn:1\" and \"urn:2\"");
    ExpectRefused(
        "encode", "<a xmlns:p='urn:1' xmlns:q='urn:1' b='p:T q:T'/>",
        "values of the document use the prefixes \"p\" and \"q\" for one namespace, which can have only one of "
        "them here");
    ExpectRefused(
        "encode", "<a xmlns:p='http://www.w3.org/XML/1998/namespace2'>p:T</a>",
        "values of the document need the namespace \"http://www.w3.org/XML/1998/namespace2\", which cannot be "
        "declared here");
    // A prefix that goes on in the next piece of a text.
    const std::string strDeclarations = "E0 00 00 01 00 38 CF 00 70 00 75 CF 00 71 00 75 F0 3C 00 61 ";
    ExpectRefused(
        "encode", Octets(strDeclarations + "90 70 90 3A 90 20 90 71 90 3A FF"),
        "values of the document use the prefixes \"p\" and \"q\" for one namespace, which can have only one of "
        "them here");
    EXPECT_EQ(Decode(Octets(strDeclarations + "90 70 90 3A 90 20 90 71 90 3A FF")),
              "<a xmlns:p=\"u\" xmlns:q=\"u\">p: q:</a>");
}

TEST(QuiverFi, LeavesOutWhiteSpaceBetweenElements)
{
    EXPECT_EQ(Decode(Encode("<a>\n  <b> </b>\n  <c/>\n</a>")), "<a><b> </b><c/></a>");
}

TEST(QuiverFi, KeepsThePlacesOfTextAmongElements)
{
    ExpectBack({
        {"<a>1<b/>2<c>3<d/></c></a>", "<a>1<b/>2<c>3<d/></c></a>"},
        {"<a>1<b>2</b> <c/> 3</a>", "<a>1<b>2</b> <c/> 3</a>"},
        {"<a><b x='1'/>2<b><c/></b>3</a>", "<a><b x=\"1\"/>2<b><c/></b>3</a>"},
    });
    EXPECT_EQ(Decode(Encode("<a>1<b/>2<c><d/></c></a>"), {"--no-declaration"}), "<a>1<b/>2<c><d/></c></a>\n");
}

TEST(QuiverFi, HonoursThePreservationOfWhiteSpace)
{
    ExpectBack({
        {"<a xml:space='preserve'> <b> <c/></b> </a>", "<a xml:space=\"preserve\"> <b> <c/></b> </a>"},
        {"<a xml:space='preserve'> <b xml:space='default'> <c/></b> </a>",
         "<a xml:space=\"preserve\"> <b xml:space=\"default\"><c/></b> </a>"},
        {"<a> <b xml:space='preserve'> <c/></b> </a>", "<a><b xml:space=\"preserve\"> <c/></b></a>"},
    });
    EXPECT_EQ(Decode(Encode("<a><b xml:space='preserve'><c/></b></a>"), {"--no-declaration"}),
              "<a>\n\t<b xml:space=\"preserve\"><c/></b>\n</a>\n");
}

TEST(QuiverFi, KeepsCharactersThatReadersChange)
{
    for (const char* const lpcXml : {"<a b=\"1&#xD;2&#x9;3&#xA;4\">5&#xD;6\t7\n8</a>", "<a>]]&gt;\"'</a>",
                                     "<a b=\"&quot;'&gt;\"/>", "<a xmlns:p=\"u&#x9;&#xD;v\"><p:b/></a>"})
    {
        EXPECT_EQ(Decode(Encode(lpcXml)), lpcXml);
        EXPECT_EQ(Encode(Decode(Encode(lpcXml), {"--eol=crlf"})), Encode(lpcXml));
        EXPECT_EQ(Encode(Decode(Encode(lpcXml), {"--encoding=utf-16"})), Encode(lpcXml));
    }
}

TEST(QuiverFi, EncodesAndDecodesDocumentsOfAnyDepth)
{
    constexpr std::size_t nDepth = 300000;
    std::string strXml;
    for (std::size_t n = 0; n < nDepth; ++n)
        strXml += "<a>";
    for (std::size_t n = 0; n < nDepth; ++n)
        strXml += "</a>";
    const std::string strDocument = Encode(strXml);
    EXPECT_LT(strDocument.size(), nDepth * 2);
    EXPECT_THAT(Inspect(strDocument), EndsWith("  element name: 1\n  prefix: 1\n  namespace: 1\n  local name: 1\n"));
}

TEST(QuiverFi, WritesTheDeclarationThatIsAskedFor)
{
    struct SRow
    {
        const char* lpcKind;
        const char* lpcDeclaration;
    };
    for (const SRow& row :
         {SRow{"none", ""}, SRow{"plain", "<?xml encoding='finf'?>"},
          SRow{"yes", "<?xml encoding='finf' standalone='yes'?>"},
          SRow{"no", "<?xml encoding='finf' standalone='no'?>"}, SRow{"1.0", "<?xml version='1.0' encoding='finf'?>"},
          SRow{"1.0-yes", "<?xml version='1.0' encoding='finf' standalone='yes'?>"},
          SRow{"1.0-no", "<?xml version='1.0' encoding='finf' standalone='no'?>"},
          SRow{"1.1", "<?xml version='1.1' encoding='finf'?>"},
          SRow{"1.1-yes", "<?xml version='1.1' encoding='finf' standalone='yes'?>"},
          SRow{"1.1-no", "<?xml version='1.1' encoding='finf' standalone='no'?>"}})
    {
        const std::string strDocument = Encode("<a/>", {"--declaration", row.lpcKind});
        EXPECT_THAT(strDocument, StartsWith(row.lpcDeclaration + Octets("E0 00 00 01")));
        EXPECT_EQ(Decode(strDocument), "<a/>");
    }
    EXPECT_THAT(Encode("<a/>", {"--declaration=1.1"}), StartsWith("<?xml version='1.1'"));
}

TEST(QuiverFi, EntersValuesBelowTheGivenLengths)
{
    const std::string strXml = "<a x='123456' y='123456'><b>7890123</b><b>7890123</b></a>";
    EXPECT_THAT(Inspect(Encode(strXml)), Not(HasSubstr("attribute value: ")));
    const std::string strListing = Inspect(Encode(strXml, {"--attribute-max-length", "7", "--element-max-length=8"}));
    EXPECT_THAT(strListing, HasSubstr("= [1] \"123456\""));
    EXPECT_THAT(strListing, HasSubstr("text [1] \"7890123\""));
    EXPECT_THAT(Inspect(Encode("<a x='1'>2</a>", {"--attribute-max-length=0", "--element-max-length=0"})),
                Not(HasSubstr("attribute value: ")));
}

TEST(QuiverFi, WritesSuggestedValuesThatGiveTheSameText)
{
    const std::string strXml = "<a b=\"2024-05-06T07:08:09Z\" c=\"true\" d=\"-1234.5678\"><e>1234567</e><e>00FFEE11</e>"
                               "<e>007</e><e>+12345</e><e>P1Y</e><e>12345678901234567</e></a>";
    const std::string strDocument = Encode(strXml, {"--suggested-values"});
    EXPECT_LT(strDocument.size(), Encode(strXml).size());
    EXPECT_EQ(Decode(strDocument), strXml);
    const std::string strListing = Inspect(strDocument);
    for (const char* const lpcShown :
         {"alphabet 2 \"2024-05-06T07:08:09Z\"", "boolean \"true\"", "alphabet 1 \"-1234.5678\"", "int \"1234567\"",
          "hexadecimal \"00FFEE11\"", "long \"12345678901234567\"", "text +[2] \"P1Y\""})
        EXPECT_THAT(strListing, HasSubstr(lpcShown));
}

TEST(QuiverFi, CompressesAndDecompresses)
{
    const std::string strXml = "<a>" + s_strLong + "</a>";
    const std::string strDocument = Encode(strXml, {"--gzip"});
    EXPECT_THAT(strDocument, StartsWith("\x1F\x8B"));
    EXPECT_EQ(Decode(strDocument), strXml);
    EXPECT_EQ(Decode(Encode(GZip(strXml))), strXml);
    const std::string strText = Decode(strDocument, {"--gzip"});
    EXPECT_THAT(strText, StartsWith("\x1F\x8B"));
    EXPECT_EQ(Encode(strText), Encode(strXml));
    EXPECT_THAT(Inspect(strDocument), StartsWith("The document is compressed; offsets count in what it holds.\n0"));
}

TEST(QuiverFi, CompressesWhatDoesNotShrink)
{
    const std::string strDocument = Encode("<a/>", {"--gzip"});
    EXPECT_THAT(strDocument, StartsWith("\x1F\x8B"));
    EXPECT_EQ(Decode(strDocument), "<a/>");
    EXPECT_EQ(Encode(Decode(strDocument, {"--gzip"})), Encode("<a/>"));
}

TEST(QuiverFi, ReadsAllStreamsOfACompressedFile)
{
    const std::string strXml = "<a>" + s_strLong + "</a>";
    const std::string strTwo = GZip(strXml.substr(0, 200)) + GZip(strXml.substr(200));
    EXPECT_EQ(Decode(Encode(strTwo)), strXml);
    EXPECT_EQ(Decode(Encode(strTwo + std::string(512, '\0'))), strXml);
    ExpectRefused("encode", strTwo + "x", "something follows the compressed data, octets: 1");
}

TEST(QuiverFi, TellsDamagedCompression)
{
    const std::string strXml = "<a>" + s_strLong + "</a>";
    const std::string strGzip = GZip(strXml);
    std::string strChanged = strGzip;
    strChanged[strChanged.size() - 6] ^= 1;
    for (const char* const lpcCommand : {"encode", "decode", "inspect"})
    {
        for (const std::string& strDamaged :
             {strGzip.substr(0, 2), strGzip.substr(0, strGzip.size() - 1), strChanged, strGzip + strGzip.substr(0, 9)})
            ExpectRefused(lpcCommand, strDamaged, "the gzip stream is damaged or cut short");
        ExpectRefused(lpcCommand,
                      "\x78\x9C"
                      "abc",
                      "the zlib stream is damaged or cut short");
    }
}

TEST(QuiverFi, FormatsTextAsAskedFor)
{
    const std::string strDocument = Encode("<a><b>1</b></a>");
    EXPECT_EQ(Decode(strDocument, {}), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a>\n\t<b>1</b>\n</a>\n");
    EXPECT_EQ(Decode(strDocument, {"--eol=crlf"}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<a>\r\n\t<b>1</b>\r\n</a>\r\n");
    EXPECT_EQ(Decode(strDocument, {"--no-format", "--eol", "lf", "--encoding", "utf-8"}),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a><b>1</b></a>");
    EXPECT_EQ(Decode(Encode("<a/>"), {"--no-format", "--no-declaration", "--encoding=utf-16"}),
              Octets("FF FE 3C 00 61 00 2F 00 3E 00"));
}

TEST(QuiverFi, EscapesTextThatLooksLikeASection)
{
    EXPECT_EQ(Decode(Encode("<a>&lt;![CDATA[&amp;]]&gt;</a>")), "<a>&lt;![CDATA[&amp;]]&gt;</a>");
}

TEST(QuiverFi, ReadsAndWritesFiles)
{
    const CTempDir directory;
    const std::string strXml = directory.PathOf("in.xml").u8string();
    const std::string strDocument = directory.PathOf("out.fi").u8string();
    const std::string strBack = directory.PathOf("-out.xml").u8string();
    WriteFileBytes(strXml, "<a/>");
    EXPECT_EQ(RunTool({"encode", strXml, strDocument}).nStatus, 0);
    EXPECT_EQ(RunTool({"decode", "--no-format", "--no-declaration", "--", strDocument, strBack}).nStatus, 0);
    EXPECT_EQ(ReadFileBytes(strBack), "<a/>");
    EXPECT_THAT(RunTool({"inspect", strDocument}).strOut, StartsWith("00000000  E0 00 00 01"));
}

// --- bad input ------------------------------------------------------------------------------------------------------

TEST(QuiverFi, RefusesBadInputInOneLine)
{
    struct SRow
    {
        const char* lpcCommand;
        std::string strInput;
        const char* lpcMessage;
    };
    for (const SRow& row :
         {SRow{"encode", "", "XML Stream is empty!"}, SRow{"encode", "<a><b></a>", "mismatched tag at line 1"},
          SRow{"decode", "", "this is no Fast Infoset document"},
          SRow{"decode", "<a/>", "this is no Fast Infoset document"},
          SRow{"decode", Octets("E0 00 00 01"), "this is no Fast Infoset document"},
          SRow{"decode", Octets("E0 00 00 01 00"), "in the item at offset 00000005: Unexpected End of File."},
          SRow{"decode", Octets("E0 00 00 01 00 3C 00 61 C0"),
               "in the item at offset 00000008: Nothing that may stand in an element."},
          SRow{"decode", Octets("E0 00 00 01 00 3C 00 20 FF"),
               "the document holds the name \" \", which is none in XML"},
          SRow{"decode", Octets("E0 00 00 01 00 3C 00 61 80 01 FF"),
               "the document holds the character 1, which XML text cannot hold"},
          SRow{"inspect", "", "this is no Fast Infoset document"},
          SRow{"inspect", "<a/>", "this is no Fast Infoset document"}})
    {
        const SToolRun run = PipeThrough(row.lpcCommand, row.strInput);
        EXPECT_EQ(run.nStatus, 1);
        EXPECT_EQ(run.strErr, "quiver-fi: standard input: " + std::string(row.lpcMessage) + "\n");
        EXPECT_EQ(run.strOut, "");
    }
}

TEST(QuiverFi, RefusesInfosetsThatTextCannotHold)
{
    const std::string strXmlNamespace =
        " 23 68 74 74 70 3A 2F 2F 77 77 77 2E 77 33 2E 6F 72 67 2F 58 4D 4C 2F 31 39 39 "
        "38 2F 6E 61 6D 65 73 70 61 63 65 ";
    struct SRow
    {
        std::string strBody;
        const char* lpcMessage;
    };
    for (const SRow& row :
         {SRow{"3C 00 61 81 61 C3 FF", "the document holds text that is not UTF-8, behind \"a\""},
          SRow{"7C 00 61 78 00 78 00 FF FF", "the document holds text that is not UTF-8, behind \"\""},
          SRow{"3C 01 61 C3 FF", "the document holds text that is not UTF-8, behind \"a\""},
          SRow{"38 CF 01 70 FF 00 75 F0 3C 00 61 FF", "the document holds text that is not UTF-8, behind \"p\""},
          SRow{"38 CD 01 75 FF F0 3C 00 61 FF", "the document holds text that is not UTF-8, behind \"u\""},
          SRow{"3C 00 61 8C 25 FF 2A FF", "the document holds text that is not UTF-8, behind \"\""},
          SRow{"3C 00 61 82 00 61 00 62 FF", "the document holds the character 0, which XML text cannot hold"},
          SRow{"7C 00 61 78 00 78 00 00 FF", "the document holds the character 0, which XML text cannot hold"},
          SRow{"38 CD 01 75 00 F0 3C 00 61 FF", "the document holds the character 0, which XML text cannot hold"},
          SRow{"3C 01 61 00 FF", "the document holds the name \"a\\u0000\", which is none in XML"},
          SRow{"3C 00 61 85 D8 00 FF", "the document holds the character 55296, which XML text cannot hold"},
          SRow{"3C 00 61 84 61 FF", "the document holds half a unit of UTF-16"},
          SRow{"7C 00 61 78 00 78 40 31 00 40 32 FF", "the document holds an element with two attributes called x"},
          SRow{"7C 00 61 79 00 75 00 78 40 31 7B 00 70 81 81 40 32 FF",
               "the document holds an element with two attributes called x {u}"},
          SRow{"7C 00 61 78 04 78 6D 6C 6E 73 40 31 FF",
               "the document holds an attribute called xmlns, which XML takes for a declaration"},
          SRow{"38 CF 00 70 00 75 CF 80 00 76 F0 3C 00 61 FF", nullptr},
          SRow{"38 CF 00 70 00 75 CF 81 00 76 F0 3C 00 61 FF",
               "the document declares the prefix \"p\" twice on one element"},
          SRow{"38 CF 00 31 00 75 F0 3C 00 61 FF", "the document holds the name \"1\", which is none in XML"},
          SRow{"38 CF 04 78 6D 6C 6E 73 00 75 F0 3C 00 61 FF",
               "the document declares the prefix \"xmlns\" against the rules of XML"},
          SRow{"38 CF 80 00 75 F0 3C 00 61 FF", "the document declares the prefix \"xml\" against the rules of XML"},
          SRow{"38 CF 00 70" + strXmlNamespace + "F0 3C 00 61 FF",
               "the document declares the prefix \"p\" against the rules of XML"},
          SRow{"38 CF 80" + strXmlNamespace + "F0 3C 00 61 FF", ""},
          SRow{"3C 00 61 C8 00 65 FF", "the document holds a reference to an entity, but not its text"},
          SRow{"3C 00 61 8C 80 41 FF",
               "the document holds a value in the encoding algorithm 33, which is not known here"},
          SRow{"3C 00 61 88 01 1F 22 FF", "the document holds a text in an alphabet that ends ahead of its octets"},
          SRow{"3C 00 61 FF 00 00", "something follows the document, octets: 2"}})
    {
        SCOPED_TRACE(row.strBody);
        const std::string strDocument = Octets("E0 00 00 01 00 " + row.strBody);
        if (row.lpcMessage == nullptr)
            EXPECT_THAT(PipeThrough("decode", strDocument).strErr, HasSubstr("\"xml\" against the rules"));
        else if (row.lpcMessage[0] == '\0')
            EXPECT_EQ(Decode(strDocument), "<a/>");
        else
            ExpectRefused("decode", strDocument, row.lpcMessage);
    }
    ExpectRefused("decode", Octets("E0 00 00 01 00 3D 1C") + "http://www.w3.org/2000/xmlns/" + Octets("00 61 FF"),
                  "the document holds a name in the namespace of namespace declarations");
}

TEST(QuiverFi, ReadsWhatOtherMakersWrite)
{
    for (const auto& [strBody, strXml] : std::initializer_list<std::pair<std::string, std::string>>{
             // UTF-16; truth values in bits, in one octet and in two; a text in an alphabet.
             {"3C 00 61 86 01 00 62 20 AC FF", "<a>b\xE2\x82\xAC</a>"},
             {"3C 00 61 8C 14 2C FF", "<a>true true</a>"},
             {"3C 00 61 8C 15 68 80 FF", "<a>true false false false true false</a>"},
             {"3C 00 61 88 00 1F FF", "<a>1</a>"},
             // Prefixes in names that nothing declares.
             {"3F 00 70 00 75 00 61 FF", "<p:a xmlns:p=\"u\"/>"},
             {"3D 00 75 00 61 FF", "<a xmlns=\"u\"/>"},
             {"3F 00 31 00 75 00 61 FF", "<ns1:a xmlns:ns1=\"u\"/>"},
             // Comments and instructions among text.
             {"3C 00 61 80 31 E2 00 63 80 32 E1 00 70 00 71 80 33 FF", "<a>123</a>"},
             // A text from a table among others.
             {"3C 00 61 90 31 A0 A0 80 32 FF", "<a>1112</a>"}})
    {
        SCOPED_TRACE(strBody);
        const SToolRun run =
            PipeThrough("decode", Octets("E0 00 00 01 00 " + strBody), {"--no-format", "--no-declaration"});
        EXPECT_EQ(run.strOut, strXml) << run.strErr;
    }
    // Tables in front of the document.
    EXPECT_EQ(Decode(Octets("E0 00 00 01 20 00 88 00 00 61 00 00 74 3C 80 A0 FF")), "<a>t</a>");
}

TEST(QuiverFi, KeepsTheTextsOfADocumentApart)
{
    // Whether a text was seen before must not tell which ones are one: the second "p" lies where ":" follows the first.
    quiver_fi::CDocument document;
    std::istringstream in;
    std::ostringstream out, err;
    quiver_fi::ReadInfoset(Octets("E0 00 00 01 00 3C 00 61 90 70 A0 90 3A 90 71 FF"), document,
                           quiver_fi::SStreams{in, out, err});
    std::vector<std::string> texts;
    for (const quiver_fi::CDocument::SEvent& event : document.GetEvents())
        if (event.eKind == quiver_fi::CDocument::EKind::Text)
            texts.emplace_back(document.GetValue(event.range));
    EXPECT_EQ(texts, (std::vector<std::string>{"p", "p", ":", "q"}));
}

TEST(QuiverFi, TellsThatAnExternalVocabularyIsMissing)
{
    for (const char* const lpcCommand : {"encode", "decode"})
        ExpectRefused(lpcCommand, Octets("E0 00 00 01 20 10 00 01 75 3A 3C 00 61 FF"),
                      "the document needs the external vocabulary \"u:\", which is not known here");
}

TEST(QuiverFi, RefusesEntitiesOutsideTheDocument)
{
    ExpectRefused("encode", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]>\n<a>1&e;2</a>",
                  "the text of an entity at line 2 lies outside the document, and is not read");
    ExpectRefused("encode", "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a>1&e;2</a>",
                  "the text of an entity at line 2 lies outside the document, and is not read");
    for (const char* const lpcXml : {"<!DOCTYPE a SYSTEM 'a.dtd'><a/>", "<!DOCTYPE a PUBLIC 'a' 'a.dtd'><a/>",
                                     "<!DOCTYPE a [<!ENTITY % e SYSTEM 'e.dtd'>%e;]><a/>"})
    {
        const SToolRun run = PipeThrough("encode", lpcXml);
        EXPECT_EQ(run.nStatus, 0);
        EXPECT_EQ(run.strErr, "quiver-fi: warning: parts of the document type declaration lie outside the document and "
                              "are not read; their entities and default values are missing\n")
            << lpcXml;
    }
    EXPECT_EQ(PipeThrough("encode", "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'a.dtd'><a/>").strErr,
              "");
    EXPECT_EQ(Decode(Encode("<!DOCTYPE a [<!ENTITY e '1<b/>2'><!ATTLIST a c CDATA 'd'>]><a>&e;</a>")),
              "<a c=\"d\">1<b/>2</a>");
}

TEST(QuiverFi, RefusesMoreNamesThanThereAreNumbersFor)
{
    constexpr int nNames = 526368;
    const auto fnElement = [](const std::string& strName)
    {
        return "\x3C" + std::string(1, static_cast<char>(strName.size() - 1)) + strName;
    };
    std::string strDocument = Octets("E0 00 00 01 00") + fnElement("a");
    for (int n = 1; n < nNames; ++n)
        strDocument += fnElement("a" + std::to_string(n)) + '\xF0';
    EXPECT_EQ(PipeThrough("encode", strDocument + '\xFF').nStatus, 0);
    ExpectRefused("encode", strDocument + fnElement("b") + "\xF0\xFF",
                  "the document holds more than 526368 different names of elements");
}

TEST(QuiverFi, RefusesDocumentsThatRepeatWithoutEnd)
{
    // A name and a value of a megabyte each, which one octet and two stand for.
    const std::string strLong(1 << 20, 'x');
    const std::string strLength = Octets("60 00 0F FE BF");
    std::string strNames = Octets("E0 00 00 01 00 3C") + strLength + strLong;
    for (int n = 0; n < 4200; ++n)
        strNames += '\0';
    std::string strTexts = Octets("E0 00 00 01 00 3C 00 61 93 00 0F FE FD") + strLong;
    for (int n = 0; n < 4200; ++n)
        strTexts += '\xA0';
    for (const std::string& strDocument : {strNames, strTexts})
        ExpectRefused("decode", strDocument, "the document is longer than 4294967295 bytes as XML text");
    // Far fewer are no matter.
    EXPECT_EQ(Decode(strTexts.substr(0, strTexts.size() - 4190) + '\xFF').size(), 11 * strLong.size() + 7);
}

TEST(QuiverFi, EscapesControlsInMessages)
{
    EXPECT_EQ(RunTool({"encode", "no\x1B[2Jwhere\n\xFF\xC2\x85\xE2\x80\xAE\xC3\xA9\xF0\x9F\x98\x80", "-"}).strErr,
              "quiver-fi: cannot open no\\u001B[2Jwhere\\n\\xFF\\u0085\\u202E\xC3\xA9\xF0\x9F\x98\x80: No such file or "
              "directory\n");
    EXPECT_EQ(RunTool({"\x1B[2J"}).strErr, "quiver-fi: unknown command \\u001B[2J; --help tells more\n");
    EXPECT_THAT(RunTool({"encode", "\a", "\b", "\t"}).strErr, StartsWith("quiver-fi: encode needs two file names"));
    EXPECT_THAT(PipeThrough("decode", Octets("E0 00 00 01 00 3C 02 1B 5B 32 FF")).strErr,
                HasSubstr("the name \"\\u001B[2\", which is none in XML"));
}

namespace
{

/// A standard output that takes nothing, or nothing any more.
class CFullBuffer : public std::streambuf
{
protected:
    int_type overflow(int_type) override { return traits_type::eof(); }
    int sync() override { return -1; }
};

} // namespace

TEST(QuiverFi, SeesThatOutputCannotBeWritten)
{
    const std::string strDocument = Encode("<a/>");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                      {"--version"},
                                                      {"decode", "-", "-"},
                                                      {"encode", "-", "-"},
                                                      {"inspect", "-"}})
    {
        std::istringstream in(strDocument);
        CFullBuffer buffer;
        std::ostream out(&buffer);
        std::ostringstream err;
        EXPECT_EQ(quiver_fi::RunProgram(arguments, {in, out, err}), 1) << arguments.front();
        EXPECT_EQ(err.str(), "quiver-fi: cannot write the standard stream\n") << arguments.front();
    }
}

TEST(QuiverFi, SeesThatOutputCannotBeWrittenAsAProcess)
{
    using EKind = QvTest::SOutput::EKind;
    const CTempDir directory;
    const std::string strErr = directory.PathOf("err").u8string();
    for (const auto& [strArgument, eKind] :
         {std::pair<std::string, EKind>("--help", EKind::Full), {"--version", EKind::Full}, {"--help", EKind::Closed}})
    {
        EXPECT_EQ(QvTest::RunProcess(QUIVER_FI_PROGRAM, {strArgument}, {eKind, {}}, {EKind::File, strErr}), 1)
            << strArgument;
#if defined(QUIVER_DIAGNOSTICS)
        // The report of the instances goes there too.
        EXPECT_THAT(ReadFileBytes(strErr), HasSubstr("quiver-fi: cannot write the standard stream")) << strArgument;
#else
        EXPECT_THAT(ReadFileBytes(strErr), MatchesRegex("quiver-fi: cannot write the standard stream\r?\n"))
            << strArgument;
#endif
    }
    EXPECT_EQ(QvTest::RunProcess(QUIVER_FI_PROGRAM, {"--version"}), 0);
}

TEST(QuiverFi, TakesFileNamesOfAllAlphabetsFromItsCommandLine)
{
    using EKind = QvTest::SOutput::EKind;
    const CTempDir directory;
    const std::string strName = "\xD0\xB7\xD0\xB0\xD0\xBA\xD0\xB0\xD0\xB7 \xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80";
    const std::string strXml = directory.PathOf(strName + ".xml").u8string();
    const std::string strInfoset = directory.PathOf(strName + ".finf").u8string();
    const std::string strOut = directory.PathOf("out").u8string();
    WriteFileBytes(directory.PathOf(strName + ".xml"), "<a>1</a>");
    EXPECT_EQ(QvTest::RunProcess(QUIVER_FI_PROGRAM, {"encode", strXml, strInfoset}), 0);
    EXPECT_EQ(ReadFileBytes(directory.PathOf(strName + ".finf")), PipeThrough("encode", "<a>1</a>").strOut);
    EXPECT_EQ(QvTest::RunProcess(QUIVER_FI_PROGRAM, {"decode", "--no-declaration", "--no-format", strInfoset, "-"},
                                 {EKind::File, strOut}),
              0);
    EXPECT_EQ(ReadFileBytes(strOut), "<a>1</a>");
    // What cannot be read is named in the same letters.
    const std::string strMissing = directory.PathOf(strName).u8string();
    EXPECT_EQ(QvTest::RunProcess(QUIVER_FI_PROGRAM, {"inspect", strMissing}, {}, {EKind::File, strOut}), 1);
    EXPECT_THAT(ReadFileBytes(strOut), HasSubstr("cannot open " + strMissing + ": "));
}

TEST(QuiverFi, TellsItsVersion)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--version"}, {"encode", "--version"}})
    {
        const SToolRun run = RunTool(arguments);
        EXPECT_EQ(run.nStatus, 0);
        EXPECT_EQ(run.strOut, "quiver-fi " QUIVER_VERSION "\n");
    }
    EXPECT_EQ(RunTool({"encode", "--", "--version", "-"}).nStatus, 1);
}

TEST(QuiverFi, NamesInItsHelpWhatIsNotKept)
{
    const std::string strHelp = RunTool({"--help"}).strOut;
    for (const char* const lpcText :
         {"Comments, processing instructions", "CDATA", "document type declaration", "White space among", "encoding",
          "xml:space=\"preserve\"", "prefix", "empty element", "references", "Tabs, carriage returns and line feeds"})
        EXPECT_THAT(strHelp, HasSubstr(lpcText));
}

TEST(QuiverFi, NamesFilesThatCannotBeUsed)
{
    const CTempDir directory;
    const std::string strMissing = directory.PathOf("missing").u8string();
    const std::string strNowhere = directory.PathOf("no/where").u8string();
    SToolRun run = RunTool({"encode", strMissing, "-"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.strErr, "quiver-fi: cannot open " + strMissing + ": No such file or directory\n");
    run = RunTool({"encode", "-", strNowhere}, "<a/>");
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.strErr, "quiver-fi: cannot create " + strNowhere + ": No such file or directory\n");
}

TEST(QuiverFi, LeavesTheOutputFileAloneIfTheInputIsBad)
{
    const CTempDir directory;
    const std::string strOutput = directory.PathOf("out").u8string();
    WriteFileBytes(strOutput, "before");
    EXPECT_EQ(RunTool({"encode", "-", strOutput}, "<a>").nStatus, 1);
    EXPECT_EQ(ReadFileBytes(strOutput), "before");
}

TEST(QuiverFi, RefusesCommandLinesInOneLine)
{
    struct SRow
    {
        std::vector<std::string> arguments;
        const char* lpcMessage;
    };
    for (const SRow& row :
         {SRow{{}, "a command is needed: encode, decode or inspect"}, SRow{{"pack"}, "unknown command pack"},
          SRow{{"encode", "a"}, "encode needs two file names"},
          SRow{{"inspect", "a", "b"}, "inspect needs one file name"},
          SRow{{"inspect", "--gzip", "a"}, "inspect has no option --gzip"},
          SRow{{"encode", "--declaration"}, "--declaration needs a value"},
          SRow{{"encode", "--declaration=2", "-", "-"}, "--declaration does not take the value 2"},
          SRow{{"encode", "--gzip=1", "-", "-"}, "--gzip takes no value"},
          SRow{{"encode", "--element-max-length=-1", "-", "-"}, "--element-max-length does not take the value -1"},
          SRow{{"encode", "--attribute-max-length=4294967296", "-", "-"},
               "--attribute-max-length does not take the value 4294967296"},
          SRow{{"decode", "--encoding=latin", "-", "-"}, "--encoding does not take the value latin"},
          SRow{{"decode", "--eol=cr", "-", "-"}, "--eol does not take the value cr"}})
    {
        const SToolRun run = RunTool(row.arguments);
        EXPECT_EQ(run.nStatus, 2);
        EXPECT_EQ(run.strErr, "quiver-fi: " + std::string(row.lpcMessage) + "; --help tells more\n");
    }
}

TEST(QuiverFi, TellsAboutEveryOption)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"}, {"encode", "-h"}})
    {
        const SToolRun run = RunTool(arguments);
        EXPECT_EQ(run.nStatus, 0);
        for (const char* const lpcOption :
             {"--declaration", "--attribute-max-length", "--element-max-length", "--suggested-values", "--gzip",
              "--encoding", "--eol", "--no-format", "--no-declaration", "--full"})
            EXPECT_THAT(run.strOut, HasSubstr(std::string("\n  ") + lpcOption));
    }
}

// --- inspect --------------------------------------------------------------------------------------------------------

TEST(QuiverFi, ListsEveryOctetOnce)
{
    EXPECT_EQ(Inspect(Encode("<a xmlns='urn:a' x='1' y=''><b>hi</b><b>hi</b><c>longer text</c></a>")),
              "00000000  E0 00 00 01              identification, version 1\n"
              "00000004  00                       no optional components\n"
              "00000005  78                       element with namespaces\n"
              "00000006  CD 04 75 72 6E 3A 61       declaration, namespace +[2] \"urn:a\"\n"
              "0000000D  F0                         end of declarations\n"
              "0000000E  3D 81 00 61                its name +[1] a {urn:a} (local name +[1])\n"
              "00000012  78 00 78 40 31             attribute +[1] x (local name +[2]) = +[1] \"1\"\n"
              "00000017  78 00 79 FF                attribute +[2] y (local name +[3]) = \"\"\n"
              "0000001B  F0                         end of attributes\n"
              "0000001C  3D 81 00 62                element +[2] b {urn:a} (local name +[4])\n"
              "00000020  91 68 69                     text +[1] \"hi\"\n"
              "00000023  F0                         end of b\n"
              "00000024  01                         element [2] b {urn:a}\n"
              "00000025  A0                           text [1] \"hi\"\n"
              "00000026  F0                         end of b\n"
              "00000027  3D 81 00 63                element +[3] c {urn:a} (local name +[5])\n"
              "0000002B  82 08 6C 6F 6E 67 65 ..      text \"longer text\"\n"
              "00000038  FF                       end of c, end of a\n"
              "00000039  F0                       end of the document\n"
              "\n"
              "Tables at the end:\n"
              "  element name: 3\n"
              "  attribute name: 2\n"
              "  prefix: 1\n"
              "  namespace: 2\n"
              "  local name: 5\n"
              "  attribute value: 1\n"
              "  text: 1\n");
}

TEST(QuiverFi, ListsWhatTheWriterNeverProduces)
{
    const std::string strListing =
        Inspect(Octets("E0 00 00 01 7F"
                       " 00 00 69 01 64 64"                      // additional data
                       " 0F FF"                                  // initial vocabulary without an external one
                       " 00 01 61 62 00 00 7A"                   // alphabet, algorithm
                       " 00 00 70 00 00 6E 00 00 6C"             // prefix, namespace, local name
                       " 00 00 6F 00 00 75"                      // other name, other URI
                       " 00 00 76 00 00 74 00 00 73"             // attribute value, text, other string
                       " 00 03 81 81 80 00 00 80"                // element and attribute names
                       " C3 00 6D 80 00 77 F0"                   // a notation
                       " D1 00 65 80 00 78 81 F0"                // an unparsed entity
                       " 04 55 54 46 2D 38 01 02 31 2E 30"       // encoding scheme, standalone, version
                       " C6 80 E1 80 80 F0 E1 00 74 40 64 E2 80" // document type, instruction, comment
                       " 40 00 80 F0 A0 C8 80 E2 00 63"          // the root and its content
                       " 8C 7C 41 88 3C 54 FF 00"));
    for (const char* const lpcLine :
         {"optional components follow\n", "additional data, items: 1\n", "  \"i\", octets: 2\n", "initial vocabulary\n",
          "restricted alphabet +[16] \"ab\"", "encoding algorithm +[32] \"z\"", "prefix +[2] \"p\"",
          "namespace +[2] \"n\"", "local name +[1] \"l\"", "other name +[1] \"o\"", "other URI +[1] \"u\"",
          "attribute value +[1] \"v\"", "text +[1] \"t\"", "other string +[1] \"s\"", "element name +[1] p:l {n}",
          "attribute name +[1] l\n"})
        EXPECT_THAT(strListing, HasSubstr(lpcLine));
}

TEST(QuiverFi, CutsLongValuesUnlessTheyAreWantedWhole)
{
    const std::string strDocument = Encode("<a>" + s_strLong + "</a>");
    EXPECT_THAT(Inspect(strDocument), HasSubstr("text \"" + std::string(60, 'x') + "...\"\n"));
    EXPECT_THAT(Inspect(strDocument, {"--full"}), HasSubstr("text \"" + s_strLong + "\"\n"));
}

TEST(QuiverFi, CutsRepeatedValuesWhereACharacterBegins)
{
    std::string strValue;
    for (int n = 0; n < 400; ++n)
        strValue += "\xE2\x82\xAC";
    const std::string strListing =
        Inspect(Encode("<a><b>" + strValue + "</b><b>" + strValue + "</b></a>", {"--element-max-length=9999"}));
    EXPECT_THAT(strListing, HasSubstr("text [1] \"" + strValue.substr(0, 180) + "...\""));
    EXPECT_THAT(strListing, Not(HasSubstr("\xEF\xBF\xBD")));
}

TEST(QuiverFi, ShowsControlsInAValueByTheirNumbers)
{
    EXPECT_THAT(Inspect(Octets("E0 00 00 01 00 3C 00 61 82 08 01 0A 0D 09 22 5C E2 80 AE C2 85 FF")),
                HasSubstr("text \"\\u0001\\n\\r\\t\\\"\\\\\\u202E\\u0085\""));
}

TEST(QuiverFi, KnowsNoIndexesBehindAnExternalVocabulary)
{
    const std::string strListing = Inspect(Octets("E0 00 00 01 20 10 00 01 75 3A 3C 00 61 40 00 83 F0 A1 FF F0"));
    EXPECT_THAT(strListing, HasSubstr("external vocabulary \"u:\""));
    EXPECT_THAT(strListing, HasSubstr("element +[?] a (local name +[?])"));
    EXPECT_THAT(strListing, HasSubstr("element [1] ?\n"));
    EXPECT_THAT(strListing, HasSubstr("attribute [1] ? = [4]\n"));
    EXPECT_THAT(strListing, HasSubstr("text [2]\n"));
}

TEST(QuiverFi, TellsWhereAndWhyTheListingStops)
{
    struct SRow
    {
        const char* lpcBody;
        const char* lpcWhere;
        const char* lpcWhy;
    };
    for (const SRow& row :
         {SRow{"", "00000005", "Unexpected End of File."}, SRow{"3C 05 61", "00000005", "Unexpected End of File."},
          SRow{"00", "00000005", "There is no element name [1]; entries: 0."},
          SRow{"3C 00 61 01", "00000008", "There is no element name [2]; entries: 1."},
          SRow{"7C 00 61 00", "00000008", "There is no attribute name [1]; entries: 0."},
          SRow{"3C 00 61 A3", "00000008", "There is no text [4]; entries: 0."},
          SRow{"3C 81", "00000005", "There is no local name [2]; entries: 0."},
          SRow{"3E 00 61 00 62", "00000005", "Invalid QName type Prefix without Namespace."},
          SRow{"3C 00 61 C0", "00000008", "Nothing that may stand in an element."},
          SRow{"7C 00 61 80", "00000008", "Neither an attribute nor the end of attributes."},
          SRow{"38 80", "00000006", "Neither a namespace declaration nor their end."},
          SRow{"3C 00 61 F0 3C 00 61", "00000009", "A second root element."},
          SRow{"F0", "00000005", "Nothing that may precede the root element."},
          SRow{"3C 00 61 F0 C8", "00000009", "Neither an item nor the end of the document."},
          SRow{"C4 80", "00000006", "The document type declaration has no end."},
          SRow{"3C 00 61 8C 0A 00 00 00 01", "00000008", "Invalid value for SHORT byte encoding."},
          SRow{"3C 00 61 88 3C 00", "00000008", "There is no restricted alphabet [16]; entries: 0."},
          SRow{"30 FF FF FF", "00000005", "There is no element name [17303584]; entries: 0."},
          SRow{"38 F0 38", "00000007", "Invalid Encoding of integers 1 To 2^20 type  on the third bit of an octet."}})
    {
        const SToolRun run = PipeThrough("inspect", Octets(std::string("E0 00 00 01 00 ") + row.lpcBody));
        EXPECT_EQ(run.nStatus, 1);
        EXPECT_EQ(run.strErr, std::string("quiver-fi: standard input: in the item at offset ") + row.lpcWhere + ": " +
                                  row.lpcWhy + "\n");
        EXPECT_THAT(run.strOut, EndsWith(std::string(row.lpcWhere) + "  the listing stops in this item\n"));
    }
}

TEST(QuiverFi, SurvivesEveryDamagedOctet)
{
    const std::string strDocument =
        Encode("<a xmlns='urn:a' xmlns:p='urn:p' x='1'><p:b p:y='22'>true</p:b><p:b>true</p:b><c>12345</c></a>",
               {"--suggested-values", "--declaration=1.0"});
    std::size_t nRefused = 0;
    for (std::size_t n = 0; n < strDocument.size(); ++n)
    {
        for (const int nChange : {0x01, 0x10, 0x20, 0x40, 0x80, 0xFF})
        {
            std::string strDamaged = strDocument;
            strDamaged[n] = static_cast<char>(strDamaged[n] ^ nChange);
            nRefused += PipeThrough("inspect", strDamaged).nStatus == 1;
        }
        EXPECT_EQ(PipeThrough("inspect", strDocument.substr(0, n)).nStatus, 1);
    }
    EXPECT_GT(nRefused, strDocument.size());
}

TEST(QuiverFi, CountsWhatStandsBehindTheDocument)
{
    EXPECT_THAT(Inspect(Encode("<a/>") + "xyz"), HasSubstr("0000000B  78 79 7A                 behind the document, "
                                                           "octets: 3\n"));
}

TEST(QuiverFi, ColoursTheColumnsOfAListingOnATerminal)
{
    const std::string strDocument = Encode("<a><b>hi</b></a>");
    const auto Listed = [&](bool bColoured)
    {
        std::istringstream in(strDocument);
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(quiver_fi::RunProgram({"inspect", "-"}, {in, out, err, false, bColoured}), 0) << err.str();
        return out.str();
    };
    const std::string strColoured = Listed(true);
    EXPECT_THAT(strColoured, StartsWith("\x1B[36m00000000  \x1B[33mE0 00 00 01              \x1B[0m"
                                        "identification, version 1\n"));
    EXPECT_EQ(std::regex_replace(strColoured, std::regex("\x1B\\[[0-9]+m"), ""), Listed(false));
}

// --- parts ----------------------------------------------------------------------------------------------------------

TEST(QuiverFi, KnowsNamesWithoutColons)
{
    for (const wchar_t* const lpctName : {L"a", L"_", L"A-1.b", L"\xE9t\xE9", L"a\xB7", L"\xD800\xDC00"})
        EXPECT_TRUE(quiver_fi::IsNCName(lpctName)) << lpctName;
    for (const wchar_t* const lpctName : {L"", L"1", L"-a", L"a:b", L"a b", L"\xD7", L"a\xD800", L"\xB7"})
        EXPECT_FALSE(quiver_fi::IsNCName(lpctName)) << lpctName;
}

TEST(QuiverFi, FindsWhatTextCannotHold)
{
    EXPECT_EQ(quiver_fi::FindUnprintable(L"a\t\n\r \xFFFD\xD83D\xDE00"), std::wstring_view::npos);
    EXPECT_EQ(quiver_fi::FindUnprintable(L"ab\x1"), 2u);
    EXPECT_EQ(quiver_fi::FindUnprintable(L"\xD83D\xDE00\xDE00"), 2u);
    EXPECT_EQ(quiver_fi::FindUnprintable(L"\xFFFE"), 0u);
}

TEST(QuiverFi, ChoosesTheShortestFormOfAValue)
{
    using namespace QvXmlLib9;
    struct SRow
    {
        const wchar_t* lpctText;
        ItemType eType;
    };
    for (const SRow& row :
         {SRow{L"", ItemType_string}, SRow{L"1", ItemType_string}, SRow{L"12", ItemType_string},
          SRow{L"1234", ItemType_i2}, SRow{L"-32768", ItemType_i2}, SRow{L"32768", ItemType_decimal},
          SRow{L"1234567890", ItemType_i4}, SRow{L"-12345678901234567", ItemType_i8},
          SRow{L"99999999999999999999", ItemType_decimal}, SRow{L"true", ItemType_boolean},
          SRow{L"false", ItemType_boolean}, SRow{L"True", ItemType_string}, SRow{L"1.5e10", ItemType_string},
          SRow{L"10:00:00", ItemType_datetime}, SRow{L"ABCD", ItemType_hexBinary}, SRow{L"abcd", ItemType_string}})
        EXPECT_EQ(quiver_fi::ChooseValueType(row.lpctText), row.eType) << row.lpctText;
}
