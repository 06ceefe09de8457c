#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__) && defined(__GNUC__)
#define QV_WIDE_RUNS 1
#include <emmintrin.h>
#endif

namespace QvXmlLib9
{

/// Runs of bytes that need no look one by one. Each function gives the first byte that needs one, or `pEnd`; such are
/// in any case the bytes of characters beyond ASCII, and control characters.
struct SPlainRuns
{
    /// Text of an element: stops at `<`, `&`, `]` and carriage returns, and not at tabs and line feeds.
    static const char* FindTextEnd(const char* p, const char* pEnd) { return Find<s_nText>(p, pEnd); }

    /// A value of an attribute: stops at `<`, `&`, both quotes, and all white space but blanks.
    static const char* FindValueEnd(const char* p, const char* pEnd) { return Find<s_nValue>(p, pEnd); }

private:
    static constexpr std::uint8_t s_nText = 1;
    static constexpr std::uint8_t s_nValue = 2;

    static constexpr std::array<std::uint8_t, 256> MakeStops()
    {
        std::array<std::uint8_t, 256> stops{};
        for (std::size_t n = 0; n < stops.size(); ++n)
            stops[n] = n < 0x20 || n >= 0x80 ? s_nText | s_nValue : 0;
        stops['\t'] = stops['\n'] = s_nValue;
        stops['<'] = stops['&'] = s_nText | s_nValue;
        stops[']'] = s_nText;
        stops['"'] = stops['\''] = s_nValue;
        return stops;
    }

    template <std::uint8_t nKind>
    static const char* Find(const char* p, const char* pEnd)
    {
        while (p != pEnd && (s_stops[static_cast<unsigned char>(*p)] & nKind) == 0)
            ++p;
        return p;
    }

    static const std::array<std::uint8_t, 256> s_stops;
};

inline constexpr std::array<std::uint8_t, 256> SPlainRuns::s_stops = SPlainRuns::MakeStops();

#if defined(QV_WIDE_RUNS)

/// The same by sixteen bytes at a time.
struct SWideRuns
{
    static const char* FindTextEnd(const char* p, const char* pEnd)
    {
        for (; pEnd - p >= 16; p += 16)
        {
            const __m128i bytes = Load(p);
            const __m128i marks = Or(Or(Is(bytes, '<'), Is(bytes, '&')), Is(bytes, ']'));
            const __m128i blanks = Or(Is(bytes, '\n'), Is(bytes, '\t'));
            const int nStops = _mm_movemask_epi8(Or(marks, _mm_andnot_si128(blanks, IsSpecial(bytes))));
            if (nStops != 0)
                return p + __builtin_ctz(static_cast<unsigned>(nStops));
        }
        return SPlainRuns::FindTextEnd(p, pEnd);
    }

    static const char* FindValueEnd(const char* p, const char* pEnd)
    {
        for (; pEnd - p >= 16; p += 16)
        {
            const __m128i bytes = Load(p);
            const __m128i marks = Or(Or(Is(bytes, '<'), Is(bytes, '&')), Or(Is(bytes, '"'), Is(bytes, '\'')));
            const int nStops = _mm_movemask_epi8(Or(marks, IsSpecial(bytes)));
            if (nStops != 0)
                return p + __builtin_ctz(static_cast<unsigned>(nStops));
        }
        return SPlainRuns::FindValueEnd(p, pEnd);
    }

private:
    static __m128i Load(const char* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
    static __m128i Or(__m128i left, __m128i right) { return _mm_or_si128(left, right); }
    static __m128i Is(__m128i bytes, char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); }
    /// Bytes count as signed, so that those beyond ASCII are below the blank too.
    static __m128i IsSpecial(__m128i bytes) { return _mm_cmplt_epi8(bytes, _mm_set1_epi8(' ')); }
};

#else

using SWideRuns = SPlainRuns;

#endif

} // namespace QvXmlLib9
