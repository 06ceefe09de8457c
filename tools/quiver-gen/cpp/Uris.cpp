#include "tools/quiver-gen/cpp/Uris.h"

#include "tools/quiver-gen/cpp/Text.h"

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
    : m_binding(binding)
    , m_strMain(std::move(strMain))
{
    for (const SNamespace& ns : m_binding.namespaces)
        m_filesOfSchemas.emplace(ns.strUri, ns.strFile);
}

std::string CUris::Use(const std::string& strUri)
{
    return strUri.empty() ? "L\"\"" : UseConstant(strUri);
}

std::string CUris::UseConstant(const std::string& strUri)
{
    const auto [it, bNew] = m_byUri.try_emplace(strUri, m_constants.size());
    if (bNew)
    {
        m_constants.emplace_back(strUri, MakeName(strUri));
        m_names.insert(m_constants.back().second);
    }
    return m_constants[it->second].second;
}

void CUris::CutTo(std::size_t nCount)
{
    for (; m_constants.size() > nCount; m_constants.pop_back())
    {
        m_byUri.erase(m_constants.back().first);
        m_names.erase(m_constants.back().second);
    }
    m_numbers.clear();
}

std::string CUris::MakeName(const std::string& strUri)
{
    std::string strName = "s_lpctNamespace";
    if (strUri == m_strMain)
        return strName;
    const auto it = m_filesOfSchemas.find(strUri);
    if (strUri.empty())
        strName = "s_lpctNoNamespace";
    else if (it != m_filesOfSchemas.end())
    {
        strName += '_';
        for (const char c : it->second)
            strName += IsIdentifierCharacter(c) ? c : '_';
    }
    const std::string strStem = strName;
    const auto IsTaken = [&]
    {
        return strName == "s_lpctNamespace" || m_names.count(strName) > 0;
    };
    // Names are never given up but in the order that they came in, so the search goes on where it ended.
    for (std::size_t& n = m_numbers.try_emplace(strStem, 2).first->second; IsTaken(); ++n)
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
