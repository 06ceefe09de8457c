#include "tools/quiver-gen/schema/Components.h"

#include <algorithm>

namespace quiver_gen::schema
{

namespace
{

constexpr std::string_view s_facetNames[] = {"length",       "minLength",     "maxLength",    "whiteSpace",
                                             "minInclusive", "minExclusive",  "maxInclusive", "maxExclusive",
                                             "totalDigits",  "fractionDigits"};
static_assert(std::size(s_facetNames) == s_nFacets);

/// The other bound of the same side, or the facet itself.
EFacet GetOtherBound(EFacet eFacet)
{
    switch (eFacet)
    {
    case EFacet::MinInclusive:
        return EFacet::MinExclusive;
    case EFacet::MinExclusive:
        return EFacet::MinInclusive;
    case EFacet::MaxInclusive:
        return EFacet::MaxExclusive;
    case EFacet::MaxExclusive:
        return EFacet::MaxInclusive;
    case EFacet::Length:
    case EFacet::MinLength:
    case EFacet::MaxLength:
    case EFacet::WhiteSpace:
    case EFacet::TotalDigits:
    case EFacet::FractionDigits:
        break;
    }
    return eFacet;
}

void AddFacetsOfStep(const SSimpleType& type, SEffectiveFacets& effective)
{
    for (const SFacet& facet : type.facets)
    {
        const SFacet*& pSlot = effective.facets[static_cast<std::size_t>(facet.eFacet)];
        const SFacet* pOther = effective.Find(GetOtherBound(facet.eFacet));
        // Both bounds of a side stand in one step only where the schema is wrong.
        if (!pSlot && !pOther)
            pSlot = &facet;
    }
    if (!type.patterns.empty())
        effective.patterns.push_back(&type.patterns);
    if (!effective.pEnumerations && !type.enumerations.empty())
        effective.pEnumerations = &type.enumerations;
}

EWhiteSpace GetWhiteSpace(const SFacet* pFacet)
{
    if (!pFacet || pFacet->strValue == "collapse")
        return EWhiteSpace::Collapse;
    return pFacet->strValue == "replace" ? EWhiteSpace::Replace : EWhiteSpace::Preserve;
}

/// Whether a simple type is one of the members of a union, or derived from one.
bool IsDerivedFromMember(const SType& type, const SSimpleType& unionType, unsigned nBlocked)
{
    return std::any_of(unionType.members.begin(), unionType.members.end(),
                       [&](const SSimpleType* pMember) { return IsDerivedFrom(type, *pMember, nBlocked); });
}

/// Whether a member's type may take the place of the head's: no step on the way is blocked by the head, its type, or a
/// type on the way.
bool IsTypeSubstitutable(const SType& type, const SElement& head)
{
    unsigned nBlocked = head.nBlock;
    unsigned nSteps = Derivation_None;
    const SType* pType = &type;
    for (; pType && pType != head.pType; pType = pType->pBase)
    {
        const SComplexType* pComplex = pType->AsComplex();
        nSteps |= pComplex && pComplex->bExtension ? Derivation_Extension : Derivation_Restriction;
        if (pComplex && pType != &type)
            nBlocked |= pComplex->nBlock;
    }
    if (const SComplexType* pComplex = head.pType->AsComplex())
        nBlocked |= pComplex->nBlock;
    return pType ? (nSteps & nBlocked) == 0 : IsDerivedFrom(type, *head.pType, nBlocked);
}

} // namespace

std::string SQName::ToString() const
{
    return strNamespace.empty() ? strLocal : "{" + strNamespace + "}" + strLocal;
}

const std::string* SNamespaceScope::Find(std::string_view svPrefix) const
{
    for (const SNamespaceScope* pScope = this; pScope; pScope = pScope->pOuter)
    {
        const auto it = std::lower_bound(pScope->declarations.begin(), pScope->declarations.end(), svPrefix,
                                         [](const auto& declaration, std::string_view svName)
                                         { return declaration.first < svName; });
        if (it != pScope->declarations.end() && it->first == svPrefix)
            return &it->second;
    }
    return nullptr;
}

const SSimpleType* SType::AsSimple() const
{
    return bSimple ? static_cast<const SSimpleType*>(this) : nullptr;
}

const SComplexType* SType::AsComplex() const
{
    return bSimple ? nullptr : static_cast<const SComplexType*>(this);
}

SSimpleType* SType::AsSimple()
{
    return bSimple ? static_cast<SSimpleType*>(this) : nullptr;
}

SComplexType* SType::AsComplex()
{
    return bSimple ? nullptr : static_cast<SComplexType*>(this);
}

std::string_view GetFacetName(EFacet eFacet)
{
    return s_facetNames[static_cast<std::size_t>(eFacet)];
}

const SFacet* SSimpleType::FindOwnFacet(EFacet eFacet) const
{
    for (const SFacet& facet : facets)
        if (facet.eFacet == eFacet)
            return &facet;
    return nullptr;
}

SEffectiveFacets GetEffectiveFacets(const SSimpleType& type)
{
    SEffectiveFacets effective;
    for (const SType* pType = &type; pType && pType->bSimple; pType = pType->pBase)
        AddFacetsOfStep(*pType->AsSimple(), effective);
    std::reverse(effective.patterns.begin(), effective.patterns.end());
    // Lists and unions collapse, though the type they come from, and only that, leaves white space as it is.
    effective.eWhiteSpace = type.eBuiltin == EBuiltin::AnySimpleType
                                ? EWhiteSpace::Preserve
                                : GetWhiteSpace(effective.Find(EFacet::WhiteSpace));
    return effective;
}

bool SWildcard::Allows(const std::string& strNamespace) const
{
    const bool bListed = std::find(namespaces.begin(), namespaces.end(), strNamespace) != namespaces.end();
    switch (eNamespaces)
    {
    case ENamespaces::Any:
        return true;
    case ENamespaces::Not:
        return !bListed;
    case ENamespaces::List:
        break;
    }
    return bListed;
}

const SValueConstraint* SAttributeUse::GetValue() const
{
    if (value)
        return &*value;
    return pAttribute->value ? &*pAttribute->value : nullptr;
}

const SComplexType* SComplexType::GetComplexBase() const
{
    return pBase ? std::as_const(*pBase).AsComplex() : nullptr;
}

bool IsEmptiable(const SParticle& particle)
{
    if (particle.nMin == 0)
        return true;
    if (!particle.pGroup)
        return false;
    const std::vector<SParticle*>& particles = particle.pGroup->particles;
    const auto isEmptiable = [](const SParticle* pParticle)
    {
        return IsEmptiable(*pParticle);
    };
    if (particle.pGroup->eCompositor == ECompositor::Choice)
        return std::any_of(particles.begin(), particles.end(), isEmptiable);
    return std::all_of(particles.begin(), particles.end(), isEmptiable);
}

std::vector<SElement*> GetSubstitutionMembers(const SElement& element)
{
    std::vector<SElement*> members = element.members;
    for (std::size_t n = 0; n < members.size(); ++n)
    {
        // By index, since the list grows under the loop.
        const std::vector<SElement*>& further = members[n]->members;
        members.insert(members.end(), further.begin(), further.end());
    }
    std::sort(members.begin(), members.end(),
              [](const SElement* pA, const SElement* pB) { return pA->position < pB->position; });
    return members;
}

std::vector<SElement*> GetSubstitutes(const SElement& element)
{
    std::vector<SElement*> substitutes;
    if (!element.bAbstract)
        substitutes.push_back(const_cast<SElement*>(&element));
    if (element.nBlock & Derivation_Substitution)
        return substitutes;
    for (SElement* pMember : GetSubstitutionMembers(element))
        if (!pMember->bAbstract && IsTypeSubstitutable(*pMember->pType, element))
            substitutes.push_back(pMember);
    return substitutes;
}

bool IsDerivedFrom(const SType& type, const SType& base, unsigned nBlocked)
{
    const SType* pType = &type;
    for (; pType && pType != &base; pType = pType->pBase)
    {
        const SComplexType* pComplex = pType->AsComplex();
        if ((pComplex && pComplex->bExtension ? Derivation_Extension : Derivation_Restriction) & nBlocked)
            return false;
    }
    if (pType)
        return true;
    const SSimpleType* pUnion = base.AsSimple();
    return type.bSimple && pUnion && pUnion->eVariety == EVariety::Union &&
           IsDerivedFromMember(type, *pUnion, nBlocked);
}

SSchemaSet::SSchemaSet()
{
    MakeAnyType();
    MakeBuiltins();
}

SType* SSchemaSet::FindType(const SQName& name) const
{
    if (name.strNamespace == s_svXsdNamespace)
        if (const auto it = m_builtinsByName.find(name.strLocal); it != m_builtinsByName.end())
            return it->second;
    const SNamespace* pNamespace = FindNamespace(name.strNamespace);
    return pNamespace ? pNamespace->types.Find(name.strLocal) : nullptr;
}

SElement* SSchemaSet::FindElement(const SQName& name) const
{
    const SNamespace* pNamespace = FindNamespace(name.strNamespace);
    return pNamespace ? pNamespace->elements.Find(name.strLocal) : nullptr;
}

SAttribute* SSchemaSet::FindAttribute(const SQName& name) const
{
    const SNamespace* pNamespace = FindNamespace(name.strNamespace);
    return pNamespace ? pNamespace->attributes.Find(name.strLocal) : nullptr;
}

SNamespace* SSchemaSet::FindNamespace(const std::string& strUri) const
{
    const auto it = m_namespacesByUri.find(strUri);
    return it == m_namespacesByUri.end() ? nullptr : it->second;
}

SNamespace& SSchemaSet::GetNamespace(const std::string& strUri)
{
    SNamespace*& pNamespace = m_namespacesByUri[strUri];
    if (!pNamespace)
    {
        pNamespace = &namespaces.emplace_back();
        pNamespace->strUri = strUri;
    }
    return *pNamespace;
}

std::string SSchemaSet::Describe(const SPosition& position) const
{
    const std::string strFile =
        position.nFile < 0 ? "(built in)" : files[static_cast<std::size_t>(position.nFile)].strPath;
    return strFile + ":" + std::to_string(position.nLine) + ":" + std::to_string(position.nColumn);
}

} // namespace quiver_gen::schema
