#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"

#include <string>
#include <string_view>

/// @file
/// The places where classes read more freely than their schema says, or keep less than a document holds.

namespace quiver_gen::binding
{

enum class EWarning
{
    WildcardContent,
    AnyType,
    Mixed,
    Identity,
    Id,
    Nillable,
    Block,
    Pattern,
    QName,
    MappedToText,
    EmptyChoice,
    AbstractElement,
    Restriction,
    HeldAsBase,
    SharedValue,
    Occurrence
};

/// What the documentation and the messages say of a kind of warning.
struct SWarningKind
{
    EWarning eWarning;
    std::string_view svId;   ///< `mixed`
    std::string_view svText; ///< the message; `%s` stands for a name or value
    std::string_view svWhy;  ///< the reason, a sentence of documentation
};

constexpr SWarningKind s_warnings[] = {
    {EWarning::WildcardContent, "wildcard-content", "elements that were not asked for pass here unchecked",
     "With --root there are classes for what those elements lead to, and what others hold is not known."},
    {EWarning::AnyType, "any-type", "the element %s may hold anything, which is kept as open elements",
     "An element of type xs:anyType has no members that a class could have."},
    {EWarning::Mixed, "mixed", "text between the elements is joined, and its place among them is not kept",
     "A class holds its elements as members, which have no order among each other but that of the schema."},
    {EWarning::Identity, "identity", "the identity constraint %s is not checked",
     "Each class checks its own element, and identity constraints span many."},
    {EWarning::Id, "id", "that each ID occurs once and each IDREF names one is not checked",
     "Each class checks its own element, and the values of a whole document would have to be compared."},
    {EWarning::Nillable, "nillable", "xsi:nil is read at %s too, since it may be used at another element of this type",
     "Whether an object may be nil is a matter of its class, which all elements of a type share."},
    {EWarning::Block, "block", "xsi:type may name any derived type at %s, although some are blocked",
     "What xsi:type may name is a matter of the class, which all elements of a type share."},
    {EWarning::Pattern, "pattern", "the pattern %s cannot be translated and is not checked",
     "The expressions of the runtime know fewer blocks of characters, and bounds of repetition."},
    {EWarning::QName, "qname", "values are compared with the prefixes that the schema uses",
     "Which type of a union a listed value is of is asked when it is read, and the prefixes of a document may be "
     "others."},
    {EWarning::MappedToText, "mapped-to-text", "the bounds of %s are not checked, since it is held as text",
     "A number that a rule holds as text is not compared as a number."},
    {EWarning::EmptyChoice, "empty-choice", "a choice without alternatives is read as empty",
     "By the letter of the language nothing satisfies such a choice."},
    {EWarning::AbstractElement, "abstract-element", "the abstract element %s has no substitutes, and is read itself",
     "By the letter of the language nothing satisfies such an element."},
    {EWarning::Restriction, "restriction", "%s has no counterpart in the base class, which cannot show it",
     "A restricted class shares the members of its base; what it declares anew is a member of its own."},
    {EWarning::HeldAsBase, "held-as-base", "values of %s are checked as in the base class only",
     "A restricted class shares the members of its base, which cannot hold values of every narrower type."},
    {EWarning::SharedValue, "shared-value",
     "the default or fixed value of %s is not looked at, since the element may have attributes",
     "The text of such an element is a member of its class, which all elements of the type share."},
    {EWarning::Occurrence, "occurrence", "a number above 2147483647 is read as that, or as no limit",
     "Counts and lengths are held in 32 bits."},
};

/// Whether the table has each warning in its place.
constexpr bool AreWarningsInOrder()
{
    std::size_t n = 0;
    for (const SWarningKind& kind : s_warnings)
        if (static_cast<std::size_t>(kind.eWarning) != n++)
            return false;
    return n == static_cast<std::size_t>(EWarning::Occurrence) + 1;
}
static_assert(AreWarningsInOrder());

/// Adds warnings of the table to diagnostics.
class CWarnings
{
public:
    explicit CWarnings(schema::CDiagnostics& diagnostics)
        : m_diagnostics(diagnostics)
    {
    }

    /// @param svName stands for `%s` in the text.
    void Add(EWarning eWarning, const schema::SPosition& position, std::string_view svName = {});

private:
    schema::CDiagnostics& m_diagnostics;
};

} // namespace quiver_gen::binding
