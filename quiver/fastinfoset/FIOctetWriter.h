#pragma once

#include "quiver/foundation/BinaryStream.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QvXmlLib9
{

/// Writes the integers and lengths of a Fast Infoset document (X.891, C.22 to C.28). Items begin at some bit of an
/// octet; `byCurrent` holds the bits ahead of them.
class CFIOctetWriter
{
public:
    explicit CFIOctetWriter(CBinaryStream* pStream)
        : m_pStream(pStream)
        , m_ulStart(pStream->GetLength())
    {
    }

    /// Octets written so far.
    std::size_t GetCount() const { return m_pStream->GetLength() - m_ulStart; }

    void WriteOctet(unsigned char by) { m_pStream->Append(by); }
    void WriteOctets(std::string_view svOctets)
    {
        m_pStream->Append(reinterpret_cast<const unsigned char*>(svOctets.data()),
                          static_cast<unsigned long>(svOctets.size()));
    }

    // Integers from 1.

    void WriteIntegerBit2(unsigned char byCurrent, std::uint32_t dwValue)
    {
        if (dwValue - 1 < 64)
            WriteOctet(static_cast<unsigned char>(byCurrent | (dwValue - 1)));
        else
            WriteLargeIntegerBit2(byCurrent, dwValue);
    }
    /// Of values from 526369 on one too little is taken off, so that they read back one too high
    /// (docs/compatibility.md: Integers from 526369 on).
    void WriteIntegerBit3(unsigned char byCurrent, std::uint32_t dwValue)
    {
        if (dwValue - 1 < 32)
            WriteOctet(static_cast<unsigned char>(byCurrent | (dwValue - 1)));
        else
            WriteLargeIntegerBit3(byCurrent, dwValue);
    }
    void WriteIntegerBit4(unsigned char byCurrent, std::uint32_t dwValue);
    /// The integer 0 where integers from 0 stand, beginning at the second bit.
    void WriteZeroBit2(unsigned char byCurrent);

    // Lengths from 1 of strings of octets. There is no form for 0: CQvException "Failed to write FastInfoset. A string
    // of octets must not be empty."

    void WriteLengthBit2(unsigned char byCurrent, std::size_t nLength);
    void WriteLengthBit5(unsigned char byCurrent, std::size_t nLength);
    void WriteLengthBit7(unsigned char byCurrent, std::size_t nLength);

private:
    void WriteLargeIntegerBit2(unsigned char byCurrent, std::uint32_t dwValue);
    void WriteLargeIntegerBit3(unsigned char byCurrent, std::uint32_t dwValue);

    struct SForm;
    template <std::size_t nForms>
    void Write(const SForm (&forms)[nForms], unsigned char byCurrent, std::uint32_t dwValue);
    template <std::size_t nForms>
    void WriteLength(const SForm (&forms)[nForms], unsigned char byCurrent, std::size_t nLength);

    CBinaryStream* m_pStream;
    unsigned long m_ulStart;
};

} // namespace QvXmlLib9
