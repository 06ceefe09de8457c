#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"
#include "tools/quiver-gen/schema/Resolver.h"

namespace quiver_gen::schema
{

/// How many attributes of all types together, and particles of all types together, what is shared by reference may
/// unfold to. Real schemas stay below 100,000; nested references of a few lines can unfold to more than any memory.
constexpr std::size_t s_nMaxUnfolded = 4'000'000;

/// Works out what is in force in each type: what derivation hands down, attribute groups in the place of references,
/// content of extensions. Reports derivations that are not possible.
void DeriveTypes(SSchemaSet& set, SDraft& draft, const SOrder& order, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
