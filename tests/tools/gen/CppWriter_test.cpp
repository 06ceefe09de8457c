#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/cpp/Sources.h"
#include "tools/quiver-gen/cpp/Writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace quiver_gen::binding;
using namespace quiver_gen::cpp;
using quiver_gen::test::CBindingMaker;
using quiver_gen::test::MakeCircularBinding;
using quiver_gen::test::MakeSampleBinding;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

SWriteOptions MakeOptions()
{
    SWriteOptions options;
    options.schemas = {"order.xsd"};
    return options;
}

std::map<std::string, std::string> Write(const SBinding& binding, const SWriteOptions& options)
{
    std::map<std::string, std::string> texts;
    for (SFile& file : WriteCode(binding, options))
        EXPECT_TRUE(texts.emplace(file.strName, std::move(file.strText)).second) << file.strName << " is there twice";
    return texts;
}

std::vector<std::string> GetNames(const std::map<std::string, std::string>& texts)
{
    std::vector<std::string> names;
    for (const auto& [strName, strText] : texts)
        names.push_back(strName);
    return names;
}

TEST(CppWriter, WritesAPairForEachNamespaceAndOneForRoots)
{
    SBinding binding;
    MakeSampleBinding(binding);
    const auto texts = Write(binding, MakeOptions());
    EXPECT_THAT(GetNames(texts),
                ElementsAre("Common.cpp", "Common.h", "Factory.cpp", "Factory.h", "Order.cpp", "Order.h"));
    EXPECT_THAT(
        texts.at("Order.h"),
        testing::StartsWith(R"(// Written by quiver-gen from order.xsd. What is changed here is lost at the next run.

#pragma once

#include "Common.h"
#include "quiver/generated/Generated.h"

namespace order
{

class CItem;
using CItemCol = QvXmlLib9::CObjectCol<CItem>;
class CAttachment;

struct SSizes
)"));
    EXPECT_THAT(texts.at("Order.h"), HasSubstr("};\n\n} // namespace order\n"));
    EXPECT_THAT(texts.at("Order.h"), HasSubstr("using COrderPairCol = QvXmlLib9::CGroupCol<COrderPair>;\n"));
    EXPECT_THAT(texts.at("Common.h"), HasSubstr("using CPartyCol = QvXmlLib9::CPolymorphicCol<CParty>;\n"));
    EXPECT_THAT(
        texts.at("Order.cpp"),
        testing::StartsWith(R"(// Written by quiver-gen from order.xsd. What is changed here is lost at the next run.

#include "Order.h"

#include "Common.h"

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace order
{

namespace
{
constexpr wchar_t s_lpctNamespace[] = L"urn:example:order";
constexpr wchar_t s_lpctNamespace2[] = L"urn:example:other";
} // namespace

const CSimpleType& SSizes::Type()
)"));
}

TEST(CppWriter, WritesTheFactory)
{
    SBinding binding;
    MakeSampleBinding(binding);
    SWriteOptions options = MakeOptions();
    options.strFactoryNamespace = "accept";
    options.strFactory = "CRoots";
    const auto texts = Write(binding, options);
    EXPECT_EQ(texts.at("Roots.h"),
              R"(// Written by quiver-gen from order.xsd. What is changed here is lost at the next run.

#pragma once

#include "Common.h"
#include "Order.h"
#include "quiver/generated/Generated.h"

namespace accept
{

/// Makes the objects of root elements.
class CRoots : public QvXmlLib9::CClassfactoryBase
{
public:
    /// The object for the root element of a document, by its name and its `xsi:type`; nothing is read into it.
    /// @throws CQvValidationException if the schema has no such element, or its type may not stand there.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> CreateRoot(QvXmlLib9::CXmlElement* pElement);

    /// Whether the schema has a root element of this name.
    static bool IsRoot(const QvXmlLib9::CXmlElement& element);

    /// An empty `order`.
    ///
    /// The whole document.
    static CSmartPtr<order::COrder> Order();

    /// An empty `quantity`.
    static CSmartPtr<QvXmlLib9::CNillable<order::SQuantity>> Quantity();

    /// An empty `note`.
    static CSmartPtr<order::CNote> Note();
};

} // namespace accept
)");
    EXPECT_THAT(texts.at("Roots.cpp"), HasSubstr(R"(constexpr SAlternative s_rowsOfRoots[] = {
    {true, s_lpctNamespace, L"order", &CreateObject<order::COrder>},
    {true, s_lpctNamespace, L"party", nullptr, &acme::common::CParty::Alternatives},
    {true, s_lpctNamespace, L"quantity", &CreateValueRoot<CNillable<order::SQuantity>, s_lpctNamespace>},
    {true, L"", L"note", &CreateForeignRoot<order::CNote, s_lpctNoNamespace>},
};
constexpr SAlternatives s_roots{s_rowsOfRoots, sizeof s_rowsOfRoots / sizeof *s_rowsOfRoots};
} // namespace
)"));
    EXPECT_THAT(texts.at("Roots.cpp"), HasSubstr("    return CreateKnownRoot(pElement, s_roots);\n}\n"));
    EXPECT_THAT(texts.at("Roots.cpp"), HasSubstr("    return QvXmlLib9::IsRoot(element, s_roots);\n}\n"));
    EXPECT_THAT(texts.at("Roots.cpp"),
                HasSubstr("    return new CRootIn<order::CNote, s_lpctNoNamespace>(L\"note\");\n"));
}

TEST(CppWriter, WritesAFactoryWithoutRoots)
{
    const SBinding binding;
    const auto texts = Write(binding, MakeOptions());
    EXPECT_THAT(GetNames(texts), ElementsAre("Factory.cpp", "Factory.h"));
    EXPECT_THAT(texts.at("Factory.cpp"),
                HasSubstr("\nCSmartPtr<CXmlObjectBase> CFactory::CreateRoot(CXmlElement* pElement)\n{\n"
                          "    return CreateKnownRoot(pElement, {nullptr, 0});\n}\n"));
}

TEST(CppWriter, KeepsTheFactoryApartFromTheSchema)
{
    SBinding binding;
    CBindingMaker make(binding);
    make.Namespace("urn:a", "a", "Factory");
    make.Class("CFactory", "factory");
    SWriteOptions options = MakeOptions();
    const auto texts = Write(binding, options);
    EXPECT_THAT(GetNames(texts), ElementsAre("Factory.cpp", "Factory.h", "Factory_2.cpp", "Factory_2.h"));
    EXPECT_THAT(texts.at("Factory.h"), HasSubstr("class CFactory2 : public QvXmlLib9::CClassfactoryBase\n"));

    options.strFactoryNamespace = "a";
    options.strFactory = "CFactory";
    EXPECT_THROW(WriteCode(binding, options), CNameTaken);
    options.strFactoryNamespace = "b";
    EXPECT_THAT(Write(binding, options).at("Factory.h"), HasSubstr("namespace b\n"));
}

TEST(CppWriter, SplitsByTypeOrNotAtAll)
{
    SBinding binding;
    MakeCircularBinding(binding);
    SWriteOptions options = MakeOptions();
    options.eSplit = ESplit::Type;
    EXPECT_THAT(GetNames(Write(binding, options)),
                ElementsAre("Factory.cpp", "Factory.h", "Left.h", "Left_CBase.cpp", "Left_CBase.h", "Left_CTop.cpp",
                            "Left_CTop.h", "Left_SColour.cpp", "Left_SColour.h", "Right.h", "Right_CMiddle.cpp",
                            "Right_CMiddle.h", "Right_SColours.cpp", "Right_SColours.h"));
    options.eSplit = ESplit::None;
    const auto texts = Write(binding, options);
    EXPECT_THAT(GetNames(texts), ElementsAre("Factory.cpp", "Factory.h", "Order.cpp", "Order.h"));
    // Each namespace stands once in the source, whatever the order in the header.
    std::size_t nOpened = 0;
    const std::string& strSource = texts.at("Order.cpp");
    for (std::size_t n = strSource.find("\nnamespace left\n"); n != std::string::npos;
         n = strSource.find("\nnamespace left\n", n + 1))
        ++nOpened;
    EXPECT_EQ(nOpened, 1u);
    options.strStem = "Colours";
    EXPECT_THAT(GetNames(Write(binding, options)), ElementsAre("Colours.cpp", "Colours.h", "Factory.cpp", "Factory.h"));
}

/// A namespace with many classes.
void MakeLargeBinding(SBinding& binding, int nClasses)
{
    CBindingMaker make(binding);
    SSimpleType& text = make.Builtin("xs::String", EValue::String);
    make.Namespace("urn:a", "a", "A");
    for (int n = 0; n < nClasses; ++n)
    {
        SClass& type = make.Class("C" + std::to_string(n), "c");
        for (int nMember = 0; nMember < 10; ++nMember)
            make.Value(type, "M" + std::to_string(nMember), "m", text);
    }
}

TEST(CppWriter, DividesALargeNamespaceIntoParts)
{
    SBinding binding;
    MakeLargeBinding(binding, 300);
    const auto texts = Write(binding, MakeOptions());
    EXPECT_THAT(GetNames(texts), ElementsAre("A.h", "A_1.cpp", "A_2.cpp", "Factory.cpp", "Factory.h"));
    std::string strAll;
    for (const auto& [strName, strText] : texts)
    {
        if (strName.back() == 'p')
        {
            EXPECT_LE(static_cast<std::size_t>(std::count(strText.begin(), strText.end(), '\n')), s_nLinesOfSource + 30)
                << strName;
            strAll += strText;
        }
    }
    for (int n = 0; n < 300; ++n)
        EXPECT_THAT(strAll, HasSubstr("\nvoid C" + std::to_string(n) + "::Describe(")) << n;
}

TEST(CppWriter, WritesAsManyPartsAsAskedFor)
{
    SBinding binding;
    MakeLargeBinding(binding, 7);
    SWriteOptions options = MakeOptions();
    options.eSplit = ESplit::None;
    for (const std::size_t nParts : {2u, 3u, 7u, 9u})
    {
        options.nParts = nParts;
        const auto texts = Write(binding, options);
        EXPECT_EQ(texts.size(), nParts + 3) << nParts;
        std::string strAll;
        for (std::size_t n = 1; n <= nParts; ++n)
            strAll += texts.at("Order_" + std::to_string(n) + ".cpp");
        for (int n = 0; n < 7; ++n)
            EXPECT_THAT(strAll, HasSubstr("\nvoid C" + std::to_string(n) + "::Describe(")) << nParts << ' ' << n;
    }
}

TEST(CppWriter, DefinesNoConstantThatASourceDoesNotUse)
{
    SBinding binding;
    MakeSampleBinding(binding);
    SWriteOptions options = MakeOptions();
    options.eSplit = ESplit::None;
    options.nParts = 5;
    for (const auto& [strName, strText] : Write(binding, options))
    {
        for (std::size_t n = strText.find("constexpr wchar_t s_lpct"); n != std::string::npos;
             n = strText.find("constexpr wchar_t s_lpct", n + 1))
        {
            if (strName.back() == 'h')
                continue;
            const std::size_t nStart = n + std::string_view("constexpr wchar_t ").size();
            const std::string strConstant = strText.substr(nStart, strText.find('[', nStart) - nStart);
            EXPECT_NE(strText.find(strConstant, nStart + 1), std::string::npos) << strName << ' ' << strConstant;
        }
    }
}

TEST(CppWriter, WritesAProgramAndItsBuild)
{
    SBinding binding;
    MakeSampleBinding(binding);
    SWriteOptions options = MakeOptions();
    options.bProgram = true;
    const auto texts = Write(binding, options);
    EXPECT_THAT(texts.at("main.cpp"), HasSubstr("#include \"Factory.h\"\n"));
    EXPECT_THAT(texts.at("main.cpp"),
                HasSubstr("= acme::common::CFactory::CreateRoot(document.GetDocumentElement());"));
    EXPECT_EQ(texts.at("CMakeLists.txt"),
              R"(# Written by quiver-gen from order.xsd. What is changed here is lost at the next run.

cmake_minimum_required(VERSION 3.16)
project(Order LANGUAGES CXX)

if(NOT TARGET Quiver::QvXmlLib9)
    find_package(Quiver REQUIRED)
endif()

add_executable(Order
    main.cpp
    Common.cpp
    Order.cpp
    Factory.cpp)
target_link_libraries(Order PRIVATE Quiver::QvXmlLib9)
if(MINGW)
    # What starts the program calls wmain.
    target_link_options(Order PRIVATE -municode)
endif()
)");
    EXPECT_THAT(texts.at("main.cpp"), HasSubstr("usage: Order IN.xml [OUT.xml]"));
    EXPECT_THAT(texts.at("main.cpp"), HasSubstr("int wmain(int nArguments, wchar_t** ppArguments)"))
        << "file names of all alphabets on Windows";
    options.strProgram = "reader";
    options.strLibrary = "orders";
    EXPECT_THAT(Write(binding, options).at("CMakeLists.txt"), HasSubstr(R"(
add_library(orders STATIC
    Common.cpp
    Order.cpp
    Factory.cpp)
target_include_directories(orders PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
target_link_libraries(orders PUBLIC Quiver::QvXmlLib9)

add_executable(reader
    main.cpp)
target_link_libraries(reader PRIVATE orders)
)"));
    options.bProgram = false;
    EXPECT_THAT(Write(binding, options).at("CMakeLists.txt"), Not(HasSubstr("add_executable")));
}

TEST(CppWriter, NamesTheSchemasItIsMadeFrom)
{
    SWriteOptions options;
    options.schemas = {"a.xsd", "b.xsd", "c.xsd"};
    EXPECT_EQ(PrintTitle(options),
              "// Written by quiver-gen from a.xsd, b.xsd, c.xsd. What is changed here is lost at the next run.\n");
    options.schemas = {"a.xsd", "b.xsd", "c.xsd", "d.xsd", "e.xsd"};
    EXPECT_EQ(PrintTitle(options),
              "// Written by quiver-gen from a.xsd, b.xsd, c.xsd and 2 more. What is changed here is lost at the next "
              "run.\n");
}

TEST(CppWriter, MakesFileNamesOfSchemaNames)
{
    constexpr std::pair<const char*, const char*> s_cases[] = {
        {"order.xsd", "Order"},
        {"camt.053.001.02.xsd", "Camt05300102"},
        {"purchase-order.xsd", "PurchaseOrder"},
        {"BPMN20.xsd", "BPMN20"},
        {"53.xsd", "Schema53"},
        {"\xC3\xA9.xsd", "Schema"},
        {"noEnding", "NoEnding"},
    };
    for (const auto& [lpcSchema, lpcStem] : s_cases)
        EXPECT_EQ(MakeStem(lpcSchema), lpcStem);
}

TEST(CppWriter, WritesTheDocumentationOfANamespaceOnce)
{
    SBinding binding;
    MakeCircularBinding(binding);
    binding.namespaces.front().documentation = {"All about colours."};
    const std::string strHeader = Write(binding, MakeOptions()).at("Left_layer1.h");
    EXPECT_THAT(strHeader, HasSubstr("\n/// All about colours.\nnamespace left\n"));
}

} // namespace
