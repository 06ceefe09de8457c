#include "tools/quiver-fi/NamespacePlan.h"

#include "tools/quiver-fi/Text.h"
#include "tools/quiver-fi/XmlNames.h"

#include <stdexcept>
#include <string_view>

namespace quiver_fi
{

namespace
{

using EKind = CDocument::EKind;

constexpr std::string_view s_svXsiNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view s_svXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view s_svBlanks = " \t\n\r";

std::string_view Trim(std::string_view svValue)
{
    const std::size_t nFirst = svValue.find_first_not_of(s_svBlanks);
    if (nFirst == std::string_view::npos)
        return {};
    return svValue.substr(nFirst, svValue.find_last_not_of(s_svBlanks) + 1 - nFirst);
}

} // namespace

CNamespacePlan::CNamespacePlan(const CDocument& document, EForm eForm)
    : m_document(document)
    , m_eForm(eForm)
    , m_bound(document.GetTextCount())
    , m_usedByElement(document.GetTextCount())
    , m_usedByAttribute(document.GetTextCount())
    , m_prefixes{{CDocument::s_dwXmlNamespace, "xml"}}
    , m_taken{"", "xml", "xmlns"}
{
    m_bound[CDocument::s_dwXmlPrefix] = CDocument::s_dwXmlNamespace;
    Survey();
    ChooseDefault();
    ClaimPrefixesOfValues();
    ClaimPrefixesOfDeclarations();
    GeneratePrefixes();
    RewriteTypes();
    if (m_eForm == EForm::FastInfoset)
        CheckDeclarable();
}

// --- What there is --------------------------------------------------------------------------------------------------

void CNamespacePlan::Survey()
{
    const std::vector<CDocument::SEvent>& events = m_document.GetEvents();
    // How many declarations were in force outside each open element.
    std::vector<std::size_t> outer;
    std::size_t nOuter = 0;
    for (std::size_t nEvent = 0; nEvent < events.size(); ++nEvent)
    {
        const CDocument::SEvent& event = events[nEvent];
        if (event.eKind != EKind::Text)
            m_strTail.clear();
        switch (event.eKind)
        {
        case EKind::Declaration:
            Bind(event.dwName, CDocument::GetDeclaredNamespace(event));
            break;
        case EKind::Start:
            if (outer.empty())
                m_dwRootDefault = m_bound[CDocument::s_dwNone];
            outer.push_back(nOuter);
            nOuter = m_undo.size();
            SurveyName(event);
            break;
        case EKind::Attribute:
            SurveyName(event);
            SurveyType(nEvent, m_document.GetValue(event.range));
            m_strTail.clear();
            break;
        case EKind::Text:
            SurveyValue(m_document.GetValue(event.range));
            break;
        case EKind::End:
            nOuter = outer.back();
            outer.pop_back();
            Unbind(nOuter);
            break;
        }
    }
}

void CNamespacePlan::Bind(TextId dwPrefix, TextId dwNamespace)
{
    m_undo.emplace_back(dwPrefix, m_bound[dwPrefix]);
    m_bound[dwPrefix] = dwNamespace;
    if (dwPrefix == CDocument::s_dwNone || dwNamespace == CDocument::s_dwNone || dwPrefix == CDocument::s_dwXmlPrefix)
        return;
    if (m_declaredSet.emplace(dwPrefix, dwNamespace).second)
    {
        m_declared.emplace_back(dwPrefix, dwNamespace);
        m_prefixIds.emplace(Widen(m_document.GetText(dwPrefix)), dwPrefix);
    }
}

void CNamespacePlan::Unbind(std::size_t nCount)
{
    for (; m_undo.size() > nCount; m_undo.pop_back())
        m_bound[m_undo.back().first] = m_undo.back().second;
}

void CNamespacePlan::SurveyName(const CDocument::SEvent& event)
{
    const bool bElement = event.eKind == EKind::Start;
    const TextId dwNamespace = m_document.GetName(event.dwName).dwNamespace;
    if (dwNamespace == CDocument::s_dwNone)
    {
        m_bUnqualified = m_bUnqualified || bElement;
        return;
    }
    if (!m_usedByElement[dwNamespace] && !m_usedByAttribute[dwNamespace])
        m_used.push_back(dwNamespace);
    (bElement ? m_usedByElement : m_usedByAttribute)[dwNamespace] = true;
}

void CNamespacePlan::SurveyType(std::size_t nEvent, std::string_view svValue)
{
    const CDocument::SName& name = m_document.GetName(m_document.GetEvents()[nEvent].dwName);
    const std::string_view svType = Trim(svValue);
    if (svType.empty())
        return;
    if (name.strLocalName != "type" || m_document.GetText(name.dwNamespace) != s_svXsiNamespace)
    {
        SurveyValue(svValue);
        return;
    }
    const std::size_t nColon = svType.find(':');
    const bool bPrefix = nColon != std::string_view::npos;
    const auto it = m_prefixIds.find(Widen(svType.substr(0, bPrefix ? nColon : 0)));
    STypeName type{nEvent, it != m_prefixIds.end() ? it->second : CDocument::s_dwNone, CDocument::s_dwNone,
                   std::string(svType.substr(bPrefix ? nColon + 1 : 0))};
    if (bPrefix && type.dwPrefix == CDocument::s_dwNone)
        return;
    type.dwNamespace = m_bound[type.dwPrefix];
    if (type.dwNamespace != CDocument::s_dwNone)
        m_types.push_back(std::move(type));
    else
        m_bUnqualified = m_bUnqualified || !bPrefix;
}

/// Finds every prefix in force that is followed by a colon, wherever it stands: values may hold names among other text.
void CNamespacePlan::SurveyValue(std::string_view svValue)
{
    if (m_prefixIds.empty())
        return;
    Widen(svValue, m_strUnits);
    const std::wstring_view svUnits = m_strUnits;
    for (std::size_t n = svUnits.find(L':'); n != std::wstring_view::npos; n = svUnits.find(L':', n + 1))
    {
        const std::size_t nBegin = FindNameBefore(svUnits, n);
        if (nBegin == 0)
            UsePrefix(m_strTail.append(svUnits.substr(0, n)));
        else
            UsePrefix(svUnits.substr(nBegin, n - nBegin));
    }
    const std::size_t nTail = FindNameBefore(svUnits, svUnits.size());
    if (nTail != 0)
        m_strTail.clear();
    m_strTail.append(svUnits.substr(nTail));
}

void CNamespacePlan::UsePrefix(std::wstring_view svPrefix)
{
    const auto it = m_prefixIds.find(svPrefix);
    if (it == m_prefixIds.end() || m_bound[it->second] == CDocument::s_dwNone)
        return;
    const TextId dwNamespace = m_bound[it->second];
    const TextId dwKnown = m_usedPrefixes.emplace(it->second, dwNamespace).first->second;
    if (dwKnown != dwNamespace)
    {
        throw std::runtime_error("values of the document use the prefix " + Quote(m_document.GetText(it->second)) +
                                 " for two namespaces, " + Quote(m_document.GetText(dwKnown)) + " and " +
                                 Quote(m_document.GetText(dwNamespace)));
    }
}

// --- What is chosen -------------------------------------------------------------------------------------------------

void CNamespacePlan::ChooseDefault()
{
    // A default namespace would take in the names without one.
    if (!m_bUnqualified)
        m_dwDefault = m_dwRootDefault;
}

bool CNamespacePlan::Claim(TextId dwPrefix, TextId dwNamespace)
{
    const std::string& strPrefix = m_document.GetText(dwPrefix);
    if (m_taken.count(strPrefix) != 0)
        return false;
    if (m_eForm == EForm::FastInfoset && m_prefixes.count(dwNamespace) != 0)
        return false;
    m_taken.insert(strPrefix);
    m_prefixes.emplace(dwNamespace, strPrefix);
    m_declarations.emplace_back(strPrefix, dwNamespace);
    return true;
}

void CNamespacePlan::ClaimPrefixesOfValues()
{
    for (const auto& [dwPrefix, dwNamespace] : m_usedPrefixes)
    {
        if (!Claim(dwPrefix, dwNamespace))
        {
            throw std::runtime_error("values of the document use the prefixes " + Quote(m_prefixes[dwNamespace]) +
                                     " and " + Quote(m_document.GetText(dwPrefix)) +
                                     " for one namespace, which can have only one of them here");
        }
    }
}

void CNamespacePlan::ClaimPrefixesOfDeclarations()
{
    for (const STypeName& type : m_types)
    {
        if (type.dwPrefix != CDocument::s_dwNone && m_prefixes.count(type.dwNamespace) == 0)
            Claim(type.dwPrefix, type.dwNamespace);
    }
    for (const auto& [dwPrefix, dwNamespace] : m_declared)
        Claim(dwPrefix, dwNamespace);
    // What nothing has declared is of use only to a namespace without any other prefix.
    for (const auto& [dwPrefix, dwNamespace] : m_document.GetSuggestedPrefixes())
    {
        if (m_prefixes.count(dwNamespace) == 0)
            Claim(dwPrefix, dwNamespace);
    }
}

void CNamespacePlan::GeneratePrefixes()
{
    for (const STypeName& type : m_types)
        m_used.push_back(type.dwNamespace);
    std::size_t nNumber = 0;
    for (const TextId dwNamespace : m_used)
    {
        if (m_prefixes.count(dwNamespace) != 0 || (dwNamespace == m_dwDefault && !m_usedByAttribute[dwNamespace]))
            continue;
        std::string strPrefix;
        do
            strPrefix = "ns" + std::to_string(++nNumber);
        while (!m_taken.insert(strPrefix).second);
        m_prefixes.emplace(dwNamespace, strPrefix);
        m_declarations.emplace_back(std::move(strPrefix), dwNamespace);
    }
}

void CNamespacePlan::RewriteTypes()
{
    for (const STypeName& type : m_types)
    {
        const auto it = m_prefixes.find(type.dwNamespace);
        const std::string& strOld = m_document.GetText(type.dwPrefix);
        // The default namespace serves whatever has no prefix of its own.
        const bool bDefault = type.dwNamespace == m_dwDefault && (strOld.empty() || it == m_prefixes.end());
        const std::string strNew = bDefault ? std::string() : it->second;
        if (strNew != strOld)
            m_rewritten[type.nEvent] = (bDefault ? strNew : strNew + ':') + type.strLocalName;
    }
}

/// The writer declares no namespace that begins like that of XML. Names do without, since each carries its namespace.
void CNamespacePlan::CheckDeclarable() const
{
    const auto fnCheck = [this](TextId dwNamespace)
    {
        const std::string& strNamespace = m_document.GetText(dwNamespace);
        if (strNamespace.compare(0, s_svXmlNamespace.size(), s_svXmlNamespace) == 0)
            throw std::runtime_error("values of the document need the namespace " + Quote(strNamespace) +
                                     ", which cannot be declared here");
    };
    for (const auto& [dwPrefix, dwNamespace] : m_usedPrefixes)
        fnCheck(dwNamespace);
    for (const STypeName& type : m_types)
        fnCheck(type.dwNamespace);
}

std::string_view CNamespacePlan::GetValue(std::size_t nEvent) const
{
    const auto it = m_rewritten.find(nEvent);
    return it != m_rewritten.end() ? std::string_view(it->second)
                                   : m_document.GetValue(m_document.GetEvents()[nEvent].range);
}

} // namespace quiver_fi
