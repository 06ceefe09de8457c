#pragma once

#include <charconv>
#include <string>

#if !defined(__cpp_lib_to_chars)
#include <locale.h>

#include <cstdlib>
#endif

namespace QvTest
{

/// The double nearest to a decimal text, in any locale, as the C++ library or the C library reads it.
inline double ReadDouble(const std::string& strText)
{
#if defined(__cpp_lib_to_chars)
    double dValue = 0;
    std::from_chars(strText.data(), strText.data() + strText.size(), dValue);
    return dValue;
#else
    static const locale_t s_locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t previous = ::uselocale(s_locale);
    const double dValue = std::strtod(strText.c_str(), nullptr);
    ::uselocale(previous);
    return dValue;
#endif
}

} // namespace QvTest
