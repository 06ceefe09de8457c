#include "quiver/metadata/ElementInfo.h"

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/metadata/TreeText.h"
#include "quiver/metadata/ValueText.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"
#include "quiver/values/RestrictionCheck.h"

#include <string_view>

namespace QvXmlLib9Data
{

using QvXmlLib9::CElementCol;
using QvXmlLib9::CQvException;
using QvXmlLib9::CQvValidationException;
using QvXmlLib9::FormatString;
using QvXmlLib9::ItemType_string;
using QvXmlLib9::ToUtf16Units;

namespace
{

/// Member name of a wildcard that takes elements of any local name.
constexpr std::wstring_view g_svAnyElement = L"AnyElement";

} // namespace

CParentElementInfo::CParentElementInfo(XmlElementGroupType eGroupType, XmlElementType eElementType,
                                       const wchar_t* lpctElementName, const wchar_t* lpctElementNamespace,
                                       int nElementTextPropertyIndex, bool bFromXmlFailIfAttributeUnknown,
                                       bool bHasBaseClasses)
    : m_eGroupType(eGroupType)
    , m_eElementType(eElementType)
    , m_strElementName(ToUtf16Units(lpctElementName))
    , m_strElementNamespace(ToUtf16Units(lpctElementNamespace))
    , m_nElementTextPropertyIndex(nElementTextPropertyIndex)
    , m_bFromXmlFailIfAttributeUnknown(bFromXmlFailIfAttributeUnknown)
    , m_bHasBaseClasses(bHasBaseClasses)
{
}

CParentElementInfo::~CParentElementInfo() = default;

bool CParentElementInfo::CNillableOffset::Find(const std::type_info& type, std::ptrdiff_t& nOffset) const
{
    if (m_pType.load(std::memory_order_acquire) != &type)
        return false;
    nOffset = m_nOffset;
    return true;
}

// One thread stores, once; the type is published behind the offset. Objects of a second class that shares the record
// are asked each time.
void CParentElementInfo::CNillableOffset::Remember(const std::type_info& type, std::ptrdiff_t nOffset)
{
    if (m_bClaimed.load(std::memory_order_relaxed) || m_bClaimed.exchange(true))
        return;
    m_nOffset = nOffset;
    m_pType.store(&type, std::memory_order_release);
}

CElementInfo::CElementInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex)
    : m_strName(ToUtf16Units(lpctName))
    , m_strNamespace(ToUtf16Units(lpctNamespace))
    , m_nPropertyIndex(nPropertyIndex)
    , m_bPrimitive(false)
{
}

CElementInfo::CElementInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                           ItemType eItemType, const wchar_t* lpctFormat,
                           CWhitespaceUtils::WhitespaceRule eWhitespaceRule, const CPrimitiveRestrictions& restrictions)
    : m_strName(ToUtf16Units(lpctName))
    , m_strNamespace(ToUtf16Units(lpctNamespace))
    , m_nPropertyIndex(nPropertyIndex)
    , m_restrictions(restrictions)
    , m_eItemType(eItemType)
    , m_pszFormat(lpctFormat)
    , m_eWhitespaceRule(eWhitespaceRule)
    , m_bPrimitive(true)
{
}

CElementInfo::~CElementInfo() = default;

void CElementInfo::PseudoChildAttributeToXml(const CXmlSerializationContext&, const CXmlGeneratedClass*,
                                             CXmlWriter*) const
{
}

void CElementInfo::CheckRestriction(const QvVariant& value) const
{
    if (!m_bPrimitive)
        throw CQvException(L"Cannot CheckRestriction for type: " + value.GetType());
    QvXmlLib9::CheckRestriction(m_strName.c_str(), value, m_eItemType, m_restrictions);
}

bool CElementInfo::AllowsEmptyChoice(const CXmlGeneratedClass* pObject) const
{
    if (m_eEmptyChoice != EmptyChoice::UpToCollection)
        return m_eEmptyChoice == EmptyChoice::Allowed;
    QvVariant value;
    return ReadCollection(pObject, value).GetMinOccurs() == 0;
}

bool CElementInfo::IsThisElement(const CXmlSerializationContext& context, const CXmlElement* pElement) const
{
    return pElement != nullptr && pElement->GetLocalName() == m_strName &&
           (pElement->GetNamespaceURI() == m_strNamespace || context.GetIgnoreNamespaces());
}

void CElementInfo::AccessProperty(CXmlGeneratedClass* pObject, bool bRead, QvVariant& value)
{
    pObject->AccessProperty(m_nPropertyIndex, bRead, value);
}

void CElementInfo::ReadProperty(const CXmlGeneratedClass* pObject, QvVariant& value) const
{
    pObject->ReadProperty(m_nPropertyIndex, value);
}

CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* pObject, CXmlElement* pParent, CXmlElement* pCurrent,
                                       const CXmlSerializationContext& context, bool bOptionalChoice)
{
    return pObject->FromXml_Int(pParent, pCurrent, context, bOptionalChoice);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* pObject, CXmlWriter* pWriter,
                                       const CXmlSerializationContext& context)
{
    pObject->AttributesToXml_Int(pWriter, context);
}

bool CElementInfo::ElementToXmlPrim(const CXmlSerializationContext&, const CXmlGeneratedClass* pObject,
                                    CXmlWriter* pWriter) const
{
    QvVariant value;
    value.LetBorrow();
    ReadProperty(pObject, value);
    if (!value.IsValid())
        return false;
    CheckRestriction(value);
    pWriter->StartElement(m_strName, m_strNamespace);
    pWriter->WriteText(CValueText(value, m_pszFormat).Get(), value.GetTypeAsEnum());
    pWriter->EndElement();
    return true;
}

bool CElementInfo::ElementToXmlPrimOpt(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                       CXmlWriter* pWriter) const
{
    return ElementToXmlPrim(context, pObject, pWriter);
}

bool CElementInfo::ElementToXmlEnum(const CXmlSerializationContext&, const CXmlGeneratedClass* pObject,
                                    CXmlWriter* pWriter, PfnEnumToString pfnToString) const
{
    QvVariant value;
    ReadProperty(pObject, value);
    if (!value.IsValid())
        return false;
    const int nValue = static_cast<int>(value.GetI4());
    pWriter->StartElement(m_strName, m_strNamespace);
    pWriter->WriteText(pfnToString(nValue), ItemType_string);
    pWriter->EndElement();
    return true;
}

bool CElementInfo::ElementToXmlEnumOpt(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                       CXmlWriter* pWriter, PfnEnumToString pfnToString) const
{
    return ElementToXmlEnum(context, pObject, pWriter, pfnToString);
}

bool CElementInfo::ElementToXmlCls(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter, bool bOptionalChoice) const
{
    QvVariant value;
    ReadProperty(pObject, value);
    const CXmlObjectBase* const pChild = value.XmlObjectPtr();
    if (pChild == nullptr)
        return false;
    // The namespace comes from here and the name from the child, so that a substitution element keeps its own name.
    pChild->ToXml_Int(pWriter, false, m_strNamespace.c_str(), context, bOptionalChoice);
    return true;
}

bool CElementInfo::ElementToXmlCol(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                   CXmlWriter* pWriter) const
{
    QvVariant value;
    return CollectionToXml(ReadCollection(pObject, value), context, pWriter);
}

bool CElementInfo::ElementToXmlCountedCol(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                          CXmlWriter* pWriter) const
{
    QvVariant value;
    const CXmlCollectionBase& collection = ReadCollection(pObject, value);
    if (!context.GetIgnoreInvalidCollectionCounts())
        collection.ValidateCount(context);
    return CollectionToXml(collection, context, pWriter);
}

bool CElementInfo::CollectionToXml(const CXmlCollectionBase& collection, const CXmlSerializationContext& context,
                                   CXmlWriter* pWriter) const
{
    if (collection.GetCount() < 1)
        return false;
    const CXmlObjectBase* const pBase = collection.GetBase();
    pBase->ToXml_Int(pWriter, false, m_strNamespace.c_str(), context, false);
    return true;
}

void CElementInfo::PseudoObjectAttributesToXml(const CXmlSerializationContext& context,
                                               const CXmlGeneratedClass* pObject, CXmlWriter* pWriter,
                                               XmlElementType eElementType) const
{
    if (eElementType != ElementType_Pseudo)
        return;
    QvVariant value;
    ReadProperty(pObject, value);
    if (const CXmlObjectBase* const pChild = value.XmlObjectPtr())
        AttributesToXml_Int(pChild, pWriter, context);
}

void CElementInfo::PseudoColAttributesToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                            CXmlWriter* pWriter, XmlElementType eElementType) const
{
    if (eElementType != ElementType_Pseudo)
        return;
    QvVariant value;
    AttributesToXml_Int(&ReadCollection(pObject, value), pWriter, context);
}

const CXmlCollectionBase& CElementInfo::ReadCollection(const CXmlGeneratedClass* pObject, QvVariant& value) const
{
    ReadProperty(pObject, value);
    return *CollectionIn(value);
}

CXmlCollectionBase* CElementInfo::CollectionIn(const QvVariant& value) const
{
    CXmlCollectionBase* const pCollection = value.XmlCollectionPtr();
    QV_ASSERT_MSG(pCollection != nullptr, "spCol != NULL");
    if (pCollection == nullptr)
        throw CQvException(FormatString(L"The property of the element [%s] holds no collection", m_strName.c_str()));
    return pCollection;
}

void CElementInfo::StorePrim(CXmlGeneratedClass* pObject, CXmlElement** ppCurrent)
{
    QvVariant value;
    if (m_eItemType == ItemType_string && m_eWhitespaceRule == CWhitespaceUtils::WhitespaceRule_None)
        CTreeText::Store(**ppCurrent, value);
    else
    {
        std::wstring strBuffer;
        value.FromString((*ppCurrent)->GetText(strBuffer), m_eItemType, m_eWhitespaceRule);
    }
    AccessProperty(pObject, false, value);
    Consume(ppCurrent);
}

void CElementInfo::StoreEnum(CXmlGeneratedClass* pObject, CXmlElement** ppCurrent, PfnEnumFromString pfnFromString)
{
    QvVariant value;
    std::wstring strBuffer;
    value.SetI4(pfnFromString((*ppCurrent)->GetText(strBuffer).c_str()));
    AccessProperty(pObject, false, value);
    Consume(ppCurrent);
}

bool CElementInfo::TakePrim(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                            CXmlElement** ppCurrent)
{
    if (!IsThisElement(context, *ppCurrent))
        return false;
    StorePrim(pObject, ppCurrent);
    return true;
}

bool CElementInfo::TakeEnum(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                            CXmlElement** ppCurrent, PfnEnumFromString pfnFromString)
{
    if (!IsThisElement(context, *ppCurrent))
        return false;
    StoreEnum(pObject, ppCurrent, pfnFromString);
    return true;
}

void CElementInfo::Consume(CXmlElement** ppCurrent)
{
    *ppCurrent = (*ppCurrent)->GetNextSiblingElement();
}

CXmlObjectBase* CElementInfo::ExistingChild(CXmlGeneratedClass* pObject, QvVariant& value)
{
    AccessProperty(pObject, true, value);
    CXmlObjectBase* const pChild = value.XmlObjectPtr();
    if (pChild == nullptr)
        throw CQvException(FormatString(L"The property of the element [%s] holds no object", m_strName.c_str()));
    return pChild;
}

CSmartPtr<CXmlObjectBase> CElementInfo::NewChild(PfnCreate pfnCreate, int nClassId) const
{
    CSmartPtr<CXmlObjectBase> spChild = pfnCreate(nClassId, m_strName.c_str());
    if (spChild == nullptr)
        throw CQvException(FormatString(L"No object was created for the element [%s]", m_strName.c_str()));
    return spChild;
}

void CElementInfo::StoreChild(CXmlGeneratedClass* pObject, CXmlObjectBase* pChild)
{
    QvVariant value;
    value.SetXmlObject(pChild);
    AccessProperty(pObject, false, value);
}

void CElementInfo::ReadChild(CXmlObjectBase* pChild, CXmlElement* pElement, const CXmlSerializationContext& context,
                             bool bOptionalChoice)
{
    FromXml_Int(pChild, pElement, pElement->GetFirstElement(), context, bOptionalChoice);
}

bool CElementInfo::ReadPseudoChild(CXmlObjectBase* pChild, CXmlElement* pParent, CXmlElement** ppCurrent,
                                   const CXmlSerializationContext& context)
{
    CXmlElement* const pStart = *ppCurrent;
    *ppCurrent = FromXml_Int(pChild, pParent, pStart, context, false);
    return *ppCurrent != pStart;
}

bool CElementInfo::TakeNewChild(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                CXmlElement* pParent, CXmlElement** ppCurrent, XmlElementType eElementType,
                                PfnCreate pfnCreate, int nClassId)
{
    if (eElementType == ElementType_Element)
    {
        if (!IsThisElement(context, *ppCurrent))
            return false;
        const CSmartPtr<CXmlObjectBase> spChild = NewChild(pfnCreate, nClassId);
        ReadChild(spChild, *ppCurrent, context, false);
        Consume(ppCurrent);
        StoreChild(pObject, spChild);
        return true;
    }
    if (*ppCurrent == nullptr)
        return false;
    const CSmartPtr<CXmlObjectBase> spChild = NewChild(pfnCreate, nClassId);
    return StoreIfConsumed(pObject, spChild, ppCurrent, FromXml_Int(spChild, pParent, *ppCurrent, context, false));
}

bool CElementInfo::StoreIfConsumed(CXmlGeneratedClass* pObject, CXmlObjectBase* pChild, CXmlElement** ppCurrent,
                                   CXmlElement* pNext)
{
    if (pNext == *ppCurrent)
        return false;
    StoreChild(pObject, pChild);
    *ppCurrent = pNext;
    return true;
}

CXmlElement* CElementInfo::ReadWildcard(CXmlObjectBase* pOpenElement, CXmlElement* pParent, CXmlElement* pCurrent,
                                        const CXmlSerializationContext& context) const
{
    if (m_strName != g_svAnyElement && m_strName != pCurrent->GetLocalName())
        return pCurrent;
    return FromXml_Int(pOpenElement, pParent, pCurrent, context, false);
}

bool CElementInfo::TakeNewWildcard(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                   CXmlElement* pParent, CXmlElement** ppCurrent, const wchar_t* lpctParentNamespace,
                                   const std::wstring& strNamespaceRestriction, const std::wstring& strTargetNamespace)
{
    if (*ppCurrent == nullptr)
        return false;
    const std::wstring strNamespace =
        GetAnyDefaultNamespace(strNamespaceRestriction.c_str(), lpctParentNamespace, strTargetNamespace.c_str());
    // Made ahead of any test, so a restriction that its own default namespace does not fit fails here, whatever stands
    // under the cursor.
    const CSmartPtr<CElement> spOpenElement = new CElement(m_strName.c_str(), strNamespace.c_str(),
                                                           strNamespaceRestriction.c_str(), strTargetNamespace.c_str());
    return StoreIfConsumed(pObject, spOpenElement, ppCurrent,
                           ReadWildcard(spOpenElement, pParent, *ppCurrent, context));
}

std::wstring CElementInfo::GetAnyDefaultNamespace(const wchar_t* lpctRestriction, const wchar_t* lpctParentNamespace,
                                                  const wchar_t* lpctTargetNamespace)
{
    std::wstring_view svRestriction = lpctRestriction;
    if (svRestriction.substr(0, 2) == L"##")
        svRestriction = svRestriction.substr(0, svRestriction.find(L' '));

    if (svRestriction == L"##any")
        return lpctParentNamespace;
    if (svRestriction == L"##other")
        return *lpctParentNamespace != L'\0' ? L"" : L"DefaultNamespace";
    if (svRestriction == L"##targetNamespace")
        return lpctTargetNamespace;
    return std::wstring();
}

CXmlCollectionBase* CElementInfo::ExistingCollection(CXmlGeneratedClass* pObject, QvVariant& value)
{
    AccessProperty(pObject, true, value);
    return CollectionIn(value);
}

CXmlElement* CElementInfo::ReadWildcardCol(CXmlCollectionBase* pCollection, CXmlElement* pParent, CXmlElement* pCurrent,
                                           const CXmlSerializationContext& context) const
{
    if (m_strName == g_svAnyElement)
        return FromXml_Int(pCollection, pParent, pCurrent, context, false);

    auto* const pElementCol = dynamic_cast<CElementCol*>(pCollection);
    if (pElementCol == nullptr)
        throw CQvException(L"Serialization Data Error : The collection should be a CElementCol, it was not!");
    const std::wstring strNamespace = pCurrent != nullptr ? pCurrent->GetNamespaceURI() : std::wstring();
    return pElementCol->FromXmlLockElementName_Int(m_strName, strNamespace, pParent, pCurrent, context);
}

void CElementInfo::ThrowMissing(const wchar_t* lpctFormat, const std::wstring& strName)
{
    throw CQvValidationException(FormatString(lpctFormat, strName.c_str()));
}

} // namespace QvXmlLib9Data
