#include "quiver/core/XmlGeneratedClass.h"

#include "quiver/collections/Attribute.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/document/AttributesOf.h"
#include "quiver/document/ReadBudget.h"
#include "quiver/document/XmlAttribute.h"
#include "quiver/document/XmlElement.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/InstanceCounts.h"
#include "quiver/foundation/StackGuard.h"
#include "quiver/foundation/platform/Platform.h"
#include "quiver/metadata/AttributeInfo.h"
#include "quiver/metadata/ElementInfo.h"
#include "quiver/metadata/ElementInfoSeq.h"
#include "quiver/metadata/TreeText.h"
#include "quiver/output/UnitText.h"
#include "quiver/output/XmlWriter.h"
#include "quiver/values/QvVariant.h"
#include "quiver/values/WhitespaceUtils.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <string_view>
#include <typeinfo>
#include <vector>

namespace QvXmlLib9
{

using namespace QvXmlLib9Data;

namespace
{

/// Holds a lock whose destructor never runs.
union UImmortalLock
{
    constexpr UImmortalLock()
        : cs()
    {
    }
    ~UImmortalLock() {}
    UImmortalLock(const UImmortalLock&) = delete;
    UImmortalLock& operator=(const UImmortalLock&) = delete;

    CQVCriticalSection cs;
};

UImmortalLock s_csInit;

// No other thread builds tables or begins to count while the process forks, so that the child can do both.

void BeforeFork()
{
    s_csInit.cs.Enter();
    LockInstanceCounts();
}

void InParentOfFork()
{
    UnlockInstanceCounts();
    s_csInit.cs.Leave();
}

/// The thread that entered is one of the parent's for the system, so that the child's cannot leave: the lock is made anew.
void InChildOfFork()
{
    UnlockInstanceCounts();
    s_csInit.cs.~CQVCriticalSection();
    new (&s_csInit.cs) CQVCriticalSection;
}

[[maybe_unused]] const bool s_bForkTold = Platform::CallAroundFork(&BeforeFork, &InParentOfFork, &InChildOfFork);

} // namespace

CQVCriticalSection& CXmlGeneratedClass::m_csInit = s_csInit.cs;

CXmlGeneratedClass::CXmlGeneratedClass()
    : CInstanceMonitor(L"CXmlGeneratedClass") // never used: the most derived class gives its name
{
}

CXmlGeneratedClass::CXmlGeneratedClass(const CXmlGeneratedClass& source) = default;
CXmlGeneratedClass& CXmlGeneratedClass::operator=(const CXmlGeneratedClass& source) = default;
CXmlGeneratedClass::~CXmlGeneratedClass() = default;

// --- Writing -------------------------------------------------------------------------------------

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* pWriter, bool bIsRoot, const wchar_t* lpctNamespaceUri,
                                   const CXmlSerializationContext& context, bool bOptionalChoice) const
{
    try
    {
        Throw_IfStackIsLow();
        const CParentElementInfo& info = *GetClassInfo();
        const bool bHasElement = info.GetElementType() == ElementType_Element;
        if (bHasElement)
        {
            if (bIsRoot)
                WriteRootPreamble(pWriter, context);
            pWriter->StartElement(ElementName().View(), lpctNamespaceUri);
            if (bIsRoot)
            {
                const CSmartPtr<CAttributeCol> spAttributes = context.GetAdditionalRootAttributes();
                CXmlObjectBase::ToXml_Int(spAttributes, pWriter, false, lpctNamespaceUri, context, bOptionalChoice);
            }
            AttributesToXml_Int(pWriter, context);
            if (bIsRoot && !context.InLineSchema().empty())
                pWriter->WriteInlineSchema(context.InLineSchema());
        }

        // A nil element has attributes and nothing else, whatever its properties hold.
        const INillable* const pNillable = FindNillable(info);
        if (pNillable != nullptr && pNillable->IsNil())
            pWriter->WriteXsiNil();
        else
            WriteContent(pWriter, context, info, bOptionalChoice);

        if (bHasElement)
            pWriter->EndElement();
    }
    catch (const CQvException& ex)
    {
        throw CQvValidationException(FormatString(L"Failed to convert the element [%s] to XML", ElementName().c_str()),
                                     ex);
    }
}

void CXmlGeneratedClass::WriteRootPreamble(CXmlWriter* pWriter, const CXmlSerializationContext& context) const
{
    std::wstring strBuffer;
    for (const std::wstring& strInstruction : context.GetProcessingInstructions())
        pWriter->WriteProcessingInstruction(ToUnitText(strInstruction, strBuffer));

    for (const auto& [strNamespace, strAlias] : context.GetNamespaceAliases().GetEntries())
        pWriter->AddNamespaceMapping(strAlias, strNamespace);

    const std::wstring strDefaultNamespace = context.GetDefaultNamespaceURI();
    if (!strDefaultNamespace.empty())
        pWriter->SetDefaultNamespace(strDefaultNamespace);
}

void CXmlGeneratedClass::WriteContent(CXmlWriter* pWriter, const CXmlSerializationContext& context,
                                      const CParentElementInfo& info, bool bOptionalChoice) const
{
    CElementInfo** const ppElements = GetClassElementInfo();
    switch (static_cast<int>(info.GetElementGroupType()))
    {
    case GroupType_Sequence:
        ProcessElementSeqToXml(context, ppElements, pWriter);
        break;
    case GroupType_Choice:
        ProcessElementChoiceToXml(context, ppElements, pWriter, bOptionalChoice);
        break;
    case GroupType_All:
        ProcessElementAllToXml(context, ppElements, pWriter);
        break;
    default:
        throw CQvException(L"Unknown XML Group Type");
    }

    if (info.GetElementTextPropertyIndex() != -1)
    {
        QvVariant value;
        ReadProperty(info.GetElementTextPropertyIndex(), value);
        pWriter->WriteText(value.GetString(), value.GetTypeAsEnum());
    }
}

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* pWriter, const CXmlSerializationContext& context) const
{
    try
    {
        const CParentElementInfo& info = *GetClassInfo();
        // In a class with base classes the record's name is that of the type, so a name that differs means that the
        // object stands under an element that does not tell its type.
        if (context.GetWriteTypeAttribute() && info.GetHasBaseClasses() &&
            ElementName().View() != info.GetElementName())
            pWriter->WriteXsiType(info.GetElementNamespace(), info.GetElementName(), ItemType_string);
        ProcessAttributesToXml(context, GetClassElementInfo(), GetClassAttributeInfo(), pWriter);
    }
    catch (const CQvException& ex)
    {
        throw CQvException(L"Failed to convert attributes to XML", ex);
    }
}

void CXmlGeneratedClass::ProcessAttributesToXml(const CXmlSerializationContext& context, CElementInfo** ppElements,
                                                CAttributeInfo** ppAttributes, CXmlWriter* pWriter) const
{
    for (; *ppAttributes != nullptr; ++ppAttributes)
        (*ppAttributes)->AttributeToXml(context, this, pWriter);
    for (; *ppElements != nullptr; ++ppElements)
        (*ppElements)->PseudoChildAttributeToXml(context, this, pWriter);
}

void CXmlGeneratedClass::ProcessElementSeqToXml(const CXmlSerializationContext& context, CElementInfo** ppElements,
                                                CXmlWriter* pWriter) const
{
    for (; *ppElements != nullptr; ++ppElements)
        (*ppElements)->ElementToXml(context, this, pWriter);
}

// An all group is written in the order of the schema, whatever order it was read in.
void CXmlGeneratedClass::ProcessElementAllToXml(const CXmlSerializationContext& context, CElementInfo** ppElements,
                                                CXmlWriter* pWriter) const
{
    ProcessElementSeqToXml(context, ppElements, pWriter);
}

void CXmlGeneratedClass::ProcessElementChoiceToXml(const CXmlSerializationContext& context, CElementInfo** ppElements,
                                                   CXmlWriter* pWriter, bool bOptionalChoice) const
{
    for (; *ppElements != nullptr; ++ppElements)
    {
        if ((*ppElements)->ElementToXml(context, this, pWriter))
            return;
    }
    if (!DoesElementContainOptionalElements() && !bOptionalChoice && !context.GetIgnoreMissingChoice())
        throw CQvValidationException(
            L"This element is a choice, and as such must have at one (and only one) valid item, "
            L"currently there are none set");
}

bool CXmlGeneratedClass::DoesElementContainOptionalElements() const
{
    for (CElementInfo** ppElements = GetClassElementInfo(); *ppElements != nullptr; ++ppElements)
    {
        if ((*ppElements)->AllowsEmptyChoice(this))
            return true;
    }
    return false;
}

// --- Reading -------------------------------------------------------------------------------------

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* pElement, CXmlElement* pFirstChild,
                                             const CXmlSerializationContext& context, bool bOptionalChoice)
{
    try
    {
        Throw_IfStackIsLow();
        return ReadContent(pElement, pFirstChild, context, bOptionalChoice);
    }
    catch (const CQvException& ex)
    {
        throw CQvValidationException(
            FormatString(L"Failed to process the element [%s]", pElement->GetLocalName().c_str()), ex);
    }
}

CXmlElement* CXmlGeneratedClass::ReadContent(CXmlElement* pElement, CXmlElement* pFirstChild,
                                             const CXmlSerializationContext& context, bool bOptionalChoice)
{
    Init();
    const CParentElementInfo& info = *GetClassInfo();
    const XmlElementType eElementType = info.GetElementType();
    // The name found in the document is taken on, so that a substitution element keeps its own. Whether it is the right
    // one was the question of the record that led here; for the root nobody asks.
    if (eElementType == ElementType_Element && ElementName().View() != pElement->GetLocalName())
        SetElementName(pElement->GetLocalName().c_str());

    if (eElementType == ElementType_Element || !IsGroupWithoutAttributes(context, info, *pElement))
        ProcessAttributesFromXml(context, pElement, info.GetFromXmlFailIfAttributeUnknown());
    CXmlElement* pCurrent = pFirstChild;
    const INillable* const pNillable = FindNillable(info);
    if (pNillable != nullptr && pNillable->IsNil())
        return pCurrent;

    switch (static_cast<int>(info.GetElementGroupType()))
    {
    case GroupType_Sequence:
        pCurrent = ProcessElementSeqFromXml(context, pElement, pCurrent, eElementType);
        break;
    case GroupType_Choice:
        pCurrent = ProcessElementChoiceFromXml(context, pElement, pCurrent, eElementType, bOptionalChoice);
        break;
    case GroupType_All:
        pCurrent = ProcessElementAllFromXml(context, pElement, pCurrent, eElementType);
        break;
    default:
        throw CQvException(L"Unknow Group Type");
    }

    if (info.GetElementTextPropertyIndex() != -1)
    {
        QvVariant value;
        CTreeText::Store(*pElement, value);
        AccessProperty(info.GetElementTextPropertyIndex(), false, value);
    }
    return pCurrent;
}

namespace
{

/// One flag for each record of a class, on the stack unless the class has very many.
class CFoundFlags
{
public:
    explicit CFoundFlags(std::size_t nCount)
    {
        if (nCount > m_few.size())
            m_many.resize(nCount);
        m_pFlags = m_many.empty() ? m_few.data() : m_many.data();
    }
    CFoundFlags(const CFoundFlags&) = delete;
    CFoundFlags& operator=(const CFoundFlags&) = delete;

    char& operator[](std::size_t n) { return m_pFlags[n]; }

private:
    std::array<char, 64> m_few{};
    std::vector<char> m_many;
    char* m_pFlags;
};

template <class TInfo>
std::size_t CountRecords(TInfo** ppInfos)
{
    std::size_t nCount = 0;
    while (ppInfos[nCount] != nullptr)
        ++nCount;
    return nCount;
}

/// Compares with a word of lower-case ASCII letters, without regard to case.
bool EqualsWord(std::wstring_view text, std::wstring_view word)
{
    if (text.size() != word.size())
        return false;
    for (std::size_t n = 0; n < text.size(); ++n)
    {
        const wchar_t c = text[n] >= L'A' && text[n] <= L'Z' ? static_cast<wchar_t>(text[n] - L'A' + L'a') : text[n];
        if (c != word[n])
            return false;
    }
    return true;
}

[[noreturn]] void ThrowUnexpectedAttribute(const CXmlAttribute& attribute)
{
    throw CQvValidationException(FormatString(L"Unexpected Attribute [%s] found.", attribute.GetLocalName().c_str()));
}

/// Only these two words count; "1" and "0", which the type boolean has too, are refused unless the class asks for them
/// (docs/compatibility.md: Words of nil).
bool ReadNil(const CXmlAttribute& attribute, const INillable& nillable)
{
    if (EqualsWord(attribute.GetValue(), L"true"))
        return true;
    if (EqualsWord(attribute.GetValue(), L"false"))
        return false;
    if (dynamic_cast<const INillableBoolean*>(&nillable) != nullptr)
    {
        const std::wstring strText = CWhitespaceUtils::Collapse(attribute.GetValue());
        if (strText == L"1" || strText == L"true")
            return true;
        if (strText == L"0" || strText == L"false")
            return false;
    }
    throw CQvValidationException(
        FormatString(L"Unexpected Value for Attribute [%s] found.", attribute.GetLocalName().c_str()));
}

[[noreturn]] void ThrowUnexpectedElement(const CXmlElement& parent, const CXmlElement& current)
{
    throw CQvValidationException(FormatString(
        L"Failed read all the elements held within the element [%s]. The unexpected element [%s] remains un "
        L"processed",
        parent.GetLocalName().c_str(), current.GetLocalName().c_str()));
}

void DropExhausted(CReadBudget* pBudget)
{
    if (pBudget != nullptr)
        pBudget->DropExhausted();
}

/// In an element of its own a class must have consumed every child by now.
void Throw_IfChildrenAreLeft(const CXmlSerializationContext& context, const CXmlElement* pParent,
                             const CXmlElement* pCurrent, XmlElementType eElementType)
{
    if (eElementType == ElementType_Element && pCurrent != nullptr && !context.GetIgnoreUnknownElements())
        ThrowUnexpectedElement(*pParent, *pCurrent);
}

} // namespace

void CXmlGeneratedClass::ProcessAttributesFromXml(const CXmlSerializationContext& context, CXmlElement* pElement,
                                                  bool bFailIfAttributeUnknown)
{
    CAttributeInfo** const ppInfos = GetClassAttributeInfo();
    const std::size_t nInfos = CountRecords(ppInfos);
    CFoundFlags found(nInfos);
    for (CXmlAttribute* const pAttribute : CAttributesOf(*pElement))
    {
        if (pAttribute->IsNamespaceAttribute())
            continue;
        if (pAttribute->IsNilAttribute())
        {
            const INillable* const pNillable = FindNillable(*GetClassInfo());
            if (pNillable == nullptr)
                ThrowUnexpectedAttribute(*pAttribute);
            const_cast<INillable*>(pNillable)->SetNil(ReadNil(*pAttribute, *pNillable));
            continue;
        }
        std::size_t nTaker = 0;
        while (nTaker < nInfos && !ppInfos[nTaker]->AttributeFromXml(context, this, pAttribute))
            ++nTaker;
        if (nTaker < nInfos)
            found[nTaker] = true;
        else if (bFailIfAttributeUnknown && !context.GetIgnoreUnknownAttributes())
            ThrowUnexpectedAttribute(*pAttribute);
    }
    for (std::size_t n = 0; n < nInfos; ++n)
        ppInfos[n]->Validate(context, found[n] != 0);
}

/// Whether a group has nothing to do with the attributes of the element that it is read from. Groups repeat, so an
/// element with many attributes must not be looked through for each.
bool CXmlGeneratedClass::IsGroupWithoutAttributes(const CXmlSerializationContext& context,
                                                  const CParentElementInfo& info, const CXmlElement& element) const
{
    CReadBudget* const pBudget = CReadBudget::GetCurrent();
    if (pBudget == nullptr)
        return false;
    const std::size_t nRecords = CountRecords(GetClassAttributeInfo());
    const bool bFails = info.GetFromXmlFailIfAttributeUnknown() && !context.GetIgnoreUnknownAttributes();
    pBudget->Spend(CReadBudget::s_nStepsPerGroup);
    if (nRecords == 0 && !bFails && !pBudget->HasNil(element))
        return true;
    const CAttributesOf attributes(element);
    pBudget->Spend((nRecords + 1) * static_cast<std::uint64_t>(std::distance(attributes.begin(), attributes.end())));
    return false;
}

bool CXmlGeneratedClass::TakesOneElement(const CElementInfo& info)
{
    const std::type_info& type = typeid(info);
    if (type == typeid(CElementInfoSeqClsMnd))
        return static_cast<const CElementInfoSeqClsMnd&>(info).m_eElementType == ElementType_Element;
    if (type == typeid(CElementInfoSeqClsOpt))
        return static_cast<const CElementInfoSeqClsOpt&>(info).m_eElementType == ElementType_Element;
    return type == typeid(CElementInfoSeqPrimMnd) || type == typeid(CElementInfoSeqPrimOpt) ||
           type == typeid(CElementInfoSeqEnumMnd) || type == typeid(CElementInfoSeqEnumOpt) ||
           type == typeid(CElementInfoSeqAbsClsMnd) || type == typeid(CElementInfoSeqAbsClsOpt);
}

/// Whether a sequence whose record `ppFailed` found nothing up to the last child would find nothing from a later child
/// either. Where the records ahead of it take one element each, starting later never makes them end earlier; runs and
/// other groups can leave more to it when they start later.
bool CXmlGeneratedClass::IsExhaustedBy(CElementInfo** ppElements, CElementInfo** ppFailed)
{
    return std::all_of(ppElements, ppFailed, [](const CElementInfo* pInfo) { return TakesOneElement(*pInfo); }) &&
           (TakesOneElement(**ppFailed) || typeid(**ppFailed) == typeid(CElementInfoSeqClsMnd));
}

/// The child at which a record that found nothing at `pCurrent` is asked next.
CXmlElement* CXmlGeneratedClass::SkipUnknown(CReadBudget* pBudget, const CElementInfo& info, const CXmlElement* pParent,
                                             CXmlElement* pCurrent)
{
    CXmlElement* pNext = pCurrent->GetNextSiblingElement();
    if (pBudget == nullptr)
        return pNext;
    pBudget->Spend(1);
    if (typeid(info) != typeid(CElementInfoSeqClsMnd) || !pBudget->IsExhausted(pParent, pCurrent))
        return pNext;
    // A group that cannot match any more is asked at the last child alone, which leaves it as asking everywhere would.
    std::uint64_t nPassed = 0;
    for (CXmlElement* p = pNext; p != nullptr; p = p->GetNextSiblingElement(), ++nPassed)
        pNext = p;
    pBudget->Spend(nPassed);
    return pNext;
}

std::wstring CXmlGeneratedClass::GetNamespaceForRecords() const
{
    return GetClassInfo()->IgnoresParentNamespace() ? std::wstring() : GetNamespace();
}

CXmlElement* CXmlGeneratedClass::ProcessElementSeqFromXml(const CXmlSerializationContext& context, CXmlElement* pParent,
                                                          CXmlElement* pCurrent, XmlElementType eElementType)
{
    CXmlElement* const pSaved = pCurrent;
    const std::wstring strNamespace = GetNamespaceForRecords();
    const bool bSkips = context.GetIgnoreUnknownElements();
    CReadBudget* const pBudget = bSkips ? CReadBudget::GetCurrent() : nullptr;
    CElementInfo** const ppFirst = GetClassElementInfo();
    for (CElementInfo** ppElements = ppFirst; *ppElements != nullptr; ++ppElements)
    {
        DropExhausted(pBudget);
        while (!(*ppElements)->ElementFromXml(context, this, pParent, &pCurrent, strNamespace.c_str(), eElementType))
        {
            // The unmoved cursor tells the caller of a nested group that the group is not there.
            if (!bSkips || pCurrent == nullptr)
            {
                if (pBudget != nullptr && IsExhaustedBy(ppFirst, ppElements))
                    pBudget->NoteExhausted(pParent, pSaved);
                return pSaved;
            }
            pCurrent = SkipUnknown(pBudget, **ppElements, pParent, pCurrent);
            DropExhausted(pBudget);
        }
    }
    DropExhausted(pBudget);
    Throw_IfChildrenAreLeft(context, pParent, pCurrent, eElementType);
    return pCurrent;
}

CXmlElement* CXmlGeneratedClass::ProcessElementChoiceFromXml(const CXmlSerializationContext& context,
                                                             CXmlElement* pParent, CXmlElement* pCurrent,
                                                             XmlElementType eElementType, bool bOptionalChoice)
{
    CXmlElement* const pSaved = pCurrent;
    const std::wstring strNamespace = GetNamespaceForRecords();
    const bool bScan = context.GetIgnoreUnknownElements() && eElementType == ElementType_Element;
    bool bFound = false;
    do
    {
        for (CElementInfo** ppElements = GetClassElementInfo(); *ppElements != nullptr && !bFound; ++ppElements)
            bFound =
                (*ppElements)->ElementFromXml(context, this, pParent, &pCurrent, strNamespace.c_str(), eElementType);
        if (bScan && !bFound && pCurrent != nullptr)
            pCurrent = pCurrent->GetNextSiblingElement();
    } while (bScan && !bFound && pCurrent != nullptr);
    // That one alternative matches nothing any more says nothing about the others.
    DropExhausted(context.GetIgnoreUnknownElements() ? CReadBudget::GetCurrent() : nullptr);

    if (!bFound && !bOptionalChoice)
    {
        if (eElementType == ElementType_Pseudo && context.GetIgnoreUnknownElements())
            pCurrent = pSaved;
        if (eElementType == ElementType_Element && !DoesElementContainOptionalElements() &&
            !context.GetIgnoreMissingChoice())
            throw CQvValidationException(FormatString(
                L"No child elements within the element [%s] were populated. The element represents a choice, so "
                L"one and only one element should be populated. The element contained no sutable child elements",
                pParent->GetLocalName().c_str()));
    }
    Throw_IfChildrenAreLeft(context, pParent, pCurrent, eElementType);
    return pCurrent;
}

CXmlElement* CXmlGeneratedClass::ProcessElementAllFromXml(const CXmlSerializationContext& context, CXmlElement* pParent,
                                                          CXmlElement* pCurrent, XmlElementType eElementType)
{
    CXmlElement* const pSaved = pCurrent;
    const std::wstring strNamespace = GetNamespaceForRecords();
    CElementInfo** const ppElements = GetClassElementInfo();
    const std::size_t nElements = CountRecords(ppElements);
    CFoundFlags found(nElements);

    // Each pass offers the cursor to every member that is still missing, until a whole pass has left it where it was.
    const CXmlElement* pLast = nullptr;
    while (pCurrent != nullptr && pCurrent != pLast)
    {
        pLast = pCurrent;
        for (std::size_t n = 0; n < nElements; ++n)
        {
            if (!found[n])
                found[n] = ppElements[n]->ElementFromXml(context, this, pParent, &pCurrent, strNamespace.c_str(),
                                                         eElementType);
        }
    }

    DropExhausted(context.GetIgnoreUnknownElements() ? CReadBudget::GetCurrent() : nullptr);
    for (std::size_t n = 0; n < nElements; ++n)
    {
        if (!ppElements[n]->Validate(context, this, found[n] != 0, eElementType == ElementType_Element))
            return pSaved;
    }
    Throw_IfChildrenAreLeft(context, pParent, pCurrent, eElementType);
    return pCurrent;
}

// --- Services for generated code -----------------------------------------------------------------

bool CXmlGeneratedClass::IsElementInList(const CXmlSerializationContext& context, CXmlElement* pElement) const
{
    for (CElementInfo** ppElements = GetClassElementInfo(); *ppElements != nullptr; ++ppElements)
    {
        if ((*ppElements)->IsThisElement(context, pElement))
            return true;
    }
    return false;
}

const INillable* CXmlGeneratedClass::FindNillable(const CParentElementInfo& info) const
{
    // The offset of one base from another is the same in all objects of one dynamic type.
    const char* const pThis = reinterpret_cast<const char*>(this);
    std::ptrdiff_t nOffset = CParentElementInfo::CNillableOffset::s_nNotNillable;
    if (!info.m_nillableOffset.Find(typeid(*this), nOffset))
    {
        if (const INillable* const pNillable = dynamic_cast<const INillable*>(this))
            nOffset = reinterpret_cast<const char*>(pNillable) - pThis;
        info.m_nillableOffset.Remember(typeid(*this), nOffset);
    }
    return nOffset == CParentElementInfo::CNillableOffset::s_nNotNillable
               ? nullptr
               : reinterpret_cast<const INillable*>(pThis + nOffset);
}

int CXmlGeneratedClass::GetClassElementInfoCount() const
{
    return static_cast<int>(CountRecords(GetClassElementInfo()));
}

void CXmlGeneratedClass::ReadProperty(int nPropertyIndex, QvVariant& value) const
{
    // With bRead true the generated code only reads, which its signature cannot say.
    const_cast<CXmlGeneratedClass*>(this)->AccessProperty(nPropertyIndex, true, value);
}

namespace
{

template <class TInfo>
void DeleteTable(TInfo**& ppInfos)
{
    if (ppInfos == nullptr)
        return;
    for (TInfo** ppInfo = ppInfos; *ppInfo != nullptr; ++ppInfo)
    {
        delete *ppInfo;
        *ppInfo = nullptr;
    }
    delete[] ppInfos;
    ppInfos = nullptr;
}

} // namespace

void CXmlGeneratedClass::CleanMetaData(CParentElementInfo*& pInfo, CElementInfo**& ppElements,
                                       CAttributeInfo**& ppAttributes)
{
    delete pInfo;
    pInfo = nullptr;
    DeleteTable(ppElements);
    DeleteTable(ppAttributes);
}

} // namespace QvXmlLib9
