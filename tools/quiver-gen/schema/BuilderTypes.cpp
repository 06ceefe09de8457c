#include "tools/quiver-gen/schema/Builder.h"
#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>

namespace quiver_gen::schema
{

namespace
{

/// The facet that an element writes, if it is one other than a pattern or an enumeration.
std::optional<EFacet> FindFacet(const SNode& node)
{
    for (std::size_t n = 0; n < s_nFacets; ++n)
        if (node.Is(GetFacetName(static_cast<EFacet>(n))))
            return static_cast<EFacet>(n);
    return std::nullopt;
}

bool IsFacet(const SNode& node)
{
    return FindFacet(node) || node.Is("pattern") || node.Is("enumeration");
}

bool IsCounted(EFacet eFacet)
{
    switch (eFacet)
    {
    case EFacet::Length:
    case EFacet::MinLength:
    case EFacet::MaxLength:
    case EFacet::TotalDigits:
    case EFacet::FractionDigits:
        return true;
    case EFacet::WhiteSpace:
    case EFacet::MinInclusive:
    case EFacet::MinExclusive:
    case EFacet::MaxInclusive:
    case EFacet::MaxExclusive:
        break;
    }
    return false;
}

} // namespace

// --- Simple types ---------------------------------------------------------------------------------------------------

SSimpleType* CBuilder::BuildSimpleType(const SNode& node)
{
    SSimpleType& type = m_set.simpleTypes.emplace_back();
    Start(node, type);
    type.name = MakeGlobalName(node);
    type.nFinal = ReadBits(node, "final", "finalDefault", Derivation_Restriction | Derivation_List | Derivation_Union);
    type.pBase = &m_set.GetBuiltin(EBuiltin::AnySimpleType);
    if (const SNode* pRestriction = FindChild(node, "restriction"))
        BuildSimpleRestriction(*pRestriction, type);
    else if (const SNode* pList = FindChild(node, "list"))
        BuildList(*pList, type);
    else if (const SNode* pUnion = FindChild(node, "union"))
        BuildUnion(*pUnion, type);
    return &type;
}

SSimpleType* CBuilder::BuildAnonymousSimpleType(const SNode& node, SType& owner)
{
    SSimpleType* pType = BuildSimpleType(node);
    pType->pOwnerType = &owner;
    return pType;
}

void CBuilder::BuildSimpleRestriction(const SNode& node, SSimpleType& type)
{
    const SNode* pInner = FindChild(node, "simpleType");
    if ((pInner != nullptr) == (node.Find("base") != nullptr))
        AddError(node, "a restriction of a simple type has either a base attribute or a simpleType");
    else if (pInner)
        type.pBase = BuildAnonymousSimpleType(*pInner, type);
    else
        ReferToBase(node, type, true);
    BuildFacets(node, type);
}

void CBuilder::BuildList(const SNode& node, SSimpleType& type)
{
    type.eVariety = EVariety::List;
    const SNode* pInner = FindChild(node, "simpleType");
    const std::string* pName = node.Find("itemType");
    if ((pInner != nullptr) == (pName != nullptr))
        AddError(node, "a list has either an itemType attribute or a simpleType");
    else if (pInner)
        type.pItem = BuildAnonymousSimpleType(*pInner, type);
    else
        Refer(m_draft.simpleTypes, node, *pName, &type.pItem);
}

void CBuilder::BuildUnion(const SNode& node, SSimpleType& type)
{
    type.eVariety = EVariety::Union;
    const std::string* pNames = node.Find("memberTypes");
    const std::vector<std::string_view> names = pNames ? SplitList(*pNames) : std::vector<std::string_view>();
    // All at once, as references point into the list.
    type.members.assign(names.size(), nullptr);
    for (std::size_t n = 0; n < names.size(); ++n)
        Refer(m_draft.simpleTypes, node, names[n], &type.members[n]);
    std::vector<SSimpleType*> inner;
    for (const SNode* pChild : node.children)
        if (pChild->Is("simpleType"))
            inner.push_back(BuildAnonymousSimpleType(*pChild, type));
    if (names.empty() && inner.empty())
        AddError(node, "a union needs at least one member type");
    m_draft.unionMembers.push_back({&type, std::move(inner)});
}

void CBuilder::BuildFacets(const SNode& node, SSimpleType& type)
{
    for (const SNode* pChild : node.children)
    {
        if (const std::optional<EFacet> facet = FindFacet(*pChild))
            BuildFacet(*pChild, *facet, type);
        else if (pChild->Is("pattern"))
        {
            SPattern& pattern = type.patterns.emplace_back();
            Start(*pChild, pattern);
            pattern.strValue = *pChild->Find("value");
        }
        else if (pChild->Is("enumeration"))
        {
            SEnumeration& enumeration = type.enumerations.emplace_back();
            Start(*pChild, enumeration);
            enumeration.strValue = *pChild->Find("value");
            enumeration.pScope = pChild->pScope;
        }
    }
}

void CBuilder::BuildFacet(const SNode& node, EFacet eFacet, SSimpleType& type)
{
    const std::string strName(GetFacetName(eFacet));
    if (type.FindOwnFacet(eFacet))
    {
        AddError(node, "the facet '" + strName + "' stands twice in one step");
        return;
    }
    SFacet& facet = type.facets.emplace_back();
    Start(node, facet);
    facet.eFacet = eFacet;
    facet.strValue = Trim(*node.Find("value"));
    facet.bFixed = ReadBoolean(node, "fixed");
    const bool bCounted = IsCounted(eFacet);
    const bool bCount = bCounted && ParseCount(facet.strValue, facet.nValue);
    const bool bPositive = eFacet == EFacet::TotalDigits;
    if (bCounted && (!bCount || (bPositive && facet.nValue == 0)))
        AddError(node, "the facet '" + strName + "' is '" + facet.strValue + "', where a " +
                           (bPositive ? "positive" : "non-negative") + " integer is needed");
    if (eFacet == EFacet::WhiteSpace && facet.strValue != "preserve" && facet.strValue != "replace" &&
        facet.strValue != "collapse")
        AddError(node, "the facet 'whiteSpace' is '" + facet.strValue +
                           "', where 'preserve', 'replace' or 'collapse' is needed");
}

// --- Complex types --------------------------------------------------------------------------------------------------

SComplexType* CBuilder::BuildComplexType(const SNode& node)
{
    constexpr unsigned nAllowed = Derivation_Extension | Derivation_Restriction;
    SComplexType& type = m_set.complexTypes.emplace_back();
    Start(node, type);
    type.name = MakeGlobalName(node);
    type.bAbstract = ReadBoolean(node, "abstract");
    type.nFinal = ReadBits(node, "final", "finalDefault", nAllowed);
    type.nBlock = ReadBits(node, "block", "blockDefault", nAllowed);
    SComplexTypeDraft& draft = m_draft.complexTypes.emplace_back();
    draft.pType = &type;
    draft.bMixed = ReadBoolean(node, "mixed");
    if (const SNode* pSimple = FindChild(node, "simpleContent"))
        BuildSimpleContent(*pSimple, draft);
    else if (const SNode* pComplex = FindChild(node, "complexContent"))
        BuildComplexContent(*pComplex, draft);
    else
    {
        type.bImplicit = true;
        type.pBase = &m_set.GetBuiltin(EBuiltin::AnyType);
        BuildTypeContent(node, draft);
        if (m_pRedefine && !type.IsAnonymous())
            AddError(node, "a redefined type is derived from its former definition");
    }
    return &type;
}

void CBuilder::BuildSimpleContent(const SNode& node, SComplexTypeDraft& draft)
{
    draft.bSimpleContent = true;
    SComplexType& type = *draft.pType;
    const SNode* pExtension = FindChild(node, "extension");
    type.bExtension = pExtension != nullptr;
    const SNode& step = pExtension ? *pExtension : *FindChild(node, "restriction");
    ReferToBase(step, type, false);
    BuildAttributes(step, draft.attributes, nullptr);
    if (pExtension)
        return;
    if (std::any_of(step.children.begin(), step.children.end(), [](const SNode* pChild) { return IsFacet(*pChild); }))
    {
        draft.pFacets = &m_set.simpleTypes.emplace_back();
        draft.pFacets->position = m_document.GetPosition(step);
        draft.pFacets->name.strNamespace = m_document.strTargetNamespace;
        draft.pFacets->pOwnerType = &type;
        BuildFacets(step, *draft.pFacets);
    }
    if (const SNode* pInner = FindChild(step, "simpleType"))
        draft.pInner = BuildAnonymousSimpleType(*pInner, type);
}

void CBuilder::BuildComplexContent(const SNode& node, SComplexTypeDraft& draft)
{
    if (node.Find("mixed"))
        draft.bMixed = ReadBoolean(node, "mixed");
    const SNode* pExtension = FindChild(node, "extension");
    draft.pType->bExtension = pExtension != nullptr;
    const SNode& step = pExtension ? *pExtension : *FindChild(node, "restriction");
    ReferToBase(step, *draft.pType, false);
    BuildTypeContent(step, draft);
}

/// Particle and attributes of a type, or of its step of derivation.
void CBuilder::BuildTypeContent(const SNode& node, SComplexTypeDraft& draft)
{
    for (const SNode* pChild : node.children)
        if (SParticle* pParticle = BuildParticle(*pChild, {draft.pType, nullptr}))
            draft.pType->pOwnParticle = pParticle;
    BuildAttributes(node, draft.attributes, nullptr);
}

void CBuilder::ReferToBase(const SNode& node, SType& type, bool bSimple)
{
    SPointerReference<SType>* pReference = Refer(m_draft.types, node, *node.Find("base"), &type.pBase);
    if (!pReference)
        return;
    pReference->bSimple = bSimple;
    if (!m_pRedefine || type.IsAnonymous())
        return;
    if (pReference->name == type.name)
        pReference->nRedefinition = m_nRedefinition;
    else
        AddError(node, "a redefined type is derived from its former definition");
}

} // namespace quiver_gen::schema
