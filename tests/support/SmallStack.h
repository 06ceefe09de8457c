#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>

#if defined(_WIN32)
#include "quiver/foundation/StackGuard.h"

#include <utility>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace QvTest
{

/// What a thread is to run, and the exception that it ended in.
struct SStackRun
{
    const std::function<void()>& action;
    std::exception_ptr pFailure;

    void Run()
    {
        try
        {
            action();
        }
        catch (...)
        {
            pFailure = std::current_exception();
        }
    }
};

#if defined(_WIN32)
/// Runs `action` with no more stack than a thread of this size has for use: the system may have given the thread more.
[[gnu::noinline]] inline void RunWithin(std::size_t nStackBytes, SStackRun& run)
{
    const std::size_t nUsable = QvXmlLib9::GetUsableStackBytes();
    const std::size_t nWanted = nStackBytes - nStackBytes / 4;
    volatile char* const pUsedUp = static_cast<char*>(__builtin_alloca(nUsable > nWanted ? nUsable - nWanted : 1));
    *pUsedUp = 0;
    run.Run();
}
#endif

/// Runs `action` on a thread of its own that has `nStackBytes` of stack, and passes its exception on.
inline void RunOnStack(std::size_t nStackBytes, const std::function<void()>& action)
{
    SStackRun run{action, nullptr};
#if defined(_WIN32)
    std::pair<std::size_t, SStackRun*> order(nStackBytes, &run);
    const auto pfnMain = [](void* pOrder) -> DWORD
    {
        const auto& [nBytes, pRun] = *static_cast<std::pair<std::size_t, SStackRun*>*>(pOrder);
        RunWithin(nBytes, *pRun);
        return 0;
    };
    const HANDLE hThread =
        ::CreateThread(nullptr, nStackBytes, pfnMain, &order, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    ASSERT_NE(nullptr, hThread);
    ::WaitForSingleObject(hThread, INFINITE);
    ::CloseHandle(hThread);
#else
    const auto pfnMain = [](void* pRun) -> void*
    {
        static_cast<SStackRun*>(pRun)->Run();
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_t thread;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, nStackBytes));
    ASSERT_EQ(0, pthread_create(&thread, &attributes, pfnMain, &run));
    pthread_attr_destroy(&attributes);
    pthread_join(thread, nullptr);
#endif
    if (run.pFailure)
        std::rethrow_exception(run.pFailure);
}

} // namespace QvTest
