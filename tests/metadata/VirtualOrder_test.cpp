// The order of the virtual operations of the metadata and the numbers of their enumerators: generated code is compiled
// elsewhere and relies on them.

#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "tests/support/VirtualSlots.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace QvTest
{
namespace
{

using namespace QvXmlLib9Data;

TEST(VirtualOrder, ElementInfoHasItsOperationsBehindTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CElementInfo::ElementToXml), SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CElementInfo::ElementFromXml), SlotsOfDestructor + 1);
    EXPECT_EQ(VirtualSlot(&CElementInfo::Validate), SlotsOfDestructor + 2);
    EXPECT_EQ(VirtualSlot(&CElementInfo::PseudoChildAttributeToXml), SlotsOfDestructor + 3);
    EXPECT_EQ(VirtualSlot(&CElementInfo::CheckRestriction), NotVirtual);
}

TEST(VirtualOrder, AttributeInfoHasItsOperationsBehindTheDestructor)
{
    EXPECT_EQ(VirtualSlot(&CAttributeInfo::AttributeToXml), SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CAttributeInfo::AttributeFromXml), SlotsOfDestructor + 1);
    EXPECT_EQ(VirtualSlot(&CAttributeInfo::Validate), SlotsOfDestructor + 2);
    EXPECT_EQ(VirtualSlot(&CAttributeInfoPrimitive::CheckRestriction), NotVirtual);
}

TEST(VirtualOrder, ParentElementInfoHasNothingVirtualButTheDestructor)
{
    static_assert(std::has_virtual_destructor_v<CParentElementInfo>);
    EXPECT_EQ(VirtualSlot(&CParentElementInfo::GetElementType), NotVirtual);
    EXPECT_EQ(VirtualSlot(&CParentElementInfo::GetElementName), NotVirtual);
}

TEST(VirtualOrder, FamiliesOverrideAndAddNothing)
{
    EXPECT_EQ(VirtualSlot(&CElementInfoSeqClsMnd::ElementToXml), SlotsOfDestructor);
    EXPECT_EQ(VirtualSlot(&CElementInfoChoiceUntpdCol::ElementFromXml), SlotsOfDestructor + 1);
    EXPECT_EQ(VirtualSlot(&CElementInfoAllClsMnd::Validate), SlotsOfDestructor + 2);
    EXPECT_EQ(VirtualSlot(&CElementInfoAllAbsClsCol::PseudoChildAttributeToXml), SlotsOfDestructor + 3);

    EXPECT_EQ(CountOfSlots<CElementInfo>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CElementInfoSeqClsMnd>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CElementInfoSeqUntpdCol>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CElementInfoChoiceAbsClsCol>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CElementInfoAllClsMnd>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CElementInfoAllAbsClsCol>(), SlotsOfDestructor + 4);
    EXPECT_EQ(CountOfSlots<CAttributeInfoPrimitive>(), SlotsOfDestructor + 3);
    EXPECT_EQ(CountOfSlots<CAttributeInfoEnum>(), SlotsOfDestructor + 3);
    EXPECT_EQ(CountOfSlots<CAttributeInfoAny>(), SlotsOfDestructor + 3);
    EXPECT_EQ(CountOfSlots<CParentElementInfo>(), SlotsOfDestructor);
}

TEST(VirtualOrder, EnumeratorsHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(ElementType_Element), 0);
    EXPECT_EQ(static_cast<int>(ElementType_Pseudo), 1);
    EXPECT_EQ(static_cast<int>(GroupType_Sequence), 0);
    EXPECT_EQ(static_cast<int>(GroupType_Choice), 1);
    EXPECT_EQ(static_cast<int>(GroupType_All), 2);
    static_assert(std::is_same_v<std::underlying_type_t<XmlElementType>, int>);
    static_assert(std::is_same_v<std::underlying_type_t<XmlElementGroupType>, int>);
}

TEST(VirtualOrder, EveryRecordDerivesFromItsGroup)
{
    static_assert(std::is_base_of_v<CElementInfoSeq, CElementInfoSeqPrimMnd>);
    static_assert(std::is_base_of_v<CElementInfoSeqCol, CElementInfoSeqAbsClsCol>);
    static_assert(std::is_base_of_v<CElementInfoChoice, CElementInfoChoiceClsOpt>);
    static_assert(std::is_base_of_v<CElementInfoChoiceCol, CElementInfoChoiceUntpdCol>);
    static_assert(std::is_base_of_v<CElementInfoAll, CElementInfoAllEnumCol>);
    static_assert(!std::is_base_of_v<CElementInfoAllCol, CElementInfoAllEnumCol>);
    static_assert(std::is_base_of_v<CElementInfoAllCol, CElementInfoAllUntpdCol>);
}

} // namespace
} // namespace QvTest
