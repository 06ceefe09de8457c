#pragma once

#include "tools/quiver-gen/cpp/Roots.h"

#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// A program that reads a document by the factory, prints it as a tree and writes it back.
SFile PrintProgram(const SWriteOptions& options, const SFactory& factory);

/// The build of a program, a library, or both.
/// @param sources names of the sources of the classes.
SFile PrintBuild(const SWriteOptions& options, const std::vector<std::string>& sources);

} // namespace quiver_gen::cpp
