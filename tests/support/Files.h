#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

/// @file
/// Files for tests: a directory that goes with its test, whole files as byte strings, and the count of open files.

namespace QvTest
{

/// A directory of the test's own, removed with everything in it.
class CTempDir
{
public:
    CTempDir()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() / ("quiver-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    /// Windows removes no file that is still open, which fails the test.
    ~CTempDir()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
        EXPECT_FALSE(error) << m_path << ": " << error.message();
    }
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;

    /// Name of a file in the directory, for the library and for the standard library.
    std::wstring NameOf(const std::string& strFile) const { return PathOf(strFile).wstring(); }
    /// The name in UTF-8; its parts have slashes between them on every system.
    std::filesystem::path PathOf(const std::string& strFile) const
    {
        return std::filesystem::u8path((m_path / std::filesystem::u8path(strFile)).generic_u8string());
    }

private:
    std::filesystem::path m_path;
};

inline std::string ReadFileBytes(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path;
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

inline void WriteFileBytes(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(stream.good()) << path;
}

/// Files that the process has open, where the system tells; otherwise 0.
std::size_t CountOpenFiles();

} // namespace QvTest
