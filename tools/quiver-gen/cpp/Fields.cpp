#include "tools/quiver-gen/cpp/Fields.h"

#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

const SDocumentation s_noDocumentation;

/// The text of mixed content has no type in the schema.
const SSimpleType& GetMixedText()
{
    static const SSimpleType s_type = []
    {
        SSimpleType type;
        type.strName = "xs::MixedText";
        type.bBuiltin = true;
        return type;
    }();
    return s_type;
}

/// Whether a base class holds the text, or the open attributes.
template <class TPredicate>
bool HasBase(const SClass& type, TPredicate Has)
{
    const SClass* pBase = type.pBase;
    while (pBase != nullptr && !Has(*pBase))
        pBase = pBase->pBase;
    return pBase != nullptr;
}

const SValueRule* GetRule(const SValueRule& rule)
{
    return rule.eKind == SValueRule::EKind::None ? nullptr : &rule;
}

EStorage GetStorage(const SMember& member, bool bChoice)
{
    if (member.eCardinality == ECardinality::Repeated)
        return EStorage::Repeated;
    const bool bRequired = member.eCardinality == ECardinality::Required && !bChoice;
    switch (member.eMember)
    {
    case EMember::Value:
        return bRequired ? EStorage::Required : EStorage::Optional;
    case EMember::Wildcard:
        return EStorage::OptionalObject;
    case EMember::Object:
        if (member.bPolymorphic)
            return EStorage::Polymorphic;
        [[fallthrough]];
    case EMember::NillableValue:
    case EMember::TypedValue:
    case EMember::Group:
        return bRequired ? EStorage::RequiredObject : EStorage::OptionalObject;
    }
    return EStorage::Optional;
}

SField MakeField(const SClass& type, const SMember& member)
{
    SField field;
    field.strName = member.strName;
    field.strLabel = member.strElement.empty() ? member.strName : member.strElement;
    field.bChoice = type.eGroup == SClass::EGroup::Choice;
    field.eStorage = GetStorage(member, field.bChoice);
    field.pMember = &member;
    field.pType = member.pType;
    field.pClass = member.pClass;
    field.pRule = GetRule(member.value);
    field.bInherited = member.bInherited;
    return field;
}

SField MakeField(const SAttribute& attribute)
{
    SField field;
    field.strName = attribute.strName;
    field.strLabel = attribute.strAttribute;
    field.pAttribute = &attribute;
    field.pType = attribute.pType;
    field.pRule = GetRule(attribute.value);
    field.bInherited = attribute.bInherited;
    if (!attribute.bRequired)
        field.eStorage = field.pRule == nullptr ? EStorage::Optional : EStorage::Defaulted;
    return field;
}

SField MakeText(const SClass& type)
{
    SField field;
    field.strName = type.pText == nullptr ? "Text" : "Value";
    field.pType = type.pText == nullptr ? &GetMixedText() : type.pText;
    field.bInherited = HasBase(type, [](const SClass& base) { return base.pText != nullptr || base.bMixed; });
    return field;
}

// --- Types ----------------------------------------------------------------------------------------------------------

ECollection GetCollectionKind(const SMember& member)
{
    if (member.eMember == EMember::Group)
        return ECollection::Groups;
    return member.bPolymorphic ? ECollection::Polymorphic : ECollection::Objects;
}

std::string GetCollectionType(ECollection eKind, const std::string& strItem, const CScope& scope)
{
    switch (eKind)
    {
    case ECollection::Objects:
        return scope.Library("CObjectCol") + '<' + strItem + '>';
    case ECollection::Polymorphic:
        return scope.Library("CPolymorphicCol") + '<' + strItem + '>';
    case ECollection::Groups:
        return scope.Library("CGroupCol") + '<' + strItem + '>';
    }
    return {};
}

std::string GetCollectionType(const SField& field, const SPlace& place)
{
    if (field.IsWildcard())
        return place.scope.Library("CAnyCol");
    if (field.pMember->eMember == EMember::Value)
        return place.scope.Library("CValueCol") + '<' + place.scope.Name(*field.pType) +
               GetRuleArgument(field, place.scope) + '>';
    const SClass* const pItem = GetCollectionItem(field);
    const std::string strName = pItem == nullptr ? std::string() : place.names.GetCollectionName(*pItem);
    if (!strName.empty() && place.IsCollectionNamed(*pItem))
        return place.scope.Name(pItem->pNamespace->strCpp, strName);
    return GetCollectionType(GetCollectionKind(*field.pMember), GetObjectType(field, place.scope), place.scope);
}

// --- Accessors ------------------------------------------------------------------------------------------------------

/// Type of a value as accessors give it.
std::string GetAccessorValue(const SSimpleType& type, const SPlace& place)
{
    if (!place.bUtf8 || !HoldsText(type))
        return place.scope.Value(type);
    return type.eValue == EValue::List ? "std::vector<std::string>" : "std::string";
}

void AddValueAccessors(std::vector<SAccessor>& accessors, const SField& field, const SPlace& place)
{
    const std::string strMember = "m_" + field.strName;
    const bool bUtf8 = place.bUtf8 && HoldsText(*field.pType);
    const std::string strValue = GetAccessorValue(*field.pType, place);
    const std::string strOptional = "std::optional<" + strValue + '>';
    const bool bOptional = field.eStorage == EStorage::Optional;

    SAccessor get;
    get.strName = "Get" + field.strName;
    get.strParameters = "() const";
    get.strReturn = bOptional ? strOptional : strValue;
    get.strBody = "return " + strMember + ".Get();";
    if (bUtf8)
        get.strBody = "return " + place.scope.Library("ToUtf8") + '(' + strMember + ".Get());";
    else if (bOptional || !IsScalar(*field.pType))
        get.strReturn = "const " + get.strReturn + '&';
    accessors.push_back(get);

    SAccessor set;
    set.strName = "Set" + field.strName;
    set.strReturn = "void";
    if (field.eStorage != EStorage::Required)
        set.strParameters = "(const " + strOptional + "& value)";
    else if (bUtf8 && field.pType->eValue != EValue::List)
        set.strParameters = "(std::string_view value)";
    else
        set.strParameters = IsScalar(*field.pType) ? '(' + strValue + " value)" : "(const " + strValue + "& value)";
    const std::string strNew = bUtf8 ? place.scope.Library("FromUtf8") + "(value)" : "value";
    const std::string strArguments = strNew + ", " + GetLabel(field) + ");";
    set.strBody =
        field.bChoice ? "m_choice.Set(" + strMember + ", " + strArguments : strMember + ".Set(" + strArguments;
    accessors.push_back(set);

    if (field.eStorage == EStorage::Defaulted)
        accessors.push_back({"bool", "Has" + field.strName, "() const", "return " + strMember + ".IsSet();", true});
}

void AddObjectAccessors(std::vector<SAccessor>& accessors, const SField& field, const SPlace& place)
{
    const std::string strMember = "m_" + field.strName;
    const std::string strLabel = GetLabel(field);
    const std::string strType = GetObjectType(field, place.scope);
    const bool bInline = field.pClass == nullptr || place.IsComplete(*field.pClass);
    const bool bRequired = field.eStorage == EStorage::RequiredObject;
    accessors.push_back({place.scope.Pointer(strType), "Get" + field.strName, "() const",
                         "return " + strMember + (bRequired ? ".Get(" + strLabel + ");" : ".Get();"), bInline});
    accessors.push_back(
        {"void", "Set" + field.strName, '(' + strType + "* pValue)",
         (field.bChoice ? "m_choice.Set(" + strMember + ", " : strMember + ".Set(") + "pValue, " + strLabel + ");",
         bInline});
}

void AddCollectionAccessor(std::vector<SAccessor>& accessors, const SField& field, const SPlace& place)
{
    const std::string strMember = "m_" + field.strName;
    const std::string strConstant = GetConstantName(field);
    const bool bAttributes = field.eStorage == EStorage::AnyAttributes;
    const std::string strType = bAttributes ? place.scope.Library("CAttributeCol") : GetCollectionType(field, place);
    const std::string strBody = field.bChoice ? "return m_choice.Get(" + strMember + ", " + strConstant + ");"
                                              : "return " + strMember + ".Get(" + strConstant + ");";
    const bool bInline = field.pClass == nullptr || place.IsComplete(*field.pClass);
    accessors.push_back({place.scope.Pointer(strType), "Get" + field.strName, "() const", strBody, bInline});
}

} // namespace

const SDocumentation& SField::GetDocumentation() const
{
    if (pMember != nullptr)
        return pMember->documentation;
    return pAttribute != nullptr ? pAttribute->documentation : s_noDocumentation;
}

std::vector<SField> GetFields(const SClass& type)
{
    std::vector<SField> fields;
    if (type.pText != nullptr || type.bMixed)
        fields.push_back(MakeText(type));
    for (const SMember& member : type.members)
        fields.push_back(MakeField(type, member));
    for (const SAttribute& attribute : type.attributes)
        fields.push_back(MakeField(attribute));
    if (type.bAnyAttribute)
    {
        SField field;
        field.strName = field.strLabel = "AnyAttribute";
        field.eStorage = EStorage::AnyAttributes;
        // An extension that lets more through holds what its base does not take.
        field.bInherited = type.bRestriction && HasBase(type, [](const SClass& base) { return base.bAnyAttribute; });
        fields.push_back(field);
    }
    for (SField& field : fields)
        field.pOwner = &type;
    return fields;
}

bool BeginsChoice(const SClass& type)
{
    const auto IsChoice = [](const SClass& candidate)
    {
        return candidate.eGroup == SClass::EGroup::Choice;
    };
    return IsChoice(type) && !HasBase(type, IsChoice);
}

ECollection GetNamedCollection(const SClass& item)
{
    if (item.bPseudo)
        return ECollection::Groups;
    return item.alternatives.empty() ? ECollection::Objects : ECollection::Polymorphic;
}

const SClass* GetCollectionItem(const SField& field)
{
    if (field.eStorage != EStorage::Repeated || field.pClass == nullptr)
        return nullptr;
    return GetNamedCollection(*field.pClass) == GetCollectionKind(*field.pMember) ? field.pClass : nullptr;
}

CUsage::CUsage(const SBinding& binding)
{
    for (const SClass& type : binding.classes)
    {
        if (type.pBase != nullptr)
            m_bases.insert(type.pBase);
        for (const SField& field : GetFields(type))
        {
            if (const SClass* const pItem = GetCollectionItem(field))
                m_repeated.insert(pItem);
        }
    }
}

std::string GetCollectionType(const SClass& item, const CScope& scope)
{
    return GetCollectionType(GetNamedCollection(item), scope.Name(item), scope);
}

std::string GetStorageType(const SField& field, const SPlace& place)
{
    const CScope& scope = place.scope;
    switch (field.eStorage)
    {
    case EStorage::Required:
        return scope.Library("CRequired") + '<' + scope.Name(*field.pType) + GetRuleArgument(field, scope) + '>';
    case EStorage::Optional:
        return scope.Library("COptional") + '<' + scope.Name(*field.pType) + GetRuleArgument(field, scope) + '>';
    case EStorage::Defaulted:
        return scope.Library("CDefaulted") + '<' + scope.Name(*field.pType) + GetRuleArgument(field, scope) + '>';
    case EStorage::RequiredObject:
        return scope.Library("CRequiredObject") + '<' + GetObjectType(field, scope) + '>';
    case EStorage::OptionalObject:
        return scope.Library("COptionalObject") + '<' + GetObjectType(field, scope) + '>';
    case EStorage::Polymorphic:
        return scope.Library("CPolymorphicObject") + '<' + GetObjectType(field, scope) + '>';
    case EStorage::Repeated:
        return scope.Library("CRepeated") + '<' + GetCollectionType(field, place) + '>';
    case EStorage::AnyAttributes:
        return scope.Library("CAnyAttributes");
    }
    return {};
}

std::vector<SAccessor> GetAccessors(const SField& field, const SPlace& place)
{
    std::vector<SAccessor> accessors;
    switch (field.eStorage)
    {
    case EStorage::Required:
    case EStorage::Optional:
    case EStorage::Defaulted:
        AddValueAccessors(accessors, field, place);
        break;
    case EStorage::RequiredObject:
    case EStorage::OptionalObject:
    case EStorage::Polymorphic:
        AddObjectAccessors(accessors, field, place);
        break;
    case EStorage::Repeated:
    case EStorage::AnyAttributes:
        AddCollectionAccessor(accessors, field, place);
        break;
    }
    return accessors;
}

std::string GetRuleArgument(const SField& field, const CScope& scope)
{
    if (field.pRule == nullptr)
        return {};
    // An optional attribute knows that it is one.
    const bool bAttribute = field.pAttribute != nullptr && field.eStorage != EStorage::Defaulted;
    const std::string strRule = field.pRule->eKind == SValueRule::EKind::Default ? "SDefault"
                                : bAttribute                                     ? "SFixedAttribute"
                                                                                 : "SFixed";
    return ", " + scope.Library(strRule) + '<' + GetRuleName(field) + '>';
}

std::string GetObjectType(const SField& field, const CScope& scope)
{
    if (field.IsWildcard())
        return scope.Library("CElement");
    if (field.pType != nullptr)
        return GetValueClass(*field.pType, field.pMember->eMember == EMember::NillableValue,
                             GetRuleArgument(field, scope), scope);
    return scope.Name(*field.pClass);
}

std::string GetValueClass(const SSimpleType& type, bool bNillable, const std::string& strRule, const CScope& scope)
{
    if (!IsAnySimpleType(type))
        return scope.Library("CNillable") + '<' + scope.Name(type) + strRule + '>';
    const std::string strTypes = scope.NamedTypes().empty() ? scope.Library("NoNamedTypes") : scope.NamedTypes();
    const bool bDefault = scope.NamedTypes().empty() && strRule.empty();
    return scope.Library(bNillable ? "CNillableTypedValue" : "CTypedValue") + '<' +
           (bDefault ? "" : '&' + strTypes + strRule) + '>';
}

std::string GetLabel(const SField& field)
{
    // The element that holds the text is not always called as the class would call it.
    return field.IsText() ? "ElementName().c_str()" : WideLiteral(field.strLabel);
}

bool IsRestricted(const SField& field)
{
    const bool bValue = field.pMember == nullptr || field.pMember->eMember == EMember::Value;
    return field.bInherited && field.pOwner->bRestriction &&
           (field.eStorage == EStorage::Repeated || (field.pType != nullptr && bValue && !field.pOwner->bMixed));
}

std::string GetRuleName(const SField& field)
{
    const bool bDefault = field.pRule->eKind == SValueRule::EKind::Default;
    return (bDefault ? "s_lpctDefault" : "s_lpctFixed") + field.strName;
}

std::string GetConstantName(const SField& field)
{
    const bool bNeeded =
        field.eStorage == EStorage::Repeated || field.eStorage == EStorage::AnyAttributes || field.IsWildcard();
    return bNeeded ? "s_" + field.strName : std::string();
}

} // namespace quiver_gen::cpp
