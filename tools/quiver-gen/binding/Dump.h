#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <iosfwd>

namespace quiver_gen::binding
{

/// Prints a binding as text, a line for each thing, for people and for tests. Two bindings that print alike become the
/// same C++, but for documentation and sources, which are left out.
void Dump(const SBinding& binding, std::ostream& out);

/// One class, in the same form.
void Dump(const SClass& item, std::ostream& out);

/// One simple type, in the same form.
void Dump(const SSimpleType& type, std::ostream& out);

} // namespace quiver_gen::binding
