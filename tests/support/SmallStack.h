#pragma once

#include <pthread.h>

#include <functional>

namespace QvTest
{

/// Runs `action` on a thread whose stack has 256 KiB, where depth matters soonest.
inline void RunOnSmallStack(std::function<void()> action)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 256 * 1024);
    pthread_t thread{};
    pthread_create(
        &thread, &attributes,
        [](void* pAction) -> void*
        {
            (*static_cast<std::function<void()>*>(pAction))();
            return nullptr;
        },
        &action);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace QvTest
