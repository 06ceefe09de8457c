#include "quiver/foundation/platform/Platform.h"

#include <cstdint>
#include <cstdio>
#include <pthread.h>
#include <string>

namespace QvXmlLib9::Platform
{

namespace
{

PfnMessageBox s_pfnMessageBox = nullptr;
PfnDebugOutput s_pfnDebugOutput = nullptr;

// Reports must not depend on the locale or throw, so they go out as plain ASCII with escapes for the rest.
void WriteToStandardError(const wchar_t* lpctText)
{
    for (; *lpctText != 0; ++lpctText)
    {
        const auto nUnit = static_cast<unsigned long>(*lpctText);
        if (nUnit < 128)
            std::fputc(static_cast<int>(nUnit), stderr);
        else
            std::fprintf(stderr, "\\u%04lX", nUnit);
    }
}

} // namespace

PfnMessageBox SetMessageBoxSink(PfnMessageBox pfnSink)
{
    const PfnMessageBox pfnOld = s_pfnMessageBox;
    s_pfnMessageBox = pfnSink;
    return pfnOld;
}

PfnDebugOutput SetDebugOutputSink(PfnDebugOutput pfnSink)
{
    const PfnDebugOutput pfnOld = s_pfnDebugOutput;
    s_pfnDebugOutput = pfnSink;
    return pfnOld;
}

void ShowErrorBox(const wchar_t* lpctText, const wchar_t* lpctCaption)
{
    if (s_pfnMessageBox != nullptr)
    {
        s_pfnMessageBox(lpctText, lpctCaption);
        return;
    }
    WriteToStandardError(lpctCaption);
    WriteToStandardError(L"\n");
    WriteToStandardError(lpctText);
    WriteToStandardError(L"\n");
}

bool IsDebugOutputOn()
{
#if defined(QUIVER_DIAGNOSTICS)
    return true;
#else
    return s_pfnDebugOutput != nullptr;
#endif
}

void OutputDebug(const wchar_t* lpctText)
{
    if (s_pfnDebugOutput != nullptr)
        s_pfnDebugOutput(lpctText);
#if defined(QUIVER_DIAGNOSTICS)
    else
        WriteToStandardError(lpctText);
#endif
}

namespace
{

struct SStackBounds
{
    std::uintptr_t nLow = 0;
    std::size_t nSize = SIZE_MAX;
};

SStackBounds ReadStackBounds()
{
    SStackBounds bounds;
#if defined(__linux__)
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0)
    {
        void* pLow = nullptr;
        std::size_t nSize = 0;
        if (pthread_attr_getstack(&attributes, &pLow, &nSize) == 0)
        {
            bounds.nLow = reinterpret_cast<std::uintptr_t>(pLow);
            bounds.nSize = nSize;
        }
        pthread_attr_destroy(&attributes);
    }
#endif
    return bounds;
}

// Asking the system reads a file on the main thread, so each thread asks once.
const SStackBounds& GetStackBounds()
{
    thread_local const SStackBounds t_bounds = ReadStackBounds();
    return t_bounds;
}

} // namespace

std::size_t GetStackBytesLeft()
{
    const auto nHere = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const SStackBounds& bounds = GetStackBounds();
    if (bounds.nSize == SIZE_MAX)
        return SIZE_MAX;
    return nHere > bounds.nLow ? nHere - bounds.nLow : 0;
}

std::size_t GetStackSize()
{
    return GetStackBounds().nSize;
}

} // namespace QvXmlLib9::Platform
