#include "tools/quiver-gen/cpp/Sources.h"

#include "tools/quiver-gen/cpp/Classes.h"
#include "tools/quiver-gen/cpp/SimpleTypes.h"
#include "tools/quiver-gen/cpp/Text.h"

#include <algorithm>
#include <map>
#include <set>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

/// Prints the sections of one header.
class CHeaderPrinter
{
public:
    CHeaderPrinter(const SProject& project, const SHeader& header)
        : m_project(project)
        , m_header(header)
        , m_nHeader(static_cast<std::size_t>(&header - project.layout.GetHeaders().data()))
    {
    }

    std::string Print()
    {
        for (const SSection& section : m_header.sections)
        {
            ForwardForeign(section);
            m_strText += PrintNamespace(section.pNamespace->strCpp, PrintSection(section),
                                        m_documented.insert(section.pNamespace).second
                                            ? CommentLines(section.pNamespace->documentation, 0, "///")
                                            : std::string());
        }
        return std::move(m_strText);
    }

private:
    /// Classes that a section names before they are defined, in order of their first use.
    std::vector<const SClass*> FindForward(const SSection& section, bool bForeign) const
    {
        std::vector<const SClass*> forward;
        std::set<const SClass*> seen;
        for (const SClass* const pClass : section.classes)
        {
            for (const SField& field : GetFields(*pClass))
            {
                const SClass* const pUsed = field.pClass;
                if (pUsed == nullptr || field.bInherited ||
                    (pUsed->pNamespace->strCpp != section.pNamespace->strCpp) != bForeign)
                    continue;
                // A class that holds a collection of its own kind is complete there, but the collection has no name.
                const bool bCollection = pUsed == pClass && GetCollectionItem(field) != nullptr;
                if (m_project.layout.IsComplete(*pUsed, *pClass) && !bCollection)
                    continue;
                if (m_declared.count(pUsed) == 0 && seen.insert(pUsed).second)
                    forward.push_back(pUsed);
            }
        }
        return forward;
    }

    /// Declares a class, and the name of its collection if this header is where that is declared.
    std::string Forward(const SClass& type, const CScope& scope)
    {
        m_declared.insert(&type);
        return "class " + type.strName + ";\n" +
               (m_project.layout.GetHeader(type) == m_nHeader ? NameCollection(type, scope) : std::string());
    }

    /// `using CItemCol = CObjectCol<CItem>;`, unless it stands already or nobody uses it.
    std::string NameCollection(const SClass& type, const CScope& scope)
    {
        const std::string strName = m_project.names.GetCollectionName(type);
        if (strName.empty() || !m_project.usage.IsRepeated(type) || !m_collections.insert(&type).second)
            return {};
        return "using " + strName + " = " + GetCollectionType(type, scope) + ";\n";
    }

    void ForwardForeign(const SSection& section)
    {
        std::map<std::string, std::string> namespaces;
        for (const SClass* const pClass : FindForward(section, true))
        {
            const std::string& strCpp = pClass->pNamespace->strCpp;
            namespaces[strCpp] += Forward(*pClass, CScope(m_project.names, strCpp, false));
        }
        for (const auto& [strCpp, strText] : namespaces)
            m_strText += PrintNamespace(strCpp, strText);
    }

    std::string PrintSection(const SSection& section)
    {
        const CScope scope(m_project.names, section.pNamespace->strCpp, false);
        std::string strText;
        const auto Add = [&](const std::string& strPart)
        {
            strText += (strText.empty() || strPart.empty() ? "" : "\n") + strPart;
        };
        std::string strForward;
        for (const SClass* const pClass : FindForward(section, false))
            strForward += Forward(*pClass, scope);
        Add(strForward);
        for (const SSimpleType* const pType : section.simpleTypes)
            Add(DeclareSimpleType(*pType, scope));
        for (const SClass* const pClass : section.classes)
        {
            Add(DeclareClass(*pClass, GetPlace(*pClass, scope)));
            m_declared.insert(pClass);
            Add(NameCollection(*pClass, scope));
        }
        return strText;
    }

    SPlace GetPlace(const SClass& type, const CScope& scope) const
    {
        const CLayout& layout = m_project.layout;
        return {scope,
                m_project.names,
                m_project.usage,
                [&](const SClass& other) { return layout.IsComplete(other, type); },
                [&](const SClass& other)
                {
                    const std::size_t nOther = layout.GetHeader(other);
                    return nOther == m_nHeader ? m_collections.count(&other) != 0
                                               : m_header.includes.count(nOther) != 0;
                },
                m_project.options.bUtf8};
    }

    const SProject& m_project;
    const SHeader& m_header;
    const std::size_t m_nHeader;
    std::string m_strText;
    std::set<const SNamespace*> m_documented;
    std::set<const SClass*> m_declared;    ///< or defined
    std::set<const SClass*> m_collections; ///< whose collections have a name
};

} // namespace

std::string PrintTitle(const SWriteOptions& options)
{
    constexpr std::size_t nNamed = 3;
    std::string strSchemas;
    for (std::size_t n = 0; n < options.schemas.size() && n < nNamed; ++n)
        strSchemas += (n == 0 ? "" : ", ") + options.schemas[n];
    if (options.schemas.size() > nNamed)
        strSchemas += " and " + std::to_string(options.schemas.size() - nNamed) + " more";
    return CommentLines(
        {"Written by quiver-gen from " + strSchemas + ". What is changed here is lost at the next run."}, 0, "//");
}

std::string PrintIncludes(std::vector<std::string> headers)
{
    std::sort(headers.begin(), headers.end());
    headers.erase(std::unique(headers.begin(), headers.end()), headers.end());
    std::string strText;
    for (const std::string& strHeader : headers)
        strText += "#include \"" + strHeader + ".h\"\n";
    return strText;
}

std::string PrintNamespace(const std::string& strNamespace, const std::string& strText, const std::string& strComment)
{
    if (strText.empty())
        return {};
    if (strNamespace.empty())
        return '\n' + strText;
    return '\n' + strComment + "namespace " + strNamespace + "\n{\n\n" + strText + "\n} // namespace " + strNamespace +
           '\n';
}

std::string PrintRule(const std::string& strTitle)
{
    std::string strLine = "// --- " + strTitle + ' ';
    strLine.resize(std::max(strLine.size() + 3, s_nColumns), '-');
    return strLine + '\n';
}

std::string SFactory::DeclareNamedTypes(const std::string& strText) const
{
    if (strText.find(GetQualifiedNamedTypes()) == std::string::npos)
        return {};
    return PrintNamespace(strNamespace, "const QvXmlLib9::SNamedTypes& " + GetNamedTypes() + "();\n");
}

SFile PrintHeader(const SProject& project, const SHeader& header)
{
    std::vector<std::string> includes = {"quiver/generated/Generated"};
    for (const std::size_t nHeader : header.includes)
        includes.push_back(project.layout.GetHeaders()[nHeader].strStem);
    const std::string strText = CHeaderPrinter(project, header).Print();
    return {header.strStem + ".h", PrintTitle(project.options) + "\n#pragma once\n\n" + PrintIncludes(includes) +
                                       project.factory.DeclareNamedTypes(strText) + strText};
}

} // namespace quiver_gen::cpp
