#pragma once

// What the examples' programs share: UTF-8 on the command line and on the console, and the message chain of a failure.

#include "tools/common/CommandLine.h"

#include "quiver/QvXmlLib.h"

#include <cstdio>
#include <string>
#include <vector>

namespace example
{

inline std::string Narrow(const std::wstring& strText)
{
    const QvXmlLib9::CBinaryData data = QvXmlLib9::EncodeUtf8(strText.c_str());
    return data.GetLength() == 0 ? std::string()
                                 : std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

inline std::wstring Widen(const std::string& strText)
{
    return QvXmlLib9::DecodeUtf8(reinterpret_cast<const unsigned char*>(strText.data()),
                                 static_cast<unsigned long>(strText.size()));
}

/// The arguments of a program, without its name.
inline std::vector<std::wstring> GetArguments(int argc, char** argv)
{
    std::vector<std::wstring> arguments;
    for (const std::string& strArgument : quiver_tools::GetArguments(argc, argv))
        arguments.push_back(Widen(strArgument));
    return arguments;
}

/// Runs a program's work; a failure ends in its message chain, outermost first, and exit status 1.
template <class TWork>
int Run(TWork&& work)
{
    const quiver_tools::CUtf8Console console;
    try
    {
        return work();
    }
    catch (const QvXmlLib9::CQvException& ex)
    {
        std::fprintf(stderr, "%s\n", Narrow(ex.GetFullMessage()).c_str());
        return 1;
    }
}

} // namespace example
