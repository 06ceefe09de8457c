#include "quiver/core/XmlObjectBase.h"

#include "quiver/collections/Element.h"
#include "quiver/collections/XmlCollection.h"
#include "quiver/document/ReadBudget.h"
#include "quiver/document/XmlDocument.h"
#include "quiver/document/XmlElement.h"
#include "quiver/fastinfoset/FastInfosetContext.h"
#include "quiver/fastinfoset/FastInfosetWriter.h"
#include "quiver/foundation/BinaryData.h"
#include "quiver/foundation/BinaryStream.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/Product.h"
#include "quiver/foundation/QvZip.h"
#include "quiver/foundation/StackGuard.h"
#include "quiver/foundation/platform/Platform.h"
#include "quiver/foundation/platform/SingleThread.h"
#include "quiver/output/FileTextStream.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/UnitText.h"
#include "quiver/output/XmlTextWriter.h"

#include <string_view>

namespace QvXmlLib9
{

// --- Generator version ---------------------------------------------------------------------------

namespace
{

// Set while the process starts, before objects are used on several threads.
int s_nGeneratorMajor = 0;
int s_nGeneratorMinor = 0;
bool s_bAsyncToXmlFile = false;

// Objects may be made on any thread from the start, so the one that comes first is found out atomically.
std::atomic<bool> s_bFirstObjectMade{false};

bool IsGeneratorVersionRight()
{
    return s_nGeneratorMajor == g_nVersionMajor && s_nGeneratorMinor == g_nVersionMinor;
}

std::wstring FormatVersions(const wchar_t* lpctFormat)
{
    return FormatString(lpctFormat, g_nVersionMajor, g_nVersionMinor, s_nGeneratorMajor, s_nGeneratorMinor);
}

void ShowVersionMismatch()
{
    Platform::ShowErrorBox(FormatVersions(L"Please ensure your generated code is the same version as this library "
                                          L"(Quiver Runtime: v%d.%d, Generator: v%d.%d).")
                               .c_str(),
                           L"Version Mismatch Error");
}

void ReportVersionOfFirstObject()
{
    // The plain load keeps the cache line shared between the threads that make objects.
    if (s_bFirstObjectMade.load(std::memory_order_relaxed) || s_bFirstObjectMade.exchange(true))
        return;
    if (!IsGeneratorVersionRight())
        ShowVersionMismatch();
}

void Throw_IfVersionDiffers()
{
    if (IsGeneratorVersionRight())
        return;
    ShowVersionMismatch();
    throw CQvException(FormatVersions(L"Wrong Version (Quiver Runtime: v%d.%d, Generator: v%d.%d)"));
}

} // namespace

void Register(int nMajor, int nMinor)
{
    s_nGeneratorMajor = nMajor;
    s_nGeneratorMinor = nMinor;
}

void AsyncToXmlFile(bool bAsync)
{
    s_bAsyncToXmlFile = bAsync;
}

// --- Construction and reference count ------------------------------------------------------------

CXmlObjectBase::CXmlObjectBase()
    : CInstanceMonitor(L"CXmlObjectBase") // never used: the class is abstract, the most derived class gives its name
{
    ReportVersionOfFirstObject();
}

CXmlObjectBase::CXmlObjectBase(const CXmlObjectBase& source)
    : CInstanceMonitor(source)
    , IEventSink(source)
    , m_strElementName(source.m_strElementName)
    , m_nRefCount(source.m_nRefCount.load())
{
}

CXmlObjectBase& CXmlObjectBase::operator=(const CXmlObjectBase& source)
{
    m_strElementName = source.m_strElementName;
    m_nRefCount = source.m_nRefCount.load();
    return *this;
}

CXmlObjectBase::~CXmlObjectBase() = default;

void CXmlObjectBase::OnEvent(CXmlObjectBase*, IEventSink::MsgType, void*)
{
}

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter*, const CXmlSerializationContext&) const
{
}

const CXmlObjectBase* CXmlObjectBase::GetBase() const
{
    // GetBase only hands the object out, so asking a const object changes nothing.
    return const_cast<CXmlObjectBase*>(this)->GetBase();
}

namespace
{

/// The sum. A locked instruction costs more than the rest of what is done with a reference, so there is none as long as
/// nobody else could be counting.
std::intptr_t AddTo(std::atomic<std::intptr_t>& nCount, std::intptr_t nMore, std::memory_order eOrder)
{
    if (!Platform::IsSingleThreaded())
        return nCount.fetch_add(nMore, eOrder) + nMore;
    const std::intptr_t nSum = nCount.load(std::memory_order_relaxed) + nMore;
    nCount.store(nSum, std::memory_order_relaxed);
    return nSum;
}

} // namespace

long CXmlObjectBase::AddRef()
{
    return static_cast<long>(AddTo(m_nRefCount, 1, std::memory_order_relaxed));
}

long CXmlObjectBase::Release()
{
    // Who has the only reference shares the count with nobody.
    if (m_nRefCount.load(std::memory_order_acquire) == 1)
    {
        m_nRefCount.store(0, std::memory_order_relaxed);
        Destroy();
        return 0;
    }
    const std::intptr_t nRefCount = AddTo(m_nRefCount, -1, std::memory_order_acq_rel);
    if (nRefCount == 0)
        Destroy();
    return static_cast<long>(nRefCount);
}

void CXmlObjectBase::ReleaseWithoutDestruction()
{
    AddTo(m_nRefCount, -1, std::memory_order_acq_rel);
}

namespace
{

/// The destructions of one thread in progress, and the objects that wait for the outermost of them.
struct SDestruction
{
    int m_nDepth = 0;
    CXmlObjectBase* m_pFirst = nullptr;
    CXmlObjectBase* m_pLast = nullptr;
};
thread_local SDestruction t_destruction;

} // namespace

void CXmlObjectBase::Destroy()
{
    SDestruction& destruction = t_destruction;
    if (destruction.m_nDepth > 0 && IsStackLow())
    {
        if (destruction.m_pFirst == nullptr)
            destruction.m_pFirst = this;
        else
            destruction.m_pLast->m_nRefCount = reinterpret_cast<std::intptr_t>(this);
        destruction.m_pLast = this;
        return;
    }
    DestroyNow();
    while (destruction.m_nDepth == 0 && destruction.m_pFirst != nullptr)
    {
        CXmlObjectBase* const pWaiting = destruction.m_pFirst;
        destruction.m_pFirst = reinterpret_cast<CXmlObjectBase*>(pWaiting->m_nRefCount.exchange(0));
        pWaiting->DestroyNow();
    }
}

void CXmlObjectBase::DestroyNow()
{
    ++t_destruction.m_nDepth;
    delete this;
    --t_destruction.m_nDepth;
}

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* pObj, CXmlWriter* pWriter, bool bIsRoot,
                               const wchar_t* lpctNamespaceUri, const CXmlSerializationContext& context,
                               bool bOptionalChoice)
{
    pObj->ToXml_Int(pWriter, bIsRoot, lpctNamespaceUri, context, bOptionalChoice);
}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* pObj, CXmlWriter* pWriter,
                                         const CXmlSerializationContext& context)
{
    pObj->AttributesToXml_Int(pWriter, context);
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* pObj, CXmlElement* pElement, CXmlElement* pFirstChild,
                                         const CXmlSerializationContext& context)
{
    return pObj->FromXml_Int(pElement, pFirstChild, context, false);
}

void CXmlObjectBase::SetElementName(CXmlObjectBase* pObj, const wchar_t* lpctName)
{
    pObj->SetElementName(lpctName);
}

void CXmlObjectBase::SetElementName(const wchar_t* lpctName)
{
    std::wstring strBuffer;
    m_strElementName.Assign(ToUnitText(TextOrEmpty(lpctName), strBuffer));
}

void CXmlObjectBase::Throw_IfPropertyIsNull(CXmlObjectBase* pValue, const wchar_t* lpctPropertyName)
{
    if (pValue == nullptr)
        throw CQvInvalidParamException(
            FormatString(L"The Property [%s] is mandatory, it may node be NULL", lpctPropertyName));
}

void CXmlObjectBase::Throw_IfElementNameDiffers(CXmlObjectBase* pValue, const wchar_t* lpctElementName)
{
    if (pValue == nullptr)
        return;
    const CShortText& strName = pValue->GetBase()->m_strElementName;
    std::wstring strBuffer;
    if (strName.View() != ToUnitText(TextOrEmpty(lpctElementName), strBuffer))
        throw CQvInvalidParamException(FormatString(
            L"This property requrires an element with the name %s the element being set has the element name %s",
            lpctElementName, strName.c_str()));
}

namespace
{

bool IsNamespaceAllowed(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                        const wchar_t* lpctTargetNamespace)
{
    std::wstring strBuffers[3];
    const std::wstring_view ns = ToUnitText(TextOrEmpty(lpctNamespace), strBuffers[0]);
    const std::wstring_view list = ToUnitText(TextOrEmpty(lpctAllowedList), strBuffers[1]);
    const std::wstring_view target = ToUnitText(TextOrEmpty(lpctTargetNamespace), strBuffers[2]);
    const std::size_t nBlank = list.find(L' ');
    const std::wstring_view token = list.substr(0, nBlank);
    const bool bOther = ns == list || ns.empty();

    bool bValid = bOther;
    if (token == L"##any")
        bValid = true;
    else if (token == L"##other")
        bValid = ns != target;
    else if (token == L"##local")
        bValid = ns.empty();
    else if (token == L"##targetNamespace")
        bValid = ns == target;

    // What follows the first token is never looked at: it counts as one token without a text.
    return bValid || (nBlank != std::wstring_view::npos && bOther);
}

} // namespace

bool CXmlObjectBase::IsNamespaceValid(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                                      const wchar_t* lpctTargetNamespace) const
{
    return IsNamespaceAllowed(lpctNamespace, lpctAllowedList, lpctTargetNamespace);
}

void CXmlObjectBase::TestNamespace(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                                   const wchar_t* lpctTargetNamespace) const
{
    Throw_IfNamespaceIsInvalid(lpctNamespace, lpctAllowedList, lpctTargetNamespace);
}

void CXmlObjectBase::Throw_IfNamespaceIsInvalid(const wchar_t* lpctNamespace, const wchar_t* lpctAllowedList,
                                                const wchar_t* lpctTargetNamespace)
{
    if (!IsNamespaceAllowed(lpctNamespace, lpctAllowedList, lpctTargetNamespace))
        throw CQvInvalidNamespaceException(FormatString(
            L"Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is [%s]",
            TextOrEmpty(lpctNamespace), TextOrEmpty(lpctAllowedList), TextOrEmpty(lpctTargetNamespace)));
}

bool CXmlObjectBase::DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* pElement,
                                          const wchar_t* lpctName, const wchar_t* lpctNamespace) const
{
    std::wstring strBuffer;
    if (pElement->GetLocalName() != ToUnitText(TextOrEmpty(lpctName), strBuffer))
        return false;
    // Ignoring namespaces covers documents of schemas without them.
    return context.GetIgnoreNamespaces() ||
           pElement->GetNamespaceURI() == ToUnitText(TextOrEmpty(lpctNamespace), strBuffer);
}

// --- Writing -------------------------------------------------------------------------------------

namespace
{

/// The XML text writer over a stream, opened and set up as every text conversion does it.
class CTextOutput
{
public:
    CTextOutput(CTextStream& stream, bool bIncludeDocHeader, bool bFormat, EOLType eEOLType)
        : m_writer(&stream)
    {
        m_writer.Open();
        m_writer.SetFormatted(bFormat);
        m_writer.SetEOLType(eEOLType);
        if (bIncludeDocHeader)
            m_writer.WriteXmlDeclaration();
    }

    CXmlTextWriter& Writer() { return m_writer; }

private:
    CXmlTextWriter m_writer;
};

void Throw_IfZLib(CompressionType eCompression)
{
    if (eCompression == Compression_ZLib)
        throw CQvException(L"ZLIB Compression only available for To Stream methods.");
}

} // namespace

void CXmlObjectBase::WriteRoot(CXmlWriter& writer, const CXmlSerializationContext& context) const
{
    const std::wstring strNamespace = GetTargetNamespace();
    ToXml_Int(&writer, true, strNamespace.c_str(), context, false);
}

std::wstring CXmlObjectBase::ToXml(bool bIncludeDocHeader, bool bFormat, EOLType eEOLType,
                                   const CXmlSerializationContext& context) const
{
    Throw_IfVersionDiffers();
    CTextStream stream;
    CTextOutput output(stream, bIncludeDocHeader, bFormat, eEOLType);
    WriteRoot(output.Writer(), context);
    output.Writer().Close();
    return stream.GetString();
}

CBinaryData CXmlObjectBase::ToXmlStream(bool bIncludeDocHeader, bool bFormat, XmlEncoding eEncoding, EOLType eEOLType,
                                        const CXmlSerializationContext& context, CompressionType eCompression) const
{
    Throw_IfVersionDiffers();
    CTextStream stream(eEncoding);
    CTextOutput output(stream, bIncludeDocHeader, bFormat, eEOLType);
    WriteRoot(output.Writer(), context);
    output.Writer().Close();
    CBinaryData data = stream.GetBinaryData();
    if (eCompression != Compression_None)
        CQvZip::Compress(data, eCompression);
    return data;
}

void CXmlObjectBase::ToXmlFile(const wchar_t* lpctFileName, bool bIncludeDocHeader, bool bFormat, XmlEncoding eEncoding,
                               EOLType eEOLType, const CXmlSerializationContext& context,
                               CompressionType eCompression) const
{
    Throw_IfZLib(eCompression);
    if (s_bAsyncToXmlFile && eCompression == Compression_None)
    {
        Throw_IfVersionDiffers();
        CFileTextStream stream(lpctFileName, eEncoding);
        CTextOutput output(stream, bIncludeDocHeader, bFormat, eEOLType);
        WriteRoot(output.Writer(), context);
        output.Writer().Close();
        return;
    }
    CFileBinaryStream file(
        lpctFileName, eEncoding,
        CXmlObjectBase::ToXmlStream(bIncludeDocHeader, bFormat, eEncoding, eEOLType, context, eCompression));
    file.Write();
}

void CXmlObjectBase::ToFastInfosetFile(const wchar_t* lpctFileName, FInfoDecl eDecl,
                                       const CXmlSerializationContext& context, CompressionType eCompression) const
{
    Throw_IfZLib(eCompression);
    CFileBinaryStream file(lpctFileName, Encoding_None, ToFastInfosetStream(eDecl, context, eCompression));
    file.Write();
}

CBinaryData CXmlObjectBase::ToFastInfosetStream(FInfoDecl eDecl, const CXmlSerializationContext& context,
                                                CompressionType eCompression) const
{
    Throw_IfVersionDiffers();
    CBinaryStream stream;
    CFastInfosetWriter writer(&context.GetFIContext(), &stream);
    writer.Open();
    writer.WriteHeader(eDecl);
    WriteRoot(writer, context);
    writer.WriteTerminator();
    writer.Close();
    CBinaryData data = stream.GetData();
    if (eCompression != Compression_None)
        CQvZip::Compress(data, eCompression);
    return data;
}

// --- Reading -------------------------------------------------------------------------------------

void CXmlObjectBase::ReadRoot(CXmlDocument& document, const CXmlSerializationContext& context)
{
    CXmlElement* const pRoot = document.GetDocumentElement();
    if (pRoot == nullptr)
        throw CQvException(L"Invalid or empty XML document");
    const CReadBudget budget(*pRoot);
    FromXml_Int(pRoot, pRoot->GetFirstElement(), context, false);
}

void CXmlObjectBase::FromXmlFile(const wchar_t* lpctFileName, const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    CXmlDocument document(context);
    document.Load(lpctFileName);
    ReadRoot(document, context);
}

void CXmlObjectBase::FromXml(const wchar_t* lpctXml, const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    CXmlDocument document(context);
    document.LoadXml(lpctXml);
    ReadRoot(document, context);
}

void CXmlObjectBase::FromXml(const char* lpcXml, const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    CXmlDocument document(context);
    document.LoadXml(lpcXml);
    ReadRoot(document, context);
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data, const CXmlSerializationContext& context)
{
    CXmlObjectBase::FromXmlStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromXmlStream(unsigned char* const pData, unsigned long ulLength,
                                   const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    CXmlDocument document(context);
    document.LoadXmlStream(pData, ulLength);
    ReadRoot(document, context);
}

void CXmlObjectBase::FromXmlElement(const CElement* pElement, const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    const std::wstring strXml =
        pElement->ToXml(false, false, EOLType_LF, CXmlSerializationContext::GetDefaultContext());
    FromXml(strXml.c_str(), context);
}

void CXmlObjectBase::FromXmlElement(const CXmlElement* pElement, const CXmlSerializationContext& context)
{
    Throw_IfVersionDiffers();
    // Reading leaves the tree as it is, but the cursor over it is handed out for change throughout.
    CXmlElement* const pTree = const_cast<CXmlElement*>(pElement);
    const CReadBudget budget(*pTree);
    FromXml_Int(pTree, pTree->GetFirstElement(), context, false);
}

// --- Events --------------------------------------------------------------------------------------

void CXmlObjectBase::FireOnCollectionChangeEvent(IEventSink* pSink, CXmlCollectionBase* pCollection)
{
    pSink->OnEvent(pCollection->GetBase(), IEventSink::MsgType_Change, nullptr);
}

void CXmlObjectBase::FireOnCollectionAddEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, void* pItem)
{
    pSink->OnEvent(pCollection->GetBase(), IEventSink::MsgType_Add, pItem);
}

void CXmlObjectBase::FireOnCollectionAddCompleteEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, void* pItem)
{
    pSink->OnEvent(pCollection->GetBase(), IEventSink::MsgType_AddComplete, pItem);
}

void CXmlObjectBase::FireOnCollectionRemoveEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, int nIndex)
{
    pSink->OnEvent(pCollection->GetBase(), IEventSink::MsgType_Remove, nIndex == -1 ? nullptr : &nIndex);
}

void CXmlObjectBase::FireOnCollectionRemoveCompleteEvent(IEventSink* pSink, CXmlCollectionBase* pCollection, int nIndex)
{
    pSink->OnEvent(pCollection->GetBase(), IEventSink::MsgType_RemoveComplete, nIndex == -1 ? nullptr : &nIndex);
}

// --- Choice bookkeeping --------------------------------------------------------------------------

namespace
{

[[noreturn]] void ThrowAlreadySet(const std::wstring& strCurrent)
{
    throw CQvInvalidStateException(
        FormatString(L"The Property [%s] is already set. Only one element within this class bay be set at a time",
                     strCurrent.c_str()));
}

} // namespace

void CXmlObjectBase::Choice_SetElementValid(bool bValid, const wchar_t* lpctName, std::wstring& strCurrent)
{
    if (!bValid)
    {
        strCurrent.clear();
        return;
    }
    // The words differ from those of the other two by the missing brackets
    // (docs/compatibility.md: Messages as they are spelt).
    if (strCurrent != lpctName)
        throw CQvInvalidStateException(
            FormatString(L"The Property %s is already set. Only one element within this class bay be set at a time",
                         strCurrent.c_str()));
}

void CXmlObjectBase::Choice_SelectElement(const wchar_t* lpctName, CXmlObjectBase* pValue, std::wstring& strCurrent)
{
    if (strCurrent == lpctName)
    {
        if (pValue == nullptr)
            strCurrent.clear();
    }
    else if (strCurrent.empty())
    {
        strCurrent = lpctName;
    }
    else if (pValue != nullptr)
    {
        ThrowAlreadySet(strCurrent);
    }
}

void CXmlObjectBase::Choice_CollectionChanged(const wchar_t* lpctName, long lCount, std::wstring& strCurrent)
{
    if (strCurrent == lpctName)
    {
        if (lCount == 0)
            strCurrent.clear();
    }
    else if (strCurrent.empty())
    {
        if (lCount > 0)
            strCurrent = lpctName;
    }
    else if (lCount != 0)
    {
        ThrowAlreadySet(strCurrent);
    }
}

void CXmlObjectBase::Choice_Read_Collection(CXmlCollectionBase* pCollection, CXmlElement* pElement,
                                            CXmlElement*& pCurrent, long& lCount,
                                            const CXmlSerializationContext& context)
{
    if (lCount > 0)
        return;
    CXmlElement* const pNext = FromXml_Int(pCollection, pElement, pCurrent, context);
    if (pNext == pCurrent)
        return;
    pCurrent = pNext;
    pCollection->ValidateCount(context);
    ++lCount;
}

} // namespace QvXmlLib9
