#include "tools/quiver-gen/schema/Builder.h"

#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <limits>

namespace quiver_gen::schema
{

namespace
{

struct SBitName
{
    std::string_view svName;
    unsigned nBit;
};

constexpr SBitName s_bitNames[] = {
    {"extension", Derivation_Extension},
    {"restriction", Derivation_Restriction},
    {"substitution", Derivation_Substitution},
    {"list", Derivation_List},
    {"union", Derivation_Union},
};

unsigned ParseBits(std::string_view svText)
{
    unsigned nBits = Derivation_None;
    for (const std::string_view svPart : SplitList(svText))
        for (const SBitName& name : s_bitNames)
            if (svPart == name.svName || svPart == "#all")
                nBits |= name.nBit;
    return nBits;
}

std::int64_t ReadCount(const std::string* pText, std::int64_t nDefault)
{
    if (!pText)
        return nDefault;
    if (Trim(*pText) == "unbounded")
        return s_nUnbounded;
    std::uint64_t nValue = 0;
    ParseCount(*pText, nValue);
    constexpr auto nLargest = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min(nValue, static_cast<std::uint64_t>(nLargest)));
}

constexpr std::string_view s_builtInAttributes = "xmlns";

} // namespace

const SNode* FindChild(const SNode& node, std::string_view svName)
{
    for (const SNode* pChild : node.children)
        if (pChild->Is(svName))
            return pChild;
    return nullptr;
}

CBuilder::CBuilder(std::size_t nDocument, SSchemaSet& set, SDraft& draft, CDiagnostics& diagnostics)
    : m_nDocument(nDocument)
    , m_document(draft.documents[nDocument])
    , m_set(set)
    , m_draft(draft)
    , m_diagnostics(diagnostics)
    , m_namespace(set.GetNamespace(m_document.strTargetNamespace))
{
}

void CBuilder::Build()
{
    for (const SNode* pNode : m_document.pRoot->children)
        BuildGlobal(*pNode);
}

// --- Global components ----------------------------------------------------------------------------------------------

void CBuilder::BuildGlobal(const SNode& node)
{
    struct SBuild
    {
        std::string_view svName;
        void (CBuilder::*pfnBuild)(const SNode&);
    };
    static constexpr SBuild s_builds[] = {
        {"simpleType", &CBuilder::BuildGlobalType}, {"complexType", &CBuilder::BuildGlobalType},
        {"element", &CBuilder::BuildGlobalElement}, {"attribute", &CBuilder::BuildGlobalAttribute},
        {"group", &CBuilder::BuildGroupDefinition}, {"attributeGroup", &CBuilder::BuildAttributeGroup},
        {"notation", &CBuilder::BuildNotation},     {"redefine", &CBuilder::BuildRedefine},
    };
    for (const SBuild& build : s_builds)
        if (node.Is(build.svName))
            (this->*build.pfnBuild)(node);
    if (!node.Is("annotation"))
        return;
    SFile& file = m_set.files[static_cast<std::size_t>(m_document.nFile)];
    for (const SNode* pChild : node.children)
        if (pChild->Is("documentation"))
            file.documentation.push_back({pChild->strLang, pChild->strText});
}

void CBuilder::BuildRedefine(const SNode& node)
{
    m_pRedefine = &node;
    for (const SNode* pChild : node.children)
    {
        if (pChild->Is("annotation"))
            continue;
        m_nRedefinition = m_draft.redefinitions.size();
        SRedefinition& redefinition = m_draft.redefinitions.emplace_back();
        redefinition.name = MakeGlobalName(*pChild);
        redefinition.position = m_document.GetPosition(*pChild);
        redefinition.nTarget = m_document.redefinitions.at(&node);
        BuildGlobal(*pChild);
    }
    m_pRedefine = nullptr;
    m_nRedefinition = s_nNoRedefinition;
}

template <typename TComponent>
void CBuilder::Register(SNamespace::STable<TComponent>& table, TComponent& component, std::string_view svKind)
{
    const auto [it, bNew] = table.byName.emplace(component.name.strLocal, &component);
    table.list.push_back(&component);
    if (!bNew)
        m_diagnostics.AddError(component.position, std::string(svKind) + " '" + component.name.strLocal +
                                                       "' is defined twice; the first definition is at " +
                                                       m_set.Describe(it->second->position));
}

template <typename TComponent>
bool CBuilder::RegisterUnlessRedefined(SNamespace::STable<TComponent>& table, TComponent& component,
                                       std::string_view svKind, ESymbol eSymbol, TComponent* SRedefinition::*ppSlot)
{
    if (!m_pRedefine)
    {
        Register(table, component, svKind);
        return true;
    }
    SRedefinition& redefinition = m_draft.redefinitions[m_nRedefinition];
    redefinition.eSymbol = eSymbol;
    redefinition.*ppSlot = &component;
    return false;
}

void CBuilder::BuildGlobalType(const SNode& node)
{
    const SQName name = MakeGlobalName(node);
    // The schema for schemas defines what is built in.
    if (name.strNamespace == s_svXsdNamespace && m_set.FindType(name) &&
        m_set.FindType(name)->eBuiltin != EBuiltin::None)
        return;
    SType* pType = node.Is("simpleType") ? static_cast<SType*>(BuildSimpleType(node)) : BuildComplexType(node);
    RegisterUnlessRedefined(m_namespace.types, *pType, "the type", ESymbol::Type, &SRedefinition::pType);
}

void CBuilder::BuildGlobalElement(const SNode& node)
{
    SElement& element = m_set.elements.emplace_back();
    Start(node, element);
    element.name = MakeGlobalName(node);
    element.bGlobal = true;
    Register(m_namespace.elements, element, "the element");
    element.bAbstract = ReadBoolean(node, "abstract");
    element.nFinal = ReadBits(node, "final", "finalDefault", Derivation_Extension | Derivation_Restriction);
    if (const std::string* pHead = node.Find("substitutionGroup"))
        Refer(m_draft.elements, node, *pHead, &element.pHead);
    BuildElement(node, element);
}

void CBuilder::BuildGlobalAttribute(const SNode& node)
{
    SAttribute& attribute = m_set.attributes.emplace_back();
    Start(node, attribute);
    attribute.name = MakeGlobalName(node);
    attribute.bGlobal = true;
    attribute.value = ReadValue(node);
    Register(m_namespace.attributes, attribute, "the attribute");
    BuildAttributeType(node, attribute);
}

void CBuilder::BuildGroupDefinition(const SNode& node)
{
    SGroupDefinition& group = m_set.groups.emplace_back();
    Start(node, group);
    group.name = MakeGlobalName(node);
    RegisterUnlessRedefined(m_namespace.groups, group, "the group", ESymbol::Group, &SRedefinition::pGroup);
    for (const SNode* pChild : node.children)
        if (!pChild->Is("annotation"))
            group.pGroup = BuildModelGroup(*pChild, {nullptr, &group});
}

void CBuilder::BuildAttributeGroup(const SNode& node)
{
    SAttributeGroup& group = m_set.attributeGroups.emplace_back();
    Start(node, group);
    group.name = MakeGlobalName(node);
    RegisterUnlessRedefined(m_namespace.attributeGroups, group, "the attribute group", ESymbol::AttributeGroup,
                            &SRedefinition::pAttributeGroup);
    SAttributeGroupDraft& draft = m_draft.attributeGroupDrafts.emplace_back();
    draft.pGroup = &group;
    BuildAttributes(node, draft.attributes, &group);
}

void CBuilder::BuildNotation(const SNode& node)
{
    SNotation& notation = m_set.notations.emplace_back();
    Start(node, notation);
    notation.name = MakeGlobalName(node);
    if (const std::string* pPublic = node.Find("public"))
        notation.strPublic = *pPublic;
    if (const std::string* pSystem = node.Find("system"))
        notation.strSystem = *pSystem;
    Register(m_namespace.notations, notation, "the notation");
}

// --- Elements and particles -----------------------------------------------------------------------------------------

/// What global and local elements have in common.
void CBuilder::BuildElement(const SNode& node, SElement& element)
{
    element.bNillable = ReadBoolean(node, "nillable");
    element.nBlock = ReadBits(node, "block", "blockDefault",
                              Derivation_Extension | Derivation_Restriction | Derivation_Substitution);
    element.value = ReadValue(node);
    BuildElementType(node, element);
    for (const SNode* pChild : node.children)
        if (pChild->Is("key") || pChild->Is("keyref") || pChild->Is("unique"))
            BuildConstraint(*pChild, element);
}

void CBuilder::BuildElementType(const SNode& node, SElement& element)
{
    const SNode* pSimple = FindChild(node, "simpleType");
    const SNode* pInner = pSimple ? pSimple : FindChild(node, "complexType");
    const std::string* pName = node.Find("type");
    if (pName && pInner)
        AddError(node, "the element '" + element.name.strLocal + "' has both a type attribute and a type of its own");
    if (pInner)
    {
        element.pType = pSimple ? static_cast<SType*>(BuildSimpleType(*pInner)) : BuildComplexType(*pInner);
        element.pType->pOwnerElement = &element;
    }
    else if (pName)
        Refer(m_draft.types, node, *pName, &element.pType);
    else if (!element.bGlobal || !node.Find("substitutionGroup"))
        element.pType = &m_set.GetBuiltin(EBuiltin::AnyType);
}

void CBuilder::BuildConstraint(const SNode& node, SElement& element)
{
    using EKind = SIdentityConstraint::EKind;
    SIdentityConstraint& constraint = m_set.constraints.emplace_back();
    Start(node, constraint);
    constraint.eKind = node.Is("key") ? EKind::Key : node.Is("keyref") ? EKind::KeyRef : EKind::Unique;
    constraint.name = MakeGlobalName(node);
    constraint.pElement = &element;
    element.constraints.push_back(&constraint);
    Register(m_namespace.constraints, constraint, "the identity constraint");
    for (const SNode* pChild : node.children)
    {
        if (pChild->Is("selector"))
            constraint.selector = BuildXPath(*pChild);
        else if (pChild->Is("field"))
            constraint.fields.push_back(BuildXPath(*pChild));
    }
    if (constraint.eKind == EKind::KeyRef)
        Refer(m_draft.constraints, node, *node.Find("refer"), &constraint.pRefer);
}

SXPath CBuilder::BuildXPath(const SNode& node)
{
    SXPath xpath;
    Start(node, xpath);
    xpath.strText = Trim(*node.Find("xpath"));
    xpath.pScope = node.pScope;
    return xpath;
}

/// The particle that a child of a group or type stands for; null for an annotation, attributes, and what never occurs.
SParticle* CBuilder::BuildParticle(const SNode& node, const SOwner& owner)
{
    static constexpr std::string_view s_terms[] = {"element", "group", "sequence", "choice", "all", "any"};
    if (std::find(std::begin(s_terms), std::end(s_terms), node.strLocal) == std::end(s_terms))
        return nullptr;
    SParticle read;
    if (!ReadOccurrence(node, read))
        return nullptr;
    SParticle& particle = m_set.particles.emplace_back(read);
    particle.position = m_document.GetPosition(node);
    if (node.Is("element"))
        BuildLocalElement(node, particle, owner);
    else if (node.Is("group"))
        BuildGroupReference(node, particle, owner);
    else if (node.Is("any"))
    {
        particle.eTerm = ETerm::Wildcard;
        particle.pWildcard = BuildWildcard(node);
    }
    else
    {
        particle.eTerm = ETerm::Group;
        particle.pGroup = BuildModelGroup(node, owner);
    }
    return &particle;
}

/// @return whether the particle can occur at all.
bool CBuilder::ReadOccurrence(const SNode& node, SParticle& particle)
{
    particle.nMin = ReadCount(node.Find("minOccurs"), 1);
    particle.nMax = ReadCount(node.Find("maxOccurs"), 1);
    if (particle.nMax != s_nUnbounded && particle.nMin > particle.nMax)
        AddError(node,
                 "minOccurs " + std::to_string(particle.nMin) + " is above maxOccurs " + std::to_string(particle.nMax));
    if (node.Is("all") && (particle.nMin > 1 || particle.nMax != 1))
        AddError(node, "'all' occurs once or, by minOccurs 0, not at all");
    return particle.nMax != 0;
}

void CBuilder::BuildLocalElement(const SNode& node, SParticle& particle, const SOwner& owner)
{
    particle.eTerm = ETerm::Element;
    if (!ReadNameOrReference(node, particle.bReference))
        return;
    if (particle.bReference)
    {
        Forbid(node, "an element with 'ref'", {"type", "default", "fixed", "nillable", "block", "form"},
               {"simpleType", "complexType", "key", "keyref", "unique"});
        Start(node, particle);
        Refer(m_draft.elements, node, *node.Find("ref"), &particle.pElement);
        return;
    }
    SElement& element = m_set.elements.emplace_back();
    Start(node, element);
    particle.pElement = &element;
    element.name = {GetLocalNamespace(node, "elementFormDefault"), std::string(Trim(*node.Find("name")))};
    element.pOwnerType = owner.pType;
    element.pOwnerGroup = owner.pGroup;
    BuildElement(node, element);
}

void CBuilder::BuildGroupReference(const SNode& node, SParticle& particle, const SOwner& owner)
{
    particle.eTerm = ETerm::GroupReference;
    Start(node, particle);
    SPointerReference<SGroupDefinition>* pReference =
        Refer(m_draft.groups, node, *node.Find("ref"), &particle.pDefinition);
    if (!pReference || !owner.pGroup || m_nRedefinition == s_nNoRedefinition)
        return;
    const SRedefinition& redefinition = m_draft.redefinitions[m_nRedefinition];
    if (redefinition.pGroup != owner.pGroup || pReference->name != redefinition.name)
        return;
    pReference->nRedefinition = m_nRedefinition;
    if (particle.nMin != 1 || particle.nMax != 1)
        AddError(node,
                 "a redefined group that refers to its former definition does so once: minOccurs and maxOccurs are 1");
}

SModelGroup* CBuilder::BuildModelGroup(const SNode& node, const SOwner& owner)
{
    SModelGroup& group = m_set.modelGroups.emplace_back();
    Start(node, group);
    group.eCompositor = node.Is("sequence") ? ECompositor::Sequence
                        : node.Is("choice") ? ECompositor::Choice
                                            : ECompositor::All;
    for (const SNode* pChild : node.children)
    {
        SParticle* pParticle = BuildParticle(*pChild, owner);
        if (!pParticle)
            continue;
        group.particles.push_back(pParticle);
        if (group.eCompositor == ECompositor::All && pParticle->IsRepeated())
            AddError(*pChild, "an element in 'all' occurs at most once");
    }
    return &group;
}

SWildcard* CBuilder::BuildWildcard(const SNode& node)
{
    SWildcard& wildcard = m_set.wildcards.emplace_back();
    Start(node, wildcard);
    if (const std::string* pProcess = node.Find("processContents"))
    {
        const std::string_view svProcess = Trim(*pProcess);
        wildcard.eProcess = svProcess == "lax"    ? SWildcard::EProcess::Lax
                            : svProcess == "skip" ? SWildcard::EProcess::Skip
                                                  : SWildcard::EProcess::Strict;
    }
    const std::string* pNamespaces = node.Find("namespace");
    const std::string_view svNamespaces = pNamespaces ? Trim(*pNamespaces) : "##any";
    if (svNamespaces == "##any")
        return &wildcard;
    if (svNamespaces == "##other")
    {
        wildcard.eNamespaces = SWildcard::ENamespaces::Not;
        wildcard.namespaces = {m_document.strTargetNamespace};
        if (!m_document.strTargetNamespace.empty())
            wildcard.namespaces.emplace_back();
        return &wildcard;
    }
    wildcard.eNamespaces = SWildcard::ENamespaces::List;
    std::unordered_set<std::string_view> known;
    for (const std::string_view svPart : SplitList(svNamespaces))
    {
        if (svPart == "##any" || svPart == "##other" ||
            (svPart.substr(0, 2) == "##" && svPart != "##local" && svPart != "##targetNamespace"))
            AddError(node, "the namespace '" + std::string(svPart) + "' is not allowed in a list");
        else if (known.insert(svPart).second)
            wildcard.namespaces.emplace_back(svPart == "##local"             ? std::string()
                                             : svPart == "##targetNamespace" ? m_document.strTargetNamespace
                                                                             : std::string(svPart));
    }
    return &wildcard;
}

// --- Attributes -----------------------------------------------------------------------------------------------------

void CBuilder::BuildAttributes(const SNode& node, SAttributeDraft& draft, SAttributeGroup* pGroup)
{
    for (const SNode* pChild : node.children)
    {
        if (pChild->Is("attribute"))
            BuildAttributeUse(*pChild, draft, pGroup);
        else if (pChild->Is("anyAttribute"))
            draft.pWildcard = BuildWildcard(*pChild);
        else if (pChild->Is("attributeGroup"))
        {
            SAttributeItem& item = draft.items.emplace_back();
            auto* pReference = Refer(m_draft.attributeGroups, *pChild, *pChild->Find("ref"), &item.pGroup);
            const bool bRedefinition = pReference && pGroup && m_nRedefinition != s_nNoRedefinition;
            if (bRedefinition && pReference->name == m_draft.redefinitions[m_nRedefinition].name)
                pReference->nRedefinition = m_nRedefinition;
        }
    }
}

void CBuilder::BuildAttributeUse(const SNode& node, SAttributeDraft& draft, SAttributeGroup* pGroup)
{
    bool bReference = false;
    if (!ReadNameOrReference(node, bReference))
        return;
    SAttributeUse& use = m_set.attributeUses.emplace_back();
    Start(node, use);
    use.bReference = bReference;
    use.pGroup = pGroup;
    use.value = ReadValue(node);
    const std::string* pUse = node.Find("use");
    const std::string_view svUse = pUse ? Trim(*pUse) : "optional";
    use.eUse = svUse == "required"     ? SAttributeUse::EUse::Required
               : svUse == "prohibited" ? SAttributeUse::EUse::Prohibited
                                       : SAttributeUse::EUse::Optional;
    if (use.value && !use.value->bFixed && use.eUse != SAttributeUse::EUse::Optional)
        AddError(node, "an attribute with a default is optional, not " + std::string(svUse));
    if (use.bReference)
    {
        Forbid(node, "an attribute with 'ref'", {"type", "form"}, {"simpleType"});
        Refer(m_draft.attributes, node, *node.Find("ref"), &use.pAttribute);
    }
    else
    {
        SAttribute& attribute = m_set.attributes.emplace_back();
        attribute.position = use.position;
        attribute.documentation = use.documentation;
        attribute.name = {GetLocalNamespace(node, "attributeFormDefault"), std::string(Trim(*node.Find("name")))};
        use.pAttribute = &attribute;
        BuildAttributeType(node, attribute);
    }
    draft.items.push_back({&use, nullptr});
}

void CBuilder::BuildAttributeType(const SNode& node, SAttribute& attribute)
{
    if (attribute.name.strLocal == s_builtInAttributes)
        AddError(node, "no attribute can be named 'xmlns'");
    const SFile& file = m_set.files[static_cast<std::size_t>(m_document.nFile)];
    if (attribute.name.strNamespace == s_svXsiNamespace && !file.bBuiltIn)
        AddError(node, "no attribute can be declared in the namespace '" + std::string(s_svXsiNamespace) + "'");
    const SNode* pInner = FindChild(node, "simpleType");
    const std::string* pName = node.Find("type");
    if (pName && pInner)
        AddError(node,
                 "the attribute '" + attribute.name.strLocal + "' has both a type attribute and a type of its own");
    if (pInner)
    {
        attribute.pType = BuildSimpleType(*pInner);
        attribute.pType->pOwnerAttribute = &attribute;
    }
    else if (pName)
        Refer(m_draft.simpleTypes, node, *pName, &attribute.pType);
    else
        attribute.pType = &m_set.GetBuiltinSimple(EBuiltin::AnySimpleType);
}

// --- Pieces ---------------------------------------------------------------------------------------------------------

void CBuilder::Start(const SNode& node, SComponent& component)
{
    component.position = m_document.GetPosition(node);
    for (const SNode* pAnnotation : node.children)
        if (pAnnotation->Is("annotation"))
            for (const SNode* pChild : pAnnotation->children)
                if (pChild->Is("documentation"))
                    component.documentation.push_back({pChild->strLang, pChild->strText});
}

void CBuilder::AddError(const SNode& node, std::string strText)
{
    m_diagnostics.AddError(m_document.GetPosition(node), std::move(strText));
}

SQName CBuilder::MakeGlobalName(const SNode& node) const
{
    const std::string* pName = node.Find("name");
    return {m_document.strTargetNamespace, pName ? std::string(Trim(*pName)) : std::string()};
}

std::string CBuilder::GetLocalNamespace(const SNode& node, std::string_view svDefault) const
{
    const std::string* pForm = node.Find("form");
    if (!pForm)
        pForm = m_document.pRoot->Find(svDefault);
    return pForm && Trim(*pForm) == "qualified" ? m_document.strTargetNamespace : std::string();
}

bool CBuilder::ReadBoolean(const SNode& node, std::string_view svName) const
{
    const std::string* pValue = node.Find(svName);
    if (!pValue)
        return false;
    const std::string_view svValue = Trim(*pValue);
    return svValue == "true" || svValue == "1";
}

/// @param svDefault attribute of the schema that counts where the own one is not written, as far as it fits.
unsigned CBuilder::ReadBits(const SNode& node, std::string_view svName, std::string_view svDefault, unsigned nAllowed)
{
    const std::string* pValue = node.Find(svName);
    if (!pValue)
    {
        pValue = m_document.pRoot->Find(svDefault);
        return pValue ? ParseBits(*pValue) & nAllowed : Derivation_None;
    }
    const unsigned nBits = ParseBits(*pValue);
    if (Trim(*pValue) != "#all" && (nBits & ~nAllowed) != 0)
        AddError(node, "the attribute '" + std::string(svName) + "' is '" + *pValue + "', which has no meaning here");
    return nBits & nAllowed;
}

std::optional<SValueConstraint> CBuilder::ReadValue(const SNode& node)
{
    const std::string* pDefault = node.Find("default");
    const std::string* pFixed = node.Find("fixed");
    if (pDefault && pFixed)
        AddError(node, "'default' and 'fixed' exclude each other");
    if (!pDefault && !pFixed)
        return std::nullopt;
    return SValueConstraint{pFixed != nullptr, pFixed ? *pFixed : *pDefault, node.pScope};
}

void CBuilder::Forbid(const SNode& node, std::string_view svReason, std::initializer_list<std::string_view> attributes,
                      std::initializer_list<std::string_view> children)
{
    for (const std::string_view svName : attributes)
        if (node.Find(svName))
            AddError(node, std::string(svReason) + " has no attribute '" + std::string(svName) + "'");
    for (const std::string_view svName : children)
        if (const SNode* pChild = FindChild(node, svName))
            AddError(*pChild, std::string(svReason) + " has no child '" + std::string(svName) + "'");
}

bool CBuilder::ReadNameOrReference(const SNode& node, bool& bReference)
{
    bReference = node.Find("ref") != nullptr;
    const bool bName = node.Find("name") != nullptr;
    if (bReference && bName)
        AddError(node, "'name' and 'ref' exclude each other");
    else if (!bReference && !bName)
        AddError(node, "'" + node.strLocal + "' needs the attribute 'name' or 'ref'");
    return bReference != bName;
}

std::optional<SQName> CBuilder::ReadQName(const SNode& node, std::string_view svText)
{
    svText = Trim(svText);
    const std::size_t nColon = svText.find(':');
    const std::string_view svPrefix = nColon == std::string_view::npos ? std::string_view() : svText.substr(0, nColon);
    const std::string* pNamespace = node.pScope->Find(svPrefix);
    if (!pNamespace && !svPrefix.empty())
    {
        AddError(node, "the prefix of '" + std::string(svText) + "' is not declared");
        return std::nullopt;
    }
    SQName name{pNamespace ? *pNamespace : std::string(),
                std::string(nColon == std::string_view::npos ? svText : svText.substr(nColon + 1))};
    const std::string& strTarget = m_document.strTargetNamespace;
    if (name.strNamespace.empty() && m_document.bChameleon)
        name.strNamespace = strTarget;
    const bool bReachable = name.strNamespace == strTarget || name.strNamespace == s_svXsdNamespace ||
                            name.strNamespace == s_svXmlNamespace || name.strNamespace == s_svXsiNamespace ||
                            m_document.imports.count(name.strNamespace) > 0;
    if (bReachable)
        return name;
    AddError(node, name.strNamespace.empty()
                       ? "'" + std::string(svText) + "' is in no namespace, and this document has no import without one"
                       : "the namespace '" + name.strNamespace + "' of '" + std::string(svText) +
                             "' is not imported in this document");
    return std::nullopt;
}

template <typename TTarget>
SPointerReference<TTarget>* CBuilder::Refer(std::vector<SPointerReference<TTarget>>& references, const SNode& node,
                                            std::string_view svText, TTarget** ppTarget)
{
    std::optional<SQName> name = ReadQName(node, svText);
    if (!name)
        return nullptr;
    SPointerReference<TTarget>& reference = references.emplace_back();
    reference.name = std::move(*name);
    reference.position = m_document.GetPosition(node);
    reference.nDocument = m_nDocument;
    reference.ppTarget = ppTarget;
    return &reference;
}

template SPointerReference<SType>* CBuilder::Refer(std::vector<SPointerReference<SType>>&, const SNode&,
                                                   std::string_view, SType**);
template SPointerReference<SSimpleType>* CBuilder::Refer(std::vector<SPointerReference<SSimpleType>>&, const SNode&,
                                                         std::string_view, SSimpleType**);

} // namespace quiver_gen::schema
