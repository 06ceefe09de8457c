#include "tools/quiver-gen/schema/SimpleTypeChecks.h"

#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>

namespace quiver_gen::schema
{

namespace
{

bool IsQNameLike(EBuiltin ePrimitive)
{
    return ePrimitive == EBuiltin::QName || ePrimitive == EBuiltin::NOTATION;
}

std::string DescribeType(const SType& type)
{
    return type.IsAnonymous() ? "its type" : "'" + type.name.strLocal + "'";
}

/// A bound and which results of comparing a value with it are right.
struct SBound
{
    EFacet eFacet;
    bool bLower;
    bool bInclusive;
};

constexpr SBound s_bounds[] = {{EFacet::MinInclusive, true, true},
                               {EFacet::MinExclusive, true, false},
                               {EFacet::MaxInclusive, false, true},
                               {EFacet::MaxExclusive, false, false}};

const SBound* FindBound(EFacet eFacet)
{
    for (const SBound& bound : s_bounds)
        if (bound.eFacet == eFacet)
            return &bound;
    return nullptr;
}

/// Whether a comparison of a value with a bound lies on the wrong side. What cannot be compared is on no side.
bool IsOutside(EComparison eComparison, const SBound& bound)
{
    if (eComparison == EComparison::Equal)
        return !bound.bInclusive;
    return eComparison == (bound.bLower ? EComparison::Less : EComparison::Greater);
}

std::string CheckLength(const SEffectiveFacets& facets, std::uint64_t nLength)
{
    const SFacet* pLength = facets.Find(EFacet::Length);
    const SFacet* pLeast = facets.Find(EFacet::MinLength);
    const SFacet* pMost = facets.Find(EFacet::MaxLength);
    const std::string strLength = "its length is " + std::to_string(nLength);
    if (pLength && nLength != pLength->nValue)
        return strLength + ", not " + pLength->strValue;
    if (pLeast && nLength < pLeast->nValue)
        return strLength + ", below minLength " + pLeast->strValue;
    if (pMost && nLength > pMost->nValue)
        return strLength + ", above maxLength " + pMost->strValue;
    return {};
}

std::string CheckDigits(const SEffectiveFacets& facets, const std::string& strValue)
{
    const SDigits digits = CountDigits(strValue);
    const SFacet* pTotal = facets.Find(EFacet::TotalDigits);
    const SFacet* pFraction = facets.Find(EFacet::FractionDigits);
    if (pTotal && digits.nTotal > pTotal->nValue)
        return "it has more digits than totalDigits " + pTotal->strValue;
    if (pFraction && digits.nFraction > pFraction->nValue)
        return "it has more digits than fractionDigits " + pFraction->strValue;
    return {};
}

std::string CheckBounds(EBuiltin ePrimitive, const SEffectiveFacets& facets, const std::string& strValue)
{
    for (const SBound& bound : s_bounds)
        if (const SFacet* pFacet = facets.Find(bound.eFacet))
            if (IsOutside(CompareValues(ePrimitive, strValue, Collapse(pFacet->strValue)), bound))
                return "it lies outside " + std::string(GetFacetName(bound.eFacet)) + " " + pFacet->strValue;
    return {};
}

/// Checks the facets of one step.
class CFacetChecker
{
public:
    CFacetChecker(const SSimpleType& type, CValueChecker& values, CDiagnostics& diagnostics)
        : m_type(type)
        , m_base(*type.pBase->AsSimple())
        , m_inherited(GetEffectiveFacets(m_base))
        , m_values(values)
        , m_diagnostics(diagnostics)
    {
    }

    void Check()
    {
        for (const SFacet& facet : m_type.facets)
        {
            if (!IsApplicable(facet.eFacet))
                AddError(facet, Name(facet) + " has no meaning for " + DescribeVariety());
            else if (CheckFixed(facet))
                CheckAgainstBase(facet);
        }
        if (!m_type.enumerations.empty() && !MayBeEnumerated())
            AddError(m_type.enumerations.front(), "the facet 'enumeration' has no meaning for " + DescribeVariety());
        else
            CheckEnumerations();
        if (!m_bFailed)
            CheckTogether();
    }

private:
    void AddError(const SComponent& component, std::string strText)
    {
        m_bFailed = true;
        m_diagnostics.AddError(component.position, std::move(strText));
    }

    static std::string Name(const SFacet& facet)
    {
        return "the facet '" + std::string(GetFacetName(facet.eFacet)) + "'";
    }

    std::string DescribeVariety() const
    {
        switch (m_type.eVariety)
        {
        case EVariety::List:
            return "a list";
        case EVariety::Union:
            return "a union";
        case EVariety::Atomic:
            break;
        }
        return "'" + std::string(GetBuiltinName(m_type.ePrimitive)) + "'";
    }

    bool MayBeEnumerated() const
    {
        return m_type.eVariety != EVariety::Atomic || m_type.ePrimitive != EBuiltin::Boolean;
    }

    bool IsApplicable(EFacet eFacet) const
    {
        if (m_type.eVariety == EVariety::Union)
            return false;
        const EBuiltin e = m_type.ePrimitive;
        const bool bList = m_type.eVariety == EVariety::List;
        const bool bText = e == EBuiltin::String || e == EBuiltin::AnyURI || e == EBuiltin::HexBinary ||
                           e == EBuiltin::Base64Binary || IsQNameLike(e);
        switch (eFacet)
        {
        case EFacet::Length:
        case EFacet::MinLength:
        case EFacet::MaxLength:
            return bList || bText;
        case EFacet::WhiteSpace:
            return true;
        case EFacet::MinInclusive:
        case EFacet::MinExclusive:
        case EFacet::MaxInclusive:
        case EFacet::MaxExclusive:
            return !bList && !bText && e != EBuiltin::Boolean && e != EBuiltin::AnySimpleType;
        case EFacet::TotalDigits:
        case EFacet::FractionDigits:
            break;
        }
        return !bList && e == EBuiltin::Decimal;
    }

    /// @return whether the base leaves the facet open to a change.
    bool CheckFixed(const SFacet& facet)
    {
        const SFacet* pInherited = m_inherited.Find(facet.eFacet);
        if (!pInherited || !pInherited->bFixed || IsSame(facet, *pInherited))
            return true;
        AddError(facet, Name(facet) + " is fixed to '" + pInherited->strValue + "' by the base");
        return false;
    }

    bool IsSame(const SFacet& facet, const SFacet& inherited) const
    {
        if (facet.strValue == inherited.strValue)
            return true;
        if (FindBound(facet.eFacet))
            return IsLexical(m_base.eNearestBuiltin, Collapse(facet.strValue), nullptr) &&
                   CompareValues(m_type.ePrimitive, Collapse(facet.strValue), Collapse(inherited.strValue)) ==
                       EComparison::Equal;
        return facet.eFacet != EFacet::WhiteSpace && facet.nValue == inherited.nValue;
    }

    void CheckAgainstBase(const SFacet& facet)
    {
        const SFacet* pInherited = m_inherited.Find(facet.eFacet);
        bool bWidens = false;
        switch (facet.eFacet)
        {
        case EFacet::Length:
            bWidens = pInherited && facet.nValue != pInherited->nValue;
            break;
        case EFacet::MinLength:
            bWidens = pInherited && facet.nValue < pInherited->nValue;
            break;
        case EFacet::MaxLength:
        case EFacet::TotalDigits:
        case EFacet::FractionDigits:
            bWidens = pInherited && facet.nValue > pInherited->nValue;
            break;
        case EFacet::WhiteSpace:
            bWidens = GetStrictness(facet.strValue) < static_cast<int>(m_inherited.eWhiteSpace);
            break;
        case EFacet::MinInclusive:
        case EFacet::MinExclusive:
        case EFacet::MaxInclusive:
        case EFacet::MaxExclusive:
            CheckBound(facet);
            return;
        }
        if (bWidens && pInherited)
            AddError(facet, Name(facet) + " '" + facet.strValue + "' does not narrow that of the base, '" +
                                pInherited->strValue + "'");
        else if (bWidens)
            AddError(facet, Name(facet) + " '" + facet.strValue + "' does not narrow that of the base");
    }

    static int GetStrictness(const std::string& strWhiteSpace)
    {
        return static_cast<int>(strWhiteSpace == "preserve"  ? EWhiteSpace::Preserve
                                : strWhiteSpace == "replace" ? EWhiteSpace::Replace
                                                             : EWhiteSpace::Collapse);
    }

    void CheckBound(const SFacet& facet)
    {
        const std::string strValue = Collapse(facet.strValue);
        if (!IsLexical(m_base.eNearestBuiltin, strValue, nullptr))
        {
            AddError(facet, Name(facet) + " is '" + facet.strValue + "', which is no value of '" +
                                std::string(GetBuiltinName(m_base.eNearestBuiltin)) + "'");
            return;
        }
        for (const SBound& bound : s_bounds)
        {
            const SFacet* pInherited = m_inherited.Find(bound.eFacet);
            if (!pInherited)
                continue;
            // A bound may lie on an exclusive one, if it is exclusive itself.
            SBound tolerant = bound;
            tolerant.bInclusive |= !FindBound(facet.eFacet)->bInclusive;
            if (IsOutside(CompareValues(m_type.ePrimitive, strValue, Collapse(pInherited->strValue)), tolerant))
                AddError(facet, Name(facet) + " '" + facet.strValue + "' lies outside " +
                                    std::string(GetFacetName(bound.eFacet)) + " '" + pInherited->strValue +
                                    "' of the base");
        }
    }

    void CheckEnumerations()
    {
        for (const SEnumeration& enumeration : m_type.enumerations)
        {
            const std::string strWrong = m_values.Check(m_base, enumeration.strValue, enumeration.pScope);
            if (!strWrong.empty())
                AddError(enumeration,
                         "the enumeration '" + enumeration.strValue + "' is no value of the base: " + strWrong);
        }
    }

    /// Facets that are in force together must let something pass.
    void CheckTogether()
    {
        const SEffectiveFacets facets = GetEffectiveFacets(m_type);
        CheckPair(facets, EFacet::MinLength, EFacet::MaxLength);
        CheckPair(facets, EFacet::MinLength, EFacet::Length);
        CheckPair(facets, EFacet::Length, EFacet::MaxLength);
        CheckPair(facets, EFacet::FractionDigits, EFacet::TotalDigits);
        CheckSides();
        for (const EFacet eLower : {EFacet::MinInclusive, EFacet::MinExclusive})
            for (const EFacet eUpper : {EFacet::MaxInclusive, EFacet::MaxExclusive})
                CheckRange(facets.Find(eLower), facets.Find(eUpper));
    }

    /// The facet of this step among two, for the position of what is wrong with both; null if both are of the base.
    const SFacet* FindOwn(const SFacet& first, const SFacet& second) const
    {
        const SFacet* pOwn = m_type.FindOwnFacet(second.eFacet);
        return pOwn ? pOwn : m_type.FindOwnFacet(first.eFacet);
    }

    void ReportPair(const SFacet& lower, const SFacet& upper)
    {
        if (const SFacet* pOwn = FindOwn(lower, upper))
            AddError(*pOwn, Name(lower) + " '" + lower.strValue + "' and " + std::string(GetFacetName(upper.eFacet)) +
                                " '" + upper.strValue + "' leave no value");
    }

    void CheckPair(const SEffectiveFacets& facets, EFacet eLower, EFacet eUpper)
    {
        const SFacet* pLower = facets.Find(eLower);
        const SFacet* pUpper = facets.Find(eUpper);
        if (pLower && pUpper && pLower->nValue > pUpper->nValue)
            ReportPair(*pLower, *pUpper);
    }

    /// One step has one bound of a side.
    void CheckSides()
    {
        constexpr std::pair<EFacet, EFacet> sides[] = {{EFacet::MinInclusive, EFacet::MinExclusive},
                                                       {EFacet::MaxInclusive, EFacet::MaxExclusive}};
        for (const auto& [eInclusive, eExclusive] : sides)
        {
            const SFacet* pInclusive = m_type.FindOwnFacet(eInclusive);
            const SFacet* pExclusive = m_type.FindOwnFacet(eExclusive);
            if (pInclusive && pExclusive)
                AddError(*std::max(pInclusive, pExclusive), "the facets '" + std::string(GetFacetName(eInclusive)) +
                                                                "' and '" + std::string(GetFacetName(eExclusive)) +
                                                                "' exclude each other");
        }
    }

    void CheckRange(const SFacet* pLower, const SFacet* pUpper)
    {
        if (!pLower || !pUpper)
            return;
        SBound bound = *FindBound(pUpper->eFacet);
        // Two exclusive bounds may meet; what they let pass is nothing, but that is allowed.
        bound.bInclusive |= pLower->eFacet == EFacet::MinExclusive;
        if (IsOutside(CompareValues(m_type.ePrimitive, Collapse(pLower->strValue), Collapse(pUpper->strValue)), bound))
            ReportPair(*pLower, *pUpper);
    }

    const SSimpleType& m_type;
    const SSimpleType& m_base;
    SEffectiveFacets m_inherited;
    CValueChecker& m_values;
    CDiagnostics& m_diagnostics;
    bool m_bFailed = false;
};

bool HoldsList(const SSimpleType& type)
{
    return type.eVariety == EVariety::List ||
           (type.eVariety == EVariety::Union &&
            std::any_of(type.members.begin(), type.members.end(),
                        [](const SSimpleType* pMember) { return HoldsList(*pMember); }));
}

void CheckFinal(const SSimpleType& type, const SSimpleType& used, unsigned nBit, std::string_view svWay,
                CDiagnostics& diagnostics)
{
    if (used.nFinal & nBit)
        diagnostics.AddError(type.position, DescribeType(used) + " is final and admits no " + std::string(svWay));
}

} // namespace

std::string CValueChecker::Check(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope)
{
    return Judge(type, svText, pScope, nullptr);
}

// The verdict and the key of a value come from one walk. Were they asked for one after the other at each level of a union of
// unions, the steps would double with every level.
std::string CValueChecker::Judge(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope,
                                 std::string* pstrKey)
{
    constexpr std::size_t nMostSteps = 5'000'000;
    if (++m_nSteps > nMostSteps)
        return {};
    const SEffectiveFacets& facets = GetFacets(type);
    const std::string strValue = ApplyWhiteSpace(svText, facets.eWhiteSpace);
    std::string strKey;
    std::string* const pstrWanted = pstrKey != nullptr ? pstrKey : facets.pEnumerations ? &strKey : nullptr;
    std::string strWrong;
    switch (type.eVariety)
    {
    case EVariety::Atomic:
        strWrong = CheckAtomic(type, facets, strValue, pScope);
        if (strWrong.empty() && pstrWanted != nullptr)
            *pstrWanted = GetValueKey(type.ePrimitive, strValue, pScope);
        break;
    case EVariety::List:
        strWrong = JudgeList(type, facets, strValue, pScope, pstrWanted);
        break;
    case EVariety::Union:
        if (!JudgeUnion(type, svText, pScope, pstrWanted))
            strWrong = "no member of the union takes it";
        break;
    }
    if (strWrong.empty() && facets.pEnumerations && !IsEnumerated(type, *facets.pEnumerations, *pstrWanted))
        strWrong = "it is not one of the enumerated values";
    return strWrong;
}

std::string CValueChecker::CheckAtomic(const SSimpleType& type, const SEffectiveFacets& facets,
                                       const std::string& strValue, const SNamespaceScope* pScope)
{
    if (!IsLexical(type.eNearestBuiltin, strValue, pScope))
        return "it is not written as '" + std::string(GetBuiltinName(type.eNearestBuiltin)) + "' is";
    if (type.ePrimitive == EBuiltin::NOTATION)
    {
        const std::string strKey = GetValueKey(type.ePrimitive, strValue, pScope);
        const std::size_t nBlank = strKey.rfind(' ');
        const SNamespace* pSpace = m_set.FindNamespace(strKey.substr(0, nBlank));
        if (!pSpace || !pSpace->notations.Find(strKey.substr(nBlank + 1)))
            return "there is no notation of this name";
    }
    if (type.ePrimitive == EBuiltin::Decimal)
        if (std::string strWrong = CheckDigits(facets, strValue); !strWrong.empty())
            return strWrong;
    if (!IsQNameLike(type.ePrimitive))
        if (std::string strWrong = CheckLength(facets, GetValueLength(type.ePrimitive, strValue)); !strWrong.empty())
            return strWrong;
    return CheckBounds(type.ePrimitive, facets, strValue);
}

std::string CValueChecker::JudgeList(const SSimpleType& type, const SEffectiveFacets& facets,
                                     const std::string& strValue, const SNamespaceScope* pScope, std::string* pstrKey)
{
    const std::vector<std::string_view> items = SplitList(strValue);
    if (pstrKey != nullptr)
        pstrKey->clear();
    for (const std::string_view svItem : items)
    {
        std::string strItemKey;
        if (const std::string strWrong = Judge(*type.pItem, svItem, pScope, pstrKey != nullptr ? &strItemKey : nullptr);
            !strWrong.empty())
            return "of its item '" + std::string(svItem) + "', " + strWrong;
        if (pstrKey != nullptr)
            *pstrKey += strItemKey + " ";
    }
    return CheckLength(facets, items.size());
}

/// Whether a member takes the text. Which one it is belongs to the key.
bool CValueChecker::JudgeUnion(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope,
                               std::string* pstrKey)
{
    std::string strMemberKey;
    for (const SSimpleType* pMember : type.members)
    {
        if (!Judge(*pMember, svText, pScope, pstrKey != nullptr ? &strMemberKey : nullptr).empty())
            continue;
        if (pstrKey != nullptr)
            *pstrKey = std::string(GetBuiltinName(pMember->ePrimitive)) + " " + strMemberKey;
        return true;
    }
    return false;
}

std::string CValueChecker::GetKey(const SSimpleType& type, std::string_view svText, const SNamespaceScope* pScope)
{
    std::string strValue = ApplyWhiteSpace(svText, GetFacets(type).eWhiteSpace);
    if (type.eVariety == EVariety::Atomic)
        return GetValueKey(type.ePrimitive, strValue, pScope);
    std::string strKey;
    if (type.eVariety == EVariety::List)
    {
        for (const std::string_view svItem : SplitList(strValue))
            strKey += GetKey(*type.pItem, svItem, pScope) + " ";
        return strKey;
    }
    return JudgeUnion(type, svText, pScope, &strKey) ? strKey : strValue;
}

const SEffectiveFacets& CValueChecker::GetFacets(const SSimpleType& type)
{
    const auto [it, bNew] = m_facets.try_emplace(&type);
    if (bNew)
        it->second = GetEffectiveFacets(type);
    return it->second;
}

bool CValueChecker::IsEnumerated(const SSimpleType& type, const std::vector<SEnumeration>& enumerations,
                                 const std::string& strKey)
{
    const auto [it, bNew] = m_enumerations.try_emplace(&enumerations);
    // What is added to the map meanwhile leaves this entry where it is.
    std::unordered_set<std::string>& keys = it->second;
    if (bNew)
        for (const SEnumeration& enumeration : enumerations)
            keys.insert(GetKey(type, enumeration.strValue, enumeration.pScope));
    return keys.count(strKey) > 0;
}

void CheckSimpleType(const SSimpleType& type, CValueChecker& values, CDiagnostics& diagnostics)
{
    const bool bConstructed = type.pBase->eBuiltin == EBuiltin::AnySimpleType;
    if (!bConstructed)
    {
        CheckFinal(type, *type.pBase->AsSimple(), Derivation_Restriction, "restriction", diagnostics);
        CFacetChecker(type, values, diagnostics).Check();
        return;
    }
    if (type.eVariety == EVariety::List)
    {
        CheckFinal(type, *type.pItem, Derivation_List, "list", diagnostics);
        if (HoldsList(*type.pItem))
            diagnostics.AddError(type.position, "the items of a list cannot be lists");
    }
    for (const SSimpleType* pMember : type.members)
        CheckFinal(type, *pMember, Derivation_Union, "union", diagnostics);
}

} // namespace quiver_gen::schema
