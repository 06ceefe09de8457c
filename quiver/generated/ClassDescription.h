#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/generated/Wildcard.h"
#include "quiver/metadata/ElementInfo.h"

#include <memory>
#include <string>
#include <vector>

namespace QvXmlLib9Data
{
class CAttributeInfo;
} // namespace QvXmlLib9Data

namespace QvXmlLib9
{

template <class TType, class TRule>
class CNillable;
struct SClassTables;
struct SPrefixedMember;
struct SNoRule;

/// Takes down what a generated class says about itself, in the order in which its members stand in documents, and makes
/// its tables of metadata of it:
///
///     void CItem::Describe(CClassDescription& description)
///     {
///         description.Class(GroupType_Sequence, ElementType_Element, L"item", s_lpctNamespace);
///         description.Element(L"product", s_lpctNamespace, Member_Product, xs::String::Type());
///         description.OptionalElement(L"note", s_lpctNamespace, Member_Note, xs::String::Type());
///         description.Attribute(L"part", L"", Member_Part, SSku::Type());
///     }
///
/// Of each pair the first operation is for what has to be there and the one with Optional for what may be absent; in a
/// choice only the latter is of use. Names and namespaces are literals: the pointers are kept. `nMember` is the number
/// by which `AccessProperty` knows the member.
///
/// A class that extends another one calls `Describe` of that first and `Class` afterwards: its members follow those of
/// the base.
class QVXMLLIB_API CClassDescription
{
public:
    using XmlElementGroupType = QvXmlLib9Data::XmlElementGroupType;
    using XmlElementType = QvXmlLib9Data::XmlElementType;

    CClassDescription();
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

    /// Makes the tables. They belong to the caller.
    void Build(SClassTables& tables);

private:
    using CElementInfo = QvXmlLib9Data::CElementInfo;
    using CAttributeInfo = QvXmlLib9Data::CAttributeInfo;

    void AddWildcard(int nMember, const SWildcard& wildcard, bool bRequired);
    void Add(std::unique_ptr<CElementInfo> pRecord);
    void NoteIfPrefixed(const wchar_t* lpctName, int nMember, const CSimpleType& type);

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
