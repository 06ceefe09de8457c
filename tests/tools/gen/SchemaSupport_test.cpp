#include "tests/support/Files.h"
#include "tools/quiver-gen/binding/Support.h"
#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Rules.h"
#include "tools/quiver-gen/schema/Text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <set>
#include <string>

using namespace QvTest;
using namespace quiver_gen::binding;
using quiver_gen::schema::SplitList;

/// @file
/// The page docs/schema_support.md, and the tables that it is printed from.

namespace
{

const std::filesystem::path s_source = QUIVER_SOURCE_DIR;

std::set<std::string> SetOf(std::string_view svNames)
{
    std::set<std::string> names;
    for (const std::string_view svName : SplitList(svNames))
        names.emplace(svName);
    return names;
}

const SSupportSection& GetSection(std::string_view svConstruct)
{
    for (const SSupportSection& section : GetSupport())
        if (section.svConstruct == svConstruct)
            return section;
    throw std::runtime_error("no such section");
}

/// All tests as `Suite.Name`.
std::set<std::string> FindTests()
{
    static const std::regex s_test("TEST(?:_F|_P)?\\((\\w+),\\s*(\\w+)\\)");
    std::set<std::string> tests;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(s_source / "tests"))
    {
        if (entry.path().extension() != ".cpp")
            continue;
        const std::string strText = ReadFileBytes(entry.path());
        for (std::sregex_iterator it(strText.begin(), strText.end(), s_test), end; it != end; ++it)
            tests.insert((*it)[1].str() + '.' + (*it)[2].str());
    }
    return tests;
}

} // namespace

TEST(SchemaSupport, IsThePageOfTheDocumentation)
{
    const std::filesystem::path page = s_source / "docs" / "schema_support.md";
    if (std::getenv("QUIVER_RENEW_SUPPORT") != nullptr)
        WriteFileBytes(page, PrintSupport());
    EXPECT_EQ(ReadFileBytes(page), PrintSupport()) << "scripts/renew_support.sh writes the page anew";
}

TEST(SchemaSupport, HasEachElementAndAttributeOfTheLanguageOnce)
{
    std::set<quiver_gen::schema::CConstruct> described;
    for (const SSupportSection& section : GetSupport())
    {
        if (section.svConstruct != "Element")
            continue;
        for (const SSupport& row : section)
            for (const std::string_view svElement : SplitList(row.svConstructs))
            {
                if (row.svAttributes.empty())
                    described.insert({std::string(svElement), {}});
                for (const std::string_view svAttribute : SplitList(row.svAttributes))
                    EXPECT_TRUE(described.insert({std::string(svElement), std::string(svAttribute)}).second)
                        << svElement << ' ' << svAttribute;
            }
    }
    for (const auto& [strElement, strAttribute] : quiver_gen::schema::GetLanguage())
        EXPECT_EQ(described.erase({strElement, strAttribute}), 1u) << strElement << ' ' << strAttribute;
    for (const auto& [strElement, strAttribute] : described)
        ADD_FAILURE() << "not of the language: " << strElement << ' ' << strAttribute;
}

TEST(SchemaSupport, HasEachBuiltInType)
{
    std::set<std::string> described;
    for (const SSupport& row : GetSection("Type"))
        described.merge(SetOf(row.svConstructs));
    std::set<std::string> types;
    for (std::size_t n = 1; n < quiver_gen::schema::s_nBuiltins; ++n)
        types.emplace(quiver_gen::schema::GetBuiltinName(static_cast<quiver_gen::schema::EBuiltin>(n)));
    EXPECT_EQ(described, types);
}

TEST(SchemaSupport, NamesEachWarning)
{
    std::set<std::string> named;
    for (const SSupportSection& section : GetSupport())
        for (const SSupport& row : section)
            named.merge(SetOf(row.svWarnings));
    std::set<std::string> warnings;
    for (const SWarningKind& kind : s_warnings)
        warnings.emplace(kind.svId);
    EXPECT_EQ(named, warnings);
}

TEST(SchemaSupport, NamesTestsAndConstructsThatAreThere)
{
    const std::set<std::string> tests = FindTests();
    for (const SSupportSection& section : GetSupport())
        for (const SSupport& row : section)
        {
            EXPECT_NE(row.svProofs, "") << row.svConstructs;
            for (const std::string& strProof : SetOf(row.svProofs))
            {
                const bool bThere =
                    strProof.find('.') != std::string::npos
                        ? tests.count(strProof) == 1
                        : std::filesystem::exists(s_source / "tests/tools/gen/constructs" / (strProof + ".xsd"));
                EXPECT_TRUE(bThere) << strProof;
            }
        }
}
