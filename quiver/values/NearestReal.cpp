#include "quiver/values/NearestReal.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>

#if !defined(__cpp_lib_to_chars)
#include <cstdlib>
#include <string>
#endif

namespace QvXmlLib9
{

namespace
{

/// The length of a text is not lost beside it, and no text is so long that it would come back to 1 from there.
constexpr std::int64_t s_nMaxExponent = std::numeric_limits<std::int64_t>::max() / 4;

/// @param text begins with the letter, if there is an exponent.
std::int64_t ReadExponent(std::string_view text)
{
    text.remove_prefix(std::min<std::size_t>(1, text.size()));
    const bool bNegative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    std::int64_t nExponent = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), nExponent);
    if (result.ec == std::errc::result_out_of_range || nExponent > s_nMaxExponent)
        nExponent = s_nMaxExponent;
    return bNegative ? -nExponent : nExponent;
}

std::string_view GetMantissa(std::string_view number)
{
    return number.substr(0, number.find_first_of("eE"));
}

#if defined(__cpp_lib_to_chars)

/// Whether the number, which is not 0, is 1 or more.
bool IsLarge(std::string_view number)
{
    const std::string_view mantissa = GetMantissa(number);
    const auto nPoint = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
    const auto nFirst = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
    return nPoint - nFirst + (nFirst > nPoint ? 1 : 0) + ReadExponent(number.substr(mantissa.size())) > 0;
}

#else

float ReadReal(const std::string& strText, float)
{
    return std::strtof(strText.c_str(), nullptr);
}

double ReadReal(const std::string& strText, double)
{
    return std::strtod(strText.c_str(), nullptr);
}

#endif

} // namespace

#if defined(__cpp_lib_to_chars)

template <class TReal>
TReal GetNearestReal(std::string_view number)
{
    TReal value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec != std::errc::result_out_of_range)
        return value;
    value = IsLarge(number) ? std::numeric_limits<TReal>::infinity() : TReal(0);
    return number.front() == '-' ? -value : value;
}

#else // The library of clang reads whole numbers alone.

template <class TReal>
TReal GetNearestReal(std::string_view number)
{
    const std::string_view mantissa = GetMantissa(number);
    std::int64_t nExponent = ReadExponent(number.substr(mantissa.size()));
    std::string strText(mantissa);
    // What separates the fraction depends on the locale; an exponent says the same everywhere.
    if (const std::size_t nPoint = strText.find('.'); nPoint != std::string::npos)
    {
        nExponent -= static_cast<std::int64_t>(strText.size() - nPoint - 1);
        strText.erase(nPoint, 1);
    }
    return ReadReal(strText.append("e").append(std::to_string(nExponent)), TReal(0));
}

#endif

template float GetNearestReal<float>(std::string_view number);
template double GetNearestReal<double>(std::string_view number);

} // namespace QvXmlLib9
