#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"
#include "tools/quiver-gen/schema/Resolver.h"

namespace quiver_gen::schema
{

/// Checks what components mean together: facets against their types and each other, values against types, derivations
/// against what their bases allow, where 'all' stands, substitution groups, identity constraints.
void CheckComponents(const SSchemaSet& set, const SOrder& order, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
