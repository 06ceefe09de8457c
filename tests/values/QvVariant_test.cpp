#include "quiver/values/QvVariant.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/values/ItemTraits.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace QvXmlLib9;

namespace
{

constexpr auto s_eNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto s_eCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

/// One value of a kind, as text, with the form in which it is printed.
struct SKind
{
    ItemType eType;
    const wchar_t* lpctName;
    const wchar_t* lpctText;
    /// Sets what the getter of the kind gives.
    void (*pfnPass)(QvVariant& to, const QvVariant& from);
};

const std::vector<SKind>& Kinds()
{
    static const std::vector<SKind> s_kinds = {
        {ItemType_hexBinary, L"hexBinary", L"0AFF",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetHexBinary(from.GetHexBinary());
         }},
        {ItemType_base64Binary, L"base64Binary", L"QUJDRA==",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetBase64Binary(from.GetBase64Binary());
         }},
        {ItemType_i1, L"i1", L"-128",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetI1(from.GetI1());
         }},
        {ItemType_i2, L"i2", L"-32768",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetI2(from.GetI2());
         }},
        {ItemType_i4, L"i4", L"-2147483648",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetI4(from.GetI4());
         }},
        {ItemType_i8, L"i8", L"-9223372036854775808",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetI8(from.GetI8());
         }},
        {ItemType_ui1, L"ui1", L"255",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetUI1(from.GetUI1());
         }},
        {ItemType_ui2, L"ui2", L"65535",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetUI2(from.GetUI2());
         }},
        {ItemType_ui4, L"ui4", L"4294967295",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetUI4(from.GetUI4());
         }},
        {ItemType_ui8, L"ui8", L"18446744073709551615",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetUI8(from.GetUI8());
         }},
        {ItemType_r4, L"r4", L"1.5",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetR4(from.GetR4());
         }},
        {ItemType_r8, L"r8", L"2.25",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetR8(from.GetR8());
         }},
        {ItemType_duration, L"duration", L"P1Y2M3DT4H5M6S",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetDuration(from.GetDuration());
         }},
        {ItemType_yearMonth, L"yearMonth", L"2001-05",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetYearMonth(from.GetYearMonth());
         }},
        {ItemType_monthDay, L"monthDay", L"--05-31",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetMonthDay(from.GetMonthDay());
         }},
        {ItemType_year, L"year", L"2001",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetYear(from.GetYear());
         }},
        {ItemType_month, L"month", L"--05",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetMonth(from.GetMonth());
         }},
        {ItemType_day, L"day", L"---31",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetDay(from.GetDay());
         }},
        {ItemType_date, L"date", L"2001-05-31",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetDate(from.GetDate());
         }},
        {ItemType_datetime, L"datetime", L"2001-05-31T23:59:59",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetDateTime(from.GetDateTime());
         }},
        {ItemType_time, L"time", L"23:59:59",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetTime(from.GetTime());
         }},
        {ItemType_char, L"char", L"x",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetChar(from.GetChar());
         }},
        {ItemType_string, L"string", L"a longer text that needs memory of its own",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetString(from.GetString());
         }},
        {ItemType_boolean, L"boolean", L"true",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetBoolean(from.GetBoolean());
         }},
        {ItemType_decimal, L"decimal", L"1.5",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetDecimal(from.GetDecimal());
         }},
        {ItemType_integer, L"integer", L"-123456789012345678901234567890",
         [](QvVariant& to, const QvVariant& from)
         {
             to.SetInteger(from.GetInteger());
         }},
    };
    return s_kinds;
}

QvVariant Make(const SKind& kind)
{
    QvVariant value;
    value.FromString(kind.lpctText, kind.eType, s_eNone);
    return value;
}

std::wstring TextOf(const QvVariant& value)
{
    return value.IsValid() ? value.ToString(nullptr) : L"(invalid)";
}

} // namespace

// --- Every kind -------------------------------------------------------------------------------------------------

class QvVariantKind : public ::testing::TestWithParam<SKind>
{
};

TEST_P(QvVariantKind, HasItsNameAndNumber)
{
    const QvVariant value = Make(GetParam());
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetTypeAsEnum(), GetParam().eType);
    EXPECT_TEXT(GetParam().lpctName, value.GetType());
}

TEST_P(QvVariantKind, PassesThroughTextInBothDirections)
{
    EXPECT_TEXT(GetParam().lpctText, Make(GetParam()).ToString(nullptr));
}

TEST_P(QvVariantKind, AppendsItsTextBehindWhatIsThere)
{
    std::wstring strText = L"a";
    Make(GetParam()).AppendText(strText, nullptr);
    EXPECT_TEXT(std::wstring(L"a") + GetParam().lpctText, strText);
}

TEST_P(QvVariantKind, CopiesIndependently)
{
    QvVariant source = Make(GetParam());
    const QvVariant copy(source);
    QvVariant assigned;
    assigned.SetString(L"former");
    assigned = source;
    source.Clear();
    EXPECT_FALSE(source.IsValid());
    EXPECT_TEXT(GetParam().lpctText, TextOf(copy));
    EXPECT_TEXT(GetParam().lpctText, TextOf(assigned));
    EXPECT_EQ(assigned.GetTypeAsEnum(), GetParam().eType);
}

TEST_P(QvVariantKind, MovesAndLeavesTheSourceInvalid)
{
    QvVariant source = Make(GetParam());
    QvVariant moved(std::move(source));
    EXPECT_FALSE(source.IsValid());
    EXPECT_TEXT(GetParam().lpctText, TextOf(moved));
    QvVariant assigned = Make(Kinds().back());
    assigned = std::move(moved);
    EXPECT_FALSE(moved.IsValid());
    EXPECT_TEXT(GetParam().lpctText, TextOf(assigned));
}

TEST_P(QvVariantKind, AssignedToItselfBecomesInvalidOnPurpose)
{
    QvVariant value = Make(GetParam());
    QvVariant& same = value;
    value = same;
    EXPECT_FALSE(value.IsValid());
    value = Make(GetParam());
    value = std::move(same);
    EXPECT_FALSE(value.IsValid());
}

TEST_P(QvVariantKind, ReplacesAnyOtherKind)
{
    for (const SKind& former : Kinds())
    {
        QvVariant value = Make(former);
        value.FromString(GetParam().lpctText, GetParam().eType, s_eNone);
        EXPECT_TEXT(GetParam().lpctText, TextOf(value));
        value = Make(former);
        EXPECT_TEXT(former.lpctText, TextOf(value));
    }
}

TEST_P(QvVariantKind, GetterAndSetterAgree)
{
    const QvVariant source = Make(GetParam());
    QvVariant target;
    GetParam().pfnPass(target, source);
    EXPECT_EQ(target.GetTypeAsEnum(), GetParam().eType);
    EXPECT_TEXT(GetParam().lpctText, TextOf(target));
}

INSTANTIATE_TEST_SUITE_P(All, QvVariantKind, ::testing::ValuesIn(Kinds()),
                         [](const ::testing::TestParamInfo<SKind>& kind)
                         {
                             const std::wstring strName = kind.param.lpctName;
                             return std::string(strName.begin(), strName.end());
                         });

TEST(QvVariant, EveryKindHasARow)
{
    ASSERT_EQ(Kinds().size(), 26U);
    for (std::size_t n = 0; n < Kinds().size(); ++n)
        EXPECT_EQ(Kinds()[n].eType, static_cast<int>(n) + 1);
}

// --- Setters and getters ----------------------------------------------------------------------------------------

TEST(QvVariant, HandsOutWhatWasSet)
{
    QvVariant value;
    CBinaryData data;
    data.SetAsHexString(L"0AFF");
    value.SetHexBinary(data);
    EXPECT_EQ(value.GetHexBinary(), data);
    EXPECT_EQ(value.HexBinaryRef(), data);
    value.SetBase64Binary(data);
    EXPECT_EQ(value.GetBase64Binary(), data);
    EXPECT_EQ(value.Base64BinaryRef(), data);
    value.SetI1(static_cast<char>(-5));
    EXPECT_EQ(value.GetI1(), static_cast<char>(-5));
    value.SetI2(-300);
    EXPECT_EQ(value.GetI2(), -300);
    value.SetI4(-70000);
    EXPECT_EQ(value.GetI4(), -70000);
    value.SetI8(std::numeric_limits<__int64>::min());
    EXPECT_EQ(value.GetI8(), std::numeric_limits<__int64>::min());
    value.SetUI1(200);
    EXPECT_EQ(value.GetUI1(), 200);
    value.SetUI2(60000);
    EXPECT_EQ(value.GetUI2(), 60000);
    value.SetUI4(4000000000UL);
    EXPECT_EQ(value.GetUI4(), 4000000000UL);
    value.SetUI8(18446744073709551615ULL);
    EXPECT_EQ(value.GetUI8(), 18446744073709551615ULL);
    value.SetR4(0.1F);
    EXPECT_EQ(value.GetR4(), 0.1F);
    value.SetR8(0.1);
    EXPECT_EQ(value.GetR8(), 0.1);
    value.SetYear(2001);
    EXPECT_EQ(value.GetYear(), 2001);
    value.SetMonth(5);
    EXPECT_EQ(value.GetMonth(), 5);
    value.SetDay(31);
    EXPECT_EQ(value.GetDay(), 31);
    value.SetChar(L'x');
    EXPECT_EQ(value.GetChar(), L'x');
    value.SetString(L"text");
    EXPECT_TEXT(L"text", value.GetString());
    EXPECT_TEXT(L"text", value.StringRef());
    value.SetBoolean(true);
    EXPECT_TRUE(value.GetBoolean());
    value.SetDecimal(CDecimal(L"1.5"));
    EXPECT_EQ(value.GetDecimal(), CDecimal(L"1.5"));
    EXPECT_EQ(value.DecimalRef(), CDecimal(L"1.5"));
    value.SetInteger(CBigInteger(L"99"));
    EXPECT_EQ(value.GetInteger(), CBigInteger(L"99"));
    EXPECT_EQ(value.IntegerRef(), CBigInteger(L"99"));
}

TEST(QvVariant, HandsOutDatesAndDurations)
{
    QvVariant value;
    const CDateTime date(2001, 5, 31);
    value.SetYearMonth(date);
    EXPECT_EQ(value.GetYearMonth(), date);
    value.SetMonthDay(date);
    EXPECT_EQ(value.GetMonthDay(), date);
    value.SetDate(date);
    EXPECT_EQ(value.GetDate(), date);
    value.SetDateTime(date);
    EXPECT_EQ(value.GetDateTime(), date);
    value.SetTime(date);
    EXPECT_EQ(value.GetTime(), date);
    const CDateTimeSpan span(1, 2, 3);
    value.SetDuration(span);
    EXPECT_EQ(value.GetDuration(), span);
}

TEST(QvVariant, ALongIsKeptTo32Bits)
{
    QvVariant value;
    value.SetI4(static_cast<long>(0x180000000LL));
    EXPECT_EQ(value.GetI4(), sizeof(long) > 4 ? -2147483647L - 1 : value.GetI4());
    value.SetUI4(static_cast<unsigned long>(0x1FFFFFFFFLL));
    EXPECT_EQ(value.GetUI4(), 4294967295UL);
}

TEST(QvVariant, TakesItsOwnObjectAsTheNewValue)
{
    QvVariant value;
    value.SetDecimal(CDecimal(L"123456789.5"));
    value.SetDecimal(value.DecimalRef());
    EXPECT_TEXT(L"123456789.5", value.ToString(nullptr));
    CBinaryData data;
    data.SetAsHexString(L"0AFF");
    value.SetHexBinary(data);
    value.SetBase64Binary(value.HexBinaryRef());
    EXPECT_EQ(value.GetBase64Binary(), data);
}

// --- Invalid variants -------------------------------------------------------------------------------------------

TEST(QvVariant, IsInvalidWhenNew)
{
    const QvVariant value;
    EXPECT_FALSE(value.IsValid());
    EXPECT_EQ(value.GetTypeAsEnum(), ItemType_Invalid);
    EXPECT_EQ(value.m_pString, nullptr);
}

TEST(QvVariant, InvalidHasNoNameAndNoText)
{
    const QvVariant value;
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 0", [&] { value.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 0 to convert to string", [&] { value.ToString(nullptr); });
    std::wstring strText;
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 0 to convert to string",
                                       [&] { value.AppendText(strText, nullptr); });
}

TEST(QvVariant, ClearAndSetInvalidDropTheValue)
{
    QvVariant value;
    value.SetString(L"text");
    value.Clear();
    EXPECT_FALSE(value.IsValid());
    value.SetI4(5);
    value.SetInvalid();
    EXPECT_FALSE(value.IsValid());
    value.Clear();
    EXPECT_FALSE(value.IsValid());
}

TEST(QvVariant, CopyOfInvalidIsInvalid)
{
    const QvVariant value;
    QvVariant copy(value);
    EXPECT_FALSE(copy.IsValid());
    copy.SetString(L"text");
    copy = value;
    EXPECT_FALSE(copy.IsValid());
}

TEST(QvVariant, ACorruptTypeCannotBeAssigned)
{
    for (const int nType : {29, 1000, -1})
    {
        QvVariant corrupt;
        corrupt.m_type = static_cast<ItemType>(nType);
        QvVariant value;
        value.SetString(L"text");
        QvTest::ExpectThrows<CQvException>(L"Unknown Type", [&] { value = corrupt; });
        EXPECT_FALSE(value.IsValid());
        QvTest::ExpectThrows<CQvException>(L"Unknown Type", [&] { const QvVariant copy(corrupt); });
    }
}

TEST(QvVariant, ACorruptTypeHasNoNameAndNoText)
{
    QvVariant corrupt;
    corrupt.m_type = static_cast<ItemType>(29);
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 29", [&] { corrupt.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 29 to convert to string", [&] { corrupt.ToString(nullptr); });
}

// --- Text -------------------------------------------------------------------------------------------------------

TEST(QvVariant, FormatReachesRealsAndDecimalsOnly)
{
    QvVariant value;
    value.SetR4(1.5F);
    EXPECT_TEXT(L"1.50", value.ToString(L"%.2f"));
    value.SetR8(2.5);
    EXPECT_TEXT(L"2.500", value.ToString(L"%.3f"));
    value.SetDecimal(CDecimal(L"1.25"));
    EXPECT_TEXT(L"1.3", value.ToString(L"1"));
    value.SetI4(7);
    EXPECT_TEXT(L"7", value.ToString(L"%.2f"));
    value.SetString(L"7");
    EXPECT_TEXT(L"7", value.ToString(L"%.2f"));
}

TEST(QvVariant, AYearPrintsAsAYear)
{
    QvVariant value;
    value.SetYear(33);
    EXPECT_TEXT(CConversions::yearToString(33), value.ToString(nullptr));
    value.SetMonth(7);
    EXPECT_TEXT(L"--07", value.ToString(nullptr));
    value.SetDay(7);
    EXPECT_TEXT(L"---07", value.ToString(nullptr));
}

TEST(QvVariant, FromStringAppliesTheRule)
{
    QvVariant value;
    value.FromString(L" a \t b ", ItemType_string, s_eCollapse);
    EXPECT_TEXT(L"a b", value.GetString());
    value.FromString(L" a \t b ", ItemType_string, s_eNone);
    EXPECT_TEXT(L" a \t b ", value.GetString());
}

TEST(QvVariant, AFailedConversionLeavesTheValue)
{
    QvVariant value;
    value.SetString(L"text");
    QvTest::ExpectThrows<CQvInvalidValueException>(L"The value [x] can not be converted to a i4",
                                                   [&] { value.FromString(L"x", ItemType_i4, s_eNone); });
    EXPECT_TEXT(L"text", value.GetString());
}

TEST(QvVariant, FromStringNeedsAKindWithText)
{
    QvVariant value;
    value.SetString(L"text");
    for (const int nType : {0, 27, 28, 29, -1})
    {
        QvTest::ExpectThrows<CQvException>(L"Invalid Type " + std::to_wstring(nType) + L" to convert to string",
                                           [&] { value.FromString(L"1", static_cast<ItemType>(nType), s_eNone); });
    }
    EXPECT_TEXT(L"text", value.GetString());
}

TEST(QvVariant, StringsKeepZeroElementsAndLoneSurrogates)
{
    const std::wstring strText = {L'a', 0, static_cast<wchar_t>(0xDC00), L'b'};
    QvVariant value;
    value.SetString(strText);
    EXPECT_TEXT(strText, value.GetString());
    EXPECT_TEXT(strText, value.ToString(nullptr));
    value.FromString(strText, ItemType_string, s_eCollapse);
    EXPECT_TEXT(strText, value.GetString());
}

// --- Filled by hand ---------------------------------------------------------------------------------------------

TEST(QvVariant, ANullPointerStaysNullInACopy)
{
    for (const SKind& kind : Kinds())
    {
        QvVariant value;
        value.m_type = kind.eType;
        const QvVariant copy(value);
        EXPECT_EQ(copy.GetTypeAsEnum(), kind.eType);
        EXPECT_EQ(copy.m_pString, nullptr);
    }
}

TEST(QvVariant, APointerFromTheHeapBecomesItsOwn)
{
    QvVariant value;
    value.m_type = ItemType_string;
    value.m_pString = new std::wstring(L"a text from somebody else's memory");
    const QvVariant copy(value);
    EXPECT_TEXT(L"a text from somebody else's memory", copy.GetString());
    QvVariant moved(std::move(value));
    EXPECT_FALSE(value.IsValid());
    EXPECT_TEXT(L"a text from somebody else's memory", moved.GetString());
    moved.Clear();
    EXPECT_FALSE(moved.IsValid());
}

TEST(QvVariant, IsASingleBlockWithAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<QvVariant>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<QvVariant>);
    EXPECT_TRUE(
        (std::is_same_v<decltype(std::declval<QvVariant&>() = std::declval<const QvVariant&>()), const QvVariant&>));
}

// --- The wrong getter -------------------------------------------------------------------------------------------

#if defined(QUIVER_DIAGNOSTICS)

TEST(QvVariantDeathTest, TheWrongGetterStopsDiagnosticBuilds)
{
    QvVariant value;
    const struct
    {
        void (*pfnGet)(const QvVariant& asked);
        const char* lpcCondition;
    } rows[] = {
        {[](const QvVariant& asked) { asked.GetI1(); }, "m_type == ItemType_i1,"},
        {[](const QvVariant& asked) { asked.GetI2(); }, "m_type == ItemType_i2,"},
        {[](const QvVariant& asked) { asked.GetI4(); }, "m_type == ItemType_i4,"},
        {[](const QvVariant& asked) { asked.GetI8(); }, "m_type == ItemType_i8,"},
        {[](const QvVariant& asked) { asked.GetUI1(); }, "m_type == ItemType_ui1,"},
        {[](const QvVariant& asked) { asked.GetUI2(); }, "m_type == ItemType_ui2,"},
        {[](const QvVariant& asked) { asked.GetUI4(); }, "m_type == ItemType_ui4,"},
        {[](const QvVariant& asked) { asked.GetUI8(); }, "m_type == ItemType_ui8,"},
        {[](const QvVariant& asked) { asked.GetR4(); }, "m_type == ItemType_r4,"},
        {[](const QvVariant& asked) { asked.GetR8(); }, "m_type == ItemType_r8,"},
        {[](const QvVariant& asked) { asked.GetDuration(); }, "m_type == ItemType_duration,"},
        {[](const QvVariant& asked) { asked.GetYearMonth(); }, "m_type == ItemType_yearMonth,"},
        {[](const QvVariant& asked) { asked.GetMonthDay(); }, "m_type == ItemType_monthDay,"},
        {[](const QvVariant& asked) { asked.GetYear(); }, "m_type == ItemType_year,"},
        {[](const QvVariant& asked) { asked.GetMonth(); }, "m_type == ItemType_month,"},
        {[](const QvVariant& asked) { asked.GetDay(); }, "m_type == ItemType_day,"},
        {[](const QvVariant& asked) { asked.GetDate(); }, "m_type == ItemType_date,"},
        {[](const QvVariant& asked) { asked.GetDateTime(); }, "m_type == ItemType_datetime,"},
        {[](const QvVariant& asked) { asked.GetTime(); }, "m_type == ItemType_time,"},
        {[](const QvVariant& asked) { asked.GetChar(); }, "m_type == ItemType_char,"},
        {[](const QvVariant& asked) { asked.GetBoolean(); }, "m_type == ItemType_boolean,"},
        {[](const QvVariant& asked) { asked.GetHexBinary(); }, "m_type == ItemType_hexBinary,"},
        {[](const QvVariant& asked) { asked.GetBase64Binary(); }, "m_type == ItemType_base64Binary,"},
    };
    for (const auto& row : rows)
        EXPECT_DEATH(row.pfnGet(value), row.lpcCondition);
    EXPECT_DEATH(value.GetString(), "m_type == ItemType_string && m_pString != NULL,");
    EXPECT_DEATH(value.StringRef(), "m_type == ItemType_string && m_pString != NULL,");
    EXPECT_DEATH(value.GetDecimal(), "m_type == ItemType_decimal && m_pDecimal != NULL,");
    EXPECT_DEATH(value.GetInteger(), "m_type == ItemType_integer && m_pBigInteger != NULL,");
}

#else

TEST(QvVariant, TheWrongGetterGivesAnEmptyValue)
{
    for (const SKind& held : Kinds())
    {
        const QvVariant value = Make(held);
        for (const SKind& asked : Kinds())
        {
            SCOPED_TRACE(std::to_string(held.eType) + " asked as " + std::to_string(asked.eType));
            VisitItemType(asked.eType,
                          [&](auto traits)
                          {
                              using Traits = decltype(traits);
                              const bool bEmpty = Traits::Get(value) == typename Traits::Value();
                              EXPECT_EQ(bEmpty, held.eType != asked.eType);
                          });
        }
    }
}

TEST(QvVariant, ANullPointerReadsAsAnEmptyValue)
{
    QvVariant value;
    value.m_type = ItemType_string;
    EXPECT_TEXT(L"", value.GetString());
    value.m_type = ItemType_datetime;
    EXPECT_EQ(value.GetDateTime().GetType(), CDateTime::dt_yearZero);
}

#endif

TEST(QvVariant, RefersToAStringOnlyWhereItMayBorrow)
{
    std::wstring strOwner = L"owned by somebody else";
    QvVariant borrower;
    borrower.LetBorrow();
    borrower.SetStringRef(strOwner);
    QvVariant keeper;
    keeper.SetStringRef(strOwner);
    EXPECT_EQ(&borrower.StringRef(), &strOwner);
    EXPECT_NE(&keeper.StringRef(), &strOwner);

    const QvVariant copy(borrower);
    QvVariant moved(std::move(borrower));
    EXPECT_FALSE(borrower.IsValid());
    borrower.SetStringRef(strOwner);
    const std::wstring strTaken = borrower.TakeString();
    EXPECT_FALSE(borrower.IsValid());
    strOwner = L"changed";
    for (const std::wstring& strText : {copy.GetString(), moved.GetString(), keeper.GetString(), strTaken})
        EXPECT_EQ(strText, L"owned by somebody else");
}

TEST(QvVariant, RefersToUtf8OnlyWhereItMayBorrow)
{
    std::string strOwner = "gr\xC3\xBCn";
    QvVariant borrower;
    borrower.LetBorrow();
    borrower.SetStringRef(std::string_view(strOwner));
    QvVariant keeper;
    keeper.SetStringRef(std::string_view(strOwner));
    std::string_view svUtf8;
    EXPECT_TRUE(borrower.GetUtf8(svUtf8));
    EXPECT_EQ(svUtf8.data(), strOwner.data());
    EXPECT_FALSE(keeper.GetUtf8(svUtf8));
    strOwner = "red!!";
    EXPECT_TEXT(L"gr\u00FCn", keeper.GetString());
}

TEST(QvVariant, ForgetsABorrowedStringWithoutTouchingIt)
{
    const std::wstring strOwner = L"a text that is too long for the string itself";
    QvVariant value;
    value.LetBorrow();
    value.SetStringRef(strOwner);
    value.SetI4(7);
    EXPECT_EQ(value.GetI4(), 7);
    value.SetStringRef(strOwner);
    value.SetString(L"another text that is too long for the string itself");
    EXPECT_EQ(value.GetString(), L"another text that is too long for the string itself");
    value.SetStringRef(strOwner);
    value = QvVariant();
    EXPECT_EQ(strOwner, L"a text that is too long for the string itself");
}

TEST(QvVariant, ABorrowedStringIsOfUnitsLikeAnyOther)
{
    if constexpr (sizeof(wchar_t) == 4)
    {
        const std::wstring strOwner(1, static_cast<wchar_t>(0x1F600));
        QvVariant value;
        value.LetBorrow();
        value.SetStringRef(strOwner);
        EXPECT_EQ(value.GetString(), std::wstring({static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)}));
    }
}

TEST(QvVariant, TakeStringHandsTheStringOverAndLeavesAnInvalidVariant)
{
    QvVariant value;
    value.SetString(L"a string of some length");
    EXPECT_TRUE(value.TakeString() == L"a string of some length");
    EXPECT_FALSE(value.IsValid());
}

namespace
{

QvVariant Utf8Variant()
{
    QvVariant value;
    value.SetUtf8("gr\xC3\xBC"
                  "n");
    return value;
}

} // namespace

TEST(QvVariant, HoldsUtf8UntilAStringIsAskedFor)
{
    std::string strUtf8 = "gr\xC3\xBC"
                          "n";
    QvVariant value;
    value.SetBoolean(true);
    value.SetUtf8(strUtf8);
    std::string_view svUtf8;
    EXPECT_TRUE(value.GetUtf8(svUtf8));
    EXPECT_EQ(svUtf8.data(), strUtf8.data());
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetTypeAsEnum(), ItemType_string);
    EXPECT_TEXT(L"string", value.GetType());
    EXPECT_TEXT(L"gr\x00FCn", value.StringRef());
    EXPECT_FALSE(value.GetUtf8(svUtf8));
    EXPECT_EQ(&value.StringRef(), &value.StringRef());

    EXPECT_TEXT(L"gr\x00FCn", Utf8Variant().GetString());
    EXPECT_TEXT(L"gr\x00FCn", Utf8Variant().TakeString());
    EXPECT_TEXT(L"gr\x00FCn", Utf8Variant().ToString(nullptr));
}

TEST(QvVariant, CopiesOfUtf8OutliveIt)
{
    std::string strUtf8 = "a text that is longer than a string holds in place";
    QvVariant source;
    source.SetUtf8(strUtf8);
    const QvVariant copy = source;
    source.SetUtf8(strUtf8);
    const QvVariant moved = std::move(source);
    QvVariant target;
    target.SetI4(1);
    source.SetUtf8(strUtf8);
    target = std::move(source);
    strUtf8.assign(strUtf8.size(), 'x');
    for (const QvVariant* const pValue : {&copy, &moved, &const_cast<const QvVariant&>(target)})
        EXPECT_TEXT(L"a text that is longer than a string holds in place", pValue->GetString());
    EXPECT_FALSE(source.IsValid());
}

TEST(QvVariant, LetsUtf8Go)
{
    QvVariant value;
    value.SetUtf8("a");
    value.Clear();
    EXPECT_FALSE(value.IsValid());
    value.SetUtf8("a");
    value.SetI4(7);
    EXPECT_EQ(value.GetI4(), 7);
    value.SetUtf8("a");
    value.SetUtf8({});
    EXPECT_TEXT(L"", value.GetString());
}
