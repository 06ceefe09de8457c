#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace quiver_gen
{

/// The whole program.
/// @param arguments without the program's name.
/// @param out gets what was asked for in words: help, version, lists, dumps.
/// @param err gets errors and warnings.
/// @param bErrIsTerminal somebody watches `err`, so that progress is worth showing.
/// @return the exit status: 0, 1 for a schema that is wrong or a document that is refused, 2 for a command line that cannot be carried out, 3 for a
///         schema that is right and cannot be mapped.
int RunGenerator(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
                 bool bErrIsTerminal = false);

} // namespace quiver_gen
