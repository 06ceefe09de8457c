#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"

#include <string>
#include <utility>

namespace QvTest
{

/// How many instances of a class are alive, and how many were ever made, by the report of the instance monitor.
inline std::pair<int, int> Instances(const std::wstring& strClassName)
{
    const std::wstring strState = CInstanceMonitor::DumpState() + L"\n";
    const std::wstring strLabel = L" " + strClassName + L" = ";
    const std::size_t nAt = strState.find(strLabel);
    if (nAt == std::wstring::npos)
        return {0, 0};
    std::size_t nEnd = 0;
    const std::wstring strCounts = strState.substr(nAt + strLabel.length());
    const int nAlive = std::stoi(strCounts, &nEnd);
    return {nAlive, std::stoi(strCounts.substr(nEnd + 1))};
}

inline int InstancesAlive(const std::wstring& strClassName)
{
    return Instances(strClassName).first;
}

} // namespace QvTest
