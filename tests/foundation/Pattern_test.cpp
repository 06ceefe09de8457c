#include "quiver/foundation/Pattern.h"

#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/PatternEngine.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Expect.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#if defined(QUIVER_TEST_WITH_PCRE)
#include <pcre.h>
#endif

using namespace QvXmlLib9;
using QvTest::ExpectThrows;

namespace
{

struct SCase
{
    const char* lpcPattern;
    const wchar_t* lpctValue;
    bool bMatches;
};

void ExpectMatches(const std::vector<SCase>& cases)
{
    // Three times, since an expression that is known takes another way, and one that is used again yet another.
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        for (const SCase& c : cases)
            EXPECT_EQ(c.bMatches, PatternMatch(c.lpcPattern, c.lpctValue))
                << c.lpcPattern << " against " << QvTest::Show(c.lpctValue);
    }
}

/// So many groups pass what the machine code can hold. Code for 32-bit ARM holds more, and PCRE2 takes no expression of
/// twice the size.
#if defined(__arm__)
constexpr int s_nGroups = 6000;
#else
constexpr int s_nGroups = 3000;
#endif

/// What holds where the matching library makes machine code. It does for the processors that most have, and must there; for
/// others, such as s390x, it has none, and its interpreter gives up sooner.
class MachinePatternTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::string strError;
        const bool bHasMachineCode = CPatternEngine("a", strError).MakeMachineCode();
#if defined(__x86_64__) || defined(__aarch64__) || defined(__arm__) || defined(_M_X64)
        ASSERT_TRUE(bHasMachineCode) << strError;
#else
        if (!bHasMachineCode)
            GTEST_SKIP() << "there is no machine code for this processor";
#endif
    }
};

} // namespace

TEST(PatternTest, WholeValueMustMatch)
{
    const std::vector<SCase> cases = {
        {"\\d+", L"123", true},   {"\\d+", L"123a", false},
        {"\\d+", L"a123", false}, {"\\d+", L"", false},
        {"[a-z]*", L"", true},    {"[a-z]*", L"abc", true},
        {"[a-z]*", L"1", false},  {"", L"", true},
        {"", L"a", false},        {"abc$", L"abc\n", false},
        {"a.c", L"a\nc", false},  {"^abc$", L"abc", true},
        {"b", L"ab", false},      {"[A-Z]{2}\\d{6}", L"AB123456", true},
    };
    ExpectMatches(cases);
}

TEST(PatternTest, FirstMatchCountsAndTheOrderOfAlternativesMatters)
{
    const std::vector<SCase> cases = {
        {"a|ab", L"ab", false},
        {"ab|a", L"ab", true},
        {"a|ab", L"a", true},
        {"(a|ab)c", L"abc", true},
    };
    ExpectMatches(cases);
}

TEST(PatternTest, NameCharacterClassesAreApproximated)
{
    const std::vector<SCase> cases = {
        {"\\i\\c*", L"xs:name", true},
        {"\\i\\c*", L"1a", false},
        {"\\i\\c*", L"_a.b-c", true},
        {"\\i", L":", true},
        {"\\i", L"a", true},
        {"\\i", L"1", false},
        {"\\i", L"-", false},
        {"\\c", L"1", true},
        {"\\c", L".", true},
        {"\\c", L"-", true},
        {"\\c", L":", true},
        {"\\c", L"a", true},
        {"\\c", L" ", false},
        {"\\C", L" ", true},
        {"\\C", L"a", false},
        {"\\C", L".", false},
        {"\\C", L"-", false},
        {"\\C", L":", false},
        {"\\C+", L"!?", true},
        // The approximation of \I takes everything but letters and the underscore, the colon included.
        {"\\I", L"1", true},
        {"\\I", L"-", true},
        {"\\I", L"a", false},
        {"\\I", L":", true},
        // Letters beyond ASCII are no word characters.
        {"\\i", L"\x00E9", false},
        {"\\c", L"\x00E9", false},
    };
    ExpectMatches(cases);
}

TEST(PatternTest, NameCharacterClassInsideBracketsIsNoClass)
{
    ExpectThrows<CQvException>(L"Invalid Regular Expression: a Error: 'unmatched parentheses'",
                               [] { PatternMatch("[\\i]", L"a"); });
}

TEST(PatternTest, EscapedBackslashSheltersWhatFollows)
{
    const std::vector<SCase> cases = {
        {"\\\\i", L"\\i", true},       {"\\\\i", L"\\a", false},
        {"\\\\c", L"\\c", true},       {"\\\\\\i", L"\\a", true},
        {"\\\\\\i", L"\\i", true},     {"\\\\\\i", L"\\1", false},
        {"\\\\\\\\i", L"\\\\i", true}, {"\\\\d", L"\\d", true},
        {"\\\\d", L"1", false},        {"\\\\p{IsBasicLatin}", L"\\ppp", false},
    };
    ExpectMatches(cases);
}

TEST(PatternTest, ByteThatSheltersABackslashBecomesOne)
{
    EXPECT_TRUE(PatternMatch("\x01", L"\\"));
    EXPECT_FALSE(PatternMatch("\x01", L"\x0001"));
}

TEST(PatternTest, UnicodeBlocksAreRanges)
{
    const std::vector<SCase> cases = {
        {"\\p{IsBasicLatin}+", L"abc", true},           {"\\p{IsBasicLatin}", L"\x007F", true},
        {"\\p{IsBasicLatin}", L"\x0080", false},        {"\\p{IsLatin-1Supplement}", L"\x0080", true},
        {"\\p{IsLatin-1Supplement}", L"\x00FF", true},  {"\\p{IsLatin-1Supplement}", L"\x007F", false},
        {"\\p{IsLatin-1Supplement}", L"\x0100", false}, {"\\p{IsLatinExtended-A}", L"\x0100", true},
        {"\\p{IsLatinExtended-A}", L"\x017F", true},    {"\\p{IsLatinExtended-A}", L"\x0180", false},
    };
    ExpectMatches(cases);
}

TEST(PatternTest, BlockOfLatinExtendedBIsRefused)
{
    ExpectThrows<CQvException>(L"Invalid Regular Expression: a Error: 'range out of order in character class'",
                               [] { PatternMatch("\\p{IsLatinExtended-B}", L"a"); });
}

TEST(PatternTest, EverythingElseReachesTheMatcherAsItIs)
{
    const std::vector<SCase> cases = {
        {"\\p{L}+", L"\x00E9\x00DF", true},
        {"\\p{Lu}", L"a", false},
        {"\\P{Lu}", L"a", true},
        {"\\p{Nd}", L"\x0661", true},
        // There is no subtraction of classes: this is a class and a bracket behind it.
        {"[a-z-[aeiou]]", L"b", false},
        {"[a-z-[aeiou]]", L"b]", true},
        {"[a-z-[aeiou]]", L"e]", true},
    };
    ExpectMatches(cases);
    ExpectThrows<CQvException>(L"Invalid Regular Expression: a Error: 'unknown property name after \\P or \\p'",
                               [] { PatternMatch("\\p{IsGreek}", L"a"); });
}

TEST(PatternTest, UnknownEscapeIsTheCharacterItself)
{
    const std::vector<SCase> cases = {
        {"\\y\\M\\q", L"yMq", true}, {"\\y", L"\\y", false},  {"[\\y\\j]+", L"yj", true},  {"\\F[\\F]", L"FF", true},
        {"[\\X\\B]+", L"XB", true},  {"\\\\y", L"\\y", true}, {"\\-\\_\\:", L"-_:", true},
    };
    ExpectMatches(cases);
    ExpectThrows<CQvException>(L"Invalid Regular Expression: a Error: 'unknown property name after \\P or \\p'",
                               [] { PatternMatch("\\y\\p{IsGreek}", L"a"); });
}

TEST(PatternTest, CharacterIsOneWhateverItsUnits)
{
    const std::wstring strPair = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        EXPECT_TRUE(PatternMatch(".", L"\x00E9"));
        EXPECT_TRUE(PatternMatch(".", L"\x4E00"));
        EXPECT_TRUE(PatternMatch(".", strPair));
        EXPECT_FALSE(PatternMatch("..", strPair));
#if WCHAR_MAX > 0xFFFF
        EXPECT_TRUE(PatternMatch(".", std::wstring({static_cast<wchar_t>(0x1F600)})));
#endif
        EXPECT_TRUE(PatternMatch("[\xC3\xA0-\xC3\xBF]{2}", L"\x00E9\x00E0"));
        EXPECT_FALSE(PatternMatch("[\xC3\xA0-\xC3\xBF]", L"e"));
    }
}

TEST(PatternTest, ValueEndsAtAnUnpairedSurrogateOrAZero)
{
    const std::wstring strBroken = {L'a', L'b', static_cast<wchar_t>(0xD800), L'1'};
    EXPECT_TRUE(PatternMatch("[a-z]+", strBroken));
    EXPECT_FALSE(PatternMatch("[a-z]+1", strBroken));
    EXPECT_TRUE(PatternMatch("[a-z]+", std::wstring({L'a', L'b', 0, L'1'})));
    EXPECT_TRUE(PatternMatch("", std::wstring({static_cast<wchar_t>(0xDC00), L'a'})));
}

TEST(PatternTest, BadExpressionNamesTheValueAndTheReason)
{
    const struct
    {
        const char* lpcPattern;
        const wchar_t* lpctReason;
    } cases[] = {
        {"(", L"missing )"},
        {"a)", L"unmatched parentheses"},
        {"[a", L"missing terminating ] for character class"},
        {"*", L"nothing to repeat"},
        {"\\", L"\\ at end of pattern"},
        {"(?#", L"missing ) after comment"},
        {"()(?(1)a|b|c)", L"conditional group contains more than two branches"},
        {"\\x{110000}", L"character value in \\x{} or \\o{} is too large"},
        {"\\L", L"PCRE does not support \\L, \\l, \\N{name}, \\U, or \\u"},
        {"(?C256)", L"number after (?C is > 255"},
        {"(?C1", L"closing ) for (?C expected"},
        {"(?<a", L"syntax error in subpattern name (missing terminator)"},
        {"(?<a>)(?<a>)", L"two named subpatterns have the same name"},
        {"(?<1>)", L"group name must start with a non-digit"},
        {"(?<a12345678901234567890123456789012>)", L"subpattern name is too long (maximum 32 characters)"},
        {"(?(DEFINE)a|b)", L"DEFINE group contains more than one branch"},
        {"\\o7", L"missing opening brace after \\o"},
        {"a{2,1}", L"numbers out of order in {} quantifier"},
        {"a{65536}", L"number too big in {} quantifier"},
        {"(?y)", L"unrecognized character after (? or (?-"},
        {"[[:word1:]]", L"unknown POSIX class name"},
        {"(?<=a*)b", L"lookbehind assertion is not fixed length"},
        {"\\1", L"reference to non-existent subpattern"},
        {"(?R", L"(?R or (?[+-]digits must be followed by )"},
        {"\xFF", L"invalid UTF-8 string"},
    };
    for (int nRound = 0; nRound < 2; ++nRound)
    {
        for (const auto& c : cases)
            ExpectThrows<CQvException>(std::wstring(L"Invalid Regular Expression: some value Error: '") + c.lpctReason +
                                           L"'",
                                       [&] { PatternMatch(c.lpcPattern, L"some value"); });
    }
}

TEST(PatternTest, BadExpressionDoesNotDisturbTheOthers)
{
    EXPECT_TRUE(PatternMatch("ab+", L"abb"));
    EXPECT_THROW(PatternMatch("ab+(", L"abb"), CQvException);
    EXPECT_TRUE(PatternMatch("ab+", L"abb"));
}

// --- Long and hostile values ----------------------------------------------------------------------------------------

TEST_F(MachinePatternTest, LongValuesMatchOnTheFirstUseToo)
{
    // Each expression is new to its thread. Without machine code, every repetition would take some 500 bytes of stack.
    const std::wstring strLong(1000000, L'a');
    QvTest::RunOnStack(256 * 1024,
                       [&]
                       {
                           EXPECT_TRUE(PatternMatch("(a|b)*", strLong));
                           EXPECT_TRUE(PatternMatch("(a|b)*", strLong));
                           EXPECT_FALSE(PatternMatch("(a|b)*c", strLong));
                           EXPECT_TRUE(PatternMatch("\\c+", strLong));
                           EXPECT_FALSE(PatternMatch("\\c+", strLong + L' '));
                       });
}

TEST(PatternTest, ValueTooLongForItsPatternFailsAndIsNotCalledWrong)
{
    const std::wstring strLong(5000000, L'a');
    for (int nRound = 0; nRound < 3; ++nRound)
        ExpectThrows<CQvException>(L"The value is too long to be matched against its pattern",
                                   [&] { PatternMatch("(a|b|cd)*", strLong); });
    EXPECT_TRUE(PatternMatch("(a|b|cd)*", L"abcd"));
    EXPECT_TRUE(PatternMatch("[ab]*", strLong));
}

TEST(PatternTest, ExpressionsThatCannotBecomeMachineCodeKeepOffTheEndOfTheStack)
{
    std::string strPattern;
    for (int i = 0; i < s_nGroups; ++i)
        strPattern += "()";
    strPattern += "(?:a|b)*";
    QvTest::RunOnStack(8 * 1024 * 1024,
                       [&]
                       {
                           for (int nRound = 0; nRound < 3; ++nRound)
                           {
                               EXPECT_TRUE(PatternMatch(strPattern, L"aaaa"));
                               EXPECT_FALSE(PatternMatch(strPattern, L"aaax"));
                               ExpectThrows<CQvException>(L"The value is too long to be matched against its pattern",
                                                          [&]
                                                          { PatternMatch(strPattern, std::wstring(1000000, L'a')); });
                           }
                       });
}

TEST(PatternTest, EndlessBacktrackingIsGivenUpAsNoMatch)
{
    for (const char* lpcPattern : {"(a+)+(b|c)", "(a|aa)+(b|c)", "((a|b)*|c)*(d|e)", "a*a*a*a*a*a*a*a*a*a*(b|c)"})
    {
        for (int nRound = 0; nRound < 3; ++nRound)
            EXPECT_FALSE(PatternMatch(lpcPattern, std::wstring(60, L'a'))) << lpcPattern;
    }
}

TEST_F(MachinePatternTest, AnswerIsTheSameEveryTimeAndInEveryThread)
{
    struct SHardCase
    {
        const char* lpcPattern;
        std::wstring strValue;
        bool bMatches;
    };
    const std::wstring strAs(30, L'a');
    const SHardCase cases[] = {
        {"(a|aa)+c|a*b", strAs + L"b", true},
        {"(a|aa)+c|a*b", std::wstring(20, L'a') + L"b", true},
        {"(a|aa)+c|a*b", strAs, false},
        {"(a+)+c|[ab]*", std::wstring(22, L'a') + L"b", true},
        {"(x+x+)+y|.*z", std::wstring(14, L'x') + L"z", true},
        {"((a|b)*|c)*(d|e)", std::wstring(60, L'a'), false},
    };
    for (const SHardCase& c : cases)
    {
        for (int nRound = 0; nRound < 3; ++nRound)
        {
            // An expression that nobody has used yet, whichever thread is the first.
            const std::string strPattern = std::string(c.lpcPattern) + "|new" + std::to_string(nRound);
            std::vector<std::thread> threads;
            for (int nThread = 0; nThread < 4; ++nThread)
            {
                threads.emplace_back(
                    [&]
                    {
                        for (int nMatch = 0; nMatch < 3; ++nMatch)
                            EXPECT_EQ(c.bMatches, PatternMatch(strPattern, c.strValue))
                                << strPattern << ", match " << nMatch;
                    });
            }
            for (std::thread& thread : threads)
                thread.join();
        }
    }
}

TEST(PatternTest, AnswerIsTheSameEveryTimeWithoutMachineCode)
{
    std::string strGroups;
    for (int i = 0; i < s_nGroups; ++i)
        strGroups += "()";
    const auto fnMatch = [&]
    {
        for (const std::size_t nLength : {5u, 10u, 15u, 20u, 30u, 40u})
        {
            const std::string strPattern = strGroups + "((a|aa)+c|a*b|" + std::to_string(nLength) + ")";
            const std::wstring strValue = std::wstring(nLength, L'a') + L"b";
            const bool bFirst = PatternMatch(strPattern, strValue);
            for (int nMatch = 0; nMatch < 2; ++nMatch)
                EXPECT_EQ(bFirst, PatternMatch(strPattern, strValue)) << nLength << ", match " << nMatch;
        }
    };
    // They pass what fits on the stack of a program's first thread on Windows too.
    QvTest::RunOnStack(8 << 20, fnMatch);
}

TEST_F(MachinePatternTest, FewBytesOfStackAreEnough)
{
    for (const std::size_t nStack : {64u, 96u, 160u})
    {
        QvTest::RunOnStack(nStack * 1024,
                           [&]
                           {
                               const std::string strPattern = "(a|b)*c(" + std::to_string(nStack) + ")?";
                               for (int nMatch = 0; nMatch < 3; ++nMatch)
                                   EXPECT_TRUE(PatternMatch(strPattern, std::wstring(100000, L'a') + L"c"));
                           });
    }
}

TEST(PatternTest, ExpressionsNestedTooDeeplyAreRefused)
{
    ExpectThrows<CQvException>(L"Invalid Regular Expression: a Error: 'parentheses are too deeply nested'",
                               [] { PatternMatch(std::string(100000, '(') + "a" + std::string(100000, ')'), L"a"); });
}

// --- What is remembered ---------------------------------------------------------------------------------------------

namespace
{

#if defined(QUIVER_TEST_WITH_PCRE)
/// The match as it is defined: compiled anew, by PCRE's interpreter.
bool PlainMatch(const std::string& strPattern, const std::wstring& strValue)
{
    const char* lpcError = nullptr;
    int nAt = 0;
    pcre* const pPattern = pcre_compile(strPattern.c_str(), PCRE_UTF8, &lpcError, &nAt, nullptr);
    int nGroups = 0;
    pcre_fullinfo(pPattern, nullptr, PCRE_INFO_CAPTURECOUNT, &nGroups);
    std::vector<int> offsets(static_cast<std::size_t>(nGroups + 1) * 3);
    std::string strSubject;
    AppendUtf8(strSubject, strValue);
    const int nResult = pcre_exec(pPattern, nullptr, strSubject.data(), static_cast<int>(strSubject.size()), 0,
                                  PCRE_ANCHORED, offsets.data(), static_cast<int>(offsets.size()));
    pcre_free(pPattern);
    return nResult > 0 && offsets[0] == 0 && offsets[1] == static_cast<int>(strSubject.size());
}
#endif

const char* const s_plainPatterns[] = {
    "a*b*",
    "(ab|a)(bc|c)?",
    "[ab]{2,4}",
    "(a|b)*abb",
    "a??b+?c",
    "(?=a)[abc]*",
    "(a*)*b",
    "((a)|(b))+\\1?",
    ".{3}",
    "[^a]+",
    "(?i)AB*",
    "a(?!b).*",
    "(a|ab)(c|bc)",
    "(?>a*)ab",
    "\\w+\\b.*",
    "(?:a|\xC3\xA9)*",
    "[\xC3\xA9-\xC3\xBF]|a",
    "$|a",
    "\\Aab\\z",
    "(a)?(b)?(c)?",
    "a{0}b{1,}",
    "(b|a)+?",
    "(?<x>a)\\k<x>",
    "a|b|ab|abc",
};

} // namespace

#if defined(QUIVER_TEST_WITH_PCRE)
TEST(PatternTest, ResultsAgreeWithACompilationForEachMatch)
{
    std::mt19937 random(7);
    const wchar_t alphabet[] = {L'a', L'b', L'c', 0xE9};
    for (int i = 0; i < 20000; ++i)
    {
        const std::string strPattern = s_plainPatterns[random() % std::size(s_plainPatterns)];
        std::wstring strValue;
        for (auto n = random() % 7; n != 0; --n)
            strValue += alphabet[random() % std::size(alphabet)];
        ASSERT_EQ(PlainMatch(strPattern, strValue), PatternMatch(strPattern, strValue))
            << strPattern << " against " << QvTest::Show(strValue);
    }
}
#endif

TEST(PatternTest, ExpressionsBeyondWhatIsRememberedStillMatch)
{
    for (int nRound = 0; nRound < 3; ++nRound)
    {
        for (int i = 0; i < 1000; ++i)
        {
            const std::string strNumber = std::to_string(i);
            EXPECT_TRUE(PatternMatch("x" + strNumber + "(y|z)", L"x" + std::to_wstring(i) + L"z"));
            EXPECT_FALSE(PatternMatch("x" + strNumber + "(y|z)", L"x" + std::to_wstring(i + 1) + L"z"));
        }
    }
}

TEST(PatternTest, ExpressionThatIsKnownIsNotCompiledAgain)
{
    const std::string strPattern = "[A-Z]{2}\\d{6}";
    const std::wstring strValue = L"AB123456";
    EXPECT_TRUE(PatternMatch(strPattern, strValue));
    EXPECT_TRUE(PatternMatch(strPattern, strValue));
    EXPECT_EQ(0u, QvTest::CountAllocations([&] { EXPECT_TRUE(PatternMatch(strPattern, strValue)); }));
}

TEST(PatternTest, ManyThreadsMatchAtOnce)
{
    bool answers[std::size(s_plainPatterns)] = {};
    for (std::size_t nPattern = 0; nPattern < std::size(s_plainPatterns); ++nPattern)
        answers[nPattern] = PatternMatch(s_plainPatterns[nPattern], L"ab");
    std::vector<std::thread> threads;
    for (unsigned nThread = 0; nThread < 8; ++nThread)
    {
        threads.emplace_back(
            [nThread, &answers]
            {
                std::mt19937 random(nThread);
                for (int i = 0; i < 2000; ++i)
                {
                    const std::size_t nPattern = random() % std::size(s_plainPatterns);
                    ASSERT_EQ(answers[nPattern], PatternMatch(s_plainPatterns[nPattern], L"ab"));
                }
            });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(PatternTest, ALiteralMatchesUtf8AsTheSameTextsDo)
{
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(PatternMatch(L"\\d{3}-[A-Z\x00C4]{2}", "123-A\xC3\x84"));
        EXPECT_FALSE(PatternMatch(L"\\d{3}-[A-Z\x00C4]{2}", "123-A"));
        EXPECT_TRUE(PatternMatch(L"a", std::string_view("a\0b", 3)));
        ExpectThrows<CQvException>(L"Invalid Regular Expression: gr\x00FC Error: 'missing )'",
                                   [] { PatternMatch(L"(", "gr\xC3\xBC"); });
    }
}

TEST(PatternTest, AnotherLiteralMayComeToStandAtTheSameAddress)
{
    wchar_t szPattern[] = L"aa";
    EXPECT_TRUE(PatternMatch(szPattern, "aa"));
    szPattern[1] = L'b';
    EXPECT_FALSE(PatternMatch(szPattern, "aa"));
    EXPECT_TRUE(PatternMatch(szPattern, "ab"));
}

TEST(PatternTest, ALiteralThatIsRefusedLeavesNothingBehind)
{
    wchar_t szPattern[] = L"(a";
    EXPECT_THROW(PatternMatch(szPattern, "a"), CQvException);
    EXPECT_THROW(PatternMatch(szPattern, "a"), CQvException);
    szPattern[0] = L'b';
    EXPECT_TRUE(PatternMatch(szPattern, "ba"));
}
