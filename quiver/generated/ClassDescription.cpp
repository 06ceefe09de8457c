#include "quiver/generated/ClassDescription.h"

#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/GeneratedClass.h"
#include "quiver/generated/Records.h"
#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfoAll.h"
#include "quiver/metadata/ElementInfoChoice.h"
#include "quiver/metadata/ElementInfoSeq.h"

#include <algorithm>
#include <cstddef>

namespace QvXmlLib9
{

using namespace QvXmlLib9Data;

namespace
{

/// A table ended by a null pointer, as CleanMetaData frees it.
template <class TRecord>
TRecord** MakeTable(std::vector<std::unique_ptr<TRecord>>& records)
{
    TRecord** const ppTable = new TRecord*[records.size() + 1]();
    for (std::size_t n = 0; n < records.size(); ++n)
        ppTable[n] = records[n].release();
    return ppTable;
}

/// A record of the repeated members of the group that a class is. The collection behind it reads and writes.
template <class TSeq, class TChoice, class... TArguments>
std::unique_ptr<CElementInfo> MakeRepeated(XmlElementGroupType eGroup, TArguments... arguments)
{
    if (eGroup == GroupType_Choice)
        return std::make_unique<TChoice>(arguments...);
    return std::make_unique<TSeq>(arguments...);
}

} // namespace

CClassDescription::CClassDescription(const CGeneratedObject* pObject)
    : m_pObject(pObject)
{
}

CClassDescription::~CClassDescription() = default;

void CClassDescription::Class(XmlElementGroupType eGroup, XmlElementType eElementType, const wchar_t* lpctName,
                              const wchar_t* lpctNamespace)
{
    m_eGroup = eGroup;
    m_eElementType = eElementType;
    m_lpctName = lpctName;
    m_lpctNamespace = lpctNamespace;
    m_lpctTypeName = nullptr;
    m_bRequiresChoice = false;
}

void CClassDescription::TypeName(const wchar_t* lpctName, const wchar_t* lpctNamespace)
{
    m_lpctTypeName = lpctName;
    m_lpctTypeNamespace = lpctNamespace;
}

void CClassDescription::Text(int nMember, const CSimpleType& type)
{
    if (!type.HasPrefixes())
        return Text(nMember);
    m_bNamesAsText = true;
    Add(MakeNamesTextRecord({m_eGroup, nMember, false}, type));
    NoteIfPrefixed(L"", nMember, type);
}

void CClassDescription::TypedText(int nMember, int nType, const SNamedTypes& types)
{
    m_bNamesAsText = true;
    Add(MakeTypedTextRecord({nMember, nType, &types}));
    m_attributes.push_back(MakeAttributeRecord(L"type", g_lpctXsiNamespace, nType, true, L"", xs::QName::Type()));
}

void CClassDescription::NoteIfPrefixed(const wchar_t* lpctName, int nMember, const CSimpleType& type)
{
    if (!type.HasPrefixes())
        return;
    if (m_pPrefixed == nullptr)
        m_pPrefixed = std::make_unique<std::vector<SPrefixedMember>>();
    m_pPrefixed->push_back({nMember, lpctName, &type});
}

void CClassDescription::MixedText(int nMember)
{
    m_bMixed = true;
    Add(MakeMixedTextRecord({m_eGroup, nMember, false}));
}

void CClassDescription::Add(std::unique_ptr<CElementInfo> pRecord)
{
    m_elements.push_back(std::move(pRecord));
}

void CClassDescription::Element(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                const CSimpleType& type)
{
    Add(MakeValueRecord({m_eGroup, nMember, true}, lpctName, lpctNamespace, type));
}

void CClassDescription::OptionalElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                        const CSimpleType& type)
{
    Add(MakeValueRecord({m_eGroup, nMember, false}, lpctName, lpctNamespace, type));
}

void CClassDescription::RepeatedElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
{
    Add(MakeRepeated<CElementInfoSeqPrimCol, CElementInfoChoicePrimCol>(m_eGroup, lpctName, lpctNamespace, nMember));
}

void CClassDescription::Object(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember, SCreator creator)
{
    if (m_eGroup == GroupType_All)
        Add(std::make_unique<CElementInfoAllClsMnd>(lpctName, lpctNamespace, nMember, ElementType_Element,
                                                    creator.pfnCreate, creator.nClassId, true));
    else
        Add(std::make_unique<CElementInfoSeqClsMnd>(lpctName, lpctNamespace, nMember, ElementType_Element,
                                                    creator.pfnCreate, creator.nClassId, true));
}

void CClassDescription::OptionalObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                       SCreator creator)
{
    if (m_eGroup == GroupType_All)
        Add(std::make_unique<CElementInfoAllClsOpt>(lpctName, lpctNamespace, nMember, ElementType_Element,
                                                    creator.pfnCreate, creator.nClassId));
    else if (m_eGroup == GroupType_Choice)
        Add(std::make_unique<CElementInfoChoiceClsOpt>(lpctName, lpctNamespace, nMember, ElementType_Element,
                                                       creator.pfnCreate, creator.nClassId));
    else
        Add(std::make_unique<CElementInfoSeqClsOpt>(lpctName, lpctNamespace, nMember, ElementType_Element,
                                                    creator.pfnCreate, creator.nClassId));
}

void CClassDescription::RepeatedObject(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember)
{
    Add(MakeRepeated<CElementInfoSeqClsCol, CElementInfoChoiceClsCol>(m_eGroup, lpctName, lpctNamespace, nMember,
                                                                      ElementType_Element));
}

void CClassDescription::Polymorphic(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                    const SAlternatives& alternatives, SCreator declared, bool bRequired)
{
    Add(MakePolymorphicRecord({m_eGroup, nMember, bRequired}, SPlace(lpctName, lpctNamespace, alternatives, declared)));
}

void CClassDescription::Group(const wchar_t* lpctName, int nMember, bool bContentRequired, SCreator creator)
{
    Add(std::make_unique<CElementInfoSeqClsMnd>(lpctName, m_lpctNamespace, nMember, ElementType_Pseudo,
                                                creator.pfnCreate, creator.nClassId, bContentRequired));
}

void CClassDescription::OptionalGroup(const wchar_t* lpctName, int nMember, SCreator creator)
{
    if (m_eGroup == GroupType_Choice)
        Add(std::make_unique<CElementInfoChoiceClsOpt>(lpctName, m_lpctNamespace, nMember, ElementType_Pseudo,
                                                       creator.pfnCreate, creator.nClassId));
    else
        Add(std::make_unique<CElementInfoSeqClsOpt>(lpctName, m_lpctNamespace, nMember, ElementType_Pseudo,
                                                    creator.pfnCreate, creator.nClassId));
}

void CClassDescription::RepeatedGroup(const wchar_t* lpctName, int nMember)
{
    Add(MakeRepeated<CElementInfoSeqClsCol, CElementInfoChoiceClsCol>(m_eGroup, lpctName, m_lpctNamespace, nMember,
                                                                      ElementType_Pseudo));
}

void CClassDescription::Wildcard(int nMember, const SWildcard& wildcard)
{
    Add(MakeWildcardRecord({m_eGroup, nMember, true}, wildcard));
}

void CClassDescription::OptionalWildcard(int nMember, const SWildcard& wildcard)
{
    Add(MakeWildcardRecord({m_eGroup, nMember, false}, wildcard));
}

void CClassDescription::RepeatedWildcard(int nMember, const SWildcard&)
{
    Add(MakeRepeated<CElementInfoSeqClsCol, CElementInfoChoiceClsCol>(m_eGroup, L"AnyElement", L"", nMember,
                                                                      ElementType_Element));
}

void CClassDescription::Attribute(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                  const CSimpleType& type)
{
    NoteIfPrefixed(lpctName, nMember, type);
    m_attributes.push_back(MakeAttributeRecord(lpctName, lpctNamespace, nMember, false, L"", type));
}

void CClassDescription::OptionalAttribute(const wchar_t* lpctName, const wchar_t* lpctNamespace, int nMember,
                                          const CSimpleType& type, const wchar_t* lpctDefault)
{
    NoteIfPrefixed(lpctName, nMember, type);
    m_attributes.push_back(MakeAttributeRecord(lpctName, lpctNamespace, nMember, true, lpctDefault, type));
}

void CClassDescription::AnyAttribute(int nMember, const SWildcard& wildcard)
{
    m_pAnyAttribute = MakeAnyAttributeRecord(nMember, wildcard);
}

// --- Members ---------------------------------------------------------------------------------------------------------

std::ptrdiff_t CClassDescription::OffsetOf(const void* pMember) const
{
    return static_cast<const char*>(pMember) - reinterpret_cast<const char*>(m_pObject);
}

int CClassDescription::Inherited(const void* pMember) const
{
    const std::ptrdiff_t nOffset = OffsetOf(pMember);
    const auto found = std::find_if(m_members.begin(), m_members.end(),
                                    [nOffset](const SMemberRecord& record) { return record.nOffset == nOffset; });
    return static_cast<int>(found - m_members.begin());
}

int CClassDescription::AddMember(const void* pMember, const SMemberOperations& operations, const wchar_t* lpctName)
{
    SMemberRecord record;
    record.nOffset = OffsetOf(pMember);
    record.pOperations = &operations;
    record.lpctName = lpctName;
    m_members.push_back(record);
    return NumberOf(m_members.back());
}

SMemberRecord& CClassDescription::AddContent(const void* pMember, const SMemberOperations& operations,
                                             const wchar_t* lpctName)
{
    AddMember(pMember, operations, lpctName);
    m_members.back().bChoice = m_eGroup == GroupType_Choice;
    return m_members.back();
}

int CClassDescription::AddRepeated(const CCollectionMember& member, const SRepeatedElement& element,
                                   CXmlCollectionBase* (*pfnMake)(const SMemberRecord&))
{
    SMemberRecord& record = AddContent(&member, CCollectionMember::s_operations, element.lpctName);
    record.pElement = &element;
    record.pfnMake = pfnMake;
    return NumberOf(record);
}

int CClassDescription::AddOptional(const CObjectMember& member, const wchar_t* lpctName)
{
    return NumberOf(AddContent(&member, CObjectMember::s_optional, lpctName));
}

int CClassDescription::AddRequired(const CObjectMember& member, const wchar_t* lpctName, SCreator creator)
{
    SMemberRecord& record = AddContent(&member, CObjectMember::s_required, lpctName);
    record.creator = creator;
    return NumberOf(record);
}

void CClassDescription::AddRepeatedElement(int nMember, bool bValues)
{
    const SRepeatedElement& element = *m_members.back().pElement;
    if (bValues)
        RepeatedElement(element.lpctName, element.lpctNamespace, nMember);
    else
        RepeatedObject(element.lpctName, element.lpctNamespace, nMember);
}

void CClassDescription::Wildcard(const CRepeated<CAnyCol>& member, const SWildcard& wildcard)
{
    SMemberRecord& record = AddContent(&member, CCollectionMember::s_operations, L"");
    record.pWildcard = &wildcard;
    record.pfnMake = [](const SMemberRecord& made) -> CXmlCollectionBase*
    {
        return new CAnyCol(*made.pWildcard);
    };
    RepeatedWildcard(NumberOf(record), wildcard);
}

void CClassDescription::AnyAttribute(const CAnyAttributes& member, const SWildcard& wildcard)
{
    const int nMember = AddMember(&member, CAnyAttributes::s_operations, nullptr);
    m_members.back().pWildcard = &wildcard;
    AnyAttribute(nMember, wildcard);
}

void CClassDescription::Restrict()
{
    m_elements.clear();
    m_attributes.clear();
    m_pAnyAttribute.reset();
    m_nTextMember = -1;
    m_bMixed = false;
    m_bNamesAsText = false;
    m_pPrefixed.reset();
    m_bFailIfAttributeUnknown = true;
}

void CClassDescription::RestrictValues(const void* pMember, void (*pfnCheck)(const QvVariant&, const wchar_t*))
{
    m_members.at(static_cast<std::size_t>(Inherited(pMember))).pfnCheck = pfnCheck;
}

void CClassDescription::RestrictCounts(const void* pMember, int nMin, int nMax)
{
    SMemberRecord& record = m_members.at(static_cast<std::size_t>(Inherited(pMember)));
    record.bCounts = true;
    record.nMin = nMin;
    record.nMax = nMax;
}

void CClassDescription::Build(SClassTables& tables)
{
    // It takes what it is offered, so it stands behind all others, also where only the base has it.
    if (m_pAnyAttribute != nullptr)
        m_attributes.push_back(std::move(m_pAnyAttribute));
    auto pInfo =
        std::make_unique<CParentElementInfo>(m_eGroup, m_eElementType, m_lpctName, m_lpctNamespace, m_nTextMember,
                                             m_bFailIfAttributeUnknown && m_eElementType == ElementType_Element, false);
    pInfo->IgnoreParentNamespace();
    tables.bTyped = !m_elements.empty() && FindTypedText(*m_elements.front()) != nullptr;
    tables.ppElements = MakeTable(m_elements);
    tables.ppAttributes = MakeTable(m_attributes);
    tables.pMembers = new SMemberRecord[m_members.size()];
    std::copy(m_members.begin(), m_members.end(), tables.pMembers);
    tables.nMembers = static_cast<int>(m_members.size());
    tables.pInfo = pInfo.release();
    tables.lpctNamespace = m_lpctNamespace;
    tables.lpctTypeName = m_lpctTypeName;
    tables.lpctTypeNamespace = m_lpctTypeNamespace;
    tables.bRequiresChoice = m_bRequiresChoice;
    tables.bMixed = m_bMixed;
    tables.bNamesAsText = m_bNamesAsText;
    tables.pPrefixed = m_pPrefixed.release();
}

} // namespace QvXmlLib9
