#include "quiver/values/Conversions.h"

#include "quiver/foundation/Exceptions.h"
#include "tests/support/Expect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

using namespace QvXmlLib9;

namespace
{

constexpr auto s_eNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto s_ePreserve = CWhitespaceUtils::WhitespaceRule_Preserve;
constexpr auto s_eReplace = CWhitespaceUtils::WhitespaceRule_Replace;
constexpr auto s_eCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

template <class TFunction>
void ExpectFailure(TFunction fnFromString, const std::wstring& strText, const std::wstring& strMessage,
                   CWhitespaceUtils::WhitespaceRule eRule = s_eNone)
{
    QvTest::ExpectThrows<CQvInvalidValueException>(strMessage,
                                                   [&] { static_cast<void>(fnFromString(strText, eRule)); });
}

template <class T>
struct SCase
{
    const wchar_t* lpctText;
    T value;
};

template <class T, class TFunction, std::size_t nCount>
void ExpectValues(TFunction fnFromString, const SCase<T> (&cases)[nCount])
{
    for (const SCase<T>& expected : cases)
    {
        SCOPED_TRACE(expected.lpctText);
        EXPECT_EQ(fnFromString(expected.lpctText, s_eNone), expected.value);
        EXPECT_EQ(fnFromString(L"\n " + std::wstring(expected.lpctText) + L"\t", s_eCollapse), expected.value);
    }
}

struct SFailure
{
    const wchar_t* lpctText;
    const wchar_t* lpctMessage;
};

template <class TFunction, std::size_t nCount>
void ExpectFailures(TFunction fnFromString, const SFailure (&cases)[nCount])
{
    for (const SFailure& expected : cases)
    {
        SCOPED_TRACE(expected.lpctText);
        ExpectFailure(fnFromString, expected.lpctText, expected.lpctMessage);
    }
}

constexpr double s_dInfinity = std::numeric_limits<double>::infinity();

} // namespace

// --- Integers ---------------------------------------------------------------------------------------------------

TEST(Conversions, I1ReadsItsRange)
{
    ExpectValues<char>(&CConversions::i1FromString,
                       {{L"127", 127}, {L"-128", static_cast<char>(-128)}, {L"+7", 7}, {L"", 0}});
    ExpectFailures(&CConversions::i1FromString,
                   {{L"128", L"The value [128] is to large to fit in a i1"},
                    {L"-129", L"The value [-129] is to large to fit in a i1"},
                    {L"99999999999", L"The value [99999999999] is to large to fit in a i4"},
                    {L"1x", L"The value [1x] can not be converted to a i4"}});
}

TEST(Conversions, I2ReadsItsRange)
{
    ExpectValues<short>(&CConversions::i2FromString, {{L"32767", 32767}, {L"-32768", -32768}, {L"0", 0}});
    ExpectFailures(&CConversions::i2FromString,
                   {{L"32768", L"The value [32768] is to large to fit in a i2"},
                    {L"-32769", L"The value [-32769] is to large to fit in a i2"},
                    {L"-2147483649", L"The value [-2147483649] is to large to fit in a i4"}});
}

TEST(Conversions, I4ReadsItsRange)
{
    ExpectValues<long>(
        &CConversions::i4FromString,
        {{L"2147483647", 2147483647L}, {L"-2147483648", -2147483647L - 1}, {L"+7", 7}, {L"", 0}, {L"-0", 0}});
    ExpectFailures(&CConversions::i4FromString,
                   {{L"2147483648", L"The value [2147483648] is to large to fit in a i4"},
                    {L"-2147483649", L"The value [-2147483649] is to large to fit in a i4"},
                    {L"12abc", L"The value [12abc] can not be converted to a i4"},
                    {L"1.0", L"The value [1.0] can not be converted to a i4"},
                    {L"12 ", L"The value [12 ] can not be converted to a i4"},
                    {L"0x10", L"The value [0x10] can not be converted to a i4"},
                    {L"+-1", L"The value [+-1] can not be converted to a i4"},
                    {L"-", L"The value [-] can not be converted to a i4"},
                    {L"  ", L"The value [  ] can not be converted to a i4"}});
}

TEST(Conversions, NumberThatIsTooLargeFailsAsSuchWhateverFollows)
{
    ExpectFailure(&CConversions::i4FromString, L"99999999999x", L"The value [99999999999x] is to large to fit in a i4");
}

TEST(Conversions, I8ReadsItsRange)
{
    ExpectValues<__int64>(&CConversions::i8FromString, {{L"9223372036854775807", std::numeric_limits<__int64>::max()},
                                                        {L"-9223372036854775808", std::numeric_limits<__int64>::min()},
                                                        {L"", 0}});
    ExpectFailures(&CConversions::i8FromString,
                   {{L"9223372036854775808", L"The value [9223372036854775808] is to large to fit in a i8"},
                    {L"-9223372036854775809", L"The value [-9223372036854775809] is to large to fit in a i8"},
                    {L"1-", L"The value [1-] can not be converted to a i8"}});
}

TEST(Conversions, Ui1ReadsItsRange)
{
    ExpectValues<unsigned char>(&CConversions::ui1FromString,
                                {{L"255", 255}, {L"0", 0}, {L"", 0}, {L"-4294967295", 1}});
    ExpectFailures(&CConversions::ui1FromString,
                   {{L"256", L"The value [256] is to large to fit in a ui1"},
                    {L"-1", L"The value [-1] is to large to fit in a ui1"},
                    {L"4294967296", L"The value [4294967296] is to large to fit in a ui4"},
                    {L"a", L"The value [a] can not be converted to a ui4"}});
}

TEST(Conversions, Ui2ReadsItsRange)
{
    ExpectValues<unsigned short>(&CConversions::ui2FromString, {{L"65535", 65535}, {L"0", 0}});
    ExpectFailures(&CConversions::ui2FromString, {{L"65536", L"The value [65536] is to large to fit in a ui2"},
                                                  {L"-1", L"The value [-1] is to large to fit in a ui2"}});
}

TEST(Conversions, UnsignedParsersAcceptAMinusAndWrapAround)
{
    ExpectValues<unsigned long>(&CConversions::ui4FromString,
                                {{L"-1", 4294967295UL}, {L"-4294967295", 1}, {L"4294967295", 4294967295UL}, {L"", 0}});
    ExpectValues<unsigned __int64>(&CConversions::ui8FromString, {{L"-1", 18446744073709551615ULL},
                                                                  {L"18446744073709551615", 18446744073709551615ULL}});
}

TEST(Conversions, UnsignedParsersFailBeyondTheirRange)
{
    ExpectFailures(&CConversions::ui4FromString,
                   {{L"4294967296", L"The value [4294967296] is to large to fit in a ui4"},
                    {L"-4294967296", L"The value [-4294967296] is to large to fit in a ui4"},
                    {L"1 2", L"The value [1 2] can not be converted to a ui4"}});
    ExpectFailures(&CConversions::ui8FromString,
                   {{L"18446744073709551616", L"The value [18446744073709551616] is to large to fit in a ui8"},
                    {L"1,5", L"The value [1,5] can not be converted to a ui8"}});
}

TEST(Conversions, BlanksInFrontOfDigitsPassUnderEveryRule)
{
    for (const CWhitespaceUtils::WhitespaceRule eRule : {s_eNone, s_ePreserve, s_eReplace, s_eCollapse})
    {
        EXPECT_EQ(CConversions::i4FromString(L" \t\n7", eRule), 7);
        EXPECT_EQ(CConversions::ui8FromString(L"  7", eRule), 7U);
        EXPECT_EQ(CConversions::r8FromString(L"  7", eRule), 7.0);
    }
    EXPECT_EQ(CConversions::i4FromString(L"\f\v7", s_eCollapse), 7);
}

TEST(Conversions, WhiteSpaceAroundANumberMattersAsTheRuleLeavesIt)
{
    EXPECT_EQ(CConversions::i4FromString(L"1\r2", s_eReplace), 12);
    EXPECT_EQ(CConversions::i4FromString(L"\r", s_ePreserve), 0);
    EXPECT_EQ(CConversions::i4FromString(L"7\r", s_ePreserve), 7);
    EXPECT_EQ(CConversions::r8FromString(L"1\r.5", s_eCollapse), 1.5);
    EXPECT_TRUE(std::isnan(CConversions::r8FromString(L" \r\n ", s_eCollapse)));
    ExpectFailure(&CConversions::i4FromString, L"7 ", L"The value [7 ] can not be converted to a i4", s_eReplace);
    ExpectFailure(&CConversions::r8FromString, L" INF", L"The value [ INF] can not be converted to a r8", s_eReplace);
}

TEST(Conversions, FailuresQuoteTheTextAfterTheRule)
{
    ExpectFailure(&CConversions::i4FromString, L" 1 \t x ", L"The value [1 x] can not be converted to a i4",
                  s_eCollapse);
    ExpectFailure(&CConversions::ui8FromString, L"\t99999999999999999999\t",
                  L"The value [ 99999999999999999999 ] is to large to fit in a ui8", s_eReplace);
    ExpectFailure(&CConversions::r8FromString, L" 1\r\n2", L"The value [ 1\n2] can not be converted to a r8",
                  s_ePreserve);
}

TEST(Conversions, NarrowIntegersQuoteTheTextAsGiven)
{
    ExpectFailure(&CConversions::i1FromString, L" 128 ", L"The value [ 128 ] is to large to fit in a i1", s_eCollapse);
    ExpectFailure(&CConversions::i2FromString, L" 32768 ", L"The value [ 32768 ] is to large to fit in a i2",
                  s_eCollapse);
    ExpectFailure(&CConversions::ui1FromString, L" 256 ", L"The value [ 256 ] is to large to fit in a ui1",
                  s_eCollapse);
    ExpectFailure(&CConversions::ui2FromString, L" 65536 ", L"The value [ 65536 ] is to large to fit in a ui2",
                  s_eCollapse);
}

TEST(Conversions, ZeroElementEndsANumber)
{
    using namespace std::string_literals;
    EXPECT_EQ(CConversions::i4FromString(L"12\0x"s, s_eNone), 12);
    EXPECT_EQ(CConversions::i4FromString(L"\0x"s, s_eNone), 0);
    EXPECT_EQ(CConversions::ui8FromString(L"12\0x"s, s_eCollapse), 12U);
    EXPECT_EQ(CConversions::r8FromString(L"1.5\0x"s, s_eNone), 1.5);
    EXPECT_EQ(CConversions::r8FromString(L"\0x"s, s_eNone), 0.0);
    ExpectFailure(&CConversions::r8FromString, L"NaN\0"s, L"The value [NaN] can not be converted to a r8");
}

TEST(Conversions, IntegersPrintPlainDigits)
{
    EXPECT_EQ(CConversions::i1ToString(static_cast<char>(-128)), L"-128");
    EXPECT_EQ(CConversions::i1ToString(127), L"127");
    EXPECT_EQ(CConversions::i2ToString(-32768), L"-32768");
    EXPECT_EQ(CConversions::i4ToString(-2147483647L - 1), L"-2147483648");
    EXPECT_EQ(CConversions::i8ToString(std::numeric_limits<__int64>::min()), L"-9223372036854775808");
    EXPECT_EQ(CConversions::ui1ToString(255), L"255");
    EXPECT_EQ(CConversions::ui2ToString(65535), L"65535");
    EXPECT_EQ(CConversions::ui4ToString(4294967295UL), L"4294967295");
    EXPECT_EQ(CConversions::ui8ToString(18446744073709551615ULL), L"18446744073709551615");
    EXPECT_EQ(CConversions::i4ToString(0), L"0");
}

TEST(Conversions, ALongIsPrintedAs32Bits)
{
    if constexpr (sizeof(long) > 4)
    {
        EXPECT_EQ(CConversions::i4ToString(static_cast<long>(0x1FFFFFFFFLL)), L"-1");
        EXPECT_EQ(CConversions::ui4ToString(static_cast<unsigned long>(0x1FFFFFFFFLL)), L"4294967295");
    }
    EXPECT_EQ(CConversions::i4ToString(-1), L"-1");
}

// --- Floating point ---------------------------------------------------------------------------------------------

TEST(Conversions, RealsReadTheSpecialWordsToTheLetter)
{
    for (const wchar_t* const lpctText : {L"", L"NaN", L"1.#QNAN", L"-NAN"})
    {
        SCOPED_TRACE(lpctText);
        EXPECT_TRUE(std::isnan(CConversions::r8FromString(lpctText, s_eNone)));
        EXPECT_TRUE(std::isnan(CConversions::r4FromString(lpctText, s_eNone)));
        EXPECT_TRUE(std::isnan(CConversions::r8FromString(L" " + std::wstring(lpctText), s_eCollapse)));
    }
    ExpectValues<double>(&CConversions::r8FromString, {{L"-INF", -s_dInfinity}, {L"INF", s_dInfinity}});
    ExpectValues<float>(&CConversions::r4FromString, {{L"-INF", -std::numeric_limits<float>::infinity()},
                                                      {L"INF", std::numeric_limits<float>::infinity()}});
}

TEST(Conversions, OtherSpellingsOfTheSpecialWordsFail)
{
    ExpectFailures(&CConversions::r8FromString, {{L"nan", L"The value [nan] can not be converted to a r8"},
                                                 {L"NAN", L"The value [NAN] can not be converted to a r8"},
                                                 {L"inf", L"The value [inf] can not be converted to a r8"},
                                                 {L"+INF", L"The value [+INF] can not be converted to a r8"},
                                                 {L"infinity", L"The value [infinity] can not be converted to a r8"},
                                                 {L"1.#INF", L"The value [1.#INF] can not be converted to a r8"},
                                                 {L"0x1p3", L"The value [0x1p3] can not be converted to a r8"}});
    ExpectFailure(&CConversions::r4FromString, L"nan", L"The value [nan] can not be converted to a r4");
}

TEST(Conversions, RealsReadDecimalNumbers)
{
    ExpectValues<double>(
        &CConversions::r8FromString,
        {{L"0", 0}, {L"-1.5", -1.5}, {L".5", 0.5}, {L"5.", 5}, {L"1e3", 1000}, {L"1E-2", 0.01}, {L"+2", 2}});
    ExpectValues<float>(&CConversions::r4FromString, {{L"0.1", 0.1F}, {L"16777217", 16777216.0F}});
    ExpectFailures(&CConversions::r8FromString, {{L"1.5x", L"The value [1.5x] can not be converted to a r8"},
                                                 {L"1,5", L"The value [1,5] can not be converted to a r8"},
                                                 {L".", L"The value [.] can not be converted to a r8"},
                                                 {L"1e", L"The value [1e] can not be converted to a r8"},
                                                 {L" ", L"The value [ ] can not be converted to a r8"}});
    ExpectFailure(&CConversions::r4FromString, L"1.5x", L"The value [1.5x] can not be converted to a r4");
}

TEST(Conversions, RealsOutOfRangeAreNoFailure)
{
    ExpectValues<double>(&CConversions::r8FromString,
                         {{L"1e999", s_dInfinity}, {L"-1e999", -s_dInfinity}, {L"1e-999", 0}});
    ExpectValues<float>(&CConversions::r4FromString,
                        {{L"1e39", std::numeric_limits<float>::infinity()}, {L"1e-99", 0.0F}});
}

TEST(Conversions, RealsPrintSevenAndSixteenDigitsByDefault)
{
    EXPECT_EQ(CConversions::r8ToString(0.1, nullptr), L"0.1");
    EXPECT_EQ(CConversions::r8ToString(1.0 / 3.0, nullptr), L"0.3333333333333333");
    EXPECT_EQ(CConversions::r8ToString(1e100, nullptr), L"1e+100");
    EXPECT_EQ(CConversions::r4ToString(0.1F, nullptr), L"0.1");
    EXPECT_EQ(CConversions::r4ToString(1.0F / 3.0F, nullptr), L"0.3333333");
    EXPECT_EQ(CConversions::r4ToString(16777216.0F, nullptr), L"1.677722e+07");
}

TEST(Conversions, RealsPrintByTheCallersFormat)
{
    EXPECT_EQ(CConversions::r8ToString(2.005, L"%.1f"), L"2.0");
    EXPECT_EQ(CConversions::r4ToString(2.25F, L"<%08.3f>"), L"<0002.250>");
    EXPECT_EQ(CConversions::r8ToString(1e300, L"%f").size(), 47U);
    EXPECT_EQ(CConversions::r4ToString(1e30F, L"%.9f").size(), 31U);
}

TEST(Conversions, NotANumberPrintsAsNaNWhateverTheFormat)
{
    EXPECT_EQ(CConversions::r8ToString(std::nan(""), nullptr), L"NaN");
    EXPECT_EQ(CConversions::r8ToString(std::nan(""), L"%.2f"), L"NaN");
    EXPECT_EQ(CConversions::r4ToString(std::nanf(""), L"%.2f"), L"NaN");
    EXPECT_EQ(CConversions::r8ToString(-s_dInfinity, L"%.2f"), L"-INF");
    EXPECT_EQ(CConversions::r8ToString(s_dInfinity, nullptr), L"INF");
}

// --- Binary -----------------------------------------------------------------------------------------------------

TEST(Conversions, BinaryKindsReadAndPrint)
{
    EXPECT_EQ(CConversions::hexBinaryToString(CConversions::hexBinaryFromString(L" 0aFF ", s_eCollapse)), L"0AFF");
    EXPECT_EQ(CConversions::base64BinaryToString(CConversions::base64BinaryFromString(L"QUJD\nRA==", s_eNone)),
              L"QUJDRA==");
    EXPECT_EQ(CConversions::hexBinaryToString(CBinaryData()), L"");
    EXPECT_EQ(CConversions::base64BinaryToString(CBinaryData()), L"");
}

TEST(Conversions, HexBinaryFailsWithTheWordsOfTheBuffer)
{
    QvTest::ExpectThrows<CQvException>(L"Invalid char in hex string [X]",
                                       [] { CConversions::hexBinaryFromString(L"0aXX", s_eNone); });
    QvTest::ExpectThrows<CQvException>(L"Invalid char in hex string [ ]",
                                       [] { CConversions::hexBinaryFromString(L"0a ", s_eNone); });
}

TEST(Conversions, Base64WithABadCharacterIsEmptyWithoutAFailure)
{
    EXPECT_EQ(CConversions::base64BinaryFromString(L"QU*D", s_eNone).GetAsBase64(), L"");
}

// --- Dates ------------------------------------------------------------------------------------------------------

TEST(Conversions, DatesReadAndPrintTheirForms)
{
    struct SDateCase
    {
        CDateTime (*fnFromString)(const std::wstring&, CWhitespaceUtils::WhitespaceRule);
        std::wstring (*fnToString)(const CDateTime&);
        const wchar_t* lpctText;
        CDateTime::DTType eType;
    };
    constexpr SDateCase cases[] = {
        {&CConversions::yearMonthFromString, &CConversions::yearMonthToString, L"2001-05Z", CDateTime::dt_gYearMonth},
        {&CConversions::monthDayFromString, &CConversions::monthDayToString, L"--02-29", CDateTime::dt_gMonthDay},
        {&CConversions::dateFromString, &CConversions::dateToString, L"2001-05-31", CDateTime::dt_date},
        {&CConversions::datetimeFromString, &CConversions::datetimeToString, L"2001-05-31T23:59:59.125+01:00",
         CDateTime::dt_dateTime},
        {&CConversions::timeFromString, &CConversions::timeToString, L"23:59:59", CDateTime::dt_time},
    };
    for (const SDateCase& expected : cases)
    {
        SCOPED_TRACE(expected.lpctText);
        const CDateTime date = expected.fnFromString(L" " + std::wstring(expected.lpctText) + L" ", s_eCollapse);
        EXPECT_EQ(date.GetType(), expected.eType);
        EXPECT_EQ(expected.fnToString(date), expected.lpctText);
    }
}

TEST(Conversions, TheTextDecidesTheKindOfADate)
{
    EXPECT_EQ(CConversions::dateFromString(L"2001", s_eNone).GetType(), CDateTime::dt_gYear);
    EXPECT_EQ(CConversions::yearMonthFromString(L"2001-05-31", s_eNone).GetType(), CDateTime::dt_date);
    EXPECT_EQ(CConversions::monthDayFromString(L"---07", s_eNone).GetType(), CDateTime::dt_gDay);
}

TEST(Conversions, BadDatesFailWithTheWordsOfTheDate)
{
    ExpectFailure(&CConversions::dateFromString, L"", L"Invalid Date (Empty String)");
    ExpectFailure(&CConversions::datetimeFromString, L"2001-05-31", L"Invalid XSD DateTime [2001-05-31]");
    ExpectFailure(&CConversions::timeFromString, L"24:00:00", L"Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]");
    ExpectFailure(&CConversions::yearFromString, L"20x1", L"Invalid XSD Date [20x1] expected CCYY-MM-DD[Z|[+|-]hh:mm]");
}

TEST(Conversions, YearMonthAndDayPrintTheFormsOfTheirDates)
{
    EXPECT_EQ(CConversions::yearToString(2024), L"2024");
    EXPECT_EQ(CConversions::yearToString(7), L"7");
    EXPECT_EQ(CConversions::monthToString(7), L"--07");
    EXPECT_EQ(CConversions::monthToString(12), L"--12");
    EXPECT_EQ(CConversions::monthToString(255), L"--255");
    EXPECT_EQ(CConversions::dayToString(7), L"---07");
    EXPECT_EQ(CConversions::dayToString(31), L"---31");
}

TEST(Conversions, YearMonthAndDayAreTakenFromAnyDateThatHasThem)
{
    ExpectValues<unsigned short>(&CConversions::yearFromString,
                                 {{L"2001", 2001}, {L"2001-05", 2001}, {L"2001-05-31Z", 2001}});
    ExpectValues<unsigned char>(&CConversions::monthFromString, {{L"--07", 7}, {L"2001-05", 5}, {L"--07--", 7}});
    ExpectValues<unsigned char>(&CConversions::dayFromString, {{L"---07", 7}, {L"2001-05-31", 31}});
}

TEST(Conversions, AYearBeforeOurEraWrapsAround)
{
    EXPECT_EQ(CConversions::yearFromString(L"-0001", s_eNone), 65535);
}

TEST(Conversions, ADateWithoutTheFieldFailsWithTheWordsOfTheGetter)
{
    QvTest::ExpectThrows<CQvInvalidStateException>(L"Failed to GetMonth. Invalid Date Type: gYear.",
                                                   [] { CConversions::monthFromString(L"2001", s_eNone); });
    QvTest::ExpectThrows<CQvInvalidStateException>(L"Failed to GetDay. Invalid Date Type: gYearMonth.",
                                                   [] { CConversions::dayFromString(L"2001-05", s_eNone); });
    QvTest::ExpectThrows<CQvInvalidStateException>(L"Failed to GetYear. Invalid Date Type: gMonth.",
                                                   [] { CConversions::yearFromString(L"--07", s_eNone); });
}

TEST(Conversions, DurationsReadAndPrint)
{
    EXPECT_EQ(CConversions::durationToString(CConversions::durationFromString(L" P1Y2M3DT4H5M6S ", s_eCollapse)),
              L"P1Y2M3DT4H5M6S");
}

// --- Text -------------------------------------------------------------------------------------------------------

TEST(Conversions, CharIsOneUtf16Unit)
{
    EXPECT_EQ(CConversions::charFromString(L"x", s_eNone), L'x');
    EXPECT_EQ(CConversions::charFromString(L" x ", s_eCollapse), L'x');
    EXPECT_EQ(CConversions::charFromString(L" ", s_eNone), L' ');
    EXPECT_EQ(CConversions::charToString(L'x'), L"x");
    ExpectFailures(&CConversions::charFromString,
                   {{L"", L"The value [] can not be a char as it is either empty of greater than 1 char long"},
                    {L"ab", L"The value [ab] can not be a char as it is either empty of greater than 1 char long"}});
    ExpectFailure(&CConversions::charFromString, L" \t",
                  L"The value [] can not be a char as it is either empty of greater than 1 char long", s_eCollapse);
}

TEST(Conversions, ASurrogatePairIsNoChar)
{
    const std::wstring strPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    const std::wstring strMessage =
        L"The value [" + strPair + L"] can not be a char as it is either empty of greater than 1 char long";
    ExpectFailure(&CConversions::charFromString, strPair, strMessage);
    if constexpr (sizeof(wchar_t) > 2)
    {
        ExpectFailure(&CConversions::charFromString, std::wstring(1, static_cast<wchar_t>(0x1F600)), strMessage);
        EXPECT_EQ(CConversions::charToString(static_cast<wchar_t>(0x1F600)), strPair);
    }
}

TEST(Conversions, ALoneSurrogateIsAChar)
{
    const auto cLone = static_cast<wchar_t>(0xD83D);
    EXPECT_EQ(CConversions::charFromString(std::wstring(1, cLone), s_eNone), cLone);
    EXPECT_EQ(CConversions::charToString(cLone), std::wstring(1, cLone));
}

TEST(Conversions, StringIsWhatTheRuleMakesOfIt)
{
    const std::wstring strText = L" a\t\r\n b ";
    EXPECT_EQ(CConversions::stringFromString(strText, s_eNone), strText);
    EXPECT_EQ(CConversions::stringFromString(strText, s_ePreserve), L" a\t\n b ");
    EXPECT_EQ(CConversions::stringFromString(strText, s_eReplace), L" a   b ");
    EXPECT_EQ(CConversions::stringFromString(strText, s_eCollapse), L"a b");
    EXPECT_EQ(CConversions::stringToString(strText), strText);
    for (const wchar_t* const lpctText : {L"a b", L"a  b", L"a b ", L" a b", L"a\tb", L"a\r\nb", L"a\nb", L"a   b"})
        EXPECT_EQ(CConversions::stringFromString(lpctText, s_eCollapse), L"a b");
    EXPECT_EQ(CConversions::stringFromString(L"a! b", s_eCollapse), L"a! b");
}

TEST(Conversions, StringsKeepZeroElementsAndLoneSurrogates)
{
    const std::wstring strText = {L'a', 0, static_cast<wchar_t>(0xDC00), L'b'};
    for (const CWhitespaceUtils::WhitespaceRule eRule : {s_eNone, s_ePreserve, s_eReplace, s_eCollapse})
        EXPECT_EQ(CConversions::stringFromString(strText, eRule), strText);
    EXPECT_EQ(CConversions::stringToString(strText), strText);
}

TEST(Conversions, BooleanIgnoresCaseOnPurpose)
{
    ExpectValues<bool>(&CConversions::booleanFromString, {{L"true", true},
                                                          {L"TRUE", true},
                                                          {L"tRuE", true},
                                                          {L"1", true},
                                                          {L"false", false},
                                                          {L"False", false},
                                                          {L"FALSE", false},
                                                          {L"0", false}});
    EXPECT_EQ(CConversions::booleanToString(true), L"true");
    EXPECT_EQ(CConversions::booleanToString(false), L"false");
}

TEST(Conversions, BooleanFailureQuotesTheTextAsGiven)
{
    ExpectFailure(
        &CConversions::booleanFromString, L"yes",
        L"A Boolean Value read from an XML document was invalid [yes]. Valid values are 'true', 'false', '1', or "
        L"'0'");
    ExpectFailure(
        &CConversions::booleanFromString, L" \tno ",
        L"A Boolean Value read from an XML document was invalid [ \tno ]. Valid values are 'true', 'false', '1', "
        L"or '0'",
        s_eCollapse);
    for (const wchar_t* const lpctText :
         {L"", L"tru", L"truee", L" true", L"01", L"10", L"-1", L"\x0131", L"T\x02B3UE"})
    {
        SCOPED_TRACE(lpctText);
        EXPECT_THROW(CConversions::booleanFromString(lpctText, s_eNone), CQvInvalidValueException);
    }
}

// --- Decimal and integer ----------------------------------------------------------------------------------------

TEST(Conversions, DecimalsReadAndPrint)
{
    const CDecimal value = CConversions::decimalFromString(L" 1.50 ", s_eCollapse);
    EXPECT_EQ(CConversions::decimalToString(value, nullptr), L"1.5");
    ExpectFailure(&CConversions::decimalFromString, L"abc",
                  L"The string representing a Decimal, contained an invalid char at position 0 [abc]");
}

TEST(Conversions, TheFormatOfADecimalIsItsCountOfFractionDigits)
{
    const CDecimal value(L"1.005");
    EXPECT_EQ(CConversions::decimalToString(value, L"2"), value.ToString(2));
    EXPECT_EQ(CConversions::decimalToString(value, L"2"), L"1.01");
    EXPECT_EQ(CConversions::decimalToString(value, L" 1x"), value.ToString(1));
    EXPECT_EQ(CConversions::decimalToString(value, L""), value.ToString(0));
    EXPECT_EQ(CConversions::decimalToString(value, L"%.2f"), value.ToString(0));
}

TEST(Conversions, BigIntegersReadAndPrint)
{
    const std::wstring strDigits = L"-123456789012345678901234567890";
    EXPECT_EQ(CConversions::integerToString(CConversions::integerFromString(L" " + strDigits, s_eNone)), strDigits);
    ExpectFailure(&CConversions::integerFromString, L"abc",
                  L"The string representing a Decimal, contained an invalid char at position 0 [abc]");
}

// --- Every kind -------------------------------------------------------------------------------------------------

namespace
{

/// Reads `strText` as every kind; whatever comes out is a value or a failure of the family.
void ReadAsEveryKind(const std::wstring& strText, CWhitespaceUtils::WhitespaceRule eRule)
{
    const auto fnRead = [&](auto fnFromString)
    {
        try
        {
            static_cast<void>(fnFromString(strText, eRule));
        }
        catch (const CQvException& ex)
        {
            EXPECT_FALSE(ex.GetMessageW().empty());
        }
    };
    fnRead(&CConversions::hexBinaryFromString);
    fnRead(&CConversions::base64BinaryFromString);
    fnRead(&CConversions::i1FromString);
    fnRead(&CConversions::i2FromString);
    fnRead(&CConversions::i4FromString);
    fnRead(&CConversions::i8FromString);
    fnRead(&CConversions::ui1FromString);
    fnRead(&CConversions::ui2FromString);
    fnRead(&CConversions::ui4FromString);
    fnRead(&CConversions::ui8FromString);
    fnRead(&CConversions::r4FromString);
    fnRead(&CConversions::r8FromString);
    fnRead(&CConversions::durationFromString);
    fnRead(&CConversions::yearMonthFromString);
    fnRead(&CConversions::monthDayFromString);
    fnRead(&CConversions::yearFromString);
    fnRead(&CConversions::monthFromString);
    fnRead(&CConversions::dayFromString);
    fnRead(&CConversions::dateFromString);
    fnRead(&CConversions::datetimeFromString);
    fnRead(&CConversions::timeFromString);
    fnRead(&CConversions::charFromString);
    fnRead(&CConversions::stringFromString);
    fnRead(&CConversions::booleanFromString);
    fnRead(&CConversions::decimalFromString);
    fnRead(&CConversions::integerFromString);
}

} // namespace

TEST(Conversions, UnknownRuleFailsForEveryKind)
{
    for (const int nRule : {-1, 4})
    {
        const auto eUnknown = static_cast<CWhitespaceUtils::WhitespaceRule>(nRule);
        const auto fnExpectFails = [](const auto& fnRead)
        {
            QvTest::ExpectThrows<CQvException>(L"Unknown WhitespaceRule", fnRead);
        };
        fnExpectFails([&] { CConversions::i4FromString(L"1", eUnknown); });
        fnExpectFails([&] { CConversions::r8FromString(L"1", eUnknown); });
        fnExpectFails([&] { CConversions::stringFromString(L"a", eUnknown); });
        fnExpectFails([&] { CConversions::dateFromString(L"2001", eUnknown); });
    }
}

TEST(Conversions, TextsOfAMillionCharactersEndInAValueOrAFailure)
{
    for (const wchar_t c : {L'1', L' ', L'x', L'-', L'.', L'\xD800', L'\0', L'P', L'\r'})
    {
        const std::wstring strText(1000000, c);
        for (const CWhitespaceUtils::WhitespaceRule eRule : {s_eNone, s_eCollapse})
            ReadAsEveryKind(strText, eRule);
    }
}

TEST(Conversions, RandomTextsEndInAValueOrAFailure)
{
    std::mt19937 random(20260103);
    const std::wstring strAlphabet = {L"0123456789+-.eE:TZPYMDHS xXaFNI/=\t\r\n\x00E9\xFFFF\xD800\xDC00"};
    for (int n = 0; n < 5000; ++n)
    {
        std::wstring strText(random() % 40, L'0');
        for (wchar_t& c : strText)
            c = random() % 8 != 0 ? strAlphabet[random() % strAlphabet.size()]
                                  : static_cast<wchar_t>(random() % 0x110000);
        ReadAsEveryKind(strText, static_cast<CWhitespaceUtils::WhitespaceRule>(n % 4));
    }
}
