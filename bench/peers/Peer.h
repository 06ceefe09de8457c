#pragma once

#include "bench/PurchaseOrderText.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// One library's part in the comparison: a program that reads or writes the purchase order document some times and
/// prints what a time took, in milliseconds of processor time, and the memory it took for each byte of the document.

namespace bench
{

/// What a library does with the document. Both operations check enough of the result to know that it is there.
class CPeer
{
public:
    CPeer() = default;
    CPeer(const CPeer&) = delete;
    CPeer& operator=(const CPeer&) = delete;
    virtual ~CPeer() = default;

    /// Reads the document and keeps what was made of it until the next call, or until Drop.
    virtual void Read(const std::string& strXml) = 0;
    virtual void Drop() = 0;

    /// Writes what was read last, into memory.
    /// @return the length of the document.
    virtual std::size_t Write() = 0;

    /// Gets ready for reading another form of the document; the text itself if there is none.
    virtual std::string MakeInput(const std::string& strXml) { return strXml; }
};

inline double GetProcessorMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// A line of the process's status, in bytes: "VmRSS:" for what is resident now, "VmHWM:" for the most there was.
inline double GetMemory(std::string_view svName)
{
    std::ifstream status("/proc/self/status");
    std::string strName;
    for (std::string strLine; std::getline(status, strLine);)
    {
        if (strLine.compare(0, svName.size(), svName) == 0)
            return std::strtod(strLine.c_str() + svName.size(), nullptr) * 1024;
    }
    Fail("no such line in /proc/self/status");
}

template <class TWork>
double TimeOf(TWork Work)
{
    const double dStart = GetProcessorMilliseconds();
    Work();
    return GetProcessorMilliseconds() - dStart;
}

inline int RunPeer(CPeer& peer, int nArguments, char** ppArguments)
{
    if (nArguments != 4)
        Fail("arguments: read|write, bytes of the document, times");
    const bool bRead = std::strcmp(ppArguments[1], "read") == 0;
    const int nTimes = std::atoi(ppArguments[3]);
    const std::string& strXml = Document(static_cast<std::size_t>(std::atol(ppArguments[2])));
    const std::string strInput = peer.MakeInput(strXml);

    // The first time also tells the memory; it is not counted, since it pays for what a process does once.
    if (!bRead)
        peer.Read(strInput);
    malloc_trim(0); // so that what was freed does not serve unseen
    const double dBefore = GetMemory("VmRSS:");
    std::ofstream("/proc/self/clear_refs") << 5; // the most from now on
    if (bRead)
        peer.Read(strInput);
    else if (peer.Write() * 3 < strXml.size())
        Fail("the document was not written");
    const double dMemory = GetMemory("VmHWM:") - dBefore;

    std::vector<double> times;
    for (int n = 0; n < nTimes; ++n)
    {
        if (bRead)
            peer.Drop();
        times.push_back(TimeOf(
            [&]
            {
                if (!bRead)
                {
                    peer.Write();
                    return;
                }
                peer.Read(strInput);
                peer.Drop();
            }));
    }
    std::sort(times.begin(), times.end());
    std::printf("%.3f %.3f\n", times[times.size() / 2], dMemory / static_cast<double>(strXml.size()));
    return 0;
}

} // namespace bench
