#include "quiver/document/DocumentSource.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/QvZip.h"
#include "tests/support/Expect.h"
#include "tests/support/FileFault.h"
#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

namespace
{

namespace Platform = QvXmlLib9::Platform;

using QvTest::CFileFault;
using QvTest::CTempDir;
using QvTest::ExpectThrows;
using QvXmlLib9::CDocumentSource;
using QvXmlLib9::CQvException;

std::string Compress(const std::string& strBytes, QvXmlLib9::CompressionType eType)
{
    unsigned long dwLength = static_cast<unsigned long>(strBytes.size());
    auto* pData = new unsigned char[dwLength];
    std::copy(strBytes.begin(), strBytes.end(), pData);
    QvXmlLib9::CQvZip::CompressBuffer(&pData, &dwLength, eType);
    const std::unique_ptr<unsigned char[]> owner(pData);
    return std::string(reinterpret_cast<char*>(pData), dwLength);
}

CDocumentSource FromBytes(const std::string& strBytes)
{
    return CDocumentSource::FromMemory(strBytes.data(), strBytes.size());
}

TEST(DocumentSource, BytesOfTheCallerAreNotCopied)
{
    const std::string strBytes = "<a/>";
    const CDocumentSource source = FromBytes(strBytes);
    EXPECT_EQ(strBytes.data(), source.GetData().data());
    EXPECT_EQ(4u, source.GetData().size());
}

// No length is longer where sizes have 32 bits.
#if SIZE_MAX > 0xFFFFFFFF
TEST(DocumentSource, ALengthOfMoreThan32BitsIsCutToItsLowWord)
{
    EXPECT_EQ(2u, CDocumentSource::FromMemory("<a/>", 0x100000002).GetData().size());
}
#endif

TEST(DocumentSource, TextBecomesUtf16WithAMark)
{
    using namespace std::string_literals;
    EXPECT_EQ("\xFF\xFE"s, CDocumentSource::FromText(L"").GetData());
    EXPECT_EQ("\xFF\xFE\xAC\x20"s, CDocumentSource::FromText(L"\x20AC").GetData());
    EXPECT_EQ("\xFF\xFE\x3D\xD8\x00\xDE"s, CDocumentSource::FromText(L"\U0001F600").GetData());
}

TEST(DocumentSource, AFileIsReadWholeAndClosed)
{
    const CTempDir dir;
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (const std::size_t nBytes : {0u, 1u, 300000u})
    {
        const std::string strBytes(nBytes, 'x');
        QvTest::WriteFileBytes(dir.PathOf("a"), strBytes);
        const CDocumentSource source = CDocumentSource::FromFile(dir.NameOf("a").c_str());
        EXPECT_TRUE(source.GetData() == strBytes) << nBytes;
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
}

TEST(DocumentSource, FailuresOfAFileNameItAndTheError)
{
    const CTempDir dir;
    const std::wstring strName = dir.NameOf("a");
    QvTest::WriteFileBytes(dir.PathOf("a"), "<a/>");
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    const struct
    {
        Platform::EFileOperation eOperation;
        const wchar_t* lpctWhat;
    } rows[] = {
        {Platform::FileOperation_Open, L"Failed to open the file ["},
        {Platform::FileOperation_Size, L"Failed to get the size of the file ["},
        {Platform::FileOperation_Read, L"Failed to read the contents of the file ["},
    };
    for (const auto& row : rows)
    {
        const CFileFault fault(row.eOperation, 0, 0x1234);
        ExpectThrows<CQvException>(row.lpctWhat + strName + L"] Error [0x00001234]",
                                   [&strName] { CDocumentSource::FromFile(strName.c_str()); });
        EXPECT_EQ(nOpenFiles, QvTest::CountOpenFiles());
    }
}

TEST(DocumentSource, CompressedBytesAreInflated)
{
    const std::string strXml = "<a>" + std::string(1000, 'x') + "</a>";
    for (const auto eType : {QvXmlLib9::Compression_GZip, QvXmlLib9::Compression_ZLib})
    {
        const std::string strCompressed = Compress(strXml, eType);
        EXPECT_LT(strCompressed.size(), strXml.size());
        EXPECT_EQ(strXml, CDocumentSource::Inflate(FromBytes(strCompressed)).GetData());
    }
}

TEST(DocumentSource, BytesThatAreNotCompressedAreHandedOn)
{
    const std::string strXml = "<a/>";
    EXPECT_EQ(strXml.data(), CDocumentSource::Inflate(FromBytes(strXml)).GetData().data());
    EXPECT_EQ("", CDocumentSource::Inflate(FromBytes("")).GetData());
    // What only looks compressed comes back as it is, too.
    for (const char* lpcBytes : {"\x1F", "\x1F\x8B", "\x78\x9C\x01\x02\x03", "hello"})
        EXPECT_EQ(lpcBytes, CDocumentSource::Inflate(FromBytes(lpcBytes)).GetData());
}

} // namespace
