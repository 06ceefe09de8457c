#pragma once

#include "tests/support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>

/// @file
/// Where the snippets of the pages run. Text between `// [snippet NAME]` and `// [end]` stands on a page to the letter,
/// below the comment `<!-- snippet: NAME -->`; scripts/check_docs.sh compares them.

namespace QvTest
{

/// A test in a directory of its own, where the files lie that the page talks about.
class CPageTest : public testing::Test
{
protected:
    CPageTest() { std::filesystem::current_path(m_directory.PathOf("")); }
    ~CPageTest() override { std::filesystem::current_path(m_before); }

    /// Puts files of the source tree there.
    static void Take(std::initializer_list<const char*> paths)
    {
        for (const char* const lpcPath : paths)
        {
            const std::filesystem::path path = std::filesystem::path(QUIVER_SOURCE_DIR) / lpcPath;
            std::filesystem::copy_file(path, path.filename());
        }
    }

private:
    const std::filesystem::path m_before = std::filesystem::current_path();
    CTempDir m_directory;
};

} // namespace QvTest
