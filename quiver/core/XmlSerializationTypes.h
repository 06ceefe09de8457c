#pragma once

/// @file
/// The enumerations live with the encodings that they name; code that includes them from here finds them as before.

#include "quiver/foundation/XmlSerializationTypes.h"
