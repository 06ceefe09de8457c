#include "quiver/document/XmlElement.h"

#include "quiver/document/AttributesOf.h"
#include "quiver/document/XmlNodeStore.h"
#include "quiver/foundation/Encoder.h"

#include <memory>
#include <string_view>
#include <utility>

namespace QvXmlLib9
{

namespace
{

CInstanceClass s_instanceClass(L"CXmlElement");

const std::wstring& FindValue(const CXmlElement& element, const std::wstring& strLocalName,
                              const std::wstring& strNamespaceURI)
{
    for (const CXmlAttribute* pAttribute : CAttributesOf(element))
    {
        if (pAttribute->GetLocalName() == strLocalName && pAttribute->GetNamespaceURI() == strNamespaceURI)
            return pAttribute->GetValue();
    }
    return CXmlText::GetEmpty();
}

} // namespace

CInstanceClass& CXmlElement::InstanceClass()
{
    return s_instanceClass;
}

CXmlElement::CXmlElement(const CXmlDocument* pDocument)
    : CInstanceMonitor(s_instanceClass)
    , m_pName(&(new CXmlNodeStore(pDocument, this))->GetEmptyName())
{
}

CXmlElement::CXmlElement(const SXmlName& name)
    : CInstanceMonitor(s_instanceClass)
    , m_pName(&name)
{
}

CXmlElement::CXmlElement(const CXmlElement& source) = default;
CXmlElement& CXmlElement::operator=(const CXmlElement& source) = default;

CXmlElement::~CXmlElement()
{
    CXmlNodeStore& store = Store();
    store.DestroyContent(*this);
    if (store.IsOwnedBy(this))
        delete &store;
}

const CXmlDocument* CXmlElement::GetDocument() const
{
    return Store().GetDocument();
}

const std::wstring* CXmlElement::FindPrefix(std::wstring_view svPrefix) const
{
    static const std::wstring& s_strXml = *new std::wstring(L"http://www.w3.org/XML/1998/namespace");
    return svPrefix == L"xml" ? &s_strXml : Store().FindPrefix(*this, svPrefix);
}

const std::vector<CXmlAttribute*>& CXmlElement::GetAttributes() const
{
    if (m_pLastAttribute == nullptr)
        return CXmlNodeStore::GetNoAttributes();
    const auto* const pList = m_pLastAttribute->m_pNext->m_pList.load(std::memory_order_acquire);
    return pList != nullptr ? *pList : MakeAttributeList();
}

const std::vector<CXmlAttribute*>& CXmlElement::MakeAttributeList() const
{
    Store().NoteOwnership();
    const CAttributesOf attributes(*this);
    auto pList = std::make_unique<std::vector<CXmlAttribute*>>(attributes.begin(), attributes.end());
    std::vector<CXmlAttribute*>* pFirst = nullptr;
    // Of several threads that come here at the same time, the first decides for all.
    if (m_pLastAttribute->m_pNext->m_pList.compare_exchange_strong(pFirst, pList.get(), std::memory_order_acq_rel))
        return *pList.release();
    return *pFirst;
}

const std::wstring& CXmlElement::GetText() const
{
    Store().NoteOwnership();
    return m_pText != nullptr ? m_pText->Get() : CXmlText::GetEmpty();
}

const std::wstring& CXmlElement::GetText(std::wstring& strBuffer) const
{
    return m_pText != nullptr ? m_pText->Get(strBuffer) : CXmlText::GetEmpty();
}

bool CXmlElement::HasText() const
{
    return m_pText != nullptr && !m_pText->IsEmpty();
}

bool CXmlElement::HasTextBesideWhiteSpace() const
{
    return m_pText != nullptr && !m_pText->IsWhiteSpace();
}

const std::wstring& CXmlElement::GetAttribute(const std::wstring& strLocalName,
                                              const std::wstring& strNamespaceURI) const
{
    if (m_pLastAttribute == nullptr)
        return CXmlText::GetEmpty();
    if (HasWholeCodePoints(strLocalName) || HasWholeCodePoints(strNamespaceURI))
        return FindValue(*this, ToUtf16Units(strLocalName), ToUtf16Units(strNamespaceURI));
    return FindValue(*this, strLocalName, strNamespaceURI);
}

CXmlElement* CXmlElement::CreateNewChildElement()
{
    return NewChild(Store().GetEmptyName());
}

CXmlElement* CXmlElement::NewChild(const SXmlName& name)
{
    CXmlElement* const pChild = Store().NewElement(name);
    if (m_pLastChild != nullptr)
        m_pLastChild->m_pNextSibling = pChild;
    else
        m_pFirstChild = pChild;
    m_pLastChild = pChild;
    return pChild;
}

CXmlElement* CXmlElement::RemoveLastChildElement()
{
    if (m_pFirstChild == m_pLastChild)
        return RemoveLastChild(nullptr);
    CXmlElement* pBeforeLast = m_pFirstChild;
    while (pBeforeLast->m_pNextSibling != m_pLastChild)
        pBeforeLast = pBeforeLast->m_pNextSibling;
    return RemoveLastChild(pBeforeLast);
}

/// Takes out the last child of a caller who knows the one ahead of it; null if there is none.
CXmlElement* CXmlElement::RemoveLastChild(CXmlElement* pBeforeLast)
{
    if (pBeforeLast != nullptr)
        pBeforeLast->m_pNextSibling = nullptr;
    else
        m_pFirstChild = nullptr;
    return std::exchange(m_pLastChild, pBeforeLast);
}

CXmlAttribute& CXmlElement::NewAttribute(const SXmlName& name)
{
    CXmlAttribute* const pAttribute = Store().NewAttribute(name);
    pAttribute->m_pNext = pAttribute;
    if (m_pLastAttribute != nullptr)
    {
        pAttribute->m_pNext = m_pLastAttribute->m_pNext;
        m_pLastAttribute->m_pNext = pAttribute;
    }
    m_pLastAttribute = pAttribute;
    // In a tree that is built by hand somebody may have asked already.
    if (std::vector<CXmlAttribute*>* const pList = pAttribute->m_pNext->m_pList.load(std::memory_order_relaxed))
        pList->push_back(pAttribute);
    return *pAttribute;
}

void CXmlElement::AddAttribute(const std::wstring& strLocalName, const std::wstring& strValue,
                               const std::wstring& strNamespaceURI)
{
    CXmlAttribute& attribute = NewAttribute(Store().Names().Find(strNamespaceURI, strLocalName));
    Store().Texts().Append(attribute.m_pValue, strValue);
}

void CXmlElement::AppendText(const wchar_t* lpctText)
{
    Store().Texts().Append(m_pText, std::wstring_view(lpctText));
}

void CXmlElement::AppendText(const wchar_t* lpctText, int nLength)
{
    if (nLength > 0)
        Store().Texts().Append(m_pText, std::wstring_view(lpctText, static_cast<std::size_t>(nLength)));
}

void CXmlElement::SetElementName(const std::wstring& strLocalName)
{
    m_pName = &Store().Names().Find(GetNamespaceURI(), strLocalName);
}

void CXmlElement::SetNamespace(const std::wstring& strNamespaceURI)
{
    m_pName = &Store().Names().Find(strNamespaceURI, GetLocalName());
}

} // namespace QvXmlLib9
