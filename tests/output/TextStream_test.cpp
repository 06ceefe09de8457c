#include "quiver/output/TextStream.h"

#include "quiver/foundation/BinaryData.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

using Bytes = std::vector<int>;

Bytes BytesOf(const CBinaryData& data)
{
    const unsigned char* const pData = data.GetData();
    return pData == nullptr ? Bytes() : Bytes(pData, pData + data.GetLength());
}

const wchar_t s_szUnknownEncoding[] =
    L"Unknown Encoding, select UTF-8 (contact support@quiver-xml.example for support)";

} // namespace

TEST(TextStream, HasNoEncodingUnlessOneIsGiven)
{
    EXPECT_EQ(Encoding_None, CTextStream().GetEncoding());
    EXPECT_EQ(Encoding_UTF16, CTextStream(Encoding_UTF16).GetEncoding());
}

TEST(TextStream, CollectsWhatIsAppended)
{
    CTextStream stream;
    EXPECT_TEXT(L"", stream.GetText());
    stream.Append(L"ab");
    stream.Append(std::wstring(L"cd"));
    stream.Append(L'e');
    stream.AppendUnits(L"fg");
    stream.AppendUnit(L'h');
    EXPECT_EQ(8u, stream.GetLength());
    EXPECT_TEXT(L"abcdefgh", stream.GetText());
    EXPECT_TEXT(L"abcdefgh", stream.GetString());
}

TEST(TextStream, OpenForgetsTheTextWhileCloseAndFlushKeepIt)
{
    CTextStream stream;
    stream.Append(L"ab");
    stream.Flush();
    stream.Close();
    EXPECT_TEXT(L"ab", stream.GetText());
    stream.Open();
    EXPECT_TEXT(L"", stream.GetText());
    EXPECT_EQ(0u, stream.GetLength());
}

TEST(TextStream, WithoutAByteFormGivesNoBytes)
{
    for (const int nEncoding : {0, 4, -1})
    {
        CTextStream stream(static_cast<XmlEncoding>(nEncoding));
        stream.Append(L"ab");
        QvTest::ExpectThrows<CQvException>(s_szUnknownEncoding, [&] { stream.GetBinaryData(); });
        EXPECT_TEXT(L"ab", stream.GetText());
    }
}

TEST(TextStream, Utf8BytesOfEveryLengthOfSequence)
{
    CTextStream stream(Encoding_UTF8);
    stream.Append(L"a\u00E9\u20AC\U0001F600z");
    EXPECT_EQ((Bytes{0x61, 0xC3, 0xA9, 0xE2, 0x82, 0xAC, 0xF0, 0x9F, 0x98, 0x80, 0x7A}),
              BytesOf(stream.GetBinaryData()));
}

TEST(TextStream, Utf16BytesAreLittleEndianWithoutAMark)
{
    for (const XmlEncoding eEncoding : {Encoding_UTF16, Encoding_UTF16_Undeclared})
    {
        CTextStream stream(eEncoding);
        stream.Append(L"a\u20AC\U0001F600");
        EXPECT_EQ((Bytes{0x61, 0, 0xAC, 0x20, 0x3D, 0xD8, 0x00, 0xDE}), BytesOf(stream.GetBinaryData()));
    }
}

TEST(TextStream, NoTextGivesNoBytes)
{
    EXPECT_EQ(nullptr, CTextStream(Encoding_UTF8).GetBinaryData().GetData());
    // As from text: a block that holds nothing.
    EXPECT_TRUE(CTextStream(Encoding_UTF16).GetBinaryData() == CBinaryData(L""));
}

TEST(TextStream, BytesEndAtTheFirstZeroUnit)
{
    const std::wstring strText(L"ab\0cd", 5);
    CTextStream streamUtf8(Encoding_UTF8);
    streamUtf8.Append(strText);
    EXPECT_EQ((Bytes{0x61, 0x62}), BytesOf(streamUtf8.GetBinaryData()));
    CTextStream streamUtf16(Encoding_UTF16);
    streamUtf16.Append(strText);
    EXPECT_EQ((Bytes{0x61, 0, 0x62, 0}), BytesOf(streamUtf16.GetBinaryData()));
}

TEST(TextStream, BytesOfSeveralBlocksAreThoseOfTheWholeText)
{
    // The pair falls on every position around the border between two blocks.
    for (std::size_t nAhead = 4085; nAhead <= 4100; ++nAhead)
    {
        CTextStream stream(Encoding_UTF8);
        stream.Append(std::wstring(nAhead, L'x') + L"\U0001F600" + std::wstring(5000, L'\u00E9'));
        Bytes expected(nAhead, 'x');
        expected.insert(expected.end(), {0xF0, 0x9F, 0x98, 0x80});
        for (int n = 0; n < 5000; ++n)
            expected.insert(expected.end(), {0xC3, 0xA9});
        EXPECT_EQ(expected, BytesOf(stream.GetBinaryData())) << nAhead;
        // The text has not been joined for it.
        EXPECT_EQ(nAhead + 2 + 5000, stream.GetLength());
        EXPECT_EQ(nAhead + 2 + 5000, std::wstring(stream.GetText()).size());
    }
}

TEST(TextStream, Utf16BytesOfSeveralBlocksAreThoseOfTheWholeText)
{
    CTextStream stream(Encoding_UTF16);
    stream.Append(std::wstring(4094, L'x') + L"\U0001F600" + std::wstring(4095, L'y'));
    Bytes expected;
    for (int n = 0; n < 4094; ++n)
        expected.insert(expected.end(), {'x', 0});
    expected.insert(expected.end(), {0x3D, 0xD8, 0x00, 0xDE});
    for (int n = 0; n < 4095; ++n)
        expected.insert(expected.end(), {'y', 0});
    EXPECT_EQ(expected, BytesOf(stream.GetBinaryData()));
}

TEST(TextStream, Utf16BytesOfLongTextAreThoseOfItsUnits)
{
    // Blocks that are full are packed, those of ASCII by one octet a unit.
    for (const std::size_t nLength : {100u, 4096u, 50000u, 200000u})
    {
        std::wstring strText;
        for (std::size_t n = 0; n < nLength; ++n)
            strText += static_cast<wchar_t>(n % 9000 == 8999 ? 0x20AC : L'a' + n % 26);
        CTextStream stream(Encoding_UTF16);
        Bytes expected;
        for (const wchar_t c : strText)
        {
            stream.AppendUnit(c);
            expected.insert(expected.end(), {static_cast<int>(c & 0xFF), static_cast<int>(c >> 8)});
        }
        EXPECT_EQ(expected, BytesOf(stream.GetBinaryData())) << nLength;
    }
}

namespace
{

/// A text with an unpaired surrogate in it, which ends the UTF-8 form.
struct SUnpaired
{
    std::size_t nAhead;
    std::wstring strSurrogates;
};

const SUnpaired s_unpaired[] = {
    {3, {0xD800}},         // high, at the end or ahead of other text
    {3, {0xDC00}},         // low
    {3, {0xDC00, 0xD800}}, // pair in the wrong order
    {4094, {0xD800}},      // at the end of the first block
    {4095, {0xDC00}},      // at the beginning of the second block
};

CBinaryData BytesUpToSurrogate(const SUnpaired& row, const std::wstring& strBehind)
{
    CTextStream stream(Encoding_UTF8);
    stream.Append(std::wstring(row.nAhead, L'x') + row.strSurrogates + strBehind);
    return stream.GetBinaryData();
}

} // namespace

#if defined(QUIVER_DIAGNOSTICS)
TEST(TextStreamDeathTest, AnUnpairedSurrogateStopsAtAnAssertion)
{
    for (const SUnpaired& row : s_unpaired)
        EXPECT_DEATH(BytesUpToSurrogate(row, L"y"), "dwActualLen == dwUtf8Len");
}
#else
TEST(TextStream, Utf8EndsAheadOfAnUnpairedSurrogate)
{
    for (const SUnpaired& row : s_unpaired)
    {
        for (const std::wstring& strBehind : {std::wstring(), std::wstring(1, L'y'), std::wstring(9000, L'y')})
            EXPECT_EQ(Bytes(row.nAhead, 'x'), BytesOf(BytesUpToSurrogate(row, strBehind)));
    }
}
#endif

TEST(TextStream, CountsItselfAndItsBuffer)
{
    const long nStreams = QvTest::CountInstances(L"CTextStream").nLiving;
    const long nBuffers = QvTest::CountInstances(L"CStringBuffer").nLiving;
    {
        CTextStream stream;
        EXPECT_EQ(nStreams + 1, QvTest::CountInstances(L"CTextStream").nLiving);
        EXPECT_EQ(nBuffers + 1, QvTest::CountInstances(L"CStringBuffer").nLiving);
    }
    EXPECT_EQ(nStreams, QvTest::CountInstances(L"CTextStream").nLiving);
    EXPECT_EQ(nBuffers, QvTest::CountInstances(L"CStringBuffer").nLiving);
}
