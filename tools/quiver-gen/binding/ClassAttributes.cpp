#include "tools/quiver-gen/binding/Classes.h"
#include "tools/quiver-gen/binding/Documentation.h"

#include <algorithm>
#include <utility>

namespace quiver_gen::binding
{

void CClasses::FillAttributes(SDraft& draft, const SDerivation& derivation)
{
    const auto isOfBase = [&](const schema::SAttributeUse* pUse)
    {
        const auto& inBase = derivation.pBase->attributes;
        return std::any_of(inBase.begin(), inBase.end(),
                           [&](const schema::SAttributeUse* pOther) { return pOther->GetName() == pUse->GetName(); });
    };
    for (const schema::SAttributeUse* pUse : draft.pType->attributes)
        if (!derivation.pBase || derivation.bRestriction || !isOfBase(pUse))
            AddAttribute(draft, *pUse, derivation.bRestriction);
}

void CClasses::AddAttribute(SDraft& draft, const schema::SAttributeUse& use, bool bRestriction)
{
    const schema::SAttribute& declaration = *use.pAttribute;
    SAttribute attribute;
    attribute.strAttribute = use.GetName().strLocal;
    attribute.strUri = use.GetName().strNamespace;
    attribute.bRequired = use.eUse == schema::SAttributeUse::EUse::Required;
    attribute.pType = &m_build.simpleTypes.Get(*declaration.pType);
    attribute.value = m_build.simpleTypes.MakeRule(use.GetValue(), *declaration.pType);
    attribute.source = m_build.set.Describe(use.position);
    attribute.documentation = MakeDocumentation(use.documentation, m_build.options);
    if (attribute.documentation.empty())
        attribute.documentation = MakeDocumentation(declaration.documentation, m_build.options);
    WarnOfId(*declaration.pType, declaration);
    if (const SAttribute* pOfBase = bRestriction ? FindAttribute(draft.pClass->pBase, attribute) : nullptr)
    {
        attribute.bInherited = true;
        attribute.strName = pOfBase->strName;
        attribute.pType = &m_build.simpleTypes.GetHeldLike(
            *declaration.pType, *pOfBase->pType, {*draft.pClass->pNamespace, use.position, declaration.name.strLocal});
    }
    else
    {
        const std::string* pGiven = m_build.renames.Find(draft.ruleName, "@" + attribute.strAttribute);
        if (!pGiven)
            pGiven = m_build.renames.Find(draft.ruleName, attribute.strAttribute);
        attribute.strName = draft.names.AddAttribute(pGiven ? *pGiven : ToPascal(attribute.strAttribute));
    }
    draft.pClass->attributes.push_back(std::move(attribute));
}

void CClasses::FillAnyAttribute(SDraft& draft, const SDerivation& derivation)
{
    const schema::SWildcard* pWildcard = draft.pType->pWildcard;
    const schema::SWildcard* pOfBase = derivation.pBase ? derivation.pBase->pWildcard : nullptr;
    if (!pWildcard)
        return;
    const bool bAsBase = pOfBase && (pOfBase == pWildcard || (pOfBase->eNamespaces == pWildcard->eNamespaces &&
                                                              pOfBase->namespaces == pWildcard->namespaces &&
                                                              pOfBase->eProcess == pWildcard->eProcess));
    if (bAsBase && !derivation.bRestriction)
        return;
    SClass& target = *draft.pClass;
    target.bAnyAttribute = true;
    target.eAnyAttribute = ConvertNamespaces(*pWildcard);
    target.anyAttributeUris = pWildcard->namespaces;
    target.eAnyAttributeProcess = ConvertProcessOf(*pWildcard);
    draft.names.Reserve("AnyAttribute");
    draft.names.Reserve("AnyAttributes");
}

const SAttribute* CClasses::FindAttribute(const SClass* pBase, const SAttribute& attribute) const
{
    for (; pBase; pBase = pBase->pBase)
        for (const SAttribute& other : pBase->attributes)
            if (other.strAttribute == attribute.strAttribute && other.strUri == attribute.strUri)
                return &other;
    return nullptr;
}

void CClasses::WarnOfId(const schema::SSimpleType& type, const schema::SComponent& place)
{
    const schema::SSimpleType& item = type.pItem ? *type.pItem : type;
    const bool bId = item.eNearestBuiltin == schema::EBuiltin::ID || item.eNearestBuiltin == schema::EBuiltin::IDREF;
    if (bId && IsFirstWarning(place))
        m_build.warnings.Add(EWarning::Id, place.position);
}

} // namespace quiver_gen::binding
