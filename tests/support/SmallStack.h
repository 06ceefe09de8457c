#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>

#if defined(_WIN32)
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

/// Runs `action` on a thread of its own that has `nStackBytes` of stack, and passes its exception on.
inline void RunOnStack(std::size_t nStackBytes, const std::function<void()>& action)
{
    SStackRun run{action, nullptr};
#if defined(_WIN32)
    const auto pfnMain = [](void* pRun) -> DWORD
    {
        static_cast<SStackRun*>(pRun)->Run();
        return 0;
    };
    const HANDLE hThread =
        ::CreateThread(nullptr, nStackBytes, pfnMain, &run, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
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
