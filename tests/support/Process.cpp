#include "tests/support/Process.h"

#include "tests/support/Files.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

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

/// A word that a shell takes as it is.
std::string QuoteWord(const std::string& strWord)
{
    std::string strQuoted = "'";
    for (const char c : strWord)
        strQuoted += c == '\'' ? "'\\''" : std::string(1, c);
    return strQuoted + '\'';
}

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

std::string Redirect(const char* lpcStream, const SOutput& output)
{
    switch (output.eKind)
    {
    case SOutput::EKind::Full:
        return std::string(lpcStream) + "/dev/full";
    case SOutput::EKind::Closed:
        return std::string(lpcStream) + "&-";
    case SOutput::EKind::File:
        return lpcStream + QuoteWord(output.strFile);
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

int RunByShell(const std::string& strCommand)
{
    // Wine starts the shell, but tells neither when it ends nor how: it says so in a file, which comes whole.
    const CTempDir dir;
    const std::string strStatus = QuoteForShell(dir.PathOf("status"));
    WriteFileBytes(dir.PathOf("command"), "(exec </dev/null\n" + strCommand + "\n)\necho $? >" + strStatus +
                                              ".part\nmv " + strStatus + ".part " + strStatus + '\n');
    std::wstring strShell = L"Z:\\bin\\sh " + std::filesystem::u8path(QuoteForShell(dir.PathOf("command"))).wstring();
    // The name has nothing that needs quotes, which are another shell's here.
    strShell.erase(std::remove(strShell.begin(), strShell.end(), L'\''), strShell.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(nullptr, strShell.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
        return -1;
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(5);
    while (!std::filesystem::exists(dir.PathOf("status")))
    {
        if (std::chrono::steady_clock::now() > end)
            return -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return std::stoi(ReadFileBytes(dir.PathOf("status")));
}

std::string QuoteForShell(const std::filesystem::path& file)
{
    using PfnGetUnixName = char*(CDECL*)(const wchar_t* lpctName);
    const auto pfnGetUnixName = reinterpret_cast<PfnGetUnixName>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (pfnGetUnixName == nullptr)
        return {};
    char* const lpcName = pfnGetUnixName(std::filesystem::path(file).make_preferred().c_str());
    const std::string strName = lpcName != nullptr ? lpcName : "";
    ::HeapFree(::GetProcessHeap(), 0, lpcName);
    return QuoteWord(strName);
}

#else

int RunProcess(const std::string& strProgram, const std::vector<std::string>& arguments, const SOutput& out,
               const SOutput& err)
{
    std::string strCommand = QuoteWord(strProgram);
    for (const std::string& strArgument : arguments)
        strCommand += ' ' + QuoteWord(strArgument);
    strCommand += " </dev/null" + Redirect(" >", out) + Redirect(" 2>", err);
    return RunByShell(strCommand);
}

int RunByShell(const std::string& strCommand)
{
    const int nStatus = std::system(("exec </dev/null\n" + strCommand).c_str());
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

std::string QuoteForShell(const std::filesystem::path& file)
{
    return QuoteWord(file.string());
}

#endif

} // namespace QvTest
