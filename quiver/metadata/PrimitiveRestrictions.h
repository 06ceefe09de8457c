#pragma once

/// @file
/// The facets live with the values that they restrict; code that includes them from here finds them as before.

#include "quiver/values/PrimitiveRestrictions.h"
