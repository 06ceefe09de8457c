#include "tools/quiver-fi/Listing.h"

#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <ostream>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::size_t s_nOctetsShown = 8;
constexpr std::size_t s_nDeepestIndent = 20;
constexpr std::string_view s_strDigits = "0123456789ABCDEF";

void AppendHex(std::string& strOut, std::size_t nValue, int nDigits)
{
    while (nDigits-- > 0)
        strOut += s_strDigits[nValue >> (4 * nDigits) & 15];
}

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
    case L'"':
    case L'\\':
        strOut += '\\';
        break;
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

} // namespace

CListing::CListing(std::string_view octets, std::ostream& out)
    : m_octets(octets)
    , m_out(out)
{
}

void CListing::AddLine(std::size_t nEnd, std::size_t nDepth, std::string_view strText)
{
    m_strLine = FormatOffset(m_nStart) + "  ";
    const std::size_t nOctets = nEnd - m_nStart;
    const std::size_t nShown = nOctets > s_nOctetsShown ? s_nOctetsShown - 1 : nOctets;
    for (std::size_t n = 0; n < nShown; ++n)
    {
        AppendHex(m_strLine, static_cast<unsigned char>(m_octets[m_nStart + n]), 2);
        m_strLine += ' ';
    }
    if (nShown < nOctets)
        m_strLine += ".. ";
    m_strLine.append((s_nOctetsShown - nShown - (nShown < nOctets ? 1 : 0)) * 3 + 1, ' ');
    m_strLine.append(std::min(nDepth, s_nDeepestIndent) * 2, ' ');
    m_strLine.append(strText);
    m_strLine += '\n';
    m_out << m_strLine;
    m_nStart = nEnd;
}

void CListing::AddNote(std::string_view strText)
{
    m_out << strText << '\n';
}

std::string FormatOffset(std::size_t nOffset)
{
    std::string strOffset;
    AppendHex(strOffset, nOffset, 8);
    return strOffset;
}

std::string Quote(std::wstring_view strUnits, std::size_t nLimit)
{
    std::string strQuoted = "\"";
    const std::size_t nLength = strUnits.size();
    while (!strUnits.empty() && nLength - strUnits.size() < nLimit)
    {
        const std::size_t nUnits = IsSurrogatePair(strUnits) ? 2 : 1;
        if (nUnits == 2)
            AppendUtf8(strQuoted, strUnits.substr(0, 2));
        else
            AppendUnit(strQuoted, strUnits.front());
        strUnits.remove_prefix(nUnits);
    }
    strQuoted += strUnits.empty() ? "\"" : "...\"";
    return strQuoted;
}

} // namespace quiver_fi
