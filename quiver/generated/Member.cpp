#include "quiver/generated/Member.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/metadata/ValueText.h"

#include <algorithm>

namespace QvXmlLib9
{

void ThrowNotFixed(const std::wstring& strText, const wchar_t* lpctName, const wchar_t* lpctFixed)
{
    throw CQvInvalidValueException(FormatString(L"Invalid Value for %s [%s]", lpctName, strText.c_str()),
                                   CQvException(FormatString(L"The value is fixed to %s", lpctFixed)));
}

void ThrowNotSet(const wchar_t* lpctName)
{
    throw CQvValidationException(FormatString(L"The required value [%s] has not been set", lpctName));
}

std::wstring PropertyText(const QvVariant& variant)
{
    return std::wstring(QvXmlLib9Data::CValueText(variant).Get());
}

namespace
{

[[noreturn]] void ThrowNameDiffers(const wchar_t* lpctName, const std::wstring& strActual)
{
    throw CQvInvalidParamException(FormatString(
        L"This property requires an element with the name %s the element being set has the element name %s", lpctName,
        strActual.c_str()));
}

} // namespace

void CheckObject(const CXmlObjectBase* pObject, const wchar_t* lpctName, bool bRequired)
{
    if (pObject == nullptr)
    {
        if (bRequired)
            throw CQvInvalidParamException(
                FormatString(L"The Property [%s] is mandatory, it may node be NULL", lpctName));
        return;
    }
    const std::wstring strName = pObject->GetBase()->GetElementName();
    if (strName != lpctName)
        ThrowNameDiffers(lpctName, strName);
}

void CheckAlternative(const CXmlObjectBase* pObject, const wchar_t* lpctName, const SAlternatives& alternatives)
{
    if (pObject == nullptr)
        return;
    const std::wstring strName = pObject->GetBase()->GetElementName();
    const bool bAllowed =
        strName == lpctName || std::any_of(alternatives.begin(), alternatives.end(),
                                           [&strName](const SAlternative& alternative)
                                           { return alternative.bElement && strName == alternative.lpctName; });
    if (!bAllowed)
        ThrowNameDiffers(lpctName, strName);
}

// --- Objects ---------------------------------------------------------------------------------------------------------

const SMemberOperations CObjectMember::s_optional{&CObjectMember::AccessOptional, &CObjectMember::ResetMember,
                                                  &CObjectMember::IsMemberSet};
const SMemberOperations CObjectMember::s_required{&CObjectMember::AccessRequired, &CObjectMember::ResetMember,
                                                  &CObjectMember::IsMemberSet};

CXmlObjectBase* CObjectMember::Require(const SCreator& creator, const wchar_t* lpctName) const
{
    if (m_spObject == nullptr)
        m_spObject = creator(lpctName);
    return m_spObject;
}

void CObjectMember::Access(bool bRead, QvVariant& variant)
{
    if (bRead)
        variant.SetXmlObject(m_spObject);
    else
        m_spObject = variant.XmlObjectPtr();
}

void CObjectMember::AccessOptional(void* pMember, bool bRead, QvVariant& variant, const SMemberCall&)
{
    static_cast<CObjectMember*>(pMember)->Access(bRead, variant);
}

void CObjectMember::AccessRequired(void* pMember, bool bRead, QvVariant& variant, const SMemberCall& call)
{
    CObjectMember& member = *static_cast<CObjectMember*>(pMember);
    if (bRead)
        member.Require(call.record.creator, call.lpctName);
    member.Access(bRead, variant);
}

void CObjectMember::ResetMember(void* pMember)
{
    static_cast<CObjectMember*>(pMember)->Reset();
}

bool CObjectMember::IsMemberSet(const void* pMember)
{
    return static_cast<const CObjectMember*>(pMember)->IsSet();
}

// --- Collections -----------------------------------------------------------------------------------------------------

const SMemberOperations CCollectionMember::s_operations{&CCollectionMember::AccessMember,
                                                        &CCollectionMember::ResetMember, nullptr};

CCollectionMember::~CCollectionMember()
{
    Reset();
}

void CCollectionMember::Hold(CXmlCollectionBase* pCollection, IEventSink* pOwner) const
{
    m_spCollection = pCollection;
    m_pOwner = pOwner;
    if (pOwner != nullptr)
        pCollection->AddEventListener(pOwner);
}

void CCollectionMember::Reset()
{
    if (m_spCollection == nullptr)
        return;
    if (m_pOwner != nullptr)
        m_spCollection->RemoveEventListener(m_pOwner);
    m_spCollection = nullptr;
}

void CCollectionMember::AccessMember(void* pMember, bool bRead, QvVariant& variant, const SMemberCall& call)
{
    if (!bRead)
        return;
    const CCollectionMember& member = *static_cast<CCollectionMember*>(pMember);
    if (member.m_spCollection == nullptr)
        member.Hold(call.record.pfnMake(call.record), call.pOwner);
    variant.SetXmlCollection(member.m_spCollection);
}

void CCollectionMember::ResetMember(void* pMember)
{
    static_cast<CCollectionMember*>(pMember)->Reset();
}

} // namespace QvXmlLib9
