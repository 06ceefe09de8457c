#include "quiver/output/StringBuffer.h"

#include "quiver/foundation/UnitRuns.h"

#include "quiver/foundation/Encoder.h"
#include "tests/support/Expect.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using QvXmlLib9::CStringBuffer;
using SPiece = CStringBuffer::SPiece;

namespace
{

using Lengths = std::vector<std::size_t>;

std::wstring TextOf(const SPiece& piece)
{
    std::wstring strUnits(piece.svUnits);
    QvXmlLib9::AppendUtf8AsUtf16(strUnits, piece.svBytes);
    return strUnits;
}

Lengths PieceLengths(const CStringBuffer& buffer)
{
    Lengths lengths;
    buffer.ForEachPiece([&](const SPiece& piece) { lengths.push_back(TextOf(piece).size()); });
    return lengths;
}

std::wstring Digits(std::size_t nLength)
{
    std::wstring strText;
    for (std::size_t n = 0; n < nLength; ++n)
        strText += static_cast<wchar_t>(L'0' + n % 10);
    return strText;
}

} // namespace

TEST(StringBuffer, ANewBufferGivesAnEmptyTextAndNotNull)
{
    CStringBuffer buffer;
    ASSERT_NE(nullptr, buffer.GetData());
    EXPECT_TEXT(L"", buffer.GetData());
    EXPECT_EQ(0u, buffer.GetLength());
    EXPECT_EQ(Lengths{}, PieceLengths(buffer));
    EXPECT_TEXT(L"", buffer.GetString());
}

TEST(StringBuffer, AppendsKeepTheirOrder)
{
    CStringBuffer buffer;
    buffer.Append(L"a=");
    buffer.Append(L'1');
    buffer.Append(std::wstring(L"; "));
    buffer.Append(L"");
    buffer.AppendUnits(L"b=");
    buffer.AppendUnit(L'2');
    EXPECT_TEXT(L"a=1; b=2", buffer.GetData());
    EXPECT_EQ(8u, buffer.GetLength());
}

TEST(StringBuffer, AFullBlockIsHandedOutWithoutACopyAndTerminated)
{
    CStringBuffer buffer;
    buffer.Append(Digits(4095));
    EXPECT_EQ(Lengths{4095}, PieceLengths(buffer));
    const void* pBlock = nullptr;
    buffer.ForEachPiece([&](const SPiece& piece) { pBlock = piece.svUnits.data(); });
    EXPECT_EQ(pBlock, buffer.GetData());
    EXPECT_TEXT(Digits(4095), buffer.GetData());
}

TEST(StringBuffer, OneUnitMoreThanABlockMakesASecondOneAndGetDataJoinsThem)
{
    CStringBuffer buffer;
    buffer.Append(Digits(4096));
    EXPECT_EQ((Lengths{4095, 1}), PieceLengths(buffer));
    EXPECT_TEXT(Digits(4096), buffer.GetData());
    EXPECT_EQ(4096u, buffer.GetLength());
    EXPECT_EQ(Lengths{4096}, PieceLengths(buffer));
}

TEST(StringBuffer, AppendingAfterAJoinAddsABlockAndALaterGetDataJoinsAgain)
{
    CStringBuffer buffer;
    buffer.Append(Digits(4096));
    buffer.GetData();
    buffer.Append(L'x');
    EXPECT_EQ((Lengths{4096, 1}), PieceLengths(buffer));
    EXPECT_TEXT(Digits(4096) + L"x", buffer.GetData());
    EXPECT_EQ(4097u, buffer.GetLength());
}

TEST(StringBuffer, ABlockSizeOfNGivesBlocksOfOneUnitLess)
{
    CStringBuffer buffer(5);
    buffer.Append(L"abcdefghij");
    EXPECT_EQ((Lengths{4, 4, 2}), PieceLengths(buffer));
    EXPECT_TEXT(L"abcdefghij", buffer.GetData());
}

TEST(StringBuffer, TheLeastBlockHoldsOneUnit)
{
    for (const unsigned long nBlockSize : {0ul, 1ul, 2ul})
    {
        CStringBuffer buffer(nBlockSize);
        buffer.Append(L"abc");
        EXPECT_EQ((Lengths{1, 1, 1}), PieceLengths(buffer));
        EXPECT_TEXT(L"abc", buffer.GetData());
    }
}

TEST(StringBuffer, EveryLengthOfAppendFitsEveryRoomLeft)
{
    for (std::size_t nBlockSize = 2; nBlockSize <= 40; ++nBlockSize)
    {
        CStringBuffer buffer(static_cast<unsigned long>(nBlockSize));
        std::wstring strExpected;
        for (std::size_t nLength = 0; nLength <= 40; ++nLength)
        {
            buffer.Append(Digits(nLength));
            strExpected += Digits(nLength);
        }
        EXPECT_TEXT(strExpected, buffer.GetString());
        EXPECT_EQ(strExpected.size(), buffer.GetLength());
        EXPECT_TEXT(strExpected, buffer.GetData());
    }
}

TEST(StringBuffer, AUnitOfZeroIsAppendedAndCounted)
{
    CStringBuffer buffer;
    buffer.Append(std::wstring(L"a\0b", 3));
    EXPECT_EQ(3u, buffer.GetLength());
    EXPECT_TEXT(std::wstring(L"a\0b", 3), buffer.GetString());
}

TEST(StringBuffer, ACodePointAboveFfffIsHeldAsItsSurrogatePair)
{
    CStringBuffer buffer;
    buffer.Append(L"a\U0001F600b");
    buffer.Append(std::wstring_view(L"\U00010000"));
    EXPECT_TEXT((std::wstring{L'a', 0xD83D, 0xDE00, L'b', 0xD800, 0xDC00}), buffer.GetData());
    EXPECT_EQ(6u, buffer.GetLength());
    if (sizeof(wchar_t) > 2)
    {
        buffer.Clear();
        buffer.Append(static_cast<wchar_t>(0x10FFFF));
        EXPECT_TEXT((std::wstring{0xDBFF, 0xDFFF}), buffer.GetData());
    }
}

TEST(StringBuffer, FullBlocksKeepUnitsOfEveryWidth)
{
    const std::wstring strText = L"abc\x7F\x80\xFF\u0100\uFFFF\x01zy";
    for (unsigned long nBlockSize = 2; nBlockSize < 16; ++nBlockSize)
    {
        CStringBuffer buffer(nBlockSize);
        for (int n = 0; n < 3; ++n)
            buffer.Append(strText);
        std::wstring strPieces;
        buffer.ForEachPiece([&](const SPiece& piece) { strPieces += TextOf(piece); });
        EXPECT_TEXT(strText + strText + strText, strPieces);
        EXPECT_TEXT(strText + strText + strText, buffer.GetString());
        EXPECT_TEXT(strText + strText + strText, buffer.GetData());
        EXPECT_EQ(33u, buffer.GetLength());
    }
}

TEST(StringBuffer, PacksAsUtf8WhereTheTextHasSuchAForm)
{
    const std::wstring texts[] = {
        L"abc\x7F\x80\xFF\u0100\uFFFF\x01zy",
        std::wstring{L'a', 0xD83D, 0xDE00, 0xD83D, 0xDE01, L'b', 0xE9, 0xD83D, 0xDE02},
        std::wstring{L'a', 0xD83D, 0xD83D, 0xDE00, L'b', 0xDE00, L'c', 0xE9, 0, 0xE9, 0xD83D},
    };
    for (const std::wstring& strText : texts)
    {
        for (unsigned long nBlockSize = 1; nBlockSize < 16; ++nBlockSize)
        {
            CStringBuffer buffer(nBlockSize);
            buffer.PackAsUtf8();
            std::wstring strAll;
            for (int n = 0; n < 4; ++n)
            {
                buffer.AppendUnits(strText);
                strAll += strText;
                EXPECT_EQ(strAll.size(), buffer.GetLength());
            }
            std::wstring strPieces;
            buffer.ForEachPiece(
                [&](const SPiece& piece)
                {
                    EXPECT_TRUE(piece.svBytes.empty() || piece.svUnits.empty());
                    EXPECT_EQ(piece.eForm == SPiece::Form_Units, piece.svBytes.empty());
                    strPieces += TextOf(piece);
                });
            EXPECT_TEXT(strAll, strPieces);
            EXPECT_TEXT(strAll, buffer.GetString());
            EXPECT_TRUE(strAll == std::wstring_view(buffer.GetData(), buffer.GetLength()));
            // Behind the joined block, which ends in half of a pair, the next one begins.
            buffer.AppendUnits(strText);
            EXPECT_TEXT(strAll + strText, buffer.GetString());
        }
    }
}

TEST(StringBuffer, RunsAndShortTextsGoOverTheEndOfABlock)
{
    const QvXmlLib9::CShortUnits shortUnits(L"sixteen units ok");
    const QvXmlLib9::CShortUnits longUnits(L"seventeen of them");
    ASSERT_TRUE(shortUnits.IsShort());
    ASSERT_FALSE(longUnits.IsShort());
    for (unsigned long nBlockSize = 2; nBlockSize < 70; ++nBlockSize)
    {
        CStringBuffer buffer(nBlockSize);
        std::wstring strExpected;
        for (std::size_t n = 0; n < 20; ++n)
        {
            buffer.AppendShort(shortUnits);
            buffer.AppendRun(L'\t', n);
            buffer.AppendShort(longUnits);
            const std::size_t nTaken = buffer.AppendBy(L"a text up to <here>", QvXmlLib9::CopyPlainUnits);
            EXPECT_EQ(13u, nTaken);
            strExpected += L"sixteen units ok" + std::wstring(n, L'\t') + L"seventeen of thema text up to ";
        }
        EXPECT_TEXT(strExpected, buffer.GetString());
    }
}

TEST(StringBuffer, SetReplacesTheText)
{
    CStringBuffer buffer(3);
    buffer.Append(L"abcdef");
    buffer.Set(L"xyz");
    EXPECT_TEXT(L"xyz", buffer.GetData());
    EXPECT_EQ(3u, buffer.GetLength());
}

TEST(StringBuffer, AppendsItsOwnText)
{
    for (const unsigned long nBlockSize : {2UL, 4UL, 5UL, 8UL, 4096UL})
    {
        CStringBuffer buffer(nBlockSize);
        buffer.Append(L"abcd");
        std::wstring strExpected = L"abcd";
        for (int i = 0; i < 6; ++i)
        {
            buffer.Append(buffer.GetData());
            strExpected += strExpected;
            EXPECT_TEXT(strExpected, buffer.GetString()) << "blocks of " << nBlockSize;
        }
        buffer.AppendUnits(std::wstring_view(buffer.GetData()).substr(3));
        strExpected += strExpected.substr(3);
        EXPECT_TEXT(strExpected, buffer.GetString()) << "blocks of " << nBlockSize;
    }
}

TEST(StringBuffer, SetTakesAPartOfItsOwnText)
{
    CStringBuffer buffer(4);
    buffer.Append(L"abcdefgh");
    buffer.Set(buffer.GetData() + 2);
    EXPECT_TEXT(L"cdefgh", buffer.GetString());
    buffer.Set(buffer.GetData());
    EXPECT_TEXT(L"cdefgh", buffer.GetString());
}

TEST(StringBuffer, NullIsAnEmptyText)
{
    const wchar_t* const lpctNull = nullptr;
    CStringBuffer buffer;
    buffer.Append(lpctNull);
    EXPECT_EQ(0U, buffer.GetLength());
    buffer.Append(L"a");
    buffer.Append(lpctNull);
    EXPECT_TEXT(L"a", buffer.GetString());
    buffer.Set(lpctNull);
    EXPECT_EQ(0U, buffer.GetLength());
}

TEST(StringBuffer, ClearFreesAllBlocks)
{
    CStringBuffer buffer(3);
    buffer.Append(L"abcdef");
    buffer.Clear();
    EXPECT_EQ(Lengths{}, PieceLengths(buffer));
    EXPECT_EQ(0u, buffer.GetLength());
    EXPECT_TEXT(L"", buffer.GetData());
    buffer.Append(L"gh");
    EXPECT_TEXT(L"gh", buffer.GetData());
}

TEST(StringBuffer, ResetKeepsALoneBlock)
{
    CStringBuffer buffer(5);
    buffer.Append(L"abc");
    const wchar_t* const pBlock = buffer.GetData();
    buffer.Reset();
    EXPECT_EQ(Lengths{}, PieceLengths(buffer));
    EXPECT_EQ(0u, buffer.GetLength());
    EXPECT_EQ(pBlock, buffer.GetData());
    EXPECT_TEXT(L"", buffer.GetData());
    buffer.Append(L"defg");
    EXPECT_EQ(Lengths{4}, PieceLengths(buffer));
    EXPECT_TEXT(L"defg", buffer.GetData());
}

TEST(StringBuffer, ResetOfSeveralBlocksOrNoneLeavesNoText)
{
    CStringBuffer buffer(3);
    buffer.Reset();
    EXPECT_EQ(Lengths{}, PieceLengths(buffer));
    buffer.Append(L"abc");
    buffer.Reset();
    EXPECT_EQ(Lengths{}, PieceLengths(buffer));
    EXPECT_TEXT(L"", buffer.GetData());
}

TEST(StringBuffer, IsCountedUnderItsName)
{
    const long nBefore = QvTest::CountInstances(L"CStringBuffer").nLiving;
    {
        CStringBuffer buffer;
        EXPECT_EQ(nBefore + 1, QvTest::CountInstances(L"CStringBuffer").nLiving);
    }
    EXPECT_EQ(nBefore, QvTest::CountInstances(L"CStringBuffer").nLiving);
}
