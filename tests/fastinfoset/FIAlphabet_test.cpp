#include "quiver/fastinfoset/FIAlphabet.h"

#include "tests/support/Expect.h"
#include "tests/support/Octets.h"

#include <gtest/gtest.h>

#include <string>

using namespace QvXmlLib9;
using QvTest::BytesOf;
using QvTest::ExpectThrows;
using QvTest::Octets;
using QvTest::OctetsOf;

namespace
{

constexpr wchar_t s_szNumeric[] = L"0123456789-+.e ";

/// An alphabet of so many characters, the first of them "A".
std::wstring Alphabet(std::size_t nLength)
{
    std::wstring strAlphabet;
    for (std::size_t n = 0; n < nLength; ++n)
        strAlphabet += static_cast<wchar_t>(0x41 + n);
    return strAlphabet;
}

Octets Packed(std::wstring_view svAlphabet, std::wstring_view svText)
{
    std::string strOctets;
    AppendRestrictedAlphabetString(strOctets, svAlphabet, svText);
    return OctetsOf(strOctets);
}

std::wstring Unpacked(std::wstring_view svAlphabet, const Octets& octets)
{
    std::wstring strText;
    DecodeRestrictedAlphabetString(strText, svAlphabet, BytesOf(octets));
    return strText;
}

} // namespace

TEST(FIAlphabet, TwoCharactersToAnOctetHighNibbleFirst)
{
    const struct
    {
        std::wstring strText;
        Octets octets;
    } rows[] = {
        {L"0", {0x0F}},         {L"12", {0x12}}, {L"1.5", {0x1C, 0x5F}}, {L"-+.e", {0xAB, 0xCD}}, {L" ", {0xEF}},
        {L"1 2", {0x1E, 0x2F}}, {L"", {}},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.octets, Packed(s_szNumeric, row.strText));
        EXPECT_TEXT(row.strText, Unpacked(s_szNumeric, row.octets));
    }
}

TEST(FIAlphabet, OneCharacterToAnOctet)
{
    const std::wstring strAlphabet = Alphabet(200);
    const std::wstring strText{0x41, 0x41 + 199, 0x42};
    EXPECT_EQ((Octets{0, 199, 1}), Packed(strAlphabet, strText));
    EXPECT_TEXT(strText, Unpacked(strAlphabet, {0, 199, 1}));
}

TEST(FIAlphabet, AlphabetsOfEveryLengthHaveTheirWidth)
{
    // The first length of each width; one position more must be left over for the end.
    const struct
    {
        std::size_t nLength;
        std::wstring strText;
        Octets octets;
    } rows[] = {
        {2, L"ABA", {0x13}},                   // 00 01 00 11
        {3, L"CBA", {0x93}},                   // 10 01 00 11
        {4, L"DAB", {0x60, 0xFF}},             // 011 000 001 111 1111
        {7, L"GF", {0xD7}},                    // 110 101 11
        {16, L"PA", {0x78, 0x3F}},             // 01111 00000 111111
        {31, L"_", {0xF7}},                    // 11110 111
        {32, L"`B", {0x7C, 0x1F}},             // 011111 000001 1111
        {63, {0x41 + 62}, {0xFB}},             // 111110 11
        {64, {0x41 + 63, L'A'}, {0x7E, 0x03}}, // 0111111 0000000 11
        {256, {0x41 + 255}, {0x7F, 0xFF}},     // 011111111 1111111
    };
    for (const auto& row : rows)
    {
        EXPECT_TEXT(row.strText, Unpacked(Alphabet(row.nLength), row.octets));
        ExpectThrows<CQvException>(
            L"Failed to write FastInfoset. Unsupported Feature in AppendRestrictedAlphabetString.",
            [&] { Packed(Alphabet(row.nLength), row.strText); });
    }
    for (const std::size_t nLength : {8u, 15u})
        EXPECT_EQ((Octets{0x1F}), Packed(Alphabet(nLength), L"B"));
    for (const std::size_t nLength : {128u, 255u})
        EXPECT_EQ((Octets{0x01}), Packed(Alphabet(nLength), L"B"));
}

TEST(FIAlphabet, TheLargestAlphabetHasTwentyOneBits)
{
    const std::wstring strAlphabet = Alphabet(1048576);
    EXPECT_TEXT((std::wstring{L'B', static_cast<wchar_t>(0x41 + 0xFFFFF)}),
                Unpacked(strAlphabet, {0, 0, 0x0B, 0xFF, 0xFF, 0xFF}));
}

TEST(FIAlphabet, AllOnesEndAText)
{
    EXPECT_TEXT(L"1", Unpacked(s_szNumeric, {0x1F, 0x23}));
    EXPECT_TEXT(L"B", Unpacked(Alphabet(3), {0x70, 0x00})); // 01 11 00 00 ...
}

TEST(FIAlphabet, APositionThatTheAlphabetLacksIsRefused)
{
    const wchar_t szInvalid[] = L"Failed to parse FastInfoset. Invalid character index for Restricted Alphabet.";
    ExpectThrows<CQvException>(szInvalid, [] { Unpacked(s_szNumeric, {0xF1}); });
    ExpectThrows<CQvException>(szInvalid, [] { Unpacked(Alphabet(9), {0x09}); });
    ExpectThrows<CQvException>(szInvalid, [] { Unpacked(Alphabet(200), {200}); });
    ExpectThrows<CQvException>(szInvalid, [] { Unpacked(Alphabet(2), {0x80}); });
}

TEST(FIAlphabet, ACharacterThatTheAlphabetLacksIsRefused)
{
    const wchar_t szInvalid[] = L"Failed to write FastInfoset. Invalid character not found for Restricted Alphabet.";
    for (const wchar_t* lpctText : {L"P1Y", L"1E5", L"12a"})
        ExpectThrows<CQvException>(szInvalid, [&] { Packed(s_szNumeric, lpctText); });
    ExpectThrows<CQvException>(szInvalid, [] { Packed(Alphabet(200), L"@"); });
}

TEST(FIAlphabet, AlphabetsMustHaveBetween2And2To20Characters)
{
    for (const std::size_t nLength : {0u, 1u, 1048577u})
    {
        const std::wstring strAlphabet = Alphabet(nLength);
        ExpectThrows<CQvException>(L"Failed to write FastInfoset. Invalid Restricted Alphabet. Alphabet must contain "
                                   L"between 2 and 2^20 characters.",
                                   [&] { Packed(strAlphabet, L"A"); });
        ExpectThrows<CQvException>(L"Failed to parse FastInfoset. Invalid Encoding of Restricted Alphabet. Alphabet "
                                   L"must contain between 2 and 2^20 characters.",
                                   [&] { Unpacked(strAlphabet, {0}); });
    }
}
