#pragma once

#include "tools/quiver-fi/Files.h"
#include "tools/quiver-fi/InspectorTables.h"

#include <string_view>

namespace quiver_fi
{

/// Whether the octets begin like a Fast Infoset document (X.891, 12), with or without an XML declaration.
bool IsFastInfoset(std::string_view octets);

/// Lists what a Fast Infoset document (ITU-T X.891) consists of on standard output, one line for each item with its
/// offset and its octets. `+[n]` after a kind of name or value tells that it enters its table as number n, `[n]` that
/// it comes from there. If an external vocabulary stands in front of the tables, whose contents nobody knows here,
/// entries have no numbers, and what comes from a table has no text.
///
/// Everything else of the standard is understood, also what reading into a tree passes over. No document, however
/// damaged, makes this leave the octets, recurse, or need memory out of proportion to them.
///
/// @param bWholeValues literal values are printed in full length.
/// @throws std::runtime_error which tells where and why the listing stops. What stands ahead of it has been listed.
void Inspect(std::string_view octets, bool bWholeValues, const SStreams& streams);

/// Takes what a Fast Infoset document consists of, as far as it belongs to the tree.
class IInfosetHandler
{
public:
    /// A string: literal, or the entry at a place of a table, or both if a literal one has been entered.
    struct SValue
    {
        SEncodedText text;
        /// 0 if the string is in no table.
        std::uint32_t nPlace = 0;
    };

    virtual ~IInfosetHandler() = default;

    /// @param tables those of the document, which live as long as the walk.
    virtual void Begin(const CTables& tables) = 0;
    virtual void OnExternalVocabulary(const SEncodedText& uri) = 0;
    /// Places in the tables of prefixes and namespaces, 0 for none. Stands ahead of the element.
    virtual void OnDeclaration(std::uint32_t nPrefix, std::uint32_t nNamespace) = 0;
    virtual void OnElement(const SName& name) = 0;
    virtual void OnAttribute(const SName& name, const SValue& value) = 0;
    virtual void OnText(const SValue& value) = 0;
    virtual void OnEntityReference() = 0;
    virtual void OnEndOfElement() = 0;
    /// @param nBehind octets behind the document.
    virtual void OnEndOfDocument(std::size_t nBehind) = 0;
};

/// Reads a document by the same rules, without a listing.
/// @throws std::runtime_error which tells where and why reading stops; and what the handler throws.
void WalkInfoset(std::string_view octets, IInfosetHandler& handler, const SStreams& streams);

} // namespace quiver_fi
