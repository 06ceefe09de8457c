#pragma once

/// @file
/// The enumerations live with the encodings that they name; beside CXmlObjectBase, whose operations take them, they are
/// found by this name.

#include "quiver/foundation/XmlSerializationTypes.h"
