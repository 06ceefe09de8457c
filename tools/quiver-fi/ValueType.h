#pragma once

#include "quiver/values/ItemType.h"

#include <string_view>

namespace quiver_fi
{

/// The item type under whose suggested encoding (CFastInfosetContext::SetSuggestedValues) a text takes the fewest
/// octets, among those whose encoding gives exactly this text again. ItemType_string if nothing is won.
QvXmlLib9::ItemType ChooseValueType(std::wstring_view svText);

} // namespace quiver_fi
