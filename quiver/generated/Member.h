#pragma once

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlObjectBase.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/DocumentValue.h"
#include "quiver/generated/MemberRecord.h"
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

/// Whether a text is the name that a schema has, with whatever prefix; false for types of other values.
inline bool IsSameName(const CSimpleType& type, const std::wstring& strText, const wchar_t* lpctName)
{
    return type.HasPrefixes() && type.IsSame(strText, lpctName);
}

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
        if (strText != FixedText<TType>() && !IsSameName(TType::Type(), strText, lpctFixed))
            ThrowNotFixed(strText, lpctName, lpctFixed);
    }

private:
    /// As values of the type print: 1.0 is 1. Never destroyed, as objects may be used while the program ends.
    template <class TType>
    static const std::wstring& FixedText()
    {
        static const std::wstring& s_strFixed =
            *new std::wstring(ValueText(TType::Type(), SchemaValueOf<TType>(lpctFixed)));
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

/// The text of a value on its way between a member and a document.
QVXMLLIB_API std::wstring PropertyText(const QvVariant& variant);

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
            return SchemaValueOf<TType>(lpctReplacement);
        Value value = ValueOf<TType>(std::move(strText), lpctName);
        TRule::template Check<TType>(value, lpctName);
        return value;
    }

    /// Stores a document's text.
    template <class TKept>
    static void Read(QvVariant& variant, const wchar_t* lpctName, CKept<TKept, Value>& kept, bool bElement = true)
    {
        // Of the rules only a default lets every text be that is not empty.
        std::string_view svUtf8;
        if constexpr (std::is_base_of_v<SNoRule, TRule>)
        {
            const bool bAsItStands =
                variant.GetUtf8(svUtf8) && (std::is_same_v<SNoRule, TRule> || !bElement || !svUtf8.empty());
            if (bAsItStands && kept.Read(TType::Type(), svUtf8))
                return;
        }
        std::wstring strText;
        if constexpr (s_bKeepsText<Value>)
            strText = TType::Type().Normalize(PropertyText(variant));
        kept.Set(Parsed(variant, lpctName, bElement));
        kept.KeepText(std::move(strText));
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
    const Value& Get() const { return m_value.Get(); }
    bool IsSet() const { return m_bSet; }

    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void Set(const Value& value, const wchar_t* lpctName)
    {
        m_value.Set(Base::Checked(value, lpctName));
        m_bSet = true;
    }

    void Reset()
    {
        if (m_bSet)
            *this = CRequired();
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (!bRead)
        {
            Base::Read(variant, lpctName, m_value);
            m_bSet = true;
        }
        else if (m_bSet)
            StoreKept(TType::Type(), m_value, variant);
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
        const std::wstring* const pstrText = m_value.GetText();
        variant.SetString(pstrText != nullptr ? *pstrText : ValueText(TType::Type(), m_value.Get()));
    }

private:
    CKept<Value, Value> m_value;
    bool m_bSet = false;
};

/// A value that may be absent.
template <class TType, class TRule = SNoRule>
class COptional : private CValueMember<TType, TRule>
{
    using Base = CValueMember<TType, TRule>;

public:
    using Value = typename Base::Value;

    const std::optional<Value>& Get() const { return m_value.Get(); }
    bool IsSet() const { return m_value.IsGiven(); }
    static bool IsGiven(const std::optional<Value>& value) { return value.has_value(); }

    /// @throws CQvInvalidValueException for a value that the type refuses.
    void Check(const std::optional<Value>& value, const wchar_t* lpctName) const
    {
        if (value)
            Base::Checked(*value, lpctName);
    }

    /// Sets the value, or takes it away. @throws what Check throws; the old one stays then.
    void Set(const std::optional<Value>& value, const wchar_t* lpctName)
    {
        m_value.Set(value ? std::optional<Value>(Base::Checked(*value, lpctName)) : std::nullopt);
    }

    void Reset()
    {
        if (IsSet())
            m_value.Set(std::nullopt);
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead)
            StoreKept(TType::Type(), m_value, variant);
        else if (variant.IsValid())
            Base::Read(variant, lpctName, m_value);
        else
            Reset();
    }

private:
    CKept<std::optional<Value>, Value> m_value;
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

    const Value& Get() const { return IsSet() ? *m_value.Get() : Default(); }
    /// Whether the value was given; it may still be that of the schema.
    bool IsSet() const { return m_value.IsGiven(); }

    /// Sets the value, or goes back to that of the schema.
    /// @throws CQvInvalidValueException for a value that the type refuses; the old one stays.
    void Set(const std::optional<Value>& value, const wchar_t* lpctName)
    {
        m_value.Set(value ? std::optional<Value>(Base::Checked(*value, lpctName)) : std::nullopt);
    }

    void Reset()
    {
        if (IsSet())
            m_value.Set(std::nullopt);
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName)
    {
        if (bRead && IsSet())
            StoreKept(TType::Type(), m_value, variant);
        else if (bRead)
            StoreValue(TType::Type(), Default(), variant);
        else if (variant.IsValid())
            Base::Read(variant, lpctName, m_value, false);
        else
            Reset();
    }

private:
    /// Never destroyed, so that objects can be written while the program ends.
    static const Value& Default()
    {
        static const Value& s_default = *new Value(SchemaValueOf<TType>(TRule::Text()));
        return s_default;
    }

    CKept<std::optional<Value>, Value> m_value;
};

// --- Restriction -----------------------------------------------------------------------------------------------------

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
    {
        const CNameScope scope;
        ValueOf<TType>(lpctReplacement, lpctName);
        return;
    }
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
    CXmlObjectBase* Require(const SCreator& creator, const wchar_t* lpctName) const;
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

/// An object or null. `TCheck` is called with the object and the name of the property, and throws for one that may not
/// stand there.
template <class TClass, class TCheck>
class CHeldObject : public CObjectMember
{
public:
    CSmartPtr<TClass> Get() const { return static_cast<TClass*>(static_cast<CXmlObjectBase*>(m_spObject)); }

    /// @throws CQvInvalidParamException for an object that may not stand there under its element name.
    void Check(const TClass* pObject, const wchar_t* lpctName) const { TCheck()(pObject, lpctName); }

    /// Sets the object, or takes it away with null. @throws what Check throws.
    void Set(TClass* pObject, const wchar_t* lpctName)
    {
        const CSmartPtr<TClass> spObject = pObject;
        Check(pObject, lpctName);
        m_spObject = pObject;
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t*) { CObjectMember::Access(bRead, variant); }
};

struct SOwnNameCheck
{
    template <class TClass>
    void operator()(const TClass* pObject, const wchar_t* lpctName) const
    {
        CheckObject(pObject, lpctName, false);
    }
};

template <class TClass>
struct SAlternativeCheck
{
    void operator()(const TClass* pObject, const wchar_t* lpctName) const
    {
        CheckAlternative(pObject, lpctName, TClass::Alternatives());
    }
};

/// A child object that may be absent; it stands under its own name only.
template <class TClass>
class COptionalObject : public CHeldObject<TClass, SOwnNameCheck>
{
};

/// A child object of an abstract or extended type, or an element that others may stand for: any class derived from
/// `TClass`, under any name that its substitution group allows. It is null as long as none is set, also where one has
/// to be there before the object is written: only the program knows its class.
template <class TClass>
class CPolymorphicObject : public CHeldObject<TClass, SAlternativeCheck<TClass>>
{
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
