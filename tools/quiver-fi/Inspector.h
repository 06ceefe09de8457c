#pragma once

#include "tools/quiver-fi/Files.h"

#include <string_view>

namespace quiver_fi
{

/// Whether the octets begin like a Fast Infoset document (X.891, 12), with or without an XML declaration.
bool IsFastInfoset(std::string_view octets);

/// Lists what a Fast Infoset document (ITU-T X.891) consists of on standard output, one line for each item with its
/// offset and its octets. `+[n]` after a kind of name or value tells that it enters its table as number n, `[n]` that
/// it comes from there. If an external vocabulary stands in front of the tables, whose contents nobody knows here,
/// entries have no numbers, and what comes from a table has no text.
///
/// Everything else of the standard is understood, also what reading into a tree passes over. No document, however
/// damaged, makes this leave the octets, recurse, or need memory out of proportion to them.
///
/// @param bWholeValues literal values are printed in full length.
/// @throws std::runtime_error which tells where and why the listing stops. What stands ahead of it has been listed.
void Inspect(std::string_view octets, bool bWholeValues, const SStreams& streams);

} // namespace quiver_fi
