#pragma once

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/MemberRecord.h"
#include "quiver/generated/Value.h"

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

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

/// @throws CQvValidationException "The required value [%s] has not been set".
[[noreturn]] QVXMLLIB_API void ThrowNotSet(const wchar_t* lpctName);

/// A value that has to be there before the object is written.
template <class TType, class TRule = SNoRule>
class CRequired : private CValueMember<TType, TRule>
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
        m_bSet = true;
    }

    void Reset() { *this = CRequired(); }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (!bRead)
        {
            m_value = Base::Parsed(variant, lpctName);
            m_bSet = true;
        }
        else if (m_bSet)
            StoreValue(TType::Type(), m_value, variant);
        else
            variant.SetInvalid();
    }

    /// Access for the text of an element, which has to be there.
    /// @throws CQvValidationException on reading it before it was set.
    void AccessText(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (!bRead)
            return Access(bRead, variant, lpctName);
        if (!m_bSet)
            ThrowNotSet(lpctName);
        variant.SetString(ValueText(TType::Type(), m_value));
    }

private:
    Value m_value{};
    bool m_bSet = false;
};

/// A value that may be absent.
template <class TType, class TRule = SNoRule>
class COptional : private CValueMember<TType, TRule>
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
    }

    void Reset() { m_value.reset(); }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
            Base::Store(m_value, variant);
        else if (variant.IsValid())
            m_value = Base::Parsed(variant, lpctName);
        else
            m_value.reset();
    }

private:
    std::optional<Value> m_value;
};

/// An optional attribute with a default or fixed value, which it has where the document says nothing. It is written in
/// any case, unless the context leaves defaults out.
/// @tparam TRule SDefault or SFixed.
template <class TType, class TRule>
class CDefaulted : private CValueMember<TType, TRule>
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
    }

    void Reset() { m_value.reset(); }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
            StoreValue(TType::Type(), Get(), variant);
        else if (variant.IsValid())
            m_value = Base::Parsed(variant, lpctName, false);
        else
            m_value.reset();
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

/// What the members with a child object share: the object, whatever its class.
class QVXMLLIB_API CObjectMember
{
public:
    bool IsSet() const { return m_spObject != nullptr; }
    static bool IsGiven(const CXmlObjectBase* pObject) { return pObject != nullptr; }
    void Reset() { m_spObject = nullptr; }

    /// What the library does with a member that may be empty.
    static const SMemberOperations s_optional;
    /// What it does with one that makes its object when it is asked for.
    static const SMemberOperations s_required;

protected:
    CObjectMember() = default;
    ~CObjectMember() = default;
    CObjectMember(const CObjectMember&) = default;
    CObjectMember& operator=(const CObjectMember&) = default;

    /// The object, made if there is none.
    CXmlObjectBase* Require(PfnCreateObject pfnCreate, const wchar_t* lpctName) const;
    void Access(bool bRead, QvVariant& variant);

    mutable CSmartPtr<CXmlObjectBase> m_spObject;

private:
    static void AccessOptional(void* pMember, bool bRead, QvVariant& variant, const SMemberCall& call);
    static void AccessRequired(void* pMember, bool bRead, QvVariant& variant, const SMemberCall& call);
    static void ResetMember(void* pMember);
    static bool IsMemberSet(const void* pMember);
};

/// A child object that has to be there: it is made when it is asked for the first time.
template <class TClass>
class CRequiredObject : public CObjectMember
{
public:
    /// @param lpctName name of the element that a new object gets.
    CSmartPtr<TClass> Get(const wchar_t* lpctName) const
    {
        return static_cast<TClass*>(Require(&CreateObject<TClass>, lpctName));
    }

    /// @throws CQvInvalidParamException for null and for an object under another element name.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        // A new object that is refused has no other owner.
        const CSmartPtr<TClass> spObject = pObject;
        CheckObject(pObject, lpctName, true);
        m_spObject = pObject;
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
            Require(&CreateObject<TClass>, lpctName);
        CObjectMember::Access(bRead, variant);
    }
};

/// A child object that may be absent.
template <class TClass>
class COptionalObject : public CObjectMember
{
public:
    CSmartPtr<TClass> Get() const { return static_cast<TClass*>(static_cast<CXmlObjectBase*>(m_spObject)); }

    /// @throws CQvInvalidParamException for an object under another element name.
    void Check(const TClass* pObject, const wchar_t* lpctName) const { CheckObject(pObject, lpctName, false); }

    /// Sets the object, or takes it away with null. Throws as Check does.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        const CSmartPtr<TClass> spObject = pObject;
        Check(pObject, lpctName);
        m_spObject = pObject;
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t*) { CObjectMember::Access(bRead, variant); }
};

/// A child object of an abstract or extended type, or an element that others may stand for: any class derived from
/// `TClass`, under any name that its substitution group allows. It is null as long as none is set, also where one has
/// to be there before the object is written: only the program knows its class.
template <class TClass>
class CPolymorphicObject : public CObjectMember
{
public:
    CSmartPtr<TClass> Get() const { return static_cast<TClass*>(static_cast<CXmlObjectBase*>(m_spObject)); }

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
        m_spObject = pObject;
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t*) { CObjectMember::Access(bRead, variant); }
};

/// What the members with a collection share: the collection, whatever its class.
class QVXMLLIB_API CCollectionMember
{
public:
    CCollectionMember(const CCollectionMember&) = delete;
    CCollectionMember& operator=(const CCollectionMember&) = delete;

    /// The next Get makes a new collection; one that is still held outside belongs to nobody from now on.
    void Reset();

    static const SMemberOperations s_operations;

protected:
    CCollectionMember() = default;
    ~CCollectionMember();

    /// @param pOwner who wants to hear of changes, or null.
    void Hold(CXmlCollectionBase* pCollection, IEventSink* pOwner) const;

    mutable CSmartPtr<CXmlCollectionBase> m_spCollection;

private:
    static void AccessMember(void* pMember, bool bRead, QvVariant& variant, const SMemberCall& call);
    static void ResetMember(void* pMember);

    mutable IEventSink* m_pOwner = nullptr;
};

/// A repeated member: a collection that is made when it is asked for the first time.
/// @tparam TCollection CObjectCol, CPolymorphicCol, CGroupCol, CValueCol or CAnyCol.
template <class TCollection>
class CRepeated : public CCollectionMember
{
public:
    /// @param element what the collection is made with: SRepeatedElement, or SWildcard.
    /// @param pOwner who wants to hear of changes, or null.
    template <class TElement>
    CSmartPtr<TCollection> Get(const TElement& element, IEventSink* pOwner = nullptr) const
    {
        if (m_spCollection == nullptr)
            Hold(new TCollection(element), pOwner);
        return static_cast<TCollection*>(static_cast<CXmlCollectionBase*>(m_spCollection));
    }

    template <class TElement>
    void Access(bool bRead, QvVariant& variant, const TElement& element)
    {
        if (bRead)
            variant.SetXmlCollection(Get(element));
    }
};

/// Makes the collection of a repeated member.
template <class TCollection>
CXmlCollectionBase* MakeCollection(const SMemberRecord& record)
{
    return new TCollection(*record.pElement);
}

// --- The library's way to them ---------------------------------------------------------------------------------------

/// What the library does with a member that holds a value.
template <class TMember>
struct SValueOperations
{
    static void Access(void* pMember, bool bRead, QvVariant& value, const SMemberCall& call)
    {
        static_cast<TMember*>(pMember)->Access(bRead, value, call.lpctName);
    }
    static void AccessText(void* pMember, bool bRead, QvVariant& value, const SMemberCall& call)
    {
        static_cast<TMember*>(pMember)->AccessText(bRead, value, call.lpctName);
    }
    static void Reset(void* pMember) { static_cast<TMember*>(pMember)->Reset(); }
    static bool IsSet(const void* pMember) { return static_cast<const TMember*>(pMember)->IsSet(); }

    static constexpr SMemberOperations s_operations{&Access, &Reset, &IsSet};
};

/// The same for the text of an element with simple content.
template <class TMember>
inline constexpr SMemberOperations s_textOperations{
    &SValueOperations<TMember>::AccessText, &SValueOperations<TMember>::Reset, &SValueOperations<TMember>::IsSet};

} // namespace QvXmlLib9
