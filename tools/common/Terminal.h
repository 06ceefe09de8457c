#pragma once

namespace quiver_tools
{

/// Somebody watches standard error.
bool IsErrorOutputATerminal();

} // namespace quiver_tools
