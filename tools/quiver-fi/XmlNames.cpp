#include "tools/quiver-fi/XmlNames.h"

#include <algorithm>
#include <cstddef>

namespace quiver_fi
{

namespace
{

struct SRange
{
    char32_t cFirst;
    char32_t cLast;
};

/// XML 1.0, 2.3, NameStartChar without the colon.
constexpr SRange s_nameStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

/// What NameChar has beyond these.
constexpr SRange s_nameFurther[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <std::size_t nRanges>
bool IsIn(const SRange (&ranges)[nRanges], char32_t c)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const SRange& range) { return range.cFirst <= c && c <= range.cLast; });
}

/// Takes a code point off the front; an unpaired surrogate comes back as itself.
char32_t TakeCodePoint(std::wstring_view& svUnits)
{
    const auto c = static_cast<char32_t>(svUnits.front());
    svUnits.remove_prefix(1);
    if (c < 0xD800 || c > 0xDBFF || svUnits.empty())
        return c;
    const auto cLow = static_cast<char32_t>(svUnits.front());
    if (cLow < 0xDC00 || cLow > 0xDFFF)
        return c;
    svUnits.remove_prefix(1);
    return 0x10000 + ((c - 0xD800) << 10) + (cLow - 0xDC00);
}

bool IsPrintable(char32_t c)
{
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           c >= 0x10000;
}

} // namespace

bool IsNCName(std::wstring_view svUnits)
{
    if (svUnits.empty() || !IsIn(s_nameStart, TakeCodePoint(svUnits)))
        return false;
    while (!svUnits.empty())
    {
        const char32_t c = TakeCodePoint(svUnits);
        if (!IsIn(s_nameStart, c) && !IsIn(s_nameFurther, c))
            return false;
    }
    return true;
}

std::size_t FindNameBefore(std::wstring_view svUnits, std::size_t nPosition)
{
    // Both halves of every surrogate pair count, which holds for all pairs that names can have and some more.
    const auto fnIsOfName = [](wchar_t cUnit)
    {
        const auto c = static_cast<char32_t>(cUnit);
        return (c >= 0xD800 && c <= 0xDFFF) || IsIn(s_nameStart, c) || IsIn(s_nameFurther, c);
    };
    while (nPosition > 0 && fnIsOfName(svUnits[nPosition - 1]))
        --nPosition;
    return nPosition;
}

std::size_t FindUnprintable(std::wstring_view svUnits)
{
    std::wstring_view svLeft = svUnits;
    while (!svLeft.empty())
    {
        const std::size_t nPosition = svUnits.size() - svLeft.size();
        if (!IsPrintable(TakeCodePoint(svLeft)))
            return nPosition;
    }
    return std::wstring_view::npos;
}

} // namespace quiver_fi
