#include "quiver/collections/Element.h"

#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/EventLog.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/ProtectedAccess.h"
#include "tests/support/RecordingWriter.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

const bool s_bRegistered = (Register(9, 0), true);

constexpr std::size_t s_nSmallStack = 256 * 1024;
const wchar_t* const s_lpctNull = nullptr;

std::wstring Write(const CXmlObjectBase& object, bool bFormat = false)
{
    return object.ToXml(false, bFormat, EOLType_LF, CXmlSerializationContext());
}

CSmartPtr<CElement> Read(const std::wstring& strXml)
{
    CSmartPtr<CElement> spElement = new CElement(L"");
    spElement->FromXml(strXml.c_str());
    return spElement;
}

/// The protected operations, in reach.
struct COpenElement : CElement
{
    explicit COpenElement(const wchar_t* lpctName)
        : CInstanceMonitor(L"COpenElement")
        , CElement(lpctName)
    {
    }
    using CElement::CopyXmlElement;
    static std::wstring TargetOf(const CElement& element) { return (element.*&COpenElement::GetTargetNamespace)(); }
};

struct COpenElementCol : CElementCol
{
    COpenElementCol()
        : CInstanceMonitor(L"COpenElementCol")
        , CElementCol(L"", L"##any", L"", 0, -1)
    {
    }
    using CElementCol::FromXmlLockElementName_Int;
    static std::wstring TargetOf(const CElementCol& col) { return (col.*&COpenElementCol::GetTargetNamespace)(); }
};

std::wstring Names(const CElementCol& elements)
{
    std::wstring strNames;
    for (const CElement& element : elements)
        strNames += L"{" + element.GetNamespace() + L"}" + element.GetName() + L" ";
    return strNames;
}

// --- Construction ---------------------------------------------------------------------------------------------------

TEST(Element, OfANameHasNoNamespaceAndAllowsAll)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a");
    EXPECT_TEXT(L"a", spElement->GetName());
    EXPECT_TEXT(L"", spElement->GetNamespace());
    EXPECT_TEXT(L"", spElement->GetText());
    EXPECT_EQ(0, spElement->GetAttributes()->GetCount());
    EXPECT_EQ(0, spElement->GetChildElements()->GetCount());
    EXPECT_EQ(spElement, spElement->GetBase());
    spElement->FromXml(L"<b xmlns='urn:b'/>");
    EXPECT_TEXT(L"b", spElement->GetName());
}

TEST(Element, OfANameAndANamespaceIsItsOwnRestriction)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"urn:a");
    EXPECT_TEXT(L"urn:a", spElement->GetNamespace());
    spElement->FromXml(L"<b xmlns='urn:b'/>");
    EXPECT_TEXT(L"a", spElement->GetName()) << "another namespace is not read";
    spElement->FromXml(L"<b xmlns='urn:a'/>");
    EXPECT_TEXT(L"b", spElement->GetName());
    spElement->FromXml(L"<c/>");
    EXPECT_TEXT(L"c", spElement->GetName()) << "a URI as restriction lets no namespace pass";
}

TEST(Element, RejectsAKeywordAsItsNamespace)
{
    for (const std::wstring strKeyword : {L"##any", L"##other", L"##local", L"##targetNamespace"})
    {
        ExpectThrows<CQvInvalidNamespaceException>(L"Invalid Namespace [" + strKeyword + L"]",
                                                   [&] { CElement element(L"a", strKeyword.c_str()); });
    }
    const CElement other(L"a", L"##Any");
    EXPECT_TEXT(L"##Any", other.GetNamespace());
}

TEST(Element, RejectsNullArguments)
{
    const wchar_t* const lpctName = L"Element Name must have a value";
    const wchar_t* const lpctRestriction = L"Namespace Restriction must have a value";
    const wchar_t* const lpctTarget = L"Target Namespace must have a value";
    ExpectThrows<CQvInvalidNamespaceException>(lpctName, [] { CElement element(s_lpctNull); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctName, [] { CElement element(s_lpctNull, L"urn:a"); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctRestriction, [] { CElement element(L"a", s_lpctNull); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctName, [] { CElement element(nullptr, L"", L"", L""); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctRestriction, [] { CElement element(L"a", L"", nullptr, L""); });
    ExpectThrows<CQvInvalidNamespaceException>(lpctTarget, [] { CElement element(L"a", L"", L"##any", nullptr); });
}

TEST(Element, TakesANullNamespaceAsAnEmptyOne)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", nullptr, L"##local", L"");
    EXPECT_TEXT(L"", spElement->GetNamespace());
    EXPECT_TEXT(L"<a/>", Write(*spElement));
}

TEST(Element, TestsItsNamespaceAgainstTheRestriction)
{
    EXPECT_NO_THROW(CElement(L"a", L"urn:b", L"##other", L"urn:t"));
    EXPECT_NO_THROW(CElement(L"a", L"", L"##other", L"urn:t"));
    EXPECT_NO_THROW(CElement(L"a", L"", L"urn:b", L"urn:t"));
    EXPECT_NO_THROW(CElement(L"a", L"urn:t", L"##targetNamespace ##local", L"urn:t"));
    const long nBefore = CountInstances(L"CElement").nLiving;
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [urn:t]. The namespace must be one of [##other] where the target namespace is [urn:t]",
        [] { CElement element(L"a", L"urn:t", L"##other", L"urn:t"); });
    EXPECT_EQ(nBefore, CountInstances(L"CElement").nLiving);
}

TEST(Element, OwnsTwoCollectionsFromTheStart)
{
    const long nElements = CountInstances(L"CElement").nLiving;
    const long nAttributes = CountInstances(L"CAttributeCol").nLiving;
    const long nChildren = CountInstances(L"CElementCol").nLiving;
    CSmartPtr<CElement> spElement = new CElement(L"a");
    EXPECT_EQ(nElements + 1, CountInstances(L"CElement").nLiving);
    EXPECT_EQ(nAttributes + 1, CountInstances(L"CAttributeCol").nLiving);
    EXPECT_EQ(nChildren + 1, CountInstances(L"CElementCol").nLiving);
    spElement = nullptr;
    EXPECT_EQ(nChildren, CountInstances(L"CElementCol").nLiving);
}

TEST(Element, ItsCollectionsTakeItsNamespace)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"urn:a", L"##any", L"urn:t");
    spElement->GetAttributes()->Add(L"x", L"1");
    spElement->GetChildElements()->Add(L"b");
    EXPECT_TEXT(L"<AA:a xmlns:AA=\"urn:a\" AA:x=\"1\"><AA:b/></AA:a>", Write(*spElement));
    EXPECT_TEXT(L"urn:t", spElement->GetChildElements()->GetNamespace());
}

TEST(Element, WithoutANamespaceGivesNewChildrenTheWildcardAsTheirs)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a");
    EXPECT_TEXT(L"##any", spElement->GetChildElements()->Add(L"b")->GetNamespace());
    EXPECT_TEXT(L"", spElement->GetChildElements()->Add(L"c", L"")->GetNamespace());
}

TEST(Element, SettersReplaceNameTextAndNamespaceWithoutATest)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"urn:a");
    spElement->SetName(L"b");
    spElement->SetText(L"t");
    spElement->SetNamespace(L"urn:b");
    EXPECT_TEXT(L"b", spElement->GetName());
    EXPECT_TEXT(L"t", spElement->GetText());
    EXPECT_TEXT(L"urn:b", spElement->GetNamespace());
    EXPECT_TEXT(L"urn:b", COpenElement::TargetOf(*spElement));
    spElement->SetName(nullptr);
    spElement->SetText(nullptr);
    spElement->SetNamespace(nullptr);
    EXPECT_TEXT(L"", spElement->GetName() + spElement->GetText() + spElement->GetNamespace());
}

// --- Writing --------------------------------------------------------------------------------------------------------

TEST(Element, WritesItsTextBehindItsChildren)
{
    const CSmartPtr<CElement> spElement = Read(L"<a>one<b>x</b>two<c/>three</a>");
    EXPECT_TEXT(L"<a><b>x</b><c/>onetwothree</a>", Write(*spElement));
}

TEST(Element, IsWrittenAsStringsInTheGivenOrder)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"urn:a");
    spElement->GetAttributes()->Add(L"x", L"1", L"");
    spElement->GetAttributes()->Add(L"y", L"2", L"urn:b");
    spElement->GetChildElements()->Add(L"b", L"urn:b")->GetChildElements()->Add(L"c", L"");
    spElement->GetChildElements()->Add(L"d", L"urn:d")->SetText(L"t");
    spElement->SetText(L"end");
    CRecordingWriter writer;
    CProtectedAccess::Write(spElement, writer, CXmlSerializationContext());
    EXPECT_TEXT(L"<{urn:a}a\n {}x=1:23\n {urn:b}y=2:23\n"
                L"<{urn:b}b\n<{}c\n:23\n>\n:23\n>\n<{urn:d}d\nt:23\n>\nend:23\n>\n",
                writer.m_strCalls);
}

TEST(Element, IsIndentedWithTheDocument)
{
    EXPECT_TEXT(L"<a>\n\t<b x=\"1\">t</b>\n\t<c>\n\t\t<d/>\n\t</c>\n</a>\n",
                Write(*Read(L"<a><b x='1'>t</b><c><d/></c></a>"), true));
}

/// An element of an application, which writes itself.
struct CMarked : CElement
{
    explicit CMarked(const wchar_t* lpctName)
        : CInstanceMonitor(L"CMarked")
        , CElement(lpctName)
    {
    }

protected:
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override
    {
        pWriter->StartElement(L"marked", lpctNamespaceUri);
        CElement::ToXml_Int(pWriter, bIsRoot, lpctNamespaceUri, context, bOptionalChoice);
        pWriter->EndElement();
    }
};

TEST(Element, LetsDerivedChildrenWriteThemselves)
{
    const CSmartPtr<CElement> spElement = Read(L"<a><b><c/></b></a>");
    const CSmartPtr<CElement> spMarked = new CMarked(L"m");
    spMarked->GetChildElements()->Add(L"n", L"");
    spElement->GetChildElements()->Item(0)->GetChildElements()->Add(spMarked);
    CRecordingWriter writer;
    CProtectedAccess::Write(spElement, writer, CXmlSerializationContext(), L"urn:passed");
    EXPECT_TEXT(L"<{}a\n<{}b\n<{}c\n:23\n>\n<{urn:passed}marked\n<{}m\n<{}n\n:23\n>\n:23\n>\n>\n:23\n>\n:23\n>\n",
                writer.m_strCalls);
}

// --- Reading --------------------------------------------------------------------------------------------------------

TEST(Element, ReadsNamesTextAttributesAndChildrenOfTheRoot)
{
    const CSmartPtr<CElement> spElement =
        Read(L"<p:a xmlns:p='urn:a' xmlns='urn:d' x='1' p:y='2'>t<b>u<p:c/></b></p:a>");
    EXPECT_TEXT(L"a", spElement->GetName());
    EXPECT_TEXT(L"urn:a", spElement->GetNamespace());
    EXPECT_TEXT(L"t", spElement->GetText());
    CRecordingWriter writer;
    CProtectedAccess::Write(spElement, writer, CXmlSerializationContext());
    EXPECT_TEXT(L"<{urn:a}a\n {}x=1:23\n {urn:a}y=2:23\n<{urn:d}b\n<{urn:a}c\n:23\n>\nu:23\n>\nt:23\n>\n",
                writer.m_strCalls);
}

TEST(Element, ReadingAgainAddsToWhatIsThere)
{
    const CSmartPtr<CElement> spElement = Read(L"<a x='1'>t<b/></a>");
    spElement->FromXml(L"<c y='2'>u<d/></c>");
    EXPECT_TEXT(L"<c x=\"1\" y=\"2\"><b/><d/>u</c>", Write(*spElement));
}

TEST(Element, ReadingConsumesTheElementUnderTheCursor)
{
    CXmlDocument document;
    document.LoadXml(L"<r><a/><b xmlns='urn:b'/><c/></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    CXmlElement* const pA = pRoot->GetFirstElement();
    CXmlElement* const pB = pA->GetNextSiblingElement();
    const CXmlSerializationContext context;
    const CSmartPtr<CElement> spElement = new CElement(L"", L"", L"##local", L"");
    EXPECT_EQ(pB, CProtectedAccess::Read(spElement, pRoot, pA, context));
    EXPECT_TEXT(L"a", spElement->GetName());
    EXPECT_EQ(pB, CProtectedAccess::Read(spElement, pRoot, pB, context)) << "the namespace is not allowed";
    EXPECT_TEXT(L"a", spElement->GetName());
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spElement, pRoot, pB->GetNextSiblingElement(), context));
    EXPECT_TEXT(L"c", spElement->GetName());
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spElement, pRoot, nullptr, context)) << "null consumes nothing";
    EXPECT_TEXT(L"c", spElement->GetName());
}

TEST(Element, TheEntryPointsOfTheBaseReadTheFirstChildOfTheRoot)
{
    const CSmartPtr<CElement> spElement = new CElement(L"former");
    spElement->FromXml(L"<r/>", CXmlSerializationContext());
    EXPECT_TEXT(L"former", spElement->GetName());
    spElement->FromXml(L"<r><a/></r>", CXmlSerializationContext());
    EXPECT_TEXT(L"a", spElement->GetName());
}

TEST(Element, ATextThatIsNotWellFormedChangesNothing)
{
    const CSmartPtr<CElement> spElement = Read(L"<a/>");
    ExpectThrows<CQvException>(L"mismatched tag at line 1", [&] { spElement->FromXml(L"<b></c>"); });
    EXPECT_TEXT(L"<a/>", Write(*spElement));
}

TEST(Element, AChildIsCompleteWhenItsAdditionIsAnnounced)
{
    const CSmartPtr<CElement> spElement = new CElement(L"");
    CEventLog log;
    std::wstring strAnnounced;
    log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_Add)
            strAnnounced += Write(*static_cast<CXmlObjectBase*>(log.m_events.back().pData)) + L" ";
    };
    spElement->GetChildElements()->AddEventListener(&log);
    spElement->FromXml(L"<a><b x='1'><c/></b><d>t</d></a>");
    EXPECT_TEXT(L"<b x=\"1\"><c/></b> <d>t</d> ", strAnnounced);
    spElement->GetChildElements()->RemoveEventListener(&log);
}

// --- Copies ---------------------------------------------------------------------------------------------------------

TEST(Element, CloneIsDeep)
{
    const CSmartPtr<CElement> spElement = Read(L"<a x='1'>t<b y='2'>u<c/></b><d xmlns='urn:d'/></a>");
    CEventLog log;
    spElement->GetChildElements()->AddEventListener(&log);
    const CSmartPtr<CElement> spClone = spElement->Clone();
    const std::wstring strBefore = Write(*spElement);
    EXPECT_TEXT(strBefore, Write(*spClone));
    spElement->GetChildElements()->Item(0)->SetText(L"changed");
    spElement->GetAttributes()->Item(0)->SetValue(L"changed");
    spElement->GetChildElements()->Remove(1);
    log.Take();
    EXPECT_TEXT(strBefore, Write(*spClone));
    spClone->GetChildElements()->Add(L"e", L"");
    EXPECT_EQ("", log.Take()) << "a copy has no listeners";
    spElement->GetChildElements()->RemoveEventListener(&log);
}

TEST(Element, CloneKeepsTheRestriction)
{
    const CSmartPtr<CElement> spClone = CSmartPtr<CElement>(new CElement(L"a", L"urn:a"))->Clone();
    spClone->FromXml(L"<b xmlns='urn:b'/>");
    EXPECT_TEXT(L"a", spClone->GetName());
}

TEST(Element, CloneTestsANamespaceThatWasChangedAtAnyDepth)
{
    const CSmartPtr<CElement> spElement = new CElement(L"a", L"urn:a");
    const CSmartPtr<CElement> spChild = new CElement(L"b", L"urn:b");
    spElement->GetChildElements()->Add(spChild);
    EXPECT_TEXT(Write(*spElement), Write(*spElement->Clone()));
    const long nBefore = CountInstances(L"CElement").nLiving;
    spChild->SetNamespace(L"urn:c");
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [urn:c]. The namespace must be one of [urn:b] where the target namespace is []",
        [&] { spElement->Clone(); });
    EXPECT_EQ(nBefore, CountInstances(L"CElement").nLiving);
}

TEST(Element, CloneOfADerivedElementIsAPlainOne)
{
    const CSmartPtr<CElement> spElement = Read(L"<a/>");
    spElement->GetChildElements()->Add(new CMarked(L"m"));
    EXPECT_TEXT(L"<a><m/></a>", Write(*spElement->Clone()));
}

// --- Restrictions ---------------------------------------------------------------------------------------------------

TEST(Element, SetNamespaceRestrictionsTestsTheWholeTreeAndStoresNothing)
{
    const CSmartPtr<CElement> spElement = Read(L"<a xmlns='urn:a' x='1'><b><c/></b></a>");
    EXPECT_NO_THROW(spElement->SetNamespaceRestrictions(L"##any", L""));
    EXPECT_NO_THROW(spElement->SetNamespaceRestrictions(L"urn:a", L""));
    EXPECT_NO_THROW(spElement->SetNamespaceRestrictions(L"##other", L"urn:t"));
    spElement->FromXml(L"<z xmlns='urn:z'/>");
    EXPECT_TEXT(L"z", spElement->GetName()) << "the element goes on allowing every namespace";
}

TEST(Element, SetNamespaceRestrictionsNamesTheElementItWasCalledOn)
{
    const wchar_t* const documents[] = {
        L"<a xmlns='urn:bad'/>",
        L"<a xmlns:p='urn:bad' p:x='1'/>",
        L"<a><b><c xmlns='urn:bad'/></b></a>",
        L"<a><b><c xmlns:p='urn:bad' p:x='1'/></b></a>",
    };
    for (const wchar_t* lpctXml : documents)
    {
        const CSmartPtr<CElement> spElement = Read(lpctXml);
        // The name fills the gap for the namespace and the other way round; it is the root's in every case.
        ExpectThrows<CQvInvalidNamespaceException>(L"The namespace a in the class " + spElement->GetNamespace() +
                                                       L" is invalid against restriction ##targetNamespace ##local",
                                                   [&]
                                                   {
                                                       spElement->SetNamespace(spElement->GetNamespace().c_str());
                                                       spElement->SetNamespaceRestrictions(L"##targetNamespace ##local",
                                                                                           L"urn:t");
                                                   });
    }
}

// --- Elements made of objects ---------------------------------------------------------------------------------------

/// An object that writes itself with the default namespace of the context.
class COrder : public CXmlObjectBase
{
public:
    COrder()
        : CInstanceMonitor(L"COrder")
    {
    }
    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return L"urn:a"; }

protected:
    std::wstring GetTargetNamespace() const override { return L"urn:a"; }
    void ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri, const CXmlSerializationContext& context,
                   bool) const override
    {
        pWriter->SetDefaultNamespace(context.GetDefaultNamespaceURI());
        pWriter->StartElement(L"order", lpctNamespaceUri);
        pWriter->WriteAttribute(L"id", L"", L"7", ItemType_i4);
        pWriter->StartElement(L"item", L"urn:a");
        pWriter->WriteText(L"caf\xE9", ItemType_string);
        pWriter->EndElement();
        pWriter->EndElement();
    }
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        return nullptr;
    }
};

TEST(ElementOfAnObject, HoldsWhatTheObjectWrites)
{
    COrder order;
    for (const wchar_t* lpctDefault : {s_lpctNull, L""})
    {
        const CSmartPtr<CElement> spElement = new CElement(&order, lpctDefault);
        EXPECT_TEXT(L"order", spElement->GetName());
        EXPECT_TEXT(L"<AA:order xmlns:AA=\"urn:a\" id=\"7\"><AA:item>caf\xE9</AA:item></AA:order>", Write(*spElement));
    }
}

TEST(ElementOfAnObject, IsWrittenWithItsDefaultNamespaceAndWithoutItsAttributes)
{
    COrder order;
    const CSmartPtr<CElement> spElement = new CElement(&order, L"urn:a");
    EXPECT_EQ(1, spElement->GetAttributes()->GetCount());
    EXPECT_TEXT(L"<order xmlns=\"urn:a\"><item>caf\xE9</item></order>", Write(*spElement));
}

TEST(ElementOfAnObject, IsPutIntoTheOutputOfAnEnclosingElementAsItIs)
{
    COrder order;
    const CSmartPtr<CElement> spElement = Read(L"<a xmlns='urn:x' y='1'/>");
    spElement->GetChildElements()->Add(new CElement(&order, L"urn:a"));
    spElement->GetChildElements()->Add(L"b", L"");
    EXPECT_TEXT(L"<AA:a xmlns:AA=\"urn:x\" y=\"1\"><order xmlns=\"urn:a\"><item>caf\xE9</item></order><b/></AA:a>",
                Write(*spElement));
    // Formatted, the inserted text begins at the left and is followed by one more line ending.
    EXPECT_TEXT(L"<AA:a xmlns:AA=\"urn:x\" y=\"1\">\n<order xmlns=\"urn:a\">\n\t<item>caf\xE9</item>\n</order>\n\n"
                L"\t<b/>\n</AA:a>\n",
                Write(*spElement, true));
}

TEST(ElementOfAnObject, WritesTheLineEndingsOfTheEnclosingWriter)
{
    COrder order;
    const CSmartPtr<CElement> spElement = new CElement(&order, L"urn:a");
    spElement->SetText(L"x\ny");
    EXPECT_TEXT(L"<order xmlns=\"urn:a\">\r\n\t<item>caf\xE9</item>\r\nx\r\ny</order>\r\n\r\n",
                spElement->ToXml(false, true, EOLType_CRLF, CXmlSerializationContext()));
}

TEST(ElementOfAnObject, CloneLosesTheDefaultNamespace)
{
    COrder order;
    const CSmartPtr<CElement> spElement = new CElement(&order, L"urn:a");
    EXPECT_TEXT(L"<AA:order xmlns:AA=\"urn:a\" id=\"7\"><AA:item>caf\xE9</AA:item></AA:order>",
                Write(*spElement->Clone()));
}

TEST(ElementOfAnObject, WithADefaultNamespaceIsWrittenAsXmlTextOnly)
{
    COrder order;
    const CSmartPtr<CElement> spElement = new CElement(&order, L"urn:a");
    CRecordingWriter writer;
    const auto WriteIt = [&]
    {
        CProtectedAccess::Write(spElement, writer, CXmlSerializationContext());
    };
#if defined(QUIVER_DIAGNOSTICS)
    EXPECT_DEATH(WriteIt(), "pXmlTextOut != NULL");
#else
    ExpectThrows<CQvException>(L"An element with a default namespace of its own can be written as XML text only",
                               WriteIt);
    EXPECT_TEXT(L"", writer.m_strCalls);
#endif
}

TEST(ElementOfAnObject, NeedsAnObject)
{
    CXmlObjectBase* const pNone = nullptr;
    ExpectThrows<CQvInvalidParamException>(L"The Property [pObject] is mandatory, it may node be NULL",
                                           [&] { CElement element(pNone, L""); });
}

TEST(ElementOfAnObject, CopyingReplacesEverythingAndAnnouncesCompleteChildren)
{
    CXmlDocument document;
    document.LoadXml(L"<a xmlns='urn:a' x='1'>t<b><c y='2'/></b><d/></a>");
    const CSmartPtr<COpenElement> spElement = new COpenElement(L"former");
    spElement->FromXml(L"<former z='0'><e/></former>");
    CEventLog log;
    std::wstring strAnnounced;
    log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_Add)
            strAnnounced += Write(*static_cast<CXmlObjectBase*>(log.m_events.back().pData)) + L" ";
    };
    spElement->GetChildElements()->AddEventListener(&log);
    spElement->CopyXmlElement(document.GetDocumentElement());
    EXPECT_TEXT(L"<AA:b xmlns:AA=\"urn:a\"><AA:c y=\"2\"/></AA:b> <AA:d xmlns:AA=\"urn:a\"/> ", strAnnounced);
    EXPECT_TEXT(L"<AA:a xmlns:AA=\"urn:a\" x=\"1\"><AA:b><AA:c y=\"2\"/></AA:b><AA:d/>t</AA:a>", Write(*spElement));
    spElement->GetChildElements()->RemoveEventListener(&log);
}

TEST(ElementOfAnObject, CopyingTakesADefaultNamespaceFromAnAttributeNamedXmlns)
{
    CXmlSerializationContext context;
    context.SetSchemaType(SchemaType_NoNamespaces);
    CXmlDocument document(context);
    document.LoadXml(L"<r><a xmlns='urn:a' x='1'><b/></a></r>");
    const CSmartPtr<COpenElement> spCopied = new COpenElement(L"");
    spCopied->CopyXmlElement(document.GetDocumentElement());
    EXPECT_TEXT(L"<r><a xmlns=\"urn:a\"><b/></a></r>", Write(*spCopied));

    // Reading does not.
    const CSmartPtr<CElement> spRead = new CElement(L"");
    CProtectedAccess::Read(spRead, document.GetDocumentElement(), document.GetDocumentElement(), context);
    EXPECT_TEXT(L"<r><a xmlns=\"urn:a\" x=\"1\"><b/></a></r>", Write(*spRead));
}

TEST(ElementOfAnObject, ChildrenOfACopyHaveNoNamespaceForNewItems)
{
    COrder order;
    const CSmartPtr<CElement> spElement = new CElement(&order, nullptr);
    EXPECT_TEXT(L"##any", spElement->GetChildElements()->Item(0)->GetChildElements()->Add(L"x")->GetNamespace());
}

// --- CElementCol ----------------------------------------------------------------------------------------------------

TEST(ElementCol, TestsTheNamespaceItIsMadeWithAndNoOther)
{
    ExpectThrows<CQvInvalidNamespaceException>(
        L"Invalid namespace [urn:a]. The namespace must be one of [##local] where the target namespace is [urn:t]",
        [] { CElementCol elements(L"urn:a", L"##local", L"urn:t", 0, -1); });
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##local", L"urn:t", 0, -1);
    EXPECT_NO_THROW(spCol->Add(L"x", L"urn:a"));
    EXPECT_NO_THROW(spCol->Add(new CElement(L"y", L"urn:t")));
    EXPECT_TEXT(L"{urn:a}x {urn:t}y ", Names(*spCol));
}

TEST(ElementCol, DoesNotKeepItsLimits)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##any", L"", 2, 3);
    EXPECT_EQ(0, spCol->GetMinOccurs());
    EXPECT_EQ(-1, spCol->GetMaxOccurs());
    EXPECT_TRUE(spCol->IsValidCount(CXmlSerializationContext()));
}

TEST(ElementCol, ReportsItsTargetNamespaceAsItsNamespace)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"urn:a", L"##any", L"urn:t", 0, -1);
    EXPECT_TEXT(L"urn:t", spCol->GetNamespace());
    EXPECT_TEXT(L"urn:t", COpenElementCol::TargetOf(*spCol));
}

TEST(ElementCol, ChoosesTheNamespaceOfItemsAddedByNameAlone)
{
    const struct
    {
        const wchar_t* lpctNamespace;
        const wchar_t* lpctRestriction;
        const wchar_t* lpctItemNamespace; // null where an item needs a namespace of its own
    } rows[] = {
        {L"urn:a", L"##any", L"urn:a"},
        {L"urn:a", L"urn:a", L"urn:a"},
        {L"", L"##any", L"##any"},
        {L"", L"##local", L"##local"},
        {L"", L"##other", L"##other"},
        {L"", L"##local urn:a", L"##local urn:a"},
        {L"", L"##", L"##"},
        {L"", L"urn:a", nullptr},
        {L"", L"", nullptr},
        {nullptr, L"##any", L"##any"},
        {nullptr, nullptr, nullptr},
    };
    for (const auto& row : rows)
    {
        const CSmartPtr<CElementCol> spCol = new CElementCol(row.lpctNamespace, row.lpctRestriction, L"urn:t", 0, -1);
        if (row.lpctItemNamespace != nullptr)
            EXPECT_TEXT(row.lpctItemNamespace, spCol->Add(L"x")->GetNamespace());
        else
            ExpectThrows<CQvInvalidStateException>(L"A Namespace has not been set for this Collection",
                                                   [&] { spCol->Add(L"x"); });
    }
}

TEST(ElementCol, AddGivesNewItemsTheTargetNamespaceAndNoRestriction)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##local", L"urn:t", 0, -1);
    const CSmartPtr<CElement> spElement = spCol->Add(L"x", L"urn:a");
    EXPECT_TEXT(L"urn:t", spElement->GetChildElements()->GetNamespace());
    spElement->FromXml(L"<y xmlns='urn:z'/>");
    EXPECT_TEXT(L"y", spElement->GetName());
    ExpectThrows<CQvInvalidNamespaceException>(L"Element Name must have a value",
                                               [&] { spCol->Add(s_lpctNull, L"urn:a"); });
    EXPECT_EQ(1, spCol->GetCount());
}

TEST(ElementCol, AddsAroundExistingItems)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##any", L"", 0, -1);
    const CSmartPtr<CElement> spB = new CElement(L"b");
    CEventLog log;
    spCol->AddEventListener(&log);
    EXPECT_EQ(spB, spCol->Add(spB));
    EXPECT_EQ("Add AddComplete Change", log.Take());
    spCol->AddBefore(spB, new CElement(L"a"));
    spCol->AddAfter(spB, new CElement(L"c"));
    spCol->AddAfter(nullptr, new CElement(L"first"));
    spCol->AddBefore(nullptr, new CElement(L"last"));
    EXPECT_TEXT(L"{}first {}a {}b {}c {}last ", Names(*spCol));
    EXPECT_EQ(spB, spCol->Item(2));
    ExpectThrows<CQvInvalidParamException>(L"Index 5 is out of range, use 0 - 5", [&] { spCol->Item(5); });
    log.Take();
    const CElement unknown(L"u");
    const CSmartPtr<CElement> spNew = new CElement(L"n");
    ExpectThrows<CQvInvalidParamException>(L"The object was not found in the collection",
                                           [&] { spCol->AddAfter(&unknown, spNew); });
    EXPECT_EQ("Add", log.Take());
    EXPECT_EQ(5, spCol->GetCount());
    spCol->RemoveEventListener(&log);
}

TEST(ElementCol, WritesItsItemsBehindAVirtualCountCheck)
{
    struct CStrict : CElementCol
    {
        CStrict()
            : CInstanceMonitor(L"CStrict")
            , CElementCol(L"", L"##any", L"", 0, -1)
        {
        }
        void ValidateCount(const CXmlSerializationContext&) const override { throw CQvValidationException(L"strict"); }
    };
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##any", L"", 0, -1);
    spCol->Add(L"a", L"");
    spCol->Add(L"b", L"urn:b")->SetText(L"t");
    CRecordingWriter writer;
    CProtectedAccess::Write(spCol, writer, CXmlSerializationContext());
    EXPECT_TEXT(L"<{}a\n:23\n>\n<{urn:b}b\nt:23\n>\n", writer.m_strCalls);
    CStrict strict;
    ExpectThrows<CQvValidationException>(L"strict",
                                         [&] { CProtectedAccess::Write(&strict, writer, CXmlSerializationContext()); });
}

TEST(ElementCol, CanBeWrittenAlone)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##any", L"", 0, -1);
    spCol->Add(L"a", L"")->SetText(L"t");
    EXPECT_TEXT(L"<a>t</a>", Write(*spCol));
}

TEST(ElementCol, ReadsAllSiblingsWhateverTheirNamespace)
{
    CXmlDocument document;
    document.LoadXml(L"<r><a/><b xmlns='urn:b'><c/></b><a/></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"##local", L"urn:t", 0, -1);
    spCol->Add(L"former", L"");
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), CXmlSerializationContext()));
    EXPECT_TEXT(L"{}former {}a {urn:b}b {}a ", Names(*spCol));
    EXPECT_TEXT(L"{urn:b}c ", Names(*spCol->Item(2)->GetChildElements()));
    EXPECT_TEXT(L"urn:t", spCol->Item(2)->GetChildElements()->GetNamespace());
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spCol, pRoot, nullptr, CXmlSerializationContext()));
}

TEST(ElementCol, ReadsTheRunOfOneNameAndNamespace)
{
    CXmlDocument document;
    document.LoadXml(L"<r xmlns:p='urn:p'><p:a>1</p:a><p:a><b/></p:a><a>2</a><p:a>3</p:a><p:b/></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CXmlSerializationContext context;
    COpenElementCol elements;
    CXmlElement* pCurrent =
        elements.FromXmlLockElementName_Int(L"a", L"urn:p", pRoot, pRoot->GetFirstElement(), context);
    ASSERT_NE(nullptr, pCurrent);
    EXPECT_TEXT(L"2", pCurrent->GetText());
    EXPECT_TEXT(L"{urn:p}a {urn:p}a ", Names(elements));
    EXPECT_EQ(pCurrent, elements.FromXmlLockElementName_Int(L"a", L"urn:p", pRoot, pCurrent, context));
    pCurrent = elements.FromXmlLockElementName_Int(L"a", L"", pRoot, pCurrent, context);
    pCurrent = elements.FromXmlLockElementName_Int(L"a", L"urn:p", pRoot, pCurrent, context);
    EXPECT_TEXT(L"b", pCurrent->GetLocalName());
    EXPECT_EQ(nullptr, elements.FromXmlLockElementName_Int(L"b", L"urn:p", pRoot, pCurrent, context));
    EXPECT_EQ(nullptr, elements.FromXmlLockElementName_Int(L"b", L"urn:p", pRoot, nullptr, context));
    EXPECT_TEXT(L"{urn:p}a {urn:p}a {}a {urn:p}a {urn:p}b ", Names(elements));
}

TEST(ElementCol, CloneIsDeep)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"urn:a", L"##any", L"urn:t", 0, -1);
    spCol->Add(L"x")->GetChildElements()->Add(L"y");
    const CSmartPtr<CElementCol> spClone = spCol->Clone();
    spCol->Item(0)->SetName(L"changed");
    spCol->Clear();
    EXPECT_TEXT(L"{urn:a}x ", Names(*spClone));
    EXPECT_TEXT(L"{urn:a}y ", Names(*spClone->Item(0)->GetChildElements()));
    EXPECT_TEXT(L"urn:t", spClone->GetNamespace());
    EXPECT_TEXT(L"urn:a", spClone->Add(L"z")->GetNamespace());
}

TEST(ElementCol, CloneWithoutANamespaceForItemsGetsTheWildcard)
{
    const CSmartPtr<CElementCol> spCol = new CElementCol(L"", L"urn:a", L"", 0, -1);
    EXPECT_THROW(spCol->Add(L"x"), CQvInvalidStateException);
    EXPECT_TEXT(L"##any", spCol->Clone()->Add(L"x")->GetNamespace());
}

// --- Depth and width ------------------------------------------------------------------------------------------------

std::wstring NestedXml(int nLevels)
{
    std::wstring strXml;
    for (int i = 0; i < nLevels; ++i)
        strXml += L"<a>";
    for (int i = 0; i < nLevels; ++i)
        strXml += L"</a>";
    return strXml;
}

TEST(ElementDepth, ADeepDocumentIsReadCopiedTestedWrittenAndDestroyed)
{
    constexpr int nLevels = 100000;
    RunOnStack(s_nSmallStack,
               []
               {
                   const std::wstring strXml = NestedXml(nLevels);
                   CSmartPtr<CElement> spElement = Read(strXml);
                   const CSmartPtr<CElement> spClone = spElement->Clone();
                   spElement = nullptr;
                   spClone->SetNamespaceRestrictions(L"##any", L"");
                   const std::wstring strWritten = Write(*spClone);
                   EXPECT_EQ(strXml.length() - 3, strWritten.length()) << "the innermost is an empty-element tag";
                   const CSmartPtr<CElement> spMadeOf = new CElement(spClone, nullptr);
                   EXPECT_TRUE(strWritten == Write(*spMadeOf));
               });
    EXPECT_EQ(0, CountInstances(L"CElementCol").nLiving);
}

TEST(ElementDepth, ATreeBuiltByHandIsDestroyedAtAnyDepth)
{
    {
        const CSmartPtr<CElement> spRoot = new CElement(L"a");
        CSmartPtr<CElement> spInner = spRoot;
        for (int i = 0; i < 300000; ++i)
            spInner = spInner->GetChildElements()->Add(L"a", L"");
    }
    EXPECT_EQ(0, CountInstances(L"CElement").nLiving);
}

TEST(ElementDepth, ElementsThatWriteThemselvesAreRefusedWhenTheyAreNestedTooDeeply)
{
    RunOnStack(s_nSmallStack,
               []
               {
                   const CSmartPtr<CElement> spRoot = new CMarked(L"m");
                   CSmartPtr<CElement> spInner = spRoot;
                   for (int i = 0; i < 20000; ++i)
                       spInner = spInner->GetChildElements()->Add(new CMarked(L"m"));
                   ExpectThrows<CQvException>(L"The document is nested too deeply to be processed",
                                              [&] { Write(*spRoot); });
               });
}

TEST(ElementWidth, ManySiblingsAndAttributesTakeLinearTime)
{
    constexpr int nItems = 200000;
    const CSmartPtr<CElement> spRoot = new CElement(L"a");
    for (int i = 0; i < nItems; ++i)
    {
        spRoot->GetChildElements()->Add(L"b", L"");
        spRoot->GetAttributes()->Add((L"x" + std::to_wstring(i)).c_str());
    }
    const CSmartPtr<CElement> spClone = spRoot->Clone();
    EXPECT_EQ(nItems, spClone->GetChildElements()->GetCount());
    EXPECT_EQ(nItems, spClone->GetAttributes()->GetCount());
    spClone->GetAttributes()->Clear();
    const CSmartPtr<CElement> spRead = Read(Write(*spClone));
    EXPECT_EQ(nItems, spRead->GetChildElements()->GetCount());
    spRead->GetChildElements()->Clear();
    EXPECT_TEXT(L"<a/>", Write(*spRead));
}

// --- Round trips ----------------------------------------------------------------------------------------------------

/// Makes documents at random: namespaces and prefixes at every level, attributes, text before, between and behind
/// children.
class CDocumentMaker
{
public:
    explicit CDocumentMaker(unsigned nSeed)
        : m_random(nSeed)
    {
    }

    std::wstring Make() { return Element(0); }

private:
    std::size_t Below(std::size_t nEnd) { return m_random() % nEnd; }

    std::wstring Text()
    {
        static const wchar_t* const s_pieces[] = {L"",    L"x",      L"&amp;&lt;", L" two words ", L"\n",
                                                  L"\"'", L"\x20AC", L"&#x1F600;", L"]]&gt;",      L"<![CDATA[<&]]>"};
        return s_pieces[Below(std::size(s_pieces))];
    }

    std::wstring Element(int nDepth)
    {
        static const wchar_t* const s_names[] = {L"a", L"bee", L"c-d", L"\xE9t\xE9"};
        static const wchar_t* const s_prefixes[] = {L"", L"p", L"q"};
        static const wchar_t* const s_uris[] = {L"urn:a", L"urn:b", L"http://www.example.org/c"};
        // Both prefixes are declared everywhere, each time anew.
        std::wstring strTag = s_prefixes[Below(std::size(s_prefixes))];
        strTag += (strTag.empty() ? L"" : L":") + std::wstring(s_names[Below(std::size(s_names))]);
        std::wstring strXml = L"<" + strTag;
        for (const wchar_t* lpctPrefix : {L"p", L"q"})
            strXml += L" xmlns:" + std::wstring(lpctPrefix) + L"='" + s_uris[Below(2) + (*lpctPrefix == L'q')] + L"'";
        if (Below(3) == 0)
            strXml += L" xmlns='" + std::wstring(Below(3) == 0 ? L"" : s_uris[Below(std::size(s_uris))]) + L"'";
        if (Below(2) == 0)
            strXml += L" p:x='1&#10;2'";
        if (Below(2) == 0)
            strXml += L" y='" + std::wstring(Below(2) == 0 ? L"&quot;&lt;" : L"") + L"'";
        if (Below(4) == 0)
            strXml += L" xml:lang='en'";
        strXml += L">" + Text();
        const std::size_t nChildren = nDepth < 6 ? Below(5) : 0;
        for (std::size_t i = 0; i < nChildren; ++i)
            strXml += Element(nDepth + 1) + Text();
        return strXml + L"</" + strTag + L">";
    }

    std::mt19937 m_random;
};

/// All that a tree keeps of a document, in one text.
std::wstring Kept(CXmlElement& element)
{
    std::wstring strKept = L"<{" + element.GetNamespaceURI() + L"}" + element.GetLocalName();
    for (const CXmlAttribute* pAttribute : element.GetAttributes())
        strKept +=
            L" {" + pAttribute->GetNamespaceURI() + L"}" + pAttribute->GetLocalName() + L"=" + pAttribute->GetValue();
    strKept += L">" + element.GetText();
    for (CXmlElement* pChild = element.GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
        strKept += Kept(*pChild);
    return strKept + L"</>";
}

std::wstring Kept(const std::wstring& strXml)
{
    CXmlDocument document;
    document.LoadXml(strXml.c_str());
    return Kept(*document.GetDocumentElement());
}

TEST(ElementRoundTrip, WhatIsReadAndWrittenKeepsEveryNameAttributeAndText)
{
    std::size_t nElements = 0;
    for (unsigned nSeed = 0; nSeed < 300; ++nSeed)
    {
        SCOPED_TRACE(nSeed);
        const std::wstring strXml = CDocumentMaker(nSeed).Make();
        const std::wstring strKept = Kept(strXml);
        nElements += static_cast<std::size_t>(std::count(strKept.begin(), strKept.end(), L'/'));
        const CSmartPtr<CElement> spElement = Read(strXml);
        ASSERT_PRED_FORMAT2(TextEquals, strKept, Kept(Write(*spElement)));
        ASSERT_PRED_FORMAT2(TextEquals, strKept, Kept(Write(*spElement->Clone())));
        const CSmartPtr<CElement> spMadeOf = new CElement(spElement, nullptr);
        ASSERT_PRED_FORMAT2(TextEquals, strKept, Kept(Write(*spMadeOf)));
    }
    EXPECT_GT(nElements, 1000u);
}

} // namespace
