#include "quiver/document/OverlappedSource.h"

#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

namespace Platform = QvXmlLib9::Platform;

using QvTest::CFileFault;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvXmlLib9::COverlappedSource;
using QvXmlLib9::CQvException;

constexpr std::size_t s_nChunk = COverlappedSource::s_dwChunkSize;

/// Bytes that tell chunks apart.
std::string MakeBytes(std::size_t nBytes)
{
    std::string strBytes(nBytes, '\0');
    for (std::size_t n = 0; n < nBytes; ++n)
        strBytes[n] = static_cast<char>(n * 7 + n / s_nChunk);
    return strBytes;
}

TEST(OverlappedSource, ChunksAreTheFileInOrder)
{
    const CTempDir dir;
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    const struct
    {
        std::size_t nBytes;
        std::vector<std::size_t> sizes;
    } rows[] = {
        {0, {0}},
        {1, {1}},
        {s_nChunk - 1, {s_nChunk - 1}},
        {s_nChunk, {s_nChunk, 0}},
        {s_nChunk + 1, {s_nChunk, 1}},
        {3 * s_nChunk + 5, {s_nChunk, s_nChunk, s_nChunk, 5}},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.nBytes);
        const std::string strBytes = MakeBytes(row.nBytes);
        QvTest::WriteFileBytes(dir.PathOf("a"), strBytes);
        std::string strRead;
        std::vector<std::size_t> sizes;
        const auto Take = [&](const COverlappedSource& source)
        {
            strRead += source.GetChunk();
            sizes.push_back(source.GetChunk().size());
        };
        COverlappedSource source(dir.NameOf("a").c_str());
        for (; !source.IsLast(); source.Advance())
        {
            source.ReadAhead();
            Take(source);
        }
        Take(source);
        EXPECT_EQ(row.sizes, sizes);
        EXPECT_TRUE(strBytes == strRead);
    }
    EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
}

TEST(OverlappedSource, FailuresOfTheFirstChunkNameTheFile)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("a");
    QvTest::WriteFileBytes(dir.PathOf("a"), "<a/>");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    const struct
    {
        Platform::EFileOperation eOperation;
        std::uint32_t dwError;
        std::wstring strMessage;
    } rows[] = {
        {Platform::FileOperation_Open, 5, L"Failed to open the file [" + strName + L"] Error [0x00000005]"},
        {Platform::FileOperation_Read, 23, L"Failed to read the contents of the file. Error [0x00000017]"},
        {Platform::FileOperation_Result, 38,
         L"Failed to read the contents of the file [" + strName + L"] Error [0x00000026]"},
    };
    for (const auto& row : rows)
    {
        const CFileFault fault(row.eOperation, 0, row.dwError);
        ExpectThrows<CQvException>(row.strMessage, [&strName] { COverlappedSource source(strName.c_str()); });
        EXPECT_TRUE(fault.WasMet());
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
}

TEST(OverlappedSource, FailuresOfLaterChunksDoNotNameTheFile)
{
    const CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a"), MakeBytes(2 * s_nChunk));
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    {
        COverlappedSource source(dir.NameOf("a").c_str());
        const CFileFault fault(Platform::FileOperation_Read, 0, 23);
        ExpectThrows<CQvException>(L"Failed to read the contents of the file. Error [0x00000017]",
                                   [&source] { source.ReadAhead(); });
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
    {
        COverlappedSource source(dir.NameOf("a").c_str());
        source.ReadAhead();
        const CFileFault fault(Platform::FileOperation_Result, 0, 38);
        ExpectThrows<CQvException>(L"Failed to read the contents of the file. Error [0x00000026]",
                                   [&source] { source.Advance(); });
    }
    EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
}

TEST(OverlappedSource, AnyOtherFailureOfAResultIsTheEndOfTheFile)
{
    const CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a"), MakeBytes(2 * s_nChunk));
    COverlappedSource source(dir.NameOf("a").c_str());
    source.ReadAhead();
    const CFileFault fault(Platform::FileOperation_Result, 0, 23);
    source.Advance();
    EXPECT_TRUE(source.IsLast());
    EXPECT_EQ("", source.GetChunk());
}

TEST(OverlappedSource, AReadThatIsUnderWayEndsWithTheSource)
{
    const CTempDir dir;
    QvTest::WriteFileBytes(dir.PathOf("a"), MakeBytes(3 * s_nChunk));
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (const bool bClose : {false, true})
    {
        COverlappedSource source(dir.NameOf("a").c_str());
        source.ReadAhead();
        if (bClose)
            source.Close();
    }
    EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
}

} // namespace
