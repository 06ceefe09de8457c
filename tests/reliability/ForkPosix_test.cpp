// A process may fork while its other threads are inside the library: the child reads and writes, with classes that nobody
// has used before it, and ends as any process does.

#include "Gpx.h"
#include "Invoice.h"
#include "Order.h"
#include "tests/support/Expect.h"
#include "tests/support/Files.h"

#include "quiver/QvXmlLib.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace QvTest;
using namespace QvXmlLib9;

namespace
{

/// Runs `work` in a child process, which leaves by `exit`. One that waits for something that never comes is ended.
/// @return how the child ended; 0 if `work` was content.
int InChild(const std::function<bool()>& work)
{
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        alarm(60);
        bool bContent = false;
        try
        {
            bContent = work();
        }
        catch (const CQvException&)
        {
        }
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        // At the end the sanitizers would ask after threads that only the parent has.
        std::_Exit(bContent ? 0 : 1);
#else
        std::exit(bContent ? 0 : 1);
#endif
    }
    int nStatus = -1;
    EXPECT_EQ(nChild, waitpid(nChild, &nStatus, 0));
    return nStatus;
}

template <class TRoot>
bool ReadsAndWrites(const std::string& strXml)
{
    const CXmlSerializationContext context;
    const CSmartPtr<TRoot> spRoot = new TRoot;
    spRoot->FromXml(strXml.c_str(), context);
    const std::wstring strText = spRoot->ToXml(false, false, EOLType_LF, context);
    const CSmartPtr<TRoot> spAgain = new TRoot;
    spAgain->FromXmlStream(spRoot->ToFastInfosetStream(FInfoDecl_None, context, Compression_None), context);
    return !strText.empty() && spAgain->ToXml(false, false, EOLType_LF, context) == strText;
}

std::string Sample(const char* lpcFile)
{
    return ReadFileBytes(std::string(QUIVER_SOURCE_DIR "/examples/") + lpcFile);
}

/// What generated code of any age does when the first object of its class is made.
struct SOpenClass : CXmlGeneratedClass
{
    using CXmlGeneratedClass::m_csInit;
};

TEST(Fork, WhileAnotherThreadBuildsTheTablesOfAClass)
{
    std::atomic<bool> bHeld{false};
    std::thread builder(
        [&]
        {
            const CQVCriticalSectionLock lock(SOpenClass::m_csInit);
            bHeld = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        });
    while (!bHeld)
        std::this_thread::yield();
    EXPECT_EQ(0, InChild([] { return ReadsAndWrites<gpx::CGpx>(Sample("gpx_track/track.gpx")); }));
    builder.join();
    // And the parent goes on, with the lock and classes of its own.
    EXPECT_TRUE(ReadsAndWrites<gpx::CGpx>(Sample("gpx_track/track.gpx")));
}

TEST(Fork, WhileThreadsComeConvertAndGo)
{
#if defined(__SANITIZE_ADDRESS__)
    // The allocator of the sanitizer locks each class of sizes, and does not hold these locks across a fork: where a thread of the
    // parent had one, operator new waits in the child for good (SizeClassAllocator64::GetFromAllocator), now and then.
    GTEST_SKIP() << "the sanitizer's own locks stay with the threads of the parent";
#endif
    const std::string strOrder = Sample("purchase_order/order.xml");
    const std::string strInvoice = Sample("invoice/invoice.xml");
    std::atomic<bool> bGoOn{true};
    std::vector<std::thread> threads;
    for (int n = 0; n < 3; ++n)
    {
        threads.emplace_back(
            [&]
            {
                // Each thread is new to the library.
                while (bGoOn)
                    std::thread([&] { EXPECT_TRUE(ReadsAndWrites<order::CPurchaseOrder>(strOrder)); }).join();
            });
    }
    for (int nRound = 0; nRound < 15; ++nRound)
    {
        const auto Convert = [&]
        {
            return ReadsAndWrites<invoice::CInvoice>(strInvoice) && ReadsAndWrites<order::CPurchaseOrder>(strOrder);
        };
        ASSERT_EQ(0, InChild(Convert)) << nRound;
    }
    bGoOn = false;
    for (std::thread& thread : threads)
        thread.join();
}

/// Writes and reads a file of many pieces, overlapped.
bool WritesAndReadsOverlapped(const CTempDir& directory, const std::string& strFile)
{
    const std::wstring strName = directory.NameOf(strFile);
    const CXmlSerializationContext context;
    const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
    spOrder->FromXml(Sample("purchase_order/order.xml").c_str(), context);
    spOrder->SetComment(std::wstring(700000, L'c'));
    spOrder->ToXmlFile(strName.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    const CSmartPtr<order::CPurchaseOrder> spAgain = new order::CPurchaseOrder;
    spAgain->FromXmlFile(strName.c_str(), context);
    return spAgain->GetComment() == spOrder->GetComment();
}

TEST(Fork, BehindOverlappedFilesOfTheParent)
{
    const CTempDir directory;
    AsyncToXmlFile(true);
    AsyncFromXmlFile(true);
    EXPECT_TRUE(WritesAndReadsOverlapped(directory, "parent.xml"));
    EXPECT_EQ(0, InChild([&] { return WritesAndReadsOverlapped(directory, "child.xml"); }));
    EXPECT_TRUE(WritesAndReadsOverlapped(directory, "parent.xml"));
    AsyncToXmlFile(false);
    AsyncFromXmlFile(false);
}

} // namespace
