#pragma once

#include "quiver/collections/Attribute.h"
#include "quiver/collections/Element.h"
#include "quiver/collections/QvIterator.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/Prefixes.h"
#include "quiver/generated/Value.h"
#include "quiver/generated/Wildcard.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// @file
/// The collections of generated classes: typed shells over one body for each kind of item.
///
///     for (CItem& item : *order.GetItem())
///         nTotal += item.GetQuantity();
///     order.GetItem()->Add(new CItem);

namespace QvXmlLib9
{

/// What a repeated element is called and how often it may stand there. A constant; the texts are literals.
struct SRepeatedElement
{
    const wchar_t* lpctName; ///< of a nested group, what a message calls it
    const wchar_t* lpctNamespace;
    int nMin;
    int nMax; ///< -1 for unbounded
};

/// How many items a collection may have. A class that restricts another one may narrow it.
class QVXMLLIB_API CCollectionCounts
{
public:
    /// @param nMax -1 for unbounded.
    void RestrictCounts(int nMin, int nMax)
    {
        m_nMin = nMin;
        m_nMax = nMax;
    }

protected:
    CCollectionCounts(int nMin, int nMax)
        : m_nMin(nMin)
        , m_nMax(nMax)
    {
    }
    virtual ~CCollectionCounts();

    bool IsAllowed(int nCount, const CXmlSerializationContext& context) const;
    /// @throws CQvValidationException as CXmlCollectionBase::ValidateCount does.
    void Throw_IfNotAllowed(int nCount, const std::wstring& strName, const CXmlSerializationContext& context) const;

private:
    int m_nMin;
    int m_nMax;
};

/// Narrows how many items the collection in a property may have, for a class that restricts the one that holds it.
QVXMLLIB_API void RestrictCounts(const QvVariant& value, int nMin, int nMax);

/// The body of the collections of objects.
class QVXMLLIB_API CObjectColBase : public CXmlCollection, public CCollectionCounts
{
public:
    void ValidateCount(const CXmlSerializationContext& context) const override;
    bool IsValidCount(const CXmlSerializationContext& context) const override;

protected:
    CObjectColBase(const SRepeatedElement& element, SCreator creator);
    ~CObjectColBase() override;

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;
    CXmlElement* FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    /// Reads one item at the cursor, which is an element.
    /// @param spItem becomes the item, null if there is none.
    /// @return the element behind it.
    virtual CXmlElement* ReadItem(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                  CSmartPtr<CXmlObjectBase>& spItem);

    /// Gets an item ready to be written.
    /// @return the namespace of its element.
    virtual const wchar_t* PrepareItem(const CXmlObjectBase& item) const;

    /// @throws CQvInvalidParamException for an object that may not stand there under its element name.
    virtual void CheckItem(const CXmlObjectBase* pItem) const;

    const SRepeatedElement& Element() const { return m_element; }
    SCreator Creator() const { return m_creator; }

private:
    bool IsItem(const CXmlSerializationContext& context, const CXmlElement& element) const;

    SRepeatedElement m_element;
    SCreator m_creator;
};

/// The typed interface of a collection of objects.
/// @tparam TBase the body.
template <class TClass, class TBase>
class CTypedCol : public TBase
{
public:
    /// Adds an item at the end and returns it.
    /// @throws CQvInvalidParamException for null and for an object under another element name.
    CSmartPtr<TClass> Add(TClass* pItem)
    {
        const CSmartPtr<TClass> spItem = pItem;
        this->CheckItem(pItem);
        this->AppendItem(pItem);
        return spItem;
    }

    /// Adds an item so that it gets a position, 0 to GetCount().
    CSmartPtr<TClass> AddAt(int nIndex, TClass* pItem)
    {
        const CSmartPtr<TClass> spItem = pItem;
        this->CheckItem(pItem);
        this->AddItemAt(nIndex, pItem);
        return spItem;
    }

    /// The item at a position, 0 to GetCount() - 1.
    /// @throws CQvInvalidParamException if there is none.
    CSmartPtr<TClass> Item(int nIndex) const { return static_cast<TClass*>(this->ItemAt(nIndex)); }

    CQvIterator<TClass> begin() const { return CQvIterator<TClass>(this->GetHeadNode()); }
    CQvIterator<TClass> end() const { return CQvIterator<TClass>(nullptr); }

protected:
    template <class... TArguments>
    explicit CTypedCol(const TArguments&... arguments)
        : CInstanceMonitor(L"") // never used: the most derived class gives its name
        , TBase(arguments...)
    {
    }
};

/// Repeated elements with objects of one class.
template <class TClass>
class CObjectCol : public CTypedCol<TClass, CObjectColBase>
{
public:
    explicit CObjectCol(const SRepeatedElement& element)
        : CInstanceMonitor(L"CObjectCol")
        , CTypedCol<TClass, CObjectColBase>(element, &CreateObject<TClass>)
    {
    }

    /// Adds a new item at the end and returns it.
    CSmartPtr<TClass> AddNew() { return this->Add(new TClass(this->Element().lpctName)); }
};

/// The body of the collections of nested groups.
class QVXMLLIB_API CGroupColBase : public CObjectColBase
{
protected:
    CGroupColBase(const SRepeatedElement& element, SCreator creator);

    CXmlElement* ReadItem(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                          CSmartPtr<CXmlObjectBase>& spItem) override;
    void CheckItem(const CXmlObjectBase* pItem) const override;
};

/// A nested group that repeats. It ends where an item finds nothing that is its own.
template <class TClass>
class CGroupCol : public CTypedCol<TClass, CGroupColBase>
{
public:
    explicit CGroupCol(const SRepeatedElement& element)
        : CInstanceMonitor(L"CGroupCol")
        , CTypedCol<TClass, CGroupColBase>(element, &CreateObject<TClass>)
    {
    }

    /// Adds a new item at the end and returns it.
    CSmartPtr<TClass> AddNew() { return this->Add(new TClass(this->Element().lpctName)); }
};

/// The body of the collections of objects whose class their name or `xsi:type` decides.
class QVXMLLIB_API CPolymorphicColBase : public CObjectColBase
{
protected:
    CPolymorphicColBase(const SRepeatedElement& element, SCreator creator, const SAlternatives& alternatives);

    CXmlElement* ReadItem(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                          CSmartPtr<CXmlObjectBase>& spItem) override;
    const wchar_t* PrepareItem(const CXmlObjectBase& item) const override;
    void CheckItem(const CXmlObjectBase* pItem) const override;

private:
    SPlace m_place;
};

/// Repeated elements with objects of a class or of one derived from it.
template <class TClass>
class CPolymorphicCol : public CTypedCol<TClass, CPolymorphicColBase>
{
public:
    explicit CPolymorphicCol(const SRepeatedElement& element)
        : CInstanceMonitor(L"CPolymorphicCol")
        , CTypedCol<TClass, CPolymorphicColBase>(element, &CreateObject<TClass>, TClass::Alternatives())
    {
    }
};

/// Repeated elements that the schema does not describe.
class QVXMLLIB_API CAnyCol : public CElementCol, public CCollectionCounts
{
public:
    explicit CAnyCol(const SWildcard& wildcard);
    ~CAnyCol() override;

    void ValidateCount(const CXmlSerializationContext& context) const override;
    bool IsValidCount(const CXmlSerializationContext& context) const override;

protected:
    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// Stops at the first element that the wildcard does not let through.
    CXmlElement* FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

private:
    SWildcard m_wildcard;
};

/// The attributes of a class that the schema lets through without describing them.
class QVXMLLIB_API CAnyAttributes
{
public:
    static const SMemberOperations s_operations;

    /// Never null.
    CSmartPtr<CAttributeCol> Get(const SWildcard&) const
    {
        if (m_spAttributes == nullptr)
            m_spAttributes = new CAttributeCol(L"", L"##any", L"");
        return m_spAttributes;
    }

    void Reset() { m_spAttributes = nullptr; }

    void Access(bool bRead, QvVariant& variant, const SWildcard& wildcard)
    {
        if (bRead)
            variant.SetXmlCollection(Get(wildcard));
    }

private:
    mutable CSmartPtr<CAttributeCol> m_spAttributes;
};

// --- Simple values ---------------------------------------------------------------------------------------------------

/// The body of the collections of simple values.
class QVXMLLIB_API CValueColBase : public CXmlCollectionBase, public CCollectionCounts
{
public:
    void ValidateCount(const CXmlSerializationContext& context) const override;
    bool IsValidCount(const CXmlSerializationContext& context) const override;

    /// See CGeneratedObject::DeclarePrefix.
    void DeclarePrefix(const wchar_t* lpctPrefix, const wchar_t* lpctUri) { m_prefixes.Set(lpctPrefix, lpctUri); }
    std::wstring GetNamespaceOfPrefix(const wchar_t* lpctPrefix) const;

protected:
    explicit CValueColBase(const SRepeatedElement& element);
    ~CValueColBase() override;

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;
    CXmlElement* FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    virtual const CSimpleType& GetType() const = 0;
    /// Adds what a document's text stands for.
    virtual void AddText(QvVariant& text) = 0;
    virtual void StoreItem(std::size_t nIndex, QvVariant& value) const = 0;

    void Throw_IfNoPlace(int nIndex) const;
    const wchar_t* Name() const { return m_element.lpctName; }

private:
    SRepeatedElement m_element;
    CPrefixes m_prefixes;
};

/// The texts that the items of a collection were read with, for values that are written with them.
template <bool bKeeps>
class CKeptTexts
{
public:
    void Insert(int nIndex, std::wstring strText) { m_texts.insert(m_texts.begin() + nIndex, std::move(strText)); }
    void Remove(int nIndex) { m_texts.erase(m_texts.begin() + nIndex); }
    void Clear() { m_texts.clear(); }
    /// @return null if there is none: the value was set by a program.
    const std::wstring* Get(std::size_t nIndex) const { return m_texts[nIndex].empty() ? nullptr : &m_texts[nIndex]; }

private:
    std::vector<std::wstring> m_texts;
};

template <>
class CKeptTexts<false>
{
public:
    static void Insert(int, const std::wstring&) {}
    static void Remove(int) {}
    static void Clear() {}
    static const std::wstring* Get(std::size_t) { return nullptr; }
};

/// Repeated elements with values of a simple type.
/// @tparam TType the struct of the type.
/// @tparam TRule a default or fixed value.
template <class TType, class TRule = SNoRule>
class CValueCol : public CValueColBase,
                  private CValueMember<TType, TRule>,
                  private CKeptTexts<s_bKeepsText<typename TType::Value>>
{
    using Texts = CKeptTexts<s_bKeepsText<typename TType::Value>>;

public:
    using Value = typename TType::Value;

    explicit CValueCol(const SRepeatedElement& element)
        : CInstanceMonitor(L"CValueCol")
        , CValueColBase(element)
    {
    }
    ~CValueCol() override
    {
        // A destructor has nobody to report to, so what a listener throws ends here.
        try
        {
            Clear();
        }
        catch (...)
        {
        }
    }

    int GetCount() const override { return static_cast<int>(m_values.size()); }

    /// Adds a value at the end.
    /// @throws CQvInvalidValueException for a value that the type refuses.
    void Add(const Value& value) { AddAt(GetCount(), value); }

    /// Adds a value so that it gets a position, 0 to GetCount().
    /// @throws CQvInvalidParamException "Index out of range".
    void AddAt(int nIndex, const Value& value)
    {
        Throw_IfNoPlace(nIndex);
        Insert(nIndex, CValueMember<TType, TRule>::Checked(value, Name()));
    }

    /// The value at a position, 0 to GetCount() - 1.
    /// @throws CQvInvalidParamException if there is none.
    Value Item(int nIndex) const
    {
        Throw_IfIndexIsOutOfRange(nIndex);
        return m_values[static_cast<std::size_t>(nIndex)];
    }

    void Remove(int nIndex) override
    {
        Throw_IfIndexIsOutOfRange(nIndex);
        FireOnCollectionRemove(nIndex);
        // Who heard of it may have removed values.
        Throw_IfIndexIsOutOfRange(nIndex);
        m_values.erase(m_values.begin() + nIndex);
        Texts::Remove(nIndex);
        FireOnCollectionRemoveComplete(nIndex);
        FireOnCollectionChange();
    }

    void Clear() override
    {
        if (!HasListeners())
        {
            m_values.clear();
            Texts::Clear();
        }
        while (!m_values.empty())
            Remove(0);
    }

    auto begin() const { return m_values.begin(); }
    auto end() const { return m_values.end(); }

protected:
    const CSimpleType& GetType() const override { return TType::Type(); }
    void AddText(QvVariant& text) override
    {
        std::wstring strText;
        if constexpr (s_bKeepsText<Value>)
            strText = TType::Type().Normalize(PropertyText(text));
        Insert(GetCount(), CValueMember<TType, TRule>::Parsed(text, Name()), std::move(strText));
    }

    void StoreItem(std::size_t nIndex, QvVariant& value) const override
    {
        if (const std::wstring* const pstrText = Texts::Get(nIndex))
            return value.SetString(*pstrText);
        // Not by a pointer to the value: flags are no objects of their own.
        const auto& item = m_values[nIndex];
        StoreValue(TType::Type(), item, value);
    }

private:
    void Insert(int nIndex, Value value, std::wstring strText = {})
    {
        FireOnCollectionAdd(&value);
        Throw_IfNoPlace(nIndex);
        Texts::Insert(nIndex, std::move(strText));
        try
        {
            m_values.insert(m_values.begin() + nIndex, value);
        }
        catch (...)
        {
            // A text without its value would belong to the next one.
            Texts::Remove(nIndex);
            throw;
        }
        FireOnCollectionAddComplete(&value);
        FireOnCollectionChange();
    }

    std::vector<Value> m_values;
};

} // namespace QvXmlLib9
