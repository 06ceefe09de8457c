#include "tools/quiver-gen/binding/Reach.h"

#include <algorithm>

namespace quiver_gen::binding
{

namespace
{

template <typename TComponent>
bool IsBefore(const TComponent* pA, const TComponent* pB)
{
    return pA->position < pB->position;
}

bool IsCalled(const schema::SElement& element, const std::string& strName)
{
    return element.name.strLocal == strName || element.name.ToString() == strName;
}

} // namespace

bool CReach::Find(const SBindingOptions& options, schema::CDiagnostics& diagnostics)
{
    FindDerived();
    if (!ChooseRoots(options, diagnostics))
        return false;
    for (const schema::SElement* pElement : m_roots)
        AddElement(*pElement);
    if (options.roots.empty())
        for (const schema::SNamespace& item : m_set.namespaces)
            for (const schema::SType* pType : item.types.list)
                AddType(pType);
    AddKnownAttributes();
    FollowPending();
    AddNamedTypes();
    FollowPending();
    Sort();
    return true;
}

std::vector<const schema::SComplexType*> CReach::GetDerived(const schema::SComplexType& type) const
{
    std::vector<const schema::SComplexType*> derived{&type};
    for (std::size_t n = 0; n < derived.size(); ++n)
        if (const auto it = m_derived.find(derived[n]); it != m_derived.end())
            derived.insert(derived.end(), it->second.begin(), it->second.end());
    derived.erase(derived.begin());
    derived.erase(std::remove_if(derived.begin(), derived.end(),
                                 [&](const schema::SComplexType* pType)
                                 { return pType->IsAnonymous() || pType->bRedefined || !IsReached(*pType); }),
                  derived.end());
    std::stable_sort(derived.begin(), derived.end(), IsBefore<schema::SComplexType>);
    return derived;
}

void CReach::FindDerived()
{
    for (const schema::SComplexType& type : m_set.complexTypes)
        if (const schema::SComplexType* pBase = type.GetComplexBase();
            pBase && pBase->eBuiltin == schema::EBuiltin::None)
            m_derived[pBase].push_back(&type);
}

bool CReach::ChooseRoots(const SBindingOptions& options, schema::CDiagnostics& diagnostics)
{
    std::vector<bool> found(options.roots.size());
    for (const schema::SNamespace& item : m_set.namespaces)
        for (const schema::SElement* pElement : item.elements.list)
        {
            bool bChosen = options.roots.empty();
            for (std::size_t n = 0; n < options.roots.size(); ++n)
                if (IsCalled(*pElement, options.roots[n]))
                    bChosen = found[n] = true;
            if (bChosen)
                m_roots.push_back(pElement);
        }
    for (std::size_t n = 0; n < found.size(); ++n)
        if (!found[n])
            diagnostics.AddError({}, "there is no global element " + options.roots[n] + " to be a root");
    return std::find(found.begin(), found.end(), false) == found.end();
}

/// What a wildcard lets through is checked by the global attributes.
void CReach::AddKnownAttributes()
{
    if (std::all_of(m_set.wildcards.begin(), m_set.wildcards.end(),
                    [](const schema::SWildcard& wildcard)
                    { return wildcard.eProcess == schema::SWildcard::EProcess::Skip; }))
        return;
    for (const schema::SNamespace& item : m_set.namespaces)
        for (const schema::SAttribute* pAttribute : item.attributes.list)
            AddType(pAttribute->pType);
}

void CReach::FollowPending()
{
    while (!m_pending.empty())
    {
        const schema::SType* pType = m_pending.back();
        m_pending.pop_back();
        if (const schema::SSimpleType* pSimple = pType->AsSimple())
            FollowSimple(*pSimple);
        else
            FollowComplex(*pType->AsComplex());
    }
}

bool CReach::HasElementsOfAnySimpleType() const
{
    return std::any_of(m_elements.begin(), m_elements.end(),
                       [](const schema::SElement* pElement)
                       { return pElement->pType->eBuiltin == schema::EBuiltin::AnySimpleType; });
}

/// A value of any simple type may say that it is of one of the schema.
void CReach::AddNamedTypes()
{
    if (!HasElementsOfAnySimpleType())
        return;
    for (const schema::SNamespace& item : m_set.namespaces)
        for (const schema::SType* pType : item.types.list)
            if (pType->bSimple)
                AddType(pType);
}

void CReach::AddType(const schema::SType* pType)
{
    if (!pType || !m_types.insert(pType).second)
        return;
    m_pending.push_back(pType);
    m_inOrder.push_back(pType);
}

void CReach::AddElement(const schema::SElement& element)
{
    if (!m_visited.insert(&element).second)
        return;
    m_elements.push_back(&element);
    AddType(element.pType);
    if (const schema::SComplexType* pType = std::as_const(*element.pType).AsComplex())
        AddDerived(*pType);
}

/// xsi:type may name any type derived from the declared one.
void CReach::AddDerived(const schema::SComplexType& declared)
{
    if (!m_declared.insert(&declared).second)
        return;
    std::vector<const schema::SComplexType*> types{&declared};
    for (std::size_t n = 0; n < types.size(); ++n)
    {
        AddType(types[n]);
        const auto it = m_derived.find(types[n]);
        if (it == m_derived.end())
            continue;
        for (const schema::SComplexType* pDerived : it->second)
            if (m_declared.insert(pDerived).second)
                types.push_back(pDerived);
    }
}

void CReach::AddParticle(const schema::SParticle& particle)
{
    if (particle.pElement)
    {
        AddElement(*particle.pElement);
        if (particle.bReference && m_substitutes.IsHead(*particle.pElement))
        {
            m_heads.push_back(particle.pElement);
            for (const schema::SElement* pSubstitute : m_substitutes.Get(*particle.pElement))
                AddElement(*pSubstitute);
        }
        else
            m_placed.push_back(particle.pElement);
    }
    if (particle.pGroup && m_groups.insert(particle.pGroup).second)
        for (const schema::SParticle* pParticle : particle.pGroup->particles)
            AddParticle(*pParticle);
}

void CReach::FollowSimple(const schema::SSimpleType& type)
{
    AddType(type.pBase && type.pBase->bSimple ? type.pBase : nullptr);
    AddType(type.pItem);
    for (const schema::SSimpleType* pMember : type.members)
        AddType(pMember);
}

void CReach::FollowComplex(const schema::SComplexType& type)
{
    AddType(type.pBase);
    AddType(type.pSimpleContent);
    if (type.eBuiltin != schema::EBuiltin::None)
        return;
    for (const schema::SAttributeUse* pUse : type.attributes)
        AddType(pUse->pAttribute->pType);
    if (type.pContent)
        AddParticle(*type.pContent);
}

void CReach::Sort()
{
    for (const schema::SType* pType : m_inOrder)
    {
        if (pType->eBuiltin != schema::EBuiltin::None)
            continue;
        if (const schema::SSimpleType* pSimple = pType->AsSimple())
            m_simpleTypes.push_back(pSimple);
        else if (!pType->bRedefined)
            m_complexTypes.push_back(pType->AsComplex());
    }
    std::stable_sort(m_simpleTypes.begin(), m_simpleTypes.end(), IsBefore<schema::SSimpleType>);
    std::stable_sort(m_complexTypes.begin(), m_complexTypes.end(), IsBefore<schema::SComplexType>);
    std::stable_sort(m_elements.begin(), m_elements.end(), IsBefore<schema::SElement>);
    std::stable_sort(m_heads.begin(), m_heads.end(), IsBefore<schema::SElement>);
    m_heads.erase(std::unique(m_heads.begin(), m_heads.end()), m_heads.end());
}

} // namespace quiver_gen::binding
