#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <pthread.h>

namespace QvTest
{

/// Runs `action` on a thread of its own that has `nStackBytes` of stack, and passes its exception on.
inline void RunOnStack(std::size_t nStackBytes, const std::function<void()>& action)
{
    struct SRun
    {
        const std::function<void()>& action;
        std::exception_ptr pFailure;

        static void* Main(void* pRun)
        {
            auto& run = *static_cast<SRun*>(pRun);
            try
            {
                run.action();
            }
            catch (...)
            {
                run.pFailure = std::current_exception();
            }
            return nullptr;
        }
    } run{action, nullptr};

    pthread_attr_t attributes;
    pthread_t thread;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, nStackBytes));
    ASSERT_EQ(0, pthread_create(&thread, &attributes, &SRun::Main, &run));
    pthread_attr_destroy(&attributes);
    pthread_join(thread, nullptr);
    if (run.pFailure)
        std::rethrow_exception(run.pFailure);
}

} // namespace QvTest
