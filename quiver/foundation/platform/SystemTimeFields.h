#pragma once

#include "quiver/foundation/platform/SystemTime.h"

/// @file
/// Completes the structures of SystemTime.h for the sources that look into them. Public headers keep to that one, so
/// that nobody gets all of Windows with a date.

#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif
