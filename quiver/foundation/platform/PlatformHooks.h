#pragma once

#include "quiver/foundation/platform/Platform.h"

/// @file
/// What tests have put in the place of the platform's own ways, for the sources of this directory.

namespace QvXmlLib9::Platform
{

inline PfnMessageBox g_pfnMessageBox = nullptr;
inline PfnDebugOutput g_pfnDebugOutput = nullptr;
inline PfnFileFault g_pfnFileFault = nullptr;

/// The platform's own ways, one implementation for each.
void ShowErrorBoxToUser(const wchar_t* lpctText, const wchar_t* lpctCaption);
void OutputDebugToPlatform(const wchar_t* lpctText);

/// Makes an error number the calling thread's last.
/// @return false.
bool Fail(std::uint32_t dwError);

/// True if a test wants the operation to fail; the error is set then.
bool IsFaultDue(EFileOperation eOperation);

} // namespace QvXmlLib9::Platform
