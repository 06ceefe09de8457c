#include "tools/quiver-gen/cpp/Text.h"

#include <gtest/gtest.h>

using namespace quiver_gen::cpp;

namespace
{

struct STextCase
{
    const char* lpcText;
    const char* lpcExpected;
};

TEST(CppText, WritesWideLiteralsInAscii)
{
    constexpr STextCase s_cases[] = {
        {"", R"(L"")"},
        {"item", R"(L"item")"},
        {R"(a"b\c)", R"(L"a\"b\\c")"},
        {"a\tb\nc\rd", R"(L"a\tb\nc\rd")"},
        {"caf\xC3\xA9", R"(L"caf\u00E9")"},
        {"\xC3\xA9\x61", R"(L"\u00E9a")"},
        {"\xE2\x82\xAC", R"(L"\u20AC")"},
        // No universal character name may stand for what is below U+00A0.
        {"\x7F\xC2\x85", R"(L"\177\205")"},
        {"\xC2\x85\x37", R"(L"\2057")"},
        // Two units, whatever the width of wchar_t; a digit behind them is kept from joining the escape.
        {"\xF0\x9F\x98\x80!", R"(L"\xD83D\xDE00!")"},
        {"\xF0\x9F\x98\x80\x61z", R"(L"\xD83D\xDE00" L"az")"},
        {"what?\?/?=", R"(L"what?\?/?=")"},
        {"????", R"(L"?\?\?\?")"},
        // Not well-formed: alone, cut short, too long a form, a surrogate, above the last code point.
        {"\x80", R"(L"\uFFFD")"},
        {"a\xC3", R"(L"a\uFFFD")"},
        {"\xC0\x80", R"(L"\uFFFD\uFFFD")"},
        {"\xE0\x80\x80", R"(L"\uFFFD")"},
        {"\xED\xA0\x80", R"(L"\uFFFD")"},
        {"\xF4\x90\x80\x80", R"(L"\uFFFD")"},
    };
    for (const STextCase& one : s_cases)
        EXPECT_EQ(WideLiteral(one.lpcText), one.lpcExpected) << one.lpcText;
}

TEST(CppText, SplitsLongLiteralsBetweenCharacters)
{
    const std::vector<std::string> pieces = WideLiterals(std::string(50, 'a') + "\xC3\xA9" + std::string(50, '"'), 40);
    std::string strJoined;
    for (const std::string& strPiece : pieces)
    {
        EXPECT_LE(strPiece.size(), 40u) << strPiece;
        ASSERT_GE(strPiece.size(), 4u);
        strJoined += strPiece.substr(2, strPiece.size() - 3);
    }
    std::string strExpected = std::string(50, 'a') + "\\u00E9";
    for (int n = 0; n < 50; ++n)
        strExpected += "\\\"";
    EXPECT_EQ(strJoined, strExpected);
}

TEST(CppText, KeepsCommentsOnTheirLine)
{
    constexpr STextCase s_cases[] = {
        {"  A  text\n\twith breaks. ", "A text with breaks."},
        {"*/ int x; /*", "*/ int x; /*"},
        {"C:\\dir\\", "C:\\dir\\."},
        {"trigraph ?\?/", "trigraph ?? /"},
        {"bell \a, escape \x1B, delete \x7F", "bell , escape , delete"},
        {"turned \xE2\x80\xAE back", "turned back"},
        {"\xEF\xBB\xBFmark", "mark"},
        {"caf\xC3\xA9", "caf\xC3\xA9"},
        {" \t ", ""},
    };
    for (const STextCase& one : s_cases)
        EXPECT_EQ(CommentText(one.lpcText), one.lpcExpected) << one.lpcText;
}

TEST(CppText, WrapsCommentsAtTheWidthOfALine)
{
    std::string strWords;
    for (int n = 0; n < 40; ++n)
        strWords += "word" + std::to_string(n) + ' ';
    constexpr const char* lpcExpected =
        R"(    /// word0 word1 word2 word3 word4 word5 word6 word7 word8 word9 word10 word11 word12 word13 word14 word15 word16
    /// word17 word18 word19 word20 word21 word22 word23 word24 word25 word26 word27 word28 word29 word30 word31 word32
    /// word33 word34 word35 word36 word37 word38 word39
    ///
    /// Second.
)";
    EXPECT_EQ(CommentLines({strWords, "", "Second."}, 4, "///"), lpcExpected);
}

TEST(CppText, GuardsTheEndOfEachWrappedLine)
{
    const std::string strLines = CommentLines({std::string(110, 'x') + " a\\ " + std::string(110, 'y')}, 0, "//");
    EXPECT_EQ(strLines, "// " + std::string(110, 'x') + " a\\.\n// " + std::string(110, 'y') + '\n');
}

TEST(CppText, CountsCharactersNotBytesWhenItWraps)
{
    std::string strEuros;
    for (int n = 0; n < 117; ++n)
        strEuros += "\xE2\x82\xAC";
    EXPECT_EQ(CountColumns(strEuros), 117u);
    EXPECT_EQ(CommentLines({strEuros}, 0, "//"), "// " + strEuros + '\n');
}

TEST(CppText, ArrangesListsBelowTheirFirstItem)
{
    const std::string strLong(50, 'x');
    EXPECT_EQ(Arrange(4, "call(", {"a", "b"}, ");"), "    call(a, b);");
    EXPECT_EQ(Arrange(4, "call(", {}, ");"), "    call();");
    EXPECT_EQ(Arrange(4, "call(", {strLong, strLong, "c"}, ");"), "    call(" + strLong + ", " + strLong + ", c);");
    EXPECT_EQ(Arrange(4, "call(", {strLong, strLong, strLong}, ");"),
              "    call(" + strLong + ", " + strLong + ",\n         " + strLong + ");");
    // What does not fit behind the head goes to a line of its own.
    EXPECT_EQ(Arrange(4, std::string(80, 'f') + '(', {strLong}, ");"),
              "    " + std::string(80, 'f') + "(\n        " + strLong + ");");
    EXPECT_EQ(Arrange(0, std::string(60, 'f') + '{', {strLong, strLong}, "};"),
              std::string(60, 'f') + "{\n    " + strLong + ", " + strLong + "};");
}

} // namespace
