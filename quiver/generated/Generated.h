#pragma once

/// @file
/// The one header that generated classes need. Applications that call the runtime themselves include
/// quiver/QvXmlLib.h.

#include "quiver/core/ClassfactoryBase.h"
#include "quiver/generated/Alternatives.h"
#include "quiver/generated/BuiltinTypes.h"
#include "quiver/generated/ClassDescription.h"
#include "quiver/generated/GeneratedClass.h"
#include "quiver/generated/Member.h"
#include "quiver/generated/NamedType.h"
#include "quiver/generated/Nillable.h"
#include "quiver/generated/RepeatedCol.h"
#include "quiver/generated/SimpleType.h"
#include "quiver/generated/TypedValue.h"
#include "quiver/generated/Value.h"
#include "quiver/generated/Wildcard.h"
