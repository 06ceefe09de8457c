#include "quiver/collections/Attribute.h"

#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/EventLog.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/ProtectedAccess.h"
#include "tests/support/RecordingWriter.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

const bool s_bRegistered = (Register(9, 0), true);

CSmartPtr<CAttributeCol> MakeAny()
{
    return new CAttributeCol(L"", L"##any", L"");
}

/// `{ns}name=value` of each attribute, separated by blanks.
std::wstring Show(const CAttributeCol& attributes)
{
    std::wstring strShown;
    for (const CAttribute& attribute : attributes)
    {
        strShown += strShown.empty() ? L"" : L" ";
        strShown += L"{" + attribute.GetNamespace() + L"}" + attribute.GetName() + L"=" + attribute.GetValue();
    }
    return strShown;
}

struct CTargetOf : CAttributeCol
{
    static std::wstring Get(const CAttributeCol& attributes) { return (attributes.*&CTargetOf::GetTargetNamespace)(); }
};

// --- CAttribute -----------------------------------------------------------------------------------------------------

TEST(Attribute, HoldsNameValueAndNamespace)
{
    const CSmartPtr<CAttribute> spAttribute = MakeAny()->Add(L"n", L"v", L"urn:a");
    EXPECT_TEXT(L"n", spAttribute->GetName());
    EXPECT_TEXT(L"v", spAttribute->GetValue());
    EXPECT_TEXT(L"urn:a", spAttribute->GetNamespace());
    spAttribute->SetName(L"n2");
    spAttribute->SetValue(L"v2");
    spAttribute->SetNamespace(L"urn:b");
    EXPECT_TEXT(L"n2", spAttribute->GetName());
    EXPECT_TEXT(L"v2", spAttribute->GetValue());
    EXPECT_TEXT(L"urn:b", spAttribute->GetNamespace());
    spAttribute->SetName(nullptr);
    spAttribute->SetValue(nullptr);
    spAttribute->SetNamespace(nullptr);
    EXPECT_TEXT(L"", spAttribute->GetName() + spAttribute->GetValue() + spAttribute->GetNamespace());
}

TEST(Attribute, IsItsOwnBaseAndCountedUnderItsOwnName)
{
    const long nBefore = CountInstances(L"CAttribute").nLiving;
    const CSmartPtr<CAttribute> spAttribute = MakeAny()->Add(L"n");
    EXPECT_EQ(spAttribute, spAttribute->GetBase());
    EXPECT_EQ(nBefore + 1, CountInstances(L"CAttribute").nLiving);
}

TEST(Attribute, CanBeDerivedFrom)
{
    struct CDerived : CAttribute
    {
        CDerived()
            : CInstanceMonitor(L"CDerived")
            , CAttribute(L"n", L"v", nullptr)
        {
        }
        std::wstring GetNamespace() const override { return L"urn:derived"; }
    };
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    spCol->Add(new CDerived);
    EXPECT_TEXT(L"{urn:derived}n=v", Show(*spCol));
    EXPECT_TEXT(L"{}n=v", Show(*spCol->Clone())) << "a copy is a plain attribute";
}

TEST(Attribute, CloneIsIndependent)
{
    const CSmartPtr<CAttribute> spAttribute = MakeAny()->Add(L"n", L"v", L"urn:a");
    const CSmartPtr<CAttribute> spClone = spAttribute->Clone();
    spAttribute->SetValue(L"changed");
    spAttribute->SetNamespace(L"urn:b");
    EXPECT_NE(spAttribute, spClone);
    EXPECT_TEXT(L"n", spClone->GetName());
    EXPECT_TEXT(L"v", spClone->GetValue());
    EXPECT_TEXT(L"urn:a", spClone->GetNamespace());
}

TEST(Attribute, IsWrittenAsAStringOnTheOpenElement)
{
    CRecordingWriter writer;
    CProtectedAccess::Write(MakeAny()->Add(L"n", L"v", L"urn:a"), writer, CXmlSerializationContext(), L"urn:ignored");
    EXPECT_TEXT(L" {urn:a}n=v:23\n", writer.m_strCalls);
}

TEST(Attribute, CannotBeReadOnItsOwn)
{
    const CSmartPtr<CAttribute> spAttribute = MakeAny()->Add(L"n");
    ExpectThrows<CQvException>(L"This should be done by the collection",
                               [&] { spAttribute->FromXml(L"<a/>", CXmlSerializationContext()); });
}

// --- CAttributeCol --------------------------------------------------------------------------------------------------

TEST(AttributeCol, TakesTheNamespaceGivenOrElseTheFirstUriOfTheRestriction)
{
    const struct
    {
        const wchar_t* lpctNamespace;
        const wchar_t* lpctRestriction;
        const wchar_t* lpctItemNamespace;
    } rows[] = {
        {L"urn:a", L"##any", L"urn:a"},
        {L"urn:a", L"urn:b", L"urn:a"},
        {L"", L"##any", L""},
        {L"", L"##other urn:a", L""},
        {L"", L"urn:a", L"urn:a"},
        {L"", L"urn:a urn:b", L"urn:a"},
        {L"", L"ab", L"ab"},
        {L"", L"a", L""},
        {L"", L"a urn:b", L""},
        {L"", L"#a", L""},
        {L"", L"a#", L""},
        {L"", L" urn:a", L""},
        {L"", L"", L""},
        {nullptr, L"urn:a", L"urn:a"},
        {nullptr, nullptr, L""},
    };
    for (const auto& row : rows)
    {
        const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(row.lpctNamespace, row.lpctRestriction, L"urn:t");
        EXPECT_TEXT(row.lpctItemNamespace, spCol->GetNamespace());
        EXPECT_TEXT(row.lpctItemNamespace, CTargetOf::Get(*spCol));
        EXPECT_EQ(0, spCol->GetMinOccurs());
        EXPECT_EQ(-1, spCol->GetMaxOccurs());
    }
}

TEST(AttributeCol, IsCountedUnderItsOwnName)
{
    const long nBefore = CountInstances(L"CAttributeCol").nLiving;
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    EXPECT_EQ(nBefore + 1, CountInstances(L"CAttributeCol").nLiving);
}

TEST(AttributeCol, AddFillsInWhatIsNotGiven)
{
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"urn:a", L"##any", L"");
    const CSmartPtr<CAttribute> spAdded = spCol->Add(L"x");
    spCol->Add(L"y", L"1");
    spCol->Add(L"z", L"2", L"urn:b");
    spCol->Add(L"z", L"3", L"");
    EXPECT_EQ(spAdded, spCol->Item(0));
    EXPECT_TEXT(L"{urn:a}x= {urn:a}y=1 {urn:b}z=2 {}z=3", Show(*spCol));
}

TEST(AttributeCol, AddTestsTheNamespaceAgainstTheRestriction)
{
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"urn:t", L"##other", L"urn:t");
    CEventLog log;
    spCol->AddEventListener(&log);
    const wchar_t* const lpctMessage =
        L"Invalid namespace [urn:t]. The namespace must be one of [##other] where the target namespace is [urn:t]";
    ExpectThrows<CQvInvalidNamespaceException>(lpctMessage, [&] { spCol->Add(L"x"); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctMessage, [&] { spCol->Add(L"x", L"1"); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctMessage, [&] { spCol->Add(L"x", L"1", L"urn:t"); });
    EXPECT_EQ("", log.Take());
    spCol->Add(L"x", L"1", L"urn:b");
    spCol->Add(L"x", L"2", nullptr);
    EXPECT_TEXT(L"{urn:b}x=1 {}x=2", Show(*spCol));
    spCol->RemoveEventListener(&log);
}

TEST(AttributeCol, AListOfTwoUrisDoesNotAllowTheFirstOfThem)
{
    // The list is served by its first token alone, and a URI has to be the whole list.
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"", L"urn:a urn:b", L"");
    EXPECT_THROW(spCol->Add(L"x"), CQvInvalidNamespaceException);
    EXPECT_THROW(spCol->Add(L"x", L"", L"urn:b"), CQvInvalidNamespaceException);
    EXPECT_EQ(0, spCol->GetCount());
    spCol->Add(L"x", L"", L"");
    ASSERT_EQ(1, spCol->GetCount());
    EXPECT_TEXT(L"", spCol->Item(0)->GetNamespace());
}

TEST(AttributeCol, TakesAnExistingAttributeOfAnyNamespace)
{
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"", L"##local", L"");
    const CSmartPtr<CAttribute> spFirst = MakeAny()->Add(L"first", L"", L"urn:a");
    const CSmartPtr<CAttribute> spSecond = MakeAny()->Add(L"second", L"", L"urn:a");
    const CSmartPtr<CAttribute> spThird = MakeAny()->Add(L"third", L"", L"urn:a");
    const CSmartPtr<CAttribute> spFourth = MakeAny()->Add(L"fourth", L"", L"urn:a");
    EXPECT_EQ(spSecond, spCol->Add(spSecond));
    spCol->AddBefore(spSecond, spFirst);
    spCol->AddAfter(spSecond, spThird);
    spCol->AddBefore(nullptr, spFourth);
    EXPECT_TEXT(L"{urn:a}first= {urn:a}second= {urn:a}third= {urn:a}fourth=", Show(*spCol));
    EXPECT_EQ(spThird, spCol->Item(2));
    ExpectThrows<CQvInvalidParamException>(L"Index 4 is out of range, use 0 - 4", [&] { spCol->Item(4); });
    const CSmartPtr<CAttribute> spUnknown = MakeAny()->Add(L"unknown");
    ExpectThrows<CQvInvalidParamException>(L"The object was not found in the collection",
                                           [&] { spCol->AddAfter(spUnknown, spFirst->Clone()); });
}

TEST(AttributeCol, AddingFiresTheEventsOfAList)
{
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    CEventLog log;
    spCol->AddEventListener(&log);
    const CSmartPtr<CAttribute> spAttribute = spCol->Add(L"x");
    ASSERT_EQ(3u, log.m_events.size());
    EXPECT_EQ(spCol, log.m_events[0].pSource);
    EXPECT_EQ(static_cast<CXmlObjectBase*>(spAttribute), log.m_events[0].pData);
    EXPECT_EQ("Add AddComplete Change", log.Take());
    spCol->RemoveEventListener(&log);
}

TEST(AttributeCol, CloneIsDeepAndHasNoListeners)
{
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"urn:a", L"urn:a", L"urn:t");
    spCol->Add(L"x", L"1");
    CEventLog log;
    spCol->AddEventListener(&log);
    const CSmartPtr<CAttributeCol> spClone = spCol->Clone();
    spCol->Item(0)->SetValue(L"changed");
    EXPECT_TEXT(L"{urn:a}x=1", Show(*spClone));
    spClone->Add(L"y");
    EXPECT_EQ("", log.Take());
    // The restriction is copied too.
    EXPECT_THROW(spClone->Add(L"z", L"", L"urn:b"), CQvInvalidNamespaceException);
    spCol->RemoveEventListener(&log);
}

TEST(AttributeCol, IsWrittenInOrder)
{
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    spCol->Add(L"x", L"1", L"urn:a");
    spCol->Add(L"y", L"2");
    CRecordingWriter writer;
    CProtectedAccess::Write(spCol, writer, CXmlSerializationContext());
    EXPECT_TEXT(L" {urn:a}x=1:23\n {}y=2:23\n", writer.m_strCalls);
}

TEST(AttributeCol, ReadsTheAttributesOfAnElementAndLeavesTheCursor)
{
    CXmlDocument document;
    document.LoadXml(L"<r xmlns:p='urn:a' b='2' p:a='1' xml:lang='en'><child/></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    spCol->Add(L"former");
    EXPECT_EQ(pRoot->GetFirstElement(),
              CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), CXmlSerializationContext()));
    EXPECT_EQ(nullptr, CProtectedAccess::Read(MakeAny(), pRoot, nullptr, CXmlSerializationContext()));
    EXPECT_TEXT(L"{}former= {}b=2 {urn:a}a=1 {http://www.w3.org/XML/1998/namespace}lang=en", Show(*spCol));
}

TEST(AttributeCol, DoesNotFilterTheDeclarationsThatTheParserReports)
{
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    CXmlDocument document(context);
    document.LoadXml(L"<r xmlns='urn:a' xmlns:p='urn:b'/>");
    const CSmartPtr<CAttributeCol> spCol = MakeAny();
    CProtectedAccess::Read(spCol, document.GetDocumentElement(), nullptr, context);
    EXPECT_TEXT(L"{}xmlns=urn:a {}xmlns:p=urn:b", Show(*spCol));
}

TEST(AttributeCol, ReadingThrowsAtTheFirstAttributeOfAnotherNamespace)
{
    CXmlDocument document;
    document.LoadXml(L"<r xmlns:p='urn:a' b='2' p:a='1' c='3'/>");
    const CSmartPtr<CAttributeCol> spCol = new CAttributeCol(L"", L"##local", L"");
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid Attribute [a]. The attributes namespace is Inappropriate.",
        [&] { CProtectedAccess::Read(spCol, document.GetDocumentElement(), nullptr, CXmlSerializationContext()); });
    EXPECT_TEXT(L"{}b=2", Show(*spCol)) << "what stands ahead has been added";
}

} // namespace
