#include "quiver/foundation/QvZip.h"

#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"
#include "tests/support/System.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <zlib.h>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

/// An array as the buffer operations take it.
class CBuffer
{
public:
    explicit CBuffer(std::string_view bytes)
        : m_pData(new unsigned char[bytes.size()])
        , m_ulLength(static_cast<unsigned long>(bytes.size()))
    {
        bytes.copy(reinterpret_cast<char*>(m_pData), bytes.size());
    }
    ~CBuffer() { delete[] m_pData; }
    CBuffer(const CBuffer&) = delete;
    CBuffer& operator=(const CBuffer&) = delete;

    std::string_view View() const { return {reinterpret_cast<const char*>(m_pData), m_ulLength}; }

    unsigned char* m_pData;
    unsigned long m_ulLength;
};

CBinaryData FromBytes(std::string_view bytes)
{
    CBinaryData data;
    data.SetBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    return data;
}

std::string RandomBytes(std::size_t nLength)
{
    std::mt19937_64 engine(1);
    std::string strBytes((nLength + 7) / 8 * 8, 0);
    for (std::size_t i = 0; i < strBytes.size(); i += 8)
    {
        const std::uint64_t nBits = engine();
        std::memcpy(&strBytes[i], &nBits, 8);
    }
    strBytes.resize(nLength);
    return strBytes;
}

/// Bytes that shrink, but not to nothing.
std::string Text(std::size_t nLength)
{
    std::mt19937 engine(1);
    std::string strBytes;
    while (strBytes.size() < nLength)
        strBytes += "<item id=\"" + std::to_string(engine() % 1000) + "\"/>";
    strBytes.resize(nLength);
    return strBytes;
}

constexpr int s_nGzip = 31;
constexpr int s_nZlib = 15;
constexpr int s_nRaw = -15;

/// What another program would write: best compression, and room for data that do not shrink.
std::string Deflate(std::string_view bytes, int nWindowBits, std::string_view dictionary = {})
{
    z_stream stream{};
    EXPECT_EQ(Z_OK, deflateInit2(&stream, 9, Z_DEFLATED, nWindowBits, 8, Z_DEFAULT_STRATEGY));
    if (!dictionary.empty())
        deflateSetDictionary(&stream, reinterpret_cast<const Bytef*>(dictionary.data()),
                             static_cast<uInt>(dictionary.size()));
    std::string strOut(deflateBound(&stream, static_cast<uLong>(bytes.size())) + 64, 0);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(strOut.data());
    stream.avail_out = static_cast<uInt>(strOut.size());
    EXPECT_EQ(Z_STREAM_END, deflate(&stream, Z_FINISH));
    strOut.resize(stream.total_out);
    deflateEnd(&stream);
    return strOut;
}

/// A gzip stream of `nMegabytes` of zeros, put together from copies of the first one's compressed form.
std::string ZerosInGzip(std::size_t nMegabytes)
{
    z_stream stream{};
    EXPECT_EQ(Z_OK, deflateInit2(&stream, 9, Z_DEFLATED, s_nRaw, 8, Z_DEFAULT_STRATEGY));
    std::string strZeros(1 << 20, 0);
    std::string strOut(1 << 16, 0);
    stream.next_in = reinterpret_cast<Bytef*>(strZeros.data());
    stream.avail_in = static_cast<uInt>(strZeros.size());
    stream.next_out = reinterpret_cast<Bytef*>(strOut.data());
    stream.avail_out = static_cast<uInt>(strOut.size());
    EXPECT_EQ(Z_OK, deflate(&stream, Z_FULL_FLUSH));
    strOut.resize(stream.total_out);
    deflateEnd(&stream);
    std::string strStream("\x1F\x8B\x08\0\0\0\0\0\0\x03", 10);
    for (std::size_t i = 0; i < nMegabytes; ++i)
        strStream += strOut;
    return strStream;
}

std::string Decompressed(std::string_view bytes)
{
    CBuffer buffer(bytes);
    CQvZip::DecompressBuffer(&buffer.m_pData, &buffer.m_ulLength);
    return std::string(buffer.View());
}

/// Expects the buffer to stay as it is, down to its address.
void ExpectUntouched(std::string_view bytes, const char* lpcWhat)
{
    CBuffer buffer(bytes);
    const unsigned char* const pBefore = buffer.m_pData;
    EXPECT_NO_THROW(CQvZip::DecompressBuffer(&buffer.m_pData, &buffer.m_ulLength)) << lpcWhat;
    EXPECT_EQ(pBefore, buffer.m_pData) << lpcWhat;
    EXPECT_TRUE(bytes == buffer.View()) << lpcWhat;
}

} // namespace

// --- Compressing ----------------------------------------------------------------------------------------------------

TEST(QvZip, EmptyDataPassUntouched)
{
    CBinaryData empty;
    CQvZip::Compress(empty, Compression_GZip);
    EXPECT_EQ(nullptr, empty.GetData());
    CBinaryData blockOfNothing;
    blockOfNothing.SetAsHexString(L"");
    const unsigned char* const pBefore = blockOfNothing.GetData();
    CQvZip::Compress(blockOfNothing, Compression_ZLib);
    EXPECT_EQ(pBefore, blockOfNothing.GetData());
}

TEST(QvZip, AGzipStreamStartsWith31And139)
{
    CBinaryData data = FromBytes(Text(1000));
    CQvZip::Compress(data, Compression_GZip);
    EXPECT_EQ(31, data[0]);
    EXPECT_EQ(139, data[1]);
}

TEST(QvZip, AZlibStreamStartsWith120)
{
    CBinaryData data = FromBytes(Text(1000));
    CQvZip::Compress(data, Compression_ZLib);
    EXPECT_EQ(120, data[0]);
    EXPECT_EQ(1, data[1]);
}

TEST(QvZip, WhatItCompressedIsDecompressedWithoutAnyOption)
{
    for (const CompressionType eType : {Compression_GZip, Compression_ZLib})
    {
        for (const std::size_t nLength : {200u, 65535u, 65536u, 65537u, 131072u, 1000000u})
        {
            const std::string strText = Text(nLength);
            CBinaryData data = FromBytes(strText);
            const CBinaryData before = data;
            CQvZip::Compress(data, eType);
            EXPECT_LT(data.GetLength(), nLength);
            EXPECT_TRUE(strText == before.GetView());
            EXPECT_TRUE(strText == Decompressed(data.GetView())) << nLength;
        }
    }
}

TEST(QvZip, CompressBufferReplacesTheArray)
{
    CBuffer buffer(Text(1000));
    CQvZip::CompressBuffer(&buffer.m_pData, &buffer.m_ulLength, Compression_ZLib);
    EXPECT_LT(buffer.m_ulLength, 1000u);
    EXPECT_TRUE(Text(1000) == Decompressed(buffer.View()));
}

TEST(QvZip, OtherTypesOfCompressionDoNothing)
{
    for (const int nType : {0, 3, -1})
    {
        const auto eType = static_cast<CompressionType>(nType);
        CBuffer buffer(Text(1000));
        const unsigned char* const pBefore = buffer.m_pData;
        CQvZip::CompressBuffer(&buffer.m_pData, &buffer.m_ulLength, eType);
        EXPECT_EQ(pBefore, buffer.m_pData);
        EXPECT_EQ(1000u, buffer.m_ulLength);
        CBinaryData data = FromBytes(Text(1000));
        CQvZip::Compress(data, eType);
        EXPECT_TRUE(Text(1000) == data.GetView());
    }
}

namespace
{

struct SNotShrinking
{
    std::string strBytes;
    CompressionType eType;
    int nCode;
};

void ExpectCompressionFails(const SNotShrinking& row)
{
    const std::wstring strMessage = L"Failed to compress data. [Error Code: " + std::to_wstring(row.nCode) + L"]";
    CBinaryData data = FromBytes(row.strBytes);
    ExpectThrows<CQvException>(strMessage, [&] { CQvZip::Compress(data, row.eType); });
    EXPECT_EQ(nullptr, data.GetData());

    CBuffer buffer(row.strBytes);
    const unsigned char* const pBefore = buffer.m_pData;
    ExpectThrows<CQvException>(strMessage,
                               [&] { CQvZip::CompressBuffer(&buffer.m_pData, &buffer.m_ulLength, row.eType); });
    EXPECT_EQ(pBefore, buffer.m_pData);
    EXPECT_EQ(row.strBytes, buffer.View());
}

} // namespace

TEST(QvZip, DataThatDoNotShrinkFailAndAreLost)
{
    const SNotShrinking rows[] = {
        {"<order/>12", Compression_GZip, -5},     {"<o", Compression_ZLib, -5},
        {"<order/>123", Compression_GZip, 0},     {"<a/>", Compression_ZLib, 0},
        {"<order/>", Compression_ZLib, 0},        {RandomBytes(20), Compression_GZip, 0},
        {RandomBytes(1000), Compression_GZip, 0}, {RandomBytes(1000), Compression_ZLib, 0},
    };
    for (const SNotShrinking& row : rows)
        ExpectCompressionFails(row);
}

TEST(QvZip, DataThatAreNotEvenTakenInFailInTheSameWay)
{
    // They are shorter than the wrapper's header, which fills the room that there is.
    ExpectCompressionFails({"<a/>", Compression_GZip, -5});
    ExpectCompressionFails({"<", Compression_ZLib, -5});
}

// --- Decompressing --------------------------------------------------------------------------------------------------

TEST(QvZip, WhatIsNotCompressedStaysAsItIs)
{
    ExpectUntouched("", "nothing");
    ExpectUntouched("<", "one byte");
    ExpectUntouched("<?xml version=\"1.0\"?><a/>", "XML");
    ExpectUntouched(Text(200000), "long XML");
    ExpectUntouched(std::string_view("\xE0\0\0\1", 4), "Fast Infoset");
    ExpectUntouched("\xFF\xFE<", "UTF-16");
    ExpectUntouched("\x1F\x8B", "beginning of a gzip header");
    ExpectUntouched("\x1F\x8B\x09 something else", "unknown method");
    ExpectUntouched("\x78\x9C", "zlib header alone");
    ExpectUntouched(Deflate(Text(1000), s_nRaw), "no wrapper");
    ExpectUntouched(RandomBytes(1000), "anything");
}

TEST(QvZip, DamagedStreamsStayAsTheyAre)
{
    for (const int nWrapper : {s_nGzip, s_nZlib})
    {
        const std::string strStream = Deflate(Text(3000), nWrapper);
        for (std::size_t nCut = 1; nCut < strStream.size(); nCut += 7)
            ExpectUntouched(std::string_view(strStream).substr(0, nCut), "cut off");
        std::string strSum = strStream;
        strSum[strSum.size() - (nWrapper == s_nGzip ? 6 : 1)] ^= 1;
        ExpectUntouched(strSum, "wrong check sum");
        std::string strMiddle = strStream;
        strMiddle[strMiddle.size() / 2] = static_cast<char>(strMiddle[strMiddle.size() / 2] ^ 0x55);
        ExpectUntouched(strMiddle, "damage in the middle");
    }
    std::string strSize = Deflate(Text(3000), s_nGzip);
    strSize.back() ^= 1;
    ExpectUntouched(strSize, "wrong size");
    ExpectUntouched(Deflate(Text(3000), s_nZlib, "<item id="), "needs a dictionary");
}

TEST(QvZip, DecompressesTheStreamsOfOtherPrograms)
{
    for (const int nWrapper : {s_nGzip, s_nZlib})
    {
        for (const std::size_t nLength : {1u, 1000u, 65536u, 300000u})
            EXPECT_TRUE(RandomBytes(nLength) == Decompressed(Deflate(RandomBytes(nLength), nWrapper))) << nLength;
    }
    // A header with a file name.
    std::string strNamed = Deflate(Text(1000), s_nGzip);
    strNamed[3] = 8;
    strNamed.insert(10, std::string("order.xml\0", 10));
    EXPECT_TRUE(Text(1000) == Decompressed(strNamed));
}

TEST(QvZip, IgnoresWhatFollowsTheStream)
{
    const std::string strStream = Deflate(Text(1000), s_nGzip);
    EXPECT_TRUE(Text(1000) == Decompressed(strStream + "more"));
    EXPECT_TRUE(Text(1000) == Decompressed(strStream + strStream));
}

TEST(QvZip, DecompressesAStreamOfNothing)
{
    for (const int nWrapper : {s_nGzip, s_nZlib})
    {
        CBuffer buffer(Deflate("", nWrapper));
        CQvZip::DecompressBuffer(&buffer.m_pData, &buffer.m_ulLength);
        EXPECT_NE(nullptr, buffer.m_pData);
        EXPECT_EQ(0u, buffer.m_ulLength);
    }
}

// --- Limits ---------------------------------------------------------------------------------------------------------

TEST(QvZip, DecompressesUpToTheLimitWhateverWasCollectedAhead)
{
    for (const std::size_t nLength : {1u, 100u, 65535u, 65536u, 65537u, 200000u})
    {
        const std::string strText = Text(nLength);
        const std::string strStream = Deflate(strText, s_nGzip);
        const auto dwLength = static_cast<std::uint32_t>(nLength);
        for (const std::uint32_t dwAhead : {0u, 1u, 65535u, 65536u, 65537u, dwLength - 1, dwLength, dwLength + 1})
        {
            CBuffer fits(strStream);
            CQvZip::DecompressBuffer(&fits.m_pData, &fits.m_ulLength, dwLength, dwAhead);
            EXPECT_TRUE(strText == fits.View()) << nLength << ' ' << dwAhead;

            CBuffer tooLong(strStream);
            const unsigned char* const pBefore = tooLong.m_pData;
            ExpectThrows<CQvException>(
                L"The decompressed data is longer than " + std::to_wstring(dwLength - 1) + L" bytes",
                [&] { CQvZip::DecompressBuffer(&tooLong.m_pData, &tooLong.m_ulLength, dwLength - 1, dwAhead); });
            EXPECT_EQ(pBefore, tooLong.m_pData);
            EXPECT_EQ(strStream, tooLong.View());
        }
    }
}

TEST(QvZip, DamageBehindWhatWasCollectedAheadLeavesTheStreamAsItIs)
{
    std::string strStream = Deflate(Text(200000), s_nGzip);
    strStream.back() ^= 1;
    CBuffer buffer(strStream);
    CQvZip::DecompressBuffer(&buffer.m_pData, &buffer.m_ulLength, CQvZip::s_dwOutputLimit, 1000);
    EXPECT_EQ(strStream, buffer.View());
}

TEST(QvZip, AStreamOfMoreThanFourGigabytesFailsWithoutTakingTheMemory)
{
    CBuffer buffer(ZerosInGzip(4096));
    const unsigned long ulBefore = buffer.m_ulLength;
    EXPECT_LT(ulBefore, 8u << 20);
    ExpectThrows<CQvException>(L"The decompressed data is longer than 4294967295 bytes",
                               [&] { CQvZip::DecompressBuffer(&buffer.m_pData, &buffer.m_ulLength); });
    EXPECT_EQ(ulBefore, buffer.m_ulLength);
    EXPECT_LT(QvTest::GetPeakMemory(), 1u << 30);
}

TEST(QvZip, IsCountedUnderItsName)
{
    const CQvZip zip;
    EXPECT_NE(std::wstring::npos, CInstanceMonitor::DumpState().find(L"--> CQvZip = 1/1"));
}
