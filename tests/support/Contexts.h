#pragma once

#include "quiver/collections/Attribute.h"
#include "quiver/core/XmlSerializationContext.h"

namespace QvTest
{

/// A context for a whole program. A context makes the collection of its root attributes at their first use; that use is
/// here, so that it does not fall to one of the tests and look like a leak.
struct SLastingContext
{
    SLastingContext() { context.GetAdditionalRootAttributes(); }
    const QvXmlLib9::CXmlSerializationContext context;
};

} // namespace QvTest
