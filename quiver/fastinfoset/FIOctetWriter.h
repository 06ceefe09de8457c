#pragma once

#include "quiver/foundation/BinaryStream.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QvXmlLib9
{

/// Writes the integers and lengths of a Fast Infoset document (X.891, C.22 to C.28). Items begin at some bit of an
/// octet; `byCurrent` holds the bits ahead of them.
///
/// The octets are collected and reach the stream by the block; Flush says when they have to be there.
class CFIOctetWriter
{
public:
    explicit CFIOctetWriter(CBinaryStream* pStream)
        : m_pStream(pStream)
        , m_ulStart(pStream->GetLength())
    {
    }

    CFIOctetWriter(const CFIOctetWriter&) = delete;
    CFIOctetWriter& operator=(const CFIOctetWriter&) = delete;

    /// Octets written so far.
    std::size_t GetCount() const { return m_pStream->GetLength() - m_ulStart + m_nCollected; }

    /// Gives the stream what has been collected.
    void Flush();

    void WriteOctet(unsigned char by)
    {
        if (m_nCollected == s_nBlock)
            Flush();
        m_block[m_nCollected++] = by;
    }
    void WriteOctets(std::string_view svOctets);

    /// Where the next `nOctets` are to be put, which Advance then counts; null if they are too many.
    unsigned char* Reserve(std::size_t nOctets)
    {
        if (nOctets > s_nBlock - m_nCollected)
        {
            if (nOctets > s_nBlock)
                return nullptr;
            Flush();
        }
        return m_block.data() + m_nCollected;
    }
    void Advance(std::size_t nOctets) { m_nCollected += nOctets; }
    /// Takes back what has been written to a place that Reserve gave for it.
    void GoBackTo(const unsigned char* pReserved)
    {
        m_nCollected = static_cast<std::size_t>(pReserved - m_block.data());
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
    void WriteIntegerBit4(unsigned char byCurrent, std::uint32_t dwValue)
    {
        if (dwValue - 1 < 16)
            WriteOctet(static_cast<unsigned char>(byCurrent | (dwValue - 1)));
        else if (dwValue - 17 < 1024)
            WriteTwoOctets(byCurrent | 16 | (dwValue - 17) >> 8, dwValue - 17);
        else
            WriteLargeIntegerBit4(byCurrent, dwValue);
    }
    /// The integer 0 where integers from 0 stand, beginning at the second bit.
    void WriteZeroBit2(unsigned char byCurrent);

    // Lengths from 1 of strings of octets. There is no form for 0: CQvException "Failed to write FastInfoset. A string
    // of octets must not be empty."

    void WriteLengthBit2(unsigned char byCurrent, std::size_t nLength);
    void WriteLengthBit5(unsigned char byCurrent, std::size_t nLength)
    {
        if (nLength - 1 < 8)
            WriteOctet(static_cast<unsigned char>(byCurrent | (nLength - 1)));
        else
            WriteLargeLengthBit5(byCurrent, nLength);
    }
    void WriteLengthBit7(unsigned char byCurrent, std::size_t nLength)
    {
        if (nLength - 1 < 2)
            WriteOctet(static_cast<unsigned char>(byCurrent | (nLength - 1)));
        else if (nLength - 3 < 256)
            WriteTwoOctets(byCurrent | 2u, static_cast<std::uint32_t>(nLength - 3));
        else
            WriteLargeLengthBit7(byCurrent, nLength);
    }

private:
    // What is beyond the forms above, which nearly all integers and lengths take.
    void WriteLargeIntegerBit2(unsigned char byCurrent, std::uint32_t dwValue);
    void WriteLargeIntegerBit3(unsigned char byCurrent, std::uint32_t dwValue);
    void WriteLargeIntegerBit4(unsigned char byCurrent, std::uint32_t dwValue);
    void WriteLargeLengthBit5(unsigned char byCurrent, std::size_t nLength);
    void WriteLargeLengthBit7(unsigned char byCurrent, std::size_t nLength);
    /// The low octet of each.
    void WriteTwoOctets(std::uint32_t dwFirst, std::uint32_t dwSecond)
    {
        WriteOctet(static_cast<unsigned char>(dwFirst));
        WriteOctet(static_cast<unsigned char>(dwSecond));
    }

    struct SForm;
    template <std::size_t nForms>
    void Write(const SForm (&forms)[nForms], unsigned char byCurrent, std::uint32_t dwValue);
    template <std::size_t nForms>
    void WriteLength(const SForm (&forms)[nForms], unsigned char byCurrent, std::size_t nLength);

    static constexpr std::size_t s_nBlock = 4096;

    CBinaryStream* m_pStream;
    unsigned long m_ulStart;
    std::size_t m_nCollected = 0;
    std::array<unsigned char, s_nBlock> m_block;
};

} // namespace QvXmlLib9
