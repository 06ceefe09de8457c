#include "quiver/fastinfoset/FIOctetWriter.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"

#include <cstring>

namespace QvXmlLib9
{

/// One of the forms that an integer or a length takes.
struct CFIOctetWriter::SForm
{
    /// Least value of the form.
    std::uint32_t dwFirst;
    /// What is taken off a value.
    std::uint32_t dwOffset;
    /// The bits that tell the form.
    unsigned char byForm;
    /// Octets that follow the first.
    int nMore;
};

template <std::size_t nForms>
void CFIOctetWriter::Write(const SForm (&forms)[nForms], unsigned char byCurrent, std::uint32_t dwValue)
{
    QV_ASSERT_MSG(dwValue > 0, "dwVal > 0");
    std::size_t nForm = 0;
    while (nForm + 1 < nForms && dwValue >= forms[nForm + 1].dwFirst)
        ++nForm;
    const SForm& form = forms[nForm];
    const std::uint64_t nRest = dwValue - form.dwOffset;
    WriteOctet(static_cast<unsigned char>(byCurrent | form.byForm | nRest >> (8 * form.nMore)));
    for (int n = form.nMore; n-- > 0;)
        WriteOctet(static_cast<unsigned char>(nRest >> (8 * n)));
}

template <std::size_t nForms>
void CFIOctetWriter::WriteLength(const SForm (&forms)[nForms], unsigned char byCurrent, std::size_t nLength)
{
    if (nLength == 0)
        throw CQvException(L"Failed to write FastInfoset. A string of octets must not be empty.");
    if (nLength > 0xFFFFFFFF)
        throw CQvException(L"Failed to write FastInfoset. A string of octets is too long.");
    Write(forms, byCurrent, static_cast<std::uint32_t>(nLength));
}

void CFIOctetWriter::Flush()
{
    if (m_nCollected == 0)
        return;
    m_pStream->Append(m_block.data(), static_cast<unsigned long>(m_nCollected));
    m_nCollected = 0;
}

void CFIOctetWriter::WriteOctets(std::string_view svOctets)
{
    if (unsigned char* const pOut = Reserve(svOctets.size()))
    {
        std::memcpy(pOut, svOctets.data(), svOctets.size());
        Advance(svOctets.size());
        return;
    }
    Flush();
    m_pStream->Append(reinterpret_cast<const unsigned char*>(svOctets.data()),
                      static_cast<unsigned long>(svOctets.size()));
}

void CFIOctetWriter::WriteLargeIntegerBit2(unsigned char byCurrent, std::uint32_t dwValue)
{
    static constexpr SForm s_forms[] = {{1, 1, 0, 0}, {65, 65, 64, 1}, {8257, 8257, 96, 2}};
    Write(s_forms, byCurrent, dwValue);
}

void CFIOctetWriter::WriteLargeIntegerBit3(unsigned char byCurrent, std::uint32_t dwValue)
{
    static constexpr SForm s_forms[] = {
        {1, 1, 0, 0},
        {33, 33, 32, 1},
        {2081, 2081, 40, 2},
        // Written documents count on the difference of one.
        {526369, 526368, 48, 3},
    };
    Write(s_forms, byCurrent, dwValue);
}

void CFIOctetWriter::WriteLargeIntegerBit4(unsigned char byCurrent, std::uint32_t dwValue)
{
    static constexpr SForm s_forms[] = {{1, 1, 0, 0}, {17, 17, 16, 1}, {1041, 1041, 20, 2}, {263185, 263185, 24, 3}};
    Write(s_forms, byCurrent, dwValue);
}

void CFIOctetWriter::WriteZeroBit2(unsigned char byCurrent)
{
    WriteOctet(static_cast<unsigned char>(byCurrent | 127));
}

void CFIOctetWriter::WriteLengthBit2(unsigned char byCurrent, std::size_t nLength)
{
    static constexpr SForm s_forms[] = {{1, 1, 0, 0}, {65, 65, 64, 1}, {321, 321, 96, 4}};
    WriteLength(s_forms, byCurrent, nLength);
}

void CFIOctetWriter::WriteLargeLengthBit5(unsigned char byCurrent, std::size_t nLength)
{
    static constexpr SForm s_forms[] = {{1, 1, 0, 0}, {9, 9, 8, 1}, {265, 265, 12, 4}};
    WriteLength(s_forms, byCurrent, nLength);
}

void CFIOctetWriter::WriteLargeLengthBit7(unsigned char byCurrent, std::size_t nLength)
{
    static constexpr SForm s_forms[] = {{1, 1, 0, 0}, {3, 3, 2, 1}, {259, 259, 3, 4}};
    WriteLength(s_forms, byCurrent, nLength);
}

} // namespace QvXmlLib9
