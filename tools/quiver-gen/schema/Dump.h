#pragma once

#include "tools/quiver-gen/schema/Components.h"

#include <iosfwd>

namespace quiver_gen::schema
{

/// Writes all global components with what they hold, one line for each piece, indented by what it belongs to and with
/// the position `file index:line:column` where it has one. The same schemas give the same text.
void DumpComponents(const SSchemaSet& set, std::ostream& out);

} // namespace quiver_gen::schema
