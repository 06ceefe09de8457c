#pragma once

// The class of the records of readings.xsd, written as a schema generator would write it. The document itself needs
// none: it is never an object.

#include "quiver/QvXmlLib.h"

#include <optional>
#include <string>

namespace weather
{

/// What a station measured at one time.
class CReading : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CReading(const wchar_t* lpctElementName = L"reading");
    ~CReading() override;

    const QvXmlLib9::CDateTime& GetTime() const { return m_dtTime; }
    void SetTime(const QvXmlLib9::CDateTime& dtTime);
    const QvXmlLib9::CDecimal& GetTemperature() const { return m_decTemperature; }
    void SetTemperature(const QvXmlLib9::CDecimal& decTemperature);
    int GetHumidity() const { return m_nHumidity; }
    void SetHumidity(int nHumidity);
    const std::optional<std::wstring>& GetRemark() const { return m_strRemark; }
    void SetRemark(const std::optional<std::wstring>& strRemark);
    const std::wstring& GetStation() const { return m_strStation; }
    void SetStation(const std::wstring& strStation);

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

    QvXmlLib9::CDateTime m_dtTime;
    QvXmlLib9::CDecimal m_decTemperature;
    int m_nHumidity = 0;
    std::optional<std::wstring> m_strRemark;
    std::wstring m_strStation;
};

} // namespace weather
