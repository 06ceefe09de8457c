#pragma once

#include <functional>

/// @file
/// Stands between the whole program and the calls of the system that open, read, write and close files, so that the n-th one can
/// be made to fail, to do less than it was asked, or to have something done ahead of it. To be included by one source of a program.

namespace faults
{

enum class ECall
{
    Open,
    Read,
    Write,
    Close,
    Status, ///< of a file
    Rename,
    Any
};

/// The fault that is in force: the n-th call of a kind, counted from 0.
struct SFault
{
    ECall eCall = ECall::Any;
    int nAhead = 0;
    int nError = 0;                ///< what it fails with, a number of the system; 0 for a call that does less
    bool bForever = false;         ///< all calls from there on
    std::function<void()> fnAhead; ///< done ahead of the call, which then goes on
    bool bMet = false;
};

inline SFault* g_pFault = nullptr;

/// Whether the present call is the one. Calls of what is done ahead are let through.
inline bool IsDue(ECall eCall)
{
    SFault* const pFault = g_pFault;
    if (pFault == nullptr || (pFault->eCall != ECall::Any && pFault->eCall != eCall))
        return false;
    if (pFault->nAhead-- != 0 && !(pFault->bForever && pFault->bMet))
        return false;
    pFault->bMet = true;
    if (pFault->fnAhead != nullptr)
    {
        g_pFault = nullptr;
        pFault->fnAhead();
        g_pFault = pFault;
        return false;
    }
    return true;
}

} // namespace faults

// They define the calls, the numbers of the failures, and these classes: CInForce puts a fault in force, CFileLimit makes files
// that get longer than its limit fail, CFullDevice is a file that takes nothing, CInterruptions breaks off what the system does
// for the thread every millisecond, and CPipe is one that this process writes; each for as long as it lives.
#if defined(_WIN32)
#include "tests/reliability/FailingCallsWin32.h"
#else
#include "tests/reliability/FailingCallsPosix.h"
#endif
