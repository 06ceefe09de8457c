#pragma once

#include "quiver/core/XmlGeneratedClass.h"
#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfo.h"
#include "quiver/values/QvVariant.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

/// @file
/// Generated classes put together at run time, so that a test shows metadata, document and outcome in one screen.

namespace QvTest
{

/// The metadata of a class; owns its records.
class CShape
{
public:
    explicit CShape(QvXmlLib9Data::XmlElementGroupType eGroupType = QvXmlLib9Data::GroupType_Sequence,
                    QvXmlLib9Data::XmlElementType eElementType = QvXmlLib9Data::ElementType_Element,
                    const wchar_t* lpctName = L"flex", const wchar_t* lpctNamespace = L"", int nTextProperty = -1,
                    bool bFailIfAttributeUnknown = true, bool bHasBaseClasses = false)
        : m_info(eGroupType, eElementType, lpctName, lpctNamespace, nTextProperty, bFailIfAttributeUnknown,
                 bHasBaseClasses)
        , m_strNamespace(lpctNamespace)
    {
    }
    ~CShape()
    {
        for (const QvXmlLib9Data::CElementInfo* pInfo : m_elements)
            delete pInfo;
        for (const QvXmlLib9Data::CAttributeInfo* pInfo : m_attributes)
            delete pInfo;
    }
    CShape(const CShape&) = delete;
    CShape& operator=(const CShape&) = delete;

    /// Appends a record and takes it over.
    CShape& Add(QvXmlLib9Data::CElementInfo* pInfo)
    {
        m_elements.insert(m_elements.end() - 1, pInfo);
        return *this;
    }
    /// The same for a record whose property holds an object: unset, it is a null object and not an invalid variant.
    CShape& AddObject(QvXmlLib9Data::CElementInfo* pInfo, int nPropertyIndex)
    {
        m_objectProperties.insert(nPropertyIndex);
        return Add(pInfo);
    }
    CShape& Add(QvXmlLib9Data::CAttributeInfo* pInfo)
    {
        m_attributes.insert(m_attributes.end() - 1, pInfo);
        return *this;
    }

    mutable QvXmlLib9Data::CParentElementInfo m_info;
    std::wstring m_strNamespace;
    std::set<int> m_objectProperties;
    mutable std::vector<QvXmlLib9Data::CElementInfo*> m_elements{nullptr};
    mutable std::vector<QvXmlLib9Data::CAttributeInfo*> m_attributes{nullptr};
};

/// An object of such a class. Its properties are variants; a property that was never set is an
/// invalid one, or a null object.
class CFlexClass : public QvXmlLib9::CXmlGeneratedClass
{
public:
    explicit CFlexClass(const CShape& shape, const wchar_t* lpctName = L"flex",
                        std::function<void(CFlexClass&)> pfnInit = nullptr)
        : CInstanceMonitor(L"CFlexClass")
        , m_shape(shape)
        , m_pfnInit(std::move(pfnInit))
    {
        SetElementName(lpctName);
        Reset();
    }
    ~CFlexClass() override = default;

    QvXmlLib9::CXmlObjectBase* GetBase() override { return this; }
    std::wstring GetNamespace() const override { return m_shape.m_strNamespace; }
    std::wstring GetTargetNamespace() const override { return m_shape.m_strNamespace; }

    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override
    {
        if (bRead)
            value = m_properties[nPropertyIndex];
        if (bRead && !value.IsValid() && m_shape.m_objectProperties.count(nPropertyIndex) != 0)
            value.SetXmlObject(nullptr);
        if (!bRead)
            m_properties[nPropertyIndex] = value;
    }
    QvXmlLib9Data::CParentElementInfo* GetClassInfo() const override { return &m_shape.m_info; }
    QvXmlLib9Data::CElementInfo** GetClassElementInfo() const override { return m_shape.m_elements.data(); }
    QvXmlLib9Data::CAttributeInfo** GetClassAttributeInfo() const override { return m_shape.m_attributes.data(); }
    void Init() override
    {
        ++m_nInits;
        Reset();
    }

    QvXmlLib9::QvVariant& operator[](int nPropertyIndex) { return m_properties[nPropertyIndex]; }

    /// The property as text; "(unset)" where there is no value.
    std::wstring Text(int nPropertyIndex)
    {
        const QvXmlLib9::QvVariant& value = m_properties[nPropertyIndex];
        return value.IsValid() ? value.ToString(nullptr) : L"(unset)";
    }
    void SetText(int nPropertyIndex, const wchar_t* lpctText) { m_properties[nPropertyIndex].SetString(lpctText); }

    /// The object held by a property, or null.
    CFlexClass* Child(int nPropertyIndex)
    {
        const QvXmlLib9::QvVariant& value = m_properties[nPropertyIndex];
        if (!value.IsValid())
            return nullptr;
        return dynamic_cast<CFlexClass*>(static_cast<QvXmlLib9::CXmlObjectBase*>(value.GetXmlObject()));
    }

    using CXmlGeneratedClass::CleanMetaData;
    using CXmlGeneratedClass::DoesElementContainOptionalElements;
    using CXmlGeneratedClass::IsElementInList;
    using CXmlGeneratedClass::ReadProperty;

    int m_nInits = 0;

private:
    void Reset()
    {
        m_properties.clear();
        if (m_pfnInit)
            m_pfnInit(*this);
    }

    const CShape& m_shape;
    std::function<void(CFlexClass&)> m_pfnInit;
    std::map<int, QvXmlLib9::QvVariant> m_properties;
};

/// The same for a nillable element.
class CNillableFlexClass : public CFlexClass, public QvXmlLib9::INillable
{
public:
    explicit CNillableFlexClass(const CShape& shape, const wchar_t* lpctName = L"flex")
        : CInstanceMonitor(L"CNillableFlexClass")
        , CFlexClass(shape, lpctName)
    {
    }
    bool IsNil() const override { return m_bNil; }
    void SetNil(bool bNil) override { m_bNil = bNil; }
    void Init() override
    {
        CFlexClass::Init();
        m_bNil = false;
    }

private:
    bool m_bNil = false;
};

} // namespace QvTest
