#pragma once

#include "tools/quiver-gen/binding/Content.h"
#include "tools/quiver-gen/binding/MemberNames.h"
#include "tools/quiver-gen/binding/SimpleTypes.h"

#include <deque>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quiver_gen::binding
{

/// What the steps of a binding share.
struct SBuild
{
    SBuild(const schema::SSchemaSet& schemaSet, const SBindingOptions& bindingOptions, SBinding& target,
           schema::CDiagnostics& messages);

    const schema::SSchemaSet& set;
    const SBindingOptions& options;
    SBinding& binding;
    schema::CDiagnostics& diagnostics;
    CWarnings warnings;
    CSubstitutes substitutes;
    CReach reach;
    CNamespaces namespaces;
    CRenames renames;
    CTypeNames typeNames;
    CSimpleTypes simpleTypes;
    CSimplifier simplifier;
};

/// Classes for complex types and for the groups inside them.
class CClasses
{
public:
    explicit CClasses(SBuild& build);

    /// Those complex types that get a class, of the types that are needed.
    std::vector<const schema::SComplexType*> Select() const;

    /// Makes the classes, once the names of types are chosen.
    /// @throws CContentTooLarge
    void Build(const std::vector<const schema::SComplexType*>& types);

    /// Names what may stand where a class is declared, by xsi:type and in substitution groups.
    void AddAlternatives();

    /// Marks the classes of elements that may be nil.
    void MarkNillable();

    /// The class of a type: its own, or that of the base to which it adds nothing. That of xs:anyType is made when it
    /// is first asked for.
    SClass& Get(const schema::SComplexType& type);
    SClass& GetAnyType(SNamespace& item);

    /// Whether nobody warned of a component before.
    bool IsFirstWarning(const schema::SComponent& component) { return m_warned.insert(&component).second; }

private:
    /// A class in the making.
    struct SDraft
    {
        const schema::SComplexType* pType = nullptr; ///< null for a nested group
        SClass* pClass = nullptr;
        SNode content;
        CMemberNames names;
        schema::SQName ruleName; ///< what rules call the type, also in its groups
        bool bFilled = false;
    };

    /// What the members of a restricted class take the places of.
    struct SCounterparts
    {
        std::vector<const SMember*> members;
        std::vector<bool> used;
    };

    /// How a type follows from the class that it has as its base.
    struct SDerivation
    {
        const schema::SComplexType* pBase = nullptr; ///< the type of that class, null for none
        bool bRestriction = false;
        std::vector<const schema::SParticle*> added; ///< content, of an extension only what it adds
    };

    SBuild& m_build;
    std::deque<SDraft> m_drafts;
    std::unordered_map<const schema::SComplexType*, SDraft*> m_byType;
    std::unordered_map<const SClass*, SDraft*> m_byClass;
    std::unordered_map<const schema::SGroupDefinition*, std::vector<SDraft*>> m_byDefinition;
    std::unordered_map<const schema::SElement*, SDraft*> m_byHead;
    std::unordered_map<const schema::SType*, const schema::SElement*> m_elementsOfTypes;
    std::unordered_map<const SNamespace*, SClass*> m_anyTypes;
    /// Classes whose content must be a sequence, as another class adds to it.
    std::unordered_set<const schema::SComplexType*> m_sequences;
    std::unordered_set<const schema::SComponent*> m_warned;
    std::unordered_map<const schema::SComplexType*, std::vector<const schema::SComplexType*>> m_alternatives;
    std::vector<const schema::SElement*> m_heads;             ///< those whose substitutes their class knows
    std::unordered_set<const schema::SElement*> m_classHeads; ///< the same

    // Types
    SDraft& Declare(const schema::SComplexType& type, const std::string& strStem, SNamespace& item);
    SDerivation GetDerivation(const schema::SComplexType& type) const;
    void FindElementsOfTypes();
    void FindSequences(const std::vector<const schema::SComplexType*>& types);
    void Fill(SDraft& draft);
    void FillText(SDraft& draft, const SDerivation& derivation);
    void FillContent(SDraft& draft, const SDerivation& derivation);
    SClass::EGroup ChooseGroup(const SDraft& draft, const SDerivation& derivation) const;
    void ExpandHeads();
    const std::vector<const schema::SComplexType*>& GetAlternatives(const schema::SComplexType& type);

    // Members
    void AddMembers(SDraft& draft, const SNode& group, SCounterparts* pCounterparts);
    SMember MakeMemberOf(SDraft& draft, const SNode& node, SCounterparts* pCounterparts);
    SMember MakeMember(const SNode& node);
    void SetOccurrence(SMember& member, const SNode& node, bool bInChoice);
    void SetElement(SMember& member, const schema::SElement& element, const SNode& node);
    void SetType(SMember& member, const schema::SElement& element);
    void SetPolymorphic(SMember& member, const schema::SElement& element, const schema::SComplexType& type);
    void SetWildcard(SMember& member, const schema::SWildcard& wildcard);
    std::string GetWantedName(const SNode& node) const;
    std::string ChooseMemberName(SDraft& draft, const SNode& node);
    SClass& GetGroupClass(SDraft& owner, const SNode& node, const std::string& strMember, const SMember* pCounterpart);
    SDraft* FindSharedGroup(const SNode& node);
    SDraft& MakeGroupClass(SDraft& owner, const SNode& node, const std::string& strMember, const SMember* pCounterpart);

    // Restrictions
    SCounterparts GetCounterparts(const SClass& base) const;
    const SMember* TakeCounterpart(SCounterparts& counterparts, const SMember& member, const SNode& node);
    bool IsCounterpart(const SMember& base, const SMember& member) const;
    void Inherit(SMember& member, const SMember& base, const schema::SElement* pElement, SNamespace& item);
    static bool IsDerived(const SClass* pClass, const SClass& base);

    // Attributes
    void FillAttributes(SDraft& draft, const SDerivation& derivation);
    void AddAttribute(SDraft& draft, const schema::SAttributeUse& use, bool bRestriction);
    void FillAnyAttribute(SDraft& draft, const SDerivation& derivation);
    const SAttribute* FindAttribute(const SClass* pBase, const SAttribute& attribute) const;

    static SMember::ENamespaces ConvertNamespaces(const schema::SWildcard& wildcard);
    static SMember::EProcess ConvertProcessOf(const schema::SWildcard& wildcard);
    SMember::EProcess ConvertProcess(const schema::SWildcard& wildcard) const;
    void WarnOfId(const schema::SSimpleType& type, const schema::SComponent& place);
};

} // namespace quiver_gen::binding
