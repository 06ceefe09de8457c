#include "quiver/generated/GeneratedClass.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Apart.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Product.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/Records.h"
#include "quiver/output/XmlWriter.h"

#include <utility>

namespace QvXmlLib9
{

namespace
{

/// With the words that the walker puts around each failure within an element.
[[noreturn]] void Throw_InElement(const CXmlElement& element, const std::wstring& strWhat)
{
    throw CQvValidationException(FormatString(L"Failed to process the element [%s]", element.GetLocalName().c_str()),
                                 CQvValidationException(strWhat));
}

const STypedText& TypedTextOf(const SClassTables& tables)
{
    return *FindTypedText(**tables.ppElements);
}

bool IsNil(const INillable* pNillable)
{
    return pNillable != nullptr && pNillable->IsNil();
}

} // namespace

SRegisterGenerator::SRegisterGenerator()
{
    Register(g_nVersionMajor, g_nVersionMinor);
}

CGeneratedObject::CGeneratedObject(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"") // never used: the most derived class gives its name
{
    SetElementName(lpctElementName);
}

CGeneratedObject::~CGeneratedObject() = default;

CXmlObjectBase* CGeneratedObject::GetBase()
{
    return this;
}

std::wstring CGeneratedObject::GetNamespace() const
{
    return Tables().lpctNamespace;
}

std::wstring CGeneratedObject::GetTargetNamespace() const
{
    return Tables().lpctNamespace;
}

void CGeneratedObject::AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const
{
    const SClassTables& tables = Tables();
    if (tables.pPrefixed != nullptr)
        DeclarePrefixes(*pWriter);
    if (tables.bTyped && m_pPrefixes != nullptr)
        DeclareTypedText(*pWriter);
    if (m_bTellsType && tables.lpctTypeName != nullptr && context.GetWriteTypeAttribute())
        pWriter->WriteXsiType(tables.lpctTypeNamespace, tables.lpctTypeName, ItemType_string);
    CXmlGeneratedClass::AttributesToXml_Int(pWriter, context);
}

CXmlElement* CGeneratedObject::FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild,
                                           const CXmlSerializationContext& context, bool bOptionalChoice)
{
    m_pPrefixes = nullptr;
    const SClassTables& tables = Tables();
    const bool bNames = tables.pPrefixed != nullptr;
    CXmlElement* const pNext = bNames
                                   ? ReadNames(pElement, pFirstChild, context, bOptionalChoice)
                                   : CXmlGeneratedClass::FromXml_Int(pElement, pFirstChild, context, bOptionalChoice);
    if (bNames)
        NotePrefixes(*pElement, context);
    if (tables.bTyped)
        NoteValueType(*pElement, context);
    // A nested group shares its element with the class around it, which looks.
    if (tables.pInfo->GetElementType() == QvXmlLib9Data::ElementType_Element)
        Throw_IfContentIsWrong(*pElement, pFirstChild, context);
    Throw_IfNoChoiceWasRead(pElement, context);
    return pNext;
}

/// Attributes and text with prefixes are compared by what those stand for at the element.
CXmlElement* CGeneratedObject::ReadNames(CXmlElement* pElement, CXmlElement* pFirstChild,
                                         const CXmlSerializationContext& context, bool bOptionalChoice)
{
    const CNameScope scope(*pElement);
    return CXmlGeneratedClass::FromXml_Int(pElement, pFirstChild, context, bOptionalChoice);
}

bool CGeneratedObject::IsOfType(const std::wstring& strName, const std::wstring& strUri) const
{
    const SClassTables& tables = Tables();
    return tables.lpctTypeName != nullptr && strName == tables.lpctTypeName && strUri == tables.lpctTypeNamespace;
}

CPrefixes& CGeneratedObject::Prefixes()
{
    if (m_pPrefixes == nullptr)
        m_pPrefixes = std::make_unique<CPrefixes>();
    return *m_pPrefixes;
}

std::wstring CGeneratedObject::GetNamespaceOfPrefix(const wchar_t* lpctPrefix) const
{
    const std::wstring* const pUri = m_pPrefixes != nullptr ? m_pPrefixes->Find(lpctPrefix) : nullptr;
    return pUri != nullptr ? *pUri : std::wstring();
}

void CGeneratedObject::NotePrefixes(const CXmlElement& element, const CXmlSerializationContext& context)
{
    const bool bNil = IsNilElement();
    for (const SPrefixedMember& member : *Tables().pPrefixed)
    {
        const bool bText = *member.lpctName == L'\0';
        if (bText && bNil)
            continue;
        QvVariant value;
        AccessProperty(member.nMember, true, value);
        if (!value.IsValid())
            continue;
        std::wstring strText = PropertyText(value);
        if (!Prefixes().Note(strText, *member.pType, element, context, bText ? ElementName().c_str() : member.lpctName))
            continue;
        value.SetString(strText);
        const CNameScope scope(*m_pPrefixes);
        AccessProperty(member.nMember, false, value);
    }
}

/// Ahead of the first attribute, since declarations come first in Fast Infoset documents.
void CGeneratedObject::DeclarePrefixes(CXmlWriter& writer) const
{
    const CPrefixes& prefixes = m_pPrefixes != nullptr ? *m_pPrefixes : CPrefixes::None();
    for (const SPrefixedMember& member : *Tables().pPrefixed)
    {
        // An element that is nil may lack its text.
        if (*member.lpctName == L'\0' && IsNilElement())
            continue;
        QvVariant value;
        ReadProperty(member.nMember, value);
        if (value.IsValid())
            prefixes.Declare(PropertyText(value), *member.pType, writer);
    }
}

const SNamedType* CGeneratedObject::FindValueType() const
{
    const STypedText& typed = TypedTextOf(Tables());
    QvVariant type;
    ReadProperty(typed.nType, type);
    if (!type.IsValid() || m_pPrefixes == nullptr)
        return nullptr;
    const std::wstring strType = PropertyText(type);
    const auto [uri, name] = m_pPrefixes->Resolve(strType);
    return FindNamedType(*typed.pTypes, uri, name);
}

std::wstring CGeneratedObject::TypeText(const SNamedType& type, const std::wstring& strPrefix)
{
    const bool bNone = *type.lpctUri == L'\0';
    return Prefixes().MakeName(bNone ? std::wstring() : strPrefix, type.lpctUri, type.lpctName);
}

const SNamedType& CGeneratedObject::FindType(const wchar_t* lpctName, const wchar_t* lpctNamespace) const
{
    const SNamedType* const pType = FindNamedType(*TypedTextOf(Tables()).pTypes, lpctNamespace, lpctName);
    if (pType == nullptr)
        throw CQvInvalidParamException(
            FormatString(L"There is no simple type [%s] in the namespace [%s]", lpctName, lpctNamespace));
    return *pType;
}

std::wstring CGeneratedObject::TypedText(const std::wstring& strText, const SNamedType* pType) const
{
    if (pType == nullptr)
        return strText;
    std::wstring strNormal = pType->GetType().Normalize(strText);
    pType->GetType().Check(strNormal, ElementName().c_str());
    return strNormal;
}

void CGeneratedObject::NoteValueType(const CXmlElement& element, const CXmlSerializationContext& context)
{
    try
    {
        const STypedText& typed = TypedTextOf(Tables());
        std::wstring strPrefix;
        const SNamedType* const pType = FindTypeOf(*typed.pTypes, element, context, strPrefix);
        if (pType == nullptr)
            return;
        QvVariant value;
        value.SetString(TypeText(*pType, strPrefix));
        AccessProperty(typed.nType, false, value);
        if (IsNilElement())
            return;
        AccessProperty(typed.nText, true, value);
        const CNameScope scope(element);
        std::wstring strText = TypedText(PropertyText(value), pType);
        if (pType->GetType().HasPrefixes())
            Prefixes().Note(strText, pType->GetType(), element, context, ElementName().c_str());
        value.SetString(strText);
        AccessProperty(typed.nText, false, value);
    }
    catch (const CQvException& exception)
    {
        throw CQvValidationException(
            FormatString(L"Failed to process the element [%s]", element.GetLocalName().c_str()), exception);
    }
}

void CGeneratedObject::DeclareTypedText(CXmlWriter& writer) const
{
    const STypedText& typed = TypedTextOf(Tables());
    const SNamedType* const pType = FindValueType();
    if (pType == nullptr)
        return;
    QvVariant value;
    ReadProperty(typed.nType, value);
    m_pPrefixes->Declare(PropertyText(value), xs::QName::Type(), writer);
    if (IsNilElement() || !pType->GetType().HasPrefixes())
        return;
    ReadProperty(typed.nText, value);
    m_pPrefixes->Declare(PropertyText(value), pType->GetType(), writer);
}

bool CGeneratedObject::IsNilElement() const
{
    return IsNil(FindNillable(*Tables().pInfo));
}

void CGeneratedObject::Throw_IfContentIsWrong(const CXmlElement& element, const CXmlElement* pFirstChild,
                                              const CXmlSerializationContext& context) const
{
    const SClassTables& tables = Tables();
    const bool bNil = IsNil(FindNillable(*tables.pInfo));
    const bool bHasText = tables.bMixed || tables.bNamesAsText || tables.pInfo->GetElementTextPropertyIndex() != -1;
    if (bNil ? element.HasText() : !bHasText && element.HasTextBesideWhiteSpace())
        Throw_InElement(element,
                        FormatString(L"Unexpected text found within the element [%s]", element.GetLocalName().c_str()));
    if (bNil && pFirstChild != nullptr && !context.GetIgnoreUnknownElements())
        Throw_InElement(element, FormatString(L"The element [%s] is nil, so it may not hold the element [%s]",
                                              element.GetLocalName().c_str(), pFirstChild->GetLocalName().c_str()));
}

void CGeneratedObject::ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                                 const CXmlSerializationContext& context, bool bOptionalChoice) const
{
    Throw_IfChoiceIsMissing(context);
    CXmlGeneratedClass::ToXml_Int(pWriter, bIsRoot, lpctNamespaceUri, context, bOptionalChoice);
}

void CGeneratedObject::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    const SClassTables& tables = Tables();
    if (static_cast<unsigned int>(nPropertyIndex) >= static_cast<unsigned int>(tables.nMembers))
        return;
    const SMemberRecord& record = tables.pMembers[nPropertyIndex];
    if (record.IsPlain())
        record.pOperations->pfnAccess(MemberAt(record.nOffset), bRead, value, {record, record.lpctName, nullptr});
    else
        AccessMember(record, bRead, value);
}

QV_APART void CGeneratedObject::AccessMember(const SMemberRecord& record, bool bRead, QvVariant& value)
{
    const wchar_t* const lpctName = record.lpctName == nullptr ? ElementName().c_str() : record.lpctName;
    // A value is checked before the member takes it, and after the member gave it.
    if (!bRead && record.pfnCheck != nullptr)
        record.pfnCheck(value, lpctName);
    if (record.bChoice)
        ChoiceState()->Access(MemberAt(record.nOffset), bRead, value, record);
    else
        record.pOperations->pfnAccess(MemberAt(record.nOffset), bRead, value, {record, lpctName, nullptr});
    if (bRead && record.pfnCheck != nullptr)
        record.pfnCheck(value, lpctName);
    if (record.bCounts)
        RestrictCounts(value, record.nMin, record.nMax);
}

void CGeneratedObject::Init()
{
    const SClassTables& tables = Tables();
    for (int n = 0; n < tables.nMembers; ++n)
        tables.pMembers[n].pOperations->pfnReset(MemberAt(tables.pMembers[n].nOffset));
    if (CChoiceState* const pChoice = ChoiceState())
        pChoice->Reset();
}

void CGeneratedObject::BuildTables(SClassTables& tables, SCreator creator) const
{
    const CQVCriticalSectionLock lock(m_csInit);
    if (tables.bBuilt.load(std::memory_order_relaxed))
        return;
    try
    {
        CClassDescription description(this);
        Describe(description);
        description.Build(tables);
    }
    catch (...)
    {
        FreeTables(tables);
        throw;
    }
    tables.creator = creator;
    tables.bBuilt.store(true, std::memory_order_release);
}

void CGeneratedObject::FreeTables(SClassTables& tables)
{
    tables.bBuilt.store(false, std::memory_order_relaxed);
    CleanMetaData(tables.pInfo, tables.ppElements, tables.ppAttributes);
    delete[] tables.pMembers;
    tables.pMembers = nullptr;
    tables.nMembers = 0;
    delete std::exchange(tables.pPrefixed, nullptr);
    tables.bTyped = false;
}

bool CGeneratedObject::IsChoiceMissing(const CXmlSerializationContext& context) const
{
    const CChoiceState* const pChoice = ChoiceState();
    return pChoice != nullptr && !pChoice->IsSelected() && Tables().bRequiresChoice &&
           !context.GetIgnoreMissingChoice() && !IsNilElement();
}

void CGeneratedObject::Throw_IfChoiceIsMissing(const CXmlSerializationContext& context) const
{
    if (IsChoiceMissing(context))
        throw CQvValidationException(
            FormatString(L"Failed to convert the element [%s] to XML", ElementName().c_str()),
            CQvValidationException(L"This element is a choice, and as such must have at one (and only one) valid item, "
                                   L"currently there are none set"));
}

void CGeneratedObject::Throw_IfNoChoiceWasRead(CXmlElement* pElement, const CXmlSerializationContext& context) const
{
    // Of a nested group the record that holds it knows whether it has to be there.
    if (!IsChoiceMissing(context) || Tables().pInfo->GetElementType() != QvXmlLib9Data::ElementType_Element)
        return;
    Throw_InElement(*pElement, FormatString(L"No child elements within the element [%s] were populated. The element "
                                            L"represents a choice, so one and only one element should be populated. "
                                            L"The element contained no sutable child elements",
                                            pElement->GetLocalName().c_str()));
}

// --- Choices -----------------------------------------------------------------------------------------

bool CChoiceState::IsGiven(const QvVariant& value)
{
    if (value.GetTypeAsEnum() == ItemType_XmlObjectBase)
        return value.XmlObjectPtr() != nullptr;
    return value.IsValid();
}

void CChoiceState::Access(void* pMember, bool bRead, QvVariant& value, const SMemberRecord& record)
{
    const bool bTells = record.pOperations->pfnIsSet == nullptr;
    if (!bTells && !bRead && IsGiven(value))
        Throw_IfOtherIsSelected(pMember);
    record.pOperations->pfnAccess(pMember, bRead, value, {record, record.lpctName, m_pOwner});
    if (!bTells && !bRead)
        Select(pMember, record.lpctName, record.pOperations->pfnIsSet(pMember));
}

void CChoiceState::Throw_IfOtherIsSelected(const void* pMember) const
{
    if (IsSelected() && m_pSelected != pMember)
        throw CQvInvalidStateException(
            FormatString(L"The Property [%s] is already set. Only one element within this class bay be set at a time",
                         m_strSelected.c_str()));
}

void CChoiceState::Select(const void* pMember, std::wstring_view name)
{
    m_strSelected = name;
    m_pSelected = pMember;
}

void CChoiceState::Select(const void* pMember, std::wstring_view name, bool bSet)
{
    if (bSet)
        Select(pMember, name);
    else if (m_pSelected == pMember)
        Reset();
}

void CChoiceState::OnEvent(const CXmlObjectBase& collection, IEventSink::MsgType eMsgType)
{
    if (eMsgType == IEventSink::MsgType_Add)
        Throw_IfOtherIsSelected(&collection);
    else if (eMsgType == IEventSink::MsgType_AddComplete || eMsgType == IEventSink::MsgType_RemoveComplete)
        Select(&collection, collection.GetElementName(),
               static_cast<const CXmlCollectionBase&>(collection).GetCount() > 0);
}

} // namespace QvXmlLib9
