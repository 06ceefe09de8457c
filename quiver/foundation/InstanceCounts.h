#pragma once

#include <cstdint>

/// Takes instances of a class back that the calling thread has made and destroyed for nothing: no report counts them
/// any more. The name is the one that they were counted under.
void ForgetInstances(const wchar_t* lpctClassName, std::int64_t nInstances);

/// Keep all other threads from changing the counts, for a fork of the process: the child must not find the lock in the
/// hands of a thread that it does not have.
void LockInstanceCounts();
void UnlockInstanceCounts();
