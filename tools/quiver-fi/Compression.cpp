#include "tools/quiver-fi/Compression.h"

#include "tools/quiver-fi/Files.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <zlib.h>

namespace quiver_fi
{

namespace
{

constexpr int s_nWindowBits = 15;
constexpr int s_nGzipWrapper = 16;
constexpr int s_nDetectWrapper = 32;
constexpr int s_nMemoryLevel = 8;

/// Speed counts for more than the last percent of size.
constexpr int s_nLevel = 1;

constexpr std::string_view s_svGzip("\x1F\x8B", 2);

/// What is handed to zlib at once; its counts have no more bits.
constexpr std::size_t s_nMost = std::numeric_limits<uInt>::max();

constexpr std::size_t s_nChunk = 64 * 1024;

struct SInflateEnd
{
    void operator()(z_stream* pStream) const { inflateEnd(pStream); }
};

struct SDeflateEnd
{
    void operator()(z_stream* pStream) const { deflateEnd(pStream); }
};

bool IsGzip(std::string_view bytes)
{
    return bytes.substr(0, s_svGzip.size()) == s_svGzip;
}

/// Neither XML text nor Fast Infoset begins like a zlib stream.
bool IsZlib(std::string_view bytes)
{
    if (bytes.size() < 2)
        return false;
    const unsigned nFirst = static_cast<unsigned char>(bytes[0]);
    const unsigned nSecond = static_cast<unsigned char>(bytes[1]);
    return (nFirst & 15) == Z_DEFLATED && (nFirst << 8 | nSecond) % 31 == 0;
}

Bytef* Input(std::string_view bytes)
{
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

[[noreturn]] void ThrowDamaged(std::string_view bytes)
{
    throw std::runtime_error(IsGzip(bytes) ? "the gzip stream is damaged or cut short"
                                           : "the zlib stream is damaged or cut short");
}

/// Inflates the stream in front of `rest` and steps over it. `fnTake` gets what it holds piece by piece.
template <class FnTake>
void InflateStream(std::string_view& rest, FnTake&& fnTake)
{
    z_stream stream{};
    if (inflateInit2(&stream, s_nWindowBits + s_nDetectWrapper) != Z_OK)
        throw std::bad_alloc();
    const std::unique_ptr<z_stream, SInflateEnd> pEnd(&stream);
    const std::unique_ptr<Bytef[]> pChunk(new Bytef[s_nChunk]);
    const std::string_view whole = rest;
    int nResult = Z_OK;
    while (nResult == Z_OK)
    {
        const std::size_t nGiven = std::min(rest.size(), s_nMost);
        stream.next_in = Input(rest);
        stream.avail_in = static_cast<uInt>(nGiven);
        stream.next_out = pChunk.get();
        stream.avail_out = static_cast<uInt>(s_nChunk);
        nResult = inflate(&stream, Z_NO_FLUSH);
        rest.remove_prefix(nGiven - stream.avail_in);
        fnTake(std::string_view(reinterpret_cast<const char*>(pChunk.get()), s_nChunk - stream.avail_out));
    }
    if (nResult == Z_MEM_ERROR)
        throw std::bad_alloc();
    if (nResult != Z_STREAM_END)
        ThrowDamaged(whole);
}

template <class FnTake>
void InflateAll(std::string_view bytes, FnTake&& fnTake)
{
    std::string_view rest = bytes;
    do
        InflateStream(rest, fnTake);
    while (IsGzip(rest));
    // Files on some media are filled up with zeros.
    if (rest.find_first_not_of('\0') != std::string_view::npos)
        throw std::runtime_error("something follows the compressed data, octets: " + std::to_string(rest.size()));
}

} // namespace

bool Decompress(std::string& strBytes)
{
    if (!IsGzip(strBytes) && !IsZlib(strBytes))
        return false;
    // Counted first: a few bytes can stand for more than the memory holds.
    std::size_t nLength = 0;
    InflateAll(strBytes,
               [&nLength](std::string_view piece)
               {
                   nLength += piece.size();
                   if (nLength > s_nLengthLimit)
                       throw std::runtime_error("the compressed data hold more than 4294967295 bytes");
               });
    std::string strPlain;
    strPlain.reserve(nLength);
    InflateAll(strBytes, [&strPlain](std::string_view piece) { strPlain += piece; });
    strBytes = std::move(strPlain);
    return true;
}

std::string Compress(const std::string& strBytes)
{
    z_stream stream{};
    if (deflateInit2(&stream, s_nLevel, Z_DEFLATED, s_nWindowBits + s_nGzipWrapper, s_nMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    const std::unique_ptr<z_stream, SDeflateEnd> pEnd(&stream);
    const std::unique_ptr<Bytef[]> pChunk(new Bytef[s_nChunk]);
    std::string strCompressed;
    std::string_view rest = strBytes;
    int nResult = Z_OK;
    while (nResult != Z_STREAM_END)
    {
        const std::size_t nGiven = std::min(rest.size(), s_nMost);
        stream.next_in = Input(rest);
        stream.avail_in = static_cast<uInt>(nGiven);
        stream.next_out = pChunk.get();
        stream.avail_out = static_cast<uInt>(s_nChunk);
        nResult = deflate(&stream, nGiven == rest.size() ? Z_FINISH : Z_NO_FLUSH);
        rest.remove_prefix(nGiven - stream.avail_in);
        strCompressed.append(reinterpret_cast<const char*>(pChunk.get()), s_nChunk - stream.avail_out);
    }
    return strCompressed;
}

} // namespace quiver_fi
