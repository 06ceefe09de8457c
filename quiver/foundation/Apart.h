#pragma once

/// Marks a function that is called seldom from one that is called often, so that the frequent one saves no registers for
/// it.
#if defined(__GNUC__)
#define QV_APART __attribute__((noinline))
#else
#define QV_APART
#endif
