#include "quiver/generated/Records.h"

#include "quiver/collections/Element.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/document/AttributesOf.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/GeneratedClass.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "quiver/metadata/TreeText.h"
#include "quiver/metadata/ValueText.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"

#include <string>
#include <utility>

namespace QvXmlLib9
{

using namespace QvXmlLib9Data;

namespace
{

/// A value travels as text and is checked by its member, so the record has nothing to say about either.
const CPrimitiveRestrictions& NoFacets()
{
    // Never destroyed: static objects may be written while they die.
    static const CPrimitiveRestrictions& s_none = *new CPrimitiveRestrictions;
    return s_none;
}

[[noreturn]] void ThrowElementNotSet(const wchar_t* lpctName)
{
    throw CQvValidationException(FormatString(L"The required element [%s] has not been set", lpctName));
}

/// The text of a value whose prefixes are declared on the open element, or inside it.
/// @param pObject an object of a generated class, as all that have these records.
/// @throws CQvInvalidValueException for a name whose prefix stands for another namespace than the type asks for.
std::wstring_view DeclaredText(std::wstring_view svText, const CSimpleType& type, const wchar_t* lpctName,
                               const CXmlGeneratedClass* pObject, CXmlWriter& writer, std::wstring& strBuffer)
{
    const CPrefixes* const pPrefixes = static_cast<const CGeneratedObject*>(pObject)->FindPrefixes();
    if (pPrefixes == nullptr && svText.find(L'{') == std::wstring_view::npos)
        return svText;
    strBuffer = (pPrefixes != nullptr ? *pPrefixes : CPrefixes::None()).DeclareValue(svText, type, lpctName, writer);
    return strBuffer;
}

/// @tparam TRecord the record of a string in one of the families, which reads the text.
template <class TRecord>
class CValueRecord : public TRecord
{
public:
    CValueRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, bool bRequired)
        : TRecord(lpctName, lpctNamespace, nMember, ItemType_string, nullptr, CWhitespaceUtils::WhitespaceRule_None,
                  NoFacets())
        , m_strElement(lpctName)
        , m_strUri(lpctNamespace)
        , m_bRequired(bRequired)
    {
    }

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override
    {
        QvVariant value;
        value.LetBorrow();
        this->ReadProperty(pObject, value);
        if (!value.IsValid())
        {
            if (m_bRequired && !context.GetIgnoreMissingMandatoryElements())
                ThrowElementNotSet(m_strElement.c_str());
            return false;
        }
        pWriter->StartElement(m_strElement, m_strUri);
        WriteValue(pObject, value, *pWriter);
        pWriter->EndElement();
        return true;
    }

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override
    {
        if (this->IsThisElement(context, *ppCurrent))
        {
            Throw_IfNotSimple(context, **ppCurrent);
            this->StorePrim(pObject, ppCurrent);
            return true;
        }
        return TRecord::ElementFromXml(context, pObject, pParent, ppCurrent, lpctParentNamespace, eParentType);
    }

protected:
    virtual void WriteValue(const CXmlGeneratedClass*, const QvVariant& value, CXmlWriter& writer) const
    {
        writer.WriteText(CValueText(value).Get(), value.GetTypeAsEnum());
    }

    const std::wstring& Name() const { return m_strElement; }

private:
    std::wstring m_strElement;
    std::wstring m_strUri;
    bool m_bRequired;
};

/// The same for names, whose prefixes mean what they mean at the element.
template <class TRecord>
class CNamesRecord final : public CValueRecord<TRecord>
{
public:
    CNamesRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, bool bRequired,
                 const CSimpleType& type)
        : CValueRecord<TRecord>(lpctName, lpctNamespace, nMember, bRequired)
        , m_type(type)
    {
    }

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                        XmlElementType eParentType) override
    {
        const CXmlElement* const pElement = this->IsThisElement(context, *ppCurrent) ? *ppCurrent : nullptr;
        const bool bResult = Read(context, pObject, pParent, ppCurrent, lpctParentNamespace, eParentType);
        if (pElement != nullptr && *ppCurrent != pElement)
            Note(context, *pObject, *pElement);
        return bResult;
    }

private:
    bool Read(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
              CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace, XmlElementType eParentType)
    {
        if (*ppCurrent == nullptr)
            return CValueRecord<TRecord>::ElementFromXml(context, pObject, pParent, ppCurrent, lpctParentNamespace,
                                                         eParentType);
        const CNameScope names(**ppCurrent);
        return CValueRecord<TRecord>::ElementFromXml(context, pObject, pParent, ppCurrent, lpctParentNamespace,
                                                     eParentType);
    }

    void Note(const CXmlSerializationContext& context, CXmlGeneratedClass& object, const CXmlElement& element)
    {
        QvVariant value;
        this->ReadProperty(&object, value);
        if (!value.IsValid())
            return;
        std::wstring strText(CValueText(value).Get());
        if (!static_cast<CGeneratedObject&>(object).Prefixes().Note(strText, m_type, element, context,
                                                                    this->Name().c_str()))
            return;
        value.SetString(strText);
        const CNameScope scope(static_cast<CGeneratedObject&>(object).Prefixes());
        this->AccessProperty(&object, false, value);
    }

    void WriteValue(const CXmlGeneratedClass* pObject, const QvVariant& value, CXmlWriter& writer) const override
    {
        const CValueText text(value);
        std::wstring strDeclared;
        writer.WriteText(DeclaredText(text.Get(), m_type, this->Name().c_str(), pObject, writer, strDeclared),
                         value.GetTypeAsEnum());
    }

    const CSimpleType& m_type;
};

template <class TRecord>
std::unique_ptr<CElementInfo> MakeValueOrNames(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                               bool bRequired, const CSimpleType& type)
{
    if (type.HasPrefixes())
        return std::make_unique<CNamesRecord<TRecord>>(lpctName, lpctNamespace, nMember, bRequired, type);
    return std::make_unique<CValueRecord<TRecord>>(lpctName, lpctNamespace, nMember, bRequired);
}

/// The text of an element with names. It is an element record, since the text that a class record names is written as
/// it is held.
class CNamesTextRecord : public CElementInfoSeq
{
public:
    CNamesTextRecord(int nMember, const CSimpleType* pType)
        : CElementInfoSeq(L"", L"", nMember)
        , m_pType(pType)
    {
    }

    bool ElementToXml(const CXmlSerializationContext&, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override
    {
        QvVariant value;
        ReadProperty(pObject, value);
        const CSimpleType* const pType = FindType(*pObject);
        std::wstring strDeclared;
        pWriter->WriteText(pType != nullptr && pType->HasPrefixes()
                               ? DeclaredText(value.StringRef(), *pType, pObject->GetElementName().c_str(), pObject,
                                              *pWriter, strDeclared)
                               : value.StringRef(),
                           ItemType_string);
        return true;
    }

    bool ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement**, const wchar_t*, XmlElementType) override
    {
        QvVariant value;
        std::wstring strBuffer;
        value.SetString(pParent->GetText(strBuffer));
        const CNameScope scope(*pParent);
        AccessProperty(pObject, false, value);
        return true;
    }

private:
    /// @return null where values have no prefixes.
    virtual const CSimpleType* FindType(const CXmlGeneratedClass&) const { return m_pType; }

    const CSimpleType* m_pType;
};

/// The same where the object says its type.
class CTypedTextRecord final : public CNamesTextRecord
{
public:
    explicit CTypedTextRecord(const STypedText& text)
        : CNamesTextRecord(text.nText, nullptr)
        , m_text(text)
    {
    }

    const STypedText& Get() const { return m_text; }

private:
    const CSimpleType* FindType(const CXmlGeneratedClass& object) const override
    {
        const SNamedType* const pType = static_cast<const CGeneratedObject&>(object).FindValueType();
        return pType != nullptr ? &pType->GetType() : nullptr;
    }

    STypedText m_text;
};

/// The text of mixed content. It stands at the beginning, since text behind a child would become part of the child in a
/// Fast Infoset document.
/// @tparam TFamily CElementInfoSeq, CElementInfoChoice or CElementInfoAll.
template <class TFamily>
class CMixedTextRecord final : public TFamily
{
public:
    CMixedTextRecord(const SRecordPlace& place, int)
        : TFamily(L"", L"", place.nMember)
    {
    }

    /// @return false: a choice goes on to its members.
    bool ElementToXml(const CXmlSerializationContext&, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override
    {
        QvVariant value;
        this->ReadProperty(pObject, value);
        if (value.IsValid() && !value.StringRef().empty())
            pWriter->WriteText(value.StringRef(), ItemType_string);
        return false;
    }

    bool ElementFromXml(const CXmlSerializationContext&, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement**, const wchar_t*, XmlElementType) override
    {
        QvVariant value;
        CTreeText::Store(*pParent, value);
        this->AccessProperty(pObject, false, value);
        return std::is_same_v<TFamily, CElementInfoSeq>;
    }

    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override
    {
        if constexpr (std::is_same_v<TFamily, CElementInfoAll>)
            return true;
        else
            return TFamily::Validate(context, pObject, bFound, bThrowIfMissing);
    }
};

/// What the records of single objects have in common whose element is not found by one name. How a miss is answered
/// follows the families: a sequence goes on or fails, a choice tries its next member, an all group asks again.
/// @tparam TFamily CElementInfoSeq, CElementInfoChoice or CElementInfoAll.
template <class TFamily>
class CObjectRecord : public TFamily
{
public:
    CObjectRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, bool bRequired)
        : TFamily(lpctName, lpctNamespace, nMember)
        , m_bRequired(bRequired)
    {
    }

    bool ElementToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                      CXmlWriter* pWriter) const override
    {
        QvVariant value;
        this->ReadProperty(pObject, value);
        const CXmlObjectBase* const pChild = value.XmlObjectPtr();
        if (pChild != nullptr)
            WriteChild(*pChild, context, pWriter);
        else if (m_bRequired && !context.GetIgnoreMissingMandatoryElements())
            ThrowElementNotSet(this->GetElementName().c_str());
        return pChild != nullptr;
    }

    bool ElementFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject, CXmlElement* pParent,
                        CXmlElement** ppCurrent, const wchar_t*, XmlElementType eParentType) override
    {
        const bool bMustFind = s_bSequence && m_bRequired;
        const bool bRealParent = eParentType == ElementType_Element;
        while (*ppCurrent == nullptr || !Takes(context, **ppCurrent))
        {
            if (!bMustFind)
                return s_bSequence;
            if (bRealParent && context.GetIgnoreMissingMandatoryElements())
                return true;
            if (!bRealParent || !context.GetIgnoreUnknownElements() || *ppCurrent == nullptr)
            {
                if (bRealParent)
                    ThrowMissing();
                return false;
            }
            this->Consume(ppCurrent);
        }
        const CSmartPtr<CXmlObjectBase> spChild = MakeChild(*ppCurrent);
        Read(spChild, context, pParent, *ppCurrent);
        this->StoreChild(pObject, spChild);
        this->Consume(ppCurrent);
        return true;
    }

    bool Validate(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject, bool bFound,
                  bool bThrowIfMissing) const override
    {
        if constexpr (!s_bAll)
            return TFamily::Validate(context, pObject, bFound, bThrowIfMissing);
        else
        {
            if (bFound || !m_bRequired || context.GetIgnoreMissingMandatoryElements())
                return true;
            if (bThrowIfMissing)
                ThrowMissing();
            return false;
        }
    }

protected:
    virtual bool Takes(const CXmlSerializationContext& context, const CXmlElement& element) const = 0;
    virtual CSmartPtr<CXmlObjectBase> MakeChild(CXmlElement* pElement) const = 0;
    virtual void Read(CXmlObjectBase* pChild, const CXmlSerializationContext& context, CXmlElement* pParent,
                      CXmlElement* pElement) const = 0;
    virtual void WriteChild(const CXmlObjectBase& child, const CXmlSerializationContext& context,
                            CXmlWriter* pWriter) const = 0;
    [[noreturn]] virtual void ThrowMissing() const = 0;

private:
    static constexpr bool s_bSequence = std::is_same_v<TFamily, CElementInfoSeq>;
    static constexpr bool s_bAll = std::is_same_v<TFamily, CElementInfoAll>;

    bool m_bRequired;
};

/// Lets the records write objects, which is a protected operation of theirs.
class CObjectWriter : public CXmlObjectBase
{
public:
    static void Write(const CXmlObjectBase& object, CXmlWriter* pWriter, const wchar_t* lpctUri,
                      const CXmlSerializationContext& context)
    {
        CXmlObjectBase::ToXml_Int(&object, pWriter, false, lpctUri, context, false);
    }
};

template <class TFamily>
class CPolymorphicRecord final : public CObjectRecord<TFamily>
{
public:
    CPolymorphicRecord(const SRecordPlace& place, const SPlace& alternatives)
        : CObjectRecord<TFamily>(alternatives.lpctName, alternatives.lpctUri, place.nMember, place.bRequired)
        , m_alternatives(alternatives)
    {
    }

private:
    bool Takes(const CXmlSerializationContext& context, const CXmlElement& element) const override
    {
        return m_alternatives.Takes(context, element);
    }

    CSmartPtr<CXmlObjectBase> MakeChild(CXmlElement* pElement) const override
    {
        return m_alternatives.Create(pElement);
    }

    void Read(CXmlObjectBase* pChild, const CXmlSerializationContext& context, CXmlElement*,
              CXmlElement* pElement) const override
    {
        this->ReadChild(pChild, pElement, context, false);
    }

    void WriteChild(const CXmlObjectBase& child, const CXmlSerializationContext& context,
                    CXmlWriter* pWriter) const override
    {
        CObjectWriter::Write(child, pWriter, m_alternatives.Prepare(child), context);
    }

    [[noreturn]] void ThrowMissing() const override
    {
        CElementInfo::ThrowMissing(L"Failed to find a suitable substitution element for [%s]", this->GetElementName());
    }

    SPlace m_alternatives;
};

template <class TFamily>
class CWildcardRecord final : public CObjectRecord<TFamily>
{
public:
    CWildcardRecord(const SRecordPlace& place, const SWildcard& wildcard)
        : CObjectRecord<TFamily>(wildcard.lpctElementName != nullptr ? wildcard.lpctElementName : L"AnyElement", L"",
                                 place.nMember, place.bRequired)
        , m_wildcard(wildcard)
    {
    }

private:
    bool Takes(const CXmlSerializationContext&, const CXmlElement& element) const override
    {
        return m_wildcard.Allows(element.GetNamespaceURI(), element.GetLocalName());
    }

    CSmartPtr<CXmlObjectBase> MakeChild(CXmlElement* pElement) const override
    {
        return CSmartPtr<CXmlObjectBase>(
            new CElement(pElement->GetLocalName().c_str(), pElement->GetNamespaceURI().c_str(), L"##any", L""));
    }

    void Read(CXmlObjectBase* pChild, const CXmlSerializationContext& context, CXmlElement* pParent,
              CXmlElement* pElement) const override
    {
        m_wildcard.Throw_IfContentIsWrong(*pElement, context);
        if (IsCheckingOnly())
            return;
        CElementInfo::FromXml_Int(pChild, pParent, pElement, context, false);
        DropLayout(static_cast<CElement&>(*pChild));
    }

    void WriteChild(const CXmlObjectBase& child, const CXmlSerializationContext& context,
                    CXmlWriter* pWriter) const override
    {
        m_wildcard.Throw_IfForbidden(static_cast<const CElement&>(child));
        CObjectWriter::Write(child, pWriter, child.GetNamespace().c_str(), context);
    }

    [[noreturn]] void ThrowMissing() const override
    {
        CElementInfo::ThrowMissing(L"Failed to find a required element [%s]", this->GetElementName());
    }

    SWildcard m_wildcard;
};

template <template <class> class TRecord, class TWhat>
std::unique_ptr<CElementInfo> MakeFor(const SRecordPlace& place, const TWhat& what)
{
    switch (place.eGroup)
    {
    case GroupType_Choice:
        return std::make_unique<TRecord<CElementInfoChoice>>(place, what);
    case GroupType_All:
        return std::make_unique<TRecord<CElementInfoAll>>(place, what);
    default:
        return std::make_unique<TRecord<CElementInfoSeq>>(place, what);
    }
}

class CAttributeRecord final : public CAttributeInfoPrimitive
{
public:
    CAttributeRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, bool bOptional,
                     const wchar_t* lpctDefault, const CSimpleType& type)
        : CAttributeInfoPrimitive(lpctName, lpctNamespace, nMember, bOptional, ItemType_string, nullptr,
                                  CWhitespaceUtils::WhitespaceRule_None, NoFacets(), lpctDefault)
        , m_pNames(type.HasPrefixes() ? &type : nullptr)
    {
    }

    void AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                        CXmlWriter* pWriter) const override
    {
        QvVariant value;
        value.LetBorrow();
        ReadProperty(pObject, value);
        if (IsUnset(value))
            return;
        if (!value.IsValid())
            throw CQvValidationException(
                FormatString(L"The required attribute [%s] has not been set", m_strName.c_str()));
        const CValueText text(value);
        if (IsSuppressedDefault(context, text.Get()))
            return;
        std::wstring strDeclared;
        pWriter->WriteAttribute(m_strName, m_strNamespace,
                                m_pNames == nullptr ? text.Get()
                                                    : DeclaredText(text.Get(), *m_pNames, m_strName.c_str(), pObject,
                                                                   *pWriter, strDeclared),
                                value.GetTypeAsEnum());
    }

private:
    const CSimpleType* m_pNames; ///< the type of values with prefixes, null for others
};

class CAnyAttributeRecord final : public CAttributeInfoAny
{
public:
    CAnyAttributeRecord(int nMember, const SWildcard& wildcard)
        : CAttributeInfoAny(L"AnyAttribute", L"", nMember, true, L"##any", L"", L"")
        , m_wildcard(wildcard)
    {
    }

    bool AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                          CXmlAttribute* pAttribute) override
    {
        return m_wildcard.Allows(pAttribute->GetNamespaceURI()) && m_wildcard.Accepts(*pAttribute, context) &&
               CAttributeInfoAny::AttributeFromXml(context, pObject, pAttribute);
    }

private:
    SWildcard m_wildcard;
};

} // namespace

std::unique_ptr<CElementInfo> MakeValueRecord(const SRecordPlace& place, const wchar_t* lpctName,
                                              const wchar_t* lpctNamespace, const CSimpleType& type)
{
    const int n = place.nMember;
    switch (place.eGroup)
    {
    case GroupType_Choice:
        return MakeValueOrNames<CElementInfoChoicePrimOpt>(lpctName, lpctNamespace, n, false, type);
    case GroupType_All:
        if (place.bRequired)
            return MakeValueOrNames<CElementInfoAllPrimMnd>(lpctName, lpctNamespace, n, true, type);
        return MakeValueOrNames<CElementInfoAllPrimOpt>(lpctName, lpctNamespace, n, false, type);
    default:
        if (place.bRequired)
            return MakeValueOrNames<CElementInfoSeqPrimMnd>(lpctName, lpctNamespace, n, true, type);
        return MakeValueOrNames<CElementInfoSeqPrimOpt>(lpctName, lpctNamespace, n, false, type);
    }
}

std::unique_ptr<CElementInfo> MakeNamesTextRecord(const SRecordPlace& place, const CSimpleType& type)
{
    return std::make_unique<CNamesTextRecord>(place.nMember, &type);
}

std::unique_ptr<CElementInfo> MakeTypedTextRecord(const STypedText& text)
{
    return std::make_unique<CTypedTextRecord>(text);
}

const STypedText* FindTypedText(const CElementInfo& record)
{
    const auto* const pRecord = dynamic_cast<const CTypedTextRecord*>(&record);
    return pRecord != nullptr ? &pRecord->Get() : nullptr;
}

std::unique_ptr<CElementInfo> MakeMixedTextRecord(const SRecordPlace& place)
{
    return MakeFor<CMixedTextRecord>(place, 0);
}

void Throw_IfNotSimple(const CXmlSerializationContext& context, CXmlElement& element)
{
    if (element.GetFirstElement() == nullptr && CAttributesOf(element).IsEmpty())
        return;
    std::wstring strFault;
    for (const CXmlAttribute* const pAttribute : CAttributesOf(element))
    {
        if (!pAttribute->IsNamespaceAttribute() && !context.GetIgnoreUnknownAttributes())
            strFault = FormatString(L"Unexpected Attribute [%s] found.", pAttribute->GetLocalName().c_str());
    }
    const CXmlElement* const pChild = element.GetFirstElement();
    if (pChild != nullptr && !context.GetIgnoreUnknownElements())
        strFault =
            FormatString(L"Failed read all the elements held within the element [%s]. The unexpected element [%s] "
                         L"remains un processed",
                         element.GetLocalName().c_str(), pChild->GetLocalName().c_str());
    if (!strFault.empty())
        throw CQvValidationException(
            FormatString(L"Failed to process the element [%s]", element.GetLocalName().c_str()),
            CQvValidationException(strFault));
}

std::unique_ptr<CElementInfo> MakePolymorphicRecord(const SRecordPlace& place, const SPlace& alternatives)
{
    return MakeFor<CPolymorphicRecord>(place, alternatives);
}

std::unique_ptr<CElementInfo> MakeWildcardRecord(const SRecordPlace& place, const SWildcard& wildcard)
{
    return MakeFor<CWildcardRecord>(place, wildcard);
}

std::unique_ptr<CAttributeInfo> MakeAttributeRecord(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                                    bool bOptional, const wchar_t* lpctDefault, const CSimpleType& type)
{
    return std::make_unique<CAttributeRecord>(lpctName, lpctNamespace, nMember, bOptional, lpctDefault, type);
}

std::unique_ptr<CAttributeInfo> MakeAnyAttributeRecord(int nMember, const SWildcard& wildcard)
{
    return std::make_unique<CAnyAttributeRecord>(nMember, wildcard);
}

} // namespace QvXmlLib9
