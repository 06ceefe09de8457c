#pragma once

#include "tools/quiver-gen/binding/Binding.h"

#include <cstddef>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace quiver_gen::cpp
{

/// How declarations are spread over files.
enum class ESplit
{
    Namespace, ///< a header for each target namespace
    Type,      ///< a header for each type
    None       ///< one header
};

/// Declarations of one namespace that stand together, in the order in which they are printed.
struct SSection
{
    const binding::SNamespace* pNamespace = nullptr;
    std::vector<const binding::SSimpleType*> simpleTypes;
    std::vector<const binding::SClass*> classes;
};

/// A header.
struct SHeader
{
    std::string strStem;
    std::vector<SSection> sections;
    std::set<std::size_t> includes; ///< other headers, by index
};

/// What is defined in one source, or in several parts of one.
struct SSourceGroup
{
    std::string strStem;
    std::size_t nHeader = 0; ///< included first
    std::vector<SSection> sections;
};

/// Gives out names of files that differ on file systems which ignore case, too.
class CStems
{
public:
    /// @return the stem, or the same with a number behind it.
    std::string Claim(const std::string& strStem);

private:
    std::set<std::string> m_taken;
};

/// Which declaration stands where. Headers include each other without a circle: where namespaces need each other's
/// bases or simple types, theirs are split into layers, and the header with the namespace's name includes all of them.
class CLayout
{
public:
    /// @param strStem name of the only header of ESplit::None.
    /// @param stems has the names that are taken by other files.
    CLayout(const binding::SBinding& binding, ESplit eSplit, const std::string& strStem, CStems& stems);

    /// In an order in which each stands behind those that it includes.
    const std::vector<SHeader>& GetHeaders() const { return m_headers; }
    const std::vector<SSourceGroup>& GetSources() const { return m_sources; }

    std::size_t GetHeader(const binding::SSimpleType& type) const { return m_typeHeaders.at(&type); }
    std::size_t GetHeader(const binding::SClass& type) const { return m_places.at(&type).nHeader; }

    /// Whether the whole definition of a class is known where another one, or itself, is defined.
    bool IsComplete(const binding::SClass& type, const binding::SClass& where) const;

private:
    struct SClassPlace
    {
        std::size_t nHeader;
        std::size_t nOrdinal;
    };

    void SplitByNamespace(const binding::SBinding& binding, CStems& stems);
    void SplitByType(const binding::SBinding& binding, CStems& stems);
    void KeepTogether(const binding::SBinding& binding, const std::string& strStem, CStems& stems);
    void Index();
    void AddIncludes();

    std::vector<SHeader> m_headers;
    std::vector<SSourceGroup> m_sources;
    std::unordered_map<const binding::SSimpleType*, std::size_t> m_typeHeaders;
    std::unordered_map<const binding::SClass*, SClassPlace> m_places;
};

} // namespace quiver_gen::cpp
