#include "Readings.h"

#include <atomic>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace weather
{

namespace
{

const wchar_t s_lpctNamespace[] = L"urn:example:weather";

/// Announces the version of the generator that wrote these classes, as soon as the program is loaded.
const struct SRegisterVersion
{
    SRegisterVersion() { Register(9, 0); }
} s_registerVersion;

CPrimitiveRestrictions NoFacets()
{
    return CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"", L"", -1);
}

enum EReadingProperty
{
    Reading_Time,
    Reading_Temperature,
    Reading_Humidity,
    Reading_Remark,
    Reading_Station
};

} // namespace

CReading::CReading(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CReading")
{
    SetElementName(lpctElementName);
    CReading::Init();
}

CReading::~CReading() = default;

void CReading::Init()
{
    m_dtTime = CDateTime();
    m_decTemperature = CDecimal();
    m_nHumidity = 0;
    m_strRemark.reset();
    m_strStation.clear();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CReading::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"reading", s_lpctNamespace, -1, true,
                                       false);
        ppElements = new CElementInfo* []
        {
            new CElementInfoSeqPrimMnd(L"time", s_lpctNamespace, Reading_Time, ItemType_datetime, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
                new CElementInfoSeqPrimMnd(L"temperature", s_lpctNamespace, Reading_Temperature, ItemType_decimal,
                                           nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                                           CPrimitiveRestrictions(L"", -1, -1, L"-90", L"60", L"", L"", -1)),
                new CElementInfoSeqPrimMnd(L"humidity", s_lpctNamespace, Reading_Humidity, ItemType_i4, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Collapse,
                                           CPrimitiveRestrictions(L"", -1, -1, L"0", L"100", L"", L"", -1)),
                new CElementInfoSeqPrimOpt(L"remark", s_lpctNamespace, Reading_Remark, ItemType_string, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
                nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            new CAttributeInfoPrimitive(L"station", L"", Reading_Station, false, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 20, L"", L"", L"", L"", -1), L""),
                nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CReading::SMetaData CReading::s_metaData;

const CReading::SMetaData& CReading::MetaData()
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

CParentElementInfo* CReading::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CReading::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CReading::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CReading::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CReading::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CReading::SetTime(const CDateTime& dtTime)
{
    m_dtTime = dtTime;
}

void CReading::SetTemperature(const CDecimal& decTemperature)
{
    QvVariant value;
    value.SetDecimal(decTemperature);
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_decTemperature = decTemperature;
}

void CReading::SetHumidity(int nHumidity)
{
    QvVariant value;
    value.SetI4(nHumidity);
    GetClassElementInfo()[2]->CheckRestriction(value);
    m_nHumidity = nHumidity;
}

void CReading::SetRemark(const std::optional<std::wstring>& strRemark)
{
    m_strRemark = strRemark;
}

void CReading::SetStation(const std::wstring& strStation)
{
    QvVariant value;
    value.SetString(strStation);
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strStation = strStation;
}

void CReading::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Reading_Time:
        bRead ? value.SetDateTime(m_dtTime) : SetTime(value.GetDateTime());
        break;
    case Reading_Temperature:
        bRead ? value.SetDecimal(m_decTemperature) : SetTemperature(value.GetDecimal());
        break;
    case Reading_Humidity:
        bRead ? value.SetI4(m_nHumidity) : SetHumidity(static_cast<int>(value.GetI4()));
        break;
    case Reading_Remark:
        if (!bRead)
            SetRemark(value.IsValid() ? std::optional<std::wstring>(value.GetString()) : std::nullopt);
        else if (m_strRemark)
            value.SetString(*m_strRemark);
        else
            value.SetInvalid();
        break;
    case Reading_Station:
        bRead ? value.SetString(m_strStation) : SetStation(value.GetString());
        break;
    }
}

} // namespace weather
