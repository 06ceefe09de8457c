#include "quiver/foundation/UnitRuns.h"

#include "quiver/foundation/Apart.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && defined(__GNUC__) && __SIZEOF_WCHAR_T__ == 4
#define QV_WIDE_UNITS 1
#include <emmintrin.h>
#endif

namespace QvXmlLib9
{

namespace
{

/// The units up to ">" that do not stand for themselves, and 0; one bit each.
constexpr std::uint64_t s_nSpecialUnits =
    std::uint64_t{1} << 0 | std::uint64_t{1} << L'\n' | std::uint64_t{1} << L'\r' | std::uint64_t{1} << L'"' |
    std::uint64_t{1} << L'&' | std::uint64_t{1} << L'<' | std::uint64_t{1} << L'>';

bool IsPlain(wchar_t c)
{
    const auto n = static_cast<std::uint32_t>(c);
    return n < 64 ? (s_nSpecialUnits >> n & 1) == 0 : n <= 0xFFFF;
}

/// @return `nAt`, and as many more as there are plain units.
QV_APART std::size_t CopyOneByOne(const wchar_t* pFrom, std::size_t nAt, std::size_t nEnd, wchar_t* pTo)
{
    for (; nAt < nEnd && IsPlain(pFrom[nAt]); ++nAt)
        pTo[nAt] = pFrom[nAt];
    return nAt;
}

#if defined(QV_WIDE_UNITS)

__m128i Load(const wchar_t* p)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

void Store(wchar_t* p, __m128i units)
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), units);
}

/// Whether eight units, narrowed to 16 bits, are plain for sure. Control characters, and what the narrowing has cut to
/// 0x7FFF, have to be looked at one by one.
bool ArePlain(__m128i narrowed)
{
    const auto fnIs = [](__m128i units, int n)
    {
        return _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(n)));
    };
    const auto fnWithout = [narrowed](int nBit)
    {
        return _mm_and_si128(narrowed, _mm_set1_epi16(static_cast<short>(~nBit)));
    };
    const __m128i quotes = fnIs(fnWithout(L'"' ^ L'&'), L'"' & L'&');
    const __m128i angles = fnIs(fnWithout(L'<' ^ L'>'), L'<' & L'>');
    const __m128i low = _mm_cmplt_epi16(narrowed, _mm_set1_epi16(L'\r' + 1));
    const __m128i cut = fnIs(narrowed, 0x7FFF);
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(quotes, angles), _mm_or_si128(low, cut))) == 0;
}

/// Copies four or eight units if they are plain for sure.
bool CopyFour(const wchar_t* pFrom, wchar_t* pTo)
{
    const __m128i units = Load(pFrom);
    Store(pTo, units);
    return ArePlain(_mm_packs_epi32(units, units));
}

bool CopyEight(const wchar_t* pFrom, wchar_t* pTo)
{
    const __m128i first = Load(pFrom);
    const __m128i second = Load(pFrom + 4);
    Store(pTo, first);
    Store(pTo + 4, second);
    return ArePlain(_mm_packs_epi32(first, second));
}

#endif

} // namespace

#if defined(QV_WIDE_UNITS)

// Units that turn out to end the run have been copied by then; they are overwritten by what comes in their place.

std::size_t CopyPlainUnits(const wchar_t* pFrom, std::size_t nUnits, wchar_t* pTo)
{
    if (nUnits < 8)
    {
        if (nUnits >= 4 && CopyFour(pFrom, pTo) && CopyFour(pFrom + nUnits - 4, pTo + nUnits - 4))
            return nUnits;
        return CopyOneByOne(pFrom, 0, nUnits, pTo);
    }
    std::size_t n = 0;
    for (; nUnits - n >= 8; n += 8)
    {
        if (CopyEight(pFrom + n, pTo + n))
            continue;
        const std::size_t nPlain = CopyOneByOne(pFrom, n, n + 8, pTo);
        if (nPlain != n + 8)
            return nPlain;
    }
    if (n == nUnits || CopyEight(pFrom + nUnits - 8, pTo + nUnits - 8))
        return nUnits;
    return CopyOneByOne(pFrom, n, nUnits, pTo);
}

namespace
{

bool WidenEight(const char* pFrom, wchar_t* pTo)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pFrom));
    const __m128i units = _mm_unpacklo_epi8(bytes, zero);
    Store(pTo, _mm_unpacklo_epi16(units, zero));
    Store(pTo + 4, _mm_unpackhi_epi16(units, zero));
    return _mm_movemask_epi8(bytes) == 0;
}

/// @return what has a bit above ASCII if one of the units does, or is 0, of which 1 is taken.
__m128i NarrowEight(const wchar_t* pFrom, unsigned char* pTo)
{
    const __m128i first = Load(pFrom);
    const __m128i second = Load(pFrom + 4);
    const __m128i narrowed = _mm_packs_epi32(first, second);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(pTo), _mm_packus_epi16(narrowed, narrowed));
    const __m128i one = _mm_set1_epi32(1);
    return _mm_or_si128(_mm_or_si128(first, second),
                        _mm_or_si128(_mm_sub_epi32(first, one), _mm_sub_epi32(second, one)));
}

} // namespace

#else

std::size_t CopyPlainUnits(const wchar_t* pFrom, std::size_t nUnits, wchar_t* pTo)
{
    return CopyOneByOne(pFrom, 0, nUnits, pTo);
}

#endif

std::size_t WidenAscii(const char* pFrom, std::size_t nBytes, wchar_t* pTo)
{
    std::size_t n = 0;
#if defined(QV_WIDE_UNITS)
    if (nBytes >= 8)
    {
        for (; nBytes - n >= 8; n += 8)
        {
            if (!WidenEight(pFrom + n, pTo + n))
                return n;
        }
        return n == nBytes || WidenEight(pFrom + nBytes - 8, pTo + nBytes - 8) ? nBytes : n;
    }
#endif
    for (; n != nBytes && static_cast<unsigned char>(pFrom[n]) < 0x80; ++n)
        pTo[n] = static_cast<wchar_t>(pFrom[n]);
    return n;
}

bool NarrowAscii(const wchar_t* pFrom, std::size_t nUnits, unsigned char* pTo)
{
#if defined(QV_WIDE_UNITS)
    if (nUnits >= 8)
    {
        __m128i all = NarrowEight(pFrom + nUnits - 8, pTo + nUnits - 8);
        for (std::size_t n = 0; nUnits - n > 8; n += 8)
            all = _mm_or_si128(all, NarrowEight(pFrom + n, pTo + n));
        const __m128i above = _mm_andnot_si128(_mm_set1_epi32(0x7F), all);
        return _mm_movemask_epi8(_mm_cmpeq_epi32(above, _mm_setzero_si128())) == 0xFFFF;
    }
#endif
    std::uint32_t nAll = 0;
    for (std::size_t n = 0; n < nUnits; ++n)
    {
        nAll |= static_cast<std::uint32_t>(pFrom[n]) | (static_cast<std::uint32_t>(pFrom[n]) - 1);
        pTo[n] = static_cast<unsigned char>(pFrom[n]);
    }
    return nAll < 0x80;
}

bool IsAscii(std::string_view svText)
{
    // Whole words, the last of which may lie over the one ahead of it.
    constexpr std::size_t nWord = sizeof(std::uint64_t);
    const auto fnWordAt = [svText](std::size_t n)
    {
        std::uint64_t nBytes = 0;
        std::memcpy(&nBytes, svText.data() + n, nWord);
        return nBytes;
    };
    std::uint64_t nAll = 0;
    if (svText.size() >= nWord)
    {
        for (std::size_t n = 0; svText.size() - n > nWord; n += nWord)
            nAll |= fnWordAt(n);
        nAll |= fnWordAt(svText.size() - nWord);
    }
    else
    {
        for (const char c : svText)
            nAll |= static_cast<unsigned char>(c);
    }
    return (nAll & 0x8080808080808080u) == 0;
}

} // namespace QvXmlLib9
