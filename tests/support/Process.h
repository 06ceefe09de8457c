#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace QvTest
{

/// Where a stream of a program goes.
struct SOutput
{
    enum class EKind
    {
        Nowhere,
        /// A place that takes no byte more.
        Full,
        /// The program gets no stream at all.
        Closed,
        File
    };

    EKind eKind = EKind::Nowhere;
    /// Name of the file, UTF-8.
    std::string strFile;
};

/// Runs a program to its end, without a console.
/// @param strProgram its file.
/// @param arguments UTF-8.
/// @return its exit status; -1 if it could not be run, or did not end by itself.
int RunProcess(const std::string& strProgram, const std::vector<std::string>& arguments, const SOutput& out = {},
               const SOutput& err = {});

/// Runs a command by the shell of the machine that builds: a program of Windows is one of Wine's there, and has the programs of
/// that machine started too. The command reads nothing; what it says goes where the test says its own.
/// @return its exit status; -1 if it could not be run, or did not end by itself.
int RunByShell(const std::string& strCommand);

/// Name of a file for such a command, in quotes.
std::string QuoteForShell(const std::filesystem::path& file);

} // namespace QvTest
