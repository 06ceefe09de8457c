#pragma once

#include "quiver/core/XmlSerializationContext.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// @file
/// What is measured for its growth: documents and schemas of one shape in lengths that double, and the counter.

namespace cost
{

/// Documents of one shape.
struct SDocumentShape
{
    const char* lpcName;
    /// The number of repetitions that makes some 2 KiB.
    std::size_t nStart;
    std::function<std::string(std::size_t nCount)> fnMake;
    /// What the context needs beside the defaults; may be null. The count is that of the document.
    std::function<void(QvXmlLib9::CXmlSerializationContext& context, std::size_t nCount)> fnSetUp = nullptr;
};

/// Documents of one shape for a schema, whose classes read and write them.
struct STypedShape : SDocumentShape
{
    /// What stands between the tags of the schema. The target namespace is "urn:t", with the prefix t; elements are qualified and the root
    /// of the document is `r`.
    std::string strSchema;
    /// A document of the class, to get an object from.
    std::string strFirst;
    /// The document is refused, with a chain of messages as deep as the document.
    bool bRefused = false;
};

/// Schemas of one shape: files by name, the first of which is given to the generator.
struct SSchemaShape
{
    const char* lpcName;
    std::size_t nStart;
    using SFiles = std::vector<std::pair<std::string, std::string>>;
    std::function<SFiles(std::size_t nCount)> fnMake;
    /// A document for --check.
    std::string strDocument;
};

const std::vector<SDocumentShape>& GetDocumentShapes();
const std::vector<STypedShape>& GetTypedShapes();
const std::vector<SSchemaShape>& GetSchemaShapes();

/// A schema of the namespace "urn:t" with these components.
std::string MakeSchema(const std::string& strComponents);

/// `part` for each number below a count, one behind the other.
template <class TPart>
std::string Repeat(std::size_t nCount, TPart part)
{
    std::string strAll;
    for (std::size_t n = 0; n < nCount; ++n)
        strAll += part(n);
    return strAll;
}
inline std::string Times(std::size_t nCount, const char* lpcPart)
{
    return Repeat(nCount, [lpcPart](std::size_t) { return std::string(lpcPart); });
}

// --- The counter ----------------------------------------------------------------------------------------------------

/// What an action took.
struct SUse
{
    std::uint64_t nSteps = 0;     ///< instructions, or nanoseconds where only the clock is asked
    std::uint64_t nPeakBytes = 0; ///< memory beyond what was there before, at its most
};

enum class ECounter
{
    None,
    Perf,      ///< the processor's, of instructions in user mode
    Callgrind, ///< of instructions; the program runs in valgrind
    Clock      ///< time of the processor: no measure for a check, and quick for whoever looks for something
};

/// Opens a counter.
/// @return false if the machine does not have it.
bool OpenCounter(ECounter eCounter);

/// Runs an action under the counter that was opened.
SUse Measure(const std::function<void()>& fnAction);

} // namespace cost
