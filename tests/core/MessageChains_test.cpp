// The whole chain of messages, to the letter, for documents that break deep inside and for objects that cannot be
// written: each row is a sound document, what is changed in it, and what the user gets to see.

#include "Gpx.h"
#include "Invoice.h"
#include "Order.h"
#include "Settings.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;

const wchar_t s_lpctOrder[] = LR"(<purchaseOrder xmlns="urn:example:order" number="7" currency="EUR">
  <shipTo>
    <name>Ann</name>
    <street>High Street 1</street>
    <city>York</city>
  </shipTo>
  <express>true</express>
  <item part="872-AA">
    <product>Mower</product>
    <quantity>1</quantity>
    <price>148.95</price>
  </item>
  <item part="926-AA">
    <product>Hose</product>
    <quantity>2</quantity>
    <price>39.98</price>
    <note>green</note>
  </item>
</purchaseOrder>)";

const wchar_t s_lpctTrack[] = LR"(<gpx xmlns="http://www.topografix.com/GPX/1/1" version="1.1" creator="test">
  <trk>
    <name>Ridge</name>
    <trkseg>
      <trkpt lat="46.5" lon="8.4"><ele>1755.6</ele></trkpt>
      <trkpt lat="46.6" lon="8.5">
        <ele>1763</ele>
        <time>2026-05-17T07:01:34Z</time>
        <name>Pass</name>
        <sat>9</sat>
        <fix>3d</fix>
      </trkpt>
    </trkseg>
  </trk>
</gpx>)";

const wchar_t s_lpctInvoice[] = LR"(<inv:invoice xmlns:inv="urn:example:invoice"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" number="RG-0815" language="de">
  <inv:issued>2026-03-31</inv:issued>
  <inv:seller><inv:country>AT</inv:country><inv:city>Graz</inv:city><inv:street>Ring 1</inv:street></inv:seller>
  <inv:buyer xsi:type="inv:Company" vat="DE123456789">
    <inv:name>Stone</inv:name>
    <inv:address>
      <inv:street>Kai 3</inv:street>
      <inv:zip>20457</inv:zip>
      <inv:city>Hamburg</inv:city>
      <inv:country>DE</inv:country>
    </inv:address>
  </inv:buyer>
  <inv:delivery xsi:nil="true"/>
  <inv:line xsi:type="inv:ProductLine" article="4711-01">
    <inv:text>Valve</inv:text>
    <inv:quantity>12</inv:quantity>
    <inv:unitPrice>18.75</inv:unitPrice>
  </inv:line>
  <inv:line xsi:type="inv:ServiceLine">
    <inv:text>Fitting</inv:text>
    <inv:time>PT3H</inv:time>
    <inv:hourlyRate>64.00</inv:hourlyRate>
  </inv:line>
  <inv:payment><inv:transfer><inv:iban>AT611904300234573201</inv:iban></inv:transfer></inv:payment>
  <inv:total>417</inv:total>
  <inv:remark>net</inv:remark>
</inv:invoice>)";

const wchar_t s_lpctSettings[] = LR"(<s:settings xmlns:s="urn:example:settings" xmlns:o="urn:other" version="3">
  <s:title>Drawing</s:title>
  <window xmlns="urn:example:window"/>
  <s:plugin id="net.sync">
    <s:enabled>true</s:enabled>
    <o:account o:kind="free"/>
  </s:plugin>
</s:settings>)";

template <class TRoot>
void Read(const std::wstring& strXml)
{
    const CSmartPtr<TRoot> spRoot = new TRoot;
    spRoot->FromXml(strXml.c_str(), CXmlSerializationContext::GetDefaultContext());
}

/// A kind of document: a sound one, and how it is read.
struct SVocabulary
{
    const wchar_t* lpctSound;
    void (*pfnRead)(const std::wstring& strXml);
};

const SVocabulary s_order = {s_lpctOrder, &Read<order::CPurchaseOrder>};
const SVocabulary s_track = {s_lpctTrack, &Read<gpx::CGpx>};
const SVocabulary s_invoice = {s_lpctInvoice, &Read<invoice::CInvoice>};
const SVocabulary s_settings = {s_lpctSettings, &Read<settings::CSettings>};

struct SBroken
{
    const char* lpcName;
    const SVocabulary& vocabulary;
    const wchar_t* lpctFind;
    const wchar_t* lpctReplace;
    const wchar_t* lpctChain;
};

void PrintTo(const SBroken& row, std::ostream* pStream)
{
    *pStream << row.lpcName;
}

template <class TRow>
std::string NameOf(const testing::TestParamInfo<TRow>& info)
{
    return info.param.lpcName;
}

/// The sound document with the one place that the row names replaced.
std::wstring Document(const SBroken& row)
{
    std::wstring strXml = row.vocabulary.lpctSound;
    const std::size_t nPosition = strXml.find(row.lpctFind);
    EXPECT_NE(std::wstring::npos, nPosition) << "nothing to replace";
    EXPECT_EQ(std::wstring::npos, strXml.find(row.lpctFind, nPosition + 1)) << "more than one place to replace";
    return strXml.replace(nPosition, std::wstring(row.lpctFind).size(), row.lpctReplace);
}

TEST(MessageChains, TheDocumentsAreSoundBeforeTheyAreBroken)
{
    for (const SVocabulary* pVocabulary : {&s_order, &s_track, &s_invoice, &s_settings})
        EXPECT_NO_THROW(pVocabulary->pfnRead(pVocabulary->lpctSound));
}

// --- Documents that break their schema ---------------------------------------------------------------------------

class BrokenDocument : public testing::TestWithParam<SBroken>
{
};

TEST_P(BrokenDocument, EndsInTheChainOfMessages)
{
    const SBroken& row = GetParam();
    ExpectThrows<CQvValidationException>(row.lpctChain, [&] { row.vocabulary.pfnRead(Document(row)); });
}

const SBroken s_brokenOrders[] = {
    {"TextForAnInteger", s_order, L"<quantity>2<", L"<quantity>two<",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Invalid Value for quantity [two]\n"
     L"The value is no xs:int"},
    {"IntegerBeyond32Bits", s_order, L"number=\"7\"", L"number=\"2147483648\"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Invalid Value for number [2147483648]\n"
     L"The value is no xs:int"},
    {"IntegerAboveItsBound", s_order, L"<quantity>2<", L"<quantity>1000<",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Invalid Value for quantity [1000]\n"
     L"The value is above 999"},
    {"CommaInADouble", s_order, L"39.98", L"39,98",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Invalid Value for price [39,98]\n"
     L"The value is no xs:double"},
    {"DoubleBelowItsBound", s_order, L"39.98", L"-0.5",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Invalid Value for price [-0.5]\n"
     L"The value is below 0"},
    {"BooleanInWords", s_order, L"<express>true<", L"<express>yes<",
     L"Failed to process the element [purchaseOrder]\n"
     L"Invalid Value for express [yes]\n"
     L"The value is no xs:boolean"},
    {"AttributeAgainstItsPattern", s_order, L"926-AA", L"926-aa",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Invalid Value for part [926-aa]\n"
     L"The value does not match the pattern (?:\\p{Nd}{3}-[A-Z]{2})\\z"},
    {"TextBelowItsLength", s_order, L"<name>Ann</name>", L"<name/>",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [shipTo]\n"
     L"Invalid Value for name []\n"
     L"The value is shorter than 1"},
    {"MissingElement", s_order, L"<city>York</city>", L"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [shipTo]\n"
     L"Failed to find a required element [city]"},
    {"MissingObject", s_order,
     L"<shipTo>\n    <name>Ann</name>\n    <street>High Street 1</street>\n    <city>York</city>\n  </shipTo>\n", L"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to find a required element [shipTo]"},
    {"ElementsInTheWrongOrder", s_order, L"<quantity>2</quantity>\n    <price>39.98</price>",
     L"<price>39.98</price>\n    <quantity>2</quantity>",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed to find a required element [quantity]"},
    {"SurplusElementAtTheEnd", s_order, L"<note>green</note>", L"<note>green</note><extra/>",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed read all the elements held within the element [item]. The unexpected element [extra] remains un "
     L"processed"},
    {"SurplusElementInTheMiddle", s_order, L"<quantity>2<", L"<extra/><quantity>2<",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed to find a required element [quantity]"},
    {"RepeatedElement", s_order, L"<note>green</note>", L"<note>green</note><note>blue</note>",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed read all the elements held within the element [item]. The unexpected element [note] remains un "
     L"processed"},
    {"ElementOfAnotherNamespace", s_order, L"<product>Hose", L"<product xmlns=\"urn:b\">Hose",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed to find a required element [product]"},
    {"SurplusAttribute", s_order, L"part=\"926-AA\"", L"part=\"926-AA\" colour=\"green\"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Unexpected Attribute [colour] found."},
    {"MissingAttribute", s_order, L" part=\"926-AA\"", L"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Failed to find the required Attribute [part]"},
    {"NilWhereItIsNotAllowed", s_order, L"part=\"926-AA\"",
     L"part=\"926-AA\" xsi:nil=\"true\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"",
     L"Failed to process the element [purchaseOrder]\n"
     L"Failed to process the element [item]\n"
     L"Unexpected Attribute [nil] found."},
    {"ItemsUnderAnotherName", s_order, L"<express>true</express>", L"<express>true</express><thing/>",
     L"Failed to process the element [purchaseOrder]\n"
     L"The Minimum number of [item] elements allowed in this collection is 1"},
};
INSTANTIATE_TEST_SUITE_P(PurchaseOrder, BrokenDocument, testing::ValuesIn(s_brokenOrders), NameOf<SBroken>);

const SBroken s_brokenTracks[] = {
    {"ValueNotInItsEnumeration", s_track, L"<fix>3d<", L"<fix>4d<",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for fix [4d]\n"
     L"The value is none of the enumeration"},
    {"TextForADecimal", s_track, L"<ele>1763<", L"<ele>17 high<",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for ele [17 high]\n"
     L"The value is no xs:decimal"},
    {"DayThatTheMonthLacks", s_track, L"2026-05-17T07:01:34Z", L"2026-02-29T07:01:34Z",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for time [2026-02-29T07:01:34Z]\n"
     L"The value is no xs:dateTime"},
    {"TextAboveItsLength", s_track, L"<name>Pass<", L"<name>A pass with a name of forty-one letters..<",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for name [A pass with a name of forty-one letters..]\n"
     L"The value is longer than 40"},
    {"TextBehindAnUnsignedInteger", s_track, L"<sat>9<", L"<sat>9 satellites<",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for sat [9 satellites]\n"
     L"The value is no xs:unsignedInt"},
    {"DecimalAboveItsBound", s_track, L"lat=\"46.6\"", L"lat=\"90.1\"",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for lat [90.1]\n"
     L"The value is above 90"},
    {"DecimalAtItsExclusiveBound", s_track, L"lon=\"8.5\"", L"lon=\"180.000\"",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"Failed to process the element [trkseg]\n"
     L"Failed to process the element [trkpt]\n"
     L"Invalid Value for lon [180.000]\n"
     L"The value is not below 180"},
    {"RootAttributeAgainstItsPattern", s_track, L"version=\"1.1\"", L"version=\"1.10\"",
     L"Failed to process the element [gpx]\n"
     L"Invalid Value for version [1.10]\n"
     L"The value does not match the pattern (?:1\\.[01])\\z"},
    {"NoItemAtAll", s_track, L"<name>Ridge</name>", L"</trk><trk>",
     L"Failed to process the element [gpx]\n"
     L"Failed to process the element [trk]\n"
     L"The Minimum number of [trkseg] elements allowed in this collection is 1"},
};
INSTANTIATE_TEST_SUITE_P(GpxTrack, BrokenDocument, testing::ValuesIn(s_brokenTracks), NameOf<SBroken>);

const SBroken s_brokenInvoices[] = {
    {"MissingMemberOfAnAllGroup", s_invoice, L"<inv:city>Hamburg</inv:city>", L"",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [buyer]\n"
     L"Failed to process the element [address]\n"
     L"Failed to find the mandatory element [city]"},
    {"RepeatedMemberOfAnAllGroup", s_invoice, L"<inv:zip>20457</inv:zip>", L"<inv:zip>1</inv:zip><inv:zip>2</inv:zip>",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [buyer]\n"
     L"Failed to process the element [address]\n"
     L"Failed to find the mandatory element [city]"},
    {"RepeatedLastMemberOfAnAllGroup", s_invoice, L"<inv:country>DE</inv:country>",
     L"<inv:country>DE</inv:country><inv:country>FR</inv:country>",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [buyer]\n"
     L"Failed to process the element [address]\n"
     L"Failed read all the elements held within the element [address]. The unexpected element [country] remains un "
     L"processed"},
    {"EnumerationInAnAllGroup", s_invoice, L"<inv:country>DE<", L"<inv:country>de<",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [buyer]\n"
     L"Failed to process the element [address]\n"
     L"Invalid Value for country [de]\n"
     L"The value is none of the enumeration"},
    {"EnumerationInAnAttribute", s_invoice, L"language=\"de\"", L"language=\"it\"",
     L"Failed to process the element [invoice]\n"
     L"Invalid Value for language [it]\n"
     L"The value is none of the enumeration"},
    {"UnknownType", s_invoice, L"inv:Company", L"inv:Robot",
     L"Failed to process the element [invoice]\n"
     L"Failed to find a suitable substitution element for [buyer]"},
    {"TypeOfAnotherNamespace", s_invoice, L"\"inv:Company\"", L"\"x:Company\" xmlns:x=\"urn:x\"",
     L"Failed to process the element [invoice]\n"
     L"Failed to find a suitable substitution element for [buyer]"},
    {"NoTypeForAnAbstractElement", s_invoice, L"xsi:type=\"inv:Company\" ", L"",
     L"Failed to process the element [invoice]\n"
     L"Failed to find a suitable substitution element for [buyer]"},
    {"UnknownTypeOfAnItem", s_invoice, L"inv:ServiceLine", L"inv:GiftLine",
     L"Failed to process the element [invoice]\n"
     L"Failed to find a suitable substitution element for [line]"},
    {"AttributeOfADerivedClass", s_invoice, L"article=\"4711-01\"", L"article=\"4711\"",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [line]\n"
     L"Invalid Value for article [4711]\n"
     L"The value does not match the pattern (?:\\p{Nd}{4}-\\p{Nd}{2})\\z"},
    {"OptionalAttributeAgainstItsPattern", s_invoice, L"DE123456789", L"DE1234567",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [buyer]\n"
     L"Invalid Value for vat [DE1234567]\n"
     L"The value does not match the pattern (?:[A-Z]{2}\\p{Nd}{8,12})\\z"},
    {"SecondMemberOfAChoice", s_invoice, L"</inv:transfer>", L"</inv:transfer><inv:cash>true</inv:cash>",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [payment]\n"
     L"Failed read all the elements held within the element [payment]. The unexpected element [cash] remains un "
     L"processed"},
    {"UnknownMemberOfAChoice", s_invoice, L"<inv:transfer><inv:iban>AT611904300234573201</inv:iban></inv:transfer>",
     L"<inv:barter/>",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [payment]\n"
     L"Failed read all the elements held within the element [payment]. The unexpected element [barter] remains un "
     L"processed"},
    {"ValueInAMemberOfAChoice", s_invoice, L"AT611904300234573201", L"AT61",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [payment]\n"
     L"Failed to process the element [transfer]\n"
     L"Invalid Value for iban [AT61]\n"
     L"The value does not match the pattern (?:[A-Z]{2}\\p{Nd}{2}[A-Z0-9]{11,30})\\z"},
    {"NilInAnotherWord", s_invoice, L"xsi:nil=\"true\"", L"xsi:nil=\"yes\"",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [delivery]\n"
     L"Unexpected Value for Attribute [nil] found."},
    {"NotNilAndEmpty", s_invoice, L"xsi:nil=\"true\"", L"xsi:nil=\"false\"",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [delivery]\n"
     L"Failed to find a required element [date]"},
    {"DurationInWords", s_invoice, L"PT3H", L"3 hours",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [line]\n"
     L"Invalid Value for time [3 hours]\n"
     L"The value is no xs:duration"},
    {"DurationBelowItsBound", s_invoice, L"PT3H", L"-P2Y",
     L"Failed to process the element [invoice]\n"
     L"Failed to process the element [line]\n"
     L"Invalid Value for time [-P2Y]\n"
     L"The value is below PT15M"},
    {"DateTimeForADate", s_invoice, L"2026-03-31", L"2026-03-31T00:00:00",
     L"Failed to process the element [invoice]\n"
     L"Invalid Value for issued [2026-03-31T00:00:00]\n"
     L"The value is no xs:date"},
    {"MemberBehindTheLastOne", s_invoice, L"<inv:remark>net</inv:remark>\n",
     L"<inv:remark>net</inv:remark><inv:total>1</inv:total>\n",
     L"Failed to process the element [invoice]\n"
     L"Failed read all the elements held within the element [invoice]. The unexpected element [total] remains un "
     L"processed"},
};
INSTANTIATE_TEST_SUITE_P(Invoice, BrokenDocument, testing::ValuesIn(s_brokenInvoices), NameOf<SBroken>);

const SBroken s_brokenSettings[] = {
    {"AttributeThatItsWildcardExcludes", s_settings, L"id=\"net.sync\"", L"id=\"net.sync\" s:locked=\"true\"",
     L"Failed to process the element [settings]\n"
     L"Failed to process the element [plugin]\n"
     L"Unexpected Attribute [locked] found."},
    {"NoElementForAWildcard", s_settings, L"<o:account o:kind=\"free\"/>", L"",
     L"Failed to process the element [settings]\n"
     L"Failed to process the element [plugin]\n"
     L"Failed to find a required element [AnyElement]"},
    {"ElementThatItsWildcardExcludes", s_settings, L"<o:account o:kind=\"free\"/>", L"<s:account/>",
     L"Failed to process the element [settings]\n"
     L"Failed to process the element [plugin]\n"
     L"Failed to find a required element [AnyElement]"},
    {"MoreElementsThanItsWildcardTakes", s_settings, L"<o:account o:kind=\"free\"/>", L"<o:account/><o:second/>",
     L"Failed to process the element [settings]\n"
     L"Failed to process the element [plugin]\n"
     L"Failed read all the elements held within the element [plugin]. The unexpected element [second] remains un "
     L"processed"},
    {"ElementThatAnOptionalWildcardExcludes", s_settings, L"urn:example:window", L"urn:example:door",
     L"Failed to process the element [settings]\n"
     L"The Minimum number of [plugin] elements allowed in this collection is 1"},
};
INSTANTIATE_TEST_SUITE_P(Settings, BrokenDocument, testing::ValuesIn(s_brokenSettings), NameOf<SBroken>);

// --- Text that is no document ------------------------------------------------------------------------------------

class BrokenXml : public testing::TestWithParam<SBroken>
{
};

TEST_P(BrokenXml, EndsInTheParsersMessage)
{
    const SBroken& row = GetParam();
    ExpectThrows<CQvException>(row.lpctChain, [&] { row.vocabulary.pfnRead(Document(row)); });
}

const SBroken s_brokenXml[] = {
    {"EndTagOfAnotherElement", s_order, L"</shipTo>", L"</shipFrom>", L"mismatched tag at line 6"},
    {"DocumentCutInAnElement", s_order, L"</purchaseOrder>", L"", L"no element found at line 19"},
    {"DocumentCutInATag", s_order, L"</purchaseOrder>", L"</purchase", L"unclosed token at line 19"},
    {"SecondRoot", s_order, L"</purchaseOrder>", L"</purchaseOrder><a/>", L"junk after document element at line 19"},
    {"UnknownEntity", s_order, L"York", L"&york;", L"undefined entity at line 5"},
    {"BareAmpersand", s_order, L"Mower", L"Mower & more", L"not well-formed (invalid token) at line 9"},
    {"ControlCharacter", s_order, L"Mower", L"Mow\x01", L"not well-formed (invalid token) at line 9"},
    {"AttributeTwice", s_order, L"currency=", L"number=\"8\" currency=", L"duplicate attribute at line 1"},
    {"UnboundPrefix", s_invoice, L"<inv:zip>20457</inv:zip>", L"<x:zip/>", L"unbound prefix at line 9"},
    {"DeclarationBehindTheStart", s_order, L"<shipTo>", L"<?xml version='1.0'?><shipTo>",
     L"XML or text declaration not at start of entity at line 2"},
};
INSTANTIATE_TEST_SUITE_P(Any, BrokenXml, testing::ValuesIn(s_brokenXml), NameOf<SBroken>);

// --- Objects that cannot be written ------------------------------------------------------------------------------

struct SUnwritable
{
    const char* lpcName;
    /// Puts one fault into an object that could be written.
    std::function<CSmartPtr<CXmlObjectBase>()> pfnMake;
    const wchar_t* lpctChain;
};

void PrintTo(const SUnwritable& row, std::ostream* pStream)
{
    *pStream << row.lpcName;
}

class UnwritableObject : public testing::TestWithParam<SUnwritable>
{
};

TEST_P(UnwritableObject, EndsInTheChainOfMessages)
{
    const SUnwritable& row = GetParam();
    const CSmartPtr<CXmlObjectBase> spRoot = row.pfnMake();
    const CXmlSerializationContext context;
    ExpectThrows<CQvValidationException>(row.lpctChain, [&] { spRoot->ToXml(true, true, EOLType_LF, context); });
    ExpectThrows<CQvValidationException>(
        row.lpctChain,
        [&] { spRoot->ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, context, Compression_None); });
}

/// The sound document of a vocabulary as an object, changed by `pfnBreak`.
template <class TRoot>
std::function<CSmartPtr<CXmlObjectBase>()> Broken(const SVocabulary& vocabulary, void (*pfnBreak)(TRoot&))
{
    return [&vocabulary, pfnBreak]
    {
        const CSmartPtr<TRoot> spRoot = new TRoot;
        spRoot->FromXml(vocabulary.lpctSound, CXmlSerializationContext::GetDefaultContext());
        pfnBreak(*spRoot);
        return CSmartPtr<CXmlObjectBase>(spRoot);
    };
}

const SUnwritable s_unwritable[] = {
    {"CollectionThatWasEmptied", Broken<order::CPurchaseOrder>(s_order, [](auto& root) { root.GetItem()->Clear(); }),
     L"Failed to convert the element [purchaseOrder] to XML\n"
     L"The Minimum number of [item] elements allowed in this collection is 1"},
    {"AttributeNeverSet",
     Broken<order::CPurchaseOrder>(s_order, [](auto& root) { root.GetItem()->Add(new order::CItem); }),
     L"Failed to convert the element [purchaseOrder] to XML\n"
     L"Failed to convert the element [item] to XML\n"
     L"Failed to convert attributes to XML\n"
     L"The required attribute [part] has not been set"},
    {"ElementNeverSet",
     Broken<order::CPurchaseOrder>(s_order,
                                   [](auto& root) { root.GetItem()->Add(new order::CItem)->SetPart(L"100-ZZ"); }),
     L"Failed to convert the element [purchaseOrder] to XML\n"
     L"Failed to convert the element [item] to XML\n"
     L"The required element [product] has not been set"},
    {"NewObjectInAProperty",
     Broken<order::CPurchaseOrder>(s_order, [](auto& root) { root.SetBillTo(new order::CAddress(L"billTo")); }),
     L"Failed to convert the element [purchaseOrder] to XML\n"
     L"Failed to convert the element [billTo] to XML\n"
     L"The required element [name] has not been set"},
    {"EmptyCollectionInACollection",
     Broken<gpx::CGpx>(s_track, [](auto& root) { root.GetTrk()->Item(0)->GetTrkseg()->Clear(); }),
     L"Failed to convert the element [gpx] to XML\n"
     L"Failed to convert the element [trk] to XML\n"
     L"The Minimum number of [trkseg] elements allowed in this collection is 1"},
    {"RootAttributeNeverSet",
     []
     {
         const CSmartPtr<CXmlObjectBase> spRoot = new gpx::CGpx;
         return spRoot;
     },
     L"Failed to convert the element [gpx] to XML\n"
     L"Failed to convert attributes to XML\n"
     L"The required attribute [version] has not been set"},
    {"MemberOfAnAllGroupNeverSet",
     Broken<invoice::CInvoice>(s_invoice, [](auto& root) { root.SetSeller(new invoice::CAddress(L"seller")); }),
     L"Failed to convert the element [invoice] to XML\n"
     L"Failed to convert the element [seller] to XML\n"
     L"The required element [street] has not been set"},
    {"ObjectThatIsNoLongerNil",
     Broken<invoice::CInvoice>(s_invoice, [](auto& root) { root.GetDelivery()->SetNil(false); }),
     L"Failed to convert the element [invoice] to XML\n"
     L"Failed to convert the element [delivery] to XML\n"
     L"The required element [date] has not been set"},
    {"MemberOfAChoiceNeverFilled",
     Broken<invoice::CInvoice>(s_invoice,
                               [](auto& root)
                               {
                                   root.GetPayment()->SetTransfer(nullptr);
                                   root.GetPayment()->SetTransfer(new invoice::CTransfer);
                               }),
     L"Failed to convert the element [invoice] to XML\n"
     L"Failed to convert the element [payment] to XML\n"
     L"Failed to convert the element [transfer] to XML\n"
     L"The required element [iban] has not been set"},
    {"ItemOfADerivedClassNeverFilled",
     Broken<invoice::CInvoice>(s_invoice, [](auto& root) { root.GetLine()->Add(new invoice::CServiceLine(L"line")); }),
     L"Failed to convert the element [invoice] to XML\n"
     L"Failed to convert the element [line] to XML\n"
     L"The required element [text] has not been set"},
    {"ObjectBesideOpenContent",
     Broken<settings::CSettings>(s_settings, [](auto& root) { root.GetPlugin()->Add(new settings::CPlugin); }),
     L"Failed to convert the element [settings] to XML\n"
     L"Failed to convert the element [plugin] to XML\n"
     L"Failed to convert attributes to XML\n"
     L"The required attribute [id] has not been set"},
};
INSTANTIATE_TEST_SUITE_P(Any, UnwritableObject, testing::ValuesIn(s_unwritable), NameOf<SUnwritable>);

} // namespace
} // namespace QvTest
