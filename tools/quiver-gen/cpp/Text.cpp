#include "tools/quiver-gen/cpp/Text.h"

#include <cstdint>

namespace quiver_gen::cpp
{

namespace
{

constexpr std::uint32_t s_dwReplacement = 0xFFFD;

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// How many bytes a sequence with this first byte has, 0 if none begins so.
std::size_t GetSequenceLength(unsigned char by)
{
    if (by < 0x80)
        return 1;
    if (by < 0xC2)
        return 0;
    return by < 0xE0 ? 2 : by < 0xF0 ? 3 : by < 0xF5 ? 4 : 0;
}

/// Takes the first code point off a text.
std::uint32_t NextCodePoint(std::string_view& svText)
{
    constexpr std::uint32_t s_firstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    constexpr std::uint32_t s_least[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto by = static_cast<unsigned char>(svText.front());
    const std::size_t nLength = GetSequenceLength(by);
    std::uint32_t dwCode = nLength == 0 ? s_dwReplacement : by & s_firstBits[nLength];
    std::size_t nRead = 1;
    for (; nRead < nLength && nRead < svText.size() && IsContinuation(svText[nRead]); ++nRead)
        dwCode = dwCode << 6 | (static_cast<unsigned char>(svText[nRead]) & 0x3F);
    svText.remove_prefix(nRead);
    const bool bValid = nLength != 0 && nRead == nLength && dwCode >= s_least[nLength] && dwCode <= 0x10FFFF &&
                        (dwCode < 0xD800 || dwCode > 0xDFFF);
    return bValid ? dwCode : s_dwReplacement;
}

std::string Hexadecimal(std::uint32_t dwNumber, int nDigits)
{
    std::string str(static_cast<std::size_t>(nDigits), '0');
    for (auto it = str.rbegin(); it != str.rend(); ++it, dwNumber >>= 4)
        *it = "0123456789ABCDEF"[dwNumber & 15];
    return str;
}

std::string Octal(std::uint32_t dwNumber)
{
    std::string str = "\\000";
    for (std::size_t n = 3; n > 0; --n, dwNumber >>= 3)
        str[n] = static_cast<char>('0' + (dwNumber & 7));
    return str;
}

/// How ASCII stands in a literal of either kind.
std::string EscapeAscii(std::uint32_t dwCode, bool bAfterQuestionMark)
{
    switch (dwCode)
    {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\t':
        return "\\t";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '?':
        // Two of them may begin a trigraph.
        return bAfterQuestionMark ? "\\?" : "?";
    default:
        return dwCode < 0x20 || dwCode == 0x7F ? Octal(dwCode) : std::string(1, static_cast<char>(dwCode));
    }
}

/// How a code point stands in a wide literal. Below U+00A0 a universal character name is not allowed. Above U+FFFF the
/// two units are written, which is how the library holds such a character whatever the width of wchar_t.
std::string EscapeWide(std::uint32_t dwCode, bool bAfterQuestionMark)
{
    if (dwCode < 0x80)
        return EscapeAscii(dwCode, bAfterQuestionMark);
    if (dwCode < 0xA0)
        return Octal(dwCode);
    if (dwCode <= 0xFFFF)
        return "\\u" + Hexadecimal(dwCode, 4);
    const std::uint32_t dwRest = dwCode - 0x10000;
    return "\\x" + Hexadecimal(0xD800 | dwRest >> 10, 4) + "\\x" + Hexadecimal(0xDC00 | (dwRest & 0x3FF), 4);
}

bool IsHexadecimalDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// Marks, controls and the characters that reorder text.
bool IsInvisible(std::uint32_t dwCode)
{
    return dwCode < 0x20 || (dwCode >= 0x7F && dwCode < 0xA0) || dwCode == 0xAD || dwCode == 0x61C ||
           (dwCode >= 0x200B && dwCode <= 0x200F) || (dwCode >= 0x2028 && dwCode <= 0x202E) ||
           (dwCode >= 0x2060 && dwCode <= 0x206F) || dwCode == 0xFEFF || (dwCode >= 0xFFF0 && dwCode <= 0xFFFF);
}

bool IsWhiteSpace(std::uint32_t dwCode)
{
    return dwCode == ' ' || dwCode == '\t' || dwCode == '\n' || dwCode == '\r' || dwCode == 0xA0 || dwCode == 0x2028 ||
           dwCode == 0x2029;
}

/// Keeps a comment from continuing on the next line: a backslash at its end, or the trigraph for one, would do so.
void GuardEnd(std::string& strLine)
{
    if (!strLine.empty() && strLine.back() == '\\')
        strLine += '.';
}

void AppendCommentLine(std::string& strLines, std::string strLine, std::size_t nIndent, std::string_view svMark)
{
    GuardEnd(strLine);
    strLines.append(nIndent, ' ').append(svMark);
    if (!strLine.empty())
        strLines.append(" ").append(strLine);
    strLines += '\n';
}

void AppendParagraph(std::string& strLines, std::string_view svText, std::size_t nIndent, std::string_view svMark)
{
    const std::size_t nWidth = s_nColumns - nIndent - svMark.size() - 1;
    std::string strLine;
    while (!svText.empty())
    {
        const std::string_view svWord = svText.substr(0, svText.find(' '));
        if (!strLine.empty() && CountColumns(strLine) + 1 + CountColumns(svWord) > nWidth)
        {
            AppendCommentLine(strLines, std::move(strLine), nIndent, svMark);
            strLine.clear();
        }
        strLine.append(strLine.empty() ? "" : " ").append(svWord);
        svText.remove_prefix(std::min(svText.size(), svWord.size() + 1));
    }
    AppendCommentLine(strLines, std::move(strLine), nIndent, svMark);
}

/// An item may have several lines, of which the first one counts; where the next item goes depends on the last one.
std::size_t GetFirstLineColumns(std::string_view svItem)
{
    return CountColumns(svItem.substr(0, svItem.find('\n')));
}

/// @return whether all items fit in from a column on.
bool FitsFrom(std::size_t nColumn, const std::vector<std::string>& items, std::string_view svTail)
{
    for (std::size_t n = 0; n < items.size(); ++n)
    {
        const std::size_t nBehind = n + 1 == items.size() ? svTail.size() : 1;
        if (nColumn + GetFirstLineColumns(items[n]) + nBehind > s_nColumns)
            return false;
    }
    return true;
}

/// Columns of a list on one line.
std::size_t GetColumns(const std::vector<std::string>& items)
{
    std::size_t nColumns = 0;
    for (const std::string& strItem : items)
        nColumns += CountColumns(strItem) + (nColumns == 0 ? 0 : 2);
    return nColumns;
}

} // namespace

std::string WideLiteral(std::string_view svText)
{
    std::string strLiterals;
    for (const std::string& strPiece : WideLiterals(svText, std::string::npos))
        strLiterals.append(strLiterals.empty() ? "" : " ").append(strPiece);
    return strLiterals;
}

std::vector<std::string> WideLiterals(std::string_view svText, std::size_t nWidth)
{
    constexpr std::size_t nMarks = 3;
    std::vector<std::string> literals;
    std::string strPiece;
    const auto Close = [&]
    {
        literals.push_back("L\"" + strPiece + '"');
        strPiece.clear();
    };
    bool bQuestionMark = false;
    bool bHexadecimal = false;
    while (!svText.empty())
    {
        const std::uint32_t dwCode = NextCodePoint(svText);
        const std::string strEscaped = EscapeWide(dwCode, bQuestionMark);
        // A digit behind a hexadecimal escape would belong to it.
        const bool bDigit = bHexadecimal && strEscaped.size() == 1 && IsHexadecimalDigit(strEscaped.front());
        if (!strPiece.empty() && (bDigit || nMarks + strPiece.size() + strEscaped.size() > nWidth))
            Close();
        strPiece += strEscaped;
        bQuestionMark = dwCode == '?';
        bHexadecimal = dwCode > 0xFFFF;
    }
    if (!strPiece.empty() || literals.empty())
        Close();
    return literals;
}

std::string NarrowLiteral(std::string_view svText)
{
    std::string strLiteral = "\"";
    bool bQuestionMark = false;
    for (const char c : svText)
    {
        const auto by = static_cast<unsigned char>(c);
        strLiteral += by < 0x80 ? EscapeAscii(by, bQuestionMark) : Octal(by);
        bQuestionMark = c == '?';
    }
    return strLiteral + '"';
}

std::string CommentText(std::string_view svText)
{
    std::string strResult;
    bool bSpace = false;
    while (!svText.empty())
    {
        const std::string_view svBefore = svText;
        const std::uint32_t dwCode = NextCodePoint(svText);
        const std::string_view svCharacter = svBefore.substr(0, svBefore.size() - svText.size());
        if (IsWhiteSpace(dwCode))
            bSpace = true;
        else if (!IsInvisible(dwCode))
        {
            // The trigraph for a backslash is no better than one.
            const bool bTrigraph = dwCode == '/' && !bSpace && strResult.size() >= 2 &&
                                   strResult.compare(strResult.size() - 2, 2, "?\?") == 0;
            if ((bSpace && !strResult.empty()) || bTrigraph)
                strResult += ' ';
            bSpace = false;
            strResult += svCharacter;
        }
    }
    GuardEnd(strResult);
    return strResult;
}

std::string CommentLines(const std::vector<std::string>& paragraphs, std::size_t nIndent, std::string_view svMark)
{
    std::string strLines;
    for (const std::string& strParagraph : paragraphs)
    {
        const std::string strText = CommentText(strParagraph);
        if (strText.empty())
            continue;
        if (!strLines.empty())
            AppendCommentLine(strLines, {}, nIndent, svMark);
        AppendParagraph(strLines, strText, nIndent, svMark);
    }
    return strLines;
}

std::string Arrange(std::size_t nIndent, std::string_view svHead, const std::vector<std::string>& items,
                    std::string_view svTail)
{
    std::string strLines = std::string(nIndent, ' ').append(svHead);
    std::size_t nFirst = nIndent + CountColumns(svHead.substr(svHead.rfind('\n') + 1));
    // A braced list rather begins on a line of its own than that it goes on in a narrow column.
    const bool bBraces = !svHead.empty() && svHead.back() == '{';
    const std::size_t nAll = GetColumns(items) + svTail.size();
    const bool bTogether = bBraces && nFirst + nAll > s_nColumns && nIndent + 4 + nAll <= s_nColumns;
    if (bTogether || (!FitsFrom(nFirst, items, svTail) && nFirst > nIndent + 4))
    {
        nFirst = nIndent + 4;
        strLines.append("\n").append(nFirst, ' ');
    }
    std::size_t nColumn = nFirst;
    for (std::size_t n = 0; n < items.size(); ++n)
    {
        const bool bLast = n + 1 == items.size();
        const std::size_t nNeeded = GetFirstLineColumns(items[n]) + (bLast ? svTail.size() : 1);
        if (n > 0 && nColumn + 1 + nNeeded > s_nColumns)
        {
            strLines.append("\n").append(nFirst, ' ');
            nColumn = nFirst;
        }
        else if (n > 0)
        {
            strLines += ' ';
            ++nColumn;
        }
        strLines += items[n];
        nColumn += CountColumns(items[n]);
        if (!bLast)
        {
            strLines += ',';
            ++nColumn;
        }
    }
    return strLines.append(svTail);
}

std::size_t CountColumns(std::string_view svText)
{
    std::size_t nColumns = 0;
    for (const char c : svText)
        nColumns += IsContinuation(c) ? 0 : 1;
    return nColumns;
}

} // namespace quiver_gen::cpp
