#include "tests/support/Files.h"
#include "tests/support/Process.h"

#include "tools/quiver-gen/Generator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <sstream>

using namespace quiver_gen;
using QvTest::CTempDir;
using QvTest::ReadFileBytes;
using QvTest::WriteFileBytes;
using testing::HasSubstr;

namespace
{

namespace fs = std::filesystem;

constexpr const char* s_lpcOrder = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" xmlns:c="urn:common"
    targetNamespace="urn:order" elementFormDefault="qualified">
  <xs:import namespace="urn:common" schemaLocation="common.xsd"/>
  <xs:element name="order">
    <xs:complexType>
      <xs:sequence><xs:element name="sku" type="c:Sku"/></xs:sequence>
    </xs:complexType>
  </xs:element>
</xs:schema>
)";

constexpr const char* s_lpcCommon =
    R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:common">
  <xs:simpleType name="Sku"><xs:restriction base="xs:string"><xs:maxLength value="5"/></xs:restriction></xs:simpleType>
</xs:schema>
)";

constexpr const char* s_lpcMixed = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="note">
    <xs:complexType mixed="true">
      <xs:sequence><xs:element name="b" type="xs:string"/></xs:sequence>
    </xs:complexType>
  </xs:element>
</xs:schema>
)";

/// A folder with schemas, and runs of the program there. In all texts the folder's name is left out.
class Generator : public testing::Test
{
protected:
    Generator()
    {
        WriteFileBytes(m_dir.PathOf("order.xsd"), s_lpcOrder);
        WriteFileBytes(m_dir.PathOf("common.xsd"), s_lpcCommon);
        WriteFileBytes(m_dir.PathOf("mixed.xsd"), s_lpcMixed);
    }

    std::string PathOf(const std::string& strName) const { return m_dir.PathOf(strName).u8string(); }

    int Run(std::vector<std::string> arguments)
    {
        std::ostringstream out;
        std::ostringstream err;
        const int nStatus = RunGenerator(arguments, out, err);
        m_strOut = WithoutFolder(out.str());
        m_strErr = WithoutFolder(err.str());
        return nStatus;
    }

    std::string WithoutFolder(std::string strText) const
    {
        const std::string strFolder = PathOf("");
        for (std::size_t n = strText.find(strFolder); n != std::string::npos; n = strText.find(strFolder, n))
            strText.erase(n, strFolder.size());
        return strText;
    }

    std::vector<std::string> ListFolder(const std::string& strName) const
    {
        std::vector<std::string> names;
        if (fs::exists(m_dir.PathOf(strName)))
        {
            for (const fs::directory_entry& entry : fs::directory_iterator(m_dir.PathOf(strName)))
                names.push_back(entry.path().filename().u8string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    CTempDir m_dir;
    std::string m_strOut;
    std::string m_strErr;
};

TEST_F(Generator, WritesTheFilesAndSaysNothing)
{
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out/deep")}), 0);
    EXPECT_EQ(m_strOut, "");
    EXPECT_EQ(m_strErr, "");
    EXPECT_EQ(ListFolder("out/deep"),
              (std::vector<std::string>{"Common.cpp", "Common.h", "Factory.cpp", "Factory.h", "Order.cpp", "Order.h"}));
}

TEST_F(Generator, WritesTheSameBytesAgainAndTouchesNothing)
{
    ASSERT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out")}), 0);
    ASSERT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("again")}), 0);
    // Whole seconds, which every file system keeps.
    const fs::file_time_type then =
        std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::now() - std::chrono::hours(1));
    for (const std::string& strName : ListFolder("out"))
    {
        EXPECT_EQ(ReadFileBytes(PathOf("out/" + strName)), ReadFileBytes(PathOf("again/" + strName))) << strName;
        fs::last_write_time(PathOf("out/" + strName), then);
    }
    WriteFileBytes(PathOf("common.xsd"),
                   std::string(s_lpcCommon).replace(std::string(s_lpcCommon).find("\"5\""), 3, "\"6\""));
    ASSERT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out")}), 0);
    for (const std::string& strName : ListFolder("out"))
        EXPECT_EQ(fs::last_write_time(PathOf("out/" + strName)) != then, strName == "Common.cpp") << strName;
}

TEST_F(Generator, ListsTheFilesWithoutWritingThem)
{
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out"), "--list-files", "--program"}), 0);
    EXPECT_EQ(m_strOut, "out/Common.h\nout/Order.h\nout/Order.cpp\nout/Common.cpp\nout/Factory.h\nout/Factory.cpp\n"
                        "out/main.cpp\nout/CMakeLists.txt\n");
    EXPECT_FALSE(fs::exists(PathOf("out")));
}

TEST_F(Generator, WritesWhatTheFilesDependOn)
{
    WriteFileBytes(PathOf("rules"), "urn:order=orders\n");
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out"), "--split", "none", "--namespace-file", PathOf("rules"),
                   "--depfile", PathOf("deps/order.d")}),
              0);
    EXPECT_EQ(
        WithoutFolder(ReadFileBytes(PathOf("deps/order.d"))),
        "out/Order.h out/Order.cpp out/Factory.h out/Factory.cpp: \\\n  order.xsd \\\n  common.xsd \\\n  rules\n");
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out"), "--depfile", PathOf("order.d"), "--dep-target", "stamp"}),
              0);
    EXPECT_EQ(WithoutFolder(ReadFileBytes(PathOf("order.d"))), "stamp: \\\n  order.xsd \\\n  common.xsd\n");
}

TEST_F(Generator, EndsWithOneForASchemaThatIsWrong)
{
    WriteFileBytes(PathOf("bad.xsd"), R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="a" type="Missing"/>
</xs:schema>)");
    EXPECT_EQ(Run({PathOf("bad.xsd"), "-o", PathOf("out")}), 1);
    EXPECT_THAT(m_strErr, testing::StartsWith("bad.xsd:2:3: error: "));
    EXPECT_EQ(m_strOut, "");
    EXPECT_FALSE(fs::exists(PathOf("out")));
    EXPECT_EQ(Run({PathOf("none.xsd"), "-o", PathOf("out")}), 1);
    EXPECT_THAT(m_strErr, HasSubstr("none.xsd"));
}

TEST_F(Generator, EndsWithTwoForACommandThatIsWrong)
{
    EXPECT_EQ(Run({}), 2);
    EXPECT_EQ(m_strErr, "quiver-gen: a schema is needed; --help tells more\n");
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("order.xsd")}), 2);
    EXPECT_THAT(m_strErr, HasSubstr("quiver-gen: cannot "));
    EXPECT_THAT(m_strErr, HasSubstr("order.xsd"));
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out"), "--factory", "order::COrder"}), 2);
    EXPECT_EQ(m_strErr, "quiver-gen: the schema has a class COrder; --factory can name another\n");
    WriteFileBytes(PathOf("rules"), "nonsense\n");
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("out"), "--map", PathOf("rules")}), 2);
    EXPECT_EQ(m_strErr, "rules:1:1: error: a rule has the form {uri}Type = decimal, string, i8 or r8\n");
}

TEST_F(Generator, EndsWithThreeForASchemaThatCannotBeMapped)
{
    EXPECT_EQ(Run({PathOf("mixed.xsd"), "-o", PathOf("out"), "--mixed", "refuse"}), 3);
    EXPECT_THAT(m_strErr, HasSubstr("mixed.xsd:3:5: error: "));
    EXPECT_FALSE(fs::exists(PathOf("out")));
}

TEST_F(Generator, WarnsAndCarriesOnUnlessWarningsAreErrors)
{
    EXPECT_EQ(Run({PathOf("mixed.xsd"), "-o", PathOf("out")}), 0);
    EXPECT_THAT(m_strErr, HasSubstr("mixed.xsd:3:5: warning: "));
    EXPECT_TRUE(fs::exists(PathOf("out")));
    EXPECT_EQ(Run({PathOf("mixed.xsd"), "-o", PathOf("none"), "--werror"}), 3);
    EXPECT_THAT(m_strErr, HasSubstr("quiver-gen: nothing is written, since --werror makes the warnings errors\n"));
    EXPECT_FALSE(fs::exists(PathOf("none")));
    EXPECT_EQ(Run({PathOf("order.xsd"), "-o", PathOf("none"), "--werror"}), 0);
}

TEST_F(Generator, DumpsWhatItKnows)
{
    EXPECT_EQ(Run({PathOf("order.xsd"), "--dump-components"}), 0);
    EXPECT_THAT(m_strOut, HasSubstr("order"));
    EXPECT_THAT(m_strOut, HasSubstr("Sku"));
    EXPECT_EQ(Run({PathOf("order.xsd"), "--dump-binding"}), 0);
    EXPECT_THAT(m_strOut, HasSubstr("class COrder: sequence <order>"));
    EXPECT_EQ(ListFolder(""), (std::vector<std::string>{"common.xsd", "mixed.xsd", "order.xsd"}));
}

TEST_F(Generator, SaysItsVersionAndHelp)
{
    EXPECT_EQ(Run({"--version"}), 0);
    EXPECT_EQ(m_strOut, "quiver-gen " QUIVER_VERSION "\n");
    EXPECT_EQ(Run({"--help"}), 0);
    EXPECT_THAT(m_strOut, HasSubstr("quiver-gen SCHEMA... -o DIR"));
}

TEST_F(Generator, NoticesThatItsOutputGoesNowhere)
{
    std::ostringstream err;
    std::ostream out(nullptr);
    EXPECT_EQ(RunGenerator({"--help"}, out, err), 2);
    EXPECT_EQ(err.str(), "quiver-gen: cannot write the standard output\n");
}

TEST_F(Generator, TheProgramNoticesAFullOrClosedOutput)
{
    using EKind = QvTest::SOutput::EKind;
    const std::vector<std::string> dump{PathOf("order.xsd"), "--dump-binding"};
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, dump), 0);
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, dump, {EKind::Full, {}}), 2);
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, dump, {EKind::Closed, {}}), 2);
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, {"--help"}, {EKind::Full, {}}), 2);
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, {"--version"}, {EKind::Closed, {}}), 2);
}

TEST_F(Generator, TheProgramWritesWithoutStandardOutput)
{
    using EKind = QvTest::SOutput::EKind;
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, {PathOf("order.xsd"), "-o", PathOf("out")}, {EKind::Closed, {}},
                                 {EKind::Closed, {}}),
              0);
    EXPECT_EQ(ListFolder("out").size(), 6u);
}

TEST_F(Generator, TheProgramTakesFileNamesOfAllAlphabetsFromItsCommandLine)
{
    using EKind = QvTest::SOutput::EKind;
    const std::string strName = "\xD0\xB7\xD0\xB0\xD0\xBA\xD0\xB0\xD0\xB7 \xE4\xB8\xAD";
    fs::rename(fs::u8path(PathOf("order.xsd")), fs::u8path(PathOf(strName + ".xsd")));
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, {PathOf(strName + ".xsd"), "-o", PathOf(strName)}), 0);
    EXPECT_EQ(ListFolder(strName).size(), 6u);
    // What is wrong in a file is told with its name in the same letters.
    WriteFileBytes(fs::u8path(PathOf(strName + ".xsd")), "<a/>");
    EXPECT_EQ(QvTest::RunProcess(QUIVER_GEN_PROGRAM, {PathOf(strName + ".xsd"), "-o", PathOf(strName)}, {},
                                 {EKind::File, PathOf("err")}),
              1);
    EXPECT_THAT(ReadFileBytes(PathOf("err")), HasSubstr(PathOf(strName + ".xsd")));
}

} // namespace
