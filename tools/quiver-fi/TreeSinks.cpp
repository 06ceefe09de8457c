#include "tools/quiver-fi/TreeSinks.h"

#include "tools/quiver-fi/Text.h"
#include "tools/quiver-fi/ValueType.h"

#include <stdexcept>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

/// Numbers of elements' names above this differ between writing and reading.
constexpr std::size_t s_nElementNamesLimit = 526368;

/// Appends text of which a character for which `fnEscape` gives anything is written as that.
template <class FnEscape>
void AppendEscaped(std::string& strOut, std::string_view svText, FnEscape&& fnEscape)
{
    std::size_t nBegin = 0;
    for (std::size_t n = 0; n < svText.size(); ++n)
    {
        const std::string_view svEscape = fnEscape(svText[n]);
        if (svEscape.empty())
            continue;
        strOut.append(svText.substr(nBegin, n - nBegin));
        strOut.append(svEscape);
        nBegin = n + 1;
    }
    strOut.append(svText.substr(nBegin));
}

std::string_view EscapeAnywhere(char c)
{
    switch (c)
    {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#xD;";
    default:
        return {};
    }
}

std::string_view EscapeInAttribute(char c)
{
    switch (c)
    {
    case '"':
        return "&quot;";
    case '\t':
        return "&#x9;";
    case '\n':
        return "&#xA;";
    default:
        return EscapeAnywhere(c);
    }
}

} // namespace

// --- Fast Infoset ---------------------------------------------------------------------------------------------------

CFastInfosetSink::CFastInfosetSink(const CDocument& document, const CNamespacePlan& plan, CFastInfosetWriter& writer,
                                   bool bSuggestedValues)
    : m_document(document)
    , m_writer(writer)
    , m_bSuggestedValues(bSuggestedValues)
    , m_names(document.GetNameCount())
{
    if (plan.GetDefault() != CDocument::s_dwNone)
        m_writer.SetDefaultNamespace(Widen(document.GetText(plan.GetDefault())));
    for (const auto& [strPrefix, dwNamespace] : plan.GetDeclarations())
        m_writer.AddNamespaceMapping(Widen(strPrefix), Widen(document.GetText(dwNamespace)));
}

CFastInfosetSink::SWideName& CFastInfosetSink::FindName(CDocument::NameId dwName)
{
    SWideName& name = m_names[dwName];
    if (!name.bKnown)
    {
        Widen(m_document.GetName(dwName).strLocalName, name.strLocalName);
        Widen(m_document.GetText(m_document.GetName(dwName).dwNamespace), name.strNamespace);
        name.bKnown = true;
    }
    return name;
}

ItemType CFastInfosetSink::GetType(const std::wstring& strValue) const
{
    return m_bSuggestedValues ? ChooseValueType(strValue) : ItemType_string;
}

void CFastInfosetSink::StartElement(CDocument::NameId dwName, bool /*bInline*/)
{
    SWideName& name = FindName(dwName);
    if (!name.bElement && ++m_nElementNames > s_nElementNamesLimit)
        throw std::runtime_error("the document holds more than 526368 different names of elements");
    name.bElement = true;
    m_writer.StartElement(name.strLocalName, name.strNamespace);
    m_bEmpty = true;
}

void CFastInfosetSink::WriteAttribute(CDocument::NameId dwName, std::string_view svValue)
{
    const SWideName& name = FindName(dwName);
    Widen(svValue, m_strUnits);
    m_writer.WriteAttribute(name.strLocalName, name.strNamespace, m_strUnits, GetType(m_strUnits));
}

void CFastInfosetSink::WriteText(std::string_view svText)
{
    Widen(svText, m_strUnits);
    m_writer.EndChild();
    m_writer.WriteText(m_strUnits, GetType(m_strUnits));
    m_bEmpty = false;
}

void CFastInfosetSink::EndElement()
{
    // A root without attributes cannot end otherwise.
    if (m_bEmpty)
        m_writer.WriteText(L"", ItemType_string);
    m_bEmpty = false;
    m_writer.EndElement();
}

// --- XML text -------------------------------------------------------------------------------------------------------

CXmlTextSink::CXmlTextSink(const CDocument& document, const CNamespacePlan& plan, const STextForm& form,
                           std::string& strOut)
    : m_document(document)
    , m_plan(plan)
    , m_form(form)
    , m_strOut(strOut)
{
}

void CXmlTextSink::CheckLength() const
{
    // A document in few octets can repeat a long value without end.
    if (m_strOut.size() > s_nLengthLimit)
        throw std::runtime_error(g_szTooLong);
}

void CXmlTextSink::AppendName(CDocument::NameId dwName, bool bElement)
{
    const CDocument::SName& name = m_document.GetName(dwName);
    const bool bBare = name.dwNamespace == CDocument::s_dwNone || (bElement && name.dwNamespace == m_plan.GetDefault());
    if (!bBare)
        m_strOut.append(m_plan.GetPrefix(name.dwNamespace)) += ':';
    m_strOut.append(name.strLocalName);
}

void CXmlTextSink::AppendAttribute(std::string_view svName, std::string_view svValue)
{
    m_strOut.append(svName).append("=\"");
    AppendEscaped(m_strOut, svValue, EscapeInAttribute);
    m_strOut += '"';
}

void CXmlTextSink::AppendDeclarations()
{
    if (m_plan.GetDefault() != CDocument::s_dwNone)
        AppendAttribute(" xmlns", m_document.GetText(m_plan.GetDefault()));
    for (const auto& [strPrefix, dwNamespace] : m_plan.GetDeclarations())
        AppendAttribute(" xmlns:" + strPrefix, m_document.GetText(dwNamespace));
}

void CXmlTextSink::BreakLine(std::size_t nDepth)
{
    m_strOut.append(m_form.svEOL).append(nDepth, '\t');
}

void CXmlTextSink::CloseStartTag()
{
    if (m_bStartTagOpen)
        m_strOut += '>';
    m_bStartTagOpen = false;
}

void CXmlTextSink::StartElement(CDocument::NameId dwName, bool bInline)
{
    CloseStartTag();
    const bool bRoot = m_open.empty();
    if (!bRoot)
    {
        SOpen& parent = m_open.back();
        parent.bChildren = true;
        if (!parent.bInline)
            BreakLine(m_open.size());
        bInline = bInline || parent.bInline;
    }
    m_open.push_back({dwName, bInline || !m_form.bFormat, false});
    m_strOut += '<';
    AppendName(dwName, true);
    if (bRoot)
        AppendDeclarations();
    m_bStartTagOpen = true;
    CheckLength();
}

void CXmlTextSink::WriteAttribute(CDocument::NameId dwName, std::string_view svValue)
{
    m_strOut += ' ';
    AppendName(dwName, false);
    AppendAttribute({}, svValue);
    CheckLength();
}

void CXmlTextSink::WriteText(std::string_view svText)
{
    CloseStartTag();
    AppendEscaped(m_strOut, svText, [this](char c) { return c == '\n' ? m_form.svEOL : EscapeAnywhere(c); });
    CheckLength();
}

void CXmlTextSink::EndElement()
{
    const SOpen element = m_open.back();
    m_open.pop_back();
    if (m_bStartTagOpen)
    {
        m_strOut += "/>";
        m_bStartTagOpen = false;
    }
    else
    {
        if (element.bChildren && !element.bInline)
            BreakLine(m_open.size());
        m_strOut += "</";
        AppendName(element.dwName, true);
        m_strOut += '>';
    }
    if (m_open.empty() && m_form.bFormat)
        m_strOut.append(m_form.svEOL);
    CheckLength();
}

} // namespace quiver_fi
