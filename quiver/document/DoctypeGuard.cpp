#include "quiver/document/DoctypeGuard.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/StackGuard.h"

#include <algorithm>

namespace QvXmlLib9
{

namespace
{

/// What the parser's recursion takes for one entity inside another: about 350 bytes as distributions build it for 64
/// bits, more without optimisation.
constexpr std::size_t s_nStackOfEntity = 1024;

} // namespace

void CDoctypeGuard::AddEntity(std::string_view name, std::string_view text)
{
    const auto nColons = static_cast<std::size_t>(std::count(text.begin(), text.end(), ':'));
    m_nMostPrefixesOfEntity = std::max(m_nMostPrefixesOfEntity, nColons);

    const std::size_t nInside = FindDeepestReference(text);
    auto it = m_entities.find(name);
    const bool bForward = it != m_entities.end();
    if (!bForward)
        it = m_entities.emplace(name, SEntity()).first;
    it->second.nDepth = 1 + nInside;
    if (nInside == 0)
        return;

    // Which entities an entity leads to is known for sure only when all are declared, and defaults are expanded ahead
    // of that. But a path of open entities has each of them once; so it is no longer than the deepest of them, and
    // behind each reference that looks forward what the entity referred to has below it.
    m_nDeepest = std::max(m_nDeepest, 1 + nInside);
    if (bForward)
        m_nForward += 1 + nInside;
    if (m_nDeepest + m_nForward > GetUsableStackBytes() / s_nStackOfEntity)
        throw CQvException(L"The entities of the document are nested too deeply to be processed");
}

/// The depth of the deepest entity that a text refers to; one that is not declared yet counts as one without
/// references.
std::size_t CDoctypeGuard::FindDeepestReference(std::string_view text)
{
    std::size_t nDeepest = 0;
    for (std::size_t nAmpersand = text.find('&'); nAmpersand != text.npos; nAmpersand = text.find('&', nAmpersand + 1))
    {
        // An ampersand may stand for itself in a section, so not every one begins a reference.
        const std::size_t nEnd = text.find_first_of("&;#<> \t\r\n", nAmpersand + 1);
        if (nEnd != text.npos && text[nEnd] == ';')
            nDeepest = std::max(nDeepest, AddReference(text.substr(nAmpersand + 1, nEnd - nAmpersand - 1)));
    }
    return nDeepest;
}

std::size_t CDoctypeGuard::AddReference(std::string_view name)
{
    auto it = m_entities.find(name);
    if (it == m_entities.end())
        it = m_entities.emplace(name, SEntity()).first;
    return std::max<std::size_t>(it->second.nDepth, 1);
}

void CDoctypeGuard::AddAttribute(std::string_view element)
{
    // All attributes of one declaration come with the same element.
    if (m_itLastElement == m_attributeCounts.end() || m_itLastElement->first != element)
    {
        m_itLastElement = m_attributeCounts.find(element);
        if (m_itLastElement == m_attributeCounts.end())
            m_itLastElement = m_attributeCounts.emplace(element, 0).first;
    }
    std::size_t& nCount = m_itLastElement->second;
    ++nCount;
    m_nMostAttributesOfElement = std::max(m_nMostAttributesOfElement, nCount);
    if (nCount > s_nMaxAttributesOfElement)
    {
        throw CQvException(FormatString(L"The document type declares more than %d attributes of one element",
                                        static_cast<int>(s_nMaxAttributesOfElement)));
    }
}

} // namespace QvXmlLib9
