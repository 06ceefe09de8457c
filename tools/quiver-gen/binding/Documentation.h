#pragma once

#include "tools/quiver-gen/binding/Builder.h"

#include <vector>

namespace quiver_gen::binding
{

/// Paragraphs of what a schema says about a component, in the languages and to the extent asked for. White space inside
/// a paragraph is one space.
SDocumentation MakeDocumentation(const std::vector<schema::SDocumentation>& documentation,
                                 const SBindingOptions& options);

} // namespace quiver_gen::binding
