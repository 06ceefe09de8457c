#include "tools/quiver-fi/Program.h"

#include <cstdio>
#include <iostream>

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

bool IsErrorOutputATerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) == 1;
#endif
}

} // namespace

int main(int nArguments, char** ppArguments)
{
    PrepareStandardStreams();
    const std::vector<std::string> arguments(ppArguments + 1, ppArguments + nArguments);
    return quiver_fi::RunProgram(arguments, {std::cin, std::cout, std::cerr, IsErrorOutputATerminal()});
}
