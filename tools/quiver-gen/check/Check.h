#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace quiver_gen::check
{

/// How documents were found, from good to bad.
enum class EFinding
{
    Right,     ///< all of them
    Refused,   ///< one or more
    Unreadable ///< the file of one or more, whatever the others are
};

/// Reads documents with the classes of a binding. What is wrong with each stands behind its name: the messages that
/// compiled classes give, from the outermost to the reason, a line each.
/// @param documents paths of files with text or Fast Infoset.
/// @param bErrIsTerminal somebody watches `err`, so that progress is worth showing.
EFinding CheckDocuments(const binding::SBinding& binding, const std::vector<std::string>& documents, std::ostream& err,
                        bool bErrIsTerminal);

} // namespace quiver_gen::check
