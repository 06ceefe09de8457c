#include "quiver/foundation/Encoder.h"

#include "tests/support/Expect.h"

#include <cstdint>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

using namespace QvXmlLib9;

namespace
{

std::wstring UnitsOf(std::uint32_t nCode)
{
    if (nCode < 0x10000)
        return std::wstring(1, static_cast<wchar_t>(nCode));
    return {static_cast<wchar_t>(0xD800 + ((nCode - 0x10000) >> 10)),
            static_cast<wchar_t>(0xDC00 + ((nCode - 0x10000) & 0x3FF))};
}

std::string BytesOf(const CBinaryData& data)
{
    return std::string(data.GetView());
}

std::wstring Decode(std::string_view bytes)
{
    return DecodeUtf8(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
}

std::string Encode(std::wstring_view text)
{
    std::string strBytes(GetUtf8Length(text), '?');
    strBytes.resize(WriteUtf8(text, reinterpret_cast<unsigned char*>(strBytes.data())));
    return strBytes;
}

struct SPair
{
    std::uint32_t nCode;
    std::string_view bytes;
};

/// The borders of every length and of every lead byte with rules of its own.
const SPair s_pairs[] = {
    {0x1, "\x01"},
    {0x7F, "\x7F"},
    {0x80, "\xC2\x80"},
    {0x7FF, "\xDF\xBF"},
    {0x800, "\xE0\xA0\x80"},
    {0xFFF, "\xE0\xBF\xBF"},
    {0x1000, "\xE1\x80\x80"},
    {0xCFFF, "\xEC\xBF\xBF"},
    {0xD7FF, "\xED\x9F\xBF"},
    {0xE000, "\xEE\x80\x80"},
    {0xFFFD, "\xEF\xBF\xBD"},
    {0xFFFF, "\xEF\xBF\xBF"},
    {0x10000, "\xF0\x90\x80\x80"},
    {0x3FFFF, "\xF0\xBF\xBF\xBF"},
    {0x40000, "\xF1\x80\x80\x80"},
    {0xFFFFF, "\xF3\xBF\xBF\xBF"},
    {0x100000, "\xF4\x80\x80\x80"},
    {0x10FFFF, "\xF4\x8F\xBF\xBF"},
};

/// Bytes that the legality test refuses.
const std::string_view s_badBytes[] = {
    "\x80",                 // trail without a lead
    "\xBF",                 //
    "\xC0\x80",             // overlong
    "\xC1\xBF",             //
    "\xE0\x80\x80",         //
    "\xE0\x9F\xBF",         //
    "\xF0\x80\x80\x80",     //
    "\xF0\x8F\xBF\xBF",     //
    "\xED\xA0\x80",         // surrogates
    "\xED\xBF\xBF",         //
    "\xF4\x90\x80\x80",     // past the last code point
    "\xF5\x80\x80\x80",     //
    "\xF8\x88\x80\x80\x80", // five and six bytes
    "\xFC\x84\x80\x80\x80\x80",
    "\xFE",
    "\xFF",
    "\xC2",             // cut off
    "\xE1\x80",         //
    "\xE1",             //
    "\xF1\x80\x80",     //
    "\xF1",             //
    "\xC2\x41",         // trail missing
    "\xC2\xC2\x80",     //
    "\xE1\x80\x41",     //
    "\xE1\x41\x80",     //
    "\xF1\x80\x80\x41", //
    "\xF1\x80\x41\x80", //
    "\xF1\x80\xC2\x80", //
};

/// Text that stands for no code points.
const std::wstring s_badTexts[] = {
    L"\xD800",           // high surrogate at the end
    L"\xDBFF",           //
    L"\xD800\x41",       // high surrogate ahead of something else
    L"\xD800\xD800",     //
    L"\xD800\U00010000", //
    L"\xDC00",           // low surrogate alone
    L"\xDFFF",           //
    L"\xDC00\xD800",     //
#if WCHAR_MAX > 0xFFFF
    std::wstring(1, static_cast<wchar_t>(0x110000)),
    std::wstring(1, static_cast<wchar_t>(-1)),
#endif
};

/// ASCII lengths around the size of the groups that are converted at once.
const std::size_t s_lengths[] = {0, 1, 2, 7, 8, 15, 16, 17, 31, 32, 33, 48, 511, 512, 513, 1023, 1024, 5000};

} // namespace

// --- EncodeUtf8 and DecodeUtf8 --------------------------------------------------------------------------------------

TEST(Encoder, ConvertsTheBordersOfEveryLengthInBothDirections)
{
    for (const SPair& pair : s_pairs)
    {
        EXPECT_EQ(pair.bytes, BytesOf(EncodeUtf8(UnitsOf(pair.nCode).c_str()))) << pair.nCode;
        EXPECT_TEXT(UnitsOf(pair.nCode), Decode(pair.bytes));
    }
}

TEST(Encoder, ConvertsEveryCodePointInBothDirections)
{
    std::wstring strText;
    for (std::uint32_t nCode = 1; nCode <= 0x10FFFF; ++nCode)
    {
        if (nCode < 0xD800 || nCode > 0xDFFF)
            strText += UnitsOf(nCode);
    }
    const CBinaryData bytes = EncodeUtf8(strText.c_str());
    EXPECT_EQ(0x7Fu + 0x780u * 2 + (0x10000u - 0x800u - 0x800u) * 3 + 0x100000u * 4, bytes.GetLength());
    EXPECT_TRUE(strText == DecodeUtf8(bytes.GetData(), bytes.GetLength()));
}

TEST(Encoder, WritesAWholeCodePointAsItsSurrogatePair)
{
    EXPECT_EQ("a\xF0\x9F\x98\x80z", BytesOf(EncodeUtf8(L"a\U0001F600z")));
    EXPECT_EQ("a\xF0\x9F\x98\x80z", BytesOf(EncodeUtf8(L"a\xD83D\xDE00z")));
}

TEST(Encoder, EncodesAnEmptyTextAsAnEmptyHandle)
{
    EXPECT_EQ(nullptr, EncodeUtf8(L"").GetData());
}

TEST(Encoder, TakesNullForAnEmptyTextAndForNoBytes)
{
    EXPECT_TRUE(EncodeUtf8(nullptr) == CBinaryData());
    EXPECT_TEXT(L"", DecodeUtf8(nullptr, 0));
    EXPECT_TEXT(L"", DecodeUtf8(nullptr, 5));
    EXPECT_TEXT(L"", DecodeUtf16(static_cast<const wchar_t*>(nullptr), 5));
    EXPECT_TEXT(L"", DecodeUtf16(static_cast<const unsigned char*>(nullptr), 5));
}

TEST(Encoder, AppendsATextToItself)
{
    for (const wchar_t* lpctText : {L"abc", L"a\xD83D\xDE00", L"a\U0001F600", L""})
    {
        std::wstring strText = lpctText;
        strText.shrink_to_fit();
        const std::wstring strUnits = ToUtf16Units(strText);
        std::wstring strExpected = strText + strUnits;
        AppendUtf16Units(strText, strText);
        EXPECT_TEXT(strExpected, strText);
    }
}

TEST(Encoder, EncodesUpToTheFirstZero)
{
    EXPECT_EQ("ab", BytesOf(EncodeUtf8(std::wstring(L"ab\0cd", 5).c_str())));
}

TEST(Encoder, DecodesNoBytesAsAnEmptyText)
{
    EXPECT_TEXT(L"", DecodeUtf8(nullptr, 0));
}

TEST(Encoder, DecodesZeroBytesAsZeroUnits)
{
    EXPECT_TEXT(std::wstring(L"a\0b", 3), Decode(std::string_view("a\0b", 3)));
}

#if defined(QUIVER_DIAGNOSTICS)

TEST(EncoderDeathTest, TextThatIsNotWellFormedStopsAtTheAssertion)
{
    EXPECT_DEATH(EncodeUtf8(L"\xD800"), "dwActualLen != 0");
    EXPECT_DEATH(EncodeUtf8(L"ab\xD800"), "dwActualLen == dwUtf8Len");
    EXPECT_DEATH(EncodeUtf8(L"ab\xDC00zz"), "dwActualLen == dwUtf8Len");
}

TEST(EncoderDeathTest, BytesThatAreNotWellFormedStopAtTheAssertion)
{
    EXPECT_DEATH(Decode("\xFF"), "dwActualLen != 0");
    EXPECT_DEATH(Decode("ab\xFFz"), "dwActualLen == dwUnicodeLen");
}

#else

TEST(Encoder, EncodesUpToAFault)
{
    for (const std::wstring& strBad : s_badTexts)
    {
        EXPECT_EQ("a\xC3\xA4", BytesOf(EncodeUtf8((L"a\xE4" + strBad + L"z").c_str())));
        EXPECT_EQ("", BytesOf(EncodeUtf8(strBad.c_str())));
    }
}

TEST(Encoder, DecodesUpToAFault)
{
    for (const std::string_view bad : s_badBytes)
    {
        EXPECT_TEXT(L"a\xE4", Decode("a\xC3\xA4" + std::string(bad)));
        EXPECT_TEXT(L"", Decode(bad));
    }
}

#endif

// --- DecodeUtf16 ----------------------------------------------------------------------------------------------------

TEST(Encoder, CopiesUtf16Units)
{
    EXPECT_TEXT(L"", DecodeUtf16(L"abc", 0));
    EXPECT_TEXT(L"", DecodeUtf16(static_cast<const wchar_t*>(nullptr), 0));
    EXPECT_TEXT(L"ab", DecodeUtf16(L"abc", 2));
    EXPECT_TEXT(std::wstring(L"a\0\xD800", 3), DecodeUtf16(L"a\0\xD800", 3));
    EXPECT_TEXT(L"\xD83D\xDE00", DecodeUtf16(L"\U0001F600", sizeof(wchar_t) > 2 ? 1 : 2));
}

TEST(Encoder, CopiesUtf16UnitsFromBytesAtAnyAddressTheLowerByteFirst)
{
    const std::string_view octets("a\0\xAC\x20\x3D\xD8\x00\xDE", 8);
    for (std::size_t nShift = 0; nShift < 4; ++nShift)
    {
        std::vector<unsigned char> bytes(nShift, 0);
        bytes.insert(bytes.end(), octets.begin(), octets.end());
        EXPECT_TEXT(L"a\x20AC\xD83D\xDE00", DecodeUtf16(bytes.data() + nShift, 4));
        EXPECT_TEXT(L"", DecodeUtf16(bytes.data(), 0));
    }
}

// --- Appending and measuring ----------------------------------------------------------------------------------------

TEST(Encoder, AppendsUtf8AsUtf16BehindWhatIsThere)
{
    std::wstring strText = L"x";
    EXPECT_TRUE(AppendUtf8AsUtf16(strText, ""));
    EXPECT_TRUE(AppendUtf8AsUtf16(strText, "a\xC3\xA4\xF0\x9F\x98\x80"));
    EXPECT_TEXT(L"xa\xE4\xD83D\xDE00", strText);
}

TEST(Encoder, AppendsUtf8BehindWhatIsThere)
{
    std::string strBytes = "x";
    EXPECT_TRUE(AppendUtf8(strBytes, L""));
    EXPECT_TRUE(AppendUtf8(strBytes, L"a\xE4\U0001F600"));
    EXPECT_EQ("xa\xC3\xA4\xF0\x9F\x98\x80", strBytes);
}

TEST(Encoder, ReportsBytesThatAreNotWellFormedWhereverTheyStand)
{
    for (const std::string_view bad : s_badBytes)
    {
        for (const std::size_t nAhead : s_lengths)
        {
            std::wstring strText = L"x";
            EXPECT_FALSE(AppendUtf8AsUtf16(strText, std::string(nAhead, 'a') + std::string(bad)));
            EXPECT_TEXT(L"x" + std::wstring(nAhead, L'a'), strText);
        }
    }
}

TEST(Encoder, ReportsTextThatIsNotWellFormedWhereverItStands)
{
    for (const std::wstring& strBad : s_badTexts)
    {
        for (const std::size_t nAhead : s_lengths)
        {
            std::string strBytes = "x";
            EXPECT_FALSE(AppendUtf8(strBytes, std::wstring(nAhead, L'a') + strBad + std::wstring(20, L'z')));
            EXPECT_EQ("x" + std::string(nAhead, 'a'), strBytes);
        }
    }
}

TEST(Encoder, ConvertsEachSequenceAtEveryPlaceOfLongText)
{
    // The places run over the borders of the groups and of the pieces that long text is converted in.
    for (const SPair& pair : s_pairs)
    {
        for (std::size_t nAhead = 490; nAhead < 530; ++nAhead)
        {
            const std::string strBytes = std::string(nAhead, 'a') + std::string(pair.bytes) + std::string(40, 'z');
            const std::wstring strText = std::wstring(nAhead, L'a') + UnitsOf(pair.nCode) + std::wstring(40, L'z');
            std::wstring strDecoded;
            EXPECT_TRUE(AppendUtf8AsUtf16(strDecoded, strBytes));
            EXPECT_TEXT(strText, strDecoded);
            EXPECT_EQ(strBytes, Encode(strText));
            EXPECT_EQ(strBytes.size(), GetUtf8Length(strText));
        }
    }
}

TEST(Encoder, ConvertsARunOfOneCharacter)
{
    for (const SPair& pair : s_pairs)
    {
        for (const std::size_t nTimes : s_lengths)
        {
            std::wstring strText;
            std::string strBytes;
            for (std::size_t n = 0; n < nTimes; ++n)
            {
                strText += UnitsOf(pair.nCode);
                strBytes += pair.bytes;
            }
            EXPECT_EQ(strBytes, BytesOf(EncodeUtf8(strText.c_str())));
            EXPECT_EQ(strBytes, Encode(strText));
            EXPECT_EQ(strBytes.size(), GetUtf8Length(strText));
            std::wstring strDecoded;
            EXPECT_TRUE(AppendUtf8AsUtf16(strDecoded, strBytes));
            EXPECT_TEXT(strText, strDecoded);
            EXPECT_TEXT(strText, Decode(strBytes));
        }
    }
}

TEST(Encoder, SaysWhetherItWroteTheWholeText)
{
    unsigned char bytes[100];
    bool bWhole = false;
    EXPECT_EQ(0u, WriteUtf8(L"", bytes, bWhole));
    EXPECT_TRUE(bWhole);
    EXPECT_EQ(3u, WriteUtf8(L"a\xE4", bytes, bWhole));
    EXPECT_TRUE(bWhole);
    for (const std::wstring& strBad : s_badTexts)
    {
        EXPECT_EQ(1u, WriteUtf8(L"a" + strBad + L"z", bytes, bWhole));
        EXPECT_FALSE(bWhole);
    }
}

TEST(Encoder, ConvertsMixedText)
{
    std::mt19937 engine(1);
    for (int nRound = 0; nRound < 200; ++nRound)
    {
        std::wstring strText;
        std::string strBytes;
        for (int i = 0; i < 700; ++i)
        {
            const SPair& pair = s_pairs[engine() % (engine() % 4 != 0 ? 2 : std::size(s_pairs))];
            strText += UnitsOf(pair.nCode);
            strBytes += pair.bytes;
        }
        EXPECT_EQ(strBytes, Encode(strText));
        std::wstring strDecoded;
        EXPECT_TRUE(AppendUtf8AsUtf16(strDecoded, strBytes));
        EXPECT_TEXT(strText, strDecoded);
        EXPECT_EQ(strBytes, BytesOf(EncodeUtf8(strText.c_str())));
        EXPECT_TEXT(strText, Decode(strBytes));
    }
}

TEST(Encoder, MeasuresWellFormedText)
{
    for (const SPair& pair : s_pairs)
    {
        EXPECT_EQ(pair.bytes.size(), GetUtf8Length(UnitsOf(pair.nCode)));
        if (pair.nCode <= static_cast<std::uint32_t>(WCHAR_MAX))
        {
            EXPECT_EQ(pair.bytes.size(), GetUtf8Length(std::wstring(1, static_cast<wchar_t>(pair.nCode))));
        }
    }
    EXPECT_EQ(0u, GetUtf8Length(L""));
    EXPECT_EQ(20000u, GetUtf8Length(std::wstring(10000, L'\xE4')));
}

TEST(Encoder, NeverWritesMoreThanItMeasured)
{
    for (const std::wstring& strBad : s_badTexts)
        EXPECT_LT(Encode(L"a" + strBad + L"z").size(), GetUtf8Length(L"a" + strBad + L"z"));
}

// --- Units ----------------------------------------------------------------------------------------------------------

TEST(Encoder, FindsWholeCodePointsAtEveryPlace)
{
    // A literal holds them only where there is room for one.
    constexpr bool bWide = sizeof(wchar_t) > 2;
    for (const std::size_t nAhead : s_lengths)
    {
        const std::wstring strAhead(nAhead, L'\xFFFF');
        EXPECT_FALSE(HasWholeCodePoints(strAhead));
        EXPECT_EQ(bWide, HasWholeCodePoints(strAhead + L"\U00010000"));
        EXPECT_EQ(bWide, HasWholeCodePoints(L"\U0010FFFF" + strAhead));
    }
    EXPECT_FALSE(HasWholeCodePoints(L"\xD83D\xDE00"));
}

TEST(Encoder, SplitsWholeCodePointsAndLeavesUnitsAlone)
{
    struct SRow
    {
        std::wstring strText;
        std::wstring strUnits;
    };
    const SRow rows[] = {
        {L"", L""},
        {L"abc", L"abc"},
        {L"\xD83D\xDE00", L"\xD83D\xDE00"},
        {L"\xDC00\xD800", L"\xDC00\xD800"},
        {L"\U0001F600", L"\xD83D\xDE00"},
        {L"a\U00010000z\U0010FFFF", L"a\xD800\xDC00z\xDBFF\xDFFF"},
        {L"\xFFFF", L"\xFFFF"},
#if WCHAR_MAX > 0xFFFF
        {std::wstring(1, static_cast<wchar_t>(0x110000)), L"\xFFFD"},
        {std::wstring(1, static_cast<wchar_t>(-1)), L"\xFFFD"},
#endif
        {std::wstring(L"a") + L'\0' + L"\U0001F600", std::wstring(L"a\0\xD83D\xDE00", 4)},
    };
    for (const SRow& row : rows)
    {
        EXPECT_TEXT(row.strUnits, ToUtf16Units(row.strText));
        EXPECT_EQ(row.strUnits.size(), GetUtf16Length(row.strText));
        std::wstring strText = L"x";
        AppendUtf16Units(strText, row.strText);
        EXPECT_TEXT(L"x" + row.strUnits, strText);
    }
}

TEST(Encoder, WritesUnitsInLittleEndianOrder)
{
    for (const std::size_t nAhead : s_lengths)
    {
        const std::wstring strText = std::wstring(nAhead, L'\x1234') + L"\U0001F600" + std::wstring(20, L'\xFFFE');
        std::string strExpected;
        for (std::size_t i = 0; i < nAhead; ++i)
            strExpected += "\x34\x12";
        strExpected += std::string("\x3D\xD8\x00\xDE", 4);
        for (int i = 0; i < 20; ++i)
            strExpected += "\xFE\xFF";
        std::string strBytes(2 * GetUtf16Length(strText), '?');
        WriteUtf16LittleEndian(strText, reinterpret_cast<unsigned char*>(strBytes.data()));
        EXPECT_EQ(strExpected, strBytes);
    }
}

TEST(Encoder, KnowsTheByteOrderMarks)
{
    EXPECT_EQ("", GetByteOrderMark(Encoding_None));
    EXPECT_EQ("", GetByteOrderMark(Encoding_UTF8));
    EXPECT_EQ("\xFF\xFE", GetByteOrderMark(Encoding_UTF16));
    EXPECT_EQ("\xFF\xFE", GetByteOrderMark(Encoding_UTF16_Undeclared));
}
