#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

namespace QvTest
{

/// A thread that outlives what it has done, such as the work for a module that is unloaded meanwhile.
class CWorker
{
public:
    CWorker()
        : m_thread([this] { Run(); })
    {
    }
    ~CWorker()
    {
        Do(nullptr);
        m_thread.join();
    }
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;

    /// Runs `work` on the thread and waits for its end. Null ends the thread.
    void Do(std::function<void()> work)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_work = std::move(work);
        m_bWaiting = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_bWaiting; });
    }

private:
    void Run()
    {
        for (bool bGoOn = true; bGoOn;)
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_changed.wait(lock, [this] { return m_bWaiting; });
            bGoOn = m_work != nullptr;
            if (bGoOn)
                m_work();
            m_work = nullptr;
            m_bWaiting = false;
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::function<void()> m_work;
    bool m_bWaiting = false;
    std::thread m_thread;
};

} // namespace QvTest
