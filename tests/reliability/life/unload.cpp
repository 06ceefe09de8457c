// Loads a module with generated classes, reads documents with it, unloads it and begins anew, in the thread of `main` and in
// one that lives on: what the library and the threads remember must not point into what is gone.
//
//     unload MODULE gone|any
//
// With `gone` the module has to leave the memory each time; otherwise the system may keep it.

#include "tests/support/Worker.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
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
    QvTest::CWorker worker;
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
