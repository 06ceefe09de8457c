#include "quiver/fastinfoset/FIAlphabet.h"

#include "quiver/foundation/Exceptions.h"

#include <cstdint>

namespace QvXmlLib9
{

namespace
{

constexpr std::size_t s_nLeastLength = 2;
constexpr std::size_t s_nGreatestLength = 1048576;

/// The nibble that fills the last octet behind an odd count of characters.
constexpr unsigned s_nNibbleEnd = 15;

bool IsUsable(std::wstring_view svAlphabet)
{
    return svAlphabet.size() >= s_nLeastLength && svAlphabet.size() <= s_nGreatestLength;
}

unsigned WidthOf(std::wstring_view svAlphabet)
{
    unsigned nWidth = 2;
    while (std::size_t{1} << nWidth <= svAlphabet.size())
        ++nWidth;
    return nWidth;
}

unsigned PositionOf(std::wstring_view svAlphabet, wchar_t c)
{
    // The digits head the built-in alphabets.
    const auto nDigit = static_cast<std::size_t>(c - L'0');
    if (nDigit < 10 && nDigit < svAlphabet.size() && svAlphabet[nDigit] == c)
        return static_cast<unsigned>(nDigit);
    const std::size_t nPosition = svAlphabet.find(c);
    if (nPosition == std::wstring_view::npos)
        throw CQvException(L"Failed to write FastInfoset. Invalid character not found for Restricted Alphabet.");
    return static_cast<unsigned>(nPosition);
}

wchar_t CharacterAt(std::wstring_view svAlphabet, std::size_t nPosition)
{
    if (nPosition >= svAlphabet.size())
        throw CQvException(L"Failed to parse FastInfoset. Invalid character index for Restricted Alphabet.");
    return svAlphabet[nPosition];
}

void DecodeNibbles(std::wstring& strText, std::wstring_view svAlphabet, std::string_view svOctets)
{
    for (const char c : svOctets)
    {
        const auto by = static_cast<unsigned char>(c);
        strText += CharacterAt(svAlphabet, by >> 4);
        if ((by & 0x0F) == s_nNibbleEnd)
            return;
        strText += CharacterAt(svAlphabet, by & 0x0F);
    }
}

void DecodeOctets(std::wstring& strText, std::wstring_view svAlphabet, std::string_view svOctets)
{
    for (const char c : svOctets)
        strText += CharacterAt(svAlphabet, static_cast<unsigned char>(c));
}

void DecodeBits(std::wstring& strText, std::wstring_view svAlphabet, std::string_view svOctets, unsigned nWidth)
{
    const std::uint32_t nEnd = (std::uint32_t{1} << nWidth) - 1;
    std::uint32_t nBits = 0;
    unsigned nBitsHeld = 0;
    for (const char c : svOctets)
    {
        nBits = nBits << 8 | static_cast<unsigned char>(c);
        nBitsHeld += 8;
        while (nBitsHeld >= nWidth)
        {
            nBitsHeld -= nWidth;
            const std::uint32_t nPosition = nBits >> nBitsHeld & nEnd;
            if (nPosition == nEnd)
                return;
            strText += CharacterAt(svAlphabet, nPosition);
        }
    }
}

} // namespace

void AppendRestrictedAlphabetString(std::string& strOctets, std::wstring_view svAlphabet, std::wstring_view svText)
{
    if (!IsUsable(svAlphabet))
        throw CQvException(L"Failed to write FastInfoset. Invalid Restricted Alphabet. Alphabet must contain between 2 "
                           L"and 2^20 characters.");
    const unsigned nWidth = WidthOf(svAlphabet);
    if (nWidth == 4)
    {
        for (std::size_t n = 0; n < svText.size(); n += 2)
        {
            const unsigned nHigh = PositionOf(svAlphabet, svText[n]);
            const unsigned nLow = n + 1 < svText.size() ? PositionOf(svAlphabet, svText[n + 1]) : s_nNibbleEnd;
            strOctets += static_cast<char>(nHigh << 4 | nLow);
        }
    }
    else if (nWidth == 8)
    {
        for (const wchar_t c : svText)
            strOctets += static_cast<char>(PositionOf(svAlphabet, c));
    }
    else
    {
        throw CQvException(L"Failed to write FastInfoset. Unsupported Feature in AppendRestrictedAlphabetString.");
    }
}

void DecodeRestrictedAlphabetString(std::wstring& strText, std::wstring_view svAlphabet, std::string_view svOctets)
{
    if (!IsUsable(svAlphabet))
        throw CQvException(
            L"Failed to parse FastInfoset. Invalid Encoding of Restricted Alphabet. Alphabet must contain "
            L"between 2 and 2^20 characters.");
    const unsigned nWidth = WidthOf(svAlphabet);
    if (nWidth == 4)
        DecodeNibbles(strText, svAlphabet, svOctets);
    else if (nWidth == 8)
        DecodeOctets(strText, svAlphabet, svOctets);
    else
        DecodeBits(strText, svAlphabet, svOctets, nWidth);
}

} // namespace QvXmlLib9
