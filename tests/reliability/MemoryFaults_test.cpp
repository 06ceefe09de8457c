// The n-th allocation fails, for every n until none is left to fail: each operation ends in std::bad_alloc, in a message or in what it
// makes otherwise, and leaves nothing behind.

#include "quiver/QvXmlLib.h"
#include "tests/reliability/FailingMemory.h"
#include "tests/reliability/FaultOperations.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"
#include "tests/support/InstanceCounts.h"

#include <gtest/gtest.h>

#include <map>
#include <new>
#include <sys/wait.h>
#include <unistd.h>

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

/// In a process that has not done anything yet, where tables and caches are made for the first time.
/// @return the exit status of a process of its own.
int RunFresh(const SOperation& operation, const fs::path& folder, long nAllocations, const std::string& strWanted)
{
    const pid_t nChild = ::fork();
    if (nChild == 0)
    {
        const SEnd end = RunWith(operation, folder, nAllocations, false);
        if (end.eEnd == EEnd::Other || (end.eEnd == EEnd::Success && end.strResult != strWanted))
            ::_exit(2);
        const SEnd again = RunWith(operation, folder, -1, false);
        if (again.eEnd != EEnd::Success || again.strResult != strWanted)
            ::_exit(3);
        ::_exit(end.bMet ? 1 : 0);
    }
    int nStatus = 0;
    ::waitpid(nChild, &nStatus, 0);
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : 1000 + WTERMSIG(nStatus);
}

/// What a process finds on its first run, told by one that ends.
std::string RunOnceElsewhere(const SOperation& operation, const fs::path& folder)
{
    const pid_t nChild = ::fork();
    if (nChild == 0)
    {
        QvTest::WriteFileBytes(folder / "wanted", RunWith(operation, folder, -1, false).strResult);
        ::_exit(0);
    }
    int nStatus = 0;
    ::waitpid(nChild, &nStatus, 0);
    return QvTest::ReadFileBytes(folder / "wanted");
}

/// Each run takes a process, which the sanitizer makes slow.
bool IsQuickWhenFresh(std::string_view svOperation)
{
#if !defined(__SANITIZE_ADDRESS__)
    if (svOperation == "quiver-gen --check")
        return true;
#endif
    return svOperation == "invoice, from octets";
}

// The first test of the program, before others have warmed it up.
TEST(AFreshProcess, SurvivesAnAllocationThatFailsAndDoesItsWorkThen)
{
    long nFaults = 0;
    for (const SOperation& operation : GetOperations())
    {
        if (operation.bLong || (!IsLong() && !IsQuickWhenFresh(operation.lpcName)))
            continue;
        SCOPED_TRACE(operation.lpcName);
        const QvTest::CTempDir dir;
        const QvTest::CTempDir wantedDir;
        // What it needs is made elsewhere, too.
        const pid_t nChild = ::fork();
        if (nChild == 0)
        {
            operation.fnPrepare(dir.PathOf(""));
            ::_exit(0);
        }
        ::waitpid(nChild, nullptr, 0);
        fs::copy(dir.PathOf(""), wantedDir.PathOf(""),
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        const std::string strWanted = RunOnceElsewhere(operation, wantedDir.PathOf(""));
        int nStatus = 1;
        for (long n = 0; nStatus == 1; n += 3)
        {
            nStatus = RunFresh(operation, dir.PathOf(""), n, strWanted);
            EXPECT_LE(nStatus, 1) << "allocation " << n;
            nFaults += nStatus == 1 ? 1 : 0;
        }
    }
    EXPECT_GT(nFaults, 100);
    std::printf("%ld faults\n", nFaults);
}

} // namespace
