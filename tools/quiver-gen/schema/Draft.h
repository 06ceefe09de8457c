#pragma once

#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Reader.h"

#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

/// @file
/// What passes between the steps that make components and is gone afterwards: documents, and references not yet
/// resolved.

namespace quiver_gen::schema
{

/// A schema document under its target namespace.
struct SDocument
{
    int nFile = -1;
    const SNode* pRoot = nullptr;
    std::string strTargetNamespace;
    bool bChameleon = false;
    std::unordered_set<std::string> imports;                     ///< namespaces that references may lead to
    std::vector<std::size_t> includes;                           ///< documents included or redefined
    std::unordered_map<const SNode*, std::size_t> redefinitions; ///< xs:redefine and the document it names

    SPosition GetPosition(const SNode& node) const { return {nFile, node.nLine, node.nColumn}; }
};

/// The symbol spaces of names, as they are called in messages.
enum class ESymbol
{
    Type,
    Element,
    Attribute,
    Group,
    AttributeGroup,
    Notation,
    Constraint
};

constexpr std::size_t s_nNoRedefinition = static_cast<std::size_t>(-1);

/// A definition inside xs:redefine. One of the pointers is set.
struct SRedefinition
{
    SQName name;
    SPosition position;
    std::size_t nTarget = 0; ///< index of the document that is redefined
    ESymbol eSymbol = ESymbol::Type;
    SType* pType = nullptr;
    SGroupDefinition* pGroup = nullptr;
    SAttributeGroup* pAttributeGroup = nullptr;

    // What it replaces, once that is known.
    SType* pFormerType = nullptr;
    SGroupDefinition* pFormerGroup = nullptr;
    SAttributeGroup* pFormerAttributeGroup = nullptr;
};

/// A name that stands for a component.
struct SReference
{
    SQName name;
    SPosition position;
    std::size_t nDocument = 0;
    std::size_t nRedefinition = s_nNoRedefinition; ///< the redefinition whose former definition is meant
    bool bSimple = false;                          ///< a type that must be a simple one
};

template <typename TTarget>
struct SPointerReference : SReference
{
    TTarget** ppTarget = nullptr;
};

/// The attributes of a type or attribute group as written: uses, and references to groups in between.
struct SAttributeItem
{
    SAttributeUse* pUse = nullptr;
    SAttributeGroup* pGroup = nullptr;
};

struct SAttributeDraft
{
    std::deque<SAttributeItem> items; ///< a deque, as references point into it while it grows
    SWildcard* pWildcard = nullptr;
};

struct SAttributeGroupDraft
{
    SAttributeGroup* pGroup = nullptr;
    SAttributeDraft attributes;
};

struct SComplexTypeDraft
{
    SComplexType* pType = nullptr;
    SAttributeDraft attributes;
    bool bSimpleContent = false;
    bool bMixed = false;
    /// Restriction of simple content: the type that holds the facets, and the one written inside, if there is one.
    SSimpleType* pFacets = nullptr;
    SSimpleType* pInner = nullptr;
};

struct SDraft
{
    std::vector<SDocument> documents;
    std::deque<STree> trees;

    std::vector<SRedefinition> redefinitions;
    std::vector<SPointerReference<SType>> types;
    std::vector<SPointerReference<SSimpleType>> simpleTypes;
    std::vector<SPointerReference<SElement>> elements;
    std::vector<SPointerReference<SAttribute>> attributes;
    std::vector<SPointerReference<SGroupDefinition>> groups;
    std::vector<SPointerReference<SAttributeGroup>> attributeGroups;
    std::vector<SPointerReference<SIdentityConstraint>> constraints;

    std::deque<SAttributeGroupDraft> attributeGroupDrafts;
    std::deque<SComplexTypeDraft> complexTypes;
    /// Members written inside a union, which follow those that it names.
    std::vector<std::pair<SSimpleType*, std::vector<SSimpleType*>>> unionMembers;
};

} // namespace quiver_gen::schema
