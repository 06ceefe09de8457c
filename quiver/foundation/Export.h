#pragma once

/// @file
/// Marks what the shared library exports, and settles the spelling of the 64-bit integer of the interface.

#if defined(QVXMLLIB_STATIC)
#define QVXMLLIB_API
#elif defined(_WIN32)
#if defined(QVXMLLIB_BUILD)
#define QVXMLLIB_API __declspec(dllexport)
#else
#define QVXMLLIB_API __declspec(dllimport)
#endif
#else
#define QVXMLLIB_API __attribute__((visibility("default")))
#endif

#if !defined(_MSC_VER) && !defined(__int64)
/// 64-bit signed integer, spelt as the interface spells it; a macro, so that `unsigned __int64` works too.
#define __int64 long long
#endif
