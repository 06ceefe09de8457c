#include "quiver/values/PrimitiveRestrictions.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/values/RestrictionCheck.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace QvXmlLib9;

namespace
{

void ExpectNoFacets(const CPrimitiveRestrictions& restrictions)
{
    EXPECT_TEXT(L"", restrictions.GetPattern());
    EXPECT_EQ(restrictions.GetPatternUtf8(), "");
    EXPECT_EQ(restrictions.GetMinLength(), -1);
    EXPECT_EQ(restrictions.GetMaxLength(), -1);
    EXPECT_TEXT(L"", restrictions.GetMinInclusive());
    EXPECT_TEXT(L"", restrictions.GetMaxInclusive());
    EXPECT_TEXT(L"", restrictions.GetMinExclusive());
    EXPECT_TEXT(L"", restrictions.GetMaxExclusive());
    EXPECT_EQ(restrictions.GetLength(), -1);
    EXPECT_FALSE(restrictions.HasBounds());
}

void ExpectAllFacets(const CPrimitiveRestrictions& restrictions)
{
    EXPECT_TEXT(L"\x00E9+", restrictions.GetPattern());
    EXPECT_EQ(restrictions.GetPatternUtf8(), "\xC3\xA9+");
    EXPECT_EQ(restrictions.GetMinLength(), 1);
    EXPECT_EQ(restrictions.GetMaxLength(), 2);
    EXPECT_TEXT(L"3", restrictions.GetMinInclusive());
    EXPECT_TEXT(L"4", restrictions.GetMaxInclusive());
    EXPECT_TEXT(L"5", restrictions.GetMinExclusive());
    EXPECT_TEXT(L"6", restrictions.GetMaxExclusive());
    EXPECT_EQ(restrictions.GetLength(), 7);
    EXPECT_TRUE(restrictions.HasBounds());
}

CPrimitiveRestrictions MakeMaximum(const wchar_t* lpctMaxInclusive)
{
    return CPrimitiveRestrictions(L"", -1, -1, L"", lpctMaxInclusive, L"", L"", -1);
}

} // namespace

TEST(PrimitiveRestrictions, HasNoFacetsByDefault)
{
    ExpectNoFacets(CPrimitiveRestrictions());
}

TEST(PrimitiveRestrictions, NullTextsMeanNoFacet)
{
    ExpectNoFacets(CPrimitiveRestrictions(nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, -1));
}

TEST(PrimitiveRestrictions, CopiesTheTextsItIsGiven)
{
    wchar_t szBound[] = L"3";
    const CPrimitiveRestrictions restrictions(L"\x00E9+", 1, 2, szBound, L"4", L"5", L"6", 7);
    szBound[0] = L'9';
    ExpectAllFacets(restrictions);
}

TEST(PrimitiveRestrictions, CopiesAndAssignsEveryFacet)
{
    const CPrimitiveRestrictions restrictions(L"\x00E9+", 1, 2, L"3", L"4", L"5", L"6", 7);
    const CPrimitiveRestrictions copy(restrictions);
    ExpectAllFacets(copy);
    CPrimitiveRestrictions assigned;
    assigned = restrictions;
    ExpectAllFacets(assigned);
    CPrimitiveRestrictions& same = assigned;
    assigned = same;
    ExpectAllFacets(assigned);
    assigned = CPrimitiveRestrictions();
    ExpectNoFacets(assigned);
}

TEST(PrimitiveRestrictions, AnyBoundCounts)
{
    EXPECT_TRUE(CPrimitiveRestrictions(L"", -1, -1, L"1", L"", L"", L"", -1).HasBounds());
    EXPECT_TRUE(CPrimitiveRestrictions(L"", -1, -1, L"", L"1", L"", L"", -1).HasBounds());
    EXPECT_TRUE(CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"1", L"", -1).HasBounds());
    EXPECT_TRUE(CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"", L"1", -1).HasBounds());
    EXPECT_FALSE(CPrimitiveRestrictions(L"a", 1, 1, L"", L"", L"", L"", 1).HasBounds());
}

TEST(PrimitiveRestrictions, HasAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<CPrimitiveRestrictions>);
}

TEST(PrimitiveRestrictions, RememberedBoundsDoNotOutliveAnAssignment)
{
    CPrimitiveRestrictions restrictions = MakeMaximum(L"10");
    EXPECT_NO_THROW(CheckRestriction<ItemType_i4>(L"n", 10, restrictions));
    EXPECT_NE(restrictions.GetParsedBounds(), nullptr);
    restrictions = MakeMaximum(L"5");
    EXPECT_EQ(restrictions.GetParsedBounds(), nullptr);
    QvTest::ExpectThrows<CQvException>(L"Invalid Value for n [10]",
                                       [&] { CheckRestriction<ItemType_i4>(L"n", 10, restrictions); });
}

TEST(PrimitiveRestrictions, ACopyRemembersForItself)
{
    const CPrimitiveRestrictions restrictions = MakeMaximum(L"10");
    EXPECT_NO_THROW(CheckRestriction<ItemType_i4>(L"n", 10, restrictions));
    const CPrimitiveRestrictions copy(restrictions);
    EXPECT_EQ(copy.GetParsedBounds(), nullptr);
    EXPECT_NO_THROW(CheckRestriction<ItemType_i4>(L"n", 10, copy));
    EXPECT_NE(copy.GetParsedBounds(), restrictions.GetParsedBounds());
}

TEST(PrimitiveRestrictions, BoundsAreRememberedOnce)
{
    const CPrimitiveRestrictions restrictions = MakeMaximum(L"10");
    CheckRestriction<ItemType_i4>(L"n", 1, restrictions);
    const CParsedBounds* const pBounds = restrictions.GetParsedBounds();
    ASSERT_NE(pBounds, nullptr);
    EXPECT_EQ(pBounds->GetItemType(), ItemType_i4);
    CheckRestriction<ItemType_i4>(L"n", 2, restrictions);
    CheckRestriction<ItemType_r8>(L"n", 2.0, restrictions);
    EXPECT_EQ(restrictions.GetParsedBounds(), pBounds);
}
