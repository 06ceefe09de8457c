#include "quiver/output/XmlTextWriter.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Exceptions.h"
#include "quiver/output/TextStream.h"
#include "quiver/output/UnitText.h"

#include <cstdint>

namespace QvXmlLib9
{

namespace
{

constexpr std::wstring_view s_strXmlNamespace = L"http://www.w3.org/XML/1998/namespace";
constexpr std::wstring_view s_strXsiNamespace = L"http://www.w3.org/2001/XMLSchema-instance";
constexpr std::wstring_view s_strCDataStart = L"<![CDATA[";

/// A file gets its text in pieces of at least this many units.
constexpr std::size_t s_nFlushThreshold = 4096;

/// The units up to ">" that do not stand for themselves, and 0, which ends a text; one bit each.
constexpr std::uint64_t s_nSpecialUnits =
    std::uint64_t{1} << 0 | std::uint64_t{1} << L'\n' | std::uint64_t{1} << L'\r' | std::uint64_t{1} << L'"' |
    std::uint64_t{1} << L'&' | std::uint64_t{1} << L'<' | std::uint64_t{1} << L'>';

bool IsCopied(wchar_t c)
{
    const auto n = static_cast<std::uint32_t>(c);
    return n < 64 ? (s_nSpecialUnits >> n & 1) == 0 : n <= 0xFFFF;
}

std::wstring_view UpToZero(std::wstring_view strText)
{
    return strText.substr(0, strText.find(L'\0'));
}

} // namespace

CXmlTextWriter::CXmlTextWriter(CTextStream* pStream)
    : CXmlWriter(L"CXmlTextWriter")
    , m_pStream(pStream)
{
}

CXmlTextWriter::~CXmlTextWriter() = default;

void CXmlTextWriter::Open()
{
    CXmlWriter::Open();
    m_pStream->Open();
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

void CXmlTextWriter::WriteHeadedDirective(std::wstring_view strText)
{
    if (m_pContext != nullptr)
        throw CQvException(L"Headed directives must appear before an Element has been added.");
    AppendLine(strText);
    FlushIfLong();
}

void CXmlTextWriter::WriteComment(std::wstring_view strText)
{
    m_pStream->AppendUnits(L"<!--");
    WriteEscaped<false>(strText);
    m_pStream->AppendUnits(L"-->");
    m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
}

void CXmlTextWriter::WriteProcessingInstruction(std::wstring_view strText)
{
    AppendLine(strText);
    m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
}

void CXmlTextWriter::WriteInlineSchema(std::wstring_view strText)
{
    // The start tag stays open, because the schema text stands inside it.
    AppendLine(L" ");
    AppendLine(strText);
    FlushIfLong();
}

void CXmlTextWriter::WriteRaw(std::wstring_view strText)
{
    m_pStream->Append(UpToZero(strText));
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

void CXmlTextWriter::StartElement(std::wstring_view strName, std::wstring_view strNamespace)
{
    CloseStartTag();
    CXmlWriterContext& context = *CreateContext(strName, strNamespace);
    if (m_bFormatted)
        AppendIndent(context);
    m_pStream->AppendUnit(L'<');
    AppendQualifiedStart(context);
    if (m_pContext == nullptr)
        AppendRootDeclarations();
    FlushIfLong();
    m_pContext = &context;
}

void CXmlTextWriter::AppendQualifiedStart(CXmlWriterContext& context)
{
    const SElementPrefix& prefix = GetElementPrefix(context);
    if (prefix.bBare)
    {
        m_pStream->AppendUnits(context.m_strElementName);
        return;
    }
    const std::wstring* pstrPrefix = prefix.pstrPrefix;
    const bool bDeclare = pstrPrefix == nullptr;
    if (bDeclare)
        pstrPrefix = &BindGeneratedPrefix(context, context.m_strNamespace);
    m_pStream->AppendUnits(*pstrPrefix);
    m_pStream->AppendUnit(L':');
    m_pStream->AppendUnits(context.m_strElementName);
    if (bDeclare)
    {
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(*pstrPrefix, context.m_strNamespace);
    }
}

void CXmlTextWriter::AppendDeclaration(std::wstring_view strPrefix, std::wstring_view strNamespace)
{
    m_pStream->AppendUnits(L"xmlns:");
    m_pStream->AppendUnits(strPrefix);
    m_pStream->AppendUnits(L"=\"");
    m_pStream->AppendUnits(strNamespace);
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
        if (strNamespace.compare(0, s_strXmlNamespace.size(), s_strXmlNamespace) == 0)
            continue;
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(strPrefix, strNamespace);
    }
}

void CXmlTextWriter::WriteText(std::wstring_view strValue, ItemType /*eType*/)
{
    CXmlWriterContext& context = GetOpenElement();
    if (strValue.empty() || strValue.front() == L'\0')
        return;
    if (context.m_bStartTagOpen)
    {
        context.m_bStartTagOpen = false;
        m_pStream->AppendUnit(L'>');
    }
    if (strValue.front() == L'<' && strValue.compare(0, s_strCDataStart.size(), s_strCDataStart) == 0)
        m_pStream->Append(UpToZero(strValue));
    else
        WriteEscaped<false>(strValue);
    FlushIfLong();
}

void CXmlTextWriter::EndElement()
{
    const CXmlWriterContext& context = GetOpenElement();
    if (context.m_bStartTagOpen)
    {
        m_pStream->AppendUnits(L"/>");
    }
    else
    {
        if (m_bFormatted && context.m_dwChildCount != 0)
            AppendIndent(context);
        m_pStream->AppendUnits(L"</");
        if (const SElementPrefix& prefix = GetElementPrefix(context); !prefix.bBare)
        {
            // A default namespace that was taken away meanwhile leaves the name without a prefix, but not without ":".
            m_pStream->AppendUnits(prefix.pstrPrefix != nullptr ? *prefix.pstrPrefix
                                                                : GetNamespaceMapValue(context.m_strNamespace));
            m_pStream->AppendUnit(L':');
        }
        m_pStream->AppendUnits(context.m_strElementName);
        m_pStream->AppendUnit(L'>');
    }
    if (m_bFormatted)
        m_pStream->AppendUnits(m_strEOL);
    FlushIfLong();
    PopContext();
}

void CXmlTextWriter::WriteAttribute(std::wstring_view strName, std::wstring_view strNamespace,
                                    std::wstring_view strValue, ItemType /*eType*/)
{
    CXmlWriterContext& context = GetOpenStartTag();
    m_pStream->AppendUnit(L' ');
    std::wstring strBuffer;
    if (const std::wstring_view strNamespaceUnits = ToUnitText(strNamespace, strBuffer); !strNamespaceUnits.empty())
    {
        const std::wstring* pstrPrefix = FindPrefix(strNamespaceUnits);
        if (pstrPrefix == nullptr)
        {
            pstrPrefix = &BindGeneratedPrefix(context, strNamespaceUnits);
            AppendDeclaration(*pstrPrefix, strNamespaceUnits);
            m_pStream->AppendUnit(L' ');
        }
        QV_ASSERT_MSG(!pstrPrefix->empty(), "m_pContext->GetNamespaceMapValue(strNamespace).length() != 0");
        m_pStream->AppendUnits(*pstrPrefix);
        m_pStream->AppendUnit(L':');
    }
    m_pStream->AppendUnits(ToUnitText(strName, strBuffer));
    m_pStream->AppendUnits(L"=\"");
    WriteEscaped<true>(strValue);
    m_pStream->AppendUnit(L'"');
    FlushIfLong();
}

void CXmlTextWriter::WriteXsiType(std::wstring_view strTypeNamespace, std::wstring_view strTypeName, ItemType eType)
{
    CXmlWriterContext& context = GetOpenStartTag();
    std::wstring strBuffer;
    const std::wstring_view strNamespace = ToUnitText(strTypeNamespace, strBuffer);
    if (strNamespace.empty() || strNamespace == GetDefaultNamespace())
    {
        WriteAttribute(L"type", s_strXsiNamespace, strTypeName, eType);
        return;
    }
    const std::wstring* pstrPrefix = FindPrefix(strNamespace);
    if (pstrPrefix == nullptr)
    {
        pstrPrefix = &BindGeneratedPrefix(context, strNamespace);
        m_pStream->AppendUnit(L' ');
        AppendDeclaration(*pstrPrefix, strNamespace);
        // The attribute begins with a blank too: the two blanks are part of the output.
        m_pStream->AppendUnit(L' ');
    }
    QV_ASSERT_MSG(!pstrPrefix->empty(), "m_pContext->GetNamespaceMapValue(strElementNamespace).length() != 0");
    std::wstring strValue = *pstrPrefix;
    strValue += L':';
    strValue += strTypeName;
    WriteAttribute(L"type", s_strXsiNamespace, strValue, eType);
}

void CXmlTextWriter::WriteXsiNil()
{
    GetOpenStartTag();
    WriteAttribute(L"nil", s_strXsiNamespace, L"true", ItemType_boolean);
}

void CXmlTextWriter::AppendIndent(const CXmlWriterContext& context)
{
    for (std::uint32_t n = 0; n < context.m_dwDepth; ++n)
        m_pStream->AppendUnit(L'\t');
}

void CXmlTextWriter::AppendLine(std::wstring_view strText)
{
    m_pStream->Append(UpToZero(strText));
    m_pStream->AppendUnits(m_strEOL);
}

template <bool bAttribute>
void CXmlTextWriter::WriteEscaped(std::wstring_view strText)
{
    const wchar_t* p = strText.data();
    const wchar_t* const pEnd = p + strText.size();
    while (p != pEnd)
    {
        const wchar_t* const pRun = p;
        while (p != pEnd && IsCopied(*p))
            ++p;
        m_pStream->AppendUnits(std::wstring_view(pRun, static_cast<std::size_t>(p - pRun)));
        if (p == pEnd || *p == L'\0')
            return;
        AppendEscape<bAttribute>(*p++);
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
    if (m_pStream->GetLength() >= s_nFlushThreshold)
        m_pStream->Flush();
}

} // namespace QvXmlLib9
