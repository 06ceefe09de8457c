#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"

#include <vector>

namespace quiver_gen::schema
{

/// Components with what they are made of before them.
struct SOrder
{
    std::vector<SType*> types;
    std::vector<SGroupDefinition*> groups;
    std::vector<SAttributeGroup*> attributeGroups;
    std::vector<SElement*> elements; ///< those of substitution groups, heads first
};

/// Puts redefinitions in the place of what they redefine, and gives every reference its component. Reports names that
/// are not defined, definitions that contain themselves, and those that nest too deep. Without an error, the order is
/// complete.
void ResolveReferences(SSchemaSet& set, SDraft& draft, SOrder& order, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
