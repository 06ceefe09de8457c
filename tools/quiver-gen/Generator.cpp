#include "tools/quiver-gen/Generator.h"

#include "tools/quiver-gen/Files.h"
#include "tools/quiver-gen/Options.h"
#include "tools/quiver-gen/binding/Dump.h"
#include "tools/quiver-gen/check/Check.h"
#include "tools/quiver-gen/schema/Dump.h"

#include <new>
#include <ostream>

namespace quiver_gen
{

namespace
{

/// Where words go, and whether somebody watches the last of them.
struct SStreams
{
    std::ostream& out;
    std::ostream& err;
    bool bErrIsTerminal;
};

constexpr int s_nDone = 0;
constexpr int s_nSchemaWrong = 1;
constexpr int s_nDocumentRefused = 1;
constexpr int s_nCommandWrong = 2;
constexpr int s_nNotMapped = 3;

bool HasWarnings(const schema::CDiagnostics& diagnostics)
{
    return diagnostics.GetSorted().size() > diagnostics.GetErrorCount();
}

/// What make has to look at: the schemas, and all files that options named.
std::vector<std::string> GetSources(const SOptions& options, const schema::SSchemaSet& set)
{
    std::vector<std::string> sources;
    for (const schema::SFile& file : set.files)
    {
        if (!file.bBuiltIn)
            sources.push_back(file.strPath);
    }
    sources.insert(sources.end(), options.load.catalogs.begin(), options.load.catalogs.end());
    sources.insert(sources.end(), options.ruleFiles.begin(), options.ruleFiles.end());
    return sources;
}

void Write(const SOptions& options, const schema::SSchemaSet& set, const binding::SBinding& binding, std::ostream& out)
{
    std::vector<cpp::SFile> files = cpp::WriteCode(binding, options.write);
    std::vector<std::string> targets = options.dependencyTargets;
    const bool bFilesAreTargets = targets.empty();
    for (cpp::SFile& file : files)
    {
        file.strName = JoinPath(options.strFolder, file.strName);
        if (bFilesAreTargets)
            targets.push_back(file.strName);
    }
    if (options.eCommand == ECommand::ListFiles)
    {
        for (const cpp::SFile& file : files)
            out << file.strName << '\n';
        files.clear();
    }
    if (!options.strDependencies.empty())
        files.push_back({options.strDependencies, MakeDependencies(targets, GetSources(options, set))});
    WriteFiles(files);
}

int Check(const SOptions& options, const binding::SBinding& binding, const SStreams& streams)
{
    switch (check::CheckDocuments(binding, options.documents, streams.err, streams.bErrIsTerminal))
    {
    case check::EFinding::Right:
        break;
    case check::EFinding::Refused:
        return s_nDocumentRefused;
    case check::EFinding::Unreadable:
        return s_nCommandWrong;
    }
    return s_nDone;
}

int Generate(const SOptions& options, const SStreams& streams)
{
    schema::SSchemaSet set;
    schema::CDiagnostics diagnostics;
    binding::SBinding binding;
    const bool bLoaded = schema::LoadSchemas(options.load, set, diagnostics);
    const bool bBinding = bLoaded && options.eCommand != ECommand::DumpComponents;
    const bool bMapped = !bBinding || binding::BuildBinding(set, options.binding, binding, diagnostics);
    diagnostics.Print(streams.err, set.files);
    if (!bLoaded)
        return s_nSchemaWrong;
    if (!bMapped)
        return s_nNotMapped;
    if (options.bWarningsAreErrors && HasWarnings(diagnostics))
    {
        streams.err << "quiver-gen: nothing is written, since --werror makes the warnings errors\n";
        return s_nNotMapped;
    }
    if (options.eCommand == ECommand::Check)
        return Check(options, binding, streams);
    if (options.eCommand == ECommand::DumpComponents)
        schema::DumpComponents(set, streams.out);
    else if (options.eCommand == ECommand::DumpBinding)
        binding::Dump(binding, streams.out);
    else
        Write(options, set, binding, streams.out);
    return s_nDone;
}

int Run(const SOptions& options, const SStreams& streams)
{
    switch (options.eCommand)
    {
    case ECommand::Help:
        streams.out << GetHelp();
        return s_nDone;
    case ECommand::Version:
        streams.out << "quiver-gen " QUIVER_VERSION "\n";
        return s_nDone;
    case ECommand::Generate:
    case ECommand::ListFiles:
    case ECommand::DumpComponents:
    case ECommand::DumpBinding:
    case ECommand::Check:
        return Generate(options, streams);
    }
    return s_nCommandWrong;
}

int Fail(const std::string& strMessage, std::ostream& err)
{
    err << "quiver-gen: " << strMessage << '\n';
    return s_nCommandWrong;
}

} // namespace

int RunGenerator(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err, bool bErrIsTerminal)
{
    try
    {
        const int nStatus = Run(ParseOptions(arguments), {out, err, bErrIsTerminal});
        if (!out.flush())
            return Fail("cannot write the standard output", err);
        return nStatus;
    }
    catch (const CUsageError& error)
    {
        if (!error.bPlace)
            return Fail(error.strMessage + "; --help tells more", err);
        err << error.strMessage << '\n';
        return s_nCommandWrong;
    }
    catch (const cpp::CNameTaken& error)
    {
        return Fail("the schema has a class " + error.strName + "; --factory can name another", err);
    }
    catch (const std::bad_alloc&)
    {
        return Fail("there is not enough memory for this", err);
    }
    catch (const std::exception& error)
    {
        return Fail(error.what(), err);
    }
}

} // namespace quiver_gen
