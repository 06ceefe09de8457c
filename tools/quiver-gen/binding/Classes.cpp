#include "tools/quiver-gen/binding/Classes.h"

#include "tools/quiver-gen/binding/Documentation.h"

#include <algorithm>
#include <utility>

namespace quiver_gen::binding
{

namespace
{

using schema::EBuiltin;
using schema::SComplexType;

bool IsAnyType(const schema::SType& type)
{
    return type.eBuiltin == EBuiltin::AnyType;
}

bool HasElements(const schema::SParticle* pParticle)
{
    if (!pParticle)
        return false;
    if (!pParticle->pGroup)
        return true;
    const std::vector<schema::SParticle*>& particles = pParticle->pGroup->particles;
    return std::any_of(particles.begin(), particles.end(), HasElements);
}

/// The base, if it is a complex type of a schema.
const SComplexType* GetBase(const SComplexType& type)
{
    const SComplexType* pBase = type.GetComplexBase();
    return pBase && !IsAnyType(*pBase) ? pBase : nullptr;
}

bool HasMembers(const SClass* pClass)
{
    for (; pClass; pClass = pClass->pBase)
        if (!pClass->members.empty())
            return true;
    return false;
}

} // namespace

SBuild::SBuild(const schema::SSchemaSet& schemaSet, const SBindingOptions& bindingOptions, SBinding& target,
               schema::CDiagnostics& messages)
    : set(schemaSet)
    , options(bindingOptions)
    , binding(target)
    , diagnostics(messages)
    , warnings(messages)
    , reach(set, substitutes)
    , namespaces(set, options, binding)
    , renames(options)
    , typeNames(set, namespaces, renames)
    , simpleTypes(set, options, binding, namespaces, typeNames, renames, warnings)
    , simplifier(substitutes, warnings)
{
}

CClasses::CClasses(SBuild& build)
    : m_build(build)
{
}

std::vector<const SComplexType*> CClasses::Select() const
{
    const auto addsNothing = [&](const SComplexType& type)
    {
        const SComplexType* pBase = GetBase(type);
        if (!pBase || type.eContent != schema::EContent::Simple || !type.ownAttributes.empty() || type.pOwnWildcard ||
            type.bAbstract != pBase->bAbstract)
            return false;
        return type.pSimpleContent == pBase->pSimpleContent || (type.pSimpleContent->pBase == pBase->pSimpleContent &&
                                                                !NeedsStruct(*type.pSimpleContent, m_build.options));
    };
    std::vector<const SComplexType*> selected;
    for (const SComplexType* pType : m_build.reach.GetComplexTypes())
        if (!addsNothing(*pType))
            selected.push_back(pType);
    return selected;
}

void CClasses::Build(const std::vector<const SComplexType*>& types)
{
    FindElementsOfTypes();
    for (const SComplexType* pType : types)
        m_byType[pType] =
            &Declare(*pType, m_build.typeNames.Get(*pType), m_build.namespaces.Get(pType->name.strNamespace));
    FindSequences(types);
    ExpandHeads();
    for (const SComplexType* pType : types)
        Fill(*m_byType.at(pType));
}

SClass& CClasses::Get(const SComplexType& type)
{
    const SComplexType* pType = &type;
    while (m_byType.count(pType) == 0)
        pType = GetBase(*pType);
    return *m_byType.at(pType)->pClass;
}

SClass& CClasses::GetAnyType(SNamespace& item)
{
    SClass*& pClass = m_anyTypes[&item];
    if (!pClass)
    {
        const SComplexType& type = *m_build.set.GetBuiltin(EBuiltin::AnyType).AsComplex();
        SDraft& draft = Declare(type, m_build.typeNames.Take(item, "AnyType"), item);
        pClass = draft.pClass;
        pClass->strUri.clear();
        pClass->strSchemaName.clear();
        Fill(draft);
    }
    return *pClass;
}

CClasses::SDraft& CClasses::Declare(const SComplexType& type, const std::string& strStem, SNamespace& item)
{
    SDraft& draft = m_drafts.emplace_back();
    draft.pType = &type;
    draft.pClass = &m_build.binding.classes.emplace_back();
    draft.ruleName = GetRuleName(type);
    m_byClass[draft.pClass] = &draft;
    SClass& target = *draft.pClass;
    target.strName = "C" + strStem;
    target.pNamespace = &item;
    target.strUri = type.name.strNamespace;
    target.strSchemaName = type.name.strLocal;
    target.bAbstract = type.bAbstract;
    target.documentation = MakeDocumentation(type.documentation, m_build.options);
    target.source = m_build.set.Describe(type.position);
    const auto it = m_elementsOfTypes.find(&type);
    const schema::SElement* pElement = it == m_elementsOfTypes.end() ? nullptr : it->second;
    target.strElement = pElement ? pElement->name.strLocal : type.name.strLocal;
    if (target.documentation.empty() && pElement && type.IsAnonymous())
        target.documentation = MakeDocumentation(pElement->documentation, m_build.options);
    return draft;
}

/// Types of a redefinition, and those that add nothing, have no class; what they say is said by the next class derived
/// from them.
CClasses::SDerivation CClasses::GetDerivation(const SComplexType& type) const
{
    SDerivation derivation;
    const SComplexType* pStep = &type;
    do
    {
        derivation.bRestriction = derivation.bRestriction || !pStep->bExtension;
        derivation.added.insert(derivation.added.begin(), pStep->pOwnParticle);
        pStep = GetBase(*pStep);
    } while (pStep && m_byType.count(pStep) == 0);
    derivation.pBase = pStep;
    derivation.bRestriction = derivation.bRestriction && pStep;
    if (!pStep || derivation.bRestriction)
        derivation.added = {type.pContent};
    return derivation;
}

/// The first element of a type gives its objects their default name.
void CClasses::FindElementsOfTypes()
{
    for (const bool bGlobal : {true, false})
        for (const schema::SElement* pElement : m_build.reach.GetElements())
            if (pElement->bGlobal == bGlobal && !pElement->bAbstract)
                m_elementsOfTypes.emplace(pElement->pType, pElement);
}

void CClasses::FindSequences(const std::vector<const SComplexType*>& types)
{
    for (const SComplexType* pType : types)
    {
        SDerivation derivation = GetDerivation(*pType);
        if (derivation.bRestriction || std::none_of(derivation.added.begin(), derivation.added.end(), HasElements))
            continue;
        // A line of bases is entered once.
        while (derivation.pBase && m_sequences.insert(derivation.pBase).second)
            derivation = GetDerivation(*derivation.pBase);
    }
}

void CClasses::Fill(SDraft& draft)
{
    if (draft.bFilled)
        return;
    draft.bFilled = true;
    const SDerivation derivation = GetDerivation(*draft.pType);
    if (derivation.pBase)
    {
        SDraft& base = *m_byType.at(derivation.pBase);
        Fill(base);
        draft.pClass->pBase = base.pClass;
        draft.pClass->bRestriction = derivation.bRestriction;
        draft.names = CMemberNames(&base.names);
    }
    FillText(draft, derivation);
    FillAnyAttribute(draft, derivation);
    FillContent(draft, derivation);
    FillAttributes(draft, derivation);
    draft.pClass->pNamespace->classes.push_back(draft.pClass);
}

void CClasses::FillText(SDraft& draft, const SDerivation& derivation)
{
    const SComplexType& type = *draft.pType;
    SClass& target = *draft.pClass;
    const SClass* pOfBase = target.pBase;
    while (pOfBase && !pOfBase->pText)
        pOfBase = pOfBase->pBase;
    if (type.pSimpleContent)
    {
        if (!pOfBase)
        {
            target.pText = &m_build.simpleTypes.Get(*type.pSimpleContent);
            draft.names.Reserve("Value");
        }
        else if (derivation.bRestriction)
            target.pText = &m_build.simpleTypes.GetHeldLike(*type.pSimpleContent, *pOfBase->pText,
                                                            {*target.pNamespace, type.position, target.strName});
    }
    if (!type.IsMixed())
        return;
    target.bMixed = !derivation.pBase || derivation.bRestriction || !derivation.pBase->IsMixed();
    draft.names.Reserve("Text");
    if (IsAnyType(type) || !HasElements(type.pContent))
        return;
    if (m_build.options.eMixed == SBindingOptions::EMixed::Refuse)
        m_build.diagnostics.AddError(type.position, "mixed content is refused");
    else if (target.bMixed)
        m_build.warnings.Add(EWarning::Mixed, type.position);
}

void CClasses::FillContent(SDraft& draft, const SDerivation& derivation)
{
    draft.content = m_build.simplifier.Simplify(derivation.added);
    SClass& target = *draft.pClass;
    target.eGroup = ChooseGroup(draft, derivation);
    const bool bAsBase = target.pBase && !target.bRestriction && draft.content.IsEmptyGroup();
    target.bEmptiable = bAsBase ? target.pBase->bEmptiable : IsEmptiable(draft.content);
    if (target.bRestriction)
    {
        SCounterparts counterparts = GetCounterparts(*target.pBase);
        AddMembers(draft, draft.content, &counterparts);
    }
    else
        AddMembers(draft, draft.content, nullptr);
}

SClass::EGroup CClasses::ChooseGroup(const SDraft& draft, const SDerivation& derivation) const
{
    const SNode& content = draft.content;
    if (HasMembers(draft.pClass->pBase))
    {
        const SClass::EGroup eBase = draft.pClass->pBase->eGroup;
        const bool bKeepsAll = eBase != SClass::EGroup::All || content.eKind == SNode::EKind::All;
        if (content.IsEmptyGroup() || (derivation.bRestriction && bKeepsAll))
            return eBase;
        return SClass::EGroup::Sequence;
    }
    if (m_sequences.count(draft.pType) != 0 || content.IsRepeated())
        return SClass::EGroup::Sequence;
    if (content.eKind == SNode::EKind::Choice)
        return SClass::EGroup::Choice;
    const bool bAll = content.eKind == SNode::EKind::All &&
                      (content.nMin == 1 || std::all_of(content.children.begin(), content.children.end(), IsEmptiable));
    return bAll ? SClass::EGroup::All : SClass::EGroup::Sequence;
}

/// A class knows its substitutes, and their classes are derived from it. It can do so for one head only, and for no
/// other element that may say a type, as that would take the substitutes too.
void CClasses::ExpandHeads()
{
    std::unordered_set<const SClass*> classes;
    for (const schema::SElement* pElement : m_build.reach.GetPlaced())
    {
        const SComplexType* pType = std::as_const(*pElement->pType).AsComplex();
        if (pType && !IsAnyType(*pType) && !GetAlternatives(*pType).empty())
            classes.insert(&Get(*pType));
    }
    for (const schema::SElement* pHead : m_build.reach.GetHeads())
    {
        const SComplexType* pType = std::as_const(*pHead->pType).AsComplex();
        if (pType && !IsAnyType(*pType) && classes.insert(&Get(*pType)).second)
        {
            m_heads.push_back(pHead);
            m_classHeads.insert(pHead);
        }
        else
            m_build.simplifier.ExpandHead(*pHead);
    }
}

const std::vector<const SComplexType*>& CClasses::GetAlternatives(const SComplexType& type)
{
    const auto [it, bNew] = m_alternatives.try_emplace(&type);
    if (bNew && m_build.reach.HasDerived(type))
        for (const SComplexType* pDerived : m_build.reach.GetDerived(type))
            if (!pDerived->bAbstract && IsDerivedFrom(*pDerived, type, type.nBlock))
                it->second.push_back(pDerived);
    return it->second;
}

void CClasses::AddAlternatives()
{
    std::unordered_set<const SClass*> done;
    const auto addType = [&](SClass& target, const SComplexType& type)
    {
        target.alternatives.push_back({false, type.name.strNamespace, type.name.strLocal, &Get(type)});
    };
    for (const schema::SElement* pElement : m_build.reach.GetElements())
    {
        const SComplexType* pType = std::as_const(*pElement->pType).AsComplex();
        if (!pType || IsAnyType(*pType) || GetAlternatives(*pType).empty())
            continue;
        SClass& target = Get(*pType);
        if (!done.insert(&target).second)
            continue;
        // Where the element's type adds nothing to that of the class, it is among the derived ones.
        const SComplexType& declared = *m_byClass.at(&target)->pType;
        if (!declared.bAbstract)
            addType(target, declared);
        for (const SComplexType* pDerived : GetAlternatives(declared))
            addType(target, *pDerived);
    }
    for (const schema::SElement* pHead : m_heads)
        for (const schema::SElement* pSubstitute : m_build.substitutes.Get(*pHead))
        {
            const SComplexType& type = *pSubstitute->pType->AsComplex();
            Get(*pHead->pType->AsComplex())
                .alternatives.push_back({true, pSubstitute->name.strNamespace, pSubstitute->name.strLocal, &Get(type),
                                         m_byType.count(&type) == 0});
        }
}

void CClasses::MarkNillable()
{
    std::unordered_map<const SClass*, const schema::SElement*> nillable;
    const auto classOf = [&](const schema::SElement& element) -> SClass*
    {
        const SComplexType* pType = std::as_const(*element.pType).AsComplex();
        return pType && !IsAnyType(*pType) ? &Get(*pType) : nullptr;
    };
    for (const schema::SElement* pElement : m_build.reach.GetElements())
        if (SClass* pClass = pElement->bNillable ? classOf(*pElement) : nullptr)
            pClass->bNillable = true;
    const auto isNillable = [](const SClass* pClass)
    {
        while (pClass && !pClass->bNillable)
            pClass = pClass->pBase;
        return pClass != nullptr;
    };
    for (const schema::SElement* pElement : m_build.reach.GetElements())
        if (const SClass* pClass = classOf(*pElement); pClass && !pElement->bNillable && isNillable(pClass))
            m_build.warnings.Add(EWarning::Nillable, pElement->position, pElement->name.strLocal);
    for (SClass& item : m_build.binding.classes)
        item.bNillable = item.bNillable && !isNillable(item.pBase);
}

} // namespace quiver_gen::binding
