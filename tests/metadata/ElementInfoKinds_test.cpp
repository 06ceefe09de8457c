#include "quiver/metadata/ElementInfoKinds.h"

#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/MetadataFixture.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace QvTest
{
namespace
{

using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

template <class... TRecord>
struct SRecords
{
};

using PrimRecords = SRecords<CElementInfoSeqPrimMnd, CElementInfoSeqPrimOpt, CElementInfoChoicePrimOpt,
                             CElementInfoAllPrimMnd, CElementInfoAllPrimOpt>;
using EnumRecords = SRecords<CElementInfoSeqEnumMnd, CElementInfoSeqEnumOpt, CElementInfoChoiceEnumOpt,
                             CElementInfoAllEnumMnd, CElementInfoAllEnumOpt>;
using ClsOptRecords = SRecords<CElementInfoSeqClsOpt, CElementInfoChoiceClsOpt, CElementInfoAllClsOpt>;
using ClsMndRecords = SRecords<CElementInfoSeqClsMnd, CElementInfoAllClsMnd>;
using AbsClsRecords =
    SRecords<CElementInfoSeqAbsClsMnd, CElementInfoSeqAbsClsOpt, CElementInfoChoiceAbsClsOpt, CElementInfoAllAbsClsOpt>;
using UntpdRecords = SRecords<CElementInfoSeqUntpdMnd, CElementInfoSeqUntpdOpt, CElementInfoChoiceUntpdOpt,
                              CElementInfoAllUntpdMnd, CElementInfoAllUntpdOpt>;
using ColRecords =
    SRecords<CElementInfoSeqPrimCol, CElementInfoSeqEnumCol, CElementInfoSeqUntpdCol, CElementInfoChoicePrimCol,
             CElementInfoChoiceEnumCol, CElementInfoChoiceUntpdCol, CElementInfoAllPrimCol, CElementInfoAllUntpdCol>;
using ClsColRecords = SRecords<CElementInfoSeqClsCol, CElementInfoSeqAbsClsCol, CElementInfoChoiceClsCol,
                               CElementInfoChoiceAbsClsCol, CElementInfoAllClsCol, CElementInfoAllAbsClsCol>;

/// Whether all the records are made from name, namespace, index and these arguments, and from nothing less.
template <class... TArgument, class... TRecord>
constexpr bool AreMadeFrom(SRecords<TRecord...>)
{
    return (std::is_constructible_v<TRecord, const wchar_t*, const wchar_t*, int, TArgument...> && ...) &&
           (!std::is_default_constructible_v<TRecord> && ...) &&
           (sizeof...(TArgument) == 0 ||
            (!std::is_constructible_v<TRecord, const wchar_t*, const wchar_t*, int> && ...));
}

TEST(ElementInfoKinds, RecordsOfAKindHaveItsConstructor)
{
    static_assert(AreMadeFrom<ItemType, const wchar_t*, WhitespaceRule, const CPrimitiveRestrictions&>(PrimRecords()));
    static_assert(AreMadeFrom<PfnEnumToString, PfnEnumFromString>(EnumRecords()));
    static_assert(AreMadeFrom<XmlElementType, PfnCreate, int>(ClsOptRecords()));
    static_assert(AreMadeFrom<XmlElementType, PfnCreate, int, bool>(ClsMndRecords()));
    static_assert(AreMadeFrom<XmlElementType, PfnCreateFromElement>(AbsClsRecords()));
    static_assert(AreMadeFrom<XmlElementType, PfnCreateFromElement, int>(SRecords<CElementInfoAllAbsClsMnd>()));
    static_assert(AreMadeFrom<const wchar_t*, const wchar_t*>(UntpdRecords()));
    static_assert(AreMadeFrom<>(ColRecords()));
    static_assert(AreMadeFrom<XmlElementType>(ClsColRecords()));
}

/// What each of the records writes for the value of an object, which has to be one text.
template <class... TRecord, class... TArgument>
std::wstring WrittenByAll(SRecords<TRecord...>, const CRecordingObject& object, TArgument... arguments)
{
    std::wstring strFirst;
    const auto Add = [&](const CElementInfo& record)
    {
        CRecordingWriter writer;
        record.ElementToXml(CXmlSerializationContext(), &object, &writer);
        if (strFirst.empty())
            strFirst = writer.m_strCalls;
        EXPECT_TEXT(strFirst.c_str(), writer.m_strCalls) << typeid(record).name();
    };
    (Add(TRecord(L"own", Namespace, Index, arguments...)), ...);
    return strFirst;
}

TEST(ElementInfoKinds, AKindIsWrittenAlikeInEveryGroupAndCardinality)
{
    CRecordingObject object;
    object.m_value.SetI4(5);
    EXPECT_TEXT(L"<{urn:t}own\n5:5\n>\n",
                WrittenByAll(PrimRecords(), object, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                             CPrimitiveRestrictions()));
    EXPECT_TEXT(L"<{urn:t}own\n5:23\n>\n", WrittenByAll(EnumRecords(), object, &FiveToString, &FiveFromString));

    object.m_value.SetXmlObject(new CRecordingChild);
    EXPECT_TEXT(L"<{urn:t}own\nchild:23\n>\n",
                WrittenByAll(AbsClsRecords(), object, ElementType_Element, &CreateChildFromElement));
    EXPECT_TEXT(L"<{urn:t}own\nchild:23\n>\n",
                WrittenByAll(ClsMndRecords(), object, ElementType_Element, &CreateChild, ClassId, true));
    EXPECT_TEXT(L"<{urn:t}own\nchild:23\n>\n", WrittenByAll(UntpdRecords(), object, L"##any", L""));
}

TEST(ElementInfoKinds, AChildOfAChoiceAloneIsToldThatItMayBeEmpty)
{
    CRecordingObject object;
    object.m_value.SetXmlObject(new CRecordingChild);
    using OthersThanChoice = SRecords<CElementInfoSeqClsOpt, CElementInfoAllClsOpt>;
    EXPECT_TEXT(L"<{urn:t}own\nchild:23\n>\n",
                WrittenByAll(OthersThanChoice(), object, ElementType_Element, &CreateChild, ClassId));
    EXPECT_TEXT(L"<{urn:t}own\noptional choice:23\n>\n",
                WrittenByAll(SRecords<CElementInfoChoiceClsOpt>(), object, ElementType_Element, &CreateChild, ClassId));
}

TEST(ElementInfoKinds, ACopyOfARecordIsMadeFromTheSame)
{
    CRecordingObject object;
    object.m_value.SetI4(5);
    const CElementInfoSeqEnumOpt record(L"own", Namespace, Index, &FiveToString, &FiveFromString);
    CElementInfoSeqEnumOpt copy(L"other", L"urn:other", 0, nullptr, nullptr);
    copy = record;
    CRecordingWriter writer;
    EXPECT_TRUE(CElementInfoSeqEnumOpt(copy).ElementToXml(CXmlSerializationContext(), &object, &writer));
    EXPECT_TEXT(L"<{urn:t}own\n5:23\n>\n", writer.m_strCalls);
    EXPECT_EQ(object.m_nLastIndex, Index);
}

} // namespace
} // namespace QvTest
