#include "tools/quiver-gen/cpp/Sources.h"

#include "tools/quiver-gen/cpp/Classes.h"
#include "tools/quiver-gen/cpp/Dependencies.h"
#include "tools/quiver-gen/cpp/SimpleTypes.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <set>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

std::size_t CountLines(const std::string& strText)
{
    return static_cast<std::size_t>(std::count(strText.begin(), strText.end(), '\n'));
}

/// Collects definitions, and closes a source where it is long enough.
class CSourcePrinter
{
public:
    CSourcePrinter(const SProject& project, const SSourceGroup& group)
        : m_project(project)
        , m_group(group)
    {
    }

    /// @param nLines a source with more is closed.
    void Print(std::size_t nLines)
    {
        m_nLimit = nLines;
        for (const SSection& section : m_group.sections)
        {
            const CScope scope(m_project.names, section.pNamespace->strCpp, true);
            for (const SSimpleType* const pType : section.simpleTypes)
                AddSimpleType(*pType, scope);
            for (const SClass* const pClass : section.classes)
                AddClass(*pClass, scope);
        }
        Close();
    }

    std::vector<std::string> TakeTexts() { return std::move(m_texts); }

private:
    /// Definitions of one namespace in the present source.
    struct SPart
    {
        std::string strNamespace;
        CUris uris;
        std::string strText;
    };

    void AddSimpleType(const SSimpleType& type, const CScope& scope)
    {
        Add(*type.pNamespace, [&](CUris&) { return DefineSimpleType(type, scope); });
        ForEachUsed(type, [&](const SSimpleType& used) { m_includes.insert(m_project.layout.GetHeader(used)); });
    }

    void AddClass(const SClass& type, const CScope& scope)
    {
        const CLayout& layout = m_project.layout;
        const auto Always = [](const SClass&)
        {
            return true;
        };
        const bool bUtf8 = m_project.options.bUtf8;
        const SPlace source{scope, m_project.names, m_project.usage, Always, Always, bUtf8};
        const SPlace header{scope,           m_project.names,
                            m_project.usage, [&](const SClass& other) { return layout.IsComplete(other, type); },
                            Always,          bUtf8};
        Add(*type.pNamespace,
            [&](CUris& uris)
            {
                return PrintRule(type.strName) + '\n' +
                       DefineClass(type, source, header, m_project.factory.GetQualifiedKnown(), uris);
            });
        m_bClasses = true;
        ForEachUsed(
            type, [&](const SSimpleType& used) { m_includes.insert(layout.GetHeader(used)); },
            [&](const SClass& used) { m_includes.insert(layout.GetHeader(used)); });
    }

    /// @param Define may be called twice: what it prints depends on the source.
    void Add(const SNamespace& ns, const std::function<std::string(CUris&)>& Define)
    {
        // The namespaces that a text names are known when it is printed, so one that opens a new source is printed
        // again there.
        SPart* pPart = &GetPart(ns);
        const std::size_t nBefore = pPart->uris.GetCount();
        std::string strText = Define(pPart->uris);
        if (m_nLines > 0 && m_nLines + CountLines(strText) > m_nLimit)
        {
            pPart->uris.CutTo(nBefore);
            Close();
            pPart = &GetPart(ns);
            strText = Define(pPart->uris);
        }
        pPart->strText += (pPart->strText.empty() ? "" : "\n") + strText;
        m_bKnown = m_bKnown || strText.find('&' + m_project.factory.GetQualifiedKnown() + ',') != std::string::npos;
        m_nLines += CountLines(strText) + 1;
    }

    SPart& GetPart(const SNamespace& ns)
    {
        for (SPart& part : m_parts)
        {
            if (part.strNamespace == ns.strCpp)
                return part;
        }
        m_parts.push_back({ns.strCpp, CUris(m_project.binding, ns.strUri), {}});
        return m_parts.back();
    }

    void Close()
    {
        m_includes.erase(m_group.nHeader);
        std::vector<std::string> includes;
        for (const std::size_t nHeader : m_includes)
            includes.push_back(m_project.layout.GetHeaders()[nHeader].strStem);
        const std::string strIncludes = PrintIncludes(includes);
        std::string strText = PrintTitle(m_project.options) + '\n' +
                              PrintIncludes({m_project.layout.GetHeaders()[m_group.nHeader].strStem}) +
                              (strIncludes.empty() ? "" : "\n") + strIncludes;
        if (m_bKnown)
            strText += PrintNamespace(m_project.factory.strNamespace, "extern const QvXmlLib9::SKnownDeclarations " +
                                                                          m_project.factory.GetKnown() + ";\n");
        if (!m_parts.empty())
            strText += "\nusing namespace QvXmlLib9;\n";
        if (m_bClasses)
            strText += "using namespace QvXmlLib9Data;\n";
        for (const SPart& part : m_parts)
        {
            const std::string strUris = part.uris.Define();
            strText += PrintNamespace(part.strNamespace, strUris + (strUris.empty() ? "" : "\n") + part.strText);
        }
        m_texts.push_back(std::move(strText));
        m_parts.clear();
        m_includes.clear();
        m_nLines = 0;
        m_bClasses = false;
        m_bKnown = false;
    }

    const SProject& m_project;
    const SSourceGroup& m_group;
    std::vector<std::string> m_texts;
    std::size_t m_nLimit = 0;
    std::size_t m_nLines = 0;
    std::deque<SPart> m_parts;
    std::set<std::size_t> m_includes;
    bool m_bClasses = false;
    bool m_bKnown = false;
};

std::vector<std::string> PrintTexts(const SProject& project, const SSourceGroup& group, std::size_t nLines)
{
    CSourcePrinter printer(project, group);
    printer.Print(nLines);
    return printer.TakeTexts();
}

/// As many sources as were asked for, of about the same length, the last ones with nothing if there is too little.
std::vector<std::string> PrintFixedParts(const SProject& project, const SSourceGroup& group)
{
    const std::size_t nParts = project.options.nParts;
    const std::vector<std::string> whole = PrintTexts(project, group, static_cast<std::size_t>(-1));
    if (nParts == 1)
        return whole;
    // A class is never divided, so the even share may be a little too small.
    std::size_t nLines = CountLines(whole.front()) / nParts + 1;
    std::vector<std::string> texts = PrintTexts(project, group, nLines);
    while (texts.size() > nParts)
    {
        nLines += nLines / 16 + 1;
        texts = PrintTexts(project, group, nLines);
    }
    const SSourceGroup nothing{group.strStem, group.nHeader, {}};
    while (texts.size() < nParts)
        texts.push_back(PrintTexts(project, nothing, nLines).front());
    return texts;
}

} // namespace

std::vector<SFile> PrintSources(const SProject& project, const SSourceGroup& group, CStems& stems)
{
    const bool bFixed = project.options.eSplit == ESplit::None;
    std::vector<std::string> texts =
        bFixed ? PrintFixedParts(project, group) : PrintTexts(project, group, s_nLinesOfSource);
    std::vector<SFile> files;
    if (texts.size() == 1)
        files.push_back({group.strStem + ".cpp", std::move(texts.front())});
    else
    {
        for (std::size_t n = 0; n < texts.size(); ++n)
            files.push_back({stems.Claim(group.strStem + '_' + std::to_string(n + 1)) + ".cpp", std::move(texts[n])});
    }
    return files;
}

} // namespace quiver_gen::cpp
