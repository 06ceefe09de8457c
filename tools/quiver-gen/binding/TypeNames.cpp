#include "tools/quiver-gen/binding/TypeNames.h"

#include <algorithm>

namespace quiver_gen::binding
{

namespace
{

std::string MakeKey(const schema::SQName& type, const std::string& strInner)
{
    return type.ToString() + '\n' + strInner;
}

/// What an anonymous type is for the type that it is written in.
std::string_view GetRole(const schema::SType& type)
{
    const schema::SType& owner = *type.pOwnerType;
    if (!owner.bSimple)
        return "Value";
    const schema::SSimpleType& simple = *owner.AsSimple();
    if (simple.pItem == &type)
        return "Item";
    return simple.pBase == &type ? "Base" : "Member";
}

} // namespace

CRenames::CRenames(const SBindingOptions& options)
    : m_options(options)
    , m_used(options.renames.size())
{
    for (std::size_t n = 0; n < options.renames.size(); ++n)
        m_rules[MakeKey(options.renames[n].type, options.renames[n].strInner)] = n;
}

const std::string* CRenames::Find(const schema::SQName& type, const std::string& strInner)
{
    if (m_rules.empty() || type.IsEmpty())
        return nullptr;
    const auto it = m_rules.find(MakeKey(type, strInner));
    if (it == m_rules.end())
        return nullptr;
    m_used[it->second] = true;
    return &m_options.renames[it->second].strName;
}

void CRenames::ReportUnused(schema::CDiagnostics& diagnostics) const
{
    for (std::size_t n = 0; n < m_used.size(); ++n)
    {
        const SRename& rename = m_options.renames[n];
        if (!m_used[n])
            diagnostics.AddWarning({}, "nothing is called " + rename.type.ToString() +
                                           (rename.strInner.empty() ? "" : "/" + rename.strInner) + " to be renamed " +
                                           rename.strName);
    }
}

CTypeNames::CTypeNames(const schema::SSchemaSet& set, CNamespaces& namespaces, CRenames& renames)
    : m_namespaces(namespaces)
    , m_renames(renames)
{
    for (const schema::SAttributeGroup& group : set.attributeGroups)
        for (const schema::SAttributeUse* pUse : group.ownAttributes)
            if (!pUse->bReference)
                m_attributeGroups.emplace(pUse->pAttribute, &group);
    for (const schema::SComplexType& type : set.complexTypes)
        for (const schema::SAttributeUse* pUse : type.ownAttributes)
            if (!pUse->bReference && !pUse->pGroup)
                m_attributeTypes.emplace(pUse->pAttribute, &type);
}

void CTypeNames::Choose(const std::vector<const schema::SType*>& types)
{
    std::vector<const schema::SType*> ordered = types;
    const auto isRenamed = [&](const schema::SType* pType)
    {
        return m_renames.Find(GetRuleName(*pType)) != nullptr;
    };
    const auto rankOf = [&](const schema::SType* pType)
    {
        return isRenamed(pType) ? 0 : pType->IsAnonymous() ? 2 : 1;
    };
    std::stable_sort(ordered.begin(), ordered.end(),
                     [&](const schema::SType* pA, const schema::SType* pB)
                     {
                         const int nA = rankOf(pA);
                         const int nB = rankOf(pB);
                         return nA != nB ? nA < nB : pA->position < pB->position;
                     });
    for (const schema::SType* pType : ordered)
        ChooseFor(*pType);
}

std::string CTypeNames::Take(const SNamespace& item, const std::string& strWanted)
{
    CNameScope& names = m_namespaces.GetTypeNames(item);
    std::string strStem = strWanted;
    const std::string strBase = strWanted.back() >= '0' && strWanted.back() <= '9' ? strWanted + '_' : strWanted;
    if (!IsFree(names, strStem))
    {
        int& nNext = m_nextNumbers.emplace(item.strCpp + '\n' + ToLower(strBase), 2).first->second;
        do
            strStem = strBase + std::to_string(nNext++);
        while (!IsFree(names, strStem));
    }
    AddStem(names, strStem);
    return strStem;
}

void CTypeNames::ChooseFor(const schema::SType& type)
{
    if (const std::string* pGiven = m_renames.Find(GetRuleName(type)))
        return TakeFirstFree(type, {*pGiven});
    const std::string strWanted = GetWanted(type);
    if (!type.IsAnonymous())
        return TakeFirstFree(type, {strWanted, strWanted + "Type"});
    const std::string strOwner = GetOwnersStem(type);
    if (strOwner.empty())
        return TakeFirstFree(type, {strWanted});
    TakeFirstFree(type, {strWanted, strOwner + strWanted});
}

void CTypeNames::TakeFirstFree(const schema::SType& type, const std::vector<std::string>& candidates)
{
    const SNamespace& item = m_namespaces.Get(type.name.strNamespace);
    CNameScope& names = m_namespaces.GetTypeNames(item);
    const auto it = std::find_if(candidates.begin(), candidates.end(),
                                 [&](const std::string& strStem) { return IsFree(names, strStem); });
    m_stems[&type] = Take(item, it == candidates.end() ? candidates.back() : *it);
}

std::string CTypeNames::GetWanted(const schema::SType& type) const
{
    if (!type.IsAnonymous())
        return ToPascal(type.name.strLocal);
    if (type.pOwnerElement)
        return ToPascal(type.pOwnerElement->name.strLocal);
    if (type.pOwnerAttribute)
        return ToPascal(type.pOwnerAttribute->name.strLocal);
    if (!type.pOwnerType)
        return "Anonymous";
    const auto it = m_stems.find(type.pOwnerType);
    return (it != m_stems.end() ? it->second : GetWanted(*type.pOwnerType)) + std::string(GetRole(type));
}

std::string CTypeNames::GetOwnersStem(const schema::SType& type) const
{
    if (const schema::SElement* pElement = type.pOwnerElement)
    {
        if (pElement->pOwnerGroup)
            return ToPascal(pElement->pOwnerGroup->name.strLocal);
        return GetStemOf(pElement->pOwnerType);
    }
    if (const auto it = m_attributeGroups.find(type.pOwnerAttribute); it != m_attributeGroups.end())
        return ToPascal(it->second->name.strLocal);
    if (const auto it = m_attributeTypes.find(type.pOwnerAttribute); it != m_attributeTypes.end())
        return GetStemOf(it->second);
    return {};
}

std::string CTypeNames::GetStemOf(const schema::SType* pType) const
{
    if (!pType)
        return {};
    const auto it = m_stems.find(pType);
    return it != m_stems.end() ? it->second : GetWanted(*pType);
}

bool CTypeNames::IsFree(const CNameScope& names, const std::string& strStem)
{
    return !IsReservedStem(strStem) && !names.Contains(strStem) && !names.Contains(strStem + "Col");
}

void CTypeNames::AddStem(CNameScope& names, const std::string& strStem)
{
    names.Add(strStem);
    names.Add(strStem + "Col");
}

schema::SQName GetRuleName(const schema::SType& type)
{
    if (!type.IsAnonymous())
        return type.name;
    return type.pOwnerElement && type.pOwnerElement->bGlobal ? type.pOwnerElement->name : schema::SQName();
}

} // namespace quiver_gen::binding
