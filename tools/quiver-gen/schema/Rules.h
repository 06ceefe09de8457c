#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"

namespace quiver_gen::schema
{

/// Checks that a document is written in the language of schemas: which elements and attributes stand where, and the
/// lexical form of attribute values. What makes components may rely on it afterwards.
void CheckRules(const SDocument& document, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
