#pragma once

#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/generated/ClassDescription.h"
#include "quiver/generated/NamedType.h"
#include "quiver/generated/Prefixes.h"
#include "quiver/values/QvVariant.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @file
/// The bases of the classes that quiver-gen writes. Such a class has accessors, members (Member.h), and one operation
/// that describes them, by which the library reaches them (ClassDescription.h):
///
///     class CItem : public CGenerated<CItem>
///     {
///     public:
///         explicit CItem(const wchar_t* lpctElementName = L"item");
///
///         const std::wstring& GetProduct() const { return m_Product.Get(); }
///         void SetProduct(const std::wstring& value) { m_Product.Set(value, L"product"); }
///
///     protected:
///         void Describe(CClassDescription& description) const override;
///
///     private:
///         CRequired<xs::String> m_Product;
///     };
///
/// An object is used by one thread at a time, also for reading alone: members make what they hold when it is asked for.

namespace QvXmlLib9
{

/// An attribute, or the text of an element, whose values are names with prefixes.
struct SPrefixedMember
{
    int nMember;
    const wchar_t* lpctName; ///< for messages; empty for the text
    const CSimpleType* pType;
};

/// The metadata of one class, built when the first object needs it. Constant before it is built, so that objects can be
/// made before `main`; built again where an object is used after the metadata of its class were freed.
struct SClassTables
{
    QvXmlLib9Data::CParentElementInfo* pInfo = nullptr;
    QvXmlLib9Data::CElementInfo** ppElements = nullptr;
    QvXmlLib9Data::CAttributeInfo** ppAttributes = nullptr;
    SMemberRecord* pMembers = nullptr;
    int nMembers = 0;
    const wchar_t* lpctNamespace = nullptr;
    const wchar_t* lpctTypeName = nullptr;
    const wchar_t* lpctTypeNamespace = nullptr;
    SCreator creator;
    bool bRequiresChoice = false;
    bool bMixed = false;
    bool bNamesAsText = false; ///< the text is of names with prefixes, and has a record
    bool bTyped = false;       ///< the text may say its type; its record, the first one, knows more
    /// Attributes and text with prefixes; null for none.
    std::vector<SPrefixedMember>* pPrefixed = nullptr;
    std::atomic<bool> bBuilt{false};
};

class CChoiceState;

/// What all generated classes have in common.
class QVXMLLIB_API CGeneratedObject : public CXmlGeneratedClass
{
public:
    /// Members know the object that they belong to.
    CGeneratedObject(const CGeneratedObject&) = delete;
    CGeneratedObject& operator=(const CGeneratedObject&) = delete;

    CXmlObjectBase* GetBase() override;
    using CXmlObjectBase::GetBase;
    std::wstring GetNamespace() const override;

    /// Whether the object says its type when it is written, with `xsi:type`: it has to where another class was
    /// declared. Whoever writes it knows.
    void TellType(bool bTell) const { m_bTellsType = bTell; }

    /// @name Prefixes in values of type xs:QName
    /// Reading an object takes down what its prefixes stand for; where it is written they are declared, under other
    /// names if need be. A prefix that was given no meaning is written as it is, for a context that declares it.
    /// @{

    /// Says what a prefix in values of this object stands for; the empty one is that of names without a prefix.
    void DeclarePrefix(const wchar_t* lpctPrefix, const wchar_t* lpctUri) { Prefixes().Set(lpctPrefix, lpctUri); }

    /// What a prefix in values of this object stands for; empty for a prefix without a meaning.
    std::wstring GetNamespaceOfPrefix(const wchar_t* lpctPrefix) const;
    /// @}

    /// Whether the class is that of a type; one of an anonymous type, or that nothing was derived from, does not know.
    bool IsOfType(const std::wstring& strName, const std::wstring& strUri) const;

    /// What makes objects of the same class, to tell classes apart.
    SCreator GetCreator() const { return Tables().creator; }

    /// For the records of members.
    CPrefixes& Prefixes();
    const CPrefixes* FindPrefixes() const { return m_pPrefixes.get(); }
    /// The type that the value says it has, null for none.
    const SNamedType* FindValueType() const;

protected:
    explicit CGeneratedObject(const wchar_t* lpctElementName);
    ~CGeneratedObject() override;

    /// The metadata of the class.
    virtual const SClassTables& Tables() const = 0;

    /// What the class says about itself, of which its metadata are made.
    virtual void Describe(CClassDescription& description) const = 0;

    std::wstring GetTargetNamespace() const override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override { return Tables().pInfo; }
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override { return Tables().ppElements; }
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override { return Tables().ppAttributes; }
    void AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const override;

    void ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const CXmlSerializationContext& context, bool bOptionalChoice) const override;

    /// Refuses what the walker over the records passes by: text where a class has none, content of a nil element, and
    /// a choice without the member that it has to have.
    CXmlElement* FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                             bool bOptionalChoice) override;

    /// Reach the members that the class has described.
    void AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value) override;
    void Init() override;

    /// Which member of its choice the object has, null for a class that is none.
    virtual const CChoiceState* ChoiceState() const { return nullptr; }

    /// Builds the metadata of a class unless they are there.
    void BuildTables(SClassTables& tables, SCreator creator) const;
    static void FreeTables(SClassTables& tables);

    /// Whether the object's class is nillable and the object is nil.
    bool IsNilElement() const;

    /// @name For a value that says its type
    /// @{

    /// A type as the property that says it holds it.
    std::wstring TypeText(const SNamedType& type, const std::wstring& strPrefix = L"xs");
    /// A type by its name.
    /// @throws CQvInvalidParamException "There is no simple type [%s] in the namespace [%s]"
    const SNamedType& FindType(const wchar_t* lpctName, const wchar_t* lpctNamespace) const;
    /// What is stored for a text that is a value of a type.
    /// @param pType null for any.
    /// @throws CQvInvalidValueException as CSimpleType::Check does.
    std::wstring TypedText(const std::wstring& strText, const SNamedType* pType) const;
    /// @}

private:
    CChoiceState* ChoiceState() { return const_cast<CChoiceState*>(std::as_const(*this).ChoiceState()); }
    /// AccessProperty of a member that is more than a property.
    void AccessMember(const SMemberRecord& record, bool bRead, QvVariant& value);
    void* MemberAt(std::ptrdiff_t nOffset) { return reinterpret_cast<char*>(this) + nOffset; }
    /// @throws CQvValidationException on writing a choice that has to have a member and has none.
    void Throw_IfChoiceIsMissing(const CXmlSerializationContext& context) const;
    /// The same on reading one.
    void Throw_IfNoChoiceWasRead(CXmlElement* pElement, const CXmlSerializationContext& context) const;
    bool IsChoiceMissing(const CXmlSerializationContext& context) const;
    void Throw_IfContentIsWrong(const CXmlElement& element, const CXmlElement* pFirstChild,
                                const CXmlSerializationContext& context) const;

    void NoteValueType(const CXmlElement& element, const CXmlSerializationContext& context);
    void DeclareTypedText(CXmlWriter& writer) const;
    CXmlElement* ReadNames(CXmlElement* pElement, CXmlElement* pFirstChild, const CXmlSerializationContext& context,
                           bool bOptionalChoice);
    void NotePrefixes(const CXmlElement& element, const CXmlSerializationContext& context);
    void DeclarePrefixes(CXmlWriter& writer) const;

    std::unique_ptr<CPrefixes> m_pPrefixes;
    mutable bool m_bTellsType = false;
};

/// The metadata of a class, and its way to the runtime.
/// @tparam TClass the class itself.
/// @tparam TBase the class that it extends, if it extends one.
template <class TClass, class TBase = CGeneratedObject>
class CGenerated : public TBase
{
protected:
    explicit CGenerated(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"") // never used: the most derived class gives its name
        , TBase(lpctElementName)
    {
    }

    const SClassTables& Tables() const override
    {
        if (!s_tables.bBuilt.load(std::memory_order_acquire))
            Build();
        return s_tables;
    }

private:
    /// Frees the metadata when the program ends, or the library that holds the class is unloaded.
    struct SGuard
    {
        ~SGuard() { CGeneratedObject::FreeTables(s_tables); }
    };
    friend struct SGuard;

    void Build() const
    {
        this->BuildTables(s_tables, &CreateObject<TClass>);
        static const SGuard s_guard{};
    }

    static inline SClassTables s_tables{};
};

/// Which member of a choice is set. All setters of a choice go through here: a second member is refused before it is
/// stored, and a value that breaks a facet selects nothing.
class QVXMLLIB_API CChoiceState
{
public:
    /// @param pOwner the object with the choice; it hears of its collections.
    explicit CChoiceState(IEventSink* pOwner)
        : m_pOwner(pOwner)
    {
    }

    /// Element name of the member that is set, empty for none.
    const std::wstring& GetSelected() const { return m_strSelected; }
    bool IsSelected() const { return m_pSelected != nullptr; }

    void Reset() { Select(nullptr, L""); }

    /// Sets a value, or clears it.
    /// @throws CQvInvalidStateException if another member is set.
    template <class TMember, class TValue>
    void Set(TMember& member, const TValue& value, const wchar_t* lpctName)
    {
        member.Check(value, lpctName);
        if (TMember::IsGiven(value))
            Throw_IfOtherIsSelected(&member);
        member.Set(value, lpctName);
        Select(&member, lpctName, TMember::IsGiven(value));
    }

    /// Sets an object, or clears it. One that is refused and has no other owner is deleted.
    template <class TMember, class TObject>
    void Set(TMember& member, TObject* pObject, const wchar_t* lpctName)
    {
        const CSmartPtr<TObject> spObject = pObject;
        Set<TMember, TObject*>(member, pObject, lpctName);
    }

    /// `AccessProperty` of a member.
    void Access(void* pMember, bool bRead, QvVariant& value, const SMemberRecord& record);

    /// The collection of a repeated member, which tells this when it fills and empties.
    template <class TRepeated, class TElement>
    auto Get(const TRepeated& member, const TElement& element) const
    {
        return member.Get(element, m_pOwner);
    }

    /// What happened to one of the collections.
    void OnEvent(const CXmlObjectBase& collection, IEventSink::MsgType eMsgType);

private:
    static bool IsGiven(const QvVariant& value);
    void Throw_IfOtherIsSelected(const void* pMember) const;
    void Select(const void* pMember, std::wstring_view name);
    void Select(const void* pMember, std::wstring_view name, bool bSet);

    IEventSink* m_pOwner;
    /// The member, or its collection: elements of two namespaces may have the same name.
    const void* m_pSelected = nullptr;
    std::wstring m_strSelected;
};

/// A class whose content is a choice. It has at most one member; whether it may have none is said by its description.
template <class TClass, class TBase = CGeneratedObject>
class CGeneratedChoice : public CGenerated<TClass, TBase>
{
public:
    /// Element name of the member that is set, empty for none.
    const std::wstring& GetSelected() const { return m_choice.GetSelected(); }

protected:
    explicit CGeneratedChoice(const wchar_t* lpctElementName)
        : CInstanceMonitor(L"") // never used: the most derived class gives its name
        , CGenerated<TClass, TBase>(lpctElementName)
        , m_choice(this)
    {
    }

    void OnEvent(CXmlObjectBase* pMsgSource, IEventSink::MsgType eMsgType, void*) override
    {
        m_choice.OnEvent(*pMsgSource, eMsgType);
    }

    const CChoiceState* ChoiceState() const override { return &m_choice; }

    CChoiceState m_choice;
};

/// The state of an element that may be nil.
class QVXMLLIB_API CNillableState : public INillableBoolean
{
public:
    bool IsNil() const override { return m_bNil; }
    /// A nil element is written with its attributes and `xsi:nil`, whatever its other members hold.
    void SetNil(bool bNil) override { m_bNil = bNil; }

protected:
    CNillableState() = default;
    CNillableState(const CNillableState&) = default;
    CNillableState& operator=(const CNillableState&) = default;
    ~CNillableState() = default;

    void ResetNil() { m_bNil = false; }

private:
    bool m_bNil = false;
};

/// Announces the version of the generator before the first object is made.
struct QVXMLLIB_API SRegisterGenerator
{
    SRegisterGenerator();
};
inline const SRegisterGenerator s_registerGenerator{};

} // namespace QvXmlLib9
