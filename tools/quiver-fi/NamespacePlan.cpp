#include "tools/quiver-fi/NamespacePlan.h"

#include "tools/quiver-fi/TreeWriter.h"
#include "tools/quiver-fi/XmlNames.h"

#include <string_view>

using namespace QvXmlLib9;

namespace quiver_fi
{

namespace
{

constexpr std::wstring_view s_strXmlNamespace = L"http://www.w3.org/XML/1998/namespace";
constexpr std::wstring_view s_strXsiNamespace = L"http://www.w3.org/2001/XMLSchema-instance";
constexpr std::wstring_view s_strBlanks = L" \t\n\r";

/// The writers declare no namespace that begins like that of XML, and take declarations up to a zero unit, which a
/// damaged document can hold.
bool IsNeverDeclared(const std::wstring& strNamespace)
{
    return strNamespace.compare(0, s_strXmlNamespace.size(), s_strXmlNamespace) == 0 ||
           strNamespace.find(L'\0') != std::wstring::npos;
}

bool IsType(const CXmlAttribute& attribute)
{
    return attribute.GetLocalName() == L"type" && attribute.GetNamespaceURI() == s_strXsiNamespace;
}

} // namespace

CNamespacePlan::CNamespacePlan(CXmlDocument& document)
    : m_document(document)
    , m_strDefault(document.GetDocumentElement()->GetNamespaceURI())
    , m_taken{L"", L"xml", L"xmlns"}
{
    if (IsNeverDeclared(m_strDefault))
        m_strDefault.clear();
}

void CNamespacePlan::AddElement(CXmlElement& element)
{
    const std::wstring& strNamespace = element.GetNamespaceURI();
    // The default namespace would take in the names without one.
    if (strNamespace.empty())
        m_strDefault.clear();
    else if (m_seen.insert(&strNamespace).second && strNamespace != m_strDefault)
        AddNamespace(strNamespace);
    for (const CXmlAttribute* const pAttribute : element.GetAttributes())
    {
        if (!pAttribute->GetNamespaceURI().empty())
            AddNamespace(pAttribute->GetNamespaceURI());
        if (IsType(*pAttribute))
            AddTypeName(pAttribute->GetValue());
    }
}

void CNamespacePlan::AddNamespace(const std::wstring& strNamespace)
{
    if (!IsNeverDeclared(strNamespace) && m_known.insert(strNamespace).second)
        m_namespaces.push_back(strNamespace);
}

CNamespacePlan::STypeName CNamespacePlan::ReadTypeName(const std::wstring& strValue) const
{
    STypeName type;
    const std::size_t nFirst = strValue.find_first_not_of(s_strBlanks);
    if (nFirst == std::wstring::npos)
        return type;
    type.strName = strValue.substr(nFirst, strValue.find_last_not_of(s_strBlanks) + 1 - nFirst);
    const std::size_t nColon = type.strName.find(L':');
    if (nColon != std::wstring::npos)
    {
        type.strPrefix = type.strName.substr(0, nColon);
        type.strName.erase(0, nColon + 1);
    }
    type.strNamespace = m_document.LookupNamespaceFromAlias(type.strPrefix.c_str());
    return type;
}

void CNamespacePlan::AddTypeName(const std::wstring& strValue)
{
    const STypeName type = ReadTypeName(strValue);
    if (!type.strNamespace.empty())
    {
        if (type.strNamespace != m_strDefault)
            AddNamespace(type.strNamespace);
        if (IsNCName(type.strPrefix))
            m_wanted.emplace(type.strPrefix, type.strNamespace);
    }
    else if (type.strPrefix.empty())
    {
        m_strDefault.clear();
    }
}

bool CNamespacePlan::TakePrefix(const std::wstring& strPrefix, const std::wstring& strNamespace)
{
    if (m_known.count(strNamespace) == 0 || m_prefixes.count(strNamespace) != 0 || !m_taken.insert(strPrefix).second)
        return false;
    m_prefixes[strNamespace] = strPrefix;
    return true;
}

void CNamespacePlan::ChoosePrefixes()
{
    for (const auto& [strPrefix, strNamespace] : m_wanted)
        TakePrefix(strPrefix, strNamespace);
    TakePrefix(L"xsi", std::wstring(s_strXsiNamespace));
    TakePrefix(L"xs", L"http://www.w3.org/2001/XMLSchema");
    std::size_t nNumber = 0;
    for (const std::wstring& strNamespace : m_namespaces)
    {
        while (m_prefixes.count(strNamespace) == 0)
            TakePrefix(L"ns" + std::to_wstring(++nNumber), strNamespace);
    }
}

void CNamespacePlan::Declare(ITreeSink& sink)
{
    // The root's namespace was left out as long as it was to be the default.
    const CXmlElement* const pRoot = m_document.GetDocumentElement();
    if (m_strDefault.empty() && !pRoot->GetNamespaceURI().empty())
        AddNamespace(pRoot->GetNamespaceURI());
    ChoosePrefixes();
    if (!m_strDefault.empty())
        sink.DeclareDefaultNamespace(m_strDefault);
    for (const auto& [strNamespace, strPrefix] : m_prefixes)
        sink.DeclarePrefix(strPrefix, strNamespace);
}

const std::wstring& CNamespacePlan::GetValue(const CXmlAttribute& attribute, std::wstring& strBuffer) const
{
    if (!IsType(attribute))
        return attribute.GetValue();
    const STypeName type = ReadTypeName(attribute.GetValue());
    if (type.strNamespace == m_strDefault && !m_strDefault.empty())
        return strBuffer = type.strName;
    const auto itPrefix = m_prefixes.find(type.strNamespace);
    if (itPrefix == m_prefixes.end())
        return attribute.GetValue();
    return strBuffer = itPrefix->second + L':' + type.strName;
}

} // namespace quiver_fi
