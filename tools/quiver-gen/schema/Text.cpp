#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace quiver_gen::schema
{

namespace
{

struct SRange
{
    char32_t chFirst;
    char32_t chLast;
};

// NameStartChar and what NameChar adds to it, without the colon.
constexpr SRange s_nameStart[] = {{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                                  {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                                  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                                  {0xF900, 0xFDCF}, {0xFDF0, 0xFFFC}, {0x10000, 0xEFFFF}};
constexpr SRange s_nameFurther[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t nSize>
bool IsIn(char32_t ch, const SRange (&ranges)[nSize])
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [ch](const SRange& range) { return ch >= range.chFirst && ch <= range.chLast; });
}

bool IsNameOf(std::string_view svText, bool bStart, bool bColon)
{
    if (svText.empty())
        return false;
    for (std::size_t nIndex = 0; nIndex < svText.size();)
    {
        const bool bFirst = nIndex == 0;
        const char32_t ch = NextCodePoint(svText, nIndex);
        if (IsIn(ch, s_nameStart) || (ch == ':' && bColon))
            continue;
        if ((bFirst && bStart) || !IsIn(ch, s_nameFurther))
            return false;
    }
    return true;
}

} // namespace

std::string_view Trim(std::string_view svText)
{
    while (!svText.empty() && IsSpace(svText.front()))
        svText.remove_prefix(1);
    while (!svText.empty() && IsSpace(svText.back()))
        svText.remove_suffix(1);
    return svText;
}

std::string Collapse(std::string_view svText)
{
    std::string strResult;
    strResult.reserve(svText.size());
    for (const std::string_view svPart : SplitList(svText))
    {
        if (!strResult.empty())
            strResult += ' ';
        strResult += svPart;
    }
    return strResult;
}

std::string ReplaceSpaces(std::string_view svText)
{
    std::string strResult(svText);
    std::replace_if(strResult.begin(), strResult.end(), IsSpace, ' ');
    return strResult;
}

std::vector<std::string_view> SplitList(std::string_view svText)
{
    std::vector<std::string_view> parts;
    for (std::size_t nIndex = 0; nIndex < svText.size();)
    {
        if (IsSpace(svText[nIndex]))
        {
            ++nIndex;
            continue;
        }
        const std::size_t nStart = nIndex;
        while (nIndex < svText.size() && !IsSpace(svText[nIndex]))
            ++nIndex;
        parts.push_back(svText.substr(nStart, nIndex - nStart));
    }
    return parts;
}

bool IsName(std::string_view svText)
{
    return IsNameOf(svText, true, true);
}

bool IsNCName(std::string_view svText)
{
    return IsNameOf(svText, true, false);
}

bool IsNmtoken(std::string_view svText)
{
    return IsNameOf(svText, false, true);
}

bool IsQName(std::string_view svText)
{
    const std::size_t nColon = svText.find(':');
    if (nColon == std::string_view::npos)
        return IsNCName(svText);
    return IsNCName(svText.substr(0, nColon)) && IsNCName(svText.substr(nColon + 1));
}

char32_t NextCodePoint(std::string_view svText, std::size_t& nIndex)
{
    const auto byteAt = [&](std::size_t n)
    {
        return static_cast<unsigned char>(svText[n]);
    };
    const unsigned nLead = byteAt(nIndex++);
    if (nLead < 0x80)
        return nLead;
    const unsigned nMore = nLead >= 0xF0 ? 3 : nLead >= 0xE0 ? 2 : nLead >= 0xC0 ? 1 : 0;
    if (nMore == 0)
        return 0xFFFD;
    char32_t ch = nLead & (0x3Fu >> nMore);
    for (unsigned n = 0; n < nMore; ++n)
    {
        if (nIndex >= svText.size() || (byteAt(nIndex) & 0xC0) != 0x80)
            return 0xFFFD;
        ch = (ch << 6) | (byteAt(nIndex++) & 0x3Fu);
    }
    return ch;
}

std::size_t CountCodePoints(std::string_view svText)
{
    return static_cast<std::size_t>(std::count_if(
        svText.begin(), svText.end(), [](char ch) { return (static_cast<unsigned char>(ch) & 0xC0) != 0x80; }));
}

bool ParseCount(std::string_view svText, std::uint64_t& nValue)
{
    svText = Trim(svText);
    if (!svText.empty() && svText.front() == '+')
        svText.remove_prefix(1);
    if (svText.empty() || svText.find_first_not_of("0123456789") != std::string_view::npos)
        return false;
    constexpr std::uint64_t nLargest = std::numeric_limits<std::uint64_t>::max();
    nValue = 0;
    for (const char ch : svText)
    {
        const auto nDigit = static_cast<std::uint64_t>(ch - '0');
        nValue = nValue > (nLargest - nDigit) / 10 ? nLargest : nValue * 10 + nDigit;
    }
    return true;
}

} // namespace quiver_gen::schema
