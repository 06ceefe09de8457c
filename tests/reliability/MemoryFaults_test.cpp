// The n-th allocation fails, for every n until none is left to fail: each operation ends in std::bad_alloc, in a message or in what it
// makes otherwise, and leaves nothing behind.

#include "quiver/QvXmlLib.h"
#include "tests/reliability/FailingMemory.h"
#include "tests/reliability/FaultOperations.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"
#include "tests/support/Process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <new>
#include <sstream>

#if !defined(_WIN32)
#include <unistd.h>
#endif

using namespace faults;
using namespace QvXmlLib9;

namespace
{

namespace fs = std::filesystem;

std::map<std::wstring, long> CountLiving()
{
    std::map<std::wstring, long> living;
    for (const auto& [strClass, counts] : QvTest::CountAllInstances())
        if (counts.nLiving != 0)
            living[strClass] = counts.nLiving;
    return living;
}

/// How an operation ended while memory did.
enum class EEnd
{
    Success,
    Message,
    BadAlloc,
    Other ///< a fault
};

struct SEnd
{
    EEnd eEnd = EEnd::Other;
    std::string strResult;
    bool bMet = false;
};

SEnd RunWith(const SOperation& operation, const fs::path& folder, long nAllocations, bool bForever)
{
    SEnd end;
    SResult result;
    g_nFailed = 0;
    g_bForever = bForever;
    g_nAllocationsLeft = nAllocations;
    try
    {
        result = operation.fnRun(folder);
        end.eEnd = result.bSucceeded ? EEnd::Success : EEnd::Message;
    }
    catch (const CQvException&)
    {
        end.eEnd = EEnd::Message;
    }
    catch (const std::bad_alloc&)
    {
        end.eEnd = EEnd::BadAlloc;
    }
    catch (...)
    {
        end.eEnd = EEnd::Other;
    }
    g_nAllocationsLeft = -1;
    end.bMet = g_nFailed > 0;
    ResetSwitches();
    if (end.eEnd == EEnd::Success)
        AddOutput(operation, folder, result);
    end.strResult = std::move(result.strResult);
    return end;
}

bool IsWanted(const SOperation& operation)
{
    return !operation.bLong || IsLong();
}

/// From one allocation that fails to the next: all do, but for a part of those of operations that make very many, and of all in the
/// quick form with a sanitizer, which takes ten times as long.
long GetStep(long n)
{
    if (IsLong())
        return n < 10000 ? 1 : 1 + n / 100;
#if defined(__SANITIZE_ADDRESS__)
    return 11;
#else
    return n < 2000 ? 1 : 1 + n / 500;
#endif
}

void FailEach(const SOperation& operation, bool bForever, long& nFaults)
{
    const QvTest::CTempDir dir;
    operation.fnPrepare(dir.PathOf(""));
    const SEnd wanted = RunWith(operation, dir.PathOf(""), -1, false);
    ASSERT_EQ(wanted.eEnd, EEnd::Success);
    const auto living = CountLiving();
    const std::size_t nOpenFiles = QvTest::CountOpenFiles();
    for (long n = 0;; n += GetStep(n))
    {
        if (testing::Test::HasFailure())
            return;
        const SEnd end = RunWith(operation, dir.PathOf(""), n, bForever);
        EXPECT_NE(end.eEnd, EEnd::Other) << "allocation " << n;
        EXPECT_EQ(CountLiving(), living) << "allocation " << n;
        EXPECT_EQ(QvTest::CountOpenFiles(), nOpenFiles) << "allocation " << n;
        if (end.eEnd == EEnd::Success)
        {
            EXPECT_EQ(end.strResult, wanted.strResult) << "allocation " << n;
        }
        if (!end.bMet)
            break;
        ++nFaults;
    }
    const SEnd again = RunWith(operation, dir.PathOf(""), -1, false);
    EXPECT_EQ(again.eEnd, EEnd::Success);
    EXPECT_EQ(again.strResult, wanted.strResult);
}

void FailAll(bool bForever)
{
    long nFaults = 0;
    for (const SOperation& operation : GetOperations())
    {
        if (!IsWanted(operation))
            continue;
        SCOPED_TRACE(operation.lpcName);
        FailEach(operation, bForever, nFaults);
    }
    EXPECT_GT(nFaults, 1000);
    std::printf("%ld faults\n", nFaults);
}

TEST(MemoryFaults, OneAllocationThatFailsEndsTheOperationCleanly)
{
    FailAll(false);
}

TEST(MemoryFaults, MemoryThatIsGoneForGoodEndsTheOperationCleanly)
{
    FailAll(true);
}

/// What a process does that has not done anything yet, where tables and caches are made for the first time.
struct SOrder
{
    enum class EWork
    {
        Prepare, ///< what the operation needs
        Tell,    ///< what comes of it, in a file
        Fail     ///< and come to what was told in the file, then or when nothing fails any more
    };

    EWork eWork;
    std::size_t nOperation;
    fs::path folder;
    fs::path told;
    long nAllocations;
};

/// How a process ended that failed, and one whose operation ended before anything did.
constexpr int s_nMet = 1;
constexpr int s_nNotMet = 0;
/// How it ended wrongly; a process that is ended by the C library says 3 on Windows.
constexpr int s_nWrong = 42;
constexpr int s_nWrongAgain = 43;

int Obey(const SOrder& order)
{
    const SOperation& operation = GetOperations()[order.nOperation];
    if (order.eWork == SOrder::EWork::Prepare)
    {
        operation.fnPrepare(order.folder);
        return 0;
    }
    if (order.eWork == SOrder::EWork::Tell)
    {
        QvTest::WriteFileBytes(order.told, RunWith(operation, order.folder, -1, false).strResult);
        return 0;
    }
    const std::string strWanted = QvTest::ReadFileBytes(order.told);
    const SEnd end = RunWith(operation, order.folder, order.nAllocations, false);
    if (end.eEnd == EEnd::Other || (end.eEnd == EEnd::Success && end.strResult != strWanted))
        return s_nWrong;
    const SEnd again = RunWith(operation, order.folder, -1, false);
    if (again.eEnd != EEnd::Success || again.strResult != strWanted)
        return s_nWrongAgain;
    return end.bMet ? s_nMet : s_nNotMet;
}

// Processes get their orders from the environment.

#if defined(_WIN32)

constexpr const wchar_t* s_lpctOrder = L"QUIVER_TEST_ORDER";

void SetOrder(const std::string& strOrder)
{
    ::SetEnvironmentVariableW(s_lpctOrder, fs::u8path(strOrder).c_str());
}

std::string GetOrder()
{
    wchar_t text[4096] = {};
    return ::GetEnvironmentVariableW(s_lpctOrder, text, 4096) != 0 ? fs::path(text).u8string() : std::string();
}

std::string GetProgram()
{
    wchar_t program[4096] = {};
    ::GetModuleFileNameW(nullptr, program, 4096);
    return fs::path(program).u8string();
}

[[noreturn]] void EndProcess(int nStatus)
{
    ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(nStatus));
    std::abort();
}

#else

constexpr const char* s_lpcOrder = "QUIVER_TEST_ORDER";

void SetOrder(const std::string& strOrder)
{
    ::setenv(s_lpcOrder, strOrder.c_str(), 1);
}

std::string GetOrder()
{
    const char* const lpcOrder = std::getenv(s_lpcOrder);
    return lpcOrder != nullptr ? lpcOrder : "";
}

std::string GetProgram()
{
    return fs::read_symlink("/proc/self/exe").string();
}

[[noreturn]] void EndProcess(int nStatus)
{
    ::_exit(nStatus);
}

#endif

/// Carries an order out in a process of its own.
/// @return the exit status.
int InFreshProcess(const SOrder& order)
{
    SetOrder(std::to_string(static_cast<int>(order.eWork)) + ' ' + std::to_string(order.nOperation) + ' ' +
             std::to_string(order.nAllocations) + ' ' + order.folder.u8string() + '|' + order.told.u8string());
    const int nStatus = QvTest::RunProcess(GetProgram(), {});
    SetOrder("");
    return nStatus;
}

/// Ends a process that has an order ahead of its first test.
class CFreshProcess : public testing::Environment
{
public:
    void SetUp() override
    {
        const std::string strOrder = GetOrder();
        if (strOrder.empty())
            return;
        std::istringstream in(strOrder);
        int nWork = 0;
        SOrder order{};
        std::string strFolder;
        std::string strTold;
        in >> nWork >> order.nOperation >> order.nAllocations >> std::ws;
        std::getline(in, strFolder, '|');
        std::getline(in, strTold);
        order.eWork = static_cast<SOrder::EWork>(nWork);
        order.folder = fs::u8path(strFolder);
        order.told = fs::u8path(strTold);
        EndProcess(Obey(order));
    }
};

const testing::Environment* const g_pFreshProcess = testing::AddGlobalTestEnvironment(new CFreshProcess);

/// Each run takes a process, which the sanitizer makes slow.
bool IsQuickWhenFresh(std::string_view svOperation)
{
#if !defined(__SANITIZE_ADDRESS__)
    if (svOperation == "quiver-gen --check")
        return true;
#endif
    return svOperation == "invoice, from octets";
}

/// From one allocation that fails in a fresh process to the next. Under Wine a process takes long to begin.
#if defined(_WIN32)
constexpr long s_nFreshStep = 13;
#else
constexpr long s_nFreshStep = 5;
#endif

TEST(AFreshProcess, SurvivesAnAllocationThatFailsAndDoesItsWorkThen)
{
    long nFaults = 0;
    for (std::size_t nOperation = 0; nOperation < GetOperations().size(); ++nOperation)
    {
        const SOperation& operation = GetOperations()[nOperation];
        if (operation.bLong || (!IsLong() && !IsQuickWhenFresh(operation.lpcName)))
            continue;
        SCOPED_TRACE(operation.lpcName);
        const QvTest::CTempDir dir;
        const QvTest::CTempDir toldDir;
        const fs::path told = toldDir.PathOf("told");
        fs::create_directory(toldDir.PathOf("folder"));
        SOrder order{SOrder::EWork::Prepare, nOperation, toldDir.PathOf("folder"), told, -1};
        ASSERT_EQ(InFreshProcess(order), 0);
        order.eWork = SOrder::EWork::Tell;
        ASSERT_EQ(InFreshProcess(order), 0);
        order.eWork = SOrder::EWork::Prepare;
        order.folder = dir.PathOf("");
        ASSERT_EQ(InFreshProcess(order), 0);
        order.eWork = SOrder::EWork::Fail;
        int nStatus = s_nMet;
        for (order.nAllocations = 0; nStatus == s_nMet; order.nAllocations += s_nFreshStep)
        {
            nStatus = InFreshProcess(order);
            EXPECT_TRUE(nStatus == s_nMet || nStatus == s_nNotMet)
                << "allocation " << order.nAllocations << ": status " << nStatus;
            nFaults += nStatus == s_nMet ? 1 : 0;
        }
    }
    EXPECT_GT(nFaults, 100);
    std::printf("%ld faults\n", nFaults);
}

} // namespace
