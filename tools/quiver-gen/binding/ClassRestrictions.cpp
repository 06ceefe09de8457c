#include "tools/quiver-gen/binding/Classes.h"

#include <algorithm>

namespace quiver_gen::binding
{

namespace
{

bool IsGroupOf(const SNode& node, const SClass& item)
{
    switch (item.eGroup)
    {
    case SClass::EGroup::Sequence:
        return node.eKind == SNode::EKind::Sequence;
    case SClass::EGroup::Choice:
        return node.eKind == SNode::EKind::Choice;
    case SClass::EGroup::All:
        break;
    }
    return node.eKind == SNode::EKind::All;
}

} // namespace

/// In the order of the document: members of the first base first. A restriction tells all that its bases had.
CClasses::SCounterparts CClasses::GetCounterparts(const SClass& base) const
{
    std::vector<const SClass*> classes;
    for (const SClass* pClass = &base; pClass; pClass = pClass->bRestriction ? nullptr : pClass->pBase)
        classes.insert(classes.begin(), pClass);
    SCounterparts counterparts;
    for (const SClass* pClass : classes)
        for (const SMember& member : pClass->members)
            counterparts.members.push_back(&member);
    counterparts.used.resize(counterparts.members.size());
    return counterparts;
}

const SMember* CClasses::TakeCounterpart(SCounterparts& counterparts, const SMember& member, const SNode& node)
{
    for (std::size_t n = 0; n < counterparts.members.size(); ++n)
    {
        const SMember& candidate = *counterparts.members[n];
        if (counterparts.used[n] || !IsCounterpart(candidate, member) ||
            (candidate.eMember == EMember::Group && !IsGroupOf(node, *candidate.pClass)))
            continue;
        counterparts.used[n] = true;
        return &candidate;
    }
    if (!counterparts.members.empty() && IsFirstWarning(*node.pParticle))
        m_build.warnings.Add(EWarning::Restriction, node.pParticle->position,
                             member.strElement.empty() ? "the wildcard" : member.strElement);
    return nullptr;
}

bool CClasses::IsCounterpart(const SMember& base, const SMember& member) const
{
    const bool bObject = base.eMember == EMember::NillableValue || base.eMember == EMember::TypedValue;
    const bool bNarrower = bObject && (member.eMember == EMember::Value || member.eMember == EMember::TypedValue);
    if (base.eMember != member.eMember && !bNarrower)
        return false;
    if (member.eCardinality == ECardinality::Repeated && base.eCardinality != ECardinality::Repeated)
        return false;
    switch (member.eMember)
    {
    case EMember::Group:
        return true;
    case EMember::Wildcard:
        return base.strElement == member.strElement;
    case EMember::Object:
        return base.strElement == member.strElement && base.strUri == member.strUri &&
               IsDerived(member.pClass, *base.pClass);
    case EMember::Value:
    case EMember::NillableValue:
    case EMember::TypedValue:
        break;
    }
    return base.strElement == member.strElement && base.strUri == member.strUri;
}

void CClasses::Inherit(SMember& member, const SMember& base, const schema::SElement* pElement, SNamespace& item)
{
    member.bInherited = true;
    member.strName = base.strName;
    member.eMember = base.eMember;
    if (base.eCardinality == ECardinality::Repeated && member.eCardinality != ECardinality::Repeated)
    {
        member.nMin = member.eCardinality == ECardinality::Required ? 1 : 0;
        member.nMax = 1;
        member.eCardinality = ECardinality::Repeated;
    }
    if (!member.pType)
        return;
    // The items of a collection are checked by the type that the base gave it. A value that is an object is one of a
    // class for its type, which cannot be another one.
    const bool bObject = member.eMember != EMember::Value;
    if ((bObject || member.eCardinality == ECardinality::Repeated) &&
        &m_build.simpleTypes.Get(*pElement->pType->AsSimple()) != base.pType)
        m_build.warnings.Add(EWarning::HeldAsBase, pElement->position, pElement->name.strLocal);
    member.pType = bObject ? base.pType
                           : &m_build.simpleTypes.GetHeldLike(*pElement->pType->AsSimple(), *base.pType,
                                                              {item, pElement->position, pElement->name.strLocal});
}

bool CClasses::IsDerived(const SClass* pClass, const SClass& base)
{
    while (pClass && pClass != &base)
        pClass = pClass->pBase;
    return pClass != nullptr;
}

} // namespace quiver_gen::binding
