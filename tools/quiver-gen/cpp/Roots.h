#pragma once

#include "tools/quiver-gen/cpp/Sources.h"

#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// The class that makes the objects of documents' root elements: where it is and what it is called.
struct SFactory
{
    std::string strNamespace;
    std::string strName;
    std::string strStem; ///< of its files
};

/// @throws CNameTaken
SFactory FindFactory(const binding::SBinding& binding, const SWriteOptions& options, const CNameTable& names,
                     CStems& stems);

/// Its header and source.
std::vector<SFile> PrintFactory(const SProject& project, const SFactory& factory);

} // namespace quiver_gen::cpp
