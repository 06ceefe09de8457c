#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/cpp/SimpleTypes.h"

#include <gtest/gtest.h>

using namespace quiver_gen::binding;
using namespace quiver_gen::cpp;
using quiver_gen::test::CBindingMaker;

namespace
{

/// A namespace `order` with a few built-in types.
class CppSimpleTypes : public testing::Test
{
protected:
    CppSimpleTypes()
    {
        m_make.Namespace("urn:order", "order", "Order");
        m_pInt = &m_make.Builtin("xs::Int", EValue::I4);
        m_pToken = &m_make.Builtin("xs::Token", EValue::String);
    }

    std::string Declare(const SSimpleType& type) const
    {
        return DeclareSimpleType(type, CScope(CNameTable(m_binding), "order", false));
    }

    std::string Define(const SSimpleType& type) const
    {
        return DefineSimpleType(type, CScope(CNameTable(m_binding), "order", true));
    }

    SBinding m_binding;
    CBindingMaker m_make{m_binding};
    SSimpleType* m_pInt;
    SSimpleType* m_pToken;
};

TEST_F(CppSimpleTypes, PrintsAnAtomicType)
{
    SSimpleType& type = m_make.Type("SSku", *m_pToken);
    type.documentation = {"A stock keeping unit."};
    type.strPattern = "(?:\\d{3}-[A-Z]{2})\\z";
    type.nMaxLength = 6;
    EXPECT_EQ(Declare(type), R"(/// A stock keeping unit.
struct SSku
{
    using Value = std::wstring;
    static const QvXmlLib9::CSimpleType& Type();
};
)");
    EXPECT_EQ(Define(type), R"(const CSimpleType& SSku::Type()
{
    static constexpr CSimpleType s_type =
        CSimpleType(xs::Token::s_type).Pattern(L"(?:\\d{3}-[A-Z]{2})\\z").MaxLength(6);
    return s_type;
}
)");
}

TEST_F(CppSimpleTypes, PrintsEachFacetAndBreaksLongChains)
{
    SSimpleType& type = m_make.Type("SAll", *m_pInt);
    type.nLength = 1;
    type.nMinLength = 0;
    type.nMaxLength = 3;
    type.nTotalDigits = 4;
    type.nFractionDigits = 0;
    type.strMinInclusive = "5";
    type.strMinExclusive = "6";
    type.strMaxInclusive = "7";
    type.strMaxExclusive = "8";
    type.eWhiteSpace = SSimpleType::EWhiteSpace::Replace;
    EXPECT_EQ(Define(type), R"(const CSimpleType& SAll::Type()
{
    static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type)
                                              .Length(1)
                                              .MinLength(0)
                                              .MaxLength(3)
                                              .MinInclusive(L"5")
                                              .MinExclusive(L"6")
                                              .MaxInclusive(L"7")
                                              .MaxExclusive(L"8")
                                              .TotalDigits(4)
                                              .FractionDigits(0)
                                              .WhiteSpace(CWhitespaceUtils::WhitespaceRule_Replace);
    return s_type;
}
)");
}

TEST_F(CppSimpleTypes, SaysEveryRuleOfWhiteSpace)
{
    constexpr std::pair<SSimpleType::EWhiteSpace, const char*> s_cases[] = {
        {SSimpleType::EWhiteSpace::Preserve, "WhitespaceRule_None)"},
        {SSimpleType::EWhiteSpace::Replace, "WhitespaceRule_Replace)"},
        {SSimpleType::EWhiteSpace::Collapse, "WhitespaceRule_Collapse)"}};
    SSimpleType& type = m_make.Type("SText", *m_pToken);
    EXPECT_EQ(Define(type).find("WhiteSpace"), std::string::npos);
    for (const auto& [eRule, lpcExpected] : s_cases)
    {
        type.eWhiteSpace = eRule;
        EXPECT_NE(Define(type).find(lpcExpected), std::string::npos) << lpcExpected;
    }
}

TEST_F(CppSimpleTypes, BreaksALongPattern)
{
    SSimpleType& type = m_make.Type("SLong", *m_pToken);
    type.strPattern = std::string(100, 'a');
    EXPECT_EQ(Define(type), R"(const CSimpleType& SLong::Type()
{
    static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type)
                                              .Pattern(L"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
                                                       L"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa");
    return s_type;
}
)");
}

TEST_F(CppSimpleTypes, PrintsAnEnumerationWithItsTexts)
{
    SSimpleType& type = m_make.Type("SColour", *m_pToken);
    type.eValue = EValue::Enumeration;
    type.strEnumName = "EColour";
    type.documentation = {"What it looks like."};
    type.enumerators = {{"red", "Red", {"As blood."}}, {"dark \"blue\"", "DarkBlue", {}}, {"", "Empty", {"Like air."}}};
    EXPECT_EQ(Declare(type), R"(/// What it looks like.
enum class EColour : int
{
    Red,  ///< As blood.
    DarkBlue,
    Empty ///< Like air.
};

struct SColour
{
    using Value = EColour;
    static const QvXmlLib9::CSimpleType& Type();
};
)");
    EXPECT_EQ(Define(type), R"(const CSimpleType& SColour::Type()
{
    static constexpr const wchar_t* s_values[] = {L"red", L"dark \"blue\"", L""};
    static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).Values(s_values);
    return s_type;
}
)");
}

TEST_F(CppSimpleTypes, PutsLongDocumentationOfValuesAboveThem)
{
    SSimpleType& type = m_make.Type("SColour", *m_pToken);
    type.eValue = EValue::Enumeration;
    type.strEnumName = "EColour";
    type.enumerators = {{"red", "Red", {"First.", "Second."}}, {"blue", "Blue", {}}};
    EXPECT_EQ(Declare(type).substr(0, Declare(type).find("struct")), R"(enum class EColour : int
{
    /// First.
    ///
    /// Second.
    Red,
    Blue
};

)");
}

TEST_F(CppSimpleTypes, FillsLinesWithTheTextsOfALongEnumeration)
{
    SSimpleType& type = m_make.Type("SNumber", *m_pInt);
    for (int n = 0; n < 30; ++n)
        type.enumerators.push_back({std::to_string(1000 + n), "", {}});
    EXPECT_EQ(Define(type), R"(const CSimpleType& SNumber::Type()
{
    static constexpr const wchar_t* s_values[] = {
        L"1000", L"1001", L"1002", L"1003", L"1004", L"1005", L"1006", L"1007", L"1008", L"1009", L"1010", L"1011",
        L"1012", L"1013", L"1014", L"1015", L"1016", L"1017", L"1018", L"1019", L"1020", L"1021", L"1022", L"1023",
        L"1024", L"1025", L"1026", L"1027", L"1028", L"1029"};
    static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type).Values(s_values);
    return s_type;
}
)");
}

TEST_F(CppSimpleTypes, PrintsListsAndUnions)
{
    SSimpleType& list = m_make.List("SSizes", *m_pInt);
    list.nMinLength = 1;
    EXPECT_EQ(Declare(list), R"(struct SSizes
{
    using Value = std::vector<int>;
    using Item = QvXmlLib9::xs::Int;
    static const QvXmlLib9::CSimpleType& Type();
};
)");
    EXPECT_EQ(Define(list), R"(const CSimpleType& SSizes::Type()
{
    static constexpr CSimpleType s_type = CSimpleType::ListOf(&xs::Int::Type).MinLength(1);
    return s_type;
}
)");
    SSimpleType& either = m_make.Type("SEither", *m_pToken);
    either.memberTypes = {m_pInt, &list};
    EXPECT_EQ(Define(either), R"(const CSimpleType& SEither::Type()
{
    static constexpr PfnSimpleType s_members[] = {&xs::Int::Type, &SSizes::Type};
    static constexpr CSimpleType s_type = CSimpleType::UnionOf(s_members);
    return s_type;
}
)");
}

} // namespace
