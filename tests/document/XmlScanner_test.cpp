#include "quiver/document/XmlScanner.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlByteRuns.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/document/XmlTreeBuilder.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using QvTest::CountAllInstances;
using QvTest::CountInstances;
using QvTest::ExpectThrows;
using QvTest::Outline;
using QvXmlLib9::CExpatReader;
using QvXmlLib9::CQvException;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlNodeStore;
using QvXmlLib9::CXmlScanner;
using QvXmlLib9::CXmlSerializationContext;
using QvXmlLib9::CXmlTreeBuilder;
using QvXmlLib9::SExpatOptions;
using QvXmlLib9::SPlainRuns;
using QvXmlLib9::SWideRuns;

constexpr const wchar_t* s_lpctGivenUp = L"(given up)";
constexpr const wchar_t* s_lpctRefused = L"(refused)";

/// A tree and its builder.
struct STree
{
    STree()
        : builder(store, pRoot, namespaces, nullptr)
    {
    }

    /// The tree and the prefixes on one line.
    std::wstring Show() const
    {
        std::wstring strShown = Outline(pRoot);
        for (const auto& [strPrefix, strURI] : namespaces)
            strShown += L" " + strPrefix + L":=" + strURI;
        return strShown;
    }

    CXmlNodeStore store{nullptr};
    CXmlElement* pRoot = nullptr;
    CXmlTreeBuilder::CNamespaces namespaces;
    CXmlTreeBuilder builder;
};

enum class ECode
{
    Wide,
    Plain
};

/// What the scanner makes of the bytes. They have no terminator, so that a memory checker sees what is read behind them.
std::wstring Scan(std::string_view document, ECode eCode, const SExpatOptions& options = {true, false})
{
    const std::vector<char> bytes(document.begin(), document.end());
    STree tree;
    CXmlScanner scanner(tree.builder, options);
    if (eCode == ECode::Plain)
        scanner.UsePlainCode();
    return scanner.ScanBytes({bytes.data(), bytes.size()}) ? tree.Show() : s_lpctGivenUp;
}

std::wstring AskExpat(std::string_view document, const SExpatOptions& options = {true, false})
{
    STree tree;
    CExpatReader reader(tree.builder, options);
    reader.Init();
    try
    {
        reader.Parse(document, true);
    }
    catch (const CQvException&)
    {
        return s_lpctRefused;
    }
    return tree.Show();
}

// --- Runs of bytes --------------------------------------------------------------------------------------------------

template <class Find>
void CompareRuns(Find wide, Find plain)
{
    for (int nByte = 0; nByte < 256; ++nByte)
    {
        for (std::size_t nLength = 1; nLength < 40; ++nLength)
        {
            // Two of them, so that the first is found.
            std::vector<char> bytes(nLength, 'x');
            bytes[nLength / 2] = bytes.back() = static_cast<char>(nByte);
            const char* const p = bytes.data();
            ASSERT_EQ(plain(p, p + nLength), wide(p, p + nLength)) << nByte << " of " << nLength;
        }
    }
}

TEST(XmlScanner, WideInstructionsFindWhatPlainCodeFinds)
{
    CompareRuns(SWideRuns::FindTextEnd, SPlainRuns::FindTextEnd);
    CompareRuns(SWideRuns::FindValueEnd, SPlainRuns::FindValueEnd);
}

TEST(XmlScanner, RunsEndAtWhatNeedsALook)
{
    std::string strTextEnds;
    std::string strValueEnds;
    for (char c = 0; c < 127; ++c)
    {
        if (SPlainRuns::FindTextEnd(&c, &c + 1) == &c)
            strTextEnds += c;
        if (SPlainRuns::FindValueEnd(&c, &c + 1) == &c)
            strValueEnds += c;
    }
    std::string strControls;
    for (char c = 0; c < 0x20; ++c)
        strControls += c;
    EXPECT_EQ(strControls + "\"&'<", strValueEnds);
    strControls.erase(9, 2);
    EXPECT_EQ(strControls + "&<]", strTextEnds);
}

// --- Documents ------------------------------------------------------------------------------------------------------

const char* const s_scanned[] = {
    "<a/>",
    "<a></a>",
    "<a ></a >",
    "<a\n/>\r\n\t ",
    "\xEF\xBB\xBF<a/>",
    "\xEF\xBB\xBF<?xml version='1.0'?><a/>",
    "<?xml version=\"1.0\"?><a/>",
    "<?xml version = '1.0'\n encoding=\"utf-8\" ?>\n<a/>",
    "<?xml version='1.0' encoding='UTF-8' standalone='no'?><a/>",
    "<?xml version='1.0' standalone='yes' ?><a/>",
    " \n<!-- a --><?b?><?c d ? > ?>\r\n<a/> <!----> <?xm?><?xmll?><!-- - -->",
    "<a>text</a>",
    "<a>x<b/>y<c>z</c> </a>",
    "<a>\n  <b>1</b>\n  <b>2</b>\n</a>",
    "<a>a text that is longer than any register<b/>and another one, of several pieces &amp; references<b/></a>",
    "<a>&lt;&gt;&amp;&quot;&apos;&#65;&#x42;&#x20AC;&#x1F600;&#x00041;</a>",
    "<a>&#x7F;&#x80;&#x7FF;&#x800;&#xD7FF;&#xE000;&#xFFFD;&#x10000;&#x10FFFF;</a>",
    "<a>&#13;</a>",
    "<a>x&#13;y&#xD;&#10;&#9;</a>",
    "<a>\r\nx\ry\r\rz\r</a>",
    "<a>x<!-- c -->y<?p?>z</a>",
    "<a>] ]] ]>]&gt; ]]&gt;</a>",
    "<a><![CDATA[]]></a>",
    "<a>x<![CDATA[<b>&amp;]]]]>y<![CDATA[]>\r\n\r]]]]]></a>",
    "<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\x7F\xC2\x80</a>",
    "<a b='' c=\"'\" d='\"' e = '1'\nf\t=\n'2'/>",
    "<a b=' x\ty\nz\r\nu\rv  '>\t</a>",
    "<a b='&#32;&#9;&#10;&#13;&lt;&amp;\xC3\xA4' c='x&gt;y' d='z'/>",
    "<a b='a value that is longer than any register' c='and one of several pieces &amp; references, just as long'/>",
    "<\xC3\xA4 \xC3\xB6='1'>\xC3\xBC</\xC3\xA4>",
    "<a xmlns='urn:x' b='1'><c xmlns=''/><d/></a>",
    "<x:a xmlns:x='urn:x' x:b='1' b='2'><x:c/></x:a>",
    "<x:a x:b='1' xmlns:x='urn:x' xmlns:y='urn:y' y:b='2'/>",
    "<a xmlns:x='urn:1'><x:b xmlns:x='urn:2'/><x:b/></a>",
    "<a><b xmlns='urn:x'/><b/><b xmlns='urn:x'/><b xmlns='urn:y'/></a>",
    "<a xml:lang='de'><xml:b/></a>",
    "<a xmlns='&#117;rn:&amp;\n'/>",
    "<xmlnsx xmlnsy='1'/>",
};

TEST(XmlScanner, MostDocumentsAreScannedAsExpatReadsThem)
{
    for (const char* const lpcXml : s_scanned)
    {
        SCOPED_TRACE(lpcXml);
        const std::wstring strExpected = AskExpat(lpcXml);
        EXPECT_NE(s_lpctRefused, strExpected);
        EXPECT_TEXT(strExpected, Scan(lpcXml, ECode::Wide));
        EXPECT_TEXT(strExpected, Scan(lpcXml, ECode::Plain));
    }
}

TEST(XmlScanner, OptionsAreThoseOfExpat)
{
    const char* const documents[] = {
        "<a:b:c xmlns='x' xmlns:y='z' :d='1' xmlns:a=''/>",
        "<a>x<![CDATA[\r\n<]]>y<![CDATA[]]></a>",
        "<a><![CDATA[]]></a>",
    };
    const SExpatOptions options{false, true};
    for (const char* const lpcXml : documents)
    {
        SCOPED_TRACE(lpcXml);
        const std::wstring strExpected = AskExpat(lpcXml, options);
        EXPECT_NE(s_lpctRefused, strExpected);
        EXPECT_TEXT(strExpected, Scan(lpcXml, ECode::Wide, options));
    }
}

/// What expat refuses, and what it is left to.
const char* const s_givenUp[] = {
    "",
    " ",
    "<",
    "<a",
    "<a>",
    "a",
    "</a>",
    "<a/><b/>",
    "<a/>x",
    "x<a/>",
    "<a/></a>",
    "<a/>&#32;",
    "&#32;<a/>",
    "<a/><![CDATA[]]>",
    "<a></b>",
    "<a></ab>",
    "<ab></a>",
    "<a><b></a></b>",
    "<a></a/>",
    "<a></ a>",
    "< a/>",
    "<a/ >",
    "<a>>",
    "<a><",
    "<a></",
    "<a></a",
    "<a/>\xEF\xBB\xBF>",
    "\xEF\xBB\xBF\xEF\xBB\xBF<a/>",
    // Other encodings, declarations that are not plain, document types.
    "<!DOCTYPE a><a/>",
    "<?xml version='1.1'?><a/>",
    "<?xml version='1.0' encoding='ISO-8859-1'?><a/>",
    "<?xml version='1.0' encoding='UTF-16'?><a/>",
    "<?xml encoding='UTF-8'?><a/>",
    "<?xml version='1.0\"?><a/>",
    "<?xml version='1.0'encoding='UTF-8'?><a/>",
    "<?xml version='1.0' encoding='UTF-8'standalone='no'?><a/>",
    "<?xml version='1.0' standalone='No'?><a/>",
    "<?xml version='1.0' standalone='no' encoding='UTF-8'?><a/>",
    "<?xml version='1.0'?",
    "<?xml version='1.0' ><a/>",
    "<?xml?><a/>",
    " <?xml version='1.0'?><a/>",
    "<?xml version='1.0'?><?xml version='1.0'?><a/>",
    "<?xml version>",
    "<?xml version=>",
    "<?xml version='1.0>",
    // Names.
    "<1/>",
    "<-a/>",
    "<a:/>",
    "<:a/>",
    "<a:b:c/>",
    "<\xC3\x97/>",
    "<a\xC3\x97/>",
    "<a =''/>",
    "<a b:=''/>",
    "<a 1=''/>",
    // Attributes.
    "<a b/>",
    "<a b=/>",
    "<a b=c/>",
    "<a b='c/>",
    "<a b='c\"/>",
    "<a b='<'/>",
    "<a b='&'/>",
    "<a b='&b;'/>",
    "<a b=''c=''/>",
    "<a b='' b=''/>",
    "<a b='\x01'/>",
    "<a b='\xFF'/>",
    "<a b=''/b>",
    "<a b='' =''/>",
    "<a b==''/>",
    "<a b='\xC3'/>",
    // Namespaces.
    "<x:a/>",
    "<a x:b=''/>",
    "<a xmlns:x=''/>",
    "<a xmlns:xmlns='u'/>",
    "<a xmlns:xml='u'/>",
    "<a xmlns:='u'/>",
    "<a xmlns:x='http://www.w3.org/XML/1998/namespace'/>",
    "<a xmlns='http://www.w3.org/2000/xmlns/'/>",
    "<a xmlns='http://www.w3.org/XML/1998/namespace'/>",
    "<a xmlns:x='u' xmlns:x='u'/>",
    "<a xmlns='u' xmlns='u'/>",
    "<a xmlns:x='u' xmlns:y='u' x:b='' y:b=''/>",
    "<a><x:b xmlns:x='u'/><x:b/></a>",
    "<xmlns:a/>",
    "<a xmlns='|'/>",
    "<xmlns:a xmlns:b='c'/>",
    // References.
    "<a>&</a>",
    "<a>&b;</a>",
    "<a>&amp</a>",
    "<a>&AMP;</a>",
    "<a>&;</a>",
    "<a>&#;</a>",
    "<a>&#x;</a>",
    "<a>&#X41;</a>",
    "<a>&#a;</a>",
    "<a>&#xG;</a>",
    "<a>&#0;</a>",
    "<a>&#1;</a>",
    "<a>&#x1F;</a>",
    "<a>&#xD800;</a>",
    "<a>&#xFFFE;</a>",
    "<a>&#x110000;</a>",
    "<a>&#4294967361;</a>",
    "<a>&#x100000041;</a>",
    "<a>&#65</a>",
    "<a>&#-1;</a>",
    "<a>& amp;</a>",
    // Text, comments, instructions.
    "<a>]]></a>",
    "<a>x]]]></a>",
    "<a>\x01</a>",
    "<a>\xC0\x80</a>",
    "<a>\xED\xA0\x80</a>",
    "<a>\xEF\xBF\xBF</a>",
    "<a>\xFF</a>",
    "<a>\xE4</a>",
    "<a><![CDATA[\x02]]></a>",
    "<a><![CDATA[]]</a>",
    "<a><![cdata[]]></a>",
    "<a><![CDATA[\xE4]]></a>",
    "<a><!-- -- --></a>",
    "<a><!----></a",
    "<a><!--></a>",
    "<a><!-- --->",
    "<a><!-\x01--></a>",
    "<a><!--\x01--></a>",
    "<a><!--\xFF--></a>",
    "<a><!a></a>",
    "<!--><a/>",
    "<a/><!--",
    "<a><?xml?></a>",
    "<a><?XML ?></a>",
    "<a><?xMl version='1.0'?></a>",
    "<a><?\?></a>",
    "<a><?b></a>",
    "<a><?b?c?></a>",
    "<a><?b \x01?></a>",
    "<a><? b?></a>",
    "<a><?b:c?></a>",
    "<a><?1?></a>",
};

TEST(XmlScanner, WhatItDoesNotKnowItGivesUp)
{
    for (const char* const lpcXml : s_givenUp)
    {
        SCOPED_TRACE(lpcXml);
        EXPECT_TEXT(s_lpctGivenUp, Scan(lpcXml, ECode::Wide));
        EXPECT_TEXT(s_lpctGivenUp, Scan(lpcXml, ECode::Plain));
    }
    EXPECT_TEXT(s_lpctGivenUp, Scan({"<a>\0</a>", 8}, ECode::Wide));
    EXPECT_TEXT(s_lpctGivenUp, Scan({"<a/>\0", 5}, ECode::Wide));
    EXPECT_TEXT(s_lpctGivenUp, Scan({"\0", 1}, ECode::Wide));
}

TEST(XmlScanner, VeryLongDocumentsAreLeftToExpat)
{
    // Pages that nobody touches take no memory.
    constexpr std::size_t nLength = 0x10000001;
    const std::unique_ptr<void, decltype(&std::free)> spBytes(std::calloc(nLength, 1), &std::free);
    ASSERT_NE(nullptr, spBytes);
    STree tree;
    CXmlScanner scanner(tree.builder, {true, false});
    EXPECT_FALSE(scanner.ScanBytes({static_cast<const char*>(spBytes.get()), nLength}));
}

/// Something of everything.
constexpr std::string_view s_svRich =
    "<?xml version='1.0' encoding=\"UTF-8\"?>\n<!-- c -->\r\n<o:r xmlns:o='urn:o' xmlns=\"urn:d\" o:i='1' "
    "i='&lt;\r\n2'>\n"
    " <item n='3'>text \xC3\xA4 &amp; &#x41; ]]&gt;</item>\r <o:item xmlns:o='urn:x' o:n='4'/><?p i?>\n"
    "<![CDATA[<x>]]> </o:r>\n<!--e-->";

TEST(XmlScanner, NoPieceOfADocumentIsTakenForTheWhole)
{
    EXPECT_NE(s_lpctGivenUp, Scan(s_svRich, ECode::Wide));
    const std::size_t nEnd = s_svRich.find("</o:r>") + 6;
    for (std::size_t nLength = 0; nLength < nEnd; ++nLength)
        EXPECT_TEXT(s_lpctGivenUp, Scan(s_svRich.substr(0, nLength), ECode::Wide));
}

TEST(XmlScanner, WhateverStandsInPlaceOfAByteExpatHasTheSameView)
{
    // The terminator is one of them.
    constexpr char bytes[] = "<>/=\"'&;:]!?- \n\raox1#\x01\x80\xC3\xFF|";
    int nScanned = 0;
    for (std::size_t nAt = 0; nAt < s_svRich.size(); ++nAt)
    {
        for (const char cByte : bytes)
        {
            std::string strDocument(s_svRich);
            strDocument[nAt] = cByte;
            const std::wstring strScanned = Scan(strDocument, ECode::Wide);
            ASSERT_EQ(strScanned, Scan(strDocument, ECode::Plain)) << strDocument;
            if (strScanned == s_lpctGivenUp)
                continue;
            ++nScanned;
            ASSERT_EQ(AskExpat(strDocument), strScanned) << strDocument;
        }
    }
    EXPECT_GT(nScanned, 1000);
}

TEST(XmlScanner, ManyAttributesAndPrefixesAreReadOrLeftToExpat)
{
    std::string strPlain = "<a";
    std::string strPrefixed = "<a xmlns:x='urn:x'";
    for (int n = 0; n < 3000; ++n)
    {
        strPlain += " b" + std::to_string(n) + "='" + std::to_string(n) + "'";
        strPrefixed += " x:b" + std::to_string(n) + "=''";
    }
    EXPECT_TEXT(AskExpat(strPlain + "/>"), Scan(strPlain + "/>", ECode::Wide));
    EXPECT_TEXT(s_lpctGivenUp, Scan(strPlain + " b7=''/>", ECode::Wide));
    EXPECT_TEXT(s_lpctGivenUp, Scan(strPrefixed + "/>", ECode::Wide));
}

TEST(XmlScanner, LongTextIsTheSame)
{
    std::string strText;
    while (strText.size() < 100000)
        strText += "A line of text,\n\xC3\xA4, ";
    for (const std::string& strXml : {"<a>" + strText + "</a>", "<a>" + strText + "<b/>&amp;" + strText + "</a>",
                                      "<a><![CDATA[" + strText + "]]></a>", "<a b='" + strText + "'/>"})
        EXPECT_TRUE(AskExpat(strXml) == Scan(strXml, ECode::Wide));
}

// --- Documents that are loaded --------------------------------------------------------------------------------------

std::wstring Load(const std::string& strXml)
{
    CXmlDocument document;
    document.LoadXml(strXml.c_str());
    return Outline(document.GetDocumentElement());
}

TEST(XmlScanner, TextOfTheLibraryIsScannedToo)
{
    STree tree;
    CXmlScanner scanner(tree.builder, {true, false});
    EXPECT_TRUE(scanner.ScanText("<?xml version='1.0' encoding='utf-16'?><a>\xC3\xA4\xF0\x9F\x98\x80</a>"));
    EXPECT_TEXT(L"a \"\xE4\xD83D\xDE00\"", tree.Show());
    for (const char* const lpcXml : {"<?xml version='1.0' encoding='UTF-8'?><a/>", "\xEF\xBB\xBF<a/>"})
    {
        STree other;
        EXPECT_FALSE(CXmlScanner(other.builder, {true, false}).ScanText(lpcXml));
    }
    CXmlDocument document;
    document.LoadXml(L"<?xml version='1.0' encoding='UTF-16'?><a>\xE4\xD83D\xDE00</a>");
    EXPECT_TEXT(L"a \"\xE4\xD83D\xDE00\"", Outline(document.GetDocumentElement()));
    ExpectThrows<CQvException>(L"encoding specified in XML declaration is incorrect at line 1",
                               [&] { document.LoadXml(L"<?xml version='1.0' encoding='UTF-8'?><a/>"); });
}

TEST(XmlScanner, RefusalsAreThoseOfExpat)
{
    ExpectThrows<CQvException>(L"mismatched tag at line 3", [] { Load("<a>\n<b>\n</a>"); });
    ExpectThrows<CQvException>(L"unclosed token at line 2", [] { Load("<a>\n<b"); });
    ExpectThrows<CQvException>(L"duplicate attribute at line 1",
                               [] { Load("<a xmlns:x='u' xmlns:y='u' x:b='' y:b=''/>"); });
}

TEST(XmlScanner, NothingIsLeftOfADocumentThatItGaveUp)
{
    // The entity is declared behind nothing, so all ahead of it is scanned at first.
    CXmlDocument document;
    ExpectThrows<CQvException>(L"undefined entity at line 1",
                               [&] { document.LoadXml("<a xmlns:x='urn:1'><x:b c='d'>text</x:b>&e;<f/></a>"); });
    EXPECT_TEXT(L"a ({urn:1}b @c='d' \"text\")", Outline(document.GetDocumentElement()));
    EXPECT_EQ(&document, document.GetDocumentElement()->GetDocument());
    document.LoadXml("<!DOCTYPE a [<!ENTITY e 'E'>]><a>&e;</a>");
    EXPECT_TEXT(L"a \"E\"", Outline(document.GetDocumentElement()));
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L"x"));
}

/// How many instances were made meanwhile, by class.
template <class Action>
std::map<std::wstring, long> CountMade(Action action)
{
    const auto before = CountAllInstances();
    action();
    std::map<std::wstring, long> made;
    for (const auto& [strClass, counts] : CountAllInstances())
    {
        const auto it = before.find(strClass);
        const long nMade = counts.nTotal - (it != before.end() ? it->second.nTotal : 0);
        if (nMade != 0)
            made[strClass] = nMade;
    }
    return made;
}

TEST(XmlScanner, InstancesAreCountedAsIfExpatHadReadAlone)
{
    const std::map<std::wstring, long> expected{
        {L"CExpatReader", 1}, {L"CXmlAttribute", 2}, {L"CXmlDocument", 1}, {L"CXmlElement", 3}};
    const std::string strXml = "<a b='1'><c d='2'/><e/>";
    EXPECT_EQ(expected, CountMade([&] { Load(strXml + "</a>"); }));
    EXPECT_EQ(expected, CountMade([&] { EXPECT_THROW(Load(strXml), CQvException); }));
    EXPECT_EQ(expected, CountMade([&] { EXPECT_THROW(Load(strXml + "&x;"), CQvException); }));
    EXPECT_EQ(0, CountInstances(L"CXmlElement").nLiving);
    EXPECT_EQ(0, CountInstances(L"CXmlAttribute").nLiving);
    EXPECT_EQ(0, CountInstances(L"CExpatReader").nLiving);
}

TEST(XmlScanner, AFilterKeepsTheDocumentForExpat)
{
    // What stands ahead of the failure is offered, once.
    static int s_nOffered;
    s_nOffered = 0;
    CXmlDocument document(
        [](CXmlElement*)
        {
            ++s_nOffered;
            return true;
        });
    EXPECT_THROW(document.LoadXml("<a><b/><c/></d>"), CQvException);
    EXPECT_EQ(2, s_nOffered);
}

} // namespace
