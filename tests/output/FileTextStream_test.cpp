#include "quiver/output/FileTextStream.h"

#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"
#include "tests/support/FullDisk.h"
#include "tests/support/PlatformFiles.h"

#include <string>

using namespace QvXmlLib9;
using namespace QvXmlLib9::Platform;
using QvTest::CFileFault;
using QvTest::CountOpenFiles;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvTest::ReadFileBytes;
using QvTest::WriteFileBytes;

namespace
{

std::wstring OpenFailed(const std::wstring& strFile, const wchar_t* lpctCode)
{
    return L"Failed to write data to the file [" + strFile + L"] error [0x" + lpctCode + L"]";
}

std::wstring WriteFailed(const wchar_t* lpctCode)
{
    return std::wstring(L"Failed to write data to the file. Error [0x") + lpctCode + L"]";
}

/// Text that is ASCII for the most part, with units of every length in UTF-8.
std::wstring Text(std::size_t nLength)
{
    const std::wstring strPiece = L"<item>\xE4\x20AC\xD83D\xDE00 and some more text </item>\n";
    std::wstring strText;
    strText.reserve(nLength + strPiece.size());
    while (strText.size() < nLength)
        strText += strPiece;
    // The cut never parts a pair: the rest is filled with ASCII.
    strText.resize(nLength - nLength % strPiece.size());
    strText.resize(nLength, L'.');
    return strText;
}

/// Puts text in, as a writer does: in pieces, flushing once 4096 units are buffered.
void WriteInPieces(CFileTextStream& stream, std::wstring_view text)
{
    constexpr std::size_t nPiece = 400;
    for (std::size_t nAt = 0; nAt < text.size(); nAt += nPiece)
    {
        stream.Append(text.substr(nAt, nPiece));
        if (stream.GetLength() >= 4096)
            stream.Flush();
    }
}

} // namespace

TEST(FileTextStream, WritesTheSameBytesAsThePlainStream)
{
    const CTempDir dir;
    for (const XmlEncoding eEncoding : {Encoding_UTF8, Encoding_UTF16, Encoding_UTF16_Undeclared})
    {
        for (const std::size_t nLength : {0u, 1u, 40u, 4095u, 4096u, 4097u, 8192u, 100000u, 3000000u})
        {
            const std::wstring strText = Text(nLength);
            CFileTextStream overlapped(dir.NameOf("overlapped"), eEncoding);
            overlapped.Open();
            WriteInPieces(overlapped, strText);
            overlapped.Close();
            const bool bUtf8 = eEncoding == Encoding_UTF8;
            const CBinaryData bytes = bUtf8 ? EncodeUtf8(strText.c_str()) : CBinaryData(strText.c_str());
            CFileBinaryStream(dir.NameOf("plain"), eEncoding, bytes).Write();
            EXPECT_TRUE(ReadFileBytes(dir.PathOf("plain")) == ReadFileBytes(dir.PathOf("overlapped"))) << nLength;
        }
    }
}

TEST(FileTextStream, WritesFiftyMegabytesAsThePlainStreamDoes)
{
    const CTempDir dir;
    const std::wstring strText = Text(45000000);
    CFileTextStream overlapped(dir.NameOf("overlapped"), Encoding_UTF8);
    overlapped.Open();
    WriteInPieces(overlapped, strText);
    overlapped.Close();
    const CBinaryData bytes = EncodeUtf8(strText.c_str());
    EXPECT_GT(bytes.GetLength(), 50000000u);
    CFileBinaryStream(dir.NameOf("plain"), Encoding_UTF8, bytes).Write();
    EXPECT_TRUE(ReadFileBytes(dir.PathOf("plain")) == ReadFileBytes(dir.PathOf("overlapped")));
}

TEST(FileTextStream, AUtf16FileBeginsWithTheMarkAndHasNoOther)
{
    const CTempDir dir;
    for (const XmlEncoding eEncoding : {Encoding_UTF16, Encoding_UTF16_Undeclared})
    {
        CFileTextStream stream(dir.NameOf("file"), eEncoding);
        stream.Open();
        for (int i = 0; i < 3; ++i)
        {
            stream.Append(L"ab");
            stream.Flush();
        }
        stream.Close();
        EXPECT_EQ(std::string("\xFF\xFE"
                              "a\0b\0a\0b\0a\0b\0",
                              14),
                  ReadFileBytes(dir.PathOf("file")));
    }
}

TEST(FileTextStream, AUtf8FileHasNoMark)
{
    const CTempDir dir;
    CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
    stream.Open();
    stream.Append(L"\xE4");
    stream.Close();
    EXPECT_EQ("\xC3\xA4", ReadFileBytes(dir.PathOf("file")));
}

TEST(FileTextStream, FlushingNothingWritesNothing)
{
    const CTempDir dir;
    CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
    stream.Open();
    stream.Flush();
    stream.Flush();
    stream.Close();
    EXPECT_EQ("", ReadFileBytes(dir.PathOf("file")));
}

TEST(FileTextStream, FlushingEmptiesTheBuffer)
{
    const CTempDir dir;
    CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
    stream.Open();
    stream.Append(L"abc");
    stream.Flush();
    EXPECT_EQ(0u, stream.GetLength());
    stream.Close();
}

TEST(FileTextStream, APieceThatBeginsWithAZeroWritesNothingForItself)
{
    const CTempDir dir;
    for (const XmlEncoding eEncoding : {Encoding_UTF8, Encoding_UTF16})
    {
        CFileTextStream stream(dir.NameOf("file"), eEncoding);
        stream.Open();
        stream.Append(std::wstring_view(L"\0lost", 5));
        stream.Flush();
        stream.Append(L"a");
        stream.Close();
        EXPECT_EQ(eEncoding == Encoding_UTF8 ? std::string("a")
                                             : std::string("\xFF\xFE"
                                                           "a\0",
                                                           4),
                  ReadFileBytes(dir.PathOf("file")));
    }
}

TEST(FileTextStream, AnEncodingWithoutByteFormFailsAtTheFirstFlush)
{
    const CTempDir dir;
    const std::size_t nOpen = CountOpenFiles();
    {
        CFileTextStream stream(dir.NameOf("file"), Encoding_None);
        stream.Open();
        stream.Append(L"a");
        ExpectThrows<CQvException>(L"Unknown Encoding, select UTF-8 (contact support@quiver-xml.example for support)",
                                   [&] { stream.Flush(); });
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(FileTextStream, OpeningAgainStartsTheFileAnew)
{
    const CTempDir dir;
    const std::size_t nOpen = CountOpenFiles();
    CFileTextStream stream(dir.NameOf("file"), Encoding_UTF16);
    stream.Open();
    stream.Append(L"first");
    stream.Flush();
    stream.Append(L"buffered");
    stream.Open();
    EXPECT_EQ(nOpen + 1, CountOpenFiles());
    stream.Append(L"a");
    stream.Close();
    EXPECT_EQ(nOpen, CountOpenFiles());
    EXPECT_EQ(std::string("\xFF\xFE"
                          "a\0",
                          4),
              ReadFileBytes(dir.PathOf("file")));
}

TEST(FileTextStream, DestructionWithoutCloseKeepsWhatWasFlushedAndClosesTheFile)
{
    const CTempDir dir;
    const std::size_t nOpen = CountOpenFiles();
    const std::wstring strFlushed = Text(2000000);
    {
        CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
        stream.Open();
        stream.Append(strFlushed);
        stream.Flush();
        stream.Append(L"not flushed");
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
    EXPECT_TRUE(EncodeUtf8(strFlushed.c_str()).GetView() == ReadFileBytes(dir.PathOf("file")));
}

TEST(FileTextStream, ClosingWithoutAnOpenFileFails)
{
    const CTempDir dir;
    CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
    ExpectThrows<CQvException>(WriteFailed(L"00000006"), [&] { stream.Close(); });
    stream.Open();
    stream.Close();
    ExpectThrows<CQvException>(WriteFailed(L"00000006"), [&] { stream.Close(); });
    stream.Append(L"a");
    ExpectThrows<CQvException>(WriteFailed(L"00000006"), [&] { stream.Flush(); });
}

TEST(FileTextStream, AnUnwritablePathFailsInOpenWithItsNameAndTheCode)
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
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        CFileTextStream stream(row.strFile, Encoding_UTF16);
        ExpectThrows<CQvException>(OpenFailed(row.strFile, row.lpctCode), [&] { stream.Open(); });
    }
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(FileTextStream, AFullDiskFailsAndClosesTheFile)
{
    const QvTest::CFullDisk disk;
    const std::wstring strName = disk.GetFileName();
    const std::size_t nOpen = CountOpenFiles();
    CFileTextStream atClose(strName, Encoding_UTF8);
    atClose.Open();
    atClose.Append(L"a");
    ExpectThrows<CQvException>(WriteFailed(L"00000070"), [&] { atClose.Close(); });
    EXPECT_EQ(nOpen, CountOpenFiles());

    // A long piece is written while the next one arises, whose flush reports it, unless the system refuses it at once.
    CFileTextStream atFlush(strName, Encoding_UTF8);
    atFlush.Open();
    atFlush.Append(Text(200000));
#if !defined(_WIN32)
    EXPECT_NO_THROW(atFlush.Flush());
    atFlush.Append(L"b");
#endif
    ExpectThrows<CQvException>(WriteFailed(L"00000070"), [&] { atFlush.Flush(); });
    EXPECT_EQ(nOpen, CountOpenFiles());

    CFileTextStream mark(strName, Encoding_UTF16);
    ExpectThrows<CQvException>(OpenFailed(strName, L"00000070"), [&] { mark.Open(); });
    EXPECT_EQ(nOpen, CountOpenFiles());
}

TEST(FileTextStream, EveryFailureClosesTheFileAndKeepsWhatWasWritten)
{
    // One mark and two pieces are written: the mark in Open, the pieces in Flush and Close.
    struct SRow
    {
        EFileOperation eOperation;
        int nth;
        std::wstring strMessage;
        std::string strFile;
    };
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("file");
    const std::string strMark = "\xFF\xFE";
    const std::string strFirst = strMark + std::string("a\0", 2);
    const std::string strAll = strFirst + std::string("b\0", 2);
    const SRow rows[] = {
        {FileOperation_Open, 0, OpenFailed(strName, L"00000ABC"), "old"},
        {FileOperation_CreateEvent, 0, L"Failed to create event for file overlap [" + strName + L"] error [0x00000ABC]",
         ""},
        {FileOperation_Write, 0, OpenFailed(strName, L"00000ABC"), ""},
        {FileOperation_Result, 0, WriteFailed(L"00000ABC"), strMark},
        {FileOperation_Write, 1, WriteFailed(L"00000ABC"), strMark},
        {FileOperation_Result, 1, WriteFailed(L"00000ABC"), strFirst},
        {FileOperation_Write, 2, WriteFailed(L"00000ABC"), strFirst},
        {FileOperation_Result, 2, WriteFailed(L"00000ABC"), strAll},
        {FileOperation_Close, 0, WriteFailed(L"00000ABC"), strAll},
    };
    const std::size_t nOpen = CountOpenFiles();
    for (const SRow& row : rows)
    {
        WriteFileBytes(dir.PathOf("file"), "old");
        {
            const CFileFault fault(row.eOperation, row.nth, 0xABC);
            CFileTextStream stream(strName, Encoding_UTF16);
            ExpectThrows<CQvException>(row.strMessage,
                                       [&]
                                       {
                                           stream.Open();
                                           stream.Append(L"a");
                                           stream.Flush();
                                           stream.Append(L"b");
                                           stream.Close();
                                       });
            EXPECT_TRUE(fault.WasMet());
            EXPECT_EQ(nOpen, CountOpenFiles());
        }
        EXPECT_EQ(row.strFile, ReadFileBytes(dir.PathOf("file")));
    }
}

TEST(FileTextStream, APendingOperationIsNoFailure)
{
    const CTempDir dir;
    // The write is not done, since the platform was told to fail; what counts is that nothing is thrown.
    for (const EFileOperation eOperation : {FileOperation_Write, FileOperation_Result})
    {
        const CFileFault fault(eOperation, 0, Error_IoPending);
        CFileTextStream stream(dir.NameOf("file"), Encoding_UTF8);
        stream.Open();
        stream.Append(L"a");
        EXPECT_NO_THROW(stream.Close());
        EXPECT_TRUE(fault.WasMet());
    }
}

TEST(FileTextStream, IsCountedUnderItsName)
{
    const CFileTextStream stream(L"unused", Encoding_UTF8);
    EXPECT_NE(std::wstring::npos, CInstanceMonitor::DumpState().find(L"--> CFileTextStream = 1/"));
}
