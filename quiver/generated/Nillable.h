#pragma once

#include "quiver/foundation/Exceptions.h"
#include "quiver/generated/GeneratedClass.h"
#include "quiver/generated/Member.h"

namespace QvXmlLib9
{

/// An element with a simple value that may be nil instead, or that is the root of a document.
///
///     order.GetShipped()->SetValue(date);
///     order.GetShipped()->SetNil(true);
///
/// @tparam TType the struct of the simple type.
/// @tparam TRule a default or fixed value.
template <class TType, class TRule = SNoRule>
class CNillable : public CGenerated<CNillable<TType, TRule>>, public CNillableState
{
public:
    using Value = typename TType::Value;

    explicit CNillable(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"CNillable")
        , CGenerated<CNillable>(lpctElementName)
    {
    }

    const Value& GetValue() const { return m_value.Get(); }

    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void SetValue(const Value& value)
    {
        m_value.Set(value, this->ElementName().c_str());
        ResetNil();
    }

protected:
    friend class CGenerated<CNillable>;

    static void Describe(CClassDescription& description)
    {
        description.Class(QvXmlLib9Data::GroupType_Sequence, QvXmlLib9Data::ElementType_Element, L"", L"");
        description.Text(0, TType::Type());
    }

    void AccessProperty(int, bool bRead, QvVariant& value) override
    {
        m_value.AccessText(bRead, value, this->ElementName().c_str());
    }

    void Init() override
    {
        m_value.Reset();
        ResetNil();
    }

private:
    CRequired<TType, TRule> m_value;
};

/// Makes the object for a root element with a simple value.
/// @tparam lpctNamespace the element's namespace.
template <class TClass, const wchar_t* lpctNamespace>
class CRootIn final : public TClass
{
public:
    explicit CRootIn(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"CRootIn")
        , TClass(lpctElementName)
    {
    }

protected:
    std::wstring GetTargetNamespace() const override { return lpctNamespace; }
};

/// Makes the object for a root element with a simple value that may not be nil.
template <class TClass, const wchar_t* lpctNamespace>
class CValueRootIn final : public TClass
{
public:
    explicit CValueRootIn(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"CValueRootIn")
        , TClass(lpctElementName)
    {
    }

    /// @throws CQvValidationException "Unexpected Attribute [nil] found." in any case.
    void SetNil(bool) override { throw CQvValidationException(L"Unexpected Attribute [nil] found."); }

protected:
    std::wstring GetTargetNamespace() const override { return lpctNamespace; }
};

template <class TClass, const wchar_t* lpctNamespace>
CSmartPtr<CXmlObjectBase> CreateValueRoot(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CValueRootIn<TClass, lpctNamespace>(lpctElementName));
}

/// Makes a root whose element is in another namespace than its type, or whose type has none.
template <class TClass, const wchar_t* lpctNamespace>
CSmartPtr<CXmlObjectBase> CreateForeignRoot(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CRootIn<TClass, lpctNamespace>(lpctElementName));
}

} // namespace QvXmlLib9
