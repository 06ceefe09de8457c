#pragma once

#include "tools/quiver-gen/schema/Diagnostics.h"
#include "tools/quiver-gen/schema/Draft.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace quiver_gen::schema
{

/// Makes the components of one document. The document keeps the rules (CheckRules); references are noted in the draft,
/// and global components enter the tables of their namespace, those inside xs:redefine excepted.
class CBuilder
{
public:
    CBuilder(std::size_t nDocument, SSchemaSet& set, SDraft& draft, CDiagnostics& diagnostics);

    void Build();

private:
    /// Where local elements are written.
    struct SOwner
    {
        SComplexType* pType = nullptr;
        SGroupDefinition* pGroup = nullptr;
    };

    // Global components.
    void BuildGlobal(const SNode& node);
    void BuildRedefine(const SNode& node);
    void BuildGlobalType(const SNode& node);
    void BuildGlobalElement(const SNode& node);
    void BuildGlobalAttribute(const SNode& node);
    void BuildGroupDefinition(const SNode& node);
    void BuildAttributeGroup(const SNode& node);
    void BuildNotation(const SNode& node);
    template <typename TComponent>
    void Register(SNamespace::STable<TComponent>& table, TComponent& component, std::string_view svKind);
    template <typename TComponent>
    bool RegisterUnlessRedefined(SNamespace::STable<TComponent>& table, TComponent& component, std::string_view svKind,
                                 ESymbol eSymbol, TComponent* SRedefinition::*ppSlot);

    // Types.
    SSimpleType* BuildSimpleType(const SNode& node);
    SSimpleType* BuildAnonymousSimpleType(const SNode& node, SType& owner);
    void BuildSimpleRestriction(const SNode& node, SSimpleType& type);
    void BuildList(const SNode& node, SSimpleType& type);
    void BuildUnion(const SNode& node, SSimpleType& type);
    void BuildFacets(const SNode& node, SSimpleType& type);
    void BuildFacet(const SNode& node, EFacet eFacet, SSimpleType& type);
    SComplexType* BuildComplexType(const SNode& node);
    void BuildSimpleContent(const SNode& node, SComplexTypeDraft& draft);
    void BuildComplexContent(const SNode& node, SComplexTypeDraft& draft);
    void BuildTypeContent(const SNode& node, SComplexTypeDraft& draft);
    void ReferToBase(const SNode& node, SType& type, bool bSimple);

    // Elements and particles.
    void BuildElement(const SNode& node, SElement& element);
    void BuildElementType(const SNode& node, SElement& element);
    void BuildConstraint(const SNode& node, SElement& element);
    SXPath BuildXPath(const SNode& node);
    SParticle* BuildParticle(const SNode& node, const SOwner& owner);
    void BuildLocalElement(const SNode& node, SParticle& particle, const SOwner& owner);
    void BuildGroupReference(const SNode& node, SParticle& particle, const SOwner& owner);
    SModelGroup* BuildModelGroup(const SNode& node, const SOwner& owner);
    SWildcard* BuildWildcard(const SNode& node);
    bool ReadOccurrence(const SNode& node, SParticle& particle);

    // Attributes.
    void BuildAttributes(const SNode& node, SAttributeDraft& draft, SAttributeGroup* pGroup);
    void BuildAttributeUse(const SNode& node, SAttributeDraft& draft, SAttributeGroup* pGroup);
    void BuildAttributeType(const SNode& node, SAttribute& attribute);

    // Pieces.
    void Start(const SNode& node, SComponent& component);
    void AddError(const SNode& node, std::string strText);
    SQName MakeGlobalName(const SNode& node) const;
    std::string GetLocalNamespace(const SNode& node, std::string_view svDefault) const;
    bool ReadBoolean(const SNode& node, std::string_view svName) const;
    unsigned ReadBits(const SNode& node, std::string_view svName, std::string_view svDefault, unsigned nAllowed);
    std::optional<SValueConstraint> ReadValue(const SNode& node);
    void Forbid(const SNode& node, std::string_view svReason, std::initializer_list<std::string_view> attributes,
                std::initializer_list<std::string_view> children);
    bool ReadNameOrReference(const SNode& node, bool& bReference);
    std::optional<SQName> ReadQName(const SNode& node, std::string_view svText);
    template <typename TTarget>
    SPointerReference<TTarget>* Refer(std::vector<SPointerReference<TTarget>>& references, const SNode& node,
                                      std::string_view svText, TTarget** ppTarget);

    std::size_t m_nDocument;
    const SDocument& m_document;
    SSchemaSet& m_set;
    SDraft& m_draft;
    CDiagnostics& m_diagnostics;
    SNamespace& m_namespace;
    /// The xs:redefine that is being read, and the definition in it.
    const SNode* m_pRedefine = nullptr;
    std::size_t m_nRedefinition = s_nNoRedefinition;
};

/// The first child of a name, null for none.
const SNode* FindChild(const SNode& node, std::string_view svName);

} // namespace quiver_gen::schema
