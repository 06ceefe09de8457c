#include "tools/quiver-gen/schema/Dump.h"
#include "tools/quiver-gen/schema/Loader.h"

#include <iostream>
#include <string>

namespace
{

using namespace quiver_gen::schema;

constexpr int s_nSchemaWrong = 1;
constexpr int s_nCommandWrong = 2;

struct SCommandLine
{
    SLoadOptions load;
    bool bDumpComponents = false;
};

/// @return whether the arguments make sense.
bool ParseArguments(int nArguments, char** ppArguments, SCommandLine& command)
{
    for (int n = 1; n < nArguments; ++n)
    {
        const std::string strArgument = ppArguments[n];
        if (strArgument == "--dump-components")
            command.bDumpComponents = true;
        else if (strArgument == "--catalog" && n + 1 < nArguments)
            command.load.catalogs.emplace_back(ppArguments[++n]);
        else if (strArgument == "--location" && n + 1 < nArguments)
        {
            // A URI may hold an equals sign, a file name rarely does.
            const std::string strPlace = ppArguments[++n];
            const std::size_t nEquals = strPlace.rfind('=');
            if (nEquals == std::string::npos)
                return false;
            command.load.locations.emplace_back(strPlace.substr(0, nEquals), strPlace.substr(nEquals + 1));
        }
        else if (strArgument.empty() || strArgument.front() == '-')
            return false;
        else
            command.load.schemas.push_back(strArgument);
    }
    return !command.load.schemas.empty();
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    SCommandLine command;
    if (!ParseArguments(nArguments, ppArguments, command))
    {
        std::cerr << "usage: quiver-gen SCHEMA... [--catalog FILE] [--location URI=FILE] [--dump-components]\n";
        return s_nCommandWrong;
    }
    std::ios::sync_with_stdio(false);
    SSchemaSet set;
    CDiagnostics diagnostics;
    const bool bLoaded = LoadSchemas(command.load, set, diagnostics);
    diagnostics.Print(std::cerr, set.files);
    if (bLoaded && command.bDumpComponents)
        DumpComponents(set, std::cout);
    return bLoaded ? 0 : s_nSchemaWrong;
}
