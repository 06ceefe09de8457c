#include "quiver/generated/NamedType.h"

#include "quiver/generated/BuiltinTypes.h"

#include <gtest/gtest.h>

using namespace QvXmlLib9;

namespace
{

constexpr wchar_t s_lpctXsd[] = L"http://www.w3.org/2001/XMLSchema";

constexpr SNamedType s_rows[] = {{L"urn:a", L"Code", &xs::Token::Type}, {L"", L"Code", &xs::Int::Type}};
constexpr SNamedTypes s_types{s_rows, 2};

} // namespace

TEST(NamedType, IsFoundByItsName)
{
    EXPECT_EQ(FindNamedType(s_types, L"urn:a", L"Code"), &s_rows[0]);
    EXPECT_EQ(FindNamedType(s_types, L"", L"Code"), &s_rows[1]);
    EXPECT_EQ(FindNamedType(s_types, L"urn:b", L"Code"), nullptr);
    EXPECT_EQ(FindNamedType(s_types, L"urn:a", L"code"), nullptr);
    EXPECT_EQ(FindNamedType(s_types, s_lpctXsd, L"Code"), nullptr);
    EXPECT_EQ(FindNamedType(NoNamedTypes(), L"urn:a", L"Code"), nullptr);
}

TEST(NamedType, MayBeBuiltIn)
{
    const struct
    {
        const wchar_t* lpctName;
        const CSimpleType& type;
    } cases[] = {{L"anySimpleType", xs::AnySimpleType::Type()},
                 {L"gMonthDay", xs::GMonthDay::Type()},
                 {L"NMTOKENS", xs::NMTOKENS::Type()},
                 {L"QName", xs::QName::Type()},
                 {L"integer", xs::Integer::Type()},
                 {L"ID", xs::ID::Type()}};
    for (const auto& c : cases)
    {
        const SNamedType* const pType = FindNamedType(NoNamedTypes(), s_lpctXsd, c.lpctName);
        ASSERT_NE(pType, nullptr) << c.lpctName;
        EXPECT_EQ(&pType->GetType(), &c.type) << c.lpctName;
    }
    EXPECT_EQ(FindNamedType(NoNamedTypes(), s_lpctXsd, L"anyType"), nullptr) << "no simple type";
}
