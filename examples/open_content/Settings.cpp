#include "Settings.h"

#include <atomic>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace settings
{

namespace
{

const wchar_t s_lpctNamespace[] = L"urn:example:settings";

/// Announces the version of the generator that wrote these classes, as soon as the program is loaded.
const struct SRegisterVersion
{
    SRegisterVersion() { Register(9, 0); }
} s_registerVersion;

CPrimitiveRestrictions NoFacets()
{
    return CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"", L"", -1);
}

template <class T>
T* ObjectOf(const QvVariant& value)
{
    return static_cast<T*>(static_cast<CXmlObjectBase*>(value.GetXmlObject()));
}

} // namespace

// --- Plugin --------------------------------------------------------------------------------------

namespace
{

enum EPluginProperty
{
    Plugin_Enabled,
    Plugin_Priority,
    Plugin_AnyElement,
    Plugin_Id,
    Plugin_AnyAttributes
};

} // namespace

CPlugin::CPlugin(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPlugin")
{
    SetElementName(lpctElementName);
    CPlugin::Init();
}

CPlugin::~CPlugin() = default;

void CPlugin::Init()
{
    m_bEnabled = false;
    m_nPriority.reset();
    m_spAnyElement = new CElement(L"AnyElement", L"", L"##other", s_lpctNamespace);
    m_strId.clear();
    m_spAnyAttributes = new CAttributeCol(L"", L"##other", s_lpctNamespace);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CPlugin::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"plugin", s_lpctNamespace, -1, true,
                                       false);
        ppElements = new CElementInfo* []
        {
            new CElementInfoSeqPrimMnd(L"enabled", s_lpctNamespace, Plugin_Enabled, ItemType_boolean, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
                new CElementInfoSeqPrimOpt(L"priority", s_lpctNamespace, Plugin_Priority, ItemType_i4, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Collapse,
                                           CPrimitiveRestrictions(L"", -1, -1, L"0", L"100", L"", L"", -1)),
                new CElementInfoSeqUntpdMnd(L"AnyElement", L"##other", Plugin_AnyElement, L"##other", s_lpctNamespace),
                nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            new CAttributeInfoPrimitive(
                L"id", L"", Plugin_Id, false, ItemType_string, nullptr, CWhitespaceUtils::WhitespaceRule_Preserve,
                CPrimitiveRestrictions(L"[a-z]+(\\.[a-z]+)*", -1, -1, L"", L"", L"", L"", -1), L""),
                new CAttributeInfoAny(L"AnyAttribute", L"", Plugin_AnyAttributes, true, L"##other", s_lpctNamespace,
                                      L""),
                nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CPlugin::SMetaData CPlugin::s_metaData;

const CPlugin::SMetaData& CPlugin::MetaData()
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

CParentElementInfo* CPlugin::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CPlugin::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CPlugin::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CPlugin::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CPlugin::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CPlugin::SetEnabled(bool bEnabled)
{
    m_bEnabled = bEnabled;
}

void CPlugin::SetPriority(std::optional<int> nPriority)
{
    if (nPriority)
    {
        QvVariant value;
        value.SetI4(*nPriority);
        GetClassElementInfo()[1]->CheckRestriction(value);
    }
    m_nPriority = nPriority;
}

void CPlugin::SetAnyElement(CElement* pAnyElement)
{
    Throw_IfPropertyIsNull(pAnyElement, L"AnyElement");
    TestNamespace(pAnyElement->GetNamespace().c_str(), L"##other", s_lpctNamespace);
    m_spAnyElement = pAnyElement;
}

void CPlugin::SetId(const std::wstring& strId)
{
    QvVariant value;
    value.SetString(strId);
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strId = strId;
}

void CPlugin::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Plugin_Enabled:
        bRead ? value.SetBoolean(m_bEnabled) : SetEnabled(value.GetBoolean());
        break;
    case Plugin_Priority:
        if (!bRead)
            SetPriority(value.IsValid() ? std::optional<int>(static_cast<int>(value.GetI4())) : std::nullopt);
        else if (m_nPriority)
            value.SetI4(*m_nPriority);
        else
            value.SetInvalid();
        break;
    case Plugin_AnyElement:
        bRead ? value.SetXmlObject(m_spAnyElement) : SetAnyElement(ObjectOf<CElement>(value));
        break;
    case Plugin_Id:
        bRead ? value.SetString(m_strId) : SetId(value.GetString());
        break;
    case Plugin_AnyAttributes:
        if (bRead)
            value.SetXmlCollection(m_spAnyAttributes);
        break;
    }
}

CPluginCol::CPluginCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CPluginCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CPluginCol::~CPluginCol() = default;

CSmartPtr<CPlugin> CPluginCol::Add(CPlugin* pItem)
{
    const CSmartPtr<CPlugin> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, ElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CPlugin> CPluginCol::Item(int nIndex) const
{
    return CSmartPtr<CPlugin>(static_cast<CPlugin*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CPlugin> CPluginCol::begin() const
{
    return CQvIterator<CPlugin>(GetHeadNode());
}

CQvIterator<CPlugin> CPluginCol::end() const
{
    return CQvIterator<CPlugin>(nullptr);
}

void CPluginCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                           const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CPluginCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context, bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CPlugin> spItem = new CPlugin(ElementName().c_str());
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Settings ------------------------------------------------------------------------------------

namespace
{

enum ESettingsProperty
{
    Settings_Title,
    Settings_AnyElement,
    Settings_Plugins,
    Settings_AnyElements,
    Settings_Version,
    Settings_AnyAttributes
};

} // namespace

CSettings::CSettings(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CSettings")
{
    SetElementName(lpctElementName);
    CSettings::Init();
}

CSettings::~CSettings() = default;

void CSettings::Init()
{
    m_strTitle.clear();
    m_spAnyElement = nullptr;
    m_spPlugins = new CPluginCol(L"plugin", s_lpctNamespace, 1, -1);
    m_spAnyElements = new CElementCol(L"", L"##other", s_lpctNamespace, 0, -1);
    m_nVersion = 0;
    m_spAnyAttributes = new CAttributeCol(L"", L"##other", s_lpctNamespace);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CSettings::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"settings", s_lpctNamespace, -1, true,
                                       false);
        ppElements = new CElementInfo* []
        {
            new CElementInfoSeqPrimMnd(L"title", s_lpctNamespace, Settings_Title, ItemType_string, nullptr,
                                       CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
                new CElementInfoSeqUntpdOpt(L"AnyElement", L"urn:example:window", Settings_AnyElement,
                                            L"urn:example:window", s_lpctNamespace),
                new CElementInfoSeqClsCol(L"plugin", s_lpctNamespace, Settings_Plugins, ElementType_Element),
                new CElementInfoSeqUntpdCol(L"AnyElement", L"##other", Settings_AnyElements), nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            new CAttributeInfoPrimitive(L"version", L"", Settings_Version, false, ItemType_i4, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets(), L""),
                new CAttributeInfoAny(L"AnyAttribute", L"", Settings_AnyAttributes, true, L"##other", s_lpctNamespace,
                                      L""),
                nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CSettings::SMetaData CSettings::s_metaData;

const CSettings::SMetaData& CSettings::MetaData()
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

CParentElementInfo* CSettings::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CSettings::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CSettings::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CSettings::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CSettings::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CSettings::SetTitle(const std::wstring& strTitle)
{
    m_strTitle = strTitle;
}

void CSettings::SetAnyElement(CElement* pAnyElement)
{
    if (pAnyElement != nullptr)
        TestNamespace(pAnyElement->GetNamespace().c_str(), L"urn:example:window", s_lpctNamespace);
    m_spAnyElement = pAnyElement;
}

void CSettings::SetVersion(int nVersion)
{
    m_nVersion = nVersion;
}

void CSettings::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Settings_Title:
        bRead ? value.SetString(m_strTitle) : SetTitle(value.GetString());
        break;
    case Settings_AnyElement:
        bRead ? value.SetXmlObject(m_spAnyElement) : SetAnyElement(ObjectOf<CElement>(value));
        break;
    case Settings_Plugins:
        if (bRead)
            value.SetXmlCollection(m_spPlugins);
        break;
    case Settings_AnyElements:
        if (bRead)
            value.SetXmlCollection(m_spAnyElements);
        break;
    case Settings_Version:
        bRead ? value.SetI4(m_nVersion) : SetVersion(static_cast<int>(value.GetI4()));
        break;
    case Settings_AnyAttributes:
        if (bRead)
            value.SetXmlCollection(m_spAnyAttributes);
        break;
    }
}

} // namespace settings
