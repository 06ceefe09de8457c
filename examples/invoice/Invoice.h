#pragma once

// The classes of invoice.xsd, written as a schema generator would write them.

#include "quiver/QvXmlLib.h"

#include <optional>
#include <string>

namespace invoice
{

enum class ECountry : int
{
    At,
    De,
    Fr,
    Gb
};

enum class ELanguage : int
{
    En,
    De,
    Fr
};

/// A postal address; its parts come in any order.
class CAddress : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CAddress(const wchar_t* lpctElementName = L"Address");
    ~CAddress() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    const std::wstring& GetStreet() const { return m_strStreet; }
    void SetStreet(const std::wstring& strStreet);
    const std::wstring& GetCity() const { return m_strCity; }
    void SetCity(const std::wstring& strCity);
    const std::optional<std::wstring>& GetZip() const { return m_strZip; }
    void SetZip(std::optional<std::wstring> strZip);
    ECountry GetCountry() const { return m_eCountry; }
    void SetCountry(ECountry eCountry);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreStreet(QvXmlLib9::QvVariant& value);
    void StoreCity(QvXmlLib9::QvVariant& value);

    std::wstring m_strStreet;
    std::wstring m_strCity;
    std::optional<std::wstring> m_strZip;
    ECountry m_eCountry = ECountry::At;
};

/// Who buys: a company or a person.
class CParty : public QvXmlLib9::CXmlGeneratedClass
{
public:
    ~CParty() override;

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    explicit CParty(const wchar_t* lpctElementName);

    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    void Init() override;

private:
};

/// A company, known by its registration.
class CCompany : public CParty
{
public:
    explicit CCompany(const wchar_t* lpctElementName = L"buyer");
    ~CCompany() override;

    const std::wstring& GetName() const { return m_strName; }
    void SetName(const std::wstring& strName);
    const std::optional<std::wstring>& GetContact() const { return m_strContact; }
    void SetContact(std::optional<std::wstring> strContact);
    CSmartPtr<CAddress> GetAddress() const { return m_spAddress; }
    void SetAddress(CAddress* pAddress);
    const std::optional<std::wstring>& GetVat() const { return m_strVat; }
    void SetVat(const std::optional<std::wstring>& strVat);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreName(QvXmlLib9::QvVariant& value);
    void StoreVat(QvXmlLib9::QvVariant& value);

    std::wstring m_strName;
    std::optional<std::wstring> m_strContact;
    CSmartPtr<CAddress> m_spAddress;
    std::optional<std::wstring> m_strVat;
};

/// A natural person.
class CPerson : public CParty
{
public:
    explicit CPerson(const wchar_t* lpctElementName = L"buyer");
    ~CPerson() override;

    const std::wstring& GetFirstName() const { return m_strFirstName; }
    void SetFirstName(const std::wstring& strFirstName);
    const std::wstring& GetLastName() const { return m_strLastName; }
    void SetLastName(const std::wstring& strLastName);
    const std::optional<QvXmlLib9::CDateTime>& GetBorn() const { return m_dtBorn; }
    void SetBorn(const std::optional<QvXmlLib9::CDateTime>& dtBorn);
    CSmartPtr<CAddress> GetAddress() const { return m_spAddress; }
    void SetAddress(CAddress* pAddress);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreFirstName(QvXmlLib9::QvVariant& value);
    void StoreLastName(QvXmlLib9::QvVariant& value);

    std::wstring m_strFirstName;
    std::wstring m_strLastName;
    std::optional<QvXmlLib9::CDateTime> m_dtBorn;
    CSmartPtr<CAddress> m_spAddress;
};

/// A line of the invoice: goods or work.
class CLine : public QvXmlLib9::CXmlGeneratedClass
{
public:
    ~CLine() override;

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    explicit CLine(const wchar_t* lpctElementName);

    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    void Init() override;

private:
};

/// Repeated lines of an invoice.
class CLineCol : public QvXmlLib9::CXmlCollection
{
public:
    CLineCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CLineCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CLine> Add(CLine* pItem);
    CSmartPtr<CLine> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CLine> begin() const;
    QvXmlLib9::CQvIterator<CLine> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

/// Goods, by the piece.
class CProductLine : public CLine
{
public:
    explicit CProductLine(const wchar_t* lpctElementName = L"line");
    ~CProductLine() override;

    const std::wstring& GetText() const { return m_strText; }
    void SetText(const std::wstring& strText);
    int GetQuantity() const { return m_nQuantity; }
    void SetQuantity(int nQuantity);
    const QvXmlLib9::CDecimal& GetUnitPrice() const { return m_decUnitPrice; }
    void SetUnitPrice(const QvXmlLib9::CDecimal& decUnitPrice);
    const std::wstring& GetArticle() const { return m_strArticle; }
    void SetArticle(const std::wstring& strArticle);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreText(QvXmlLib9::QvVariant& value);
    void StoreQuantity(QvXmlLib9::QvVariant& value);
    void StoreUnitPrice(QvXmlLib9::QvVariant& value);
    void StoreArticle(QvXmlLib9::QvVariant& value);

    std::wstring m_strText;
    int m_nQuantity = 0;
    QvXmlLib9::CDecimal m_decUnitPrice;
    std::wstring m_strArticle;
};

/// Work, by the time spent.
class CServiceLine : public CLine
{
public:
    explicit CServiceLine(const wchar_t* lpctElementName = L"line");
    ~CServiceLine() override;

    const std::wstring& GetText() const { return m_strText; }
    void SetText(const std::wstring& strText);
    const QvXmlLib9::CDateTimeSpan& GetTime() const { return m_dtsTime; }
    void SetTime(const QvXmlLib9::CDateTimeSpan& dtsTime);
    const QvXmlLib9::CDecimal& GetHourlyRate() const { return m_decHourlyRate; }
    void SetHourlyRate(const QvXmlLib9::CDecimal& decHourlyRate);
    const std::optional<QvXmlLib9::CDateTime>& GetPerformed() const { return m_dtPerformed; }
    void SetPerformed(const std::optional<QvXmlLib9::CDateTime>& dtPerformed);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreText(QvXmlLib9::QvVariant& value);
    void StoreTime(QvXmlLib9::QvVariant& value);
    void StoreHourlyRate(QvXmlLib9::QvVariant& value);

    std::wstring m_strText;
    QvXmlLib9::CDateTimeSpan m_dtsTime;
    QvXmlLib9::CDecimal m_decHourlyRate;
    std::optional<QvXmlLib9::CDateTime> m_dtPerformed;
};

/// When and where to; nil while the date is open.
class CDelivery : public QvXmlLib9::CXmlGeneratedClass, public QvXmlLib9::INillable
{
public:
    explicit CDelivery(const wchar_t* lpctElementName = L"delivery");
    ~CDelivery() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    const QvXmlLib9::CDateTime& GetDate() const { return m_dtDate; }
    void SetDate(const QvXmlLib9::CDateTime& dtDate);
    CSmartPtr<CAddress> GetAddress() const { return m_spAddress; }
    void SetAddress(CAddress* pAddress);
    const std::optional<std::wstring>& GetCarrier() const { return m_strCarrier; }
    void SetCarrier(std::optional<std::wstring> strCarrier);

    bool IsNil() const override { return m_bNil; }
    void SetNil(bool bNil) override { m_bNil = bNil; }

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    QvXmlLib9::CDateTime m_dtDate;
    CSmartPtr<CAddress> m_spAddress;
    std::optional<std::wstring> m_strCarrier;
    bool m_bNil = false;
};

/// A bank transfer.
class CTransfer : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CTransfer(const wchar_t* lpctElementName = L"transfer");
    ~CTransfer() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    const std::wstring& GetIban() const { return m_strIban; }
    void SetIban(const std::wstring& strIban);
    const std::optional<QvXmlLib9::CDateTime>& GetDue() const { return m_dtDue; }
    void SetDue(const std::optional<QvXmlLib9::CDateTime>& dtDue);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreIban(QvXmlLib9::QvVariant& value);

    std::wstring m_strIban;
    std::optional<QvXmlLib9::CDateTime> m_dtDue;
};

/// One way to pay, and one only.
class CPayment : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CPayment(const wchar_t* lpctElementName = L"payment");
    ~CPayment() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    CSmartPtr<CTransfer> GetTransfer() const { return m_spTransfer; }
    void SetTransfer(CTransfer* pTransfer);
    const std::optional<std::wstring>& GetCard() const { return m_strCard; }
    void SetCard(const std::optional<std::wstring>& strCard);
    const std::optional<bool>& GetCash() const { return m_bCash; }
    void SetCash(std::optional<bool> bCash);

    /// Name of the member that is set, empty if none is.
    const std::wstring& GetSelected() const { return m_strSelected; }

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreCard(QvXmlLib9::QvVariant& value);

    CSmartPtr<CTransfer> m_spTransfer;
    std::optional<std::wstring> m_strCard;
    std::optional<bool> m_bCash;
    std::wstring m_strSelected;
};

/// The whole document.
class CInvoice : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CInvoice(const wchar_t* lpctElementName = L"invoice");
    ~CInvoice() override;

    const QvXmlLib9::CDateTime& GetIssued() const { return m_dtIssued; }
    void SetIssued(const QvXmlLib9::CDateTime& dtIssued);
    CSmartPtr<CAddress> GetSeller() const { return m_spSeller; }
    void SetSeller(CAddress* pSeller);
    CSmartPtr<CParty> GetBuyer() const { return m_spBuyer; }
    void SetBuyer(CParty* pBuyer);
    CSmartPtr<CDelivery> GetDelivery() const { return m_spDelivery; }
    void SetDelivery(CDelivery* pDelivery);
    CSmartPtr<CLineCol> GetLines() const { return m_spLines; }
    CSmartPtr<CPayment> GetPayment() const { return m_spPayment; }
    void SetPayment(CPayment* pPayment);
    const QvXmlLib9::CDecimal& GetTotal() const { return m_decTotal; }
    void SetTotal(const QvXmlLib9::CDecimal& decTotal);
    const std::optional<std::wstring>& GetRemark() const { return m_strRemark; }
    void SetRemark(std::optional<std::wstring> strRemark);
    const std::wstring& GetNumber() const { return m_strNumber; }
    void SetNumber(const std::wstring& strNumber);
    std::optional<ELanguage> GetLanguage() const { return m_eLanguage; }
    void SetLanguage(std::optional<ELanguage> eLanguage);

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override;

protected:
    std::wstring GetTargetNamespace() const override;
    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override;
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override;
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override;
    void Init() override;

private:
    struct SMetaData;
    static SMetaData s_metaData;
    static const SMetaData& MetaData();

    void StoreNumber(QvXmlLib9::QvVariant& value);

    QvXmlLib9::CDateTime m_dtIssued;
    CSmartPtr<CAddress> m_spSeller;
    CSmartPtr<CParty> m_spBuyer;
    CSmartPtr<CDelivery> m_spDelivery;
    CSmartPtr<CLineCol> m_spLines;
    CSmartPtr<CPayment> m_spPayment;
    QvXmlLib9::CDecimal m_decTotal;
    std::optional<std::wstring> m_strRemark;
    std::wstring m_strNumber;
    std::optional<ELanguage> m_eLanguage;
};

} // namespace invoice
