#pragma once

#include "tools/quiver-gen/binding/Namespaces.h"
#include "tools/quiver-gen/binding/Reach.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace quiver_gen::binding
{

/// Rules that the caller gave for names.
class CRenames
{
public:
    explicit CRenames(const SBindingOptions& options);

    /// The name for a type, or for something inside it; null if no rule names it.
    const std::string* Find(const schema::SQName& type, const std::string& strInner = {});

    /// A warning for each rule that named nothing.
    void ReportUnused(schema::CDiagnostics& diagnostics) const;

private:
    const SBindingOptions& m_options;
    std::unordered_map<std::string, std::size_t> m_rules;
    std::vector<bool> m_used;
};

/// Stems of the C++ names of types: `Item` for `CItem`, `SItem` and `EItem`. No two types of a C++ namespace have stems
/// that differ only in case, nor is one the collection of the other.
class CTypeNames
{
public:
    CTypeNames(const schema::SSchemaSet& set, CNamespaces& namespaces, CRenames& renames);

    /// Chooses a stem for each of the types: the named ones first, each in order of declaration. An anonymous type is
    /// named after its element or attribute; where that is taken, with its owner's stem in front.
    void Choose(const std::vector<const schema::SType*>& types);

    const std::string& Get(const schema::SType& type) const { return m_stems.at(&type); }

    /// The stem for something that is no type of the schema.
    std::string Take(const SNamespace& item, const std::string& strWanted);

private:
    CNamespaces& m_namespaces;
    CRenames& m_renames;
    std::unordered_map<const schema::SType*, std::string> m_stems;
    std::unordered_map<std::string, int> m_nextNumbers;
    /// Where attributes are declared, for the names of their anonymous types.
    std::unordered_map<const schema::SAttribute*, const schema::SComplexType*> m_attributeTypes;
    std::unordered_map<const schema::SAttribute*, const schema::SAttributeGroup*> m_attributeGroups;

    void ChooseFor(const schema::SType& type);
    void TakeFirstFree(const schema::SType& type, const std::vector<std::string>& candidates);
    std::string GetWanted(const schema::SType& type) const;
    std::string GetOwnersStem(const schema::SType& type) const;
    std::string GetStemOf(const schema::SType* pType) const;
    static bool IsFree(const CNameScope& names, const std::string& strStem);
    static void AddStem(CNameScope& names, const std::string& strStem);
};

/// The name that rules know a type by: its own, or that of the global element that it is written in; empty for others.
schema::SQName GetRuleName(const schema::SType& type);

} // namespace quiver_gen::binding
