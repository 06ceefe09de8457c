#pragma once

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

} // namespace QvTest
