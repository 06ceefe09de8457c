#include "quiver/document/ExpatReader.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlDocument.h"
#include "tests/support/DocumentTree.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using QvTest::CountInstances;
using QvTest::ExpectThrows;
using QvTest::Outline;
using QvXmlLib9::CQvException;
using QvXmlLib9::CXmlDocument;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlSerializationContext;
using QvXmlLib9::SchemaType;

std::wstring Parse(const std::string& strXml, const CXmlSerializationContext& context = CXmlSerializationContext())
{
    CXmlDocument document(context);
    document.LoadXml(strXml.c_str());
    return Outline(document.GetDocumentElement());
}

/// Bytes that may hold zeros.
std::wstring ParseBytes(std::string strBytes)
{
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXmlStream(reinterpret_cast<unsigned char*>(strBytes.data()),
                           static_cast<unsigned long>(strBytes.size()));
    return Outline(document.GetDocumentElement());
}

CXmlSerializationContext WithoutNamespaces()
{
    CXmlSerializationContext context;
    context.SetSchemaType(QvXmlLib9::SchemaType_NoNamespaces);
    return context;
}

CXmlSerializationContext KeepingCdata()
{
    CXmlSerializationContext context;
    context.SetStripCDATA(false);
    return context;
}

std::string ToUtf16(const std::u16string& strText, bool bLittleEndian)
{
    std::string strBytes;
    for (const char16_t c : strText)
    {
        const char high = static_cast<char>(c >> 8);
        const char low = static_cast<char>(c & 0xFF);
        strBytes += bLittleEndian ? low : high;
        strBytes += bLittleEndian ? high : low;
    }
    return strBytes;
}

// --- Names ----------------------------------------------------------------------------------------------------------

struct SRow
{
    const char* lpcXml;
    const wchar_t* lpctOutline;
};

const SRow s_nameRows[] = {
    {"<a b='1'/>", L"a @b='1'"},
    {"<a xmlns='urn:x' b='1'/>", L"{urn:x}a @b='1'"},
    {"<x:a xmlns:x='urn:x' x:b='1'/>", L"{urn:x}a @{urn:x}b='1'"},
    {"<x:a xmlns:x='urn:x' xmlns='urn:y'><b xmlns=''/><c/></x:a>", L"{urn:x}a (b, {urn:y}c)"},
    {"<a xml:lang='de'/>", L"a @{http://www.w3.org/XML/1998/namespace}lang='de'"},
    {"<\xC3\xA4 \xC3\xB6='1' xmlns='urn:\xE2\x82\xAC'/>", L"{urn:\x20AC}\xE4 @\xF6='1'"},
    {"<a xmlns='urn:\xF0\x9F\x98\x80'/>", L"{urn:\xD83D\xDE00}a"},
    {"<long_name_of_an_element another_long_name='v'><long_name_of_an_elemenu/></long_name_of_an_element>",
     L"long_name_of_an_element @another_long_name='v' (long_name_of_an_elemenu)"},
};

TEST(ExpatReader, NamesAreSplitIntoNamespaceAndLocalName)
{
    for (const SRow& row : s_nameRows)
    {
        SCOPED_TRACE(row.lpcXml);
        EXPECT_TEXT(row.lpctOutline, Parse(row.lpcXml));
    }
}

const SRow s_plainNameRows[] = {
    {"<x:a x:b='1'/>", L"x:a @x:b='1'"},
    {"<x:a xmlns:x='urn:x' xmlns='urn:y'/>", L"x:a @xmlns:x='urn:x' @xmlns='urn:y'"},
    {"<a:b:c/>", L"a:b:c"},
};

TEST(ExpatReader, WithoutNamespaceProcessingAPrefixedNameStaysWhole)
{
    for (const SRow& row : s_plainNameRows)
    {
        SCOPED_TRACE(row.lpcXml);
        EXPECT_TEXT(row.lpctOutline, Parse(row.lpcXml, WithoutNamespaces()));
    }
}

TEST(ExpatReader, OnlySchemaType2TurnsNamespaceProcessingOff)
{
    for (const int nSchemaType : {-1, 0, 1, 3})
    {
        CXmlSerializationContext context;
        context.SetSchemaType(static_cast<SchemaType>(nSchemaType));
        EXPECT_TEXT(L"{urn:x}a", Parse("<x:a xmlns:x='urn:x'/>", context));
    }
}

TEST(ExpatReader, AnyNumberOfNamesIsToldApart)
{
    // More names than the cache has places, each of them twice, under two namespaces.
    std::string strXml = "<r xmlns:x='urn:x' xmlns:y='urn:y'>";
    std::wstring strExpected;
    for (int nRound = 0; nRound < 2; ++nRound)
    {
        for (int i = 0; i < 3000; ++i)
        {
            const std::string strName = "n" + std::to_string(i * 7919);
            const std::wstring strWide(strName.begin(), strName.end());
            strXml += "<x:" + strName + "/><y:" + strName + "/><" + strName + "/>";
            strExpected +=
                (strExpected.empty() ? L"{urn:x}" : L", {urn:x}") + strWide + L", {urn:y}" + strWide + L", " + strWide;
        }
    }
    EXPECT_TRUE(L"r (" + strExpected + L")" == Parse(strXml + "</r>"));
}

// --- Text -----------------------------------------------------------------------------------------------------------

const SRow s_textRows[] = {
    {"<a>\r\n1\r2\n3\r\r\n4</a>", L"a \"\n1\n2\n3\n\n4\""},
    {"<a>&#13;</a>", L"a"},
    {"<a>x&#13;&#10;y&#xD;z</a>", L"a \"x\nyz\""},
    {"<a b='x&#13;&#10;y'/>", L"a @b='x\r\ny'"},
    {"<a b=' x\r\n y\t'/>", L"a @b=' x  y '"},
    {"<a>&lt;&amp;&gt;&quot;&apos;&#65;&#x20AC;&#x1F600;</a>", L"a \"<&>\"'A\x20AC\xD83D\xDE00\""},
    {"<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80</a>", L"a \"\xE4\x20AC\xD83D\xDE00\""},
    {"<a b='\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80'/>", L"a @b='\xE4\x20AC\xD83D\xDE00'"},
    {"<a>]]&gt;</a>", L"a \"]]>\""},
    {"<!DOCTYPE a [<!ENTITY e 'x<b>y</b>z'>]><a>&e;&e;</a>", L"a \"xzxz\" (b \"y\", b \"y\")"},
    {"<!DOCTYPE a [<!ATTLIST a d CDATA 'v'>]><a/>", L"a @d='v'"},
    {"<!DOCTYPE a SYSTEM 'urn:none'><a>x&unknown;y</a>", L"a \"xy\""},
};

TEST(ExpatReader, TextArrivesWithoutCarriageReturns)
{
    for (const SRow& row : s_textRows)
    {
        SCOPED_TRACE(row.lpcXml);
        EXPECT_TEXT(row.lpctOutline, Parse(row.lpcXml));
    }
}

TEST(ExpatReader, LongTextArrivesWhole)
{
    std::string strText;
    std::wstring strExpected;
    for (int i = 0; i < 50000; ++i)
    {
        strText += i % 100 == 99 ? "\n" : i % 7 == 0 ? "\xE2\x82\xAC" : "x";
        strExpected += i % 100 == 99 ? L"\n" : i % 7 == 0 ? L"\x20AC" : L"x";
    }
    EXPECT_TRUE(L"a \"" + strExpected + L"\"" == Parse("<a>" + strText + "</a>"));
    EXPECT_TRUE(L"a \"" + strExpected + L"\"" == Parse("<a><![CDATA[" + strText + "]]></a>"));
}

struct SCdataRow
{
    const char* lpcXml;
    const wchar_t* lpctStripped;
    const wchar_t* lpctKept;
};

const SCdataRow s_cdataRows[] = {
    {"<a><![CDATA[x]]></a>", L"a \"x\"", L"a \"<![CDATA[x]]>\""},
    {"<a><![CDATA[]]></a>", L"a", L"a \"<![CDATA[]]>\""},
    {"<a>1<![CDATA[<&>]]>2<![CDATA[3]]></a>", L"a \"1<&>23\"", L"a \"1<![CDATA[<&>]]>2<![CDATA[3]]>\""},
    {"<a><b><![CDATA[x]]></b></a>", L"a (b \"x\")", L"a (b \"<![CDATA[x]]>\")"},
    {"<a><![CDATA[x\r\ny]]></a>", L"a \"x\ny\"", L"a \"<![CDATA[x\ny]]>\""},
    {"<a>x</a>", L"a \"x\"", L"a \"x\""},
};

TEST(ExpatReader, SectionMarksBecomeTextOnlyWhereTheyAreNotStripped)
{
    for (const SCdataRow& row : s_cdataRows)
    {
        SCOPED_TRACE(row.lpcXml);
        EXPECT_TEXT(row.lpctStripped, Parse(row.lpcXml));
        EXPECT_TEXT(row.lpctKept, Parse(row.lpcXml, KeepingCdata()));
    }
}

// --- Encodings ------------------------------------------------------------------------------------------------------

TEST(ExpatReader, TheEncodingIsToldByMarkAndDeclaration)
{
    const std::u16string strUtf16 = u"<a b='\u20AC'>\u00E4\U0001F600</a>";
    const std::wstring strExpected = L"a @b='\x20AC' \"\xE4\xD83D\xDE00\"";
    EXPECT_TEXT(strExpected, ParseBytes("<a b='\xE2\x82\xAC'>\xC3\xA4\xF0\x9F\x98\x80</a>"));
    EXPECT_TEXT(strExpected, ParseBytes("\xEF\xBB\xBF<a b='\xE2\x82\xAC'>\xC3\xA4\xF0\x9F\x98\x80</a>"));
    EXPECT_TEXT(strExpected, ParseBytes(ToUtf16(u"\uFEFF" + strUtf16, true)));
    EXPECT_TEXT(strExpected, ParseBytes(ToUtf16(u"\uFEFF" + strUtf16, false)));
    EXPECT_TEXT(strExpected, ParseBytes(ToUtf16(strUtf16, true)));
    EXPECT_TEXT(L"a \"\xE4\"", ParseBytes("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>"));
    EXPECT_TEXT(L"a \"x\"", ParseBytes("<?xml version='1.0' encoding='US-ASCII'?><a>x</a>"));
}

// --- Namespace declarations -----------------------------------------------------------------------------------------

struct SAliasRow
{
    const char* lpcXml;
    const wchar_t* lpctAlias;
    const wchar_t* lpctNamespaceURI;
};

const SAliasRow s_aliasRows[] = {
    {"<a xmlns:p='urn:p'/>", L"p", L"urn:p"},
    {"<a xmlns:p='urn:p'/>", L"q", L""},
    {"<a xmlns:p='urn:p'/>", L"", L""},
    {"<a xmlns='urn:d'/>", L"", L"urn:d"},
    {"<a xmlns='urn:d'><b xmlns=''/></a>", L"", L""},
    {"<a><b xmlns:p='urn:1'/><b xmlns:p='urn:2'/></a>", L"p", L"urn:2"},
    {"<a xmlns:p='urn:1'><b xmlns:p='urn:2'/><c/></a>", L"p", L"urn:2"},
    {"<a xmlns:p='urn:1'><b xmlns:q='urn:2'/></a>", L"q", L"urn:2"},
    {"<a xmlns:p='urn:\xF0\x9F\x98\x80'/>", L"p", L"urn:\xD83D\xDE00"},
    {"<a xmlns:\xC3\xA4='urn:p'/>", L"\xE4", L"urn:p"},
    {"<a xml:lang='de'/>", L"xml", L""},
};

TEST(ExpatReader, TheLastDeclarationOfAPrefixCountsForTheWholeDocument)
{
    for (const SAliasRow& row : s_aliasRows)
    {
        SCOPED_TRACE(row.lpcXml);
        CXmlDocument document;
        document.LoadXml(row.lpcXml);
        EXPECT_TEXT(row.lpctNamespaceURI, document.LookupNamespaceFromAlias(row.lpctAlias));
    }
}

TEST(ExpatReader, WithoutNamespaceProcessingNoPrefixIsKnown)
{
    const CXmlSerializationContext context = WithoutNamespaces();
    CXmlDocument document(context);
    document.LoadXml("<a xmlns:p='urn:p' xmlns='urn:d'/>");
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L"p"));
    EXPECT_TEXT(L"", document.LookupNamespaceFromAlias(L""));
}

// --- Failures -------------------------------------------------------------------------------------------------------

struct SFailureRow
{
    const char* lpcXml;
    const wchar_t* lpctMessage;
};

const SFailureRow s_failureRows[] = {
    {" ", L"no element found at line 1"},
    {"<a>", L"no element found at line 1"},
    {"<a>\n\n", L"no element found at line 3"},
    {"<a", L"unclosed token at line 1"},
    {"<a></b>", L"mismatched tag at line 1"},
    {"<a>\n<b>\n</a>", L"mismatched tag at line 3"},
    {"<a/><b/>", L"junk after document element at line 1"},
    {"<a b='1' b='2'/>", L"duplicate attribute at line 1"},
    {"<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>", L"duplicate attribute at line 1"},
    {"<a>&undefined;</a>", L"undefined entity at line 1"},
    {"<a>&#0;</a>", L"reference to invalid character number at line 1"},
    {"<a>\x01</a>", L"not well-formed (invalid token) at line 1"},
    {"<a>\xC3(</a>", L"not well-formed (invalid token) at line 1"},
    {"<a>\xED\xA0\x80</a>", L"not well-formed (invalid token) at line 1"},
    {"text", L"syntax error at line 1"},
    {"<p:a/>", L"unbound prefix at line 1"},
    {"<a xmlns:xml='urn:x'/>",
     L"reserved prefix (xml) must not be undeclared or bound to another namespace name at line 1"},
    {"<a|b/>", L"not well-formed (invalid token) at line 1"},
    {"<?xml version='1.0' encoding='none'?><a/>", L"unknown encoding at line 1"},
    {"<?xml version='1.0' encoding='UTF-16'?><a/>", L"encoding specified in XML declaration is incorrect at line 1"},
    {"<a><![CDATA[x</a>", L"unclosed CDATA section at line 1"},
    {"<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>", L"recursive entity reference at line 1"},
};

TEST(ExpatReader, TheParsersMessageAndLineMakeTheException)
{
    for (const SFailureRow& row : s_failureRows)
    {
        SCOPED_TRACE(row.lpcXml);
        ExpectThrows<CQvException>(row.lpctMessage, [&row] { Parse(row.lpcXml); });
    }
}

TEST(ExpatReader, ASeparatorInANamespaceIsRefused)
{
    ExpectThrows<CQvException>(L"syntax error at line 1", [] { Parse("<a xmlns='urn:x|y'/>"); });
    EXPECT_TEXT(L"a @xmlns='urn:x|y'", Parse("<a xmlns='urn:x|y'/>", WithoutNamespaces()));
}

std::string MakeEntityBomb(int nLevels)
{
    std::string strXml = "<!DOCTYPE a [<!ENTITY e0 'a text of some length that is repeated'>";
    for (int i = 1; i <= nLevels; ++i)
    {
        strXml += "<!ENTITY e" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
            strXml += "&e" + std::to_string(i - 1) + ";";
        strXml += "'>";
    }
    return strXml + "]><a>&e" + std::to_string(nLevels) + ";</a>";
}

TEST(ExpatReader, EntitiesThatBlowUpEndInAnException)
{
    std::wstring strText;
    for (int n = 0; n < 1000; ++n)
        strText += L"a text of some length that is repeated";
    EXPECT_TEXT(L"a \"" + strText + L"\"", Parse(MakeEntityBomb(3)));
    ExpectThrows<CQvException>(L"limit on input amplification factor (from DTD and entities) breached at line 1",
                               [] { Parse(MakeEntityBomb(12)); });
}

std::string Repeated(const std::string& strPiece, int nTimes)
{
    std::string strXml;
    for (int n = 0; n < nTimes; ++n)
        strXml += strPiece;
    return strXml;
}

TEST(ExpatReader, NamespacesAndDefaultsOutOfProportionEndInAnException)
{
    const std::string strLong(200000, 'n');
    const std::string strElements = "<a>" + Repeated("<x/>", 20000) + "</a>";
    std::string strMany;
    for (int n = 0; n < 1000; ++n)
        strMany += " v" + std::to_string(n) + " CDATA 'u'";
    const std::string documents[] = {
        "<!DOCTYPE a [<!ATTLIST x v CDATA '" + strLong + "'>]>" + strElements,
        "<!DOCTYPE a [<!ATTLIST x" + strMany + ">]>" + strElements,
        "<!DOCTYPE a [<!ATTLIST x xmlns:v CDATA '" + strLong + "'>]>" + strElements,
        "<a xmlns:p='" + strLong + "'>" + Repeated("<x p:b=''/>", 20000) + "</a>",
        "<a xmlns:p='" + strLong + "'>" + Repeated("<p:x/>", 20000) + "</a>",
    };
    for (const std::string& strXml : documents)
    {
        SCOPED_TRACE(strXml.substr(0, 40));
        ExpectThrows<CQvException>(
            L"The namespaces and default values of the document are out of proportion to its length",
            [&] { Parse(strXml); });
    }
}

TEST(ExpatReader, NamespacesAndDefaultsInProportionMayRepeatAsOftenAsTheyLike)
{
    const std::string strXml = "<!DOCTYPE a [<!ATTLIST x v CDATA 'a default value' xmlns CDATA 'urn:d'>]><a xmlns:p='" +
                               std::string(500, 'n') + "'>" + Repeated("<x p:b='1'/><p:y/>", 100000) + "</a>";
    CXmlDocument document;
    document.LoadXml(strXml.c_str());
    const CXmlElement* const pFirst = document.GetDocumentElement()->GetFirstElement();
    EXPECT_TEXT(L"a default value", pFirst->GetAttribute(L"v", L""));
    EXPECT_TEXT(L"urn:d", pFirst->GetNamespaceURI());
}

// --- Document types that would take stack or time -------------------------------------------------------------------

std::string EntityName(int n)
{
    return "a" + std::to_string(n);
}

/// A document type with a chain of entities, each inside the next; `bReversed` declares the outer ones first.
std::string MakeEntityChain(int nCount, bool bReversed)
{
    std::string strXml = "<!DOCTYPE a [";
    for (int n = 0; n < nCount; ++n)
    {
        const int nEntity = bReversed ? nCount - 1 - n : n;
        strXml += "<!ENTITY " + EntityName(nEntity) + " '" +
                  (nEntity == 0 ? "x" : "&" + EntityName(nEntity - 1) + ";") + "'>";
    }
    return strXml;
}

/// Each place where an entity can be used, with the outermost of a chain of them.
std::vector<std::string> MakeUsesOfChain(int nCount, bool bReversed)
{
    const std::string strChain = MakeEntityChain(nCount, bReversed);
    const std::string strUse = "&" + EntityName(nCount - 1) + ";";
    return {
        strChain + "]><a>" + strUse + "</a>",
        strChain + "]><a b='" + strUse + "'/>",
        strChain + "<!ATTLIST a b CDATA '" + strUse + "'>]><a/>",
    };
}

TEST(ExpatReader, EntitiesInsideEachOtherAreExpandedAsFarAsTheStackGoes)
{
    for (const bool bReversed : {false, true})
    {
        const std::vector<std::string> uses = MakeUsesOfChain(25, bReversed);
        EXPECT_TEXT(L"a \"x\"", Parse(uses[0]));
        EXPECT_TEXT(L"a @b='x'", Parse(uses[1]));
        EXPECT_TEXT(L"a @b='x'", Parse(bReversed ? MakeUsesOfChain(25, false)[2] : uses[2]));
        for (const std::string& strXml : uses)
        {
            std::wstring strOutline;
            QvTest::RunOnStack(128 * 1024, [&] { strOutline = Parse(strXml); });
            EXPECT_TEXT(Parse(strXml), strOutline);
        }
    }
    EXPECT_TEXT(L"a \"x\"", Parse(MakeUsesOfChain(1000, false)[0]));
}

TEST(ExpatReader, EntitiesNestedTooDeeplyEndInAnException)
{
    const wchar_t szTooDeep[] = L"The entities of the document are nested too deeply to be processed";
    for (const bool bReversed : {false, true})
    {
        for (const std::string& strXml : MakeUsesOfChain(30000, bReversed))
            ExpectThrows<CQvException>(szTooDeep, [&] { Parse(strXml); });
        for (const std::string& strXml : MakeUsesOfChain(1000, bReversed))
        {
            ExpectThrows<CQvException>(szTooDeep, [&] { QvTest::RunOnStack(128 * 1024, [&] { Parse(strXml); }); });
        }
    }
}

TEST(ExpatReader, RecursiveEntitiesKeepTheParsersMessage)
{
    ExpectThrows<CQvException>(L"recursive entity reference at line 1",
                               [] { Parse("<!DOCTYPE a [<!ENTITY b '&c;'><!ENTITY c '&b;'>]><a>&b;</a>"); });
    EXPECT_TEXT(L"a", Parse("<!DOCTYPE a [<!ENTITY b '&c;'><!ENTITY c '&b;'>]><a/>"));
}

TEST(ExpatReader, ParameterEntitiesInsideEachOtherAreNotExpanded)
{
    std::string strXml = "<!DOCTYPE a [<!ENTITY % p0 ''>";
    for (int n = 1; n < 30000; ++n)
        strXml += "<!ENTITY % p" + std::to_string(n) + " '&#37;p" + std::to_string(n - 1) + ";'>";
    EXPECT_TEXT(L"a", Parse(strXml + "%p29999;]><a/>"));
}

std::string MakeAttributeList(int nCount, const char* lpcType)
{
    std::string strXml = "<!DOCTYPE a [<!ATTLIST a";
    for (int n = 0; n < nCount; ++n)
        strXml += " b" + std::to_string(n) + lpcType;
    return strXml + ">]>";
}

TEST(ExpatReader, AThousandAttributesOfAnElementCanBeDeclared)
{
    CXmlDocument document;
    document.LoadXml((MakeAttributeList(1000, " CDATA ''") + "<a/>").c_str());
    EXPECT_EQ(1000u, document.GetDocumentElement()->GetAttributes().size());
    for (const char* lpcType : {" CDATA ''", " CDATA #IMPLIED", " NMTOKEN #REQUIRED", " (x|y) 'x'"})
    {
        EXPECT_NO_THROW(Parse(MakeAttributeList(1000, lpcType) + "<a/>"));
        for (const int nCount : {1001, 200000})
        {
            const std::string strXml = MakeAttributeList(nCount, lpcType) + "<a/>";
            ExpectThrows<CQvException>(L"The document type declares more than 1000 attributes of one element",
                                       [&] { Parse(strXml); });
        }
    }
}

TEST(ExpatReader, PrefixedAttributesUnderALongNamespaceAreRefusedBeforeTheyAreWrittenOut)
{
    std::string strAttributes;
    for (int n = 0; n < 10000; ++n)
        strAttributes += " p:a" + std::to_string(n) + "=''";
    std::string strDefaults = "<!DOCTYPE a [<!ATTLIST b";
    for (int n = 0; n < 1000; ++n)
        strDefaults += " p:a" + std::to_string(n) + " CDATA ''";
    // Were the names written out, each of these would take a gigabyte.
    const std::string strLong = " xmlns:p='" + std::string(100000, 'n') + "'";
    const std::string strLonger = " xmlns:p='" + std::string(1000000, 'n') + "'";
    const std::string documents[] = {
        "<a" + strLong + strAttributes + "/>",
        "<a" + strAttributes + strLong + "/>",
        "<a" + strLong + "><b" + strAttributes + "/></a>",
        "<a" + strLong + ">" + std::string(100000, 't') + "<b" + strAttributes + "/></a>",
        "<!DOCTYPE a [<!ENTITY e \"<b" + strAttributes + "/>\">]><a" + strLong + ">&e;</a>",
        "<!DOCTYPE a [<!ENTITY e \"<b" + strAttributes + strLong + "/>\">]><a>&e;</a>",
        strDefaults + ">]><a" + strLonger + "><b/></a>",
    };
    for (const std::string& strXml : documents)
    {
        SCOPED_TRACE(strXml.substr(0, 40));
        const auto start = std::chrono::steady_clock::now();
        ExpectThrows<CQvException>(
            L"The namespaces and default values of the document are out of proportion to its length",
            [&] { Parse(strXml); });
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 0.5);
    }
}

TEST(ExpatReader, ColonsOfALongTextDoNotCountAgainstALongNamespace)
{
    const std::string strNamespace(400, 'n');
    const std::string strTimes = Repeated("12:30:05 ", 300000);
    CXmlDocument document;
    document.LoadXml(("<a xmlns:p='" + strNamespace + "'><!--" + strTimes + "--><p:b p:c='" + strTimes + "'>" +
                      strTimes + "</p:b></a>")
                         .c_str());
    EXPECT_EQ(strTimes.size(), document.GetDocumentElement()->GetFirstElement()->GetText().size());
}

/// What a document type can hold in great number, or nest, or make long.
TEST(ExpatReader, OtherDeclarationsTakeLinearTime)
{
    const auto declare = [](const char* lpcBegin, int nCount, const char* lpcEnd)
    {
        std::string strXml;
        for (int n = 0; n < nCount; ++n)
            strXml += lpcBegin + std::to_string(n) + lpcEnd;
        return strXml;
    };
    const std::string strLong(4000000, 'v');
    const std::string declarations[] = {
        "<!ATTLIST a b (" + declare("v", 200000, "|") + "w) 'w'>",
        "<!ATTLIST a b NOTATION (" + declare("v", 200000, "|") + "w) #IMPLIED>",
        "<!ELEMENT a " + std::string(500000, '(') + "b" + std::string(500000, ')') + ">",
        "<!ELEMENT a (" + declare("b", 200000, "|") + "c)>",
        declare("<!NOTATION n", 100000, " SYSTEM ''>"),
        declare("<!ENTITY e", 100000, " ''>"),
        declare("<!ENTITY e", 100000, " SYSTEM 'x'>"),
        declare("<!ENTITY % e", 100000, " ''>"),
        declare("<!ELEMENT e", 100000, " ANY>"),
        declare("<!ATTLIST e", 100000, " b CDATA ''>"),
        declare("<!ATTLIST e", 100000, " b ID #IMPLIED>"),
        declare("<?p", 100000, "?>"),
        Repeated("%p;", 500000),
        "<!ENTITY e '" + strLong + "'>",
        "<!ENTITY e SYSTEM '" + strLong + "'>",
        "<!ATTLIST a b CDATA '" + strLong + "'>",
        "<!ENTITY " + strLong + " ''>",
        "<!--" + strLong + "-->",
        "<?p " + strLong + "?>",
        std::string(4000000, ' '),
    };
    for (const std::string& strDeclarations : declarations)
    {
        SCOPED_TRACE(strDeclarations.substr(0, 40));
        const auto start = std::chrono::steady_clock::now();
        EXPECT_NO_THROW(Parse("<!DOCTYPE a [" + strDeclarations + "]><a/>"));
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 5);
    }
}

// --- What handlers throw --------------------------------------------------------------------------------------------

bool ThrowQvException(CXmlElement* pElement)
{
    if (pElement->GetLocalName() == L"b")
        throw QvXmlLib9::CQvInvalidValueException(L"from the filter", CQvException(L"inner"));
    return false;
}

bool ThrowOther(CXmlElement* pElement)
{
    if (pElement->GetLocalName() == L"b")
        throw std::runtime_error("not of the library");
    return false;
}

TEST(ExpatReader, WhatTheFilterThrowsPassesTheParserUnchanged)
{
    const auto readers = CountInstances(L"CExpatReader");
    CXmlDocument document(ThrowQvException);
    ExpectThrows<QvXmlLib9::CQvInvalidValueException>(L"from the filter\ninner",
                                                      [&document] { document.LoadXml("<a><b/><c/></a>"); });
    CXmlDocument other(ThrowOther);
    EXPECT_THROW(other.LoadXml("<a><b>text</b><c/></a>"), std::runtime_error);
    EXPECT_EQ(readers.nLiving, CountInstances(L"CExpatReader").nLiving);
}

TEST(ExpatReader, NothingIsBuiltAfterTheFilterHasThrown)
{
    CXmlDocument document(ThrowOther);
    EXPECT_THROW(document.LoadXml("<a>1<b/>2<c/></a>"), std::runtime_error);
    EXPECT_TEXT(L"a \"1\" (b)", Outline(document.GetDocumentElement()));
}

TEST(ExpatReader, EachParseCountsOneReader)
{
    const auto readers = CountInstances(L"CExpatReader");
    Parse("<a/>");
    EXPECT_EQ(readers.nTotal + 1, CountInstances(L"CExpatReader").nTotal);
    EXPECT_EQ(readers.nLiving, CountInstances(L"CExpatReader").nLiving);
    EXPECT_ANY_THROW(Parse("<a"));
    EXPECT_EQ(readers.nTotal + 2, CountInstances(L"CExpatReader").nTotal);
    EXPECT_EQ(readers.nLiving, CountInstances(L"CExpatReader").nLiving);
}

// --- Size -----------------------------------------------------------------------------------------------------------

#if defined(QUIVER_DIAGNOSTICS)
constexpr int s_nMany = 100000;
#else
constexpr int s_nMany = 1000000;
#endif

std::string Repeat(const char* lpcText, int nCount)
{
    std::string strText;
    for (int i = 0; i < nCount; ++i)
        strText += lpcText;
    return strText;
}

TEST(ExpatReader, AVeryDeepDocumentLoadsAndDies)
{
    const auto elements = CountInstances(L"CXmlElement");
    {
        CXmlDocument document;
        document.LoadXml((Repeat("<a>", s_nMany) + Repeat("</a>", s_nMany)).c_str());
        int nDepth = 0;
        for (CXmlElement* pElement = document.GetDocumentElement(); pElement != nullptr;
             pElement = pElement->GetFirstElement())
            ++nDepth;
        EXPECT_EQ(s_nMany, nDepth);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(ExpatReader, AVeryDeepDocumentThatIsCutOffDies)
{
    const auto elements = CountInstances(L"CXmlElement");
    {
        CXmlDocument document;
        EXPECT_THROW(document.LoadXml(Repeat("<a>", s_nMany).c_str()), CQvException);
    }
    EXPECT_EQ(elements.nLiving, CountInstances(L"CXmlElement").nLiving);
}

TEST(ExpatReader, AVeryLongListOfSiblingsAndAttributesLoadsAndDies)
{
    std::string strAttributes;
    for (int i = 0; i < 10000; ++i)
        strAttributes += " a" + std::to_string(i) + "='v'";
    CXmlDocument document;
    document.LoadXml(("<a" + strAttributes + ">" + Repeat("<b/>", s_nMany) + "</a>").c_str());
    EXPECT_EQ(10000u, document.GetDocumentElement()->GetAttributes().size());
    int nChildren = 0;
    for (CXmlElement* pElement = document.GetDocumentElement()->GetFirstElement(); pElement != nullptr;
         pElement = pElement->GetNextSiblingElement())
        ++nChildren;
    EXPECT_EQ(s_nMany, nChildren);
}

} // namespace

TEST(ExpatReader, TokensLongerThanAPieceOfTheInputAreReadWhole)
{
    for (const std::size_t nLength :
         {std::size_t{65530}, std::size_t{65536}, std::size_t{200000}, std::size_t{3000000}})
    {
        SCOPED_TRACE(nLength);
        const std::string strLong(nLength, 'v');
        const std::string strXml = "<r a='" + strLong + "'><!--" + strLong + "--><" + strLong + "/>" + strLong + "</r>";
        CXmlDocument document;
        document.LoadXml(strXml.c_str());
        CXmlElement* const pRoot = document.GetDocumentElement();
        EXPECT_EQ(pRoot->GetAttribute(L"a", L"").size(), nLength);
        EXPECT_EQ(pRoot->GetFirstElement()->GetLocalName().size(), nLength);
        EXPECT_EQ(pRoot->GetText().size(), nLength);
    }
}

TEST(ExpatReader, WhatIsUnfinishedIsToldByIndicesOfAnyWidth)
{
    constexpr std::uint64_t nTwoGigabytes = std::uint64_t{1} << 31;
    for (const std::uint64_t nToken : {std::uint64_t{0}, std::uint64_t{100}, nTwoGigabytes - 8, nTwoGigabytes,
                                       2 * nTwoGigabytes - 8, 2 * nTwoGigabytes + 100, 5 * nTwoGigabytes - 8})
    {
        SCOPED_TRACE(nToken);
        for (const unsigned nBehind : {0u, 16u, 200000u})
        {
            EXPECT_EQ(nBehind, QvXmlLib9::GetBytesBehind(nToken + nBehind, static_cast<std::int64_t>(nToken)));
            EXPECT_EQ(nBehind, QvXmlLib9::GetBytesBehind(nToken + nBehind, static_cast<std::int32_t>(nToken)));
        }
    }
}
