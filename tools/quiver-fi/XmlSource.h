#pragma once

#include "tools/quiver-fi/Document.h"
#include "tools/quiver-fi/Files.h"

namespace quiver_fi
{

/// Reads XML text. Parts of the document type declaration that lie outside the document are not read; a warning tells
/// so.
/// @throws QvXmlLib9::CQvException if the text is not well-formed, or asks for more than the library's bounds admit.
/// @throws std::runtime_error for entities that lie outside the document, whose text would be missing.
void ReadXml(std::string& strXml, CDocument& document, const SStreams& streams);

} // namespace quiver_fi
