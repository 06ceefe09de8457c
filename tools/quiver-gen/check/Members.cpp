#include "tools/quiver-gen/check/Members.h"

#include "quiver/generated/Member.h"

#include <optional>

using namespace QvXmlLib9;
using namespace quiver_gen::binding;
using quiver_gen::cpp::EStorage;

namespace quiver_gen::check
{

namespace
{

// --- Values ---------------------------------------------------------------------------------------------------------

/// A value, as its text.
class CTextMember final : public CMember
{
public:
    explicit CTextMember(const SDynamicField& field)
        : m_field(field)
    {
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName) override
    {
        if (bRead)
            Store(variant, lpctName);
        else if (m_field.field.eStorage == EStorage::Required || variant.IsValid())
            Read(variant.TakeString(), lpctName);
        else
            m_text.reset();
    }

    bool IsSet() const override { return m_text.has_value(); }

private:
    void Read(const std::wstring& strText, const wchar_t* lpctName)
    {
        const CValueType& type = *m_field.value.pType;
        m_text = m_field.value.Read(strText, lpctName, m_field.IsElement());
        m_strKept = type.KeepsText() ? type.Get().Normalize(strText) : std::wstring();
    }

    void Store(QvVariant& variant, const wchar_t* lpctName) const
    {
        if (m_text)
            variant.SetString(m_strKept.empty() ? m_field.value.pType->Print(*m_text) : m_strKept);
        else if (m_field.field.eStorage == EStorage::Defaulted)
            variant.SetString(m_field.value.PrintRule());
        else if (m_field.field.IsText() && m_field.field.pOwner->pText != nullptr)
            ThrowNotSet(lpctName);
        else
            variant.SetInvalid();
    }

    const SDynamicField& m_field;
    std::optional<std::wstring> m_text;
    std::wstring m_strKept; ///< for values that print as they were read
};

// --- Objects --------------------------------------------------------------------------------------------------------

class CChildMember final : public CMember, private CObjectMember
{
public:
    explicit CChildMember(const SDynamicField& field)
        : m_field(field)
    {
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t* lpctName) override
    {
        if (bRead && m_field.field.eStorage == EStorage::RequiredObject)
            Require(m_field.creator, lpctName);
        CObjectMember::Access(bRead, variant);
    }

    bool IsSet() const override { return CObjectMember::IsSet(); }

private:
    const SDynamicField& m_field;
};

// --- Repeated members -----------------------------------------------------------------------------------------------

/// A collection of objects or groups.
template <class TBase>
class CDynamicCol final : public TBase
{
public:
    template <class... TArguments>
    explicit CDynamicCol(const TArguments&... arguments)
        : CInstanceMonitor(L"CDynamicCol")
        , TBase(arguments...)
    {
    }
};

/// A collection of values, as their texts.
class CTextCol final : public CValueColBase
{
public:
    explicit CTextCol(const SDynamicField& field)
        : CInstanceMonitor(L"CTextCol")
        , CValueColBase(field.repeated)
        , m_field(field)
    {
    }

    int GetCount() const override { return static_cast<int>(m_items.size()); }

    void Clear() override
    {
        if (!HasListeners())
            m_items.clear();
        while (!m_items.empty())
            Remove(0);
    }

    void Remove(int nIndex) override
    {
        Throw_IfIndexIsOutOfRange(nIndex);
        FireOnCollectionRemove(nIndex);
        m_items.erase(m_items.begin() + nIndex);
        FireOnCollectionRemoveComplete(nIndex);
        FireOnCollectionChange();
    }

protected:
    const CSimpleType& GetType() const override { return m_field.value.pType->Get(); }

    void AddText(QvVariant& text) override
    {
        const CValueType& type = *m_field.value.pType;
        const std::wstring strDocument = text.TakeString();
        SItem item{m_field.value.Read(strDocument, Name()),
                   type.KeepsText() ? type.Get().Normalize(strDocument) : std::wstring()};
        FireOnCollectionAdd(&item.strText);
        m_items.push_back(std::move(item));
        FireOnCollectionAddComplete(&m_items.back().strText);
        FireOnCollectionChange();
    }

    void StoreItem(std::size_t nIndex, QvVariant& value) const override
    {
        const SItem& item = m_items[nIndex];
        value.SetString(item.strKept.empty() ? m_field.value.pType->Print(item.strText) : item.strKept);
    }

private:
    struct SItem
    {
        std::wstring strText;
        std::wstring strKept; ///< for values that print as they were read
    };

    const SDynamicField& m_field;
    std::vector<SItem> m_items;
};

/// A collection that is made when it is asked for the first time.
class CRepeatedMember final : public CMember, private CCollectionMember
{
public:
    CRepeatedMember(const SDynamicField& field, IEventSink* pOwner)
        : m_field(field)
        , m_pOwner(pOwner)
    {
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t*) override
    {
        if (!bRead)
            return;
        if (m_spCollection == nullptr)
            Hold(MakeCollection(), m_pOwner);
        variant.SetXmlCollection(m_spCollection);
    }

    bool IsSet() const override { return m_spCollection != nullptr; }

private:
    CXmlCollectionBase* MakeCollection() const
    {
        if (m_field.field.IsWildcard())
            return new CAnyCol(m_field.wildcard);
        const SMember& member = *m_field.field.pMember;
        if (member.eMember == EMember::Value)
            return new CTextCol(m_field);
        if (member.eMember == EMember::Group)
            return new CDynamicCol<CGroupColBase>(m_field.repeated, m_field.creator);
        if (member.bPolymorphic)
            return new CDynamicCol<CPolymorphicColBase>(m_field.repeated, m_field.creator, *m_field.pAlternatives);
        return new CDynamicCol<CObjectColBase>(m_field.repeated, m_field.creator);
    }

    const SDynamicField& m_field;
    IEventSink* m_pOwner;
};

/// The attributes that a wildcard lets through.
class CAnyAttributesMember final : public CMember
{
public:
    explicit CAnyAttributesMember(const SDynamicField& field)
        : m_field(field)
    {
    }

    void Access(bool bRead, QvVariant& variant, const wchar_t*) override
    {
        m_attributes.Access(bRead, variant, m_field.wildcard);
    }

    bool IsSet() const override { return true; }

private:
    const SDynamicField& m_field;
    CAnyAttributes m_attributes;
};

} // namespace

CMember::~CMember() = default;

const SMemberOperations CMember::s_operations{[](void* pMember, bool bRead, QvVariant& value, const SMemberCall& call)
                                              { static_cast<CMember*>(pMember)->Access(bRead, value, call.lpctName); },
                                              nullptr, // an object drops its members
                                              [](const void* pMember)
                                              {
                                                  return static_cast<const CMember*>(pMember)->IsSet();
                                              }};

std::wstring SValueRules::Read(std::wstring strText, const wchar_t* lpctName, bool bElement) const
{
    if (lpctRule != nullptr && bElement && strText.empty())
    {
        const CNameScope scope;
        return pType->Read(lpctRule, lpctName);
    }
    std::wstring strValue = pType->Read(std::move(strText), lpctName);
    if (eRule == SValueRule::EKind::Fixed)
    {
        const std::wstring strPrinted = pType->Print(strValue);
        if (strPrinted != PrintRule() && !IsSameName(pType->Get(), strPrinted, lpctRule))
            ThrowNotFixed(strPrinted, lpctName, lpctRule);
    }
    return strValue;
}

std::wstring SValueRules::PrintRule() const
{
    const CNameScope scope;
    return pType->Print(pType->Read(lpctRule, L""));
}

std::unique_ptr<CMember> MakeMember(const SDynamicField& field, IEventSink* pOwner)
{
    switch (field.field.eStorage)
    {
    case EStorage::Required:
    case EStorage::Optional:
    case EStorage::Defaulted:
        return std::make_unique<CTextMember>(field);
    case EStorage::RequiredObject:
    case EStorage::OptionalObject:
    case EStorage::Polymorphic:
        return std::make_unique<CChildMember>(field);
    case EStorage::Repeated:
        return std::make_unique<CRepeatedMember>(field, pOwner);
    case EStorage::AnyAttributes:
        break;
    }
    return std::make_unique<CAnyAttributesMember>(field);
}

} // namespace quiver_gen::check
