#pragma once

#include "quiver/foundation/MemoryLeakHelp.h"

#include <cwchar>
#include <string>

namespace QvTest
{

/// What `CInstanceMonitor` counted for one class.
struct SInstanceCounts
{
    long nLiving = 0;
    long nTotal = 0;
};

/// The counts of a class; zeros for one that nobody instantiated yet.
inline SInstanceCounts CountInstances(const std::wstring& strClassName)
{
    const std::wstring strState = CInstanceMonitor::DumpState();
    const std::wstring strLine = L" " + strClassName + L" = ";
    SInstanceCounts counts;
    const std::size_t nAt = strState.find(strLine);
    if (nAt == std::wstring::npos)
        return counts;
    wchar_t* pEnd = nullptr;
    counts.nLiving = std::wcstol(strState.c_str() + nAt + strLine.size(), &pEnd, 10);
    counts.nTotal = std::wcstol(pEnd + 1, nullptr, 10);
    return counts;
}

} // namespace QvTest
