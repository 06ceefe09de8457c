#pragma once

// The classes of gpx.xsd, written as a schema generator would write them.

#include "quiver/QvXmlLib.h"

#include <optional>
#include <string>

namespace gpx
{

enum class EFix : int
{
    None,
    TwoD,
    ThreeD,
    Differential
};

/// Content of other vocabularies: sensors, display, whatever a device adds.
class CExtensions : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CExtensions(const wchar_t* lpctElementName = L"extensions");
    ~CExtensions() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    CSmartPtr<QvXmlLib9::CElementCol> GetElements() const { return m_spElements; }

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

    CSmartPtr<QvXmlLib9::CElementCol> m_spElements;
};

/// A point on the track, with what was measured there.
class CPoint : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CPoint(const wchar_t* lpctElementName = L"trkpt");
    ~CPoint() override;

    /// Makes one for the metadata of the classes that hold it.
    static CSmartPtr<QvXmlLib9::CXmlObjectBase> Create(int nClassId, const wchar_t* lpctElementName);

    const std::optional<QvXmlLib9::CDecimal>& GetEle() const { return m_decEle; }
    void SetEle(const std::optional<QvXmlLib9::CDecimal>& decEle);
    const std::optional<QvXmlLib9::CDateTime>& GetTime() const { return m_dtTime; }
    void SetTime(const std::optional<QvXmlLib9::CDateTime>& dtTime);
    const std::optional<std::wstring>& GetName() const { return m_strName; }
    void SetName(const std::optional<std::wstring>& strName);
    const std::optional<unsigned int>& GetSat() const { return m_nSat; }
    void SetSat(std::optional<unsigned int> nSat);
    std::optional<EFix> GetFix() const { return m_eFix; }
    void SetFix(std::optional<EFix> eFix);
    CSmartPtr<CExtensions> GetExtensions() const { return m_spExtensions; }
    void SetExtensions(CExtensions* pExtensions);
    const QvXmlLib9::CDecimal& GetLat() const { return m_decLat; }
    void SetLat(const QvXmlLib9::CDecimal& decLat);
    const QvXmlLib9::CDecimal& GetLon() const { return m_decLon; }
    void SetLon(const QvXmlLib9::CDecimal& decLon);

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
    void StoreLat(QvXmlLib9::QvVariant& value);
    void StoreLon(QvXmlLib9::QvVariant& value);

    std::optional<QvXmlLib9::CDecimal> m_decEle;
    std::optional<QvXmlLib9::CDateTime> m_dtTime;
    std::optional<std::wstring> m_strName;
    std::optional<unsigned int> m_nSat;
    std::optional<EFix> m_eFix;
    CSmartPtr<CExtensions> m_spExtensions;
    QvXmlLib9::CDecimal m_decLat;
    QvXmlLib9::CDecimal m_decLon;
};

/// Repeated points of a segment.
class CPointCol : public QvXmlLib9::CXmlCollection
{
public:
    CPointCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CPointCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CPoint> Add(CPoint* pItem);
    CSmartPtr<CPoint> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CPoint> begin() const;
    QvXmlLib9::CQvIterator<CPoint> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

/// A run of points without a gap.
class CSegment : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CSegment(const wchar_t* lpctElementName = L"trkseg");
    ~CSegment() override;

    CSmartPtr<CPointCol> GetPoints() const { return m_spPoints; }

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

    CSmartPtr<CPointCol> m_spPoints;
};

/// Repeated segments of a track.
class CSegmentCol : public QvXmlLib9::CXmlCollection
{
public:
    CSegmentCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CSegmentCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CSegment> Add(CSegment* pItem);
    CSmartPtr<CSegment> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CSegment> begin() const;
    QvXmlLib9::CQvIterator<CSegment> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

/// A track of one or more segments.
class CTrack : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CTrack(const wchar_t* lpctElementName = L"trk");
    ~CTrack() override;

    const std::optional<std::wstring>& GetName() const { return m_strName; }
    void SetName(std::optional<std::wstring> strName);
    const std::optional<std::wstring>& GetDesc() const { return m_strDesc; }
    void SetDesc(std::optional<std::wstring> strDesc);
    CSmartPtr<CSegmentCol> GetSegments() const { return m_spSegments; }

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

    std::optional<std::wstring> m_strName;
    std::optional<std::wstring> m_strDesc;
    CSmartPtr<CSegmentCol> m_spSegments;
};

/// Repeated tracks of a document.
class CTrackCol : public QvXmlLib9::CXmlCollection
{
public:
    CTrackCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CTrackCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CTrack> Add(CTrack* pItem);
    CSmartPtr<CTrack> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CTrack> begin() const;
    QvXmlLib9::CQvIterator<CTrack> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

/// The whole document.
class CGpx : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CGpx(const wchar_t* lpctElementName = L"gpx");
    ~CGpx() override;

    const std::optional<QvXmlLib9::CDateTime>& GetTime() const { return m_dtTime; }
    void SetTime(const std::optional<QvXmlLib9::CDateTime>& dtTime);
    const std::optional<std::wstring>& GetKeywords() const { return m_strKeywords; }
    void SetKeywords(std::optional<std::wstring> strKeywords);
    CSmartPtr<CTrackCol> GetTracks() const { return m_spTracks; }
    const std::wstring& GetVersion() const { return m_strVersion; }
    void SetVersion(const std::wstring& strVersion);
    const std::wstring& GetCreator() const { return m_strCreator; }
    void SetCreator(std::wstring strCreator);

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

    void StoreVersion(QvXmlLib9::QvVariant& value);

    std::optional<QvXmlLib9::CDateTime> m_dtTime;
    std::optional<std::wstring> m_strKeywords;
    CSmartPtr<CTrackCol> m_spTracks;
    std::wstring m_strVersion;
    std::wstring m_strCreator;
};

} // namespace gpx
