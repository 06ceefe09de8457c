#include "tools/quiver-gen/cpp/Layout.h"

#include "tools/quiver-gen/cpp/Dependencies.h"

#include <map>

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

std::string ToLower(std::string strText)
{
    for (char& c : strText)
    {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
    }
    return strText;
}

SSection MakeSection(const SLayer& layer)
{
    return {layer.pNamespace, layer.simpleTypes, layer.classes};
}

} // namespace

std::string CStems::Claim(const std::string& strStem)
{
    std::string strName = strStem;
    for (int n = 2; !m_taken.insert(ToLower(strName)).second; ++n)
        strName = strStem + '_' + std::to_string(n);
    return strName;
}

CLayout::CLayout(const SBinding& binding, ESplit eSplit, const std::string& strStem, CStems& stems)
{
    switch (eSplit)
    {
    case ESplit::Namespace:
        SplitByNamespace(binding, stems);
        break;
    case ESplit::Type:
        SplitByType(binding, stems);
        break;
    case ESplit::None:
        KeepTogether(binding, strStem, stems);
        break;
    }
    Index();
    AddIncludes();
}

void CLayout::SplitByNamespace(const SBinding& binding, CStems& stems)
{
    const std::vector<SLayer> layers = FindLayers(binding);
    std::map<const SNamespace*, std::vector<std::size_t>> headers;
    for (std::size_t n = 0; n < layers.size(); ++n)
    {
        headers[layers[n].pNamespace].push_back(n);
        m_headers.push_back({{}, {MakeSection(layers[n])}, {}});
    }
    for (const SNamespace& ns : binding.namespaces)
    {
        const auto it = headers.find(&ns);
        if (it == headers.end())
            continue;
        SSourceGroup source;
        source.strStem = stems.Claim(ns.strFile);
        source.nHeader = it->second.front();
        if (it->second.size() == 1)
            m_headers[source.nHeader].strStem = source.strStem;
        else
        {
            source.nHeader = m_headers.size();
            m_headers.push_back({source.strStem, {}, {it->second.begin(), it->second.end()}});
        }
        std::size_t nLayer = 0;
        for (const std::size_t nHeader : it->second)
        {
            if (nLayer > 0)
                m_headers[nHeader].includes.insert(it->second[nLayer - 1]);
            if (m_headers[nHeader].strStem.empty())
                m_headers[nHeader].strStem = stems.Claim(ns.strFile + "_layer" + std::to_string(nLayer + 1));
            ++nLayer;
        }
        source.sections.push_back(
            {&ns, {ns.simpleTypes.begin(), ns.simpleTypes.end()}, {ns.classes.begin(), ns.classes.end()}});
        m_sources.push_back(std::move(source));
    }
}

void CLayout::SplitByType(const SBinding& binding, CStems& stems)
{
    std::map<const SNamespace*, std::pair<std::string, std::set<std::size_t>>> umbrellas;
    for (const SNamespace& ns : binding.namespaces)
        umbrellas[&ns].first = stems.Claim(ns.strFile);
    const auto Add = [&](SSection section, const std::string& strName)
    {
        const std::string strStem = stems.Claim(section.pNamespace->strFile + '_' + strName);
        umbrellas[section.pNamespace].second.insert(m_headers.size());
        m_sources.push_back({strStem, m_headers.size(), {section}});
        m_headers.push_back({strStem, {std::move(section)}, {}});
    };
    for (const SLayer& layer : FindLayers(binding))
    {
        for (const SSimpleType* const pType : layer.simpleTypes)
            Add({layer.pNamespace, {pType}, {}}, pType->strName);
        for (const SClass* const pClass : layer.classes)
            Add({layer.pNamespace, {}, {pClass}}, pClass->strName);
    }
    for (const SNamespace& ns : binding.namespaces)
    {
        if (!umbrellas[&ns].second.empty())
            m_headers.push_back({umbrellas[&ns].first, {}, umbrellas[&ns].second});
    }
}

void CLayout::KeepTogether(const SBinding& binding, const std::string& strStem, CStems& stems)
{
    SHeader header;
    SSourceGroup source;
    header.strStem = source.strStem = stems.Claim(strStem);
    for (const SLayer& layer : FindLayers(binding))
        header.sections.push_back(MakeSection(layer));
    source.sections = header.sections;
    m_headers.push_back(std::move(header));
    m_sources.push_back(std::move(source));
}

void CLayout::Index()
{
    for (std::size_t nHeader = 0; nHeader < m_headers.size(); ++nHeader)
    {
        std::size_t nOrdinal = 0;
        for (const SSection& section : m_headers[nHeader].sections)
        {
            for (const SSimpleType* const pType : section.simpleTypes)
                m_typeHeaders.emplace(pType, nHeader);
            for (const SClass* const pClass : section.classes)
                m_places.emplace(pClass, SClassPlace{nHeader, nOrdinal++});
        }
    }
}

void CLayout::AddIncludes()
{
    for (std::size_t nHeader = 0; nHeader < m_headers.size(); ++nHeader)
    {
        std::set<std::size_t>& includes = m_headers[nHeader].includes;
        const auto AddType = [&](const SSimpleType& type)
        {
            includes.insert(GetHeader(type));
        };
        const auto AddClass = [&](const SClass& type)
        {
            includes.insert(GetHeader(type));
        };
        for (const SSection& section : m_headers[nHeader].sections)
        {
            for (const SSimpleType* const pType : section.simpleTypes)
                ForEachNeeded(*pType, AddType);
            for (const SClass* const pClass : section.classes)
                ForEachNeeded(*pClass, AddType, AddClass);
        }
        includes.erase(nHeader);
    }
}

bool CLayout::IsComplete(const SClass& type, const SClass& where) const
{
    const SClassPlace& place = m_places.at(&type);
    const SClassPlace& here = m_places.at(&where);
    if (place.nHeader == here.nHeader)
        return place.nOrdinal <= here.nOrdinal;
    return m_headers[here.nHeader].includes.count(place.nHeader) != 0;
}

} // namespace quiver_gen::cpp
