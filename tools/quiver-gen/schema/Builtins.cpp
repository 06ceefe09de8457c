#include "tools/quiver-gen/schema/Components.h"

#include <iterator>

namespace quiver_gen::schema
{

namespace
{

/// A built-in simple type. Bounds are what its step of derivation adds, empty for none.
struct SBuiltinRow
{
    EBuiltin eBuiltin;
    std::string_view svName;
    EBuiltin eBase;
    std::string_view svWhiteSpace;
    std::string_view svMin;
    std::string_view svMax;
};

using E = EBuiltin;

// In the order of the enumeration, so that a base precedes what is derived from it.
constexpr SBuiltinRow s_rows[] = {
    {E::None, "", E::None, "", "", ""},
    {E::AnyType, "anyType", E::None, "", "", ""},
    {E::AnySimpleType, "anySimpleType", E::AnyType, "", "", ""},
    {E::String, "string", E::AnySimpleType, "preserve", "", ""},
    {E::Boolean, "boolean", E::AnySimpleType, "collapse", "", ""},
    {E::Decimal, "decimal", E::AnySimpleType, "collapse", "", ""},
    {E::Float, "float", E::AnySimpleType, "collapse", "", ""},
    {E::Double, "double", E::AnySimpleType, "collapse", "", ""},
    {E::Duration, "duration", E::AnySimpleType, "collapse", "", ""},
    {E::DateTime, "dateTime", E::AnySimpleType, "collapse", "", ""},
    {E::Time, "time", E::AnySimpleType, "collapse", "", ""},
    {E::Date, "date", E::AnySimpleType, "collapse", "", ""},
    {E::GYearMonth, "gYearMonth", E::AnySimpleType, "collapse", "", ""},
    {E::GYear, "gYear", E::AnySimpleType, "collapse", "", ""},
    {E::GMonthDay, "gMonthDay", E::AnySimpleType, "collapse", "", ""},
    {E::GDay, "gDay", E::AnySimpleType, "collapse", "", ""},
    {E::GMonth, "gMonth", E::AnySimpleType, "collapse", "", ""},
    {E::HexBinary, "hexBinary", E::AnySimpleType, "collapse", "", ""},
    {E::Base64Binary, "base64Binary", E::AnySimpleType, "collapse", "", ""},
    {E::AnyURI, "anyURI", E::AnySimpleType, "collapse", "", ""},
    {E::QName, "QName", E::AnySimpleType, "collapse", "", ""},
    {E::NOTATION, "NOTATION", E::AnySimpleType, "collapse", "", ""},
    {E::NormalizedString, "normalizedString", E::String, "replace", "", ""},
    {E::Token, "token", E::NormalizedString, "collapse", "", ""},
    {E::Language, "language", E::Token, "", "", ""},
    {E::NMTOKEN, "NMTOKEN", E::Token, "", "", ""},
    {E::NMTOKENS, "NMTOKENS", E::AnySimpleType, "collapse", "", ""},
    {E::Name, "Name", E::Token, "", "", ""},
    {E::NCName, "NCName", E::Name, "", "", ""},
    {E::ID, "ID", E::NCName, "", "", ""},
    {E::IDREF, "IDREF", E::NCName, "", "", ""},
    {E::IDREFS, "IDREFS", E::AnySimpleType, "collapse", "", ""},
    {E::ENTITY, "ENTITY", E::NCName, "", "", ""},
    {E::ENTITIES, "ENTITIES", E::AnySimpleType, "collapse", "", ""},
    {E::Integer, "integer", E::Decimal, "", "", ""},
    {E::NonPositiveInteger, "nonPositiveInteger", E::Integer, "", "", "0"},
    {E::NegativeInteger, "negativeInteger", E::NonPositiveInteger, "", "", "-1"},
    {E::Long, "long", E::Integer, "", "-9223372036854775808", "9223372036854775807"},
    {E::Int, "int", E::Long, "", "-2147483648", "2147483647"},
    {E::Short, "short", E::Int, "", "-32768", "32767"},
    {E::Byte, "byte", E::Short, "", "-128", "127"},
    {E::NonNegativeInteger, "nonNegativeInteger", E::Integer, "", "0", ""},
    {E::UnsignedLong, "unsignedLong", E::NonNegativeInteger, "", "", "18446744073709551615"},
    {E::UnsignedInt, "unsignedInt", E::UnsignedLong, "", "", "4294967295"},
    {E::UnsignedShort, "unsignedShort", E::UnsignedInt, "", "", "65535"},
    {E::UnsignedByte, "unsignedByte", E::UnsignedShort, "", "", "255"},
    {E::PositiveInteger, "positiveInteger", E::NonNegativeInteger, "", "1", ""},
};
static_assert(std::size(s_rows) == s_nBuiltins);

constexpr bool AreRowsInOrder()
{
    for (std::size_t n = 0; n < s_nBuiltins; ++n)
        if (static_cast<std::size_t>(s_rows[n].eBuiltin) != n)
            return false;
    return true;
}
static_assert(AreRowsInOrder());

EBuiltin GetListItem(EBuiltin eBuiltin)
{
    if (eBuiltin == E::NMTOKENS)
        return E::NMTOKEN;
    if (eBuiltin == E::IDREFS)
        return E::IDREF;
    return eBuiltin == E::ENTITIES ? E::ENTITY : E::None;
}

void AddFacet(SSimpleType& type, EFacet eFacet, std::string_view svValue, bool bFixed = false)
{
    if (svValue.empty())
        return;
    SFacet& facet = type.facets.emplace_back();
    facet.eFacet = eFacet;
    facet.strValue = svValue;
    facet.nValue = eFacet == EFacet::MinLength ? 1 : 0;
    facet.bFixed = bFixed;
}

} // namespace

std::string_view GetBuiltinName(EBuiltin eBuiltin)
{
    return s_rows[static_cast<std::size_t>(eBuiltin)].svName;
}

/// Anything: a mixed sequence of any elements, with any attributes, all processed where a declaration is known.
void SSchemaSet::MakeAnyType()
{
    m_anyWildcard.eProcess = SWildcard::EProcess::Lax;
    m_anyParticle.nMin = 0;
    m_anyParticle.nMax = s_nUnbounded;
    m_anyParticle.eTerm = ETerm::Wildcard;
    m_anyParticle.pWildcard = &m_anyWildcard;
    m_anyGroup.particles.push_back(&m_anyParticle);
    m_anyContent.eTerm = ETerm::Group;
    m_anyContent.pGroup = &m_anyGroup;

    m_anyType.eBuiltin = EBuiltin::AnyType;
    m_anyType.name = {std::string(s_svXsdNamespace), "anyType"};
    m_anyType.eContent = EContent::Mixed;
    m_anyType.pOwnParticle = m_anyType.pContent = &m_anyContent;
    m_anyType.pOwnWildcard = m_anyType.pWildcard = &m_anyWildcard;
    m_builtins[static_cast<std::size_t>(EBuiltin::AnyType)] = &m_anyType;
    m_builtinsByName.emplace("anyType", &m_anyType);
}

void SSchemaSet::MakeBuiltins()
{
    for (const SBuiltinRow& row : s_rows)
    {
        if (row.eBuiltin <= EBuiltin::AnyType)
            continue;
        SSimpleType& type = m_builtinSimpleTypes.emplace_back();
        type.eBuiltin = row.eBuiltin;
        type.name = {std::string(s_svXsdNamespace), std::string(row.svName)};
        type.pBase = &GetBuiltin(row.eBase);
        const EBuiltin eItem = GetListItem(row.eBuiltin);
        if (eItem != EBuiltin::None)
        {
            type.eVariety = EVariety::List;
            type.pItem = &GetBuiltinSimple(eItem);
            AddFacet(type, EFacet::MinLength, "1");
        }
        else if (row.eBuiltin != EBuiltin::AnySimpleType)
        {
            type.eNearestBuiltin = row.eBuiltin;
            type.ePrimitive = row.eBase == EBuiltin::AnySimpleType ? row.eBuiltin : type.pBase->AsSimple()->ePrimitive;
        }
        const bool bFixed = eItem == EBuiltin::None && type.ePrimitive != EBuiltin::String;
        AddFacet(type, EFacet::WhiteSpace, row.svWhiteSpace, bFixed);
        AddFacet(type, EFacet::FractionDigits, row.eBuiltin == EBuiltin::Integer ? "0" : "", true);
        AddFacet(type, EFacet::MinInclusive, row.svMin);
        AddFacet(type, EFacet::MaxInclusive, row.svMax);
        m_builtins[static_cast<std::size_t>(row.eBuiltin)] = &type;
        m_builtinsByName.emplace(row.svName, &type);
    }
}

} // namespace quiver_gen::schema
