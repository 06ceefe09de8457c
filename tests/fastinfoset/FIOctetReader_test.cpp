#include "quiver/fastinfoset/FIOctetReader.h"

#include "tests/support/Expect.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <functional>

using namespace QvXmlLib9;
using QvTest::BytesOf;
using QvTest::ExpectThrows;
using QvTest::Octets;

namespace
{

constexpr wchar_t s_szEndOfFile[] = L"Failed to parse FastInfoset. Unexpected End of File.";

struct SRow
{
    std::uint64_t nValue;
    Octets octets;
};

using FnRead = std::function<std::uint64_t(CFIOctetReader&, unsigned char)>;

/// Reads an item whose first octet the caller has read, with every combination of the bits ahead of the item.
void ExpectReads(const SRow& row, int nBitsAhead, const FnRead& fnRead)
{
    for (int nAhead = 0; nAhead < 1 << nBitsAhead; ++nAhead)
    {
        Octets octets = row.octets;
        octets[0] |= nAhead << (8 - nBitsAhead);
        const std::string strBytes = BytesOf(octets);
        CFIOctetReader reader(strBytes);
        const unsigned char by = reader.ReadOctet();
        EXPECT_EQ(row.nValue, fnRead(reader, by)) << row.nValue;
        EXPECT_EQ(0u, reader.GetOctetsLeft()) << row.nValue;
    }
    for (std::size_t nLength = 1; nLength < row.octets.size(); ++nLength)
    {
        const std::string strBytes = BytesOf(row.octets).substr(0, nLength);
        CFIOctetReader reader(strBytes);
        const unsigned char by = reader.ReadOctet();
        ExpectThrows<CQvException>(s_szEndOfFile, [&] { fnRead(reader, by); });
    }
}

/// Octets that begin no form of the item.
void ExpectRefuses(const Octets& firstOctets, const wchar_t* lpctMessage, const FnRead& fnRead)
{
    for (const int nOctet : firstOctets)
    {
        CFIOctetReader reader("xxxxxxxx");
        ExpectThrows<CQvException>(lpctMessage, [&] { fnRead(reader, static_cast<unsigned char>(nOctet)); });
        EXPECT_EQ(8u, reader.GetOctetsLeft());
    }
}

Octets Range(int nFirst, int nLast)
{
    Octets octets;
    for (int n = nFirst; n <= nLast; ++n)
        octets.push_back(n);
    return octets;
}

const SRow s_integersBit2[] = {
    {1, {0}},
    {64, {63}},
    {65, {64, 0}},
    {320, {64, 255}},
    {321, {65, 0}},
    {8256, {95, 255}},
    {8257, {96, 0, 0}},
    {8258, {96, 0, 1}},
    {1048576, {111, 0xDF, 0xBF}},
    {8257 + 0xFFFFF, {111, 255, 255}},
};

} // namespace

TEST(FIOctetReader, IntegersOnTheSecondBit)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadIntegerBit2(by);
    };
    for (const SRow& row : s_integersBit2)
        ExpectReads(row, 1, fnRead);
    ExpectRefuses(Range(112, 127),
                  L"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the second bit of an "
                  L"octet.",
                  fnRead);
}

TEST(FIOctetReader, IntegersFromZeroOnTheSecondBit)
{
    const wchar_t szInvalid[] =
        L"Failed to parse FastInfoset. Invalid Encoding of integers 0 To 2^20 type  on the second bit of an octet.";
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadIntegerOrZeroBit2(by);
    };
    ExpectReads({0, {127}}, 1, fnRead);
    for (const SRow& row : s_integersBit2)
    {
        const std::string strBytes = BytesOf(row.octets);
        CFIOctetReader reader(strBytes);
        const unsigned char by = reader.ReadOctet();
        EXPECT_EQ(row.nValue, fnRead(reader, by));
    }
    ExpectRefuses(Range(112, 126), szInvalid, fnRead);
    // Whatever fails inside is reported as this, an early end of the buffer too.
    CFIOctetReader reader("");
    ExpectThrows<CQvException>(szInvalid, [&] { fnRead(reader, 64); });
}

TEST(FIOctetReader, IntegersOnTheThirdBit)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadIntegerBit3(by);
    };
    const SRow rows[] = {
        {1, {0}},
        {32, {31}},
        {33, {32, 0}},
        {2080, {39, 255}},
        {2081, {40, 0, 0}},
        {526368, {47, 255, 255}},
        {526369, {48, 0, 0, 0}},
        {526370, {48, 0, 0, 1}},
        {1048576, {48, 0x07, 0xF7, 0xDF}},
        {526369 + 0xFFFFFF, {48, 255, 255, 255}},
    };
    for (const SRow& row : rows)
        ExpectReads(row, 2, fnRead);
    ExpectRefuses(Range(56, 63),
                  L"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the third bit of an "
                  L"octet.",
                  fnRead);
}

TEST(FIOctetReader, IntegersOnTheFourthBit)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadIntegerBit4(by);
    };
    const SRow rows[] = {
        {1, {0}},
        {16, {15}},
        {17, {16, 0}},
        {1040, {19, 255}},
        {1041, {20, 0, 0}},
        {263184, {23, 255, 255}},
        {263185, {24, 0, 0, 0}},
        {1048576, {24, 0x0B, 0xFB, 0xEF}},
        {263185 + 0xFFFFFF, {24, 255, 255, 255}},
    };
    for (const SRow& row : rows)
        ExpectReads(row, 3, fnRead);
    ExpectRefuses(Range(28, 31),
                  L"Failed to parse FastInfoset. Invalid Encoding of integers 1 To 2^20 type  on the fourth bit of an "
                  L"octet.",
                  fnRead);
}

TEST(FIOctetReader, LengthsOnTheSecondBit)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadLengthBit2(by);
    };
    const SRow rows[] = {
        {1, {0}},
        {64, {63}},
        {65, {64, 0}},
        {320, {64, 255}},
        {321, {96, 0, 0, 0, 0}},
        {321 + 0x01020304, {96, 1, 2, 3, 4}},
        {321 + 0xFFFFFFFFull, {96, 255, 255, 255, 255}},
    };
    for (const SRow& row : rows)
        ExpectReads(row, 1, fnRead);
    const wchar_t szInvalid[] =
        L"Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the second bit of an octet.";
    ExpectRefuses(Range(65, 95), szInvalid, fnRead);
    ExpectRefuses(Range(97, 127), szInvalid, fnRead);
}

TEST(FIOctetReader, LengthsOnTheFifthBit)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadLengthBit5(by);
    };
    const SRow rows[] = {
        {1, {0}},
        {8, {7}},
        {9, {8, 0}},
        {264, {8, 255}},
        {265, {12, 0, 0, 0, 0}},
        {265 + 0xFFFFFFFFull, {12, 255, 255, 255, 255}},
    };
    for (const SRow& row : rows)
        ExpectReads(row, 4, fnRead);
    ExpectRefuses({9, 10, 11, 13, 14, 15},
                  L"Failed to parse FastInfoset. Invalid NonEmptyOctetString type  on the fifth bit of an octet.",
                  fnRead);
}

TEST(FIOctetReader, LengthsOnTheSeventhBitOfWhichEveryFormIsTaken)
{
    const FnRead fnRead = [](CFIOctetReader& reader, unsigned char by)
    {
        return reader.ReadLengthBit7(by);
    };
    const SRow rows[] = {
        {1, {0}},
        {2, {1}},
        {3, {2, 0}},
        {258, {2, 255}},
        {259, {3, 0, 0, 0, 0}},
        {259 + 0xFFFFFFFFull, {3, 255, 255, 255, 255}},
    };
    for (const SRow& row : rows)
        ExpectReads(row, 6, fnRead);
}

TEST(FIOctetReader, SequenceLengths)
{
    const SRow rows[] = {
        {1, {0}},
        {128, {127}},
        {129, {128, 0, 0}},
        {130, {128, 0, 1}},
        {129 + 0x0A0B0C, {0x8A, 0x0B, 0x0C}},
        {129 + 0x0A0B0C, {0xFA, 0x0B, 0x0C}},
        {129 + 0xFFFFF, {143, 255, 255}},
    };
    for (const SRow& row : rows)
    {
        for (std::size_t nLength = 0; nLength < row.octets.size(); ++nLength)
        {
            const std::string strBytes = BytesOf(row.octets).substr(0, nLength);
            CFIOctetReader reader(strBytes);
            ExpectThrows<CQvException>(s_szEndOfFile, [&] { reader.ReadSequenceLength(); });
        }
        const std::string strBytes = BytesOf(row.octets);
        CFIOctetReader reader(strBytes);
        EXPECT_EQ(row.nValue, reader.ReadSequenceLength());
        EXPECT_EQ(0u, reader.GetOctetsLeft());
    }
}

TEST(FIOctetReader, NothingBehindTheBufferIsRead)
{
    CFIOctetReader reader("abc");
    EXPECT_EQ("ab", reader.PeekOctets(2));
    EXPECT_EQ("abc", reader.PeekOctets(4));
    EXPECT_EQ("a", reader.ReadOctets(1));
    ExpectThrows<CQvException>(s_szEndOfFile, [&] { reader.ReadOctets(3); });
    ExpectThrows<CQvException>(s_szEndOfFile, [&] { reader.ReadOctets(static_cast<std::size_t>(-1)); });
    EXPECT_EQ("bc", reader.ReadOctets(2));
    EXPECT_EQ("", reader.ReadOctets(0));
    EXPECT_EQ("", reader.PeekOctets(1));
    ExpectThrows<CQvException>(s_szEndOfFile, [&] { reader.ReadOctet(); });
}

TEST(FIOctetReader, StringsOfOctets)
{
    const std::string strBytes = BytesOf({1, 'a', 'b', 0, 'c', 3, 'd'});
    CFIOctetReader reader(strBytes);
    EXPECT_EQ("ab", reader.ReadOctetString());
    EXPECT_EQ("c", reader.ReadOctetString());
    ExpectThrows<CQvException>(s_szEndOfFile, [&] { reader.ReadOctetString(); });
}
