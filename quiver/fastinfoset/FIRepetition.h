#pragma once

#include <cstddef>
#include <cstdint>

namespace QvXmlLib9
{

/// How much text a Fast Infoset document stands for by referring to its tables. A few octets may refer to a text of any
/// length, and who takes the document in copies it each time, so a small document could ask for memory without end.
///
/// Reader and writer count the same: the reader refuses a document that goes too far, and the writer writes a text anew
/// where a further reference would, so that whatever is written can be read.
class CFIRepetition
{
public:
    /// Units that are admitted in a document of any length; and for each octet of a longer one.
    static constexpr std::uint64_t s_nFreeUnits = 32 * 1024 * 1024;
    static constexpr std::uint64_t s_nUnitsPerOctet = 32;

    /// Names and parts of names up to this length, in units, do not count: they cost no more than the node that has
    /// them.
    static constexpr std::size_t s_nShortName = 256;

    /// Text that is added to other text of an element counts so many times: only the first text of an element is shared
    /// by all that refer to it, and the others are copied, more than once as the whole grows.
    static constexpr std::uint64_t s_nAddedWeight = 4;

    /// Counts a reference to a text of some units.
    /// @param fnGetOctets returns the length of the document, as far as it is known.
    /// @return false, and nothing is counted, if that is too much.
    template <class GetOctets>
    bool Add(std::uint64_t nUnits, GetOctets fnGetOctets)
    {
        const std::uint64_t nSum = m_nUnits + nUnits;
        if (nSum > s_nFreeUnits && nSum / s_nUnitsPerOctet > fnGetOctets())
            return false;
        m_nUnits = nSum;
        return true;
    }

    /// The same for a name, or a part of one.
    template <class GetOctets>
    bool AddName(std::uint64_t nUnits, GetOctets fnGetOctets)
    {
        return nUnits <= s_nShortName || Add(nUnits, fnGetOctets);
    }

private:
    std::uint64_t m_nUnits = 0;
};

} // namespace QvXmlLib9
