#include "quiver/generated/GeneratedClass.h"

#include "quiver/collections/XmlCollection.h"
#include "quiver/core/XmlSerializationContext.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/output/XmlWriter.h"

namespace QvXmlLib9
{

SRegisterGenerator::SRegisterGenerator()
{
    Register(9, 0);
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
    if (m_bTellsType && tables.lpctTypeName != nullptr && context.GetWriteTypeAttribute())
        pWriter->WriteXsiType(tables.lpctTypeNamespace, tables.lpctTypeName, ItemType_string);
    CXmlGeneratedClass::AttributesToXml_Int(pWriter, context);
}

void CGeneratedObject::BuildTables(SClassTables& tables, void (*pfnDescribe)(CClassDescription&),
                                   PfnCreateObject pfnCreate)
{
    const CQVCriticalSectionLock lock(m_csInit);
    if (tables.bBuilt.load(std::memory_order_relaxed))
        return;
    try
    {
        CClassDescription description;
        pfnDescribe(description);
        description.Build(tables);
    }
    catch (...)
    {
        FreeTables(tables);
        throw;
    }
    tables.pfnCreate = pfnCreate;
    tables.bBuilt.store(true, std::memory_order_release);
}

void CGeneratedObject::FreeTables(SClassTables& tables)
{
    tables.bBuilt.store(false, std::memory_order_relaxed);
    CleanMetaData(tables.pInfo, tables.ppElements, tables.ppAttributes);
}

void CGeneratedObject::Throw_IfChoiceIsMissing(bool bMissing, const CXmlSerializationContext& context) const
{
    if (bMissing && Tables().bRequiresChoice && !context.GetIgnoreMissingChoice())
        throw CQvValidationException(
            FormatString(L"Failed to convert the element [%s] to XML", ElementName().c_str()),
            CQvValidationException(L"This element is a choice, and as such must have at one (and only one) valid item, "
                                   L"currently there are none set"));
}

void CGeneratedObject::Throw_IfNoChoiceWasRead(bool bMissing, CXmlElement* pElement,
                                               const CXmlSerializationContext& context) const
{
    const SClassTables& tables = Tables();
    // Of a nested group the record that holds it knows whether it has to be there.
    if (!bMissing || !tables.bRequiresChoice || context.GetIgnoreMissingChoice() ||
        tables.pInfo->GetElementType() != QvXmlLib9Data::ElementType_Element)
        return;
    const auto* const pNillable = dynamic_cast<const INillable*>(this);
    if (pNillable != nullptr && pNillable->IsNil())
        return;
    const std::wstring strName = pElement->GetLocalName();
    throw CQvValidationException(
        FormatString(L"Failed to process the element [%s]", strName.c_str()),
        CQvValidationException(FormatString(
            L"No child elements within the element [%s] were populated. The element represents a choice, so one and "
            L"only one element should be populated. The element contained no sutable child elements",
            strName.c_str())));
}

// --- Choices -----------------------------------------------------------------------------------------

bool CChoiceState::IsGiven(const QvVariant& value)
{
    if (value.GetTypeAsEnum() == ItemType_XmlObjectBase)
        return value.XmlObjectPtr() != nullptr;
    return value.IsValid();
}

void CChoiceState::Throw_IfOtherIsSelected(const wchar_t* lpctName, bool bGiven) const
{
    if (bGiven && !m_strSelected.empty() && m_strSelected != lpctName)
        throw CQvInvalidStateException(
            FormatString(L"The Property [%s] is already set. Only one element within this class bay be set at a time",
                         m_strSelected.c_str()));
}

void CChoiceState::Select(const wchar_t* lpctName, bool bSet)
{
    if (bSet)
        m_strSelected = lpctName;
    else if (m_strSelected == lpctName)
        m_strSelected.clear();
}

void CChoiceState::OnEvent(const CXmlObjectBase& collection, IEventSink::MsgType eMsgType)
{
    const std::wstring strName = collection.GetElementName();
    if (eMsgType == IEventSink::MsgType_Add)
        Throw_IfOtherIsSelected(strName.c_str(), true);
    else if (eMsgType == IEventSink::MsgType_Change)
        Select(strName.c_str(), static_cast<const CXmlCollectionBase&>(collection).GetCount() > 0);
}

} // namespace QvXmlLib9
