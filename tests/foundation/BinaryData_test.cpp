#include "quiver/foundation/BinaryData.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Expect.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

CBinaryData FromBytes(std::string_view bytes)
{
    CBinaryData data;
    data.SetBuffer(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
    return data;
}

CBinaryData FromHex(const wchar_t* lpctHex)
{
    CBinaryData data;
    data.SetAsHexString(lpctHex);
    return data;
}

std::string BytesOf(const CBinaryData& data)
{
    return std::string(data.GetView());
}

std::string RandomBytes(std::size_t nLength, unsigned nSeed)
{
    std::mt19937 engine(nSeed);
    std::string strBytes(nLength, 0);
    for (char& c : strBytes)
        c = static_cast<char>(engine());
    return strBytes;
}

/// A block of length 0, which is not the same as an empty handle.
CBinaryData BlockOfNothing()
{
    return FromHex(L"");
}

/// Opens the protected operations.
struct SOpenData : CBinaryData
{
    using CBinaryData::ConvertToHexData;
    using CBinaryData::GetAsHexString;
};

} // namespace

// --- Handle and block -----------------------------------------------------------------------------------------------

TEST(BinaryData, IsEmptyAtFirst)
{
    const CBinaryData data;
    EXPECT_EQ(nullptr, data.GetData());
    EXPECT_EQ(0u, data.GetLength());
    EXPECT_TRUE(data.GetView().empty());
    EXPECT_TEXT(L"", data.GetAsBase64());
    EXPECT_TEXT(L"", data.GetAsHexString());
}

TEST(BinaryData, TellsWhetherThereAreBytes)
{
    EXPECT_TRUE(CBinaryData().IsEmpty());
    EXPECT_TRUE(BlockOfNothing().IsEmpty());
    EXPECT_FALSE(FromBytes("a").IsEmpty());
    EXPECT_EQ("a", FromBytes("a").GetView());
    EXPECT_EQ("", BlockOfNothing().GetView());
}

TEST(BinaryData, CopiesBytesThatItDoesNotOwn)
{
    unsigned char bytes[] = {1, 2, 3};
    CBinaryData data(bytes, 3, false);
    bytes[0] = 9;
    EXPECT_EQ("\1\2\3", BytesOf(data));
    EXPECT_NE(bytes, data.GetData());
}

TEST(BinaryData, TakesOverBytesThatItIsToOwn)
{
    auto* const pBytes = new unsigned char[3]{1, 2, 3};
    CBinaryData data(pBytes, 3, true);
    EXPECT_EQ(pBytes, data.GetData());
    EXPECT_EQ(3u, data.GetLength());
}

TEST(BinaryData, HoldsTheUtf16UnitsOfText)
{
    EXPECT_EQ(std::string("A\0\xAC\x20", 4), BytesOf(CBinaryData(L"A\x20AC")));
    CBinaryData data;
    data.SetBuffer(L"A\x20AC");
    EXPECT_EQ(std::string("A\0\xAC\x20", 4), BytesOf(data));
}

TEST(BinaryData, CountsAWholeCodePointAsItsSurrogatePair)
{
    const std::string strPair("\x3D\xD8\x00\xDE", 4);
    EXPECT_EQ(strPair, BytesOf(CBinaryData(L"\U0001F600")));
    EXPECT_EQ(strPair, BytesOf(CBinaryData(L"\xD83D\xDE00")));
    CBinaryData data;
#if WCHAR_MAX > 0xFFFF
    data.Append(L'\U0001F600');
#else
    data.Append(L'\xD83D');
    data.Append(L'\xDE00');
#endif
    EXPECT_EQ(strPair, BytesOf(data));
    data.Append(std::wstring(L"\U0001F600"));
    EXPECT_EQ(strPair + strPair, BytesOf(data));
}

TEST(BinaryData, TakesANullTextForAnEmptyOne)
{
    EXPECT_TRUE(CBinaryData(static_cast<const wchar_t*>(nullptr)) == BlockOfNothing());
}

TEST(BinaryData, CopySharesTheBlockUntilOneIsChanged)
{
    CBinaryData a = FromBytes("abc");
    CBinaryData b = a;
    EXPECT_EQ(a.GetData(), b.GetData());
    b.Append(static_cast<unsigned char>('d'));
    EXPECT_NE(a.GetData(), b.GetData());
    EXPECT_EQ("abc", BytesOf(a));
    EXPECT_EQ("abcd", BytesOf(b));
}

TEST(BinaryData, AssignmentSharesTheBlockUntilOneIsChanged)
{
    CBinaryData a = FromBytes("abc");
    CBinaryData b = FromBytes("xyz");
    b = a;
    EXPECT_EQ(a.GetData(), b.GetData());
    a.Append(static_cast<unsigned char>('d'));
    EXPECT_EQ("abcd", BytesOf(a));
    EXPECT_EQ("abc", BytesOf(b));
}

TEST(BinaryData, AssignmentOfAnEmptyHandleEmpties)
{
    CBinaryData a = FromBytes("abc");
    a = CBinaryData();
    EXPECT_EQ(nullptr, a.GetData());
}

TEST(BinaryData, AssignmentToItselfLeavesTheHandleEmptyAsIsMeant)
{
    CBinaryData a = FromBytes("abc");
    const CBinaryData& same = a;
    a = same;
    EXPECT_EQ(nullptr, a.GetData());
}

TEST(BinaryData, AssignmentBetweenHandlesOfOneBlockKeepsIt)
{
    CBinaryData a = FromBytes("abc");
    CBinaryData b = a;
    a = b;
    EXPECT_EQ("abc", BytesOf(a));
    EXPECT_EQ(a.GetData(), b.GetData());
}

TEST(BinaryData, MoveLeavesTheSourceEmpty)
{
    CBinaryData a = FromBytes("abc");
    const unsigned char* const pBytes = a.GetData();
    CBinaryData b = std::move(a);
    EXPECT_EQ(pBytes, b.GetData());
    CBinaryData c = FromBytes("x");
    c = std::move(b);
    EXPECT_EQ(pBytes, c.GetData());
    EXPECT_EQ(nullptr, b.GetData()); // NOLINT: the state after the move is what is tested
}

TEST(BinaryData, ComparesByBytes)
{
    const CBinaryData empty;
    struct SRow
    {
        CBinaryData a;
        CBinaryData b;
        bool bEqual;
    };
    const SRow rows[] = {
        {empty, empty, true},
        {empty, FromBytes("a"), false},
        {FromBytes("a"), empty, false},
        {FromBytes("ab"), FromBytes("ab"), true},
        {FromBytes("ab"), FromBytes("ac"), false},
        {FromBytes("ab"), FromBytes("abc"), false},
        {empty, BlockOfNothing(), false},
        {BlockOfNothing(), BlockOfNothing(), true},
        {BlockOfNothing(), FromBytes("a"), false},
    };
    for (const SRow& row : rows)
    {
        EXPECT_EQ(row.bEqual, row.a == row.b);
        EXPECT_EQ(!row.bEqual, row.a != row.b);
    }
    const CBinaryData a = FromBytes("ab");
    const CBinaryData sharing = a;
    EXPECT_TRUE(a == sharing);
}

// --- Index ----------------------------------------------------------------------------------------------------------

TEST(BinaryData, IndexReadsAndWritesBytes)
{
    CBinaryData data = FromBytes("abc");
    data[1] = 'x';
    const CBinaryData& constData = data;
    EXPECT_EQ('a', constData[0]);
    EXPECT_EQ('x', constData[1]);
    EXPECT_EQ('c', constData[2]);
}

TEST(BinaryData, IndexForWritingMakesTheBlockPrivate)
{
    CBinaryData a = FromBytes("abc");
    CBinaryData b = a;
    b[0] = 'x';
    EXPECT_EQ("abc", BytesOf(a));
    EXPECT_EQ("xbc", BytesOf(b));
}

TEST(BinaryData, IndexForReadingKeepsSharing)
{
    CBinaryData a = FromBytes("abc");
    const CBinaryData b = a;
    EXPECT_EQ('a', b[0]);
    EXPECT_EQ(a.GetData(), b.GetData());
}

TEST(BinaryData, IndexEqualToTheLengthGivesTheByteBehindTheData)
{
    CBinaryData copied = FromBytes("abc");
    CBinaryData owned(new unsigned char[2]{1, 2}, 2, true);
    CBinaryData none = BlockOfNothing();
    for (CBinaryData* pData : {&copied, &owned, &none})
    {
        const CBinaryData& constData = *pData;
        const auto ulLength = static_cast<unsigned long>(pData->GetView().size());
        const std::string strBefore = BytesOf(*pData);
        EXPECT_NO_THROW(static_cast<void>(constData[ulLength]));
        (*pData)[ulLength] = 7;
        EXPECT_EQ(strBefore, BytesOf(*pData));
    }
}

TEST(BinaryData, IndexBeyondTheByteBehindTheDataThrows)
{
    CBinaryData data = FromBytes("abc");
    const CBinaryData& constData = data;
    ExpectThrows<CQvException>(L"Index Out of range [4]", [&] { static_cast<void>(constData[4]); });
    ExpectThrows<CQvException>(L"Index Out of range [4]", [&] { data[4] = 1; });
    ExpectThrows<CQvException>(L"Index Out of range [4711]", [&] { data[4711] = 1; });
}

TEST(BinaryData, AnyIndexOnAnEmptyHandleThrows)
{
    CBinaryData data;
    const CBinaryData& constData = data;
    ExpectThrows<CQvException>(L"Index Out of range [0]", [&] { static_cast<void>(constData[0]); });
    ExpectThrows<CQvException>(L"Index Out of range [0]", [&] { data[0] = 1; });
}

// --- Appending ------------------------------------------------------------------------------------------------------

TEST(BinaryData, AppendsInEveryForm)
{
    CBinaryData data;
    data.Append(static_cast<unsigned char>('a'));
    data.Append(reinterpret_cast<const unsigned char*>("bc"), 2);
    data.Append(L'd');
    data.Append(L"e");
    data.Append(std::wstring(L"f"));
    data.Append(FromBytes("g"));
    EXPECT_EQ(std::string("abcd\0e\0f\0g", 10), BytesOf(data));
}

TEST(BinaryData, AppendOfAPointerEndsAtTheFirstZeroAndOfAStringDoesNot)
{
    const std::wstring strText(L"a\0b", 3);
    CBinaryData byPointer;
    byPointer.Append(strText.c_str());
    EXPECT_EQ(2u, byPointer.GetLength());
    CBinaryData byString;
    byString.Append(strText);
    EXPECT_EQ(6u, byString.GetLength());
}

TEST(BinaryData, AppendOfNothingToAnEmptyHandleMakesABlock)
{
    CBinaryData byBytes;
    byBytes.Append(nullptr, 0);
    EXPECT_TRUE(byBytes == BlockOfNothing());
    CBinaryData byText;
    byText.Append(L"");
    EXPECT_TRUE(byText == BlockOfNothing());
    CBinaryData byOther;
    byOther.Append(CBinaryData());
    EXPECT_TRUE(byOther == BlockOfNothing());
}

TEST(BinaryData, AppendsItsOwnBytes)
{
    CBinaryData small = FromBytes("abc");
    small.Append(small);
    EXPECT_EQ("abcabc", BytesOf(small));

    // Enough for the block to move while its own bytes are appended.
    const std::string strBytes = RandomBytes(5000, 1);
    CBinaryData large = FromBytes(strBytes);
    std::string strExpected = strBytes;
    for (int i = 0; i < 5; ++i)
    {
        large.Append(large);
        strExpected += strExpected;
    }
    large.Append(large.GetData() + 7, large.GetLength() - 7);
    strExpected += strExpected.substr(7);
    EXPECT_EQ(strExpected, BytesOf(large));
}

TEST(BinaryData, AppendsItsOwnBytesAsText)
{
    // 'a' and a terminator in whatever width a wide character has, at the end of a block without room.
    const wchar_t szText[] = L"a";
    CBinaryData data(new unsigned char[sizeof(szText)], sizeof(szText), true);
    std::memcpy(data.GetData(), szText, sizeof(szText));
    const std::string strBytes = BytesOf(data);
    data.Append(reinterpret_cast<const wchar_t*>(data.GetData()));
    EXPECT_EQ(strBytes + std::string("a\0", 2), BytesOf(data));
}

TEST(BinaryData, ReadsItsOwnBytesAsBase64AndHexadecimal)
{
    const wchar_t szText[] = L"ABCD";
    CBinaryData hex(reinterpret_cast<const wchar_t*>(szText));
    hex.SetBuffer(reinterpret_cast<const unsigned char*>(szText), sizeof(szText));
    CBinaryData base64 = hex;
    base64.Append(static_cast<unsigned char>(0));
    hex.SetAsHexString(reinterpret_cast<const wchar_t*>(hex.GetData()));
    EXPECT_TRUE(hex == FromBytes("\xAB\xCD"));
    base64.SetAsBase64(reinterpret_cast<const wchar_t*>(base64.GetData()));
    EXPECT_TRUE(base64 == FromBytes(std::string_view("\x00\x10\x83", 3)));
}

TEST(BinaryData, AppendsByteByByteAcrossGrowth)
{
    const std::string strBytes = RandomBytes(100000, 2);
    CBinaryData data;
    for (const char c : strBytes)
        data.Append(static_cast<unsigned char>(c));
    EXPECT_EQ(strBytes, BytesOf(data));
}

TEST(BinaryData, AppendsInPiecesOfEverySize)
{
    const std::string strBytes = RandomBytes(40000, 3);
    for (const std::size_t nPiece : {1u, 2u, 3u, 5u, 4095u, 8191u, 8192u, 8193u, 40000u})
    {
        CBinaryData data;
        for (std::size_t nAt = 0; nAt < strBytes.size(); nAt += nPiece)
        {
            const std::string strPiece = strBytes.substr(nAt, nPiece);
            data.Append(reinterpret_cast<const unsigned char*>(strPiece.data()),
                        static_cast<unsigned long>(strPiece.size()));
        }
        EXPECT_EQ(strBytes, BytesOf(data)) << nPiece;
    }
}

TEST(BinaryData, AppendsToAnArrayThatItTookOver)
{
    CBinaryData data(new unsigned char[1]{'a'}, 1, true);
    data.Append(static_cast<unsigned char>('b'));
    EXPECT_EQ("ab", BytesOf(data));
}

TEST(BinaryData, RefusesToPassTheGreatestLength)
{
    const wchar_t* const lpctMessage = L"Binary data cannot hold more than 4294967295 bytes";
    unsigned char by = 'b';
    CBinaryData data = FromBytes("a");
    ExpectThrows<CQvException>(lpctMessage, [&] { data.Append(&by, 0xFFFFFFFF); });
    EXPECT_EQ("a", BytesOf(data));
    if (sizeof(unsigned long) > 4)
    {
        const auto ulTooLong = static_cast<unsigned long>(0x100000001ull);
        ExpectThrows<CQvException>(lpctMessage, [&] { data.Append(&by, ulTooLong); });
        ExpectThrows<CQvException>(lpctMessage, [&] { data.SetBuffer(&by, ulTooLong); });
        ExpectThrows<CQvException>(lpctMessage, [&] { CBinaryData(&by, ulTooLong, false); });
        ExpectThrows<CQvException>(lpctMessage, [&] { CBinaryData(new unsigned char[1], ulTooLong, true); });
        EXPECT_EQ("a", BytesOf(data));
    }
}

// --- Replacing and releasing ----------------------------------------------------------------------------------------

TEST(BinaryData, SetBufferReplacesTheBytesAndLeavesOtherHandlesAlone)
{
    CBinaryData a = FromBytes("abc");
    const CBinaryData b = a;
    a.SetBuffer(reinterpret_cast<const unsigned char*>("xy"), 2);
    EXPECT_EQ("xy", BytesOf(a));
    EXPECT_EQ("abc", BytesOf(b));
    a.SetBuffer(a.GetData() + 1, 1);
    EXPECT_EQ("y", BytesOf(a));
}

TEST(BinaryData, ClearEmptiesTheHandleAndLeavesOtherHandlesAlone)
{
    CBinaryData a = FromBytes("abc");
    const CBinaryData b = a;
    a.Clear();
    EXPECT_EQ(nullptr, a.GetData());
    EXPECT_EQ(0u, a.GetLength());
    EXPECT_EQ("abc", BytesOf(b));
    a.Clear();
    EXPECT_EQ(nullptr, a.GetData());
}

TEST(BinaryData, ReleaseDataHandsOutTheOnlyArray)
{
    CBinaryData data = FromBytes("abc");
    const unsigned char* const pBytes = data.GetData();
    const std::unique_ptr<unsigned char[]> pReleased(data.ReleaseData());
    EXPECT_EQ(pBytes, pReleased.get());
    EXPECT_EQ(0, std::memcmp("abc", pReleased.get(), 3));
    EXPECT_EQ(nullptr, data.GetData());
}

TEST(BinaryData, ReleaseDataOfASharedBlockHandsOutACopy)
{
    CBinaryData a = FromBytes("abc");
    const CBinaryData b = a;
    const std::unique_ptr<unsigned char[]> pReleased(a.ReleaseData());
    EXPECT_NE(b.GetData(), pReleased.get());
    EXPECT_EQ(0, std::memcmp("abc", pReleased.get(), 3));
    EXPECT_EQ(nullptr, a.GetData());
    EXPECT_EQ("abc", BytesOf(b));
}

TEST(BinaryData, ReleaseDataOfAnEmptyHandleIsNull)
{
    CBinaryData data;
    EXPECT_EQ(nullptr, data.ReleaseData());
}

// --- The block's own checks -----------------------------------------------------------------------------------------

#if defined(QUIVER_DIAGNOSTICS)

TEST(BinaryDataDeathTest, LengthOfABlockOfNothingStopsAtTheAssertion)
{
    const CBinaryData data = BlockOfNothing();
    EXPECT_DEATH(data.GetLength(), "m_dwLen > 0");
}

TEST(BinaryDataDeathTest, BytesOfABlockWithoutAnArrayStopAtTheAssertion)
{
    const CBinaryData data(nullptr, 0, true);
    EXPECT_DEATH(data.GetData(), "m_lpData != NULL");
}

TEST(BinaryDataDeathTest, SharedBlockIsNeitherAppendedToNorReleased)
{
    unsigned char by = 1;
    CBinaryDataRep* const pRep = new CBinaryDataRep(&by, 1, false);
    pRep->AddRef();
    EXPECT_DEATH(pRep->Append(&by, 1), "m_refCount == 1");
    EXPECT_DEATH(pRep->ReleaseData(), "m_refCount == 0");
    pRep->Release();
    pRep->Release();
}

TEST(BinaryDataDeathTest, Base64WithoutArgumentsStopsAtTheAssertion)
{
    unsigned char byOut = 0;
    EXPECT_DEATH(CBase64().Encode(nullptr, 0), "lpEncoding != NULL");
    EXPECT_DEATH(CBase64().Decode(nullptr, &byOut), "szDecoding != NULL");
    EXPECT_DEATH(CBase64().Decode(L"AA==", nullptr), "lpOutput != NULL");
}

#else

TEST(BinaryData, LengthOfABlockOfNothingIsZero)
{
    EXPECT_EQ(0u, BlockOfNothing().GetLength());
}

TEST(BinaryData, SharedBlockIsNeitherAppendedToNorReleased)
{
    unsigned char by = 1;
    CBinaryDataRep* const pRep = new CBinaryDataRep(&by, 1, false);
    pRep->AddRef();
    ExpectThrows<CQvException>(L"Failed to append. [RefCount=2]", [&] { pRep->Append(&by, 1); });
    ExpectThrows<CQvException>(L"Failed to append. [RefCount=2]",
                               [&]
                               {
                                   std::unique_ptr<unsigned char[]> pOld;
                                   pRep->Extend(1, pOld);
                               });
    EXPECT_FALSE(pRep->TryAppend(1));
    // The attempt gives up its reference.
    ExpectThrows<CQvException>(L"Failed to release data. [RefCount=1]", [&] { pRep->ReleaseData(); });
    EXPECT_EQ(1u, pRep->GetLength());
    pRep->Release();
}

TEST(BinaryData, Base64WithoutArgumentsGivesNothing)
{
    unsigned char byOut = 0;
    EXPECT_TEXT(L"", CBase64().Encode(nullptr, 0));
    EXPECT_EQ(0u, CBase64().Decode(nullptr, &byOut));
    EXPECT_EQ(0u, CBase64().Decode(L"AA==", nullptr));
    CBinaryData data;
    data.SetAsBase64(nullptr);
    EXPECT_TRUE(data == BlockOfNothing());
}

#endif

// --- Hexadecimal ----------------------------------------------------------------------------------------------------

TEST(BinaryData, ReadsAndWritesEveryHexadecimalPair)
{
    for (int i = 0; i < 256; ++i)
    {
        const wchar_t* const lpctUpper = L"0123456789ABCDEF";
        const wchar_t* const lpctLower = L"0123456789abcdef";
        const std::wstring strUpper = {lpctUpper[i / 16], lpctUpper[i % 16]};
        const std::wstring strLower = {lpctLower[i / 16], lpctLower[i % 16]};
        EXPECT_EQ(i, FromHex(strUpper.c_str())[0]);
        EXPECT_EQ(i, FromHex(strLower.c_str())[0]);
        EXPECT_TEXT(strUpper, FromHex(strLower.c_str()).GetAsHexString());
    }
}

TEST(BinaryData, ReadsHexadecimalDigitsInEitherCase)
{
    const CBinaryData data = FromHex(L"0aFF");
    EXPECT_EQ("\x0A\xFF", BytesOf(data));
    EXPECT_TEXT(L"0AFF", data.GetAsHexString());
}

TEST(BinaryData, ReadsAnEmptyHexadecimalTextAsABlockOfNothing)
{
    const CBinaryData data = FromHex(L"");
    EXPECT_NE(nullptr, data.GetData());
    EXPECT_TRUE(data != CBinaryData());
    EXPECT_TEXT(L"", data.GetAsHexString());
    EXPECT_TEXT(L"", data.GetAsBase64());
}

TEST(BinaryData, RefusesCharactersThatAreNotHexadecimalDigits)
{
    struct SRow
    {
        std::wstring strText;
        wchar_t cFault;
    };
    const SRow rows[] = {
        {L"xyz", L'x'},
        {L"0x", L'x'},
        {L"00g0", L'g'},
        {L"00 0", L' '},
        {L" 00", L' '},
        {L"00\n", L'\n'},
        {L"/0", L'/'},
        {L":0", L':'},
        {L"@0", L'@'},
        {L"G0", L'G'},
        {L"`0", L'`'},
        {L"0", 0},
        {L"0a0", 0},
        {L"\x0130\x0130", 0x130},
        {L"0\xFF10", 0xFF10},
        {L"\x80", 0x80},
        {L"0\U0001F600", 0xD83D},
        {L"\U0001F600", 0xD83D},
        {L"0\xD83D\xDE00", 0xD83D},
    };
    for (const SRow& row : rows)
    {
        CBinaryData data = FromBytes("old");
        ExpectThrows<CQvException>(std::wstring(L"Invalid char in hex string [") + row.cFault + L"]",
                                   [&] { data.SetAsHexString(row.strText.c_str()); });
        EXPECT_EQ(nullptr, data.GetData());
    }
}

TEST(BinaryData, ConvertsHexadecimalTextForDerivedClasses)
{
    unsigned char* pBytes = nullptr;
    EXPECT_EQ(2u, SOpenData::ConvertToHexData(L"1234", &pBytes));
    const std::unique_ptr<unsigned char[]> pOwner(pBytes);
    EXPECT_TEXT(L"1234", SOpenData::GetAsHexString(pBytes, 2));
    EXPECT_TEXT(L"", SOpenData::GetAsHexString(nullptr, 0));
}

TEST(BinaryData, RoundTripsHexadecimal)
{
    const std::string strBytes = RandomBytes(10001, 4);
    EXPECT_EQ(strBytes, BytesOf(FromHex(FromBytes(strBytes).GetAsHexString().c_str())));
}

// --- Base64 ---------------------------------------------------------------------------------------------------------

TEST(BinaryData, WritesBase64WithPadding)
{
    struct SRow
    {
        std::string_view bytes;
        const wchar_t* lpctText;
    };
    // The second group stands in RFC 4648, 10.
    const SRow rows[] = {
        {std::string_view("\0", 1), L"AA=="},
        {std::string_view("\0\0", 2), L"AAA="},
        {"\xFB\xFF\xBF", L"+/+/"},
        {"f", L"Zg=="},
        {"fo", L"Zm8="},
        {"foo", L"Zm9v"},
        {"foob", L"Zm9vYg=="},
        {"fooba", L"Zm9vYmE="},
        {"foobar", L"Zm9vYmFy"},
    };
    for (const SRow& row : rows)
    {
        EXPECT_TEXT(row.lpctText, FromBytes(row.bytes).GetAsBase64());
        CBinaryData data;
        data.SetAsBase64(row.lpctText);
        EXPECT_EQ(row.bytes, data.GetView());
    }
}

TEST(BinaryData, WritesBase64AsOneLine)
{
    EXPECT_EQ(std::wstring::npos, FromBytes(RandomBytes(1000, 5)).GetAsBase64().find_first_of(L" \r\n"));
}

TEST(BinaryData, ReadsBase64WithBlanksAndPaddingAnywhere)
{
    struct SRow
    {
        std::wstring strText;
        std::string_view bytes;
    };
    const SRow rows[] = {
        {L"QUJD\nRA==", "ABCD"},
        {L"QUJD\r\nRA==", "ABCD"},
        {L" Q\tU\rJ\nD R A = = ", "ABCD"},
        {L"QUJDRA", "ABCD"},
        {L"QUJDRA=", "ABCD"},
        {L"=QUJD=RA===", "ABCD"},
        {L"QUJDR", "ABC"},
        {L"QUJD\x0080", ""},                  // a zero once bit 7 is gone, which is a bad character
        {L"\x0151\x0155\x014A\x0144", "ABC"}, // "QUJD" once only the low 7 bits count
        {L"QUJD\x00BD", "ABC"},               // "=" with bit 7 set
        {L"QU\U00010441", ""},                // its first unit ends in a bad character
        {L"QU\xD801\xDC41", ""},              // the same as a pair
        {L"\U00024455JD", "ABC"},             // units D851 DC55: "QU" in their low 7 bits
        {L"\xD851\xDC55JD", "ABC"},           // the same as a pair
        {L"", ""},
        {L"=", ""},
        {L"Q", ""},
        {L"   ", ""},
    };
    for (const SRow& row : rows)
    {
        CBinaryData data = FromBytes("old");
        data.SetAsBase64(row.strText.c_str());
        EXPECT_EQ(row.bytes, data.GetView()) << QvTest::Show(row.strText);
        EXPECT_TRUE(data != CBinaryData());
    }
}

TEST(BinaryData, GivesABlockOfNothingForABadBase64Character)
{
    for (const wchar_t* lpctText :
         {L"*", L"QUJD*", L"QU*JD", L"QUJDQUJDQUJDQUJ*", L"Q*", L"QUJD-_", L"QUJD\v", L"QUJD."})
    {
        CBinaryData data = FromBytes("old");
        EXPECT_NO_THROW(data.SetAsBase64(lpctText));
        EXPECT_TRUE(data == BlockOfNothing()) << QvTest::Show(lpctText);
    }
}

TEST(BinaryData, KnowsEveryAsciiCharacterOfBase64)
{
    const std::wstring strAlphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::wstring strSkipped = L"= \t\r\n";
    for (wchar_t c = 1; c < 128; ++c)
    {
        // The character is the second of a group whose first is "A", so its value stands in the byte's low bits.
        CBinaryData data;
        data.SetAsBase64((std::wstring(L"A") + c + L"AAQUJD").c_str());
        const std::size_t nValue = strAlphabet.find(c);
        if (nValue != std::wstring::npos)
        {
            ASSERT_EQ(6u, data.GetView().size());
            EXPECT_EQ(nValue, static_cast<std::size_t>(data[0] << 4 | data[1] >> 4)) << static_cast<int>(c);
        }
        else
        {
            EXPECT_EQ(strSkipped.find(c) == std::wstring::npos, data.GetView().empty()) << static_cast<int>(c);
        }
    }
}

TEST(BinaryData, RoundTripsBase64OfEveryLength)
{
    for (std::size_t nLength = 1; nLength < 200; ++nLength)
    {
        const std::string strBytes = RandomBytes(nLength, static_cast<unsigned>(nLength));
        const std::wstring strText = FromBytes(strBytes).GetAsBase64();
        EXPECT_EQ((nLength + 2) / 3 * 4, strText.size());
        CBinaryData data;
        data.SetAsBase64(strText.c_str());
        EXPECT_EQ(strBytes, BytesOf(data));
        // The same with a blank at every place in turn, so that the groups of four shift.
        for (std::size_t i = 0; i <= strText.size() && nLength < 20; ++i)
        {
            std::wstring strBlank = strText;
            strBlank.insert(i, 1, L' ');
            data.SetAsBase64(strBlank.c_str());
            EXPECT_EQ(strBytes, BytesOf(data));
        }
    }
}

TEST(Base64, DecodeClearsTheOutputOfTheWholeText)
{
    unsigned char bytes[10];
    std::memset(bytes, 0x55, sizeof(bytes));
    EXPECT_EQ(3u, CBase64().Decode(L"QUJD ==", bytes));
    EXPECT_EQ(0, std::memcmp("ABC\0\0\0\0\0\x55\x55", bytes, sizeof(bytes)));
    EXPECT_EQ(0u, CBase64().Decode(L"", bytes));
    EXPECT_EQ('A', bytes[0]);
}

TEST(Base64, EncodesNoBytesAsNoText)
{
    const unsigned char by = 1;
    EXPECT_TEXT(L"", CBase64().Encode(&by, 0));
}

// --- Threads --------------------------------------------------------------------------------------------------------

TEST(BinaryData, ABlockThatGrowsIsMovedAFewTimesOnly)
{
    CBinaryData data;
    const unsigned char bytes[1024] = {};
    const std::size_t nAllocations = QvTest::CountAllocations(
        [&]
        {
            for (int n = 0; n < 16384; ++n)
                data.Append(bytes, sizeof(bytes));
        });
    EXPECT_EQ(16384u * sizeof(bytes), data.GetLength());
    EXPECT_LT(nAllocations, 20u) << "its capacity doubles";
}

TEST(BinaryData, TakesTheBytesThatItReadsFromHexOver)
{
    CBinaryData data;
    EXPECT_EQ(2u, QvTest::CountAllocations([&] { data.SetAsHexString(L"00FF10"); }));
    EXPECT_EQ(std::string("\0\xFF\x10", 3), BytesOf(data));
}

TEST(BinaryData, HandlesOnOneBlockLiveInDifferentThreads)
{
    const CBinaryData shared = FromBytes("abc");
    std::vector<std::thread> threads;
    for (int nThread = 0; nThread < 4; ++nThread)
    {
        CBinaryData mine = shared;
        threads.emplace_back(
            [mine]() mutable
            {
                for (int i = 0; i < 2000; ++i)
                {
                    CBinaryData copy = mine;
                    copy.Append(static_cast<unsigned char>('d'));
                    EXPECT_EQ("abcd", BytesOf(copy));
                    const CBinaryData again = mine;
                    EXPECT_EQ("abc", BytesOf(again));
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ("abc", BytesOf(shared));
}

TEST(BinaryData, AppendsItsOwnBytesWhileTheOtherHandleGoes)
{
    const std::string strBytes = RandomBytes(100000, 2);
    for (int i = 0; i < 500; ++i)
    {
        CBinaryData a = FromBytes(strBytes);
        std::thread thread([b = a]() mutable { b.Clear(); });
        if (i % 2 == 0)
            a.Append(a);
        else
            a.Append(a.GetData(), a.GetLength());
        thread.join();
        ASSERT_TRUE(strBytes + strBytes == BytesOf(a)) << "round " << i;
    }
}

TEST(BinaryData, TheLastTwoHandlesMayGoAtTheSameTime)
{
    for (int i = 0; i < 200; ++i)
    {
        CBinaryData a = FromBytes("abc");
        CBinaryData b = a;
        std::thread thread([b = std::move(b)]() mutable { b.Append(static_cast<unsigned char>('x')); });
        a.Append(static_cast<unsigned char>('y'));
        thread.join();
        EXPECT_EQ("abcy", BytesOf(a));
    }
}
