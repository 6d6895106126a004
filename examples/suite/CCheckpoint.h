#pragma once

#include "ISuiteObserver.h"

#include <condition_variable>
#include <mutex>

/// Where the operator's abort and pause take hold of a suite: between cases.
///
/// Threads: Pass on the suite's thread, Wake on any.
class CCheckpoint
{
public:
    /// Waits as long as TQUserAbort is paused; throws TQUserAbort when an abort
    /// was requested.
    void Pass(ISuiteObserver& observer);
    /// To be called after every change made to TQUserAbort, which itself wakes nobody.
    void Wake();

private:
    void WaitForResume();

    std::mutex m_Lock;
    std::condition_variable m_Changed;
};
