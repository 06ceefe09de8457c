#pragma once

#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/GeneratedClass.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/NamedType.h"

#include <string>

namespace QvXmlLib9
{

/// An element of type xs:anySimpleType: a value of any simple type, and the type if it is said. It is written as
/// `xsi:type`, and the value is one of that type.
///
///     order.GetAmount()->SetValue(L"3.50", L"decimal");
///
/// @tparam pfnTypes the types of the schema, which it may be beside the built-in ones.
/// @tparam TRule a default or fixed value.
template <PfnNamedTypes pfnTypes = &NoNamedTypes, class TRule = SNoRule>
class CTypedValue : public CGenerated<CTypedValue<pfnTypes, TRule>>
{
public:
    explicit CTypedValue(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"CTypedValue")
        , CGenerated<CTypedValue>(lpctElementName)
    {
    }

    const std::wstring& GetValue() const { return m_value.Get(); }

    /// The name of the type that the value says it has, empty if it says none.
    std::wstring GetTypeName() const
    {
        const SNamedType* const pType = this->FindValueType();
        return pType != nullptr ? pType->lpctName : L"";
    }
    std::wstring GetTypeNamespace() const
    {
        const SNamedType* const pType = this->FindValueType();
        return pType != nullptr ? pType->lpctUri : L"";
    }

    /// Sets the value, of the type that was said if any was.
    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void SetValue(const std::wstring& value) { Store(value, this->FindValueType()); }

    /// Sets the value and says its type.
    /// @throws CQvInvalidParamException "There is no simple type [%s] in the namespace [%s]"
    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays, and its type.
    void SetValue(const std::wstring& value, const wchar_t* lpctType,
                  const wchar_t* lpctTypeNamespace = g_lpctXsdNamespace)
    {
        const SNamedType& type = this->FindType(lpctType, lpctTypeNamespace);
        Store(value, &type);
        m_type.Set(this->TypeText(type), L"type");
    }

    /// Says no type any more.
    void ClearType() { m_type.Reset(); }

protected:
    void Describe(CClassDescription& description) const override
    {
        description.Class(QvXmlLib9Data::GroupType_Sequence, QvXmlLib9Data::ElementType_Element, L"", L"");
        description.TypedText(m_value, m_type, pfnTypes());
    }

private:
    void Store(const std::wstring& value, const SNamedType* pType)
    {
        m_value.Set(this->TypedText(value, pType), this->ElementName().c_str());
    }

    CRequired<xs::AnySimpleType, TRule> m_value;
    COptional<xs::QName> m_type;
};

/// The same for an element that may be nil instead, or that is the root of a document.
template <PfnNamedTypes pfnTypes = &NoNamedTypes, class TRule = SNoRule>
class CNillableTypedValue : public CGenerated<CNillableTypedValue<pfnTypes, TRule>, CTypedValue<pfnTypes, TRule>>,
                            public CNillableState
{
    using Base = CTypedValue<pfnTypes, TRule>;

public:
    explicit CNillableTypedValue(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"CNillableTypedValue")
        , CGenerated<CNillableTypedValue, Base>(lpctElementName)
    {
    }

    void SetValue(const std::wstring& value)
    {
        Base::SetValue(value);
        ResetNil();
    }
    void SetValue(const std::wstring& value, const wchar_t* lpctType,
                  const wchar_t* lpctTypeNamespace = g_lpctXsdNamespace)
    {
        Base::SetValue(value, lpctType, lpctTypeNamespace);
        ResetNil();
    }

protected:
    void Init() override
    {
        CGenerated<CNillableTypedValue, Base>::Init();
        ResetNil();
    }
};

} // namespace QvXmlLib9
