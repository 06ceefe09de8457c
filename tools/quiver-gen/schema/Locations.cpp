#include "tools/quiver-gen/schema/Locations.h"

#include "tools/quiver-gen/schema/Reader.h"
#include "tools/quiver-gen/schema/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unordered_set>

namespace quiver_gen::schema
{

namespace
{

constexpr std::string_view s_svCatalogNamespace = "urn:oasis:names:tc:entity:xmlns:xml:catalog";

constexpr bool IsAlpha(char ch)
{
    return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z');
}

/// Length of the scheme of a URI without its colon; 0 for none. One letter is a drive.
std::size_t GetSchemeLength(std::string_view svUri)
{
    if (svUri.empty() || !IsAlpha(svUri.front()))
        return 0;
    const std::size_t nEnd = std::min(
        svUri.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-"), svUri.size());
    return nEnd > 1 && nEnd < svUri.size() && svUri[nEnd] == ':' ? nEnd : 0;
}

bool IsFileScheme(std::string_view svUri)
{
    const std::size_t nLength = GetSchemeLength(svUri);
    std::string strScheme(svUri.substr(0, nLength));
    std::transform(strScheme.begin(), strScheme.end(), strScheme.begin(),
                   [](char ch) { return static_cast<char>(ch | 0x20); });
    return strScheme == "file";
}

int GetHexDigit(char ch)
{
    constexpr std::string_view svDigits = "0123456789abcdef";
    const std::size_t nDigit = svDigits.find(ch >= 'A' && ch <= 'F' ? static_cast<char>(ch | 0x20) : ch);
    return nDigit == std::string_view::npos ? -1 : static_cast<int>(nDigit);
}

std::string DecodePercents(std::string_view svText)
{
    std::string strResult;
    for (std::size_t n = 0; n < svText.size(); ++n)
    {
        const bool bEscape = svText[n] == '%' && n + 2 < svText.size();
        const int nHigh = bEscape ? GetHexDigit(svText[n + 1]) : -1;
        const int nLow = bEscape ? GetHexDigit(svText[n + 2]) : -1;
        // A null character would end the path for the system, but not for us.
        if (nHigh < 0 || nLow < 0 || nHigh + nLow == 0)
        {
            strResult += svText[n];
            continue;
        }
        strResult += static_cast<char>(nHigh * 16 + nLow);
        n += 2;
    }
    return strResult;
}

/// What stands behind `file:` and the empty or local host.
std::string_view StripFileScheme(std::string_view svUri)
{
    svUri.remove_prefix(std::string_view("file:").size());
    if (svUri.substr(0, 2) != "//")
        return svUri;
    svUri.remove_prefix(2);
    const std::size_t nPath = svUri.find('/');
    svUri.remove_prefix(std::min(nPath, svUri.size()));
    // A drive follows the slash.
    if (svUri.size() > 2 && IsAlpha(svUri[1]) && svUri[2] == ':')
        svUri.remove_prefix(1);
    return svUri;
}

/// The folder of a path with the separator at its end.
std::string_view GetFolder(std::string_view svPath)
{
#ifdef _WIN32
    const std::size_t nEnd = svPath.find_last_of("/\\");
#else
    const std::size_t nEnd = svPath.rfind('/');
#endif
    return nEnd == std::string_view::npos ? std::string_view() : svPath.substr(0, nEnd + 1);
}

/// What one entry of a catalog needs: the attribute with what it is about, and the one with the place.
struct SEntryKind
{
    std::string_view svElement;
    std::string_view svSubject;
    std::string_view svPlace;
    bool bRewrite;
};

constexpr SEntryKind s_entryKinds[] = {
    {"uri", "name", "uri", false},
    {"system", "systemId", "uri", false},
    {"public", "publicId", "uri", false},
    {"rewriteURI", "uriStartString", "rewritePrefix", true},
    {"rewriteSystem", "systemIdStartString", "rewritePrefix", true},
};

const std::string* FindBase(const SNode& node)
{
    for (const SNodeAttribute& attribute : node.attributes)
        if (attribute.strLocal == "base" && attribute.strNamespace == s_svXmlNamespace)
            return &attribute.strValue;
    return nullptr;
}

struct SEntry
{
    const SNode* pNode;
    std::string strBase; ///< a path that the entry's places are relative to
};

} // namespace

void CLocations::Add(const std::string& strUri, const std::string& strPath)
{
    m_places.emplace(strUri, strPath);
}

void CLocations::ReadCatalog(const std::string& strPath, SSchemaSet& set, CDiagnostics& diagnostics)
{
    std::vector<std::string> catalogs{strPath};
    std::unordered_set<std::string> known{strPath};
    for (std::size_t n = 0; n < catalogs.size(); ++n)
        for (std::string& strNext : ReadOneCatalog(std::string(catalogs[n]), set, diagnostics))
            if (known.insert(strNext).second)
                catalogs.push_back(std::move(strNext));
    // The longest start that fits decides.
    std::stable_sort(m_rewrites.begin(), m_rewrites.end(),
                     [](const auto& a, const auto& b) { return a.first.size() > b.first.size(); });
}

std::vector<std::string> CLocations::ReadOneCatalog(const std::string& strPath, SSchemaSet& set,
                                                    CDiagnostics& diagnostics)
{
    std::string strBytes;
    const EReadResult eResult = ReadFile(strPath, strBytes);
    if (eResult != EReadResult::Done)
    {
        diagnostics.AddError({}, "the catalog '" + strPath + "' " + std::string(DescribeFailure(eResult)));
        return {};
    }
    SFile& file = set.files.emplace_back();
    file.strPath = strPath;
    file.bCatalog = true;
    const int nFile = static_cast<int>(set.files.size()) - 1;
    const STree tree = ReadTree(strBytes, nFile, set.scopes, diagnostics);
    if (!tree.bComplete)
        return {};
    const SNode& root = *tree.pRoot;
    if (root.strLocal != "catalog" || root.strNamespace != s_svCatalogNamespace)
    {
        diagnostics.AddError({nFile, root.nLine, root.nColumn}, "this is not an OASIS XML catalog");
        return {};
    }
    std::vector<std::string> nextCatalogs;
    std::vector<SEntry> entries{{&root, strPath}};
    for (std::size_t n = 0; n < entries.size(); ++n)
    {
        const SNode& node = *entries[n].pNode;
        const std::string* pBase = FindBase(node);
        const std::string strBase = pBase ? ResolveLocation(*pBase, entries[n].strBase) : entries[n].strBase;
        for (const SNode* pChild : node.children)
            entries.push_back({pChild, strBase});
        AddEntry(node, strBase);
        if (node.strLocal == "nextCatalog" && node.Find("catalog"))
            nextCatalogs.push_back(ResolveLocation(*node.Find("catalog"), strBase));
    }
    return nextCatalogs;
}

void CLocations::AddEntry(const SNode& node, const std::string& strBase)
{
    for (const SEntryKind& kind : s_entryKinds)
    {
        const std::string* pSubject = node.strLocal == kind.svElement ? node.Find(kind.svSubject) : nullptr;
        const std::string* pPlace = pSubject ? node.Find(kind.svPlace) : nullptr;
        if (!pPlace || IsElsewhere(*pPlace))
            continue;
        if (kind.bRewrite)
            m_rewrites.emplace_back(*pSubject, ResolveLocation(*pPlace, strBase));
        else
            Add(*pSubject, ResolveLocation(*pPlace, strBase));
    }
}

std::optional<std::string> CLocations::Find(const std::string& strUri) const
{
    if (const auto it = m_places.find(strUri); it != m_places.end())
        return it->second;
    for (const auto& [strStart, strPrefix] : m_rewrites)
        if (strUri.compare(0, strStart.size(), strStart) == 0)
            return strPrefix + DecodePercents(std::string_view(strUri).substr(strStart.size()));
    return std::nullopt;
}

bool IsElsewhere(std::string_view svLocation)
{
    return GetSchemeLength(svLocation) > 0 && !IsFileScheme(svLocation);
}

std::string ResolveLocation(std::string_view svLocation, std::string_view svFromFile)
{
    std::string strPath = DecodePercents(IsFileScheme(svLocation) ? StripFileScheme(svLocation) : svLocation);
    if (std::filesystem::u8path(strPath).is_absolute())
        return strPath;
    return std::string(GetFolder(svFromFile)) + strPath;
}

EReadResult ReadFile(const std::string& strPath, std::string& strBytes)
{
    std::error_code error;
    const std::filesystem::path path = std::filesystem::u8path(strPath);
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return EReadResult::Missing;
    if (std::filesystem::is_directory(status))
        return EReadResult::Directory;
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return EReadResult::Unreadable;
    constexpr std::size_t nPiece = 1 << 16;
    do
    {
        const std::size_t nSize = strBytes.size();
        strBytes.resize(nSize + nPiece);
        stream.read(strBytes.data() + nSize, static_cast<std::streamsize>(nPiece));
        strBytes.resize(nSize + static_cast<std::size_t>(stream.gcount()));
    } while (stream);
    return stream.bad() ? EReadResult::Unreadable : EReadResult::Done;
}

std::string_view DescribeFailure(EReadResult eResult)
{
    switch (eResult)
    {
    case EReadResult::Done:
        return "was read";
    case EReadResult::Missing:
        return "does not exist";
    case EReadResult::Directory:
        return "is a folder";
    case EReadResult::Unreadable:
        break;
    }
    return "cannot be read";
}

} // namespace quiver_gen::schema
