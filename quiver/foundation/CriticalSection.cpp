#include "quiver/foundation/CriticalSection.h"

#include <memory>
#include <mutex>

// The standard's recursive mutex has the meaning of the platform's critical section on every platform we build for.
struct CQVCriticalSection::SLock
{
    std::recursive_mutex m_mutex;
};

CQVCriticalSection::~CQVCriticalSection()
{
    delete m_pLock.load(std::memory_order_acquire);
}

CQVCriticalSection::SLock& CQVCriticalSection::GetLock()
{
    SLock* pLock = m_pLock.load(std::memory_order_acquire);
    if (pLock == nullptr)
    {
        auto pNew = std::make_unique<SLock>();
        if (m_pLock.compare_exchange_strong(pLock, pNew.get(), std::memory_order_acq_rel, std::memory_order_acquire))
            pLock = pNew.release();
    }
    return *pLock;
}

void CQVCriticalSection::Enter()
{
    GetLock().m_mutex.lock();
}

void CQVCriticalSection::Leave()
{
    GetLock().m_mutex.unlock();
}
