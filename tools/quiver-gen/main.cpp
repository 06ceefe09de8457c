#include "tools/common/CommandLine.h"
#include "tools/common/Terminal.h"
#include "tools/quiver-gen/Generator.h"

#include <iostream>

int main(int nArguments, char** ppArguments)
{
    std::ios::sync_with_stdio(false);
    const quiver_tools::CUtf8Console console;
    return quiver_gen::RunGenerator(quiver_tools::GetArguments(nArguments, ppArguments), std::cout, std::cerr,
                                    quiver_tools::IsErrorOutputATerminal());
}
