#pragma once

// The classes of order.xsd, written as a schema generator would write them: properties with checked setters, tables of
// metadata, and no serialisation code.

#include "quiver/QvXmlLib.h"

#include <optional>
#include <string>

namespace order
{

class CAddress : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CAddress(const wchar_t* lpctElementName = L"Address");
    ~CAddress() override;

    /// Makes one for the metadata of the classes that hold addresses.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    const std::wstring& GetName() const { return m_strName; }
    void SetName(const std::wstring& strName);
    const std::wstring& GetStreet() const { return m_strStreet; }
    void SetStreet(const std::wstring& strStreet);
    const std::wstring& GetCity() const { return m_strCity; }
    void SetCity(const std::wstring& strCity);
    const std::optional<std::wstring>& GetPostcode() const { return m_strPostcode; }
    void SetPostcode(const std::optional<std::wstring>& strPostcode);

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

    std::wstring m_strName;
    std::wstring m_strStreet;
    std::wstring m_strCity;
    std::optional<std::wstring> m_strPostcode;
};

class CItem : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CItem(const wchar_t* lpctElementName = L"item");
    ~CItem() override;

    const std::wstring& GetPart() const { return m_strPart; }
    void SetPart(const std::wstring& strPart);
    const std::wstring& GetProduct() const { return m_strProduct; }
    void SetProduct(const std::wstring& strProduct);
    int GetQuantity() const { return m_nQuantity; }
    void SetQuantity(int nQuantity);
    double GetPrice() const { return m_dPrice; }
    void SetPrice(double dPrice);
    const std::optional<std::wstring>& GetNote() const { return m_strNote; }
    void SetNote(const std::optional<std::wstring>& strNote);

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

    std::wstring m_strPart;
    std::wstring m_strProduct;
    int m_nQuantity = 1;
    double m_dPrice = 0;
    std::optional<std::wstring> m_strNote;
};

class CItemCol : public QvXmlLib9::CXmlCollection
{
public:
    CItemCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CItemCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CItem> Add(CItem* pItem);
    CSmartPtr<CItem> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CItem> begin() const;
    QvXmlLib9::CQvIterator<CItem> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

class CPurchaseOrder : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CPurchaseOrder(const wchar_t* lpctElementName = L"purchaseOrder");
    ~CPurchaseOrder() override;

    int GetNumber() const { return m_nNumber; }
    void SetNumber(int nNumber);
    const std::wstring& GetCurrency() const { return m_strCurrency; }
    void SetCurrency(const std::wstring& strCurrency);
    CSmartPtr<CAddress> GetShipTo() const { return m_spShipTo; }
    void SetShipTo(CAddress* pShipTo);
    CSmartPtr<CAddress> GetBillTo() const { return m_spBillTo; }
    void SetBillTo(CAddress* pBillTo);
    std::optional<bool> GetExpress() const { return m_bExpress; }
    void SetExpress(std::optional<bool> bExpress);
    const std::optional<std::wstring>& GetComment() const { return m_strComment; }
    void SetComment(const std::optional<std::wstring>& strComment);
    CSmartPtr<CItemCol> GetItems() const { return m_spItems; }

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

    int m_nNumber = 0;
    std::wstring m_strCurrency;
    CSmartPtr<CAddress> m_spShipTo;
    CSmartPtr<CAddress> m_spBillTo;
    std::optional<bool> m_bExpress;
    std::optional<std::wstring> m_strComment;
    CSmartPtr<CItemCol> m_spItems;
};

} // namespace order
