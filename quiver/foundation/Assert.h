#pragma once

#include "quiver/foundation/Export.h"

/// @file
/// Assertions for programming errors. They are active in diagnostic builds only (`QUIVER_DIAGNOSTICS`); elsewhere the
/// condition is not evaluated. No document may reach one on a normal path, and code behind an assertion must stay
/// inside its memory where assertions are off.
///
/// The text of an assertion is part of what a report shows and is pinned by a test, apart from the condition, which may
/// follow the source (docs/compatibility.md: Texts of assertions).

namespace QvXmlLib9
{

/// Reports a failed assertion by text, unit and line on the platform's debug output and on standard error, and stops
/// the program.
[[noreturn]] QVXMLLIB_API void AssertionFailed(const char* lpcCondition, const char* lpcFile, int nLine);

} // namespace QvXmlLib9

#if defined(QUIVER_DIAGNOSTICS)
/// Stops the program when `condition` does not hold; the report shows the text given.
#define QV_ASSERT_MSG(condition, text)                                                                                 \
    ((condition) ? static_cast<void>(0) : ::QvXmlLib9::AssertionFailed(text, __FILE__, __LINE__))
#else
#define QV_ASSERT_MSG(condition, text) static_cast<void>(sizeof((condition) ? 1 : 0))
#endif

/// Stops the program when `condition` does not hold; the report shows the condition as written.
#define QV_ASSERT(condition) QV_ASSERT_MSG(condition, #condition)
