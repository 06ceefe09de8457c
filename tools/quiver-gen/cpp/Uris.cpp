#include "tools/quiver-gen/cpp/Uris.h"

#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

bool IsIdentifierCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace

CUris::CUris(const SBinding& binding, std::string strMain)
    : m_pBinding(&binding)
    , m_strMain(std::move(strMain))
{
}

std::string CUris::Use(const std::string& strUri)
{
    return strUri.empty() ? "L\"\"" : UseConstant(strUri);
}

std::string CUris::UseConstant(const std::string& strUri)
{
    const auto it = std::find_if(m_constants.begin(), m_constants.end(),
                                 [&](const auto& constant) { return constant.first == strUri; });
    if (it != m_constants.end())
        return it->second;
    m_constants.emplace_back(strUri, MakeName(strUri));
    return m_constants.back().second;
}

std::string CUris::MakeName(const std::string& strUri) const
{
    std::string strName = "s_lpctNamespace";
    if (strUri == m_strMain)
        return strName;
    const auto pNamespace = std::find_if(m_pBinding->namespaces.begin(), m_pBinding->namespaces.end(),
                                         [&](const SNamespace& ns) { return ns.strUri == strUri; });
    if (strUri.empty())
        strName = "s_lpctNoNamespace";
    else if (pNamespace != m_pBinding->namespaces.end())
    {
        strName += '_';
        for (const char c : pNamespace->strFile)
            strName += IsIdentifierCharacter(c) ? c : '_';
    }
    const std::string strStem = strName;
    const auto IsTaken = [&]
    {
        return strName == "s_lpctNamespace" ||
               std::any_of(m_constants.begin(), m_constants.end(),
                           [&](const auto& constant) { return constant.second == strName; });
    };
    for (int n = 2; IsTaken(); ++n)
        strName = strStem + std::to_string(n);
    return strName;
}

std::string CUris::Define() const
{
    if (m_constants.empty())
        return {};
    std::string strText = "namespace\n{\n";
    for (const auto& [strUri, strName] : m_constants)
        strText += Arrange(0, "constexpr wchar_t " + strName + "[] = ", {WideLiteral(strUri)}, ";") + '\n';
    return strText + "} // namespace\n";
}

} // namespace quiver_gen::cpp
