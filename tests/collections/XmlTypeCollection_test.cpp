#include "quiver/collections/XmlTypeCollection.h"

#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/values/ItemTraits.h"
#include "tests/support/EventLog.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/ProtectedAccess.h"
#include "tests/support/RecordingWriter.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace QvXmlLib9;
using namespace QvTest;

namespace
{

using WS = CWhitespaceUtils;

struct SFacets
{
    const wchar_t* lpctPattern = L"";
    int nMaxLength = -1;
    const wchar_t* lpctMaxInclusive = L"";
};

/// A collection of `<item xmlns="urn:a">`.
template <class TCol>
CSmartPtr<TCol> Make(const SFacets& facets = {}, int nMinOccurs = 0, int nMaxOccurs = -1,
                     CWhitespaceUtils::WhitespaceRule eRule = WS::WhitespaceRule_Collapse,
                     const wchar_t* lpctFormat = nullptr)
{
    return new TCol(L"item", L"urn:a", nMinOccurs, nMaxOccurs, facets.lpctPattern, -1, facets.nMaxLength, L"",
                    facets.lpctMaxInclusive, L"", L"", -1, eRule, lpctFormat);
}

// --- What differs from member to member -----------------------------------------------------------------------------

/// One row a class: its name, three values in their lexical form, facets that reject the third of them and no other
/// (none for booleans) with the value as the message shows it, and a text that is no value (none where every text is).
template <class TCol>
struct SMember;

template <ItemType t_eItemType>
struct SMemberOf
{
    static constexpr ItemType s_eItemType = t_eItemType;
    using Traits = SItemTraits<t_eItemType>;
    using Value = typename Traits::Value;
};

template <>
struct SMember<ChexBinaryCol> : SMemberOf<ItemType_hexBinary>
{
    static constexpr const wchar_t* s_lpctClass = L"ChexBinaryCol";
    static constexpr const wchar_t* s_texts[] = {L"00", L"0AFF", L"010203"};
    static constexpr SFacets s_rejecting = {L"", 2, L""};
    static constexpr const wchar_t* s_lpctRejected = L"010203";
    static constexpr const wchar_t* s_lpctBad = L"0G";
};
template <>
struct SMember<Cbase64BinaryCol> : SMemberOf<ItemType_base64Binary>
{
    static constexpr const wchar_t* s_lpctClass = L"Cbase64BinaryCol";
    static constexpr const wchar_t* s_texts[] = {L"AA==", L"Cv8=", L"AQID"};
    static constexpr SFacets s_rejecting = {L"", 2, L""};
    static constexpr const wchar_t* s_lpctRejected = L"010203";
    static constexpr const wchar_t* s_lpctBad = nullptr;
};
template <>
struct SMember<Ci1Col> : SMemberOf<ItemType_i1>
{
    static constexpr const wchar_t* s_lpctClass = L"Ci1Col";
    static constexpr const wchar_t* s_texts[] = {L"-128", L"0", L"127"};
    static constexpr SFacets s_rejecting = {L"", -1, L"126"};
    static constexpr const wchar_t* s_lpctRejected = L"127";
    static constexpr const wchar_t* s_lpctBad = L"128";
};
template <>
struct SMember<Ci2Col> : SMemberOf<ItemType_i2>
{
    static constexpr const wchar_t* s_lpctClass = L"Ci2Col";
    static constexpr const wchar_t* s_texts[] = {L"-32768", L"0", L"32767"};
    static constexpr SFacets s_rejecting = {L"", -1, L"32766"};
    static constexpr const wchar_t* s_lpctRejected = L"32767";
    static constexpr const wchar_t* s_lpctBad = L"32768";
};
template <>
struct SMember<Ci4Col> : SMemberOf<ItemType_i4>
{
    static constexpr const wchar_t* s_lpctClass = L"Ci4Col";
    static constexpr const wchar_t* s_texts[] = {L"-2147483648", L"0", L"2147483647"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2147483646"};
    static constexpr const wchar_t* s_lpctRejected = L"2147483647";
    static constexpr const wchar_t* s_lpctBad = L"2147483648";
};
template <>
struct SMember<Ci8Col> : SMemberOf<ItemType_i8>
{
    static constexpr const wchar_t* s_lpctClass = L"Ci8Col";
    static constexpr const wchar_t* s_texts[] = {L"-9223372036854775808", L"0", L"9223372036854775807"};
    static constexpr SFacets s_rejecting = {L"", -1, L"9223372036854775806"};
    static constexpr const wchar_t* s_lpctRejected = L"9223372036854775807";
    static constexpr const wchar_t* s_lpctBad = L"9223372036854775808";
};
template <>
struct SMember<Cui1Col> : SMemberOf<ItemType_ui1>
{
    static constexpr const wchar_t* s_lpctClass = L"Cui1Col";
    static constexpr const wchar_t* s_texts[] = {L"0", L"7", L"255"};
    static constexpr SFacets s_rejecting = {L"", -1, L"254"};
    static constexpr const wchar_t* s_lpctRejected = L"255";
    static constexpr const wchar_t* s_lpctBad = L"256";
};
template <>
struct SMember<Cui2Col> : SMemberOf<ItemType_ui2>
{
    static constexpr const wchar_t* s_lpctClass = L"Cui2Col";
    static constexpr const wchar_t* s_texts[] = {L"0", L"7", L"65535"};
    static constexpr SFacets s_rejecting = {L"", -1, L"65534"};
    static constexpr const wchar_t* s_lpctRejected = L"65535";
    static constexpr const wchar_t* s_lpctBad = L"65536";
};
template <>
struct SMember<Cui4Col> : SMemberOf<ItemType_ui4>
{
    static constexpr const wchar_t* s_lpctClass = L"Cui4Col";
    static constexpr const wchar_t* s_texts[] = {L"0", L"7", L"4294967295"};
    static constexpr SFacets s_rejecting = {L"", -1, L"4294967294"};
    /// The message has a signed conversion, on purpose.
    static constexpr const wchar_t* s_lpctRejected = L"-1";
    static constexpr const wchar_t* s_lpctBad = L"4294967296";
};
template <>
struct SMember<Cui8Col> : SMemberOf<ItemType_ui8>
{
    static constexpr const wchar_t* s_lpctClass = L"Cui8Col";
    static constexpr const wchar_t* s_texts[] = {L"0", L"7", L"18446744073709551615"};
    static constexpr SFacets s_rejecting = {L"", -1, L"18446744073709551614"};
    static constexpr const wchar_t* s_lpctRejected = L"18446744073709551615";
    static constexpr const wchar_t* s_lpctBad = L"18446744073709551616";
};
template <>
struct SMember<Cr4Col> : SMemberOf<ItemType_r4>
{
    static constexpr const wchar_t* s_lpctClass = L"Cr4Col";
    static constexpr const wchar_t* s_texts[] = {L"-INF", L"0.5", L"2.25"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2"};
    static constexpr const wchar_t* s_lpctRejected = L"2.250000";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<Cr8Col> : SMemberOf<ItemType_r8>
{
    static constexpr const wchar_t* s_lpctClass = L"Cr8Col";
    static constexpr const wchar_t* s_texts[] = {L"-INF", L"0.5", L"2.25"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2"};
    static constexpr const wchar_t* s_lpctRejected = L"2.250000";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CdurationCol> : SMemberOf<ItemType_duration>
{
    static constexpr const wchar_t* s_lpctClass = L"CdurationCol";
    static constexpr const wchar_t* s_texts[] = {L"P1Y", L"PT5S", L"P2Y"};
    static constexpr SFacets s_rejecting = {L"", -1, L"P1Y"};
    static constexpr const wchar_t* s_lpctRejected = L"P2Y";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CyearMonthCol> : SMemberOf<ItemType_yearMonth>
{
    static constexpr const wchar_t* s_lpctClass = L"CyearMonthCol";
    static constexpr const wchar_t* s_texts[] = {L"2001-01", L"2002-02", L"2003-03"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2002-12"};
    static constexpr const wchar_t* s_lpctRejected = L"2003-03";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CmonthDayCol> : SMemberOf<ItemType_monthDay>
{
    static constexpr const wchar_t* s_lpctClass = L"CmonthDayCol";
    static constexpr const wchar_t* s_texts[] = {L"--01-01", L"--02-24", L"--12-25"};
    static constexpr SFacets s_rejecting = {L"", -1, L"--12-24"};
    static constexpr const wchar_t* s_lpctRejected = L"--12-25";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CyearCol> : SMemberOf<ItemType_year>
{
    static constexpr const wchar_t* s_lpctClass = L"CyearCol";
    static constexpr const wchar_t* s_texts[] = {L"2001", L"2002", L"2003"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2002"};
    static constexpr const wchar_t* s_lpctRejected = L"2003";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CmonthCol> : SMemberOf<ItemType_month>
{
    static constexpr const wchar_t* s_lpctClass = L"CmonthCol";
    static constexpr const wchar_t* s_texts[] = {L"--01", L"--02", L"--12"};
    static constexpr SFacets s_rejecting = {L"", -1, L"--11"};
    static constexpr const wchar_t* s_lpctRejected = L"12";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CdayCol> : SMemberOf<ItemType_day>
{
    static constexpr const wchar_t* s_lpctClass = L"CdayCol";
    static constexpr const wchar_t* s_texts[] = {L"---01", L"---02", L"---31"};
    static constexpr SFacets s_rejecting = {L"", -1, L"---30"};
    static constexpr const wchar_t* s_lpctRejected = L"31";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CdateCol> : SMemberOf<ItemType_date>
{
    static constexpr const wchar_t* s_lpctClass = L"CdateCol";
    static constexpr const wchar_t* s_texts[] = {L"2001-01-31", L"2002-02-28", L"2003-03-31"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2003-03-30"};
    static constexpr const wchar_t* s_lpctRejected = L"2003-03-31";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CdatetimeCol> : SMemberOf<ItemType_datetime>
{
    static constexpr const wchar_t* s_lpctClass = L"CdatetimeCol";
    static constexpr const wchar_t* s_texts[] = {L"2001-01-31T00:00:00", L"2002-02-28T12:30:45",
                                                 L"2003-03-31T23:59:59"};
    static constexpr SFacets s_rejecting = {L"", -1, L"2003-03-31T23:59:58"};
    static constexpr const wchar_t* s_lpctRejected = L"2003-03-31T23:59:59";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CtimeCol> : SMemberOf<ItemType_time>
{
    static constexpr const wchar_t* s_lpctClass = L"CtimeCol";
    static constexpr const wchar_t* s_texts[] = {L"00:00:00", L"12:30:45", L"23:59:59"};
    static constexpr SFacets s_rejecting = {L"", -1, L"23:59:58"};
    static constexpr const wchar_t* s_lpctRejected = L"23:59:59";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CstringCol> : SMemberOf<ItemType_string>
{
    static constexpr const wchar_t* s_lpctClass = L"CstringCol";
    static constexpr const wchar_t* s_texts[] = {L"", L"two words", L"a longer text"};
    static constexpr SFacets s_rejecting = {L"", 9, L""};
    static constexpr const wchar_t* s_lpctRejected = L"a longer text";
    static constexpr const wchar_t* s_lpctBad = nullptr;
};
template <>
struct SMember<CbooleanCol> : SMemberOf<ItemType_boolean>
{
    static constexpr const wchar_t* s_lpctClass = L"CbooleanCol";
    static constexpr const wchar_t* s_texts[] = {L"true", L"false", L"true"};
    static constexpr SFacets s_rejecting = {L"x", 0, L"x"};
    static constexpr const wchar_t* s_lpctRejected = nullptr;
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CdecimalCol> : SMemberOf<ItemType_decimal>
{
    static constexpr const wchar_t* s_lpctClass = L"CdecimalCol";
    static constexpr const wchar_t* s_texts[] = {L"-1.5", L"0", L"123456789012345678901234567890.25"};
    static constexpr SFacets s_rejecting = {L"", -1, L"0"};
    static constexpr const wchar_t* s_lpctRejected = L"123456789012345678901234567890.25";
    static constexpr const wchar_t* s_lpctBad = L"x";
};
template <>
struct SMember<CintegerCol> : SMemberOf<ItemType_integer>
{
    static constexpr const wchar_t* s_lpctClass = L"CintegerCol";
    static constexpr const wchar_t* s_texts[] = {L"-1", L"0", L"123456789012345678901234567890"};
    static constexpr SFacets s_rejecting = {L"", -1, L"0"};
    static constexpr const wchar_t* s_lpctRejected = L"123456789012345678901234567890";
    static constexpr const wchar_t* s_lpctBad = L"x";
};

// --- What is the same in all of them --------------------------------------------------------------------------------

template <class TCol>
struct XmlTypeCollection : ::testing::Test
{
    using Member = SMember<TCol>;
    using Value = typename Member::Value;
    static constexpr bool s_bIsDate = std::is_base_of_v<CdatetimeBaseCol, TCol>;
    static Value At(int nValue) { return Member::Traits::FromString(Member::s_texts[nValue], WS::WhitespaceRule_None); }
    static std::wstring Text(const Value& value) { return Member::Traits::ToString(value, nullptr); }

    /// The items, by position, joined by blanks; by iterators they must be the same.
    static std::wstring Texts(const TCol& col)
    {
        std::wstring strByPosition;
        for (int i = 0; i < col.GetCount(); ++i)
            strByPosition += Text(col.Item(i)) + L' ';
        std::wstring strByIterator;
        for (auto it = col.begin(); it != col.end(); ++it)
            strByIterator += Text(*it) + L' ';
        EXPECT_TEXT(strByPosition, strByIterator);
        return strByPosition;
    }

    static std::wstring Joined(std::initializer_list<int> values)
    {
        std::wstring strJoined;
        for (const int nValue : values)
            strJoined += std::wstring(Member::s_texts[nValue]) + L' ';
        return strJoined;
    }

    CSmartPtr<TCol> MakeFilled(std::initializer_list<int> values, const SFacets& facets = {})
    {
        CSmartPtr<TCol> spCol = Make<TCol>(facets);
        for (const int nValue : values)
            spCol->Add(At(nValue));
        spCol->AddEventListener(&m_log);
        return spCol;
    }

    /// The calls of a writer that gets the values of a collection.
    static std::wstring Calls(std::initializer_list<int> values)
    {
        const std::wstring strType = std::to_wstring(s_bIsDate ? ItemType_datetime : Member::s_eItemType);
        std::wstring strCalls;
        for (const int nValue : values)
            strCalls += L"<{urn:a}item\n" + std::wstring(Member::s_texts[nValue]) + L":" + strType + L"\n>\n";
        return strCalls;
    }

    CEventLog m_log;
    CXmlSerializationContext m_context;
};

using AllMembers =
    ::testing::Types<ChexBinaryCol, Cbase64BinaryCol, Ci1Col, Ci2Col, Ci4Col, Ci8Col, Cui1Col, Cui2Col, Cui4Col,
                     Cui8Col, Cr4Col, Cr8Col, CdurationCol, CyearMonthCol, CmonthDayCol, CyearCol, CmonthCol, CdayCol,
                     CdateCol, CdatetimeCol, CtimeCol, CstringCol, CbooleanCol, CdecimalCol, CintegerCol>;

struct SMemberNames
{
    template <class TCol>
    static std::string GetName(int)
    {
        const std::wstring strClass = SMember<TCol>::s_lpctClass;
        return std::string(strClass.begin(), strClass.end());
    }
};
TYPED_TEST_SUITE(XmlTypeCollection, AllMembers, SMemberNames);

TYPED_TEST(XmlTypeCollection, StartsEmptyWithTheLimitsAndNamesGiven)
{
    const CSmartPtr<TypeParam> spCol = Make<TypeParam>({}, 2, 5);
    EXPECT_EQ(0, spCol->GetCount());
    EXPECT_EQ(2, spCol->GetMinOccurs());
    EXPECT_EQ(5, spCol->GetMaxOccurs());
    EXPECT_TEXT(L"item", spCol->GetElementName());
    EXPECT_TEXT(L"urn:a", spCol->GetNamespace());
    EXPECT_EQ(spCol, spCol->GetBase());
    EXPECT_TRUE(spCol->begin() == spCol->end());
}

TYPED_TEST(XmlTypeCollection, IsCountedUnderItsOwnClassName)
{
    const std::wstring strClass = TestFixture::Member::s_lpctClass;
    const long nBefore = CountInstances(strClass).nLiving;
    const CSmartPtr<TypeParam> spCol = Make<TypeParam>();
    EXPECT_EQ(nBefore + 1, CountInstances(strClass).nLiving);
}

TYPED_TEST(XmlTypeCollection, IteratorsAreThoseOfAVector)
{
    using Vector = std::vector<typename TestFixture::Value>;
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1, 2});
    EXPECT_TRUE((std::is_same_v<typename Vector::iterator, decltype(spCol->begin())>));
    EXPECT_TRUE((std::is_same_v<typename Vector::iterator, decltype(spCol->end())>));
    EXPECT_EQ(3, spCol->end() - spCol->begin());
    *spCol->begin() = this->At(1);
    EXPECT_TEXT(this->Joined({1, 1, 2}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, AddAppendsWithEventsThatCarryTheValue)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0});
    std::wstring strCarried;
    std::vector<int> counts;
    this->m_log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        const CEventLog::SEvent& event = this->m_log.m_events.back();
        EXPECT_EQ(spCol, event.pSource);
        counts.push_back(spCol->GetCount());
        if (eType == IEventSink::MsgType_Change)
            EXPECT_EQ(nullptr, event.pData);
        else
            strCarried += this->Text(*static_cast<typename TestFixture::Value*>(event.pData)) + L' ';
    };
    spCol->Add(this->At(1));
    EXPECT_EQ("Add AddComplete Change", this->m_log.Take());
    EXPECT_TEXT(this->Joined({1, 1}), strCarried);
    EXPECT_EQ((std::vector<int>{1, 2, 2}), counts);
    EXPECT_TEXT(this->Joined({0, 1}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, AddAtInsertsAtEachPosition)
{
    const std::vector<std::wstring> expected = {this->Joined({2, 0, 1}), this->Joined({0, 2, 1}),
                                                this->Joined({0, 1, 2})};
    for (int nIndex = 0; nIndex < 3; ++nIndex)
    {
        const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
        spCol->AddAt(nIndex, this->At(2));
        EXPECT_EQ("Add AddComplete Change", this->m_log.Take());
        EXPECT_TEXT(expected[static_cast<std::size_t>(nIndex)], this->Texts(*spCol));
    }
}

TYPED_TEST(XmlTypeCollection, AddAtABadPositionFailsAfterTheAnnouncement)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    for (const int nIndex : {-1, 3, INT_MIN, INT_MAX})
    {
        ExpectThrows<CQvInvalidParamException>(L"Index out of range", [&] { spCol->AddAt(nIndex, this->At(0)); });
        EXPECT_EQ("Add", this->m_log.Take());
    }
    EXPECT_TEXT(this->Joined({0, 1}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, AValueThatBreaksAFacetIsNotAdded)
{
    using Row = typename TestFixture::Member;
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1}, Row::s_rejecting);
    if (Row::s_lpctRejected == nullptr)
    {
        spCol->Add(this->At(2));
        EXPECT_TEXT(this->Joined({0, 1, 2}), this->Texts(*spCol));
        return;
    }
    const std::wstring strMessage = L"Invalid Value for item [" + std::wstring(Row::s_lpctRejected) + L"]";
    ExpectThrows<CQvException>(strMessage, [&] { spCol->Add(this->At(2)); });
    EXPECT_EQ(TestFixture::s_bIsDate ? "" : "Add", this->m_log.Take());
    ExpectThrows<CQvException>(strMessage, [&] { spCol->AddAt(0, this->At(2)); });
    EXPECT_EQ(TestFixture::s_bIsDate ? "" : "Add", this->m_log.Take());
    EXPECT_TEXT(this->Joined({0, 1}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, ABadPositionIsReportedBeforeABrokenFacetExceptByDates)
{
    using Row = typename TestFixture::Member;
    if (Row::s_lpctRejected == nullptr)
        return;
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({}, Row::s_rejecting);
    if (TestFixture::s_bIsDate)
        ExpectThrows<CQvException>(L"Invalid Value for item [" + std::wstring(Row::s_lpctRejected) + L"]",
                                   [&] { spCol->AddAt(7, this->At(2)); });
    else
        ExpectThrows<CQvInvalidParamException>(L"Index out of range", [&] { spCol->AddAt(7, this->At(2)); });
}

TYPED_TEST(XmlTypeCollection, ItemGivesACopyOrReportsTheCountAsTheUpperEnd)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    EXPECT_TEXT(TestFixture::Member::s_texts[1], this->Text(spCol->Item(1)));
    ExpectThrows<CQvInvalidParamException>(L"Index 2 is out of range, use 0 - 2", [&] { spCol->Item(2); });
    ExpectThrows<CQvInvalidParamException>(L"Index -1 is out of range, use 0 - 2", [&] { spCol->Item(-1); });
    const CSmartPtr<TypeParam> spEmpty = Make<TypeParam>();
    ExpectThrows<CQvInvalidParamException>(L"Index 0 is out of range, use 0 - 0", [&] { spEmpty->Item(0); });
    EXPECT_EQ("", this->m_log.Take());
}

TYPED_TEST(XmlTypeCollection, RemoveTellsTheTrueIndex)
{
    const std::vector<std::wstring> expected = {this->Joined({1, 2}), this->Joined({0, 2}), this->Joined({0, 1})};
    for (int nIndex = 0; nIndex < 3; ++nIndex)
    {
        const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1, 2});
        std::vector<int> counts;
        this->m_log.m_pfnReact = [&](IEventSink::MsgType)
        {
            counts.push_back(spCol->GetCount());
        };
        spCol->Remove(nIndex);
        const std::string strIndex = std::to_string(nIndex);
        EXPECT_EQ("Remove" + strIndex + " RemoveComplete" + strIndex + " Change", this->m_log.Take());
        EXPECT_EQ((std::vector<int>{3, 2, 2}), counts);
        EXPECT_TEXT(expected[static_cast<std::size_t>(nIndex)], this->Texts(*spCol));
        this->m_log.m_pfnReact = nullptr;
    }
}

TYPED_TEST(XmlTypeCollection, RemoveAtABadPositionFailsAfterTheAnnouncement)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0});
    ExpectThrows<CQvInvalidParamException>(L"Index 1 is out of range, use 0 - 1", [&] { spCol->Remove(1); });
    EXPECT_EQ("Remove1", this->m_log.Take());
    ExpectThrows<CQvInvalidParamException>(L"Index -1 is out of range, use 0 - 1", [&] { spCol->Remove(-1); });
    EXPECT_EQ("Remove", this->m_log.Take());
    EXPECT_TEXT(this->Joined({0}), this->Texts(*spCol));

    const CSmartPtr<TypeParam> spEmpty = this->MakeFilled({});
    ExpectThrows<CQvInvalidParamException>(L"Index 0 is out of range, use 0 - 0", [&] { spEmpty->Remove(0); });
    EXPECT_EQ("Remove0", this->m_log.Take());
}

TYPED_TEST(XmlTypeCollection, RemovesFromTheFrontAndAddsAgainInAnyMixture)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1, 2, 0, 1, 2});
    spCol->Remove(0);
    EXPECT_TEXT(this->Joined({1, 2, 0, 1, 2}), this->Texts(*spCol));
    spCol->AddAt(0, this->At(0));
    spCol->Remove(0);
    spCol->Remove(0);
    EXPECT_TEXT(this->Joined({2, 0, 1, 2}), this->Texts(*spCol));
    spCol->AddAt(1, this->At(1));
    spCol->Add(this->At(0));
    EXPECT_TEXT(this->Joined({2, 1, 0, 1, 2, 0}), this->Texts(*spCol));
    spCol->Remove(4);
    for (int i = 0; i < 4; ++i)
        spCol->Remove(0);
    EXPECT_TEXT(this->Joined({0}), this->Texts(*spCol));
    EXPECT_EQ(1, spCol->end() - spCol->begin());
    spCol->Remove(0);
    EXPECT_EQ(0, spCol->GetCount());
}

TYPED_TEST(XmlTypeCollection, ClearAnnouncesEveryItemAtThePositionZero)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    spCol->Clear();
    EXPECT_EQ("Remove0 RemoveComplete0 Change Remove0 RemoveComplete0 Change", this->m_log.Take());
    EXPECT_EQ(0, spCol->GetCount());
}

TYPED_TEST(XmlTypeCollection, DestructionFiresNoEvents)
{
    CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    spCol = nullptr;
    EXPECT_EQ("", this->m_log.Take());
}

TYPED_TEST(XmlTypeCollection, AListenerCanRefuseAChange)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    this->m_log.m_pfnReact = [](IEventSink::MsgType)
    {
        throw CQvInvalidStateException(L"no");
    };
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { spCol->Add(this->At(2)); });
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { spCol->Remove(0); });
    ExpectThrows<CQvInvalidStateException>(L"no", [&] { spCol->Clear(); });
    EXPECT_EQ("Add Remove0 Remove0", this->m_log.Take());
    EXPECT_TEXT(this->Joined({0, 1}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, WhatWasReportedCompleteStaysWhenAListenerThrows)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    this->m_log.m_pfnReact = [](IEventSink::MsgType eType)
    {
        if (eType == IEventSink::MsgType_AddComplete || eType == IEventSink::MsgType_RemoveComplete)
            throw CQvInvalidStateException(L"too late");
    };
    ExpectThrows<CQvInvalidStateException>(L"too late", [&] { spCol->Add(this->At(2)); });
    EXPECT_TEXT(this->Joined({0, 1, 2}), this->Texts(*spCol));
    ExpectThrows<CQvInvalidStateException>(L"too late", [&] { spCol->Remove(0); });
    EXPECT_TEXT(this->Joined({1, 2}), this->Texts(*spCol));
    EXPECT_EQ("Add AddComplete Remove0 RemoveComplete0", this->m_log.Take());
}

TYPED_TEST(XmlTypeCollection, APositionIsTestedAfterListenersChangedTheCollection)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    const auto ClearOnce = [&](IEventSink::MsgType)
    {
        this->m_log.m_pfnReact = nullptr;
        spCol->Clear();
    };
    this->m_log.m_pfnReact = ClearOnce;
    ExpectThrows<CQvInvalidParamException>(L"Index out of range", [&] { spCol->AddAt(2, this->At(2)); });
    EXPECT_EQ(0, spCol->GetCount());
    spCol->Add(this->At(0));
    this->m_log.m_pfnReact = ClearOnce;
    ExpectThrows<CQvInvalidParamException>(L"Index 0 is out of range, use 0 - 0", [&] { spCol->Remove(0); });
}

TYPED_TEST(XmlTypeCollection, AnItemOfTheCollectionCanBeAddedToIt)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1});
    std::wstring strCarried;
    this->m_log.m_pfnReact = [&](IEventSink::MsgType eType)
    {
        if (eType != IEventSink::MsgType_Change)
            strCarried +=
                this->Text(*static_cast<typename TestFixture::Value*>(this->m_log.m_events.back().pData)) + L' ';
    };
    spCol->AddAt(0, *(spCol->begin() + 1));
    spCol->AddAt(1, *(spCol->begin() + 1));
    EXPECT_TEXT(this->Joined({1, 0, 0, 1}), this->Texts(*spCol));
    EXPECT_TEXT(this->Joined({1, 1, 0, 0}), strCarried);
}

TYPED_TEST(XmlTypeCollection, MoreItemsThanAllowedFailAtTheValidationOnly)
{
    const CSmartPtr<TypeParam> spCol = Make<TypeParam>({}, 0, 2);
    for (int i = 0; i < 3; ++i)
        spCol->Add(this->At(i));
    EXPECT_EQ(3, spCol->GetCount());
    EXPECT_FALSE(spCol->IsValidCount(this->m_context));
    ExpectThrows<CQvValidationException>(L"The Maximum number of [item] elements allowed in this collection is 2",
                                         [&] { spCol->ValidateCount(this->m_context); });
}

// --- Writing --------------------------------------------------------------------------------------------------------

TYPED_TEST(XmlTypeCollection, WritesAnElementForEachItemInItsOwnNamespace)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0, 1, 2, 0});
    spCol->Remove(0);
    CRecordingWriter writer;
    CProtectedAccess::Write(spCol, writer, this->m_context, L"urn:other");
    EXPECT_TEXT(this->Calls({1, 2, 0}), writer.m_strCalls);
}

TYPED_TEST(XmlTypeCollection, WritesNothingWhenTheCountIsWrong)
{
    const CSmartPtr<TypeParam> spMany = Make<TypeParam>({}, 0, 1);
    spMany->Add(this->At(0));
    spMany->Add(this->At(1));
    const CSmartPtr<TypeParam> spNone = Make<TypeParam>({}, 1, -1);
    CRecordingWriter writer;
    ExpectThrows<CQvValidationException>(L"The Maximum number of [item] elements allowed in this collection is 1",
                                         [&] { CProtectedAccess::Write(spMany, writer, this->m_context); });
    ExpectThrows<CQvValidationException>(L"The Minimum number of [item] elements allowed in this collection is 1",
                                         [&] { CProtectedAccess::Write(spNone, writer, this->m_context); });
    EXPECT_TEXT(L"", writer.m_strCalls);

    this->m_context.SetIgnoreInvalidCollectionCounts(true);
    CProtectedAccess::Write(spNone, writer, this->m_context);
    EXPECT_TEXT(L"", writer.m_strCalls);
    CProtectedAccess::Write(spMany, writer, this->m_context);
    EXPECT_TEXT(this->Calls({0, 1}), writer.m_strCalls);
}

TYPED_TEST(XmlTypeCollection, HasNoAttributesToWrite)
{
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({0});
    CRecordingWriter writer;
    CProtectedAccess::WriteAttributes(spCol, writer, this->m_context);
    EXPECT_TEXT(L"", writer.m_strCalls);
}

// --- Reading --------------------------------------------------------------------------------------------------------

std::wstring ItemElement(const wchar_t* lpctText)
{
    return L"<item>" + std::wstring(lpctText) + L"</item>";
}

TYPED_TEST(XmlTypeCollection, ReadsUpToTheFirstElementOfAnotherName)
{
    const auto& texts = TestFixture::Member::s_texts;
    CXmlDocument document;
    document.LoadXml((L"<r xmlns=\"urn:a\">" + ItemElement(texts[0]) + ItemElement(texts[1]) + L"<other/>" +
                      ItemElement(texts[2]) + L"</r>")
                         .c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({2});
    CXmlElement* const pNext = CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context);
    ASSERT_NE(nullptr, pNext);
    EXPECT_TEXT(L"other", pNext->GetLocalName());
    EXPECT_TEXT(this->Joined({2, 0, 1}), this->Texts(*spCol));
    EXPECT_EQ("Add AddComplete Change Add AddComplete Change", this->m_log.Take());

    EXPECT_EQ(pNext, CProtectedAccess::Read(spCol, pRoot, pNext, this->m_context));
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spCol, pRoot, pNext->GetNextSiblingElement(), this->m_context));
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spCol, pRoot, nullptr, this->m_context));
    EXPECT_TEXT(this->Joined({2, 0, 1, 2}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, ReadsOtherNamespacesOnlyWhereNamespacesAreIgnored)
{
    const auto& texts = TestFixture::Member::s_texts;
    CXmlDocument document;
    document.LoadXml((L"<r xmlns=\"urn:b\">" + ItemElement(texts[0]) + L"</r>").c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({});
    EXPECT_EQ(pRoot->GetFirstElement(),
              CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context));
    EXPECT_EQ(0, spCol->GetCount());
    this->m_context.SetIgnoreNamespaces(true);
    EXPECT_EQ(nullptr, CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context));
    EXPECT_TEXT(this->Joined({0}), this->Texts(*spCol));
}

TYPED_TEST(XmlTypeCollection, ReadingDoesNotTestTheCount)
{
    CXmlDocument document;
    document.LoadXml((L"<r xmlns=\"urn:a\">" + ItemElement(TestFixture::Member::s_texts[0]) + L"</r>").c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<TypeParam> spCol = Make<TypeParam>({}, 0, 0);
    EXPECT_NO_THROW(CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context));
    EXPECT_EQ(1, spCol->GetCount());
}

TYPED_TEST(XmlTypeCollection, ReadingTestsTheFacets)
{
    using Row = typename TestFixture::Member;
    if (Row::s_lpctRejected == nullptr)
        return;
    CXmlDocument document;
    document.LoadXml((L"<r xmlns=\"urn:a\">" + ItemElement(Row::s_texts[0]) + ItemElement(Row::s_texts[2]) +
                      ItemElement(Row::s_texts[1]) + L"</r>")
                         .c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({}, Row::s_rejecting);
    ExpectThrows<CQvException>(L"Invalid Value for item [" + std::wstring(Row::s_lpctRejected) + L"]", [&]
                               { CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context); });
    EXPECT_TEXT(this->Joined({0}), this->Texts(*spCol)) << "what was read ahead of the failure stays";
}

TYPED_TEST(XmlTypeCollection, ReadingATextThatIsNoValueThrowsBeforeAnyEvent)
{
    using Row = typename TestFixture::Member;
    if (Row::s_lpctBad == nullptr)
        return;
    CXmlDocument document;
    document.LoadXml((L"<r xmlns=\"urn:a\">" + ItemElement(Row::s_lpctBad) + L"</r>").c_str());
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<TypeParam> spCol = this->MakeFilled({});
    EXPECT_THROW(CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), this->m_context), CQvException);
    EXPECT_EQ("", this->m_log.Take());
    EXPECT_EQ(0, spCol->GetCount());
}

// --- Members on their own -------------------------------------------------------------------------------------------

TEST(XmlTypeCollectionMembers, EventsCarryTheAddressOfAnArgumentPassedByReference)
{
    const CSmartPtr<CdecimalCol> spDecimals = Make<CdecimalCol>();
    const CSmartPtr<CdateCol> spDates = Make<CdateCol>();
    CEventLog log;
    spDecimals->AddEventListener(&log);
    spDates->AddEventListener(&log);
    const CDecimal decimal(L"1.5");
    const CDateTime date = CConversions::dateFromString(L"2001-01-01", WS::WhitespaceRule_None);
    spDecimals->Add(decimal);
    spDates->AddAt(0, date);
    ASSERT_EQ(6u, log.m_events.size());
    EXPECT_EQ(&decimal, log.m_events[0].pData);
    EXPECT_EQ(&decimal, log.m_events[1].pData);
    EXPECT_EQ(&date, log.m_events[3].pData);
    EXPECT_EQ(&date, log.m_events[4].pData);
}

TEST(XmlTypeCollectionMembers, BooleansAreKeptAsBits)
{
    EXPECT_TRUE((std::is_same_v<std::vector<bool>::iterator, decltype(std::declval<CbooleanCol&>().begin())>));
}

TEST(XmlTypeCollectionMembers, The32BitKindsKeep32Bits)
{
    if constexpr (sizeof(long) > 4)
    {
        const CSmartPtr<Ci4Col> spSigned = Make<Ci4Col>();
        const CSmartPtr<Cui4Col> spUnsigned = Make<Cui4Col>();
        spSigned->Add(static_cast<long>(0x100000005LL));
        spSigned->Add(static_cast<long>(0x80000000LL));
        spUnsigned->Add(static_cast<unsigned long>(0x1FFFFFFFFULL));
        EXPECT_EQ(5, spSigned->Item(0));
        EXPECT_EQ(-2147483647L - 1, spSigned->Item(1));
        EXPECT_EQ(4294967295UL, spUnsigned->Item(0));
    }
}

TEST(XmlTypeCollectionMembers, ANumberIsWrittenWithTheFormat)
{
    CRecordingWriter writer;
    const CXmlSerializationContext context;
    const CSmartPtr<Cr4Col> spFloats = Make<Cr4Col>({}, 0, -1, WS::WhitespaceRule_Collapse, L"%.1f");
    spFloats->Add(1.25F);
    CProtectedAccess::Write(spFloats, writer, context);
    const CSmartPtr<Cr8Col> spDoubles = Make<Cr8Col>({}, 0, -1, WS::WhitespaceRule_Collapse, L"%.3e");
    spDoubles->Add(1.25);
    CProtectedAccess::Write(spDoubles, writer, context);
    const CSmartPtr<CdecimalCol> spDecimals = Make<CdecimalCol>({}, 0, -1, WS::WhitespaceRule_Collapse, L"3");
    spDecimals->Add(CDecimal(L"1.25"));
    CProtectedAccess::Write(spDecimals, writer, context);
    const CSmartPtr<Ci4Col> spNumbers = Make<Ci4Col>({}, 0, -1, WS::WhitespaceRule_Collapse, L"%.3e");
    spNumbers->Add(7);
    CProtectedAccess::Write(spNumbers, writer, context);
    EXPECT_TEXT(L"<{urn:a}item\n1.2:11\n>\n<{urn:a}item\n1.250e+00:12\n>\n<{urn:a}item\n1.250:25\n>\n"
                L"<{urn:a}item\n7:5\n>\n",
                writer.m_strCalls);
}

TEST(XmlTypeCollectionMembers, NotANumberMeetsNoBound)
{
    const CSmartPtr<Cr8Col> spBounded = Make<Cr8Col>({L"", -1, L"1"});
    EXPECT_THROW(spBounded->Add(std::numeric_limits<double>::quiet_NaN()), CQvException);
    const CSmartPtr<Cr8Col> spFree = Make<Cr8Col>();
    spFree->Add(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(std::isnan(spFree->Item(0)));
}

TEST(XmlTypeCollectionMembers, TheWhitespaceRuleAppliesToWhatIsRead)
{
    const struct
    {
        CWhitespaceUtils::WhitespaceRule eRule;
        const wchar_t* lpctRead;
    } rows[] = {
        {WS::WhitespaceRule_None, L" a\t b "},
        {WS::WhitespaceRule_Replace, L" a  b "},
        {WS::WhitespaceRule_Collapse, L"a b"},
    };
    CXmlDocument document;
    document.LoadXml(L"<r xmlns='urn:a'><item> a\t b </item></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    for (const auto& row : rows)
    {
        const CSmartPtr<CstringCol> spCol = Make<CstringCol>({}, 0, -1, row.eRule);
        CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), CXmlSerializationContext());
        EXPECT_TEXT(row.lpctRead, spCol->Item(0));
        spCol->Add(L" a\t b ");
        EXPECT_TEXT(L" a\t b ", spCol->Item(1));
    }
}

TEST(XmlTypeCollectionMembers, AStringIsTestedAgainstThePattern)
{
    const CSmartPtr<CstringCol> spCol = Make<CstringCol>({L"[a-z]+", -1, L""});
    spCol->Add(L"abc");
    ExpectThrows<CQvException>(L"Invalid Value for item [ABC]", [&] { spCol->Add(L"ABC"); });
    EXPECT_EQ(1, spCol->GetCount());
}

TEST(XmlTypeCollectionMembers, ClearCallsTheVirtualRemove)
{
    class CCounting : public Ci4Col
    {
    public:
        CCounting()
            : CInstanceMonitor(L"CCounting")
            , Ci4Col(L"item", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, WS::WhitespaceRule_None, nullptr)
        {
        }
        void Remove(int nIndex) override
        {
            m_removed.push_back(nIndex);
            Ci4Col::Remove(nIndex);
        }
        std::vector<int> m_removed;
    };
    CCounting numbers;
    numbers.Add(1);
    numbers.Add(2);
    numbers.Clear();
    EXPECT_EQ((std::vector<int>{0, 0}), numbers.m_removed);
}

template <class TCol, class TItem>
void ExpectLinear(const TItem& item)
{
    constexpr int nItems = 1000000;
    const CSmartPtr<TCol> spCol = Make<TCol>();
    for (int i = 0; i < nItems; ++i)
        spCol->Add(item);
    int nSeen = 0;
    for (int i = 0; i < spCol->GetCount(); ++i)
        nSeen += spCol->Item(i) == item ? 1 : 0;
    EXPECT_EQ(nItems, nSeen);
    for (int i = 0; i < nItems / 2; ++i)
        spCol->Remove(0);
    EXPECT_EQ(nItems / 2, spCol->GetCount());
    spCol->Clear();
    EXPECT_EQ(0, spCol->GetCount());
}

TEST(XmlTypeCollectionMembers, AMillionItemsTakeLinearTime)
{
    ExpectLinear<Ci4Col>(7L);
    ExpectLinear<CbooleanCol>(true);
    ExpectLinear<CstringCol>(std::wstring(L"text"));
}

// --- Dates ----------------------------------------------------------------------------------------------------------

/// A value of each kind.
std::vector<CDateTime> OneOfEachKind()
{
    std::vector<CDateTime> values = {CConversions::datetimeFromString(L"2001-01-01T00:00:00", WS::WhitespaceRule_None),
                                     CConversions::timeFromString(L"12:00:00", WS::WhitespaceRule_None), CDateTime()};
    for (const wchar_t* lpctText : {L"2001-01-01", L"2001-01", L"2001", L"---01", L"--01", L"--01-01"})
        values.push_back(CConversions::dateFromString(lpctText, WS::WhitespaceRule_None));
    return values;
}

template <class TCol>
struct XmlDateCollection : ::testing::Test
{
    CEventLog m_log;
};
using DateMembers = ::testing::Types<CdatetimeCol, CdateCol, CyearMonthCol, CtimeCol, CmonthDayCol>;
TYPED_TEST_SUITE(XmlDateCollection, DateMembers, SMemberNames);

TYPED_TEST(XmlDateCollection, TakesItsOwnKindAndRejectsTheOthersBeforeAnyEvent)
{
    static const std::map<std::wstring, std::pair<CDateTime::DTType, std::wstring>> kinds = {
        {L"CdatetimeCol", {CDateTime::dt_dateTime, L"dt_dateTime"}},
        {L"CdateCol", {CDateTime::dt_date, L"dt_date"}},
        {L"CyearMonthCol", {CDateTime::dt_gYearMonth, L"dt_gYearMonth"}},
        {L"CtimeCol", {CDateTime::dt_time, L"dt_time"}},
        {L"CmonthDayCol", {CDateTime::dt_gMonthDay, L"dt_gMonthDay"}},
    };
    const auto& kind = kinds.at(SMember<TypeParam>::s_lpctClass);
    const CSmartPtr<TypeParam> spCol = Make<TypeParam>();
    CdatetimeBaseCol& col = *spCol;
    col.AddEventListener(&this->m_log);
    for (const CDateTime& value : OneOfEachKind())
    {
        SCOPED_TRACE(value.GetType());
        if (value.GetType() == kind.first)
        {
            col.Add(value);
            col.AddAt(0, value);
            EXPECT_EQ("Add AddComplete Change Add AddComplete Change", this->m_log.Take());
            EXPECT_EQ(2, col.GetCount());
            EXPECT_EQ(kind.first, col.Item(0).GetType());
            col.Clear();
            this->m_log.Take();
            continue;
        }
        const std::wstring strMessage = L"Dates added to this collection must be of type " + kind.second;
        ExpectThrows<CQvInvalidParamException>(strMessage, [&] { col.Add(value); });
        ExpectThrows<CQvInvalidParamException>(strMessage, [&] { col.AddAt(9, value); });
        EXPECT_EQ("", this->m_log.Take());
        EXPECT_EQ(0, col.GetCount());
    }
}

TYPED_TEST(XmlDateCollection, AddGoesThroughTheVirtualAddAt)
{
    class CDerived : public TypeParam
    {
    public:
        CDerived()
            : CInstanceMonitor(L"CDerived")
            , TypeParam(L"item", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, WS::WhitespaceRule_None, nullptr)
        {
        }
        void AddAt(int nIndex, const CDateTime& value) override
        {
            m_indexes.push_back(nIndex);
            this->BaseAddAt(nIndex, value);
        }
        std::wstring ItemToString(const CDateTime&) const override { return L"shown"; }
        std::vector<int> m_indexes;
    };
    CDerived dates;
    dates.Add(CDateTime());
    dates.Add(CDateTime());
    EXPECT_EQ((std::vector<int>{0, 1}), dates.m_indexes);
    CRecordingWriter writer;
    CProtectedAccess::Write(&dates, writer, CXmlSerializationContext());
    EXPECT_TEXT(L"<{}item\nshown:20\n>\n<{}item\nshown:20\n>\n", writer.m_strCalls);
}

TEST(XmlDateCollectionRead, ATextOfAnotherDateKindIsRejectedByTheKind)
{
    CXmlDocument document;
    document.LoadXml(L"<r xmlns='urn:a'><item>2001</item></r>");
    CXmlElement* const pRoot = document.GetDocumentElement();
    const CSmartPtr<CdateCol> spCol = Make<CdateCol>();
    ExpectThrows<CQvInvalidParamException>(
        L"Dates added to this collection must be of type dt_date",
        [&] { CProtectedAccess::Read(spCol, pRoot, pRoot->GetFirstElement(), CXmlSerializationContext()); });
}

} // namespace
