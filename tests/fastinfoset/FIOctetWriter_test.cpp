#include "quiver/fastinfoset/FIOctetWriter.h"

#include "quiver/foundation/BinaryStream.h"
#include "tests/support/Expect.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace QvXmlLib9;
using QvTest::Octets;
using QvTest::OctetsOf;

namespace
{

template <class FnWrite>
Octets Written(FnWrite fnWrite)
{
    CBinaryStream stream;
    CFIOctetWriter writer(&stream);
    fnWrite(writer);
    writer.Flush();
    return OctetsOf(stream.GetData());
}

struct SIntegerRow
{
    std::uint32_t dwValue;
    Octets octets;
};

struct SLengthRow
{
    std::size_t nLength;
    Octets octets;
};

} // namespace

TEST(FIOctetWriter, CountsWhatItHasWrittenItself)
{
    CBinaryStream stream;
    for (const char c : {'a', 'h', 'e', 'a', 'd'})
        stream.Append(static_cast<unsigned char>(c));
    CFIOctetWriter writer(&stream);
    EXPECT_EQ(0u, writer.GetCount());
    for (std::size_t n = 1; n <= 10000; ++n)
    {
        writer.WriteOctet('x');
        ASSERT_EQ(n, writer.GetCount());
    }
    writer.Flush();
    EXPECT_EQ(10000u, writer.GetCount());
}

TEST(FIOctetWriter, IntegersOnTheSecondBit)
{
    const SIntegerRow rows[] = {
        {1, {0}},
        {2, {1}},
        {64, {63}},
        {65, {64, 0}},
        {66, {64, 1}},
        {320, {64, 255}},
        {321, {65, 0}},
        {8256, {95, 255}},
        {8257, {96, 0, 0}},
        {8258, {96, 0, 1}},
        {8257 + 0x10000, {97, 0, 0}},
        {1048576, {111, 0xDF, 0xBF}},
    };
    for (const SIntegerRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteIntegerBit2(0, row.dwValue); }))
            << row.dwValue;
        Octets index = row.octets;
        index[0] += 128;
        EXPECT_EQ(index, Written([&](CFIOctetWriter& writer) { writer.WriteIntegerBit2(128, row.dwValue); }))
            << row.dwValue;
    }
}

TEST(FIOctetWriter, ZeroOnTheSecondBit)
{
    EXPECT_EQ(Octets{127}, Written([](CFIOctetWriter& writer) { writer.WriteZeroBit2(0); }));
    EXPECT_EQ(Octets{255}, Written([](CFIOctetWriter& writer) { writer.WriteZeroBit2(128); }));
}

TEST(FIOctetWriter, IntegersOnTheThirdBitOfWhichTheLargestHaveOneTooLittleTakenOff)
{
    const SIntegerRow rows[] = {
        {1, {0}},
        {32, {31}},
        {33, {32, 0}},
        {34, {32, 1}},
        {2080, {39, 255}},
        {2081, {40, 0, 0}},
        {2082, {40, 0, 1}},
        {526368, {47, 255, 255}},
        {526369, {48, 0, 0, 1}},
        {526370, {48, 0, 0, 2}},
        {1048576, {48, 0x07, 0xF7, 0xE0}},
    };
    for (const SIntegerRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteIntegerBit3(0, row.dwValue); }))
            << row.dwValue;
        Octets attributes = row.octets;
        attributes[0] += 64;
        EXPECT_EQ(attributes, Written([&](CFIOctetWriter& writer) { writer.WriteIntegerBit3(64, row.dwValue); }))
            << row.dwValue;
    }
}

TEST(FIOctetWriter, IntegersOnTheFourthBit)
{
    const SIntegerRow rows[] = {
        {1, {160}},
        {16, {175}},
        {17, {176, 0}},
        {18, {176, 1}},
        {1040, {179, 255}},
        {1041, {180, 0, 0}},
        {1042, {180, 0, 1}},
        {263184, {183, 255, 255}},
        {263185, {184, 0, 0, 0}},
        {263186, {184, 0, 0, 1}},
        {1048576, {184, 0x0B, 0xFB, 0xEF}},
    };
    for (const SIntegerRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteIntegerBit4(160, row.dwValue); }))
            << row.dwValue;
    }
}

TEST(FIOctetWriter, LengthsOnTheSecondBit)
{
    const SLengthRow rows[] = {
        {1, {0}},
        {64, {63}},
        {65, {64, 0}},
        {320, {64, 255}},
        {321, {96, 0, 0, 0, 0}},
        {322, {96, 0, 0, 0, 1}},
        {0xFFFFFFFF, {96, 0xFF, 0xFF, 0xFE, 0xBE}},
    };
    for (const SLengthRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteLengthBit2(0, row.nLength); }))
            << row.nLength;
    }
}

TEST(FIOctetWriter, LengthsOnTheFifthBit)
{
    const SLengthRow rows[] = {
        {1, {64}},
        {8, {71}},
        {9, {72, 0}},
        {264, {72, 255}},
        {265, {76, 0, 0, 0, 0}},
        {266, {76, 0, 0, 0, 1}},
        {0xFFFFFFFF, {76, 0xFF, 0xFF, 0xFE, 0xF6}},
    };
    for (const SLengthRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteLengthBit5(64, row.nLength); }))
            << row.nLength;
    }
}

TEST(FIOctetWriter, LengthsOnTheSeventhBit)
{
    const SLengthRow rows[] = {
        {1, {144}},
        {2, {145}},
        {3, {146, 0}},
        {258, {146, 255}},
        {259, {147, 0, 0, 0, 0}},
        {260, {147, 0, 0, 0, 1}},
        {0xFFFFFFFF, {147, 0xFF, 0xFF, 0xFE, 0xFC}},
    };
    for (const SLengthRow& row : rows)
    {
        EXPECT_EQ(row.octets, Written([&](CFIOctetWriter& writer) { writer.WriteLengthBit7(144, row.nLength); }))
            << row.nLength;
    }
}

TEST(FIOctetWriter, LengthsThatHaveNoFormAreRefused)
{
    for (void (CFIOctetWriter::*pfnWrite)(unsigned char, std::size_t) :
         {&CFIOctetWriter::WriteLengthBit2, &CFIOctetWriter::WriteLengthBit5, &CFIOctetWriter::WriteLengthBit7})
    {
        QvTest::ExpectThrows<CQvException>(L"Failed to write FastInfoset. A string of octets must not be empty.",
                                           [&] { Written([&](CFIOctetWriter& writer) { (writer.*pfnWrite)(0, 0); }); });
#if SIZE_MAX > 0xFFFFFFFF // no string is longer where sizes have 32 bits
        QvTest::ExpectThrows<CQvException>(
            L"Failed to write FastInfoset. A string of octets is too long.",
            [&] { Written([&](CFIOctetWriter& writer) { (writer.*pfnWrite)(0, 0x100000000); }); });
#endif
    }
}

#if defined(QUIVER_DIAGNOSTICS)
TEST(FIOctetWriterDeathTest, AnIndexOfZeroStopsAtAnAssertion)
{
    EXPECT_DEATH(Written([](CFIOctetWriter& writer) { writer.WriteIntegerBit2(0, 0); }), "dwVal > 0");
    EXPECT_DEATH(Written([](CFIOctetWriter& writer) { writer.WriteIntegerBit3(0, 0); }), "dwVal > 0");
    EXPECT_DEATH(Written([](CFIOctetWriter& writer) { writer.WriteIntegerBit4(0, 0); }), "dwVal > 0");
}
#endif
