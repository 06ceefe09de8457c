#pragma once

#include "tools/quiver-gen/schema/Components.h"
#include "tools/quiver-gen/schema/Diagnostics.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quiver_gen::schema
{

struct SNode;

/// Where schema documents are that are named by a URI: what the caller says, and what OASIS XML catalogs say.
class CLocations
{
public:
    /// Places a URI in a file, before any catalog.
    void Add(const std::string& strUri, const std::string& strPath);

    /// Reads a catalog and those it names as its next. Known entries: uri, system, public, rewriteURI, rewriteSystem,
    /// group, nextCatalog; xml:base.
    void ReadCatalog(const std::string& strPath, SSchemaSet& set, CDiagnostics& diagnostics);

    /// The path that a URI is placed at, if it is placed at all.
    std::optional<std::string> Find(const std::string& strUri) const;

private:
    /// @return paths of the next catalogs.
    std::vector<std::string> ReadOneCatalog(const std::string& strPath, SSchemaSet& set, CDiagnostics& diagnostics);
    void AddEntry(const SNode& node, const std::string& strBase);

    std::unordered_map<std::string, std::string> m_places;
    std::vector<std::pair<std::string, std::string>> m_rewrites; ///< start of the URI, what replaces it
};

/// Whether a location names something that cannot be on this disk: a URI with a scheme other than `file`.
bool IsElsewhere(std::string_view svLocation);

/// The path of a location that is written in a file: `file:` and percent escapes undone, relative to the file's folder.
std::string ResolveLocation(std::string_view svLocation, std::string_view svFromFile);

enum class EReadResult
{
    Done,
    Missing,
    Directory,
    Unreadable
};

/// Reads a whole file.
EReadResult ReadFile(const std::string& strPath, std::string& strBytes);

/// Why a file was not read, as the end of a sentence about it.
std::string_view DescribeFailure(EReadResult eResult);

} // namespace quiver_gen::schema
