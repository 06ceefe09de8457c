#include "quiver/foundation/Functions.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string_view>

namespace QvXmlLib9
{

namespace
{

/// One `%` conversion, read and ready to print.
struct SConversion
{
    bool bLeft = false;
    bool bPlus = false;
    bool bBlank = false;
    bool bAlternate = false;
    bool bZero = false;
    int nWidth = 0;
    int nPrecision = -1;
    enum class ESize
    {
        None,
        Short,
        Long,
        Wide64
    } eSize = ESize::None;
    wchar_t cConversion = 0;
};

/// A holder for the argument list that can be passed by reference on every platform.
struct SArguments
{
    std::va_list list;
};

int ReadNumber(const wchar_t*& p)
{
    long long nNumber = 0;
    for (; IsDigit(*p); ++p)
        nNumber = std::min<long long>(nNumber * 10 + DigitValue(*p), INT_MAX);
    return static_cast<int>(nNumber);
}

void ReadFlags(const wchar_t*& p, SConversion& conv)
{
    for (;; ++p)
    {
        switch (*p)
        {
        case L'-':
            conv.bLeft = true;
            break;
        case L'+':
            conv.bPlus = true;
            break;
        case L' ':
            conv.bBlank = true;
            break;
        case L'#':
            conv.bAlternate = true;
            break;
        case L'0':
            conv.bZero = true;
            break;
        default:
            return;
        }
    }
}

void ReadWidthAndPrecision(const wchar_t*& p, SConversion& conv, SArguments& args)
{
    if (*p == L'*')
    {
        ++p;
        const int nWidth = va_arg(args.list, int);
        QV_ASSERT(nWidth >= 0);
        conv.nWidth = std::max(nWidth, 0);
    }
    else
    {
        conv.nWidth = ReadNumber(p);
    }
    if (*p != L'.')
        return;
    ++p;
    if (*p == L'*')
    {
        ++p;
        const int nPrecision = va_arg(args.list, int);
        QV_ASSERT(nPrecision >= 0);
        conv.nPrecision = std::max(nPrecision, 0);
    }
    else
    {
        conv.nPrecision = ReadNumber(p);
    }
}

void ReadSize(const wchar_t*& p, SConversion& conv)
{
    if (p[0] == L'I' && p[1] == L'6' && p[2] == L'4')
    {
        QV_ASSERT_MSG(false, "FALSE");
        conv.eSize = SConversion::ESize::Wide64;
        p += 3;
        return;
    }
    // F is a size prefix ahead of a conversion; alone it is the conversion itself.
    while (*p == L'h' || *p == L'l' || *p == L'L' || *p == L'N' ||
           (*p == L'F' && p[1] != 0 && std::wcschr(L"hlLNFcCdiouxXeEfgGnpsS", p[1]) != nullptr))
    {
        if (*p == L'h')
            conv.eSize = SConversion::ESize::Short;
        else if (*p == L'l')
            conv.eSize = SConversion::ESize::Long;
        ++p;
    }
}

void AppendPadded(std::wstring& strOut, const SConversion& conv, std::wstring_view svSign, std::wstring_view svBody,
                  bool bZeroPad)
{
    const std::size_t nLength = svSign.size() + svBody.size();
    const auto nWidth = static_cast<std::size_t>(conv.nWidth);
    const std::size_t nPad = nWidth > nLength ? nWidth - nLength : 0;
    if (!conv.bLeft && !bZeroPad)
        strOut.append(nPad, L' ');
    strOut.append(svSign);
    if (!conv.bLeft && bZeroPad)
        strOut.append(nPad, L'0');
    strOut.append(svBody);
    if (conv.bLeft)
        strOut.append(nPad, L' ');
}

std::wstring SignOf(const SConversion& conv, bool bNegative)
{
    if (bNegative)
        return L"-";
    if (conv.bPlus)
        return L"+";
    return conv.bBlank ? L" " : L"";
}

/// Prints an integer of 32 bits (64 with the prefix that asserts), whose argument may have come as a longer one.
void AppendInteger(std::wstring& strOut, const SConversion& conv, SArguments& args)
{
    std::uint64_t nBits = 0;
    if (conv.eSize == SConversion::ESize::Wide64)
        nBits = static_cast<std::uint64_t>(va_arg(args.list, long long));
    else if (conv.eSize == SConversion::ESize::Long)
        nBits = static_cast<std::uint64_t>(va_arg(args.list, long));
    else
        nBits = static_cast<std::uint64_t>(va_arg(args.list, int));

    const bool bSigned = conv.cConversion == L'd' || conv.cConversion == L'i';
    auto nValue = static_cast<std::int64_t>(nBits);
    if (conv.eSize == SConversion::ESize::Short)
        nValue = bSigned ? static_cast<std::int16_t>(nBits) : static_cast<std::uint16_t>(nBits);
    else if (conv.eSize != SConversion::ESize::Wide64)
        nValue =
            bSigned ? std::int64_t{static_cast<std::int32_t>(nBits)} : std::int64_t{static_cast<std::uint32_t>(nBits)};

    const bool bNegative = bSigned && nValue < 0;
    std::uint64_t nMagnitude = static_cast<std::uint64_t>(nValue);
    if (bNegative)
        nMagnitude = 0 - nMagnitude;
    const int nBase = conv.cConversion == L'o' ? 8 : (conv.cConversion == L'x' || conv.cConversion == L'X') ? 16 : 10;
    char szDigits[32];
    char* const pEnd = std::to_chars(szDigits, szDigits + sizeof(szDigits), nMagnitude, nBase).ptr;
    std::wstring strDigits(szDigits, pEnd);
    if (conv.cConversion == L'X')
        std::transform(strDigits.begin(), strDigits.end(), strDigits.begin(),
                       [](wchar_t c) { return c >= L'a' ? static_cast<wchar_t>(c - L'a' + L'A') : c; });
    if (conv.nPrecision == 0 && nMagnitude == 0)
        strDigits.clear();
    if (conv.nPrecision > 0 && strDigits.size() < static_cast<std::size_t>(conv.nPrecision))
        strDigits.insert(0, static_cast<std::size_t>(conv.nPrecision) - strDigits.size(), L'0');

    std::wstring strSign = bSigned ? SignOf(conv, bNegative) : std::wstring();
    if (conv.bAlternate && nBase == 16 && nMagnitude != 0)
        strSign += conv.cConversion == L'X' ? L"0X" : L"0x";
    if (conv.bAlternate && nBase == 8 && (strDigits.empty() || strDigits[0] != L'0'))
        strDigits.insert(0, 1, L'0');
    AppendPadded(strOut, conv, strSign, strDigits, conv.bZero && conv.nPrecision < 0);
}

/// The `#` flag: a number has a point, and with `%g` as many digits as the precision says.
void KeepPointAndZeros(std::string& strBody, int nDigits)
{
    if (strBody.find('.') == std::string::npos)
        strBody.insert(std::min(strBody.find('e'), strBody.size()), 1, '.');
    const std::size_t nEnd = std::min(strBody.find('e'), strBody.size());
    const std::size_t nFirst = strBody.find_first_of("123456789");
    const std::size_t nStart = nFirst < nEnd ? nFirst : 0;
    const std::size_t nPoint = strBody.find('.');
    const std::size_t nPresent = nEnd - nStart - (nPoint >= nStart ? 1 : 0);
    if (nPresent < static_cast<std::size_t>(nDigits))
        strBody.insert(nEnd, static_cast<std::size_t>(nDigits) - nPresent, '0');
}

/// `printf` would print the decimal point of the process's locale; this prints the C locale's.
void AppendDouble(std::wstring& strOut, const SConversion& conv, double dValue)
{
    const bool bUpper = conv.cConversion < L'a';
    const wchar_t cKind = bUpper ? static_cast<wchar_t>(conv.cConversion - L'A' + L'a') : conv.cConversion;
    const int nPrecision = conv.nPrecision < 0 ? 6 : conv.nPrecision;
    const bool bNegative = std::signbit(dValue);
    const double dMagnitude = std::fabs(dValue);

    std::string strBody;
    bool bFinite = true;
    if (std::isnan(dValue) || std::isinf(dValue))
    {
        strBody = std::isnan(dValue) ? "nan" : "inf";
        bFinite = false;
    }
    else
    {
        const std::chars_format eFormat = cKind == L'f'   ? std::chars_format::fixed
                                          : cKind == L'e' ? std::chars_format::scientific
                                                          : std::chars_format::general;
        strBody.resize(static_cast<std::size_t>(nPrecision) + 350);
        const std::to_chars_result result =
            std::to_chars(strBody.data(), strBody.data() + strBody.size(), dMagnitude, eFormat, nPrecision);
        strBody.resize(static_cast<std::size_t>(result.ptr - strBody.data()));
        if (conv.bAlternate)
            KeepPointAndZeros(strBody, cKind == L'g' ? std::max(nPrecision, 1) : 0);
    }
    std::wstring strWide(strBody.begin(), strBody.end());
    if (bUpper)
        std::transform(strWide.begin(), strWide.end(), strWide.begin(),
                       [](wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; });
    AppendPadded(strOut, conv, SignOf(conv, bNegative), strWide, conv.bZero && bFinite);
}

void AppendText(std::wstring& strOut, const SConversion& conv, std::wstring_view text)
{
    if (conv.nWidth == 0 && conv.nPrecision < 0)
    {
        AppendUtf16Units(strOut, text);
        return;
    }
    const std::wstring strUnits = ToUtf16Units(text);
    std::wstring_view units = strUnits;
    if (conv.nPrecision >= 0)
        units = units.substr(0, static_cast<std::size_t>(conv.nPrecision));
    AppendPadded(strOut, conv, {}, units, false);
}

void AppendNarrowText(std::wstring& strOut, const SConversion& conv, std::string_view text)
{
    std::wstring strWide;
    strWide.reserve(text.size());
    for (const char c : text)
        strWide += static_cast<wchar_t>(static_cast<unsigned char>(c));
    AppendText(strOut, conv, strWide);
}

/// Length of a string, of which no more than the precision need be there.
template <class TChar>
std::basic_string_view<TChar> ViewOf(const TChar* pText, int nPrecision)
{
    std::size_t nLength = 0;
    while ((nPrecision < 0 || nLength < static_cast<std::size_t>(nPrecision)) && pText[nLength] != 0)
        ++nLength;
    return {pText, nLength};
}

/// Without a prefix the small letters are wide and the capital ones narrow; a prefix decides for both.
bool IsNarrow(const SConversion& conv)
{
    if (conv.eSize == SConversion::ESize::None)
        return conv.cConversion == L'S' || conv.cConversion == L'C';
    return conv.eSize == SConversion::ESize::Short;
}

void AppendString(std::wstring& strOut, const SConversion& conv, SArguments& args)
{
    if (IsNarrow(conv))
    {
        const char* const lpcText = va_arg(args.list, const char*);
        AppendNarrowText(strOut, conv, lpcText ? ViewOf(lpcText, conv.nPrecision) : std::string_view("(null)"));
    }
    else
    {
        const wchar_t* const lpctText = va_arg(args.list, const wchar_t*);
        AppendText(strOut, conv, lpctText ? ViewOf(lpctText, conv.nPrecision) : std::wstring_view(L"(null)"));
    }
}

void AppendCharacter(std::wstring& strOut, const SConversion& conv, SArguments& args)
{
    SConversion convCharacter = conv;
    convCharacter.nPrecision = -1;
    const int nCharacter = va_arg(args.list, int);
    const auto c = static_cast<wchar_t>(IsNarrow(conv) ? static_cast<unsigned char>(nCharacter) : nCharacter);
    AppendText(strOut, convCharacter, std::wstring_view(&c, 1));
}

void AppendPointer(std::wstring& strOut, const SConversion& conv, SArguments& args)
{
    char szDigits[32];
    const auto nAddress = reinterpret_cast<std::uintptr_t>(va_arg(args.list, void*));
    char* const pEnd = std::to_chars(szDigits, szDigits + sizeof(szDigits), nAddress, 16).ptr;
    AppendPadded(strOut, conv, L"0x", std::wstring(szDigits, pEnd), conv.bZero);
}

void AppendConversion(std::wstring& strOut, const SConversion& conv, SArguments& args)
{
    switch (conv.cConversion)
    {
    case L's':
    case L'S':
        AppendString(strOut, conv, args);
        break;
    case L'c':
    case L'C':
        AppendCharacter(strOut, conv, args);
        break;
    case L'd':
    case L'i':
    case L'u':
    case L'o':
    case L'x':
    case L'X':
        AppendInteger(strOut, conv, args);
        break;
    case L'e':
    case L'E':
    case L'f':
    case L'F':
    case L'g':
    case L'G':
        AppendDouble(strOut, conv, va_arg(args.list, double));
        break;
    case L'p':
        AppendPointer(strOut, conv, args);
        break;
    case L'n':
        // Never written through: a format must not be able to change memory.
        static_cast<void>(va_arg(args.list, void*));
        break;
    default:
        QV_ASSERT_MSG(false, "FALSE");
        break;
    }
}

std::wstring FormatArguments(const wchar_t* p, SArguments& args)
{
    std::wstring strOut;
    while (*p != 0)
    {
        const wchar_t* const pRun = p;
        while (*p != 0 && *p != L'%')
            ++p;
        AppendUtf16Units(strOut, std::wstring_view(pRun, static_cast<std::size_t>(p - pRun)));
        if (*p == 0)
            break;
        ++p;
        if (*p == L'%')
        {
            strOut += *p++;
            continue;
        }
        SConversion conv;
        ReadFlags(p, conv);
        ReadWidthAndPrecision(p, conv, args);
        ReadSize(p, conv);
        QV_ASSERT_MSG(*p != 0, "FALSE");
        if (*p == 0)
            break;
        conv.cConversion = *p++;
        AppendConversion(strOut, conv, args);
    }
    return strOut;
}

constexpr std::size_t TRACE_BUFFER_LEN = 32768;
constexpr std::size_t s_nTraceSlice = 128;

} // namespace

std::wstring FormatStringV(const wchar_t* format, std::va_list list)
{
    if (format == nullptr)
        return std::wstring();
    SArguments args;
    va_copy(args.list, list);
    std::wstring strOut = FormatArguments(format, args);
    va_end(args.list);
    return strOut;
}

std::wstring FormatString(const wchar_t* format, ...)
{
    std::va_list list;
    va_start(list, format);
    std::wstring strOut = FormatStringV(format, list);
    va_end(list);
    return strOut;
}

void OutputTrace(const wchar_t* format, ...)
{
    if (!Platform::IsDebugOutputOn())
        return;
    std::va_list list;
    va_start(list, format);
    const std::wstring strText = FormatStringV(format, list);
    va_end(list);

    QV_ASSERT_MSG(strText.size() != TRACE_BUFFER_LEN, "nBuf < TRACE_BUFFER_LEN");
    if (strText.size() >= TRACE_BUFFER_LEN)
        return;
    for (std::size_t nAt = 0; nAt < strText.size(); nAt += s_nTraceSlice)
        Platform::OutputDebug(strText.substr(nAt, s_nTraceSlice).c_str());
}

void AssertionFailed(const char* lpcCondition, const char* lpcFile, int nLine)
{
    Platform::OutputDebug(FormatString(L"Assertion failed: %S, %S, line %d\n", lpcCondition, lpcFile, nLine).c_str());
    std::fprintf(stderr, "Assertion failed: %s, %s, line %d\n", lpcCondition, lpcFile, nLine);
    std::fflush(stderr);
    std::abort();
}

namespace
{

template <class TString>
void ReplaceAllIn(TString& text, TString needle, const TString& replacement)
{
    const bool bEnds = !needle.empty() && replacement.find(needle) == TString::npos;
    QV_ASSERT(bEnds);
    if (!bEnds)
        return;
    // Nothing ahead of the first occurrence can become one unless it reaches into the replacement.
    for (std::size_t nAt = text.find(needle); nAt != TString::npos;)
    {
        text.replace(nAt, needle.size(), replacement);
        nAt = text.find(needle, nAt - std::min(nAt, needle.size() - 1));
    }
}

} // namespace

void ReplaceAll(std::string& text, const std::string& needle, const std::string& replacement)
{
    ReplaceAllIn(text, needle, replacement);
}

void ReplaceAll(std::wstring& text, const std::wstring& needle, const std::wstring& replacement)
{
    ReplaceAllIn(text, needle, replacement);
}

std::wstring FormatPadded(unsigned int value, unsigned char width)
{
    return FormatString(L"%0*d", int{width}, static_cast<int>(value));
}

std::wstring TrimTrailingZeros(std::wstring digits)
{
    const std::size_t nLast = digits.find_last_not_of(L'0');
    const std::size_t nLength = nLast == std::wstring::npos ? 1 : nLast + 1;
    if (nLength < digits.size())
        digits.resize(nLength);
    return digits;
}

wchar_t* WritePadded(wchar_t* p, unsigned long long nValue, int nWidth)
{
    int nDigits = 1;
    for (unsigned long long nRest = nValue / 10; nRest != 0; nRest /= 10)
        ++nDigits;
    wchar_t* const pEnd = p + std::max(nDigits, nWidth);
    for (wchar_t* pDigit = pEnd; pDigit != p; nValue /= 10)
        *--pDigit = DigitOf(static_cast<unsigned int>(nValue % 10));
    return pEnd;
}

wchar_t* WriteFraction(wchar_t* p, unsigned short milli, unsigned short micro, unsigned short nano)
{
    if (milli == 0 && micro == 0 && nano == 0)
        return p;
    *p++ = L'.';
    p = WritePadded(p, milli, 3);
    if (micro != 0 || nano != 0)
        p = WritePadded(p, micro, 3);
    if (nano != 0)
        p = WritePadded(p, nano, 3);
    while (p[-1] == L'0')
        --p;
    return p;
}

std::wstring FormatFraction(unsigned short milli, unsigned short micro, unsigned short nano)
{
    wchar_t szFraction[16];
    return std::wstring(szFraction, WriteFraction(szFraction, milli, micro, nano));
}

} // namespace QvXmlLib9
