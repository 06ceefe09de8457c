#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"
#include "tools/quiver-gen/schema/Loader.h"

namespace quiver_gen::schema
{

/// Reads the documents that the options name and those they lead to, each once for each target namespace, in the order
/// in which a reader meets them who follows every reference at once.
void ReadDocuments(const SLoadOptions& options, SSchemaSet& set, SDraft& draft, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
