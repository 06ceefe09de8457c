#pragma once

#include "tools/quiver-fi/Program.h"

#include <sstream>
#include <string>
#include <vector>

namespace QvTest
{

/// One run of quiver-fi inside the test: what it left on its streams, and its exit status.
struct SToolRun
{
    int nStatus = 0;
    std::string strOut;
    std::string strErr;
};

inline SToolRun RunTool(const std::vector<std::string>& arguments, const std::string& strIn = {},
                        bool bErrIsTerminal = false)
{
    std::istringstream in(strIn);
    std::ostringstream out;
    std::ostringstream err;
    SToolRun run;
    run.nStatus = quiver_fi::RunProgram(arguments, {in, out, err, bErrIsTerminal});
    run.strOut = out.str();
    run.strErr = err.str();
    return run;
}

/// Runs a command from standard input to standard output, with these options.
inline SToolRun PipeThrough(const std::string& strCommand, const std::string& strIn,
                            std::vector<std::string> options = {})
{
    options.insert(options.begin(), strCommand);
    options.push_back("-");
    if (strCommand != "inspect")
        options.push_back("-");
    return RunTool(options, strIn);
}

/// Octets of text in hexadecimal digits; blanks are passed over.
inline std::string Octets(const std::string& strHex)
{
    std::string strOctets;
    std::istringstream digits(strHex);
    for (std::string strOctet; digits >> strOctet;)
        strOctets += static_cast<char>(std::stoi(strOctet, nullptr, 16));
    return strOctets;
}

} // namespace QvTest
