#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Diagnostics.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quiver_gen::binding
{

/// Gives a type, or a member, attribute or value of it, the name that it has in C++.
struct SRename
{
    schema::SQName type; ///< a type, or a global element with a type of its own
    std::string
        strInner; ///< local name of an element or attribute, or text of an enumeration's value; empty for the type
    std::string strName; ///< without the prefix: `Item` for `CItem`
};

/// How the values of a simple type, and of those derived from it, are held.
struct SHeldAs
{
    schema::SQName type;
    EValue eValue = EValue::String; ///< String, Decimal, I8 or R8
};

/// What is up to the caller.
struct SBindingOptions
{
    enum class EMixed
    {
        Joined,
        Refuse ///< mixed content is an error
    };
    enum class EComments
    {
        All,
        First, ///< the first paragraph
        None
    };

    std::vector<std::pair<std::string, std::string>> namespaces; ///< target namespace and C++ namespace
    std::vector<SRename> renames;
    std::vector<SHeldAs> maps;
    std::vector<std::string> roots; ///< `{uri}name` or `name` of global elements; empty for all
    bool bInteger64 = false;        ///< xs:integer and its kin as 64-bit numbers
    EMixed eMixed = EMixed::Joined;
    EComments eComments = EComments::All;
    std::string strLang; ///< `en`: documentation of this language and of none; empty for every language
};

/// Reads a rule `{uri}Type/member = Name` or `{uri}Type = Name`.
/// @return false if it is not of this form.
bool ParseRename(std::string_view svRule, SRename& rename);

/// Reads a rule `{uri}Type = decimal`, with `string`, `i8` or `r8` as the other ways.
/// @return false if it is not of this form.
bool ParseHeldAs(std::string_view svRule, SHeldAs& heldAs);

/// Makes classes of schema components.
/// @param set loaded without an error.
/// @param binding empty on entry. Complete if the result is true, otherwise good for nothing.
/// @param diagnostics gets errors, and a warning for each place where the classes read more freely than the schema.
/// @return whether there was no error.
bool BuildBinding(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding,
                  schema::CDiagnostics& diagnostics);

} // namespace quiver_gen::binding
