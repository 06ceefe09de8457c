#include "tests/support/Files.h"
#include "tools/quiver-gen/Generator.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace QvTest;

/// @file
/// Generated code as it is read. Where it is meant to change, scripts/renew_golden.sh writes the files anew.

namespace
{

struct SGolden
{
    std::string strName;
    std::vector<std::string> options;
};

const std::vector<SGolden>& GetGoldens()
{
    static const std::vector<SGolden> s_goldens = {
        {"order", {}},
        {"shapes", {"--split", "type"}},
        {"mail", {"--split", "none", "--text", "utf8", "--namespace", "=post", "--factory", "post::CDocuments"}}};
    return s_goldens;
}

void Generate(const SGolden& golden, const std::string& strFolder)
{
    std::vector<std::string> arguments = {std::string(QUIVER_GOLDEN) + '/' + golden.strName + ".xsd", "-o", strFolder};
    arguments.insert(arguments.end(), golden.options.begin(), golden.options.end());
    std::ostringstream out;
    std::ostringstream err;
    ASSERT_EQ(quiver_gen::RunGenerator(arguments, out, err), 0) << err.str();
    ASSERT_EQ(out.str(), "");
}

using CFiles = std::map<std::string, std::string>;

/// @param strEnd is left out of the names.
CFiles ReadFolder(const std::filesystem::path& folder, const std::string& strEnd = {})
{
    CFiles files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        const std::string strName = entry.path().filename().string();
        files[strName.substr(0, strName.size() - strEnd.size())] = ReadFileBytes(entry.path());
    }
    return files;
}

std::map<std::string, std::filesystem::file_time_type> GetTimes(const std::filesystem::path& folder)
{
    std::map<std::string, std::filesystem::file_time_type> times;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        times[entry.path().filename().string()] = entry.last_write_time();
    return times;
}

class GeneratedCode : public testing::TestWithParam<SGolden>
{
protected:
    CTempDir m_dir;
};

TEST_P(GeneratedCode, IsThatOfTheGoldenFiles)
{
    Generate(GetParam(), m_dir.PathOf("out").u8string());
    const CFiles expected = ReadFolder(std::filesystem::path(QUIVER_GOLDEN) / GetParam().strName, ".txt");
    const CFiles written = ReadFolder(m_dir.PathOf("out"));
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(written.size(), expected.size());
    for (const auto& [strName, strText] : expected)
    {
        ASSERT_EQ(written.count(strName), 1u) << strName;
        EXPECT_EQ(written.at(strName), strText) << strName << "; scripts/renew_golden.sh writes the files anew";
    }
}

TEST_P(GeneratedCode, IsTheSameEachTime)
{
    Generate(GetParam(), m_dir.PathOf("one").u8string());
    Generate(GetParam(), m_dir.PathOf("two").u8string());
    EXPECT_EQ(ReadFolder(m_dir.PathOf("one")), ReadFolder(m_dir.PathOf("two")));
}

TEST_P(GeneratedCode, IsNotWrittenWhereNothingChanged)
{
    const std::string strFolder = m_dir.PathOf("out").u8string();
    Generate(GetParam(), strFolder);
    const auto past = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    for (const auto& entry : std::filesystem::directory_iterator(strFolder))
        std::filesystem::last_write_time(entry.path(), past);
    const auto times = GetTimes(strFolder);
    const std::string strChanged = times.begin()->first;
    WriteFileBytes(m_dir.PathOf("out") / strChanged, "changed");
    Generate(GetParam(), strFolder);
    for (const auto& [strName, time] : GetTimes(strFolder))
        EXPECT_EQ(time == times.at(strName), strName != strChanged) << strName;
}

INSTANTIATE_TEST_SUITE_P(Schemas, GeneratedCode, testing::ValuesIn(GetGoldens()),
                         [](const auto& golden) { return golden.param.strName; });

} // namespace
