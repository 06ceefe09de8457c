#include "tools/quiver-gen/binding/Classes.h"
#include "tools/quiver-gen/binding/Documentation.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace quiver_gen::binding
{

namespace
{

SClass::EGroup GroupOf(SNode::EKind eKind)
{
    switch (eKind)
    {
    case SNode::EKind::Choice:
        return SClass::EGroup::Choice;
    case SNode::EKind::All:
        return SClass::EGroup::All;
    case SNode::EKind::Sequence:
    case SNode::EKind::Element:
    case SNode::EKind::Wildcard:
        break;
    }
    return SClass::EGroup::Sequence;
}

/// Whether a class of this kind says all that the node says, so that the node's children are its members.
bool IsContentOf(SClass::EGroup eGroup, const SNode& node)
{
    if (!node.IsGroup() || node.IsRepeated() || GroupOf(node.eKind) != eGroup)
        return false;
    return eGroup != SClass::EGroup::Sequence || node.nMin == 1;
}

} // namespace

void CClasses::AddMembers(SDraft& draft, const SNode& group, SCounterparts* pCounterparts)
{
    if (group.IsEmptyGroup())
        return;
    const bool bOneOnly = group.eKind == SNode::EKind::Sequence && group.IsOnce() && group.children.size() == 1;
    std::vector<const SNode*> nodes;
    if (bOneOnly || IsContentOf(draft.pClass->eGroup, group))
        for (const SNode& child : group.children)
            nodes.push_back(&child);
    else
        nodes.push_back(&group);
    std::vector<SMember> members(nodes.size());
    // Elements choose their names first, as wildcards and groups have none of their own.
    for (const bool bElements : {true, false})
        for (std::size_t n = 0; n < nodes.size(); ++n)
            if ((nodes[n]->eKind == SNode::EKind::Element) == bElements)
                members[n] = MakeMemberOf(draft, *nodes[n], pCounterparts);
    draft.pClass->members = std::move(members);
}

SMember CClasses::MakeMemberOf(SDraft& draft, const SNode& node, SCounterparts* pCounterparts)
{
    SMember member = MakeMember(node);
    SetOccurrence(member, node, draft.pClass->eGroup == SClass::EGroup::Choice);
    const SMember* pCounterpart = pCounterparts ? TakeCounterpart(*pCounterparts, member, node) : nullptr;
    if (pCounterpart)
        Inherit(member, *pCounterpart, node.pElement, *draft.pClass->pNamespace);
    else
        member.strName = ChooseMemberName(draft, node);
    if (member.eMember == EMember::Group)
        member.pClass = &GetGroupClass(draft, node, member.strName, pCounterpart);
    return member;
}

SMember CClasses::MakeMember(const SNode& node)
{
    SMember member;
    member.source = m_build.set.Describe(node.pParticle->position);
    member.documentation = MakeDocumentation(node.pParticle->documentation, m_build.options);
    if (node.eKind == SNode::EKind::Element)
        SetElement(member, *node.pElement, node);
    else if (node.eKind == SNode::EKind::Wildcard)
        SetWildcard(member, *node.pParticle->pWildcard);
    else
    {
        member.eMember = EMember::Group;
        member.strElement = DescribeStart(node);
        SNode once = node;
        once.nMin = once.nMax = 1;
        member.bContentRequired = !IsEmptiable(once);
    }
    return member;
}

void CClasses::SetOccurrence(SMember& member, const SNode& node, bool bInChoice)
{
    constexpr std::int64_t nMost = std::numeric_limits<std::int32_t>::max();
    if (!node.IsRepeated())
    {
        member.eCardinality = node.nMin == 0 || bInChoice ? ECardinality::Optional : ECardinality::Required;
        return;
    }
    member.eCardinality = ECardinality::Repeated;
    member.nMin = std::min(node.nMin, nMost);
    member.nMax = node.nMax > nMost ? schema::s_nUnbounded : node.nMax;
    if ((node.nMin > nMost || node.nMax > nMost) && IsFirstWarning(*node.pParticle))
        m_build.warnings.Add(EWarning::Occurrence, node.pParticle->position);
}

void CClasses::SetElement(SMember& member, const schema::SElement& element, const SNode& node)
{
    member.strElement = element.name.strLocal;
    member.strUri = element.name.strNamespace;
    if (member.documentation.empty())
        member.documentation = MakeDocumentation(element.documentation, m_build.options);
    SetType(member, element);
    // Where the substitutes became a choice, each of them stands for itself.
    const bool bReference = node.pParticle->bReference && node.pParticle->pElement == &element;
    if (member.eMember == EMember::Object && bReference && m_classHeads.count(&element) != 0)
        member.bPolymorphic = member.bSubstitution = true;
}

void CClasses::SetType(SMember& member, const schema::SElement& element)
{
    const schema::SValueConstraint* pValue = element.value ? &*element.value : nullptr;
    if (const schema::SSimpleType* pSimple = std::as_const(*element.pType).AsSimple())
    {
        member.pType = &m_build.simpleTypes.Get(*pSimple);
        member.eMember = element.bNillable                ? EMember::NillableValue
                         : IsAnySimpleType(*member.pType) ? EMember::TypedValue
                                                          : EMember::Value;
        member.value = m_build.simpleTypes.MakeRule(pValue, *pSimple);
        WarnOfId(*pSimple, element);
        return;
    }
    const schema::SComplexType& type = *std::as_const(*element.pType).AsComplex();
    if (type.eBuiltin == schema::EBuiltin::AnyType)
    {
        member.eMember = EMember::Wildcard;
        member.eNamespaces = SMember::ENamespaces::List;
        member.uris = {member.strUri};
        member.eProcess = SMember::EProcess::Lax;
        if (IsFirstWarning(element))
            m_build.warnings.Add(EWarning::AnyType, element.position, element.name.strLocal);
        return;
    }
    member.eMember = EMember::Object;
    member.pClass = &Get(type);
    if (type.pSimpleContent)
        member.value = m_build.simpleTypes.MakeRule(pValue, *type.pSimpleContent);
    if (pValue && IsFirstWarning(element))
        m_build.warnings.Add(EWarning::SharedValue, element.position, element.name.strLocal);
    SetPolymorphic(member, element, type);
}

void CClasses::SetPolymorphic(SMember& member, const schema::SElement& element, const schema::SComplexType& type)
{
    const std::vector<const schema::SComplexType*>& alternatives = GetAlternatives(type);
    const auto isAllowed = [&](const schema::SComplexType* pType)
    {
        return IsDerivedFrom(*pType, type, element.nBlock);
    };
    const auto nAllowed = std::count_if(alternatives.begin(), alternatives.end(), isAllowed);
    member.bPolymorphic = nAllowed > 0;
    if (nAllowed > 0 && nAllowed < static_cast<std::ptrdiff_t>(alternatives.size()) && IsFirstWarning(element))
        m_build.warnings.Add(EWarning::Block, element.position, element.name.strLocal);
}

void CClasses::SetWildcard(SMember& member, const schema::SWildcard& wildcard)
{
    member.eMember = EMember::Wildcard;
    member.eNamespaces = ConvertNamespaces(wildcard);
    member.uris = wildcard.namespaces;
    if (member.documentation.empty())
        member.documentation = MakeDocumentation(wildcard.documentation, m_build.options);
    member.eProcess = ConvertProcess(wildcard);
    if (member.eProcess != ConvertProcessOf(wildcard) && IsFirstWarning(wildcard))
        m_build.warnings.Add(EWarning::WildcardContent, wildcard.position);
}

SMember::EProcess CClasses::ConvertProcessOf(const schema::SWildcard& wildcard)
{
    switch (wildcard.eProcess)
    {
    case schema::SWildcard::EProcess::Skip:
        return SMember::EProcess::Skip;
    case schema::SWildcard::EProcess::Lax:
        return SMember::EProcess::Lax;
    case schema::SWildcard::EProcess::Strict:
        break;
    }
    return SMember::EProcess::Strict;
}

/// Where only some roots were asked for, an element that is not among them is none that the schema lacks.
SMember::EProcess CClasses::ConvertProcess(const schema::SWildcard& wildcard) const
{
    const SMember::EProcess eProcess = ConvertProcessOf(wildcard);
    const bool bAllRoots = m_build.options.roots.empty();
    return eProcess == SMember::EProcess::Strict && !bAllRoots ? SMember::EProcess::Lax : eProcess;
}

SMember::ENamespaces CClasses::ConvertNamespaces(const schema::SWildcard& wildcard)
{
    switch (wildcard.eNamespaces)
    {
    case schema::SWildcard::ENamespaces::Not:
        return SMember::ENamespaces::Not;
    case schema::SWildcard::ENamespaces::List:
        return SMember::ENamespaces::List;
    case schema::SWildcard::ENamespaces::Any:
        break;
    }
    return SMember::ENamespaces::Any;
}

std::string CClasses::GetWantedName(const SNode& node) const
{
    switch (node.eKind)
    {
    case SNode::EKind::Element:
        return ToPascal(node.pElement->name.strLocal);
    case SNode::EKind::Wildcard:
        return "Any";
    case SNode::EKind::Sequence:
    case SNode::EKind::Choice:
    case SNode::EKind::All:
        break;
    }
    if (node.pHead || node.pDefinition)
    {
        const std::string strName = ToPascal((node.pHead ? node.pHead->name : node.pDefinition->name).strLocal);
        return IsReservedMember(strName) ? strName + "Group" : strName;
    }
    return node.eKind == SNode::EKind::Sequence ? "Sequence" : node.eKind == SNode::EKind::Choice ? "Choice" : "All";
}

std::string CClasses::ChooseMemberName(SDraft& draft, const SNode& node)
{
    if (!node.pElement)
        return draft.names.AddOther(GetWantedName(node));
    const std::string* pGiven = m_build.renames.Find(draft.ruleName, node.pElement->name.strLocal);
    return draft.names.AddElement(pGiven ? *pGiven : GetWantedName(node));
}

SClass& CClasses::GetGroupClass(SDraft& owner, const SNode& node, const std::string& strMember,
                                const SMember* pCounterpart)
{
    if (pCounterpart && IsSameContent(node, m_byClass.at(pCounterpart->pClass)->content))
        return *pCounterpart->pClass;
    if (!pCounterpart)
        if (SDraft* pShared = FindSharedGroup(node))
            return *pShared->pClass;
    SDraft& draft = MakeGroupClass(owner, node, strMember, pCounterpart);
    if (pCounterpart)
        return *draft.pClass;
    if (node.pHead)
        m_byHead[node.pHead] = &draft;
    else if (node.pDefinition)
        m_byDefinition[node.pDefinition].push_back(&draft);
    return *draft.pClass;
}

CClasses::SDraft* CClasses::FindSharedGroup(const SNode& node)
{
    if (node.pHead)
    {
        const auto it = m_byHead.find(node.pHead);
        return it == m_byHead.end() ? nullptr : it->second;
    }
    if (!node.pDefinition)
        return nullptr;
    // A definition has few forms: as it is, and in a repetition.
    for (SDraft* pDraft : m_byDefinition[node.pDefinition])
        if (IsSameContent(pDraft->content, node))
            return pDraft;
    return nullptr;
}

CClasses::SDraft& CClasses::MakeGroupClass(SDraft& owner, const SNode& node, const std::string& strMember,
                                           const SMember* pCounterpart)
{
    SNamespace& item = node.pHead         ? m_build.namespaces.Get(node.pHead->name.strNamespace)
                       : node.pDefinition ? m_build.namespaces.Get(node.pDefinition->name.strNamespace)
                                          : *owner.pClass->pNamespace;
    const bool bShared = node.pHead || node.pDefinition;
    const std::string strWanted =
        bShared ? GetWantedName(node) + (node.pHead ? "Choice" : "") : owner.pClass->strName.substr(1) + strMember;
    SDraft& draft = m_drafts.emplace_back();
    draft.bFilled = true;
    draft.ruleName = owner.ruleName;
    draft.content = node;
    draft.content.nMin = draft.content.nMax = 1;
    draft.pClass = &m_build.binding.classes.emplace_back();
    m_byClass[draft.pClass] = &draft;
    SClass& target = *draft.pClass;
    target.strName = "C" + m_build.typeNames.Take(item, strWanted);
    target.pNamespace = &item;
    target.strUri = item.strUri;
    target.strElement = DescribeStart(node);
    target.bPseudo = true;
    target.bUnknownAttributesFail = false;
    target.eGroup = GroupOf(node.eKind);
    target.bEmptiable = IsEmptiable(draft.content);
    target.source = m_build.set.Describe(node.pParticle->position);
    if (node.pDefinition)
        target.documentation = MakeDocumentation(node.pDefinition->documentation, m_build.options);
    if (!pCounterpart)
        AddMembers(draft, draft.content, nullptr);
    else
    {
        target.pBase = pCounterpart->pClass;
        target.bRestriction = true;
        draft.names = CMemberNames(&m_byClass.at(pCounterpart->pClass)->names);
        SCounterparts counterparts = GetCounterparts(*pCounterpart->pClass);
        AddMembers(draft, draft.content, &counterparts);
    }
    item.classes.push_back(draft.pClass);
    return draft;
}

} // namespace quiver_gen::binding
