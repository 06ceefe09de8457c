#include "tools/common/Terminal.h"

#ifdef _WIN32
#include <cstdio>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace quiver_tools
{

bool IsErrorOutputATerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) == 1;
#endif
}

} // namespace quiver_tools
