#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/MemberRecord.h"
#include "quiver/generated/NamedType.h"
#include "quiver/generated/RepeatedCol.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/generated/Wildcard.h"
#include "quiver/metadata/ElementInfo.h"

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace QvXmlLib9Data
{
class CAttributeInfo;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

template <class TType, class TRule>
class CNillable;
class CGeneratedObject;
struct SClassTables;
struct SPrefixedMember;

/// Takes down what a generated class says about itself, in the order in which its members stand in documents, and makes
/// its tables of metadata of it:
///
///     void CItem::Describe(CClassDescription& description) const
///     {
///         description.Class(GroupType_Sequence, ElementType_Element, L"item", s_lpctNamespace);
///         description.Element(m_Product, L"product", s_lpctNamespace);
///         description.Element(m_Note, L"note", s_lpctNamespace);
///         description.Attribute(m_Part, L"part", L"");
///     }
///
/// The type of a member says whether it has to be there. Names and namespaces are literals: the pointers are kept.
///
/// A class that extends another one calls `Describe` of that first and `Class` afterwards: its members follow those of
/// the base. One that restricts another does the same with `Restrict` in between, and describes anew what is left.
///
/// The operations with `nMember` are for a class that has its own `AccessProperty`, to which that number is handed. Of
/// each pair the first is for what has to be there and the one with Optional for what may be absent; in a choice only
/// the latter is of use.
class QVXMLLIB_API CClassDescription
{
public:
    using XmlElementGroupType = QvXmlLib9Data::XmlElementGroupType;
    using XmlElementType = QvXmlLib9Data::XmlElementType;

    /// @param pObject an object of the class, by which its members are known; null for a class that has its own
    ///                `AccessProperty`.
    explicit CClassDescription(const CGeneratedObject* pObject = nullptr);
    CClassDescription(const CClassDescription&) = delete;
    CClassDescription& operator=(const CClassDescription&) = delete;
    ~CClassDescription();

    /// The class itself.
    /// @param eGroup how its members stand to one another.
    /// @param eElementType whether it has an element of its own, or is a group nested in another class.
    /// @param lpctName default name of its element; of a nested group, what a message calls it.
    /// @param lpctNamespace namespace of the element.
    void Class(XmlElementGroupType eGroup, XmlElementType eElementType, const wchar_t* lpctName,
               const wchar_t* lpctNamespace);

    /// Name of the type in the schema, for `xsi:type`.
    void TypeName(const wchar_t* lpctName, const wchar_t* lpctNamespace);

    /// Attributes that no member takes are passed over.
    void IgnoreUnknownAttributes() { m_bFailIfAttributeUnknown = false; }

    /// A choice that has to have a member.
    void RequireChoice() { m_bRequiresChoice = true; }

    /// The text of an element with simple content.
    void Text(int nMember) { m_nTextMember = nMember; }
    /// The same, for values that may have prefixes.
    void Text(int nMember, const CSimpleType& type);

    /// The text of an element that may say its type, which the value is checked by.
    /// @param nType the property that takes the name of the type.
    void TypedText(int nMember, int nType, const SNamedTypes& types);

    /// The text of an element with mixed content, all pieces joined. It is written ahead of the children.
    void MixedText(int nMember);

    /// @name Elements with a simple value
    /// @{
    void Element(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, const CSimpleType& type);
    void OptionalElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, const CSimpleType& type);
    void RepeatedElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember);

    template <class TType, class TRule = SNoRule>
    void NillableElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        Object(lpctName, lpctNamespace, nMember, &CreateObject<CNillable<TType, TRule>>);
    }
    template <class TType, class TRule = SNoRule>
    void OptionalNillableElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        OptionalObject(lpctName, lpctNamespace, nMember, &CreateObject<CNillable<TType, TRule>>);
    }
    /// @}

    /// @name Elements with an object of one class
    /// @{
    template <class TClass>
    void Object(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        Object(lpctName, lpctNamespace, nMember, &CreateObject<TClass>);
    }
    template <class TClass>
    void OptionalObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        OptionalObject(lpctName, lpctNamespace, nMember, &CreateObject<TClass>);
    }
    void RepeatedObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember);
    /// @}

    /// @name Elements whose class their name or `xsi:type` decides
    /// `TClass::Alternatives()` lists the classes.
    /// @{
    template <class TClass>
    void PolymorphicObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        Polymorphic(lpctName, lpctNamespace, nMember, TClass::Alternatives(), &CreateObject<TClass>, true);
    }
    template <class TClass>
    void OptionalPolymorphicObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
    {
        Polymorphic(lpctName, lpctNamespace, nMember, TClass::Alternatives(), &CreateObject<TClass>, false);
    }
    /// @}

    /// @name Nested groups, which have no element of their own
    /// @{

    /// @param bContentRequired false for a group that may be empty.
    template <class TClass>
    void Group(const wchar_t* lpctName, int nMember, bool bContentRequired)
    {
        Group(lpctName, nMember, bContentRequired, &CreateObject<TClass>);
    }
    template <class TClass>
    void OptionalGroup(const wchar_t* lpctName, int nMember)
    {
        OptionalGroup(lpctName, nMember, &CreateObject<TClass>);
    }
    void RepeatedGroup(const wchar_t* lpctName, int nMember);
    /// @}

    /// @name Elements that the schema does not describe
    /// @{
    void Wildcard(int nMember, const SWildcard& wildcard);
    void OptionalWildcard(int nMember, const SWildcard& wildcard);
    void RepeatedWildcard(int nMember, const SWildcard& wildcard);
    /// @}

    /// @name Attributes
    /// @{
    void Attribute(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, const CSimpleType& type);

    /// @param lpctDefault the default as it is written, which a context may leave out; empty for none.
    void OptionalAttribute(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, const CSimpleType& type,
                           const wchar_t* lpctDefault = L"");

    /// All that no other member takes, and the wildcard lets through. That of an extension takes the place of the
    /// base's.
    void AnyAttribute(int nMember, const SWildcard& wildcard);
    /// @}

    /// @name The same for classes that are known by their creators
    /// @{
    void Object(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, SCreator creator);
    void OptionalObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, SCreator creator);
    void Polymorphic(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                     const SAlternatives& alternatives, SCreator declared, bool bRequired);
    void Group(const wchar_t* lpctName, int nMember, bool bContentRequired, SCreator creator);
    void OptionalGroup(const wchar_t* lpctName, int nMember, SCreator creator);
    /// @}

    /// @name Members
    /// @{

    /// An element with a simple value.
    template <class TType, class TRule>
    void Element(const CRequired<TType, TRule>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        Element(lpctName, lpctNamespace, AddValue(member, lpctName), TType::Type());
    }
    template <class TType, class TRule>
    void Element(const COptional<TType, TRule>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        OptionalElement(lpctName, lpctNamespace, AddValue(member, lpctName), TType::Type());
    }

    /// An element with an object of one class, or with a value that may be nil.
    template <class TClass>
    void Element(const CRequiredObject<TClass>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        Object(lpctName, lpctNamespace, AddRequired(member, lpctName, &CreateObject<TClass>), &CreateObject<TClass>);
    }
    template <class TClass>
    void Element(const COptionalObject<TClass>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        OptionalObject(lpctName, lpctNamespace, AddOptional(member, lpctName), &CreateObject<TClass>);
    }

    /// An element whose class its name or `xsi:type` decides.
    template <class TClass>
    void Element(const CPolymorphicObject<TClass>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        PolymorphicObject<TClass>(lpctName, lpctNamespace, AddOptional(member, lpctName));
    }
    /// The same where it may be absent: its member does not tell.
    template <class TClass>
    void OptionalElement(const CPolymorphicObject<TClass>& member, const wchar_t* lpctName,
                         const wchar_t* lpctNamespace)
    {
        OptionalPolymorphicObject<TClass>(lpctName, lpctNamespace, AddOptional(member, lpctName));
    }

    /// A repeated element.
    template <class TCollection>
    void Element(const CRepeated<TCollection>& member, const SRepeatedElement& element)
    {
        AddRepeatedElement(AddRepeated(member, element), std::is_base_of_v<CValueColBase, TCollection>);
    }

    /// A nested group.
    template <class TClass>
    void Group(const CRequiredObject<TClass>& member, const wchar_t* lpctName, bool bContentRequired)
    {
        Group(lpctName, AddRequired(member, lpctName, &CreateObject<TClass>), bContentRequired, &CreateObject<TClass>);
    }
    template <class TClass>
    void Group(const COptionalObject<TClass>& member, const wchar_t* lpctName)
    {
        OptionalGroup(lpctName, AddOptional(member, lpctName), &CreateObject<TClass>);
    }
    template <class TCollection>
    void Group(const CRepeated<TCollection>& member, const SRepeatedElement& element)
    {
        RepeatedGroup(element.lpctName, AddRepeated(member, element));
    }

    /// An element that the schema does not describe.
    /// @param lpctName what a choice calls it.
    void Wildcard(const COptionalObject<CElement>& member, const wchar_t* lpctName, const SWildcard& wildcard)
    {
        Wildcard(AddOptional(member, lpctName), wildcard);
    }
    void OptionalWildcard(const COptionalObject<CElement>& member, const wchar_t* lpctName, const SWildcard& wildcard)
    {
        OptionalWildcard(AddOptional(member, lpctName), wildcard);
    }
    void Wildcard(const CRepeated<CAnyCol>& member, const SWildcard& wildcard);

    template <class TType, class TRule>
    void Attribute(const CRequired<TType, TRule>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        Attribute(lpctName, lpctNamespace, AddAttribute(member, lpctName), TType::Type());
    }
    template <class TType, class TRule>
    void Attribute(const COptional<TType, TRule>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        OptionalAttribute(lpctName, lpctNamespace, AddAttribute(member, lpctName), TType::Type());
    }
    template <class TType, class TRule>
    void Attribute(const CDefaulted<TType, TRule>& member, const wchar_t* lpctName, const wchar_t* lpctNamespace)
    {
        OptionalAttribute(lpctName, lpctNamespace, AddAttribute(member, lpctName), TType::Type(), TRule::Text());
    }
    void AnyAttribute(const CAnyAttributes& member, const SWildcard& wildcard);

    /// The text of an element with simple content.
    template <class TType, class TRule>
    void Text(const CRequired<TType, TRule>& member)
    {
        Text(AddMember(&member, s_textOperations<CRequired<TType, TRule>>, nullptr), TType::Type());
    }
    /// The text of an element that may say its type.
    template <class TType, class TRule, class TName>
    void TypedText(const CRequired<TType, TRule>& member, const COptional<TName>& type, const SNamedTypes& types)
    {
        const int nText = AddMember(&member, s_textOperations<CRequired<TType, TRule>>, nullptr);
        TypedText(nText, AddAttribute(type, L"type"), types);
    }
    /// The text of an element with mixed content.
    template <class TType, class TRule>
    void MixedText(const CRequired<TType, TRule>& member)
    {
        MixedText(AddMember(&member, SValueOperations<CRequired<TType, TRule>>::s_operations, nullptr));
    }
    /// @}

    /// @name Restriction
    /// @{

    /// Drops what the base has said of its content and its attributes. Its members stay known.
    void Restrict();

    /// The number of a member that a base has described.
    int Inherited(const void* pMember) const;

    /// Lets no values of a member pass but those of a narrower type.
    template <class TType, class TRule = SNoRule>
    void RestrictValues(const void* pMember)
    {
        RestrictValues(pMember, &CheckRestricted<TType, TRule>);
    }
    /// Narrows how often a repeated member may stand.
    void RestrictCounts(const void* pMember, int nMin, int nMax);
    /// @}

    /// Makes the tables. They belong to the caller.
    void Build(SClassTables& tables);

private:
    using CElementInfo = QvXmlLib9Data::CElementInfo;
    using CAttributeInfo = QvXmlLib9Data::CAttributeInfo;

    void Add(std::unique_ptr<CElementInfo> pRecord);
    void NoteIfPrefixed(const wchar_t* lpctName, int nMember, const CSimpleType& type);

    /// @return the number that the library asks for it by.
    int AddMember(const void* pMember, const SMemberOperations& operations, const wchar_t* lpctName);
    /// The same for one of the members of the group that the class is.
    SMemberRecord& AddContent(const void* pMember, const SMemberOperations& operations, const wchar_t* lpctName);
    int NumberOf(const SMemberRecord& record) const { return static_cast<int>(&record - m_members.data()); }

    template <class TMember>
    int AddValue(const TMember& member, const wchar_t* lpctName)
    {
        return NumberOf(AddContent(&member, SValueOperations<TMember>::s_operations, lpctName));
    }
    template <class TMember>
    int AddAttribute(const TMember& member, const wchar_t* lpctName)
    {
        return AddMember(&member, SValueOperations<TMember>::s_operations, lpctName);
    }
    template <class TCollection>
    int AddRepeated(const CRepeated<TCollection>& member, const SRepeatedElement& element)
    {
        return AddRepeated(member, element, &MakeCollection<TCollection>);
    }
    int AddRepeated(const CCollectionMember& member, const SRepeatedElement& element,
                    CXmlCollectionBase* (*pfnMake)(const SMemberRecord&));
    int AddOptional(const CObjectMember& member, const wchar_t* lpctName);
    int AddRequired(const CObjectMember& member, const wchar_t* lpctName, SCreator creator);
    void AddRepeatedElement(int nMember, bool bValues);
    void RestrictValues(const void* pMember, void (*pfnCheck)(const QvVariant&, const wchar_t*));
    std::ptrdiff_t OffsetOf(const void* pMember) const;

    const CGeneratedObject* m_pObject;
    std::vector<SMemberRecord> m_members;
    XmlElementGroupType m_eGroup{};
    XmlElementType m_eElementType{};
    const wchar_t* m_lpctName = L"";
    const wchar_t* m_lpctNamespace = L"";
    const wchar_t* m_lpctTypeName = nullptr;
    const wchar_t* m_lpctTypeNamespace = nullptr;
    bool m_bFailIfAttributeUnknown = true;
    bool m_bRequiresChoice = false;
    bool m_bMixed = false;
    bool m_bNamesAsText = false;
    int m_nTextMember = -1;
    std::unique_ptr<std::vector<SPrefixedMember>> m_pPrefixed;
    std::vector<std::unique_ptr<CElementInfo>> m_elements;
    std::vector<std::unique_ptr<CAttributeInfo>> m_attributes;
    std::unique_ptr<CAttributeInfo> m_pAnyAttribute;
};

} // namespace QvXmlLib9
