#include "tools/quiver-fi/Files.h"

#include "quiver/foundation/QvZip.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <istream>
#include <memory>
#include <ostream>
#include <system_error>

namespace quiver_fi
{

namespace
{

/// The library takes blocks of bytes whose length has 32 bits.
constexpr std::size_t s_nLengthLimit = 0xFFFFFFFF;

bool IsStandardStream(const std::string& strName)
{
    return strName == "-";
}

/// @param lpcWhat what has failed: "read".
[[noreturn]] void ThrowFailed(const char* lpcWhat, const std::string& strName, int nError)
{
    std::string strMessage = "cannot " + std::string(lpcWhat) + ' ';
    strMessage += IsStandardStream(strName) ? "the standard stream" : strName;
    if (nError != 0)
        strMessage += ": " + std::generic_category().message(nError);
    throw CFileError(strMessage);
}

std::string ReadAll(std::istream& in, const std::string& strName)
{
    std::string strBytes;
    constexpr std::size_t nChunk = 256 * 1024;
    while (in)
    {
        const std::size_t nLength = strBytes.size();
        strBytes.resize(nLength + nChunk);
        errno = 0;
        in.read(strBytes.data() + nLength, static_cast<std::streamsize>(nChunk));
        strBytes.resize(nLength + static_cast<std::size_t>(in.gcount()));
        if (in.bad())
            ThrowFailed("read", strName, errno);
        if (strBytes.size() > s_nLengthLimit)
            throw CFileError(strName + " is longer than 4294967295 bytes");
    }
    return strBytes;
}

/// Whether the bytes begin like a gzip (RFC 1952) or a zlib stream (RFC 1950).
bool LooksCompressed(std::string_view strBytes)
{
    if (strBytes.size() < 2)
        return false;
    const unsigned nFirst = static_cast<unsigned char>(strBytes[0]);
    const unsigned nSecond = static_cast<unsigned char>(strBytes[1]);
    return (nFirst == 0x1F && nSecond == 0x8B) || ((nFirst & 15) == 8 && (nFirst << 8 | nSecond) % 31 == 0);
}

} // namespace

std::string ReadInput(const std::string& strName, const SStreams& streams)
{
    if (IsStandardStream(strName))
        return ReadAll(streams.in, strName);
    errno = 0;
    std::ifstream file(strName, std::ios::binary);
    if (!file)
        ThrowFailed("open", strName, errno);
    return ReadAll(file, strName);
}

bool Decompress(std::string& strBytes)
{
    if (!LooksCompressed(strBytes))
        return false;
    const auto nLength = static_cast<unsigned long>(strBytes.size());
    auto pBytes = std::make_unique<unsigned char[]>(nLength);
    std::copy(strBytes.begin(), strBytes.end(), pBytes.get());
    unsigned char* pData = pBytes.get();
    unsigned long ulNewLength = nLength;
    QvXmlLib9::CQvZip::DecompressBuffer(&pData, &ulNewLength);
    if (pData == pBytes.get())
        return false;
    // The first array has been freed in favour of another one.
    static_cast<void>(pBytes.release());
    pBytes.reset(pData);
    strBytes.assign(reinterpret_cast<const char*>(pData), ulNewLength);
    return true;
}

void WriteOutput(const std::string& strName, std::string_view strBytes, const SStreams& streams)
{
    const auto nLength = static_cast<std::streamsize>(strBytes.size());
    if (IsStandardStream(strName))
    {
        if (!streams.out.write(strBytes.data(), nLength).flush())
            ThrowFailed("write", strName, 0);
        return;
    }
    errno = 0;
    std::ofstream file(strName, std::ios::binary | std::ios::trunc);
    if (!file)
        ThrowFailed("create", strName, errno);
    file.write(strBytes.data(), nLength);
    file.close();
    if (!file)
        ThrowFailed("write", strName, errno);
}

} // namespace quiver_fi
