#include "quiver/metadata/AttributeInfo.h"

#include "quiver/collections/Attribute.h"
#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/metadata/TreeText.h"
#include "quiver/metadata/ValueText.h"
#include "quiver/output/UnitText.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"
#include "quiver/values/RestrictionCheck.h"

namespace QvXmlLib9Data
{

using QvXmlLib9::CAttributeCol;
using QvXmlLib9::CQvException;
using QvXmlLib9::CQvValidationException;
using QvXmlLib9::FormatString;
using QvXmlLib9::ItemType_string;
using QvXmlLib9::ToUnitText;
using QvXmlLib9::ToUtf16Units;

CAttributeInfo::CAttributeInfo(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                               bool bOptional, const wchar_t* lpctDefault)
    : m_strName(ToUtf16Units(lpctName))
    , m_strNamespace(ToUtf16Units(lpctNamespace))
    , m_nPropertyIndex(nPropertyIndex)
    , m_bOptional(bOptional)
    , m_strDefault(ToUtf16Units(lpctDefault))
{
}

CAttributeInfo::~CAttributeInfo() = default;

bool CAttributeInfo::IsThisAttribute(const CXmlSerializationContext& context, CXmlAttribute* pAttribute) const
{
    return pAttribute != nullptr && pAttribute->GetLocalName() == m_strName &&
           (pAttribute->GetNamespaceURI() == m_strNamespace || context.GetIgnoreNamespaces());
}

void CAttributeInfo::AccessProperty(CXmlGeneratedClass* pObject, bool bRead, QvVariant& value)
{
    pObject->AccessProperty(m_nPropertyIndex, bRead, value);
}

void CAttributeInfo::ReadProperty(const CXmlGeneratedClass* pObject, QvVariant& value) const
{
    pObject->ReadProperty(m_nPropertyIndex, value);
}

void CAttributeInfo::TestNamespace(const std::wstring& strNamespace, const std::wstring& strRestriction,
                                   const std::wstring& strTargetNamespace)
{
    CXmlObjectBase::Throw_IfNamespaceIsInvalid(strNamespace.c_str(), strRestriction.c_str(),
                                               strTargetNamespace.c_str());
}

void CAttributeInfo::ToXml_Int(const CXmlObjectBase* pObject, CXmlWriter* pWriter, bool bIsRoot,
                               const wchar_t* lpctNamespaceUri, const CXmlSerializationContext& context)
{
    pObject->ToXml_Int(pWriter, bIsRoot, lpctNamespaceUri, context, false);
}

std::wstring CAttributeInfo::GetTargetNamespace(const CXmlObjectBase* pObject)
{
    return pObject->GetTargetNamespace();
}

bool CAttributeInfo::IsUnset(const QvVariant& value) const
{
    return m_bOptional && !value.IsValid();
}

bool CAttributeInfo::IsSuppressedDefault(const CXmlSerializationContext& context, std::wstring_view svText) const
{
    return m_bOptional && !m_strDefault.empty() && context.GetNoOptionalAttributeDefaultOutput() &&
           svText == m_strDefault;
}

void CAttributeInfo::Throw_IfRequiredIsMissing(bool bFound) const
{
    if (!m_bOptional && !bFound)
        throw CQvValidationException(FormatString(L"Failed to find the required Attribute [%s]", m_strName.c_str()));
}

CAttributeInfoPrimitive::CAttributeInfoPrimitive(const wchar_t* lpctName, const wchar_t* lpctNamespace,
                                                 int nPropertyIndex, bool bOptional, ItemType eItemType,
                                                 const wchar_t* lpctFormat,
                                                 CWhitespaceUtils::WhitespaceRule eWhitespaceRule,
                                                 const CPrimitiveRestrictions& restrictions, const wchar_t* lpctDefault)
    : CAttributeInfo(lpctName, lpctNamespace, nPropertyIndex, bOptional, lpctDefault)
    , m_restrictions(restrictions)
    , m_eItemType(eItemType)
    , m_pszFormat(lpctFormat)
    , m_eWhitespaceRule(eWhitespaceRule)
{
}

void CAttributeInfoPrimitive::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                             CXmlWriter* pWriter) const
{
    QvVariant value;
    value.LetBorrow();
    ReadProperty(pObject, value);
    if (IsUnset(value))
        return;
    const CValueText text(value, m_pszFormat);
    if (IsSuppressedDefault(context, text.Get()))
        return;
    QvXmlLib9::CheckRestriction(m_strName.c_str(), value, m_eItemType, m_restrictions);
    pWriter->WriteAttribute(m_strName, m_strNamespace, text.Get(), value.GetTypeAsEnum());
}

bool CAttributeInfoPrimitive::AttributeFromXml(const CXmlSerializationContext&, CXmlGeneratedClass* pObject,
                                               CXmlAttribute* pAttribute)
{
    if (pAttribute->GetLocalName() != m_strName || pAttribute->GetNamespaceURI() != m_strNamespace)
        return false;
    QvVariant value;
    if (m_eItemType == ItemType_string && m_eWhitespaceRule == CWhitespaceUtils::WhitespaceRule_None)
        CTreeText::Store(*pAttribute, value);
    else
    {
        std::wstring strBuffer;
        value.FromString(pAttribute->GetValue(strBuffer), m_eItemType, m_eWhitespaceRule);
    }
    AccessProperty(pObject, false, value);
    return true;
}

void CAttributeInfoPrimitive::Validate(const CXmlSerializationContext&, bool bFound) const
{
    Throw_IfRequiredIsMissing(bFound);
}

void CAttributeInfoPrimitive::CheckRestriction(QvVariant value) const
{
    QvXmlLib9::CheckRestriction(m_strName.c_str(), value, m_eItemType, m_restrictions);
}

CAttributeInfoEnum::CAttributeInfoEnum(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                       bool bOptional, PfnEnumToString pfnToString, PfnEnumFromString pfnFromString,
                                       const wchar_t* lpctDefault)
    : CAttributeInfo(lpctName, lpctNamespace, nPropertyIndex, bOptional, lpctDefault)
    , m_pfnFromString(pfnFromString)
    , m_pfnToString(pfnToString)
{
}

void CAttributeInfoEnum::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                        CXmlWriter* pWriter) const
{
    QvVariant value;
    ReadProperty(pObject, value);
    if (IsUnset(value))
        return;
    const wchar_t* const lpctText = m_pfnToString(static_cast<int>(value.GetI4()));
    std::wstring strBuffer;
    if (!IsSuppressedDefault(context, ToUnitText(lpctText, strBuffer)))
        pWriter->WriteAttribute(m_strName, m_strNamespace, lpctText, ItemType_string);
}

bool CAttributeInfoEnum::AttributeFromXml(const CXmlSerializationContext& context, CXmlGeneratedClass* pObject,
                                          CXmlAttribute* pAttribute)
{
    if (!IsThisAttribute(context, pAttribute))
        return false;
    QvVariant value;
    std::wstring strBuffer;
    value.SetI4(m_pfnFromString(pAttribute->GetValue(strBuffer).c_str()));
    AccessProperty(pObject, false, value);
    return true;
}

void CAttributeInfoEnum::Validate(const CXmlSerializationContext&, bool bFound) const
{
    Throw_IfRequiredIsMissing(bFound);
}

CAttributeInfoAny::CAttributeInfoAny(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nPropertyIndex,
                                     bool bOptional, const wchar_t* lpctNamespaceRestriction,
                                     const wchar_t* lpctTargetNamespace, const wchar_t* lpctDefault)
    : CAttributeInfo(lpctName, lpctNamespace, nPropertyIndex, bOptional, lpctDefault)
    , m_strNamespaceRestriction(ToUtf16Units(lpctNamespaceRestriction))
    , m_strTargetNamespace(ToUtf16Units(lpctTargetNamespace))
{
}

void CAttributeInfoAny::AttributeToXml(const CXmlSerializationContext& context, const CXmlGeneratedClass* pObject,
                                       CXmlWriter* pWriter) const
{
    QvVariant value;
    ReadProperty(pObject, value);
    const CXmlCollectionBase* const pCollection = value.XmlCollectionPtr();
    if (pCollection == nullptr)
        throw CQvException(L"Serialization Data Error : The collection should be a CAttributeCol, it was not!");
    ToXml_Int(pCollection, pWriter, false, GetTargetNamespace(pObject).c_str(), context);
}

bool CAttributeInfoAny::AttributeFromXml(const CXmlSerializationContext&, CXmlGeneratedClass* pObject,
                                         CXmlAttribute* pAttribute)
{
    TestNamespace(pAttribute->GetNamespaceURI(), m_strNamespaceRestriction, m_strTargetNamespace);
    QvVariant value;
    AccessProperty(pObject, true, value);
    auto* const pAttributes = dynamic_cast<CAttributeCol*>(value.XmlCollectionPtr());
    if (pAttributes == nullptr)
        throw CQvException(L"Serialization Data Error : The collection should be a CAttributeCol, it was not!");
    std::wstring strBuffer;
    pAttributes->Add(pAttribute->GetLocalName().c_str(), pAttribute->GetValue(strBuffer).c_str(),
                     pAttribute->GetNamespaceURI().c_str());
    return true;
}

void CAttributeInfoAny::Validate(const CXmlSerializationContext&, bool) const
{
}

} // namespace QvXmlLib9Data
