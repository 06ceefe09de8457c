#include "quiver/foundation/MemoryLeakHelp.h"

#include "quiver/foundation/Assert.h"
#include "quiver/foundation/Functions.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <list>
#include <memory>
#include <mutex>
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
    static constexpr std::size_t s_nClasses = 512;

    struct SCount
    {
        std::atomic<std::int64_t> lTotal{0};
        std::atomic<std::int64_t> lDestroyed{0};
    };

    struct SRemembered
    {
        const wchar_t* lpctClassName = nullptr;
        ClassType* pct = nullptr;
    };

    std::array<SCount, s_nClasses> m_counts;
    /// The record last found for a name, by the name's address, so that the list is searched once a class.
    std::array<SRemembered, 256> m_remembered;
    std::uint64_t m_nGeneration = 0;

    SRemembered& Remember(const wchar_t* lpctClassName)
    {
        const auto nAddress = reinterpret_cast<std::uintptr_t>(lpctClassName);
        return m_remembered[((nAddress >> 4) ^ (nAddress >> 12)) % m_remembered.size()];
    }
};

void AddOne(std::atomic<std::int64_t>& lCount)
{
    lCount.store(lCount.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

struct SState
{
    std::mutex m_cs;
    /// Classes in order of first creation, as the report lists them.
    std::list<ClassType*> m_list;
    /// Every record ever made. A record outlives `Cleanup`, since objects that are still alive point to theirs.
    std::vector<std::unique_ptr<ClassType>> m_records;
    std::vector<CThreadCounts*> m_threads;
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
thread_local CThreadCounts* t_pCounts QV_FAST_THREAD_LOCAL = nullptr;
thread_local bool t_bThreadEnded = false;
#undef QV_FAST_THREAD_LOCAL

/// Ends a thread's counting: what it counted goes to the records.
class CThreadCountsOwner
{
public:
    CThreadCountsOwner()
        : m_pCounts(std::make_unique<CThreadCounts>())
    {
        SState& state = State();
        const std::lock_guard<std::mutex> lock(state.m_cs);
        state.m_threads.push_back(m_pCounts.get());
        t_pCounts = m_pCounts.get();
    }

    ~CThreadCountsOwner()
    {
        SState& state = State();
        const std::lock_guard<std::mutex> lock(state.m_cs);
        for (const std::unique_ptr<ClassType>& pct : state.m_records)
        {
            if (pct->nIndex >= CThreadCounts::s_nClasses)
                break;
            const CThreadCounts::SCount& count = m_pCounts->m_counts[pct->nIndex];
            pct->lTotalCount += count.lTotal.load(std::memory_order_relaxed);
            pct->lDestroyedCount += count.lDestroyed.load(std::memory_order_relaxed);
        }
        state.m_threads.erase(std::find(state.m_threads.begin(), state.m_threads.end(), m_pCounts.get()));
        t_pCounts = nullptr;
        t_bThreadEnded = true;
    }

    CThreadCountsOwner(const CThreadCountsOwner&) = delete;
    CThreadCountsOwner& operator=(const CThreadCountsOwner&) = delete;

private:
    std::unique_ptr<CThreadCounts> m_pCounts;
};

/// The calling thread's table, or null while the thread comes to its end.
CThreadCounts* GetThreadCounts()
{
    if (t_pCounts == nullptr && !t_bThreadEnded)
        thread_local const CThreadCountsOwner t_owner;
    return t_pCounts;
}

ClassType* FindOrAddRecord(const wchar_t* lpctClassName)
{
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    for (ClassType* pct : state.m_list)
    {
        if (pct->strClassName == lpctClassName)
            return pct;
    }
    state.m_records.push_back(std::make_unique<ClassType>(lpctClassName, state.m_records.size()));
    state.m_list.push_back(state.m_records.back().get());
    return state.m_records.back().get();
}

ClassType* GetRecord(CThreadCounts* pCounts, const wchar_t* lpctClassName)
{
    if (pCounts == nullptr)
        return FindOrAddRecord(lpctClassName);
    const std::uint64_t nGeneration = s_nGeneration.load(std::memory_order_relaxed);
    if (pCounts->m_nGeneration != nGeneration)
    {
        pCounts->m_remembered.fill({});
        pCounts->m_nGeneration = nGeneration;
    }
    // The text is compared too: a name need not be a literal, and another one may have come to stand at its address.
    CThreadCounts::SRemembered& remembered = pCounts->Remember(lpctClassName);
    if (remembered.lpctClassName != lpctClassName ||
        std::wcscmp(remembered.pct->strClassName.c_str(), lpctClassName) != 0)
    {
        remembered.pct = FindOrAddRecord(lpctClassName);
        remembered.lpctClassName = lpctClassName;
    }
    return remembered.pct;
}

void CountCreation(CThreadCounts* pCounts, ClassType& ct)
{
    if (pCounts != nullptr && ct.nIndex < CThreadCounts::s_nClasses)
        AddOne(pCounts->m_counts[ct.nIndex].lTotal);
    else
        ++ct.lTotalCount;
}

/// One count over all threads; the caller holds the lock.
std::int64_t AddUp(const SState& state, const ClassType& ct, const std::atomic<std::int64_t>& lRecordCount,
                   std::atomic<std::int64_t> CThreadCounts::SCount::*plThreadCount)
{
    std::int64_t lSum = lRecordCount.load(std::memory_order_acquire);
    if (ct.nIndex < CThreadCounts::s_nClasses)
    {
        for (const CThreadCounts* pCounts : state.m_threads)
            lSum += (pCounts->m_counts[ct.nIndex].*plThreadCount).load(std::memory_order_acquire);
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
/// Reports the counts when the library is unloaded.
class CInstanceTracker
{
public:
    CInstanceTracker()
    {
        State();
        QvXmlLib9::OutputTrace(L"Starting to track Class instances\n");
    }

    ~CInstanceTracker()
    {
        QvXmlLib9::OutputTrace(L"Dumping Class instances\n");
        // The names of classes reach the trace as text and never as a format.
        QvXmlLib9::OutputTrace(L"%s", CInstanceMonitor::DumpState().c_str());
        QvXmlLib9::OutputTrace(L"\n");
        CInstanceMonitor::Cleanup();
    }
};

const CInstanceTracker s_tracker;
#endif

} // namespace

CInstanceMonitor::CInstanceMonitor(const wchar_t* lpctClassName)
{
    CThreadCounts* const pCounts = GetThreadCounts();
    m_pct = GetRecord(pCounts, lpctClassName);
    CountCreation(pCounts, *m_pct);
}

CInstanceMonitor::CInstanceMonitor(CInstanceClass& instanceClass)
    : m_pct(instanceClass.GetRecord())
{
    CountCreation(GetThreadCounts(), *m_pct);
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

CInstanceMonitor::~CInstanceMonitor()
{
    QV_ASSERT(m_pct);
    CThreadCounts* const pCounts = GetThreadCounts();
    if (pCounts != nullptr && m_pct->nIndex < CThreadCounts::s_nClasses)
        AddOne(pCounts->m_counts[m_pct->nIndex].lDestroyed);
    else
        ++m_pct->lDestroyedCount;
#if defined(QUIVER_DIAGNOSTICS)
    QV_ASSERT_MSG(HasInstances(*m_pct), "m_pct->lInstanceCount >= 0");
#endif
}

std::wstring CInstanceMonitor::DumpState()
{
    SState& state = State();
    const std::lock_guard<std::mutex> lock(state.m_cs);
    std::wstring strState = L"Instances of classes still in existence/Total Number of instances created\n";
    bool bFirst = true;
    for (const ClassType* pct : state.m_list)
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
    state.m_list.clear();
    ++s_nGeneration;
}
