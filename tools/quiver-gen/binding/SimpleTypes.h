#pragma once

#include "tools/quiver-gen/binding/TypeNames.h"
#include "tools/quiver-gen/binding/Warnings.h"

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quiver_gen::binding
{

/// Whether a simple type adds anything to its base, and needs a struct of its own for that.
/// @param options with the rules of how types are held.
bool NeedsStruct(const schema::SSimpleType& type, const SBindingOptions& options);

/// White space of a value as its type treats it.
std::string NormalizeSpace(const std::string& strText, schema::EWhiteSpace eWhiteSpace);

/// Simple types with the facets of all their steps.
class CSimpleTypes
{
public:
    CSimpleTypes(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding,
                 CNamespaces& namespaces, CTypeNames& typeNames, CRenames& renames, CWarnings& warnings);

    /// Those that get a struct, of the types that are needed.
    std::vector<const schema::SSimpleType*> Select(const std::vector<const schema::SSimpleType*>& needed) const;

    /// Makes the structs, once their names are chosen.
    void Build(const std::vector<const schema::SSimpleType*>& types);

    /// What stands for a type: its own struct, that of its nearest base, or a built-in one.
    SSimpleType& Get(const schema::SSimpleType& type);

    /// Where a narrower type is needed in the place of a wider one, and whom to tell if it cannot be had.
    struct SPlace
    {
        SNamespace& item; ///< of the class that needs it
        const schema::SPosition& position;
        const std::string& strName; ///< what holds the value
    };

    /// A narrower type, held as the wider one is that it takes the place of in a restriction. The narrower one itself
    /// where both are held alike, and with a warning the wider one where nothing else is possible.
    SSimpleType& GetHeldLike(const schema::SSimpleType& narrower, SSimpleType& wider, const SPlace& place);

    /// A default or fixed value.
    SValueRule MakeRule(const schema::SValueConstraint* pValue, const schema::SSimpleType& type);

private:
    const schema::SSchemaSet& m_set;
    const SBindingOptions& m_options;
    SBinding& m_binding;
    CNamespaces& m_namespaces;
    CTypeNames& m_typeNames;
    CRenames& m_renames;
    CWarnings& m_warnings;
    std::unordered_map<const schema::SSimpleType*, SSimpleType*> m_types;
    std::unordered_map<std::string, SSimpleType*> m_variants;
    std::unordered_set<const SSimpleType*> m_listed;
    std::unordered_set<const schema::SPattern*> m_warned;

    SSimpleType& GetBuiltin(schema::EBuiltin eBuiltin);
    void Fill(const schema::SSimpleType& type, SSimpleType& target);
    void FillKind(const schema::SSimpleType& type, SSimpleType& target);
    void FillAtomic(const schema::SSimpleType& type, SSimpleType& target);
    void FillFacets(const schema::SSimpleType& type, SSimpleType& target);
    void FillPatterns(const schema::SEffectiveFacets& facets, SSimpleType& target);
    void FillEnumerators(const schema::SSimpleType& type, const schema::SEffectiveFacets& facets, SSimpleType& target);
    std::int64_t LimitLength(const schema::SFacet& facet);
    const SHeldAs* FindMap(const schema::SSimpleType& type) const;
    SSimpleType& MakeVariant(const schema::SSimpleType& narrower, const SSimpleType& own, const SSimpleType& wider,
                             SNamespace& item);
    bool IsHeldAsText(const schema::SSimpleType& type) const;
    void List(SSimpleType& type);
};

} // namespace quiver_gen::binding
