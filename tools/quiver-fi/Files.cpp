#include "tools/quiver-fi/Files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <istream>
#include <ostream>
#include <system_error>

namespace quiver_fi
{

namespace
{

bool IsStandardStream(const std::string& strName)
{
    return strName == "-";
}

/// What is no UTF-8 is the name of no file where names are UTF-16, and of any elsewhere.
std::filesystem::path ToPath(const std::string& strName)
{
    try
    {
        return std::filesystem::u8path(strName);
    }
    catch (const std::filesystem::filesystem_error&)
    {
        return {};
    }
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

} // namespace

std::string ReadInput(const std::string& strName, const SStreams& streams)
{
    if (IsStandardStream(strName))
        return ReadAll(streams.in, strName);
    errno = 0;
    std::ifstream file(ToPath(strName), std::ios::binary);
    if (!file)
        ThrowFailed("open", strName, errno);
    return ReadAll(file, strName);
}

void FinishOutput(const SStreams& streams)
{
    if (!streams.out.flush())
        ThrowFailed("write", "-", 0);
}

void WriteOutput(const std::string& strName, std::string_view svBytes, const SStreams& streams)
{
    const auto nLength = static_cast<std::streamsize>(svBytes.size());
    if (IsStandardStream(strName))
    {
        streams.out.write(svBytes.data(), nLength);
        FinishOutput(streams);
        return;
    }
    errno = 0;
    std::ofstream file(ToPath(strName), std::ios::binary | std::ios::trunc);
    if (!file)
        ThrowFailed("create", strName, errno);
    file.write(svBytes.data(), nLength);
    file.close();
    if (!file)
        ThrowFailed("write", strName, errno);
}

} // namespace quiver_fi
