#include "quiver/collections/XmlCollection.h"

#include "quiver/collections/QvIterator.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/EventLog.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/ProtectedAccess.h"
#include "tests/support/RecordingWriter.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstddef>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

constexpr std::size_t s_nSmallStack = 256 * 1024;
constexpr const wchar_t* s_lpctNotFound = L"The object was not found in the collection";

class CItemCol;

/// An item with a name, which may own a collection in its turn.
class CItem : public CXmlObjectBase
{
public:
    explicit CItem(std::wstring strName = L"")
        : CInstanceMonitor(L"CItem")
        , m_strName(std::move(strName))
    {
    }
    ~CItem() override;

    CXmlObjectBase* GetBase() override { return this; }
    using CXmlObjectBase::GetBase;
    std::wstring GetNamespace() const override { return L""; }

    std::wstring m_strName;
    CSmartPtr<CItemCol> m_spItems;

protected:
    std::wstring GetTargetNamespace() const override { return L""; }
    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext&) const override
    {
        pWriter->WriteAttribute(m_strName, L"", L"", ItemType_string);
    }
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext&, bool) override
    {
        return pCurrent;
    }
};

/// A list of CItem with its protected operations in reach.
class CItemCol : public CXmlCollection
{
public:
    CItemCol()
        : CInstanceMonitor(L"CItemCol")
    {
    }
    CItemCol(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
        : CInstanceMonitor(L"CItemCol")
        , CXmlCollection(lpctName, lpctNamespace, nMinOccurs, nMaxOccurs)
    {
    }
    ~CItemCol() override = default;

    using CXmlCollection::AddAfterItem;
    using CXmlCollection::AddBeforeItem;
    using CXmlCollection::AddItemAt;
    using CXmlCollection::AppendItem;
    using CXmlCollection::GetHeadNode;
    using CXmlCollection::GetNodeAtIndex;
    using CXmlCollection::GetNodeForItem;
    using CXmlCollection::PrependItem;
    using CXmlCollection::RemoveNode;
    using CXmlCollectionBase::GetTargetNamespace;

    CItem* Item(int nIndex) const { return static_cast<CItem*>(ItemAt(nIndex)); }
    CQvIterator<CItem> begin() const { return CQvIterator<CItem>(GetHeadNode()); }
    CQvIterator<CItem> end() const { return CQvIterator<CItem>(); }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext&, bool) override
    {
        return pCurrent;
    }
};

CItem::~CItem() = default;

/// The names of the items, read forwards and, to prove the links, backwards too.
std::wstring Names(const CItemCol& items)
{
    std::wstring strForwards;
    std::wstring strBackwards;
    const CNode* pLast = nullptr;
    for (const CNode* pNode = items.GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
    {
        EXPECT_EQ(pLast, pNode->m_pPrev);
        strForwards += static_cast<const CItem&>(*pNode->m_pItem).m_strName;
        pLast = pNode;
    }
    for (; pLast != nullptr; pLast = pLast->m_pPrev)
        strBackwards.insert(0, static_cast<const CItem&>(*pLast->m_pItem).m_strName);
    EXPECT_TEXT(strForwards, strBackwards);
    EXPECT_EQ(static_cast<int>(strForwards.length()), items.GetCount());
    return strForwards;
}

/// A collection that holds items named by single letters, with a listener that has heard nothing yet.
struct XmlCollection : ::testing::Test
{
    void Fill(const std::wstring& strNames)
    {
        for (const wchar_t c : strNames)
        {
            CSmartPtr<CItem> spItem = new CItem(std::wstring(1, c));
            m_items.push_back(spItem);
            m_spCol->AppendItem(spItem);
        }
        m_spCol->AddEventListener(&m_log);
    }
    ~XmlCollection() override { m_spCol->RemoveEventListener(&m_log); }

    std::vector<CSmartPtr<CItem>> m_items;
    CSmartPtr<CItemCol> m_spCol = new CItemCol;
    CSmartPtr<CItem> m_spNew = new CItem(L"n");
    CEventLog m_log;
};

// --- Limits and identity --------------------------------------------------------------------------------------------

TEST_F(XmlCollection, DefaultConstructedHasNoNameNoNamespaceAndNoLimits)
{
    EXPECT_EQ(0, m_spCol->GetMinOccurs());
    EXPECT_EQ(-1, m_spCol->GetMaxOccurs());
    EXPECT_TEXT(L"", m_spCol->GetElementName());
    EXPECT_TEXT(L"", m_spCol->GetNamespace());
    EXPECT_EQ(0, m_spCol->GetCount());
}

TEST_F(XmlCollection, ConstructorCopiesItsTexts)
{
    std::wstring strName = L"item";
    std::wstring strNamespace = L"urn:a";
    const CSmartPtr<CItemCol> spCol = new CItemCol(strName.c_str(), strNamespace.c_str(), 2, 5);
    strName = L"xxxx";
    strNamespace = L"xxxxx";
    EXPECT_TEXT(L"item", spCol->GetElementName());
    EXPECT_TEXT(L"urn:a", spCol->GetNamespace());
    EXPECT_EQ(2, spCol->GetMinOccurs());
    EXPECT_EQ(5, spCol->GetMaxOccurs());
}

TEST_F(XmlCollection, IsItsOwnBase)
{
    EXPECT_EQ(m_spCol, m_spCol->GetBase());
    EXPECT_EQ(m_spCol, static_cast<const CItemCol&>(*m_spCol).GetBase());
}

TEST_F(XmlCollection, HasNoTargetNamespaceSinceItIsNeverTheRoot)
{
    ExpectThrows<CQvException>(L"CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection "
                               L"(program logic error)",
                               [&] { m_spCol->GetTargetNamespace(); });
}

TEST_F(XmlCollection, IsCountedUnderItsOwnClassName)
{
    const long nBefore = CountInstances(L"CItemCol").nLiving;
    const CSmartPtr<CItemCol> spCol = new CItemCol;
    EXPECT_EQ(nBefore + 1, CountInstances(L"CItemCol").nLiving);
}

TEST(XmlCollectionCount, IsTestedAgainstTheLimits)
{
    const wchar_t* const lpctMax = L"The Maximum number of [item] elements allowed in this collection is ";
    const wchar_t* const lpctMin = L"The Minimum number of [item] elements allowed in this collection is ";
    const struct
    {
        int nMin, nMax, nCount;
        std::wstring strMessage;
    } rows[] = {
        {0, -1, 0, L""},
        {0, -1, 5, L""},
        {1, -1, 0, std::wstring(lpctMin) + L"1"},
        {1, -1, 1, L""},
        {0, 2, 2, L""},
        {0, 2, 3, std::wstring(lpctMax) + L"2"},
        {0, 0, 1, std::wstring(lpctMax) + L"0"},
        {2, 4, 1, std::wstring(lpctMin) + L"2"},
        {2, 4, 4, L""},
        // Where both limits are broken, the maximum is reported.
        {5, 2, 3, std::wstring(lpctMax) + L"2"},
    };
    CXmlSerializationContext strict;
    CXmlSerializationContext lenient;
    lenient.SetIgnoreInvalidCollectionCounts(true);
    for (const auto& row : rows)
    {
        SCOPED_TRACE(::testing::Message() << row.nMin << " to " << row.nMax << ", " << row.nCount << " items");
        const CSmartPtr<CItemCol> spCol = new CItemCol(L"item", L"", row.nMin, row.nMax);
        for (int i = 0; i < row.nCount; ++i)
            spCol->AppendItem(new CItem);
        EXPECT_EQ(row.strMessage.empty(), spCol->IsValidCount(strict));
        if (row.strMessage.empty())
            EXPECT_NO_THROW(spCol->ValidateCount(strict));
        else
            ExpectThrows<CQvValidationException>(row.strMessage, [&] { spCol->ValidateCount(strict); });
        EXPECT_TRUE(spCol->IsValidCount(lenient));
        EXPECT_NO_THROW(spCol->ValidateCount(lenient));
        EXPECT_EQ(row.nCount, spCol->GetCount());
    }
}

// --- Adding ---------------------------------------------------------------------------------------------------------

TEST_F(XmlCollection, AddsWhereItIsTold)
{
    using Operation = void (*)(CItemCol&, const std::vector<CSmartPtr<CItem>>&, CItem*);
    const struct
    {
        const wchar_t* lpctBefore;
        Operation pfnAdd;
        const wchar_t* lpctAfter;
    } rows[] = {
        {L"", [](CItemCol& col, const auto&, CItem* p) { col.AppendItem(p); }, L"n"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AppendItem(p); }, L"abn"},
        {L"", [](CItemCol& col, const auto&, CItem* p) { col.PrependItem(p); }, L"n"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.PrependItem(p); }, L"nab"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AddAfterItem(nullptr, p); }, L"nab"},
        {L"ab", [](CItemCol& col, const auto& items, CItem* p) { col.AddAfterItem(items[0], p); }, L"anb"},
        {L"ab", [](CItemCol& col, const auto& items, CItem* p) { col.AddAfterItem(items[1], p); }, L"abn"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AddBeforeItem(nullptr, p); }, L"abn"},
        {L"ab", [](CItemCol& col, const auto& items, CItem* p) { col.AddBeforeItem(items[0], p); }, L"nab"},
        {L"ab", [](CItemCol& col, const auto& items, CItem* p) { col.AddBeforeItem(items[1], p); }, L"anb"},
        {L"", [](CItemCol& col, const auto&, CItem* p) { col.AddItemAt(0, p); }, L"n"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AddItemAt(0, p); }, L"nab"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AddItemAt(1, p); }, L"anb"},
        {L"ab", [](CItemCol& col, const auto&, CItem* p) { col.AddItemAt(2, p); }, L"abn"},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i)
    {
        SCOPED_TRACE(i);
        m_spCol->RemoveEventListener(&m_log);
        m_spCol->Clear();
        m_items.clear();
        Fill(rows[i].lpctBefore);
        rows[i].pfnAdd(*m_spCol, m_items, m_spNew);
        EXPECT_TEXT(rows[i].lpctAfter, Names(*m_spCol));
        ASSERT_EQ(3u, m_log.m_events.size());
        for (const CEventLog::SEvent& event : m_log.m_events)
            EXPECT_EQ(m_spCol, event.pSource);
        EXPECT_EQ(static_cast<CXmlObjectBase*>(m_spNew), m_log.m_events[0].pData);
        EXPECT_EQ(static_cast<CXmlObjectBase*>(m_spNew), m_log.m_events[1].pData);
        EXPECT_EQ(nullptr, m_log.m_events[2].pData);
        EXPECT_EQ("Add AddComplete Change", m_log.Take());
    }
}

TEST_F(XmlCollection, AnnouncesAnItemBeforeItIsThereAndReportsItAfterwards)
{
    Fill(L"a");
    std::vector<int> counts;
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        counts.push_back(m_spCol->GetCount());
    };
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ((std::vector<int>{1, 2, 2}), counts);
}

TEST_F(XmlCollection, AddingBehindAnUnknownItemFailsAfterTheAnnouncement)
{
    Fill(L"ab");
    const CItem unknown(L"u");
    for (const bool bAfter : {true, false})
    {
        ExpectThrows<CQvInvalidParamException>(
            s_lpctNotFound,
            [&] { bAfter ? m_spCol->AddAfterItem(&unknown, m_spNew) : m_spCol->AddBeforeItem(&unknown, m_spNew); });
        EXPECT_EQ("Add", m_log.Take());
        EXPECT_TEXT(L"ab", Names(*m_spCol));
    }
}

TEST_F(XmlCollection, AnItemThatCouldNotBeAddedIsStillTheCallers)
{
    Fill(L"ab");
    const CItem unknown(L"u");
    const auto Refuse = [](IEventSink::MsgType)
    {
        throw CQvInvalidStateException(L"no");
    };
    const struct
    {
        const char* lpcCase;
        std::function<void(IEventSink::MsgType)> pfnReact;
        std::function<void(CItemCol&, CItem*)> pfnAdd;
    } cases[] = {
        {"behind an unknown item", nullptr,
         [&](CItemCol& col, CItem* pItem)
         {
             col.AddAfterItem(&unknown, pItem);
         }},
        {"ahead of an unknown item", nullptr,
         [&](CItemCol& col, CItem* pItem)
         {
             col.AddBeforeItem(&unknown, pItem);
         }},
        {"refused at the end", Refuse,
         [](CItemCol& col, CItem* pItem)
         {
             col.AppendItem(pItem);
         }},
        {"refused at the front", Refuse,
         [](CItemCol& col, CItem* pItem)
         {
             col.PrependItem(pItem);
         }},
        {"refused at a position", Refuse,
         [](CItemCol& col, CItem* pItem)
         {
             col.AddItemAt(0, pItem);
         }},
    };
    for (const auto& row : cases)
    {
        SCOPED_TRACE(row.lpcCase);
        const long nBefore = CountInstances(L"CItem").nLiving;
        m_log.m_pfnReact = row.pfnReact;
        auto* const pItem = new CItem(L"x");
        EXPECT_THROW(row.pfnAdd(*m_spCol, pItem), CQvException);
        m_log.m_pfnReact = nullptr;
        EXPECT_EQ(nBefore + 1, CountInstances(L"CItem").nLiving);
        {
            const CSmartPtr<CItem> spItem = pItem;
            EXPECT_TEXT(L"x", spItem->m_strName);
        }
        EXPECT_EQ(nBefore, CountInstances(L"CItem").nLiving);
    }
}

TEST_F(XmlCollection, AnItemThatItsOnlyOwnerDropsWhileItIsRefusedGoes)
{
    Fill(L"a");
    CSmartPtr<CItem> spItem = new CItem(L"x");
    const long nBefore = CountInstances(L"CItem").nLiving;
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        spItem = nullptr;
        throw CQvInvalidStateException(L"no");
    };
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { m_spCol->AppendItem(spItem); });
    EXPECT_EQ(nBefore - 1, CountInstances(L"CItem").nLiving);
}

TEST_F(XmlCollection, AddingAtABadPositionFailsBeforeAnyEvent)
{
    Fill(L"ab");
    for (const int nIndex : {-1, 3, INT_MIN, INT_MAX})
    {
        ExpectThrows<CQvInvalidParamException>(L"Index out of range", [&] { m_spCol->AddItemAt(nIndex, m_spNew); });
    }
    EXPECT_EQ("", m_log.Take());
    EXPECT_TEXT(L"ab", Names(*m_spCol));
}

TEST_F(XmlCollection, RejectsANullItem)
{
    Fill(L"a");
    ExpectThrows<CQvInvalidParamException>(L"The item of a collection may not be NULL",
                                           [&] { m_spCol->AppendItem(nullptr); });
    EXPECT_EQ("", m_log.Take());
    EXPECT_TEXT(L"a", Names(*m_spCol));
}

TEST_F(XmlCollection, HoldsTheOnlyReferenceToAnItemThatNobodyElseKeeps)
{
    const long nBefore = CountInstances(L"CItem").nLiving;
    m_spCol->AppendItem(new CItem);
    EXPECT_EQ(nBefore + 1, CountInstances(L"CItem").nLiving);
    m_spCol->Remove(0);
    EXPECT_EQ(nBefore, CountInstances(L"CItem").nLiving);
}

TEST_F(XmlCollection, AListenerMayTakeAndDropAReferenceToAnItemThatHasNoneYet)
{
    Fill(L"");
    m_log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_Add)
            const CSmartPtr<CXmlObjectBase> spItem = static_cast<CXmlObjectBase*>(m_log.m_events.back().pData);
    };
    m_spCol->AppendItem(new CItem(L"a"));
    EXPECT_TEXT(L"a", Names(*m_spCol));
}

TEST_F(XmlCollection, KeepsMoreItemsThanAllowedUntilItIsValidated)
{
    const CSmartPtr<CItemCol> spCol = new CItemCol(L"item", L"", 0, 1);
    spCol->AppendItem(new CItem);
    EXPECT_NO_THROW(spCol->AppendItem(new CItem));
    EXPECT_EQ(2, spCol->GetCount());
}

// --- Looking up -----------------------------------------------------------------------------------------------------

TEST_F(XmlCollection, ABadIndexIsReportedWithTheCountAsTheUpperEnd)
{
    const struct
    {
        const wchar_t* lpctItems;
        int nIndex;
        const wchar_t* lpctMessage;
    } rows[] = {
        {L"", 0, L"Index 0 is out of range, use 0 - 0"},
        {L"ab", 2, L"Index 2 is out of range, use 0 - 2"},
        {L"ab", -1, L"Index -1 is out of range, use 0 - 2"},
        {L"ab", INT_MIN, L"Index -2147483648 is out of range, use 0 - 2"},
    };
    for (const auto& row : rows)
    {
        const CSmartPtr<CItemCol> spCol = new CItemCol;
        for (const wchar_t* lpct = row.lpctItems; *lpct != 0; ++lpct)
            spCol->AppendItem(new CItem);
        spCol->AddEventListener(&m_log);
        ExpectThrows<CQvInvalidParamException>(row.lpctMessage, [&] { spCol->GetNodeAtIndex(row.nIndex); });
        ExpectThrows<CQvInvalidParamException>(row.lpctMessage, [&] { spCol->Remove(row.nIndex); });
        EXPECT_EQ("", m_log.Take());
        spCol->RemoveEventListener(&m_log);
    }
}

TEST_F(XmlCollection, FindsTheFirstNodeOfAnObjectByIdentity)
{
    Fill(L"ab");
    m_spCol->AppendItem(m_items[0]);
    const CItem twin(L"a");
    EXPECT_EQ(m_spCol->GetHeadNode(), m_spCol->GetNodeForItem(m_items[0]));
    EXPECT_EQ(m_spCol->GetHeadNode()->m_pNext, m_spCol->GetNodeForItem(m_items[1]));
    ExpectThrows<CQvInvalidParamException>(s_lpctNotFound, [&] { m_spCol->GetNodeForItem(&twin); });
    ExpectThrows<CQvInvalidParamException>(s_lpctNotFound, [&] { m_spCol->GetNodeForItem(nullptr); });
}

TEST_F(XmlCollection, FindsItemsByPositionWhateverHappensBetween)
{
    std::vector<CSmartPtr<CItem>> model;
    std::mt19937 random(4711);
    const auto Below = [&](std::size_t nEnd)
    {
        return static_cast<int>(random() % nEnd);
    };
    for (int nStep = 0; nStep < 20000; ++nStep)
    {
        const int nSize = static_cast<int>(model.size());
        const int nChoice = Below(100);
        if (nChoice < 4 || nSize < 50)
        {
            const int nIndex = Below(model.size() + 1);
            model.insert(model.begin() + nIndex, new CItem);
            m_spCol->AddItemAt(nIndex, model[static_cast<std::size_t>(nIndex)]);
        }
        else if (nChoice < 7)
        {
            const int nIndex = Below(model.size());
            m_spCol->Remove(nIndex);
            model.erase(model.begin() + nIndex);
        }
        else
        {
            // Mostly near the last one, as loops are.
            const int nIndex = nChoice < 20 ? Below(model.size()) : (nStep / 3) % nSize;
            ASSERT_EQ(model[static_cast<std::size_t>(nIndex)], m_spCol->Item(nIndex));
        }
    }
    ASSERT_EQ(static_cast<int>(model.size()), m_spCol->GetCount());
}

TEST_F(XmlCollection, ARememberedPositionDoesNotOutliveItsCollection)
{
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        CSmartPtr<CItemCol> spFirst = new CItemCol;
        CSmartPtr<CItemCol> spSecond = new CItemCol;
        for (int i = 0; i < 100; ++i)
        {
            spFirst->AppendItem(new CItem(std::to_wstring(i)));
            spSecond->AppendItem(new CItem(std::to_wstring(1000 + i)));
        }
        EXPECT_TEXT(L"50", spFirst->Item(50)->m_strName);
        EXPECT_TEXT(L"1051", spSecond->Item(51)->m_strName);
        EXPECT_TEXT(L"51", spFirst->Item(51)->m_strName);
        spFirst = nullptr;
        EXPECT_TEXT(L"1050", spSecond->Item(50)->m_strName);
    }
}

TEST_F(XmlCollection, PositionsOfAListThatNobodyChangesCanBeReadOnSeveralThreads)
{
    constexpr int nItems = 500;
    for (int i = 0; i < nItems; ++i)
        m_spCol->AppendItem(new CItem(std::to_wstring(i)));
    std::atomic<int> nWrong{0};
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 4; ++nThread)
    {
        threads.emplace_back(
            [&]
            {
                for (int i = 0; i < nItems; ++i)
                    nWrong += m_spCol->Item(i)->m_strName == std::to_wstring(i) ? 0 : 1;
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, nWrong);
}

// --- Removing -------------------------------------------------------------------------------------------------------

TEST_F(XmlCollection, RemovesAtEachPosition)
{
    const wchar_t* const remaining[] = {L"bc", L"ac", L"ab"};
    for (int nIndex = 0; nIndex < 3; ++nIndex)
    {
        m_spCol->RemoveEventListener(&m_log);
        m_spCol->Clear();
        Fill(L"abc");
        m_spCol->Remove(nIndex);
        EXPECT_TEXT(remaining[nIndex], Names(*m_spCol));
        for (const CEventLog::SEvent& event : m_log.m_events)
        {
            EXPECT_EQ(m_spCol, event.pSource);
            EXPECT_EQ(nullptr, event.pData) << "the list does not know the index";
        }
        EXPECT_EQ("Remove RemoveComplete Change", m_log.Take());
    }
}

TEST_F(XmlCollection, AnnouncesARemovalBeforeItHappensAndReportsItAfterwards)
{
    Fill(L"ab");
    std::vector<int> counts;
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        counts.push_back(m_spCol->GetCount());
    };
    m_spCol->Remove(0);
    EXPECT_EQ((std::vector<int>{2, 1, 1}), counts);
}

TEST_F(XmlCollection, RemovingTheOnlyNodeLeavesAnEmptyListThatCanBeFilledAgain)
{
    Fill(L"a");
    m_spCol->RemoveNode(m_spCol->GetHeadNode());
    EXPECT_EQ(nullptr, m_spCol->GetHeadNode());
    EXPECT_EQ(0, m_spCol->GetCount());
    m_spCol->AppendItem(m_spNew);
    EXPECT_TEXT(L"n", Names(*m_spCol));
}

#if defined(QUIVER_DIAGNOSTICS)
TEST_F(XmlCollection, RemovingALoneNodeOfAnotherListStopsAtAnAssertion)
{
    Fill(L"");
    m_spCol->RemoveEventListener(&m_log);
    m_spCol->AppendItem(m_spNew);
    const CSmartPtr<CItemCol> spOther = new CItemCol;
    spOther->AppendItem(new CItem);
    EXPECT_DEATH(m_spCol->RemoveNode(spOther->GetHeadNode()), "m_pTail == pNode");
}
#endif

TEST_F(XmlCollection, ClearAnnouncesEveryItem)
{
    Fill(L"ab");
    m_spCol->Clear();
    EXPECT_EQ("Remove RemoveComplete Change Remove RemoveComplete Change", m_log.Take());
    EXPECT_EQ(0, m_spCol->GetCount());
    m_spCol->Clear();
    EXPECT_EQ("", m_log.Take());
}

TEST_F(XmlCollection, ClearRemovesThroughTheVirtualOperation)
{
    class CCounting : public CItemCol
    {
    public:
        CCounting()
            : CInstanceMonitor(L"CCounting")
        {
        }
        void Remove(int nIndex) override
        {
            m_removed.push_back(nIndex);
            CItemCol::Remove(nIndex);
        }
        std::vector<int> m_removed;
    };
    CCounting items;
    items.AppendItem(new CItem);
    items.AppendItem(new CItem);
    items.Clear();
    EXPECT_EQ((std::vector<int>{0, 0}), items.m_removed);
}

TEST_F(XmlCollection, DestructionAnnouncesEveryItem)
{
    Fill(L"ab");
    m_spCol = nullptr;
    EXPECT_EQ("Remove RemoveComplete Change Remove RemoveComplete Change", m_log.Take());
    m_spCol = new CItemCol;
}

TEST_F(XmlCollection, ItemsBelowARemovedOneAreAnnouncedWhileTheRemovalIsInProgress)
{
    const CSmartPtr<CItem> spOuter = new CItem(L"outer");
    CEventLog log;
    CItem* pInner = new CItem;
    pInner->m_spItems = new CItemCol;
    pInner->m_spItems->AppendItem(new CItem);
    pInner->m_spItems->AddEventListener(&log);
    spOuter->m_spItems = new CItemCol;
    spOuter->m_spItems->AppendItem(pInner);
    spOuter->m_spItems->AddEventListener(&log);
    const CXmlObjectBase* const pInnerCol = pInner->m_spItems;
    const CXmlObjectBase* const pOuterCol = spOuter->m_spItems;
    spOuter->m_spItems->Clear();
    std::vector<const CXmlObjectBase*> sources;
    for (const CEventLog::SEvent& event : log.m_events)
        sources.push_back(event.pSource);
    EXPECT_EQ("Remove Remove RemoveComplete Change RemoveComplete Change", log.Take());
    EXPECT_EQ((std::vector<const CXmlObjectBase*>{pOuterCol, pInnerCol, pInnerCol, pInnerCol, pOuterCol, pOuterCol}),
              sources);
    spOuter->m_spItems->RemoveEventListener(&log);
}

// --- Listeners ------------------------------------------------------------------------------------------------------

TEST_F(XmlCollection, TheSourceOfAnEventIsWhatGetBaseGives)
{
    class COwned : public CItemCol
    {
    public:
        explicit COwned(CItem* pOwner)
            : CInstanceMonitor(L"COwned")
            , m_pOwner(pOwner)
        {
        }
        CXmlObjectBase* GetBase() override { return m_pOwner; }
        CItem* m_pOwner;
    };
    COwned items(m_spNew);
    items.AddEventListener(&m_log);
    items.AppendItem(new CItem);
    ASSERT_EQ(3u, m_log.m_events.size());
    for (const CEventLog::SEvent& event : m_log.m_events)
        EXPECT_EQ(m_spNew, event.pSource);
    items.RemoveEventListener(&m_log);
}

TEST_F(XmlCollection, AListenerAddedTwiceHearsTwiceAndGoesAtOnce)
{
    Fill(L"");
    m_spCol->AddEventListener(&m_log);
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ("Add Add AddComplete AddComplete Change Change", m_log.Take());
    m_spCol->RemoveEventListener(&m_log);
    m_spCol->Clear();
    EXPECT_EQ("", m_log.Take());
}

TEST_F(XmlCollection, ListenersHearInTheOrderOfTheirRegistration)
{
    Fill(L"");
    CEventLog second;
    std::string strOrder;
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        strOrder += '1';
    };
    second.m_pfnReact = [&](IEventSink::MsgType)
    {
        strOrder += '2';
    };
    m_spCol->AddEventListener(&second);
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ("121212", strOrder);
    m_spCol->RemoveEventListener(&second);
}

TEST_F(XmlCollection, PassesOverANullListener)
{
    m_spCol->AddEventListener(nullptr);
    Fill(L"a");
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ("Add AddComplete Change", m_log.Take());
}

TEST_F(XmlCollection, AListenerMayLeaveDuringAnEvent)
{
    Fill(L"");
    CEventLog second;
    m_spCol->AddEventListener(&second);
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        m_spCol->RemoveEventListener(&m_log);
        m_spCol->RemoveEventListener(&second);
    };
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ("Add", m_log.Take());
    EXPECT_EQ("", second.Take()) << "it left before it was its turn";
    EXPECT_TEXT(L"n", Names(*m_spCol));
}

TEST_F(XmlCollection, AListenerMayJoinDuringAnEvent)
{
    Fill(L"");
    CEventLog second;
    m_log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_AddComplete)
            m_spCol->AddEventListener(&second);
    };
    m_spCol->AppendItem(m_spNew);
    EXPECT_EQ("AddComplete Change", second.Take());
    m_spCol->RemoveEventListener(&second);
}

TEST_F(XmlCollection, AListenerCanRefuseAnItem)
{
    Fill(L"a");
    m_log.m_pfnReact = [](IEventSink::MsgType)
    {
        throw CQvInvalidStateException(L"no");
    };
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { m_spCol->AppendItem(m_spNew); });
    EXPECT_EQ("Add", m_log.Take());
    EXPECT_TEXT(L"a", Names(*m_spCol));
}

TEST_F(XmlCollection, AnItemReportedCompleteStaysWhenTheListenerThrows)
{
    Fill(L"a");
    m_log.m_pfnReact = [](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_AddComplete)
            throw CQvInvalidStateException(L"too late");
    };
    ExpectThrows<CQvInvalidStateException>(L"too late", [&] { m_spCol->AppendItem(m_spNew); });
    EXPECT_EQ("Add AddComplete", m_log.Take());
    EXPECT_TEXT(L"an", Names(*m_spCol));
}

TEST_F(XmlCollection, AListenerCanRefuseARemoval)
{
    Fill(L"ab");
    m_log.m_pfnReact = [](IEventSink::MsgType)
    {
        throw CQvInvalidStateException(L"no");
    };
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { m_spCol->Clear(); });
    EXPECT_EQ("Remove", m_log.Take());
    EXPECT_TEXT(L"ab", Names(*m_spCol));
}

TEST_F(XmlCollection, DestructionFreesEveryItemEvenIfListenersThrow)
{
    for (const IEventSink::MsgType eThrowAt :
         {IEventSink::MsgType_Remove, IEventSink::MsgType_RemoveComplete, IEventSink::MsgType_Change})
    {
        const long nBefore = CountInstances(L"CItem").nLiving;
        CEventLog log;
        {
            const CSmartPtr<CItemCol> spCol = new CItemCol;
            for (int i = 0; i < 3; ++i)
                spCol->AppendItem(new CItem);
            log.m_pfnReact = [&](IEventSink::MsgType eType)
            {
                if (eType == eThrowAt)
                    throw CQvInvalidStateException(L"no");
            };
            spCol->AddEventListener(&log);
        }
        EXPECT_EQ(nBefore, CountInstances(L"CItem").nLiving);
        EXPECT_EQ(eThrowAt == IEventSink::MsgType_Remove           ? "Remove Remove Remove"
                  : eThrowAt == IEventSink::MsgType_RemoveComplete ? "Remove RemoveComplete Remove RemoveComplete "
                                                                     "Remove RemoveComplete"
                                                                   : "Remove RemoveComplete Change Remove "
                                                                     "RemoveComplete Change Remove RemoveComplete "
                                                                     "Change",
                  log.Take());
    }
}

TEST_F(XmlCollection, APositionIsTestedAgainAfterListenersChangedTheList)
{
    Fill(L"abc");
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        m_log.m_pfnReact = nullptr;
        m_spCol->Clear();
    };
    ExpectThrows<CQvInvalidParamException>(L"Index out of range", [&] { m_spCol->AddItemAt(1, m_spNew); });
    EXPECT_TEXT(L"", Names(*m_spCol));
}

TEST_F(XmlCollection, AListenerMayRemoveTheVeryItemWhoseRemovalIsAnnounced)
{
    Fill(L"ab");
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        m_log.m_pfnReact = nullptr;
        m_spCol->Remove(0);
    };
    ExpectThrows<CQvInvalidParamException>(s_lpctNotFound, [&] { m_spCol->Remove(0); });
    EXPECT_EQ("Remove Remove RemoveComplete Change", m_log.Take());
    EXPECT_TEXT(L"b", Names(*m_spCol));
}

TEST_F(XmlCollection, AnItemAddedInPlaceOfTheOneBeingRemovedStays)
{
    // The new node is likely to lie where the removed one lay; a few tries make sure that it does once.
    for (int nTry = 0; nTry < 8; ++nTry)
    {
        m_spCol->Clear();
        Fill(L"ab");
        m_log.m_pfnReact = [&](IEventSink::MsgType)
        {
            m_log.m_pfnReact = nullptr;
            m_spCol->Remove(0);
            m_spCol->AppendItem(new CItem(L"c"));
        };
        ExpectThrows<CQvInvalidParamException>(s_lpctNotFound, [&] { m_spCol->Remove(0); });
        EXPECT_TEXT(L"bc", Names(*m_spCol));
    }
}

TEST_F(XmlCollection, AListenerMayRemoveAnotherItemWhileARemovalIsAnnounced)
{
    Fill(L"ab");
    m_log.m_pfnReact = [&](IEventSink::MsgType)
    {
        m_log.m_pfnReact = nullptr;
        m_spCol->Remove(1);
    };
    m_spCol->Remove(0);
    EXPECT_TEXT(L"", Names(*m_spCol));
}

// --- Attributes, copies, size ---------------------------------------------------------------------------------------

TEST_F(XmlCollection, WritesTheAttributesOfEachItemInOrder)
{
    Fill(L"abc");
    CRecordingWriter writer;
    CProtectedAccess::WriteAttributes(m_spCol, writer, CXmlSerializationContext());
    EXPECT_TEXT(L" {}a=:23\n {}b=:23\n {}c=:23\n", writer.m_strCalls);
}

TEST_F(XmlCollection, CopiesShareTheNodes)
{
    // A copy is not counted as an instance but its destruction is, so one more has to be there.
    static const CItemCol* const s_pUncounted = new CItemCol;
    ASSERT_NE(nullptr, s_pUncounted);
    Fill(L"ab");
    CItemCol copy(*m_spCol);
    CItemCol assigned;
    assigned = *m_spCol;
    EXPECT_EQ(m_spCol->GetHeadNode(), copy.GetHeadNode());
    EXPECT_EQ(m_spCol->GetHeadNode(), assigned.GetHeadNode());
    EXPECT_EQ(2, copy.GetCount());
    EXPECT_EQ(2, assigned.GetCount());
    // Only one of them may destroy the nodes.
    copy = CItemCol();
    assigned = CItemCol();
    EXPECT_TEXT(L"ab", Names(*m_spCol));
}

TEST_F(XmlCollection, AMillionItemsTakeLinearTime)
{
    constexpr int nItems = 1000000;
    const CSmartPtr<CItem> spItem = new CItem;
    for (int i = 0; i < nItems; ++i)
        i % 2 == 0 ? m_spCol->AppendItem(spItem) : m_spCol->PrependItem(spItem);
    int nSeen = 0;
    for (int i = 0; i < m_spCol->GetCount(); ++i)
        nSeen += m_spCol->Item(i) == spItem ? 1 : 0;
    for (int i = m_spCol->GetCount() - 1; i >= 0; --i)
        nSeen += m_spCol->Item(i) == spItem ? 1 : 0;
    EXPECT_EQ(2 * nItems, nSeen);
    for (int i = 0; i < nItems / 2; ++i)
        m_spCol->Remove(m_spCol->GetCount() - 1);
    m_spCol->Clear();
    EXPECT_EQ(0, m_spCol->GetCount());
}

CSmartPtr<CItem> MakeNested(int nLevels)
{
    CSmartPtr<CItem> spItem = new CItem;
    for (int i = 0; i < nLevels; ++i)
    {
        const CSmartPtr<CItem> spOuter = new CItem;
        spOuter->m_spItems = new CItemCol;
        spOuter->m_spItems->AppendItem(spItem);
        spItem = spOuter;
    }
    return spItem;
}

TEST(XmlCollectionDepth, AMillionNestedCollectionsAreDestroyed)
{
    CSmartPtr<CItem> spItem = MakeNested(1000000);
    const long nAlive = CountInstances(L"CItem").nLiving;
    spItem = nullptr;
    EXPECT_EQ(nAlive - 1000001, CountInstances(L"CItem").nLiving);
}

TEST(XmlCollectionDepth, NestedCollectionsAreDestroyedOnASmallStack)
{
    RunOnStack(s_nSmallStack, [] { MakeNested(100000); });
    EXPECT_EQ(0, CountInstances(L"CItemCol").nLiving);
}

TEST(XmlCollectionDepth, ManyItemsBelowTheDepthOfTheStackAreAllDestroyed)
{
    RunOnStack(s_nSmallStack,
               []
               {
                   CSmartPtr<CItem> spOuter = MakeNested(20000);
                   for (int i = 0; i < 3; ++i)
                   {
                       const CSmartPtr<CItem> spNext = new CItem;
                       spNext->m_spItems = new CItemCol;
                       spNext->m_spItems->AppendItem(spOuter);
                       for (int j = 0; j < 5; ++j)
                           spNext->m_spItems->AppendItem(MakeNested(5000));
                       spOuter = spNext;
                   }
               });
    EXPECT_EQ(0, CountInstances(L"CItemCol").nLiving);
}

} // namespace
