#include "quiver/foundation/BinaryStream.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"
#include "tests/support/FullDisk.h"
#include "tests/support/PlatformFiles.h"

#include <string>

using namespace QvXmlLib9;
using QvTest::CFileFault;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvTest::ReadFileBytes;
using QvTest::WriteFileBytes;

namespace
{

CBinaryData FromBytes(std::string_view bytes)
{
    CBinaryData data;
    data.SetBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    return data;
}

std::wstring WriteFailed(const std::wstring& strFile, const wchar_t* lpctCode)
{
    return L"Failed to write data to the file [" + strFile + L"] error [0x" + lpctCode + L"]";
}

} // namespace

// --- CBinaryStream --------------------------------------------------------------------------------------------------

TEST(BinaryStream, IsEmptyAtFirst)
{
    const CBinaryStream stream;
    EXPECT_EQ(nullptr, stream.GetData().GetData());
    EXPECT_EQ(0u, stream.GetLength());
}

TEST(BinaryStream, CollectsBytesInEveryForm)
{
    CBinaryStream stream;
    stream.Append(static_cast<unsigned char>('a'));
    stream.Append(FromBytes("bc"));
    EXPECT_EQ(3u, stream.GetLength());
    stream.Append(reinterpret_cast<const unsigned char*>("de"), 2);
    EXPECT_EQ("abcde", stream.GetData().GetView());
}

TEST(BinaryStream, SharesTheDataItBeginsWithUntilItAppends)
{
    const CBinaryData data = FromBytes("ab");
    CBinaryStream stream(data);
    EXPECT_EQ(data.GetData(), stream.GetData().GetData());
    stream.Append(static_cast<unsigned char>('c'));
    EXPECT_EQ("ab", data.GetView());
    EXPECT_EQ("abc", stream.GetData().GetView());
}

TEST(BinaryStream, DataThatWereAskedForDoNotChangeAfterwards)
{
    CBinaryStream stream;
    stream.Append(FromBytes("ab"));
    const CBinaryData data = stream.GetData();
    stream.Append(FromBytes("c"));
    EXPECT_EQ("ab", data.GetView());
}

TEST(BinaryStream, IsCountedUnderItsName)
{
    const CBinaryStream stream;
    const CFileBinaryStream fileStream(L"unused", Encoding_None);
    const std::wstring strReport = CInstanceMonitor::DumpState();
    EXPECT_NE(std::wstring::npos, strReport.find(L"--> CBinaryStream = 1/"));
    EXPECT_NE(std::wstring::npos, strReport.find(L"--> CFileBinaryStream = 1/"));
}

// --- CFileBinaryStream ----------------------------------------------------------------------------------------------

TEST(FileBinaryStream, WritesTheMarkOfUtf16AndNoneForOthers)
{
    struct SRow
    {
        XmlEncoding eEncoding;
        std::string_view bytes;
        std::string strFile;
    };
    const SRow rows[] = {
        {Encoding_None, "abc", "abc"},
        {Encoding_UTF8, "abc", "abc"},
        {Encoding_UTF16, "abc",
         "\xFF\xFE"
         "abc"},
        {Encoding_UTF16_Undeclared, "abc",
         "\xFF\xFE"
         "abc"},
        {Encoding_UTF8, "", ""},
        {Encoding_UTF16, "", "\xFF\xFE"},
    };
    const CTempDir dir;
    for (const SRow& row : rows)
    {
        WriteFileBytes(dir.PathOf("file"), "what stood there before");
        CFileBinaryStream stream(dir.NameOf("file"), row.eEncoding, FromBytes(row.bytes));
        stream.Write();
        EXPECT_EQ(row.strFile, ReadFileBytes(dir.PathOf("file")));
    }
}

TEST(FileBinaryStream, WritesWhatWasAppended)
{
    const CTempDir dir;
    CFileBinaryStream stream(dir.NameOf("file"), Encoding_UTF8);
    stream.Append(FromBytes("ab"));
    stream.Write();
    EXPECT_EQ("ab", ReadFileBytes(dir.PathOf("file")));
    stream.Append(FromBytes("c"));
    stream.Write();
    EXPECT_EQ("abc", ReadFileBytes(dir.PathOf("file")));
}

TEST(FileBinaryStream, WritesABlockOfNothing)
{
    const CTempDir dir;
    CBinaryData data;
    data.SetAsHexString(L"");
    CFileBinaryStream(dir.NameOf("file"), Encoding_None, data).Write();
    EXPECT_EQ("", ReadFileBytes(dir.PathOf("file")));
}

TEST(FileBinaryStream, AnUnwritablePathFailsWithItsNameAndTheCode)
{
    const CTempDir dir;
    struct SRow
    {
        std::wstring strFile;
        const wchar_t* lpctCode;
    };
    const SRow rows[] = {
        {dir.NameOf("missing/file"), QvTest::s_lpctFolderMissing},
        {L"", L"00000003"},
        {dir.NameOf("."), L"00000005"},
    };
    for (const SRow& row : rows)
    {
        CFileBinaryStream stream(row.strFile, Encoding_UTF8, FromBytes("abc"));
        ExpectThrows<CQvException>(WriteFailed(row.strFile, row.lpctCode), [&] { stream.Write(); });
    }
}

TEST(FileBinaryStream, AFullDiskFailsWithItsNameAndTheCode)
{
    const QvTest::CFullDisk disk;
    const std::wstring strName = disk.GetFileName();
    const std::size_t nOpen = CountOpenFiles();
    CFileBinaryStream mark(strName, Encoding_UTF16);
    ExpectThrows<CQvException>(WriteFailed(strName, L"00000070"), [&] { mark.Write(); });
    CFileBinaryStream bytes(strName, Encoding_UTF8, FromBytes("abc"));
    ExpectThrows<CQvException>(WriteFailed(strName, L"00000070"), [&] { bytes.Write(); });
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(FileBinaryStream, EveryFailureClosesTheFileAndKeepsWhatWasWritten)
{
    using namespace QvXmlLib9::Platform;
    struct SRow
    {
        EFileOperation eOperation;
        int nth;
        std::string strFile;
    };
    const SRow rows[] = {
        {FileOperation_Open, 0, "old"},
        {FileOperation_Write, 0, ""},
        {FileOperation_Write, 1, "\xFF\xFE"},
        {FileOperation_Close, 0,
         "\xFF\xFE"
         "abc"},
    };
    const CTempDir dir;
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        WriteFileBytes(dir.PathOf("file"), "old");
        CFileBinaryStream stream(dir.NameOf("file"), Encoding_UTF16, FromBytes("abc"));
        {
            const CFileFault fault(row.eOperation, row.nth, 0xABC);
            ExpectThrows<CQvException>(WriteFailed(dir.NameOf("file"), L"00000ABC"), [&] { stream.Write(); });
            EXPECT_TRUE(fault.WasMet());
        }
        EXPECT_EQ(nOpen, CountOpenFiles());
        EXPECT_EQ(row.strFile, ReadFileBytes(dir.PathOf("file")));
    }
}
