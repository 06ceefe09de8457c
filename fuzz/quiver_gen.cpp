// Any text as a schema for quiver-gen: loaded, bound and printed. The file `again.xsd` holds the same text, so that a schema
// can include, import or redefine itself under another name. What is printed is the same each time.
//
// Behind the schema documents may stand, each behind a line `====`. They are read with the classes of the schema, and those
// that are read are written and read again.

#include "fuzz/FuzzInput.h"

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/binding/Dump.h"
#include "tools/quiver-gen/check/Model.h"
#include "tools/quiver-gen/cpp/Writer.h"
#include "tools/quiver-gen/schema/Dump.h"
#include "tools/quiver-gen/schema/Loader.h"

#include "quiver/foundation/Encoder.h"

#include "quiver/QvXmlLib.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

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

    std::string Write(const char* lpcName, std::string_view bytes) const
    {
        const std::filesystem::path path = m_path / lpcName;
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path.string();
    }

private:
    std::filesystem::path m_path;
};

/// What becomes of a document: its text when it is written again, or the messages.
std::string Read(const check::CModel& model, std::string_view document)
{
    using namespace QvXmlLib9;
    std::wstring strText;
    try
    {
        const CSmartPtr<CXmlObjectBase> spObject = model.Read(std::string(document));
        const CXmlSerializationContext context;
        strText = spObject->ToXml(true, false, EOLType_LF, context);
        spObject->FromXml(strText.c_str(), context);
        fuzz::Require(spObject->ToXml(true, false, EOLType_LF, context) == strText,
                      "what was written says the same when it is read");
    }
    catch (const CQvException& exception)
    {
        strText += exception.GetFullMessage();
    }
    std::string strUtf8;
    AppendUtf8(strUtf8, strText);
    return strUtf8;
}

/// Messages and code for a schema, and what becomes of documents.
std::string Generate(const std::string& strPath, cpp::ESplit eSplit, const std::vector<std::string_view>& documents)
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
    const check::CModel model(binding);
    for (const std::string_view document : documents)
        out << "--- document\n" << Read(model, document) << '\n';
    return out.str();
}

/// The schema, and the documents behind it.
std::vector<std::string_view> Split(std::string_view input)
{
    constexpr std::string_view mark = "\n====\n";
    std::vector<std::string_view> parts;
    for (std::size_t nEnd = input.find(mark); nEnd != std::string_view::npos; nEnd = input.find(mark))
    {
        parts.push_back(input.substr(0, nEnd));
        input.remove_prefix(nEnd + mark.size());
    }
    parts.push_back(input);
    return parts;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    static const CFolder s_folder;
    std::vector<std::string_view> documents = Split({reinterpret_cast<const char*>(pData), nSize});
    const std::string_view schema = documents.front();
    documents.erase(documents.begin());
    s_folder.Write("again.xsd", schema);
    const std::string strPath = s_folder.Write("input.xsd", schema);
    for (const cpp::ESplit eSplit : {cpp::ESplit::Namespace, cpp::ESplit::None})
    {
        const std::string strCode = Generate(strPath, eSplit, documents);
        fuzz::Require(Generate(strPath, eSplit, documents) == strCode, "the same schema becomes the same code");
    }
    return 0;
}
