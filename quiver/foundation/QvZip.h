#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"
#include "quiver/foundation/XmlSerializationTypes.h"

#include <cstdint>

namespace QvXmlLib9
{

class CBinaryData;

/// gzip (RFC 1952) and zlib (RFC 1950) compression of finished output, and decompression that doubles as detection.
///
/// It holds no state. All operations are static, and may run on any number of threads.
class CQvZip : public CInstanceMonitor
{
public:
    CQvZip();
    ~CQvZip() override;

    /// Compresses data in place; no bytes stay no bytes.
    /// @throws CQvException as CompressBuffer does; `data` is empty then.
    static void Compress(CBinaryData& data, CompressionType eType);

    /// Replaces an array by its compressed form.
    /// @param ppData an array from `new unsigned char[]`, which is freed; receives another one.
    /// @param pdwLen its length in bytes; receives the new one.
    /// @param eType for anything but gzip and zlib nothing happens.
    /// @throws CQvException "Failed to compress data. [Error Code: %d]" with zlib's code. The result is never allowed
    ///         to be longer than the input, so data that do not shrink, very short ones above all, end here. The array
    ///         stays as it was then.
    static void CompressBuffer(unsigned char** ppData, unsigned long* pdwLen, CompressionType eType);

    /// Replaces an array by its decompressed form if it holds a whole gzip or zlib stream, and leaves it alone
    /// otherwise. What follows the stream is ignored.
    /// @param ppData an array from `new unsigned char[]`, which is freed if it is replaced.
    /// @param pdwLen its length in bytes; receives the new one.
    /// @throws CQvException "The decompressed data is longer than %u bytes" when the result passes the limit; the array
    ///         stays as it was then. Not more than s_dwOutputAhead bytes have been held for it.
    static void DecompressBuffer(unsigned char** ppData, unsigned long* pdwLen);

    /// The same with a limit of the caller's.
    /// @param dwLimit the longest result that is allowed, in bytes.
    /// @param dwOutputAhead see s_dwOutputAhead.
    static void DecompressBuffer(unsigned char** ppData, unsigned long* pdwLen, std::uint32_t dwLimit,
                                 std::uint32_t dwOutputAhead = s_dwOutputAhead);

    /// The greatest length of decompressed data, in bytes: what CBinaryData can hold.
    static constexpr std::uint32_t s_dwOutputLimit = 0xFFFFFFFF;

    /// Output up to this length, in bytes, is collected in a growing array. Past it the rest is only counted and the
    /// input is inflated once more into an array of the right size, so that a small input cannot claim memory that its
    /// output will not fit into anyway.
    static constexpr std::uint32_t s_dwOutputAhead = 64 * 1024 * 1024;
};

} // namespace QvXmlLib9
