#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quiver_gen::binding
{

/// A range of code points, both ends included.
struct SCodeRange
{
    std::uint32_t nFirst = 0;
    std::uint32_t nLast = 0;
};

using CCodeRanges = std::vector<SCodeRange>;

constexpr std::uint32_t s_nLastCodePoint = 0x10FFFF;

/// Characters of a block by its name in patterns, `BasicLatin` for `\p{IsBasicLatin}`.
std::optional<CCodeRanges> FindBlock(std::string_view svName);

/// Characters that may begin an XML name, the colon among them: `\i`.
const CCodeRanges& GetNameStartCharacters();

/// Characters that an XML name may hold: `\c`.
const CCodeRanges& GetNameCharacters();

/// All other code points.
/// @param ranges in ascending order.
CCodeRanges Complement(const CCodeRanges& ranges);

} // namespace quiver_gen::binding
