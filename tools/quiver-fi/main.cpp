#include "tools/common/CommandLine.h"
#include "tools/common/Terminal.h"
#include "tools/quiver-fi/Program.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string_view>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace
{

/// Documents are bytes, on standard input and output too.
void PrepareStandardStreams()
{
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    std::ios::sync_with_stdio(false);
    std::cin.tie(nullptr);
}

/// A terminal that knows colours, and nobody who asks for none (no-color.org).
bool IsOutputColoured()
{
#ifdef _WIN32
    return false;
#else
    const char* const lpcRefusal = std::getenv("NO_COLOR");
    const char* const lpcTerminal = std::getenv("TERM");
    const bool bRefused = lpcRefusal != nullptr && *lpcRefusal != 0;
    return isatty(STDOUT_FILENO) == 1 && !bRefused && lpcTerminal != nullptr && std::string_view(lpcTerminal) != "dumb";
#endif
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    PrepareStandardStreams();
    const quiver_tools::CUtf8Console console;
    return quiver_fi::RunProgram(
        quiver_tools::GetArguments(nArguments, ppArguments),
        {std::cin, std::cout, std::cerr, quiver_tools::IsErrorOutputATerminal(), IsOutputColoured()});
}
