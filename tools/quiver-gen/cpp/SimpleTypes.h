#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/cpp/Scope.h"

#include <string>

namespace quiver_gen::cpp
{

/// Declaration of a simple type, with that of its enumeration in front of it, for a header.
std::string DeclareSimpleType(const binding::SSimpleType& type, const CScope& scope);

/// Definition of what DeclareSimpleType leaves to a source.
std::string DefineSimpleType(const binding::SSimpleType& type, const CScope& scope);

} // namespace quiver_gen::cpp
