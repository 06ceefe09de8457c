#include "PurchaseOrder.h"

#include <atomic>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace order
{

namespace
{

const wchar_t s_lpctNamespace[] = L"urn:example:order";

/// Announces the version of the generator that wrote these classes, as soon as the program is loaded.
const struct SRegisterVersion
{
    SRegisterVersion() { Register(9, 0); }
} s_registerVersion;

/// The facets of the simple type Text.
CPrimitiveRestrictions TextFacets()
{
    return CPrimitiveRestrictions(L"", 1, 80, L"", L"", L"", L"", -1);
}

CPrimitiveRestrictions NoFacets()
{
    return CPrimitiveRestrictions(L"", -1, -1, L"", L"", L"", L"", -1);
}

CElementInfo* MandatoryText(const wchar_t* lpctName, int nPropertyIndex)
{
    return new CElementInfoSeqPrimMnd(lpctName, s_lpctNamespace, nPropertyIndex, ItemType_string, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Preserve, TextFacets());
}

CElementInfo* OptionalText(const wchar_t* lpctName, int nPropertyIndex)
{
    return new CElementInfoSeqPrimOpt(lpctName, s_lpctNamespace, nPropertyIndex, ItemType_string, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets());
}

// An unset optional property is an invalid variant on both sides.
void ReadOptional(const std::optional<std::wstring>& strProperty, QvVariant& value)
{
    if (strProperty)
        value.SetString(*strProperty);
    else
        value.SetInvalid();
}

std::optional<std::wstring> OptionalString(const QvVariant& value)
{
    return value.IsValid() ? std::optional<std::wstring>(value.GetString()) : std::nullopt;
}

template <class T>
T* ObjectOf(const QvVariant& value)
{
    return static_cast<T*>(static_cast<CXmlObjectBase*>(value.GetXmlObject()));
}

void CheckFacets(const CElementInfo* pInfo, const std::wstring& strValue)
{
    QvVariant value;
    value.SetString(strValue);
    pInfo->CheckRestriction(value);
}

} // namespace

// --- Address -------------------------------------------------------------------------------------

namespace
{

enum EAddressProperty
{
    AddressProperty_Name,
    AddressProperty_Street,
    AddressProperty_City,
    AddressProperty_Postcode
};

} // namespace

CAddress::CAddress(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CAddress")
{
    SetElementName(lpctElementName);
    Init();
}

CAddress::~CAddress() = default;

CSmartPtr<CXmlObjectBase> CAddress::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CAddress(lpctElementName));
}

void CAddress::Init()
{
    m_strName.clear();
    m_strStreet.clear();
    m_strCity.clear();
    m_strPostcode.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CAddress::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"Address", s_lpctNamespace, -1, true,
                                       false);
        ppElements = new CElementInfo* []
        {
            MandatoryText(L"name", AddressProperty_Name), MandatoryText(L"street", AddressProperty_Street),
                MandatoryText(L"city", AddressProperty_City), OptionalText(L"postcode", AddressProperty_Postcode),
                nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CAddress::SMetaData CAddress::s_metaData;

const CAddress::SMetaData& CAddress::MetaData()
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

CParentElementInfo* CAddress::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CAddress::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CAddress::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CAddress::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CAddress::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CAddress::SetName(const std::wstring& strName)
{
    CheckFacets(GetClassElementInfo()[0], strName);
    m_strName = strName;
}

void CAddress::SetStreet(const std::wstring& strStreet)
{
    CheckFacets(GetClassElementInfo()[1], strStreet);
    m_strStreet = strStreet;
}

void CAddress::SetCity(const std::wstring& strCity)
{
    CheckFacets(GetClassElementInfo()[2], strCity);
    m_strCity = strCity;
}

void CAddress::SetPostcode(const std::optional<std::wstring>& strPostcode)
{
    m_strPostcode = strPostcode;
}

void CAddress::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case AddressProperty_Name:
        bRead ? value.SetString(m_strName) : SetName(value.GetString());
        break;
    case AddressProperty_Street:
        bRead ? value.SetString(m_strStreet) : SetStreet(value.GetString());
        break;
    case AddressProperty_City:
        bRead ? value.SetString(m_strCity) : SetCity(value.GetString());
        break;
    case AddressProperty_Postcode:
        bRead ? ReadOptional(m_strPostcode, value) : SetPostcode(OptionalString(value));
        break;
    }
}

// --- Item ----------------------------------------------------------------------------------------

namespace
{

enum EItemProperty
{
    ItemProperty_Product,
    ItemProperty_Quantity,
    ItemProperty_Price,
    ItemProperty_Note,
    ItemProperty_Part
};

} // namespace

CItem::CItem(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CItem")
{
    SetElementName(lpctElementName);
    Init();
}

CItem::~CItem() = default;

void CItem::Init()
{
    m_strPart.clear();
    m_strProduct.clear();
    m_nQuantity = 1;
    m_dPrice = 0;
    m_strNote.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CItem::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"item", s_lpctNamespace, -1, true, false);
        ppElements = new CElementInfo* []
        {
            MandatoryText(L"product", ItemProperty_Product),
                new CElementInfoSeqPrimMnd(L"quantity", s_lpctNamespace, ItemProperty_Quantity, ItemType_i4, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Collapse,
                                           CPrimitiveRestrictions(L"", -1, -1, L"1", L"999", L"", L"", -1)),
                new CElementInfoSeqPrimMnd(L"price", s_lpctNamespace, ItemProperty_Price, ItemType_r8, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Collapse,
                                           CPrimitiveRestrictions(L"", -1, -1, L"0", L"", L"", L"", -1)),
                OptionalText(L"note", ItemProperty_Note), nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            new CAttributeInfoPrimitive(L"part", L"", ItemProperty_Part, false, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"\\d{3}-[A-Z]{2}", -1, -1, L"", L"", L"", L"", -1),
                                        L""),
                nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CItem::SMetaData CItem::s_metaData;

const CItem::SMetaData& CItem::MetaData()
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

CParentElementInfo* CItem::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CItem::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CItem::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CItem::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CItem::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CItem::SetPart(const std::wstring& strPart)
{
    QvVariant value;
    value.SetString(strPart);
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strPart = strPart;
}

void CItem::SetProduct(const std::wstring& strProduct)
{
    CheckFacets(GetClassElementInfo()[0], strProduct);
    m_strProduct = strProduct;
}

void CItem::SetQuantity(int nQuantity)
{
    QvVariant value;
    value.SetI4(nQuantity);
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_nQuantity = nQuantity;
}

void CItem::SetPrice(double dPrice)
{
    QvVariant value;
    value.SetR8(dPrice);
    GetClassElementInfo()[2]->CheckRestriction(value);
    m_dPrice = dPrice;
}

void CItem::SetNote(const std::optional<std::wstring>& strNote)
{
    m_strNote = strNote;
}

void CItem::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case ItemProperty_Product:
        bRead ? value.SetString(m_strProduct) : SetProduct(value.GetString());
        break;
    case ItemProperty_Quantity:
        bRead ? value.SetI4(m_nQuantity) : SetQuantity(static_cast<int>(value.GetI4()));
        break;
    case ItemProperty_Price:
        bRead ? value.SetR8(m_dPrice) : SetPrice(value.GetR8());
        break;
    case ItemProperty_Note:
        bRead ? ReadOptional(m_strNote, value) : SetNote(OptionalString(value));
        break;
    case ItemProperty_Part:
        bRead ? value.SetString(m_strPart) : SetPart(value.GetString());
        break;
    }
}

// --- Items ---------------------------------------------------------------------------------------

CItemCol::CItemCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CItemCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CItemCol::~CItemCol() = default;

CSmartPtr<CItem> CItemCol::Add(CItem* pItem)
{
    const CSmartPtr<CItem> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, GetElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CItem> CItemCol::Item(int nIndex) const
{
    return CSmartPtr<CItem>(static_cast<CItem*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CItem> CItemCol::begin() const
{
    return CQvIterator<CItem>(GetHeadNode());
}

CQvIterator<CItem> CItemCol::end() const
{
    return CQvIterator<CItem>(nullptr);
}

void CItemCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                         const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CItemCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context, bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CItem> spItem = new CItem(ElementName().c_str());
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Purchase order ------------------------------------------------------------------------------

namespace
{

enum EOrderProperty
{
    OrderProperty_ShipTo,
    OrderProperty_BillTo,
    OrderProperty_Express,
    OrderProperty_Comment,
    OrderProperty_Items,
    OrderProperty_Number,
    OrderProperty_Currency
};

} // namespace

CPurchaseOrder::CPurchaseOrder(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPurchaseOrder")
{
    SetElementName(lpctElementName);
    Init();
}

CPurchaseOrder::~CPurchaseOrder() = default;

void CPurchaseOrder::Init()
{
    m_nNumber = 0;
    m_strCurrency = L"EUR";
    m_spShipTo = new CAddress(L"shipTo");
    m_spBillTo = nullptr;
    m_bExpress.reset();
    m_strComment.reset();
    m_spItems = new CItemCol(L"item", s_lpctNamespace, 1, -1);
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CPurchaseOrder::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"purchaseOrder", s_lpctNamespace, -1,
                                       true, false);
        ppElements = new CElementInfo* []
        {
            new CElementInfoSeqClsMnd(L"shipTo", s_lpctNamespace, OrderProperty_ShipTo, ElementType_Element,
                                      &CAddress::Create, 0, true),
                new CElementInfoSeqClsOpt(L"billTo", s_lpctNamespace, OrderProperty_BillTo, ElementType_Element,
                                          &CAddress::Create, 0),
                new CElementInfoSeqPrimOpt(L"express", s_lpctNamespace, OrderProperty_Express, ItemType_boolean,
                                           nullptr, CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
                OptionalText(L"comment", OrderProperty_Comment),
                new CElementInfoSeqClsCol(L"item", s_lpctNamespace, OrderProperty_Items, ElementType_Element), nullptr
        };
        ppAttributes = new CAttributeInfo* []
        {
            new CAttributeInfoPrimitive(L"number", L"", OrderProperty_Number, false, ItemType_i4, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets(), L""),
                new CAttributeInfoPrimitive(L"currency", L"", OrderProperty_Currency, true, ItemType_string, nullptr,
                                            CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets(), L"EUR"),
                nullptr
        };
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CPurchaseOrder::SMetaData CPurchaseOrder::s_metaData;

const CPurchaseOrder::SMetaData& CPurchaseOrder::MetaData()
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

CParentElementInfo* CPurchaseOrder::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CPurchaseOrder::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CPurchaseOrder::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CPurchaseOrder::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CPurchaseOrder::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CPurchaseOrder::SetNumber(int nNumber)
{
    m_nNumber = nNumber;
}

void CPurchaseOrder::SetCurrency(const std::wstring& strCurrency)
{
    m_strCurrency = strCurrency;
}

void CPurchaseOrder::SetShipTo(CAddress* pShipTo)
{
    Throw_IfPropertyIsNull(pShipTo, L"shipTo");
    Throw_IfElementNameDiffers(pShipTo, L"shipTo");
    m_spShipTo = pShipTo;
}

void CPurchaseOrder::SetBillTo(CAddress* pBillTo)
{
    Throw_IfElementNameDiffers(pBillTo, L"billTo");
    m_spBillTo = pBillTo;
}

void CPurchaseOrder::SetExpress(std::optional<bool> bExpress)
{
    m_bExpress = bExpress;
}

void CPurchaseOrder::SetComment(const std::optional<std::wstring>& strComment)
{
    m_strComment = strComment;
}

void CPurchaseOrder::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case OrderProperty_ShipTo:
        bRead ? value.SetXmlObject(m_spShipTo) : SetShipTo(ObjectOf<CAddress>(value));
        break;
    case OrderProperty_BillTo:
        bRead ? value.SetXmlObject(m_spBillTo) : SetBillTo(ObjectOf<CAddress>(value));
        break;
    case OrderProperty_Express:
        if (!bRead)
            SetExpress(value.IsValid() ? std::optional<bool>(value.GetBoolean()) : std::nullopt);
        else if (m_bExpress)
            value.SetBoolean(*m_bExpress);
        else
            value.SetInvalid();
        break;
    case OrderProperty_Comment:
        bRead ? ReadOptional(m_strComment, value) : SetComment(OptionalString(value));
        break;
    case OrderProperty_Items:
        if (bRead)
            value.SetXmlCollection(m_spItems);
        break;
    case OrderProperty_Number:
        bRead ? value.SetI4(m_nNumber) : SetNumber(static_cast<int>(value.GetI4()));
        break;
    case OrderProperty_Currency:
        bRead ? value.SetString(m_strCurrency) : SetCurrency(value.GetString());
        break;
    }
}

} // namespace order
