#include "quiver/document/XmlAttribute.h"

#include "quiver/document/XmlNodeStore.h"
#include "quiver/document/XmlText.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/SchemaNamespaces.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

namespace
{

CInstanceClass s_instanceClass(L"CXmlAttribute");

constexpr std::wstring_view s_svNamespaces[] = {
    g_lpctXsiNamespace,
    L"http://www.w3.org/2000/xmlns/",
};

constexpr std::wstring_view s_svNamespaceAttributes[] = {
    L"xmlns",
    L"type",
    L"schemaLocation",
    L"noNamespaceSchemaLocation",
};

template <std::size_t nCount>
bool IsOneOf(const std::wstring& strText, const std::wstring_view (&list)[nCount])
{
    return std::find(std::begin(list), std::end(list), strText) != std::end(list);
}

} // namespace

/// The name and value of an attribute outside any document.
struct CXmlAttribute::SOwnData : SXmlName
{
    SOwnData(const std::wstring& strLocalName_, const std::wstring& strValue, const std::wstring& strNamespaceURI_)
        : SXmlName{ToUtf16Units(strLocalName_), nullptr, nullptr}
        , strNamespaceURI(ToUtf16Units(strNamespaceURI_))
        , text(ToUtf16Units(strValue))
    {
        pstrNamespaceURI = &strNamespaceURI;
    }
    SOwnData(const SOwnData&) = delete;
    SOwnData& operator=(const SOwnData&) = delete;

    const std::wstring strNamespaceURI;
    CXmlText text;
};

CXmlAttribute::CXmlAttribute(const std::wstring& strLocalName, const std::wstring& strValue,
                             const std::wstring& strNamespaceURI)
    : CInstanceMonitor(s_instanceClass)
{
    Take(std::make_unique<SOwnData>(strLocalName, strValue, strNamespaceURI));
}

CInstanceClass& CXmlAttribute::InstanceClass()
{
    return s_instanceClass;
}

CXmlAttribute::CXmlAttribute(const SXmlName& name)
    : CInstanceMonitor(s_instanceClass)
    , m_pName(&name)
{
}

CXmlAttribute::CXmlAttribute(const CXmlAttribute& source)
    : CInstanceMonitor(source)
{
    Take(std::make_unique<SOwnData>(source.GetLocalName(), source.GetValue(), source.GetNamespaceURI()));
}

CXmlAttribute& CXmlAttribute::operator=(const CXmlAttribute& source)
{
    if (this != &source)
    {
        auto pOwn = std::make_unique<SOwnData>(source.GetLocalName(), source.GetValue(), source.GetNamespaceURI());
        NoteOwnership();
        Release();
        Take(std::move(pOwn));
        CInstanceMonitor::operator=(source);
    }
    return *this;
}

CXmlAttribute::~CXmlAttribute()
{
    Release();
}

void CXmlAttribute::Take(std::unique_ptr<SOwnData> pOwn)
{
    m_pValue = &pOwn->text;
    m_pName = pOwn.release();
}

void CXmlAttribute::Release()
{
    if (m_pName->pStore == nullptr)
        delete static_cast<const SOwnData*>(m_pName);
    else if (m_pValue != nullptr)
        m_pValue->Release();
}

/// Says that this attribute of a tree is going to own what its store does not know.
void CXmlAttribute::NoteOwnership() const
{
    if (m_pName->pStore != nullptr)
        m_pName->pStore->NoteOwnership();
}

const std::wstring& CXmlAttribute::GetValue() const
{
    NoteOwnership();
    return m_pValue != nullptr ? m_pValue->Get() : CXmlText::GetEmpty();
}

const std::wstring& CXmlAttribute::GetValue(std::wstring& strBuffer) const
{
    return m_pValue != nullptr ? m_pValue->Get(strBuffer) : CXmlText::GetEmpty();
}

bool CXmlAttribute::IsNamespaceAttribute() const
{
    return !GetNamespaceURI().empty() && IsOneOf(GetNamespaceURI(), s_svNamespaces) &&
           IsOneOf(GetLocalName(), s_svNamespaceAttributes);
}

bool CXmlAttribute::IsNilAttribute() const
{
    return !GetNamespaceURI().empty() && IsOneOf(GetNamespaceURI(), s_svNamespaces) && GetLocalName() == L"nil";
}

} // namespace QvXmlLib9
