#include "tools/quiver-gen/check/DynamicClass.h"

#include "tools/quiver-gen/check/DynamicObject.h"
#include "tools/quiver-gen/check/Model.h"

#include <algorithm>
#include <limits>
#include <mutex>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;
using namespace quiver_gen::binding;
using quiver_gen::cpp::EStorage;
using quiver_gen::cpp::SField;

namespace quiver_gen::check
{

namespace
{

/// All makers by number: a number is what the library hands to the function that makes an object.
class CMakers
{
public:
    int Add(const CMaker& maker)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_free.empty())
        {
            // Room for all to be free: a destructor gives the number back, and cannot fail.
            if (m_free.capacity() <= m_makers.size())
                m_free.reserve(2 * m_makers.size() + 16);
            m_makers.push_back(&maker);
            return static_cast<int>(m_makers.size() - 1);
        }
        const int nMaker = m_free.back();
        m_free.pop_back();
        m_makers[static_cast<std::size_t>(nMaker)] = &maker;
        return nMaker;
    }

    void Remove(int nMaker) noexcept
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_free.push_back(nMaker);
    }

    const CMaker& Get(int nMaker)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return *m_makers[static_cast<std::size_t>(nMaker)];
    }

    static CMakers& All()
    {
        // Never destroyed: models in static storage give their numbers back while they die.
        static CMakers& s_makers = *new CMakers;
        return s_makers;
    }

private:
    std::mutex m_mutex;
    std::vector<const CMaker*> m_makers;
    std::vector<int> m_free;
};

int ToInt(std::int64_t n)
{
    return static_cast<int>(std::min<std::int64_t>(n, std::numeric_limits<int>::max()));
}

SWildcard::EKind GetKind(SMember::ENamespaces eNamespaces)
{
    switch (eNamespaces)
    {
    case SMember::ENamespaces::Any:
        break;
    case SMember::ENamespaces::Not:
        return SWildcard::Not;
    case SMember::ENamespaces::List:
        return SWildcard::List;
    }
    return SWildcard::Any;
}

XmlElementGroupType GetGroup(SClass::EGroup eGroup)
{
    switch (eGroup)
    {
    case SClass::EGroup::Sequence:
        break;
    case SClass::EGroup::Choice:
        return GroupType_Choice;
    case SClass::EGroup::All:
        return GroupType_All;
    }
    return GroupType_Sequence;
}

// --- Descriptions, one operation of the library for each kind of member ---------------------------------------------

void DescribeValue(CClassDescription& description, const SDynamicField& field, int nMember)
{
    switch (field.field.pMember->eCardinality)
    {
    case ECardinality::Required:
        return description.Element(field.lpctName, field.lpctUri, nMember, field.value.pType->Get());
    case ECardinality::Optional:
        return description.OptionalElement(field.lpctName, field.lpctUri, nMember, field.value.pType->Get());
    case ECardinality::Repeated:
        return description.RepeatedElement(field.lpctName, field.lpctUri, nMember);
    }
}

void DescribeObject(CClassDescription& description, const SDynamicField& field, int nMember)
{
    const SMember& member = *field.field.pMember;
    if (member.eCardinality == ECardinality::Repeated)
        description.RepeatedObject(field.lpctName, field.lpctUri, nMember);
    else if (member.eMember == EMember::Object && member.bPolymorphic)
        description.Polymorphic(field.lpctName, field.lpctUri, nMember, *field.pAlternatives, field.creator,
                                member.eCardinality == ECardinality::Required);
    else if (member.eCardinality == ECardinality::Required)
        description.Object(field.lpctName, field.lpctUri, nMember, field.creator);
    else
        description.OptionalObject(field.lpctName, field.lpctUri, nMember, field.creator);
}

void DescribeGroup(CClassDescription& description, const SDynamicField& field, int nMember)
{
    switch (field.field.pMember->eCardinality)
    {
    case ECardinality::Required:
        return description.Group(field.lpctLabel, nMember, field.field.pMember->bContentRequired, field.creator);
    case ECardinality::Optional:
        return description.OptionalGroup(field.lpctLabel, nMember, field.creator);
    case ECardinality::Repeated:
        return description.RepeatedGroup(field.lpctLabel, nMember);
    }
}

void DescribeWildcard(CClassDescription& description, const SDynamicField& field, int nMember)
{
    switch (field.field.pMember->eCardinality)
    {
    case ECardinality::Required:
        return description.Wildcard(nMember, field.wildcard);
    case ECardinality::Optional:
        return description.OptionalWildcard(nMember, field.wildcard);
    case ECardinality::Repeated:
        return description.RepeatedWildcard(nMember, field.wildcard);
    }
}

void DescribeMember(CClassDescription& description, const SDynamicField& field, int nMember)
{
    switch (field.field.pMember->eMember)
    {
    case EMember::Value:
        return DescribeValue(description, field, nMember);
    case EMember::NillableValue:
    case EMember::TypedValue:
    case EMember::Object:
        return DescribeObject(description, field, nMember);
    case EMember::Group:
        return DescribeGroup(description, field, nMember);
    case EMember::Wildcard:
        return DescribeWildcard(description, field, nMember);
    }
}

void DescribeAttribute(CClassDescription& description, const SDynamicField& field, int nMember)
{
    const CSimpleType& type = field.value.pType->Get();
    if (field.field.pAttribute->bRequired)
        description.Attribute(field.lpctName, field.lpctUri, nMember, type);
    else if (field.field.eStorage == EStorage::Defaulted && !field.field.bInherited)
        description.OptionalAttribute(field.lpctName, field.lpctUri, nMember, type, field.value.lpctRule);
    else
        description.OptionalAttribute(field.lpctName, field.lpctUri, nMember, type);
}

} // namespace

// --- Makers ---------------------------------------------------------------------------------------------------------

CMaker::CMaker(CDynamicClass& made, const wchar_t* lpctRootUri, bool bNeverNil)
    : m_class(made)
    , m_lpctRootUri(lpctRootUri)
    , m_bNeverNil(bNeverNil)
    , m_nMaker(CMakers::All().Add(*this))
{
}

CMaker::~CMaker()
{
    CMakers::All().Remove(m_nMaker);
}

SCreator CMaker::GetCreator() const
{
    return {&CMaker::Create, m_nMaker};
}

CSmartPtr<CXmlObjectBase> CMaker::Create(int nMaker, const wchar_t* lpctElementName)
{
    const CMaker& maker = CMakers::All().Get(nMaker);
    if (maker.m_class.IsNillable())
        return CSmartPtr<CXmlObjectBase>(
            new CDynamicNillable(maker.m_class, lpctElementName, maker.m_lpctRootUri, maker.m_bNeverNil));
    return CSmartPtr<CXmlObjectBase>(new CDynamicObject(maker.m_class, lpctElementName, maker.m_lpctRootUri));
}

// --- Classes --------------------------------------------------------------------------------------------------------

CDynamicClass::CDynamicClass(CModel& model, const SClass& type, CDynamicClass* pBase)
    : m_model(model)
    , m_type(type)
    , m_pBase(pBase)
    , m_bNillable(type.bNillable || (pBase != nullptr && pBase->m_bNillable))
    , m_maker(*this)
{
}

CDynamicClass::~CDynamicClass()
{
    CDynamicObject::FreeTables(m_tables);
}

void CDynamicClass::SetAlternatives(std::vector<SAlternative> alternatives)
{
    m_alternatives = std::move(alternatives);
    m_all = {m_alternatives.data(), m_alternatives.size()};
}

const SClassTables& CDynamicClass::GetTables()
{
    if (!m_tables.bBuilt)
        Build();
    return m_tables;
}

const std::vector<CDynamicClass::SProperty>& CDynamicClass::GetProperties()
{
    if (!m_tables.bBuilt)
        Build();
    return m_properties;
}

void CDynamicClass::Build()
{
    try
    {
        CClassDescription description;
        Describe(description);
        description.Build(m_tables);
    }
    catch (...)
    {
        CDynamicObject::FreeTables(m_tables);
        throw;
    }
    m_tables.creator = GetCreator();
    m_tables.bBuilt = true;
}

void CDynamicClass::Describe(CClassDescription& description)
{
    std::vector<CDynamicClass*> line;
    for (CDynamicClass* pClass = this; pClass != nullptr; pClass = pClass->m_pBase)
        line.push_back(pClass);
    std::reverse(line.begin(), line.end());
    Numbers numbers;
    m_properties.clear();
    // A restriction says everything anew.
    const auto itLast =
        std::find_if(line.rbegin(), line.rend(), [](const CDynamicClass* p) { return p->m_type.bRestriction; });
    const std::size_t nDescribed = itLast == line.rend() ? 0 : static_cast<std::size_t>(line.rend() - itLast) - 1;
    for (std::size_t n = 0; n < line.size(); ++n)
    {
        AddProperties(line[n]->GetFields(), numbers, m_properties);
        if (n >= nDescribed)
            line[n]->DescribeOwn(description, numbers);
    }
}

void CDynamicClass::AddProperties(const std::deque<SDynamicField>& fields, Numbers& numbers,
                                  std::vector<SProperty>& properties)
{
    for (const SDynamicField& field : fields)
    {
        if (!field.field.bInherited)
        {
            numbers[field.field.strName] = static_cast<int>(properties.size());
            properties.push_back({&field, {}});
        }
        else if (cpp::IsRestricted(field.field))
            properties[static_cast<std::size_t>(numbers.at(field.field.strName))].restrictions.push_back(&field);
    }
}

void CDynamicClass::DescribeClass(CClassDescription& description) const
{
    CTexts& texts = m_model.Texts();
    const wchar_t* const lpctUri = texts.Keep(m_type.strUri);
    description.Class(GetGroup(m_type.eGroup), m_type.bPseudo ? ElementType_Pseudo : ElementType_Element,
                      texts.Keep(m_type.strElement), lpctUri);
    if (!m_type.strSchemaName.empty() && (m_pBase != nullptr || !m_type.alternatives.empty()))
        description.TypeName(texts.Keep(m_type.strSchemaName), lpctUri);
    if (!m_type.bUnknownAttributesFail && !m_type.bPseudo)
        description.IgnoreUnknownAttributes();
    if (m_type.eGroup == SClass::EGroup::Choice && !m_type.bEmptiable)
        description.RequireChoice();
}

void CDynamicClass::DescribeOwn(CClassDescription& description, const Numbers& numbers)
{
    DescribeClass(description);
    // An element that may say its type has two fields.
    if (m_type.pNamespace == nullptr && !m_type.attributes.empty())
        return description.TypedText(numbers.at("Value"), numbers.at("Type"), m_model.GetNamedTypes());
    for (const SDynamicField& field : GetFields())
    {
        const int nMember = numbers.at(field.field.strName);
        if (field.field.pMember != nullptr)
            DescribeMember(description, field, nMember);
        else if (field.field.pAttribute != nullptr)
            DescribeAttribute(description, field, nMember);
        else if (!field.field.IsText())
            description.AnyAttribute(nMember, field.wildcard);
        else if (m_type.pText != nullptr)
            description.Text(nMember, field.value.pType->Get());
        else
            description.MixedText(nMember);
    }
}

// --- Fields ---------------------------------------------------------------------------------------------------------

const std::deque<SDynamicField>& CDynamicClass::GetFields()
{
    if (m_bFields)
        return m_fields;
    m_fields.clear();
    CTexts& texts = m_model.Texts();
    for (const SField& field : cpp::GetFields(m_type))
    {
        SDynamicField& target = m_fields.emplace_back();
        target.field = field;
        target.lpctLabel = field.IsText() ? nullptr : texts.Keep(field.strLabel);
        target.record.pOperations = &CMember::s_operations;
        target.record.lpctName = target.lpctLabel;
        target.record.bChoice = field.bChoice;
        if (field.pType != nullptr)
            target.value.pType = &m_model.Types().Get(*field.pType);
        const SValueRule* const pRule = field.IsText() ? m_pTextRule : field.pRule;
        if (pRule != nullptr && pRule->eKind != SValueRule::EKind::None)
        {
            target.value.eRule = pRule->eKind;
            target.value.lpctRule = texts.Keep(pRule->strText);
        }
        if (field.pMember != nullptr)
            FillMember(target);
        if (field.pAttribute != nullptr)
        {
            target.lpctName = texts.Keep(field.pAttribute->strAttribute);
            target.lpctUri = texts.Keep(field.pAttribute->strUri);
        }
        if (field.IsWildcard() || field.eStorage == EStorage::AnyAttributes)
            FillWildcard(target);
    }
    m_bFields = true;
    return m_fields;
}

void CDynamicClass::FillMember(SDynamicField& target) const
{
    CTexts& texts = m_model.Texts();
    const SMember& member = *target.field.pMember;
    target.lpctName = texts.Keep(member.strElement);
    target.lpctUri = texts.Keep(member.strUri);
    if (target.field.eStorage == EStorage::Repeated)
        target.repeated = {target.lpctLabel, member.eMember == EMember::Group ? L"" : target.lpctUri,
                           ToInt(member.nMin), ToInt(member.nMax)};
    if (member.eMember == EMember::NillableValue || member.eMember == EMember::TypedValue)
        target.creator =
            m_model.MakeValueClass(*member.pType, member.value, member.eMember == EMember::NillableValue).GetCreator();
    else if (member.pClass != nullptr)
    {
        const CDynamicClass& object = m_model.Get(*member.pClass);
        target.creator = object.GetCreator();
        target.pAlternatives = &object.GetAlternatives();
    }
}

void CDynamicClass::FillWildcard(SDynamicField& target) const
{
    CTexts& texts = m_model.Texts();
    const SMember* const pMember = target.field.pMember;
    for (const std::string& strUri : pMember == nullptr ? m_type.anyAttributeUris : pMember->uris)
        target.uris.push_back(texts.Keep(strUri));
    target.wildcard.eKind = GetKind(pMember == nullptr ? m_type.eAnyAttribute : pMember->eNamespaces);
    if (target.wildcard.eKind != SWildcard::Any)
    {
        target.wildcard.ppUris = target.uris.data();
        target.wildcard.nUris = target.uris.size();
    }
    const SMember::EProcess eProcess = pMember == nullptr ? m_type.eAnyAttributeProcess : pMember->eProcess;
    if (eProcess != SMember::EProcess::Skip)
        target.wildcard.pKnown = &m_model.GetKnown();
    target.wildcard.bStrict = eProcess == SMember::EProcess::Strict;
    if (pMember == nullptr)
        return;
    const bool bRepeated = pMember->eCardinality == ECardinality::Repeated;
    target.wildcard.nMin = bRepeated ? ToInt(pMember->nMin) : pMember->eCardinality == ECardinality::Required ? 1 : 0;
    target.wildcard.nMax = bRepeated ? ToInt(pMember->nMax) : 1;
    if (!pMember->strElement.empty())
        target.wildcard.lpctElementName = texts.Keep(pMember->strElement);
}

} // namespace quiver_gen::check
