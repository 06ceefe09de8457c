#include "tests/support/Files.h"
#include "tests/support/ToolRun.h"

#include "tools/quiver-fi/Options.h"
#include "tools/quiver-fi/Progress.h"
#include "tools/quiver-fi/ValueType.h"
#include "tools/quiver-fi/XmlNames.h"

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/QvZip.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace QvTest;
using testing::EndsWith;
using testing::HasSubstr;
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

TEST(QuiverFi, DeclaresEveryNamespaceOnTheRoot)
{
    EXPECT_EQ(Decode(Encode("<a><p:b xmlns:p='urn:1'><p:c xmlns:p='urn:2' p:d=''/></p:b></a>")),
              "<a xmlns:ns1=\"urn:1\" xmlns:ns2=\"urn:2\"><ns1:b><ns2:c ns2:d=\"\"/></ns1:b></a>");
}

TEST(QuiverFi, DeclaresTheNamespaceOfTheRootAsDefaultUnlessANameHasNone)
{
    EXPECT_EQ(Decode(Encode("<p:a xmlns:p='urn:1'><p:b/></p:a>")), "<a xmlns=\"urn:1\"><b/></a>");
    EXPECT_EQ(Decode(Encode("<p:a xmlns:p='urn:1'><b/></p:a>")), "<ns1:a xmlns:ns1=\"urn:1\"><b/></ns1:a>");
    EXPECT_EQ(Decode(Encode("<p:a xmlns:p='urn:1' p:b=''/>")), "<a xmlns=\"urn:1\" xmlns:ns1=\"urn:1\" ns1:b=\"\"/>");
}

TEST(QuiverFi, KeepsThePrefixesOfTypes)
{
    const std::string strXsi = "http://www.w3.org/2001/XMLSchema-instance";
    EXPECT_EQ(Decode(Encode("<a xmlns:i='" + strXsi + "' xmlns:q='urn:q' i:type=' q:T '/>")),
              "<a xmlns:xsi=\"" + strXsi + "\" xmlns:q=\"urn:q\" xsi:type=\"q:T\"/>");
    EXPECT_EQ(Decode(Encode("<a xmlns='urn:a' xmlns:i='" + strXsi + "' xmlns:q='urn:a' i:type='q:T'/>")),
              "<a xmlns=\"urn:a\" xmlns:xsi=\"" + strXsi + "\" xsi:type=\"T\"/>");
    EXPECT_EQ(Decode(Encode("<p:a xmlns:p='urn:a' xmlns:i='" + strXsi + "' i:type='T'/>")),
              "<ns1:a xmlns:xsi=\"" + strXsi + "\" xmlns:ns1=\"urn:a\" xsi:type=\"T\"/>");
    EXPECT_EQ(Decode(Encode("<a xmlns:i='" + strXsi + "' i:type='none:T'/>")),
              "<a xmlns:xsi=\"" + strXsi + "\" xsi:type=\"none:T\"/>");
}

TEST(QuiverFi, UsesXsForTheNamespaceOfSchemas)
{
    EXPECT_EQ(Decode(Encode("<a><p:b xmlns:p='http://www.w3.org/2001/XMLSchema'/></a>")),
              "<a xmlns:xs=\"http://www.w3.org/2001/XMLSchema\"><xs:b/></a>");
}

TEST(QuiverFi, DeclaresNamespacesThatBeginLikeTheOneOfXmlWhereTheyAreUsed)
{
    EXPECT_EQ(Decode(Encode("<a><p:b xmlns:p='http://www.w3.org/XML/1998/namespace2'/></a>")),
              "<a><AA:b xmlns:AA=\"http://www.w3.org/XML/1998/namespace2\"/></a>");
}

TEST(QuiverFi, LeavesOutWhiteSpaceBetweenElements)
{
    EXPECT_EQ(Decode(Encode("<a>\n  <b> </b>\n  <c/>\n</a>")), "<a><b> </b><c/></a>");
}

TEST(QuiverFi, PutsMixedTextAheadAndTellsSo)
{
    const SToolRun run = PipeThrough("encode", "<a>1<b/>2<c>3<d/></c></a>");
    EXPECT_EQ(run.nStatus, 0);
    EXPECT_EQ(run.strErr,
              "quiver-fi: warning: text among child elements goes ahead of them (elements with such text: 2, "
              "the first is <a>)\n");
    EXPECT_EQ(PipeThrough("decode", run.strOut, {"--no-format", "--no-declaration"}).strOut,
              "<a>12<b/><c>3<d/></c></a>");
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

TEST(QuiverFi, RefusesToCompressWhatDoesNotShrink)
{
    const SToolRun run = PipeThrough("encode", "<a/>", {"--gzip"});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.strErr, "quiver-fi: standard input: the result is too short to be compressed\n");
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

TEST(QuiverFi, LeavesOutCarriageReturns)
{
    EXPECT_EQ(Decode(Encode("<a b='1&#13;2'>3&#13;4</a>")), "<a b=\"12\">34</a>");
}

TEST(QuiverFi, ReadsAndWritesFiles)
{
    const CTempDir directory;
    const std::string strXml = directory.PathOf("in.xml").string();
    const std::string strDocument = directory.PathOf("out.fi").string();
    const std::string strBack = directory.PathOf("-out.xml").string();
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
          SRow{"decode", Octets("E0 00 00 01 00"), "Failed to parse FastInfoset. Unexpected End of File."},
          SRow{"decode", Octets("E0 00 00 01 00 3C 00 61 C0"),
               "Failed to parse FastInfoset. Invalid Encoding of Element type."},
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

TEST(QuiverFi, RefusesNamesInTheNamespaceOfDeclarations)
{
    const std::string strNamespace = "http://www.w3.org/2000/xmlns/";
    const SToolRun run = PipeThrough("decode", Octets("E0 00 00 01 00 3D 1C") + strNamespace + Octets("00 61 FF"));
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_THAT(run.strErr, HasSubstr("in the namespace of namespace declarations"));
}

TEST(QuiverFi, NamesFilesThatCannotBeUsed)
{
    const CTempDir directory;
    const std::string strMissing = directory.PathOf("missing").string();
    const std::string strNowhere = directory.PathOf("no/where").string();
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
    const std::string strOutput = directory.PathOf("out").string();
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

TEST(QuiverFi, EncodesDocumentsWhoseTypesNameNoNamespace)
{
    const std::string strXsi = "http://www.w3.org/2001/XMLSchema-instance";
    const std::string strDocument = Octets("E0 00 00 01 00 78 CF 00 71 01 00 75 F0 3C 00 61 79 28") + strXsi +
                                    Octets("03 74 79 70 65 42 71 3A 54 FF F0");
    EXPECT_THAT(Decode(strDocument), EndsWith("xsi:type=\"q:T\"/>"));
    EXPECT_THAT(Decode(Encode(strDocument)), EndsWith("xsi:type=\"q:T\"/>"));
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

// --- parts ----------------------------------------------------------------------------------------------------------

TEST(QuiverFi, ShowsProgressOnATerminalAfterASecond)
{
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const quiver_fi::SStreams streams{in, out, err, true};
    {
        quiver_fi::CProgress progress(streams, "writing", 10000);
        progress.Reach(5000);
        EXPECT_EQ(err.str(), "");
        std::this_thread::sleep_for(std::chrono::milliseconds(1100));
        progress.Reach(9500);
        EXPECT_EQ(err.str(), "\rquiver-fi: writing 95 %\x1B[K");
    }
    EXPECT_EQ(err.str(), "\rquiver-fi: writing 95 %\x1B[K\r\x1B[K");
}

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
