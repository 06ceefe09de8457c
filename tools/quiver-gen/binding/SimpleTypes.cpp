#include "tools/quiver-gen/binding/SimpleTypes.h"

#include "tools/quiver-gen/binding/Documentation.h"
#include "tools/quiver-gen/binding/Patterns.h"
#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace quiver_gen::binding
{

namespace
{

using schema::EBuiltin;
using schema::EFacet;
using schema::EVariety;

EValue GetValueOf(EBuiltin eBuiltin, bool bInteger64)
{
    switch (eBuiltin)
    {
    case EBuiltin::Boolean:
        return EValue::Boolean;
    case EBuiltin::Decimal:
        return EValue::Decimal;
    case EBuiltin::Float:
        return EValue::R4;
    case EBuiltin::Double:
        return EValue::R8;
    case EBuiltin::Duration:
        return EValue::Duration;
    case EBuiltin::DateTime:
    case EBuiltin::Time:
    case EBuiltin::Date:
    case EBuiltin::GYearMonth:
    case EBuiltin::GYear:
    case EBuiltin::GMonthDay:
    case EBuiltin::GDay:
    case EBuiltin::GMonth:
        return EValue::DateTime;
    case EBuiltin::HexBinary:
    case EBuiltin::Base64Binary:
        return EValue::Binary;
    case EBuiltin::Integer:
    case EBuiltin::NonPositiveInteger:
    case EBuiltin::NegativeInteger:
    case EBuiltin::NonNegativeInteger:
    case EBuiltin::PositiveInteger:
        return bInteger64 ? EValue::I8 : EValue::Integer;
    case EBuiltin::Long:
        return EValue::I8;
    case EBuiltin::Int:
        return EValue::I4;
    case EBuiltin::Short:
        return EValue::I2;
    case EBuiltin::Byte:
        return EValue::I1;
    case EBuiltin::UnsignedLong:
        return EValue::UI8;
    case EBuiltin::UnsignedInt:
        return EValue::UI4;
    case EBuiltin::UnsignedShort:
        return EValue::UI2;
    case EBuiltin::UnsignedByte:
        return EValue::UI1;
    case EBuiltin::NMTOKENS:
    case EBuiltin::IDREFS:
    case EBuiltin::ENTITIES:
        return EValue::List;
    case EBuiltin::None:
    case EBuiltin::AnyType:
    case EBuiltin::AnySimpleType:
    case EBuiltin::String:
    case EBuiltin::AnyURI:
    case EBuiltin::QName:
    case EBuiltin::NOTATION:
    case EBuiltin::NormalizedString:
    case EBuiltin::Token:
    case EBuiltin::Language:
    case EBuiltin::NMTOKEN:
    case EBuiltin::Name:
    case EBuiltin::NCName:
    case EBuiltin::ID:
    case EBuiltin::IDREF:
    case EBuiltin::ENTITY:
        break;
    }
    return EValue::String;
}

bool IsNumber(EValue eValue)
{
    return (eValue >= EValue::I1 && eValue <= EValue::UI8) || eValue == EValue::Decimal || eValue == EValue::Integer;
}

/// `xs::Int`; `xs::Integer64` where a type of any size is held in 64 bits.
std::string GetNameOf(EBuiltin eBuiltin, bool bInteger64)
{
    std::string strName(schema::GetBuiltinName(eBuiltin));
    strName.front() = static_cast<char>(strName.front() >= 'a' ? strName.front() - 'a' + 'A' : strName.front());
    if (bInteger64 && GetValueOf(eBuiltin, false) == EValue::Integer)
        strName += "64";
    return "xs::" + strName;
}

bool IsOwnList(const schema::SSimpleType& type)
{
    const schema::SSimpleType* pBase = type.pBase ? std::as_const(*type.pBase).AsSimple() : nullptr;
    return type.eVariety != EVariety::Atomic && (!pBase || pBase->eVariety != type.eVariety);
}

/// Built-in types have facets too, which their own structs see to. Those of the built-in lists do not reach a list that
/// is derived from them in the schema.
template <typename TFacet>
bool IsOfSchema(const TFacet& facet)
{
    return facet.position.nFile >= 0;
}

const schema::SFacet* FindFacet(const schema::SEffectiveFacets& facets, EFacet eFacet, bool bList)
{
    const schema::SFacet* pFacet = facets.Find(eFacet);
    return pFacet && (IsOfSchema(*pFacet) || bList) ? pFacet : nullptr;
}

SSimpleType::EWhiteSpace Convert(schema::EWhiteSpace eWhiteSpace)
{
    switch (eWhiteSpace)
    {
    case schema::EWhiteSpace::Preserve:
        return SSimpleType::EWhiteSpace::Preserve;
    case schema::EWhiteSpace::Replace:
        return SSimpleType::EWhiteSpace::Replace;
    case schema::EWhiteSpace::Collapse:
        break;
    }
    return SSimpleType::EWhiteSpace::Collapse;
}

/// Whether values of a type are held as names, or as lists of them.
bool HoldsNames(const SSimpleType& type)
{
    return type.strBuiltin == "xs::QName" || type.strBuiltin == "xs::NOTATION" ||
           (type.pItem != nullptr && HoldsNames(*type.pItem));
}

/// The names in a text with their namespaces instead of prefixes, which a document may choose as it likes.
std::string ExpandNames(const std::string& strText, const schema::SNamespaceScope* pScope)
{
    std::string strExpanded;
    for (const std::string_view svItem : schema::SplitList(strText))
    {
        const std::size_t nColon = svItem.find(':');
        const bool bPrefix = nColon != std::string_view::npos;
        const std::string* const pUri = pScope ? pScope->Find(svItem.substr(0, bPrefix ? nColon : 0)) : nullptr;
        strExpanded += (strExpanded.empty() ? "{" : " {") + (pUri ? *pUri : std::string()) + '}';
        strExpanded += svItem.substr(bPrefix ? nColon + 1 : 0);
    }
    return strExpanded;
}

bool IsSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

} // namespace

bool NeedsStruct(const schema::SSimpleType& type, const SBindingOptions& options)
{
    if (type.eBuiltin != EBuiltin::None)
        return false;
    const bool bMapped = std::any_of(options.maps.begin(), options.maps.end(),
                                     [&](const SHeldAs& map) { return !type.IsAnonymous() && map.type == type.name; });
    if (bMapped || IsOwnList(type) || !type.facets.empty() || !type.patterns.empty() || !type.enumerations.empty())
        return true;
    // What a redefinition replaced has no name any more that it could have a struct by.
    return type.pBase && type.pBase->bRedefined && NeedsStruct(*std::as_const(*type.pBase).AsSimple(), options);
}

std::string NormalizeSpace(const std::string& strText, schema::EWhiteSpace eWhiteSpace)
{
    std::string strNormal;
    for (const char c : strText)
    {
        if (eWhiteSpace == schema::EWhiteSpace::Preserve || !IsSpace(c))
            strNormal += c;
        else if (eWhiteSpace == schema::EWhiteSpace::Replace || (!strNormal.empty() && strNormal.back() != ' '))
            strNormal += ' ';
    }
    if (eWhiteSpace == schema::EWhiteSpace::Collapse && !strNormal.empty() && strNormal.back() == ' ')
        strNormal.pop_back();
    return strNormal;
}

CSimpleTypes::CSimpleTypes(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding,
                           CNamespaces& namespaces, CTypeNames& typeNames, CRenames& renames, CWarnings& warnings)
    : m_set(set)
    , m_options(options)
    , m_binding(binding)
    , m_namespaces(namespaces)
    , m_typeNames(typeNames)
    , m_renames(renames)
    , m_warnings(warnings)
{
}

std::vector<const schema::SSimpleType*>
CSimpleTypes::Select(const std::vector<const schema::SSimpleType*>& needed) const
{
    const auto isInner = [&](const schema::SSimpleType& type)
    {
        // Written as the base of another type, which has the facets of both.
        const schema::SType* pOwner = type.pOwnerType;
        return pOwner && pOwner->bSimple && pOwner->pBase == &type && NeedsStruct(*pOwner->AsSimple(), m_options);
    };
    std::vector<const schema::SSimpleType*> selected;
    for (const schema::SSimpleType* pType : needed)
        if (!pType->bRedefined && NeedsStruct(*pType, m_options) && !isInner(*pType))
            selected.push_back(pType);
    return selected;
}

void CSimpleTypes::Build(const std::vector<const schema::SSimpleType*>& types)
{
    for (const schema::SSimpleType* pType : types)
    {
        SSimpleType& target = m_binding.simpleTypes.emplace_back();
        m_types[pType] = &target;
        const std::string& strStem = m_typeNames.Get(*pType);
        target.strName = "S" + strStem;
        target.pNamespace = &m_namespaces.Get(pType->name.strNamespace);
        target.strUri = pType->name.strNamespace;
        target.strSchemaName = pType->name.strLocal;
        target.source = m_set.Describe(pType->position);
    }
    for (const schema::SSimpleType* pType : types)
        Fill(*pType, *m_types.at(pType));
    for (const schema::SSimpleType* pType : types)
        List(*m_types.at(pType));
}

SSimpleType& CSimpleTypes::Get(const schema::SSimpleType& type)
{
    const schema::SSimpleType* pType = &type;
    for (; pType->eBuiltin == EBuiltin::None; pType = std::as_const(*pType->pBase).AsSimple())
        if (const auto it = m_types.find(pType); it != m_types.end())
            return *it->second;
    return GetBuiltin(pType->eBuiltin);
}

SSimpleType& CSimpleTypes::GetBuiltin(EBuiltin eBuiltin)
{
    const schema::SSimpleType& type = *m_set.GetBuiltin(eBuiltin).AsSimple();
    SSimpleType*& pTarget = m_types[&type];
    if (pTarget)
        return *pTarget;
    SSimpleType& target = m_binding.simpleTypes.emplace_back();
    pTarget = &target;
    target.bBuiltin = true;
    target.strUri = type.name.strNamespace;
    target.strSchemaName = type.name.strLocal;
    target.strName = GetNameOf(eBuiltin, m_options.bInteger64);
    target.eValue = GetValueOf(eBuiltin, m_options.bInteger64);
    if (type.pItem)
        target.pItem = &GetBuiltin(type.pItem->eBuiltin);
    else
        target.strBuiltin = target.strName;
    return target;
}

void CSimpleTypes::Fill(const schema::SSimpleType& type, SSimpleType& target)
{
    target.documentation = MakeDocumentation(type.documentation, m_options);
    FillKind(type, target);
    FillFacets(type, target);
}

void CSimpleTypes::FillKind(const schema::SSimpleType& type, SSimpleType& target)
{
    switch (type.eVariety)
    {
    case EVariety::Atomic:
        return FillAtomic(type, target);
    case EVariety::List:
        target.eValue = EValue::List;
        target.pItem = &Get(*type.pItem);
        return;
    case EVariety::Union:
        target.eValue = EValue::String;
        for (const schema::SSimpleType* pMember : type.members)
            target.memberTypes.push_back(&Get(*pMember));
        return;
    }
}

void CSimpleTypes::FillAtomic(const schema::SSimpleType& type, SSimpleType& target)
{
    const auto hold = [&](EBuiltin eBuiltin)
    {
        target.eValue = GetValueOf(eBuiltin, m_options.bInteger64);
        target.strBuiltin = GetNameOf(eBuiltin, m_options.bInteger64);
    };
    hold(type.eNearestBuiltin);
    if (const SHeldAs* pMap = FindMap(type))
    {
        hold(pMap->eValue == EValue::I8        ? EBuiltin::Long
             : pMap->eValue == EValue::R8      ? EBuiltin::Double
             : pMap->eValue == EValue::Decimal ? EBuiltin::Decimal
                                               : EBuiltin::String);
    }
    else if (type.ePrimitive == EBuiltin::String || type.ePrimitive == EBuiltin::AnyURI)
    {
        if (GetEffectiveFacets(type).pEnumerations && !IsHeldAsText(type))
        {
            target.eValue = EValue::Enumeration;
            target.strEnumName = "E" + target.strName.substr(1);
        }
    }
    const schema::SType* pBase = type.pBase;
    while (pBase->bRedefined || (pBase->IsAnonymous() && m_types.count(pBase->AsSimple()) == 0))
        pBase = pBase->pBase;
    // The base's own kind may not be known yet, but it follows from the same rules.
    target.pBase = &Get(*pBase->AsSimple());
}

void CSimpleTypes::FillFacets(const schema::SSimpleType& type, SSimpleType& target)
{
    const schema::SEffectiveFacets facets = GetEffectiveFacets(type);
    const bool bList = type.eVariety == EVariety::List;
    const bool bText = target.eValue == EValue::String || target.eValue == EValue::Enumeration || bList;
    const auto lengthOf = [&](EFacet eFacet)
    {
        const schema::SFacet* pFacet = FindFacet(facets, eFacet, bList);
        return pFacet ? LimitLength(*pFacet) : -1;
    };
    target.nLength = lengthOf(EFacet::Length);
    target.nMinLength = lengthOf(EFacet::MinLength);
    target.nMaxLength = lengthOf(EFacet::MaxLength);
    bool bLost = false;
    const auto textOf = [&](EFacet eFacet)
    {
        const schema::SFacet* pFacet = FindFacet(facets, eFacet, false);
        bLost = bLost || (pFacet && bText);
        return pFacet && !bText ? pFacet->strValue : std::string();
    };
    target.strMinInclusive = textOf(EFacet::MinInclusive);
    target.strMaxInclusive = textOf(EFacet::MaxInclusive);
    target.strMinExclusive = textOf(EFacet::MinExclusive);
    target.strMaxExclusive = textOf(EFacet::MaxExclusive);
    const auto digitsOf = [&](EFacet eFacet)
    {
        const schema::SFacet* pFacet = FindFacet(facets, eFacet, false);
        bLost = bLost || (pFacet && bText);
        return pFacet && !bText ? LimitLength(*pFacet) : -1;
    };
    target.nTotalDigits = digitsOf(EFacet::TotalDigits);
    target.nFractionDigits = digitsOf(EFacet::FractionDigits);
    if (bLost)
        m_warnings.Add(EWarning::MappedToText, type.position, target.strName);
    if (type.eVariety == EVariety::Atomic)
    {
        const bool bMapped = FindMap(type) && target.eValue == EValue::String;
        const EBuiltin eBuiltin = bMapped ? EBuiltin::String : type.eNearestBuiltin;
        if (facets.eWhiteSpace != GetEffectiveFacets(*m_set.GetBuiltin(eBuiltin).AsSimple()).eWhiteSpace)
            target.eWhiteSpace = Convert(facets.eWhiteSpace);
    }
    FillPatterns(facets, target);
    FillEnumerators(type, facets, target);
}

void CSimpleTypes::FillPatterns(const schema::SEffectiveFacets& facets, SSimpleType& target)
{
    std::vector<std::vector<std::string>> steps;
    const schema::SPattern* pLast = nullptr;
    for (const std::vector<schema::SPattern>* pStep : facets.patterns)
    {
        std::vector<std::string> translated;
        bool bComplete = true;
        for (const schema::SPattern& pattern : *pStep)
        {
            if (!IsOfSchema(pattern))
                continue;
            pLast = &pattern;
            const std::optional<std::string> strPattern = TranslatePattern(pattern.strValue);
            if (strPattern)
                translated.push_back(*strPattern);
            else if (m_warned.insert(&pattern).second)
                m_warnings.Add(EWarning::Pattern, pattern.position, pattern.strValue);
            bComplete = bComplete && strPattern.has_value();
        }
        // One of a step's patterns suffices, so the others say nothing without the one that is missing.
        if (bComplete && !translated.empty())
            steps.push_back(std::move(translated));
    }
    std::string strCombined = CombinePatterns(steps);
    if (strCombined.empty())
        return;
    if (IsUsable(strCombined))
        target.strPattern = std::move(strCombined);
    else if (m_warned.insert(pLast).second)
        m_warnings.Add(EWarning::Pattern, pLast->position, pLast->strValue);
}

void CSimpleTypes::FillEnumerators(const schema::SSimpleType& type, const schema::SEffectiveFacets& facets,
                                   SSimpleType& target)
{
    if (!facets.pEnumerations)
        return;
    if (std::any_of(target.memberTypes.begin(), target.memberTypes.end(),
                    [](const SSimpleType* pMember) { return HoldsNames(*pMember); }))
        m_warnings.Add(EWarning::QName, type.position);
    CNameScope names;
    std::unordered_set<std::string> texts;
    const bool bNamed = target.eValue == EValue::Enumeration;
    for (const schema::SEnumeration& enumeration : *facets.pEnumerations)
    {
        SEnumerator enumerator;
        enumerator.strText = NormalizeSpace(enumeration.strValue, facets.eWhiteSpace);
        if (HoldsNames(target))
            enumerator.strText = ExpandNames(enumerator.strText, enumeration.pScope);
        if (!texts.insert(enumerator.strText).second)
            continue;
        const std::string* pGiven = m_renames.Find(GetRuleName(type), enumerator.strText);
        if (bNamed)
            enumerator.strName = names.AddUnique(pGiven ? *pGiven : ToEnumerator(enumerator.strText));
        enumerator.documentation = MakeDocumentation(enumeration.documentation, m_options);
        target.enumerators.push_back(std::move(enumerator));
    }
}

std::int64_t CSimpleTypes::LimitLength(const schema::SFacet& facet)
{
    constexpr std::uint64_t nMost = std::numeric_limits<std::int32_t>::max();
    if (facet.nValue <= nMost)
        return static_cast<std::int64_t>(facet.nValue);
    if (facet.eFacet != EFacet::Length && facet.eFacet != EFacet::MinLength)
        return -1; // no value is as long as that
    m_warnings.Add(EWarning::Occurrence, facet.position);
    return static_cast<std::int64_t>(nMost);
}

const SHeldAs* CSimpleTypes::FindMap(const schema::SSimpleType& type) const
{
    if (m_options.maps.empty())
        return nullptr;
    for (const schema::SType* pType = &type; pType && pType->bSimple; pType = pType->pBase)
        for (const SHeldAs& map : m_options.maps)
            if (!pType->IsAnonymous() && map.type == pType->name)
                return &map;
    return nullptr;
}

void CSimpleTypes::List(SSimpleType& type)
{
    if (type.bBuiltin || !m_listed.insert(&type).second)
        return;
    if (type.pBase)
        List(*type.pBase);
    if (type.pItem)
        List(*type.pItem);
    for (SSimpleType* pMember : type.memberTypes)
        List(*pMember);
    if (type.pBase && type.pBase->eValue != type.eValue)
        type.pBase = nullptr;
    type.pNamespace->simpleTypes.push_back(&type);
}

SSimpleType& CSimpleTypes::GetHeldLike(const schema::SSimpleType& narrower, SSimpleType& wider, const SPlace& place)
{
    SSimpleType& own = Get(narrower);
    if (&own == &wider)
        return own;
    const bool bItemsAlike = own.eValue != EValue::List || (wider.pItem && own.pItem->eValue == wider.pItem->eValue);
    if (own.eValue == wider.eValue && own.eValue != EValue::Enumeration && bItemsAlike)
        return own;
    const bool bText = wider.eValue == EValue::String && own.eValue == EValue::Enumeration;
    if (bText || (IsNumber(wider.eValue) && IsNumber(own.eValue)))
        return MakeVariant(narrower, own, wider, place.item);
    m_warnings.Add(EWarning::HeldAsBase, place.position, place.strName);
    return wider;
}

SSimpleType& CSimpleTypes::MakeVariant(const schema::SSimpleType& narrower, const SSimpleType& own,
                                       const SSimpleType& wider, SNamespace& item)
{
    SNamespace& home = own.bBuiltin ? item : *own.pNamespace;
    const std::string strStem = own.bBuiltin ? own.strName.substr(4) : own.strName.substr(1);
    SSimpleType*& pVariant = m_variants[home.strUri + '\n' + strStem + '\n' + wider.strBuiltin];
    if (pVariant)
        return *pVariant;
    SSimpleType& variant = m_binding.simpleTypes.emplace_back(own);
    pVariant = &variant;
    variant.bBuiltin = false;
    variant.pNamespace = &home;
    variant.strName = "S" + m_typeNames.Take(home, strStem + "Value");
    variant.strUri.clear();
    variant.strSchemaName.clear();
    variant.strEnumName.clear();
    variant.eValue = wider.eValue;
    variant.pBase = nullptr;
    for (SEnumerator& enumerator : variant.enumerators)
        enumerator.strName.clear();
    if (wider.eValue != EValue::String)
    {
        // The bounds that the built-in type has by itself.
        variant.strBuiltin = wider.strBuiltin;
        const schema::SEffectiveFacets facets = GetEffectiveFacets(narrower);
        if (variant.strMinInclusive.empty() && variant.strMinExclusive.empty() && facets.Find(EFacet::MinInclusive))
            variant.strMinInclusive = facets.Find(EFacet::MinInclusive)->strValue;
        if (variant.strMaxInclusive.empty() && variant.strMaxExclusive.empty() && facets.Find(EFacet::MaxInclusive))
            variant.strMaxInclusive = facets.Find(EFacet::MaxInclusive)->strValue;
        if (facets.Find(EFacet::FractionDigits))
            variant.nFractionDigits = LimitLength(*facets.Find(EFacet::FractionDigits));
    }
    List(variant);
    return variant;
}

/// Whether an enumeration stays text: the one of a restricted simple content, whose base holds text.
bool CSimpleTypes::IsHeldAsText(const schema::SSimpleType& type) const
{
    if (!type.IsAnonymous() || !type.pOwnerType || type.pOwnerType->bSimple)
        return false;
    const schema::SComplexType* pBase = std::as_const(*type.pOwnerType).AsComplex()->GetComplexBase();
    return pBase && pBase->pSimpleContent && !GetEffectiveFacets(*pBase->pSimpleContent).pEnumerations;
}

SValueRule CSimpleTypes::MakeRule(const schema::SValueConstraint* pValue, const schema::SSimpleType& type)
{
    SValueRule rule;
    if (!pValue)
        return rule;
    rule.eKind = pValue->bFixed ? SValueRule::EKind::Fixed : SValueRule::EKind::Default;
    rule.strText = NormalizeSpace(pValue->strValue, GetEffectiveFacets(type).eWhiteSpace);
    if (HoldsNames(Get(type)))
        rule.strText = ExpandNames(rule.strText, pValue->pScope);
    return rule;
}

} // namespace quiver_gen::binding
