#include "quiver/document/XmlAttribute.h"

#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

namespace
{

/// The name of an attribute that stands outside any document.
struct SOwnName : SXmlName
{
    SOwnName(const std::wstring& strLocalName_, const std::wstring& strNamespaceURI_)
        : SXmlName{ToUtf16Units(strLocalName_), nullptr, true}
        , strNamespaceURI(ToUtf16Units(strNamespaceURI_))
    {
        pstrNamespaceURI = &strNamespaceURI;
    }
    SOwnName(const SOwnName&) = delete;
    SOwnName& operator=(const SOwnName&) = delete;

    const std::wstring strNamespaceURI;
};

void Release(const SXmlName* pName)
{
    if (pName->bOwnedByNode)
        delete static_cast<const SOwnName*>(pName);
}

constexpr std::wstring_view s_strNamespaces[] = {
    L"http://www.w3.org/2001/XMLSchema-instance",
    L"http://www.w3.org/2000/xmlns/",
};

constexpr std::wstring_view s_strNamespaceAttributes[] = {
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

CXmlAttribute::CXmlAttribute(const std::wstring& strLocalName, const std::wstring& strValue,
                             const std::wstring& strNamespaceURI)
    : CInstanceMonitor(L"CXmlAttribute")
    , m_strValue(ToUtf16Units(strValue))
{
    m_pName = new SOwnName(strLocalName, strNamespaceURI);
}

CXmlAttribute::CXmlAttribute(const SXmlName& name)
    : CInstanceMonitor(L"CXmlAttribute")
    , m_pName(&name)
{
}

CXmlAttribute::CXmlAttribute(const CXmlAttribute& source)
    : CInstanceMonitor(source)
    , m_strValue(source.m_strValue)
{
    m_pName = new SOwnName(source.GetLocalName(), source.GetNamespaceURI());
}

CXmlAttribute& CXmlAttribute::operator=(const CXmlAttribute& source)
{
    if (this != &source)
    {
        m_strValue = source.m_strValue;
        Release(std::exchange(m_pName, new SOwnName(source.GetLocalName(), source.GetNamespaceURI())));
        CInstanceMonitor::operator=(source);
    }
    return *this;
}

CXmlAttribute::~CXmlAttribute()
{
    Release(m_pName);
}

bool CXmlAttribute::IsNamespaceAttribute() const
{
    return IsOneOf(GetNamespaceURI(), s_strNamespaces) && IsOneOf(GetLocalName(), s_strNamespaceAttributes);
}

bool CXmlAttribute::IsNilAttribute() const
{
    return IsOneOf(GetNamespaceURI(), s_strNamespaces) && GetLocalName() == L"nil";
}

} // namespace QvXmlLib9
