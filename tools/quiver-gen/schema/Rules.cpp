#include "tools/quiver-gen/schema/Rules.h"

#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace quiver_gen::schema
{

namespace
{

/// A place in the order of an element's children: any of these names, once or often.
struct SSlot
{
    std::string_view svNames; ///< between blanks
    bool bMany = false;
    bool bRequired = false;
    bool bLast = false; ///< nothing but what the slots before allow may stand beside it
};

constexpr std::size_t s_nMaxSlots = 6;

/// What an element of the schema language holds. Where its place matters, the name is `parent/name`.
struct SRule
{
    std::string_view svName;
    std::string_view svRequired; ///< attributes, between blanks; `id` is allowed everywhere
    std::string_view svOptional;
    std::array<SSlot, s_nMaxSlots> slots{};
};

constexpr SSlot s_annotation = {"annotation"};
constexpr SSlot s_attributes = {"attribute attributeGroup", true};
constexpr SSlot s_anyAttribute = {"anyAttribute"};
constexpr SSlot s_simpleType = {"simpleType"};
constexpr SSlot s_particles = {"element group choice sequence any", true};
constexpr SSlot s_content = {"group all choice sequence"};
constexpr SSlot s_constraints = {"key keyref unique", true};
constexpr SSlot s_facets = {"length minLength maxLength whiteSpace minInclusive minExclusive maxInclusive maxExclusive "
                            "totalDigits fractionDigits pattern enumeration",
                            true};

constexpr SRule s_rules[] = {
    {"schema",
     "",
     "targetNamespace version xmlns finalDefault blockDefault attributeFormDefault elementFormDefault",
     {SSlot{"include import redefine annotation", true},
      SSlot{"simpleType complexType group attributeGroup element attribute notation annotation", true}}},
    {"include", "schemaLocation", "", {s_annotation}},
    {"import", "", "namespace schemaLocation", {s_annotation}},
    {"redefine", "schemaLocation", "", {SSlot{"annotation simpleType complexType group attributeGroup", true}}},
    {"annotation", "", "", {SSlot{"appinfo documentation", true}}},
    {"appinfo", "", "source", {}},
    {"documentation", "", "source", {}},

    {"schema/element",
     "name",
     "type substitutionGroup default fixed nillable abstract final block",
     {s_annotation, SSlot{"simpleType complexType"}, s_constraints}},
    {"element",
     "",
     "name ref type minOccurs maxOccurs default fixed nillable block form",
     {s_annotation, SSlot{"simpleType complexType"}, s_constraints}},
    {"schema/attribute", "name", "type default fixed", {s_annotation, s_simpleType}},
    {"attribute", "", "name ref type use default fixed form", {s_annotation, s_simpleType}},

    {"schema/complexType",
     "name",
     "mixed abstract final block",
     {s_annotation, SSlot{"simpleContent complexContent", false, false, true}, s_content, s_attributes,
      s_anyAttribute}},
    {"complexType",
     "",
     "mixed",
     {s_annotation, SSlot{"simpleContent complexContent", false, false, true}, s_content, s_attributes,
      s_anyAttribute}},
    {"simpleContent", "", "", {s_annotation, SSlot{"restriction extension", false, true}}},
    {"complexContent", "", "mixed", {s_annotation, SSlot{"restriction extension", false, true}}},
    {"simpleContent/restriction", "base", "", {s_annotation, s_simpleType, s_facets, s_attributes, s_anyAttribute}},
    {"simpleContent/extension", "base", "", {s_annotation, s_attributes, s_anyAttribute}},
    {"complexContent/restriction", "base", "", {s_annotation, s_content, s_attributes, s_anyAttribute}},
    {"complexContent/extension", "base", "", {s_annotation, s_content, s_attributes, s_anyAttribute}},

    {"schema/simpleType", "name", "final", {s_annotation, SSlot{"restriction list union", false, true}}},
    {"simpleType", "", "", {s_annotation, SSlot{"restriction list union", false, true}}},
    {"restriction", "", "base", {s_annotation, s_simpleType, s_facets}},
    {"list", "", "itemType", {s_annotation, s_simpleType}},
    {"union", "", "memberTypes", {s_annotation, SSlot{"simpleType", true}}},
    {"length", "value", "fixed", {s_annotation}},
    {"minLength", "value", "fixed", {s_annotation}},
    {"maxLength", "value", "fixed", {s_annotation}},
    {"whiteSpace", "value", "fixed", {s_annotation}},
    {"minInclusive", "value", "fixed", {s_annotation}},
    {"minExclusive", "value", "fixed", {s_annotation}},
    {"maxInclusive", "value", "fixed", {s_annotation}},
    {"maxExclusive", "value", "fixed", {s_annotation}},
    {"totalDigits", "value", "fixed", {s_annotation}},
    {"fractionDigits", "value", "fixed", {s_annotation}},
    {"pattern", "value", "", {s_annotation}},
    {"enumeration", "value", "", {s_annotation}},

    {"schema/group", "name", "", {s_annotation, SSlot{"all choice sequence", false, true}}},
    {"group/all", "", "", {s_annotation, SSlot{"element", true}}},
    {"group/choice", "", "", {s_annotation, s_particles}},
    {"group/sequence", "", "", {s_annotation, s_particles}},
    {"group", "ref", "minOccurs maxOccurs", {s_annotation}},
    {"all", "", "minOccurs maxOccurs", {s_annotation, SSlot{"element", true}}},
    {"choice", "", "minOccurs maxOccurs", {s_annotation, s_particles}},
    {"sequence", "", "minOccurs maxOccurs", {s_annotation, s_particles}},
    {"any", "", "namespace processContents minOccurs maxOccurs", {s_annotation}},
    {"schema/attributeGroup", "name", "", {s_annotation, s_attributes, s_anyAttribute}},
    {"attributeGroup", "ref", "", {s_annotation}},
    {"anyAttribute", "", "namespace processContents", {s_annotation}},

    {"unique", "name", "", {s_annotation, SSlot{"selector", false, true}, SSlot{"field", true, true}}},
    {"key", "name", "", {s_annotation, SSlot{"selector", false, true}, SSlot{"field", true, true}}},
    {"keyref", "name refer", "", {s_annotation, SSlot{"selector", false, true}, SSlot{"field", true, true}}},
    {"selector", "xpath", "", {s_annotation}},
    {"field", "xpath", "", {s_annotation}},
    {"schema/notation", "name", "public system", {s_annotation}},
};

/// Whether a name is one of those between blanks.
bool IsListed(std::string_view svNames, std::string_view svName)
{
    std::size_t nStart = svNames.find(svName);
    for (; nStart != std::string_view::npos; nStart = svNames.find(svName, nStart + 1))
    {
        const std::size_t nEnd = nStart + svName.size();
        if ((nStart == 0 || svNames[nStart - 1] == ' ') && (nEnd == svNames.size() || svNames[nEnd] == ' '))
            return !svName.empty();
    }
    return false;
}

// --- Values of attributes -------------------------------------------------------------------------------------------

bool IsOneOf(std::string_view svValue, std::initializer_list<std::string_view> values)
{
    return std::find(values.begin(), values.end(), svValue) != values.end();
}

bool IsBoolean(std::string_view svValue)
{
    return IsOneOf(svValue, {"true", "false", "1", "0"});
}

bool IsCount(std::string_view svValue)
{
    std::uint64_t nValue = 0;
    return ParseCount(svValue, nValue);
}

bool IsCountOrUnbounded(std::string_view svValue)
{
    return svValue == "unbounded" || IsCount(svValue);
}

bool IsForm(std::string_view svValue)
{
    return IsOneOf(svValue, {"qualified", "unqualified"});
}

bool IsUse(std::string_view svValue)
{
    return IsOneOf(svValue, {"optional", "required", "prohibited"});
}

bool IsProcessContents(std::string_view svValue)
{
    return IsOneOf(svValue, {"strict", "lax", "skip"});
}

bool IsBits(std::string_view svValue)
{
    if (svValue == "#all")
        return true;
    for (const std::string_view svPart : SplitList(svValue))
        if (!IsOneOf(svPart, {"extension", "restriction", "substitution", "list", "union"}))
            return false;
    return true;
}

bool IsQNameList(std::string_view svValue)
{
    const std::vector<std::string_view> parts = SplitList(svValue);
    return std::all_of(parts.begin(), parts.end(), IsQName);
}

bool IsFilled(std::string_view svValue)
{
    return !svValue.empty();
}

struct SValueRule
{
    std::string_view svAttributes; ///< between blanks
    bool (*pfnIsValid)(std::string_view svValue);
    std::string_view svExpected;
};

constexpr SValueRule s_valueRules[] = {
    {"name id", IsNCName, "a name without a colon"},
    {"ref type base itemType substitutionGroup refer", IsQName, "a name, with a prefix or without"},
    {"memberTypes", IsQNameList, "names, with prefixes or without"},
    {"mixed abstract nillable", IsBoolean, "true or false"},
    {"minOccurs", IsCount, "a non-negative integer"},
    {"maxOccurs", IsCountOrUnbounded, "a non-negative integer or 'unbounded'"},
    {"form elementFormDefault attributeFormDefault", IsForm, "'qualified' or 'unqualified'"},
    {"use", IsUse, "'optional', 'required' or 'prohibited'"},
    {"processContents", IsProcessContents, "'strict', 'lax' or 'skip'"},
    {"block final blockDefault finalDefault", IsBits, "'#all' or a list of ways of derivation"},
    {"targetNamespace", IsFilled, "a namespace"},
};

const SValueRule* FindValueRule(std::string_view svAttribute)
{
    for (const SValueRule& rule : s_valueRules)
        if (IsListed(rule.svAttributes, svAttribute))
            return &rule;
    return nullptr;
}

// --- The walk -------------------------------------------------------------------------------------------------------

using CRuleMap = std::unordered_map<std::string_view, const SRule*>;

const CRuleMap& GetRules()
{
    static const CRuleMap rules = []
    {
        CRuleMap map;
        for (const SRule& rule : s_rules)
            map.emplace(rule.svName, &rule);
        return map;
    }();
    return rules;
}

const SRule* FindRule(std::string_view svParent, std::string_view svName)
{
    // What is redefined is written as at the top level.
    std::string strKey(svParent == "redefine" && svName != "annotation" ? std::string_view("schema") : svParent);
    strKey.append("/").append(svName);
    const CRuleMap& rules = GetRules();
    auto it = rules.find(strKey);
    if (it == rules.end())
        it = rules.find(svName);
    return it == rules.end() ? nullptr : it->second;
}

class CRuleChecker
{
public:
    CRuleChecker(const SDocument& document, CDiagnostics& diagnostics)
        : m_document(document)
        , m_diagnostics(diagnostics)
    {
    }

    void Check()
    {
        struct SOpen
        {
            const SNode* pNode;
            const SRule* pRule;
        };
        std::vector<SOpen> open{{m_document.pRoot, FindRule("", "schema")}};
        while (!open.empty())
        {
            const auto [pNode, pRule] = open.back();
            open.pop_back();
            CheckAttributes(*pNode, *pRule);
            CheckChildren(*pNode, *pRule);
            for (const SNode* pChild : pNode->children)
                if (pChild->bXsd)
                    if (const SRule* pChildRule = FindRule(ParentOf(*pRule, *pNode), pChild->strLocal))
                        open.push_back({pChild, pChildRule});
        }
    }

private:
    /// What the rules for children are called after: a reference to a group holds no group.
    static std::string_view ParentOf(const SRule& rule, const SNode& node)
    {
        return rule.svName == "group" ? std::string_view() : std::string_view(node.strLocal);
    }

    void AddError(const SNode& node, std::string strText)
    {
        m_diagnostics.AddError(m_document.GetPosition(node), std::move(strText));
    }

    void CheckAttributes(const SNode& node, const SRule& rule)
    {
        for (const SNodeAttribute& attribute : node.attributes)
        {
            if (attribute.strNamespace == s_svXsdNamespace)
                AddError(node, "the attribute '" + attribute.strLocal + "' of '" + node.strLocal +
                                   "' stands in the schema namespace, where it has no meaning");
            if (!attribute.strNamespace.empty())
                continue;
            if (attribute.strLocal != "id" && !IsListed(rule.svRequired, attribute.strLocal) &&
                !IsListed(rule.svOptional, attribute.strLocal))
                AddError(node, "the attribute '" + attribute.strLocal + "' is not allowed on '" + Describe(rule) + "'");
            else
                CheckValue(node, rule, attribute);
        }
        for (const std::string_view svName : SplitList(rule.svRequired))
            if (!node.Find(svName))
                AddError(node, "'" + Describe(rule) + "' needs the attribute '" + std::string(svName) + "'");
    }

    /// `schema/element` as `global element`, for people.
    static std::string Describe(const SRule& rule)
    {
        constexpr std::string_view svGlobal = "schema/";
        if (rule.svName.substr(0, svGlobal.size()) == svGlobal)
            return "global " + std::string(rule.svName.substr(svGlobal.size()));
        return std::string(rule.svName);
    }

    void CheckValue(const SNode& node, const SRule& rule, const SNodeAttribute& attribute)
    {
        const std::string_view svValue = Trim(attribute.strValue);
        // `fixed` is a boolean on facets only, which are what has a value.
        const bool bFacet = rule.svRequired == "value";
        if (attribute.strLocal == "fixed" && bFacet && !IsBoolean(svValue))
            AddError(node, "the attribute 'fixed' is '" + attribute.strValue + "', where true or false is needed");
        const SValueRule* pRule = FindValueRule(attribute.strLocal);
        if (pRule && !pRule->pfnIsValid(svValue))
            AddError(node, "the attribute '" + attribute.strLocal + "' is '" + attribute.strValue + "', where " +
                               std::string(pRule->svExpected) + " is needed");
    }

    void CheckChildren(const SNode& node, const SRule& rule)
    {
        if (node.bText)
            m_diagnostics.AddError({m_document.nFile, node.nTextLine, node.nTextColumn},
                                   "text is not allowed in '" + node.strLocal + "'");
        std::array<std::size_t, s_nMaxSlots> counts{};
        std::size_t nSlot = 0;
        for (const SNode* pChild : node.children)
            PlaceChild(rule, *pChild, nSlot, counts);
        for (std::size_t n = 0; n < s_nMaxSlots; ++n)
            if (rule.slots[n].bRequired && counts[n] == 0)
                AddError(node, "'" + Describe(rule) + "' needs a child " + DescribeNames(rule.slots[n]));
    }

    static std::string DescribeNames(const SSlot& slot)
    {
        std::string strText;
        const std::vector<std::string_view> names = SplitList(slot.svNames);
        for (std::size_t n = 0; n < names.size(); ++n)
            strText += (n == 0 ? "'" : n + 1 < names.size() ? ", '" : " or '") + std::string(names[n]) + "'";
        return strText;
    }

    /// @param nSlot where the children before it ended.
    void PlaceChild(const SRule& rule, const SNode& child, std::size_t& nSlot,
                    std::array<std::size_t, s_nMaxSlots>& counts)
    {
        if (!child.bXsd || !IsKnown(child.strLocal))
        {
            AddError(child, "the element '" + child.strLocal + "' is not known in a schema");
            return;
        }
        std::size_t nPlace = nSlot;
        while (nPlace < s_nMaxSlots && !IsListed(rule.slots[nPlace].svNames, child.strLocal))
            ++nPlace;
        const bool bAfterLast = nSlot < s_nMaxSlots && rule.slots[nSlot].bLast && counts[nSlot] > 0 && nPlace != nSlot;
        if (nPlace == s_nMaxSlots || bAfterLast)
        {
            const bool bElsewhere =
                std::any_of(rule.slots.begin(), rule.slots.end(),
                            [&](const SSlot& slot) { return IsListed(slot.svNames, child.strLocal); });
            AddError(child, "the element '" + child.strLocal + "' is not allowed " +
                                (bElsewhere ? "here in '" : "in '") + Describe(rule) + "'");
            return;
        }
        nSlot = nPlace;
        if (counts[nPlace]++ > 0 && !rule.slots[nPlace].bMany)
            AddError(child, "'" + Describe(rule) + "' holds more than one " + DescribeNames(rule.slots[nPlace]));
    }

    static bool IsKnown(const std::string& strName)
    {
        return FindRule("schema", strName) != nullptr || strName == "restriction" || strName == "extension";
    }

    const SDocument& m_document;
    CDiagnostics& m_diagnostics;
};

} // namespace

void CheckRules(const SDocument& document, CDiagnostics& diagnostics)
{
    CRuleChecker(document, diagnostics).Check();
}

std::set<CConstruct> GetLanguage()
{
    std::set<CConstruct> language;
    for (const SRule& rule : s_rules)
    {
        const std::string strElement(rule.svName.substr(rule.svName.rfind('/') + 1));
        language.insert({strElement, {}});
        for (const std::string_view svNames : {rule.svRequired, rule.svOptional})
            for (const std::string_view svName : SplitList(svNames))
                language.insert({strElement, std::string(svName)});
    }
    return language;
}

} // namespace quiver_gen::schema
