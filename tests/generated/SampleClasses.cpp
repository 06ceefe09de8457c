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

CAddress::~CAddress() = default;

const SAlternatives& CAddress::Alternatives()
{
    static constexpr SAlternative s_alternatives[] = {
        {false, s_lpctNamespace, L"Address", &CreateObject<CAddress>},
        {false, s_lpctNamespace, L"ForeignAddress", &CreateObject<CForeignAddress>}};
    static constexpr SAlternatives s_all{s_alternatives, 2};
    return s_all;
}

void CAddress::Describe(CClassDescription& description)
{
    description.Class(GroupType_Sequence, ElementType_Element, L"address", s_lpctNamespace);
    description.TypeName(L"Address", s_lpctNamespace);
    description.Element(L"city", s_lpctNamespace, Member_City, xs::String::Type());
}

void CAddress::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_City:
        return m_City.Access(bRead, value, L"city");
    }
}

void CAddress::Init()
{
    m_City.Reset();
}

CForeignAddress::CForeignAddress(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CForeignAddress")
    , CGenerated(lpctElementName)
{
}

CForeignAddress::~CForeignAddress() = default;

void CForeignAddress::Describe(CClassDescription& description)
{
    CAddress::Describe(description);
    description.Class(GroupType_Sequence, ElementType_Element, L"address", s_lpctNamespace);
    description.TypeName(L"ForeignAddress", s_lpctNamespace);
    description.Element(L"country", s_lpctNamespace, Member_Country, xs::String::Type());
    description.OptionalAttribute(L"urgent", L"", Member_Urgent, xs::Boolean::Type());
}

void CForeignAddress::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_Country:
        return m_Country.Access(bRead, value, L"country");
    case Member_Urgent:
        return m_Urgent.Access(bRead, value, L"urgent");
    default:
        return CAddress::AccessProperty(nPropertyIndex, bRead, value);
    }
}

void CForeignAddress::Init()
{
    CAddress::Init();
    m_Country.Reset();
    m_Urgent.Reset();
}

// --- Payment ---

const SRepeatedElement CPayment::s_Note{L"note", s_lpctNamespace, 0, -1};

CPayment::CPayment(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPayment")
    , CGeneratedChoice(lpctElementName)
{
}

CPayment::~CPayment() = default;

void CPayment::Describe(CClassDescription& description)
{
    description.Class(GroupType_Choice, ElementType_Element, L"payment", s_lpctNamespace);
    description.RequireChoice();
    description.OptionalElement(L"card", s_lpctNamespace, Member_Card, SSku::Type());
    description.RepeatedElement(L"note", s_lpctNamespace, Member_Note);
    description.OptionalObject<CAddress>(L"cash", s_lpctNamespace, Member_Cash);
}

void CPayment::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_Card:
        return m_choice.Access(m_Card, bRead, value, L"card");
    case Member_Note:
        return m_choice.Access(m_Note, bRead, value, s_Note);
    case Member_Cash:
        return m_choice.Access(m_Cash, bRead, value, L"cash");
    }
}

void CPayment::Init()
{
    m_Card.Reset();
    m_Note.Reset();
    m_Cash.Reset();
    m_choice.Reset();
}

// --- Pair ---

COrderPair::COrderPair(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"COrderPair")
    , CGenerated(lpctElementName)
{
}

COrderPair::~COrderPair() = default;

void COrderPair::Describe(CClassDescription& description)
{
    description.Class(GroupType_Sequence, ElementType_Pseudo, L"key", s_lpctNamespace);
    description.Element(L"key", s_lpctNamespace, Member_Key, xs::Token::Type());
    description.Element(L"amount", s_lpctNamespace, Member_Amount, xs::Decimal::Type());
}

void COrderPair::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_Key:
        return m_Key.Access(bRead, value, L"key");
    case Member_Amount:
        return m_Amount.Access(bRead, value, L"amount");
    }
}

void COrderPair::Init()
{
    m_Key.Reset();
    m_Amount.Reset();
}

// --- Price ---

CPrice::CPrice(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPrice")
    , CGenerated(lpctElementName)
{
}

CPrice::~CPrice() = default;

void CPrice::Describe(CClassDescription& description)
{
    description.Class(GroupType_Sequence, ElementType_Element, L"price", s_lpctNamespace);
    description.OptionalAttribute(L"tag", L"", Member_Tag, SColour::Type(), s_lpctTag);
    description.Text(Member_Value);
}

void CPrice::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_Value:
        return m_Value.AccessText(bRead, value, L"price");
    case Member_Tag:
        return m_Tag.Access(bRead, value, L"tag");
    }
}

void CPrice::Init()
{
    m_Value.Reset();
    m_Tag.Reset();
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

COrder::~COrder() = default;

void COrder::Describe(CClassDescription& description)
{
    description.Class(GroupType_Sequence, ElementType_Element, L"order", s_lpctNamespace);
    description.Element(L"sku", s_lpctNamespace, Member_Sku, SSku::Type());
    description.Element(L"quantity", s_lpctNamespace, Member_Quantity, SQuantity::Type());
    description.OptionalElement(L"colour", s_lpctNamespace, Member_Colour, SColour::Type());
    description.OptionalElement(L"sizes", s_lpctNamespace, Member_Sizes, SSizes::Type());
    description.OptionalNillableElement<xs::Date>(L"shipped", s_lpctNamespace, Member_Shipped);
    description.PolymorphicObject<CAddress>(L"address", s_lpctNamespace, Member_Address);
    description.Object<CPayment>(L"payment", s_lpctNamespace, Member_Payment);
    description.RepeatedGroup(L"key", Member_Pair);
    description.RepeatedObject(L"price", s_lpctNamespace, Member_Price);
    description.RepeatedObject(L"via", s_lpctNamespace, Member_Via);
    description.RepeatedWildcard(Member_Any, s_Any);
    description.Attribute(L"number", L"", Member_Number, xs::Int::Type());
    description.AnyAttribute(Member_AnyAttribute, s_AnyAttribute);
}

void COrder::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Member_Sku:
        return m_Sku.Access(bRead, value, L"sku");
    case Member_Quantity:
        return m_Quantity.Access(bRead, value, L"quantity");
    case Member_Colour:
        return m_Colour.Access(bRead, value, L"colour");
    case Member_Sizes:
        return m_Sizes.Access(bRead, value, L"sizes");
    case Member_Shipped:
        return m_Shipped.Access(bRead, value, L"shipped");
    case Member_Address:
        return m_Address.Access(bRead, value, L"address");
    case Member_Payment:
        return m_Payment.Access(bRead, value, L"payment");
    case Member_Pair:
        return m_Pair.Access(bRead, value, s_Pair);
    case Member_Price:
        return m_Price.Access(bRead, value, s_Price);
    case Member_Via:
        return m_Via.Access(bRead, value, s_Via);
    case Member_Any:
        return m_Any.Access(bRead, value, s_Any);
    case Member_Number:
        return m_Number.Access(bRead, value, L"number");
    case Member_AnyAttribute:
        return m_AnyAttribute.Access(bRead, value, s_AnyAttribute);
    }
}

void COrder::Init()
{
    m_Sku.Reset();
    m_Quantity.Reset();
    m_Colour.Reset();
    m_Sizes.Reset();
    m_Shipped.Reset();
    m_Address.Reset();
    m_Payment.Reset();
    m_Pair.Reset();
    m_Price.Reset();
    m_Via.Reset();
    m_Any.Reset();
    m_Number.Reset();
    m_AnyAttribute.Reset();
}

} // namespace sample
