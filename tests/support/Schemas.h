#pragma once

#include "tests/support/Files.h"
#include "tools/quiver-gen/schema/Dump.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace QvTest
{

/// Schemas written to a folder of their own and loaded from there. In all texts the folder's name is left out.
class CLoadedSchemas
{
public:
    using CFiles = std::vector<std::pair<std::string, std::string>>;

    /// @param files names and contents; the first is what is loaded.
    /// @param options catalogs and paths of locations are names in the folder.
    explicit CLoadedSchemas(const CFiles& files, quiver_gen::schema::SLoadOptions options = {})
    {
        for (const auto& [strName, strText] : files)
        {
            std::filesystem::create_directories(m_dir.PathOf(strName).parent_path());
            WriteFileBytes(m_dir.PathOf(strName), strText);
        }
        if (options.schemas.empty())
            options.schemas.push_back(files.front().first);
        for (std::string& strSchema : options.schemas)
            strSchema = PathOf(strSchema);
        for (std::string& strCatalog : options.catalogs)
            strCatalog = PathOf(strCatalog);
        for (auto& [strUri, strPath] : options.locations)
            strPath = PathOf(strPath);
        m_bLoaded = LoadSchemas(options, m_set, m_diagnostics);
    }

    bool IsLoaded() const { return m_bLoaded; }
    const quiver_gen::schema::SSchemaSet& GetSet() const { return m_set; }

    /// All messages as the program prints them.
    std::string GetMessages() const
    {
        std::ostringstream out;
        m_diagnostics.Print(out, m_set.files);
        return WithoutFolder(out.str());
    }

    /// The components as the program prints them.
    std::string GetDump() const
    {
        std::ostringstream out;
        DumpComponents(m_set, out);
        return WithoutFolder(out.str());
    }

    std::string PathOf(const std::string& strName) const { return m_dir.PathOf(strName).u8string(); }

    /// A text without the folder's name.
    std::string WithoutFolder(std::string strText) const
    {
        const std::string strFolder = PathOf("");
        for (std::size_t n = strText.find(strFolder); n != std::string::npos; n = strText.find(strFolder, n))
            strText.erase(n, strFolder.size());
        return strText;
    }

private:
    CTempDir m_dir;
    quiver_gen::schema::SSchemaSet m_set;
    quiver_gen::schema::CDiagnostics m_diagnostics;
    bool m_bLoaded = false;
};

/// A schema around components. The first component stands on line 2.
/// @param strAttributes of the schema, such as its target namespace.
inline std::string WrapSchema(const std::string& strComponents, const std::string& strAttributes = {})
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' " + strAttributes + ">\n" + strComponents +
           "\n</xs:schema>\n";
}

/// The messages about one schema of these components.
inline std::string GetSchemaMessages(const std::string& strComponents, const std::string& strAttributes = {})
{
    return CLoadedSchemas({{"s.xsd", WrapSchema(strComponents, strAttributes)}}).GetMessages();
}

/// The dump of one schema of these components, without the lines of files and namespaces; the messages, if it is wrong.
inline std::string GetSchemaDump(const std::string& strComponents, const std::string& strAttributes = {})
{
    const CLoadedSchemas loaded({{"s.xsd", WrapSchema(strComponents, strAttributes)}});
    if (!loaded.IsLoaded())
        return loaded.GetMessages();
    std::istringstream in(loaded.GetDump());
    std::string strResult;
    for (std::string strLine; std::getline(in, strLine);)
        if (strLine.compare(0, 5, "file ") != 0 && strLine.compare(0, 10, "namespace ") != 0)
            strResult += strLine.substr(2) + "\n";
    return strResult;
}

} // namespace QvTest
