#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"

#include <set>
#include <string>
#include <utility>

namespace quiver_gen::schema
{

/// Checks that a document is written in the language of schemas: which elements and attributes stand where, and the
/// lexical form of attribute values. What makes components may rely on it afterwards.
void CheckRules(const SDocument& document, CDiagnostics& diagnostics);

/// An element of the language, and an attribute that it may have.
using CConstruct = std::pair<std::string, std::string>;

/// All elements with each of their attributes, and with an empty text for themselves. `id`, which all have, is left out.
std::set<CConstruct> GetLanguage();

} // namespace quiver_gen::schema
