#include "quiver/foundation/platform/Platform.h"

#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/PlatformFiles.h"

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

// What can only be brought about on POSIX; the rest of the platform's tests run everywhere.

using namespace QvXmlLib9::Platform;
using QvTest::BeginRead;
using QvTest::BeginWrite;
using QvTest::CHandle;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::Pattern;
using QvTest::ReadFileBytes;
using QvTest::s_strLong;
using QvTest::WriteFileBytes;
using QvTest::WriteSync;

namespace
{

/// Takes the rights of the superuser away for as long as it lives.
class CWithoutPrivileges
{
public:
    CWithoutPrivileges()
        : m_nUser(::geteuid())
    {
        EXPECT_EQ(0, ::seteuid(m_nUser == 0 ? 65534 : m_nUser));
    }
    ~CWithoutPrivileges() { EXPECT_EQ(0, ::seteuid(m_nUser)); }
    CWithoutPrivileges(const CWithoutPrivileges&) = delete;
    CWithoutPrivileges& operator=(const CWithoutPrivileges&) = delete;

private:
    uid_t m_nUser;
};

/// Lowers a limit of the process for as long as it lives.
class CLimit
{
public:
    CLimit(int nResource, rlim_t nLimit)
        : m_nResource(nResource)
    {
        EXPECT_EQ(0, ::getrlimit(Resource(), &m_old));
        const rlimit lowered{nLimit, m_old.rlim_max};
        EXPECT_EQ(0, ::setrlimit(Resource(), &lowered));
    }
    ~CLimit() { EXPECT_EQ(0, ::setrlimit(Resource(), &m_old)); }
    CLimit(const CLimit&) = delete;
    CLimit& operator=(const CLimit&) = delete;

private:
    decltype(RLIMIT_NOFILE) Resource() const { return static_cast<decltype(RLIMIT_NOFILE)>(m_nResource); }

    int m_nResource;
    rlimit m_old{};
};

} // namespace

TEST(PlatformPosix, ReportsWindowsErrorNumbersForReading)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    WriteFileBytes(dir.PathOf("locked"), "x");
    std::filesystem::permissions(dir.PathOf("locked"), std::filesystem::perms::none);
    std::filesystem::permissions(dir.PathOf("."), std::filesystem::perms::all);
    std::filesystem::create_symlink("loop", dir.PathOf("loop"));
    struct SRow
    {
        std::wstring strName;
        std::uint32_t dwError;
    };
    const SRow rows[] = {
        {dir.NameOf("missing"), 2},
        {dir.NameOf("missing/file"), 2},
        {L"", 3},
        {dir.NameOf("file/below"), 3},
        {dir.NameOf("locked"), 5},
        {dir.NameOf("."), 5},
        {dir.NameOf("") + L"\xD800", 123},
        {dir.NameOf(std::string(300, 'n')), 206},
        {dir.NameOf("loop"), 1921},
    };
    const CWithoutPrivileges guard;
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        for (const bool bOverlapped : {false, true})
        {
            EXPECT_EQ(InvalidHandle, OpenFileForReading(row.strName.c_str(), bOverlapped));
            EXPECT_EQ(row.dwError, GetLastError()) << QvTest::Show(row.strName);
        }
    }
    EXPECT_EQ(InvalidHandle, OpenFileForReading(nullptr, false));
    EXPECT_EQ(3u, GetLastError());
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(PlatformPosix, ReportsWindowsErrorNumbersForWriting)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    WriteFileBytes(dir.PathOf("locked"), "x");
    std::filesystem::permissions(dir.PathOf("locked"), std::filesystem::perms::owner_read);
    std::filesystem::create_directory(dir.PathOf("closed"));
    std::filesystem::permissions(dir.PathOf("closed"), std::filesystem::perms::none);
    std::filesystem::permissions(dir.PathOf("."), std::filesystem::perms::all);
    struct SRow
    {
        std::wstring strName;
        std::uint32_t dwError;
    };
    const SRow rows[] = {
        {L"", 3},
        {dir.NameOf("missing/file"), 2},
        {dir.NameOf("file/below"), 3},
        {dir.NameOf("locked"), 5},
        {dir.NameOf("closed/file"), 5},
        {dir.NameOf("closed"), 5},
        {L"\xDC00", 123},
        {dir.NameOf(std::string(300, 'n')), 206},
    };
    const CWithoutPrivileges guard;
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        for (const bool bOverlapped : {false, true})
        {
            EXPECT_EQ(InvalidHandle, CreateFileForWriting(row.strName.c_str(), bOverlapped));
            EXPECT_EQ(row.dwError, GetLastError()) << QvTest::Show(row.strName);
        }
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
    EXPECT_EQ("x", ReadFileBytes(dir.PathOf("file")));
}

TEST(PlatformPosix, ReportsThatTooManyFilesAreOpen)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("file");
    const CLimit limit(RLIMIT_NOFILE, 0);
    EXPECT_EQ(InvalidHandle, CreateFileForWriting(strName.c_str(), false));
    EXPECT_EQ(4u, GetLastError());
}

TEST(PlatformPosix, AFileThatShrinksGivesFewerBytes)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), Pattern(1000));
    const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), false));
    std::uint32_t dwHigh = 0;
    EXPECT_EQ(1000u, GetFileSize(hFile, &dwHigh));
    std::filesystem::resize_file(dir.PathOf("file"), 300);
    std::string strRead(1000, 0);
    std::uint32_t dwRead = 0;
    EXPECT_TRUE(ReadFile(hFile, strRead.data(), 1000, &dwRead, nullptr));
    EXPECT_EQ(300u, dwRead);
}

TEST(PlatformPosix, AFullDiskIsError112)
{
    const CHandle hSync(CreateFileForWriting(L"/dev/full", false));
    ASSERT_TRUE(hSync.IsOpen());
    EXPECT_FALSE(WriteSync(hSync, "x"));
    EXPECT_EQ(112u, GetLastError());

    // A short write fails at once, a long one in its result.
    const CHandle hOverlapped(CreateFileForWriting(L"/dev/full", true));
    Overlapped overlapped;
    EXPECT_FALSE(WriteFile(hOverlapped, "x", 1, nullptr, &overlapped));
    EXPECT_EQ(112u, GetLastError());
    std::uint32_t dwBytes = 4711;
    overlapped = Overlapped();
    EXPECT_TRUE(BeginWrite(hOverlapped, s_strLong, overlapped));
    EXPECT_FALSE(GetOverlappedResult(hOverlapped, &overlapped, &dwBytes, true));
    EXPECT_EQ(112u, GetLastError());
    EXPECT_EQ(0u, dwBytes);
}

TEST(PlatformPosix, AWriteThatIsCutShortFails)
{
    const CTempDir dir;
    std::signal(SIGXFSZ, SIG_IGN);
    for (const std::size_t nLength : {10000u, 200000u})
    {
        const std::string strBytes = Pattern(nLength);
        const CLimit limit(RLIMIT_FSIZE, nLength - 4000);
        {
            const CHandle hFile(CreateFileForWriting(dir.NameOf("sync").c_str(), false));
            EXPECT_FALSE(WriteSync(hFile, strBytes));
            EXPECT_EQ(223u, GetLastError());
        }
        {
            const CHandle hFile(CreateFileForWriting(dir.NameOf("overlapped").c_str(), true));
            Overlapped overlapped;
            std::uint32_t dwBytes = 0;
            EXPECT_FALSE(BeginWrite(hFile, strBytes, overlapped) &&
                         GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
            EXPECT_EQ(223u, GetLastError());
        }
        EXPECT_EQ(strBytes.substr(0, nLength - 4000), ReadFileBytes(dir.PathOf("sync")));
        EXPECT_EQ(strBytes.substr(0, nLength - 4000), ReadFileBytes(dir.PathOf("overlapped")));
    }
}

#if defined(__linux__)

TEST(PlatformPosix, AReadThatFindsTheFileShorterThanItsSizeSaysSoInTheResult)
{
    // The system states a size of 4096 bytes for this file, which holds a few.
    const CHandle hFile(OpenFileForReading(L"/sys/devices/system/cpu/online", true));
    ASSERT_TRUE(hFile.IsOpen());
    std::string strBuffer(10, 0);
    Overlapped overlapped;
    overlapped.Offset = 3000;
    std::uint32_t dwBytes = 4711;
    EXPECT_TRUE(BeginRead(hFile, strBuffer, overlapped));
    EXPECT_FALSE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
    EXPECT_EQ(38u, GetLastError());
    EXPECT_EQ(0u, dwBytes);
}

#endif

TEST(PlatformPosix, FilesWithoutOffsetsAreReadAndWrittenInOrder)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(200000);
    ASSERT_EQ(0, ::mkfifo(dir.PathOf("pipe").c_str(), 0600));
    std::thread writer(
        [&]
        {
            const CHandle hFile(CreateFileForWriting(dir.NameOf("pipe").c_str(), true));
            for (std::size_t nAt = 0; nAt < strBytes.size(); nAt += 100000)
            {
                Overlapped overlapped;
                overlapped.Offset = static_cast<std::uint32_t>(nAt);
                std::uint32_t dwBytes = 0;
                EXPECT_TRUE(BeginWrite(hFile, std::string_view(strBytes).substr(nAt, 100000), overlapped));
                EXPECT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
                EXPECT_EQ(100000u, dwBytes);
            }
        });
    std::string strRead(strBytes.size() + 10, 0);
    {
        const CHandle hFile(OpenFileForReading(dir.NameOf("pipe").c_str(), true));
        Overlapped overlapped;
        std::uint32_t dwBytes = 0;
        EXPECT_TRUE(BeginRead(hFile, strRead, overlapped));
        EXPECT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
        strRead.resize(dwBytes);
    }
    writer.join();
    EXPECT_EQ(strBytes, strRead);
}

TEST(PlatformPosix, ErrorBoxGoesToStandardErrorWithItsCaptionFirst)
{
    ::testing::internal::CaptureStderr();
    ShowErrorBox(L"text \xE4\xD83D\xDE00", L"caption");
    EXPECT_EQ("caption\ntext \\u00E4\\uD83D\\uDE00\n", ::testing::internal::GetCapturedStderr());
}

TEST(PlatformPosix, LongReportsArriveWhole)
{
    std::wstring strText;
    std::string strExpected = "caption\n";
    for (int n = 0; n < 1500; ++n)
    {
        strText += n % 7 == 0 ? L"\xE4" : L"x";
        strExpected += n % 7 == 0 ? "\\u00E4" : "x";
    }
    testing::internal::CaptureStderr();
    ShowErrorBox(strText.c_str(), L"caption");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), strExpected + "\n");
}
