#pragma once

#include <cstddef>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quiver_fi
{

/// The library takes blocks of bytes whose length has 32 bits.
constexpr std::size_t s_nLengthLimit = 0xFFFFFFFF;

/// Where "-" leads, and where warnings and progress go.
struct SStreams
{
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    /// Somebody watches `err`, so that progress is worth showing.
    bool bErrIsTerminal = false;
    /// Somebody watches `out` and likes colours.
    bool bOutIsColoured = false;
};

/// A file that cannot be read or written. The message names it, unlike those of other failures.
struct CFileError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Reads a whole file, or standard input for "-".
/// @throws CFileError
std::string ReadInput(const std::string& strName, const SStreams& streams);

/// Writes a whole file, or to standard output for "-".
/// @throws CFileError
void WriteOutput(const std::string& strName, std::string_view svBytes, const SStreams& streams);

/// Sees to it that everything has arrived on standard output.
/// @throws CFileError
void FinishOutput(const SStreams& streams);

} // namespace quiver_fi
