// What the invoice's generated classes refuse and keep: a choice that has to have a member, members of which only one
// may be set, a default value, and enumerations.

#include "Invoice.h"
#include "tests/support/Expect.h"

#include "quiver/QvXmlLib.h"

#include <gtest/gtest.h>

#include <string>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9;
using namespace invoice;

const wchar_t s_lpctNamespace[] = L"urn:example:invoice";

CXmlSerializationContext Context()
{
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(s_lpctNamespace);
    context.GetNamespaceAliases().Add(L"xsi", L"http://www.w3.org/2001/XMLSchema-instance");
    return context;
}

/// A sound invoice, but for what is given.
std::wstring Document(const std::wstring& strPayment, const std::wstring& strAttributes = L"")
{
    return L"<invoice xmlns=\"urn:example:invoice\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
           L"number=\"RG-0815\"" +
           strAttributes +
           L"><issued>2026-03-31</issued>"
           L"<seller><street>Ring 1</street><city>Graz</city><country>AT</country></seller>"
           L"<buyer xsi:type=\"Person\"><firstName>Ann</firstName><lastName>Stone</lastName></buyer>"
           L"<line xsi:type=\"ProductLine\" article=\"4711-01\"><text>Valve</text><quantity>1</quantity>"
           L"<unitPrice>18.75</unitPrice></line>" +
           strPayment + L"<total>18.75</total></invoice>";
}

CSmartPtr<CInvoice> Read(const std::wstring& strXml)
{
    CSmartPtr<CInvoice> spInvoice = new CInvoice;
    spInvoice->FromXml(strXml.c_str(), Context());
    return spInvoice;
}

std::wstring Write(CInvoice& document)
{
    return document.ToXml(false, false, EOLType_LF, Context());
}

const wchar_t s_lpctCash[] = L"<payment><cash>true</cash></payment>";

TEST(InvoiceChoice, RefusesADocumentThatSetsNoMember)
{
    for (const wchar_t* const lpctPayment : {L"<payment/>", L"<payment></payment>", L"<payment> </payment>"})
    {
        ExpectThrows<CQvValidationException>(
            L"Failed to process the element [invoice]\n"
            L"Failed to process the element [payment]\n"
            L"No child elements within the element [payment] were populated. The element "
            L"represents a choice, so one and only one element should be populated. "
            L"The element contained no sutable child elements",
            [&] { Read(Document(lpctPayment)); });
    }
}

TEST(InvoiceChoice, RefusesToWriteAnObjectThatSetsNoMember)
{
    const CSmartPtr<CInvoice> spInvoice = Read(Document(s_lpctCash));
    spInvoice->GetPayment()->SetCash(std::nullopt);
    EXPECT_TEXT(L"", spInvoice->GetPayment()->GetSelected());
    ExpectThrows<CQvValidationException>(L"Failed to convert the element [invoice] to XML\n"
                                         L"Failed to convert the element [payment] to XML\n"
                                         L"This element is a choice, and as such must have at one (and only one) valid "
                                         L"item, currently there are none set",
                                         [&] { Write(*spInvoice); });
}

TEST(InvoiceChoice, SelectsAMemberOnlyIfItsValueIsSound)
{
    CPayment payment;
    ExpectThrows<CQvInvalidValueException>(L"Invalid Value for card [1234]\n"
                                           L"The value does not match the pattern (?:\\*{12}\\p{Nd}{4})\\z",
                                           [&] { payment.SetCard(std::wstring(L"1234")); });
    EXPECT_TEXT(L"", payment.GetSelected());
    EXPECT_FALSE(payment.GetCard().has_value());

    payment.SetCash(true);
    EXPECT_TEXT(L"cash", payment.GetSelected());
    EXPECT_EQ(std::optional<bool>(true), payment.GetCash());
}

TEST(InvoiceChoice, SelectsNothingWhileADocumentIsReadWhoseValueIsNotSound)
{
    const CSmartPtr<CInvoice> spInvoice = new CInvoice;
    const std::wstring strXml = Document(L"<payment><card>1234</card></payment>");
    ExpectThrows<CQvValidationException>(L"Failed to process the element [invoice]\n"
                                         L"Failed to process the element [payment]\n"
                                         L"Invalid Value for card [1234]\n"
                                         L"The value does not match the pattern (?:\\*{12}\\p{Nd}{4})\\z",
                                         [&] { spInvoice->FromXml(strXml.c_str(), Context()); });
    EXPECT_TEXT(L"", spInvoice->GetPayment()->GetSelected());
}

TEST(InvoiceChoice, KeepsItsMemberWhenAnotherIsSet)
{
    const CSmartPtr<CInvoice> spInvoice = Read(Document(s_lpctCash));
    CPayment& payment = *spInvoice->GetPayment();
    EXPECT_THROW(payment.SetTransfer(new CTransfer), CQvInvalidStateException);
    EXPECT_TEXT(L"cash", payment.GetSelected());
    EXPECT_EQ(nullptr, static_cast<CTransfer*>(payment.GetTransfer()));

    payment.SetCash(std::nullopt);
    payment.SetTransfer(new CTransfer);
    EXPECT_TEXT(L"transfer", payment.GetSelected());
}

TEST(InvoiceDefault, IsReadAndWrittenTheSameWhetherTheDocumentGivesItOrNot)
{
    const std::wstring strGiven = Write(*Read(Document(s_lpctCash, L" language=\"en\"")));
    const std::wstring strAbsent = Write(*Read(Document(s_lpctCash)));
    EXPECT_TEXT(strGiven, strAbsent);
    EXPECT_NE(std::wstring::npos, strAbsent.find(L" language=\"en\""));
    EXPECT_TEXT(strAbsent, Write(*Read(strAbsent)));
}

TEST(InvoiceDefault, IsOneValueForANewObjectForOneThatWasReadAndForOneThatWasPutBack)
{
    const CSmartPtr<CInvoice> spInvoice = new CInvoice;
    EXPECT_EQ(ELanguage::En, spInvoice->GetLanguage());
    EXPECT_FALSE(spInvoice->HasLanguage());

    spInvoice->FromXml(Document(s_lpctCash, L" language=\"fr\"").c_str(), Context());
    EXPECT_EQ(ELanguage::Fr, spInvoice->GetLanguage());
    EXPECT_TRUE(spInvoice->HasLanguage());

    spInvoice->FromXml(Document(s_lpctCash).c_str(), Context());
    EXPECT_EQ(ELanguage::En, spInvoice->GetLanguage());
    EXPECT_FALSE(spInvoice->HasLanguage());

    spInvoice->SetLanguage(ELanguage::De);
    spInvoice->SetLanguage(std::nullopt);
    EXPECT_EQ(ELanguage::En, spInvoice->GetLanguage());
}

TEST(InvoiceDefault, IsLeftOutOnlyWhereTheContextSaysSo)
{
    CXmlSerializationContext context = Context();
    context.SetNoOptionalAttributeDefaultOutput(true);
    for (const wchar_t* const lpctAttribute : {L"", L" language=\"en\""})
    {
        const std::wstring strXml = Read(Document(s_lpctCash, lpctAttribute))->ToXml(false, false, EOLType_LF, context);
        EXPECT_EQ(std::wstring::npos, strXml.find(L"language"));
    }
}

TEST(InvoiceEnumeration, RefusesANumberThatStandsForNoText)
{
    CAddress address;
    address.SetCountry(ECountry::GB);
    ExpectThrows<CQvInvalidParamException>(L"The enumeration has no value 9",
                                           [&] { address.SetCountry(static_cast<ECountry>(9)); });
    EXPECT_EQ(ECountry::GB, address.GetCountry());
}

TEST(InvoiceLine, IsAddedUnderTheNameOfItsElementOnly)
{
    const CSmartPtr<CInvoice> spInvoice = new CInvoice;
    EXPECT_THROW(spInvoice->GetLine()->Add(new CServiceLine), CQvInvalidParamException);
    EXPECT_EQ(0, spInvoice->GetLine()->GetCount());
    spInvoice->GetLine()->Add(new CServiceLine(L"line"));
    EXPECT_EQ(1, spInvoice->GetLine()->GetCount());
}

} // namespace
} // namespace QvTest
