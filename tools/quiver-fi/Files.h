#pragma once

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quiver_fi
{

/// Where "-" leads, and where warnings and progress go.
struct SStreams
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    /// Somebody watches `err`, so that progress is worth showing.
    bool bErrIsTerminal = false;
};

/// A file that cannot be read or written. The message names it, unlike those of other failures.
struct CFileError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Reads a whole file, or standard input for "-".
/// @throws CFileError
std::string ReadInput(const std::string& strName, const SStreams& streams);

/// Replaces gzip and zlib streams by what they hold; other bytes are left alone.
/// @return whether the bytes were compressed.
/// @throws QvXmlLib9::CQvException when the result is too long.
bool Decompress(std::string& strBytes);

/// Writes a whole file, or to standard output for "-".
/// @throws CFileError
void WriteOutput(const std::string& strName, std::string_view strBytes, const SStreams& streams);

} // namespace quiver_fi
