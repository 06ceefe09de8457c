#pragma once

#include <string>
#include <vector>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
// Ahead of the other, which needs it.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#endif

/// @file
/// Text between a program and whoever started it, in UTF-8 on every system. Needs nothing but this file, so that examples
/// use it too.

namespace quiver_tools
{

/// The arguments of a program without its name. On Windows those of `main` have lost what the code page does not have, so
/// they are taken from the system.
inline std::vector<std::string> GetArguments(int nArguments, char** ppArguments)
{
#if defined(_WIN32)
    static_cast<void>(ppArguments);
    std::vector<std::string> arguments;
    wchar_t** const ppWide = ::CommandLineToArgvW(::GetCommandLineW(), &nArguments);
    for (int n = 1; ppWide != nullptr && n < nArguments; ++n)
    {
        const int nBytes = ::WideCharToMultiByte(CP_UTF8, 0, ppWide[n], -1, nullptr, 0, nullptr, nullptr);
        std::string strArgument(static_cast<std::size_t>(nBytes), 0);
        ::WideCharToMultiByte(CP_UTF8, 0, ppWide[n], -1, strArgument.data(), nBytes, nullptr, nullptr);
        strArgument.pop_back();
        arguments.push_back(strArgument);
    }
    ::LocalFree(ppWide);
    return arguments;
#else
    return std::vector<std::string>(ppArguments + (nArguments > 0 ? 1 : 0), ppArguments + nArguments);
#endif
}

/// Has a console of Windows take what the program prints for UTF-8, as long as it lives. Files and pipes get the same
/// bytes with and without.
class CUtf8Console
{
public:
    CUtf8Console()
    {
#if defined(_WIN32)
        m_nBefore = ::GetConsoleOutputCP();
        if (m_nBefore == 0)
            return;
        ::SetConsoleOutputCP(CP_UTF8);
        // The run-time library may translate text once more on its way to a console.
        for (const int nStream : {1, 2})
        {
            if (::_isatty(nStream) != 0)
                ::_setmode(nStream, _O_BINARY);
        }
#endif
    }
    ~CUtf8Console()
    {
#if defined(_WIN32)
        if (m_nBefore != 0)
            ::SetConsoleOutputCP(m_nBefore);
#endif
    }
    CUtf8Console(const CUtf8Console&) = delete;
    CUtf8Console& operator=(const CUtf8Console&) = delete;

#if defined(_WIN32)
private:
    unsigned int m_nBefore = 0;
#endif
};

} // namespace quiver_tools
