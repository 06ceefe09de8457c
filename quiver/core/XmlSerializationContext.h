#pragma once

/// @file
/// The context lives with the document, the lowest layer that asks it; beside CXmlObjectBase, whose operations take it,
/// it is found by this name.

#include "quiver/document/XmlSerializationContext.h"
