#pragma once

#include <cstddef>

namespace QvXmlLib9
{

/// @throws CQvException "The document is nested too deeply to be processed" when the calling thread is about to
/// run out of stack. Every operation that recurses once a level of a document calls this first, so that no document can
/// overflow the stack, while the depth that can be handled grows with the stack that the caller provides.
void Throw_IfStackIsLow();

/// Whether Throw_IfStackIsLow would throw: for operations that have another way than to fail, such as destruction.
bool IsStackLow();

/// Bytes of stack that an operation may still take before Throw_IfStackIsLow throws: for those that know ahead what
/// they are going to need.
std::size_t GetUsableStackBytes();

} // namespace QvXmlLib9
