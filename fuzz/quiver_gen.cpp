// Any text as a schema for quiver-gen: loaded, bound and printed. The file `again.xsd` holds the same text, so that a schema
// can include, import or redefine itself under another name. What is printed is the same each time.

#include "fuzz/FuzzInput.h"

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Dump.h"
#include "tools/quiver-gen/cpp/Writer.h"
#include "tools/quiver-gen/schema/Dump.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

using namespace quiver_gen;

namespace
{

/// A folder for the schemas, which goes with the program.
class CFolder
{
public:
    CFolder()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() / ("quiver-gen-fuzz-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~CFolder() { std::filesystem::remove_all(m_path); }
    CFolder(const CFolder&) = delete;
    CFolder& operator=(const CFolder&) = delete;

    std::string Write(const char* lpcName, const std::uint8_t* pData, std::size_t nSize) const
    {
        const std::filesystem::path path = m_path / lpcName;
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(pData), static_cast<std::streamsize>(nSize));
        return path.string();
    }

private:
    std::filesystem::path m_path;
};

/// Messages and code for a schema.
std::string Generate(const std::string& strPath, cpp::ESplit eSplit)
{
    std::ostringstream out;
    schema::SSchemaSet set;
    schema::CDiagnostics diagnostics;
    schema::SLoadOptions load;
    load.schemas.push_back(strPath);
    binding::SBinding binding;
    const bool bLoaded = schema::LoadSchemas(load, set, diagnostics);
    const bool bMapped = bLoaded && binding::BuildBinding(set, binding::SBindingOptions(), binding, diagnostics);
    diagnostics.Print(out, set.files);
    fuzz::Require(bMapped || diagnostics.GetErrorCount() > 0, "a schema that becomes no code has an error");
    if (!bMapped)
        return out.str();
    schema::DumpComponents(set, out);
    binding::Dump(binding, out);
    cpp::SWriteOptions write;
    write.schemas.push_back("input.xsd");
    write.strFactoryNamespace = "fuzz";
    write.strFactory = "CRoots";
    write.eSplit = eSplit;
    write.bUtf8 = eSplit == cpp::ESplit::None;
    for (const cpp::SFile& file : cpp::WriteCode(binding, write))
        out << "--- " << file.strName << '\n' << file.strText;
    return out.str();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const CFolder s_folder;
    s_folder.Write("again.xsd", pData, nSize);
    const std::string strPath = s_folder.Write("input.xsd", pData, nSize);
    for (const cpp::ESplit eSplit : {cpp::ESplit::Namespace, cpp::ESplit::None})
    {
        const std::string strCode = Generate(strPath, eSplit);
        fuzz::Require(Generate(strPath, eSplit) == strCode, "the same schema becomes the same code");
    }
    return 0;
}
