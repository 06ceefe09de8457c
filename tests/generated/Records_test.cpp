#include "quiver/generated/Records.h"

#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using namespace sample;

namespace
{

const CXmlSerializationContext& Default()
{
    return CXmlSerializationContext::GetDefaultContext();
}

/// The content of CEverything in an order, each of its parts once.
std::wstring Everything(const std::wstring& strContent)
{
    return Document(L"everything", L"", strContent);
}

const std::wstring s_strNumber = L"<number>1</number>";
const std::wstring s_strAddress =
    L"<address xsi:type='s:ForeignAddress'><city>Rom</city><country>I</country></address>";
const std::wstring s_strPrice = L"<price>2</price>";

} // namespace

TEST(Records, ReadAnAllGroupInAnyOrder)
{
    const std::wstring strSecond = L"<second><city>Bonn</city></second>";
    const std::wstring parts[] = {s_strNumber, s_strAddress,      s_strPrice,
                                  strSecond,   L"<note>n</note>", L"<day xsi:nil='true'/>"};
    std::wstring strFirst;
    for (std::size_t nTurn = 0; nTurn < std::size(parts); ++nTurn)
    {
        std::wstring strContent;
        for (std::size_t n = 0; n < std::size(parts); ++n)
            strContent += parts[(n * 5 + nTurn) % std::size(parts)];
        CEverything everything;
        everything.FromXml(Everything(strContent).c_str(), Default());
        EXPECT_NE(dynamic_cast<CForeignAddress*>(static_cast<CAddress*>(everything.m_Address.Get())), nullptr);
        EXPECT_EQ(everything.m_Second.Get()->GetCity(), L"Bonn");
        EXPECT_TRUE(everything.m_Day.Get()->IsNil());
        if (nTurn == 0)
            strFirst = Write(everything);
        EXPECT_EQ(Write(everything), strFirst);
    }
}

TEST(Records, MissWhatAnAllGroupRequires)
{
    const struct
    {
        std::wstring strContent;
        const wchar_t* lpctEnd;
    } cases[] = {{s_strAddress + s_strPrice, L"Failed to find the mandatory element [number]"},
                 {s_strNumber + s_strPrice, L"Failed to find a suitable substitution element for [address]"},
                 {s_strNumber + s_strAddress + s_strPrice + s_strAddress,
                  L"The unexpected element [address] remains un processed"},
                 {s_strNumber + s_strAddress + s_strPrice, L"done"}};
    for (const auto& c : cases)
    {
        const std::wstring strRefusal = Refusal<CEverything>(Everything(c.strContent));
        EXPECT_TRUE(EndsWith(strRefusal, c.lpctEnd)) << ::testing::PrintToString(strRefusal);
    }
    CXmlSerializationContext lenient;
    lenient.SetIgnoreMissingMandatoryElements(true);
    EXPECT_EQ(Refusal<CEverything>(Everything(s_strNumber + s_strPrice), lenient), L"done");
}

TEST(Records, RefuseToWriteWithoutWhatIsRequired)
{
    CEverything everything;
    EXPECT_EQ(MessagesOf([&] { Write(everything); }), L"Failed to convert the element [everything] to XML\n"
                                                      L"The required element [number] has not been set");
    everything.m_Number.Set(1, L"number");
    EXPECT_EQ(MessagesOf([&] { Write(everything); }), L"Failed to convert the element [everything] to XML\n"
                                                      L"The required element [address] has not been set");
    COrder order;
    EXPECT_EQ(MessagesOf([&] { Write(order); }),
              L"Failed to convert the element [order] to XML\nFailed to convert attributes to XML\n"
              L"The required attribute [number] has not been set");

    CXmlSerializationContext lenient;
    lenient.SetIgnoreMissingMandatoryElements(true);
    CDrawing drawing;
    EXPECT_EQ(Write(drawing, lenient), L"<drawing xmlns=\"urn:sample\"/>");
}

TEST(Records, SkipUnknownElementsOnTheWayToRequiredOnes)
{
    CXmlSerializationContext lenient;
    lenient.SetIgnoreUnknownElements(true);
    const std::wstring strXml =
        Document(L"drawing", L"", L"<x/><title>t</title><y/><z/><circle/><x/><middle>m</middle><x/>");
    EXPECT_EQ(Refusal<CDrawing>(strXml, lenient), L"done");
    EXPECT_NE(Refusal<CDrawing>(strXml), L"done");
}

TEST(Records, TakeOpenContentInTheMiddleOfASequence)
{
    CEnvelope envelope;
    const std::wstring strXml =
        Document(L"envelope", L"",
                 L"<head>h</head><m:one/><m:two/><m:three>x</m:three><price>1</price><price>2</price><tail>t</tail>");
    envelope.FromXml(strXml.c_str(), Default());
    EXPECT_EQ(envelope.m_One.Get()->GetName(), L"one");
    ASSERT_EQ(envelope.m_Many.Get(CEnvelope::s_Many)->GetCount(), 2);
    EXPECT_EQ(envelope.m_Many.Get(CEnvelope::s_Many)->Item(1)->GetText(), L"x");
    EXPECT_EQ(envelope.m_Choice.Get()->GetPrice()->GetCount(), 2);
    EXPECT_EQ(envelope.m_Tail.Get(), L"t");
    CEnvelope second;
    const std::wstring strWritten = Write(envelope);
    second.FromXml(strWritten.c_str(), Default());
    EXPECT_EQ(Write(second), strWritten);
}

TEST(Records, RefuseOpenContentThatIsNotLetThrough)
{
    const struct
    {
        std::wstring strContent;
        const wchar_t* lpctEnd;
    } cases[] = {{L"<head>h</head><tail>t</tail>", L"Failed to find a required element [AnyElement]"},
                 {L"<head>h</head>", L"Failed to find a required element [AnyElement]"},
                 {L"<head>h</head><x xmlns=''/><m:a/><m:b/><m:c/>",
                  L"The Maximum number of [AnyElement] elements allowed in this collection is 2"},
                 {L"<head>h</head><x xmlns=''/><y xmlns=''/>", L"The unexpected element [y] remains un processed"},
                 {L"<head>h</head><x xmlns=''/><count>1</count><price>1</price>",
                  L"The unexpected element [price] remains un processed"},
                 {L"<head>h</head><x xmlns=''/><price>1</price><price>1</price><price>1</price>",
                  L"The unexpected element [price] remains un processed"},
                 {L"<head>h</head><x xmlns=''/>", L"done"}};
    for (const auto& c : cases)
    {
        const std::wstring strRefusal = Refusal<CEnvelope>(Document(L"envelope", L"", c.strContent));
        EXPECT_TRUE(EndsWith(strRefusal, c.lpctEnd)) << ::testing::PrintToString(strRefusal);
    }
    CEnvelope envelope;
    envelope.m_Head.Set(L"h", L"head");
    envelope.m_One.Set(new CElement(L"x", L"urn:sample"), L"AnyElement");
    EXPECT_TRUE(EndsWith(MessagesOf([&] { Write(envelope); }),
                         L"The element [x] of the namespace [urn:sample] may not stand here"));
    envelope.m_One.Set(new CElement(L"x", L"urn:other"), L"AnyElement");
    envelope.m_Many.Get(CEnvelope::s_Many)->Add(new CElement(L"y", L"urn:other"));
    EXPECT_TRUE(EndsWith(MessagesOf([&] { Write(envelope); }),
                         L"The element [y] of the namespace [urn:other] may not stand here"));
}

TEST(Records, TakeTheAttributesThatAWildcardLetsThrough)
{
    COpenDerived open;
    const std::wstring strXml = Document(L"open", L"a:extra='1' a:other='2'", L"x<id>1</id>y");
    open.FromXml(strXml.c_str(), Default());
    EXPECT_EQ(open.m_Extra.Get(), 1);
    EXPECT_EQ(open.m_Attributes.Get(COpen::s_Attributes)->GetCount(), 1);
    EXPECT_EQ(open.m_Text.Get(), L"xy");
    COpen base;
    base.FromXml(strXml.c_str(), Default());
    EXPECT_EQ(base.m_Attributes.Get(COpen::s_Attributes)->GetCount(), 2);
    EXPECT_TRUE(
        EndsWith(Refusal<COpenDerived>(Document(L"open", L"c:x='1'", L"")), L"Unexpected Attribute [x] found."));
    CXmlSerializationContext lenient;
    lenient.SetIgnoreUnknownAttributes(true);
    EXPECT_EQ(Refusal<COpenDerived>(Document(L"open", L"c:x='1'", L""), lenient), L"done");
}
