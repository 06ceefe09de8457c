#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/cpp/Fields.h"
#include "tools/quiver-gen/cpp/Uris.h"

#include <string>

namespace quiver_gen::cpp
{

/// Definition of a class, for a header.
std::string DeclareClass(const binding::SClass& type, const SPlace& place);

/// Definitions of its members, for a source.
/// @param header the place where DeclareClass printed the class: what it could not define there is defined here.
/// @param strKnown the constant with all global elements and attributes.
std::string DefineClass(const binding::SClass& type, const SPlace& source, const SPlace& header,
                        const std::string& strKnown, CUris& uris);

} // namespace quiver_gen::cpp
