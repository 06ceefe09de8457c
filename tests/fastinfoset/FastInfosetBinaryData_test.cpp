#include "quiver/fastinfoset/FastInfosetBinaryData.h"

#include "quiver/foundation/Exceptions.h"
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

struct SRow
{
    unsigned long ulIndex;
    std::wstring strText;
    Octets octets;
};

Octets Encoded(unsigned long ulIndex, const wchar_t* lpctText)
{
    CFastInfosetBinaryData data;
    data.SetAsEncodedString(ulIndex, lpctText);
    return OctetsOf(data);
}

std::wstring Decoded(unsigned long ulIndex, const Octets& octets)
{
    std::string strBytes = BytesOf(octets);
    const CFastInfosetBinaryData data(reinterpret_cast<unsigned char*>(strBytes.data()),
                                      static_cast<unsigned long>(strBytes.size()), false);
    return data.GetAsString(ulIndex);
}

} // namespace

TEST(FastInfosetBinaryData, OneValueOfEachAlgorithmBothWays)
{
    const SRow rows[] = {
        {1, L"0AFF", {10, 255}},
        {1, L"00", {0}},
        {2, L"QUI=", {65, 66}},
        {3, L"-1", {255, 255}},
        {3, L"0", {0, 0}},
        {3, L"32767", {127, 255}},
        {3, L"-32768", {128, 0}},
        {4, L"1", {0, 0, 0, 1}},
        {4, L"-1", {255, 255, 255, 255}},
        {4, L"2147483647", {127, 255, 255, 255}},
        {4, L"-2147483648", {128, 0, 0, 0}},
        {5, L"1", {0, 0, 0, 0, 0, 0, 0, 1}},
        {5, L"-2", {255, 255, 255, 255, 255, 255, 255, 254}},
        {5, L"9223372036854775807", {127, 255, 255, 255, 255, 255, 255, 255}},
        {5, L"-9223372036854775808", {128, 0, 0, 0, 0, 0, 0, 0}},
        {6, L"true", {56}},
        {6, L"false", {48}},
        {7, L"1.5", {0x3F, 0xC0, 0, 0}},
        {7, L"-INF", {0xFF, 0x80, 0, 0}},
        {7, L"0.1", {0x3D, 0xCC, 0xCC, 0xCD}},
        {8, L"1.5", {0x3F, 0xF8, 0, 0, 0, 0, 0, 0}},
        {8, L"INF", {0x7F, 0xF0, 0, 0, 0, 0, 0, 0}},
        {8, L"0.1", {0x3F, 0xB9, 0x99, 0x99, 0x99, 0x99, 0x99, 0x9A}},
        {9,
         L"00112233445566778899AABBCCDDEEFF",
         {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF}},
    };
    for (const SRow& row : rows)
    {
        EXPECT_EQ(row.octets, Encoded(row.ulIndex, row.strText.c_str())) << row.ulIndex;
        EXPECT_TEXT(row.strText, Decoded(row.ulIndex, row.octets));
    }
}

TEST(FastInfosetBinaryData, OtherTextsOfAValueAreTakenToo)
{
    const SRow rows[] = {
        {1, L"0aff", {10, 255}},
        {2, L"Q U\nI=", {65, 66}},
        {3, L"+7", {0, 7}},
        {3, L"", {0, 0}},
        {3, L"-0", {0, 0}},
        {3, L" 7", {0, 7}},
        {3, L"000000000000000000007", {0, 7}},
        {4, L"-000000000000000001", {255, 255, 255, 255}},
        {5, L"999999999999999999", {0x0D, 0xE0, 0xB6, 0xB3, 0xA7, 0x63, 0xFF, 0xFF}},
        {5, L"1000000000000000000", {0x0D, 0xE0, 0xB6, 0xB3, 0xA7, 0x64, 0, 0}},
        {6, L"1", {56}},
        {6, L"0", {48}},
        {6, L"TRUE", {56}},
        {9, L"0a", {10}},
        {10, L"a\u00E9", {0x61, 0xC3, 0xA9}},
    };
    for (const SRow& row : rows)
        EXPECT_EQ(row.octets, Encoded(row.ulIndex, row.strText.c_str())) << row.ulIndex;
}

TEST(FastInfosetBinaryData, NotANumberHasTheBitsOfAQuietOne)
{
    EXPECT_TEXT(L"NaN", Decoded(7, Encoded(7, L"NaN")));
    EXPECT_TEXT(L"NaN", Decoded(8, Encoded(8, L"NaN")));
    EXPECT_EQ(0x7F, Encoded(7, L"NaN")[0] & 0x7F);
}

TEST(FastInfosetBinaryData, ListsComeBackDividedByBlanks)
{
    const SRow rows[] = {
        {3, L"1 -1 2", {0, 1, 255, 255, 0, 2}},
        {4, L"1 256", {0, 0, 0, 1, 0, 0, 1, 0}},
        {5, L"0 -1", {0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255}},
        {7, L"1.5 0", {0x3F, 0xC0, 0, 0, 0, 0, 0, 0}},
        {8, L"0 1.5", {0, 0, 0, 0, 0, 0, 0, 0, 0x3F, 0xF8, 0, 0, 0, 0, 0, 0}},
        {9,
         L"00000000000000000000000000000000 01000000000000000000000000000000",
         {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const SRow& row : rows)
        EXPECT_TEXT(row.strText, Decoded(row.ulIndex, row.octets));
}

TEST(FastInfosetBinaryData, BooleansOfOneOctetRunTogetherAndOctetsAreDividedByBlanks)
{
    const SRow rows[] = {
        {6, L"true", {0x38}},
        {6, L"false", {0x30}},
        {6, L"truefalse", {0x28}},        // two bits
        {6, L"truefalsetrue", {0x1A}},    // three bits
        {6, L"truetruetruetrue", {0x0F}}, // four bits
        {6, L"", {0x40}},                 // none
        {6, L"", {0xF0}},                 // none, and more unused bits than there are
        {6, L"falsefalsefalsetrue true", {0x71, 0x80}},
        {6, L"truefalsefalsefalse truefalsefalsefalsefalsefalsefalsetrue false", {0x78, 0x81, 0x00}},
        {6, L"falsefalsefalsefalse ", {0x80, 0xFF}},
    };
    for (const SRow& row : rows)
        EXPECT_TEXT(row.strText, Decoded(row.ulIndex, row.octets)) << row.octets[0];
}

TEST(FastInfosetBinaryData, OctetsThatAreNoWholeCountOfValuesAreRefused)
{
    const struct
    {
        unsigned long ulIndex;
        std::size_t nWidth;
        const wchar_t* lpctMessage;
    } rows[] = {
        {3, 2, L"Invalid value for SHORT byte encoding."},  {4, 4, L"Invalid value for INT byte encoding."},
        {5, 8, L"Invalid value for LONG byte encoding."},   {7, 4, L"Invalid value for FLOAT byte encoding."},
        {8, 8, L"Invalid value for DOUBLE byte encoding."}, {9, 16, L"Invalid value for UUID byte encoding."},
    };
    for (const auto& row : rows)
    {
        for (const std::size_t nLength : {std::size_t{1}, row.nWidth - 1, row.nWidth + 1, row.nWidth * 3 - 1})
            ExpectThrows<CQvException>(row.lpctMessage, [&] { Decoded(row.ulIndex, Octets(nLength)); });
    }
}

TEST(FastInfosetBinaryData, AnUnknownAlgorithmIsRefused)
{
    for (const unsigned long ulIndex : {0ul, 11ul, 256ul, 0xFFFFFFFFul})
        ExpectThrows<CQvException>(L"Unknown byte encoding.", [&] { Encoded(ulIndex, L"1"); });
    for (const unsigned long ulIndex : {0ul, 10ul, 11ul, 256ul})
        ExpectThrows<CQvException>(L"Unknown byte encoding.", [&] { Decoded(ulIndex, {1}); });
}

TEST(FastInfosetBinaryData, WithoutOctetsTheTextIsEmptyWhateverTheAlgorithm)
{
    CFastInfosetBinaryData emptyBlock;
    emptyBlock.SetAsBase64(L"");
    for (const unsigned long ulIndex : {0ul, 1ul, 6ul, 10ul, 99ul})
    {
        EXPECT_TEXT(L"", CFastInfosetBinaryData().GetAsString(ulIndex));
        EXPECT_TEXT(L"", emptyBlock.GetAsString(ulIndex));
    }
}

TEST(FastInfosetBinaryData, ATextThatDoesNotFitFailsAsItsConversionDoes)
{
    ExpectThrows<CQvException>(L"Invalid char in hex string [x]", [] { Encoded(1, L"xyz"); });
    ExpectThrows<CQvException>(L"Invalid char in hex string [-]", [] { Encoded(9, L"0011-2233"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [32768] is to large to fit in a i2",
                                           [] { Encoded(3, L"32768"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [-32769] is to large to fit in a i2",
                                           [] { Encoded(3, L"-32769"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [-2147483649] is to large to fit in a i4",
                                           [] { Encoded(4, L"-2147483649"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [2147483648] is to large to fit in a i4",
                                           [] { Encoded(4, L"2147483648"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [18446744073709551615] is to large to fit in a i8",
                                           [] { Encoded(5, L"18446744073709551615"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [1 2] can not be converted to a i4", [] { Encoded(3, L"1 2"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [.5] can not be converted to a i4", [] { Encoded(3, L".5"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [1:] can not be converted to a i4", [] { Encoded(3, L"1:"); });
    ExpectThrows<CQvInvalidValueException>(L"The value [1.5x] can not be converted to a r4",
                                           [] { Encoded(7, L"1.5x"); });
    ExpectThrows<CQvInvalidValueException>(
        L"A Boolean Value read from an XML document was invalid [yes]. Valid values are 'true', 'false', '1', or '0'",
        [] { Encoded(6, L"yes"); });
}

TEST(FastInfosetBinaryData, SettingReplacesWhatWasThereAlsoWhenItFails)
{
    CFastInfosetBinaryData data;
    data.SetAsEncodedString(3, L"1");
    data.SetAsEncodedString(3, L"2");
    EXPECT_EQ((Octets{0, 2}), OctetsOf(data));
    ExpectThrows<CQvException>(L"Unknown byte encoding.", [&] { data.SetAsEncodedString(0, L"1"); });
    EXPECT_TRUE(data.IsEmpty());
}

TEST(FastInfosetBinaryData, IsMadeOfBinaryDataOfBytesOrOfText)
{
    unsigned char octets[] = {0, 1};
    const CBinaryData source(octets, 2, false);
    EXPECT_TEXT(L"1", CFastInfosetBinaryData(source).GetAsString(3));
    const CFastInfosetBinaryData data(octets, 2, false);
    CFastInfosetBinaryData copy(data);
    EXPECT_TEXT(L"1", copy.GetAsString(3));
    CFastInfosetBinaryData assigned;
    assigned = data;
    EXPECT_TEXT(L"1", assigned.GetAsString(3));
    EXPECT_EQ((Octets{'a', 0}), OctetsOf(CFastInfosetBinaryData(L"a")));
}
