#include "quiver/generated/RepeatedCol.h"

#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/Records.h"
#include "quiver/metadata/TreeText.h"
#include "quiver/metadata/ValueText.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"

#include <utility>

namespace QvXmlLib9
{

// --- Counts ------------------------------------------------------------------------------------------

CCollectionCounts::~CCollectionCounts() = default;

bool CCollectionCounts::IsAllowed(int nCount, const CXmlSerializationContext& context) const
{
    return context.GetIgnoreInvalidCollectionCounts() || (nCount >= m_nMin && (m_nMax == -1 || nCount <= m_nMax));
}

void CCollectionCounts::Throw_IfNotAllowed(int nCount, const std::wstring& strName,
                                           const CXmlSerializationContext& context) const
{
    if (IsAllowed(nCount, context))
        return;
    const bool bMany = m_nMax != -1 && nCount > m_nMax;
    throw CQvValidationException(FormatString(L"The %s number of [%s] elements allowed in this collection is %d",
                                              bMany ? L"Maximum" : L"Minimum", strName.c_str(),
                                              bMany ? m_nMax : m_nMin));
}

void RestrictCounts(const QvVariant& value, int nMin, int nMax)
{
    if (auto* const pCounts = dynamic_cast<CCollectionCounts*>(value.XmlCollectionPtr()))
        pCounts->RestrictCounts(nMin, nMax);
}

bool CObjectColBase::IsValidCount(const CXmlSerializationContext& context) const
{
    return IsAllowed(GetCount(), context);
}

void CObjectColBase::ValidateCount(const CXmlSerializationContext& context) const
{
    Throw_IfNotAllowed(GetCount(), GetElementName(), context);
}

bool CAnyCol::IsValidCount(const CXmlSerializationContext& context) const
{
    return IsAllowed(GetCount(), context);
}

void CAnyCol::ValidateCount(const CXmlSerializationContext& context) const
{
    Throw_IfNotAllowed(GetCount(), GetElementName(), context);
}

bool CValueColBase::IsValidCount(const CXmlSerializationContext& context) const
{
    return IsAllowed(GetCount(), context);
}

void CValueColBase::ValidateCount(const CXmlSerializationContext& context) const
{
    Throw_IfNotAllowed(GetCount(), GetElementName(), context);
}

// --- Objects -----------------------------------------------------------------------------------------

CObjectColBase::CObjectColBase(const SRepeatedElement& element, SCreator creator)
    : CInstanceMonitor(L"") // never used: the most derived class gives its name
    , CXmlCollection(element.lpctName, element.lpctNamespace, element.nMin, element.nMax)
    , CCollectionCounts(element.nMin, element.nMax)
    , m_element(element)
    , m_creator(creator)
{
}

CObjectColBase::~CObjectColBase() = default;

void CObjectColBase::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t*, const CXmlSerializationContext& context,
                               bool) const
{
    ValidateCount(context);
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem, pWriter, false, PrepareItem(*pNode->m_pItem), context, false);
}

CXmlElement* CObjectColBase::FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent,
                                         const CXmlSerializationContext& context, bool)
{
    while (pCurrent != nullptr)
    {
        CSmartPtr<CXmlObjectBase> spItem;
        CXmlElement* const pNext = ReadItem(pParent, pCurrent, context, spItem);
        if (spItem == nullptr)
            break;
        AppendItem(std::move(spItem));
        pCurrent = pNext;
    }
    return pCurrent;
}

CXmlElement* CObjectColBase::ReadItem(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                      CSmartPtr<CXmlObjectBase>& spItem)
{
    if (!IsItem(context, *pCurrent))
        return pCurrent;
    spItem = m_creator(m_element.lpctName);
    CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
    return pCurrent->GetNextSiblingElement();
}

/// DoesElementNameMatch with the texts that the collection has in the library's form.
bool CObjectColBase::IsItem(const CXmlSerializationContext& context, const CXmlElement& element) const
{
    return element.GetLocalName() == ElementName().View() &&
           (context.GetIgnoreNamespaces() || element.GetNamespaceURI() == ItemNamespace().Get());
}

const wchar_t* CObjectColBase::PrepareItem(const CXmlObjectBase&) const
{
    return m_element.lpctNamespace;
}

void CObjectColBase::CheckItem(const CXmlObjectBase* pItem) const
{
    CheckObject(pItem, m_element.lpctName, true);
}

// --- Groups ------------------------------------------------------------------------------------------

CGroupColBase::CGroupColBase(const SRepeatedElement& element, SCreator creator)
    : CInstanceMonitor(L"") // never used: the most derived class gives its name
    , CObjectColBase(element, creator)
{
}

CXmlElement* CGroupColBase::ReadItem(CXmlElement* pParent, CXmlElement* pCurrent,
                                     const CXmlSerializationContext& context, CSmartPtr<CXmlObjectBase>& spItem)
{
    const CSmartPtr<CXmlObjectBase> spGroup = Creator()(Element().lpctName);
    CXmlElement* const pNext = CXmlObjectBase::FromXml_Int(spGroup, pParent, pCurrent, context);
    if (pNext != pCurrent)
        spItem = spGroup;
    return pNext;
}

void CGroupColBase::CheckItem(const CXmlObjectBase* pItem) const
{
    // A group has no element, so it may have been made under any name.
    CheckObject(pItem, pItem != nullptr ? pItem->GetElementName().c_str() : Element().lpctName, true);
}

// --- Alternatives ------------------------------------------------------------------------------------

CPolymorphicColBase::CPolymorphicColBase(const SRepeatedElement& element, SCreator creator,
                                         const SAlternatives& alternatives)
    : CInstanceMonitor(L"") // never used: the most derived class gives its name
    , CObjectColBase(element, creator)
    , m_place(element.lpctName, element.lpctNamespace, alternatives, creator)
{
}

CXmlElement* CPolymorphicColBase::ReadItem(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                           CSmartPtr<CXmlObjectBase>& spItem)
{
    if (!m_place.Takes(context, *pCurrent))
        return pCurrent;
    spItem = m_place.Create(pCurrent);
    CXmlObjectBase::FromXml_Int(spItem, pCurrent, pCurrent->GetFirstElement(), context);
    return pCurrent->GetNextSiblingElement();
}

const wchar_t* CPolymorphicColBase::PrepareItem(const CXmlObjectBase& item) const
{
    return m_place.Prepare(item);
}

void CPolymorphicColBase::CheckItem(const CXmlObjectBase* pItem) const
{
    if (pItem == nullptr)
        CheckObject(pItem, Element().lpctName, true);
    CheckAlternative(pItem, Element().lpctName, *m_place.pAlternatives);
}

// --- Wildcards ---------------------------------------------------------------------------------------

CAnyCol::CAnyCol(const SWildcard& wildcard)
    : CInstanceMonitor(L"CAnyCol")
    , CElementCol(L"", L"##any", L"", 0, -1)
    , CCollectionCounts(wildcard.nMin, wildcard.nMax)
    , m_wildcard(wildcard)
{
    SetElementName(wildcard.lpctElementName != nullptr ? wildcard.lpctElementName : L"AnyElement");
}

CAnyCol::~CAnyCol() = default;

void CAnyCol::ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                        const CXmlSerializationContext& context, bool bOptionalChoice) const
{
    for (const CElement& element : *this)
        m_wildcard.Throw_IfForbidden(element);
    CElementCol::ToXml_Int(pWriter, bIsRoot, lpctNamespaceUri, context, bOptionalChoice);
}

CXmlElement* CAnyCol::FromXml_Int(CXmlElement* pParent, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                  bool)
{
    while (pCurrent != nullptr && m_wildcard.Allows(pCurrent->GetNamespaceURI(), pCurrent->GetLocalName()))
    {
        const CSmartPtr<CElement> spElement =
            new CElement(pCurrent->GetLocalName().c_str(), pCurrent->GetNamespaceURI().c_str(), L"##any", L"");
        CXmlElement* const pNext = pCurrent->GetNextSiblingElement();
        m_wildcard.Throw_IfContentIsWrong(*pCurrent, context);
        if (!IsCheckingOnly())
        {
            CXmlObjectBase::FromXml_Int(spElement, pParent, pCurrent, context);
            DropLayout(*spElement);
        }
        Add(spElement);
        pCurrent = pNext;
    }
    return pCurrent;
}

const SMemberOperations CAnyAttributes::s_operations{
    [](void* pMember, bool bRead, QvVariant& value, const SMemberCall& call)
    { static_cast<CAnyAttributes*>(pMember)->Access(bRead, value, *call.record.pWildcard); },
    [](void* pMember) { static_cast<CAnyAttributes*>(pMember)->Reset(); }, nullptr};

// --- Simple values -----------------------------------------------------------------------------------

CValueColBase::CValueColBase(const SRepeatedElement& element)
    : CInstanceMonitor(L"") // never used: the most derived class gives its name
    , CXmlCollectionBase(element.lpctName, element.lpctNamespace, element.nMin, element.nMax)
    , CCollectionCounts(element.nMin, element.nMax)
    , m_element(element)
{
}

CValueColBase::~CValueColBase() = default;

void CValueColBase::Throw_IfNoPlace(int nIndex) const
{
    if (nIndex < 0 || nIndex > GetCount())
        throw CQvInvalidParamException(L"Index out of range");
}

std::wstring CValueColBase::GetNamespaceOfPrefix(const wchar_t* lpctPrefix) const
{
    const std::wstring* const pUri = m_prefixes.Find(lpctPrefix);
    return pUri != nullptr ? *pUri : std::wstring();
}

void CValueColBase::ToXml_Int(CXmlWriter* pWriter, bool, const wchar_t*, const CXmlSerializationContext& context,
                              bool) const
{
    ValidateCount(context);
    const std::wstring strName = m_element.lpctName;
    const std::wstring strNamespace = m_element.lpctNamespace;
    const std::size_t nCount = static_cast<std::size_t>(GetCount());
    const bool bPrefixes = GetType().HasPrefixes();
    QvVariant value;
    value.LetBorrow();
    for (std::size_t n = 0; n < nCount; ++n)
    {
        StoreItem(n, value);
        pWriter->StartElement(strName, strNamespace);
        const QvXmlLib9Data::CValueText text(value);
        std::wstring strDeclared;
        if (bPrefixes)
            strDeclared = m_prefixes.DeclareValue(text.Get(), GetType(), Name(), *pWriter);
        pWriter->WriteText(bPrefixes ? std::wstring_view(strDeclared) : text.Get(), value.GetTypeAsEnum());
        pWriter->EndElement();
    }
}

CXmlElement* CValueColBase::FromXml_Int(CXmlElement*, CXmlElement* pCurrent, const CXmlSerializationContext& context,
                                        bool)
{
    const bool bPrefixes = GetType().HasPrefixes();
    QvVariant text;
    while (pCurrent != nullptr && DoesElementNameMatch(context, pCurrent, m_element.lpctName, m_element.lpctNamespace))
    {
        Throw_IfNotSimple(context, *pCurrent);
        QvXmlLib9Data::CTreeText::Store(*pCurrent, text);
        if (bPrefixes)
        {
            std::wstring strText(QvXmlLib9Data::CValueText(text).Get());
            m_prefixes.Note(strText, GetType(), *pCurrent, context, Name());
            text.SetString(std::move(strText));
            const CNameScope scope(m_prefixes);
            AddText(text);
        }
        else
            AddText(text);
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

} // namespace QvXmlLib9
