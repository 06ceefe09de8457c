#pragma once

#include "quiver/foundation/Export.h"
#include "quiver/foundation/SmartPtr.h"
#include "quiver/values/ItemType.h"
#include "quiver/values/PrimitiveRestrictions.h"
#include "quiver/values/WhitespaceUtils.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <typeinfo>

/// @file
/// The records that a generated class publishes instead of serialisation code: one CParentElementInfo for the class and
/// one record of the CElementInfo family for each child element. CXmlGeneratedClass walks them.
///
/// A generated class builds its records once and shares them among all its instances:
///
///     static CElementInfo* s_apElements[] = {
///         new CElementInfoSeqPrimMnd(L"quantity", L"urn:order", PropQuantity, ItemType_i4, nullptr,
///                                    CWhitespaceUtils::WhitespaceRule_Collapse, restrictions),
///         new CElementInfoSeqClsOpt(L"address", L"urn:order", PropAddress, ElementType_Element, &CreateAddress, 0),
///         nullptr};
///
/// A record's class says how its member is read and written: `CElementInfo`, the model group (`Seq`, `Choice`, `All`),
/// the kind of value (`Prim`, `Enum`, `Cls`, `AbsCls`, `Untpd`), the cardinality (`Mnd`, `Opt`, `Col`).
///
/// Records do not change after construction, so any number of threads may use them at the same time.

namespace QvXmlLib9
{
class CElement;
class CXmlCollectionBase;
class CXmlElement;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlSerializationContext;
class CXmlWriter;
struct QvVariant;
} // namespace QvXmlLib9

namespace QvXmlLib9Data
{

using QvXmlLib9::CElement;
using QvXmlLib9::CPrimitiveRestrictions;
using QvXmlLib9::CWhitespaceUtils;
using QvXmlLib9::CXmlCollectionBase;
using QvXmlLib9::CXmlElement;
using QvXmlLib9::CXmlGeneratedClass;
using QvXmlLib9::CXmlObjectBase;
using QvXmlLib9::CXmlSerializationContext;
using QvXmlLib9::CXmlWriter;
using QvXmlLib9::ItemType;
using QvXmlLib9::QvVariant;

/// Whether a class or a child has an element of its own in the XML. Generated code passes the numbers.
enum XmlElementType : int
{
    /// Start tag, attributes, content, end tag.
    ElementType_Element = 0,
    /// A schema group nested in its parent: its children are read from and written to the element of the enclosing
    /// object, and its attributes are written on that element.
    ElementType_Pseudo = 1
};

/// The model group that orders the children of a class. Generated code passes the numbers.
enum XmlElementGroupType : int
{
    GroupType_Sequence = 0,
    GroupType_Choice = 1,
    GroupType_All = 2
};

/// Lexical form of an enumeration's number; never null. Generated with the enumeration.
using PfnEnumToString = const wchar_t* (*)(int nValue);

/// Number of an enumeration's lexical form; throws for a text that the enumeration does not know.
using PfnEnumFromString = int (*)(const wchar_t* lpctValue);

/// Makes a child object. The class id means nothing to the library: it is the one given to the record.
using PfnCreate = CSmartPtr<CXmlObjectBase> (*)(int nClassId, const wchar_t* lpctElementName);

/// Makes a child object of the class that fits the element found, usually by its `xsi:type` (CClassfactoryBase). Null
/// when no class fits.
using PfnCreateFromElement = CSmartPtr<CXmlObjectBase> (*)(CXmlElement* pElement);

/// Describes one generated class.
class QVXMLLIB_API CParentElementInfo
{
public:
    /// @param eGroupType model group of the class's children.
    /// @param eElementType whether the class has an element of its own.
    /// @param lpctElementName local name of the element; in a class with base classes, the name of the type.
    /// @param lpctElementNamespace namespace URI of the element, empty for none.
    /// @param nElementTextPropertyIndex property that holds the element's own text, -1 for none.
    /// @param bFromXmlFailIfAttributeUnknown reading fails on an attribute that no record claims.
    /// @param bHasBaseClasses the class takes part in an inheritance tree, so `xsi:type` may have to be written.
    CParentElementInfo(XmlElementGroupType eGroupType, XmlElementType eElementType, const wchar_t* lpctElementName,
                       const wchar_t* lpctElementNamespace, int nElementTextPropertyIndex,
                       bool bFromXmlFailIfAttributeUnknown, bool bHasBaseClasses);
    CParentElementInfo(const CParentElementInfo&) = default;
    CParentElementInfo& operator=(const CParentElementInfo&) = default;
    virtual ~CParentElementInfo();

    XmlElementGroupType GetElementGroupType() const { return m_eGroupType; }
    XmlElementType GetElementType() const { return m_eElementType; }
    const std::wstring& GetElementName() const { return m_strElementName; }
    const std::wstring& GetElementNamespace() const { return m_strElementNamespace; }
    int GetElementTextPropertyIndex() const { return m_nElementTextPropertyIndex; }
    bool GetFromXmlFailIfAttributeUnknown() const { return m_bFromXmlFailIfAttributeUnknown; }
    bool GetHasBaseClasses() const { return m_bHasBaseClasses; }

    /// Says that no record of the class asks for the namespace of the object that it reads for.
    void IgnoreParentNamespace() { m_bIgnoresParentNamespace = true; }
    bool IgnoresParentNamespace() const { return m_bIgnoresParentNamespace; }

private:
    friend class QvXmlLib9::CXmlGeneratedClass;

    /// Where the INillable of the class's objects lies, found out once for the first class that asks: a cast across the
    /// hierarchy costs more than reading a small object.
    class CNillableOffset
    {
    public:
        CNillableOffset() = default;
        CNillableOffset(const CNillableOffset&) {}
        CNillableOffset& operator=(const CNillableOffset&) { return *this; }

        static constexpr std::ptrdiff_t s_nNotNillable = PTRDIFF_MIN;

        /// Whether the offset is known for objects of this dynamic type.
        bool Find(const std::type_info& type, std::ptrdiff_t& nOffset) const;
        void Remember(const std::type_info& type, std::ptrdiff_t nOffset);

    private:
        std::atomic<bool> m_bClaimed{false};
        std::atomic<const std::type_info*> m_pType{nullptr};
        std::ptrdiff_t m_nOffset = 0;
    };
    mutable CNillableOffset m_nillableOffset;

    XmlElementGroupType m_eGroupType;
    XmlElementType m_eElementType;
    std::wstring m_strElementName;
    std::wstring m_strElementNamespace;
    int m_nElementTextPropertyIndex;
    bool m_bFromXmlFailIfAttributeUnknown;
    bool m_bHasBaseClasses;
    bool m_bIgnoresParentNamespace = false;
};

/// Describes one child element of a generated class: how it is stored, read and written. Base of the three families
/// CElementInfoSeq, CElementInfoChoice and CElementInfoAll, which say what a failed match means.
///
/// The record reaches the object only through `CXmlGeneratedClass::AccessProperty`. Reading a property gives: an
/// invalid variant for an unset optional simple property; the object, or a null object, for a class property, where the
/// object of a mandatory one is always there; the collection, never null, for a collection property. An enumeration
/// travels as ItemType_i4. A null object clears a class property.
///
/// The order of the virtual operations is a contract with generated code.
class QVXMLLIB_API CElementInfo
{
public:
    CElementInfo(const CElementInfo&) = default;
    CElementInfo& operator=(const CElementInfo&) = default;
    virtual ~CElementInfo();

    /// Writes the member.
    /// @return true if something was written. A choice stops at the first member that writes.
    /// @throws CQvException if a value breaks a facet; nothing has been written for this member then.
    /// @throws CQvValidationException if a collection holds too few or too many items.
    virtual bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                              CXmlWriter* pWriter) const = 0;

    /// Lets the member consume what is its own.
    /// @param context the options.
    /// @param pObject the object being read.
    /// @param pParent the parsed element whose children are being read.
    /// @param ppCurrent the cursor: the next child that has not been consumed, or null at the end. It moves over what
    ///        the member consumes.
    /// @param lpctParentNamespace `GetNamespace()` of the object being read.
    /// @param eParentType whether that object has an element of its own. If it has, a mandatory member of a sequence
    ///        that finds nothing throws; if not, it returns false, so that the enclosing group can try something else.
    /// @return in a sequence, whether the member is satisfied; in a choice and an all group, whether it consumed
    ///         something.
    virtual bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                                XmlElementType eParentType) = 0;

    /// Decides, once an all group has been read, whether a member that was not found is a failure. Members of the other
    /// groups throw CQvException "Not implemented, should never be called".
    /// @param bFound what ElementFromXml returned for this member.
    /// @param bThrowIfMissing the class has an element of its own.
    /// @return false if the group is to be given up.
    virtual bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                          bool bThrowIfMissing) const = 0;

    /// Writes the attributes of a pseudo child on the element that is open in the writer. Members of other kinds do
    /// nothing.
    virtual void PseudoChildAttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                           CXmlWriter* pWriter) const;

    /// Tests a value against the facets of this member. Generated setters call it, which keeps the facets in force at
    /// assignment.
    /// @throws CQvException if the value breaks a facet, or if the member is not of a primitive kind ("Cannot
    ///         CheckRestriction for type: " and the type of the value).
    void CheckRestriction(const QvVariant& value) const;

protected:
    friend class QvXmlLib9::CXmlGeneratedClass;

    /// Whether a choice with this record among its alternatives may stay empty.
    enum class EmptyChoice : unsigned char
    {
        /// Not on account of this one. So answers every record whose constructor says nothing else.
        Refused,
        Allowed,
        /// It may if the collection may have no items.
        UpToCollection
    };

    /// For constructors.
    void SetEmptyChoice(EmptyChoice eEmptyChoice) { m_eEmptyChoice = eEmptyChoice; }

    /// @throws CQvException if the record asks a collection and the property holds none.
    bool AllowsEmptyChoice(const CXmlGeneratedClass* pObject) const;

    /// A member that is not of a primitive kind.
    /// @param lpctName local name of the element, or "AnyElement" for a wildcard that takes any name.
    /// @param lpctNamespace namespace URI of the element, empty for none.
    /// @param nPropertyIndex key under which the generated class exposes the child.
    CElementInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex);

    /// A member of a primitive kind.
    /// @param lpctFormat format for `QvVariant::ToString`, or null. The pointer is kept: pass a string of static
    ///        lifetime.
    CElementInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex, ItemType eItemType,
                 const wchar_t* lpctFormat, CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                 const CPrimitiveRestrictions& restrictions);

    /// Whether the element is this member's: the local name counts, and the namespace too unless the context ignores
    /// namespaces. Null never is.
    bool IsThisElement(const CXmlSerializationContext& context, const CXmlElement* pElement) const;

    void AccessProperty(CXmlGeneratedClass* pObject, bool bRead, QvVariant& value);
    void ReadProperty(const CXmlGeneratedClass* pObject, QvVariant& value) const;
    int GetPropertyIndex() const { return m_nPropertyIndex; }
    std::wstring GetElementName() const { return m_strName; }
    std::wstring GetElementNamespace() const { return m_strNamespace; }

    // The protected operations of another object.
    static CXmlElement* FromXml_Int(CXmlObjectBase* pObject, CXmlElement* pParent, CXmlElement* pCurrent,
                                    const CXmlSerializationContext& context, bool bOptionalChoice);
    static void AttributesToXml_Int(const CXmlObjectBase* pObject, CXmlWriter* pWriter,
                                    const CXmlSerializationContext& context);

    // Writing, by kind of value. Each tells whether it wrote anything; an unset property writes nothing, that of a
    // mandatory member included.
    bool ElementToXmlPrim(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                          CXmlWriter* pWriter) const;
    bool ElementToXmlPrimOpt(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                             CXmlWriter* pWriter) const;
    bool ElementToXmlEnum(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                          CXmlWriter* pWriter, PfnEnumToString pfnToString) const;
    bool ElementToXmlEnumOpt(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                             CXmlWriter* pWriter, PfnEnumToString pfnToString) const;
    bool ElementToXmlCls(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                         CXmlWriter* pWriter, bool bOptionalChoice) const;
    bool ElementToXmlCol(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                         CXmlWriter* pWriter) const;

    /// ElementToXmlCol behind a check of the occurrence count: the empty collection would otherwise write nothing and
    /// pass.
    bool ElementToXmlCountedCol(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                CXmlWriter* pWriter) const;

    // The two forms of PseudoChildAttributeToXml.
    void PseudoObjectAttributesToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                     CXmlWriter* pWriter, XmlElementType eElementType) const;
    void PseudoColAttributesToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                  CXmlWriter* pWriter, XmlElementType eElementType) const;

    // Reading a simple value: converts the text of the element under the cursor, stores it, and moves the cursor on.
    // Facets are not tested here; the generated setter does that.
    void StorePrim(CXmlGeneratedClass* pObject, CXmlElement** ppCurrent);
    void StoreEnum(CXmlGeneratedClass* pObject, CXmlElement** ppCurrent, PfnEnumFromString pfnFromString);

    // The same where the element under the cursor is this member's; they tell whether it was.
    bool TakePrim(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement** ppCurrent);
    bool TakeEnum(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement** ppCurrent,
                  PfnEnumFromString pfnFromString);

    // Reading a child object.

    /// The child of a mandatory member, which the generated constructor made. It lives at least as long as `value`.
    /// @throws CQvException if there is none.
    CXmlObjectBase* ExistingChild(CXmlGeneratedClass* pObject, QvVariant& value);

    /// A new child.
    /// @throws CQvException if the creator makes none.
    CSmartPtr<CXmlObjectBase> NewChild(PfnCreate pfnCreate, int nClassId) const;

    /// Stores a child; null clears the property.
    void StoreChild(CXmlGeneratedClass* pObject, CXmlObjectBase* pChild);

    /// Lets a child with an element of its own read the attributes and children of that element.
    static void ReadChild(CXmlObjectBase* pChild, CXmlElement* pElement, const CXmlSerializationContext& context,
                          bool bOptionalChoice);

    /// Lets a pseudo child read at the cursor, and moves the cursor over what it consumed.
    /// @return whether it consumed anything.
    static bool ReadPseudoChild(CXmlObjectBase* pChild, CXmlElement* pParent, CXmlElement** ppCurrent,
                                const CXmlSerializationContext& context);

    /// Reads and then stores a new child of an optional member. A pseudo child that consumes nothing is dropped.
    /// @return whether a child was stored.
    bool TakeNewChild(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                      CXmlElement** ppCurrent, XmlElementType eElementType, PfnCreate pfnCreate, int nClassId);

    // Reading the element of a wildcard.

    /// Lets the open element read the one under the cursor, provided that this member takes elements of that name.
    /// @return the cursor behind what was consumed; the cursor itself if nothing was.
    CXmlElement* ReadWildcard(CXmlObjectBase* pOpenElement, CXmlElement* pParent, CXmlElement* pCurrent,
                              const CXmlSerializationContext& context) const;

    /// Reads and then stores a new open element. One that consumes nothing is dropped.
    /// @return whether an element was stored.
    bool TakeNewWildcard(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                         CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                         const std::wstring& strNamespaceRestriction, const std::wstring& strTargetNamespace);

    /// Namespace of a new open element until it is read. A list of plain URIs gives an empty one, although one of them
    /// would satisfy the restriction (docs/compatibility.md: Lists of namespaces).
    static std::wstring GetAnyDefaultNamespace(const wchar_t* lpctRestriction, const wchar_t* lpctParentNamespace,
                                               const wchar_t* lpctTargetNamespace);

    // Reading a collection, which consumes its own run of elements.

    /// The collection of this member. It lives at least as long as `value`.
    /// @throws CQvException if there is none.
    CXmlCollectionBase* ExistingCollection(CXmlGeneratedClass* pObject, QvVariant& value);

    /// Lets a collection of open elements read: all that its namespace restriction allows, or, where this member has a
    /// name of its own, the run of elements that have this name and the namespace of the first.
    /// @return the cursor behind what was consumed.
    /// @throws CQvException if the collection is no CElementCol and has to be one.
    CXmlElement* ReadWildcardCol(CXmlCollectionBase* pCollection, CXmlElement* pParent, CXmlElement* pCurrent,
                                 const CXmlSerializationContext& context) const;

    /// Moves the cursor behind the element under it.
    static void Consume(CXmlElement** ppCurrent);

    /// @param lpctFormat the text, with one %s for the name.
    /// @throws CQvValidationException with that text.
    [[noreturn]] static void ThrowMissing(const wchar_t* lpctFormat, const std::wstring& strName);

private:
    const CXmlCollectionBase& ReadCollection(const CXmlGeneratedClass* pObject, QvVariant& value) const;
    CXmlCollectionBase* CollectionIn(const QvVariant& value) const;
    bool CollectionToXml(const CXmlCollectionBase& collection, const CXmlSerializationContext& context,
                         CXmlWriter* pWriter) const;
    bool StoreIfConsumed(CXmlGeneratedClass* pObject, CXmlObjectBase* pChild, CXmlElement** ppCurrent,
                         CXmlElement* pNext);

    std::wstring m_strName;
    std::wstring m_strNamespace;
    int m_nPropertyIndex;
    CPrimitiveRestrictions m_restrictions;
    ItemType m_eItemType = QvXmlLib9::ItemType_Invalid;
    const wchar_t* m_pszFormat = nullptr;
    CWhitespaceUtils::WhitespaceRule m_eWhitespaceRule = CWhitespaceUtils::WhitespaceRule_None;
    bool m_bPrimitive;
    EmptyChoice m_eEmptyChoice = EmptyChoice::Refused;
};

} // namespace QvXmlLib9Data
