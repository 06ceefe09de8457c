#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/// @file
/// What is generated, before it is text: the classes and simple types that a set of schemas becomes, with the names and
/// the members that they have in C++, and with everything that their tables of metadata say. The room behind this one
/// prints it and asks the schema nothing more.
///
/// All texts are UTF-8. Everything is owned by the SBinding at addresses that never change. Lists are in the order in
/// which they are printed.

namespace quiver_gen::binding
{

/// Where in a schema something comes from, as messages and dumps name it: `file:line:column`.
using SSource = std::string;

/// Documentation, a paragraph an entry, in the languages asked for.
using SDocumentation = std::vector<std::string>;

struct SClass;
struct SNamespace;
struct SSimpleType;

/// How a value is held in C++.
enum class EValue
{
    String,      ///< std::wstring
    Boolean,     ///< bool
    I1,          ///< signed char
    I2,          ///< short
    I4,          ///< int
    I8,          ///< long long
    UI1,         ///< unsigned char
    UI2,         ///< unsigned short
    UI4,         ///< unsigned int
    UI8,         ///< unsigned long long
    R4,          ///< float
    R8,          ///< double
    Decimal,     ///< CDecimal
    Integer,     ///< CBigInteger
    DateTime,    ///< CDateTime: all eight kinds of date and time
    Duration,    ///< CDateTimeSpan
    Binary,      ///< CBinaryData: hexBinary and base64Binary
    Enumeration, ///< an enum class of its own
    List         ///< std::vector of the item's value
};

/// One value of an enumeration.
struct SEnumerator
{
    std::string strText; ///< as it stands in documents
    std::string strName; ///< in C++; empty where the type is held as a value of another kind
    SDocumentation documentation;
};

/// A simple type with the facets of all its steps of derivation. A built-in type is one of these too.
struct SSimpleType
{
    std::string strName; ///< of the struct in C++ that stands for it, such as `SSku`; `xs::Int` for a built-in one
    SNamespace* pNamespace = nullptr; ///< null for a built-in type
    std::string strUri;               ///< namespace and name in the schema; no name if it is anonymous
    std::string strSchemaName;
    EValue eValue = EValue::String;
    /// Of an atomic type, the built-in type that decides the lexical form: `xs::Token`. Empty for lists and unions.
    std::string strBuiltin;
    bool bBuiltin = false; ///< nothing is printed for it; strName is the name in C++
    SSimpleType* pBase =
        nullptr; ///< of the nearest type with the same value that is printed or built in; null for lists and unions
    SSimpleType* pItem = nullptr;          ///< of a list
    std::vector<SSimpleType*> memberTypes; ///< of a union, in the order in which they are tried
    std::string strEnumName;               ///< `EColour`, if eValue is Enumeration
    std::vector<SEnumerator> enumerators;  ///< the values of the enumeration facet, empty for none

    // Facets. Texts are empty and numbers -1 for none.
    std::string strPattern; ///< all patterns in the syntax of CPrimitiveRestrictions, for the whole value
    std::int64_t nLength = -1;
    std::int64_t nMinLength = -1;
    std::int64_t nMaxLength = -1;
    std::int64_t nTotalDigits = -1;
    std::int64_t nFractionDigits = -1;
    std::string strMinInclusive;
    std::string strMaxInclusive;
    std::string strMinExclusive;
    std::string strMaxExclusive;
    enum class EWhiteSpace
    {
        Inherited,
        Preserve,
        Replace,
        Collapse
    } eWhiteSpace = EWhiteSpace::Inherited; ///< where it differs from the built-in type's

    SDocumentation documentation;
    SSource source;
};

/// What a member of a class holds.
enum class EMember
{
    Value,         ///< a simple value
    NillableValue, ///< a simple value whose element may be nil
    TypedValue,    ///< a simple value of any type, which its element may say; a nillable one is a NillableValue
    Object,        ///< an object with an element of its own
    Group,         ///< an object without one: a nested group
    Wildcard       ///< an open element: xs:any, or an element of type xs:anyType
};

/// How often a member may stand. In a choice only Optional and Repeated occur: that one must stand is the choice's to
/// say.
enum class ECardinality
{
    Required,
    Optional,
    Repeated
};

/// A default or fixed value.
struct SValueRule
{
    enum class EKind
    {
        None,
        Default,
        Fixed
    } eKind = EKind::None;
    std::string strText;
};

/// A child element, a nested group or a wildcard.
struct SMember
{
    EMember eMember = EMember::Value;
    ECardinality eCardinality = ECardinality::Required;
    std::int64_t nMin = 1; ///< of a repeated one
    std::int64_t nMax = 1; ///< of a repeated one; -1 for unbounded
    std::string strName;   ///< in C++: `ShipTo` gives GetShipTo, SetShipTo and m_ShipTo
    /// Local name in documents. Of a group, the elements it begins with, for messages: `b or c`. Of a wildcard, the
    /// only name that it takes, empty for every name.
    std::string strElement;
    std::string strUri; ///< its namespace, empty for none

    SSimpleType* pType = nullptr; ///< of a value
    SClass* pClass = nullptr;     ///< of an object or group
    /// The class of the object is decided by the element found: by its name in a substitution group, or by xsi:type.
    /// pClass has a table of what may stand there.
    bool bPolymorphic = false;
    /// The head of a substitution group: what may stand there are the alternatives of pClass that name an element, and
    /// only those; strElement itself is one of them unless it is abstract. Without this flag they are of no account:
    /// the element is called strElement, and the alternatives that name a type tell what xsi:type may say.
    bool bSubstitution = false;
    bool bContentRequired = true; ///< of a group that is not repeated: false if it may be empty

    // Of a wildcard.
    enum class ENamespaces
    {
        Any,
        Not,
        List
    } eNamespaces = ENamespaces::Any;
    std::vector<std::string> uris; ///< of Not and List; the empty text stands for no namespace
    /// How what it lets through is checked, by the global elements and attributes.
    enum class EProcess
    {
        Skip,
        Lax,   ///< those that are known have to be right
        Strict ///< the others are refused
    } eProcess = EProcess::Skip;

    /// In a class with bRestriction: the property is that of the member of this name in pBase or a base of it, which
    /// may allow more: another cardinality or a wider type, but a value of the same kind.
    bool bInherited = false;

    SValueRule value;
    SDocumentation documentation;
    SSource source;
};

/// An attribute.
struct SAttribute
{
    std::string strName; ///< in C++
    std::string strAttribute;
    std::string strUri;
    bool bRequired = false;
    SSimpleType* pType = nullptr;
    bool bInherited = false; ///< as in SMember
    SValueRule value;
    SDocumentation documentation;
    SSource source;
};

/// A class.
struct SClass
{
    enum class EGroup
    {
        Sequence,
        Choice,
        All
    };

    std::string strName; ///< in C++: `CItem`
    SNamespace* pNamespace = nullptr;
    std::string strUri;        ///< namespace of the type
    std::string strSchemaName; ///< name of the type, empty if it is anonymous or a nested group
    std::string strElement;    ///< default name of its element; of a group what SMember::strElement says
    bool bPseudo = false;      ///< a nested group: no element of its own
    bool bAbstract = false;    ///< never made by itself
    bool bNillable = false;    ///< set once in a line of bases
    bool bEmptiable = true;    ///< a choice that may stay without any member
    bool bUnknownAttributesFail = true;
    EGroup eGroup = EGroup::Sequence;
    SClass* pBase = nullptr;   ///< it extends this class: what follows is only what it adds
    bool bRestriction = false; ///< it inherits pBase, and what follows replaces the base's tables
    std::vector<SMember> members;
    std::vector<SAttribute> attributes;
    bool bAnyAttribute = false; ///< of an extension only if the base has none, or a narrower one
    SMember::ENamespaces eAnyAttribute = SMember::ENamespaces::Any;
    std::vector<std::string> anyAttributeUris;
    SMember::EProcess eAnyAttributeProcess = SMember::EProcess::Skip;
    /// Type of the element's text, null for none. Of an extension null too, as the base has it; a restriction of a
    /// class with text narrows the type and holds the value as the base does.
    SSimpleType* pText = nullptr;
    bool bMixed = false; ///< text between elements, joined; of an extension only if the base has none
    /// What may stand where this class is declared, this one first if it is not abstract; empty if there is no other.
    /// Those that name a type are for xsi:type, and those that name an element for members with bSubstitution.
    struct SAlternative
    {
        bool bElement = false; ///< strUri and strName name an element, not a type
        std::string strUri;
        std::string strName;
        SClass* pClass = nullptr;
        bool bSharesClass = false; ///< of an element: its type adds nothing to that of the class, whose name it has not
    };
    std::vector<SAlternative> alternatives;
    SDocumentation documentation;
    SSource source;
};

/// What is printed into one C++ namespace.
struct SNamespace
{
    std::string strUri;
    std::string strCpp;                    ///< `order` or `acme::order`
    std::string strFile;                   ///< stem of its files with --split namespace
    std::vector<SSimpleType*> simpleTypes; ///< each behind those that it names
    std::vector<SClass*> classes;          ///< each behind its base
    SDocumentation documentation;
};

/// An element that a document may begin with.
struct SRoot
{
    std::string strElement;
    std::string strUri;
    std::string strName; ///< of the function that makes its object: `PurchaseOrder`
    SNamespace* pNamespace = nullptr;
    SClass* pClass = nullptr;     ///< null if the element holds a simple value
    SSimpleType* pType = nullptr; ///< of a simple value
    SValueRule value;             ///< of a simple value
    bool bNillable = false;
    SDocumentation documentation;
    SSource source;
};

/// A global attribute, by which what an attribute wildcard lets through is checked.
struct SKnownAttribute
{
    std::string strAttribute;
    std::string strUri;
    SSimpleType* pType = nullptr;
    SValueRule value;
};

/// A simple type that an element may say it has.
struct SNamedType
{
    std::string strName;
    std::string strUri;
    SSimpleType* pType = nullptr;
};

struct SBinding
{
    std::deque<SNamespace> namespaces;
    std::deque<SSimpleType> simpleTypes;
    std::deque<SClass> classes;
    std::vector<SRoot> roots;
    std::vector<SKnownAttribute> knownAttributes; ///< none unless a wildcard asks for them
    std::vector<SNamedType> namedTypes;           ///< none unless values of any simple type ask for them
};

/// Whether values of a type say theirs.
bool IsAnySimpleType(const SSimpleType& type);

/// Whether a class has a wildcard that lets known elements and attributes through only if they are right.
bool HasCheckedWildcards(const SBinding& binding);

} // namespace quiver_gen::binding
