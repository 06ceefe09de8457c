#pragma once

#include <string>

namespace quiver_fi
{

/// Replaces gzip and zlib streams (RFC 1952, RFC 1950) by what they hold; other bytes are left alone. A gzip file may
/// consist of several streams, which follow one another.
/// @return whether the bytes were compressed.
/// @throws std::runtime_error if the stream is damaged or cut short, if anything but zeros stands behind it, or if it
///         holds more bytes than a document can have.
bool Decompress(std::string& strBytes);

/// The bytes as a gzip stream, which is longer than they are if they are few.
std::string Compress(const std::string& strBytes);

} // namespace quiver_fi
