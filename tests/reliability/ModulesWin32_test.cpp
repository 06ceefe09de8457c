// A process of Windows does not fork, but DLLs come and go in it while its threads are inside the library: a module reads and
// writes, with classes and a library that nobody has used before, and leaves threads behind it that used it.

#include "Order.h"
#include "tests/support/Files.h"
#include "tests/support/Worker.h"

#include "quiver/QvXmlLib.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

using namespace QvTest;
using namespace QvXmlLib9;

namespace
{

const char s_szOrder[] =
    "<o:purchaseOrder xmlns:o='urn:example:order' number='7'><o:shipTo><o:name>N</o:name>"
    "<o:street>S</o:street><o:city>C</o:city></o:shipTo><o:item part='123-AB'><o:product>P</o:product>"
    "<o:quantity>3</o:quantity><o:price>0.5</o:price></o:item></o:purchaseOrder>";

/// Modules that share the DLL of the library, and that have a library of their own.
constexpr const wchar_t* s_modules[] = {L"" QUIVER_SHARED_MODULE, L"" QUIVER_STATIC_MODULE};

/// A module that is loaded for as long as it lives.
class CModule
{
public:
    explicit CModule(const wchar_t* lpctFile)
        : m_hModule(::LoadLibraryW(lpctFile))
    {
        EXPECT_NE(nullptr, m_hModule) << "error " << ::GetLastError();
        m_pfnReadAndWrite =
            reinterpret_cast<PfnReadAndWrite>(reinterpret_cast<void*>(::GetProcAddress(m_hModule, "ReadAndWrite")));
        m_pfnReadAndWriteFile = reinterpret_cast<PfnReadAndWriteFile>(
            reinterpret_cast<void*>(::GetProcAddress(m_hModule, "ReadAndWriteFile")));
        EXPECT_NE(nullptr, m_pfnReadAndWrite);
        EXPECT_NE(nullptr, m_pfnReadAndWriteFile);
    }
    ~CModule() { EXPECT_TRUE(::FreeLibrary(m_hModule)); }
    CModule(const CModule&) = delete;
    CModule& operator=(const CModule&) = delete;

    /// The document as the module writes it, or its messages.
    std::string ReadAndWrite(const char* lpcXml) const
    {
        char szText[4096] = {};
        m_pfnReadAndWrite(lpcXml, szText, sizeof(szText));
        return szText;
    }

    /// Whether a file of many pieces comes back the same, overlapped.
    bool ReadAndWriteFile(const std::wstring& strFile) const { return m_pfnReadAndWriteFile(strFile.c_str()); }

private:
    using PfnReadAndWrite = void (*)(const char* lpcXml, char* lpcText, std::size_t nCapacity);
    using PfnReadAndWriteFile = bool (*)(const wchar_t* lpctFile);

    HMODULE m_hModule;
    PfnReadAndWrite m_pfnReadAndWrite;
    PfnReadAndWriteFile m_pfnReadAndWriteFile;
};

/// The same by the library of the program.
std::string ReadAndWriteHere()
{
    const CXmlSerializationContext context;
    const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
    spOrder->FromXml(s_szOrder, context);
    const std::wstring strText = spOrder->ToXml(false, false, EOLType_LF, context);
    return {strText.begin(), strText.end()};
}

/// What generated code of any age does when the first object of its class is made.
struct SOpenClass : CXmlGeneratedClass
{
    using CXmlGeneratedClass::m_csInit;
};

TEST(Modules, ComeAndGoWhileAnotherThreadBuildsTheTablesOfAClass)
{
    const std::string strWanted = ReadAndWriteHere();
    for (const wchar_t* const lpctModule : s_modules)
    {
        std::atomic<bool> bHeld{false};
        std::atomic<bool> bLetGo{false};
        std::thread builder(
            [&]
            {
                const CQVCriticalSectionLock lock(SOpenClass::m_csInit);
                bHeld = true;
                while (!bLetGo)
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
            });
        while (!bHeld)
            std::this_thread::yield();
        // The program's lock is its own: nobody would let it go before the module has gone.
        EXPECT_EQ(CModule(lpctModule).ReadAndWrite(s_szOrder), strWanted);
        bLetGo = true;
        builder.join();
        EXPECT_EQ(ReadAndWriteHere(), strWanted);
    }
}

TEST(Modules, ComeAndGoWhileThreadsComeConvertAndGo)
{
    const std::string strWanted = ReadAndWriteHere();
    std::atomic<bool> bGoOn{true};
    std::vector<std::thread> threads;
    for (int n = 0; n < 3; ++n)
    {
        threads.emplace_back(
            [&]
            {
                // Each thread is new to the library.
                while (bGoOn)
                    std::thread([&] { EXPECT_EQ(ReadAndWriteHere(), strWanted); }).join();
            });
    }
    for (int nRound = 0; nRound < 15; ++nRound)
    {
        for (const wchar_t* const lpctModule : s_modules)
        {
            // One thread ends with the module, and one behind it.
            CWorker outlives;
            const CModule module(lpctModule);
            std::thread([&] { EXPECT_EQ(module.ReadAndWrite(s_szOrder), strWanted); }).join();
            outlives.Do([&] { EXPECT_EQ(module.ReadAndWrite(s_szOrder), strWanted); });
            EXPECT_EQ(module.ReadAndWrite(s_szOrder), strWanted);
        }
    }
    bGoOn = false;
    for (std::thread& thread : threads)
        thread.join();
}

/// Writes and reads a file of many pieces, overlapped.
bool WritesAndReadsOverlapped(const std::wstring& strFile)
{
    const CXmlSerializationContext context;
    const CSmartPtr<order::CPurchaseOrder> spOrder = new order::CPurchaseOrder;
    spOrder->FromXml(s_szOrder, context);
    spOrder->SetComment(std::wstring(700000, L'c'));
    spOrder->ToXmlFile(strFile.c_str(), true, true, Encoding_UTF8, EOLType_LF, context, Compression_None);
    const CSmartPtr<order::CPurchaseOrder> spAgain = new order::CPurchaseOrder;
    spAgain->FromXmlFile(strFile.c_str(), context);
    return spAgain->GetComment() == spOrder->GetComment();
}

TEST(Modules, ComeAndGoBehindOverlappedFilesOfTheProgram)
{
    const CTempDir directory;
    AsyncToXmlFile(true);
    AsyncFromXmlFile(true);
    EXPECT_TRUE(WritesAndReadsOverlapped(directory.NameOf("program.xml")));
    for (const wchar_t* const lpctModule : s_modules)
    {
        EXPECT_TRUE(CModule(lpctModule).ReadAndWriteFile(directory.NameOf("module.xml")));
        EXPECT_TRUE(WritesAndReadsOverlapped(directory.NameOf("program.xml")));
    }
    AsyncToXmlFile(false);
    AsyncFromXmlFile(false);
}

} // namespace
