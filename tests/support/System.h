#pragma once

#include <cstdint>

/// @file
/// What tests ask the operating system.

namespace QvTest
{

/// The most memory that the process has had at a time, in bytes.
std::uint64_t GetPeakMemory();

} // namespace QvTest
