#include "tools/quiver-fi/Text.h"

#include "quiver/foundation/Encoder.h"

#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::string_view s_strDigits = "0123456789ABCDEF";

/// Octets of the longest character in UTF-8.
constexpr std::size_t s_nLongest = 4;

bool IsSurrogatePair(std::wstring_view strUnits)
{
    return strUnits.size() >= 2 && strUnits[0] >= 0xD800 && strUnits[0] <= 0xDBFF && strUnits[1] >= 0xDC00 &&
           strUnits[1] <= 0xDFFF;
}

/// Controls, the marks of line and paragraph, what turns the direction of text, and lone surrogates.
bool IsEscaped(wchar_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x200E && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFEFF;
}

void AppendUnit(std::string& strOut, wchar_t c)
{
    switch (c)
    {
    case L'\n':
        strOut += "\\n";
        return;
    case L'\r':
        strOut += "\\r";
        return;
    case L'\t':
        strOut += "\\t";
        return;
    default:
        break;
    }
    if (IsEscaped(c))
    {
        strOut += "\\u";
        AppendHex(strOut, static_cast<std::size_t>(c), 4);
        return;
    }
    AppendUtf8(strOut, std::wstring_view(&c, 1));
}

/// Octets of the character in front, or 0 if they are none in UTF-8.
std::size_t FindCharacter(std::string_view strUtf8, std::wstring& strUnits)
{
    for (std::size_t nLength = 1; nLength <= s_nLongest && nLength <= strUtf8.size(); ++nLength)
    {
        strUnits.clear();
        if (AppendUtf8AsUtf16(strUnits, strUtf8.substr(0, nLength)))
            return nLength;
    }
    return 0;
}

} // namespace

void Widen(std::string_view strUtf8, std::wstring& strUnits)
{
    strUnits.clear();
    if (!AppendUtf8AsUtf16(strUnits, strUtf8))
        throw std::runtime_error("the document holds text that is not UTF-8, behind " + Quote(strUnits, 60));
}

std::wstring Widen(std::string_view strUtf8)
{
    std::wstring strUnits;
    Widen(strUtf8, strUnits);
    return strUnits;
}

std::string Narrow(std::wstring_view strUnits)
{
    std::string strUtf8;
    if (!AppendUtf8(strUtf8, strUnits))
        throw std::runtime_error("the document holds half of a surrogate pair");
    return strUtf8;
}

bool IsBlank(std::string_view strUtf8)
{
    return strUtf8.find_first_not_of(" \t\n\r") == std::string_view::npos;
}

void AppendHex(std::string& strOut, std::size_t nValue, int nDigits)
{
    while (nDigits-- > 0)
        strOut += s_strDigits[nValue >> (4 * nDigits) & 15];
}

std::string Quote(std::wstring_view strUnits, std::size_t nLimit)
{
    std::string strQuoted = "\"";
    const std::size_t nLength = strUnits.size();
    while (!strUnits.empty() && nLength - strUnits.size() < nLimit)
    {
        const std::size_t nUnits = IsSurrogatePair(strUnits) ? 2 : 1;
        if (nUnits == 2)
        {
            AppendUtf8(strQuoted, strUnits.substr(0, 2));
        }
        else
        {
            if (strUnits.front() == L'"' || strUnits.front() == L'\\')
                strQuoted += '\\';
            AppendUnit(strQuoted, strUnits.front());
        }
        strUnits.remove_prefix(nUnits);
    }
    strQuoted += strUnits.empty() ? "\"" : "...\"";
    return strQuoted;
}

std::string Quote(std::string_view strUtf8)
{
    return Quote(std::wstring_view(Widen(strUtf8)));
}

std::string EscapeControls(std::string_view strMessage)
{
    std::string strOut;
    std::wstring strUnits;
    while (!strMessage.empty())
    {
        const std::size_t nLength = FindCharacter(strMessage, strUnits);
        if (nLength == 0)
        {
            strOut += "\\x";
            AppendHex(strOut, static_cast<unsigned char>(strMessage.front()), 2);
        }
        else if (strUnits.size() == 1)
        {
            AppendUnit(strOut, strUnits.front());
        }
        else
        {
            strOut.append(strMessage.substr(0, nLength));
        }
        strMessage.remove_prefix(nLength == 0 ? 1 : nLength);
    }
    return strOut;
}

} // namespace quiver_fi
