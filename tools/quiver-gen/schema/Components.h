#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// @file
/// The components of a set of schemas: what LoadSchemas makes and every later step reads.
///
/// All texts are UTF-8. Everything is owned by the SSchemaSet, at addresses that never change, and points to what it
/// refers to; a set that was loaded without an error holds no unresolved reference. Lists are in the order of
/// declaration: files as they were loaded, and in each file from top to bottom.
///
/// No walk goes deeper than s_nMaxDepth in any one of: nested particles (through references to groups), steps of
/// derivation, item and member types, heads of substitution groups. Only an element that leads to its type may come
/// back to where it was. Recursion along the former is therefore safe.

namespace quiver_gen::schema
{

/// How deep elements of a schema document, particles, derivations, member types and substitution groups may nest. Real
/// schemas stay below 40; the limit keeps a hostile one from the end of the stack.
constexpr std::size_t s_nMaxDepth = 500;

constexpr std::string_view s_svXsdNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr std::string_view s_svXsiNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view s_svXmlNamespace = "http://www.w3.org/XML/1998/namespace";

/// A name with its namespace, which is empty for none.
struct SQName
{
    std::string strNamespace;
    std::string strLocal;

    bool IsEmpty() const { return strLocal.empty(); }
    /// `{namespace}local`, or `local` without a namespace.
    std::string ToString() const;

    friend bool operator==(const SQName& a, const SQName& b)
    {
        return a.strLocal == b.strLocal && a.strNamespace == b.strNamespace;
    }
    friend bool operator!=(const SQName& a, const SQName& b) { return !(a == b); }
    friend bool operator<(const SQName& a, const SQName& b)
    {
        return a.strNamespace != b.strNamespace ? a.strNamespace < b.strNamespace : a.strLocal < b.strLocal;
    }
};

struct SQNameHash
{
    std::size_t operator()(const SQName& name) const
    {
        return std::hash<std::string>()(name.strLocal) * 31 + std::hash<std::string>()(name.strNamespace);
    }
};

/// Where something is written: index into SSchemaSet::files, line and column from 1. nFile is -1 for what no file
/// holds, such as the built-in types.
struct SPosition
{
    int nFile = -1;
    int nLine = 0;
    int nColumn = 0;

    friend bool operator<(const SPosition& a, const SPosition& b)
    {
        if (a.nFile != b.nFile)
            return a.nFile < b.nFile;
        return a.nLine != b.nLine ? a.nLine < b.nLine : a.nColumn < b.nColumn;
    }
};

/// One xs:documentation: its text as written, tags inside it left out.
struct SDocumentation
{
    std::string strLang; ///< the xml:lang in force there, empty for none
    std::string strText;
};

/// Namespace prefixes in force at a place of a schema, for QNames in values and for XPaths.
struct SNamespaceScope
{
    const SNamespaceScope* pOuter = nullptr;
    std::vector<std::pair<std::string, std::string>> declarations; ///< prefix and namespace, ordered by prefix

    /// Namespace of a prefix, where the empty prefix asks for the default namespace.
    /// @return null if the prefix is not declared; an undeclared default namespace is an empty text.
    const std::string* Find(std::string_view svPrefix) const;
};

/// What all components have.
struct SComponent
{
    SPosition position;
    std::vector<SDocumentation> documentation;
};

// --- Types ----------------------------------------------------------------------------------------------------------

/// The types that every schema knows.
enum class EBuiltin
{
    None, ///< a type of a schema
    AnyType,
    AnySimpleType,
    // the primitive ones
    String,
    Boolean,
    Decimal,
    Float,
    Double,
    Duration,
    DateTime,
    Time,
    Date,
    GYearMonth,
    GYear,
    GMonthDay,
    GDay,
    GMonth,
    HexBinary,
    Base64Binary,
    AnyURI,
    QName,
    NOTATION,
    // derived from string
    NormalizedString,
    Token,
    Language,
    NMTOKEN,
    NMTOKENS,
    Name,
    NCName,
    ID,
    IDREF,
    IDREFS,
    ENTITY,
    ENTITIES,
    // derived from decimal
    Integer,
    NonPositiveInteger,
    NegativeInteger,
    Long,
    Int,
    Short,
    Byte,
    NonNegativeInteger,
    UnsignedLong,
    UnsignedInt,
    UnsignedShort,
    UnsignedByte,
    PositiveInteger
};
constexpr std::size_t s_nBuiltins = static_cast<std::size_t>(EBuiltin::PositiveInteger) + 1;

/// Name of a built-in type in the schema namespace, empty for None.
std::string_view GetBuiltinName(EBuiltin eBuiltin);

/// Ways of derivation and of substitution, as bits of `block` and `final`.
enum EDerivationBits : unsigned
{
    Derivation_None = 0,
    Derivation_Extension = 1,
    Derivation_Restriction = 2,
    Derivation_Substitution = 4,
    Derivation_List = 8,
    Derivation_Union = 16
};

struct SSimpleType;
struct SComplexType;
struct SElement;
struct SAttribute;
struct SAttributeGroup;
struct SGroupDefinition;
struct SModelGroup;
struct SIdentityConstraint;

/// What simple and complex types have in common.
struct SType : SComponent
{
    bool bSimple = false;               ///< which of SSimpleType and SComplexType this is
    EBuiltin eBuiltin = EBuiltin::None; ///< set for the built-in type itself only
    SQName name;                        ///< an anonymous type has the namespace of its document and no local name
    SType* pBase = nullptr;             ///< null for anyType only
    unsigned nFinal = Derivation_None;  ///< bits of EDerivationBits
    SType* pRedefines = nullptr; ///< the definition that this one replaced by xs:redefine; it is the base as well
    bool bRedefined = false;     ///< replaced by xs:redefine: no longer found by its name

    // Of an anonymous type, exactly one says where it is written.
    SElement* pOwnerElement = nullptr;
    SAttribute* pOwnerAttribute = nullptr;
    SType* pOwnerType = nullptr; ///< item, member or base of a simple type, or simple content of a complex one

    bool IsAnonymous() const { return name.strLocal.empty(); }
    const SSimpleType* AsSimple() const;
    const SComplexType* AsComplex() const;
    SSimpleType* AsSimple();
    SComplexType* AsComplex();

protected:
    explicit SType(bool bIsSimple)
        : bSimple(bIsSimple)
    {
    }
};

enum class EFacet
{
    Length,
    MinLength,
    MaxLength,
    WhiteSpace,
    MinInclusive,
    MinExclusive,
    MaxInclusive,
    MaxExclusive,
    TotalDigits,
    FractionDigits
};
constexpr std::size_t s_nFacets = static_cast<std::size_t>(EFacet::FractionDigits) + 1;

/// Name of a facet's element: `minLength`.
std::string_view GetFacetName(EFacet eFacet);

/// A facet other than a pattern or an enumeration.
struct SFacet : SComponent
{
    EFacet eFacet = EFacet::Length;
    std::string strValue;     ///< as written, outer white space removed
    std::uint64_t nValue = 0; ///< of lengths and digits; what is above 2^64-1 is kept to that
    bool bFixed = false;
};

struct SPattern : SComponent
{
    std::string strValue; ///< as written
};

struct SEnumeration : SComponent
{
    std::string strValue;                    ///< as written
    const SNamespaceScope* pScope = nullptr; ///< prefixes, for values that are QNames
};

enum class EVariety
{
    Atomic,
    List,
    Union
};

enum class EWhiteSpace
{
    Preserve,
    Replace,
    Collapse
};

/// A simple type, with the facets of its own step of derivation only; GetEffectiveFacets gathers those of all steps.
struct SSimpleType : SType
{
    SSimpleType()
        : SType(true)
    {
    }

    EVariety eVariety = EVariety::Atomic;
    /// Of an atomic type, the built-in type that is nearest above it, or itself: `Int` for a restriction of xs:int. Of
    /// a list or union AnySimpleType.
    EBuiltin eNearestBuiltin = EBuiltin::AnySimpleType;
    /// Of an atomic type, the primitive type below: `Decimal` for a restriction of xs:int. Otherwise AnySimpleType.
    EBuiltin ePrimitive = EBuiltin::AnySimpleType;
    SSimpleType* pItem = nullptr;      ///< of a list: the type of its items, handed down by restriction
    std::vector<SSimpleType*> members; ///< of a union: its member types in order, handed down by restriction

    std::vector<SFacet> facets;     ///< each kind once
    std::vector<SPattern> patterns; ///< one of them must match
    std::vector<SEnumeration> enumerations;

    const SFacet* FindOwnFacet(EFacet eFacet) const;
};

/// The facets of a simple type over all steps of its derivation.
struct SEffectiveFacets
{
    /// By EFacet: what is in force, null for none. A bound replaces the other bound of its side that an earlier step
    /// gave.
    std::array<const SFacet*, s_nFacets> facets{};
    /// Steps with patterns, from the base to the derived: of each step, one must match.
    std::vector<const std::vector<SPattern>*> patterns;
    /// The enumeration of the last step that has one, null for none.
    const std::vector<SEnumeration>* pEnumerations = nullptr;
    EWhiteSpace eWhiteSpace = EWhiteSpace::Collapse;

    const SFacet* Find(EFacet eFacet) const { return facets[static_cast<std::size_t>(eFacet)]; }
};

SEffectiveFacets GetEffectiveFacets(const SSimpleType& type);

/// What a wildcard lets through.
struct SWildcard : SComponent
{
    enum class ENamespaces
    {
        Any,
        Not, ///< all but those listed; ##other lists the target namespace and none
        List
    };
    enum class EProcess
    {
        Strict,
        Lax,
        Skip
    };

    ENamespaces eNamespaces = ENamespaces::Any;
    std::vector<std::string> namespaces; ///< of Not and List; the empty text stands for no namespace
    EProcess eProcess = EProcess::Strict;

    bool Allows(const std::string& strNamespace) const;
};

/// Default or fixed value of an element or attribute, as written.
struct SValueConstraint
{
    bool bFixed = false;
    std::string strValue;
    const SNamespaceScope* pScope = nullptr; ///< prefixes, for values that are QNames
};

/// Declaration of an attribute, global or local.
struct SAttribute : SComponent
{
    SQName name;
    bool bGlobal = false;
    SSimpleType* pType = nullptr;
    std::optional<SValueConstraint> value;
};

/// An attribute as it occurs in a type or attribute group.
struct SAttributeUse : SComponent
{
    enum class EUse
    {
        Optional,
        Required,
        Prohibited
    };

    EUse eUse = EUse::Optional;
    SAttribute* pAttribute = nullptr;
    bool bReference = false;               ///< written with `ref`: pAttribute is a global one
    std::optional<SValueConstraint> value; ///< what is written at the use itself
    SAttributeGroup* pGroup = nullptr;     ///< the attribute group whose definition holds this use, null for none

    const SQName& GetName() const { return pAttribute->name; }
    /// The value in force: that of the use, else that of the declaration; null for none.
    const SValueConstraint* GetValue() const;
};

/// Definition of an attribute group.
struct SAttributeGroup : SComponent
{
    SQName name;
    SAttributeGroup* pRedefines = nullptr;
    bool bRedefined = false;

    std::vector<SAttributeUse*> ownAttributes; ///< as written, without those of the groups referred to
    std::vector<SAttributeGroup*> groups;      ///< groups referred to, in order
    SWildcard* pOwnWildcard = nullptr;         ///< as written
    std::vector<SAttributeUse*> attributes; ///< in the order written, those of the groups in the place of the reference
    SWildcard* pWildcard = nullptr;         ///< intersection of the own one and those of the groups
};

enum class EContent
{
    Empty,       ///< neither elements nor text
    Simple,      ///< text of pSimpleContent
    ElementOnly, ///< elements of pContent
    Mixed        ///< elements of pContent, if there are any, and text between them
};

struct SParticle;

/// A complex type. What its step of derivation writes is in the own... members, what is in force in the others.
struct SComplexType : SType
{
    SComplexType()
        : SType(false)
    {
    }

    bool bAbstract = false;
    bool bExtension = false;           ///< derived by extension; otherwise by restriction, also where nothing is said
    bool bImplicit = false;            ///< written without simpleContent or complexContent: a restriction of anyType
    unsigned nBlock = Derivation_None; ///< bits of EDerivationBits

    EContent eContent = EContent::Empty;
    SSimpleType* pSimpleContent =
        nullptr; ///< Simple: the type of the text, with the facets of a restriction in a type made for it

    /// What this step writes; null where that is empty.
    SParticle* pOwnParticle = nullptr;
    /// What is in force; null where there are no elements. Of an extension: the base's content, the own particle, or a
    /// sequence made for both, in this order.
    SParticle* pContent = nullptr;

    std::vector<SAttributeUse*> ownAttributes;     ///< with those of attribute groups in the place of the reference
    std::vector<SAttributeGroup*> attributeGroups; ///< groups referred to by this step, in order
    SWildcard* pOwnWildcard = nullptr;             ///< intersection of what this step writes and its groups
    /// What is in force, those of the base first; none is prohibited. A restriction's use stands in the place of the
    /// base's.
    std::vector<SAttributeUse*> attributes;
    SWildcard* pWildcard = nullptr; ///< in force; of an extension the union with the base's

    bool IsMixed() const { return eContent == EContent::Mixed; }
    /// The base if it is a complex type, else null.
    const SComplexType* GetComplexBase() const;
};

// --- Particles ------------------------------------------------------------------------------------------------------

constexpr std::int64_t s_nUnbounded = -1;

enum class ETerm
{
    Element,
    Group,          ///< sequence, choice or all, written here
    GroupReference, ///< xs:group with `ref`
    Wildcard
};

/// A term with how often it occurs. One with maxOccurs 0 is not kept.
struct SParticle : SComponent
{
    std::int64_t nMin = 1;
    std::int64_t nMax = 1; ///< s_nUnbounded for unbounded
    ETerm eTerm = ETerm::Element;

    SElement* pElement = nullptr;
    bool bReference = false;                 ///< Element: written with `ref`, pElement is a global one
    SModelGroup* pGroup = nullptr;           ///< Group, and GroupReference: that of the definition
    SGroupDefinition* pDefinition = nullptr; ///< GroupReference
    SWildcard* pWildcard = nullptr;

    bool IsUnbounded() const { return nMax == s_nUnbounded; }
    bool IsRepeated() const { return nMax == s_nUnbounded || nMax > 1; }
};

enum class ECompositor
{
    Sequence,
    Choice,
    All
};

struct SModelGroup : SComponent
{
    ECompositor eCompositor = ECompositor::Sequence;
    std::vector<SParticle*> particles;
};

/// Definition of a named model group.
struct SGroupDefinition : SComponent
{
    SQName name;
    SModelGroup* pGroup = nullptr; ///< never null in a set without errors
    SGroupDefinition* pRedefines = nullptr;
    bool bRedefined = false;
};

/// Whether what a particle stands for may be absent.
bool IsEmptiable(const SParticle& particle);

/// Declaration of an element, global or local.
struct SElement : SComponent
{
    SQName name;
    bool bGlobal = false;
    SType* pType = nullptr;
    bool bNillable = false;
    bool bAbstract = false;
    std::optional<SValueConstraint> value;
    unsigned nBlock = Derivation_None;
    unsigned nFinal = Derivation_None;
    SElement* pHead = nullptr;      ///< head of the substitution group this belongs to
    std::vector<SElement*> members; ///< those that name this one as their head, in order of declaration
    std::vector<SIdentityConstraint*> constraints;

    // Where a local element is written: in a complex type, or in the definition of a group.
    SComplexType* pOwnerType = nullptr;
    SGroupDefinition* pOwnerGroup = nullptr;
};

/// All that name an element as their head, at any distance, in order of declaration; without the element itself.
std::vector<SElement*> GetSubstitutionMembers(const SElement& element);

/// What may stand in a document where an element is referred to: itself first, and the members of its substitution
/// group that its block lets through, none of them abstract.
std::vector<SElement*> GetSubstitutes(const SElement& element);

/// Whether a type is another one or derived from it, by any steps but those named.
/// @param nBlocked bits of EDerivationBits.
bool IsDerivedFrom(const SType& type, const SType& base, unsigned nBlocked = Derivation_None);

/// An XPath of an identity constraint.
struct SXPath : SComponent
{
    std::string strText;
    const SNamespaceScope* pScope = nullptr;
};

struct SIdentityConstraint : SComponent
{
    enum class EKind
    {
        Unique,
        Key,
        KeyRef
    };

    EKind eKind = EKind::Unique;
    SQName name;
    SXPath selector;
    std::vector<SXPath> fields;
    SIdentityConstraint* pRefer = nullptr; ///< KeyRef: the key or unique constraint referred to
    SElement* pElement = nullptr;          ///< the element that declares it
};

struct SNotation : SComponent
{
    SQName name;
    std::string strPublic;
    std::string strSystem;
};

// --- The set --------------------------------------------------------------------------------------------------------

/// A schema document. One without a target namespace that several namespaces include is there once for each.
struct SFile
{
    std::string strPath; ///< as given, or as the schemaLocation leads to from there; for messages
    std::string strTargetNamespace;
    bool bChameleon = false;                   ///< takes its target namespace from the document that includes it
    bool bBuiltIn = false;                     ///< part of the program, not a file of the disk
    bool bCatalog = false;                     ///< not a schema, but a catalog that was asked for places
    bool bGiven = false;                       ///< named by the caller, not found by following references
    std::vector<SDocumentation> documentation; ///< of annotations of the schema itself
};

/// The global components of a target namespace, each list in order of declaration, with what is found by name.
struct SNamespace
{
    template <typename TComponent>
    struct STable
    {
        std::vector<TComponent*> list;
        std::unordered_map<std::string, TComponent*> byName;

        TComponent* Find(const std::string& strLocal) const
        {
            const auto it = byName.find(strLocal);
            return it == byName.end() ? nullptr : it->second;
        }
    };

    std::string strUri;
    STable<SType> types;
    STable<SElement> elements;
    STable<SAttribute> attributes;
    STable<SGroupDefinition> groups;
    STable<SAttributeGroup> attributeGroups;
    STable<SNotation> notations;
    STable<SIdentityConstraint> constraints;
};

/// Everything of the schemas that were loaded together.
struct SSchemaSet
{
    SSchemaSet();
    SSchemaSet(const SSchemaSet&) = delete;
    SSchemaSet& operator=(const SSchemaSet&) = delete;

    std::vector<SFile> files; ///< in order of loading

    /// Target namespaces in the order of the files; the schema namespace itself and its types are not listed.
    std::deque<SNamespace> namespaces;

    // All components of their kind, local and anonymous ones too, in order of declaration within a file.
    std::deque<SSimpleType> simpleTypes;
    std::deque<SComplexType> complexTypes;
    std::deque<SElement> elements;
    std::deque<SAttribute> attributes;
    std::deque<SAttributeUse> attributeUses;
    std::deque<SAttributeGroup> attributeGroups;
    std::deque<SParticle> particles;
    std::deque<SModelGroup> modelGroups;
    std::deque<SGroupDefinition> groups;
    std::deque<SWildcard> wildcards;
    std::deque<SIdentityConstraint> constraints;
    std::deque<SNotation> notations;
    std::deque<SNamespaceScope> scopes;

    /// A built-in type; AnyType is a complex type, all others are simple ones.
    SType& GetBuiltin(EBuiltin eBuiltin) { return *m_builtins[static_cast<std::size_t>(eBuiltin)]; }
    const SType& GetBuiltin(EBuiltin eBuiltin) const { return *m_builtins[static_cast<std::size_t>(eBuiltin)]; }
    SSimpleType& GetBuiltinSimple(EBuiltin eBuiltin) { return *GetBuiltin(eBuiltin).AsSimple(); }

    // Global components by name, null if there is none. FindType knows the built-in types too.
    SType* FindType(const SQName& name) const;
    SElement* FindElement(const SQName& name) const;
    SAttribute* FindAttribute(const SQName& name) const;
    SNamespace* FindNamespace(const std::string& strUri) const;

    /// The namespace, added to the list if it is new.
    SNamespace& GetNamespace(const std::string& strUri);

    /// `file:line:column` for messages.
    std::string Describe(const SPosition& position) const;

private:
    std::deque<SSimpleType> m_builtinSimpleTypes;
    SComplexType m_anyType;
    SParticle m_anyParticle;
    SParticle m_anyContent;
    SModelGroup m_anyGroup;
    SWildcard m_anyWildcard;
    std::array<SType*, s_nBuiltins> m_builtins{};
    std::unordered_map<std::string, SType*> m_builtinsByName;
    std::unordered_map<std::string, SNamespace*> m_namespacesByUri;

    void MakeAnyType();
    void MakeBuiltins();
};

} // namespace quiver_gen::schema
