#pragma once

#include "tools/quiver-fi/Document.h"
#include "tools/quiver-fi/Files.h"
#include "tools/quiver-fi/NamespacePlan.h"

#include <string_view>

namespace quiver_fi
{

/// What a document is written onto, in document order. The sink knows the document and the plan.
class ITreeSink
{
public:
    virtual ~ITreeSink() = default;

    /// @param bInline white space may not be added to the element's content.
    virtual void StartElement(CDocument::NameId dwName, bool bInline) = 0;
    virtual void WriteAttribute(CDocument::NameId dwName, std::string_view svValue) = 0;
    /// @param svText never empty.
    virtual void WriteText(std::string_view svText) = 0;
    virtual void EndElement() = 0;
};

/// Writes a document, however deep it is.
///
/// White space among child elements is left out where there is no other text and no xml:space="preserve".
void WriteTree(const CDocument& document, const CNamespacePlan& plan, ITreeSink& sink, const SStreams& streams);

} // namespace quiver_fi
