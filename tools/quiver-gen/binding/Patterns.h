#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Pattern facets, from the dialect of XML Schema to that of CPrimitiveRestrictions, which hands an expression to PCRE
/// after a few replacements of its own and takes the first match that it finds.

namespace quiver_gen::binding
{

/// Translates one pattern. The result holds no group that captures and nothing that the runtime would replace.
/// @return nothing if the pattern is not one of XML Schema, or needs what PCRE does not have: a block of characters
/// that is not known, or more repetitions than 65535.
std::optional<std::string> TranslatePattern(std::string_view svPattern);

/// One expression for all steps of derivation. It matches a value only as a whole.
/// @param steps of each step the translated patterns, of which one must match.
/// @return empty if there is no step.
std::string CombinePatterns(const std::vector<std::vector<std::string>>& steps);

/// Whether the runtime can use a combined expression: very large repetitions of groups outgrow it.
bool IsUsable(const std::string& strCombined);

} // namespace quiver_gen::binding
