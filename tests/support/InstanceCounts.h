#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"

#include <cwchar>
#include <map>
#include <sstream>
#include <string>

namespace QvTest
{

/// What `CInstanceMonitor` counted for one class.
struct SInstanceCounts
{
    long nLiving = 0;
    long nTotal = 0;
};

/// The counts of every class, by its name. A class appears with its first instance.
inline std::map<std::wstring, SInstanceCounts> CountAllInstances()
{
    std::map<std::wstring, SInstanceCounts> all;
    std::wistringstream lines(CInstanceMonitor::DumpState());
    std::wstring strLine;
    std::getline(lines, strLine); // the header
    constexpr std::size_t nMark = 4;
    while (std::getline(lines, strLine))
    {
        const std::size_t nAt = strLine.rfind(L" = ");
        if (nAt == std::wstring::npos)
            continue;
        wchar_t* pEnd = nullptr;
        SInstanceCounts& counts = all[strLine.substr(nMark, nAt - nMark)];
        counts.nLiving = std::wcstol(strLine.c_str() + nAt + 3, &pEnd, 10);
        counts.nTotal = std::wcstol(pEnd + 1, nullptr, 10);
    }
    return all;
}

/// The counts of a class; zeros for one that nobody instantiated yet.
inline SInstanceCounts CountInstances(const std::wstring& strClassName)
{
    const auto all = CountAllInstances();
    const auto it = all.find(strClassName);
    return it == all.end() ? SInstanceCounts() : it->second;
}

} // namespace QvTest
