#include "tools/quiver-fi/ValueType.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::size_t s_nDoesNotFit = static_cast<std::size_t>(-1);

bool IsOfAlphabet(std::wstring_view svText, std::wstring_view svAlphabet)
{
    return svText.find_first_not_of(svAlphabet) == std::wstring_view::npos;
}

/// Whether the text is what printing a number of this type gives.
template <class TInteger>
bool IsInteger(std::wstring_view svText)
{
    constexpr std::size_t nLongest = 20;
    if (svText.size() > nLongest || !IsOfAlphabet(svText, L"-0123456789"))
        return false;
    const std::string strNarrow(svText.begin(), svText.end());
    TInteger nValue = 0;
    const char* const pEnd = strNarrow.data() + strNarrow.size();
    const auto [pStop, eError] = std::from_chars(strNarrow.data(), pEnd, nValue);
    return eError == std::errc() && pStop == pEnd && std::to_string(nValue) == strNarrow;
}

template <class TInteger>
std::size_t IntegerLength(std::wstring_view svText)
{
    return IsInteger<TInteger>(svText) ? sizeof(TInteger) : s_nDoesNotFit;
}

std::size_t BooleanLength(std::wstring_view svText)
{
    return svText == L"true" || svText == L"false" ? 1 : s_nDoesNotFit;
}

std::size_t NumericLength(std::wstring_view svText)
{
    // The alphabet has an "e" too, which other makers' readers take for a capital one.
    return IsOfAlphabet(svText, L"0123456789-+. ") ? (svText.size() + 1) / 2 : s_nDoesNotFit;
}

std::size_t DateLength(std::wstring_view svText)
{
    return IsOfAlphabet(svText, L"0123456789-:TZ ") ? (svText.size() + 1) / 2 : s_nDoesNotFit;
}

std::size_t HexLength(std::wstring_view svText)
{
    return svText.size() % 2 == 0 && IsOfAlphabet(svText, L"0123456789ABCDEF") ? svText.size() / 2 : s_nDoesNotFit;
}

struct SForm
{
    ItemType eType;
    std::size_t (*pfnLength)(std::wstring_view);
};

constexpr SForm s_forms[] = {
    {ItemType_boolean, BooleanLength},
    {ItemType_i2, IntegerLength<std::int16_t>},
    {ItemType_i4, IntegerLength<std::int32_t>},
    {ItemType_i8, IntegerLength<std::int64_t>},
    {ItemType_decimal, NumericLength},
    {ItemType_datetime, DateLength},
    {ItemType_hexBinary, HexLength},
};

} // namespace

ItemType ChooseValueType(std::wstring_view svText)
{
    ItemType eType = ItemType_string;
    // Naming an alphabet or an algorithm takes an octet of its own.
    std::size_t nLength = svText.empty() ? 0 : svText.size() - 1;
    for (const SForm& form : s_forms)
    {
        const std::size_t nFormLength = form.pfnLength(svText);
        if (nFormLength >= nLength)
            continue;
        nLength = nFormLength;
        eType = form.eType;
    }
    return eType;
}

} // namespace quiver_fi
