#pragma once

#include <cstddef>

/// @file
/// The operations that the library needs from the operating system, with Windows' meaning. Nothing outside this
/// directory includes a header of the operating system. Each platform has one source unit that implements all of them.

namespace QvXmlLib9::Platform
{

// --- Reports --------------------------------------------------------------------------------------------------------

/// Receives what would otherwise go to the user or to the debugger. Null puts the platform's own way back.
/// Set while no other thread is inside the library; meant for tests.
using PfnMessageBox = void (*)(const wchar_t* lpctText, const wchar_t* lpctCaption);
using PfnDebugOutput = void (*)(const wchar_t* lpctText);
PfnMessageBox SetMessageBoxSink(PfnMessageBox pfnSink);
PfnDebugOutput SetDebugOutputSink(PfnDebugOutput pfnSink);

/// Shows an error to the user and returns once it has been seen. Where there is no message box, caption and text go to
/// standard error.
void ShowErrorBox(const wchar_t* lpctText, const wchar_t* lpctCaption);

/// Whether OutputDebug has anywhere to go, so that callers can spare themselves the formatting.
bool IsDebugOutputOn();

/// Hands a text to the debug output: standard error in diagnostic builds, nowhere in others.
void OutputDebug(const wchar_t* lpctText);

// --- Stack ----------------------------------------------------------------------------------------------------------

/// Bytes of stack that the calling thread has left, or the greatest value where the platform cannot tell.
std::size_t GetStackBytesLeft();

/// Size in bytes of the calling thread's stack, or the greatest value where the platform cannot tell.
std::size_t GetStackSize();

} // namespace QvXmlLib9::Platform
