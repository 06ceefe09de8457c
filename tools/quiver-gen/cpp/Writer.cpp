#include "tools/quiver-gen/cpp/Writer.h"

#include "tools/quiver-gen/cpp/Program.h"
#include "tools/quiver-gen/cpp/Roots.h"
#include "tools/quiver-gen/cpp/Sources.h"

using namespace quiver_gen::binding;

namespace quiver_gen::cpp
{

namespace
{

bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void Append(std::vector<SFile>& files, std::vector<SFile> more)
{
    for (SFile& file : more)
        files.push_back(std::move(file));
}

} // namespace

std::string MakeStem(const std::string& strSchema)
{
    std::string strStem;
    bool bUpper = true;
    for (const char c : strSchema.substr(0, strSchema.rfind('.')))
    {
        const bool bDigit = c >= '0' && c <= '9';
        if (IsLetter(c) || bDigit)
            strStem += bUpper && c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
        bUpper = !IsLetter(c) && !bDigit;
    }
    return strStem.empty() || !IsLetter(strStem.front()) ? "Schema" + strStem : strStem;
}

std::vector<SFile> WriteCode(const SBinding& binding, const SWriteOptions& options)
{
    CNameTable names(binding);
    const CUsage usage(binding);
    CStems stems;
    if (options.bProgram)
        stems.Claim("main");
    const SFactory factory = FindFactory(binding, options, names, stems);
    if (!binding.namedTypes.empty())
        names.SetNamedTypes(factory.GetQualifiedNamedTypes());
    const std::string strStem = options.strStem.empty() ? MakeStem(options.schemas.front()) : options.strStem;
    const CLayout layout(binding, options.eSplit, strStem, stems);
    const SProject project{binding, options, layout, names, usage, factory};

    std::vector<SFile> files;
    for (const SHeader& header : layout.GetHeaders())
        files.push_back(PrintHeader(project, header));
    std::vector<std::string> sources;
    for (const SSourceGroup& group : layout.GetSources())
        Append(files, PrintSources(project, group, stems));
    Append(files, PrintFactory(project));
    for (const SFile& file : files)
    {
        if (file.strName.back() == 'p')
            sources.push_back(file.strName);
    }
    if (options.bProgram)
        files.push_back(PrintProgram(options, factory));
    if (options.bProgram || !options.strLibrary.empty())
        files.push_back(PrintBuild(options, sources));
    return files;
}

} // namespace quiver_gen::cpp
