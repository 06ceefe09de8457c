#pragma once

#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Diagnostics.h"

#include <string>
#include <utility>
#include <vector>

namespace quiver_gen::schema
{

/// What to load, and where referenced documents are.
struct SLoadOptions
{
    std::vector<std::string> schemas;                           ///< paths of schema documents, UTF-8
    std::vector<std::string> catalogs;                          ///< paths of OASIS XML catalogs
    std::vector<std::pair<std::string, std::string>> locations; ///< URI (schemaLocation or namespace) and path
};

/// Loads schema documents and all that they include, import and redefine, from files only.
/// @param set empty on entry. Complete if the result is true; otherwise good for nothing but the list of files, which
///            the diagnostics refer to.
/// @param diagnostics gets every error and warning. Nothing is thrown for a bad schema.
/// @return whether there was no error.
bool LoadSchemas(const SLoadOptions& options, SSchemaSet& set, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
