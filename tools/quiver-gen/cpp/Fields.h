#pragma once

#include "tools/quiver-gen/binding/Binding.h"
#include "tools/quiver-gen/cpp/Scope.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace quiver_gen::cpp
{

/// The template of the library that holds a field.
enum class EStorage
{
    Required,       ///< CRequired
    Optional,       ///< COptional
    Defaulted,      ///< CDefaulted
    RequiredObject, ///< CRequiredObject
    OptionalObject, ///< COptionalObject
    Polymorphic,    ///< CPolymorphicObject
    Repeated,       ///< CRepeated
    AnyAttributes   ///< CAnyAttributes
};

/// Something that a generated class holds: a child element, a group, a wildcard, an attribute or text.
struct SField
{
    std::string strName;                             ///< in C++: `ShipTo`
    std::string strLabel;                            ///< in messages: `shipTo`
    EStorage eStorage = EStorage::Required;          ///< how it is held
    bool bChoice = false;                            ///< one of the members of a choice
    const binding::SClass* pOwner = nullptr;         ///< the class that lists it
    const binding::SMember* pMember = nullptr;       ///< set for elements, groups and wildcards
    const binding::SAttribute* pAttribute = nullptr; ///< set for attributes
    const binding::SSimpleType* pType = nullptr;     ///< of a value
    const binding::SClass* pClass = nullptr;         ///< of objects and groups
    const binding::SValueRule* pRule = nullptr;      ///< null for none
    bool bInherited = false;                         ///< a base class holds it; this one describes it anew

    bool IsText() const { return pMember == nullptr && pAttribute == nullptr && eStorage != EStorage::AnyAttributes; }
    bool IsWildcard() const { return pMember != nullptr && pMember->eMember == binding::EMember::Wildcard; }
    const binding::SDocumentation& GetDocumentation() const;
};

/// What a class lists, in the order of its tables: text, elements, attributes, open attributes.
std::vector<SField> GetFields(const binding::SClass& type);

/// Whether a class is a choice, and no base of it is: then it knows which of its members is set, for all that derive
/// from it.
bool BeginsChoice(const binding::SClass& type);

/// The kinds of collections of objects.
enum class ECollection
{
    Objects,
    Polymorphic,
    Groups
};

/// The kind of the collection that a class gives its name to: `CItemCol`.
ECollection GetNamedCollection(const binding::SClass& item);

/// The class whose named collection a field uses, null for none.
const binding::SClass* GetCollectionItem(const SField& field);

/// The type that a class's named collection stands for.
std::string GetCollectionType(const binding::SClass& item, const CScope& scope);

/// Which classes are used in ways that their declarations have to provide for.
class CUsage
{
public:
    explicit CUsage(const binding::SBinding& binding);

    /// Other classes derive from it.
    bool IsBase(const binding::SClass& type) const { return m_bases.count(&type) != 0; }
    /// Its collection is used by the name that GetCollectionName gives.
    bool IsRepeated(const binding::SClass& type) const { return m_repeated.count(&type) != 0; }

private:
    std::set<const binding::SClass*> m_bases;
    std::set<const binding::SClass*> m_repeated;
};

/// Where a class is printed: how names are said there, and what is known of other classes.
struct SPlace
{
    const CScope& scope;
    const CNameTable& names;
    const CUsage& usage;
    /// Whether the definition of a class precedes, so that its members can be called.
    std::function<bool(const binding::SClass&)> IsComplete;
    /// Whether the name of the collection of a class is declared.
    std::function<bool(const binding::SClass&)> IsCollectionNamed;
    bool bUtf8 = false; ///< accessors take and give text as UTF-8
};

/// Type of the data member: `QvXmlLib9::CRequired<SSku>`.
std::string GetStorageType(const SField& field, const SPlace& place);

/// A function that reads or writes a field.
struct SAccessor
{
    std::string strReturn;
    std::string strName;
    std::string strParameters; ///< with brackets and qualifiers: `() const`
    std::string strBody;       ///< one statement
    bool bInline = true;       ///< can stand in the class
};

std::vector<SAccessor> GetAccessors(const SField& field, const SPlace& place);

/// What names a field in messages, as an expression.
std::string GetLabel(const SField& field);

/// Class of the object of a field that holds one, wildcards and values that may be nil included.
std::string GetObjectType(const SField& field, const CScope& scope);

/// Class of an object for an element with a simple value.
/// @param strRule what GetRuleArgument gives.
std::string GetValueClass(const binding::SSimpleType& type, bool bNillable, const std::string& strRule,
                          const CScope& scope);

/// The second argument of the templates that know default and fixed values, with the comma in front of it.
std::string GetRuleArgument(const SField& field, const CScope& scope);

/// Name of the constant that holds the default or fixed value of a field.
std::string GetRuleName(const SField& field);

/// Whether a class lets fewer values or counts pass than the base that holds the field, or may do so.
bool IsRestricted(const SField& field);

/// Name of the constant that describes a repeated field or a wildcard, empty if it needs none.
std::string GetConstantName(const SField& field);

} // namespace quiver_gen::cpp
