#include "quiver/collections/Attribute.h"

#include "quiver/document/AttributesOf.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/document/XmlSerializationContext.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/output/XmlWriter.h"

namespace QvXmlLib9
{

// --- CAttribute -----------------------------------------------------------------------------------------------------

CAttribute::CAttribute(const wchar_t* lpctName, const wchar_t* lpctValue, const wchar_t* lpctNamespace)
    : CAttribute(ToUtf16Units(lpctName), ToUtf16Units(lpctValue), CSharedText(lpctNamespace))
{
}

CAttribute::CAttribute(const std::wstring& strName, const std::wstring& strValue, const CSharedText& strNamespace)
    : CInstanceMonitor(L"CAttribute")
    , m_strName(strName)
    , m_strValue(strValue)
    , m_strNamespace(strNamespace)
{
}

CAttribute::~CAttribute() = default;

CXmlObjectBase* CAttribute::GetBase()
{
    return this;
}

std::wstring CAttribute::GetNamespace() const
{
    return m_strNamespace.Get();
}

std::wstring CAttribute::GetTargetNamespace() const
{
    return m_strNamespace.Get();
}

void CAttribute::SetName(const wchar_t* lpctName)
{
    FireOnChangeName(lpctName);
    m_strName = ToUtf16Units(lpctName);
}

void CAttribute::SetValue(const wchar_t* lpctValue)
{
    m_strValue = ToUtf16Units(lpctValue);
}

void CAttribute::SetNamespace(const wchar_t* lpctNamespace)
{
    FireOnChangeNamespace(lpctNamespace);
    m_strNamespace = CSharedText(lpctNamespace);
}

CSmartPtr<CAttribute> CAttribute::Clone() const
{
    return new CAttribute(m_strName, m_strValue, m_strNamespace);
}

void CAttribute::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/, const wchar_t* /*lpctNamespaceUri*/,
                           const CXmlSerializationContext& /*context*/, bool /*bOptionalChoice*/) const
{
    pWriter->WriteAttribute(m_strName, m_strNamespace.Get(), m_strValue, ItemType_string);
}

CXmlElement* CAttribute::FromXml_Int(CXmlElement* /*pElement*/, CXmlElement* /*pFirstChild*/,
                                     const CXmlSerializationContext& /*context*/, bool /*bOptionalChoice*/)
{
    throw CQvException(L"This should be done by the collection");
}

void CAttribute::FireOnChangeName(const wchar_t* /*lpctName*/)
{
}

void CAttribute::FireOnChangeNamespace(const wchar_t* /*lpctNamespace*/)
{
}

void CAttribute::FireOnChangeText(const wchar_t* /*lpctText*/)
{
}

// --- CAttributeCol --------------------------------------------------------------------------------------------------

namespace
{

/// Namespace of items that are added without one: a restriction of plain URIs supplies it where none is given.
CSharedText ItemNamespaceFor(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction)
{
    const CSharedText strNamespace(lpctNamespace);
    if (!strNamespace.IsEmpty())
        return strNamespace;
    const std::wstring strRestriction = ToUtf16Units(lpctRestriction);
    const std::wstring strToken = strRestriction.substr(0, strRestriction.find(L' '));
    const bool bIsUri = strToken.length() >= 2 && strToken[0] != L'#' && strToken[1] != L'#';
    return bIsUri ? CSharedText(strToken) : CSharedText();
}

} // namespace

CAttributeCol::CAttributeCol(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
                             const wchar_t* lpctTargetNamespace)
    : CAttributeCol(ItemNamespaceFor(lpctNamespace, lpctRestriction), CSharedText(lpctRestriction),
                    CSharedText(lpctTargetNamespace))
{
}

CAttributeCol::CAttributeCol(const CSharedText& strNamespace, const CSharedText& strRestriction,
                             const CSharedText& strTargetNamespace)
    : CInstanceMonitor(L"CAttributeCol")
    , m_strNamespaceRestriction(strRestriction)
    , m_strTargetNamespace(strTargetNamespace)
{
    SetItemNamespace(strNamespace);
}

CAttributeCol::~CAttributeCol() = default;

std::wstring CAttributeCol::GetTargetNamespace() const
{
    return GetNamespace();
}

CSmartPtr<CAttribute> CAttributeCol::Add(const wchar_t* lpctName)
{
    return Add(lpctName, L"");
}

CSmartPtr<CAttribute> CAttributeCol::Add(const wchar_t* lpctName, const wchar_t* lpctValue)
{
    TestNamespace(ItemNamespace().c_str(), m_strNamespaceRestriction.c_str(), m_strTargetNamespace.c_str());
    return Append(ToUtf16Units(lpctName), ToUtf16Units(lpctValue), ItemNamespace());
}

CSmartPtr<CAttribute> CAttributeCol::Add(const wchar_t* lpctName, const wchar_t* lpctValue,
                                         const wchar_t* lpctNamespace)
{
    const std::wstring strNamespace = ToUtf16Units(lpctNamespace);
    TestNamespace(strNamespace.c_str(), m_strNamespaceRestriction.c_str(), m_strTargetNamespace.c_str());
    return Append(ToUtf16Units(lpctName), ToUtf16Units(lpctValue), ItemNamespace().Matching(strNamespace));
}

CSmartPtr<CAttribute> CAttributeCol::Add(CAttribute* pAttribute)
{
    AppendItem(pAttribute);
    return pAttribute;
}

CSmartPtr<CAttribute> CAttributeCol::Append(const std::wstring& strName, const std::wstring& strValue,
                                            const CSharedText& strNamespace)
{
    CSmartPtr<CAttribute> spAttribute = new CAttribute(strName, strValue, strNamespace);
    AppendItem(spAttribute);
    return spAttribute;
}

void CAttributeCol::AddAfter(const CAttribute* pExisting, CAttribute* pNew)
{
    AddAfterItem(pExisting, pNew);
}

void CAttributeCol::AddBefore(const CAttribute* pExisting, CAttribute* pNew)
{
    AddBeforeItem(pExisting, pNew);
}

CSmartPtr<CAttribute> CAttributeCol::Item(int nIndex) const
{
    return static_cast<CAttribute*>(ItemAt(nIndex));
}

CSmartPtr<CAttributeCol> CAttributeCol::Clone() const
{
    CSmartPtr<CAttributeCol> spClone =
        new CAttributeCol(ItemNamespace(), m_strNamespaceRestriction, m_strTargetNamespace);
    for (const CAttribute& attribute : *this)
        spClone->AppendItem(attribute.Clone());
    return spClone;
}

void CAttributeCol::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/, const wchar_t* lpctNamespaceUri,
                              const CXmlSerializationContext& context, bool /*bOptionalChoice*/) const
{
    for (const CAttribute& attribute : *this)
        CXmlObjectBase::ToXml_Int(attribute.GetBase(), pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CAttributeCol::FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild,
                                        const CXmlSerializationContext& /*context*/, bool /*bOptionalChoice*/)
{
    std::wstring strBuffer;
    for (const CXmlAttribute* pAttribute : CAttributesOf(*pElement))
    {
        const std::wstring& strNamespace = pAttribute->GetNamespaceURI();
        if (!IsAllowed(strNamespace))
            throw CQvInvalidNamespaceException(
                FormatString(L"Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                             pAttribute->GetLocalName().c_str()));
        Append(pAttribute->GetLocalName(), pAttribute->GetValue(strBuffer), ItemNamespace().Matching(strNamespace));
    }
    return pFirstChild;
}

bool CAttributeCol::IsAllowed(const std::wstring& strNamespace) const
{
    return m_strNamespaceRestriction.IsAny() ||
           IsNamespaceValid(strNamespace.c_str(), m_strNamespaceRestriction.c_str(), m_strTargetNamespace.c_str());
}

// What a context keeps as this collection; the rest of it is of a layer that knows none.

void CXmlSerializationContext::SetAdditionalRootAttributes(CAttributeCol* pAttributes)
{
    if (pAttributes != nullptr)
        pAttributes->AddRef();
    CAttributeCol* const pOld = m_pAdditionalRootAttributes.exchange(pAttributes);
    if (pOld != nullptr)
        pOld->Release();
}

/// Lets go of what the default context holds, which is never destroyed itself. It comes to life behind the first of the
/// attributes and therefore goes ahead of the report of instances.
struct SDefaultAttributes
{
    SDefaultAttributes() = default;
    ~SDefaultAttributes() { CXmlSerializationContext::GetDefaultContext().SetAdditionalRootAttributes(nullptr); }
    SDefaultAttributes(const SDefaultAttributes&) = delete;
    SDefaultAttributes& operator=(const SDefaultAttributes&) = delete;
};

CSmartPtr<CAttributeCol> CXmlSerializationContext::GetAdditionalRootAttributes() const
{
    CAttributeCol* pAttributes = m_pAdditionalRootAttributes.load(std::memory_order_acquire);
    if (pAttributes == nullptr)
    {
        CSmartPtr<CAttributeCol> spNew = new CAttributeCol(L"", L"##any", L"");
        if (m_pAdditionalRootAttributes.compare_exchange_strong(pAttributes, spNew))
        {
            spNew->AddRef(); // the reference that the context holds
            pAttributes = spNew;
            if (this == &GetDefaultContext())
                static const SDefaultAttributes s_attributes;
        }
    }
    return pAttributes;
}

} // namespace QvXmlLib9
