#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

namespace fuzz
{

/// The input of a fuzz target as a row of decisions. When the input has come to its end, all further ones are 0.
class CDecisions
{
public:
    CDecisions(const std::uint8_t* pData, std::size_t nSize)
        : m_pData(pData)
        , m_nLeft(nSize)
    {
    }

    std::uint8_t Byte()
    {
        if (m_nLeft == 0)
            return 0;
        --m_nLeft;
        return *m_pData++;
    }
    bool Bool() { return (Byte() & 1) != 0; }

    /// @param nCount above 0.
    /// @return 0 to nCount - 1.
    std::size_t Below(std::size_t nCount)
    {
        std::size_t nValue = Byte();
        if (nCount > 256)
            nValue |= static_cast<std::size_t>(Byte()) << 8;
        return nValue % nCount;
    }

    template <class TItem, std::size_t t_nCount>
    const TItem& OneOf(const TItem (&items)[t_nCount])
    {
        return items[Below(t_nCount)];
    }

    /// Whatever bits the input has for a number.
    template <class TNumber>
    TNumber Bits()
    {
        static_assert(std::is_arithmetic_v<TNumber>);
        unsigned char bytes[sizeof(TNumber)];
        for (unsigned char& byByte : bytes)
            byByte = Byte();
        TNumber number;
        std::memcpy(&number, bytes, sizeof(number));
        return number;
    }

    /// So many bytes, or as many as there are.
    std::string Bytes(std::size_t nCount)
    {
        std::string strBytes;
        for (; nCount > 0 && m_nLeft > 0; --nCount)
            strBytes += static_cast<char>(Byte());
        return strBytes;
    }

    bool IsAtEnd() const { return m_nLeft == 0; }

private:
    const std::uint8_t* m_pData;
    std::size_t m_nLeft;
};

} // namespace fuzz
