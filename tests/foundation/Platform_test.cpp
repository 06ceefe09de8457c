#include "quiver/foundation/platform/Platform.h"

#include "tests/support/Expect.h"
#include "tests/support/Files.h"

#include <csignal>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace QvXmlLib9;
using namespace QvXmlLib9::Platform;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::ReadFileBytes;
using QvTest::WriteFileBytes;

namespace
{

/// Closes its handle at the end of a test.
class CHandle
{
public:
    explicit CHandle(Handle handle)
        : m_handle(handle)
    {
    }
    ~CHandle()
    {
        if (IsOpen())
            CloseHandle(m_handle);
    }
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;

    bool IsOpen() const { return m_handle != InvalidHandle && m_handle != nullptr; }
    operator Handle() const { return m_handle; }
    Handle Release()
    {
        const Handle handle = m_handle;
        m_handle = nullptr;
        return handle;
    }

private:
    Handle m_handle;
};

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

std::string Pattern(std::size_t nLength)
{
    std::string strBytes(nLength, 0);
    for (std::size_t i = 0; i < nLength; ++i)
        strBytes[i] = static_cast<char>(i * 7 + i / 251);
    return strBytes;
}

/// Longer than what is written at once.
const std::string s_strLong = Pattern(200000);

bool WriteSync(Handle hFile, std::string_view bytes)
{
    std::uint32_t dwWritten = 0;
    return WriteFile(hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &dwWritten, nullptr);
}

/// Begins an operation as callers do: under way or ended already, but not failed.
bool BeginRead(Handle hFile, std::string& strBuffer, Overlapped& overlapped)
{
    return ReadFile(hFile, strBuffer.data(), static_cast<std::uint32_t>(strBuffer.size()), nullptr, &overlapped) ||
           GetLastError() == Error_IoPending;
}

bool BeginWrite(Handle hFile, std::string_view bytes, Overlapped& overlapped)
{
    return WriteFile(hFile, bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr, &overlapped) ||
           GetLastError() == Error_IoPending;
}

} // namespace

// --- Opening --------------------------------------------------------------------------------------------------------

TEST(Platform, ReportsWindowsErrorNumbersForReading)
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

TEST(Platform, ReportsWindowsErrorNumbersForWriting)
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

TEST(Platform, ReportsThatTooManyFilesAreOpen)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("file");
    const CLimit limit(RLIMIT_NOFILE, 0);
    EXPECT_EQ(InvalidHandle, CreateFileForWriting(strName.c_str(), false));
    EXPECT_EQ(4u, GetLastError());
}

TEST(Platform, TakesFileNamesInUtf16)
{
    const CTempDir dir;
    const std::wstring strDir = dir.NameOf("");
    for (const wchar_t* lpctName : {L"\xE4\x20AC\xD83D\xDE00", L"\xE4\x20AC\U0001F600"})
    {
        const CHandle hFile(CreateFileForWriting((strDir + lpctName).c_str(), false));
        ASSERT_TRUE(hFile.IsOpen());
    }
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir.PathOf("")))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(std::vector<std::string>{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"}, names);
}

TEST(Platform, CreatingEmptiesTheFileThatIsThere)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "old contents");
    {
        const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), false));
        ASSERT_TRUE(hFile.IsOpen());
        EXPECT_TRUE(WriteSync(hFile, "new"));
    }
    EXPECT_EQ("new", ReadFileBytes(dir.PathOf("file")));
}

TEST(Platform, TwoMayReadOneFile)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    const CHandle hFirst(OpenFileForReading(dir.NameOf("file").c_str(), false));
    const CHandle hSecond(OpenFileForReading(dir.NameOf("file").c_str(), true));
    EXPECT_TRUE(hFirst.IsOpen());
    EXPECT_TRUE(hSecond.IsOpen());
}

// --- Size, reading, writing -----------------------------------------------------------------------------------------

TEST(Platform, GivesTheSizeInTwoWords)
{
    const CTempDir dir;
    struct SRow
    {
        std::uint64_t nSize;
        std::uint32_t dwLow;
        std::uint32_t dwHigh;
    };
    const SRow rows[] = {{0, 0, 0}, {5, 5, 0}, {0xFFFFFFFF, 0xFFFFFFFF, 0}, {0x100000005, 5, 1}};
    for (const SRow& row : rows)
    {
        WriteFileBytes(dir.PathOf("file"), "");
        std::filesystem::resize_file(dir.PathOf("file"), row.nSize);
        const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), false));
        std::uint32_t dwHigh = 4711;
        EXPECT_EQ(row.dwLow, GetFileSize(hFile, &dwHigh));
        EXPECT_EQ(row.dwHigh, dwHigh);
    }
}

TEST(Platform, ReadsAndWritesInSequence)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(100000);
    {
        const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), false));
        std::uint32_t dwWritten = 0;
        EXPECT_TRUE(WriteFile(hFile, strBytes.data(), 70000, &dwWritten, nullptr));
        EXPECT_EQ(70000u, dwWritten);
        EXPECT_TRUE(WriteFile(hFile, strBytes.data() + 70000, 30000, &dwWritten, nullptr));
        EXPECT_EQ(30000u, dwWritten);
    }
    const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), false));
    std::string strRead(strBytes.size(), 0);
    std::uint32_t dwRead = 0;
    EXPECT_TRUE(ReadFile(hFile, strRead.data(), 60000, &dwRead, nullptr));
    EXPECT_EQ(60000u, dwRead);
    EXPECT_TRUE(ReadFile(hFile, strRead.data() + 60000, 60000, &dwRead, nullptr));
    EXPECT_EQ(40000u, dwRead);
    EXPECT_EQ(strBytes, strRead);
    EXPECT_TRUE(ReadFile(hFile, strRead.data(), 10, &dwRead, nullptr));
    EXPECT_EQ(0u, dwRead);
}

TEST(Platform, AFileThatShrinksGivesFewerBytes)
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

TEST(Platform, AFullDiskIsError112)
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

TEST(Platform, AWriteThatIsCutShortFails)
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

TEST(Platform, ReadingAFileThatIsOpenForWritingFails)
{
    const CTempDir dir;
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), false));
    char c = 0;
    std::uint32_t dwRead = 0;
    EXPECT_FALSE(ReadFile(hFile, &c, 1, &dwRead, nullptr));
    EXPECT_EQ(5u, GetLastError());
}

// --- Overlapped operations ------------------------------------------------------------------------------------------

TEST(Platform, ReadsAtAnyOffset)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(300000);
    WriteFileBytes(dir.PathOf("file"), strBytes);
    const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), true));
    const CHandle hEvent(CreateAutoResetEvent());
    ASSERT_TRUE(hEvent.IsOpen());
    for (const std::uint32_t dwOffset : {0u, 1u, 131072u, 262144u, 299999u})
    {
        std::string strBuffer(131072, 0);
        Overlapped overlapped;
        overlapped.Offset = dwOffset;
        overlapped.hEvent = hEvent;
        std::uint32_t dwBytes = 0;
        ASSERT_TRUE(BeginRead(hFile, strBuffer, overlapped));
        ASSERT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
        EXPECT_EQ(strBytes.substr(dwOffset, strBuffer.size()), strBuffer.substr(0, dwBytes));
    }
}

TEST(Platform, ReadsAndWritesBeyondFourGigabytes)
{
    const CTempDir dir;
    Overlapped overlapped;
    overlapped.Offset = 5;
    overlapped.OffsetHigh = 1;
    std::uint32_t dwBytes = 0;
    {
        const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
        ASSERT_TRUE(BeginWrite(hFile, "far", overlapped));
        ASSERT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
        EXPECT_EQ(3u, dwBytes);
    }
    EXPECT_EQ(0x100000008u, std::filesystem::file_size(dir.PathOf("file")));
    const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), true));
    std::string strBuffer(10, 0);
    ASSERT_TRUE(BeginRead(hFile, strBuffer, overlapped));
    ASSERT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
    EXPECT_EQ("far", strBuffer.substr(0, dwBytes));
}

TEST(Platform, RefusesToReadAtOrBehindTheEnd)
{
    const CTempDir dir;
    for (const std::size_t nSize : {0u, 131072u})
    {
        WriteFileBytes(dir.PathOf("file"), Pattern(nSize));
        const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), true));
        for (const std::size_t nBehind : {0u, 1u, 1000u})
        {
            std::string strBuffer(10, 0);
            Overlapped overlapped;
            overlapped.Offset = static_cast<std::uint32_t>(nSize + nBehind);
            EXPECT_FALSE(ReadFile(hFile, strBuffer.data(), 10, nullptr, &overlapped));
            EXPECT_EQ(38u, GetLastError());
            // It never began, so there is no end of it to report either.
            std::uint32_t dwBytes = 4711;
            EXPECT_FALSE(GetOverlappedResult(hFile, &overlapped, &dwBytes, false));
            EXPECT_EQ(996u, GetLastError());
            EXPECT_EQ(0u, dwBytes);
        }
    }
}

#if defined(__linux__)

TEST(Platform, AReadThatFindsTheFileShorterThanItsSizeSaysSoInTheResult)
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

TEST(Platform, AZeroedRecordCountsAsAnOperationThatEndedWell)
{
    const CTempDir dir;
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    for (const bool bWait : {false, true})
    {
        Overlapped overlapped;
        std::uint32_t dwBytes = 4711;
        EXPECT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, bWait));
        EXPECT_EQ(0u, dwBytes);
    }
}

TEST(Platform, GivesTheSameResultAsOftenAsItIsAsked)
{
    const CTempDir dir;
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    Overlapped overlapped;
    for (const std::string& strBytes : {std::string("abc"), s_strLong})
    {
        overlapped = Overlapped();
        ASSERT_TRUE(BeginWrite(hFile, strBytes, overlapped));
        for (int i = 0; i < 3; ++i)
        {
            std::uint32_t dwBytes = 0;
            EXPECT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
            EXPECT_EQ(strBytes.size(), dwBytes);
        }
        EXPECT_EQ(strBytes, ReadFileBytes(dir.PathOf("file")));
    }
}

TEST(Platform, AskingWithoutWaitingGivesTheEndInTime)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(1 << 20);
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    Overlapped overlapped;
    ASSERT_TRUE(BeginWrite(hFile, strBytes, overlapped));
    std::uint32_t dwBytes = 0;
    while (!GetOverlappedResult(hFile, &overlapped, &dwBytes, false))
    {
        ASSERT_EQ(996u, GetLastError());
        std::this_thread::yield();
    }
    EXPECT_EQ(strBytes.size(), dwBytes);
    EXPECT_EQ(strBytes, ReadFileBytes(dir.PathOf("file")));
}

TEST(Platform, OneOperationCanBeUnderWayOnAFile)
{
    const CTempDir dir;
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    Overlapped first;
    Overlapped second;
    ASSERT_TRUE(BeginWrite(hFile, s_strLong, first));
    EXPECT_FALSE(WriteFile(hFile, "x", 1, nullptr, &second));
    EXPECT_EQ(170u, GetLastError());
}

TEST(Platform, NoBytesAreWrittenAndReadWell)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("in"), "abc");
    const CHandle hIn(OpenFileForReading(dir.NameOf("in").c_str(), true));
    const CHandle hOut(CreateFileForWriting(dir.NameOf("out").c_str(), true));
    std::string strNothing;
    std::uint32_t dwBytes = 4711;
    Overlapped overlapped;
    ASSERT_TRUE(BeginRead(hIn, strNothing, overlapped));
    EXPECT_TRUE(GetOverlappedResult(hIn, &overlapped, &dwBytes, true));
    EXPECT_EQ(0u, dwBytes);
    overlapped = Overlapped();
    ASSERT_TRUE(BeginWrite(hOut, strNothing, overlapped));
    EXPECT_TRUE(GetOverlappedResult(hOut, &overlapped, &dwBytes, true));
    EXPECT_EQ(0u, dwBytes);
}

TEST(Platform, ClosingEndsTheWriteThatIsUnderWay)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(8 << 20);
    Overlapped overlapped;
    {
        const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
        ASSERT_TRUE(BeginWrite(hFile, strBytes, overlapped));
    }
    EXPECT_EQ(strBytes, ReadFileBytes(dir.PathOf("file")));
}

TEST(Platform, ClosingEndsTheReadThatIsUnderWay)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), Pattern(8 << 20));
    std::string strBuffer(8 << 20, 0);
    Overlapped overlapped;
    {
        const CHandle hFile(OpenFileForReading(dir.NameOf("file").c_str(), true));
        ASSERT_TRUE(BeginRead(hFile, strBuffer, overlapped));
    }
    // Nothing writes into the buffer any more.
    const std::string strAfter = strBuffer;
    strBuffer.assign(strBuffer.size(), 'x');
    EXPECT_EQ(std::string::npos, strBuffer.find_first_not_of('x'));
}

TEST(Platform, FilesWithoutOffsetsAreReadAndWrittenInOrder)
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

// --- Handles and faults ---------------------------------------------------------------------------------------------

TEST(Platform, ClosesWhatItOpened)
{
    const CTempDir dir;
    const std::size_t nOpen = CountOpenFiles();
    CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    EXPECT_EQ(nOpen + 1, CountOpenFiles());
    EXPECT_TRUE(CloseHandle(hFile.Release()));
    EXPECT_EQ(nOpen, CountOpenFiles());
    EXPECT_TRUE(CloseHandle(CreateAutoResetEvent()));
}

TEST(Platform, AHandleThatStandsForNothingIsError6)
{
    char c = 0;
    for (const Handle handle : {InvalidHandle, Handle(nullptr)})
    {
        std::uint32_t dwWord = 0;
        Overlapped overlapped;
        EXPECT_FALSE(ReadFile(handle, &c, 1, &dwWord, nullptr));
        EXPECT_EQ(6u, GetLastError());
        EXPECT_FALSE(WriteFile(handle, &c, 1, &dwWord, nullptr));
        EXPECT_FALSE(WriteFile(handle, &c, 1, nullptr, &overlapped));
        EXPECT_FALSE(GetOverlappedResult(handle, &overlapped, &dwWord, true));
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(0xFFFFFFFFu, GetFileSize(handle, &dwWord));
        EXPECT_EQ(0xFFFFFFFFu, dwWord);
        EXPECT_EQ(6u, GetLastError());
    }
}

TEST(Platform, EachThreadHasItsOwnLastError)
{
    EXPECT_FALSE(CloseHandle(nullptr));
    std::thread(
        []
        {
            EXPECT_EQ(InvalidHandle, OpenFileForReading(L"/missing", false));
            EXPECT_EQ(2u, GetLastError());
        })
        .join();
    EXPECT_EQ(6u, GetLastError());
}

namespace
{

EFileOperation s_eFaulty = FileOperation_Open;

std::uint32_t FailOperation(EFileOperation eOperation)
{
    return eOperation == s_eFaulty ? 1000u + static_cast<std::uint32_t>(eOperation) : 0;
}

class CFault
{
public:
    explicit CFault(EFileOperation eOperation)
    {
        s_eFaulty = eOperation;
        EXPECT_EQ(nullptr, SetFileFault(FailOperation));
    }
    ~CFault() { EXPECT_EQ(FailOperation, SetFileFault(nullptr)); }
    CFault(const CFault&) = delete;
    CFault& operator=(const CFault&) = delete;
};

} // namespace

TEST(Platform, AFaultMakesEachOperationFailAlone)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("in"), "abc");
    const std::wstring strIn = dir.NameOf("in");
    const std::wstring strOut = dir.NameOf("out");
    for (int nFaulty = FileOperation_Open; nFaulty <= FileOperation_Close; ++nFaulty)
    {
        const std::size_t nOpen = CountOpenFiles();
        CHandle hIn(OpenFileForReading(strIn.c_str(), true));
        CHandle hOut(CreateFileForWriting(strOut.c_str(), true));
        CHandle hEvent(CreateAutoResetEvent());
        const CFault fault(static_cast<EFileOperation>(nFaulty));
        const auto fnExpect = [nFaulty](EFileOperation eOperation, bool bDone)
        {
            EXPECT_EQ(nFaulty != eOperation, bDone);
            EXPECT_TRUE(bDone || GetLastError() == 1000u + static_cast<std::uint32_t>(nFaulty));
        };
        char c = 0;
        std::uint32_t dwWord = 0;
        Overlapped overlapped;
        fnExpect(FileOperation_Open, CHandle(OpenFileForReading(strIn.c_str(), true)).IsOpen());
        fnExpect(FileOperation_Open, CHandle(CreateFileForWriting(strOut.c_str(), true)).IsOpen());
        fnExpect(FileOperation_Size, GetFileSize(hIn, &dwWord) != 0xFFFFFFFF);
        fnExpect(FileOperation_Read, ReadFile(hIn, &c, 1, &dwWord, nullptr));
        fnExpect(FileOperation_Write, WriteFile(hOut, &c, 1, &dwWord, nullptr));
        fnExpect(FileOperation_Result, GetOverlappedResult(hIn, &overlapped, &dwWord, true));
        fnExpect(FileOperation_CreateEvent, CHandle(CreateAutoResetEvent()).IsOpen());
        fnExpect(FileOperation_Close, CloseHandle(hIn.Release()));
        fnExpect(FileOperation_Close, CloseHandle(hOut.Release()));
        fnExpect(FileOperation_Close, CloseHandle(hEvent.Release()));
        EXPECT_EQ(nOpen, CountOpenFiles());
    }
}

// --- Reports and stack ----------------------------------------------------------------------------------------------

namespace
{

std::wstring s_strSunk;

[[gnu::noinline]] std::size_t GetStackBytesLeftBelow()
{
    volatile char buffer[16384];
    buffer[0] = 1;
    const std::size_t nLeft = GetStackBytesLeft();
    return nLeft + static_cast<std::size_t>(buffer[0]) - 1;
}

} // namespace

TEST(Platform, ErrorBoxGoesToStandardErrorWithItsCaptionFirst)
{
    ::testing::internal::CaptureStderr();
    ShowErrorBox(L"text \xE4\xD83D\xDE00", L"caption");
    EXPECT_EQ("caption\ntext \\u00E4\\uD83D\\uDE00\n", ::testing::internal::GetCapturedStderr());
}

TEST(Platform, ErrorBoxGoesToTheSink)
{
    const PfnMessageBox pfnOld = SetMessageBoxSink([](const wchar_t* lpctText, const wchar_t* lpctCaption)
                                                   { s_strSunk = std::wstring(lpctCaption) + L"|" + lpctText; });
    ::testing::internal::CaptureStderr();
    ShowErrorBox(L"text", L"caption");
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
    SetMessageBoxSink(pfnOld);
    EXPECT_TEXT(L"caption|text", s_strSunk);
}

TEST(Platform, DebugOutputGoesToTheSinkAndElsewhereInDiagnosticBuildsOnly)
{
    ::testing::internal::CaptureStderr();
    OutputDebug(L"text");
    const PfnDebugOutput pfnOld = SetDebugOutputSink([](const wchar_t* lpctText) { s_strSunk = lpctText; });
    EXPECT_TRUE(IsDebugOutputOn());
    OutputDebug(L"sunk");
    SetDebugOutputSink(pfnOld);
    EXPECT_TEXT(L"sunk", s_strSunk);
#if defined(QUIVER_DIAGNOSTICS)
    EXPECT_TRUE(IsDebugOutputOn());
    EXPECT_EQ("text", ::testing::internal::GetCapturedStderr());
#else
    EXPECT_FALSE(IsDebugOutputOn());
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
#endif
}

TEST(Platform, TellsHowMuchStackIsLeft)
{
    const std::size_t nLeft = GetStackBytesLeft();
    EXPECT_GT(nLeft, 0u);
    EXPECT_LT(nLeft, GetStackSize());
    EXPECT_LT(GetStackBytesLeftBelow(), nLeft - 16000);
    std::thread([] { EXPECT_LE(GetStackBytesLeft(), GetStackSize()); }).join();
}
