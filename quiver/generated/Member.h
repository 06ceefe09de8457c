#pragma once

#include "quiver/collections/Element.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/Value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

/// @file
/// The members of generated classes. Each holds one property and keeps it valid: a value goes in by `Set`, from a
/// program, or by `Access`, from a document, and either way is checked by its type.
///
/// `lpctName` is always the name of the element or attribute, for messages. `Access` is what `AccessProperty` of the
/// class forwards to.

namespace QvXmlLib9
{

/// @name Rules about single values, beside those of their type
/// A rule changes the text that a document has, and refuses values.
/// @{
struct SNoRule
{
    static const wchar_t* Replacement(const std::wstring&) { return nullptr; }
    template <class TType>
    static void Check(const typename TType::Value&, const wchar_t*)
    {
    }
};

/// An element that is there and empty has the default.
template <const wchar_t* lpctDefault>
struct SDefault : SNoRule
{
    static const wchar_t* Replacement(const std::wstring& strText) { return strText.empty() ? lpctDefault : nullptr; }
    static const wchar_t* Text() { return lpctDefault; }
};

/// @throws CQvInvalidValueException "Invalid Value for %s [%s]", which is the only text of a fixed value.
[[noreturn]] QVXMLLIB_API void ThrowNotFixed(const std::wstring& strText, const wchar_t* lpctName,
                                             const wchar_t* lpctFixed);

/// One value and no other. An empty element has it too.
template <const wchar_t* lpctFixed>
struct SFixed
{
    static const wchar_t* Replacement(const std::wstring& strText) { return strText.empty() ? lpctFixed : nullptr; }
    static const wchar_t* Text() { return lpctFixed; }

    template <class TType>
    static void Check(const typename TType::Value& value, const wchar_t* lpctName)
    {
        const std::wstring strText = ValueText(TType::Type(), value);
        if (strText != FixedText<TType>())
            ThrowNotFixed(strText, lpctName, lpctFixed);
    }

private:
    /// As values of the type print: 1.0 is 1. Never destroyed, as objects may be used while the program ends.
    template <class TType>
    static const std::wstring& FixedText()
    {
        static const std::wstring& s_strFixed =
            *new std::wstring(ValueText(TType::Type(), ValueOf<TType>(lpctFixed, L"")));
        return s_strFixed;
    }
};
/// The same for an attribute: an empty one is just empty.
template <const wchar_t* lpctFixed>
struct SFixedAttribute : SFixed<lpctFixed>
{
    static const wchar_t* Replacement(const std::wstring&) { return nullptr; }
};
/// @}

/// What the members with a simple value share.
template <class TType, class TRule>
class CValueMember
{
public:
    using Value = typename TType::Value;

protected:
    /// What is stored for a value that a program gives: text as its type's white space makes it.
    static Value Checked(const Value& value, const wchar_t* lpctName)
    {
        Value checked = CheckedValue<TType>(value, lpctName);
        TRule::template Check<TType>(checked, lpctName);
        return checked;
    }

    /// What a document's text becomes.
    /// @param bElement an empty one has its default; an attribute is just empty.
    static Value Parsed(QvVariant& variant, const wchar_t* lpctName, bool bElement = true)
    {
        std::wstring strText = variant.TakeString();
        const wchar_t* const lpctReplacement = bElement ? TRule::Replacement(strText) : nullptr;
        if (lpctReplacement != nullptr)
            strText = lpctReplacement;
        Value value = ValueOf<TType>(std::move(strText), lpctName);
        TRule::template Check<TType>(value, lpctName);
        return value;
    }

    static void Store(const std::optional<Value>& value, QvVariant& variant)
    {
        if (value)
            StoreValue(TType::Type(), *value, variant);
        else
            variant.SetInvalid();
    }
};

/// Whether values are written with the text that they were read with: a duration is what its fields say, in whatever
/// form, and no form is the proper one; a float has several texts of the same length. Single floats are not among them,
/// since they have a kind of their own on their way to a writer.
template <class TValue>
constexpr bool s_bKeepsText =
    std::is_same_v<TValue, CDateTimeSpan> || std::is_same_v<TValue, std::vector<CDateTimeSpan>> ||
    std::is_same_v<TValue, std::vector<float>>;

/// The text of a value as it was read, for values that are written with it.
template <class TType, bool bKeeps = s_bKeepsText<typename TType::Value>>
class CKeptText
{
protected:
    static std::wstring TextToKeep(const QvVariant& variant) { return TType::Type().Normalize(variant.StringRef()); }
    void Keep(std::wstring strText) { m_strKept = std::move(strText); }

    /// @return false if there is none: the value was set by a program.
    bool StoreKept(QvVariant& variant) const
    {
        if (!m_strKept.empty())
            variant.SetString(m_strKept);
        return !m_strKept.empty();
    }

private:
    std::wstring m_strKept;
};

template <class TType>
class CKeptText<TType, false>
{
protected:
    static std::nullptr_t TextToKeep(const QvVariant&) { return nullptr; }
    void Keep(std::nullptr_t) {}
    bool StoreKept(QvVariant&) const { return false; }
};

/// @throws CQvValidationException "The required value [%s] has not been set".
[[noreturn]] QVXMLLIB_API void ThrowNotSet(const wchar_t* lpctName);

/// A value that has to be there before the object is written.
template <class TType, class TRule = SNoRule>
class CRequired : private CValueMember<TType, TRule>, private CKeptText<TType>
{
    using Base = CValueMember<TType, TRule>;

public:
    using Value = typename Base::Value;

    /// The value; that of `Value{}` as long as it is not set.
    const Value& Get() const { return m_value; }
    bool IsSet() const { return m_bSet; }

    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void Set(const Value& value, const wchar_t* lpctName)
    {
        m_value = Base::Checked(value, lpctName);
        this->Keep({});
        m_bSet = true;
    }

    void Reset() { *this = CRequired(); }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (!bRead)
        {
            auto text = this->TextToKeep(variant);
            m_value = Base::Parsed(variant, lpctName);
            this->Keep(std::move(text));
            m_bSet = true;
        }
        else if (!m_bSet)
            variant.SetInvalid();
        else if (!this->StoreKept(variant))
            StoreValue(TType::Type(), m_value, variant);
    }

    /// Access for the text of an element, which has to be there.
    /// @throws CQvValidationException on reading it before it was set.
    void AccessText(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (!bRead)
            return Access(bRead, variant, lpctName);
        if (!m_bSet)
            ThrowNotSet(lpctName);
        if (!this->StoreKept(variant))
            variant.SetString(ValueText(TType::Type(), m_value));
    }

private:
    Value m_value{};
    bool m_bSet = false;
};

/// A value that may be absent.
template <class TType, class TRule = SNoRule>
class COptional : private CValueMember<TType, TRule>, private CKeptText<TType>
{
    using Base = CValueMember<TType, TRule>;

public:
    using Value = typename Base::Value;

    const std::optional<Value>& Get() const { return m_value; }
    bool IsSet() const { return m_value.has_value(); }
    static bool IsGiven(const std::optional<Value>& value) { return value.has_value(); }

    /// @throws CQvInvalidValueException for a value that the type refuses.
    void Check(const std::optional<Value>& value, const wchar_t* lpctName) const
    {
        if (value)
            Base::Checked(*value, lpctName);
    }

    /// Sets the value, or takes it away. Throws as Check does; the old one stays then.
    void Set(const std::optional<Value>& value, const wchar_t* lpctName)
    {
        m_value = value ? std::optional<Value>(Base::Checked(*value, lpctName)) : std::nullopt;
        this->Keep({});
    }

    void Reset()
    {
        m_value.reset();
        this->Keep({});
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
        {
            if (!this->StoreKept(variant))
                Base::Store(m_value, variant);
        }
        else if (variant.IsValid())
        {
            auto text = this->TextToKeep(variant);
            m_value = Base::Parsed(variant, lpctName);
            this->Keep(std::move(text));
        }
        else
            Reset();
    }

private:
    std::optional<Value> m_value;
};

/// An optional attribute with a default or fixed value, which it has where the document says nothing. It is written in
/// any case, unless the context leaves defaults out.
/// @tparam TRule SDefault or SFixed.
template <class TType, class TRule>
class CDefaulted : private CValueMember<TType, TRule>, private CKeptText<TType>
{
    using Base = CValueMember<TType, TRule>;

public:
    using Value = typename Base::Value;

    const Value& Get() const { return m_value ? *m_value : Default(); }
    /// Whether the value was given; it may still be that of the schema.
    bool IsSet() const { return m_value.has_value(); }

    /// Sets the value, or goes back to that of the schema.
    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void Set(const std::optional<Value>& value, const wchar_t* lpctName)
    {
        m_value = value ? std::optional<Value>(Base::Checked(*value, lpctName)) : std::nullopt;
        this->Keep({});
    }

    void Reset()
    {
        m_value.reset();
        this->Keep({});
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
        {
            if (!this->StoreKept(variant))
                StoreValue(TType::Type(), Get(), variant);
        }
        else if (variant.IsValid())
        {
            auto text = this->TextToKeep(variant);
            m_value = Base::Parsed(variant, lpctName, false);
            this->Keep(std::move(text));
        }
        else
            Reset();
    }

private:
    /// Never destroyed, so that objects can be written while the program ends.
    static const Value& Default()
    {
        static const Value& s_default = *new Value(ValueOf<TType>(TRule::Text(), L""));
        return s_default;
    }

    std::optional<Value> m_value;
};

// --- Restriction -----------------------------------------------------------------------------------------------------

/// The text of a value on its way between a member and a document.
QVXMLLIB_API std::wstring PropertyText(const QvVariant& variant);

/// What a class says of a member that it inherits and whose values it restricts: values that pass through are checked
/// by the narrower type too.
/// @param variant what `AccessProperty` of the base takes or gave.
/// @throws CQvInvalidValueException
template <class TType, class TRule = SNoRule>
void CheckRestricted(const QvVariant& variant, const wchar_t* lpctName)
{
    if (!variant.IsValid())
        return;
    std::wstring strText = PropertyText(variant);
    if (const wchar_t* const lpctReplacement = TRule::Replacement(strText))
        strText = lpctReplacement;
    TRule::template Check<TType>(ValueOf<TType>(std::move(strText), lpctName), lpctName);
}

// --- Objects ---------------------------------------------------------------------------------------------------------

/// Checks an object that a program gives to a property, with the words of the setters' checks of CXmlObjectBase.
/// @param lpctName name that its element has to have.
/// @param bRequired null is refused.
/// @throws CQvInvalidParamException
QVXMLLIB_API void CheckObject(const CXmlObjectBase* pObject, const wchar_t* lpctName, bool bRequired);

/// An element that a wildcard lets through may have any name. Whether the wildcard does is asked when it is written.
inline void CheckObject(const CElement*, const wchar_t*, bool)
{
}

/// The same for an object that others may stand for.
QVXMLLIB_API void CheckAlternative(const CXmlObjectBase* pObject, const wchar_t* lpctName,
                                   const SAlternatives& alternatives);

/// The object in a variant that a record hands over.
template <class TClass>
TClass* ObjectIn(const QvVariant& variant)
{
    return static_cast<TClass*>(variant.XmlObjectPtr());
}

/// A child object that has to be there: it is made when it is asked for the first time.
template <class TClass>
class CRequiredObject
{
public:
    /// @param lpctName name of the element that a new object gets.
    CSmartPtr<TClass> Get(const wchar_t* lpctName) const
    {
        if (m_spObject == nullptr)
            m_spObject = new TClass(lpctName);
        return m_spObject;
    }

    bool IsSet() const { return m_spObject != nullptr; }

    /// @throws CQvInvalidParamException for null and for an object under another element name.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        // A new object that is refused has no other owner.
        const CSmartPtr<TClass> spObject = pObject;
        CheckObject(pObject, lpctName, true);
        m_spObject = spObject;
    }

    void Reset() { m_spObject = nullptr; }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
            variant.SetXmlObject(Get(lpctName));
        else
            m_spObject = ObjectIn<TClass>(variant);
    }

private:
    mutable CSmartPtr<TClass> m_spObject;
};

/// A child object that may be absent.
template <class TClass>
class COptionalObject
{
public:
    CSmartPtr<TClass> Get() const { return m_spObject; }
    bool IsSet() const { return m_spObject != nullptr; }
    static bool IsGiven(const TClass* pObject) { return pObject != nullptr; }

    /// @throws CQvInvalidParamException for an object under another element name.
    void Check(const TClass* pObject, const wchar_t* lpctName) const { CheckObject(pObject, lpctName, false); }

    /// Sets the object, or takes it away with null. Throws as Check does.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        const CSmartPtr<TClass> spObject = pObject;
        Check(pObject, lpctName);
        m_spObject = spObject;
    }

    void Reset() { m_spObject = nullptr; }

    void Access(bool bRead, QvVariant& variant, const wchar_t*)
    {
        if (bRead)
            variant.SetXmlObject(m_spObject);
        else
            m_spObject = ObjectIn<TClass>(variant);
    }

private:
    CSmartPtr<TClass> m_spObject;
};

/// A child object of an abstract or extended type, or an element that others may stand for: any class derived from
/// `TClass`, under any name that its substitution group allows. It is null as long as none is set, also where one has
/// to be there before the object is written: only the program knows its class.
template <class TClass>
class CPolymorphicObject
{
public:
    CSmartPtr<TClass> Get() const { return m_spObject; }
    bool IsSet() const { return m_spObject != nullptr; }
    static bool IsGiven(const TClass* pObject) { return pObject != nullptr; }

    /// @throws CQvInvalidParamException for an object that may not stand there under its element name.
    void Check(const TClass* pObject, const wchar_t* lpctName) const
    {
        CheckAlternative(pObject, lpctName, TClass::Alternatives());
    }

    /// Sets the object, or takes it away with null. Throws as Check does.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        const CSmartPtr<TClass> spObject = pObject;
        Check(pObject, lpctName);
        m_spObject = spObject;
    }

    void Reset() { m_spObject = nullptr; }

    void Access(bool bRead, QvVariant& variant, const wchar_t*)
    {
        if (bRead)
            variant.SetXmlObject(m_spObject);
        else
            m_spObject = ObjectIn<TClass>(variant);
    }

private:
    CSmartPtr<TClass> m_spObject;
};

/// A repeated member: a collection that is made when it is asked for the first time.
/// @tparam TCollection CObjectCol, CPolymorphicCol, CGroupCol, CValueCol or CAnyCol.
template <class TCollection>
class CRepeated
{
public:
    CRepeated() = default;
    CRepeated(const CRepeated&) = delete;
    CRepeated& operator=(const CRepeated&) = delete;
    ~CRepeated() { Reset(); }

    /// @param element what the collection is made with: SRepeatedElement, or SWildcard.
    /// @param pOwner who wants to hear of changes, or null.
    template <class TElement>
    CSmartPtr<TCollection> Get(const TElement& element, IEventSink* pOwner = nullptr) const
    {
        if (m_spCollection == nullptr)
        {
            m_spCollection = new TCollection(element);
            m_spCollection->SetOwner(pOwner);
        }
        return m_spCollection;
    }

    /// The next Get makes a new collection; one that is still held outside belongs to nobody from now on.
    void Reset()
    {
        if (m_spCollection != nullptr)
            m_spCollection->SetOwner(nullptr);
        m_spCollection = nullptr;
    }

    template <class TElement>
    void Access(bool bRead, QvVariant& variant, const TElement& element)
    {
        if (bRead)
            variant.SetXmlCollection(Get(element));
    }

private:
    mutable CSmartPtr<TCollection> m_spCollection;
};

} // namespace QvXmlLib9
