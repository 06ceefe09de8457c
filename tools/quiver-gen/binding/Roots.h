#pragma once

#include "tools/quiver-gen/binding/Classes.h"

namespace quiver_gen::binding
{

/// Elements that a document may begin with, each with the class or type of what it holds.
void AddRoots(SBuild& build, CClasses& classes);

/// The global attributes, if a wildcard asks for them.
void AddKnownAttributes(SBuild& build);

/// Adds the simple types with names if there are values that say theirs.
void AddNamedTypes(SBuild& build);

} // namespace quiver_gen::binding
