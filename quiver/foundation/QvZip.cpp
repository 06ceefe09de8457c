#include "quiver/foundation/QvZip.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <zlib.h>

namespace QvXmlLib9
{

namespace
{

using ByteArray = std::unique_ptr<unsigned char[]>;

/// Speed counts for more than the last percent of size.
constexpr int s_nLevel = 1;
constexpr int s_nWindowBits = 15;
constexpr int s_nGzipWrapper = 16;
constexpr int s_nDetectWrapper = 32;
constexpr int s_nMemoryLevel = 8;

/// Ends a compression on every path.
struct SDeflateEnd
{
    void operator()(z_stream* pStream) const { deflateEnd(pStream); }
};

/// Inflates one array, from its beginning, as often as it is asked to.
class CInflate
{
public:
    CInflate(unsigned char* pInput, std::uint32_t dwInputLen)
        : m_pInput(pInput)
        , m_dwInputLen(dwInputLen)
    {
        m_nResult = inflateInit2(&m_stream, s_nWindowBits + s_nDetectWrapper);
        Feed();
    }
    ~CInflate() { inflateEnd(&m_stream); }
    CInflate(const CInflate&) = delete;
    CInflate& operator=(const CInflate&) = delete;

    /// Begins again. The wrapper has been recognised before.
    void Restart()
    {
        m_nResult = inflateReset2(&m_stream, s_nWindowBits + s_nDetectWrapper);
        Feed();
    }

    /// Fills an array until it is full, the stream ends or a fault is met.
    /// @return the count of bytes.
    std::uint32_t Fill(unsigned char* pOutput, std::uint32_t dwLength)
    {
        m_stream.next_out = pOutput;
        m_stream.avail_out = dwLength;
        while (m_nResult == Z_OK && m_stream.avail_out != 0)
            m_nResult = inflate(&m_stream, Z_NO_FLUSH);
        return dwLength - m_stream.avail_out;
    }

    /// Count of bytes since the beginning.
    std::uint64_t GetTotal() const { return m_stream.total_out; }

    bool IsAtEnd() const { return m_nResult == Z_STREAM_END; }
    bool IsAtFault() const { return m_nResult != Z_STREAM_END && m_nResult != Z_OK; }

private:
    void Feed()
    {
        m_stream.next_in = m_pInput;
        m_stream.avail_in = m_dwInputLen;
    }

    unsigned char* m_pInput;
    std::uint32_t m_dwInputLen;
    z_stream m_stream{};
    int m_nResult = Z_OK;
};

/// Collects what `inflater` gives, up to `dwLength` bytes.
/// @return the count of bytes.
std::uint32_t Collect(CInflate& inflater, ByteArray& pOutput, std::uint32_t dwLength)
{
    constexpr std::uint32_t dwFirst = 65536;
    std::uint32_t dwAllocated = 0;
    std::uint32_t dwUsed = 0;
    while (!inflater.IsAtEnd() && !inflater.IsAtFault() && dwUsed < dwLength)
    {
        if (dwUsed == dwAllocated)
        {
            dwAllocated =
                dwAllocated < dwLength / 2 ? std::max(dwAllocated * 2, std::min(dwFirst, dwLength)) : dwLength;
            ByteArray pGrown(new unsigned char[dwAllocated]);
            if (dwUsed != 0)
                std::memcpy(pGrown.get(), pOutput.get(), dwUsed);
            pOutput = std::move(pGrown);
        }
        dwUsed += inflater.Fill(pOutput.get() + dwUsed, dwAllocated - dwUsed);
    }
    return dwUsed;
}

/// Counts what `inflater` still gives, without keeping it.
/// @throws CQvException once the count passes `dwMost`.
std::uint32_t CountRest(CInflate& inflater, std::uint32_t dwMost, std::uint32_t dwLimit)
{
    constexpr std::uint32_t dwChunk = 65536;
    const ByteArray pScratch(new unsigned char[dwChunk]);
    std::uint64_t nCount = 0;
    while (!inflater.IsAtEnd() && !inflater.IsAtFault())
    {
        nCount += inflater.Fill(pScratch.get(), dwChunk);
        if (nCount > dwMost)
            throw CQvException(FormatString(L"The decompressed data is longer than %u bytes", dwLimit));
    }
    return static_cast<std::uint32_t>(nCount);
}

} // namespace

CQvZip::CQvZip()
    : CInstanceMonitor(L"CQvZip")
{
}

CQvZip::~CQvZip() = default;

void CQvZip::Compress(CBinaryData& data, CompressionType eType)
{
    if (data.IsEmpty())
        return;
    unsigned long ulLength = data.GetLength();
    unsigned char* pData = data.ReleaseData();
    // `data` stays empty then (docs/compatibility.md: Data that cannot be compressed).
    ByteArray pOwner(pData);
    CompressBuffer(&pData, &ulLength, eType);
    static_cast<void>(pOwner.release());
    data = CBinaryData(pData, ulLength, true);
}

void CQvZip::CompressBuffer(unsigned char** ppData, unsigned long* pdwLen, CompressionType eType)
{
    if (eType != Compression_GZip && eType != Compression_ZLib)
        return;
    const auto dwLen = static_cast<std::uint32_t>(*pdwLen);
    ByteArray pOutput(new unsigned char[dwLen]);
    z_stream c_stream{};
    // If this fails, deflate reports it.
    if (eType == Compression_GZip)
        deflateInit2(&c_stream, s_nLevel, Z_DEFLATED, s_nWindowBits + s_nGzipWrapper, s_nMemoryLevel,
                     Z_DEFAULT_STRATEGY);
    else
        deflateInit(&c_stream, s_nLevel);
    const std::unique_ptr<z_stream, SDeflateEnd> pEnd(&c_stream);
    c_stream.next_in = *ppData;
    c_stream.avail_in = dwLen;
    c_stream.next_out = pOutput.get();
    c_stream.avail_out = dwLen;
    [[maybe_unused]] const int nBegun = deflate(&c_stream, Z_NO_FLUSH);
    // Input that is left because the output is full is no fault of the program: these data do not shrink. Nor is a want of
    // memory, which the next call tells.
    if (nBegun == Z_OK && c_stream.avail_out != 0)
        QV_ASSERT(c_stream.avail_in == 0);
    const int nResult = deflate(&c_stream, Z_FINISH);
    if (nResult != Z_STREAM_END)
        throw CQvException(FormatString(L"Failed to compress data. [Error Code: %d]", nResult));
    const ByteArray pInput(*ppData);
    *ppData = pOutput.release();
    *pdwLen = c_stream.total_out;
}

void CQvZip::DecompressBuffer(unsigned char** ppData, unsigned long* pdwLen)
{
    DecompressBuffer(ppData, pdwLen, s_dwOutputLimit);
}

void CQvZip::DecompressBuffer(unsigned char** ppData, unsigned long* pdwLen, std::uint32_t dwLimit,
                              std::uint32_t dwOutputAhead)
{
    CInflate inflater(*ppData, static_cast<std::uint32_t>(*pdwLen));
    ByteArray pOutput;
    std::uint32_t dwLength = Collect(inflater, pOutput, std::min(dwLimit, dwOutputAhead));
    const std::uint32_t dwRest = CountRest(inflater, dwLimit - dwLength, dwLimit);
    if (!inflater.IsAtEnd())
        return;
    if (dwRest != 0)
    {
        dwLength += dwRest;
        pOutput.reset();
        pOutput.reset(new unsigned char[dwLength]);
        inflater.Restart();
        inflater.Fill(pOutput.get(), dwLength);
    }
    QV_ASSERT_MSG(inflater.GetTotal() == dwLength, "bdDecompressed.GetLength() == d_stream.total_out");
    const ByteArray pInput(*ppData);
    *ppData = pOutput.release();
    *pdwLen = dwLength;
}

} // namespace QvXmlLib9
