#pragma once

#include "tools/quiver-gen/cpp/Sources.h"

#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// @throws CNameTaken
SFactory FindFactory(const binding::SBinding& binding, const SWriteOptions& options, const CNameTable& names,
                     CStems& stems);

/// Its header and source.
std::vector<SFile> PrintFactory(const SProject& project);

} // namespace quiver_gen::cpp
