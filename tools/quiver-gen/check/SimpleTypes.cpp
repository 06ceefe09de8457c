#include "tools/quiver-gen/check/SimpleTypes.h"

#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/Value.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>

using namespace QvXmlLib9;
using namespace quiver_gen::binding;

namespace quiver_gen::check
{

namespace
{

struct SBuiltinType
{
    std::string_view svName;
    PfnSimpleType pfnType;
};

constexpr SBuiltinType s_builtins[] = {
    {"xs::AnySimpleType", &xs::AnySimpleType::Type},
    {"xs::AnyURI", &xs::AnyURI::Type},
    {"xs::Base64Binary", &xs::Base64Binary::Type},
    {"xs::Boolean", &xs::Boolean::Type},
    {"xs::Byte", &xs::Byte::Type},
    {"xs::Date", &xs::Date::Type},
    {"xs::DateTime", &xs::DateTime::Type},
    {"xs::Decimal", &xs::Decimal::Type},
    {"xs::Double", &xs::Double::Type},
    {"xs::Duration", &xs::Duration::Type},
    {"xs::ENTITIES", &xs::ENTITIES::Type},
    {"xs::ENTITY", &xs::ENTITY::Type},
    {"xs::Float", &xs::Float::Type},
    {"xs::GDay", &xs::GDay::Type},
    {"xs::GMonth", &xs::GMonth::Type},
    {"xs::GMonthDay", &xs::GMonthDay::Type},
    {"xs::GYear", &xs::GYear::Type},
    {"xs::GYearMonth", &xs::GYearMonth::Type},
    {"xs::HexBinary", &xs::HexBinary::Type},
    {"xs::ID", &xs::ID::Type},
    {"xs::IDREF", &xs::IDREF::Type},
    {"xs::IDREFS", &xs::IDREFS::Type},
    {"xs::Int", &xs::Int::Type},
    {"xs::Integer", &xs::Integer::Type},
    {"xs::Integer64", &xs::Integer64::Type},
    {"xs::Language", &xs::Language::Type},
    {"xs::Long", &xs::Long::Type},
    {"xs::MixedText", &xs::MixedText::Type},
    {"xs::NCName", &xs::NCName::Type},
    {"xs::NMTOKEN", &xs::NMTOKEN::Type},
    {"xs::NMTOKENS", &xs::NMTOKENS::Type},
    {"xs::NOTATION", &xs::NOTATION::Type},
    {"xs::Name", &xs::Name::Type},
    {"xs::NegativeInteger", &xs::NegativeInteger::Type},
    {"xs::NegativeInteger64", &xs::NegativeInteger64::Type},
    {"xs::NonNegativeInteger", &xs::NonNegativeInteger::Type},
    {"xs::NonNegativeInteger64", &xs::NonNegativeInteger64::Type},
    {"xs::NonPositiveInteger", &xs::NonPositiveInteger::Type},
    {"xs::NonPositiveInteger64", &xs::NonPositiveInteger64::Type},
    {"xs::NormalizedString", &xs::NormalizedString::Type},
    {"xs::PositiveInteger", &xs::PositiveInteger::Type},
    {"xs::PositiveInteger64", &xs::PositiveInteger64::Type},
    {"xs::QName", &xs::QName::Type},
    {"xs::Short", &xs::Short::Type},
    {"xs::String", &xs::String::Type},
    {"xs::Time", &xs::Time::Type},
    {"xs::Token", &xs::Token::Type},
    {"xs::UnsignedByte", &xs::UnsignedByte::Type},
    {"xs::UnsignedInt", &xs::UnsignedInt::Type},
    {"xs::UnsignedLong", &xs::UnsignedLong::Type},
    {"xs::UnsignedShort", &xs::UnsignedShort::Type},
};

const CSimpleType& GetBuiltin(const std::string& strName)
{
    const auto* const pFound = std::find_if(std::begin(s_builtins), std::end(s_builtins),
                                            [&strName](const SBuiltinType& type) { return type.svName == strName; });
    if (pFound == std::end(s_builtins))
        throw std::logic_error("there is no built-in type " + strName);
    return pFound->pfnType();
}

CSimpleType WithFacets(CSimpleType type, const SSimpleType& facets, CTexts& texts)
{
    const auto AddText = [&](const std::string& strFacet, CSimpleType (CSimpleType::*pfnFacet)(const wchar_t*) const)
    {
        if (!strFacet.empty())
            type = (type.*pfnFacet)(texts.Keep(strFacet));
    };
    const auto AddNumber = [&](std::int64_t nFacet, CSimpleType (CSimpleType::*pfnFacet)(long long) const)
    {
        if (nFacet >= 0)
            type = (type.*pfnFacet)(nFacet);
    };
    AddText(facets.strPattern, &CSimpleType::Pattern);
    AddNumber(facets.nLength, &CSimpleType::Length);
    AddNumber(facets.nMinLength, &CSimpleType::MinLength);
    AddNumber(facets.nMaxLength, &CSimpleType::MaxLength);
    AddText(facets.strMinInclusive, &CSimpleType::MinInclusive);
    AddText(facets.strMinExclusive, &CSimpleType::MinExclusive);
    AddText(facets.strMaxInclusive, &CSimpleType::MaxInclusive);
    AddText(facets.strMaxExclusive, &CSimpleType::MaxExclusive);
    AddNumber(facets.nTotalDigits, &CSimpleType::TotalDigits);
    AddNumber(facets.nFractionDigits, &CSimpleType::FractionDigits);
    switch (facets.eWhiteSpace)
    {
    case SSimpleType::EWhiteSpace::Inherited:
        return type;
    case SSimpleType::EWhiteSpace::Preserve:
        return type.WhiteSpace(CWhitespaceUtils::WhitespaceRule_None);
    case SSimpleType::EWhiteSpace::Replace:
        return type.WhiteSpace(CWhitespaceUtils::WhitespaceRule_Replace);
    case SSimpleType::EWhiteSpace::Collapse:
        break;
    }
    return type.WhiteSpace(CWhitespaceUtils::WhitespaceRule_Collapse);
}

/// Calls a function with a value of the C++ type that a kind of value is held as. Lists and enumerations have none.
template <class TFunction>
std::wstring WithValue(EValue eValue, TFunction Do)
{
    switch (eValue)
    {
    case EValue::Boolean:
        return Do(false);
    case EValue::I1:
        return Do(static_cast<signed char>(0));
    case EValue::I2:
        return Do(short{});
    case EValue::I4:
        return Do(0);
    case EValue::I8:
        return Do(0LL);
    case EValue::UI1:
        return Do(static_cast<unsigned char>(0));
    case EValue::UI2:
        return Do(static_cast<unsigned short>(0));
    case EValue::UI4:
        return Do(0U);
    case EValue::UI8:
        return Do(0ULL);
    case EValue::R4:
        return Do(0.0F);
    case EValue::R8:
        return Do(0.0);
    case EValue::Decimal:
        return Do(CDecimal());
    case EValue::Integer:
        return Do(CBigInteger());
    case EValue::DateTime:
        return Do(CDateTime());
    case EValue::Duration:
        return Do(CDateTimeSpan());
    case EValue::Binary:
        return Do(CBinaryData());
    case EValue::String:
    case EValue::Enumeration:
    case EValue::List:
        break;
    }
    return Do(std::wstring());
}

} // namespace

const wchar_t* CTexts::Keep(const std::string& strText)
{
    return m_texts.insert(FromUtf8(strText)).first->c_str();
}

CValueType::CValueType()
    : m_type(xs::AnySimpleType::Type())
{
}

std::wstring CValueType::Read(std::wstring strText, const wchar_t* lpctName) const
{
    strText = m_type.Normalize(std::move(strText));
    m_type.Check(strText, lpctName);
    // What has the form may still be more than the value can hold.
    Convert(strText, false);
    return strText;
}

std::wstring CValueType::Print(const std::wstring& strText) const
{
    return Convert(strText, true);
}

bool CValueType::KeepsText() const
{
    const bool bList = m_eValue == EValue::List;
    const EValue eItem = bList ? m_pItem->m_eValue : m_eValue;
    return eItem == EValue::Duration || (bList && eItem == EValue::R4);
}

std::wstring CValueType::Convert(const std::wstring& strText, bool bPrint) const
{
    if (m_eValue == EValue::Enumeration)
        return m_type.GetValueText(static_cast<std::size_t>(m_type.FindValue(strText)));
    if (m_eValue == EValue::List)
    {
        std::wstring strList;
        for (const std::wstring& strItem : ListItems(m_type, strText))
        {
            const std::wstring strPrinted = m_pItem->Convert(strItem, bPrint);
            if (bPrint)
                AppendListItem(strList, strPrinted);
        }
        return strList;
    }
    return WithValue(m_eValue,
                     [&](auto value)
                     {
                         ParseValue(m_type, strText, value);
                         return bPrint ? ValueText(m_type, value) : std::wstring();
                     });
}

CSimpleTypes::CSimpleTypes(const SBinding& binding, CTexts& texts)
{
    // A type refers to others by their places, so all of them are there before one is filled.
    for (const SSimpleType& type : binding.simpleTypes)
        m_byType.emplace(&type, &m_types.emplace_back());
    for (const SSimpleType& type : binding.simpleTypes)
        Fill(*m_byType.at(&type), type, texts);
}

const CValueType& CSimpleTypes::Get(const SSimpleType& type)
{
    const auto [it, bNew] = m_byType.try_emplace(&type, nullptr);
    if (bNew)
    {
        // A type that every binding has, and none lists.
        it->second = &m_types.emplace_back();
        it->second->m_type = GetBuiltin(type.strName);
        it->second->m_eValue = type.eValue;
    }
    return *it->second;
}

void CSimpleTypes::Fill(CValueType& target, const SSimpleType& type, CTexts& texts)
{
    target.m_eValue = type.eValue;
    if (type.pItem != nullptr)
        target.m_pItem = &Get(*type.pItem);
    if (type.bBuiltin)
    {
        target.m_type = GetBuiltin(type.strName);
        return;
    }
    for (const SSimpleType* const pMember : type.memberTypes)
        target.m_members.push_back(&Get(*pMember).m_type);
    for (const SEnumerator& value : type.enumerators)
        target.m_values.push_back(texts.Keep(value.strText));
    CSimpleType start = !target.m_members.empty()
                            ? CSimpleType::UnionOf(target.m_members.data(), target.m_members.size())
                        : target.m_pItem != nullptr ? CSimpleType::ListOf(target.m_pItem->m_type)
                                                    : GetBuiltin(type.strBuiltin);
    if (!target.m_values.empty())
        start = start.Values(target.m_values.data(), target.m_values.size());
    target.m_type = WithFacets(start, type, texts);
}

} // namespace quiver_gen::check
