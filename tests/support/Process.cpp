#include "tests/support/Process.h"

#include <filesystem>

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <cstdlib>
#include <sys/wait.h>
#endif

namespace QvTest
{

namespace
{

#if defined(_WIN32)

/// A handle that the program inherits.
class CStream
{
public:
    explicit CStream(const SOutput& output)
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        const auto fnOpen = [&](const wchar_t* lpctName, DWORD dwAccess, DWORD dwDisposition)
        {
            return ::CreateFileW(lpctName, dwAccess, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, dwDisposition, 0,
                                 nullptr);
        };
        if (output.eKind == SOutput::EKind::Nowhere)
            m_hFile = fnOpen(L"NUL", GENERIC_WRITE, OPEN_EXISTING);
        else if (output.eKind == SOutput::EKind::Full)
            // Nothing can be written to what was opened for reading.
            m_hFile = fnOpen(L"NUL", GENERIC_READ, OPEN_EXISTING);
        else if (output.eKind == SOutput::EKind::File)
            m_hFile = fnOpen(std::filesystem::u8path(output.strFile).c_str(), GENERIC_WRITE, CREATE_ALWAYS);
    }
    ~CStream()
    {
        if (m_hFile != nullptr)
            ::CloseHandle(m_hFile);
    }
    CStream(const CStream&) = delete;
    CStream& operator=(const CStream&) = delete;

    HANDLE Get() const { return m_hFile; }

private:
    HANDLE m_hFile = nullptr;
};

/// An argument as the programs' own code takes it apart again.
std::wstring Quote(const std::string& strArgument)
{
    std::wstring strQuoted = L"\"";
    std::size_t nBackslashes = 0;
    for (const wchar_t c : std::filesystem::u8path(strArgument).wstring())
    {
        if (c == L'"')
            strQuoted.append(nBackslashes + 1, L'\\');
        nBackslashes = c == L'\\' ? nBackslashes + 1 : 0;
        strQuoted += c;
    }
    return strQuoted.append(nBackslashes, L'\\') + L'"';
}

#else

std::string Quote(const std::string& strArgument)
{
    std::string strQuoted = "'";
    for (const char c : strArgument)
        strQuoted += c == '\'' ? "'\\''" : std::string(1, c);
    return strQuoted + '\'';
}

std::string Redirect(const char* lpcStream, const SOutput& output)
{
    switch (output.eKind)
    {
    case SOutput::EKind::Full:
        return std::string(lpcStream) + "/dev/full";
    case SOutput::EKind::Closed:
        return std::string(lpcStream) + "&-";
    case SOutput::EKind::File:
        return lpcStream + Quote(output.strFile);
    case SOutput::EKind::Nowhere:
        break;
    }
    return std::string(lpcStream) + "/dev/null";
}

#endif

} // namespace

#if defined(_WIN32)

int RunProcess(const std::string& strProgram, const std::vector<std::string>& arguments, const SOutput& out,
               const SOutput& err)
{
    std::wstring strCommand = Quote(strProgram);
    for (const std::string& strArgument : arguments)
        strCommand += L' ' + Quote(strArgument);
    const CStream in({});
    const CStream hOut(out);
    const CStream hErr(err);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in.Get();
    startup.hStdOutput = hOut.Get();
    startup.hStdError = hErr.Get();
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, strCommand.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr, nullptr,
                          &startup, &process))
        return -1;
    DWORD dwStatus = 0;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::GetExitCodeProcess(process.hProcess, &dwStatus);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return static_cast<int>(dwStatus);
}

#else

int RunProcess(const std::string& strProgram, const std::vector<std::string>& arguments, const SOutput& out,
               const SOutput& err)
{
    std::string strCommand = Quote(strProgram);
    for (const std::string& strArgument : arguments)
        strCommand += ' ' + Quote(strArgument);
    strCommand += " </dev/null" + Redirect(" >", out) + Redirect(" 2>", err);
    const int nStatus = std::system(strCommand.c_str());
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

#endif

} // namespace QvTest
