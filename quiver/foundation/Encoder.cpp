#include "quiver/foundation/Encoder.h"

#include "quiver/foundation/Assert.h"

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace QvXmlLib9
{

namespace
{

constexpr std::uint32_t s_nHighFirst = 0xD800;
constexpr std::uint32_t s_nLowFirst = 0xDC00;
constexpr std::uint32_t s_nSurrogateLast = 0xDFFF;
constexpr std::uint32_t s_nLastCodePoint = 0x10FFFF;
constexpr wchar_t s_cReplacement = 0xFFFD;

/// Elements are tested and copied in groups of this many, in loops that a compiler turns into vector instructions.
constexpr std::size_t s_nGroup = 16;

std::uint32_t CodeOf(wchar_t c)
{
    return static_cast<std::make_unsigned_t<wchar_t>>(c);
}

wchar_t HighOf(std::uint32_t nCode)
{
    return static_cast<wchar_t>(s_nHighFirst + ((nCode - 0x10000) >> 10));
}

wchar_t LowOf(std::uint32_t nCode)
{
    return static_cast<wchar_t>(s_nLowFirst + ((nCode - 0x10000) & 0x3FF));
}

bool IsTrail(unsigned char by)
{
    return (by & 0xC0) == 0x80;
}

/// Least and greatest second byte for a lead byte, and the length of the sequence (Unicode, table 3-7). A length of 0
/// marks bytes that begin no sequence.
struct SLead
{
    unsigned char nLength;
    unsigned char bySecondMin;
    unsigned char bySecondMax;
};

constexpr SLead LeadOf(unsigned char by)
{
    if (by < 0x80)
        return {1, 0, 0};
    if (by < 0xC2)
        return {0, 0, 0};
    if (by < 0xE0)
        return {2, 0x80, 0xBF};
    if (by < 0xF0)
        return {3, static_cast<unsigned char>(by == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(by == 0xED ? 0x9F : 0xBF)};
    if (by < 0xF5)
        return {4, static_cast<unsigned char>(by == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(by == 0xF4 ? 0x8F : 0xBF)};
    return {0, 0, 0};
}

/// Reads one code point and moves `p` behind it; false, with `p` left alone, at bytes that are not well-formed.
bool ReadUtf8(const unsigned char*& p, const unsigned char* pEnd, std::uint32_t& nCode)
{
    const SLead lead = LeadOf(*p);
    if (lead.nLength == 0 || pEnd - p < lead.nLength)
        return false;
    if (lead.nLength == 1)
    {
        nCode = *p++;
        return true;
    }
    if (p[1] < lead.bySecondMin || p[1] > lead.bySecondMax)
        return false;
    nCode = (*p & (0x7Fu >> lead.nLength)) << 6 | (p[1] & 0x3Fu);
    for (int i = 2; i < lead.nLength; ++i)
    {
        if (!IsTrail(p[i]))
            return false;
        nCode = nCode << 6 | (p[i] & 0x3Fu);
    }
    p += lead.nLength;
    return true;
}

/// Reads one code point, from a surrogate pair or from one element, and moves `p` behind it; false, with `p` left
/// alone, at an element that stands for none.
bool ReadText(const wchar_t*& p, const wchar_t* pEnd, std::uint32_t& nCode)
{
    nCode = CodeOf(*p);
    if (nCode > s_nLastCodePoint || (nCode >= s_nLowFirst && nCode <= s_nSurrogateLast))
        return false;
    if (nCode >= s_nHighFirst && nCode < s_nLowFirst)
    {
        const std::uint32_t nLow = pEnd - p > 1 ? CodeOf(p[1]) : 0;
        if (nLow < s_nLowFirst || nLow > s_nSurrogateLast)
            return false;
        nCode = 0x10000 + ((nCode - s_nHighFirst) << 10) + (nLow - s_nLowFirst);
        ++p;
    }
    ++p;
    return true;
}

unsigned char* WriteUtf8CodePoint(std::uint32_t nCode, unsigned char* p)
{
    const auto fnTrail = [](std::uint32_t nBits)
    {
        return static_cast<unsigned char>(0x80 | (nBits & 0x3F));
    };
    if (nCode < 0x80)
    {
        *p++ = static_cast<unsigned char>(nCode);
    }
    else if (nCode < 0x800)
    {
        *p++ = static_cast<unsigned char>(0xC0 | nCode >> 6);
        *p++ = fnTrail(nCode);
    }
    else if (nCode < 0x10000)
    {
        *p++ = static_cast<unsigned char>(0xE0 | nCode >> 12);
        *p++ = fnTrail(nCode >> 6);
        *p++ = fnTrail(nCode);
    }
    else
    {
        *p++ = static_cast<unsigned char>(0xF0 | nCode >> 18);
        *p++ = fnTrail(nCode >> 12);
        *p++ = fnTrail(nCode >> 6);
        *p++ = fnTrail(nCode);
    }
    return p;
}

bool IsAsciiGroup(const unsigned char* p)
{
    std::uint64_t nFirst = 0;
    std::uint64_t nSecond = 0;
    std::memcpy(&nFirst, p, 8);
    std::memcpy(&nSecond, p + 8, 8);
    return ((nFirst | nSecond) & 0x8080808080808080u) == 0;
}

/// Whether no element of a group reaches `nBound`, a power of two.
bool IsGroupBelow(const wchar_t* p, std::uint32_t nBound)
{
    std::uint32_t nAll = 0;
    for (std::size_t i = 0; i < s_nGroup; ++i)
        nAll |= CodeOf(p[i]);
    return nAll < nBound;
}

/// The end of the groups of ASCII that a text begins with.
const wchar_t* SkipAsciiGroups(const wchar_t* p, const wchar_t* pEnd)
{
    while (static_cast<std::size_t>(pEnd - p) >= s_nGroup && IsGroupBelow(p, 0x80))
        p += s_nGroup;
    return p;
}

/// Writes the ASCII that `p` begins with, and moves both pointers behind it. `pOut` has room for all the text.
void NarrowAscii(const wchar_t*& p, const wchar_t* pEnd, unsigned char*& pOut)
{
    // In variables of its own: the bytes written could otherwise be those of the pointers.
    const wchar_t* pFrom = p;
    unsigned char* pTo = pOut;
    for (const wchar_t* const pGroupsEnd = SkipAsciiGroups(pFrom, pEnd); pFrom != pGroupsEnd;)
    {
        for (std::size_t i = 0; i < s_nGroup; ++i)
            pTo[i] = static_cast<unsigned char>(pFrom[i]);
        pFrom += s_nGroup;
        pTo += s_nGroup;
    }
    while (pFrom != pEnd && CodeOf(*pFrom) < 0x80)
        *pTo++ = static_cast<unsigned char>(*pFrom++);
    p = pFrom;
    pOut = pTo;
}

/// Writes the ASCII that `p` begins with, and moves both pointers behind it. `pOut` has room for all the bytes.
void WidenAscii(const unsigned char*& p, const unsigned char* pEnd, wchar_t*& pOut)
{
    while (static_cast<std::size_t>(pEnd - p) >= s_nGroup && IsAsciiGroup(p))
    {
        for (std::size_t i = 0; i < s_nGroup; ++i)
            pOut[i] = static_cast<wchar_t>(p[i]);
        p += s_nGroup;
        pOut += s_nGroup;
    }
    while (p != pEnd && *p < 0x80)
        *pOut++ = static_cast<wchar_t>(*p++);
}

wchar_t* WriteUtf16CodePoint(std::uint32_t nCode, wchar_t* p)
{
    if (nCode < 0x10000)
    {
        *p++ = static_cast<wchar_t>(nCode);
    }
    else
    {
        *p++ = HighOf(nCode);
        *p++ = LowOf(nCode);
    }
    return p;
}

/// Writes the UTF-16 form of bytes up to the first fault, and moves `p` there. `pOut` has room for a unit a byte.
wchar_t* WriteUtf16(const unsigned char*& p, const unsigned char* pEnd, wchar_t* pOut)
{
    std::uint32_t nCode = 0;
    while (p != pEnd)
    {
        if (*p < 0x80)
            WidenAscii(p, pEnd, pOut);
        else if (ReadUtf8(p, pEnd, nCode))
            pOut = WriteUtf16CodePoint(nCode, pOut);
        else
            break;
    }
    return pOut;
}

/// Writes the UTF-8 form of text up to the first fault, and moves `p` there.
unsigned char* WriteUtf8(const wchar_t*& p, const wchar_t* pEnd, unsigned char* pOut)
{
    std::uint32_t nCode = 0;
    while (p != pEnd)
    {
        if (CodeOf(*p) < 0x80)
            NarrowAscii(p, pEnd, pOut);
        else if (ReadText(p, pEnd, nCode))
            pOut = WriteUtf8CodePoint(nCode, pOut);
        else
            break;
    }
    return pOut;
}

/// Adds up what `fnCount` gives for each element. The partial sums have 32 bits, which keeps the inner loop fit for
/// vector instructions.
template <class FnCount>
std::size_t SumOf(std::wstring_view text, FnCount fnCount)
{
    constexpr std::size_t nStep = 4096;
    std::size_t nSum = 0;
    for (std::size_t nAt = 0; nAt < text.size(); nAt += nStep)
    {
        std::uint32_t nPart = 0;
        for (const wchar_t c : text.substr(nAt, nStep))
            nPart += fnCount(CodeOf(c));
        nSum += nPart;
    }
    return nSum;
}

/// UTF-16 units that well-formed UTF-8 bytes turn into: one for every byte that begins a sequence, and another one for
/// every sequence of four.
std::size_t CountUtf16Units(const unsigned char* p, const unsigned char* pEnd)
{
    std::size_t nUnits = 0;
    for (; p != pEnd; ++p)
        nUnits += static_cast<std::size_t>(!IsTrail(*p)) + static_cast<std::size_t>(*p >= 0xF0);
    return nUnits;
}

bool IsWholeCodePoint(std::uint32_t nCode)
{
    return nCode - 0x10000 <= s_nLastCodePoint - 0x10000;
}

/// Calls `fnUnit` for each UTF-16 unit of an element.
template <class FnUnit>
void ForUnitsOf(wchar_t c, FnUnit fnUnit)
{
    const std::uint32_t nCode = CodeOf(c);
    if (nCode < 0x10000)
    {
        fnUnit(c);
    }
    else if (IsWholeCodePoint(nCode))
    {
        fnUnit(HighOf(nCode));
        fnUnit(LowOf(nCode));
    }
    else
    {
        fnUnit(s_cReplacement);
    }
}

} // namespace

std::string_view GetByteOrderMark(XmlEncoding eEncoding)
{
    const bool bUtf16 = eEncoding == Encoding_UTF16 || eEncoding == Encoding_UTF16_Undeclared;
    return bUtf16 ? std::string_view("\xFF\xFE") : std::string_view();
}

// --- UTF-8 to text --------------------------------------------------------------------------------------------------

bool AppendUtf8AsUtf16(std::wstring& strOut, std::string_view bytes)
{
    // Through a buffer, so that a string never holds more memory than its text takes.
    wchar_t szUnits[512];
    constexpr std::size_t nPiece = sizeof(szUnits) / sizeof(szUnits[0]);
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto* const pEnd = p + bytes.size();
    while (p != pEnd)
    {
        const unsigned char* pPieceEnd = pEnd;
        if (static_cast<std::size_t>(pEnd - p) > nPiece)
        {
            pPieceEnd = p + nPiece;
            for (int i = 0; i < 3 && IsTrail(*pPieceEnd); ++i)
                --pPieceEnd;
        }
        const wchar_t* const pUnitsEnd = WriteUtf16(p, pPieceEnd, szUnits);
        strOut.append(szUnits, static_cast<std::size_t>(pUnitsEnd - szUnits));
        if (p != pPieceEnd)
            return false;
    }
    return true;
}

std::wstring DecodeUtf8(const unsigned char* pBytes, unsigned long ulLength)
{
    if (pBytes == nullptr || ulLength == 0)
        return std::wstring();
    const unsigned char* p = pBytes;
    const unsigned char* const pEnd = p + ulLength;
    const std::size_t dwUnicodeLen = CountUtf16Units(p, pEnd);
    std::wstring strText;
    strText.reserve(dwUnicodeLen);
    AppendUtf8AsUtf16(strText, std::string_view(reinterpret_cast<const char*>(p), ulLength));
    const std::size_t dwActualLen = strText.size();
    QV_ASSERT(dwActualLen != 0);
    QV_ASSERT(dwActualLen == dwUnicodeLen);
    static_cast<void>(dwActualLen);
    return strText;
}

std::wstring DecodeUtf16(const wchar_t* lpctUnits, unsigned long ulCount)
{
    return lpctUnits == nullptr || ulCount == 0 ? std::wstring() : ToUtf16Units(std::wstring_view(lpctUnits, ulCount));
}

std::wstring DecodeUtf16(const unsigned char* pBytes, unsigned long ulCount)
{
    std::wstring strText(pBytes != nullptr ? ulCount : 0, 0);
    for (wchar_t& c : strText)
    {
        c = static_cast<wchar_t>(pBytes[0] | pBytes[1] << 8);
        pBytes += 2;
    }
    return strText;
}

// --- Text to UTF-8 --------------------------------------------------------------------------------------------------

std::size_t GetUtf8Length(std::wstring_view text)
{
    const auto nAscii = static_cast<std::size_t>(SkipAsciiGroups(text.data(), text.data() + text.size()) - text.data());
    // Each half of a surrogate pair counts 2 of the pair's 4 bytes.
    return nAscii + SumOf(text.substr(nAscii),
                          [](std::uint32_t nCode)
                          {
                              const bool bSurrogate = nCode - s_nHighFirst <= s_nSurrogateLast - s_nHighFirst;
                              return 1u + (nCode >= 0x80) + (nCode >= 0x800) + (nCode >= 0x10000) - bSurrogate;
                          });
}

std::size_t WriteUtf8(std::wstring_view text, unsigned char* pOut)
{
    bool bWhole = false;
    return WriteUtf8(text, pOut, bWhole);
}

std::size_t WriteUtf8(std::wstring_view text, unsigned char* pOut, bool& bWhole)
{
    const wchar_t* p = text.data();
    const wchar_t* const pEnd = p + text.size();
    const unsigned char* const pOutEnd = WriteUtf8(p, pEnd, pOut);
    bWhole = p == pEnd;
    return static_cast<std::size_t>(pOutEnd - pOut);
}

bool AppendUtf8(std::string& strOut, std::wstring_view text)
{
    const std::size_t nOld = strOut.size();
    strOut.resize(nOld + GetUtf8Length(text));
    const wchar_t* p = text.data();
    const wchar_t* const pEnd = p + text.size();
    auto* const pOut = reinterpret_cast<unsigned char*>(strOut.data() + nOld);
    const unsigned char* const pOutEnd = WriteUtf8(p, pEnd, pOut);
    strOut.resize(nOld + static_cast<std::size_t>(pOutEnd - pOut));
    return p == pEnd;
}

CBinaryData EncodeUtf8(const wchar_t* lpctText)
{
    const wchar_t* p = lpctText;
    const wchar_t* const pEnd = p != nullptr ? p + std::wcslen(p) : p;
    if (p == pEnd)
        return CBinaryData();

    // Nearly all text is ASCII, so it is written without being measured, and measured only from where that ends.
    const auto nUnits = static_cast<std::size_t>(pEnd - p);
    Throw_IfBinaryDataIsTooLong(nUnits);
    std::unique_ptr<unsigned char[]> pBytes(new unsigned char[nUnits]);
    unsigned char* pOut = pBytes.get();
    NarrowAscii(p, pEnd, pOut);
    const auto dwAsciiLen = static_cast<std::size_t>(pOut - pBytes.get());
    std::size_t dwUtf8Len = dwAsciiLen;
    if (p != pEnd)
    {
        dwUtf8Len += GetUtf8Length(std::wstring_view(p, static_cast<std::size_t>(pEnd - p)));
        Throw_IfBinaryDataIsTooLong(dwUtf8Len);
        std::unique_ptr<unsigned char[]> pAll(new unsigned char[dwUtf8Len]);
        std::memcpy(pAll.get(), pBytes.get(), dwAsciiLen);
        pBytes = std::move(pAll);
        pOut = WriteUtf8(p, pEnd, pBytes.get() + dwAsciiLen);
    }
    const auto dwActualLen = static_cast<std::size_t>(pOut - pBytes.get());
    QV_ASSERT(dwActualLen != 0);
    QV_ASSERT(dwActualLen == dwUtf8Len);
    return CBinaryData(pBytes.release(), static_cast<unsigned long>(dwActualLen), true);
}

// --- Units ----------------------------------------------------------------------------------------------------------

bool HasWholeCodePoints(std::wstring_view text)
{
    if constexpr (sizeof(wchar_t) == 2)
        return false;
    const wchar_t* p = text.data();
    const wchar_t* const pEnd = p + text.size();
    while (static_cast<std::size_t>(pEnd - p) >= s_nGroup)
    {
        if (!IsGroupBelow(p, 0x10000))
            return true;
        p += s_nGroup;
    }
    for (; p != pEnd; ++p)
    {
        if (CodeOf(*p) > 0xFFFF)
            return true;
    }
    return false;
}

std::size_t GetUtf16Length(std::wstring_view text)
{
    return SumOf(text, [](std::uint32_t nCode) { return 1u + IsWholeCodePoint(nCode); });
}

std::wstring ToUtf16Units(std::wstring_view text)
{
    std::wstring strUnits;
    AppendUtf16Units(strUnits, text);
    return strUnits;
}

std::wstring ToUtf16Units(std::wstring&& strText)
{
    return HasWholeCodePoints(strText) ? ToUtf16Units(std::wstring_view(strText)) : std::move(strText);
}

std::wstring ToUtf16Units(const wchar_t* lpctText)
{
    return lpctText != nullptr ? ToUtf16Units(std::wstring_view(lpctText)) : std::wstring();
}

void AppendUtf16Units(std::wstring& strOut, std::wstring_view text)
{
    if (!HasWholeCodePoints(text))
    {
        strOut.append(text);
        return;
    }
    // Into an array of its own where the text to append may be the very string that is about to grow.
    const bool bOwn =
        !std::less<>()(text.data(), strOut.data()) && std::less<>()(text.data(), strOut.data() + strOut.size());
    const std::wstring strCopy(bOwn ? text : std::wstring_view());
    strOut.reserve(strOut.size() + GetUtf16Length(text));
    for (const wchar_t c : bOwn ? std::wstring_view(strCopy) : text)
        ForUnitsOf(c, [&strOut](wchar_t cUnit) { strOut += cUnit; });
}

void WriteUtf16LittleEndian(std::wstring_view text, unsigned char* pOut)
{
    const auto fnWrite = [&pOut](wchar_t cUnit)
    {
        *pOut++ = static_cast<unsigned char>(CodeOf(cUnit) & 0xFF);
        *pOut++ = static_cast<unsigned char>(CodeOf(cUnit) >> 8);
    };
    const wchar_t* p = text.data();
    const wchar_t* const pEnd = p + text.size();
    while (p != pEnd)
    {
        if (static_cast<std::size_t>(pEnd - p) >= s_nGroup && IsGroupBelow(p, 0x10000))
        {
            for (std::size_t i = 0; i < s_nGroup; ++i)
            {
                pOut[2 * i] = static_cast<unsigned char>(CodeOf(p[i]) & 0xFF);
                pOut[2 * i + 1] = static_cast<unsigned char>(CodeOf(p[i]) >> 8);
            }
            p += s_nGroup;
            pOut += 2 * s_nGroup;
        }
        else
        {
            ForUnitsOf(*p++, fnWrite);
        }
    }
}

} // namespace QvXmlLib9
