#include "quiver/collections/Element.h"

#include "quiver/document/AttributesOf.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/Encoder.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/StackGuard.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/XmlTextWriter.h"

#include <algorithm>
#include <iterator>
#include <typeinfo>
#include <utility>
#include <vector>

namespace QvXmlLib9
{

namespace
{

bool IsKeyword(const std::wstring& strNamespace)
{
    static constexpr const wchar_t* s_keywords[] = {L"##any", L"##other", L"##local", L"##targetNamespace"};
    return std::find(std::begin(s_keywords), std::end(s_keywords), strNamespace) != std::end(s_keywords);
}

void Throw_IfNull(const wchar_t* lpctArgument, const wchar_t* lpctMessage)
{
    if (lpctArgument == nullptr)
        throw CQvInvalidNamespaceException(lpctMessage);
}

CXmlElement* RootOf(CXmlDocument& document)
{
    CXmlElement* const pRoot = document.GetDocumentElement();
    if (pRoot == nullptr)
        throw CQvException(L"Invalid or empty XML document");
    return pRoot;
}

} // namespace

// --- CElement: construction -----------------------------------------------------------------------------------------

CElement::CElement(const wchar_t* lpctName)
    : CInstanceMonitor(L"CElement")
{
    Init(lpctName, L"", L"##any", L"");
}

CElement::CElement(const wchar_t* lpctName, const wchar_t* lpctNamespace)
    : CInstanceMonitor(L"CElement")
{
    if (IsKeyword(ToUtf16Units(lpctNamespace)))
        throw CQvInvalidNamespaceException(FormatString(L"Invalid Namespace [%s]", lpctNamespace));
    Init(lpctName, lpctNamespace, lpctNamespace, L"");
}

CElement::CElement(const wchar_t* lpctName, const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
                   const wchar_t* lpctTargetNamespace)
    : CInstanceMonitor(L"CElement")
{
    Init(lpctName, lpctNamespace, lpctRestriction, lpctTargetNamespace);
}

CElement::CElement(CXmlObjectBase* pObject, const wchar_t* lpctDefaultNamespace)
    : CInstanceMonitor(L"CElement")
    , m_strDefaultNamespace(lpctDefaultNamespace)
{
    Throw_IfPropertyIsNull(pObject, L"pObject");
    Init(L"", L"", L"##any", L"");
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(m_strDefaultNamespace.c_str());
    const CBinaryData data = pObject->ToXmlStream(false, false, Encoding_UTF8, EOLType_LF, context, Compression_None);
    CXmlDocument document(context);
    document.LoadXmlStream(data.GetData(), data.GetLength());
    CopyXmlElement(RootOf(document));
}

CElement::CElement(const std::wstring& strName, const CSharedText& strNamespace, const CSharedText& strRestriction,
                   const CSharedText& strTargetNamespace)
    : CInstanceMonitor(L"CElement")
{
    InitShared(strName, strNamespace, strRestriction, strTargetNamespace);
}

CElement::~CElement() = default;

void CElement::Init(const wchar_t* lpctName, const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
                    const wchar_t* lpctTargetNamespace)
{
    // A null namespace passes (docs/compatibility.md: Elements without a namespace).
    Throw_IfNull(lpctName, L"Element Name must have a value");
    Throw_IfNull(lpctRestriction, L"Namespace Restriction must have a value");
    Throw_IfNull(lpctTargetNamespace, L"Target Namespace must have a value");
    const CSharedText strNamespace(lpctNamespace);
    InitShared(ToUtf16Units(lpctName), strNamespace, strNamespace.Matching(ToUtf16Units(lpctRestriction)),
               CSharedText(lpctTargetNamespace));
}

void CElement::InitShared(const std::wstring& strName, const CSharedText& strNamespace,
                          const CSharedText& strRestriction, const CSharedText& strTargetNamespace)
{
    if (!strRestriction.IsAny())
        TestNamespace(strNamespace.c_str(), strRestriction.c_str(), strTargetNamespace.c_str());
    m_strName = strName;
    m_strNamespace = strNamespace;
    m_strNamespaceRestriction = strRestriction;
    m_strTargetNamespace = strTargetNamespace;
    m_spAttributes = new CAttributeCol(strNamespace, CSharedText::Any(), strTargetNamespace);
    m_spChildElements = new CElementCol(strNamespace, strTargetNamespace);
}

// --- CElement: plain operations -------------------------------------------------------------------------------------

CXmlObjectBase* CElement::GetBase()
{
    return this;
}

std::wstring CElement::GetNamespace() const
{
    return m_strNamespace.Get();
}

std::wstring CElement::GetTargetNamespace() const
{
    return m_strNamespace.Get();
}

void CElement::SetName(const wchar_t* lpctName)
{
    FireOnChangeName(lpctName);
    m_strName = ToUtf16Units(lpctName);
}

void CElement::SetText(const wchar_t* lpctText)
{
    FireOnChangeText(lpctText);
    m_strText = ToUtf16Units(lpctText);
}

void CElement::SetNamespace(const wchar_t* lpctNamespace)
{
    FireOnChangeNamespace(lpctNamespace);
    m_strNamespace = CSharedText(lpctNamespace);
}

void CElement::FireOnChangeName(const wchar_t* /*lpctName*/)
{
}

void CElement::FireOnChangeNamespace(const wchar_t* /*lpctNamespace*/)
{
}

void CElement::FireOnChangeText(const wchar_t* /*lpctText*/)
{
}

// --- CElement: walks over the tree ----------------------------------------------------------------------------------

/// Walks the items below this element, depth first, without recursion: the depth of open content is the document's.
/// `Enter` gets each item and returns it as the element to descend into, or null. `Leave` gets each element that was
/// descended into, this one included, behind the last item below it.
template <class TEnter, class TLeave>
void CElement::Walk(TEnter Enter, TLeave Leave) const
{
    std::vector<std::pair<const CElement*, const CNode*>> pathOfOpen;
    const CElement* pElement = this;
    const CNode* pNext = FirstChildNode();
    for (;;)
    {
        if (pNext != nullptr)
        {
            const CXmlObjectBase& item = *pNext->m_pItem;
            pNext = pNext->m_pNext;
            if (const CElement* const pChild = Enter(item))
            {
                pathOfOpen.emplace_back(pElement, pNext);
                pElement = pChild;
                pNext = pChild->FirstChildNode();
            }
            continue;
        }
        Leave(*pElement);
        if (pathOfOpen.empty())
            return;
        pElement = pathOfOpen.back().first;
        pNext = pathOfOpen.back().second;
        pathOfOpen.pop_back();
    }
}

const CNode* CElement::FirstChildNode() const
{
    return m_spChildElements->GetHeadNode();
}

CSmartPtr<CElement> CElement::Clone() const
{
    CSmartPtr<CElement> spClone = CloneAlone();
    std::vector<CElement*> pathOfClones{spClone};
    const auto Enter = [&](const CXmlObjectBase& item)
    {
        const CElement& child = static_cast<const CElement&>(item);
        const CSmartPtr<CElement> spChild = child.CloneAlone();
        pathOfClones.back()->m_spChildElements->AppendItem(spChild);
        pathOfClones.push_back(spChild);
        return &child;
    };
    Walk(Enter, [&](const CElement&) { pathOfClones.pop_back(); });
    return spClone;
}

/// A copy without children.
CSmartPtr<CElement> CElement::CloneAlone() const
{
    CSmartPtr<CElement> spClone =
        new CElement(m_strName, m_strNamespace, m_strNamespaceRestriction, m_strTargetNamespace);
    spClone->m_spAttributes = m_spAttributes->Clone();
    spClone->m_spChildElements = m_spChildElements->CloneAlone();
    spClone->m_strText = m_strText;
    return spClone;
}

void CElement::SetNamespaceRestrictions(const wchar_t* lpctRestriction, const wchar_t* lpctTargetNamespace)
{
    const wchar_t* const lpctAllowed = TextOrEmpty(lpctRestriction);
    const wchar_t* const lpctTarget = TextOrEmpty(lpctTargetNamespace);
    const auto Test = [&](const CElement& element)
    {
        TestNamespace(element.m_strNamespace.c_str(), lpctAllowed, lpctTarget);
        for (const CAttribute& attribute : *element.m_spAttributes)
            TestNamespace(attribute.GetNamespace().c_str(), lpctAllowed, lpctTarget);
    };
    try
    {
        Test(*this);
        const auto Enter = [&](const CXmlObjectBase& item)
        {
            const CElement& child = static_cast<const CElement&>(item);
            Test(child);
            return &child;
        };
        Walk(Enter, [](const CElement&) {});
    }
    catch (const CQvException&)
    {
        throw CQvInvalidNamespaceException(
            FormatString(L"The namespace %s in the class %s is invalid against restriction %s", m_strName.c_str(),
                         m_strNamespace.c_str(), lpctAllowed));
    }
}

// --- CElement: writing ----------------------------------------------------------------------------------------------

void CElement::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/, const wchar_t* lpctNamespaceUri,
                         const CXmlSerializationContext& context, bool bOptionalChoice) const
{
    // Items that are not plain elements are written through their virtual operation, which may come back here.
    Throw_IfStackIsLow();
    if (!m_strDefaultNamespace.IsEmpty())
    {
        WriteSpliced(pWriter, bOptionalChoice);
        return;
    }

    WriteStart(pWriter, lpctNamespaceUri, context);
    const auto Enter = [&](const CXmlObjectBase& item) -> const CElement*
    {
        const CElement* const pChild = AsPlainElement(*item.GetBase());
        if (pChild != nullptr)
            pChild->WriteStart(pWriter, lpctNamespaceUri, context);
        else
            CXmlObjectBase::ToXml_Int(item.GetBase(), pWriter, false, lpctNamespaceUri, context, false);
        return pChild;
    };
    const auto Leave = [&](const CElement& element)
    {
        pWriter->WriteText(element.m_strText, ItemType_string);
        pWriter->EndElement();
    };
    Walk(Enter, Leave);
}

void CElement::WriteStart(CXmlWriter* pWriter, const wchar_t* lpctNamespaceUri,
                          const CXmlSerializationContext& context) const
{
    pWriter->StartElement(m_strName, m_strNamespace.Get());
    m_spAttributes->ToXml_Int(pWriter, false, lpctNamespaceUri, context, false);
}

/// The object as an element that ToXml_Int of this very class writes with the writer that is in use; else null.
const CElement* CElement::AsPlainElement(const CXmlObjectBase& object)
{
    if (typeid(object) != typeid(CElement))
        return nullptr;
    const CElement& element = static_cast<const CElement&>(object);
    return element.m_strDefaultNamespace.IsEmpty() ? &element : nullptr;
}

/// Writes the element with its own default namespace, by a writer of its own whose output is put into the outer one as
/// it is. The attributes are not written in this way (docs/compatibility.md: Attributes of open elements).
void CElement::WriteSpliced(CXmlWriter* pWriter, bool bOptionalChoice) const
{
    CXmlTextWriter* const pXmlTextOut = dynamic_cast<CXmlTextWriter*>(pWriter);
    QV_ASSERT_MSG(pXmlTextOut != nullptr, "pXmlTextOut != NULL");
    if (pXmlTextOut == nullptr)
        throw CQvException(L"An element with a default namespace of its own can be written as XML text only");

    CTextStream stream;
    CXmlTextWriter writer(&stream);
    writer.SetFormatted(pXmlTextOut->GetFormatted());
    writer.SetEOLType(pXmlTextOut->GetEOLType());
    writer.SetDefaultNamespace(m_strDefaultNamespace.Get());
    writer.StartElement(m_strName, m_strNamespace.Get());
    CXmlSerializationContext context;
    context.SetDefaultNamespaceURI(m_strDefaultNamespace.c_str());
    m_spChildElements->ToXml_Int(&writer, false, m_strNamespace.c_str(), context, bOptionalChoice);
    writer.WriteText(m_strText, ItemType_string);
    writer.EndElement();
    stream.Flush();

    pXmlTextOut->CloseStartTag();
    pXmlTextOut->WriteRaw(stream.GetText());
}

// --- CElement: reading ----------------------------------------------------------------------------------------------

namespace
{

/// Builds the tree below `pTarget` after that below `pSource`, without recursion. `MakeChild` makes the element for a
/// child of the source, without children.
template <class TMakeChild>
void BuildBelow(CElement* pTarget, CXmlElement* pSource, TMakeChild MakeChild)
{
    std::vector<std::pair<CElement*, CXmlElement*>> pathOfOpen;
    CXmlElement* pNext = pSource->GetFirstElement();
    for (;;)
    {
        if (pNext == nullptr)
        {
            if (pathOfOpen.empty())
                return;
            pTarget = pathOfOpen.back().first;
            pNext = pathOfOpen.back().second;
            pathOfOpen.pop_back();
            continue;
        }
        CElement* const pChild = MakeChild(*pTarget, *pNext);
        CXmlElement* const pFirstGrandchild = pNext->GetFirstElement();
        pNext = pNext->GetNextSiblingElement();
        if (pFirstGrandchild != nullptr)
        {
            pathOfOpen.emplace_back(pTarget, pNext);
            pTarget = pChild;
            pNext = pFirstGrandchild;
        }
    }
}

} // namespace

void CElement::FromXml(const wchar_t* lpctXml)
{
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext();
    CXmlDocument document(context);
    document.LoadXml(lpctXml);
    CXmlElement* const pRoot = RootOf(document);
    FromXml_Int(pRoot, pRoot, context, false);
}

CXmlElement* CElement::FromXml_Int(CXmlElement* /*pParent*/, CXmlElement* pCurrent,
                                   const CXmlSerializationContext& context, bool /*bOptionalChoice*/)
{
    if (pCurrent == nullptr || !IsNamespaceValid(pCurrent->GetNamespaceURI().c_str(), m_strNamespaceRestriction.c_str(),
                                                 m_strTargetNamespace.c_str()))
        return pCurrent;

    CXmlObjectBase::FromXml_Int(m_spAttributes, pCurrent, nullptr, context);
    if (CXmlObjectBase::FromXml_Int(m_spChildElements, pCurrent, pCurrent->GetFirstElement(), context) != nullptr)
        throw CQvValidationException(FormatString(L"Invalid Element [%s] found in element [%s]",
                                                  pCurrent->GetLocalName().c_str(), m_strName.c_str()));
    m_strText = pCurrent->GetText(m_strText);
    m_strName = pCurrent->GetLocalName();
    m_strNamespace = m_strNamespace.Matching(pCurrent->GetNamespaceURI());
    return pCurrent->GetNextSiblingElement();
}

/// A new element, read from `source` with all that is below it; it takes every namespace.
CSmartPtr<CElement> CElement::Read(CXmlElement& source, const CSharedText& strLikelyNamespace,
                                   const CSharedText& strTargetNamespace, const CXmlSerializationContext& context)
{
    const auto ReadAlone = [&](CXmlElement& element, const CSharedText& strLikely)
    {
        CSmartPtr<CElement> spElement =
            new CElement(element.GetLocalName(), strLikely.Matching(element.GetNamespaceURI()), CSharedText::Any(),
                         strTargetNamespace);
        CXmlObjectBase::FromXml_Int(spElement->m_spAttributes, &element, nullptr, context);
        spElement->m_strText = element.GetText(spElement->m_strText);
        return spElement;
    };
    CSmartPtr<CElement> spElement = ReadAlone(source, strLikelyNamespace);
    BuildBelow(spElement, &source,
               [&](CElement& parent, CXmlElement& element) -> CElement*
               {
                   const CSmartPtr<CElement> spChild = ReadAlone(element, parent.m_strNamespace);
                   parent.m_spChildElements->AppendItem(spChild);
                   return spChild;
               });
    return spElement;
}

void CElement::CopyXmlElement(CXmlElement* pElement)
{
    const auto CopyBelow = [](CElement& target, CXmlElement& source)
    {
        BuildBelow(&target, &source,
                   [](CElement& parent, CXmlElement& element) -> CElement*
                   {
                       const CSmartPtr<CElement> spChild = parent.NewCopiedChild(element);
                       parent.m_spChildElements->AppendItem(spChild);
                       return spChild;
                   });
    };
    CopyAlone(*pElement);
    for (CXmlElement* pChild = pElement->GetFirstElement(); pChild != nullptr; pChild = pChild->GetNextSiblingElement())
    {
        // Complete before it is added, since only the collection of this element can have listeners.
        const CSmartPtr<CElement> spChild = NewCopiedChild(*pChild);
        CopyBelow(*spChild, *pChild);
        m_spChildElements->Add(spChild);
    }
}

CSmartPtr<CElement> CElement::NewCopiedChild(CXmlElement& source) const
{
    CSmartPtr<CElement> spChild = new CElement(source.GetLocalName(), CSharedText(), CSharedText::Any(), CSharedText());
    spChild->m_strNamespace = m_strNamespace;
    spChild->CopyAlone(source);
    return spChild;
}

/// Copies what belongs to the element itself; the children are given up.
void CElement::CopyAlone(CXmlElement& source)
{
    m_strName = source.GetLocalName();
    m_strNamespace = m_strNamespace.Matching(source.GetNamespaceURI());
    m_strText = source.GetText(m_strText);
    m_spAttributes->Clear();
    m_spChildElements->Clear();
    std::wstring strBuffer;
    for (const CXmlAttribute* pAttribute : CAttributesOf(source))
    {
        const std::wstring& strValue = pAttribute->GetValue(strBuffer);
        m_spAttributes->Add(pAttribute->GetLocalName().c_str(), strValue.c_str(),
                            pAttribute->GetNamespaceURI().c_str());
        if (pAttribute->GetLocalName() == L"xmlns")
            m_strDefaultNamespace = CSharedText(strValue);
    }
}

// --- CElementCol ----------------------------------------------------------------------------------------------------

namespace
{

CSharedText ElementNamespaceFor(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction)
{
    const CSharedText strNamespace(lpctNamespace);
    const std::wstring strRestriction = ToUtf16Units(lpctRestriction);
    return strNamespace.IsEmpty() && strRestriction.compare(0, 2, L"##") == 0 ? CSharedText(strRestriction)
                                                                              : strNamespace;
}

} // namespace

CElementCol::CElementCol(const wchar_t* lpctNamespace, const wchar_t* lpctRestriction,
                         const wchar_t* lpctTargetNamespace, int /*nMinOccurs*/, int /*nMaxOccurs*/)
    : CInstanceMonitor(L"CElementCol")
    , m_strElementNamespace(ElementNamespaceFor(lpctNamespace, lpctRestriction))
    , m_strTargetNamespace(lpctTargetNamespace)
{
    TestNamespace(lpctNamespace, lpctRestriction, m_strTargetNamespace.c_str());
}

CElementCol::CElementCol(const CSharedText& strNamespace, const CSharedText& strTargetNamespace)
    : CInstanceMonitor(L"CElementCol")
    , m_strElementNamespace(strNamespace.IsEmpty() ? CSharedText::Any() : strNamespace)
    , m_strTargetNamespace(strTargetNamespace)
{
}

CElementCol::~CElementCol() = default;

std::wstring CElementCol::GetNamespace() const
{
    return m_strTargetNamespace.Get();
}

std::wstring CElementCol::GetTargetNamespace() const
{
    return m_strTargetNamespace.Get();
}

CSmartPtr<CElement> CElementCol::Add(const wchar_t* lpctName)
{
    if (m_strElementNamespace.IsEmpty())
        throw CQvInvalidStateException(L"A Namespace has not been set for this Collection");
    return AppendNew(lpctName, m_strElementNamespace);
}

CSmartPtr<CElement> CElementCol::Add(const wchar_t* lpctName, const wchar_t* lpctNamespace)
{
    return AppendNew(lpctName, m_strElementNamespace.Matching(ToUtf16Units(lpctNamespace)));
}

CSmartPtr<CElement> CElementCol::AppendNew(const wchar_t* lpctName, const CSharedText& strNamespace)
{
    Throw_IfNull(lpctName, L"Element Name must have a value");
    CSmartPtr<CElement> spElement =
        new CElement(ToUtf16Units(lpctName), strNamespace, CSharedText::Any(), m_strTargetNamespace);
    AppendItem(spElement);
    return spElement;
}

CSmartPtr<CElement> CElementCol::Add(CElement* pElement)
{
    AppendItem(pElement);
    return pElement;
}

void CElementCol::AddAfter(const CElement* pExisting, CElement* pNew)
{
    AddAfterItem(pExisting, pNew);
}

void CElementCol::AddBefore(const CElement* pExisting, CElement* pNew)
{
    AddBeforeItem(pExisting, pNew);
}

CSmartPtr<CElement> CElementCol::Item(int nIndex) const
{
    return static_cast<CElement*>(ItemAt(nIndex));
}

CSmartPtr<CElementCol> CElementCol::Clone() const
{
    CSmartPtr<CElementCol> spClone = CloneAlone();
    for (const CElement& element : *this)
        spClone->AppendItem(element.Clone());
    return spClone;
}

/// A copy without items.
CSmartPtr<CElementCol> CElementCol::CloneAlone() const
{
    return new CElementCol(m_strElementNamespace, m_strTargetNamespace);
}

void CElementCol::ToXml_Int(CXmlWriter* pWriter, bool /*bIsRoot*/, const wchar_t* lpctNamespaceUri,
                            const CXmlSerializationContext& context, bool /*bOptionalChoice*/) const
{
    ValidateCount(context);
    for (const CNode* pNode = GetHeadNode(); pNode != nullptr; pNode = pNode->m_pNext)
        CXmlObjectBase::ToXml_Int(pNode->m_pItem->GetBase(), pWriter, false, lpctNamespaceUri, context, false);
}

CXmlElement* CElementCol::FromXml_Int(CXmlElement* /*pElement*/, CXmlElement* pFirstChild,
                                      const CXmlSerializationContext& context, bool /*bOptionalChoice*/)
{
    // Every namespace is allowed once the collection has been constructed, so every sibling is consumed.
    for (CXmlElement* pCurrent = pFirstChild; pCurrent != nullptr; pCurrent = pCurrent->GetNextSiblingElement())
        Add(CElement::Read(*pCurrent, m_strElementNamespace, m_strTargetNamespace, context));
    return nullptr;
}

CXmlElement* CElementCol::FromXmlLockElementName_Int(std::wstring strName, std::wstring strNamespace,
                                                     CXmlElement* /*pParent*/, CXmlElement* pCurrent,
                                                     const CXmlSerializationContext& context)
{
    strName = ToUtf16Units(std::move(strName));
    strNamespace = ToUtf16Units(std::move(strNamespace));
    const CSharedText strLikelyNamespace = m_strElementNamespace.Matching(strNamespace);
    while (pCurrent != nullptr && pCurrent->GetLocalName() == strName && pCurrent->GetNamespaceURI() == strNamespace)
    {
        Add(CElement::Read(*pCurrent, strLikelyNamespace, m_strTargetNamespace, context));
        pCurrent = pCurrent->GetNextSiblingElement();
    }
    return pCurrent;
}

} // namespace QvXmlLib9
