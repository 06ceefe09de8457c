#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace QvXmlLib9
{

/// Watches what a document type declares, and refuses it before the parser comes to use it where that would take stack
/// without end, or time out of proportion:
///
/// - The parser expands entities inside entities by recursion, in content, attribute values and defaults alike.
/// - It walks over all declared attributes of an element, once for each new one and once for each start tag.
///
/// Takes time linear in the declarations, times the logarithm of their count. Texts are UTF-8.
class CDoctypeGuard
{
public:
    /// More attributes than this are not taken for one element.
    static constexpr std::size_t s_nMaxAttributesOfElement = 1000;

    /// A general entity has been declared whose text stands in the declaration.
    /// @param text with character references already replaced.
    /// @throws CQvException "The entities of the document are nested too deeply to be processed" if the stack that the
    ///         calling thread has left might not do for the entities declared so far.
    void AddEntity(std::string_view name, std::string_view text);

    /// An attribute of an element has been declared.
    /// @throws CQvException "The document type declares more than 1000 attributes of one element".
    void AddAttribute(std::string_view element);

    /// How many prefixed names a start tag can have, at the most, that stands in one of the entities.
    std::size_t GetMostPrefixesOfEntity() const { return m_nMostPrefixesOfEntity; }

    /// The count of attributes of the element that has most.
    std::size_t GetMostAttributesOfElement() const { return m_nMostAttributesOfElement; }

private:
    struct SEntity
    {
        /// How many entities are open inside each other, this one included, if nothing is counted that is declared
        /// later; 0 for an entity that has been referred to and not declared.
        std::size_t nDepth = 0;
    };

    using CEntities = std::map<std::string, SEntity, std::less<>>;
    using CAttributeCounts = std::map<std::string, std::size_t, std::less<>>;

    std::size_t FindDeepestReference(std::string_view text);
    std::size_t AddReference(std::string_view name);

    CEntities m_entities;
    /// The depth of the deepest entity.
    std::size_t m_nDeepest = 0;
    /// The depths of the entities that were referred to ahead of their declaration, all together.
    std::size_t m_nForward = 0;
    CAttributeCounts m_attributeCounts;
    CAttributeCounts::iterator m_itLastElement = m_attributeCounts.end();
    std::size_t m_nMostPrefixesOfEntity = 0;
    std::size_t m_nMostAttributesOfElement = 0;
};

} // namespace QvXmlLib9
