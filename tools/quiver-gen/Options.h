#pragma once

#include "tools/quiver-gen/binding/Builder.h"
#include "tools/quiver-gen/cpp/Writer.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <string>
#include <vector>

namespace quiver_gen
{

/// What the program is asked to do.
enum class ECommand
{
    Help,
    Version,
    Generate,
    ListFiles,
    DumpComponents,
    DumpBinding,
    Check
};

/// The command line, and what the files that it names say.
struct SOptions
{
    ECommand eCommand = ECommand::Generate;
    schema::SLoadOptions load;
    binding::SBindingOptions binding;
    cpp::SWriteOptions write;
    std::string strFolder;                      ///< where the files go
    std::string strDependencies;                ///< path of the dependency file, empty for none
    std::vector<std::string> dependencyTargets; ///< what it says is made; empty for the files
    std::vector<std::string> ruleFiles;         ///< files that options were read from
    std::vector<std::string> documents;         ///< what --check reads
    bool bWarningsAreErrors = false;
};

/// A command line that cannot be carried out.
struct CUsageError
{
    std::string strMessage;
    bool bPlace = false; ///< the message begins with the place in a file
};

/// Reads a command line.
/// @param arguments without the program's name.
/// @throws CUsageError in one line that tells what is wrong.
/// @throws CFileError for a file of rules that cannot be read.
SOptions ParseOptions(const std::vector<std::string>& arguments);

/// What --help prints.
std::string GetHelp();

} // namespace quiver_gen
