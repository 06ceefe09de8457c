#pragma once

#include "quiver/foundation/Export.h"

#include <atomic>

/// A lock of the platform, entered and left by hand. One thread may enter it again while it holds it, as the platform's
/// own object allows. Used by generated code through `CXmlGeneratedClass::m_csInit`:
///
///     m_csInit.Enter();
///     ...build the tables...
///     m_csInit.Leave();
class QVXMLLIB_API CQVCriticalSection
{
public:
    /// The platform's lock is made by the first `Enter`, so that one in static storage can be entered ahead of all
    /// dynamic initialisation.
    constexpr CQVCriticalSection() {}
    virtual ~CQVCriticalSection();
    CQVCriticalSection(const CQVCriticalSection&) = delete;
    CQVCriticalSection& operator=(const CQVCriticalSection&) = delete;

    /// Waits until no other thread holds the lock, and takes it.
    /// @throws std::bad_alloc, the first time, for want of memory.
    void Enter();

    /// Gives the lock back. Only the thread that entered may call this.
    void Leave();

private:
    struct SLock;
    SLock& GetLock();

    std::atomic<SLock*> m_pLock{nullptr};
};

/// Holds a critical section for as long as it lives, so that no path out of a block forgets to leave it.
class CQVCriticalSectionLock
{
public:
    explicit CQVCriticalSectionLock(CQVCriticalSection& cs)
        : m_cs(cs)
    {
        m_cs.Enter();
    }
    ~CQVCriticalSectionLock() { m_cs.Leave(); }
    CQVCriticalSectionLock(const CQVCriticalSectionLock&) = delete;
    CQVCriticalSectionLock& operator=(const CQVCriticalSectionLock&) = delete;

private:
    CQVCriticalSection& m_cs;
};
