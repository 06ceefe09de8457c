#include "quiver/generated/NamedType.h"

#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/BuiltinTypes.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace QvXmlLib9
{

namespace
{

constexpr wchar_t s_lpctXsd[] = L"http://www.w3.org/2001/XMLSchema";
constexpr wchar_t s_lpctXsi[] = L"http://www.w3.org/2001/XMLSchema-instance";

constexpr SNamedType s_builtins[] = {
    {s_lpctXsd, L"anySimpleType", &xs::AnySimpleType::Type},
    {s_lpctXsd, L"string", &xs::String::Type},
    {s_lpctXsd, L"normalizedString", &xs::NormalizedString::Type},
    {s_lpctXsd, L"token", &xs::Token::Type},
    {s_lpctXsd, L"language", &xs::Language::Type},
    {s_lpctXsd, L"Name", &xs::Name::Type},
    {s_lpctXsd, L"NCName", &xs::NCName::Type},
    {s_lpctXsd, L"ID", &xs::ID::Type},
    {s_lpctXsd, L"IDREF", &xs::IDREF::Type},
    {s_lpctXsd, L"ENTITY", &xs::ENTITY::Type},
    {s_lpctXsd, L"NMTOKEN", &xs::NMTOKEN::Type},
    {s_lpctXsd, L"IDREFS", &xs::IDREFS::Type},
    {s_lpctXsd, L"ENTITIES", &xs::ENTITIES::Type},
    {s_lpctXsd, L"NMTOKENS", &xs::NMTOKENS::Type},
    {s_lpctXsd, L"anyURI", &xs::AnyURI::Type},
    {s_lpctXsd, L"QName", &xs::QName::Type},
    {s_lpctXsd, L"NOTATION", &xs::NOTATION::Type},
    {s_lpctXsd, L"boolean", &xs::Boolean::Type},
    {s_lpctXsd, L"float", &xs::Float::Type},
    {s_lpctXsd, L"double", &xs::Double::Type},
    {s_lpctXsd, L"decimal", &xs::Decimal::Type},
    {s_lpctXsd, L"integer", &xs::Integer::Type},
    {s_lpctXsd, L"nonPositiveInteger", &xs::NonPositiveInteger::Type},
    {s_lpctXsd, L"negativeInteger", &xs::NegativeInteger::Type},
    {s_lpctXsd, L"nonNegativeInteger", &xs::NonNegativeInteger::Type},
    {s_lpctXsd, L"positiveInteger", &xs::PositiveInteger::Type},
    {s_lpctXsd, L"long", &xs::Long::Type},
    {s_lpctXsd, L"int", &xs::Int::Type},
    {s_lpctXsd, L"short", &xs::Short::Type},
    {s_lpctXsd, L"byte", &xs::Byte::Type},
    {s_lpctXsd, L"unsignedLong", &xs::UnsignedLong::Type},
    {s_lpctXsd, L"unsignedInt", &xs::UnsignedInt::Type},
    {s_lpctXsd, L"unsignedShort", &xs::UnsignedShort::Type},
    {s_lpctXsd, L"unsignedByte", &xs::UnsignedByte::Type},
    {s_lpctXsd, L"duration", &xs::Duration::Type},
    {s_lpctXsd, L"dateTime", &xs::DateTime::Type},
    {s_lpctXsd, L"date", &xs::Date::Type},
    {s_lpctXsd, L"time", &xs::Time::Type},
    {s_lpctXsd, L"gYearMonth", &xs::GYearMonth::Type},
    {s_lpctXsd, L"gYear", &xs::GYear::Type},
    {s_lpctXsd, L"gMonthDay", &xs::GMonthDay::Type},
    {s_lpctXsd, L"gDay", &xs::GDay::Type},
    {s_lpctXsd, L"gMonth", &xs::GMonth::Type},
    {s_lpctXsd, L"hexBinary", &xs::HexBinary::Type},
    {s_lpctXsd, L"base64Binary", &xs::Base64Binary::Type},
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
    return Find(uri == s_lpctXsd ? s_allBuiltins : types,
                [uri, name](const SNamedType& type) { return name == type.lpctName && uri == type.lpctUri; });
}

const SNamedType* FindTypeOf(const SNamedTypes& types, const CXmlElement& element,
                             const CXmlSerializationContext& context, std::wstring& prefix)
{
    const std::wstring strType = xs::QName::Type().Normalize(element.GetAttribute(L"type", s_lpctXsi));
    if (strType.empty())
        return nullptr;
    const std::size_t nColon = strType.find(L':');
    const bool bPrefix = nColon != std::wstring::npos;
    const std::wstring_view name = std::wstring_view(strType).substr(bPrefix ? nColon + 1 : 0);
    prefix = strType.substr(0, bPrefix ? nColon : 0);
    const std::wstring* const pUri = element.FindPrefix(prefix);
    const SNamedType* pType = nullptr;
    if (pUri != nullptr)
        pType = FindNamedType(types, *pUri, name);
    else if (element.GetDocument() == nullptr || context.GetSchemaType() == SchemaType_NoNamespaces)
        pType = FindAnywhere(types, name);
    else if (!bPrefix)
        pType = FindNamedType(types, {}, name);
    if (pType == nullptr)
        throw CQvValidationException(
            FormatString(L"Failed to find a suitable substitution element for [%s]", element.GetLocalName().c_str()));
    return pType;
}

} // namespace QvXmlLib9
