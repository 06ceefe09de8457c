#pragma once

#if defined(__has_include)
#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define QV_HAS_SINGLE_THREADED 1
#endif
#endif

namespace QvXmlLib9::Platform
{

/// Whether the process has had no thread but one so far: what counts need not be shared between processors yet. Where
/// the system does not say, no process has.
inline bool IsSingleThreaded() noexcept
{
#if defined(QV_HAS_SINGLE_THREADED)
    return __libc_single_threaded != 0;
#else
    return false;
#endif
}

} // namespace QvXmlLib9::Platform

#undef QV_HAS_SINGLE_THREADED
