#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace quiver_fi
{

/// Prints a document's octets line by line: the offset, the octets, and what they are. Every octet stands in exactly
/// one line.
class CListing
{
public:
    /// @param octets the document. Must live as long as the listing, as must `out`.
    /// @param bColoured whether the columns have colours, by the sequences of ECMA-48, 8.3.117.
    CListing(std::string_view octets, std::ostream& out, bool bColoured);

    /// A line for the octets from the end of the former line to `nEnd`.
    /// @param nDepth how many elements are open, for the indentation.
    void AddLine(std::size_t nEnd, std::size_t nDepth, std::string_view svText);

    /// A line without octets.
    void AddNote(std::string_view svText);

    /// Where the next line begins.
    std::size_t GetStart() const { return m_nStart; }

private:
    void AppendOctets(std::size_t nOctets);

    std::string_view m_octets;
    std::ostream& m_out;
    const bool m_bColoured;
    std::size_t m_nStart = 0;
    std::string m_strLine;
};

/// Eight or more hexadecimal digits.
std::string FormatOffset(std::size_t nOffset);

} // namespace quiver_fi
