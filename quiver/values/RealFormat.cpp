#include "quiver/values/RealFormat.h"

#include "quiver/foundation/Digits.h"
#include "quiver/foundation/Functions.h"
#include "quiver/values/IntegerText.h"
#include "quiver/values/NumberText.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace QvXmlLib9
{

namespace
{

// More than any finite double needs: no format prints other characters at the front for larger numbers than these.
constexpr int s_nMaxPrecision = 1100;
constexpr int s_nMaxWidth = 2000;

void CopyNumber(std::wstring& strOut, const wchar_t*& p, int nMax)
{
    int nNumber = 0;
    if (!IsDigit(*p))
        return;
    for (; IsDigit(*p); ++p)
        nNumber = std::min(nNumber * 10 + DigitValue(*p), nMax);
    AppendInteger(strOut, nNumber);
}

/// Copies what follows a percent sign, in a form that FormatString prints with bounded memory.
/// @return whether it is a conversion of one double.
bool CopyConversion(std::wstring& strOut, const wchar_t*& p)
{
    constexpr std::wstring_view flags = L"-+ #0";
    constexpr std::wstring_view sizes = L"hlL";
    constexpr std::wstring_view conversions = L"eEfFgG";
    while (*p != 0 && flags.find(*p) != std::wstring_view::npos)
        strOut += *p++;
    CopyNumber(strOut, p, s_nMaxWidth);
    if (*p == L'.')
    {
        strOut += *p++;
        CopyNumber(strOut, p, s_nMaxPrecision);
    }
    while (*p != 0 && sizes.find(*p) != std::wstring_view::npos)
        ++p;
    if (*p == 0 || conversions.find(*p) == std::wstring_view::npos)
        return false;
    // FormatString takes an F ahead of certain letters for a size; a finite number prints alike with f.
    strOut += *p == L'F' ? L'f' : *p;
    ++p;
    return true;
}

/// Makes a format that is safe to print one double with.
/// @return false if `lpctFormat` asks for anything else, where `printf` would read arguments that are not there.
bool CopyRealFormat(std::wstring& strOut, const wchar_t* lpctFormat)
{
    bool bConversionSeen = false;
    for (const wchar_t* p = lpctFormat; *p != 0;)
    {
        strOut += *p;
        if (*p++ != L'%')
            continue;
        if (*p == L'%')
        {
            strOut += *p++;
            continue;
        }
        if (bConversionSeen || !CopyConversion(strOut, p))
            return false;
        bConversionSeen = true;
    }
    return true;
}

/// Prints the formats that are nothing but "%.<up to two digits><e, f or g>", which are nearly all that are used.
bool AppendByPlainFormat(std::wstring& strOut, double dValue, const wchar_t* p)
{
    if (*p++ != L'%' || *p++ != L'.')
        return false;
    int nPrecision = 0;
    for (int n = 0; n < 2 && IsDigit(*p); ++n)
        nPrecision = nPrecision * 10 + DigitValue(*p++);
    std::chars_format eFormat = std::chars_format::general;
    if (*p == L'f')
        eFormat = std::chars_format::fixed;
    else if (*p == L'e')
        eFormat = std::chars_format::scientific;
    else if (*p != L'g')
        return false;
    if (p[1] != 0)
        return false;
    char szNumber[512];
    char* const pEnd = std::to_chars(szNumber, szNumber + sizeof(szNumber), dValue, eFormat, nPrecision).ptr;
    AppendAscii<sizeof(szNumber)>(strOut, szNumber, pEnd);
    return true;
}

} // namespace

bool AppendByFormat(std::wstring& strOut, double dValue, const wchar_t* lpctFormat)
{
    if (AppendByPlainFormat(strOut, dValue, lpctFormat))
        return true;
    std::wstring strFormat;
    if (!CopyRealFormat(strFormat, lpctFormat))
        return false;
    strOut += FormatString(strFormat.c_str(), dValue);
    return true;
}

} // namespace QvXmlLib9
