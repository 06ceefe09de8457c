#include "tools/quiver-gen/check/DynamicObject.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/RepeatedCol.h"

using namespace QvXmlLib9;
using quiver_gen::cpp::EStorage;

namespace quiver_gen::check
{

CDynamicObject::CDynamicObject(CDynamicClass& type, const wchar_t* lpctElementName, const wchar_t* lpctRootUri)
    : CInstanceMonitor(L"CDynamicObject")
    , CGeneratedObject(lpctElementName)
    , m_class(type)
    , m_lpctRootUri(lpctRootUri)
    , m_choice(this)
{
}

CDynamicObject::~CDynamicObject() = default;

std::wstring CDynamicObject::GetTargetNamespace() const
{
    return m_lpctRootUri != nullptr ? m_lpctRootUri : CGeneratedObject::GetTargetNamespace();
}

void CDynamicObject::Init()
{
    m_members.clear();
    CGeneratedObject::Init();
}

const wchar_t* CDynamicObject::GetLabel(const SDynamicField& field) const
{
    return field.lpctLabel != nullptr ? field.lpctLabel : ElementName().c_str();
}

/// A value is checked before the base takes it, and after the base gave it.
void CDynamicObject::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    const std::size_t nMember = static_cast<std::size_t>(nPropertyIndex);
    const std::vector<const SDynamicField*>& restrictions = m_class.GetProperties()[nMember].restrictions;
    if (bRead)
    {
        AccessMember(nMember, bRead, value);
        for (const SDynamicField* const pField : restrictions)
            Restrict(*pField, value);
        return;
    }
    for (auto it = restrictions.rbegin(); it != restrictions.rend(); ++it)
        Restrict(**it, value);
    AccessMember(nMember, bRead, value);
}

void CDynamicObject::Restrict(const SDynamicField& field, QvVariant& value) const
{
    if (field.field.eStorage == EStorage::Repeated)
        RestrictCounts(value, field.repeated.nMin, field.repeated.nMax);
    else if (value.IsValid())
        field.value.Read(PropertyText(value), GetLabel(field),
                         field.IsElement() || field.field.eStorage == EStorage::Defaulted);
}

void CDynamicObject::AccessMember(std::size_t nMember, bool bRead, QvVariant& value)
{
    const std::vector<CDynamicClass::SProperty>& properties = m_class.GetProperties();
    const SDynamicField& field = *properties[nMember].pField;
    m_members.resize(properties.size());
    std::unique_ptr<CMember>& pMember = m_members[nMember];
    if (pMember == nullptr)
        pMember = MakeMember(field, field.field.bChoice ? this : nullptr);
    // The collections of a choice tell themselves when they fill.
    if (field.field.bChoice && field.field.eStorage != EStorage::Repeated)
        m_choice.Access(pMember.get(), bRead, value, field.record);
    else
        pMember->Access(bRead, value, GetLabel(field));
}

void CDynamicObject::OnEvent(CXmlObjectBase* pMsgSource, IEventSink::MsgType eMsgType, void*)
{
    m_choice.OnEvent(*pMsgSource, eMsgType);
}

CDynamicNillable::CDynamicNillable(CDynamicClass& type, const wchar_t* lpctElementName, const wchar_t* lpctRootUri,
                                   bool bNeverNil)
    : CInstanceMonitor(L"CDynamicNillable")
    , CDynamicObject(type, lpctElementName, lpctRootUri)
    , m_bNeverNil(bNeverNil)
{
}

void CDynamicNillable::SetNil(bool bNil)
{
    if (m_bNeverNil)
        throw CQvValidationException(L"Unexpected Attribute [nil] found.");
    CNillableState::SetNil(bNil);
}

void CDynamicNillable::Init()
{
    CDynamicObject::Init();
    ResetNil();
}

} // namespace quiver_gen::check
