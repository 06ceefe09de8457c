#include "quiver/foundation/platform/Platform.h"

#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"
#include "tests/support/PlatformFiles.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using namespace QvXmlLib9::Platform;
using QvTest::BeginRead;
using QvTest::BeginWrite;
using QvTest::CFileFault;
using QvTest::CHandle;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::Pattern;
using QvTest::ReadFileBytes;
using QvTest::s_strLong;
using QvTest::WriteFileBytes;
using QvTest::WriteSync;

// --- Opening --------------------------------------------------------------------------------------------------------

TEST(Platform, WhatCannotBeOpenedHasItsErrorNumber)
{
    const CTempDir dir;
    const std::wstring strMissing = dir.NameOf("missing");
    const std::wstring strDirectory = dir.NameOf(".");
    for (const bool bOverlapped : {false, true})
    {
        EXPECT_EQ(InvalidHandle, OpenFileForReading(strMissing.c_str(), bOverlapped));
        EXPECT_EQ(2u, GetLastError());
        EXPECT_EQ(InvalidHandle, OpenFileForReading(L"", bOverlapped));
        EXPECT_EQ(3u, GetLastError());
        EXPECT_EQ(InvalidHandle, CreateFileForWriting(L"", bOverlapped));
        EXPECT_EQ(3u, GetLastError());
        EXPECT_EQ(InvalidHandle, OpenFileForReading(strDirectory.c_str(), bOverlapped));
        EXPECT_EQ(5u, GetLastError());
        EXPECT_EQ(InvalidHandle, CreateFileForWriting(strDirectory.c_str(), bOverlapped));
        EXPECT_EQ(5u, GetLastError());
    }
}

TEST(Platform, TheSameCauseHasTheSameErrorNumberOnEverySystem)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    const std::wstring strFile = dir.NameOf("file");
    const CHandle hRead(OpenFileForReading(strFile.c_str(), false));
    const CHandle hReadOverlapped(OpenFileForReading(strFile.c_str(), true));
    const CHandle hWrite(CreateFileForWriting(dir.NameOf("written").c_str(), false));
    ASSERT_TRUE(hRead.IsOpen() && hReadOverlapped.IsOpen() && hWrite.IsOpen());
    Overlapped overlapped;
    char c = 'x';
    std::uint32_t dwBytes = 0;

    const auto fnOpen = [&](const std::wstring& strName)
    {
        return OpenFileForReading(strName.c_str(), false) != InvalidHandle;
    };
    const auto fnCreate = [&](const std::wstring& strName)
    {
        return CreateFileForWriting(strName.c_str(), false) != InvalidHandle;
    };
    // POSIX does not tell a folder that is missing from a file that is.
#if defined(_WIN32)
    constexpr std::uint32_t dwFolderMissing = 3;
#else
    constexpr std::uint32_t dwFolderMissing = 2;
#endif
    struct SRow
    {
        const char* lpcCause;
        bool bDone;
        std::uint32_t dwError;
    };
    const auto fnRow = [](const char* lpcCause, bool bDone)
    {
        return SRow{lpcCause, bDone, GetLastError()};
    };
    const auto fnAtEnd = [&]
    {
        overlapped = Overlapped();
        overlapped.Offset = 1;
        return ReadFile(hReadOverlapped, &c, 1, nullptr, &overlapped);
    };
    const auto fnWriteOverlapped = [&]
    {
        overlapped = Overlapped();
        return WriteFile(hReadOverlapped, &c, 1, nullptr, &overlapped);
    };
    const std::pair<SRow, std::uint32_t> rows[] = {
        {fnRow("reading a file that is missing", fnOpen(dir.NameOf("missing"))), 2},
        {fnRow("reading from a folder that is missing", fnOpen(dir.NameOf("missing/file"))), dwFolderMissing},
        {fnRow("writing to a folder that is missing", fnCreate(dir.NameOf("missing/file"))), dwFolderMissing},
        {fnRow("reading below a file", fnOpen(dir.NameOf("file/below"))), 3},
        {fnRow("writing below a file", fnCreate(dir.NameOf("file/below"))), 3},
        {fnRow("reading what has no name", fnOpen(L"")), 3},
        {fnRow("writing what has no name", fnCreate(L"")), 3},
        {fnRow("reading a folder", fnOpen(dir.NameOf("."))), 5},
        {fnRow("writing a folder", fnCreate(dir.NameOf("."))), 5},
        {fnRow("writing to what is open for reading", WriteFile(hRead, &c, 1, &dwBytes, nullptr)), 5},
        {fnRow("reading from what is open for writing", ReadFile(hWrite, &c, 1, &dwBytes, nullptr)), 5},
        {fnRow("writing to what is open for reading, overlapped", fnWriteOverlapped()), 5},
        {fnRow("closing nothing", CloseHandle(nullptr)), 6},
        {fnRow("reading from nothing", ReadFile(InvalidHandle, &c, 1, &dwBytes, nullptr)), 6},
        {fnRow("the size of nothing", GetFileSize(nullptr, &dwBytes) != 0xFFFFFFFF), 6},
        {fnRow("reading at the end, overlapped", fnAtEnd()), 38},
    };
    for (const auto& [row, dwExpected] : rows)
    {
        EXPECT_FALSE(row.bDone) << row.lpcCause;
        EXPECT_EQ(dwExpected, row.dwError) << row.lpcCause;
    }
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

TEST(Platform, TakesFileNamesInUtf16)
{
    const CTempDir dir;
    const std::wstring strDir = dir.NameOf("");
    // The second is the same where a character of wchar_t is a code unit, and UTF-32 elsewhere.
    for (const wchar_t* const lpctName : {L"\xE4\x20AC\xD83D\xDE00", L"\xE4\x20AC\U0001F600"})
    {
        const CHandle hFile(CreateFileForWriting((strDir + lpctName).c_str(), false));
        ASSERT_TRUE(hFile.IsOpen());
    }
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir.PathOf("")))
        names.push_back(entry.path().filename().u8string());
    EXPECT_EQ(std::vector<std::string>{"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"}, names);
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
    std::string strRead(120000, 0);
    std::uint32_t dwRead = 0;
    EXPECT_TRUE(ReadFile(hFile, strRead.data(), 60000, &dwRead, nullptr));
    EXPECT_EQ(60000u, dwRead);
    EXPECT_TRUE(ReadFile(hFile, strRead.data() + 60000, 60000, &dwRead, nullptr));
    EXPECT_EQ(40000u, dwRead);
    EXPECT_TRUE(strBytes == strRead.substr(0, 100000));
    EXPECT_TRUE(ReadFile(hFile, strRead.data(), 10, &dwRead, nullptr));
    EXPECT_EQ(0u, dwRead);
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
    for (const std::string& strBytes : {std::string("abc"), s_strLong})
    {
        Overlapped overlapped;
        const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
        ASSERT_TRUE(BeginWrite(hFile, strBytes, overlapped));
        for (int i = 0; i < 3; ++i)
        {
            std::uint32_t dwBytes = 0;
            EXPECT_TRUE(GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
            EXPECT_EQ(strBytes.size(), dwBytes);
        }
    }
}

TEST(Platform, AskingWithoutWaitingGivesTheEndInTime)
{
    const CTempDir dir;
    const std::string strBytes = Pattern(1 << 20);
    Overlapped overlapped;
    CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
    ASSERT_TRUE(BeginWrite(hFile, strBytes, overlapped));
    std::uint32_t dwBytes = 0;
    while (!GetOverlappedResult(hFile, &overlapped, &dwBytes, false))
    {
        ASSERT_EQ(996u, GetLastError());
        std::this_thread::yield();
    }
    EXPECT_EQ(strBytes.size(), dwBytes);
    EXPECT_TRUE(CloseHandle(hFile.Release()));
    EXPECT_TRUE(strBytes == ReadFileBytes(dir.PathOf("file")));
}

TEST(Platform, OneOperationCanBeUnderWayOnAFile)
{
    const CTempDir dir;
    Overlapped first;
    Overlapped second;
    const CHandle hFile(CreateFileForWriting(dir.NameOf("file").c_str(), true));
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
    EXPECT_TRUE(strBytes == ReadFileBytes(dir.PathOf("file")));
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

TEST(Platform, AFaultMakesAnOperationOfItsKindFail)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("in"), "abc");
    const std::wstring strIn = dir.NameOf("in");
    const std::wstring strOut = dir.NameOf("out");
    const CHandle hIn(OpenFileForReading(strIn.c_str(), false));
    const CHandle hOut(CreateFileForWriting(dir.NameOf("open").c_str(), false));
    char c = 0;
    std::uint32_t dwWord = 0;
    Overlapped overlapped;
    struct SRow
    {
        EFileOperation eOperation;
        std::function<bool()> fnRun;
    };
    const SRow rows[] = {
        {FileOperation_Open,
         [&]
         {
             return CHandle(OpenFileForReading(strIn.c_str(), true)).IsOpen();
         }},
        {FileOperation_Open,
         [&]
         {
             return CHandle(CreateFileForWriting(strOut.c_str(), true)).IsOpen();
         }},
        {FileOperation_Size,
         [&]
         {
             return GetFileSize(hIn, &dwWord) != 0xFFFFFFFF;
         }},
        {FileOperation_Read,
         [&]
         {
             return ReadFile(hIn, &c, 1, &dwWord, nullptr);
         }},
        {FileOperation_Write,
         [&]
         {
             return WriteFile(hOut, &c, 1, &dwWord, nullptr);
         }},
        {FileOperation_Result,
         [&]
         {
             return GetOverlappedResult(hIn, &overlapped, &dwWord, true);
         }},
        {FileOperation_CreateEvent,
         [&]
         {
             return CHandle(CreateAutoResetEvent()).IsOpen();
         }},
        {FileOperation_Close,
         [&]
         {
             return CloseHandle(OpenFileForReading(strIn.c_str(), true));
         }},
        {FileOperation_Close,
         [&]
         {
             return CloseHandle(CreateAutoResetEvent());
         }},
    };
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        EXPECT_TRUE(row.fnRun());
        const CFileFault fault(row.eOperation, 0, 0xABC);
        EXPECT_FALSE(row.fnRun()) << row.eOperation;
        EXPECT_EQ(0xABCu, GetLastError());
        EXPECT_TRUE(row.fnRun()) << row.eOperation;
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
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
    constexpr bool bElsewhere = true;
#else
    constexpr bool bElsewhere = false;
#endif
    EXPECT_EQ(bElsewhere, IsDebugOutputOn());
    // Windows has a place of its own for it.
#if defined(_WIN32)
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr());
#else
    EXPECT_EQ(bElsewhere ? "text" : "", ::testing::internal::GetCapturedStderr());
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

// --- Threads --------------------------------------------------------------------------------------------------------

TEST(Platform, CallsTheOperationAtTheEndOfEachThread)
{
    int nFirst = 0;
    int nSecond = 0;
    const auto AddOne = [](void* pData)
    {
        ++*static_cast<int*>(pData);
    };
    for (int* pnCount : {&nFirst, &nSecond})
    {
        std::thread(
            [&]
            {
                EXPECT_TRUE(QvXmlLib9::Platform::CallAtThreadEnd(AddOne, pnCount));
                EXPECT_EQ(*pnCount, 0) << "the thread has not ended";
            })
            .join();
        EXPECT_EQ(*pnCount, 1);
    }
    EXPECT_EQ(nFirst, 1);
}

// --- Time -----------------------------------------------------------------------------------------------------------

TEST(Platform, KnowsTheCalendarFarFromToday)
{
    struct
    {
        __int64 nTime;
        int nYear, nMonth, nDay, nHour, nMinute, nSecond, nWeekDay, nYearDay;
    } const cases[] = {
        {0, 1970, 1, 1, 0, 0, 0, 4, 0},
        {-1, 1969, 12, 31, 23, 59, 59, 3, 364},
        {951782400, 2000, 2, 29, 0, 0, 0, 2, 59},
        {4107542400, 2100, 3, 1, 0, 0, 0, 1, 59},
        {32535215999, 3000, 12, 31, 23, 59, 59, 3, 364},
        {253402300799, 9999, 12, 31, 23, 59, 59, 5, 364},
        {-2203891200, 1900, 3, 1, 0, 0, 0, 4, 59},
        {-62135596800, 1, 1, 1, 0, 0, 0, 1, 0},
        {-62167219200, 0, 1, 1, 0, 0, 0, 6, 0},
        {-62167219201, -1, 12, 31, 23, 59, 59, 5, 364},
    };
    for (const auto& expected : cases)
    {
        SCOPED_TRACE(expected.nTime);
        std::tm fields = {};
        ASSERT_TRUE(QvXmlLib9::Platform::GetUtcTime(expected.nTime, fields));
        EXPECT_EQ(fields.tm_year + 1900, expected.nYear);
        EXPECT_EQ(fields.tm_mon + 1, expected.nMonth);
        EXPECT_EQ(fields.tm_mday, expected.nDay);
        EXPECT_EQ(fields.tm_hour, expected.nHour);
        EXPECT_EQ(fields.tm_min, expected.nMinute);
        EXPECT_EQ(fields.tm_sec, expected.nSecond);
        EXPECT_EQ(fields.tm_wday, expected.nWeekDay);
        EXPECT_EQ(fields.tm_yday, expected.nYearDay);
        // Through the machine's zone and back.
        ASSERT_TRUE(QvXmlLib9::Platform::GetZonedTime(expected.nTime, fields));
        EXPECT_EQ(QvXmlLib9::Platform::MakeTime(fields), expected.nTime);
    }
    std::tm fields = {};
    EXPECT_FALSE(QvXmlLib9::Platform::GetUtcTime(INT64_MAX, fields));
    EXPECT_FALSE(QvXmlLib9::Platform::GetUtcTime(INT64_MIN, fields));
}
