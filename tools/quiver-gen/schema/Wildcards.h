#pragma once

#include "tools/quiver-gen/schema/Components.h"

namespace quiver_gen::schema
{

/// Leaves in a wildcard only the namespaces that another lets through too.
void IntersectNamespaces(SWildcard& wildcard, const SWildcard& other);

/// Adds the namespaces that another wildcard lets through.
void UniteNamespaces(SWildcard& wildcard, const SWildcard& other);

/// Whether all namespaces that a wildcard lets through pass another one.
bool IsSubset(const SWildcard& wildcard, const SWildcard& of);

} // namespace quiver_gen::schema
