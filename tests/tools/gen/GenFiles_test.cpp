#include "tests/support/Files.h"

#include "tools/quiver-gen/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#ifdef __linux__
#include <csignal>
#include <sys/resource.h>
#endif

using namespace quiver_gen;
using QvTest::CTempDir;
using QvTest::ReadFileBytes;
using QvTest::WriteFileBytes;

namespace
{

namespace fs = std::filesystem;

std::vector<std::string> ListFolder(const fs::path& path)
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(path))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string WriteAndGetMessage(const std::vector<cpp::SFile>& files)
{
    try
    {
        WriteFiles(files);
    }
    catch (const CFileError& error)
    {
        return error.what();
    }
    return "no failure";
}

TEST(GenFiles, MakesFoldersAndWritesFiles)
{
    const CTempDir dir;
    const std::string strA = dir.PathOf("x/y/a.h").u8string();
    const std::string strB = dir.PathOf("x/b.h").u8string();
    EXPECT_EQ(WriteFiles({{strA, "one\n"}, {strB, std::string("\0\r\n", 3)}}), 2u);
    EXPECT_EQ(ReadFileBytes(strA), "one\n");
    EXPECT_EQ(ReadFileBytes(strB), std::string("\0\r\n", 3));
    EXPECT_EQ(ReadFile(strA), "one\n");
    EXPECT_EQ(ListFolder(dir.PathOf("x")), (std::vector<std::string>{"b.h", "y"}));
}

TEST(GenFiles, LeavesAFileAloneThatHasTheText)
{
    const CTempDir dir;
    const std::string strSame = dir.PathOf("same").u8string();
    const std::string strOther = dir.PathOf("other").u8string();
    WriteFiles({{strSame, "abc"}, {strOther, "abc"}});
    // Whole seconds, which every file system keeps.
    const fs::file_time_type then =
        std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::now() - std::chrono::hours(1));
    fs::last_write_time(strSame, then);
    fs::last_write_time(strOther, then);
    EXPECT_EQ(WriteFiles({{strSame, "abc"}, {strOther, "abd"}}), 1u);
    EXPECT_EQ(fs::last_write_time(strSame), then);
    EXPECT_NE(fs::last_write_time(strOther), then);
    EXPECT_EQ(ReadFileBytes(strOther), "abd");
    EXPECT_EQ(WriteFiles({{strSame, "abc"}, {strOther, "abd"}}), 0u);
}

TEST(GenFiles, ReplacesAFileThatMayNotBeWritten)
{
    const CTempDir dir;
    const std::string strPath = dir.PathOf("a").u8string();
    WriteFileBytes(strPath, "old");
    fs::permissions(strPath, fs::perms::owner_read);
    EXPECT_EQ(WriteFiles({{strPath, "new"}}), 1u);
    EXPECT_EQ(ReadFileBytes(strPath), "new");
}

TEST(GenFiles, ReplacesNothingWhereOneFileCannotBeWritten)
{
    const CTempDir dir;
    const std::string strOld = dir.PathOf("old").u8string();
    WriteFileBytes(strOld, "old");
    fs::create_directory(dir.PathOf("folder"));
    const std::string strFolder = dir.PathOf("folder").u8string();
    EXPECT_EQ(WriteAndGetMessage({{strOld, "new"}, {strFolder, "text"}}),
              "cannot write " + strFolder + ": Is a directory");
    EXPECT_EQ(ReadFileBytes(strOld), "old");
    EXPECT_EQ(ListFolder(dir.PathOf("")), (std::vector<std::string>{"folder", "old"}));
}

TEST(GenFiles, NamesTheFolderThatCannotBeMade)
{
    const CTempDir dir;
    const std::string strFile = dir.PathOf("file").u8string();
    WriteFileBytes(strFile, "");
    EXPECT_EQ(WriteAndGetMessage({{strFile + "/sub/a.h", ""}}),
              "cannot make the folder " + strFile + "/sub: Not a directory");
}

TEST(GenFiles, NamesTheFileThatCannotBeRead)
{
    const CTempDir dir;
    for (const auto& [strPath, strReason] :
         {std::pair<std::string, std::string>(dir.PathOf("none").u8string(), "No such file or directory"),
          {dir.PathOf("").u8string(), "Is a directory"}})
    {
        try
        {
            ReadFile(strPath);
            FAIL() << strPath;
        }
        catch (const CFileError& error)
        {
            EXPECT_EQ(error.what(), "cannot read " + strPath + ": " + strReason);
        }
    }
}

#ifdef __linux__
/// Lets files grow to so many bytes only.
class CFileSizeLimit
{
public:
    explicit CFileSizeLimit(rlim_t nBytes)
        : m_pfnOld(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limit{nBytes, m_old.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~CFileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_pfnOld);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_old{};
    void (*m_pfnOld)(int);
};

#else
/// Windows has no such limit.
class CFileSizeLimit
{
public:
    explicit CFileSizeLimit(int) {}
    ~CFileSizeLimit() {}
};
#endif

TEST(GenFiles, LeavesNoHalfFileWhereTheDiskIsFull)
{
    const CTempDir dir;
    const std::string strOld = dir.PathOf("old").u8string();
    WriteFileBytes(strOld, "old");
#ifdef __linux__
    const std::string strBig = dir.PathOf("big").u8string();
    const std::string strExpected = "cannot write " + strBig + ": File too large";
#else
    // What no disk has room for is the same to the program as a name that no file can have.
    const std::string strBig = dir.PathOf("big<").u8string();
    const std::string strExpected = "cannot create " + strBig + ": ";
#endif
    std::string strMessage;
    {
        // The first of the two stays below.
        const CFileSizeLimit limit(1000);
        strMessage = WriteAndGetMessage({{strOld, "new"}, {strBig, std::string(100000, 'x')}});
    }
    EXPECT_EQ(strMessage.compare(0, strExpected.size(), strExpected), 0) << strMessage;
    EXPECT_EQ(ReadFileBytes(strOld), "old");
    EXPECT_EQ(ListFolder(dir.PathOf("")), std::vector<std::string>{"old"});
}

TEST(GenFiles, JoinsPaths)
{
    EXPECT_EQ(JoinPath("", "a.h"), "a.h");
    EXPECT_EQ(JoinPath("x", "a.h"), "x/a.h");
    EXPECT_EQ(JoinPath("x/", "a.h"), "x/a.h");
    EXPECT_EQ(JoinPath("/", "a.h"), "/a.h");
}

TEST(GenFiles, WritesDependenciesAsMakeReadsThem)
{
    EXPECT_EQ(MakeDependencies({"a b.h", "c$.h"}, {"x#y.xsd", "z.xsd"}),
              "a\\ b.h c$$.h: \\\n  x\\#y.xsd \\\n  z.xsd\n");
    EXPECT_EQ(MakeDependencies({"a"}, {}), "a:\n");
}

} // namespace
