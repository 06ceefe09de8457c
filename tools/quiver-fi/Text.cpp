#include "tools/quiver-fi/Text.h"

#include "quiver/foundation/Encoder.h"

#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::string_view s_svDigits = "0123456789ABCDEF";

/// Octets of the longest character in UTF-8.
constexpr std::size_t s_nLongest = 4;

bool IsSurrogatePair(std::wstring_view svUnits)
{
    return svUnits.size() >= 2 && svUnits[0] >= 0xD800 && svUnits[0] <= 0xDBFF && svUnits[1] >= 0xDC00 &&
           svUnits[1] <= 0xDFFF;
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
std::size_t FindCharacter(std::string_view svUtf8, std::wstring& strUnits)
{
    for (std::size_t nLength = 1; nLength <= s_nLongest && nLength <= svUtf8.size(); ++nLength)
    {
        strUnits.clear();
        if (AppendUtf8AsUtf16(strUnits, svUtf8.substr(0, nLength)))
            return nLength;
    }
    return 0;
}

} // namespace

void Widen(std::string_view svUtf8, std::wstring& strUnits)
{
    strUnits.clear();
    if (!AppendUtf8AsUtf16(strUnits, svUtf8))
        throw std::runtime_error("the document holds text that is not UTF-8, behind " + Quote(strUnits, 60));
}

std::wstring Widen(std::string_view svUtf8)
{
    std::wstring strUnits;
    Widen(svUtf8, strUnits);
    return strUnits;
}

std::string Narrow(std::wstring_view svUnits)
{
    std::string strUtf8;
    if (!AppendUtf8(strUtf8, svUnits))
        throw std::runtime_error("the document holds half of a surrogate pair");
    return strUtf8;
}

bool IsBlank(std::string_view svUtf8)
{
    return svUtf8.find_first_not_of(" \t\n\r") == std::string_view::npos;
}

void AppendHex(std::string& strOut, std::size_t nValue, int nDigits)
{
    while (nDigits-- > 0)
        strOut += s_svDigits[nValue >> (4 * nDigits) & 15];
}

std::string Quote(std::wstring_view svUnits, std::size_t nLimit)
{
    std::string strQuoted = "\"";
    const std::size_t nLength = svUnits.size();
    while (!svUnits.empty() && nLength - svUnits.size() < nLimit)
    {
        const std::size_t nUnits = IsSurrogatePair(svUnits) ? 2 : 1;
        if (nUnits == 2)
        {
            AppendUtf8(strQuoted, svUnits.substr(0, 2));
        }
        else
        {
            if (svUnits.front() == L'"' || svUnits.front() == L'\\')
                strQuoted += '\\';
            AppendUnit(strQuoted, svUnits.front());
        }
        svUnits.remove_prefix(nUnits);
    }
    strQuoted += svUnits.empty() ? "\"" : "...\"";
    return strQuoted;
}

std::string Quote(std::string_view svUtf8)
{
    return Quote(std::wstring_view(Widen(svUtf8)));
}

std::string EscapeControls(std::string_view svMessage)
{
    std::string strOut;
    std::wstring strUnits;
    while (!svMessage.empty())
    {
        const std::size_t nLength = FindCharacter(svMessage, strUnits);
        if (nLength == 0)
        {
            strOut += "\\x";
            AppendHex(strOut, static_cast<unsigned char>(svMessage.front()), 2);
        }
        else if (strUnits.size() == 1)
        {
            AppendUnit(strOut, strUnits.front());
        }
        else
        {
            strOut.append(svMessage.substr(0, nLength));
        }
        svMessage.remove_prefix(nLength == 0 ? 1 : nLength);
    }
    return strOut;
}

} // namespace quiver_fi
