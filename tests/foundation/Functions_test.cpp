#include "quiver/foundation/Functions.h"
