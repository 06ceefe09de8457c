#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Values.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace quiver_gen::schema
{

/// Tells whether texts are values of simple types. Patterns are not tried. Each type that a union unfolds to is asked once
/// for a value. A schema can have very many of those and very many values; after some millions of steps, every text passes.
class CValueChecker
{
public:
    /// @param set for the notations that values may name.
    explicit CValueChecker(const SSchemaSet& set)
        : m_set(set)
    {
    }

    /// @return an empty text for a value, else what is wrong with it.
    std::string Check(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope);

    /// A text that is the same for what means the same value of a type; the text must be a value of it.
    std::string GetKey(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope);

private:
    /// Check, and GetKey of what is a value.
    /// @param pstrKey receives the key; null if it is not asked for.
    std::string Judge(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope,
                      std::string* pstrKey);
    std::string CheckAtomic(const SSimpleType& type, const SEffectiveFacets& facets, const std::string& strValue,
                            const SNamespaceScope* pScope);
    std::string JudgeList(const SSimpleType& type, const SEffectiveFacets& facets, const std::string& strValue,
                          const SNamespaceScope* pScope, std::string* pstrKey);
    bool JudgeUnion(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope,
                    std::string* pstrKey);
    const SEffectiveFacets& GetFacets(const SSimpleType& type);
    bool IsEnumerated(const SSimpleType& type, const std::vector<SEnumeration>& enumerations,
                      const std::string& strKey);

    const SSchemaSet& m_set;
    std::size_t m_nSteps = 0;
    std::unordered_map<const SSimpleType*, SEffectiveFacets> m_facets;
    std::unordered_map<const std::vector<SEnumeration>*, std::unordered_set<std::string>> m_enumerations;
};

/// Checks one simple type of a schema against its base: which facets it may have, their values, and how they narrow
/// those of the base.
void CheckSimpleType(const SSimpleType& type, CValueChecker& values, CDiagnostics& diagnostics);

} // namespace quiver_gen::schema
