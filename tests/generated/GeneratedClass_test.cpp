#include "quiver/generated/GeneratedClass.h"

#include "quiver/QvXmlLib.h"
#include "tests/generated/SmallClasses.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

const std::wstring s_strStart = L"<order xmlns=\"urn:sample\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                L"xmlns:s=\"urn:sample\" number=\"7\">";

/// A document with the members given between those that have to be there.
std::wstring OrderDocument(const std::wstring& strOptional, const std::wstring& strPayment = L"<card>ABC-1</card>",
                           const std::wstring& strRest = L"<price>1.5</price>")
{
    return s_strStart + L"<sku>XYZ-12</sku><quantity>3</quantity>" + strOptional +
           L"<address><city>Bonn</city></address><payment>" + strPayment + L"</payment>" + strRest + L"</order>";
}

void Read(COrder& order, const std::wstring& strXml)
{
    order.FromXml(strXml.c_str(), CXmlSerializationContext::GetDefaultContext());
}

/// Opens its properties.
class COpenAnswer : public CAnswer
{
public:
    COpenAnswer()
        : CInstanceMonitor(L"COpenAnswer")
    {
    }
    using CAnswer::AccessProperty;
};

/// Lives from before the program's start to behind its end, and is written while statics die.
struct SEarlyAndLate
{
    SEarlyAndLate()
        : spPrice(new CPrice)
    {
        spPrice->SetValue(1);
        strEarly = sample::Write(*spPrice);
    }
    ~SEarlyAndLate()
    {
        spPrice->SetTag(EColour::Red);
        if (sample::Write(*spPrice) != L"<price xmlns=\"urn:sample\" tag=\"red\">1</price>")
            std::abort();
    }
    CSmartPtr<CPrice> spPrice;
    std::wstring strEarly;
};
const SEarlyAndLate s_earlyAndLate;

} // namespace

TEST(GeneratedClass, ReadsEveryKindOfMember)
{
    COrder order;
    Read(order,
         OrderDocument(L"<colour> dark  blue </colour><sizes> 1 2\n3</sizes><shipped xsi:nil=\"true\"/>",
                       L"<note>5</note><note> 10 </note>",
                       L"<key>a</key><amount>1.50</amount><key>b</key><amount>2</amount><price tag=\"red\">1e2</price>"
                       L"<via xsi:type=\"s:ForeignAddress\" urgent=\"1\"><city>Rom</city><country>I</country></via>"
                       L"<o:x xmlns:o=\"urn:other\">text</o:x>"));
    EXPECT_EQ(order.GetSku(), L"XYZ-12");
    EXPECT_EQ(order.GetQuantity(), 3);
    EXPECT_EQ(order.GetColour(), EColour::DarkBlue);
    ASSERT_TRUE(order.GetSizes().has_value());
    EXPECT_EQ(*order.GetSizes(), (std::vector<int>{1, 2, 3}));
    ASSERT_NE(order.GetShipped(), nullptr);
    EXPECT_TRUE(order.GetShipped()->IsNil());
    EXPECT_EQ(order.GetAddress()->GetCity(), L"Bonn");
    EXPECT_EQ(order.GetPayment()->GetSelected(), L"note");
    ASSERT_EQ(order.GetPayment()->GetNote()->GetCount(), 2);
    EXPECT_EQ(order.GetPayment()->GetNote()->Item(1), 10);
    ASSERT_EQ(order.GetPair()->GetCount(), 2);
    EXPECT_EQ(order.GetPair()->Item(0)->GetAmount(), CDecimal(L"1.5"));
    EXPECT_EQ(order.GetPrice()->Item(0)->GetValue(), 100);
    EXPECT_EQ(order.GetPrice()->Item(0)->GetTag(), EColour::Red);
    ASSERT_EQ(order.GetVia()->GetCount(), 1);
    CAddress& via = *order.GetVia()->Item(0);
    EXPECT_EQ(dynamic_cast<CForeignAddress&>(via).GetUrgent(), true);
    ASSERT_EQ(order.GetAny()->GetCount(), 1);
    EXPECT_EQ(order.GetAny()->Item(0)->GetText(), L"text");
    EXPECT_EQ(order.GetNumber(), 7);
}

TEST(GeneratedClass, WritesWhatItReads)
{
    const std::wstring strXml = L"<order xmlns=\"urn:sample\" number=\"7\"><sku>XYZ-12</sku><quantity>3</quantity>"
                                L"<address><city>Bonn</city></address><payment><card>ABC-1</card></payment>"
                                L"<key>a</key><amount>1.5</amount><price tag=\"dark blue\">1.5</price></order>";
    COrder order;
    Read(order, strXml);
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(s_lpctNamespace);
    EXPECT_EQ(order.ToXml(false, false, EOLType_LF, context), strXml);
    COrder second;
    Read(second, order.ToXml(false, false, EOLType_LF, context));
    EXPECT_EQ(second.ToXml(false, false, EOLType_LF, context), strXml);

    const CBinaryData data = order.ToFastInfosetStream(FInfoDecl_None, context, Compression_None);
    second.FromXmlStream(data, context);
    EXPECT_EQ(second.ToXml(false, false, EOLType_LF, context), strXml);
}

TEST(GeneratedClass, SaysTheTypeWhereAnotherIsDeclared)
{
    COrder order;
    Read(order, OrderDocument(L""));
    const CSmartPtr<CForeignAddress> spForeign = new CForeignAddress(L"address");
    spForeign->SetCity(L"Rom");
    spForeign->SetCountry(L"I");
    order.SetAddress(spForeign);
    EXPECT_NE(sample::Write(order).find(L"ForeignAddress\">"), std::wstring::npos)
        << ::testing::PrintToString(sample::Write(order));
    COrder second;
    Read(second, sample::Write(order));
    EXPECT_NE(dynamic_cast<CForeignAddress*>(static_cast<CAddress*>(second.GetAddress())), nullptr);
}

TEST(GeneratedClass, RefusesWhatTheSchemaForbids)
{
    const struct
    {
        const char* lpcWhat;
        std::wstring strXml;
        const wchar_t* lpctMessage; ///< what the chain ends in
    } s_cases[] = {
        {"an empty choice", OrderDocument(L"", L""), L"The element contained no sutable child elements"},
        {"two members of a choice", OrderDocument(L"", L"<card>ABC-1</card><note>1</note>"),
         L"The unexpected element [note] remains un processed"},
        {"a missing address", s_strStart + L"<sku>XYZ-12</sku><quantity>3</quantity></order>",
         L"Failed to find a suitable substitution element for [address]"},
        {"a broken pattern", s_strStart + L"<sku>XY-12</sku></order>",
         L"Invalid Value for sku [XY-12]\nThe value does not match the pattern [A-Z]{3}-\\d+"},
        {"an empty number", s_strStart + L"<sku>XYZ-12</sku><quantity/></order>",
         L"Invalid Value for quantity []\nThe value is no xs:int"},
        {"a number below its bound", s_strStart + L"<sku>XYZ-12</sku><quantity>0</quantity></order>",
         L"Invalid Value for quantity [0]\nThe value is below 1"},
        {"a value that is not in the enumeration", OrderDocument(L"<colour>green</colour>"),
         L"Invalid Value for colour [green]\nThe value is none of the enumeration"},
        {"too many items of a list", OrderDocument(L"<sizes>1 2 3 4</sizes>"),
         L"Invalid Value for sizes [1 2 3 4]\nThe value is longer than 3"},
        {"too many pairs",
         OrderDocument(L"", L"<card>ABC-1</card>",
                       L"<key>a</key><amount>1</amount><key>a</key><amount>1</amount><key>a</key><amount>1</amount>"),
         L"The Maximum number of [key] elements allowed in this collection is 2"},
        {"half a pair", OrderDocument(L"", L"<card>ABC-1</card>", L"<key>a</key><price>1</price>"),
         L"The Minimum number of [price] elements allowed in this collection is 1"},
        {"an unknown type", OrderDocument(L"", L"<card>ABC-1</card>", L"<price>1</price><via xsi:type=\"s:Nowhere\"/>"),
         L"Failed to find a suitable substitution element for [via]"},
        {"a type of another namespace",
         OrderDocument(L"", L"<card>ABC-1</card>",
                       L"<price>1</price><via xmlns:f=\"urn:f\" xsi:type=\"f:ForeignAddress\"><city>Rom</city>"
                       L"<country>I</country></via>"),
         L"Failed to find a suitable substitution element for [via]"},
        {"too much open content",
         OrderDocument(L"", L"<card>ABC-1</card>",
                       L"<price>1</price><o:a xmlns:o=\"o\"/><o:a xmlns:o=\"o\"/><o:a xmlns:o=\"o\"/>"),
         L"The Maximum number of [AnyElement] elements allowed in this collection is 2"},
        {"an element of the wrong namespace", OrderDocument(L"", L"<card>ABC-1</card>", L"<price>1</price><x/>"),
         L"The unexpected element [x] remains un processed"},
        {"an attribute of the wrong namespace", L"<order xmlns=\"urn:sample\" number=\"7\" extra=\"1\"/>",
         L"Unexpected Attribute [extra] found."},
        {"a missing attribute", L"<order xmlns=\"urn:sample\"/>", L"Failed to find the required Attribute [number]"}};
    for (const auto& c : s_cases)
    {
        SCOPED_TRACE(c.lpcWhat);
        const std::wstring strRefusal = Refusal<COrder>(c.strXml);
        const std::wstring strEnd = c.lpctMessage;
        EXPECT_TRUE(strRefusal.size() >= strEnd.size() &&
                    strRefusal.compare(strRefusal.size() - strEnd.size(), strEnd.size(), strEnd) == 0)
            << ::testing::PrintToString(strRefusal);
    }
}

TEST(GeneratedClass, RefusesAttributesAndChildrenOfASimpleElement)
{
    const auto fnRefusal = [](const wchar_t* lpctQuantity, const CXmlSerializationContext& context)
    {
        const std::wstring strXml = s_strStart + L"<sku>XYZ-12</sku>" + lpctQuantity +
                                    L"<address><city>Bonn</city></address><payment><card>ABC-1</card></payment>"
                                    L"<price>1.5</price></order>";
        const std::wstring strMessages = Refusal<COrder>(strXml, context);
        return strMessages.substr(strMessages.rfind(L'\n') + 1);
    };
    CXmlSerializationContext strict;
    CXmlSerializationContext anyAttributes;
    anyAttributes.SetIgnoreUnknownAttributes(true);
    CXmlSerializationContext anyElements;
    anyElements.SetIgnoreUnknownElements(true);
    const std::wstring strAttribute = L"Unexpected Attribute [unit] found.";
    const std::wstring strChild = L"Failed read all the elements held within the element [quantity]. The unexpected "
                                  L"element [x] remains un processed";
    const struct
    {
        const wchar_t* lpctQuantity;
        std::wstring strStrict;
        std::wstring strAnyAttributes;
        std::wstring strAnyElements;
    } cases[] = {{L"<quantity>3</quantity>", L"done", L"done", L"done"},
                 {L"<quantity xmlns:z='urn:z'>3</quantity>", L"done", L"done", L"done"},
                 {L"<quantity unit='kg'>3</quantity>", strAttribute, L"done", strAttribute},
                 {L"<quantity unit='kg' xmlns:z='urn:z'>3</quantity>", strAttribute, L"done", strAttribute},
                 {L"<quantity>3<x/></quantity>", strChild, strChild, L"done"},
                 {L"<quantity unit='kg'>3<x/></quantity>", strChild, strChild, strAttribute}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(c.lpctQuantity)));
        EXPECT_EQ(fnRefusal(c.lpctQuantity, strict), c.strStrict);
        EXPECT_EQ(fnRefusal(c.lpctQuantity, anyAttributes), c.strAnyAttributes);
        EXPECT_EQ(fnRefusal(c.lpctQuantity, anyElements), c.strAnyElements);
    }
}

TEST(GeneratedClass, PassesOverUnknownElementsAheadOfARequiredOneIfItMay)
{
    const std::wstring strXml = Document(L"drawing", L"", L"<title>t</title><x/><circle/><middle>m</middle>");
    EXPECT_TRUE(EndsWith(Refusal<CDrawing>(strXml), L"Failed to find a suitable substitution element for [shape]"));
    CXmlSerializationContext lenient;
    lenient.SetIgnoreUnknownElements(true);
    EXPECT_EQ(Refusal<CDrawing>(strXml, lenient), L"done");
}

TEST(GeneratedClass, DeletesANewObjectThatItRefuses)
{
    // The counts of the classes stay what they were; the address sanitizer says the same.
    const long nBefore = QvTest::CountInstances(L"CForeignAddress").nLiving;
    COrder order;
    EXPECT_THROW(order.SetAddress(new CForeignAddress(L"nowhere")), CQvInvalidParamException);
    EXPECT_EQ(nBefore, QvTest::CountInstances(L"CForeignAddress").nLiving);
}

TEST(GeneratedClass, HasObjectsBeforeMain)
{
    EXPECT_EQ(s_earlyAndLate.strEarly, L"<price xmlns=\"urn:sample\" tag=\"dark blue\">1</price>");
}

TEST(GeneratedClass, BuildsItsMetadataOnceForManyThreads)
{
    std::atomic<int> nReady{0};
    std::vector<std::thread> threads;
    std::vector<std::wstring> texts(16);
    for (std::wstring& strText : texts)
    {
        threads.emplace_back(
            [&nReady, &strText]
            {
                const CSmartPtr<CDrawing> spDrawing = new CDrawing;
                ++nReady;
                while (nReady < 16)
                    std::this_thread::yield();
                spDrawing->FromXml(Document(L"drawing", L"", L"<title>t</title><circle/><middle>m</middle>").c_str(),
                                   CXmlSerializationContext::GetDefaultContext());
                strText = sample::Write(*spDrawing);
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const std::wstring& strText : texts)
        EXPECT_EQ(strText, L"<drawing xmlns=\"urn:sample\"><title>t</title><circle/><middle>m</middle></drawing>");
}

TEST(GeneratedClass, RefusesTextWhereNoneMayBe)
{
    const std::wstring strPrefix = L"Unexpected text found within the element ";
    const std::wstring strFull = L"<title>t</title><circle/><middle>m</middle>";
    const struct
    {
        const char* lpcWhat;
        std::wstring strRefusal;
        std::wstring strEnd;
    } cases[] = {
        {"indentation",
         Refusal<CDrawing>(
             Document(L"drawing", L"", L"\n\t <title>t</title>\r\n<circle>\n</circle> <middle>m</middle> ")),
         L"done"},
        {"text in front", Refusal<CDrawing>(Document(L"drawing", L"", L"x" + strFull)),
         L"Failed to process the element [drawing]\n" + strPrefix + L"[drawing]"},
        {"text behind", Refusal<CDrawing>(Document(L"drawing", L"", strFull + L"\n\u00E9")),
         L"Failed to process the element [drawing]\n" + strPrefix + L"[drawing]"},
        {"long text", Refusal<CDrawing>(Document(L"drawing", L"", strFull + std::wstring(20000, L' ') + L"x")),
         strPrefix + L"[drawing]"},
        {"text in a child", Refusal<CDrawing>(Document(L"drawing", L"", L"<title>t</title><circle>x</circle>")),
         L"Failed to process the element [drawing]\nFailed to process the element [circle]\n" + strPrefix +
             L"[circle]"},
        {"text beside a nested group",
         Refusal<CEnvelope>(Document(L"envelope", L"", L"<head>h</head><m:a/><price>1</price>x<tail>t</tail>")),
         strPrefix + L"[envelope]"},
        {"text in a choice", Refusal<CAnswer>(Document(L"answer", L"", L"<number>1</number>x")),
         strPrefix + L"[answer]"},
        {"mixed content", Refusal<COpen>(Document(L"open", L"", L"x<id>1</id>y")), L"done"},
        {"simple content", Refusal<CPrice>(Document(L"price", L"", L"1")), L"done"},
        {"a nil element with text", Refusal<CAnswer>(Document(L"answer", L"xsi:nil='true'", L"x")),
         strPrefix + L"[answer]"},
        {"a nil element with a blank", Refusal<CAnswer>(Document(L"answer", L"xsi:nil='true'", L" ")),
         strPrefix + L"[answer]"},
        {"a nil value with text",
         Refusal<CEverything>(Document(L"everything", L"", L"<day xsi:nil='true'>2001-01-01</day>")),
         strPrefix + L"[day]"},
        {"a nil element with a child", Refusal<CAnswer>(Document(L"answer", L"xsi:nil='true'", L"<number>1</number>")),
         L"The element [answer] is nil, so it may not hold the element [number]"}};
    for (const auto& c : cases)
        EXPECT_TRUE(EndsWith(c.strRefusal, c.strEnd)) << c.lpcWhat << ": " << ::testing::PrintToString(c.strRefusal);
}

namespace
{

/// Mixed content whose text stands ahead of its elements.
template <XmlElementGroupType eGroup>
class CNotice : public CGenerated<CNotice<eGroup>>
{
public:
    explicit CNotice(const wchar_t* lpctElementName = L"notice")
        : CInstanceMonitor(L"CNotice")
        , CGenerated<CNotice<eGroup>>(lpctElementName)
    {
    }

    CRequired<xs::MixedText> m_Text;
    COptional<xs::Int> m_Id;

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(eGroup, ElementType_Element, L"notice", s_lpctNamespace);
        description.MixedText(m_Text);
        description.Element(m_Id, L"id", s_lpctNamespace);
    }
};

template <class TNotice>
void ExpectMixedText()
{
    TNotice notice;
    notice.m_Id.Set(1, L"id");
    notice.m_Text.Set(L"", L"notice");
    EXPECT_EQ(sample::Write(notice), L"<notice xmlns=\"urn:sample\"><id>1</id></notice>");
    notice.FromXml(Document(L"notice", L"", L"x<id>2</id>y").c_str(), CXmlSerializationContext::GetDefaultContext());
    EXPECT_EQ(notice.m_Text.Get(), L"xy");
    EXPECT_EQ(notice.m_Id.Get(), 2);
    EXPECT_EQ(sample::Write(notice), L"<notice xmlns=\"urn:sample\">xy<id>2</id></notice>");
}

} // namespace

TEST(GeneratedClass, WritesTheTextOfMixedContentAheadOfItsElements)
{
    ExpectMixedText<CNotice<GroupType_Sequence>>();
    ExpectMixedText<CNotice<GroupType_All>>();
}

TEST(GeneratedClass, WritesTheTextOfMixedContent)
{
    COpen open;
    open.m_Id.Set(1, L"id");
    open.m_Text.Set(L"", L"open");
    EXPECT_EQ(sample::Write(open), L"<open xmlns=\"urn:sample\"><id>1</id></open>");
    open.FromXml(Document(L"open", L"", L"x<id>1</id>y").c_str(), CXmlSerializationContext::GetDefaultContext());
    EXPECT_EQ(sample::Write(open), L"<open xmlns=\"urn:sample\"><id>1</id>xy</open>");
}

TEST(GeneratedClass, ReadsNilAndWritesIt)
{
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
    CAnswer answer;
    answer.FromXml(Document(L"answer", L"xsi:nil='true'", L"").c_str(), context);
    EXPECT_TRUE(answer.IsNil());
    const std::wstring strXml = sample::Write(answer);
    EXPECT_NE(strXml.find(L"nil=\"true\""), std::wstring::npos) << ::testing::PrintToString(strXml);
    CAnswer second;
    second.FromXml(strXml.c_str(), context);
    EXPECT_TRUE(second.IsNil());
    second.FromXml(Document(L"answer", L"xsi:nil='false'", L"<number>1</number>").c_str(), context);
    EXPECT_FALSE(second.IsNil());

    CNillable<xs::Int> value(L"value");
    EXPECT_TRUE(EndsWith(MessagesOf([&] { sample::Write(value); }), L"The required value [value] has not been set"));
    value.SetNil(true);
    EXPECT_NE(sample::Write(value).find(L"nil=\"true\""), std::wstring::npos);
    value.SetValue(3);
    EXPECT_FALSE(value.IsNil());
    EXPECT_EQ(value.GetValue(), 3);
}

TEST(GeneratedClass, HasOneMemberOfAChoice)
{
    const std::wstring strTaken =
        L"The Property [number] is already set. Only one element within this class bay be set at a time";
    CAnswer answer;
    answer.SetNumber(1);
    EXPECT_EQ(MessagesOf([&] { answer.SetTwin(2); }), strTaken);
    EXPECT_EQ(MessagesOf([&] { answer.GetName()->Add(L"a"); }), strTaken);
    EXPECT_EQ(MessagesOf([&] { answer.GetPair()->AddNew(); }), strTaken);
    const CSmartPtr<CAddress> spAddress = new CForeignAddress;
    EXPECT_EQ(MessagesOf([&] { answer.SetAddress(spAddress); }), strTaken);
    const CSmartPtr<CElement> spOther = new CElement(L"x", L"urn:other");
    EXPECT_EQ(MessagesOf([&] { answer.SetOther(spOther); }), strTaken);
    EXPECT_EQ(answer.GetName()->GetCount(), 0);
    EXPECT_EQ(answer.GetPair()->GetCount(), 0);
    answer.SetTwin(std::nullopt);
    EXPECT_EQ(answer.GetSelected(), L"number");
    answer.SetNumber(std::nullopt);
    EXPECT_EQ(answer.GetSelected(), L"");

    const CSmartPtr<CValueCol<xs::NCName>> spNames = answer.GetName();
    EXPECT_THROW(spNames->Add(L"a:b"), CQvInvalidValueException);
    EXPECT_EQ(answer.GetSelected(), L"") << "a value that is refused selects nothing";
    spNames->Add(L"a");
    spNames->Add(L"b");
    EXPECT_EQ(answer.GetSelected(), L"name");
    EXPECT_THROW(answer.SetNumber(1), CQvInvalidStateException);
    spNames->Remove(0);
    EXPECT_EQ(answer.GetSelected(), L"name");
    spNames->Clear();
    EXPECT_EQ(answer.GetSelected(), L"");
    answer.GetPair()->AddNew();
    EXPECT_EQ(answer.GetSelected(), L"key");
    answer.GetPair()->Clear();
    answer.SetTwin(2);
    EXPECT_EQ(answer.m_Number.Get(), std::nullopt);
    answer.SetTwin(std::nullopt);
    EXPECT_TRUE(EndsWith(MessagesOf([&] { sample::Write(answer); }), L"currently there are none set"));
    CXmlSerializationContext lenient;
    lenient.SetIgnoreMissingChoice(true);
    EXPECT_EQ(sample::Write(answer, lenient), L"<answer xmlns=\"urn:sample\"/>");
    EXPECT_EQ(Refusal<CAnswer>(Document(L"answer", L"", L""), lenient), L"done");
}

TEST(GeneratedClass, TellsAValueThatIsNoneBeforeAChoiceThatIsMade)
{
    CPayment payment;
    payment.GetNote()->Add(5);
    EXPECT_EQ(MessagesOf([&] { payment.SetCard(L"x"); }),
              L"Invalid Value for card [x]\nThe value does not match the pattern [A-Z]{3}-\\d+");
    EXPECT_EQ(MessagesOf([&] { payment.SetCard(L"ABC-1"); }),
              L"The Property [note] is already set. Only one element within this class bay be set at a time");
    EXPECT_EQ(payment.GetCard(), std::nullopt);
    EXPECT_EQ(payment.GetSelected(), L"note");
}

TEST(GeneratedClass, GivesTheExtrasOfTheContextToTheRootAlone)
{
    COrder order;
    Read(order, OrderDocument(L"<shipped>2001-02-03</shipped>", L"<cash><city>Ulm</city></cash>",
                              L"<key>a</key><amount>1</amount><price>1</price><price>2</price>"
                              L"<via><city>Rom</city></via><o:x xmlns:o=\"urn:other\"><o:y/></o:x>"));
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(s_lpctNamespace);
    context.GetAdditionalRootAttributes()->Add(L"extra", L"e", L"");
    EXPECT_EQ(order.ToXml(false, false, EOLType_LF, context),
              L"<order xmlns=\"urn:sample\" extra=\"e\" number=\"7\"><sku>XYZ-12</sku><quantity>3</quantity>"
              L"<shipped>2001-02-03</shipped><address><city>Bonn</city></address>"
              L"<payment><cash><city>Ulm</city></cash></payment><key>a</key><amount>1</amount>"
              L"<price tag=\"dark blue\">1</price><price tag=\"dark blue\">2</price><via><city>Rom</city></via>"
              L"<AA:x xmlns:AA=\"urn:other\"><AA:y/></AA:x></order>");
}

TEST(GeneratedClass, TellsItsPropertiesWhateverTheVariantHeld)
{
    COpenAnswer answer;
    answer.SetTwin(2);
    QvVariant value;
    value.SetI4(7);
    EXPECT_NO_THROW(answer.AccessProperty(0, true, value));
    EXPECT_FALSE(value.IsValid()) << "the number is not set";
    answer.AccessProperty(1, true, value);
    EXPECT_EQ(value.ToString(nullptr), L"2");
    EXPECT_EQ(answer.GetSelected(), L"number");
}

TEST(GeneratedClass, ReadsEveryMemberOfAChoice)
{
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
    const std::wstring contents[] = {
        L"<number>1</number>",
        L"<t:number>1</t:number>",
        L"<name>a</name><name>b</name>",
        L"<key>a</key><amount>1</amount><key>b</key><amount>2</amount>",
        L"<address xsi:type='s:ForeignAddress'><city>a</city><country>b</country></address>",
        L"<o:anything/>"};
    CAnswer answer;
    for (const std::wstring& strContent : contents)
    {
        SCOPED_TRACE(::testing::PrintToString(strContent));
        answer.FromXml(Document(L"answer", L"", strContent).c_str(), context);
        const std::wstring strXml = sample::Write(answer);
        CAnswer second;
        second.FromXml(strXml.c_str(), context);
        EXPECT_EQ(sample::Write(second), strXml);
        EXPECT_EQ(second.GetSelected(), answer.GetSelected());
        second.FromXmlStream(answer.ToFastInfosetStream(FInfoDecl_None, context, Compression_None), context);
        EXPECT_EQ(sample::Write(second), strXml);
    }
    EXPECT_EQ(answer.m_Other.Get()->GetName(), L"anything");
}

TEST(GeneratedClass, LetsACollectionOutliveItsObject)
{
    CSmartPtr<CValueCol<xs::NCName>> spNames;
    {
        CAnswer answer;
        spNames = answer.GetName();
        spNames->Add(L"a");
    }
    spNames->Add(L"b");
    EXPECT_EQ(spNames->GetCount(), 2);

    CAnswer answer;
    spNames = answer.GetName();
    answer.FromXml(Document(L"answer", L"", L"<number>1</number>").c_str(),
                   CXmlSerializationContext::GetDefaultContext());
    spNames->Add(L"c");
    EXPECT_EQ(answer.GetSelected(), L"number") << "the collection belongs to nobody any more";
}

TEST(GeneratedClass, AppliesDefaultAndFixedValues)
{
    CRules rules;
    rules.FromXml(Document(L"rules", L"", L"<size/><unit/>").c_str(), CXmlSerializationContext::GetDefaultContext());
    EXPECT_EQ(rules.m_Size.Get(), 5);
    EXPECT_EQ(rules.m_Unit.Get(), L"kg");
    EXPECT_FALSE(rules.m_Lang.IsSet());
    EXPECT_EQ(sample::Write(rules),
              L"<rules xmlns=\"urn:sample\" lang=\"en\" version=\"1\"><size>5</size><unit>kg</unit></rules>");
    CXmlSerializationContext terse;
    terse.SetNoOptionalAttributeDefaultOutput(true);
    const std::wstring strTerse = sample::Write(rules, terse);
    EXPECT_EQ(strTerse.find(L"lang"), std::wstring::npos) << ::testing::PrintToString(strTerse);
    EXPECT_TRUE(
        EndsWith(Refusal<CRules>(Document(L"rules", L"version='2'", L"<size/>")), L"The value is fixed to 1.0"));
    EXPECT_TRUE(
        EndsWith(Refusal<CRules>(Document(L"rules", L"", L"<size/><unit>g</unit>")), L"The value is fixed to kg"));
}

TEST(GeneratedClassDepth, EndsAMandatoryRecursion)
{
    EXPECT_TRUE(EndsWith(Refusal<CEndless>(Document(L"endless", L"", L"<endless><endless/></endless>")),
                         L"Failed to find a required element [endless]"));
    CEndless endless;
    EXPECT_THROW(sample::Write(endless), CQvException);
}
