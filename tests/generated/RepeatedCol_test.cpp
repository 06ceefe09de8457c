#include "quiver/generated/RepeatedCol.h"

#include "tests/generated/SmallClasses.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

using namespace QvXmlLib9;
using namespace sample;

namespace
{

constexpr SRepeatedElement s_number{L"n", L"", 0, -1};

/// Remembers what it hears, and does what a test wants then.
class CListener : public CXmlObjectBase
{
public:
    CListener()
        : CInstanceMonitor(L"CListener")
    {
    }
    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return {}; }
    std::wstring GetTargetNamespace() const override { return {}; }

    std::vector<int> m_events;
    std::function<void(IEventSink::MsgType)> m_Do = [](IEventSink::MsgType) {
    };

protected:
    void OnEvent(CXmlObjectBase*, IEventSink::MsgType eMsgType, void*) override
    {
        m_events.push_back(eMsgType);
        m_Do(eMsgType);
    }
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        return nullptr;
    }
};

struct SRefusal
{
};

std::vector<int> ValuesOf(const CValueCol<xs::Int>& collection)
{
    return {collection.begin(), collection.end()};
}

} // namespace

TEST(RepeatedCol, HoldsValues)
{
    const CSmartPtr<CValueCol<xs::Int>> spCol = new CValueCol<xs::Int>(s_number);
    spCol->Add(1);
    spCol->Add(3);
    spCol->AddAt(1, 2);
    spCol->AddAt(0, 0);
    EXPECT_EQ(ValuesOf(*spCol), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(spCol->Item(3), 3);
    spCol->Remove(1);
    EXPECT_EQ(ValuesOf(*spCol), (std::vector<int>{0, 2, 3}));
    for (const int nPlace : {-1, 4})
        EXPECT_EQ(MessagesOf([&] { spCol->AddAt(nPlace, 9); }), L"Index out of range");
    EXPECT_EQ(MessagesOf([&] { spCol->Item(3); }), L"Index 3 is out of range, use 0 - 3");
    EXPECT_EQ(MessagesOf([&] { spCol->Remove(-1); }), L"Index -1 is out of range, use 0 - 3");
    spCol->Clear();
    EXPECT_EQ(spCol->GetCount(), 0);
}

TEST(RepeatedCol, ChecksItsValues)
{
    const CSmartPtr<CValueCol<SSku>> spSkus = new CValueCol<SSku>(s_number);
    EXPECT_EQ(MessagesOf([&] { spSkus->Add(L"x"); }),
              L"Invalid Value for n [x]\nThe value does not match the pattern [A-Z]{3}-\\d+");
    EXPECT_EQ(spSkus->GetCount(), 0);
    const CSmartPtr<CValueCol<xs::Token>> spTokens = new CValueCol<xs::Token>(s_number);
    spTokens->Add(L" a  b ");
    EXPECT_EQ(spTokens->Item(0), L"a b");
    const CSmartPtr<CValueCol<xs::Boolean>> spFlags = new CValueCol<xs::Boolean>(s_number);
    spFlags->Add(true);
    spFlags->Add(false);
    EXPECT_TRUE(spFlags->Item(0));
    EXPECT_FALSE(spFlags->Item(1));
}

TEST(RepeatedCol, AnnouncesWhatHappensToValues)
{
    CListener listener;
    const CSmartPtr<CValueCol<xs::Int>> spCol = new CValueCol<xs::Int>(s_number);
    spCol->AddEventListener(&listener);
    spCol->Add(1);
    spCol->Add(2);
    listener.m_events.clear();
    spCol->Clear();
    EXPECT_EQ(listener.m_events, (std::vector<int>{3, 4, 0, 3, 4, 0}));
    spCol->RemoveEventListener(&listener);
}

TEST(RepeatedCol, SurvivesListenersThatThrow)
{
    const struct
    {
        IEventSink::MsgType eMsgType;
        std::vector<int> afterAdd;
        std::vector<int> afterRemove;
    } cases[] = {{IEventSink::MsgType_Add, {1}, {}},
                 {IEventSink::MsgType_AddComplete, {1, 2}, {}},
                 {IEventSink::MsgType_Change, {1, 2}, {}},
                 {IEventSink::MsgType_Remove, {1, 2}, {1}},
                 {IEventSink::MsgType_RemoveComplete, {1, 2}, {}}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(::testing::Message() << "event " << c.eMsgType);
        CListener listener;
        {
            CSmartPtr<CValueCol<xs::Int>> spCol = new CValueCol<xs::Int>(s_number);
            spCol->Add(1);
            spCol->AddEventListener(&listener);
            listener.m_Do = [&c](IEventSink::MsgType eMsgType)
            {
                if (eMsgType == c.eMsgType)
                    throw SRefusal();
            };
            try
            {
                spCol->Add(2);
            }
            catch (const SRefusal&)
            {
            }
            EXPECT_EQ(ValuesOf(*spCol), c.afterAdd);
            while (spCol->GetCount() > 1)
            {
                spCol->RemoveEventListener(&listener);
                spCol->Remove(1);
                spCol->AddEventListener(&listener);
            }
            try
            {
                spCol->Remove(0);
            }
            catch (const SRefusal&)
            {
            }
            EXPECT_EQ(ValuesOf(*spCol), c.afterRemove);
            // The destructor ends whatever the listener throws.
        }
    }
}

TEST(RepeatedCol, SurvivesListenersThatChangeIt)
{
    CListener listener;
    const CSmartPtr<CValueCol<xs::Int>> spCol = new CValueCol<xs::Int>(s_number);
    spCol->Add(1);
    spCol->Add(2);
    spCol->AddEventListener(&listener);
    bool bDone = false;
    listener.m_Do = [&](IEventSink::MsgType)
    {
        if (std::exchange(bDone, true))
            return;
        spCol->Clear();
    };
    EXPECT_EQ(MessagesOf([&] { spCol->AddAt(2, 3); }), L"Index out of range");
    EXPECT_EQ(spCol->GetCount(), 0);
    spCol->Add(1);
    bDone = false;
    EXPECT_EQ(MessagesOf([&] { spCol->Remove(0); }), L"Index 0 is out of range, use 0 - 0");
    EXPECT_EQ(spCol->GetCount(), 0);
    spCol->RemoveEventListener(&listener);
}

TEST(RepeatedCol, HoldsObjectsUnderTheirName)
{
    const CSmartPtr<CObjectCol<CPrice>> spCol = new CObjectCol<CPrice>(SRepeatedElement{L"price", L"urn:sample", 0, 2});
    const CSmartPtr<CPrice> spFirst = spCol->AddNew();
    EXPECT_EQ(spFirst->GetElementName(), L"price");
    const CSmartPtr<CPrice> spSecond = spCol->AddAt(0, new CPrice);
    EXPECT_EQ(spCol->Item(0), spSecond);
    EXPECT_EQ(spCol->Item(1), spFirst);
    int nCount = 0;
    for (CPrice& price : *spCol)
        nCount += price.GetElementName() == L"price";
    EXPECT_EQ(nCount, 2);
    EXPECT_EQ(MessagesOf([&] { spCol->Add(nullptr); }), L"The Property [price] is mandatory, it may node be NULL");
    EXPECT_EQ(MessagesOf([&] { spCol->Add(new CPrice(L"cost")); }),
              L"This property requires an element with the name price the element being set has the element name cost");
    EXPECT_THROW(spCol->Item(2), CQvInvalidParamException);
    EXPECT_EQ(spCol->GetCount(), 2);
}

TEST(RepeatedCol, TakesGroupsUnderAnyName)
{
    const CSmartPtr<CGroupCol<COrderPair>> spCol =
        new CGroupCol<COrderPair>(SRepeatedElement{L"key", L"urn:sample", 0, 2});
    spCol->Add(new COrderPair(L"whatever"));
    spCol->AddNew();
    EXPECT_EQ(spCol->GetCount(), 2);
    EXPECT_THROW(spCol->Add(nullptr), CQvInvalidParamException);
}

TEST(RepeatedCol, TakesWhatTheSubstitutionGroupAllows)
{
    const CSmartPtr<CPolymorphicCol<CShape>> spCol = new CPolymorphicCol<CShape>(CDrawing::s_Shape);
    spCol->Add(new CCircle);
    spCol->Add(new CShape(L"square"));
    EXPECT_EQ(MessagesOf([&] { spCol->Add(new CShape(L"triangle")); }),
              L"This property requires an element with the name shape the element being set has the element name "
              L"triangle");
    EXPECT_EQ(MessagesOf([&] { spCol->Add(nullptr); }), L"The Property [shape] is mandatory, it may node be NULL");
    EXPECT_EQ(spCol->GetCount(), 2);
}

TEST(RepeatedCol, CountsOpenContent)
{
    static constexpr SWildcard s_some{SWildcard::Any, nullptr, 0, 1, 2};
    const CSmartPtr<CAnyCol> spCol = new CAnyCol(s_some);
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
    CXmlSerializationContext lenient;
    lenient.SetIgnoreInvalidCollectionCounts(true);
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }),
              L"The Minimum number of [AnyElement] elements allowed in this collection is 1");
    EXPECT_FALSE(spCol->IsValidCount(context));
    EXPECT_TRUE(spCol->IsValidCount(lenient));
    for (int n = 0; n < 2; ++n)
    {
        spCol->Add(new CElement(L"x", L"urn:other"));
        EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }), L"done");
    }
    spCol->Add(new CElement(L"x", L"urn:other"));
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }),
              L"The Maximum number of [AnyElement] elements allowed in this collection is 2");
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(lenient); }), L"done");
}

TEST(RepeatedCol, LeavesTheLayoutOfOpenContentOut)
{
    CEnvelope envelope;
    const std::wstring strLaidOut = L">\n  <m:y> 1 </m:y>\n  <m:y>\n</m:y>\n</";
    envelope.FromXml(Document(L"envelope", L"",
                              L"<head>h</head><o:one" + strLaidOut + L"o:one><m:x" + strLaidOut + L"m:x><m:x>\n</m:x>")
                         .c_str(),
                     CXmlSerializationContext::GetDefaultContext());
    ASSERT_TRUE(envelope.m_One.IsSet());
    EXPECT_EQ(envelope.m_One.Get()->GetText(), L"");
    const CSmartPtr<CAnyCol> spMany = envelope.m_Many.Get(CEnvelope::s_Many);
    ASSERT_EQ(spMany->GetCount(), 2);
    EXPECT_EQ(spMany->Item(0)->GetText(), L"");
    EXPECT_EQ(spMany->Item(0)->GetChildElements()->Item(0)->GetText(), L" 1 ");
    EXPECT_EQ(spMany->Item(0)->GetChildElements()->Item(1)->GetText(), L"\n");
    EXPECT_EQ(spMany->Item(1)->GetText(), L"\n") << "what stands alone is a value";
}

TEST(RepeatedCol, MayHaveItsCountsNarrowed)
{
    const CSmartPtr<CValueCol<xs::Int>> spCol = new CValueCol<xs::Int>(s_number);
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }), L"done");
    QvVariant value;
    value.SetXmlCollection(spCol);
    RestrictCounts(value, 1, 2);
    EXPECT_FALSE(spCol->IsValidCount(context));
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }),
              L"The Minimum number of [n] elements allowed in this collection is 1");
    for (int n = 0; n < 3; ++n)
        spCol->Add(n);
    EXPECT_EQ(MessagesOf([&] { spCol->ValidateCount(context); }),
              L"The Maximum number of [n] elements allowed in this collection is 2");
}

constexpr wchar_t s_lpctSeven[] = L"7";

TEST(RepeatedCol, HoldsToAFixedValue)
{
    const CSmartPtr<CValueCol<xs::Int, SFixed<s_lpctSeven>>> spCol =
        new CValueCol<xs::Int, SFixed<s_lpctSeven>>(s_number);
    spCol->Add(7);
    EXPECT_NE(MessagesOf([&] { spCol->Add(8); }), L"done");
    EXPECT_EQ(spCol->GetCount(), 1);
}

namespace
{

/// Repeated durations.
class CSpans : public CGenerated<CSpans>
{
public:
    explicit CSpans(const wchar_t* lpctElementName = L"spans")
        : CInstanceMonitor(L"CSpans")
        , CGenerated(lpctElementName)
    {
    }

    CSmartPtr<CValueCol<xs::Duration>> GetN() const { return m_N.Get(s_number); }

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(QvXmlLib9Data::GroupType_Sequence, QvXmlLib9Data::ElementType_Element, L"spans", L"");
        description.Element(m_N, s_number);
    }

private:
    CRepeated<CValueCol<xs::Duration>> m_N;
};

} // namespace

TEST(RepeatedCol, WritesDurationsAsTheyWereRead)
{
    CSpans spans;
    spans.FromXml(L"<spans><n>P01M</n><n> P0Y </n><n>P012M</n></spans>", {});
    const auto Write = [&]
    {
        return spans.ToXml(false, false, EOLType_LF, {});
    };
    EXPECT_EQ(Write(), L"<spans><n>P01M</n><n>P0Y</n><n>P012M</n></spans>");
    const CSmartPtr<CValueCol<xs::Duration>> spCol = spans.GetN();
    spCol->AddAt(1, spCol->Item(0));
    EXPECT_EQ(Write(), L"<spans><n>P01M</n><n>P1M</n><n>P0Y</n><n>P012M</n></spans>") << "one that a program set";
    spCol->Remove(0);
    EXPECT_EQ(Write(), L"<spans><n>P1M</n><n>P0Y</n><n>P012M</n></spans>");
    spCol->Clear();
    spCol->Add(ValueOf<xs::Duration>(L"P0Y", L"n"));
    EXPECT_EQ(Write(), L"<spans><n>PT0S</n></spans>");
}
