#include "quiver/foundation/StackGuard.h"

#include "quiver/foundation/Exceptions.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <cstddef>

namespace QvXmlLib9
{

namespace
{

// Room for what one level does below the check: the conversion of a value, a pattern match, a setter of generated code,
// and the unwinding of the exception. Threads with small stacks keep a quarter of theirs.
constexpr std::size_t s_nReserve = 256 * 1024;

std::size_t GetReserve()
{
    return std::min(s_nReserve, Platform::GetStackSize() / 4);
}

} // namespace

bool IsStackLow()
{
    return Platform::GetStackBytesLeft() < GetReserve();
}

std::size_t GetUsableStackBytes()
{
    const std::size_t nLeft = Platform::GetStackBytesLeft();
    return nLeft - std::min(nLeft, GetReserve());
}

void Throw_IfStackIsLow()
{
    if (IsStackLow())
        throw CQvException(L"The document is nested too deeply to be processed");
}

} // namespace QvXmlLib9
