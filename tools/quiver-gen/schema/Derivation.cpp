#include "tools/quiver-gen/schema/Derivation.h"

#include "tools/quiver-gen/schema/Wildcards.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace quiver_gen::schema
{

namespace
{

using EUse = SAttributeUse::EUse;

/// How large particles are where references are followed.
struct SMeasure
{
    std::size_t nParticles = 0;
    std::size_t nDepth = 0;
};

/// Whether a model group written without particles stands for nothing. A choice without any lets nothing pass instead.
bool IsNothing(const SParticle& particle)
{
    return particle.eTerm == ETerm::Group && particle.pGroup->particles.empty() &&
           (particle.pGroup->eCompositor != ECompositor::Choice || particle.nMin == 0);
}

bool IsAll(const SParticle& particle)
{
    return particle.pGroup && particle.pGroup->eCompositor == ECompositor::All;
}

std::string Describe(const SType& type)
{
    return type.IsAnonymous() ? "the type" : "the type '" + type.name.strLocal + "'";
}

class CDeriver
{
public:
    CDeriver(SSchemaSet& set, SDraft& draft, const SOrder& order, CDiagnostics& diagnostics)
        : m_set(set)
        , m_order(order)
        , m_diagnostics(diagnostics)
    {
        for (SComplexTypeDraft& type : draft.complexTypes)
            m_complexTypes.emplace(type.pType, &type);
        for (SAttributeGroupDraft& group : draft.attributeGroupDrafts)
            m_attributeGroups.emplace(group.pGroup, &group);
    }

    void Derive()
    {
        for (SAttributeGroup* pGroup : m_order.attributeGroups)
            DeriveAttributeGroup(*pGroup);
        for (SGroupDefinition* pGroup : m_order.groups)
            m_measures[pGroup] = Measure(*pGroup->pGroup);
        for (SType* pType : m_order.types)
        {
            if (pType->eBuiltin != EBuiltin::None)
                continue;
            if (pType->bSimple)
                DeriveSimpleType(*pType->AsSimple());
            else
                DeriveComplexType(*m_complexTypes.at(pType->AsComplex()));
        }
        for (SElement* pElement : m_order.elements)
            if (!pElement->pType)
                pElement->pType = pElement->pHead->pType;
    }

private:
    void AddError(const SComponent& component, std::string strText)
    {
        m_diagnostics.AddError(component.position, std::move(strText));
    }

    // --- Simple types

    void DeriveSimpleType(SSimpleType& type)
    {
        // The step of a simple content's restriction gets its base with its complex type, later.
        if (!type.pBase)
            return;
        const bool bRestriction = type.eVariety == EVariety::Atomic;
        SSimpleType& base = *type.pBase->AsSimple();
        if (!bRestriction)
        {
            CountMembers(type);
            return;
        }
        if (base.eBuiltin == EBuiltin::AnySimpleType && !type.IsAnonymous())
            AddError(type, Describe(type) + " cannot be a restriction of anySimpleType");
        else if (base.eBuiltin == EBuiltin::AnySimpleType)
            AddError(type, "a type cannot be a restriction of anySimpleType");
        type.eVariety = base.eVariety;
        type.eNearestBuiltin = base.eNearestBuiltin;
        type.ePrimitive = base.ePrimitive;
        type.pItem = base.pItem;
        // Handing the members of a large union down a long chain is unfolding, too.
        type.members = base.members;
        Unfold(type, type.members.size(), m_nMembers, "members of unions");
    }

    /// The members of a union that its members unfold to.
    void CountMembers(const SSimpleType& type)
    {
        std::size_t nMembers = 1;
        for (const SSimpleType* pMember : type.members)
        {
            const auto it = m_memberCounts.find(pMember);
            nMembers += it == m_memberCounts.end() ? 1 : it->second;
        }
        if (Unfold(type, nMembers, m_nMembers, "members of unions"))
            m_memberCounts[&type] = nMembers;
    }

    /// Counts what references unfold to, and reports once when it is too much.
    bool Unfold(const SComponent& component, std::size_t nCount, std::size_t& nTotal, std::string_view svWhat)
    {
        const bool bBefore = nTotal <= s_nMaxUnfolded;
        nTotal = std::min(nTotal + nCount, s_nMaxUnfolded + 1);
        const bool bFits = nTotal <= s_nMaxUnfolded;
        if (bBefore && !bFits)
            AddError(component, "the references of the schema unfold to more than " + std::to_string(s_nMaxUnfolded) +
                                    " " + std::string(svWhat));
        return bFits;
    }

    // --- Attributes

    void DeriveAttributeGroup(SAttributeGroup& group)
    {
        SAttributeDraft& draft = m_attributeGroups.at(&group)->attributes;
        group.pOwnWildcard = draft.pWildcard;
        for (const SAttributeItem& item : draft.items)
        {
            if (item.pGroup)
                group.groups.push_back(item.pGroup);
            else
                group.ownAttributes.push_back(item.pUse);
        }
        CollectAttributes(group, draft, group.attributes);
        group.pWildcard = IntersectWildcards(draft.pWildcard, group.groups);
    }

    /// Attributes in the order written, those of a group in the place of its reference.
    void CollectAttributes(const SComponent& component, const SAttributeDraft& draft,
                           std::vector<SAttributeUse*>& attributes)
    {
        std::unordered_map<SQName, const SAttributeUse*, SQNameHash> known;
        const auto add = [&](SAttributeUse& use, const SComponent& place)
        {
            if (!known.emplace(use.GetName(), &use).second)
                AddError(place, "the attribute '" + use.GetName().strLocal + "' stands twice");
            else
                attributes.push_back(&use);
        };
        for (const SAttributeItem& item : draft.items)
        {
            if (!item.pGroup)
            {
                add(*item.pUse, *item.pUse);
                continue;
            }
            if (!Unfold(component, item.pGroup->attributes.size(), m_nAttributes, "attributes"))
                return;
            for (SAttributeUse* pUse : item.pGroup->attributes)
                add(*pUse, component);
        }
    }

    /// The own wildcard as far as those of the groups let it.
    SWildcard* IntersectWildcards(SWildcard* pOwn, const std::vector<SAttributeGroup*>& groups)
    {
        SWildcard* pResult = pOwn;
        bool bMade = false;
        for (const SAttributeGroup* pGroup : groups)
        {
            if (!pGroup->pWildcard)
                continue;
            if (!pResult)
            {
                pResult = pGroup->pWildcard;
                continue;
            }
            if (!std::exchange(bMade, true))
                pResult = &m_set.wildcards.emplace_back(*pResult);
            IntersectNamespaces(*pResult, *pGroup->pWildcard);
        }
        return pResult;
    }

    void DeriveAttributes(SComplexTypeDraft& draft)
    {
        SComplexType& type = *draft.pType;
        for (const SAttributeItem& item : draft.attributes.items)
            if (item.pGroup)
                type.attributeGroups.push_back(item.pGroup);
        CollectAttributes(type, draft.attributes, type.ownAttributes);
        type.pOwnWildcard = IntersectWildcards(draft.attributes.pWildcard, type.attributeGroups);
        type.pWildcard = type.pOwnWildcard;
        const SComplexType* pBase = type.GetComplexBase();
        if (!Unfold(type, (pBase ? pBase->attributes.size() : 0) + type.ownAttributes.size(), m_nAttributes,
                    "attributes"))
            return;
        if (pBase && pBase->eBuiltin == EBuiltin::None)
            type.attributes = pBase->attributes;
        if (type.bExtension)
            ExtendAttributes(type, pBase);
        else
            RestrictAttributes(type);
    }

    void ExtendAttributes(SComplexType& type, const SComplexType* pBase)
    {
        std::unordered_map<SQName, const SAttributeUse*, SQNameHash> known;
        if (pBase && !type.ownAttributes.empty())
            for (const SAttributeUse* pUse : pBase->attributes)
                known.emplace(pUse->GetName(), pUse);
        for (SAttributeUse* pUse : type.ownAttributes)
        {
            if (pUse->eUse == EUse::Prohibited)
                WarnOfProhibited(*pUse);
            else if (!known.emplace(pUse->GetName(), pUse).second)
                AddError(*pUse,
                         "the attribute '" + pUse->GetName().strLocal + "' stands in the base of the type already");
            else
                type.attributes.push_back(pUse);
        }
        if (!pBase || !pBase->pWildcard)
            return;
        if (!type.pWildcard)
        {
            type.pWildcard = pBase->pWildcard;
            return;
        }
        type.pWildcard = &m_set.wildcards.emplace_back(*type.pWildcard);
        UniteNamespaces(*type.pWildcard, *pBase->pWildcard);
    }

    void WarnOfProhibited(const SAttributeUse& use)
    {
        m_diagnostics.AddWarning(use.position, "prohibiting the attribute '" + use.GetName().strLocal +
                                                   "' has no effect, as nothing else would allow it");
    }

    void RestrictAttributes(SComplexType& type)
    {
        std::unordered_map<SQName, std::size_t, SQNameHash> places;
        if (!type.ownAttributes.empty())
            for (std::size_t n = 0; n < type.attributes.size(); ++n)
                places.emplace(type.attributes[n]->GetName(), n);
        bool bRemoved = false;
        for (SAttributeUse* pUse : type.ownAttributes)
        {
            const auto it = places.find(pUse->GetName());
            const bool bProhibited = pUse->eUse == EUse::Prohibited;
            if (it != places.end())
                type.attributes[it->second] = bProhibited ? nullptr : pUse;
            else if (!bProhibited)
                type.attributes.push_back(pUse);
            else if (type.bImplicit)
                WarnOfProhibited(*pUse);
            bRemoved |= bProhibited;
        }
        if (bRemoved)
            type.attributes.erase(std::remove(type.attributes.begin(), type.attributes.end(), nullptr),
                                  type.attributes.end());
    }

    // --- Content

    void DeriveComplexType(SComplexTypeDraft& draft)
    {
        SComplexType& type = *draft.pType;
        if (type.pOwnParticle && IsNothing(*type.pOwnParticle))
            type.pOwnParticle = nullptr;
        if (draft.bSimpleContent)
            DeriveSimpleContent(draft);
        else if (type.pBase->bSimple)
            AddError(type, Describe(type) + " needs a complex type as its base, as it is written with complexContent");
        else if (type.bExtension)
            ExtendContent(draft);
        else
            RestrictContent(draft);
        DeriveAttributes(draft);
        MeasureContent(type);
    }

    void DeriveSimpleContent(SComplexTypeDraft& draft)
    {
        SComplexType& type = *draft.pType;
        type.eContent = EContent::Simple;
        SSimpleType* pBaseContent = type.pBase->AsSimple();
        const SComplexType* pComplexBase = type.GetComplexBase();
        if (pComplexBase)
            pBaseContent = pComplexBase->pSimpleContent;
        if (!type.bExtension && !pComplexBase)
        {
            AddError(type,
                     Describe(type) + " cannot restrict the content of a simple type; only an extension is possible");
            type.pSimpleContent = pBaseContent;
            return;
        }
        const bool bFromMixed = !type.bExtension && pComplexBase && draft.pInner && pComplexBase->IsMixed() &&
                                (!pComplexBase->pContent || IsEmptiableChecked(*pComplexBase));
        if (!pBaseContent && !bFromMixed)
        {
            AddError(type,
                     Describe(type) + " is written with simpleContent, but the content of its base is not simple");
            pBaseContent = &m_set.GetBuiltinSimple(EBuiltin::AnySimpleType);
        }
        type.pSimpleContent = !type.bExtension && draft.pInner ? draft.pInner : pBaseContent;
        if (!draft.pFacets)
            return;
        draft.pFacets->pBase = type.pSimpleContent;
        type.pSimpleContent = draft.pFacets;
        DeriveSimpleType(*draft.pFacets);
    }

    /// What nests too deep or unfolds too far is not walked; that is reported elsewhere.
    bool IsEmptiableChecked(const SComplexType& type) const
    {
        const auto it = m_contentMeasures.find(&type);
        const bool bLarge = it != m_contentMeasures.end() &&
                            (it->second.nDepth > s_nMaxDepth || it->second.nParticles > s_nMaxUnfolded);
        return bLarge || IsEmptiable(*type.pContent);
    }

    void ExtendContent(SComplexTypeDraft& draft)
    {
        SComplexType& type = *draft.pType;
        const SComplexType& base = *type.GetComplexBase();
        type.pSimpleContent = base.pSimpleContent;
        type.pContent = base.pContent;
        type.eContent = base.eContent;
        if (!type.pOwnParticle && (!draft.bMixed || base.eContent != EContent::Empty))
        {
            if (draft.bMixed && base.eContent != EContent::Mixed)
                ReportMixed(type);
            return;
        }
        if (base.eContent == EContent::Simple)
        {
            AddError(type, Describe(type) + " cannot add elements, as the content of its base is simple");
            return;
        }
        if (base.eContent != EContent::Empty && draft.bMixed != base.IsMixed())
            ReportMixed(type);
        type.eContent = draft.bMixed ? EContent::Mixed : EContent::ElementOnly;
        if (!base.pContent)
        {
            type.pContent = type.pOwnParticle;
            return;
        }
        if (IsAll(*base.pContent) || IsAll(*type.pOwnParticle))
            AddError(type, Describe(type) + " cannot extend content where 'all' is on one side");
        type.pContent = MakeSequence(*base.pContent, *type.pOwnParticle, type.position);
    }

    void ReportMixed(const SComplexType& type)
    {
        AddError(type, Describe(type) + " and its base must both be mixed, or neither");
    }

    SParticle* MakeSequence(SParticle& first, SParticle& second, const SPosition& position)
    {
        SModelGroup& group = m_set.modelGroups.emplace_back();
        group.position = position;
        group.particles = {&first, &second};
        SParticle& particle = m_set.particles.emplace_back();
        particle.position = position;
        particle.eTerm = ETerm::Group;
        particle.pGroup = &group;
        return &particle;
    }

    void RestrictContent(SComplexTypeDraft& draft)
    {
        SComplexType& type = *draft.pType;
        const SComplexType& base = *type.GetComplexBase();
        type.pContent = type.pOwnParticle;
        type.eContent = draft.bMixed ? EContent::Mixed : type.pOwnParticle ? EContent::ElementOnly : EContent::Empty;
        if (base.eContent == EContent::Simple)
            AddError(type, Describe(type) + " is written with complexContent, but the content of its base is simple");
        else if (draft.bMixed && !base.IsMixed())
            AddError(type, Describe(type) + " cannot be mixed, as its base is not");
    }

    // --- Size of content

    SMeasure Measure(const SModelGroup& group)
    {
        SMeasure measure{1, 1};
        for (const SParticle* pParticle : group.particles)
            Include(measure, Measure(*pParticle));
        return measure;
    }

    /// Recursion goes as deep as the document; definitions that are referred to were measured before.
    SMeasure Measure(const SParticle& particle)
    {
        if (particle.pDefinition)
            return m_measures.at(particle.pDefinition);
        return particle.pGroup ? Measure(*particle.pGroup) : SMeasure{1, 1};
    }

    static void Include(SMeasure& measure, const SMeasure& part)
    {
        measure.nParticles = std::min(measure.nParticles + part.nParticles, s_nMaxUnfolded + 1);
        measure.nDepth = std::max(measure.nDepth, part.nDepth + 1);
    }

    void MeasureContent(const SComplexType& type)
    {
        SMeasure measure{1, 1};
        if (type.pOwnParticle)
            Include(measure, Measure(*type.pOwnParticle));
        const SComplexType* pBase = type.GetComplexBase();
        if (const auto it = m_contentMeasures.find(pBase); type.bExtension && it != m_contentMeasures.end())
            Include(measure, it->second);
        m_contentMeasures[&type] = measure;
        if (measure.nDepth > s_nMaxDepth)
            AddError(type, "the particles of " + Describe(type) + " nest deeper than " + std::to_string(s_nMaxDepth));
        Unfold(type, measure.nParticles, m_nParticles, "particles");
    }

    SSchemaSet& m_set;
    const SOrder& m_order;
    CDiagnostics& m_diagnostics;
    std::unordered_map<const SComplexType*, SComplexTypeDraft*> m_complexTypes;
    std::unordered_map<const SAttributeGroup*, SAttributeGroupDraft*> m_attributeGroups;
    std::unordered_map<const SGroupDefinition*, SMeasure> m_measures;
    std::unordered_map<const SComplexType*, SMeasure> m_contentMeasures;
    std::unordered_map<const SSimpleType*, std::size_t> m_memberCounts;
    std::size_t m_nAttributes = 0;
    std::size_t m_nParticles = 0;
    std::size_t m_nMembers = 0;
};

} // namespace

void DeriveTypes(SSchemaSet& set, SDraft& draft, const SOrder& order, CDiagnostics& diagnostics)
{
    CDeriver(set, draft, order, diagnostics).Derive();
}

} // namespace quiver_gen::schema
