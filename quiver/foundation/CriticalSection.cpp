#include "quiver/foundation/CriticalSection.h"

#include <mutex>

// The standard's recursive mutex has the meaning of the platform's critical section on every platform we build for.
struct CQVCriticalSection::SLock
{
    std::recursive_mutex m_mutex;
};

CQVCriticalSection::CQVCriticalSection()
    : m_pLock(std::make_unique<SLock>())
{
}

CQVCriticalSection::~CQVCriticalSection() = default;

void CQVCriticalSection::Enter()
{
    m_pLock->m_mutex.lock();
}

void CQVCriticalSection::Leave()
{
    m_pLock->m_mutex.unlock();
}
