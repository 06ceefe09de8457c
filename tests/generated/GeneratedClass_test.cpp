#include "quiver/generated/GeneratedClass.h"

#include "quiver/QvXmlLib.h"
#include "tests/generated/SampleClasses.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

const std::wstring s_strStart = L"<order xmlns=\"urn:sample\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                                L"xmlns:s=\"urn:sample\" number=\"7\">";

/// A document with the members given between those that have to be there.
std::wstring Document(const std::wstring& strOptional, const std::wstring& strPayment = L"<card>ABC-1</card>",
                      const std::wstring& strRest = L"<price>1.5</price>")
{
    return s_strStart + L"<sku>XYZ-12</sku><quantity>3</quantity>" + strOptional +
           L"<address><city>Bonn</city></address><payment>" + strPayment + L"</payment>" + strRest + L"</order>";
}

std::wstring Write(const COrder& order)
{
    return order.ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
}

void Read(COrder& order, const std::wstring& strXml)
{
    order.FromXml(strXml.c_str(), CXmlSerializationContext::GetDefaultContext());
}

/// The messages of a failed read, outermost first, or "read".
std::wstring Refusal(const std::wstring& strXml)
{
    COrder order;
    try
    {
        Read(order, strXml);
    }
    catch (const CQvException& ex)
    {
        return ex.GetFullMessage();
    }
    return L"read";
}

} // namespace

TEST(GeneratedClass, ReadsEveryKindOfMember)
{
    COrder order;
    Read(order,
         Document(L"<colour> dark  blue </colour><sizes> 1 2\n3</sizes><shipped xsi:nil=\"true\"/>",
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
    Read(order, Document(L""));
    const CSmartPtr<CForeignAddress> spForeign = new CForeignAddress(L"address");
    spForeign->SetCity(L"Rom");
    spForeign->SetCountry(L"I");
    order.SetAddress(spForeign);
    EXPECT_NE(Write(order).find(L":ForeignAddress\">"), std::wstring::npos) << ::testing::PrintToString(Write(order));
    COrder second;
    Read(second, Write(order));
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
        {"an empty choice", Document(L"", L""), L"The element contained no sutable child elements"},
        {"two members of a choice", Document(L"", L"<card>ABC-1</card><note>1</note>"),
         L"The unexpected element [note] remains un processed"},
        {"a missing address", s_strStart + L"<sku>XYZ-12</sku><quantity>3</quantity></order>",
         L"Failed to find a suitable substitution element for [address]"},
        {"a broken pattern", s_strStart + L"<sku>XY-12</sku></order>",
         L"Invalid Value for sku [XY-12]\nThe value does not match the pattern [A-Z]{3}-\\d+"},
        {"an empty number", s_strStart + L"<sku>XYZ-12</sku><quantity/></order>",
         L"Invalid Value for quantity []\nThe value is no xs:int"},
        {"a number below its bound", s_strStart + L"<sku>XYZ-12</sku><quantity>0</quantity></order>",
         L"Invalid Value for quantity [0]\nThe value is below 1"},
        {"a value that is not in the enumeration", Document(L"<colour>green</colour>"),
         L"Invalid Value for colour [green]\nThe value is none of the enumeration"},
        {"too many items of a list", Document(L"<sizes>1 2 3 4</sizes>"),
         L"Invalid Value for sizes [1 2 3 4]\nThe value is longer than 3"},
        {"too many pairs",
         Document(L"", L"<card>ABC-1</card>",
                  L"<key>a</key><amount>1</amount><key>a</key><amount>1</amount><key>a</key><amount>1</amount>"),
         L"The Maximum number of [key] elements allowed in this collection is 2"},
        {"half a pair", Document(L"", L"<card>ABC-1</card>", L"<key>a</key><price>1</price>"),
         L"The Minimum number of [price] elements allowed in this collection is 1"},
        {"an unknown type", Document(L"", L"<card>ABC-1</card>", L"<price>1</price><via xsi:type=\"s:Nowhere\"/>"),
         L"Failed to find a suitable substitution element for [via]"},
        {"too much open content",
         Document(L"", L"<card>ABC-1</card>",
                  L"<price>1</price><o:a xmlns:o=\"o\"/><o:a xmlns:o=\"o\"/><o:a xmlns:o=\"o\"/>"),
         L"The Maximum number of [AnyElement] elements allowed in this collection is 2"},
        {"an element of the wrong namespace", Document(L"", L"<card>ABC-1</card>", L"<price>1</price><x/>"),
         L"The unexpected element [x] remains un processed"},
        {"an attribute of the wrong namespace", L"<order xmlns=\"urn:sample\" number=\"7\" extra=\"1\"/>",
         L"Unexpected Attribute [extra] found."},
        {"a missing attribute", L"<order xmlns=\"urn:sample\"/>", L"Failed to find the required Attribute [number]"}};
    for (const auto& c : s_cases)
    {
        SCOPED_TRACE(c.lpcWhat);
        const std::wstring strRefusal = Refusal(c.strXml);
        const std::wstring strEnd = c.lpctMessage;
        EXPECT_TRUE(strRefusal.size() >= strEnd.size() &&
                    strRefusal.compare(strRefusal.size() - strEnd.size(), strEnd.size(), strEnd) == 0)
            << ::testing::PrintToString(strRefusal);
    }
}
