#include "tools/quiver-gen/binding/Namespaces.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace quiver_gen::binding
{

namespace
{

/// Parts of a URI that tell nothing where something else is left.
bool IsEmptyWord(const std::string& strPart)
{
    static constexpr std::string_view s_words[] = {"schema", "schemas",   "xsd",        "xmlns",   "ns",
                                                   "ns1",    "namespace", "namespaces", "document"};
    return std::find(std::begin(s_words), std::end(s_words), ToLower(strPart)) != std::end(s_words);
}

/// `1.1`, `v2`, `2010-05`: a version or a date.
bool IsVersion(const std::string& strPart)
{
    std::size_t n = strPart.size() > 1 && (strPart[0] == 'v' || strPart[0] == 'V') ? 1 : 0;
    return std::all_of(strPart.begin() + static_cast<std::ptrdiff_t>(n), strPart.end(),
                       [](char c) { return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_'; });
}

std::vector<std::string> Split(std::string_view svText, std::string_view svSeparators)
{
    std::vector<std::string> parts;
    while (!svText.empty())
    {
        const std::size_t nEnd = std::min(svText.find_first_of(svSeparators), svText.size());
        if (nEnd > 0)
            parts.emplace_back(svText.substr(0, nEnd));
        svText.remove_prefix(std::min(nEnd + 1, svText.size()));
    }
    return parts;
}

/// The name of a host that people know it by: `example` of `www.example.com`.
std::string NameOfHost(const std::string& strHost)
{
    const std::vector<std::string> labels = Split(strHost.substr(0, strHost.find(':')), ".");
    if (labels.empty())
        return {};
    const bool bPrefix = labels.size() > 2 && (labels[0] == "www" || labels[0] == "schemas" || labels[0] == "xml");
    return labels[bPrefix ? 1 : 0];
}

/// What a URI says, from the general to the special: the host's name first, if it has one.
std::vector<std::string> PartsOf(const std::string& strUri)
{
    const std::size_t nHost = strUri.find("://");
    if (nHost == std::string::npos)
    {
        std::vector<std::string> parts = Split(strUri, ":/#?");
        if (parts.size() > 1 && (parts[0] == "urn" || parts[0] == "tag"))
            parts.erase(parts.begin());
        return parts;
    }
    const std::string strRest = strUri.substr(nHost + 3);
    const std::size_t nPath = std::min(strRest.find_first_of("/#?"), strRest.size());
    std::vector<std::string> parts = Split(std::string_view(strRest).substr(nPath), "/#?:");
    parts.insert(parts.begin(), NameOfHost(strRest.substr(0, nPath)));
    return parts;
}

std::string StemOfPath(const std::string& strPath)
{
    const std::size_t nSlash = strPath.find_last_of("/\\");
    const std::string strFile = nSlash == std::string::npos ? strPath : strPath.substr(nSlash + 1);
    return strFile.substr(0, strFile.rfind('.'));
}

} // namespace

std::string NameOfUri(const std::string& strUri, int nWords)
{
    if (strUri == schema::s_svXmlNamespace)
        return "xml";
    std::vector<std::string> parts = PartsOf(strUri);
    std::vector<std::string> taken;
    while (!parts.empty() && nWords > 0)
    {
        const std::string strPart = parts.back();
        parts.pop_back();
        const bool bAlone = parts.empty() && taken.empty();
        if (IsEmptyWord(strPart) && !bAlone && !parts.empty())
            continue;
        taken.insert(taken.begin(), strPart);
        if (!IsVersion(strPart))
            --nWords;
    }
    std::string strName;
    for (const std::string& strPart : taken)
        strName += (strName.empty() ? "" : "_") + strPart;
    return ToNamespacePart(strName);
}

CNamespaces::CNamespaces(const schema::SSchemaSet& set, const SBindingOptions& options, SBinding& binding)
    : m_set(set)
    , m_options(options)
    , m_binding(binding)
{
    // Other generated files go by these names.
    for (const char* lpctName : {"Roots", "main", "con", "prn", "aux", "nul", "CMakeLists", "Factory"})
        m_files.Add(lpctName);
    for (const auto& [strUri, strCpp] : options.namespaces)
        m_cppNames.Add(strCpp);
}

SNamespace& CNamespaces::Get(const std::string& strUri)
{
    SNamespace*& pNamespace = m_byUri[strUri];
    if (!pNamespace)
    {
        pNamespace = &m_binding.namespaces.emplace_back();
        pNamespace->strUri = strUri;
        pNamespace->strCpp = ChooseName(strUri);
        pNamespace->strFile = ChooseFile(pNamespace->strCpp);
    }
    return *pNamespace;
}

CNameScope& CNamespaces::GetTypeNames(const SNamespace& item)
{
    return m_typeNames.try_emplace(item.strCpp, CNameScope::ECase::Blind).first->second;
}

std::string CNamespaces::ChooseName(const std::string& strUri)
{
    for (const auto& [strGiven, strCpp] : m_options.namespaces)
        if (strGiven == strUri)
            return strCpp;
    if (strUri.empty())
        return m_cppNames.AddUnique(NameWithoutUri());
    std::string strName = NameOfUri(strUri);
    for (int nWords = 2; m_cppNames.Contains(strName) && nWords < 4; ++nWords)
        strName = NameOfUri(strUri, nWords);
    return m_cppNames.AddUnique(strName);
}

std::string CNamespaces::NameWithoutUri() const
{
    for (const schema::SFile& file : m_set.files)
        if (file.bGiven && file.strTargetNamespace.empty())
            return ToNamespacePart(StemOfPath(file.strPath));
    return "schema";
}

std::string CNamespaces::ChooseFile(const std::string& strCpp)
{
    return m_files.AddUnique(ToPascal(strCpp));
}

} // namespace quiver_gen::binding
