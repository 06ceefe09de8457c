#include "quiver/values/QvVariant.h"

#include "quiver/collections/XmlTypeCollection.h"
#include "quiver/core/XmlObjectBase.h"
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

/// An object with nothing but its count; it tells when it goes.
class CProbe : public CXmlObjectBase
{
public:
    explicit CProbe(bool& bAlive)
        : CInstanceMonitor(L"CProbe")
        , m_bAlive(bAlive)
    {
        m_bAlive = true;
    }
    ~CProbe() override { m_bAlive = false; }

    CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetTargetNamespace() const override { return {}; }
    std::wstring GetNamespace() const override { return {}; }

protected:
    void ToXml_Int(CXmlWriter*, bool, const wchar_t*, const CXmlSerializationContext&, bool) const override {}
    CXmlElement* FromXml_Int(CXmlElement*, CXmlElement*, const CXmlSerializationContext&, bool) override
    {
        return nullptr;
    }

private:
    bool& m_bAlive;
};

long CountOf(CXmlObjectBase& object)
{
    const long lCount = object.AddRef() - 1;
    object.Release();
    return lCount;
}

CSmartPtr<Ci4Col> MakeCollection()
{
    return new Ci4Col(L"item", L"", 0, -1, L"", -1, -1, L"", L"", L"", L"", -1, s_eCollapse, nullptr);
}

/// One value of a kind, as text, with the form in which it is printed.
struct SKind
{
    ItemType eType;
    const wchar_t* lpctName;
    const wchar_t* lpctText;
};

const std::vector<SKind>& Kinds()
{
    static const std::vector<SKind> s_kinds = {
        {ItemType_hexBinary, L"hexBinary", L"0AFF"},
        {ItemType_base64Binary, L"base64Binary", L"QUJDRA=="},
        {ItemType_i1, L"i1", L"-128"},
        {ItemType_i2, L"i2", L"-32768"},
        {ItemType_i4, L"i4", L"-2147483648"},
        {ItemType_i8, L"i8", L"-9223372036854775808"},
        {ItemType_ui1, L"ui1", L"255"},
        {ItemType_ui2, L"ui2", L"65535"},
        {ItemType_ui4, L"ui4", L"4294967295"},
        {ItemType_ui8, L"ui8", L"18446744073709551615"},
        {ItemType_r4, L"r4", L"1.5"},
        {ItemType_r8, L"r8", L"2.25"},
        {ItemType_duration, L"duration", L"P1Y2M3DT4H5M6S"},
        {ItemType_yearMonth, L"yearMonth", L"2001-05"},
        {ItemType_monthDay, L"monthDay", L"--05-31"},
        {ItemType_year, L"year", L"2001"},
        {ItemType_month, L"month", L"--05"},
        {ItemType_day, L"day", L"---31"},
        {ItemType_date, L"date", L"2001-05-31"},
        {ItemType_datetime, L"datetime", L"2001-05-31T23:59:59"},
        {ItemType_time, L"time", L"23:59:59"},
        {ItemType_char, L"char", L"x"},
        {ItemType_string, L"string", L"a longer text that needs memory of its own"},
        {ItemType_boolean, L"boolean", L"true"},
        {ItemType_decimal, L"decimal", L"1.5"},
        {ItemType_integer, L"integer", L"-123456789012345678901234567890"},
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
    const bool bFound = VisitItemType(GetParam().eType,
                                      [&](auto traits)
                                      {
                                          using Traits = decltype(traits);
                                          typename Traits::Value value = Traits::Get(source);
                                          Traits::Set(target, std::move(value));
                                      });
    EXPECT_TRUE(bFound);
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

// --- Objects and collections ------------------------------------------------------------------------------------

TEST(QvVariant, HoldsAReferenceOnItsObject)
{
    bool bAlive = false;
    CSmartPtr<CProbe> spProbe = new CProbe(bAlive);
    {
        QvVariant value;
        value.SetXmlObject(spProbe);
        EXPECT_EQ(CountOf(*spProbe), 2);
        EXPECT_EQ(value.GetXmlObject(), static_cast<CXmlObjectBase*>(spProbe));
        EXPECT_EQ(value.XmlObjectPtr(), static_cast<CXmlObjectBase*>(spProbe));
        EXPECT_EQ(CountOf(*spProbe), 2);
        const QvVariant copy(value);
        EXPECT_EQ(CountOf(*spProbe), 3);
        const QvVariant moved(std::move(value));
        EXPECT_EQ(CountOf(*spProbe), 3);
    }
    EXPECT_EQ(CountOf(*spProbe), 1);
}

TEST(QvVariant, TheLastReferenceDestroysTheObject)
{
    bool bAlive = false;
    QvVariant value;
    value.SetXmlObject(new CProbe(bAlive));
    EXPECT_TRUE(bAlive);
    value.SetXmlObject(value.XmlObjectPtr());
    EXPECT_TRUE(bAlive);
    value.SetI4(1);
    EXPECT_FALSE(bAlive);
    value.SetXmlObject(new CProbe(bAlive));
    QvVariant& same = value;
    value = same;
    EXPECT_FALSE(bAlive);
}

TEST(QvVariant, ANullObjectIsAValue)
{
    QvVariant value;
    value.SetXmlObject(nullptr);
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    const QvVariant copy(value);
    EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlObjectBase);
    EXPECT_EQ(copy.GetXmlObject(), nullptr);
}

TEST(QvVariant, ANullCollectionIsAValue)
{
    QvVariant value;
    value.SetXmlCollection(nullptr);
    EXPECT_TRUE(value.IsValid());
    EXPECT_EQ(value.GetXmlObject(), nullptr);
    const QvVariant copy(value);
    EXPECT_EQ(copy.GetTypeAsEnum(), ItemType_XmlCollection);
}

TEST(QvVariant, ACollectionIsAnObjectToo)
{
    const CSmartPtr<Ci4Col> spCollection = MakeCollection();
    {
        QvVariant value;
        value.SetXmlCollection(spCollection);
        EXPECT_EQ(CountOf(*spCollection), 2);
        EXPECT_EQ(value.GetXmlCollection(), static_cast<CXmlCollectionBase*>(spCollection));
        EXPECT_EQ(value.XmlCollectionPtr(), static_cast<CXmlCollectionBase*>(spCollection));
        EXPECT_EQ(value.GetXmlObject(), static_cast<CXmlObjectBase*>(spCollection));
        const QvVariant copy(value);
        EXPECT_EQ(CountOf(*spCollection), 3);
    }
    EXPECT_EQ(CountOf(*spCollection), 1);
}

TEST(QvVariant, ObjectsAndCollectionsHaveNoNameAndNoText)
{
    QvVariant value;
    value.SetXmlCollection(nullptr);
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 28", [&] { value.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 28 to convert to string", [&] { value.ToString(nullptr); });
    value.SetXmlObject(nullptr);
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 27", [&] { value.GetType(); });
    QvTest::ExpectThrows<CQvException>(L"Invalid Type 27 to convert to string", [&] { value.ToString(nullptr); });
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
    EXPECT_DEATH(value.GetXmlObject(), "m_type == ItemType_XmlObjectBase,");
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
    value.SetXmlCollection(nullptr);
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
    value.SetXmlObject(nullptr);
    EXPECT_DEATH(value.GetXmlCollection(), "m_type == ItemType_XmlCollection && m_pXmlCol != NULL,");
}

#else

TEST(QvVariant, TheWrongGetterGivesAnEmptyValue)
{
    for (const SKind& held : Kinds())
    {
        const QvVariant value = Make(held);
        EXPECT_EQ(value.GetXmlObject(), nullptr);
        EXPECT_EQ(value.GetXmlCollection(), nullptr);
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
    value.SetXmlObject(nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
    value.SetXmlCollection(nullptr);
    EXPECT_EQ(value.GetXmlCollection(), nullptr);
}

#endif

TEST(QvVariant, TakeStringHandsTheStringOverAndLeavesAnInvalidVariant)
{
    QvVariant value;
    value.SetString(L"a string of some length");
    EXPECT_TRUE(value.TakeString() == L"a string of some length");
    EXPECT_FALSE(value.IsValid());
}
