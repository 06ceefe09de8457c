#include "quiver/core/XmlObjectBase.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/output/XmlWriter.h"
#include "tests/support/Expect.h"
#include "tests/support/SmallStack.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

/// A bindable object written by hand, with the protected operations laid open.
class CProbe : public CXmlObjectBase
{
public:
    explicit CProbe(const wchar_t* lpctName = L"probe")
        : CInstanceMonitor(L"CProbe")
    {
        SetElementName(lpctName);
        ++s_nAlive;
    }
    CProbe(const CProbe& source)
        : CInstanceMonitor(source)
        , CXmlObjectBase(source)
        , m_strText(source.m_strText)
    {
        ++s_nAlive;
    }
    CProbe& operator=(const CProbe&) = default;
    ~CProbe() override { --s_nAlive; }

    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return L"urn:probe"; }
    using CXmlObjectBase::GetBase;

    using CXmlObjectBase::Choice_CollectionChanged;
    using CXmlObjectBase::Choice_Read_Collection;
    using CXmlObjectBase::Choice_SelectElement;
    using CXmlObjectBase::Choice_SetElementValid;
    using CXmlObjectBase::DoesElementNameMatch;
    using CXmlObjectBase::FireOnCollectionAddCompleteEvent;
    using CXmlObjectBase::FireOnCollectionAddEvent;
    using CXmlObjectBase::FireOnCollectionChangeEvent;
    using CXmlObjectBase::FireOnCollectionRemoveCompleteEvent;
    using CXmlObjectBase::FireOnCollectionRemoveEvent;
    using CXmlObjectBase::IsNamespaceValid;
    using CXmlObjectBase::SetElementName;
    using CXmlObjectBase::TestNamespace;
    using CXmlObjectBase::Throw_IfElementNameDiffers;
    using CXmlObjectBase::Throw_IfPropertyIsNull;

    std::wstring m_strText = L"x < y";
    static std::atomic<int> s_nAlive;

protected:
    std::wstring GetTargetNamespace() const override { return L"urn:probe"; }

    void ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri, const CXmlSerializationContext&,
                   bool) const override
    {
        pWriter->StartElement(GetElementName(), lpctNamespaceUri);
        pWriter->WriteText(m_strText, ItemType_string);
        pWriter->EndElement();
    }

    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        SetElementName(pElement->GetLocalName().c_str());
        m_strText = pElement->GetText();
        return nullptr;
    }
};

std::atomic<int> CProbe::s_nAlive = 0;

/// A collection that reads elements of one name and counts them.
class CCountingCol : public CXmlCollection
{
public:
    CCountingCol(const wchar_t* lpctName, int nMin, int nMax)
        : CInstanceMonitor(L"CCountingCol")
        , CXmlCollection(lpctName, L"", nMin, nMax)
    {
    }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool) override
    {
        while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, GetElementName().c_str(), L""))
        {
            AppendItem(new CProbe);
            pCurrent = pCurrent->GetNextSiblingElement();
        }
        return pCurrent;
    }
};

struct SRecordingSink final : IEventSink
{
    CXmlObjectBase* pSource = nullptr;
    int eType = -1;
    void* pData = nullptr;
    int nIndex = -99;

    void OnEvent(CXmlObjectBase* pMsgSource, MsgType eMsgType, void* pMsgData) override
    {
        pSource = pMsgSource;
        eType = eMsgType;
        pData = pMsgData;
        if ((eMsgType == MsgType_Remove || eMsgType == MsgType_RemoveComplete) && pMsgData != nullptr)
            nIndex = *static_cast<int*>(pMsgData);
    }
};

const CXmlSerializationContext& Context()
{
    return CXmlSerializationContext::GetDefaultContext();
}

} // namespace

// --- Reference count -----------------------------------------------------------------------------

TEST(XmlObjectBase, ANewObjectHasNoReferenceAndDiesWithItsLast)
{
    {
        const CSmartPtr<CProbe> spFirst = new CProbe;
        EXPECT_EQ(CProbe::s_nAlive, 1);
        EXPECT_EQ(spFirst->AddRef(), 2);
        EXPECT_EQ(spFirst->Release(), 1);
    }
    EXPECT_EQ(CProbe::s_nAlive, 0);
    CProbe* const pSecond = new CProbe;
    EXPECT_EQ(pSecond->AddRef(), 1);
    EXPECT_EQ(pSecond->Release(), 0);
    EXPECT_EQ(CProbe::s_nAlive, 0);
}

TEST(XmlObjectBase, ReleaseBelowZeroDoesNotDestroyTheObject)
{
    CProbe probe;
    EXPECT_EQ(probe.Release(), -1);
    EXPECT_EQ(CProbe::s_nAlive, 1);
}

TEST(XmlObjectBase, ACopyTakesTheNameAndTheCountItself)
{
    // A copy is not counted when it is made and is when it goes, so an object that stays keeps the count from sinking
    // below zero.
    static const CProbe* const s_pStays = new CProbe;
    ASSERT_NE(s_pStays, nullptr);
    CProbe source(L"named");
    source.AddRef();
    source.AddRef();
    CProbe copy(source);
    EXPECT_TEXT(L"named", copy.GetElementName());
    EXPECT_EQ(copy.AddRef(), 3);

    CProbe assigned(L"other");
    assigned = source;
    EXPECT_TEXT(L"named", assigned.GetElementName());
    EXPECT_EQ(assigned.AddRef(), 3);
}

TEST(XmlObjectBase, ThreadsMayShareAnObjectThroughTheirOwnPointers)
{
    const CSmartPtr<CProbe> spShared = new CProbe;
    std::vector<std::thread> threads;
    for (int n = 0; n < 4; ++n)
        threads.emplace_back(
            [&spShared]
            {
                for (int i = 0; i < 10000; ++i)
                    const CSmartPtr<CProbe> spMine = spShared;
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(spShared->AddRef(), 2);
    spShared->Release();
}

namespace
{

/// An object that holds others by its properties, and writes its name down when it goes.
class CLink : public CProbe
{
public:
    explicit CLink(CSmartPtr<CLink> spFirst = nullptr, CSmartPtr<CLink> spSecond = nullptr,
                   std::wstring* pGone = nullptr, const wchar_t* lpctName = L"link")
        : CInstanceMonitor(L"CLink")
        , CProbe(lpctName)
        , m_spFirst(spFirst)
        , m_spSecond(spSecond)
        , m_pGone(pGone)
    {
    }
    ~CLink() override
    {
        if (m_pGone != nullptr)
            *m_pGone += GetElementName();
    }

    CSmartPtr<CLink> m_spFirst;
    CSmartPtr<CLink> m_spSecond;
    std::wstring* m_pGone;
};

CSmartPtr<CLink> Chain(int nLength)
{
    CSmartPtr<CLink> spChain;
    for (int n = 0; n < nLength; ++n)
        spChain = new CLink(spChain);
    return spChain;
}

/// A chain each of whose links holds another chain too.
CSmartPtr<CLink> Tree(int nLength)
{
    CSmartPtr<CLink> spTree;
    for (int n = 0; n < nLength; ++n)
        spTree = new CLink(Chain(nLength / 10), spTree);
    return spTree;
}

} // namespace

TEST(XmlObjectBaseDepth, AChainOfObjectsHeldByPropertiesDiesWhateverItsLength)
{
    const int nBefore = CProbe::s_nAlive;
    for (const int nLength : {1, 1000, 1000000})
    {
        CSmartPtr<CLink> spChain = Chain(nLength);
        EXPECT_EQ(nBefore + nLength, CProbe::s_nAlive);
        spChain = nullptr;
        EXPECT_EQ(nBefore, CProbe::s_nAlive) << nLength;
    }
}

TEST(XmlObjectBaseDepth, ChainsDieOnASmallStack)
{
    const int nBefore = CProbe::s_nAlive;
    QvTest::RunOnStack(128 * 1024, [] { Tree(2000); });
    EXPECT_EQ(nBefore, CProbe::s_nAlive);
}

TEST(XmlObjectBaseDepth, AChainWithAnotherOwnerStaysFromThereOn)
{
    const int nBefore = CProbe::s_nAlive;
    const CSmartPtr<CLink> spShared = Chain(10000);
    {
        CSmartPtr<CLink> spChain = spShared;
        for (int n = 0; n < 200000; ++n)
            spChain = new CLink(spChain);
    }
    EXPECT_EQ(nBefore + 10000, CProbe::s_nAlive);
}

TEST(XmlObjectBaseDepth, ThreadsDestroyTheirChainsIndependently)
{
    const int nBefore = CProbe::s_nAlive;
    std::vector<CSmartPtr<CLink>> chains;
    for (int n = 0; n < 4; ++n)
        chains.push_back(Chain(50000));
    std::vector<std::thread> threads;
    for (CSmartPtr<CLink>& spChain : chains)
        threads.emplace_back([&spChain] { spChain = nullptr; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nBefore, CProbe::s_nAlive);
}

TEST(XmlObjectBase, ObjectsThatTheStackHoldsDieInTheOrderOfTheirMembers)
{
    std::wstring strGone;
    const auto Make =
        [&](const wchar_t* lpctName, CSmartPtr<CLink> spFirst = nullptr, CSmartPtr<CLink> spSecond = nullptr)
    {
        return CSmartPtr<CLink>(new CLink(spFirst, spSecond, &strGone, lpctName));
    };
    CSmartPtr<CLink> spRoot = Make(L"a", Make(L"b", Make(L"c")), Make(L"d"));
    spRoot = nullptr;
    EXPECT_TEXT(L"adbc", strGone);
}

// --- Names, namespaces and setter checks ---------------------------------------------------------

TEST(XmlObjectBase, GetBaseOfAConstObjectIsTheObject)
{
    const CProbe probe;
    EXPECT_EQ(probe.GetBase(), &probe);
}

TEST(XmlObjectBase, ANullMandatoryPropertyIsRefused)
{
    CProbe probe;
    CProbe other;
    ExpectThrows<CQvInvalidParamException>(L"The Property [shipTo] is mandatory, it may node be NULL",
                                           [&] { probe.Throw_IfPropertyIsNull(nullptr, L"shipTo"); });
    EXPECT_NO_THROW(probe.Throw_IfPropertyIsNull(&other, L"shipTo"));
}

TEST(XmlObjectBase, AnObjectOfAnotherElementNameIsRefusedAndNullPasses)
{
    CProbe probe;
    CProbe other(L"billTo");
    ExpectThrows<CQvInvalidParamException>(
        L"This property requrires an element with the name shipTo the element being set has the element name billTo",
        [&] { probe.Throw_IfElementNameDiffers(&other, L"shipTo"); });
    ExpectThrows<CQvInvalidParamException>(
        L"This property requrires an element with the name BILLTO the element being set has the element name billTo",
        [&] { probe.Throw_IfElementNameDiffers(&other, L"BILLTO"); });
    EXPECT_NO_THROW(probe.Throw_IfElementNameDiffers(&other, L"billTo"));
    EXPECT_NO_THROW(probe.Throw_IfElementNameDiffers(nullptr, L"shipTo"));
}

TEST(XmlObjectBase, NamespaceConstraints)
{
    struct
    {
        const wchar_t* lpctNamespace;
        const wchar_t* lpctList;
        const wchar_t* lpctTarget;
        bool bValid;
    } const cases[] = {
        {L"urn:x", L"##any", L"urn:t", true},
        {L"", L"##any", L"urn:t", true},
        {L"urn:x", L"##other", L"urn:t", true},
        {L"urn:t", L"##other", L"urn:t", false},
        {L"", L"##other", L"urn:t", true},
        {L"", L"##other", L"", false},
        {L"", L"##local", L"urn:t", true},
        {L"urn:x", L"##local", L"urn:t", false},
        {L"urn:t", L"##targetNamespace", L"urn:t", true},
        {L"urn:x", L"##targetNamespace", L"urn:t", false},
        {L"", L"##targetNamespace", L"urn:t", false},
        {L"urn:x", L"urn:x", L"urn:t", true},
        {L"urn:y", L"urn:x", L"urn:t", false},
        {L"", L"urn:x", L"urn:t", true},
        {L"", L"", L"urn:t", true},
        {L"urn:x", L"", L"urn:t", false},
        // A list of several tokens is served by its first alone.
        {L"urn:x", L"##any urn:y", L"urn:t", true},
        {L"urn:t", L"##other urn:t", L"urn:t", false},
        {L"urn:x", L"##local urn:x", L"urn:t", false},
        {L"urn:t", L"##local ##targetNamespace", L"urn:t", false},
        {L"", L"##targetNamespace ##local", L"urn:t", true},
        {L"urn:x", L"urn:x urn:y", L"urn:t", false},
        {L"urn:y", L"urn:x urn:y", L"urn:t", false},
        {L"urn:x urn:y", L"urn:x urn:y", L"urn:t", true},
        {L"##local urn:x", L"##local urn:x", L"urn:t", true},
        {L"", L"urn:x urn:y", L"urn:t", true},
        {L"urn:y", L" urn:y", L"urn:t", false},
    };
    CProbe probe;
    for (const auto& row : cases)
    {
        SCOPED_TRACE(QvTest::Show(row.lpctNamespace) + " in " + QvTest::Show(row.lpctList) + " of " +
                     QvTest::Show(row.lpctTarget));
        EXPECT_EQ(probe.IsNamespaceValid(row.lpctNamespace, row.lpctList, row.lpctTarget), row.bValid);
        if (row.bValid)
            EXPECT_NO_THROW(probe.TestNamespace(row.lpctNamespace, row.lpctList, row.lpctTarget));
        else
            ExpectThrows<CQvInvalidNamespaceException>(
                std::wstring(L"Invalid namespace [") + row.lpctNamespace + L"]. The namespace must be one of [" +
                    row.lpctList + L"] where the target namespace is [" + row.lpctTarget + L"]",
                [&] { probe.TestNamespace(row.lpctNamespace, row.lpctList, row.lpctTarget); });
    }
}

TEST(XmlObjectBase, ElementNamesMatchByLocalNameAndNamespaceUnlessTheContextSaysOtherwise)
{
    CXmlSerializationContext strict;
    CXmlSerializationContext ignoring;
    ignoring.SetIgnoreNamespaces(true);
    CXmlSerializationContext without;
    without.SetSchemaType(SchemaType_NoNamespaces);

    CXmlDocument document(strict);
    document.LoadXml("<a xmlns='urn:x'/>");
    const CXmlElement* const pElement = document.GetDocumentElement();
    const CProbe probe;
    EXPECT_TRUE(probe.DoesElementNameMatch(strict, pElement, L"a", L"urn:x"));
    EXPECT_FALSE(probe.DoesElementNameMatch(strict, pElement, L"a", L"urn:y"));
    EXPECT_FALSE(probe.DoesElementNameMatch(strict, pElement, L"b", L"urn:x"));
    EXPECT_TRUE(probe.DoesElementNameMatch(ignoring, pElement, L"a", L"urn:y"));
    EXPECT_FALSE(probe.DoesElementNameMatch(ignoring, pElement, L"b", L"urn:x"));
    EXPECT_TRUE(probe.DoesElementNameMatch(without, pElement, L"a", L"urn:y"));
}

// --- Text output ---------------------------------------------------------------------------------

TEST(XmlObjectBase, AHandWrittenObjectBecomesTextInTheFormAskedFor)
{
    CXmlSerializationContext context;
    const CProbe probe;
    const std::wstring strRoot = L"<AA:probe xmlns:AA=\"urn:probe\">x &lt; y</AA:probe>";
    EXPECT_TEXT(strRoot, probe.ToXml(false, false, EOLType_LF, context));
    EXPECT_TEXT(strRoot + L"\n", probe.ToXml(false, true, EOLType_LF, context));
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\n" + strRoot, probe.ToXml(true, false, EOLType_LF, context));
    EXPECT_TEXT(L"<?xml version=\"1.0\"?>\r\n" + strRoot + L"\r\n", probe.ToXml(true, true, EOLType_CRLF, context));
}

TEST(XmlObjectBase, AnInvalidLineEndingIsRefused)
{
    const CProbe probe;
    ExpectThrows<CQvException>(L"Invalid EOL type.",
                               [&] { probe.ToXml(false, false, static_cast<EOLType>(2), Context()); });
}

// --- Events --------------------------------------------------------------------------------------

TEST(XmlObjectBase, EventsCarryTheCollectionAsSourceAndTheirData)
{
    const CSmartPtr<CCountingCol> spCollection = new CCountingCol(L"item", 0, -1);
    SRecordingSink sink;
    int nItem = 0;

    CProbe::FireOnCollectionChangeEvent(&sink, spCollection);
    EXPECT_EQ(sink.pSource, spCollection->GetBase());
    EXPECT_EQ(sink.eType, 0);
    EXPECT_EQ(sink.pData, nullptr);

    CProbe::FireOnCollectionAddEvent(&sink, spCollection, &nItem);
    EXPECT_EQ(sink.eType, 1);
    EXPECT_EQ(sink.pData, &nItem);

    CProbe::FireOnCollectionAddCompleteEvent(&sink, spCollection, &nItem);
    EXPECT_EQ(sink.eType, 2);
    EXPECT_EQ(sink.pData, &nItem);

    CProbe::FireOnCollectionRemoveEvent(&sink, spCollection, 0);
    EXPECT_EQ(sink.eType, 3);
    EXPECT_EQ(sink.nIndex, 0);
    CProbe::FireOnCollectionRemoveEvent(&sink, spCollection, -1);
    EXPECT_EQ(sink.eType, 3);
    EXPECT_EQ(sink.pData, nullptr);

    CProbe::FireOnCollectionRemoveCompleteEvent(&sink, spCollection, 7);
    EXPECT_EQ(sink.eType, 4);
    EXPECT_EQ(sink.nIndex, 7);
    CProbe::FireOnCollectionRemoveCompleteEvent(&sink, spCollection, -1);
    EXPECT_EQ(sink.eType, 4);
    EXPECT_EQ(sink.pData, nullptr);
}

TEST(XmlObjectBase, EventTypesKeepTheirNumbers)
{
    EXPECT_EQ(IEventSink::MsgType_Change, 0);
    EXPECT_EQ(IEventSink::MsgType_Add, 1);
    EXPECT_EQ(IEventSink::MsgType_AddComplete, 2);
    EXPECT_EQ(IEventSink::MsgType_Remove, 3);
    EXPECT_EQ(IEventSink::MsgType_RemoveComplete, 4);
}

// --- Choice bookkeeping --------------------------------------------------------------------------

TEST(XmlObjectBase, AssigningTheSelectedMemberKeepsTheSelection)
{
    CProbe probe;
    CProbe value;
    std::wstring strCurrent = L"a";
    probe.Choice_SelectElement(L"a", &value, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
}

TEST(XmlObjectBase, ANullAssignedWhileNothingIsSelectedSelectsTheMember)
{
    CProbe probe;
    std::wstring strCurrent;
    probe.Choice_SelectElement(L"a", nullptr, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
}

TEST(XmlObjectBase, ASecondMemberIsRefusedAndTheSelectionStays)
{
    CProbe probe;
    CProbe value;
    std::wstring strCurrent = L"a";
    ExpectThrows<CQvInvalidStateException>(
        L"The Property [a] is already set. Only one element within this class bay be set at a time",
        [&] { probe.Choice_SelectElement(L"b", &value, strCurrent); });
    EXPECT_TEXT(L"a", strCurrent);
    probe.Choice_SelectElement(L"b", nullptr, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
}

TEST(XmlObjectBase, ClearingTheSelectedMemberMakesRoomForAnother)
{
    CProbe probe;
    CProbe value;
    std::wstring strCurrent = L"a";
    probe.Choice_SelectElement(L"a", nullptr, strCurrent);
    EXPECT_TEXT(L"", strCurrent);
    probe.Choice_SelectElement(L"b", &value, strCurrent);
    EXPECT_TEXT(L"b", strCurrent);
}

TEST(XmlObjectBase, ACollectionSelectsItsMemberWhileItHoldsItems)
{
    CProbe probe;
    std::wstring strCurrent;
    probe.Choice_CollectionChanged(L"a", 0, strCurrent);
    EXPECT_TEXT(L"", strCurrent);
    probe.Choice_CollectionChanged(L"a", 1, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
    probe.Choice_CollectionChanged(L"a", 2, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
    ExpectThrows<CQvInvalidStateException>(
        L"The Property [a] is already set. Only one element within this class bay be set at a time",
        [&] { probe.Choice_CollectionChanged(L"b", 1, strCurrent); });
    probe.Choice_CollectionChanged(L"b", 0, strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
    probe.Choice_CollectionChanged(L"a", 0, strCurrent);
    EXPECT_TEXT(L"", strCurrent);
}

TEST(XmlObjectBase, SetElementValidConfirmsButNeverMakesASelection)
{
    CProbe probe;
    std::wstring strCurrent = L"a";
    probe.Choice_SetElementValid(true, L"a", strCurrent);
    EXPECT_TEXT(L"a", strCurrent);
    ExpectThrows<CQvInvalidStateException>(
        L"The Property a is already set. Only one element within this class bay be set at a time",
        [&] { probe.Choice_SetElementValid(true, L"b", strCurrent); });
    probe.Choice_SetElementValid(false, L"b", strCurrent);
    EXPECT_TEXT(L"", strCurrent);
    ExpectThrows<CQvInvalidStateException>(
        L"The Property  is already set. Only one element within this class bay be set at a time",
        [&] { probe.Choice_SetElementValid(true, L"a", strCurrent); });
}

TEST(XmlObjectBase, AChoiceReadsItsCollectionOnceAndChecksTheCount)
{
    CXmlSerializationContext context;
    CXmlDocument document(context);
    document.LoadXml("<r><x/><x/><y/></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    CProbe probe;
    long lCount = 0;

    const CSmartPtr<CCountingCol> spOther = new CCountingCol(L"z", 1, 1);
    CXmlElement* pCurrent = pRoot->GetFirstElement();
    probe.Choice_Read_Collection(spOther, pRoot, pCurrent, lCount, context);
    EXPECT_EQ(lCount, 0);
    EXPECT_EQ(pCurrent, pRoot->GetFirstElement());

    const CSmartPtr<CCountingCol> spItems = new CCountingCol(L"x", 0, 2);
    probe.Choice_Read_Collection(spItems, pRoot, pCurrent, lCount, context);
    EXPECT_EQ(lCount, 1);
    EXPECT_TEXT(L"y", pCurrent->GetLocalName());
    EXPECT_EQ(spItems->GetCount(), 2);

    // A member was read already, so nothing more is looked at.
    const CSmartPtr<CCountingCol> spThird = new CCountingCol(L"y", 0, -1);
    probe.Choice_Read_Collection(spThird, pRoot, pCurrent, lCount, context);
    EXPECT_EQ(lCount, 1);
    EXPECT_EQ(spThird->GetCount(), 0);

    lCount = 0;
    pCurrent = pRoot->GetFirstElement();
    const CSmartPtr<CCountingCol> spFew = new CCountingCol(L"x", 0, 1);
    ExpectThrows<CQvValidationException>(L"The Maximum number of [x] elements allowed in this collection is 1", [&]
                                         { probe.Choice_Read_Collection(spFew, pRoot, pCurrent, lCount, context); });
    EXPECT_EQ(lCount, 0);
}
