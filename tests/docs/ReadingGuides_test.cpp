// The code of the guides in docs/guides about what is in a document: tolerance, facets, open content, types, nil, messages,
// and another version of the schema.
#include "Invoice.h"
#include "InvoiceRoots.h"
#include "LibraryRoots.h"
#include "OrderRoots.h"
#include "Settings.h"
#include "Ticket1.h"
#include "Ticket2.h"
#include "quiver/QvXmlLib.h"
#include "tests/docs/PageDirectory.h"
#include "tests/support/Expect.h"

#include <string>
#include <vector>

namespace
{

using namespace QvXmlLib9;
using order::CItem;
using order::CPurchaseOrder;
using QvTest::ExpectThrows;

class ReadingGuides : public QvTest::CPageTest
{
protected:
    ReadingGuides()
    {
        Take({"examples/purchase_order/order.xml", "examples/purchase_order/broken.xml", "examples/invoice/invoice.xml",
              "examples/open_content/settings.xml", "tests/docs/library.xml"});
    }

    static std::wstring Text(const CXmlObjectBase& object)
    {
        return object.ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
    }

    /// A purchase order with something put in ahead of a place in its text.
    static std::wstring OrderWith(const std::wstring& strExtra, const std::wstring& strPlace)
    {
        CPurchaseOrder order;
        order.FromXmlFile(L"order.xml", CXmlSerializationContext::GetDefaultContext());
        CXmlSerializationContext context;
        context.SetDefaultNamespaceURI(L"urn:example:order");
        std::wstring strXml = order.ToXml(false, false, EOLType_LF, context);
        return strXml.insert(strXml.find(strPlace), strExtra);
    }
};

// --- Tolerant reading ------------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, TolerantReading)
{
    const std::wstring strXml =
        OrderWith(L"<gift/>", L"<quantity>1<").insert(std::wstring(L"<purchaseOrder").size(), L" colour='red'");
    CPurchaseOrder order;
    EXPECT_THROW(order.FromXml(strXml.c_str(), CXmlSerializationContext::GetDefaultContext()), CQvValidationException);
    // [snippet tolerant-reading]
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    context.SetIgnoreUnknownAttributes(true);
    order.FromXml(strXml.c_str(), context);
    // [end]
    EXPECT_EQ(3, order.GetItem()->GetCount());
    EXPECT_EQ(std::wstring::npos, Text(order).find(L"gift"));

    // [snippet tolerant-reading-excludes]
    try
    {
        context.SetIgnoreMissingMandatoryElements(true);
    }
    catch (const CQvInvalidStateException&)
    {
        context.SetIgnoreUnknownElements(false);
        context.SetIgnoreMissingMandatoryElements(true);
    }
    // [end]
    EXPECT_FALSE(context.GetIgnoreUnknownElements());
    EXPECT_TRUE(context.GetIgnoreMissingMandatoryElements());
}

TEST_F(ReadingGuides, ToleranceKeepsToItsBounds)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    context.SetIgnoreUnknownAttributes(true);
    CPurchaseOrder order;
    ExpectThrows<CQvValidationException>(L"Failed to process the element [purchaseOrder]\n"
                                         L"Unexpected text found within the element [purchaseOrder]",
                                         [&] { order.FromXml(OrderWith(L"stray", L"<express").c_str(), context); });
    // Values are checked all the same.
    EXPECT_THROW(order.FromXmlFile(L"broken.xml", context), CQvValidationException);
}

TEST_F(ReadingGuides, AnUnknownElementTakesWhatMayBeAbsentWithIt)
{
    CXmlSerializationContext context;
    context.SetIgnoreUnknownElements(true);
    CPurchaseOrder order;
    // Ahead of a member that has to be there, and behind the last one, it is passed over and nothing else.
    for (const wchar_t* const lpctPlace : {L"<shipTo", L"<quantity>1<", L"</purchaseOrder>"})
    {
        order.FromXml(OrderWith(L"<gift/>", lpctPlace).c_str(), context);
        EXPECT_EQ(3, order.GetItem()->GetCount());
        EXPECT_TRUE(order.GetItem()->Item(0)->GetNote());
    }
    // Ahead of one that may be absent, that one is passed over too.
    order.FromXml(OrderWith(L"<gift/>", L"<note").c_str(), context);
    EXPECT_FALSE(order.GetItem()->Item(0)->GetNote());
    // Among repeated elements, those behind it are.
    order.FromXml(OrderWith(L"<gift/>", L"<item part=\"926").c_str(), context);
    EXPECT_EQ(1, order.GetItem()->GetCount());
    // Ahead of the first of them, there are none.
    ExpectThrows<CQvValidationException>(L"Failed to process the element [purchaseOrder]\n"
                                         L"The Minimum number of [item] elements allowed in this collection is 1",
                                         [&] { order.FromXml(OrderWith(L"<gift/>", L"<item").c_str(), context); });
}

TEST_F(ReadingGuides, WhatIsMissingHasNoValueAndIsNotWritten)
{
    CXmlSerializationContext context;
    context.SetIgnoreMissingMandatoryElements(true);
    context.SetIgnoreInvalidCollectionCounts(true);
    CPurchaseOrder order;
    order.FromXml(L"<purchaseOrder xmlns='urn:example:order' number='1'/>", context);
    EXPECT_EQ(0, order.GetItem()->GetCount());
    EXPECT_TEXT(L"", order.GetShipTo()->GetCity());
    CXmlSerializationContext strict;
    EXPECT_THROW(order.ToXml(false, false, EOLType_LF, strict), CQvException);
    EXPECT_NO_THROW(order.ToXml(false, false, EOLType_LF, context));
}

// --- Facets ----------------------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, Facets)
{
    std::wstring strWhat;
    std::wstring strWhy;
    // [snippet facets]
    CItem item;
    item.SetQuantity(12);
    try
    {
        item.SetQuantity(2000);
    }
    catch (const CQvInvalidValueException& ex)
    {
        strWhat = ex.GetMessageW();                     // Invalid Value for quantity [2000]
        strWhy = ex.GetInnerException()->GetMessageW(); // The value is above 999
    }
    int nStill = item.GetQuantity(); // 12: a refused value changes nothing
    // [end]
    EXPECT_TEXT(L"Invalid Value for quantity [2000]", strWhat);
    EXPECT_TEXT(L"The value is above 999", strWhy);
    EXPECT_EQ(12, nStill);
    EXPECT_THROW(item.SetQuantity(2000), CQvInvalidValueException);
}

TEST_F(ReadingGuides, FacetsAreAskedAheadOfTime)
{
    std::vector<bool> answers;
    // [snippet facets-ask]
    for (const wchar_t* const lpctPart : {L"872-AA", L"872-aa"})
        answers.push_back(order::SPart::Type().IsValid(lpctPart));
    // [end]
    EXPECT_EQ(answers, (std::vector<bool>{true, false}));
}

TEST_F(ReadingGuides, LengthsCountCharacters)
{
    CItem item;
    item.SetProduct(std::wstring(79, L'x') + L"\U0001F33B");
    EXPECT_THROW(item.SetProduct(std::wstring(80, L'x') + L"\U0001F33B"), CQvInvalidValueException);
}

// --- Open content ----------------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, OpenContentIsWalkedAndChanged)
{
    using namespace settings;
    std::vector<std::wstring> names;
    // [snippet open-content]
    CXmlSerializationContext context;
    context.GetNamespaceAliases().Add(L"s", L"urn:example:settings");

    CSettings document;
    document.FromXmlFile(L"settings.xml", context);
    for (const CElement& element : *document.GetAny2())
        names.push_back(element.GetName()); // also GetNamespace, GetText, GetAttributes, GetChildElements

    const CSmartPtr<CElement> spNote = document.GetAny2()->Add(L"note", L"urn:example:notes");
    spNote->SetText(L"Checked");
    spNote->GetAttributes()->Add(L"by", L"Ann", L"");
    document.GetAnyAttribute()->Add(L"checked", L"yes", L"urn:example:audit");
    // [end]
    EXPECT_EQ(names, (std::vector<std::wstring>{L"trail", L"note"}));
    CSettings again;
    again.FromXml(document.ToXml(false, false, EOLType_LF, context).c_str(), context);
    EXPECT_EQ(3, again.GetAny2()->GetCount());
    EXPECT_TEXT(L"Ann", again.GetAny2()->Item(2)->GetAttributes()->Item(0)->GetValue());
}

TEST_F(ReadingGuides, OpenContentBecomesAnObjectAndBack)
{
    using namespace settings;
    CSettings document;
    const CXmlSerializationContext context;
    document.FromXmlFile(L"settings.xml", context);
    order::CPurchaseOrder purchase;
    purchase.FromXmlFile(L"order.xml", context);
    int nNumber = 0;
    // [snippet open-content-objects]
    document.GetAny2()->Add(new CElement(&purchase, L"")); // an object becomes open content

    for (const CElement& element : *document.GetAny2())
    {
        if (element.GetName() == L"purchaseOrder" && element.GetNamespace() == L"urn:example:order")
        {
            order::CPurchaseOrder read;
            read.FromXmlElement(&element, context); // and open content an object
            nNumber = read.GetNumber();
        }
    }
    // [end]
    EXPECT_EQ(purchase.GetNumber(), nNumber);
    EXPECT_EQ(3, document.GetAny2()->GetCount());
}

TEST_F(ReadingGuides, OpenContentOfTheWrongNamespaceIsRefusedWhenItIsWritten)
{
    using namespace settings;
    CSettings document;
    const CXmlSerializationContext context;
    document.FromXmlFile(L"settings.xml", context);
    document.GetAny2()->Add(L"note", L"urn:example:settings");
    ExpectThrows<CQvValidationException>(
        L"Failed to convert the element [settings] to XML\n"
        L"The element [note] of the namespace [urn:example:settings] may not stand here",
        [&] { document.ToXml(false, false, EOLType_LF, context); });
}

// --- Types and substitution ------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, SubstitutionGroups)
{
    using namespace library;
    int nBooks = 0;
    // [snippet substitution]
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:library");

    CLibrary stock;
    stock.FromXmlFile(L"library.xml", context);
    for (const CMedium& medium : *stock.GetMedium())
    {
        if (const CBook* const pBook = dynamic_cast<const CBook*>(&medium))
            nBooks += pBook->GetPages() > 0 ? 1 : 0;
    }

    const CSmartPtr<CFilm> spFilm = new CFilm(L"film"); // the name of the element
    spFilm->SetTitle(L"Metropolis");
    spFilm->GetReturned()->SetNil(true);
    spFilm->SetLength(CConversions::durationFromString(L"PT2H33M", CWhitespaceUtils::WhitespaceRule_None));
    stock.GetMedium()->Add(spFilm);
    // [end]
    EXPECT_EQ(1, nBooks);
    CLibrary again;
    again.FromXml(stock.ToXml(false, false, EOLType_LF, context).c_str(), context);
    EXPECT_NE(nullptr, dynamic_cast<const CFilm*>(static_cast<CMedium*>(again.GetMedium()->Item(2))));
    EXPECT_THROW(stock.GetMedium()->Add(new CFilm(L"movie")), CQvInvalidParamException);
}

TEST_F(ReadingGuides, TypesThatADocumentSays)
{
    using namespace invoice;
    // [snippet xsi-type]
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:invoice");
    context.GetNamespaceAliases().Add(L"xsi", L"http://www.w3.org/2001/XMLSchema-instance");

    CInvoice document;
    document.FromXmlFile(L"invoice.xml", context); // <inv:buyer xsi:type="inv:Company" ...>
    if (CCompany* const pCompany = dynamic_cast<CCompany*>(static_cast<CParty*>(document.GetBuyer())))
        pCompany->SetContact(std::wstring(L"Ann"));

    const CSmartPtr<CPerson> spPerson = new CPerson(L"buyer");
    spPerson->SetFirstName(L"Robert");
    spPerson->SetLastName(L"Smith");
    document.SetBuyer(spPerson); // written as <buyer xsi:type="Person">
    // [end]
    const std::wstring strXml = document.ToXml(false, false, EOLType_LF, context);
    EXPECT_NE(std::wstring::npos, strXml.find(L"<buyer xsi:type=\"Person\">"));
}

TEST_F(ReadingGuides, RootsThatAreNotKnownAhead)
{
    const char* lpcKind = "";
    // [snippet create-root]
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.Load(L"library.xml");
    const CSmartPtr<CXmlObjectBase> spRoot = library::CLibraryRoots::CreateRoot(document.GetDocumentElement());
    spRoot->FromXmlElement(document.GetDocumentElement(), context);
    if (dynamic_cast<library::CLibrary*>(static_cast<CXmlObjectBase*>(spRoot)) != nullptr)
        lpcKind = "a library";
    // [end]
    EXPECT_STREQ("a library", lpcKind);
}

// --- Nil -------------------------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, Nil)
{
    using namespace library;
    CLibrary stock;
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(L"urn:example:library");
    context.GetNamespaceAliases().Add(L"xsi", L"http://www.w3.org/2001/XMLSchema-instance");
    stock.FromXmlFile(L"library.xml", context);
    // [snippet nil]
    const CSmartPtr<CMedium> spMedium = stock.GetMedium()->Item(0);
    if (spMedium->GetReturned()->IsNil()) // <returned xsi:nil="true"/>: still lent out
        spMedium->GetReturned()->SetValue(
            CConversions::dateFromString(L"2026-04-02", CWhitespaceUtils::WhitespaceRule_None));
    else
        spMedium->GetReturned()->SetNil(true);
    // [end]
    EXPECT_FALSE(stock.GetMedium()->Item(1)->GetReturned()->IsNil());
    EXPECT_NE(std::wstring::npos,
              stock.ToXml(false, false, EOLType_LF, context).find(L"<returned>2026-04-02</returned>"));
    // What it holds while it is nil is there again afterwards.
    spMedium->GetReturned()->SetNil(true);
    spMedium->GetReturned()->SetNil(false);
    EXPECT_TEXT(L"2026-04-02", spMedium->GetReturned()->GetValue().ToString());
    // One that has neither a value nor is nil is refused.
    spMedium->SetReturned(new CNillable<xs::Date>(L"returned"));
    ExpectThrows<CQvValidationException>(L"Failed to convert the element [library] to XML\n"
                                         L"Failed to convert the element [book] to XML\n"
                                         L"Failed to convert the element [returned] to XML\n"
                                         L"The required value [returned] has not been set",
                                         [&] { stock.ToXml(false, false, EOLType_LF, context); });
}

TEST_F(ReadingGuides, NilOfAClass)
{
    using namespace invoice;
    CInvoice document;
    CXmlSerializationContext context;
    document.FromXmlFile(L"invoice.xml", context);
    // [snippet nil-class]
    const CSmartPtr<CDelivery> spDelivery = document.GetDelivery(); // null if the element is absent
    if (spDelivery != nullptr && spDelivery->IsNil())               // there, and nil: its attributes count
    {
        spDelivery->SetNil(false);
        spDelivery->SetDate(CConversions::dateFromString(L"2026-04-02", CWhitespaceUtils::WhitespaceRule_None));
    }
    // [end]
    EXPECT_FALSE(document.GetDelivery()->IsNil());
    EXPECT_TEXT(L"to be agreed", *document.GetDelivery()->GetCarrier());
}

// --- Messages --------------------------------------------------------------------------------------------------------

TEST_F(ReadingGuides, MessagesAreAChain)
{
    std::wstring strLog;
    CPurchaseOrder order;
    // [snippet messages]
    try
    {
        order.FromXmlFile(L"broken.xml", CXmlSerializationContext::GetDefaultContext());
    }
    catch (const CQvValidationException& ex) // well-formed, but not by the schema
    {
        strLog = ex.GetFullMessage();
    }
    catch (const CQvException& ex) // no such file, not well-formed, ...
    {
        strLog = L"Cannot be read: " + ex.GetFullMessage();
    }
    // [end]
    std::wstring strExpected = FromUtf8(QvTest::ReadFileBytes(QUIVER_SOURCE_DIR "/tests/docs/broken_order.txt"));
    EXPECT_TEXT(strExpected, strLog + L"\n");
    // What stood ahead of the failure has been read.
    EXPECT_EQ(20417, order.GetNumber());
}

TEST_F(ReadingGuides, TheRootCauseIsTheInnermostException)
{
    std::wstring strCause;
    const auto Read = []
    {
        CPurchaseOrder order;
        order.FromXmlFile(L"broken.xml", CXmlSerializationContext::GetDefaultContext());
    };
    // [snippet messages-root-cause]
    try
    {
        Read();
    }
    catch (const CQvException& ex)
    {
        const CQvException* pCause = &ex;
        while (pCause->GetInnerException() != nullptr)
            pCause = pCause->GetInnerException();
        strCause = pCause->GetMessageW();
    }
    // [end]
    EXPECT_TEXT(L"The value is above 999", strCause);
}

TEST_F(ReadingGuides, RecordsAreReadOneByOneToFindTheBrokenOnes)
{
    std::vector<std::wstring> faults;
    // [snippet messages-place]
    const CXmlSerializationContext context;
    CXmlDocument document(context);
    document.Load(L"broken.xml");
    int nItem = 0;
    for (CXmlElement* pChild = document.GetDocumentElement()->GetFirstElement(); pChild != nullptr;
         pChild = pChild->GetNextSiblingElement())
    {
        if (pChild->GetLocalName() != L"item")
            continue;
        ++nItem;
        try
        {
            CItem item;
            item.FromXmlElement(pChild, context);
        }
        catch (const CQvException& ex)
        {
            faults.push_back(L"item " + std::to_wstring(nItem) + L": " + ex.GetFullMessage());
        }
    }
    // [end]
    ASSERT_EQ(1u, faults.size());
    EXPECT_TEXT(L"item 2: Failed to process the element [item]\nInvalid Value for quantity [2000]\n"
                L"The value is above 999",
                faults[0]);
}

TEST_F(ReadingGuides, ADocumentThatIsNotWellFormedIsToldByItsLine)
{
    CPurchaseOrder order;
    ExpectThrows<CQvException>(
        L"mismatched tag at line 2",
        [&] { order.FromXml(L"<purchaseOrder>\n</order>", CXmlSerializationContext::GetDefaultContext()); });
}

// --- Another version of the schema -----------------------------------------------------------------------------------

TEST_F(ReadingGuides, UpgradingASchema)
{
    const CXmlSerializationContext context;
    // [snippet upgrading]
    ticket1::CTicket before;
    before.SetFrom(L"Graz");
    before.SetTo(L"Hamburg");
    before.SetClass(ticket1::EClass::Second);
    before.SetPrice(89);

    // Documents of the old version fit the new one.
    ticket2::CTicket after;
    after.FromXml(before.ToXml(false, false, EOLType_LF, context).c_str(), context);

    // Documents of the new version fit the old one as long as they use nothing new ...
    const std::wstring strPlain = after.ToXml(false, false, EOLType_LF, context);
    before.FromXml(strPlain.c_str(), context);

    // ... and with additions at the end if the old program passes over what it does not know.
    after.GetPassenger()->Add(L"Ann");
    CXmlSerializationContext tolerant;
    tolerant.SetIgnoreUnknownElements(true);
    before.FromXml(after.ToXml(false, false, EOLType_LF, context).c_str(), tolerant);
    // [end]
    EXPECT_EQ(89, before.GetPrice());
    EXPECT_THROW(before.FromXml(after.ToXml(false, false, EOLType_LF, context).c_str(), context),
                 CQvValidationException);
    // New values are refused by any reader of the old version.
    after.SetClass(ticket2::EClass::Sleeper);
    EXPECT_THROW(before.FromXml(after.ToXml(false, false, EOLType_LF, context).c_str(), tolerant),
                 CQvValidationException);
}

} // namespace
