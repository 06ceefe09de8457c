#pragma once

#include "tools/quiver-fi/Document.h"
#include "tools/quiver-fi/Files.h"

namespace quiver_fi
{

/// Reads a Fast Infoset document. Comments, processing instructions and what precedes the root are passed over.
/// @throws std::runtime_error if the document is damaged, or if anything in it is not known here or cannot be text of
///         XML.
void ReadInfoset(std::string_view octets, CDocument& document, const SStreams& streams);

} // namespace quiver_fi
