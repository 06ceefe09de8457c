// Loads a module with generated classes, reads documents with it, unloads it and begins anew, in the thread of `main` and in
// one that lives on: what the library and the threads remember must not point into what is gone.
//
//     unload MODULE gone|any
//
// With `gone` the module has to leave the memory each time; otherwise the system may keep it.

#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <mutex>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{

using PfnReadAndWrite = void (*)(const char* lpcXml, char* lpcText, std::size_t nCapacity);

const char s_szGood[] =
    "<o:purchaseOrder xmlns:o='urn:example:order' number='7'><o:shipTo><o:name>N</o:name>"
    "<o:street>S</o:street><o:city>C</o:city></o:shipTo><o:item part='123-AB'><o:product>P</o:product>"
    "<o:quantity>3</o:quantity><o:price>0.5</o:price></o:item></o:purchaseOrder>";

/// A thread that outlives each loading of the module.
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

int s_nFailures = 0;

void Expect(bool bTrue, const char* lpcWhat, const char* lpcShown)
{
    if (bTrue)
        return;
    std::fprintf(stderr, "unload: %s: %s\n", lpcWhat, lpcShown);
    ++s_nFailures;
}

void Read(PfnReadAndWrite pfnReadAndWrite)
{
    char szText[4096];
    pfnReadAndWrite(s_szGood, szText, sizeof(szText));
    Expect(std::strstr(szText, "<AA:price>0.5</AA:price></AA:item></AA:purchaseOrder>") != nullptr, "a good document",
           szText);
    // Values that a pattern and a bound refuse.
    std::string strBroken = s_szGood;
    strBroken.replace(strBroken.find("123-AB"), 6, "123-12");
    pfnReadAndWrite(strBroken.c_str(), szText, sizeof(szText));
    Expect(std::strncmp(szText, "Failed to process the element [purchaseOrder]\n", 46) == 0 &&
               std::strstr(szText, "Invalid Value for part [123-12]") != nullptr,
           "a broken part", szText);
    strBroken = s_szGood;
    strBroken.replace(strBroken.find(">3<") + 1, 1, "1000");
    pfnReadAndWrite(strBroken.c_str(), szText, sizeof(szText));
    Expect(std::strstr(szText, "Invalid Value for quantity [1000]") != nullptr, "a broken quantity", szText);
}

} // namespace

int main(int nArguments, char** arguments)
{
    if (nArguments != 3)
    {
        std::fprintf(stderr, "usage: unload MODULE gone|any\n");
        return 2;
    }
    CWorker worker;
    for (int nRound = 0; nRound < 5; ++nRound)
    {
        void* const pModule = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
        if (pModule == nullptr)
        {
            std::fprintf(stderr, "unload: %s\n", dlerror());
            return 1;
        }
        const auto pfnReadAndWrite = reinterpret_cast<PfnReadAndWrite>(dlsym(pModule, "ReadAndWrite"));
        Expect(pfnReadAndWrite != nullptr, "the module has a function", "no");
        if (pfnReadAndWrite == nullptr)
            return 1;
        if (nRound % 2 == 0)
            Read(pfnReadAndWrite);
        worker.Do([&] { Read(pfnReadAndWrite); });
        std::thread([&] { Read(pfnReadAndWrite); }).join();
        if (nRound % 2 != 0)
            Read(pfnReadAndWrite);
        dlclose(pModule);
        void* const pStill = dlopen(arguments[1], RTLD_NOW | RTLD_NOLOAD);
        Expect(pStill == nullptr || std::strcmp(arguments[2], "gone") != 0, "the module is still there", arguments[1]);
        if (pStill != nullptr)
            dlclose(pStill);
    }
    // What the library had called around a fork must have gone with it.
    const pid_t nChild = fork();
    if (nChild == 0)
        _exit(0);
    int nStatus = -1;
    Expect(waitpid(nChild, &nStatus, 0) == nChild && nStatus == 0, "a fork behind all", "the child did not end well");
    return s_nFailures == 0 ? 0 : 1;
}
