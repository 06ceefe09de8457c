#pragma once

#include "tools/quiver-gen/check/DynamicClass.h"
#include "tools/quiver-gen/check/Members.h"

#include "quiver/generated/GeneratedClass.h"

#include <memory>
#include <vector>

namespace quiver_gen::check
{

/// An object of a class that exists while the program runs. The runtime reads and writes it as it does an object of a
/// compiled class.
class CDynamicObject : public QvXmlLib9::CGeneratedObject
{
public:
    /// @param lpctRootUri the namespace of a root element, null for the class's own.
    CDynamicObject(CDynamicClass& type, const wchar_t* lpctElementName, const wchar_t* lpctRootUri);
    ~CDynamicObject() override;

    static void FreeTables(QvXmlLib9::SClassTables& tables) { CGeneratedObject::FreeTables(tables); }

protected:
    const QvXmlLib9::SClassTables& Tables() const override { return m_class.GetTables(); }
    void Describe(QvXmlLib9::CClassDescription& description) const override { m_class.Describe(description); }
    const QvXmlLib9::CChoiceState* ChoiceState() const override { return &m_choice; }
    std::wstring GetTargetNamespace() const override;

    void AccessProperty(int nPropertyIndex, bool bRead, QvXmlLib9::QvVariant& value) override;
    void Init() override;
    void OnEvent(QvXmlLib9::CXmlObjectBase* pMsgSource, IEventSink::MsgType eMsgType, void* pData) override;

private:
    const wchar_t* GetLabel(const SDynamicField& field) const;
    void Restrict(const SDynamicField& field, QvXmlLib9::QvVariant& value) const;
    void AccessMember(std::size_t nMember, bool bRead, QvXmlLib9::QvVariant& value);

    CDynamicClass& m_class;
    const wchar_t* m_lpctRootUri;
    std::vector<std::unique_ptr<CMember>> m_members; ///< made when they are needed first
    QvXmlLib9::CChoiceState m_choice;
};

class CDynamicNillable final : public CDynamicObject, public QvXmlLib9::CNillableState
{
public:
    /// @param bNeverNil the element may not be nil, though its class may.
    CDynamicNillable(CDynamicClass& type, const wchar_t* lpctElementName, const wchar_t* lpctRootUri, bool bNeverNil);

    /// @throws CQvValidationException "Unexpected Attribute [nil] found." for an element that may not be nil.
    void SetNil(bool bNil) override;

protected:
    void Init() override;

private:
    bool m_bNeverNil;
};

} // namespace quiver_gen::check
