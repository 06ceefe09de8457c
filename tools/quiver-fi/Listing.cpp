#include "tools/quiver-fi/Listing.h"

#include "tools/quiver-fi/Text.h"

#include <algorithm>
#include <ostream>

namespace quiver_fi
{

namespace
{

constexpr std::size_t s_nOctetsShown = 8;
constexpr std::size_t s_nDeepestIndent = 20;

// Cyan, yellow, and whatever the terminal has for text.
constexpr const char* s_szOffsetColour = "\x1B[36m";
constexpr const char* s_szOctetsColour = "\x1B[33m";
constexpr const char* s_szPlain = "\x1B[0m";

} // namespace

CListing::CListing(std::string_view octets, std::ostream& out, bool bColoured)
    : m_octets(octets)
    , m_out(out)
    , m_bColoured(bColoured)
{
}

void CListing::AddLine(std::size_t nEnd, std::size_t nDepth, std::string_view svText)
{
    m_strLine = m_bColoured ? s_szOffsetColour : "";
    m_strLine += FormatOffset(m_nStart) + "  ";
    m_strLine += m_bColoured ? s_szOctetsColour : "";
    AppendOctets(nEnd - m_nStart);
    m_strLine += m_bColoured ? s_szPlain : "";
    m_strLine.append(std::min(nDepth, s_nDeepestIndent) * 2, ' ');
    m_strLine.append(svText);
    m_strLine += '\n';
    m_out << m_strLine;
    m_nStart = nEnd;
}

/// As many as there is room for, and blanks up to the end of the column.
void CListing::AppendOctets(std::size_t nOctets)
{
    const std::size_t nShown = nOctets > s_nOctetsShown ? s_nOctetsShown - 1 : nOctets;
    for (std::size_t n = 0; n < nShown; ++n)
    {
        AppendHex(m_strLine, static_cast<unsigned char>(m_octets[m_nStart + n]), 2);
        m_strLine += ' ';
    }
    if (nShown < nOctets)
        m_strLine += ".. ";
    m_strLine.append((s_nOctetsShown - nShown - (nShown < nOctets ? 1 : 0)) * 3 + 1, ' ');
}

void CListing::AddNote(std::string_view svText)
{
    m_out << svText << '\n';
}

std::string FormatOffset(std::size_t nOffset)
{
    std::string strOffset;
    AppendHex(strOffset, nOffset, 8);
    return strOffset;
}

} // namespace quiver_fi
