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

} // namespace

CListing::CListing(std::string_view octets, std::ostream& out)
    : m_octets(octets)
    , m_out(out)
{
}

void CListing::AddLine(std::size_t nEnd, std::size_t nDepth, std::string_view svText)
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
    m_strLine.append(svText);
    m_strLine += '\n';
    m_out << m_strLine;
    m_nStart = nEnd;
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
