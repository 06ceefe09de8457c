#include "tools/quiver-gen/schema/Checks.h"

#include "tools/quiver-gen/schema/SimpleTypeChecks.h"
#include "tools/quiver-gen/schema/Wildcards.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace quiver_gen::schema
{

namespace
{

using EUse = SAttributeUse::EUse;

std::string Describe(const SType& type)
{
    return type.IsAnonymous() ? "the type" : "the type '" + type.name.strLocal + "'";
}

bool IsAll(const SParticle& particle)
{
    return particle.pGroup && particle.pGroup->eCompositor == ECompositor::All;
}

bool IsIdType(const SSimpleType& type)
{
    return type.eVariety == EVariety::Atomic && type.eNearestBuiltin == EBuiltin::ID;
}

class CChecker
{
public:
    CChecker(const SSchemaSet& set, CDiagnostics& diagnostics)
        : m_set(set)
        , m_diagnostics(diagnostics)
        , m_values(set)
    {
    }

    void Check(const SOrder& order)
    {
        // The base comes first, so that what is wrong there is found there.
        for (const SType* pType : order.types)
            if (pType->bSimple && pType->eBuiltin == EBuiltin::None)
                CheckSimpleType(*pType->AsSimple(), m_values, m_diagnostics);
        for (const SComplexType& type : m_set.complexTypes)
            CheckComplexType(type);
        for (const SModelGroup& group : m_set.modelGroups)
            CheckModelGroup(group);
        for (const SElement& element : m_set.elements)
            CheckElement(element);
        for (const SAttribute& attribute : m_set.attributes)
            CheckAttribute(attribute);
        for (const SAttributeUse& use : m_set.attributeUses)
            CheckUse(use);
        for (const SIdentityConstraint& constraint : m_set.constraints)
            CheckConstraint(constraint);
    }

private:
    void AddError(const SComponent& component, std::string strText)
    {
        m_diagnostics.AddError(component.position, std::move(strText));
    }

    // --- Complex types

    void CheckComplexType(const SComplexType& type)
    {
        const unsigned nBit = type.bExtension ? Derivation_Extension : Derivation_Restriction;
        if (type.pBase->nFinal & nBit)
            AddError(type, Describe(*type.pBase) + " is final and admits no " +
                               (type.bExtension ? "extension" : "restriction"));
        const SComplexType* pBase = type.GetComplexBase();
        if (!type.bExtension && pBase && pBase->eBuiltin == EBuiltin::None)
            CheckRestrictedAttributes(type, *pBase);
        CheckIds(type);
        if (type.pOwnParticle && IsAll(*type.pOwnParticle) && type.pOwnParticle->IsRepeated())
            AddError(*type.pOwnParticle, "a group of 'all' occurs at most once");
        if (!type.bExtension && pBase && pBase->eBuiltin == EBuiltin::None && !type.pContent && pBase->pContent &&
            !IsEmptiable(*pBase->pContent))
            AddError(type, Describe(type) + " has no elements, but its base requires some");
        if (type.pContent)
            CheckConsistency(type);
    }

    void CheckRestrictedAttributes(const SComplexType& type, const SComplexType& base)
    {
        if (!type.ownAttributes.empty())
        {
            std::unordered_map<SQName, const SAttributeUse*, SQNameHash> inherited;
            for (const SAttributeUse* pUse : base.attributes)
                inherited.emplace(pUse->GetName(), pUse);
            for (const SAttributeUse* pUse : type.ownAttributes)
            {
                const auto it = inherited.find(pUse->GetName());
                CheckRestrictedAttribute(*pUse, it == inherited.end() ? nullptr : it->second, base);
            }
        }
        if (type.pOwnWildcard && (!base.pWildcard || !IsSubset(*type.pOwnWildcard, *base.pWildcard)))
            AddError(*type.pOwnWildcard, "the wildcard lets attributes pass that the base does not");
    }

    void CheckRestrictedAttribute(const SAttributeUse& use, const SAttributeUse* pInherited, const SComplexType& base)
    {
        const SQName& name = use.GetName();
        const std::string strAttribute = "the attribute '" + name.strLocal + "' ";
        if (!pInherited)
        {
            if (use.eUse != EUse::Prohibited && !(base.pWildcard && base.pWildcard->Allows(name.strNamespace)))
                AddError(use, strAttribute + "is not one of the base, so a restriction cannot have it");
            return;
        }
        if (pInherited->eUse == EUse::Required && use.eUse != EUse::Required)
            AddError(use, strAttribute + "is required in the base, so a restriction cannot leave it out");
        if (use.eUse == EUse::Prohibited)
            return;
        if (!IsDerivedFrom(*use.pAttribute->pType, *pInherited->pAttribute->pType))
            AddError(use, strAttribute + "has a type that is not derived from its type in the base");
        const SValueConstraint* pFixed = pInherited->GetValue();
        if (pFixed && pFixed->bFixed && !HasSameFixed(*pInherited->pAttribute->pType, use.GetValue(), *pFixed))
            AddError(use, strAttribute + "is fixed to '" + pFixed->strValue + "' in the base");
    }

    bool HasSameFixed(const SSimpleType& type, const SValueConstraint* pValue, const SValueConstraint& fixed)
    {
        return pValue && pValue->bFixed &&
               m_values.GetKey(type, pValue->strValue, pValue->pScope) ==
                   m_values.GetKey(type, fixed.strValue, fixed.pScope);
    }

    void CheckIds(const SComplexType& type)
    {
        const SAttributeUse* pFirst = nullptr;
        for (const SAttributeUse* pUse : type.attributes)
        {
            if (!IsIdType(*pUse->pAttribute->pType))
                continue;
            if (pFirst)
                AddError(type, Describe(type) + " has two attributes of type ID, '" + pFirst->GetName().strLocal +
                                   "' and '" + pUse->GetName().strLocal + "'");
            pFirst = pUse;
        }
    }

    /// Elements of one name in one content have one type.
    void CheckConsistency(const SComplexType& type)
    {
        std::unordered_map<SQName, const SElement*, SQNameHash> known;
        std::vector<const SParticle*> open{type.pContent};
        while (!open.empty())
        {
            const SParticle& particle = *open.back();
            open.pop_back();
            if (particle.pGroup)
                open.insert(open.end(), particle.pGroup->particles.rbegin(), particle.pGroup->particles.rend());
            if (!particle.pElement)
                continue;
            const auto [it, bNew] = known.emplace(particle.pElement->name, particle.pElement);
            if (!bNew && it->second->pType != particle.pElement->pType && m_inconsistent.insert(&particle).second)
                AddError(particle, "the element '" + particle.pElement->name.strLocal + "' has another type than at " +
                                       m_set.Describe(it->second->position) + ", in the same content");
        }
    }

    void CheckModelGroup(const SModelGroup& group)
    {
        for (const SParticle* pParticle : group.particles)
            if (IsAll(*pParticle))
                AddError(*pParticle, "a group of 'all' stands alone, not within another group");
    }

    // --- Elements

    /// The simple type that text of an element has; null where it is not checked.
    static const SSimpleType* GetTextType(const SType& type)
    {
        const SComplexType* pComplex = type.AsComplex();
        return pComplex ? pComplex->pSimpleContent : type.AsSimple();
    }

    void CheckElement(const SElement& element)
    {
        if (element.value)
            CheckElementValue(element);
        if (element.pHead)
            CheckHead(element, *element.pHead);
    }

    void CheckElementValue(const SElement& element)
    {
        const SSimpleType* pType = GetTextType(*element.pType);
        const SComplexType* pComplex = element.pType->AsComplex();
        if (!pType && !(pComplex->IsMixed() && (!pComplex->pContent || IsEmptiable(*pComplex->pContent))))
            AddError(element, "the element '" + element.name.strLocal +
                                  "' cannot have a default or fixed value, as its content is not text");
        else if (pType)
            CheckValue(element, "the element '" + element.name.strLocal + "'", *pType, *element.value);
    }

    void CheckValue(const SComponent& component, const std::string& strWhat, const SSimpleType& type,
                    const SValueConstraint& value)
    {
        if (IsIdType(type))
            AddError(component, strWhat + " is of type ID and cannot have a default or fixed value");
        const std::string strWrong = m_values.Check(type, value.strValue, value.pScope);
        if (!strWrong.empty())
            AddError(component, "the " + std::string(value.bFixed ? "fixed" : "default") + " value '" + value.strValue +
                                    "' of " + strWhat + " is no value of its type: " + strWrong);
    }

    void CheckHead(const SElement& element, const SElement& head)
    {
        const std::string strElement = "the element '" + element.name.strLocal + "' ";
        if (!IsDerivedFrom(*element.pType, *head.pType))
            AddError(element, strElement + "cannot be substituted for '" + head.name.strLocal +
                                  "', as its type is not derived from the head's");
        else if (!IsDerivedFrom(*element.pType, *head.pType, head.nFinal))
            AddError(element, strElement + "cannot be substituted for '" + head.name.strLocal + "', which is final");
    }

    // --- Attributes

    void CheckAttribute(const SAttribute& attribute)
    {
        if (attribute.value)
            CheckValue(attribute, "the attribute '" + attribute.name.strLocal + "'", *attribute.pType,
                       *attribute.value);
    }

    void CheckUse(const SAttributeUse& use)
    {
        if (!use.value)
            return;
        const SAttribute& attribute = *use.pAttribute;
        CheckValue(use, "the attribute '" + attribute.name.strLocal + "'", *attribute.pType, *use.value);
        if (attribute.value && attribute.value->bFixed &&
            !HasSameFixed(*attribute.pType, &*use.value, *attribute.value))
            AddError(use, "the attribute '" + attribute.name.strLocal + "' is fixed to '" + attribute.value->strValue +
                              "' where it is declared");
    }

    // --- Identity constraints

    void CheckConstraint(const SIdentityConstraint& constraint)
    {
        if (!constraint.pRefer)
            return;
        if (constraint.pRefer->eKind == SIdentityConstraint::EKind::KeyRef)
            AddError(constraint, "the keyref '" + constraint.name.strLocal + "' refers to another keyref");
        else if (constraint.pRefer->fields.size() != constraint.fields.size())
            AddError(constraint, "the keyref '" + constraint.name.strLocal + "' has " +
                                     std::to_string(constraint.fields.size()) + " fields, what it refers to has " +
                                     std::to_string(constraint.pRefer->fields.size()));
    }

    const SSchemaSet& m_set;
    CDiagnostics& m_diagnostics;
    CValueChecker m_values;
    std::unordered_set<const SParticle*> m_inconsistent;
};

} // namespace

void CheckComponents(const SSchemaSet& set, const SOrder& order, CDiagnostics& diagnostics)
{
    CChecker(set, diagnostics).Check(order);
}

} // namespace quiver_gen::schema
