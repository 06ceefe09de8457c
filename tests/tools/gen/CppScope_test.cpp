#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/cpp/Scope.h"
#include "tools/quiver-gen/cpp/Uris.h"

#include <gtest/gtest.h>

using namespace quiver_gen::binding;
using namespace quiver_gen::cpp;
using quiver_gen::test::CBindingMaker;

namespace
{

TEST(CppScope, QualifiesTheLibraryInHeadersOnly)
{
    const SBinding binding;
    const CNameTable names(binding);
    EXPECT_EQ(CScope(names, "order", false).Library("CElement"), "QvXmlLib9::CElement");
    EXPECT_EQ(CScope(names, "order", true).Library("CElement"), "CElement");
    EXPECT_EQ(CScope(names, "order", true).Library("xs::Int"), "xs::Int");
    EXPECT_EQ(CScope(names, "order", true).Pointer("CItem"), "CSmartPtr<CItem>");
}

TEST(CppScope, QualifiesWhatATypeOfTheSchemaHides)
{
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "a", "A");
    make.Class("CElement", "element");
    make.Class("CSmartPtr", "p");
    make.Namespace("urn:b", "a::b", "B");
    make.Namespace("urn:xs", "xs", "Xs");
    const CNameTable names(binding);
    for (const char* const lpcNamespace : {"a", "a::b"})
    {
        const CScope scope(names, lpcNamespace, true);
        EXPECT_EQ(scope.Library("CElement"), "QvXmlLib9::CElement") << lpcNamespace;
        EXPECT_EQ(scope.Library("CDecimal"), "CDecimal") << lpcNamespace;
        EXPECT_EQ(scope.Pointer("T"), "::CSmartPtr<T>") << lpcNamespace;
        EXPECT_EQ(scope.Library("xs::Int"), "QvXmlLib9::xs::Int") << lpcNamespace;
    }
    EXPECT_EQ(CScope(names, "c", true).Library("CElement"), "CElement");
}

TEST(CppScope, SaysNamesOfOtherNamespacesSoThatTheyAreFound)
{
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "acme::order", "A");
    make.Namespace("urn:b", "order", "B");
    make.Namespace("urn:c", "acme", "C");
    make.Namespace("urn:d", "xs", "D");
    const CNameTable names(binding);
    const CScope scope(names, "acme", false);
    EXPECT_EQ(scope.Name("acme", "CItem"), "CItem");
    EXPECT_EQ(scope.Name("acme::order", "CItem"), "acme::order::CItem");
    EXPECT_EQ(scope.Name("order", "CItem"), "::order::CItem") << "acme::order is found first";
    EXPECT_EQ(scope.Name("", "CItem"), "::CItem");
    EXPECT_EQ(CScope(names, "order", false).Name("acme::order", "CItem"), "acme::order::CItem");
    EXPECT_EQ(CScope(names, "order", true).Name("xs", "CItem"), "::xs::CItem") << "the library has one too";
}

TEST(CppScope, KnowsHowEachValueIsHeld)
{
    struct SCase
    {
        EValue eValue;
        const char* lpcType;
        bool bScalar;
    };
    constexpr SCase s_cases[] = {
        {EValue::String, "std::wstring", false},
        {EValue::Boolean, "bool", true},
        {EValue::I1, "signed char", true},
        {EValue::I2, "short", true},
        {EValue::I4, "int", true},
        {EValue::I8, "long long", true},
        {EValue::UI1, "unsigned char", true},
        {EValue::UI2, "unsigned short", true},
        {EValue::UI4, "unsigned int", true},
        {EValue::UI8, "unsigned long long", true},
        {EValue::R4, "float", true},
        {EValue::R8, "double", true},
        {EValue::Decimal, "QvXmlLib9::CDecimal", false},
        {EValue::Integer, "QvXmlLib9::CBigInteger", false},
        {EValue::DateTime, "QvXmlLib9::CDateTime", false},
        {EValue::Duration, "QvXmlLib9::CDateTimeSpan", false},
        {EValue::Binary, "QvXmlLib9::CBinaryData", false},
    };
    SBinding binding;
    const CNameTable names(binding);
    const CScope scope(names, "a", false);
    for (const SCase& one : s_cases)
    {
        SSimpleType type;
        type.eValue = one.eValue;
        EXPECT_EQ(scope.Value(type), one.lpcType);
        EXPECT_EQ(IsScalar(type), one.bScalar) << one.lpcType;
        SSimpleType list;
        list.eValue = EValue::List;
        list.pItem = &type;
        EXPECT_EQ(scope.Value(list), "std::vector<" + std::string(one.lpcType) + '>');
        EXPECT_FALSE(IsScalar(list));
        EXPECT_EQ(HoldsText(list), one.eValue == EValue::String);
    }
}

TEST(CppUris, DefinesTheNamespacesThatAreUsed)
{
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "a", "A");
    make.Namespace("urn:b", "b", "B-2");
    CUris uris(binding, "urn:a");
    EXPECT_EQ(uris.Define(), "");
    EXPECT_EQ(uris.Use(""), "L\"\"");
    EXPECT_EQ(uris.Use("urn:b"), "s_lpctNamespace_B_2");
    EXPECT_EQ(uris.Use("urn:x"), "s_lpctNamespace2");
    EXPECT_EQ(uris.Use("urn:y"), "s_lpctNamespace3");
    EXPECT_EQ(uris.Use("urn:a"), "s_lpctNamespace");
    EXPECT_EQ(uris.Use("urn:x"), "s_lpctNamespace2");
    EXPECT_EQ(uris.UseConstant(""), "s_lpctNoNamespace");
    EXPECT_EQ(uris.Define(), "namespace\n{\n"
                             "constexpr wchar_t s_lpctNamespace_B_2[] = L\"urn:b\";\n"
                             "constexpr wchar_t s_lpctNamespace2[] = L\"urn:x\";\n"
                             "constexpr wchar_t s_lpctNamespace3[] = L\"urn:y\";\n"
                             "constexpr wchar_t s_lpctNamespace[] = L\"urn:a\";\n"
                             "constexpr wchar_t s_lpctNoNamespace[] = L\"\";\n"
                             "} // namespace\n");
}

} // namespace
