#include "Invoice.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <initializer_list>
#include <utility>

using namespace QvXmlLib9;
using namespace QvXmlLib9Data;

namespace invoice
{

namespace
{

const wchar_t s_lpctNamespace[] = L"urn:example:invoice";

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

const wchar_t* ECountryToString(int nValue)
{
    switch (static_cast<ECountry>(nValue))
    {
    case ECountry::At:
        return L"AT";
    case ECountry::De:
        return L"DE";
    case ECountry::Fr:
        return L"FR";
    case ECountry::Gb:
        return L"GB";
    }
    throw CQvInvalidValueException(FormatString(L"ECountry has no value %d", nValue));
}

int ECountryFromString(const wchar_t* lpctValue)
{
    for (const ECountry eValue : {ECountry::At, ECountry::De, ECountry::Fr, ECountry::Gb})
    {
        if (std::wcscmp(lpctValue, ECountryToString(static_cast<int>(eValue))) == 0)
            return static_cast<int>(eValue);
    }
    throw CQvInvalidValueException(FormatString(L"The value [%s] is not one of ECountry", lpctValue));
}

const wchar_t* ELanguageToString(int nValue)
{
    switch (static_cast<ELanguage>(nValue))
    {
    case ELanguage::En:
        return L"en";
    case ELanguage::De:
        return L"de";
    case ELanguage::Fr:
        return L"fr";
    }
    throw CQvInvalidValueException(FormatString(L"ELanguage has no value %d", nValue));
}

int ELanguageFromString(const wchar_t* lpctValue)
{
    for (const ELanguage eValue : {ELanguage::En, ELanguage::De, ELanguage::Fr})
    {
        if (std::wcscmp(lpctValue, ELanguageToString(static_cast<int>(eValue))) == 0)
            return static_cast<int>(eValue);
    }
    throw CQvInvalidValueException(FormatString(L"The value [%s] is not one of ELanguage", lpctValue));
}

} // namespace

// --- Factory -------------------------------------------------------------------------------------

/// Finds the class of an element of abstract type by its xsi:type.
class CInvoiceFactory : public CClassfactoryBase
{
public:
    static CSmartPtr<CXmlObjectBase> CreateParty(CXmlElement* pElement)
    {
        return CreateByType<CCompany, CPerson>(pElement, L"Company", L"Person");
    }

    static CSmartPtr<CXmlObjectBase> CreateLine(CXmlElement* pElement)
    {
        return CreateByType<CProductLine, CServiceLine>(pElement, L"ProductLine", L"ServiceLine");
    }

private:
    template <class TFirst, class TSecond>
    static CSmartPtr<CXmlObjectBase> CreateByType(CXmlElement* pElement, const wchar_t* lpctFirst,
                                                  const wchar_t* lpctSecond)
    {
        const wchar_t* const lpctName = pElement->GetLocalName().c_str();
        if (GetElementTypeNamespaceUri(pElement) == s_lpctNamespace)
        {
            const std::wstring strType = GetElementType(pElement);
            if (strType == lpctFirst)
                return CSmartPtr<CXmlObjectBase>(new TFirst(lpctName));
            if (strType == lpctSecond)
                return CSmartPtr<CXmlObjectBase>(new TSecond(lpctName));
        }
        return nullptr;
    }
};

// --- Address -------------------------------------------------------------------------------------

namespace
{

enum EAddressProperty
{
    Address_Street,
    Address_City,
    Address_Zip,
    Address_Country
};

} // namespace

CAddress::CAddress(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CAddress")
{
    SetElementName(lpctElementName);
    CAddress::Init();
}

CAddress::~CAddress() = default;

CSmartPtr<CXmlObjectBase> CAddress::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CAddress(lpctElementName));
}

void CAddress::Init()
{
    m_strStreet.clear();
    m_strCity.clear();
    m_strZip.reset();
    m_eCountry = ECountry::At;
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
        pInfo =
            new CParentElementInfo(GroupType_All, ElementType_Element, L"Address", s_lpctNamespace, -1, true, false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoAllPrimMnd(L"street", s_lpctNamespace, Address_Street, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoAllPrimMnd(L"city", s_lpctNamespace, Address_City, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoAllPrimOpt(L"zip", s_lpctNamespace, Address_Zip, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
             new CElementInfoAllEnumMnd(L"country", s_lpctNamespace, Address_Country, &ECountryToString,
                                        &ECountryFromString)});
        ppAttributes = MakeTable<CAttributeInfo>({});
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

void CAddress::StoreStreet(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strStreet = value.TakeString();
}

void CAddress::SetStreet(const std::wstring& strStreet)
{
    QvVariant value;
    value.SetString(strStreet);
    StoreStreet(value);
}

void CAddress::StoreCity(QvVariant& value)
{
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_strCity = value.TakeString();
}

void CAddress::SetCity(const std::wstring& strCity)
{
    QvVariant value;
    value.SetString(strCity);
    StoreCity(value);
}

void CAddress::SetZip(std::optional<std::wstring> strZip)
{
    m_strZip = std::move(strZip);
}

void CAddress::SetCountry(ECountry eCountry)
{
    m_eCountry = eCountry;
}

void CAddress::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Address_Street:
        bRead ? value.SetString(m_strStreet) : StoreStreet(value);
        break;
    case Address_City:
        bRead ? value.SetString(m_strCity) : StoreCity(value);
        break;
    case Address_Zip:
        if (!bRead)
            SetZip(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strZip)
            value.SetString(*m_strZip);
        else
            value.SetInvalid();
        break;
    case Address_Country:
        bRead ? value.SetI4(static_cast<int>(m_eCountry)) : SetCountry(static_cast<ECountry>(value.GetI4()));
        break;
    }
}

// --- Party ---------------------------------------------------------------------------------------

CParty::CParty(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CParty")
{
    SetElementName(lpctElementName);
    CParty::Init();
}

CParty::~CParty() = default;

void CParty::Init()
{
}

std::wstring CParty::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CParty::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CParty::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    // The derived classes have the metadata, and with it the indexes.
    static_cast<void>(nPropertyIndex);
    static_cast<void>(bRead);
    static_cast<void>(value);
}

// --- Company -------------------------------------------------------------------------------------

namespace
{

enum ECompanyProperty
{
    Company_Name,
    Company_Contact,
    Company_Address,
    Company_Vat
};

} // namespace

CCompany::CCompany(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CCompany")
    , CParty(lpctElementName)
{
    CCompany::Init();
}

CCompany::~CCompany() = default;

void CCompany::Init()
{
    m_strName.clear();
    m_strContact.reset();
    m_spAddress = new CAddress(L"address");
    m_strVat.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CCompany::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"Company", s_lpctNamespace, -1, true,
                                       true);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"name", s_lpctNamespace, Company_Name, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimOpt(L"contact", s_lpctNamespace, Company_Contact, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets()),
             new CElementInfoSeqClsMnd(L"address", s_lpctNamespace, Company_Address, ElementType_Element,
                                       &CAddress::Create, 0, true)});
        ppAttributes = MakeTable<CAttributeInfo>({new CAttributeInfoPrimitive(
            L"vat", L"", Company_Vat, true, ItemType_string, nullptr, CWhitespaceUtils::WhitespaceRule_Preserve,
            CPrimitiveRestrictions(L"[A-Z]{2}\\d{8,12}", -1, -1, L"", L"", L"", L"", -1), L"")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CCompany::SMetaData CCompany::s_metaData;

const CCompany::SMetaData& CCompany::MetaData()
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

CParentElementInfo* CCompany::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CCompany::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CCompany::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CCompany::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CCompany::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CCompany::StoreName(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strName = value.TakeString();
}

void CCompany::SetName(const std::wstring& strName)
{
    QvVariant value;
    value.SetString(strName);
    StoreName(value);
}

void CCompany::SetContact(std::optional<std::wstring> strContact)
{
    m_strContact = std::move(strContact);
}

void CCompany::SetAddress(CAddress* pAddress)
{
    Throw_IfPropertyIsNull(pAddress, L"address");
    Throw_IfElementNameDiffers(pAddress, L"address");
    m_spAddress = pAddress;
}

void CCompany::StoreVat(QvVariant& value)
{
    if (!value.IsValid())
    {
        m_strVat.reset();
        return;
    }
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strVat = value.TakeString();
}

void CCompany::SetVat(const std::optional<std::wstring>& strVat)
{
    QvVariant value;
    if (strVat)
        value.SetString(*strVat);
    StoreVat(value);
}

void CCompany::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Company_Name:
        bRead ? value.SetString(m_strName) : StoreName(value);
        break;
    case Company_Contact:
        if (!bRead)
            SetContact(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strContact)
            value.SetString(*m_strContact);
        else
            value.SetInvalid();
        break;
    case Company_Address:
        bRead ? value.SetXmlObject(m_spAddress) : SetAddress(ObjectOf<CAddress>(value));
        break;
    case Company_Vat:
        if (!bRead)
            StoreVat(value);
        else if (m_strVat)
            value.SetString(*m_strVat);
        else
            value.SetInvalid();
        break;
    }
}

// --- Person --------------------------------------------------------------------------------------

namespace
{

enum EPersonProperty
{
    Person_FirstName,
    Person_LastName,
    Person_Born,
    Person_Address
};

} // namespace

CPerson::CPerson(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPerson")
    , CParty(lpctElementName)
{
    CPerson::Init();
}

CPerson::~CPerson() = default;

void CPerson::Init()
{
    m_strFirstName.clear();
    m_strLastName.clear();
    m_dtBorn.reset();
    m_spAddress = nullptr;
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CPerson::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"Person", s_lpctNamespace, -1, true, true);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"firstName", s_lpctNamespace, Person_FirstName, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimMnd(L"lastName", s_lpctNamespace, Person_LastName, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimOpt(L"born", s_lpctNamespace, Person_Born, ItemType_date, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqClsOpt(L"address", s_lpctNamespace, Person_Address, ElementType_Element,
                                       &CAddress::Create, 0)});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CPerson::SMetaData CPerson::s_metaData;

const CPerson::SMetaData& CPerson::MetaData()
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

CParentElementInfo* CPerson::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CPerson::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CPerson::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CPerson::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CPerson::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CPerson::StoreFirstName(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strFirstName = value.TakeString();
}

void CPerson::SetFirstName(const std::wstring& strFirstName)
{
    QvVariant value;
    value.SetString(strFirstName);
    StoreFirstName(value);
}

void CPerson::StoreLastName(QvVariant& value)
{
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_strLastName = value.TakeString();
}

void CPerson::SetLastName(const std::wstring& strLastName)
{
    QvVariant value;
    value.SetString(strLastName);
    StoreLastName(value);
}

void CPerson::SetBorn(const std::optional<CDateTime>& dtBorn)
{
    m_dtBorn = dtBorn;
}

void CPerson::SetAddress(CAddress* pAddress)
{
    Throw_IfElementNameDiffers(pAddress, L"address");
    m_spAddress = pAddress;
}

void CPerson::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Person_FirstName:
        bRead ? value.SetString(m_strFirstName) : StoreFirstName(value);
        break;
    case Person_LastName:
        bRead ? value.SetString(m_strLastName) : StoreLastName(value);
        break;
    case Person_Born:
        if (!bRead)
            SetBorn(value.IsValid() ? std::optional<CDateTime>(value.GetDate()) : std::nullopt);
        else if (m_dtBorn)
            value.SetDate(*m_dtBorn);
        else
            value.SetInvalid();
        break;
    case Person_Address:
        bRead ? value.SetXmlObject(m_spAddress) : SetAddress(ObjectOf<CAddress>(value));
        break;
    }
}

// --- Line ----------------------------------------------------------------------------------------

CLine::CLine(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CLine")
{
    SetElementName(lpctElementName);
    CLine::Init();
}

CLine::~CLine() = default;

void CLine::Init()
{
}

std::wstring CLine::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CLine::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CLine::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    // The derived classes have the metadata, and with it the indexes.
    static_cast<void>(nPropertyIndex);
    static_cast<void>(bRead);
    static_cast<void>(value);
}

CLineCol::CLineCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs)
    : CInstanceMonitor(L"CLineCol")
    , CXmlCollection(lpctElementName, lpctNamespace, nMinOccurs, nMaxOccurs)
{
}

CLineCol::~CLineCol() = default;

CSmartPtr<CLine> CLineCol::Add(CLine* pItem)
{
    const CSmartPtr<CLine> spItem = pItem;
    Throw_IfElementNameDiffers(pItem, ElementName().c_str());
    AppendItem(pItem);
    return spItem;
}

CSmartPtr<CLine> CLineCol::Item(int nIndex) const
{
    return CSmartPtr<CLine>(static_cast<CLine*>(GetNodeAtIndex(nIndex)->m_pItem->GetBase()));
}

CQvIterator<CLine> CLineCol::begin() const
{
    return CQvIterator<CLine>(GetHeadNode());
}

CQvIterator<CLine> CLineCol::end() const
{
    return CQvIterator<CLine>(nullptr);
}

void CLineCol::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t* lpctNamespaceUri,
                         const CXmlSerializationContext& context, bool) const
{
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CLineCol::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context, bool)
{
    const std::wstring strNamespace = GetNamespace();
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, ElementName().c_str(), strNamespace.c_str()))
    {
        const CSmartPtr<CXmlObjectBase> spItem = CInvoiceFactory::CreateLine(pCurrent);
        if (spItem == nullptr)
            return pCurrent;
        CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
        AppendItem(spItem);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

// --- Product line --------------------------------------------------------------------------------

namespace
{

enum EProductLineProperty
{
    ProductLine_Text,
    ProductLine_Quantity,
    ProductLine_UnitPrice,
    ProductLine_Article
};

} // namespace

CProductLine::CProductLine(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CProductLine")
    , CLine(lpctElementName)
{
    CProductLine::Init();
}

CProductLine::~CProductLine() = default;

void CProductLine::Init()
{
    m_strText.clear();
    m_nQuantity = 0;
    m_decUnitPrice = CDecimal();
    m_strArticle.clear();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CProductLine::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"ProductLine", s_lpctNamespace, -1,
                                       true, true);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"text", s_lpctNamespace, ProductLine_Text, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimMnd(L"quantity", s_lpctNamespace, ProductLine_Quantity, ItemType_i4, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse,
                                        CPrimitiveRestrictions(L"", -1, -1, L"1", L"100000", L"", L"", -1)),
             new CElementInfoSeqPrimMnd(L"unitPrice", s_lpctNamespace, ProductLine_UnitPrice, ItemType_decimal, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse,
                                        CPrimitiveRestrictions(L"", -1, -1, L"0", L"", L"", L"", -1))});
        ppAttributes = MakeTable<CAttributeInfo>({new CAttributeInfoPrimitive(
            L"article", L"", ProductLine_Article, false, ItemType_string, nullptr,
            CWhitespaceUtils::WhitespaceRule_Preserve,
            CPrimitiveRestrictions(L"\\d{4}-\\d{2}", -1, -1, L"", L"", L"", L"", -1), L"")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CProductLine::SMetaData CProductLine::s_metaData;

const CProductLine::SMetaData& CProductLine::MetaData()
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

CParentElementInfo* CProductLine::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CProductLine::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CProductLine::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CProductLine::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CProductLine::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CProductLine::StoreText(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strText = value.TakeString();
}

void CProductLine::SetText(const std::wstring& strText)
{
    QvVariant value;
    value.SetString(strText);
    StoreText(value);
}

void CProductLine::StoreQuantity(QvVariant& value)
{
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_nQuantity = static_cast<int>(value.GetI4());
}

void CProductLine::SetQuantity(int nQuantity)
{
    QvVariant value;
    value.SetI4(nQuantity);
    StoreQuantity(value);
}

void CProductLine::StoreUnitPrice(QvVariant& value)
{
    GetClassElementInfo()[2]->CheckRestriction(value);
    m_decUnitPrice = value.GetDecimal();
}

void CProductLine::SetUnitPrice(const CDecimal& decUnitPrice)
{
    QvVariant value;
    value.SetDecimal(decUnitPrice);
    StoreUnitPrice(value);
}

void CProductLine::StoreArticle(QvVariant& value)
{
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strArticle = value.TakeString();
}

void CProductLine::SetArticle(const std::wstring& strArticle)
{
    QvVariant value;
    value.SetString(strArticle);
    StoreArticle(value);
}

void CProductLine::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case ProductLine_Text:
        bRead ? value.SetString(m_strText) : StoreText(value);
        break;
    case ProductLine_Quantity:
        bRead ? value.SetI4(m_nQuantity) : StoreQuantity(value);
        break;
    case ProductLine_UnitPrice:
        bRead ? value.SetDecimal(m_decUnitPrice) : StoreUnitPrice(value);
        break;
    case ProductLine_Article:
        bRead ? value.SetString(m_strArticle) : StoreArticle(value);
        break;
    }
}

// --- Service line --------------------------------------------------------------------------------

namespace
{

enum EServiceLineProperty
{
    ServiceLine_Text,
    ServiceLine_Time,
    ServiceLine_HourlyRate,
    ServiceLine_Performed
};

} // namespace

CServiceLine::CServiceLine(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CServiceLine")
    , CLine(lpctElementName)
{
    CServiceLine::Init();
}

CServiceLine::~CServiceLine() = default;

void CServiceLine::Init()
{
    m_strText.clear();
    m_dtsTime = CDateTimeSpan();
    m_decHourlyRate = CDecimal();
    m_dtPerformed.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CServiceLine::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"ServiceLine", s_lpctNamespace, -1,
                                       true, true);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"text", s_lpctNamespace, ServiceLine_Text, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve,
                                        CPrimitiveRestrictions(L"", 1, 60, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimMnd(L"time", s_lpctNamespace, ServiceLine_Time, ItemType_duration, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse,
                                        CPrimitiveRestrictions(L"", -1, -1, L"PT15M", L"", L"", L"", -1)),
             new CElementInfoSeqPrimMnd(L"hourlyRate", s_lpctNamespace, ServiceLine_HourlyRate, ItemType_decimal,
                                        nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
                                        CPrimitiveRestrictions(L"", -1, -1, L"0", L"", L"", L"", -1)),
             new CElementInfoSeqPrimOpt(L"performed", s_lpctNamespace, ServiceLine_Performed, ItemType_date, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets())});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CServiceLine::SMetaData CServiceLine::s_metaData;

const CServiceLine::SMetaData& CServiceLine::MetaData()
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

CParentElementInfo* CServiceLine::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CServiceLine::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CServiceLine::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CServiceLine::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CServiceLine::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CServiceLine::StoreText(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strText = value.TakeString();
}

void CServiceLine::SetText(const std::wstring& strText)
{
    QvVariant value;
    value.SetString(strText);
    StoreText(value);
}

void CServiceLine::StoreTime(QvVariant& value)
{
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_dtsTime = value.GetDuration();
}

void CServiceLine::SetTime(const CDateTimeSpan& dtsTime)
{
    QvVariant value;
    value.SetDuration(dtsTime);
    StoreTime(value);
}

void CServiceLine::StoreHourlyRate(QvVariant& value)
{
    GetClassElementInfo()[2]->CheckRestriction(value);
    m_decHourlyRate = value.GetDecimal();
}

void CServiceLine::SetHourlyRate(const CDecimal& decHourlyRate)
{
    QvVariant value;
    value.SetDecimal(decHourlyRate);
    StoreHourlyRate(value);
}

void CServiceLine::SetPerformed(const std::optional<CDateTime>& dtPerformed)
{
    m_dtPerformed = dtPerformed;
}

void CServiceLine::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case ServiceLine_Text:
        bRead ? value.SetString(m_strText) : StoreText(value);
        break;
    case ServiceLine_Time:
        bRead ? value.SetDuration(m_dtsTime) : StoreTime(value);
        break;
    case ServiceLine_HourlyRate:
        bRead ? value.SetDecimal(m_decHourlyRate) : StoreHourlyRate(value);
        break;
    case ServiceLine_Performed:
        if (!bRead)
            SetPerformed(value.IsValid() ? std::optional<CDateTime>(value.GetDate()) : std::nullopt);
        else if (m_dtPerformed)
            value.SetDate(*m_dtPerformed);
        else
            value.SetInvalid();
        break;
    }
}

// --- Delivery ------------------------------------------------------------------------------------

namespace
{

enum EDeliveryProperty
{
    Delivery_Date,
    Delivery_Address,
    Delivery_Carrier
};

} // namespace

CDelivery::CDelivery(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CDelivery")
{
    SetElementName(lpctElementName);
    CDelivery::Init();
}

CDelivery::~CDelivery() = default;

CSmartPtr<CXmlObjectBase> CDelivery::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CDelivery(lpctElementName));
}

void CDelivery::Init()
{
    m_dtDate = CDateTime();
    m_spAddress = nullptr;
    m_strCarrier.reset();
    m_bNil = false;
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CDelivery::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"delivery", s_lpctNamespace, -1, true,
                                       false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"date", s_lpctNamespace, Delivery_Date, ItemType_date, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqClsOpt(L"address", s_lpctNamespace, Delivery_Address, ElementType_Element,
                                       &CAddress::Create, 0)});
        ppAttributes = MakeTable<CAttributeInfo>(
            {new CAttributeInfoPrimitive(L"carrier", L"", Delivery_Carrier, true, ItemType_string, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets(), L"")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CDelivery::SMetaData CDelivery::s_metaData;

const CDelivery::SMetaData& CDelivery::MetaData()
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

CParentElementInfo* CDelivery::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CDelivery::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CDelivery::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CDelivery::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CDelivery::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CDelivery::SetDate(const CDateTime& dtDate)
{
    m_dtDate = dtDate;
}

void CDelivery::SetAddress(CAddress* pAddress)
{
    Throw_IfElementNameDiffers(pAddress, L"address");
    m_spAddress = pAddress;
}

void CDelivery::SetCarrier(std::optional<std::wstring> strCarrier)
{
    m_strCarrier = std::move(strCarrier);
}

void CDelivery::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Delivery_Date:
        bRead ? value.SetDate(m_dtDate) : SetDate(value.GetDate());
        break;
    case Delivery_Address:
        bRead ? value.SetXmlObject(m_spAddress) : SetAddress(ObjectOf<CAddress>(value));
        break;
    case Delivery_Carrier:
        if (!bRead)
            SetCarrier(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strCarrier)
            value.SetString(*m_strCarrier);
        else
            value.SetInvalid();
        break;
    }
}

// --- Transfer ------------------------------------------------------------------------------------

namespace
{

enum ETransferProperty
{
    Transfer_Iban,
    Transfer_Due
};

} // namespace

CTransfer::CTransfer(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CTransfer")
{
    SetElementName(lpctElementName);
    CTransfer::Init();
}

CTransfer::~CTransfer() = default;

CSmartPtr<CXmlObjectBase> CTransfer::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CTransfer(lpctElementName));
}

void CTransfer::Init()
{
    m_strIban.clear();
    m_dtDue.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CTransfer::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"transfer", s_lpctNamespace, -1, true,
                                       false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(
                 L"iban", s_lpctNamespace, Transfer_Iban, ItemType_string, nullptr,
                 CWhitespaceUtils::WhitespaceRule_Preserve,
                 CPrimitiveRestrictions(L"[A-Z]{2}\\d{2}[A-Z0-9]{11,30}", -1, -1, L"", L"", L"", L"", -1)),
             new CElementInfoSeqPrimOpt(L"due", s_lpctNamespace, Transfer_Due, ItemType_date, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets())});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CTransfer::SMetaData CTransfer::s_metaData;

const CTransfer::SMetaData& CTransfer::MetaData()
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

CParentElementInfo* CTransfer::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CTransfer::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CTransfer::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CTransfer::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CTransfer::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CTransfer::StoreIban(QvVariant& value)
{
    GetClassElementInfo()[0]->CheckRestriction(value);
    m_strIban = value.TakeString();
}

void CTransfer::SetIban(const std::wstring& strIban)
{
    QvVariant value;
    value.SetString(strIban);
    StoreIban(value);
}

void CTransfer::SetDue(const std::optional<CDateTime>& dtDue)
{
    m_dtDue = dtDue;
}

void CTransfer::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Transfer_Iban:
        bRead ? value.SetString(m_strIban) : StoreIban(value);
        break;
    case Transfer_Due:
        if (!bRead)
            SetDue(value.IsValid() ? std::optional<CDateTime>(value.GetDate()) : std::nullopt);
        else if (m_dtDue)
            value.SetDate(*m_dtDue);
        else
            value.SetInvalid();
        break;
    }
}

// --- Payment -------------------------------------------------------------------------------------

namespace
{

enum EPaymentProperty
{
    Payment_Transfer,
    Payment_Card,
    Payment_Cash
};

} // namespace

CPayment::CPayment(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CPayment")
{
    SetElementName(lpctElementName);
    CPayment::Init();
}

CPayment::~CPayment() = default;

CSmartPtr<CXmlObjectBase> CPayment::Create(int, const wchar_t* lpctElementName)
{
    return CSmartPtr<CXmlObjectBase>(new CPayment(lpctElementName));
}

void CPayment::Init()
{
    m_spTransfer = nullptr;
    m_strCard.reset();
    m_bCash.reset();
    m_strSelected.clear();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CPayment::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo =
            new CParentElementInfo(GroupType_Choice, ElementType_Element, L"payment", s_lpctNamespace, -1, true, false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoChoiceClsOpt(L"transfer", s_lpctNamespace, Payment_Transfer, ElementType_Element,
                                          &CTransfer::Create, 0),
             new CElementInfoChoicePrimOpt(L"card", s_lpctNamespace, Payment_Card, ItemType_string, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Preserve,
                                           CPrimitiveRestrictions(L"\\*{12}\\d{4}", -1, -1, L"", L"", L"", L"", -1)),
             new CElementInfoChoicePrimOpt(L"cash", s_lpctNamespace, Payment_Cash, ItemType_boolean, nullptr,
                                           CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets())});
        ppAttributes = MakeTable<CAttributeInfo>({});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CPayment::SMetaData CPayment::s_metaData;

const CPayment::SMetaData& CPayment::MetaData()
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

CParentElementInfo* CPayment::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CPayment::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CPayment::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CPayment::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CPayment::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CPayment::SetTransfer(CTransfer* pTransfer)
{
    Throw_IfElementNameDiffers(pTransfer, L"transfer");
    if (pTransfer != nullptr || m_strSelected == L"transfer")
        Choice_SelectElement(L"transfer", pTransfer, m_strSelected);
    m_spTransfer = pTransfer;
}

void CPayment::StoreCard(QvVariant& value)
{
    if (value.IsValid() || m_strSelected == L"card")
        Choice_SelectElement(L"card", value.IsValid() ? this : nullptr, m_strSelected);
    if (!value.IsValid())
    {
        m_strCard.reset();
        return;
    }
    GetClassElementInfo()[1]->CheckRestriction(value);
    m_strCard = value.TakeString();
}

void CPayment::SetCard(const std::optional<std::wstring>& strCard)
{
    QvVariant value;
    if (strCard)
        value.SetString(*strCard);
    StoreCard(value);
}

void CPayment::SetCash(std::optional<bool> bCash)
{
    if (bCash || m_strSelected == L"cash")
        Choice_SelectElement(L"cash", bCash ? this : nullptr, m_strSelected);
    m_bCash = bCash;
}

void CPayment::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Payment_Transfer:
        bRead ? value.SetXmlObject(m_spTransfer) : SetTransfer(ObjectOf<CTransfer>(value));
        break;
    case Payment_Card:
        if (!bRead)
            StoreCard(value);
        else if (m_strCard)
            value.SetString(*m_strCard);
        else
            value.SetInvalid();
        break;
    case Payment_Cash:
        if (!bRead)
            SetCash(value.IsValid() ? std::optional<bool>(value.GetBoolean()) : std::nullopt);
        else if (m_bCash)
            value.SetBoolean(*m_bCash);
        else
            value.SetInvalid();
        break;
    }
}

// --- Invoice -------------------------------------------------------------------------------------

namespace
{

enum EInvoiceProperty
{
    Invoice_Issued,
    Invoice_Seller,
    Invoice_Buyer,
    Invoice_Delivery,
    Invoice_Lines,
    Invoice_Payment,
    Invoice_Total,
    Invoice_Remark,
    Invoice_Number,
    Invoice_Language
};

} // namespace

CInvoice::CInvoice(const wchar_t* lpctElementName)
    : CInstanceMonitor(L"CInvoice")
{
    SetElementName(lpctElementName);
    CInvoice::Init();
}

CInvoice::~CInvoice() = default;

void CInvoice::Init()
{
    m_dtIssued = CDateTime();
    m_spSeller = new CAddress(L"seller");
    m_spBuyer = nullptr;
    m_spDelivery = nullptr;
    m_spLines = new CLineCol(L"line", s_lpctNamespace, 1, -1);
    m_spPayment = new CPayment(L"payment");
    m_decTotal = CDecimal();
    m_strRemark.reset();
    m_strNumber.clear();
    m_eLanguage.reset();
}

/// What the class publishes about itself: built at first use, freed when the program ends.
struct CInvoice::SMetaData
{
    CParentElementInfo* pInfo = nullptr;
    CElementInfo** ppElements = nullptr;
    CAttributeInfo** ppAttributes = nullptr;
    std::atomic<bool> bBuilt{false};

    void Build()
    {
        pInfo = new CParentElementInfo(GroupType_Sequence, ElementType_Element, L"invoice", s_lpctNamespace, -1, true,
                                       false);
        ppElements = MakeTable<CElementInfo>(
            {new CElementInfoSeqPrimMnd(L"issued", s_lpctNamespace, Invoice_Issued, ItemType_date, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqClsMnd(L"seller", s_lpctNamespace, Invoice_Seller, ElementType_Element,
                                       &CAddress::Create, 0, true),
             new CElementInfoSeqAbsClsMnd(L"buyer", s_lpctNamespace, Invoice_Buyer, ElementType_Element,
                                          &CInvoiceFactory::CreateParty),
             new CElementInfoSeqClsOpt(L"delivery", s_lpctNamespace, Invoice_Delivery, ElementType_Element,
                                       &CDelivery::Create, 0),
             new CElementInfoSeqAbsClsCol(L"line", s_lpctNamespace, Invoice_Lines, ElementType_Element),
             new CElementInfoSeqClsMnd(L"payment", s_lpctNamespace, Invoice_Payment, ElementType_Element,
                                       &CPayment::Create, 0, true),
             new CElementInfoSeqPrimMnd(L"total", s_lpctNamespace, Invoice_Total, ItemType_decimal, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Collapse, NoFacets()),
             new CElementInfoSeqPrimOpt(L"remark", s_lpctNamespace, Invoice_Remark, ItemType_string, nullptr,
                                        CWhitespaceUtils::WhitespaceRule_Preserve, NoFacets())});
        ppAttributes = MakeTable<CAttributeInfo>(
            {new CAttributeInfoPrimitive(L"number", L"", Invoice_Number, false, ItemType_string, nullptr,
                                         CWhitespaceUtils::WhitespaceRule_Preserve,
                                         CPrimitiveRestrictions(L"[A-Z]{2}-\\d{4}", -1, -1, L"", L"", L"", L"", -1),
                                         L""),
             new CAttributeInfoEnum(L"language", L"", Invoice_Language, true, &ELanguageToString, &ELanguageFromString,
                                    L"en")});
    }

    ~SMetaData() { CleanMetaData(pInfo, ppElements, ppAttributes); }
};

CInvoice::SMetaData CInvoice::s_metaData;

const CInvoice::SMetaData& CInvoice::MetaData()
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

CParentElementInfo* CInvoice::GetClassInfo() const
{
    return MetaData().pInfo;
}

CElementInfo** CInvoice::GetClassElementInfo() const
{
    return MetaData().ppElements;
}

CAttributeInfo** CInvoice::GetClassAttributeInfo() const
{
    return MetaData().ppAttributes;
}

std::wstring CInvoice::GetNamespace() const
{
    return s_lpctNamespace;
}

std::wstring CInvoice::GetTargetNamespace() const
{
    return s_lpctNamespace;
}

void CInvoice::SetIssued(const CDateTime& dtIssued)
{
    m_dtIssued = dtIssued;
}

void CInvoice::SetSeller(CAddress* pSeller)
{
    Throw_IfPropertyIsNull(pSeller, L"seller");
    Throw_IfElementNameDiffers(pSeller, L"seller");
    m_spSeller = pSeller;
}

void CInvoice::SetBuyer(CParty* pBuyer)
{
    Throw_IfPropertyIsNull(pBuyer, L"buyer");
    m_spBuyer = pBuyer;
}

void CInvoice::SetDelivery(CDelivery* pDelivery)
{
    Throw_IfElementNameDiffers(pDelivery, L"delivery");
    m_spDelivery = pDelivery;
}

void CInvoice::SetPayment(CPayment* pPayment)
{
    Throw_IfPropertyIsNull(pPayment, L"payment");
    Throw_IfElementNameDiffers(pPayment, L"payment");
    m_spPayment = pPayment;
}

void CInvoice::SetTotal(const CDecimal& decTotal)
{
    m_decTotal = decTotal;
}

void CInvoice::SetRemark(std::optional<std::wstring> strRemark)
{
    m_strRemark = std::move(strRemark);
}

void CInvoice::StoreNumber(QvVariant& value)
{
    static_cast<CAttributeInfoPrimitive*>(GetClassAttributeInfo()[0])->CheckRestriction(value);
    m_strNumber = value.TakeString();
}

void CInvoice::SetNumber(const std::wstring& strNumber)
{
    QvVariant value;
    value.SetString(strNumber);
    StoreNumber(value);
}

void CInvoice::SetLanguage(std::optional<ELanguage> eLanguage)
{
    m_eLanguage = eLanguage;
}

void CInvoice::AccessProperty(int nPropertyIndex, bool bRead, QvVariant& value)
{
    switch (nPropertyIndex)
    {
    case Invoice_Issued:
        bRead ? value.SetDate(m_dtIssued) : SetIssued(value.GetDate());
        break;
    case Invoice_Seller:
        bRead ? value.SetXmlObject(m_spSeller) : SetSeller(ObjectOf<CAddress>(value));
        break;
    case Invoice_Buyer:
        bRead ? value.SetXmlObject(m_spBuyer) : SetBuyer(ObjectOf<CParty>(value));
        break;
    case Invoice_Delivery:
        bRead ? value.SetXmlObject(m_spDelivery) : SetDelivery(ObjectOf<CDelivery>(value));
        break;
    case Invoice_Lines:
        if (bRead)
            value.SetXmlCollection(m_spLines);
        break;
    case Invoice_Payment:
        bRead ? value.SetXmlObject(m_spPayment) : SetPayment(ObjectOf<CPayment>(value));
        break;
    case Invoice_Total:
        bRead ? value.SetDecimal(m_decTotal) : SetTotal(value.GetDecimal());
        break;
    case Invoice_Remark:
        if (!bRead)
            SetRemark(value.IsValid() ? std::optional<std::wstring>(value.TakeString()) : std::nullopt);
        else if (m_strRemark)
            value.SetString(*m_strRemark);
        else
            value.SetInvalid();
        break;
    case Invoice_Number:
        bRead ? value.SetString(m_strNumber) : StoreNumber(value);
        break;
    case Invoice_Language:
        if (!bRead)
            SetLanguage(value.IsValid() ? std::optional<ELanguage>(static_cast<ELanguage>(value.GetI4()))
                                        : std::nullopt);
        else if (m_eLanguage)
            value.SetI4(static_cast<int>(*m_eLanguage));
        else
            value.SetInvalid();
        break;
    }
}

} // namespace invoice
