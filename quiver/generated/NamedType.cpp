#include "quiver/generated/NamedType.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/DeclaredType.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace QvXmlLib9
{

namespace
{

constexpr SNamedType s_builtins[] = {
    {g_lpctXsdNamespace, L"anySimpleType", &xs::AnySimpleType::Type},
    {g_lpctXsdNamespace, L"string", &xs::String::Type},
    {g_lpctXsdNamespace, L"normalizedString", &xs::NormalizedString::Type},
    {g_lpctXsdNamespace, L"token", &xs::Token::Type},
    {g_lpctXsdNamespace, L"language", &xs::Language::Type},
    {g_lpctXsdNamespace, L"Name", &xs::Name::Type},
    {g_lpctXsdNamespace, L"NCName", &xs::NCName::Type},
    {g_lpctXsdNamespace, L"ID", &xs::ID::Type},
    {g_lpctXsdNamespace, L"IDREF", &xs::IDREF::Type},
    {g_lpctXsdNamespace, L"ENTITY", &xs::ENTITY::Type},
    {g_lpctXsdNamespace, L"NMTOKEN", &xs::NMTOKEN::Type},
    {g_lpctXsdNamespace, L"IDREFS", &xs::IDREFS::Type},
    {g_lpctXsdNamespace, L"ENTITIES", &xs::ENTITIES::Type},
    {g_lpctXsdNamespace, L"NMTOKENS", &xs::NMTOKENS::Type},
    {g_lpctXsdNamespace, L"anyURI", &xs::AnyURI::Type},
    {g_lpctXsdNamespace, L"QName", &xs::QName::Type},
    {g_lpctXsdNamespace, L"NOTATION", &xs::NOTATION::Type},
    {g_lpctXsdNamespace, L"boolean", &xs::Boolean::Type},
    {g_lpctXsdNamespace, L"float", &xs::Float::Type},
    {g_lpctXsdNamespace, L"double", &xs::Double::Type},
    {g_lpctXsdNamespace, L"decimal", &xs::Decimal::Type},
    {g_lpctXsdNamespace, L"integer", &xs::Integer::Type},
    {g_lpctXsdNamespace, L"nonPositiveInteger", &xs::NonPositiveInteger::Type},
    {g_lpctXsdNamespace, L"negativeInteger", &xs::NegativeInteger::Type},
    {g_lpctXsdNamespace, L"nonNegativeInteger", &xs::NonNegativeInteger::Type},
    {g_lpctXsdNamespace, L"positiveInteger", &xs::PositiveInteger::Type},
    {g_lpctXsdNamespace, L"long", &xs::Long::Type},
    {g_lpctXsdNamespace, L"int", &xs::Int::Type},
    {g_lpctXsdNamespace, L"short", &xs::Short::Type},
    {g_lpctXsdNamespace, L"byte", &xs::Byte::Type},
    {g_lpctXsdNamespace, L"unsignedLong", &xs::UnsignedLong::Type},
    {g_lpctXsdNamespace, L"unsignedInt", &xs::UnsignedInt::Type},
    {g_lpctXsdNamespace, L"unsignedShort", &xs::UnsignedShort::Type},
    {g_lpctXsdNamespace, L"unsignedByte", &xs::UnsignedByte::Type},
    {g_lpctXsdNamespace, L"duration", &xs::Duration::Type},
    {g_lpctXsdNamespace, L"dateTime", &xs::DateTime::Type},
    {g_lpctXsdNamespace, L"date", &xs::Date::Type},
    {g_lpctXsdNamespace, L"time", &xs::Time::Type},
    {g_lpctXsdNamespace, L"gYearMonth", &xs::GYearMonth::Type},
    {g_lpctXsdNamespace, L"gYear", &xs::GYear::Type},
    {g_lpctXsdNamespace, L"gMonthDay", &xs::GMonthDay::Type},
    {g_lpctXsdNamespace, L"gDay", &xs::GDay::Type},
    {g_lpctXsdNamespace, L"gMonth", &xs::GMonth::Type},
    {g_lpctXsdNamespace, L"hexBinary", &xs::HexBinary::Type},
    {g_lpctXsdNamespace, L"base64Binary", &xs::Base64Binary::Type},
};

constexpr SNamedTypes s_allBuiltins{s_builtins, std::size(s_builtins)};

/// The first type that a test takes, null if there is none.
template <class TTakes>
const SNamedType* Find(const SNamedTypes& types, TTakes Takes)
{
    const SNamedType* const pFound = std::find_if(types.begin(), types.end(), Takes);
    return pFound == types.end() ? nullptr : pFound;
}

/// Where no declaration tells the namespace, as in an element on its own, a type of the schema is looked for by its name.
const SNamedType* FindAnywhere(const SNamedTypes& types, std::wstring_view name)
{
    const auto IsCalled = [name](const SNamedType& type)
    {
        return name == type.lpctName;
    };
    const SNamedType* const pFound = Find(types, IsCalled);
    return pFound != nullptr ? pFound : Find(s_allBuiltins, IsCalled);
}

} // namespace

const SNamedTypes& NoNamedTypes()
{
    static constexpr SNamedTypes s_none{nullptr, 0};
    return s_none;
}

const SNamedType* FindNamedType(const SNamedTypes& types, std::wstring_view uri, std::wstring_view name)
{
    return Find(uri == g_lpctXsdNamespace ? s_allBuiltins : types,
                [uri, name](const SNamedType& type) { return name == type.lpctName && uri == type.lpctUri; });
}

const SNamedType* FindTypeOf(const SNamedTypes& types, const CXmlElement& element,
                             const CXmlSerializationContext& context, std::wstring& prefix)
{
    const SDeclaredType declared(element);
    if (!declared.bSaid)
        return nullptr;
    prefix = declared.strPrefix;
    const SNamedType* pType = nullptr;
    if (declared.pUri != nullptr)
        pType = FindNamedType(types, *declared.pUri, declared.strName);
    else if (element.GetDocument() == nullptr || context.GetSchemaType() == SchemaType_NoNamespaces)
        pType = FindAnywhere(types, declared.strName);
    else if (!declared.bPrefix)
        pType = FindNamedType(types, {}, declared.strName);
    if (pType == nullptr)
        throw CQvValidationException(
            FormatString(L"Failed to find a suitable substitution element for [%s]", element.GetLocalName().c_str()));
    return pType;
}

} // namespace QvXmlLib9
