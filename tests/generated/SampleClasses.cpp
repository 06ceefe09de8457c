#include "tests/generated/SampleClasses.h"

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace sample
{

const CSimpleType& SColour::Type()
{
    static constexpr const wchar_t* s_values[] = {L"red", L"dark blue"};
    static constexpr CSimpleType s_type = CSimpleType(xs::Token::s_type).Values(s_values);
    return s_type;
}

const CSimpleType& SSku::Type()
{
    static constexpr CSimpleType s_type = CSimpleType(xs::String::s_type).Pattern(L"[A-Z]{3}-\\d+").MaxLength(8);
    return s_type;
}

const CSimpleType& SQuantity::Type()
{
    static constexpr CSimpleType s_type = CSimpleType(xs::Int::s_type).MinInclusive(L"1").MaxExclusive(L"100");
    return s_type;
}

const CSimpleType& SSizes::Type()
{
    static constexpr CSimpleType s_type = CSimpleType::ListOf(&xs::Int::Type).MinLength(1).MaxLength(3);
    return s_type;
}

// --- Address ---

CAddress::CAddress(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CAddress")
    , CGenerated(lpctElementName)
{
}

const SAlternatives& CAddress::Alternatives()
{
    static constexpr SAlternative s_alternatives[] = {
        {false, s_lpctNamespace, L"Address", &CreateObject<CAddress>},
        {false, s_lpctNamespace, L"ForeignAddress", &CreateObject<CForeignAddress>}};
    static constexpr SAlternatives s_all{s_alternatives, 2};
    return s_all;
}

void CAddress::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Sequence, ElementType_Element, L"address", s_lpctNamespace);
    description.TypeName(L"Address", s_lpctNamespace);
    description.Element(m_City, L"city", s_lpctNamespace);
}

CForeignAddress::CForeignAddress(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CForeignAddress")
    , CGenerated(lpctElementName)
{
}

void CForeignAddress::Describe(CClassDescription& description) const
{
    CAddress::Describe(description);
    description.Class(GroupType_Sequence, ElementType_Element, L"address", s_lpctNamespace);
    description.TypeName(L"ForeignAddress", s_lpctNamespace);
    description.Element(m_Country, L"country", s_lpctNamespace);
    description.Attribute(m_Urgent, L"urgent", L"");
}

// --- Payment ---

const SRepeatedElement CPayment::s_Note{L"note", s_lpctNamespace, 0, -1};

CPayment::CPayment(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPayment")
    , CGeneratedChoice(lpctElementName)
{
}

void CPayment::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Choice, ElementType_Element, L"payment", s_lpctNamespace);
    description.RequireChoice();
    description.Element(m_Card, L"card", s_lpctNamespace);
    description.Element(m_Note, s_Note);
    description.Element(m_Cash, L"cash", s_lpctNamespace);
}

// --- Pair ---

COrderPair::COrderPair(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"COrderPair")
    , CGenerated(lpctElementName)
{
}

void COrderPair::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Sequence, ElementType_Pseudo, L"key", s_lpctNamespace);
    description.Element(m_Key, L"key", s_lpctNamespace);
    description.Element(m_Amount, L"amount", s_lpctNamespace);
}

// --- Price ---

CPrice::CPrice(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPrice")
    , CGenerated(lpctElementName)
{
}

void CPrice::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Sequence, ElementType_Element, L"price", s_lpctNamespace);
    description.Attribute(m_Tag, L"tag", L"");
    description.Text(m_Value);
}

// --- Order ---

const SRepeatedElement COrder::s_Pair{L"key", s_lpctNamespace, 0, 2};
const SRepeatedElement COrder::s_Price{L"price", s_lpctNamespace, 1, 3};
const SRepeatedElement COrder::s_Via{L"via", s_lpctNamespace, 0, -1};

static constexpr const wchar_t* s_anyUris[] = {s_lpctNamespace, L""};
const SWildcard COrder::s_Any{SWildcard::Not, s_anyUris, 2, 0, 2};
const SWildcard COrder::s_AnyAttribute{SWildcard::Not, s_anyUris, 2, 0, -1};

COrder::COrder(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"COrder")
    , CGenerated(lpctElementName)
{
}

void COrder::Describe(CClassDescription& description) const
{
    description.Class(GroupType_Sequence, ElementType_Element, L"order", s_lpctNamespace);
    description.Element(m_Sku, L"sku", s_lpctNamespace);
    description.Element(m_Quantity, L"quantity", s_lpctNamespace);
    description.Element(m_Colour, L"colour", s_lpctNamespace);
    description.Element(m_Sizes, L"sizes", s_lpctNamespace);
    description.Element(m_Shipped, L"shipped", s_lpctNamespace);
    description.Element(m_Address, L"address", s_lpctNamespace);
    description.Element(m_Payment, L"payment", s_lpctNamespace);
    description.Group(m_Pair, s_Pair);
    description.Element(m_Price, s_Price);
    description.Element(m_Via, s_Via);
    description.Wildcard(m_Any, s_Any);
    description.Attribute(m_Number, L"number", L"");
    description.AnyAttribute(m_AnyAttribute, s_AnyAttribute);
}

} // namespace sample
