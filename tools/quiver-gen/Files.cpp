#include "tools/quiver-gen/Files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

namespace quiver_gen
{

namespace fs = std::filesystem;

namespace
{

fs::path ToPath(const std::string& strPath)
{
    return fs::u8path(strPath);
}

[[noreturn]] void ThrowFailed(const char* lpcWhat, const std::string& strPath, const std::error_code& error)
{
    throw CFileError("cannot " + std::string(lpcWhat) + ' ' + strPath + ": " + error.message());
}

/// The reason of the last operation of a stream.
std::error_code GetLastError()
{
    return {errno == 0 ? EIO : errno, std::generic_category()};
}

/// What a file holds from where it is; false if it cannot be read to its end. An iterator over its buffer would throw
/// then, without the file's name.
bool ReadAll(std::ifstream& file, std::string& strText)
{
    char block[16384];
    do
    {
        file.read(block, sizeof(block));
        strText.append(block, static_cast<std::size_t>(file.gcount()));
    } while (file);
    return !file.bad();
}

/// A file that cannot be read counts as one with another text.
bool HasText(const std::string& strPath, std::string_view svText)
{
    std::error_code error;
    const auto nSize = fs::file_size(ToPath(strPath), error);
    if (error || nSize != svText.size())
        return false;
    std::ifstream file(ToPath(strPath), std::ios::binary);
    std::string strOld;
    return ReadAll(file, strOld) && strOld == svText;
}

void MakeFolderOf(const std::string& strPath)
{
    const fs::path folder = ToPath(strPath).parent_path();
    std::error_code error;
    if (!folder.empty())
        fs::create_directories(folder, error);
    if (error)
        ThrowFailed("make the folder", folder.u8string(), error);
    if (fs::is_directory(ToPath(strPath), error))
        ThrowFailed("write", strPath, std::make_error_code(std::errc::is_a_directory));
}

/// New texts beside the files that they are for. Those that did not get their place are deleted in the end.
class CPending
{
public:
    CPending() = default;
    CPending(const CPending&) = delete;
    CPending& operator=(const CPending&) = delete;

    ~CPending()
    {
        std::error_code ignored;
        for (const auto& [strNew, strPath] : m_files)
            fs::remove(ToPath(strNew), ignored);
    }

    void Add(const std::string& strPath, std::string_view svText)
    {
        // Two programs that write the same file at a time do not write into the same new one.
        m_files.emplace_back(strPath + '.' + std::to_string(std::random_device()()) + ".tmp", strPath);
        errno = 0;
        std::ofstream file(ToPath(m_files.back().first), std::ios::binary | std::ios::trunc);
        if (!file)
            ThrowFailed("create", strPath, GetLastError());
        file.write(svText.data(), static_cast<std::streamsize>(svText.size()));
        file.close();
        if (!file)
            ThrowFailed("write", strPath, GetLastError());
    }

    std::size_t Commit()
    {
        for (const auto& [strNew, strPath] : m_files)
        {
            std::error_code error;
            fs::rename(ToPath(strNew), ToPath(strPath), error);
            if (error)
                ThrowFailed("replace", strPath, error);
        }
        const std::size_t nFiles = m_files.size();
        m_files.clear();
        return nFiles;
    }

private:
    std::vector<std::pair<std::string, std::string>> m_files; ///< path of the new text, and where it belongs
};

/// A path as make reads it.
std::string Escape(const std::string& strPath)
{
    std::string strEscaped;
    for (const char c : strPath)
    {
        if (c == ' ' || c == '#')
            strEscaped += '\\';
        if (c == '$')
            strEscaped += '$';
        strEscaped += c;
    }
    return strEscaped;
}

} // namespace

std::string ReadFile(const std::string& strPath)
{
    std::error_code error;
    if (fs::is_directory(ToPath(strPath), error))
        ThrowFailed("read", strPath, std::make_error_code(std::errc::is_a_directory));
    errno = 0;
    std::ifstream file(ToPath(strPath), std::ios::binary);
    if (!file)
        ThrowFailed("read", strPath, GetLastError());
    std::string strText;
    if (!ReadAll(file, strText))
        ThrowFailed("read", strPath, GetLastError());
    return strText;
}

std::string JoinPath(const std::string& strFolder, const std::string& strName)
{
    return strFolder.empty() || strFolder.back() == '/' ? strFolder + strName : strFolder + '/' + strName;
}

std::size_t WriteFiles(const std::vector<cpp::SFile>& files)
{
    CPending pending;
    for (const cpp::SFile& file : files)
    {
        if (HasText(file.strName, file.strText))
            continue;
        MakeFolderOf(file.strName);
        pending.Add(file.strName, file.strText);
    }
    return pending.Commit();
}

std::string MakeDependencies(const std::vector<std::string>& targets, const std::vector<std::string>& sources)
{
    std::string strText;
    for (const std::string& strTarget : targets)
        strText += (strText.empty() ? "" : " ") + Escape(strTarget);
    strText += ':';
    for (const std::string& strSource : sources)
        strText += " \\\n  " + Escape(strSource);
    return strText + '\n';
}

} // namespace quiver_gen
