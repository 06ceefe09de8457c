#include "tools/quiver-gen/schema/Values.h"

#include <gtest/gtest.h>

using namespace quiver_gen::schema;

namespace
{

using E = EBuiltin;

TEST(SchemaValues, AreWrittenAsTheirTypesAre)
{
    struct SForms
    {
        E eType;
        std::vector<std::string> right;
        std::vector<std::string> wrong;
    };
    const SForms forms[] = {
        {E::Boolean, {"true", "0"}, {"", "TRUE", "yes"}},
        {E::Decimal, {"0", "-1.", "+.5", "0012.30"}, {"", ".", "1e3", "1,5", "- 1", "--1"}},
        {E::Integer, {"-0", "+12"}, {"", "1.0", "1.", "x"}},
        {E::Double, {"1", "-1.5E-3", "INF", "-INF", "NaN", "1e400"}, {"", "+INF", "inf", "1e", "0x1", "1e1.5"}},
        {E::Duration,
         {"P1Y", "-P1Y2M3DT4H5M6.7S", "PT1M", "P1M", "PT0.5S", "P3D"},
         {"", "P", "PT", "1Y", "P1YT", "P1.5Y", "P1M1Y", "PT.5S", "PT1.S", "P1S", "PT1H1H"}},
        {E::DateTime,
         {"2000-02-29T24:00:00", "-0044-03-15T12:00:00.25Z", "12000-01-01T00:00:00+14:00"},
         {"1999-02-29T00:00:00", "0000-01-01T00:00:00", "2000-01-01", "2000-01-01T24:00:01",
          "2000-01-01T00:00:00+14:01", "02000-01-01T00:00:00", "2000-01-01T00:00:60", "2000-01-01T00:00:00."}},
        {E::Time, {"00:00:00", "23:59:59.999-05:00"}, {"1:00:00", "00:00", "25:00:00"}},
        {E::Date, {"2000-02-29", "2000-12-31Z"}, {"2000-13-01", "2000-00-01", "2000-04-31", "00-01-01", "2000-1-1"}},
        {E::GYearMonth, {"2000-02", "-2000-12Z"}, {"2000", "2000-13", "2000-02-01"}},
        {E::GYear, {"2000", "-0001", "2000+01:00"}, {"200", "0000", "2000-"}},
        {E::GMonthDay, {"--02-29", "--12-31Z"}, {"--02-30", "-02-29", "02-29", "--13-01"}},
        {E::GDay, {"---31", "---01Z"}, {"---32", "--31", "31"}},
        {E::GMonth, {"--12", "--01Z"}, {"--13", "-12", "12", "--12--"}},
        {E::HexBinary, {"", "0aFF"}, {"0", "0g", "0 a"}},
        {E::Base64Binary, {"", "QUI=", "QQ==", "Q U J D"}, {"Q", "QQ=", "QQ=A", "====", "Q?=="}},
        {E::AnyURI, {"", "http://a b"}, {}},
        {E::QName, {"a", "p:a", "xs:b"}, {"", ":a", "p:", "q:a", "1", "p:a:b"}},
        {E::Language, {"de", "en-GB-x1"}, {"", "1e", "en-", "-en", "toolonglang", "en-123456789"}},
        {E::NMTOKEN, {"-1", "a:b"}, {"", "a b", "a/b"}},
        {E::Name, {"a", ":b", "\xC3\xA4"}, {"", "1", "a b"}},
        {E::NCName, {"_a-1.b"}, {"", "a:b", "-a"}},
    };
    const SNamespaceScope scope{nullptr, {{"p", "u"}, {"xs", "v"}}};
    for (const SForms& row : forms)
    {
        for (const std::string& strText : row.right)
            EXPECT_TRUE(IsLexical(row.eType, strText, &scope)) << GetBuiltinName(row.eType) << " '" << strText << "'";
        for (const std::string& strText : row.wrong)
            EXPECT_FALSE(IsLexical(row.eType, strText, &scope)) << GetBuiltinName(row.eType) << " '" << strText << "'";
    }
}

TEST(SchemaValues, AreComparedAsTheirTypesAre)
{
    struct SPair
    {
        E eType;
        const char* lpctA;
        const char* lpctB;
        EComparison eResult;
    };
    const SPair pairs[] = {
        {E::Decimal, "-0", "0.00", EComparison::Equal},
        {E::Decimal, "10", "9.99", EComparison::Greater},
        {E::Decimal, "-10", "-9", EComparison::Less},
        {E::Decimal, "-1", "1", EComparison::Less},
        {E::Decimal, "1.5", "1.49", EComparison::Greater},
        {E::Decimal, "x", "1", EComparison::Unknown},
        {E::Double, "1e3", "1000", EComparison::Equal},
        {E::Double, "-INF", "-1e308", EComparison::Less},
        {E::Double, "+1e-400", "0", EComparison::Equal},
        {E::Double, "NaN", "NaN", EComparison::Unknown},
        {E::Float, "16777217", "16777216", EComparison::Equal},
        {E::Date, "2000-01-01", "1999-12-31", EComparison::Greater},
        {E::Date, "2000-01-01Z", "2000-01-01+01:00", EComparison::Greater},
        {E::Date, "2000-01-01Z", "2000-01-01", EComparison::Unknown},
        {E::Date, "2000-01-01Z", "2000-01-03", EComparison::Less},
        {E::DateTime, "2000-01-01T24:00:00", "2000-01-02T00:00:00", EComparison::Equal},
        {E::DateTime, "2000-01-01T00:00:00.5", "2000-01-01T00:00:00.45", EComparison::Greater},
        {E::GYear, "-0002", "-0001", EComparison::Less},
        {E::GMonthDay, "--02-29", "--03-01", EComparison::Less},
        {E::Duration, "P1Y", "P12M", EComparison::Equal},
        {E::Duration, "P1M", "P30D", EComparison::Unknown},
        {E::Duration, "P1M", "P27D", EComparison::Greater},
        {E::Duration, "-P1D", "PT1S", EComparison::Less},
        {E::Duration, "PT0.5S", "PT0.25S", EComparison::Greater},
    };
    for (const SPair& row : pairs)
        EXPECT_EQ(static_cast<int>(CompareValues(row.eType, row.lpctA, row.lpctB)), static_cast<int>(row.eResult))
            << GetBuiltinName(row.eType) << " " << row.lpctA << " and " << row.lpctB;
}

TEST(SchemaValues, AreTooLargeOrTooSmallByAllTheirDigits)
{
    const std::string strZeros(400, '0');
    for (const E eType : {E::Float, E::Double})
    {
        EXPECT_TRUE(CompareValues(eType, "1" + strZeros + "e-1", "INF") == EComparison::Equal);
        EXPECT_TRUE(CompareValues(eType, "-1" + strZeros + "e-1", "-INF") == EComparison::Equal);
        EXPECT_TRUE(CompareValues(eType, "0." + strZeros + "1", "0") == EComparison::Equal);
        EXPECT_TRUE(CompareValues(eType, "0." + strZeros + "1e5", "-0") == EComparison::Equal);
    }
}

TEST(SchemaValues, HaveOneKeyForEachValue)
{
    const SNamespaceScope scope{nullptr, {{"p", "u"}, {"q", "u"}, {"r", "v"}}};
    const auto isSame = [&](E eType, const char* lpctA, const char* lpctB)
    {
        return GetValueKey(eType, lpctA, &scope) == GetValueKey(eType, lpctB, &scope);
    };
    EXPECT_TRUE(isSame(E::Decimal, "+1.50", "01.5"));
    EXPECT_FALSE(isSame(E::Decimal, "1.5", "15"));
    EXPECT_TRUE(isSame(E::Boolean, "true", "1"));
    EXPECT_TRUE(isSame(E::Double, "-0", "0.0"));
    EXPECT_TRUE(isSame(E::HexBinary, "0a", "0A"));
    EXPECT_TRUE(isSame(E::Base64Binary, "QU JD", "QUJD"));
    EXPECT_TRUE(isSame(E::QName, "p:a", "q:a"));
    EXPECT_FALSE(isSame(E::QName, "p:a", "r:a"));
    EXPECT_TRUE(isSame(E::DateTime, "2000-01-01T00:00:00Z", "2000-01-01T01:00:00.0+01:00"));
    EXPECT_FALSE(isSame(E::DateTime, "2000-01-01T00:00:00Z", "2000-01-01T00:00:00"));
    EXPECT_TRUE(isSame(E::Duration, "P1Y", "P12M"));
    EXPECT_FALSE(isSame(E::String, "a", "A"));
}

TEST(SchemaValues, HaveLengths)
{
    EXPECT_EQ(GetValueLength(E::String, "\xC3\xA4\xF0\x9F\x98\x80x"), 3u);
    EXPECT_EQ(GetValueLength(E::HexBinary, "0aFF"), 2u);
    EXPECT_EQ(GetValueLength(E::Base64Binary, "QUI="), 2u);
    EXPECT_EQ(CountDigits("-0012.340").nTotal, 4u);
    EXPECT_EQ(CountDigits("-0012.340").nFraction, 2u);
    EXPECT_EQ(CountDigits("0").nTotal, 1u);
}

} // namespace
