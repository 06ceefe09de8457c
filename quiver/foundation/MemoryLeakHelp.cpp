#include "quiver/foundation/MemoryLeakHelp.h"

#include "quiver/foundation/Apart.h"
#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Functions.h"
#include "quiver/foundation/InstanceCounts.h"
#include "quiver/foundation/platform/Platform.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <unordered_map>
#include <vector>

struct CInstanceMonitor::ClassType
{
    ClassType(const wchar_t* lpctClassName, std::size_t nIndex_)
        : strClassName(lpctClassName)
        , nIndex(nIndex_)
    {
    }

    const std::wstring strClassName;
    /// Position of the class in every thread's table.
    const std::size_t nIndex;
    /// The class first created after this one, in the list that the report follows.
    ClassType* pNext = nullptr;
    /// What threads that have ended counted, and what no table had room for.
    std::atomic<std::int64_t> lTotalCount{0};
    std::atomic<std::int64_t> lDestroyedCount{0};
};

namespace
{

using ClassType = CInstanceMonitor::ClassType;

/// One thread's counts. Only that thread writes, so a plain load and store do instead of a locked addition; the reader
/// of the report adds up all tables. Creations and destructions are counted apart, since an object may be made on one
/// thread and destroyed on another.
class CThreadCounts
{
public:
    struct SCount
    {
        std::atomic<std::int64_t> lTotal{0};
        std::atomic<std::int64_t> lDestroyed{0};
    };

    CThreadCounts() = default;
    ~CThreadCounts()
    {
        for (const std::atomic<SChunk*>& pChunk : m_chunks)
            delete pChunk.load(std::memory_order_relaxed);
    }
    CThreadCounts(const CThreadCounts&) = delete;
    CThreadCounts& operator=(const CThreadCounts&) = delete;

    /// For the thread itself. Null where nothing has been counted.
    SCount* FindOwn(std::size_t nIndex) noexcept
    {
        if (nIndex >= s_nChunks * s_nChunkClasses)
            return nullptr;
        SChunk* const pChunk = m_chunks[nIndex / s_nChunkClasses].load(std::memory_order_relaxed);
        return pChunk != nullptr ? &pChunk->counts[nIndex % s_nChunkClasses] : nullptr;
    }

    /// For the thread itself. Null where there is no room, for classes beyond the last chunk or for want of memory.
    SCount* FindOrAdd(std::size_t nIndex) noexcept
    {
        SCount* const pCount = FindOwn(nIndex);
        if (pCount != nullptr || nIndex >= s_nChunks * s_nChunkClasses)
            return pCount;
        SChunk* const pChunk = new (std::nothrow) SChunk;
        if (pChunk == nullptr)
            return nullptr;
        m_chunks[nIndex / s_nChunkClasses].store(pChunk, std::memory_order_release);
        return &pChunk->counts[nIndex % s_nChunkClasses];
    }

    /// For any thread that holds the lock; null where nothing has been counted.
    const SCount* Find(std::size_t nIndex) const
    {
        if (nIndex >= s_nChunks * s_nChunkClasses)
            return nullptr;
        const SChunk* const pChunk = m_chunks[nIndex / s_nChunkClasses].load(std::memory_order_acquire);
        return pChunk != nullptr ? &pChunk->counts[nIndex % s_nChunkClasses] : nullptr;
    }

private:
    static constexpr std::size_t s_nChunkClasses = 256;
    static constexpr std::size_t s_nChunks = 256;

    struct SChunk
    {
        std::array<SCount, s_nChunkClasses> counts;
    };

    /// Chunks come as classes do, and stay where they are: others read them meanwhile.
    std::array<std::atomic<SChunk*>, s_nChunks> m_chunks{};
};

/// The record last found for a name, by the name's address, so that a thread asks the shared table once a class.
class CRememberedNames
{
public:
    /// Null if the name is not remembered, or if another text has come to stand at its address.
    ClassType* Find(const wchar_t* lpctClassName, std::uint64_t nGeneration)
    {
        if (m_nGeneration != nGeneration)
        {
            m_entries.assign(s_nFirstEntries, SEntry());
            m_nUsed = 0;
            m_nGeneration = nGeneration;
        }
        const SEntry& entry = m_entries[GetPlace(lpctClassName)];
        const bool bFound =
            entry.lpctClassName != nullptr && std::wcscmp(entry.pct->strClassName.c_str(), lpctClassName) == 0;
        return bFound ? entry.pct : nullptr;
    }

    void Remember(const wchar_t* lpctClassName, ClassType* pct)
    {
        SEntry& entry = m_entries[GetPlace(lpctClassName)];
        m_nUsed += entry.lpctClassName == nullptr;
        entry = {lpctClassName, pct};
        if (m_nUsed * 2 > m_entries.size())
            MakeRoom();
    }

private:
    struct SEntry
    {
        const wchar_t* lpctClassName = nullptr;
        ClassType* pct = nullptr;
    };

    static constexpr std::size_t s_nFirstEntries = 64;
    /// Names need not be literals; where their addresses never end, remembering starts anew from time to time.
    static constexpr std::size_t s_nMostEntries = 32768;

    /// The entry of a name, or the empty one that it would take.
    std::size_t GetPlace(const wchar_t* lpctClassName) const
    {
        const std::size_t nMask = m_entries.size() - 1;
        const std::uint64_t nMixed = reinterpret_cast<std::uintptr_t>(lpctClassName) * 0x9E3779B97F4A7C15u;
        std::size_t nPlace = static_cast<std::size_t>(nMixed >> 32) & nMask;
        while (m_entries[nPlace].lpctClassName != nullptr && m_entries[nPlace].lpctClassName != lpctClassName)
            nPlace = (nPlace + 1) & nMask;
        return nPlace;
    }

    void MakeRoom()
    {
        const bool bAnew = m_entries.size() >= s_nMostEntries;
        std::vector<SEntry> old(bAnew ? s_nFirstEntries : m_entries.size() * 2);
        old.swap(m_entries);
        m_nUsed = bAnew ? 0 : m_nUsed;
        for (const SEntry& entry : old)
        {
            if (!bAnew && entry.lpctClassName != nullptr)
                m_entries[GetPlace(entry.lpctClassName)] = entry;
        }
    }

    /// A power of two, at most half of them in use.
    std::vector<SEntry> m_entries;
    std::size_t m_nUsed = 0;
    std::uint64_t m_nGeneration = 0;
};

/// What a thread has for itself.
struct SThread
{
    CThreadCounts counts;
    CRememberedNames names;
};

void Add(std::atomic<std::int64_t>& lCount, std::int64_t lMore)
{
    lCount.store(lCount.load(std::memory_order_relaxed) + lMore, std::memory_order_release);
}

struct SState
{
    std::mutex m_cs;
    /// Classes in order of first creation, as the report lists them.
    ClassType* m_pFirst = nullptr;
    ClassType* m_pLast = nullptr;
    /// The same by name. The names are those of the records.
    std::unordered_map<std::wstring_view, ClassType*> m_byName;
    /// Every record ever made. A record outlives `Cleanup`, since objects that are still alive point to theirs.
    std::vector<std::unique_ptr<ClassType>> m_records;
    std::vector<const CThreadCounts*> m_threads;
};

/// Counts the calls of `Cleanup`, after which nobody may use a record that was remembered before.
std::atomic<std::uint64_t> s_nGeneration{1};

/// Never destroyed: objects in static storage are counted to the very end of the process.
SState& State()
{
    static SState* const s_pState = new SState;
    return *s_pState;
}

#if defined(__GNUC__) && !defined(_WIN32)
#define QV_FAST_THREAD_LOCAL __attribute__((tls_model("initial-exec")))
#else
#define QV_FAST_THREAD_LOCAL
#endif
thread_local SThread* t_pThread QV_FAST_THREAD_LOCAL = nullptr;
thread_local bool t_bThreadEnded = false;
#undef QV_FAST_THREAD_LOCAL

/// Ends a thread's counting: what it counted goes to the records.
void EndThread(void* pData)
{
    const std::unique_ptr<SThread> pThread(static_cast<SThread*>(pData));
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    for (const std::unique_ptr<ClassType>& pct : state.m_records)
    {
        const CThreadCounts::SCount* const pCount = pThread->counts.Find(pct->nIndex);
        if (pCount == nullptr)
            continue;
        pct->lTotalCount += pCount->lTotal.load(std::memory_order_relaxed);
        pct->lDestroyedCount += pCount->lDestroyed.load(std::memory_order_relaxed);
    }
    state.m_threads.erase(std::find(state.m_threads.begin(), state.m_threads.end(), &pThread->counts));
    t_pThread = nullptr;
    t_bThreadEnded = true;
}

/// Begins the counting of the calling thread.
void BeginThread()
{
    auto pThread = std::make_unique<SThread>();
    {
        SState& state = State();
        const std::lock_guard<std::mutex> lock(state.m_cs);
        state.m_threads.push_back(&pThread->counts);
        if (!QvXmlLib9::Platform::CallAtThreadEnd(&EndThread, pThread.get()))
        {
            state.m_threads.pop_back();
            throw std::bad_alloc();
        }
    }
    t_pThread = pThread.release();
}

SThread* MakeThread()
{
    if (!t_bThreadEnded)
        BeginThread();
    return t_pThread;
}

/// What the calling thread has, or null while the thread comes to its end.
inline SThread* GetThread()
{
    return t_pThread != nullptr ? t_pThread : MakeThread();
}

/// The same for a destructor, which must not fail: null for want of memory too.
inline SThread* GetThreadOrNull() noexcept
{
    if (t_pThread != nullptr)
        return t_pThread;
    try
    {
        return MakeThread();
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

#if defined(QUIVER_DIAGNOSTICS)
/// Reports the counts when the library is unloaded.
class CInstanceTracker
{
public:
    CInstanceTracker() { QvXmlLib9::OutputTrace(L"Starting to track Class instances\n"); }

    ~CInstanceTracker()
    {
        QvXmlLib9::OutputTrace(L"Dumping Class instances\n");
        // The names of classes reach the trace as text and never as a format.
        QvXmlLib9::OutputTrace(L"%s", CInstanceMonitor::DumpState().c_str());
        QvXmlLib9::OutputTrace(L"\n");
        CInstanceMonitor::Cleanup();
    }
};
#endif

/// Comes ahead of the first instance, so that what is static and holds some goes ahead of the report.
void TrackInstances()
{
#if defined(QUIVER_DIAGNOSTICS)
    static const CInstanceTracker s_tracker;
#endif
}

ClassType* FindOrAddRecord(const wchar_t* lpctClassName)
{
    TrackInstances();
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    const auto it = state.m_byName.find(lpctClassName);
    if (it != state.m_byName.end())
        return it->second;
    state.m_records.push_back(std::make_unique<ClassType>(lpctClassName, state.m_records.size()));
    ClassType* const pct = state.m_records.back().get();
    state.m_byName.emplace(pct->strClassName, pct);
    (state.m_pLast != nullptr ? state.m_pLast->pNext : state.m_pFirst) = pct;
    state.m_pLast = pct;
    return pct;
}

ClassType* GetRecord(SThread* pThread, const wchar_t* lpctClassName)
{
    if (pThread == nullptr)
        return FindOrAddRecord(lpctClassName);
    const std::uint64_t nGeneration = s_nGeneration.load(std::memory_order_relaxed);
    ClassType* pct = pThread->names.Find(lpctClassName, nGeneration);
    if (pct == nullptr)
    {
        pct = FindOrAddRecord(lpctClassName);
        pThread->names.Remember(lpctClassName, pct);
    }
    return pct;
}

using PlCount = std::atomic<std::int64_t> CThreadCounts::SCount::*;

/// Counts in the calling thread's table, or in the record where the thread has no room.
void Count(SThread* pThread, ClassType& ct, PlCount plThreadCount, std::atomic<std::int64_t>& lRecordCount,
           std::int64_t lMore = 1)
{
    CThreadCounts::SCount* const pCount = pThread != nullptr ? pThread->counts.FindOrAdd(ct.nIndex) : nullptr;
    if (pCount != nullptr)
        Add(pCount->*plThreadCount, lMore);
    else
        lRecordCount += lMore;
}

/// The same for a thread that need not have begun to count. Kept apart, so that who calls it saves no registers for it.
QV_APART void CountFromStart(ClassType& ct, PlCount plThreadCount, std::atomic<std::int64_t>& lRecordCount,
                             std::int64_t lMore) noexcept
{
    Count(GetThreadOrNull(), ct, plThreadCount, lRecordCount, lMore);
}

/// The same where nearly always both the thread and the class's place in its table are there: a few instructions, and
/// no call.
inline void CountAtHand(ClassType& ct, PlCount plThreadCount, std::atomic<std::int64_t>& lRecordCount,
                        std::int64_t lMore) noexcept
{
    CThreadCounts::SCount* const pCount = t_pThread != nullptr ? t_pThread->counts.FindOwn(ct.nIndex) : nullptr;
    if (pCount != nullptr)
        Add(pCount->*plThreadCount, lMore);
    else
        CountFromStart(ct, plThreadCount, lRecordCount, lMore);
}

/// One count over all threads; the caller holds the lock.
std::int64_t AddUp(const SState& state, const ClassType& ct, const std::atomic<std::int64_t>& lRecordCount,
                   std::atomic<std::int64_t> CThreadCounts::SCount::*plThreadCount)
{
    std::int64_t lSum = lRecordCount.load(std::memory_order_acquire);
    for (const CThreadCounts* pCounts : state.m_threads)
    {
        const CThreadCounts::SCount* const pCount = pCounts->Find(ct.nIndex);
        if (pCount != nullptr)
            lSum += (pCount->*plThreadCount).load(std::memory_order_acquire);
    }
    return lSum;
}

/// Living instances and instances ever made; the caller holds the lock. Destructions are read first: whatever was seen
/// to be destroyed is then seen to have been made, so threads at work never let a class appear to have less than none.
std::pair<std::int64_t, std::int64_t> AddUp(const SState& state, const ClassType& ct)
{
    const std::int64_t lDestroyed = AddUp(state, ct, ct.lDestroyedCount, &CThreadCounts::SCount::lDestroyed);
    const std::int64_t lTotal = AddUp(state, ct, ct.lTotalCount, &CThreadCounts::SCount::lTotal);
    return {lTotal - lDestroyed, lTotal};
}

[[maybe_unused]] bool HasInstances(const ClassType& ct)
{
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    return AddUp(state, ct).first >= 0;
}

#if defined(QUIVER_DIAGNOSTICS)
const bool s_bTracked = (TrackInstances(), true);
#endif

} // namespace

CInstanceMonitor::CInstanceMonitor(const wchar_t* lpctClassName)
{
    SThread* const pThread = GetThread();
    m_pct = GetRecord(pThread, lpctClassName != nullptr ? lpctClassName : L"");
    Count(pThread, *m_pct, &CThreadCounts::SCount::lTotal, m_pct->lTotalCount);
}

CInstanceMonitor::CInstanceMonitor(CInstanceClass& instanceClass)
    : m_pct(instanceClass.CountCreation())
{
}

CInstanceMonitor::ClassType* CInstanceClass::GetRecord()
{
    const std::uint64_t nGeneration = s_nGeneration.load(std::memory_order_relaxed);
    if (m_nGeneration.load(std::memory_order_acquire) != nGeneration)
    {
        m_pct.store(FindOrAddRecord(m_lpctClassName), std::memory_order_relaxed);
        m_nGeneration.store(nGeneration, std::memory_order_release);
    }
    return m_pct.load(std::memory_order_relaxed);
}

CInstanceMonitor::ClassType* CInstanceClass::CountCreation()
{
    CInstanceMonitor::ClassType* const pct = GetRecord();
    CountCreations(*pct, 1);
    return pct;
}

void CInstanceClass::CountDestruction(CInstanceMonitor::ClassType& ct) noexcept
{
    CountDestructions(ct, 1);
#if defined(QUIVER_DIAGNOSTICS)
    QV_ASSERT_MSG(HasInstances(ct), "m_pct->lInstanceCount >= 0");
#endif
}

void CInstanceClass::CountCreations(CInstanceMonitor::ClassType& ct, std::uint64_t nCount) noexcept
{
    CountAtHand(ct, &CThreadCounts::SCount::lTotal, ct.lTotalCount, static_cast<std::int64_t>(nCount));
}

void CInstanceClass::CountDestructions(CInstanceMonitor::ClassType& ct, std::uint64_t nCount) noexcept
{
    CountAtHand(ct, &CThreadCounts::SCount::lDestroyed, ct.lDestroyedCount, static_cast<std::int64_t>(nCount));
}

std::uint64_t CInstanceClass::GetGeneration()
{
    return s_nGeneration.load(std::memory_order_relaxed);
}

CInstanceMonitor::~CInstanceMonitor()
{
    QV_ASSERT(m_pct);
    CInstanceClass::CountDestruction(*m_pct);
}

void LockInstanceCounts()
{
    State().m_cs.lock();
}

void UnlockInstanceCounts()
{
    State().m_cs.unlock();
}

void ForgetInstances(const wchar_t* lpctClassName, std::int64_t nInstances)
{
    if (nInstances == 0)
        return;
    SThread* const pThread = GetThread();
    ClassType& ct = *GetRecord(pThread, lpctClassName);
    Count(pThread, ct, &CThreadCounts::SCount::lDestroyed, ct.lDestroyedCount, -nInstances);
    Count(pThread, ct, &CThreadCounts::SCount::lTotal, ct.lTotalCount, -nInstances);
}

std::wstring CInstanceMonitor::DumpState()
{
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    std::wstring strState = L"Instances of classes still in existence/Total Number of instances created\n";
    bool bFirst = true;
    for (const ClassType* pct = state.m_pFirst; pct != nullptr; pct = pct->pNext)
    {
        const auto [lInstances, lTotal] = AddUp(state, *pct);
        if (!bFirst)
            strState += L'\n';
        bFirst = false;
        strState +=
            QvXmlLib9::FormatString(lInstances >= 1 ? L"--> %s = %d/%d" : L"    %s = %d/%d", pct->strClassName.c_str(),
                                    static_cast<int>(lInstances), static_cast<int>(lTotal));
    }
    return strState;
}

void CInstanceMonitor::Cleanup()
{
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    state.m_pFirst = state.m_pLast = nullptr;
    state.m_byName.clear();
    ++s_nGeneration;
}
