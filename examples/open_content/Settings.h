#pragma once

// The classes of settings.xsd, written as a schema generator would write them.

#include "quiver/QvXmlLib.h"

#include <optional>
#include <string>

namespace settings
{

/// A plug-in, with what it keeps.
class CPlugin : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CPlugin(const wchar_t* lpctElementName = L"plugin");
    ~CPlugin() override;

    bool GetEnabled() const { return m_bEnabled; }
    void SetEnabled(bool bEnabled);
    std::optional<int> GetPriority() const { return m_nPriority; }
    void SetPriority(std::optional<int> nPriority);
    CSmartPtr<QvXmlLib9::CElement> GetAnyElement() const { return m_spAnyElement; }
    void SetAnyElement(QvXmlLib9::CElement* pAnyElement);
    const std::wstring& GetId() const { return m_strId; }
    void SetId(const std::wstring& strId);
    CSmartPtr<QvXmlLib9::CAttributeCol> GetAnyAttributes() const { return m_spAnyAttributes; }

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

    bool m_bEnabled = false;
    std::optional<int> m_nPriority;
    CSmartPtr<QvXmlLib9::CElement> m_spAnyElement;
    std::wstring m_strId;
    CSmartPtr<QvXmlLib9::CAttributeCol> m_spAnyAttributes;
};

/// Repeated plug-ins of the settings.
class CPluginCol : public QvXmlLib9::CXmlCollection
{
public:
    CPluginCol(const wchar_t* lpctElementName, const wchar_t* lpctNamespace, int nMinOccurs, int nMaxOccurs);
    ~CPluginCol() override;

    /// Adds an item at the end and returns it.
    CSmartPtr<CPlugin> Add(CPlugin* pItem);
    CSmartPtr<CPlugin> Item(int nIndex) const;
    QvXmlLib9::CQvIterator<CPlugin> begin() const;
    QvXmlLib9::CQvIterator<CPlugin> end() const;

protected:
    void ToXml_Int(QvXmlLib9::CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                   const QvXmlLib9::CXmlSerializationContext& context, bool bOptionalChoice) const override;
    QvXmlLib9::CXmlElement* FromXml_Int(QvXmlLib9::CXmlElement* pParent, QvXmlLib9::CXmlElement* pCurrent,
                                        const QvXmlLib9::CXmlSerializationContext& context,
                                        bool bOptionalChoice) override;
};

/// The whole document.
class CSettings : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CSettings(const wchar_t* lpctElementName = L"settings");
    ~CSettings() override;

    const std::wstring& GetTitle() const { return m_strTitle; }
    void SetTitle(const std::wstring& strTitle);
    /// An element of the namespace "urn:example:window", or null.
    CSmartPtr<QvXmlLib9::CElement> GetAnyElement() const { return m_spAnyElement; }
    void SetAnyElement(QvXmlLib9::CElement* pAnyElement);
    CSmartPtr<CPluginCol> GetPlugins() const { return m_spPlugins; }
    CSmartPtr<QvXmlLib9::CElementCol> GetAnyElements() const { return m_spAnyElements; }
    int GetVersion() const { return m_nVersion; }
    void SetVersion(int nVersion);
    CSmartPtr<QvXmlLib9::CAttributeCol> GetAnyAttributes() const { return m_spAnyAttributes; }

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

    std::wstring m_strTitle;
    CSmartPtr<QvXmlLib9::CElement> m_spAnyElement;
    CSmartPtr<CPluginCol> m_spPlugins;
    CSmartPtr<QvXmlLib9::CElementCol> m_spAnyElements;
    int m_nVersion = 0;
    CSmartPtr<QvXmlLib9::CAttributeCol> m_spAnyAttributes;
};

} // namespace settings
