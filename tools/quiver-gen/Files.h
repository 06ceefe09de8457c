#pragma once

#include "tools/quiver-gen/cpp/Writer.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace quiver_gen
{

/// A file or folder that cannot be read, made or written. The message names it and the reason.
struct CFileError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Reads a whole file.
/// @throws CFileError
std::string ReadFile(const std::string& strPath);

/// Path of a file in a folder, which may be the empty text for the current one.
std::string JoinPath(const std::string& strFolder, const std::string& strName);

/// Writes files of which each is new or has another text than the one on the disk; the others stay as they are, with
/// their time. Folders are made. All of the new texts are on the disk before the first file is replaced, and each is
/// replaced at once, so that a run that is interrupted, or fails for want of space, leaves no file in part.
/// @param files names are paths, UTF-8.
/// @return how many were written.
/// @throws CFileError
std::size_t WriteFiles(const std::vector<cpp::SFile>& files);

/// The text of a dependency file for make and ninja.
/// @param targets what is made.
/// @param sources what it is made from.
std::string MakeDependencies(const std::vector<std::string>& targets, const std::vector<std::string>& sources);

} // namespace quiver_gen
