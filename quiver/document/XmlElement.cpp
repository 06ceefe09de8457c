#include "quiver/document/XmlElement.h"

#include "quiver/document/XmlNodeStore.h"
#include "quiver/foundation/Encoder.h"

#include <algorithm>
#include <utility>

namespace QvXmlLib9
{

namespace
{

const std::wstring& FindValue(const std::vector<CXmlAttribute*>& attributes, const std::wstring& strLocalName,
                              const std::wstring& strNamespaceURI)
{
    for (const CXmlAttribute* pAttribute : attributes)
    {
        if (pAttribute->GetLocalName() == strLocalName && pAttribute->GetNamespaceURI() == strNamespaceURI)
            return pAttribute->GetValue();
    }
    return CXmlNameTable::GetEmptyName().strLocalName;
}

} // namespace

CXmlElement::CXmlElement(const CXmlDocument* pDocument)
    : CInstanceMonitor(L"CXmlElement")
    , m_pStore(nullptr)
    , m_pName(&CXmlNameTable::GetEmptyName())
{
    m_pStore = new CXmlNodeStore(pDocument, this);
}

CXmlElement::CXmlElement(CXmlNodeStore& store, const SXmlName& name)
    : CInstanceMonitor(L"CXmlElement")
    , m_pStore(&store)
    , m_pName(&name)
{
}

CXmlElement::CXmlElement(const CXmlElement& source) = default;
CXmlElement& CXmlElement::operator=(const CXmlElement& source) = default;

CXmlElement::~CXmlElement()
{
    m_pStore->DestroyContent(*this);
    if (m_pStore->IsOwnedBy(this))
        delete m_pStore;
}

const CXmlDocument* CXmlElement::GetDocument() const
{
    return m_pStore->GetDocument();
}

const std::wstring& CXmlElement::GetAttribute(const std::wstring& strLocalName,
                                              const std::wstring& strNamespaceURI) const
{
    if (HasWholeCodePoints(strLocalName) || HasWholeCodePoints(strNamespaceURI))
        return FindValue(m_attributes, ToUtf16Units(strLocalName), ToUtf16Units(strNamespaceURI));
    return FindValue(m_attributes, strLocalName, strNamespaceURI);
}

CXmlElement* CXmlElement::CreateNewChildElement()
{
    return NewChild(CXmlNameTable::GetEmptyName());
}

CXmlElement* CXmlElement::NewChild(const SXmlName& name)
{
    CXmlElement* const pChild = m_pStore->NewElement(name);
    if (m_pLastChild != nullptr)
        m_pLastChild->m_pNextSibling = pChild;
    else
        m_pFirstChild = pChild;
    m_pBeforeLastChild = m_pLastChild;
    m_pLastChild = pChild;
    return pChild;
}

CXmlElement* CXmlElement::RemoveLastChildElement()
{
    CXmlElement* const pRemoved = m_pLastChild;
    if (m_pFirstChild == m_pLastChild)
    {
        m_pFirstChild = m_pLastChild = nullptr;
        return pRemoved;
    }
    if (m_pBeforeLastChild == nullptr)
    {
        m_pBeforeLastChild = m_pFirstChild;
        while (m_pBeforeLastChild->m_pNextSibling != pRemoved)
            m_pBeforeLastChild = m_pBeforeLastChild->m_pNextSibling;
    }
    m_pLastChild = std::exchange(m_pBeforeLastChild, nullptr);
    m_pLastChild->m_pNextSibling = nullptr;
    return pRemoved;
}

CXmlAttribute& CXmlElement::NewAttribute(const SXmlName& name)
{
    if (m_attributes.size() == m_attributes.capacity())
        m_attributes.reserve(std::max<std::size_t>(1, 2 * m_attributes.size()));
    m_attributes.push_back(m_pStore->NewAttribute(name));
    return *m_attributes.back();
}

void CXmlElement::AddAttribute(const std::wstring& strLocalName, const std::wstring& strValue,
                               const std::wstring& strNamespaceURI)
{
    AppendUtf16Units(NewAttribute(m_pStore->Names().Find(strNamespaceURI, strLocalName)).m_strValue, strValue);
}

void CXmlElement::AppendText(const wchar_t* lpctText)
{
    AppendUnits(std::wstring_view(lpctText));
}

void CXmlElement::AppendText(const wchar_t* lpctText, int nLength)
{
    if (nLength > 0)
        AppendUnits(std::wstring_view(lpctText, static_cast<std::size_t>(nLength)));
}

void CXmlElement::AppendUnits(std::wstring_view text)
{
    if (HasWholeCodePoints(text))
    {
        AppendUtf16Units(m_strText, text);
        return;
    }
    // A long text arrives in many pieces, and not every library's string grows by doubling.
    const std::size_t nLength = m_strText.size() + text.size();
    if (!m_strText.empty() && nLength > m_strText.capacity())
        m_strText.reserve(std::max(nLength, 2 * m_strText.capacity()));
    m_strText.append(text);
}

void CXmlElement::SetElementName(const std::wstring& strLocalName)
{
    m_pName = &m_pStore->Names().Find(GetNamespaceURI(), strLocalName);
}

void CXmlElement::SetNamespace(const std::wstring& strNamespaceURI)
{
    m_pName = &m_pStore->Names().Find(strNamespaceURI, GetLocalName());
}

} // namespace QvXmlLib9
