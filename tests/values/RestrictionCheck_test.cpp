#include "quiver/values/RestrictionCheck.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

using namespace QvXmlLib9;

namespace
{

/// The facets of a type; what a test does not name is not set.
struct SFacets
{
    const wchar_t* lpctPattern = L"";
    int nMinLength = -1;
    int nMaxLength = -1;
    const wchar_t* lpctMinInclusive = L"";
    const wchar_t* lpctMaxInclusive = L"";
    const wchar_t* lpctMinExclusive = L"";
    const wchar_t* lpctMaxExclusive = L"";
    int nLength = -1;

    CPrimitiveRestrictions Make() const
    {
        return CPrimitiveRestrictions(lpctPattern, nMinLength, nMaxLength, lpctMinInclusive, lpctMaxInclusive,
                                      lpctMinExclusive, lpctMaxExclusive, nLength);
    }
};

SFacets Pattern(const wchar_t* lpctPattern)
{
    SFacets facets;
    facets.lpctPattern = lpctPattern;
    return facets;
}

SFacets Lengths(int nMin, int nMax, int nExact)
{
    SFacets facets;
    facets.nMinLength = nMin;
    facets.nMaxLength = nMax;
    facets.nLength = nExact;
    return facets;
}

/// The same bound as each of the four; `nBound` counts in the order of the facets.
SFacets Bound(int nBound, const wchar_t* lpctBound)
{
    SFacets facets;
    const wchar_t* SFacets::*const members[] = {&SFacets::lpctMinInclusive, &SFacets::lpctMaxInclusive,
                                                &SFacets::lpctMinExclusive, &SFacets::lpctMaxExclusive};
    facets.*members[nBound] = lpctBound;
    return facets;
}

QvVariant Read(ItemType eType, const wchar_t* lpctText)
{
    QvVariant value;
    value.FromString(lpctText, eType, CWhitespaceUtils::WhitespaceRule_None);
    return value;
}

void Check(ItemType eType, const wchar_t* lpctText, const CPrimitiveRestrictions& restrictions)
{
    CheckRestriction(L"item", Read(eType, lpctText), eType, restrictions);
}

bool Passes(ItemType eType, const wchar_t* lpctText, const SFacets& facets)
{
    const CPrimitiveRestrictions restrictions = facets.Make();
    bool bPasses[2] = {};
    // Once with the bounds as text, and once as they were remembered.
    for (bool& bPass : bPasses)
    {
        try
        {
            Check(eType, lpctText, restrictions);
            bPass = true;
        }
        catch (const CQvException&)
        {
            bPass = false;
        }
    }
    EXPECT_EQ(bPasses[0], bPasses[1]);
    return bPasses[0];
}

void ExpectFailure(ItemType eType, const wchar_t* lpctText, const SFacets& facets, const std::wstring& strMessage)
{
    const CPrimitiveRestrictions restrictions = facets.Make();
    QvTest::ExpectThrows<CQvException>(strMessage, [&] { Check(eType, lpctText, restrictions); });
}

/// A value below, at and above a bound of one kind, and how the value above shows in a message.
struct SBoundedKind
{
    ItemType eType;
    const wchar_t* lpctBelow;
    const wchar_t* lpctAt;
    const wchar_t* lpctAbove;
    const wchar_t* lpctShown;
};

const std::vector<SBoundedKind>& BoundedKinds()
{
    static const std::vector<SBoundedKind> s_kinds = {
        {ItemType_i1, L"-2", L"-1", L"1", L"1"},
        {ItemType_i2, L"-300", L"-299", L"300", L"300"},
        {ItemType_i4, L"-70000", L"5", L"70000", L"70000"},
        {ItemType_i8, L"-5000000000", L"0", L"5000000000", L"5000000000"},
        {ItemType_ui1, L"1", L"128", L"255", L"255"},
        {ItemType_ui2, L"1", L"40000", L"65535", L"65535"},
        {ItemType_ui4, L"1", L"3000000000", L"4294967295", L"-1"},
        {ItemType_ui8, L"1", L"10000000000000000000", L"18446744073709551615", L"18446744073709551615"},
        {ItemType_r4, L"-1.5", L"0", L"0.1", L"0.100000"},
        {ItemType_r8, L"-1.5", L"0", L"2.5", L"2.500000"},
        {ItemType_duration, L"P1D", L"P2D", L"P3D", L"P3D"},
        {ItemType_yearMonth, L"2000-05", L"2001-05", L"2002-05", L"2002-05"},
        {ItemType_monthDay, L"--05-01", L"--05-02", L"--05-03", L"--05-03"},
        {ItemType_year, L"2000", L"2001", L"2002", L"2002"},
        {ItemType_month, L"--04", L"--05", L"--06", L"6"},
        {ItemType_day, L"---04", L"---05", L"---06", L"6"},
        {ItemType_date, L"2001-05-01", L"2001-05-02", L"2001-05-03", L"2001-05-03"},
        {ItemType_datetime, L"2001-05-01T10:00:00", L"2001-05-01T10:00:01", L"2001-05-01T10:00:02",
         L"2001-05-01T10:00:02"},
        {ItemType_time, L"10:00:00", L"10:00:01", L"10:00:02", L"10:00:02"},
        {ItemType_decimal, L"-1.5", L"0.05", L"1.50", L"1.5"},
        {ItemType_integer, L"-99999999999999999999", L"0", L"99999999999999999999", L"99999999999999999999"},
    };
    return s_kinds;
}

} // namespace

// --- Bounds -----------------------------------------------------------------------------------------------------

class RestrictionCheckBounded : public ::testing::TestWithParam<SBoundedKind>
{
};

TEST_P(RestrictionCheckBounded, MinInclusiveAllowsTheBound)
{
    const SBoundedKind& kind = GetParam();
    const SFacets facets = Bound(0, kind.lpctAt);
    EXPECT_FALSE(Passes(kind.eType, kind.lpctBelow, facets));
    EXPECT_TRUE(Passes(kind.eType, kind.lpctAt, facets));
    EXPECT_TRUE(Passes(kind.eType, kind.lpctAbove, facets));
}

TEST_P(RestrictionCheckBounded, MaxInclusiveAllowsTheBound)
{
    const SBoundedKind& kind = GetParam();
    const SFacets facets = Bound(1, kind.lpctAt);
    EXPECT_TRUE(Passes(kind.eType, kind.lpctBelow, facets));
    EXPECT_TRUE(Passes(kind.eType, kind.lpctAt, facets));
    EXPECT_FALSE(Passes(kind.eType, kind.lpctAbove, facets));
}

TEST_P(RestrictionCheckBounded, MinExclusiveRefusesTheBound)
{
    const SBoundedKind& kind = GetParam();
    const SFacets facets = Bound(2, kind.lpctAt);
    EXPECT_FALSE(Passes(kind.eType, kind.lpctBelow, facets));
    EXPECT_FALSE(Passes(kind.eType, kind.lpctAt, facets));
    EXPECT_TRUE(Passes(kind.eType, kind.lpctAbove, facets));
}

TEST_P(RestrictionCheckBounded, MaxExclusiveRefusesTheBound)
{
    const SBoundedKind& kind = GetParam();
    const SFacets facets = Bound(3, kind.lpctAt);
    EXPECT_TRUE(Passes(kind.eType, kind.lpctBelow, facets));
    EXPECT_FALSE(Passes(kind.eType, kind.lpctAt, facets));
    EXPECT_FALSE(Passes(kind.eType, kind.lpctAbove, facets));
}

TEST_P(RestrictionCheckBounded, FailureShowsNameAndValue)
{
    const SBoundedKind& kind = GetParam();
    ExpectFailure(kind.eType, kind.lpctAbove, Bound(1, kind.lpctAt),
                  std::wstring(L"Invalid Value for item [") + kind.lpctShown + L"]");
}

TEST_P(RestrictionCheckBounded, EmptyBoundsAreNone)
{
    for (const wchar_t* const lpctText : {GetParam().lpctBelow, GetParam().lpctAt, GetParam().lpctAbove})
        EXPECT_TRUE(Passes(GetParam().eType, lpctText, SFacets()));
}

TEST_P(RestrictionCheckBounded, BoundsAreCollapsed)
{
    const SBoundedKind& kind = GetParam();
    const std::wstring strBound = L" \t" + std::wstring(kind.lpctAt) + L"\n";
    const SFacets facets = Bound(0, strBound.c_str());
    EXPECT_FALSE(Passes(kind.eType, kind.lpctBelow, facets));
    EXPECT_TRUE(Passes(kind.eType, kind.lpctAt, facets));
}

TEST_P(RestrictionCheckBounded, LengthsAndPatternHaveNoEffect)
{
    SFacets facets = Lengths(1000, 0, 500);
    facets.lpctPattern = L"(";
    EXPECT_TRUE(Passes(GetParam().eType, GetParam().lpctAt, facets));
}

TEST_P(RestrictionCheckBounded, FacetsMayBeUsedForSeveralKinds)
{
    const CPrimitiveRestrictions restrictions = Bound(0, L"5").Make();
    EXPECT_NO_THROW(Check(ItemType_ui1, L"6", restrictions));
    EXPECT_NO_THROW(Check(ItemType_r8, L"5.5", restrictions));
    EXPECT_THROW(Check(ItemType_decimal, L"4.9", restrictions), CQvException);
    EXPECT_THROW(Check(ItemType_ui1, L"4", restrictions), CQvException);
}

INSTANTIATE_TEST_SUITE_P(All, RestrictionCheckBounded, ::testing::ValuesIn(BoundedKinds()),
                         [](const ::testing::TestParamInfo<SBoundedKind>& kind)
                         {
                             QvVariant value;
                             value.m_type = kind.param.eType;
                             const std::wstring strName = value.GetType();
                             return std::string(strName.begin(), strName.end());
                         });

TEST(RestrictionCheck, AMalformedBoundFailsWhateverTheValue)
{
    const CPrimitiveRestrictions restrictions = Bound(0, L"x").Make();
    QvTest::ExpectThrows<CQvInvalidValueException>(L"The value [x] can not be converted to a i4",
                                                   [&] { Check(ItemType_i4, L"5", restrictions); });
    QvTest::ExpectThrows<CQvInvalidValueException>(L"Invalid XSD Date [x] expected CCYY-MM-DD[Z|[+|-]hh:mm]",
                                                   [&] { Check(ItemType_date, L"2001-05-31", restrictions); });
}

TEST(RestrictionCheck, ABoundBeyondTheTypeFailsWhateverTheValue)
{
    const CPrimitiveRestrictions restrictions = Bound(0, L"-1").Make();
    QvTest::ExpectThrows<CQvInvalidValueException>(L"The value [-1] is to large to fit in a ui1",
                                                   [&] { Check(ItemType_ui1, L"5", restrictions); });
}

TEST(RestrictionCheck, AMinusInAnUnsignedBoundWrapsAround)
{
    // The conversion of ui4 reads "-1" as its largest number.
    EXPECT_FALSE(Passes(ItemType_ui4, L"5", Bound(0, L"-1")));
    EXPECT_TRUE(Passes(ItemType_ui4, L"5", Bound(1, L"-1")));
}

TEST(RestrictionCheck, BoundsBehindABrokenOneAreNotRead)
{
    SFacets facets = Bound(0, L"10");
    facets.lpctMaxInclusive = L"x";
    ExpectFailure(ItemType_i4, L"5", facets, L"Invalid Value for item [5]");
    const CPrimitiveRestrictions restrictions = facets.Make();
    QvTest::ExpectThrows<CQvInvalidValueException>(L"The value [x] can not be converted to a i4",
                                                   [&] { Check(ItemType_i4, L"15", restrictions); });
}

TEST(RestrictionCheck, AValueThatBreaksTwoFacetsIsReportedOnce)
{
    SFacets facets = Bound(0, L"10");
    facets.lpctMinExclusive = L"20";
    ExpectFailure(ItemType_i4, L"5", facets, L"Invalid Value for item [5]");
    ExpectFailure(ItemType_string, L"abc", Lengths(5, 1, 4), L"Invalid Value for item [abc]");
}

TEST(RestrictionCheck, NotANumberFailsEveryBound)
{
    for (int nBound = 0; nBound < 4; ++nBound)
    {
        EXPECT_FALSE(Passes(ItemType_r8, L"NaN", Bound(nBound, L"0")));
        EXPECT_FALSE(Passes(ItemType_r4, L"NaN", Bound(nBound, L"0")));
        EXPECT_FALSE(Passes(ItemType_r8, L"0", Bound(nBound, L"NaN")));
    }
    EXPECT_TRUE(Passes(ItemType_r8, L"NaN", SFacets()));
}

TEST(RestrictionCheck, InfinitiesAreBoundsToo)
{
    EXPECT_TRUE(Passes(ItemType_r8, L"INF", Bound(0, L"1e308")));
    EXPECT_FALSE(Passes(ItemType_r8, L"INF", Bound(3, L"INF")));
    EXPECT_TRUE(Passes(ItemType_r8, L"-INF", Bound(1, L"0")));
}

TEST(RestrictionCheck, AFloatIsShownWidened)
{
    ExpectFailure(ItemType_r4, L"16777217", Bound(1, L"0"), L"Invalid Value for item [16777216.000000]");
    ExpectFailure(ItemType_r4, L"0.3", Bound(1, L"0"), L"Invalid Value for item [0.300000]");
}

TEST(RestrictionCheck, ADateWithoutZoneShortlyAfterABoundWithOnePassesEveryBound)
{
    for (int nBound = 0; nBound < 4; ++nBound)
        EXPECT_TRUE(Passes(ItemType_datetime, L"2001-05-10T20:00:00", Bound(nBound, L"2001-05-10T10:00:00Z")));
}

TEST(RestrictionCheck, ADateWithoutZoneIsOrderedOutsideOfFourteenHoursAfterABoundWithOne)
{
    // The comparison of dates moves the value one way only, so a value ahead of the bound is ordered at once.
    for (const wchar_t* const lpctBefore : {L"2001-05-08T10:00:00", L"2001-05-10T09:00:00"})
    {
        EXPECT_FALSE(Passes(ItemType_datetime, lpctBefore, Bound(0, L"2001-05-10T10:00:00Z")));
        EXPECT_TRUE(Passes(ItemType_datetime, lpctBefore, Bound(3, L"2001-05-10T10:00:00Z")));
    }
    EXPECT_FALSE(Passes(ItemType_datetime, L"2001-05-12T10:00:00", Bound(1, L"2001-05-10T10:00:00Z")));
}

TEST(RestrictionCheck, DatesThatDifferInTheMonthAloneAreEqualToBounds)
{
    EXPECT_TRUE(Passes(ItemType_yearMonth, L"2001-04", Bound(0, L"2001-05")));
    EXPECT_FALSE(Passes(ItemType_yearMonth, L"2001-04", Bound(3, L"2001-05")));
}

TEST(RestrictionCheck, ABoundOfAnotherKindOfDateIsComparedAsItStands)
{
    EXPECT_TRUE(Passes(ItemType_date, L"2001-05-31", Bound(0, L"2000")));
    EXPECT_TRUE(Passes(ItemType_date, L"2001-05-31", Bound(3, L"2001")));
}

TEST(RestrictionCheck, IndeterminateDurationsPassEveryBound)
{
    for (int nBound = 0; nBound < 4; ++nBound)
        EXPECT_TRUE(Passes(ItemType_duration, L"P1M", Bound(nBound, L"P30D")));
}

TEST(RestrictionCheck, NegativeZeroReachesABoundOfZeroUnlessItsFractionHasASign)
{
    const CPrimitiveRestrictions restrictions = Bound(0, L"0").Make();
    for (const CDecimal& value : {CDecimal(L"-0.00"), CDecimal(-0.0), CDecimal(-1e-14)})
        EXPECT_NO_THROW(CheckRestriction<ItemType_decimal>(L"item", value, restrictions));
    EXPECT_THROW(CheckRestriction<ItemType_decimal>(L"item", CDecimal(L"-0"), restrictions), CQvException);
}

TEST(RestrictionCheck, DecimalBoundsFollowTheMaximumOfDecimalPlaces)
{
    const CPrimitiveRestrictions restrictions = Bound(1, L"1.04").Make();
    const CDecimal value(L"1.03");
    EXPECT_NO_THROW(CheckRestriction<ItemType_decimal>(L"item", value, restrictions));
    const int nPlaces = CDecimal::GetMaxDecimalPlaces();
    CDecimal::SetMaxDecimalPlaces(1);
    EXPECT_THROW(CheckRestriction<ItemType_decimal>(L"item", value, restrictions), CQvException);
    CDecimal::SetMaxDecimalPlaces(nPlaces);
    EXPECT_NO_THROW(CheckRestriction<ItemType_decimal>(L"item", value, restrictions));
}

// --- Lengths ----------------------------------------------------------------------------------------------------

TEST(RestrictionCheck, LengthsOfStringsCountUnits)
{
    EXPECT_FALSE(Passes(ItemType_string, L"ab", Lengths(3, -1, -1)));
    EXPECT_TRUE(Passes(ItemType_string, L"abc", Lengths(3, -1, -1)));
    EXPECT_TRUE(Passes(ItemType_string, L"abc", Lengths(-1, 3, -1)));
    EXPECT_FALSE(Passes(ItemType_string, L"abcd", Lengths(-1, 3, -1)));
    EXPECT_FALSE(Passes(ItemType_string, L"ab", Lengths(-1, -1, 3)));
    EXPECT_TRUE(Passes(ItemType_string, L"abc", Lengths(-1, -1, 3)));
    EXPECT_FALSE(Passes(ItemType_string, L"abcd", Lengths(-1, -1, 3)));
}

TEST(RestrictionCheck, ZeroIsARealLength)
{
    EXPECT_TRUE(Passes(ItemType_string, L"", Lengths(0, 0, 0)));
    EXPECT_TRUE(Passes(ItemType_string, L"a", Lengths(0, -1, -1)));
    EXPECT_FALSE(Passes(ItemType_string, L"a", Lengths(-1, 0, -1)));
    EXPECT_FALSE(Passes(ItemType_string, L"a", Lengths(-1, -1, 0)));
}

TEST(RestrictionCheck, ACharacterOutsideTheBasicPlaneCountsAsTwo)
{
    const std::wstring strPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    EXPECT_TRUE(Passes(ItemType_string, strPair.c_str(), Lengths(-1, -1, 2)));
    EXPECT_FALSE(Passes(ItemType_string, strPair.c_str(), Lengths(-1, -1, 1)));
    if constexpr (sizeof(wchar_t) > 2)
    {
        const std::wstring strWhole(1, static_cast<wchar_t>(0x1F600));
        EXPECT_TRUE(Passes(ItemType_string, strWhole.c_str(), Lengths(-1, -1, 2)));
        EXPECT_FALSE(Passes(ItemType_string, strWhole.c_str(), Lengths(-1, -1, 1)));
    }
}

TEST(RestrictionCheck, LengthsOfBinaryKindsCountBytes)
{
    for (const SFacets& facets : {Lengths(3, -1, -1), Lengths(-1, 1, -1), Lengths(-1, -1, 1)})
    {
        EXPECT_FALSE(Passes(ItemType_hexBinary, L"0AFF", facets));
        EXPECT_FALSE(Passes(ItemType_base64Binary, L"Cv8=", facets));
    }
    for (const SFacets& facets : {Lengths(2, -1, -1), Lengths(-1, 2, -1), Lengths(-1, -1, 2), Lengths(0, -1, -1)})
    {
        EXPECT_TRUE(Passes(ItemType_hexBinary, L"0AFF", facets));
        EXPECT_TRUE(Passes(ItemType_base64Binary, L"Cv8=", facets));
    }
}

TEST(RestrictionCheck, BinaryValuesAreShownInHexadecimal)
{
    ExpectFailure(ItemType_hexBinary, L"0aff", Lengths(-1, 1, -1), L"Invalid Value for item [0AFF]");
    ExpectFailure(ItemType_base64Binary, L"Cv8=", Lengths(-1, 1, -1), L"Invalid Value for item [0AFF]");
}

TEST(RestrictionCheck, BinaryKindsIgnorePatternAndBounds)
{
    SFacets facets = Bound(0, L"x");
    facets.lpctPattern = L"(";
    EXPECT_TRUE(Passes(ItemType_hexBinary, L"0AFF", facets));
    EXPECT_TRUE(Passes(ItemType_base64Binary, L"Cv8=", facets));
}

TEST(RestrictionCheck, BinaryValuesWithoutBytesHaveLengthZero)
{
    EXPECT_FALSE(Passes(ItemType_hexBinary, L"", Lengths(1, -1, -1)));
    EXPECT_TRUE(Passes(ItemType_hexBinary, L"", Lengths(0, 0, 0)));
    EXPECT_FALSE(Passes(ItemType_base64Binary, L"", Lengths(-1, -1, 1)));
    ExpectFailure(ItemType_hexBinary, L"", Lengths(1, -1, -1), L"Invalid Value for item []");
    QvVariant value;
    value.SetHexBinary(CBinaryData());
    const CPrimitiveRestrictions restrictions = Lengths(1, -1, -1).Make();
    QvTest::ExpectThrows<CQvException>(L"Invalid Value for item []",
                                       [&] { CheckRestriction(L"item", value, ItemType_hexBinary, restrictions); });
}

// --- Patterns ---------------------------------------------------------------------------------------------------

TEST(RestrictionCheck, PatternsMatchTheWholeValue)
{
    EXPECT_TRUE(Passes(ItemType_string, L"123", Pattern(L"\\d+")));
    EXPECT_FALSE(Passes(ItemType_string, L"123a", Pattern(L"\\d+")));
    EXPECT_FALSE(Passes(ItemType_string, L"", Pattern(L"\\d+")));
    EXPECT_TRUE(Passes(ItemType_string, L"", Pattern(L"[a-z]*")));
    EXPECT_TRUE(Passes(ItemType_string, L"\x00E9\x00E9", Pattern(L"\x00E9{2}")));
    ExpectFailure(ItemType_string, L"x", Pattern(L"\\d+"), L"Invalid Value for item [x]");
}

TEST(RestrictionCheck, APatternThatCannotBeUsedFailsTheValue)
{
    const CPrimitiveRestrictions restrictions = Pattern(L"(").Make();
    try
    {
        Check(ItemType_string, L"abc", restrictions);
        ADD_FAILURE() << "no exception";
    }
    catch (const CQvException& ex)
    {
        const std::wstring strMessage = ex.GetMessageW();
        EXPECT_EQ(strMessage.find(L"Invalid Regular Expression: abc Error: '"), 0U);
        const std::wstring strEnd = L"'\nInvalid Value for item [abc]";
        ASSERT_GT(strMessage.size(), strEnd.size());
        EXPECT_TEXT(strEnd, strMessage.substr(strMessage.size() - strEnd.size()));
        EXPECT_EQ(ex.GetInnerException(), nullptr);
    }
}

TEST(RestrictionCheck, APatternIsNotUsedBehindABrokenLength)
{
    SFacets facets = Lengths(5, -1, -1);
    facets.lpctPattern = L"(";
    ExpectFailure(ItemType_string, L"abc", facets, L"Invalid Value for item [abc]");
}

TEST(RestrictionCheck, StringsIgnoreBounds)
{
    EXPECT_TRUE(Passes(ItemType_string, L"5", Bound(0, L"10")));
}

// --- Dispatch ---------------------------------------------------------------------------------------------------

TEST(RestrictionCheck, ABooleanNeverFails)
{
    SFacets facets = Lengths(9, 9, 9);
    facets.lpctPattern = L"(";
    facets.lpctMinInclusive = L"x";
    EXPECT_TRUE(Passes(ItemType_boolean, L"true", facets));
    EXPECT_TRUE(Passes(ItemType_boolean, L"false", facets));
}

TEST(RestrictionCheck, KindsWithoutFacetsAreUnknown)
{
    QvVariant value;
    value.SetChar(L'x');
    const CPrimitiveRestrictions restrictions;
    for (const int nType : {0, 22, 27, 28, 29, -1})
    {
        QvTest::ExpectThrows<CQvInvalidValueException>(
            L"unknown type [char]",
            [&] { CheckRestriction(L"item", value, static_cast<ItemType>(nType), restrictions); });
    }
    value.SetI4(5);
    QvTest::ExpectThrows<CQvInvalidValueException>(
        L"unknown type [i4]", [&] { CheckRestriction(L"item", value, ItemType_XmlObjectBase, restrictions); });
}

TEST(RestrictionCheck, AnUnknownKindNeedsAVariantWithAName)
{
    const CPrimitiveRestrictions restrictions;
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 0",
                                       [&] { CheckRestriction(L"item", QvVariant(), ItemType_Invalid, restrictions); });
}

TEST(RestrictionCheck, ANullNameShowsAsNull)
{
    const CPrimitiveRestrictions restrictions = Bound(1, L"0").Make();
    QvTest::ExpectThrows<CQvException>(L"Invalid Value for (null) [5]",
                                       [&] { CheckRestriction<ItemType_i4>(nullptr, 5, restrictions); });
}

TEST(RestrictionCheck, TheDirectFormChecksAsTheDispatcherDoes)
{
    const CPrimitiveRestrictions restrictions = Lengths(-1, 2, -1).Make();
    EXPECT_NO_THROW(CheckRestriction<ItemType_string>(L"item", L"ab", restrictions));
    QvTest::ExpectThrows<CQvException>(L"Invalid Value for item [abc]",
                                       [&] { CheckRestriction<ItemType_string>(L"item", L"abc", restrictions); });
}

TEST(RestrictionCheck, ThreadsMayShareFacets)
{
    SFacets facets = Bound(0, L"10");
    facets.lpctMaxExclusive = L"20.5";
    const CPrimitiveRestrictions restrictions = facets.Make();
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int& nFailures : failures)
    {
        threads.emplace_back(
            [&]
            {
                for (int n = 0; n < 1000; ++n)
                {
                    try
                    {
                        CheckRestriction<ItemType_decimal>(L"item", CDecimal(n % 40), restrictions);
                    }
                    catch (const CQvException&)
                    {
                        ++nFailures;
                    }
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    // Of 40 numbers, 10 to 20 pass.
    for (const int nFailures : failures)
        EXPECT_EQ(nFailures, 25 * 29);
}

TEST(RestrictionCheck, LongTextsAreChecked)
{
    const std::wstring strLong(1000000, L'a');
    EXPECT_TRUE(Passes(ItemType_string, strLong.c_str(), Lengths(-1, 1000000, -1)));
    ExpectFailure(ItemType_string, strLong.c_str(), Lengths(-1, 999999, -1),
                  L"Invalid Value for item [" + strLong + L"]");
}
