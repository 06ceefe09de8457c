#pragma once

// Classes as quiver-gen writes them, with one of each kind of member: what the tests of their support stand on.

#include "quiver/generated/Generated.h"

namespace sample
{

inline constexpr wchar_t s_lpctNamespace[] = L"urn:sample";

enum class EColour : int
{
    Red,
    DarkBlue
};

struct SColour
{
    using Value = EColour;
    static const QvXmlLib9::CSimpleType& Type();
};

struct SSku
{
    using Value = std::wstring;
    static const QvXmlLib9::CSimpleType& Type();
};

struct SQuantity
{
    using Value = int;
    static const QvXmlLib9::CSimpleType& Type();
};

struct SSizes
{
    using Value = std::vector<int>;
    using Item = QvXmlLib9::xs::Int;
    static const QvXmlLib9::CSimpleType& Type();
};

/// A named type that CExpress extends.
class CAddress : public QvXmlLib9::CGenerated<CAddress>
{
public:
    explicit CAddress(const wchar_t* lpctElementName = L"address");
    static const QvXmlLib9::SAlternatives& Alternatives();

    const std::wstring& GetCity() const { return m_City.Get(); }
    void SetCity(const std::wstring& value) { m_City.Set(value, L"city"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    QvXmlLib9::CRequired<QvXmlLib9::xs::String> m_City;
};

class CForeignAddress : public QvXmlLib9::CGenerated<CForeignAddress, CAddress>
{
public:
    explicit CForeignAddress(const wchar_t* lpctElementName = L"address");

    const std::wstring& GetCountry() const { return m_Country.Get(); }
    void SetCountry(const std::wstring& value) { m_Country.Set(value, L"country"); }
    const std::optional<bool>& GetUrgent() const { return m_Urgent.Get(); }
    void SetUrgent(const std::optional<bool>& value) { m_Urgent.Set(value, L"urgent"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    QvXmlLib9::CRequired<QvXmlLib9::xs::String> m_Country;
    QvXmlLib9::COptional<QvXmlLib9::xs::Boolean> m_Urgent;
};

/// A choice with an element of its own: a card, a few notes, or cash.
class CPayment : public QvXmlLib9::CGeneratedChoice<CPayment>
{
public:
    explicit CPayment(const wchar_t* lpctElementName = L"payment");

    const std::optional<std::wstring>& GetCard() const { return m_Card.Get(); }
    void SetCard(const std::optional<std::wstring>& value) { m_choice.Set(m_Card, value, L"card"); }
    CSmartPtr<QvXmlLib9::CValueCol<QvXmlLib9::xs::Int>> GetNote() const { return m_choice.Get(m_Note, s_Note); }
    CSmartPtr<CAddress> GetCash() const { return m_Cash.Get(); }
    void SetCash(CAddress* pValue) { m_choice.Set(m_Cash, pValue, L"cash"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    static const QvXmlLib9::SRepeatedElement s_Note;

    QvXmlLib9::COptional<SSku> m_Card;
    QvXmlLib9::CRepeated<QvXmlLib9::CValueCol<QvXmlLib9::xs::Int>> m_Note;
    QvXmlLib9::COptionalObject<CAddress> m_Cash;
};

/// A nested group.
class COrderPair : public QvXmlLib9::CGenerated<COrderPair>
{
public:
    explicit COrderPair(const wchar_t* lpctElementName = L"key");

    const std::wstring& GetKey() const { return m_Key.Get(); }
    void SetKey(const std::wstring& value) { m_Key.Set(value, L"key"); }
    const QvXmlLib9::CDecimal& GetAmount() const { return m_Amount.Get(); }
    void SetAmount(const QvXmlLib9::CDecimal& value) { m_Amount.Set(value, L"amount"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    QvXmlLib9::CRequired<QvXmlLib9::xs::Token> m_Key;
    QvXmlLib9::CRequired<QvXmlLib9::xs::Decimal> m_Amount;
};

/// Simple content with an attribute.
class CPrice : public QvXmlLib9::CGenerated<CPrice>
{
public:
    explicit CPrice(const wchar_t* lpctElementName = L"price");

    double GetValue() const { return m_Value.Get(); }
    void SetValue(double value) { m_Value.Set(value, L"price"); }
    EColour GetTag() const { return m_Tag.Get(); }
    void SetTag(const std::optional<EColour>& value) { m_Tag.Set(value, L"tag"); }
    bool HasTag() const { return m_Tag.IsSet(); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    static constexpr wchar_t s_lpctTag[] = L"dark blue";

    QvXmlLib9::CRequired<QvXmlLib9::xs::Double> m_Value;
    QvXmlLib9::CDefaulted<SColour, QvXmlLib9::SDefault<s_lpctTag>> m_Tag;
};

/// The root, with a member of each kind.
class COrder : public QvXmlLib9::CGenerated<COrder>
{
public:
    explicit COrder(const wchar_t* lpctElementName = L"order");

    const std::wstring& GetSku() const { return m_Sku.Get(); }
    void SetSku(const std::wstring& value) { m_Sku.Set(value, L"sku"); }
    int GetQuantity() const { return m_Quantity.Get(); }
    void SetQuantity(int value) { m_Quantity.Set(value, L"quantity"); }
    const std::optional<EColour>& GetColour() const { return m_Colour.Get(); }
    void SetColour(const std::optional<EColour>& value) { m_Colour.Set(value, L"colour"); }
    const std::optional<std::vector<int>>& GetSizes() const { return m_Sizes.Get(); }
    void SetSizes(const std::optional<std::vector<int>>& value) { m_Sizes.Set(value, L"sizes"); }
    CSmartPtr<QvXmlLib9::CNillable<QvXmlLib9::xs::Date>> GetShipped() const { return m_Shipped.Get(); }
    void SetShipped(QvXmlLib9::CNillable<QvXmlLib9::xs::Date>* pValue) { m_Shipped.Set(pValue, L"shipped"); }
    CSmartPtr<CAddress> GetAddress() const { return m_Address.Get(); }
    void SetAddress(CAddress* pValue) { m_Address.Set(pValue, L"address"); }
    CSmartPtr<CPayment> GetPayment() const { return m_Payment.Get(L"payment"); }
    void SetPayment(CPayment* pValue) { m_Payment.Set(pValue, L"payment"); }
    CSmartPtr<QvXmlLib9::CGroupCol<COrderPair>> GetPair() const { return m_Pair.Get(s_Pair); }
    CSmartPtr<QvXmlLib9::CObjectCol<CPrice>> GetPrice() const { return m_Price.Get(s_Price); }
    CSmartPtr<QvXmlLib9::CPolymorphicCol<CAddress>> GetVia() const { return m_Via.Get(s_Via); }
    CSmartPtr<QvXmlLib9::CAnyCol> GetAny() const { return m_Any.Get(s_Any); }
    CSmartPtr<QvXmlLib9::CAttributeCol> GetAnyAttribute() const { return m_AnyAttribute.Get(s_AnyAttribute); }
    int GetNumber() const { return m_Number.Get(); }
    void SetNumber(int value) { m_Number.Set(value, L"number"); }

protected:
    void Describe(QvXmlLib9::CClassDescription& description) const override;

private:
    static const QvXmlLib9::SRepeatedElement s_Pair;
    static const QvXmlLib9::SRepeatedElement s_Price;
    static const QvXmlLib9::SRepeatedElement s_Via;
    static const QvXmlLib9::SWildcard s_Any;
    static const QvXmlLib9::SWildcard s_AnyAttribute;

    QvXmlLib9::CRequired<SSku> m_Sku;
    QvXmlLib9::CRequired<SQuantity> m_Quantity;
    QvXmlLib9::COptional<SColour> m_Colour;
    QvXmlLib9::COptional<SSizes> m_Sizes;
    QvXmlLib9::COptionalObject<QvXmlLib9::CNillable<QvXmlLib9::xs::Date>> m_Shipped;
    QvXmlLib9::CPolymorphicObject<CAddress> m_Address;
    QvXmlLib9::CRequiredObject<CPayment> m_Payment;
    QvXmlLib9::CRepeated<QvXmlLib9::CGroupCol<COrderPair>> m_Pair;
    QvXmlLib9::CRepeated<QvXmlLib9::CObjectCol<CPrice>> m_Price;
    QvXmlLib9::CRepeated<QvXmlLib9::CPolymorphicCol<CAddress>> m_Via;
    QvXmlLib9::CRepeated<QvXmlLib9::CAnyCol> m_Any;
    QvXmlLib9::CRequired<QvXmlLib9::xs::Int> m_Number;
    QvXmlLib9::CAnyAttributes m_AnyAttribute;
};

} // namespace sample
