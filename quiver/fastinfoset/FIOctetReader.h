#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QvXmlLib9
{

/// Reads the octets of a Fast Infoset document and the integers and lengths in it (X.891, C.21 to C.28), never past the
/// end of the buffer. An item begins at some bit of an octet that has been read already; that octet is handed in whole,
/// and the bits ahead of the item are not looked at.
///
/// Every failure is a CQvException "Failed to parse FastInfoset. ..."
class CFIOctetReader
{
public:
    /// @param svOctets the buffer, which must live as long as the reader.
    explicit CFIOctetReader(std::string_view svOctets)
        : m_pNext(reinterpret_cast<const unsigned char*>(svOctets.data()))
        , m_pEnd(m_pNext + svOctets.size())
    {
    }

    std::size_t GetOctetsLeft() const { return static_cast<std::size_t>(m_pEnd - m_pNext); }

    /// Takes octets off the front.
    /// @param nCount as a document tells it, which can be more than any buffer of the machine holds.
    /// @throws CQvException "... Unexpected End of File."
    std::string_view ReadOctets(std::uint64_t nCount)
    {
        if (nCount > GetOctetsLeft())
            ThrowEndOfFile();
        const auto* const pOctets = reinterpret_cast<const char*>(m_pNext);
        m_pNext += static_cast<std::size_t>(nCount);
        return {pOctets, static_cast<std::size_t>(nCount)};
    }

    unsigned char ReadOctet()
    {
        if (m_pNext == m_pEnd)
            ThrowEndOfFile();
        return *m_pNext++;
    }

    /// The octets ahead, which stay where they are; fewer than asked for at the end of the buffer.
    std::string_view PeekOctets(std::size_t nCount) const
    {
        return std::string_view(reinterpret_cast<const char*>(m_pNext), GetOctetsLeft()).substr(0, nCount);
    }

    // Integers from 1, or from 0.

    std::uint32_t ReadIntegerBit2(unsigned char by);
    std::uint32_t ReadIntegerOrZeroBit2(unsigned char by);
    std::uint32_t ReadIntegerBit3(unsigned char by);
    std::uint32_t ReadIntegerBit4(unsigned char by);

    // Lengths of strings of octets.

    std::uint64_t ReadLengthBit2(unsigned char by);
    std::uint64_t ReadLengthBit5(unsigned char by);
    std::uint64_t ReadLengthBit7(unsigned char by);

    /// The count of items in a list.
    std::uint32_t ReadSequenceLength();

    /// A string of octets whose length begins at the second bit of the next octet.
    std::string_view ReadOctetString() { return ReadOctets(ReadLengthBit2(ReadOctet())); }

    [[noreturn]] static void ThrowEndOfFile();

    /// @throws CQvException always: "... Invalid %s type  on the %s bit of an octet."
    [[noreturn]] static void ThrowInvalid(const wchar_t* lpctType, const wchar_t* lpctBit);

private:
    struct SForm;
    template <std::size_t nForms>
    std::uint64_t Read(const SForm (&forms)[nForms], unsigned char by, const wchar_t* lpctType, const wchar_t* lpctBit);

    const unsigned char* m_pNext;
    const unsigned char* m_pEnd;
};

} // namespace QvXmlLib9
