#include "quiver/foundation/platform/Platform.h"

#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/PlatformFiles.h"

#include <filesystem>
#include <string>
#include <thread>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// What can only be brought about on Windows; the rest of the platform's tests run everywhere. The names of the system
// and those of the platform layer are often the same.

namespace Platform = QvXmlLib9::Platform;

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

/// A pipe that programs of other systems would call by a name in a folder.
class CPipe
{
public:
    explicit CPipe(const wchar_t* lpctName, DWORD dwAccess)
        : m_strName(std::wstring(L"\\\\.\\pipe\\quiver-") + std::to_wstring(::GetCurrentProcessId()) + lpctName)
        , m_hPipe(
              ::CreateNamedPipeW(m_strName.c_str(), dwAccess, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 4096, 4096, 0, nullptr))
    {
        EXPECT_NE(INVALID_HANDLE_VALUE, m_hPipe);
    }
    ~CPipe() { ::CloseHandle(m_hPipe); }
    CPipe(const CPipe&) = delete;
    CPipe& operator=(const CPipe&) = delete;

    const wchar_t* GetName() const { return m_strName.c_str(); }
    HANDLE Get() const { return m_hPipe; }

private:
    std::wstring m_strName;
    HANDLE m_hPipe;
};

} // namespace

TEST(PlatformWin32, ReportsTheSystemsErrorNumbersForReading)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    struct SRow
    {
        std::wstring strName;
        std::uint32_t dwError;
    };
    const SRow rows[] = {
        {dir.NameOf("missing"), ERROR_FILE_NOT_FOUND},
        {dir.NameOf("missing/file"), ERROR_PATH_NOT_FOUND},
        {L"", ERROR_PATH_NOT_FOUND},
        {dir.NameOf("file/below"), ERROR_PATH_NOT_FOUND},
        {dir.NameOf("."), ERROR_ACCESS_DENIED},
        {dir.NameOf("a<b"), ERROR_INVALID_NAME},
    };
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        for (const bool bOverlapped : {false, true})
        {
            EXPECT_EQ(Platform::InvalidHandle, Platform::OpenFileForReading(row.strName.c_str(), bOverlapped));
            EXPECT_EQ(row.dwError, Platform::GetLastError()) << QvTest::Show(row.strName);
        }
    }
    EXPECT_EQ(Platform::InvalidHandle, Platform::OpenFileForReading(nullptr, false));
    EXPECT_EQ(3u, Platform::GetLastError());
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(PlatformWin32, ReportsTheSystemsErrorNumbersForWriting)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    struct SRow
    {
        std::wstring strName;
        std::uint32_t dwError;
    };
    const SRow rows[] = {
        {L"", ERROR_PATH_NOT_FOUND},
        {dir.NameOf("missing/file"), ERROR_PATH_NOT_FOUND},
        {dir.NameOf("file/below"), ERROR_PATH_NOT_FOUND},
        {dir.NameOf("."), ERROR_ACCESS_DENIED},
        {dir.NameOf("a<b"), ERROR_INVALID_NAME},
    };
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        for (const bool bOverlapped : {false, true})
        {
            EXPECT_EQ(Platform::InvalidHandle, Platform::CreateFileForWriting(row.strName.c_str(), bOverlapped));
            EXPECT_EQ(row.dwError, Platform::GetLastError()) << QvTest::Show(row.strName);
        }
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
    EXPECT_EQ("x", ReadFileBytes(dir.PathOf("file")));
}

TEST(PlatformWin32, AFileThatIsBeingWrittenIsNobodyElses)
{
    const CTempDir dir;
    const CHandle hFile(Platform::CreateFileForWriting(dir.NameOf("file").c_str(), false));
    ASSERT_TRUE(hFile.IsOpen());
    EXPECT_EQ(Platform::InvalidHandle, Platform::OpenFileForReading(dir.NameOf("file").c_str(), false));
    EXPECT_EQ(ERROR_SHARING_VIOLATION, Platform::GetLastError());
    EXPECT_EQ(Platform::InvalidHandle, Platform::CreateFileForWriting(dir.NameOf("file").c_str(), false));
    EXPECT_EQ(ERROR_SHARING_VIOLATION, Platform::GetLastError());
}

TEST(PlatformWin32, AFileThatIsBeingReadCannotShrink)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), Pattern(1000));
    const CHandle hFile(Platform::OpenFileForReading(dir.NameOf("file").c_str(), false));
    std::error_code error;
    std::filesystem::resize_file(dir.PathOf("file"), 300, error);
    EXPECT_TRUE(error);
    std::string strRead(1000, 0);
    std::uint32_t dwRead = 0;
    EXPECT_TRUE(Platform::ReadFile(hFile, strRead.data(), 1000, &dwRead, nullptr));
    EXPECT_EQ(Pattern(1000), strRead);
}

TEST(PlatformWin32, WritingToWhatIsOpenForReadingIsError5)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), "x");
    for (const bool bOverlapped : {false, true})
    {
        const CHandle hFile(Platform::OpenFileForReading(dir.NameOf("file").c_str(), bOverlapped));
        std::uint32_t dwBytes = 0;
        Platform::Overlapped overlapped;
        EXPECT_FALSE(
            Platform::WriteFile(hFile, "y", 1, bOverlapped ? nullptr : &dwBytes, bOverlapped ? &overlapped : nullptr));
        EXPECT_EQ(5u, Platform::GetLastError());
    }
    EXPECT_EQ("x", ReadFileBytes(dir.PathOf("file")));
}

TEST(PlatformWin32, AWriteIntoAPipeThatNobodyReadsFails)
{
    const CPipe pipe(L"-closed", PIPE_ACCESS_INBOUND);
    const CHandle hFile(Platform::CreateFileForWriting(pipe.GetName(), false));
    ASSERT_TRUE(hFile.IsOpen());
    ::DisconnectNamedPipe(pipe.Get());
    EXPECT_FALSE(WriteSync(hFile, "x"));
    EXPECT_TRUE(Platform::GetLastError() == ERROR_PIPE_NOT_CONNECTED || Platform::GetLastError() == ERROR_NO_DATA ||
                Platform::GetLastError() == ERROR_BROKEN_PIPE)
        << Platform::GetLastError();
}

TEST(PlatformWin32, AReadAcrossTheEndHasTheBytesThatAreThere)
{
    const CTempDir dir;
    WriteFileBytes(dir.PathOf("file"), Pattern(1000));
    const CHandle hFile(Platform::OpenFileForReading(dir.NameOf("file").c_str(), true));
    std::string strBuffer(10, 0);
    Platform::Overlapped overlapped;
    overlapped.Offset = 1000;
    EXPECT_FALSE(BeginRead(hFile, strBuffer, overlapped));
    EXPECT_EQ(38u, Platform::GetLastError());
    overlapped = Platform::Overlapped();
    overlapped.Offset = 995;
    std::uint32_t dwBytes = 4711;
    EXPECT_TRUE(BeginRead(hFile, strBuffer, overlapped));
    EXPECT_TRUE(Platform::GetOverlappedResult(hFile, &overlapped, &dwBytes, true));
    EXPECT_EQ(5u, dwBytes);
    EXPECT_EQ(Pattern(1000).substr(995), strBuffer.substr(0, 5));
}

TEST(PlatformWin32, FilesWithoutOffsetsAreReadInOrder)
{
    const CPipe pipe(L"-read", PIPE_ACCESS_OUTBOUND);
    const std::string strBytes = Pattern(3000);
    const CHandle hFile(Platform::OpenFileForReading(pipe.GetName(), false));
    ASSERT_TRUE(hFile.IsOpen());
    std::thread writer(
        [&]
        {
            DWORD dwWritten = 0;
            EXPECT_TRUE(::WriteFile(pipe.Get(), strBytes.data(), 3000, &dwWritten, nullptr));
            EXPECT_EQ(3000u, dwWritten);
        });
    std::string strRead;
    while (strRead.size() < strBytes.size())
    {
        char piece[1000];
        std::uint32_t dwRead = 0;
        if (!Platform::ReadFile(hFile, piece, sizeof(piece), &dwRead, nullptr) || dwRead == 0)
            break;
        strRead.append(piece, dwRead);
    }
    writer.join();
    EXPECT_EQ(strBytes, strRead);
}

namespace
{

std::wstring s_strSunk;

} // namespace

TEST(PlatformWin32, ErrorBoxGoesToTheSinkAsItIs)
{
    const Platform::PfnMessageBox pfnOld =
        Platform::SetMessageBoxSink([](const wchar_t* lpctText, const wchar_t* lpctCaption)
                                    { s_strSunk = std::wstring(lpctCaption) + L'\n' + lpctText; });
    Platform::ShowErrorBox(L"text \xE4\xD83D\xDE00", L"caption");
    Platform::SetMessageBoxSink(pfnOld);
    EXPECT_TEXT(L"caption\ntext \xE4\xD83D\xDE00", s_strSunk);
}

TEST(PlatformWin32, LongReportsArriveWhole)
{
    const std::wstring strText(1500, L'\xE4');
    const Platform::PfnMessageBox pfnOld =
        Platform::SetMessageBoxSink([](const wchar_t* lpctText, const wchar_t*) { s_strSunk = lpctText; });
    Platform::ShowErrorBox(strText.c_str(), L"caption");
    Platform::SetMessageBoxSink(pfnOld);
    EXPECT_TEXT(strText, s_strSunk);
}
