#include "tools/quiver-fi/Document.h"

#include "tools/quiver-fi/Text.h"
#include "tools/quiver-fi/XmlNames.h"

#include <stdexcept>

namespace quiver_fi
{

namespace
{

constexpr std::string_view s_svXmlPrefix = "xml";
constexpr std::string_view s_svXmlnsPrefix = "xmlns";
constexpr std::string_view s_svXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view s_svXmlnsNamespace = "http://www.w3.org/2000/xmlns/";

} // namespace

CDocument::CDocument()
{
    InternText("");
    InternText(s_svXmlPrefix);
    InternText(s_svXmlNamespace);
}

CDocument::TextId CDocument::InternText(std::string_view svText)
{
    const auto it = m_textIds.find(svText);
    if (it != m_textIds.end())
        return it->second;
    const auto dwText = static_cast<TextId>(m_texts.size());
    m_textIds.emplace(m_texts.emplace_back(svText), dwText);
    return dwText;
}

void CDocument::CheckNamespace(TextId dwNamespace) const
{
    if (GetText(dwNamespace) == s_svXmlnsNamespace)
        throw std::runtime_error("the document holds a name in the namespace of namespace declarations");
}

void CDocument::CheckLocalName(std::string_view svLocalName) const
{
    if (!IsNCName(Widen(svLocalName)))
        throw std::runtime_error("the document holds the name " + Quote(svLocalName) + ", which is none in XML");
}

CDocument::NameId CDocument::InternName(TextId dwNamespace, std::string_view svLocalName)
{
    const auto it = m_nameIds.find({dwNamespace, svLocalName});
    if (it != m_nameIds.end())
        return it->second;
    CheckNamespace(dwNamespace);
    CheckLocalName(svLocalName);
    const auto dwName = static_cast<NameId>(m_names.size());
    const SName& name = m_names.emplace_back(SName{dwNamespace, std::string(svLocalName)});
    m_nameIds.emplace(std::make_pair(dwNamespace, std::string_view(name.strLocalName)), dwName);
    return dwName;
}

CDocument::SRange CDocument::Store(std::string_view svText)
{
    const SRange range{m_strValues.size(), svText.size()};
    m_strValues += svText;
    return range;
}

void CDocument::Declare(TextId dwPrefix, TextId dwNamespace)
{
    const std::string& strPrefix = GetText(dwPrefix);
    CheckNamespace(dwNamespace);
    if (!strPrefix.empty())
        CheckLocalName(strPrefix);
    if (strPrefix == s_svXmlnsPrefix || (dwPrefix == s_dwXmlPrefix) != (dwNamespace == s_dwXmlNamespace))
        throw std::runtime_error("the document declares the prefix " + Quote(strPrefix) + " against the rules of XML");
    m_lastElementOfPrefix.resize(m_texts.size());
    if (m_lastElementOfPrefix[dwPrefix] == m_nElements + 1)
        throw std::runtime_error("the document declares the prefix " + Quote(strPrefix) + " twice on one element");
    m_lastElementOfPrefix[dwPrefix] = m_nElements + 1;
    m_events.push_back({EKind::Declaration, dwPrefix, {dwNamespace, 0}});
}

void CDocument::SuggestPrefix(TextId dwPrefix, TextId dwNamespace)
{
    const std::string& strPrefix = GetText(dwPrefix);
    if (dwPrefix == s_dwXmlPrefix || strPrefix == s_svXmlnsPrefix || !IsNCName(Widen(strPrefix)))
        return;
    if (m_suggestedSet.emplace(dwPrefix, dwNamespace).second)
        m_suggested.emplace_back(dwPrefix, dwNamespace);
}

void CDocument::StartElement(NameId dwName)
{
    ++m_nElements;
    m_events.push_back({EKind::Start, dwName, {}});
}

void CDocument::AddAttribute(NameId dwName, SRange value)
{
    const SName& name = GetName(dwName);
    if (name.dwNamespace == s_dwNone && name.strLocalName == s_svXmlnsPrefix)
        throw std::runtime_error("the document holds an attribute called xmlns, which XML takes for a declaration");
    m_lastElementOfName.resize(m_names.size());
    if (m_lastElementOfName[dwName] == m_nElements)
        throw std::runtime_error("the document holds an element with two attributes called " + Show(dwName));
    m_lastElementOfName[dwName] = m_nElements;
    m_events.push_back({EKind::Attribute, dwName, value});
}

void CDocument::AddText(SRange text)
{
    if (text.nLength != 0)
        m_events.push_back({EKind::Text, 0, text});
}

void CDocument::AppendText(std::string_view svText)
{
    const SRange text = Store(svText);
    // Nothing has been stored behind a text that came last.
    if (m_events.back().eKind == EKind::Text)
        m_events.back().range.nLength += text.nLength;
    else
        AddText(text);
}

void CDocument::EndElement()
{
    m_events.push_back({EKind::End, 0, {}});
}

std::string CDocument::Show(NameId dwName) const
{
    const SName& name = GetName(dwName);
    const std::string strNamespace = Quote(GetText(name.dwNamespace));
    return name.dwNamespace == s_dwNone
               ? name.strLocalName
               : name.strLocalName + " {" + strNamespace.substr(1, strNamespace.size() - 2) + '}';
}

} // namespace quiver_fi
