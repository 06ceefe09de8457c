#include "Gpx.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <initializer_list>
#include <utility>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace gpx
{

namespace
{

const wchar_t s_lpctNamespace[] = L"http://www.topografix.com/GPX/1/1";

/// Announces the version of the generator that wrote these classes, as soon as the program is loaded.
const struct SRegisterVersion
{
    SRegisterVersion() { Register(9, 0); }
} s_registerVersion;

CPrimitiveRestrictions NoFacets()
{
    return CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"", L"", -1);
}

/// A null-terminated table of records, as CleanMetaData frees it.
template <class TInfo>
TInfo** MakeTable(std::initializer_list<TInfo*> records)
{
    TInfo** const ppTable = new TInfo*[records.size() + 1]();
    std::copy(records.begin(), records.end(), ppTable);
    return ppTable;
}

template <class T>
T* ObjectOf(const QvVariant& value)
{
    return static_cast<T*>(static_cast<CXmlObjectBase*>(value.GetXmlObject()));
}

const wchar_t* EFixToString(int nValue)
{
    switch (static_cast<EFix>(nValue))
    {
    case EFix::None:
        return L"none";
    case EFix::TwoD:
        return L"2d";
    case EFix::ThreeD:
        return L"3d";
    case EFix::Differential:
        return L"dgps";
    }
    throw CQvInvalidValueException(FormatString(L"EFix has no value %d", nValue));
}

int EFixFromString(const wchar_t* lpctValue)
{
    for (const EFix eValue : {EFix::None, EFix::TwoD, EFix::ThreeD, EFix::Differential})
    {
        if (std::wcscmp(lpctValue, EFixToString(static_cast<int>(eValue))) == 0)
            return static_cast<int>(eValue);
    }
    throw CQvInvalidValueException(FormatString(L"The value [%s] is not one of EFix", lpctValue));
}

} // namespace

// --- Extensions ----------------------------------------------------------------------------------

namespace
{

enum EExtensionsProperty
{
    Extensions_Elements
};

} // namespace

CExtensions::CExtensions(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CExtensions")
{
    SetElementName(lpctElementName);
    CExtensions::Init();
}

CExtensions::~CExtensions() = default;

CSmartPtr<CXmlObjectBase> CExtensions::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CExtensions(lpctElementName));
}

void CExtensions::Init()
{
    m_spElements = new CElementCol(L"", L"##other", s_lpctNamespace, 0, -1);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CExtensions::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"extensions", s_lpctNamespace, -1,
                                       true, false);
        ppElements =
            MakeTable<CElementInfo>({new CElementInfoSeqUntpdCol(L"AnyElement", s_lpctNamespace, Extensions_Elements)});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CExtensions::SMetaData CExtensions::s_metaData;

const CExtensions::SMetaData& CExtensions::MetaData()
{
    if (!s_metaData.bBuilt.load(std::memory_order_acquire))
    {
        const CQVCriticalSectionLock lock(m_csInit);
        if (!s_metaData.bBuilt.load(std::memory_order_relaxed))
        {
            s_metaData.Build();
            s_metaData.bBuilt.store(true, std::memory_order_release);
        }
    }
    return s_metaData;
}

CParentElementInfo* CExtensions::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CExtensions::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CExtensions::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CExtensions::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CExtensions::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CExtensions::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Extensions_Elements:
        if (bRead)
            value.SetXmlCollection(m_spElements);
        break;
    }
}

// --- Point ---------------------------------------------------------------------------------------

namespace
{

enum EPointProperty
{
    Point_Ele,
    Point_Time,
    Point_Name,
    Point_Sat,
    Point_Fix,
    Point_Extensions,
    Point_Lat,
    Point_Lon
};

} // namespace

CPoint::CPoint(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPoint")
{
    SetElementName(lpctElementName);
    CPoint::Init();
}

CPoint::~CPoint() = default;

CSmartPtr<CXmlObjectBase> CPoint::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CPoint(lpctElementName));
}

void CPoint::Init()
{
    m_decEle.reset();
    m_dtTime.reset();
    m_strName.reset();
    m_nSat.reset();
    m_eFix.reset();
    m_spExtensions = nullptr;
    m_decLat = CDecimal();
    m_decLon = CDecimal();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CPoint::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"trkpt", s_lpctNamespace, -1, true, false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimOpt(L"ele", s_lpctNamespace, Point_Ele, ItemType_decimal, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqPrimOpt(L"time", s_lpctNamespace, Point_Time, ItemType_datetime, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqPrimOpt(L"name", s_lpctNamespace, Point_Name, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", -1, 40, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimOpt(L"sat", s_lpctNamespace, Point_Sat, ItemType_ui4, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqEnumOpt(L"fix", s_lpctNamespace, Point_Fix, &EFixToString, &EFixFromString),
             new CElementInfoSeqClsOpt(L"extensions", s_lpctNamespace, Point_Extensions, ElementType_Element,
                                       &CExtensions::Create, 0)});
        ppAttributes = MakeTable<CAttributeInfo>(
            {new CAttributeInfoPrimitive(L"lat", L"", Point_Lat, false, ItemType_decimal, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Collapse,
                                         CPrimitiveRestrictions(L"", -1, -1, L"-90", L"90", L"", L"", -1), L""),
             new CAttributeInfoPrimitive(L"lon", L"", Point_Lon, false, ItemType_decimal, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Collapse,
                                         CPrimitiveRestrictions(L"", -1, -1, L"-180", L"", L"", L"180", -1), L"")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CPoint::SMetaData CPoint::s_metaData;

const CPoint::SMetaData& CPoint::MetaData()
{
    if (!s_metaData.bBuilt.load(std::memory_order_acquire))
    {
        const CQVCriticalSectionLock lock(m_csInit);
        if (!s_metaData.bBuilt.load(std::memory_order_relaxed))
        {
            s_metaData.Build();
            s_metaData.bBuilt.store(true, std::memory_order_release);
        }
    }
    return s_metaData;
}

CParentElementInfo* CPoint::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CPoint::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CPoint::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CPoint::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CPoint::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CPoint::SetEle(const std::optional<CDecimal>& decEle)
{
    m_decEle = decEle;
}

void CPoint::SetTime(const std::optional<CDateTime>& dtTime)
{
    m_dtTime = dtTime;
}

void CPoint::StoreName(QvVariant& value)
{
    if (!value.IsValid())
    {
        m_strName.reset();
        return;
    }
    GetClassElementInfo()[2]->CheckRestriction(value);
    m_strName = value.TakeString();
}

void CPoint::SetName(const std::optional<std::wstring>& strName)
{
    QvVariant value;
    if (strName)
        value.SetString(*strName);
    StoreName(value);
}

void CPoint::SetSat(std::optional<unsigned int> nSat)
{
    m_nSat = nSat;
}

void CPoint::SetFix(std::optional<EFix> eFix)
{
    m_eFix = eFix;
}

void CPoint::SetExtensions(CExtensions* pExtensions)
{
    Throw_IfElementNameDiffers(pExtensions, L"extensions");
    m_spExtensions = pExtensions;
}

void CPoint::StoreLat(QvVariant& value)
{
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_decLat = value.GetDecimal();
}

void CPoint::SetLat(const CDecimal& decLat)
{
    QvVariant value;
    value.SetDecimal(decLat);
    StoreLat(value);
}

void CPoint::StoreLon(QvVariant& value)
{
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[1])->CheckRestriction(value);
    m_decLon = value.GetDecimal();
}

void CPoint::SetLon(const CDecimal& decLon)
{
    QvVariant value;
    value.SetDecimal(decLon);
    StoreLon(value);
}

void CPoint::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Point_Ele:
        if (!bRead)
            SetEle(value.IsValid() ? std::optional<CDecimal>(value.GetDecimal()) : std::nullopt);
        else if (m_decEle)
            value.SetDecimal(*m_decEle);
        else
            value.SetInvalid();
        break;
    case Point_Time:
        if (!bRead)
            SetTime(value.IsValid() ? std::optional<CDateTime>(value.GetDateTime()) : std::nullopt);
        else if (m_dtTime)
            value.SetDateTime(*m_dtTime);
        else
            value.SetInvalid();
        break;
    case Point_Name:
        if (!bRead)
            StoreName(value);
        else if (m_strName)
            value.SetString(*m_strName);
        else
            value.SetInvalid();
        break;
    case Point_Sat:
        if (!bRead)
            SetSat(value.IsValid() ? std::optional<unsigned int>(static_cast<unsigned int>(value.GetUI4()))
                                   : std::nullopt);
        else if (m_nSat)
            value.SetUI4(*m_nSat);
        else
            value.SetInvalid();
        break;
    case Point_Fix:
        if (!bRead)
            SetFix(value.IsValid() ? std::optional<EFix>(static_cast<EFix>(value.GetI4())) : std::nullopt);
        else if (m_eFix)
            value.SetI4(static_cast<int>(*m_eFix));
        else
            value.SetInvalid();
        break;
    case Point_Extensions:
        bRead ? value.SetXmlObject(m_spExtensions) : SetExtensions(ObjectOf<CExtensions>(value));
        break;
    case Point_Lat:
        bRead ? value.SetDecimal(m_decLat) : StoreLat(value);
        break;
    case Point_Lon:
        bRead ? value.SetDecimal(m_decLon) : StoreLon(value);
        break;
    }
}

CPointCol::CPointCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CPointCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CPointCol::~CPointCol() = default;

CSmartPtr<CPoint> CPointCol::Add(CPoint* pItem)
{
    const CSmartPtr<CPoint> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, ElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CPoint> CPointCol::Item(int nIndex) const
{
    return CSmartPtr<CPoint>(static_cast<CPoint*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CPoint> CPointCol::begin() const
{
    return CQvIterator<CPoint>(GetHeadNode());
}

CQvIterator<CPoint> CPointCol::end() const
{
    return CQvIterator<CPoint>(nullptr);
}

void CPointCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                          const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CPointCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context, bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CPoint> spItem = new CPoint(ElementName().c_str());
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Segment -------------------------------------------------------------------------------------

namespace
{

enum ESegmentProperty
{
    Segment_Points
};

} // namespace

CSegment::CSegment(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CSegment")
{
    SetElementName(lpctElementName);
    CSegment::Init();
}

CSegment::~CSegment() = default;

void CSegment::Init()
{
    m_spPoints = new CPointCol(L"trkpt", s_lpctNamespace, 0, -1);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CSegment::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"trkseg", s_lpctNamespace, -1, true,
                                       false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqClsCol(L"trkpt", s_lpctNamespace, Segment_Points, ElementType_Element)});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CSegment::SMetaData CSegment::s_metaData;

const CSegment::SMetaData& CSegment::MetaData()
{
    if (!s_metaData.bBuilt.load(std::memory_order_acquire))
    {
        const CQVCriticalSectionLock lock(m_csInit);
        if (!s_metaData.bBuilt.load(std::memory_order_relaxed))
        {
            s_metaData.Build();
            s_metaData.bBuilt.store(true, std::memory_order_release);
        }
    }
    return s_metaData;
}

CParentElementInfo* CSegment::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CSegment::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CSegment::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CSegment::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CSegment::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CSegment::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Segment_Points:
        if (bRead)
            value.SetXmlCollection(m_spPoints);
        break;
    }
}

CSegmentCol::CSegmentCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CSegmentCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CSegmentCol::~CSegmentCol() = default;

CSmartPtr<CSegment> CSegmentCol::Add(CSegment* pItem)
{
    const CSmartPtr<CSegment> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, ElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CSegment> CSegmentCol::Item(int nIndex) const
{
    return CSmartPtr<CSegment>(static_cast<CSegment*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CSegment> CSegmentCol::begin() const
{
    return CQvIterator<CSegment>(GetHeadNode());
}

CQvIterator<CSegment> CSegmentCol::end() const
{
    return CQvIterator<CSegment>(nullptr);
}

void CSegmentCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                            const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CSegmentCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                      bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CSegment> spItem = new CSegment(ElementName().c_str());
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Track ---------------------------------------------------------------------------------------

namespace
{

enum ETrackProperty
{
    Track_Name,
    Track_Desc,
    Track_Segments
};

} // namespace

CTrack::CTrack(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CTrack")
{
    SetElementName(lpctElementName);
    CTrack::Init();
}

CTrack::~CTrack() = default;

void CTrack::Init()
{
    m_strName.reset();
    m_strDesc.reset();
    m_spSegments = new CSegmentCol(L"trkseg", s_lpctNamespace, 1, -1);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CTrack::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"trk", s_lpctNamespace, -1, true, false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimOpt(L"name", s_lpctNamespace, Track_Name, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
             new CElementInfoSeqPrimOpt(L"desc", s_lpctNamespace, Track_Desc, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
             new CElementInfoSeqClsCol(L"trkseg", s_lpctNamespace, Track_Segments, ElementType_Element)});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CTrack::SMetaData CTrack::s_metaData;

const CTrack::SMetaData& CTrack::MetaData()
{
    if (!s_metaData.bBuilt.load(std::memory_order_acquire))
    {
        const CQVCriticalSectionLock lock(m_csInit);
        if (!s_metaData.bBuilt.load(std::memory_order_relaxed))
        {
            s_metaData.Build();
            s_metaData.bBuilt.store(true, std::memory_order_release);
        }
    }
    return s_metaData;
}

CParentElementInfo* CTrack::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CTrack::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CTrack::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CTrack::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CTrack::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CTrack::SetName(std::optional<std::wstring> strName)
{
    m_strName = std::move(strName);
}

void CTrack::SetDesc(std::optional<std::wstring> strDesc)
{
    m_strDesc = std::move(strDesc);
}

void CTrack::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Track_Name:
        if (!bRead)
            SetName(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strName)
            value.SetString(*m_strName);
        else
            value.SetInvalid();
        break;
    case Track_Desc:
        if (!bRead)
            SetDesc(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strDesc)
            value.SetString(*m_strDesc);
        else
            value.SetInvalid();
        break;
    case Track_Segments:
        if (bRead)
            value.SetXmlCollection(m_spSegments);
        break;
    }
}

CTrackCol::CTrackCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CTrackCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CTrackCol::~CTrackCol() = default;

CSmartPtr<CTrack> CTrackCol::Add(CTrack* pItem)
{
    const CSmartPtr<CTrack> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, ElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CTrack> CTrackCol::Item(int nIndex) const
{
    return CSmartPtr<CTrack>(static_cast<CTrack*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CTrack> CTrackCol::begin() const
{
    return CQvIterator<CTrack>(GetHeadNode());
}

CQvIterator<CTrack> CTrackCol::end() const
{
    return CQvIterator<CTrack>(nullptr);
}

void CTrackCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                          const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CTrackCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context, bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CTrack> spItem = new CTrack(ElementName().c_str());
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Document ------------------------------------------------------------------------------------

namespace
{

enum EGpxProperty
{
    Gpx_Time,
    Gpx_Keywords,
    Gpx_Tracks,
    Gpx_Version,
    Gpx_Creator
};

} // namespace

CGpx::CGpx(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CGpx")
{
    SetElementName(lpctElementName);
    CGpx::Init();
}

CGpx::~CGpx() = default;

void CGpx::Init()
{
    m_dtTime.reset();
    m_strKeywords.reset();
    m_spTracks = new CTrackCol(L"trk", s_lpctNamespace, 1, -1);
    m_strVersion.clear();
    m_strCreator.clear();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CGpx::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"gpx", s_lpctNamespace, -1, true, false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimOpt(L"time", s_lpctNamespace, Gpx_Time, ItemType_datetime, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqPrimOpt(L"keywords", s_lpctNamespace, Gpx_Keywords, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
             new CElementInfoSeqClsCol(L"trk", s_lpctNamespace, Gpx_Tracks, ElementType_Element)});
        ppAttributes = MakeTable<CAttributeInfo>(
            {new CAttributeInfoPrimitive(L"version", L"", Gpx_Version, false, ItemType_string, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Preserve,
                                         CPrimitiveRestrictions(L"1\\.[01]", -1, -1, L"", L"", L"", L"", -1), L""),
             new CAttributeInfoPrimitive(L"creator", L"", Gpx_Creator, false, ItemType_string, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets(), L"")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CGpx::SMetaData CGpx::s_metaData;

const CGpx::SMetaData& CGpx::MetaData()
{
    if (!s_metaData.bBuilt.load(std::memory_order_acquire))
    {
        const CQVCriticalSectionLock lock(m_csInit);
        if (!s_metaData.bBuilt.load(std::memory_order_relaxed))
        {
            s_metaData.Build();
            s_metaData.bBuilt.store(true, std::memory_order_release);
        }
    }
    return s_metaData;
}

CParentElementInfo* CGpx::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CGpx::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CGpx::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CGpx::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CGpx::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CGpx::SetTime(const std::optional<CDateTime>& dtTime)
{
    m_dtTime = dtTime;
}

void CGpx::SetKeywords(std::optional<std::wstring> strKeywords)
{
    m_strKeywords = std::move(strKeywords);
}

void CGpx::StoreVersion(QvVariant& value)
{
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strVersion = value.TakeString();
}

void CGpx::SetVersion(const std::wstring& strVersion)
{
    QvVariant value;
    value.SetString(strVersion);
    StoreVersion(value);
}

void CGpx::SetCreator(std::wstring strCreator)
{
    m_strCreator = std::move(strCreator);
}

void CGpx::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Gpx_Time:
        if (!bRead)
            SetTime(value.IsValid() ? std::optional<CDateTime>(value.GetDateTime()) : std::nullopt);
        else if (m_dtTime)
            value.SetDateTime(*m_dtTime);
        else
            value.SetInvalid();
        break;
    case Gpx_Keywords:
        if (!bRead)
            SetKeywords(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strKeywords)
            value.SetString(*m_strKeywords);
        else
            value.SetInvalid();
        break;
    case Gpx_Tracks:
        if (bRead)
            value.SetXmlCollection(m_spTracks);
        break;
    case Gpx_Version:
        bRead ? value.SetString(m_strVersion) : StoreVersion(value);
        break;
    case Gpx_Creator:
        bRead ? value.SetString(m_strCreator) : SetCreator(value.TakeString());
        break;
    }
}

} // namespace gpx
