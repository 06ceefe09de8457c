#include "tests/support/Files.h"
#include "tests/support/Process.h"
#include "tests/support/SampleBinding.h"

#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/Generator.h"
#include "tools/quiver-gen/cpp/Writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

using namespace quiver_gen;
using QvTest::CTempDir;

namespace
{

/// Whether a compiler takes all sources of a folder without a word. What it says goes to the test's output.
bool Compiles(const std::filesystem::path& folder, const std::string& strCompiler)
{
    const std::string strFolder = QvTest::QuoteForShell(folder);
    return QvTest::RunByShell(strCompiler +
                              " -fsyntax-only -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror "
                              "-I'" QUIVER_SOURCE_DIR "' -I" +
                              strFolder + ' ' + strFolder + "/*.cpp") == 0;
}

/// How a sample is written, and what compiles it.
struct SCompileCase
{
    const char* lpcName;
    void (*pfnMake)(binding::SBinding&);
    cpp::ESplit eSplit;
    bool bUtf8;
    const char* lpcCompiler;
};

void PrintTo(const SCompileCase& one, std::ostream* pOut)
{
    *pOut << one.lpcName;
}

class CppCompiles : public testing::TestWithParam<SCompileCase>
{
};

TEST_P(CppCompiles, WithoutAWarning)
{
    const SCompileCase& one = GetParam();
    binding::SBinding binding;
    one.pfnMake(binding);
    cpp::SWriteOptions options;
    options.schemas = {"sample.xsd"};
    options.eSplit = one.eSplit;
    options.nParts = one.eSplit == cpp::ESplit::None ? 2 : 1;
    options.bUtf8 = one.bUtf8;
    options.bProgram = true;
    const CTempDir dir;
    std::vector<cpp::SFile> files = cpp::WriteCode(binding, options);
    for (cpp::SFile& file : files)
        file.strName = dir.PathOf(file.strName).u8string();
    WriteFiles(files);
    EXPECT_TRUE(Compiles(dir.PathOf(""), one.lpcCompiler));
}

constexpr const char* s_lpc17 = "'" QUIVER_CXX "' -std=c++17";
constexpr const char* s_lpc20 = "'" QUIVER_CXX "' -std=c++20";

INSTANTIATE_TEST_SUITE_P(
    Samples, CppCompiles,
    testing::Values(SCompileCase{"Namespaces17", test::MakeSampleBinding, cpp::ESplit::Namespace, false, s_lpc17},
                    SCompileCase{"Utf8InOneHeader20", test::MakeSampleBinding, cpp::ESplit::None, true, s_lpc20},
                    SCompileCase{"CircularNamespaces20", test::MakeCircularBinding, cpp::ESplit::Namespace, false,
                                 s_lpc20},
                    SCompileCase{"CircularTypes17", test::MakeCircularBinding, cpp::ESplit::Type, false, s_lpc17},
                    SCompileCase{"OtherCompilerNamespaces20", test::MakeSampleBinding, cpp::ESplit::Namespace, false,
                                 QUIVER_OTHER_CXX " -std=c++20"},
                    SCompileCase{"OtherCompilerUtf8Types17", test::MakeSampleBinding, cpp::ESplit::Type, true,
                                 QUIVER_OTHER_CXX " -std=c++17"}),
    [](const testing::TestParamInfo<SCompileCase>& one) { return std::string(one.param.lpcName); });

TEST(CppCompilesSchemas, OfTheExamplesWithoutAWarning)
{
    for (const char* const lpcSchema : {"purchase_order/order.xsd", "invoice/invoice.xsd", "open_content/settings.xsd"})
    {
        const CTempDir dir;
        std::ostringstream out;
        ASSERT_EQ(RunGenerator({std::string(QUIVER_SOURCE_DIR "/examples/") + lpcSchema, "-o",
                                dir.PathOf("").u8string(), "--split", "none", "--program"},
                               out, std::cerr),
                  0);
        EXPECT_TRUE(Compiles(dir.PathOf(""), s_lpc17)) << lpcSchema;
    }
}

} // namespace
