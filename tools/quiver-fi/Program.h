#pragma once

#include "tools/quiver-fi/Files.h"

#include <string>
#include <vector>

namespace quiver_fi
{

/// The whole program.
/// @param arguments without the program's name.
/// @return the exit status: 0, 1 for bad input, 2 for a command line that cannot be carried out. What went wrong stands
///         in one line on standard error.
int RunProgram(const std::vector<std::string>& arguments, const SStreams& streams);

} // namespace quiver_fi
