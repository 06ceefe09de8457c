#include "quiver/foundation/platform/Platform.h"

#include "quiver/foundation/platform/PlatformHooks.h"

#include <utility>

// What is the same on every platform: where tests come in.

namespace QvXmlLib9::Platform
{

PfnMessageBox SetMessageBoxSink(PfnMessageBox pfnSink)
{
    return std::exchange(g_pfnMessageBox, pfnSink);
}

PfnDebugOutput SetDebugOutputSink(PfnDebugOutput pfnSink)
{
    return std::exchange(g_pfnDebugOutput, pfnSink);
}

PfnFileFault SetFileFault(PfnFileFault pfnFault)
{
    return std::exchange(g_pfnFileFault, pfnFault);
}

void ShowErrorBox(const wchar_t* lpctText, const wchar_t* lpctCaption)
{
    const PfnMessageBox pfnShow = g_pfnMessageBox != nullptr ? g_pfnMessageBox : ShowErrorBoxToUser;
    pfnShow(lpctText, lpctCaption);
}

bool IsDebugOutputOn()
{
#if defined(QUIVER_DIAGNOSTICS)
    return true;
#else
    return g_pfnDebugOutput != nullptr;
#endif
}

void OutputDebug(const wchar_t* lpctText)
{
    if (!IsDebugOutputOn())
        return;
    const PfnDebugOutput pfnOutput = g_pfnDebugOutput != nullptr ? g_pfnDebugOutput : OutputDebugToPlatform;
    pfnOutput(lpctText);
}

bool IsFaultDue(EFileOperation eOperation)
{
    const std::uint32_t dwError = g_pfnFileFault != nullptr ? g_pfnFileFault(eOperation) : Error_Success;
    if (dwError != Error_Success)
        Fail(dwError);
    return dwError != Error_Success;
}

} // namespace QvXmlLib9::Platform
