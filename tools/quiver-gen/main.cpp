#include "tools/common/Terminal.h"
#include "tools/quiver-gen/Generator.h"

#include <iostream>

int main(int nArguments, char** ppArguments)
{
    std::ios::sync_with_stdio(false);
    return quiver_gen::RunGenerator(std::vector<std::string>(ppArguments + 1, ppArguments + nArguments), std::cout,
                                    std::cerr, quiver_tools::IsErrorOutputATerminal());
}
