#include "quiver/output/XmlTextWriter.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/SchemaNamespaces.h"
#include "quiver/foundation/UnitRuns.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/UnitText.h"

#include <typeinfo>

namespace QvXmlLib9
{

namespace
{

constexpr std::wstring_view s_svXmlNamespace = L"http://www.w3.org/XML/1998/namespace";
constexpr std::wstring_view s_svCDataStart = L"<![CDATA[";

/// A file gets its text in pieces of at least this many units.
constexpr std::size_t s_nFlushThreshold = 4096;

std::wstring_view UpToZero(std::wstring_view svText)
{
    return svText.substr(0, svText.find(L'\0'));
}

} // namespace

CXmlTextWriter::CXmlTextWriter(CTextStream* pStream)
    : CXmlWriter(L"CXmlTextWriter", [](CXmlWriter& writer, std::wstring_view svPrefix, std::wstring_view svNamespace)
                 { return static_cast<CXmlTextWriter&>(writer).DeclareOnElement(svPrefix, svNamespace); })
    , m_pStream(pStream)
{
}

CXmlTextWriter::~CXmlTextWriter() = default;

void CXmlTextWriter::Open()
{
    CXmlWriter::Open();
    m_pStream->Open();
    m_bFlushes = typeid(*m_pStream) != typeid(CTextStream);
}

void CXmlTextWriter::Close()
{
    m_pStream->Close();
    CXmlWriter::Close();
}

void CXmlTextWriter::SetFormatted(bool bFormatted)
{
    QV_ASSERT_MSG(m_pContext == nullptr, "m_pContext == NULL");
    m_bFormatted = bFormatted;
    ForgetTags();
}

void CXmlTextWriter::SetEOLType(EOLType eEOLType)
{
    if (eEOLType == EOLType_CRLF)
        m_strEOL = L"\r\n";
    else if (eEOLType == EOLType_LF)
        m_strEOL = L"\n";
    else
        throw CQvException(L"Invalid EOL type.");
    m_eEOLType = eEOLType;
    ForgetTags();
}

void CXmlTextWriter::WriteXmlDeclaration()
{
    m_pStream->AppendUnits(L"<?xml version=\"1.0\"");
    if (m_pStream->GetEncoding() == Encoding_UTF8)
        m_pStream->AppendUnits(L" encoding=\"UTF-8\"");
    else if (m_pStream->GetEncoding() == Encoding_UTF16)
        m_pStream->AppendUnits(L" encoding=\"UTF-16\"");
    m_pStream->AppendUnits(L"?>");
    m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
    QV_ASSERT_MSG(m_pContext == nullptr, "m_pContext == NULL");
}

void CXmlTextWriter::WriteHeadedDirective(std::wstring_view svText)
{
    if (m_pContext != nullptr)
        throw CQvException(L"Headed directives must appear before an Element has been added.");
    AppendLine(svText);
    FlushIfLong();
}

void CXmlTextWriter::WriteComment(std::wstring_view svText)
{
    m_pStream->AppendUnits(L"<!--");
    WriteEscaped<false>(svText);
    m_pStream->AppendUnits(L"-->");
    m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
}

void CXmlTextWriter::WriteProcessingInstruction(std::wstring_view svText)
{
    AppendLine(svText);
    m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
}

void CXmlTextWriter::WriteInlineSchema(std::wstring_view svText)
{
    // The start tag stays open, because the schema text stands inside it.
    AppendLine(L" ");
    AppendLine(svText);
    FlushIfLong();
}

void CXmlTextWriter::WriteRaw(std::wstring_view svText)
{
    m_pStream->Append(UpToZero(svText));
    if (m_bFormatted)
        m_pStream->AppendUnits(m_strEOL);
}

void CXmlTextWriter::CloseStartTag()
{
    if (m_pContext == nullptr)
        return;
    ++m_pContext->m_dwChildCount;
    if (!m_pContext->m_bStartTagOpen)
        return;
    m_pContext->m_bStartTagOpen = false;
    m_pStream->AppendUnit(L'>');
    if (m_bFormatted)
        m_pStream->AppendUnits(m_strEOL);
}

void CXmlTextWriter::StartElement(std::wstring_view svName, std::wstring_view svNamespace)
{
    CloseStartTag();
    CXmlWriterContext& context = *CreateContext(svName, svNamespace);
    if (m_bFormatted)
        AppendIndent(context);
    if (IsTagCurrent(context))
        m_pStream->AppendShort(context.m_startTag);
    else
        AppendStart(context);
    if (m_pContext == nullptr)
        AppendRootDeclarations();
    FlushIfLong();
    m_pContext = &context;
}

/// The beginning of a start tag that has not been made for the name yet.
void CXmlTextWriter::AppendStart(CXmlWriterContext& context)
{
    const SElementPrefix& prefix = GetElementPrefix(context);
    if (prefix.bBare || prefix.pstrPrefix != nullptr)
    {
        SetTags(context, prefix);
        m_pStream->AppendShort(context.m_startTag);
        return;
    }
    const std::wstring& strPrefix = BindGeneratedPrefix(context, context.m_svNamespace);
    m_pStream->AppendUnit(L'<');
    m_pStream->AppendUnits(strPrefix);
    m_pStream->AppendUnit(L':');
    m_pStream->AppendUnits(context.m_strElementName);
    m_pStream->AppendUnit(L' ');
    AppendDeclaration(strPrefix, context.m_svNamespace);
}

void CXmlTextWriter::SetTags(CXmlWriterContext& context, const SElementPrefix& prefix)
{
    const std::wstring_view svPrefix = prefix.bBare ? std::wstring_view() : std::wstring_view(*prefix.pstrPrefix);
    const std::wstring_view svColon = prefix.bBare ? L"" : L":";
    const std::wstring_view svEOL = m_bFormatted ? std::wstring_view(m_strEOL) : std::wstring_view();
    context.m_startTag.Assign({L"<", svPrefix, svColon, context.m_strElementName});
    context.m_endTag.Assign({L"</", svPrefix, svColon, context.m_strElementName, L">", svEOL});
    SetTagCurrent(context);
}

void CXmlTextWriter::AppendDeclaration(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    m_pStream->AppendUnits(L"xmlns:");
    m_pStream->AppendUnits(svPrefix);
    m_pStream->AppendUnits(L"=\"");
    m_pStream->AppendUnits(svNamespace);
    m_pStream->AppendUnit(L'"');
}

void CXmlTextWriter::AppendRootDeclarations()
{
    if (!m_strDefaultNamespace.empty())
    {
        m_pStream->AppendUnits(L" xmlns=\"");
        m_pStream->AppendUnits(m_strDefaultNamespace);
        m_pStream->AppendUnit(L'"');
    }
    for (const auto& [strNamespace, strPrefix] : m_mapNamespaces)
    {
        // So is a longer URI (docs/compatibility.md: Namespaces that begin like another).
        if (strNamespace.compare(0, s_svXmlNamespace.size(), s_svXmlNamespace) == 0)
            continue;
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(strPrefix, strNamespace);
    }
}

void CXmlTextWriter::WriteText(std::wstring_view svValue, ItemType /*eType*/)
{
    CXmlWriterContext& context = GetOpenElement();
    if (svValue.empty() || svValue.front() == L'\0')
        return;
    if (context.m_bStartTagOpen)
    {
        context.m_bStartTagOpen = false;
        m_pStream->AppendUnit(L'>');
    }
    if (svValue.front() == L'<' && svValue.compare(0, s_svCDataStart.size(), s_svCDataStart) == 0)
        m_pStream->Append(UpToZero(svValue));
    else
        WriteEscaped<false>(svValue);
    FlushIfLong();
}

void CXmlTextWriter::EndElement()
{
    const CXmlWriterContext& context = GetOpenElement();
    if (context.m_bStartTagOpen)
    {
        m_pStream->AppendUnits(L"/>");
        if (m_bFormatted)
            m_pStream->AppendUnits(m_strEOL);
    }
    else
    {
        if (m_bFormatted && context.m_dwChildCount != 0)
            AppendIndent(context);
        if (IsTagCurrent(context))
            m_pStream->AppendShort(context.m_endTag);
        else
            AppendEnd(context);
    }
    FlushIfLong();
    PopContext();
}

/// The end tag of an element whose scope has changed since it was started.
void CXmlTextWriter::AppendEnd(const CXmlWriterContext& context)
{
    m_pStream->AppendUnits(L"</");
    if (const SElementPrefix& prefix = GetElementPrefix(context); !prefix.bBare)
    {
        // A default namespace that was taken away meanwhile leaves the name without a prefix, but not without ":".
        m_pStream->AppendUnits(prefix.pstrPrefix != nullptr ? *prefix.pstrPrefix
                                                            : GetNamespaceMapValue(context.m_svNamespace));
        m_pStream->AppendUnit(L':');
    }
    m_pStream->AppendUnits(context.m_strElementName);
    m_pStream->AppendUnit(L'>');
    if (m_bFormatted)
        m_pStream->AppendUnits(m_strEOL);
}

void CXmlTextWriter::WriteAttribute(std::wstring_view svName, std::wstring_view svNamespace, std::wstring_view svValue,
                                    ItemType /*eType*/)
{
    CXmlWriterContext& context = GetOpenStartTag();
    m_pStream->AppendUnit(L' ');
    std::wstring strBuffer;
    if (const std::wstring_view svNamespaceUnits = ToUnitText(svNamespace, strBuffer); !svNamespaceUnits.empty())
    {
        const std::wstring* pstrPrefix = FindPrefix(svNamespaceUnits);
        if (pstrPrefix == nullptr)
        {
            pstrPrefix = &BindGeneratedPrefix(context, svNamespaceUnits);
            AppendDeclaration(*pstrPrefix, svNamespaceUnits);
            m_pStream->AppendUnit(L' ');
        }
        QV_ASSERT_MSG(!pstrPrefix->empty(), "m_pContext->GetNamespaceMapValue(strNamespace).length() != 0");
        m_pStream->AppendUnits(*pstrPrefix);
        m_pStream->AppendUnit(L':');
    }
    m_pStream->AppendUnits(ToUnitText(svName, strBuffer));
    m_pStream->AppendUnits(L"=\"");
    WriteEscaped<true>(svValue);
    m_pStream->AppendUnit(L'"');
    FlushIfLong();
}

std::wstring CXmlTextWriter::DeclareOnElement(std::wstring_view svPrefix, std::wstring_view svNamespace)
{
    CXmlWriterContext& context = GetOpenStartTag();
    std::wstring strBuffer;
    std::wstring strPrefixBuffer;
    const std::wstring_view svNamespaceUnits = ToUnitText(svNamespace, strBuffer);
    if (svNamespaceUnits.empty() || svNamespaceUnits == GetDefaultNamespace())
        return {};
    const std::wstring* pstrPrefix = FindPrefix(svNamespaceUnits);
    if (pstrPrefix == nullptr || pstrPrefix->empty())
    {
        pstrPrefix = &BindPrefix(context, svNamespaceUnits, ToUnitText(svPrefix, strPrefixBuffer));
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(*pstrPrefix, svNamespaceUnits);
    }
    return *pstrPrefix;
}

void CXmlTextWriter::WriteXsiType(std::wstring_view svTypeNamespace, std::wstring_view svTypeName, ItemType eType)
{
    CXmlWriterContext& context = GetOpenStartTag();
    std::wstring strBuffer;
    const std::wstring_view svNamespace = ToUnitText(svTypeNamespace, strBuffer);
    if (svNamespace.empty() || svNamespace == GetDefaultNamespace())
    {
        WriteAttribute(L"type", g_lpctXsiNamespace, svTypeName, eType);
        return;
    }
    const std::wstring* pstrPrefix = FindPrefix(svNamespace);
    if (pstrPrefix == nullptr)
    {
        pstrPrefix = &BindGeneratedPrefix(context, svNamespace);
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(*pstrPrefix, svNamespace);
        // The attribute begins with a blank too: the two blanks are part of the output.
        m_pStream->AppendUnit(L' ');
    }
    QV_ASSERT_MSG(!pstrPrefix->empty(), "m_pContext->GetNamespaceMapValue(strElementNamespace).length() != 0");
    std::wstring strValue = *pstrPrefix;
    strValue += L':';
    strValue += svTypeName;
    WriteAttribute(L"type", g_lpctXsiNamespace, strValue, eType);
}

void CXmlTextWriter::WriteXsiNil()
{
    GetOpenStartTag();
    WriteAttribute(L"nil", g_lpctXsiNamespace, L"true", ItemType_boolean);
}

void CXmlTextWriter::AppendIndent(const CXmlWriterContext& context)
{
    m_pStream->AppendRun(L'\t', context.m_dwDepth);
}

void CXmlTextWriter::AppendLine(std::wstring_view svText)
{
    m_pStream->Append(UpToZero(svText));
    m_pStream->AppendUnits(m_strEOL);
}

template <bool bAttribute>
void CXmlTextWriter::WriteEscaped(std::wstring_view svText)
{
    while (!svText.empty())
    {
        svText.remove_prefix(m_pStream->AppendBy(svText, CopyPlainUnits));
        if (svText.empty() || svText.front() == L'\0')
            return;
        AppendEscape<bAttribute>(svText.front());
        svText.remove_prefix(1);
    }
}

template <bool bAttribute>
void CXmlTextWriter::AppendEscape(wchar_t c)
{
    switch (c)
    {
    case L'\n':
        m_pStream->AppendUnits(bAttribute ? std::wstring_view(L"&#xA;") : std::wstring_view(m_strEOL));
        break;
    case L'\r':
        QV_ASSERT_MSG(false, "FALSE");
        break;
    case L'"':
        m_pStream->AppendUnits(L"&quot;");
        break;
    case L'&':
        m_pStream->AppendUnits(L"&amp;");
        break;
    case L'<':
        m_pStream->AppendUnits(L"&lt;");
        break;
    case L'>':
        m_pStream->AppendUnits(L"&gt;");
        break;
    default:
        m_pStream->Append(c);
        break;
    }
}

void CXmlTextWriter::FlushIfLong()
{
    if (m_bFlushes && m_pStream->GetLength() >= s_nFlushThreshold)
        m_pStream->Flush();
}

} // namespace QvXmlLib9
