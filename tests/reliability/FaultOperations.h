#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

/// @file
/// What is run again and again while something fails: operations on files of the library and of its tools.

namespace faults
{

/// What came of an operation that ended without an exception.
struct SResult
{
    bool bSucceeded = true;
    std::string strResult;  ///< what it made: files, texts
    std::string strMessage; ///< of a tool that failed

    bool operator==(const SResult& other) const
    {
        return bSucceeded == other.bSucceeded && strResult == other.strResult && strMessage == other.strMessage;
    }
};

struct SOperation
{
    const char* lpcName;
    /// Makes what the operation needs in an empty folder.
    std::function<void(const std::filesystem::path& folder)> fnPrepare;
    std::function<SResult(const std::filesystem::path& folder)> fnRun;
    /// Files that the operation replaces stay as they were until they are whole.
    bool bReplacesWhole = false;
    bool bUsesFiles = true;
    /// What it makes is the file or the folder "out".
    bool bHasOutput = false;
    /// Has more steps than the quick form waits for.
    bool bLong = false;
};

const std::vector<SOperation>& GetOperations();

/// Adds what an operation that succeeded has left in its folder, once nothing fails any more.
void AddOutput(const SOperation& operation, const std::filesystem::path& folder, SResult& result);

/// Whether everything is wanted, and not only what is quick: the environment has QUIVER_FAULTS=long.
bool IsLong();

/// Puts back what an operation sets for the process, however it ended.
void ResetSwitches();

} // namespace faults
