#include "quiver/document/XmlCharacters.h"

#include "quiver/document/XmlDocument.h"
#include "quiver/foundation/Exceptions.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace
{

using QvXmlLib9::CXmlDocument;
using QvXmlLib9::IsXmlLetter;
using QvXmlLib9::IsXmlNameCharacter;
using QvXmlLib9::ReadXmlCharacter;

/// Up to the end of the Basic Multilingual Plane, beyond which no character belongs to a name.
constexpr char32_t s_cEnd = 0x10000;

std::string ToUtf8(char32_t c)
{
    if (c < 0x800)
        return {static_cast<char>(0xC0 | c >> 6), static_cast<char>(0x80 | (c & 0x3F))};
    return {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F)),
            static_cast<char>(0x80 | (c & 0x3F))};
}

/// A filter keeps the document from every reader but expat.
bool IsAcceptedByExpat(const std::string& strXml)
{
    CXmlDocument document([](QvXmlLib9::CXmlElement*) { return false; });
    try
    {
        document.LoadXml(strXml.c_str());
        return true;
    }
    catch (const QvXmlLib9::CQvException&)
    {
        return false;
    }
}

bool IsBeside(bool (*pfnDoes)(char32_t), char32_t c)
{
    return pfnDoes(c - 1) || pfnDoes(c + 1) || c % 64 == 0;
}

/// Asks for all characters that are said to do at once, and one by one for those beside them that are not.
void CompareWithExpat(bool (*pfnDoes)(char32_t), const std::string& strAhead)
{
    std::string strAll = "<r>";
    for (char32_t c = 0x80; c < s_cEnd; ++c)
    {
        const std::string strElement = "<" + strAhead + ToUtf8(c) + "/>";
        if (pfnDoes(c))
            strAll += strElement;
        else
            EXPECT_FALSE(IsBeside(pfnDoes, c) && IsAcceptedByExpat(strElement)) << std::hex << static_cast<unsigned>(c);
    }
    EXPECT_TRUE(IsAcceptedByExpat(strAll + "</r>"));
}

TEST(XmlCharacters, NamesBeginWithWhatExpatTakes)
{
    CompareWithExpat(IsXmlLetter, "");
}

TEST(XmlCharacters, NamesGoOnWithWhatExpatTakes)
{
    CompareWithExpat(IsXmlNameCharacter, "a");
}

TEST(XmlCharacters, NoCharacterBeyondTheFirstPlaneBelongsToAName)
{
    for (const char32_t c : {0x10000u, 0x10400u, 0x20000u, 0x10FFFFu})
    {
        EXPECT_FALSE(IsXmlLetter(c));
        EXPECT_FALSE(IsXmlNameCharacter(c));
    }
}

struct SRow
{
    std::string_view svBytes;
    /// 0 for bytes that are no character.
    char32_t c;
};

const SRow s_rows[] = {
    {"a", 'a'},
    {"\t", '\t'},
    {"\n", '\n'},
    {"\r", '\r'},
    {"\x7F", 0x7F},
    {{"\0", 1}, 0},
    {"\x1F", 0},
    {"\xC2\x80", 0x80},
    {"\xDF\xBF", 0x7FF},
    {"\xE0\xA0\x80", 0x800},
    {"\xED\x9F\xBF", 0xD7FF},
    {"\xEE\x80\x80", 0xE000},
    {"\xEF\xBF\xBD", 0xFFFD},
    {"\xF0\x90\x80\x80", 0x10000},
    {"\xF4\x8F\xBF\xBF", 0x10FFFF},
    // Bytes that begin nothing, and forms that are too long.
    {"\x80", 0},
    {"\xBF", 0},
    {"\xC0\x80", 0},
    {"\xC1\xBF", 0},
    {"\xE0\x9F\xBF", 0},
    {"\xF0\x8F\xBF\xBF", 0},
    // Surrogates, what is no character, and what is beyond all characters.
    {"\xED\xA0\x80", 0},
    {"\xED\xBF\xBF", 0},
    {"\xEF\xBF\xBE", 0},
    {"\xEF\xBF\xBF", 0},
    {"\xF4\x90\x80\x80", 0},
    {"\xF5\x80\x80\x80", 0},
    {"\xFF", 0},
    // Something else in place of a following byte.
    {"\xC3(", 0},
    {"\xE2\x82(", 0},
    {"\xE2(\x82", 0},
    {"\xF0\x9F\x98(", 0},
    {"\xC3\xC3", 0},
};

TEST(XmlCharacters, ACharacterIsReadWhole)
{
    for (const SRow& row : s_rows)
    {
        SCOPED_TRACE(testing::PrintToString(row.svBytes));
        const char* const pEnd = row.svBytes.data() + row.svBytes.size();
        char32_t c = 0;
        const char* const pNext = ReadXmlCharacter(row.svBytes.data(), pEnd, c);
        ASSERT_EQ(row.c != 0 ? pEnd : nullptr, pNext);
        EXPECT_TRUE(pNext == nullptr || c == row.c);
    }
}

TEST(XmlCharacters, ACharacterThatIsCutIsNone)
{
    for (const SRow& row : s_rows)
    {
        for (std::size_t nLength = 1; nLength < row.svBytes.size(); ++nLength)
        {
            SCOPED_TRACE(testing::PrintToString(row.svBytes.substr(0, nLength)));
            char32_t c = 0;
            const char* const p = row.svBytes.data();
            EXPECT_EQ(nullptr, ReadXmlCharacter(p, p + nLength, c));
        }
    }
}

} // namespace
