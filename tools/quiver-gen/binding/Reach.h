#pragma once

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Content.h"

#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quiver_gen::binding
{

/// What of a schema set is needed for the elements that documents begin with: all global types and elements, or what
/// the chosen roots lead to.
class CReach
{
public:
    CReach(const schema::SSchemaSet& set, CSubstitutes& substitutes)
        : m_set(set)
        , m_substitutes(substitutes)
    {
    }

    /// Finds everything that is needed.
    /// @return false if a root does not exist; diagnostics says which.
    bool Find(const SBindingOptions& options, schema::CDiagnostics& diagnostics);

    // In order of declaration.
    const std::vector<const schema::SElement*>& GetRoots() const { return m_roots; }
    const std::vector<const schema::SComplexType*>& GetComplexTypes() const { return m_complexTypes; }
    const std::vector<const schema::SSimpleType*>& GetSimpleTypes() const { return m_simpleTypes; }
    const std::vector<const schema::SElement*>& GetElements() const { return m_elements; }
    /// Whether there are elements that may say which simple type they have.
    bool HasElementsOfAnySimpleType() const;
    /// Heads of substitution groups that a content model refers to.
    const std::vector<const schema::SElement*>& GetHeads() const { return m_heads; }

    /// Elements that a content model refers to and that have no substitutes.
    const std::vector<const schema::SElement*>& GetPlaced() const { return m_placed; }

    /// Named types derived from a complex type, at any distance, in order of declaration.
    std::vector<const schema::SComplexType*> GetDerived(const schema::SComplexType& type) const;
    bool HasDerived(const schema::SComplexType& type) const { return m_derived.count(&type) != 0; }
    bool IsReached(const schema::SType& type) const { return m_types.count(&type) != 0; }

private:
    const schema::SSchemaSet& m_set;
    CSubstitutes& m_substitutes;
    std::unordered_map<const schema::SComplexType*, std::vector<const schema::SComplexType*>> m_derived;
    std::unordered_set<const schema::SType*> m_types;
    std::unordered_set<const schema::SElement*> m_visited;
    std::unordered_set<const schema::SModelGroup*> m_groups;
    std::unordered_set<const schema::SComplexType*> m_declared;
    std::vector<const schema::SType*> m_inOrder;
    std::vector<const schema::SType*> m_pending;
    std::vector<const schema::SElement*> m_roots;
    std::vector<const schema::SComplexType*> m_complexTypes;
    std::vector<const schema::SSimpleType*> m_simpleTypes;
    std::vector<const schema::SElement*> m_elements;
    std::vector<const schema::SElement*> m_heads;
    std::vector<const schema::SElement*> m_placed;

    void FindDerived();
    bool ChooseRoots(const SBindingOptions& options, schema::CDiagnostics& diagnostics);
    void AddKnownAttributes();
    void AddNamedTypes();
    void FollowPending();
    void AddType(const schema::SType* pType);
    void AddElement(const schema::SElement& element);
    void AddDerived(const schema::SComplexType& declared);
    void AddParticle(const schema::SParticle& particle);
    void FollowSimple(const schema::SSimpleType& type);
    void FollowComplex(const schema::SComplexType& type);
    void Sort();
};

} // namespace quiver_gen::binding
