#pragma once

#include <string>
#include <utility>
#include <vector>

/// One call of pthread_mutex_lock ('+') or pthread_mutex_unlock ('-').
using MutexCall = std::pair<char, void const*>;

/// False where the calls of the library cannot be intercepted.
bool CanInterceptMutexes();

/// Records the calling thread's mutex calls, those inside the library included,
/// while it lives; one at a time in each thread.
class CMutexCalls
{
public:
    CMutexCalls();
    CMutexCalls(CMutexCalls const&) = delete;
    CMutexCalls& operator=(CMutexCalls const&) = delete;
    ~CMutexCalls();

    /// The calls that succeeded, in order.
    std::vector<MutexCall> const& Calls() const;

    /// Lets lock number `number` from now, 1 being the next, fail with `error`.
    void FailLock(unsigned number, int error);
    /// Whether that lock was reached, and so failed.
    bool Failed() const;
};
