#pragma once

#include "CFileFidelitySuite.h"

#include <chrono>
#include <future>
#include <thread>

/// Runs the suite on a thread of its own and carries the operator's wishes to it.
///
/// ```cpp
/// CSuiteRunner runner(CSuiteOptions(), observer); // arms TQUserAbort and starts
/// runner.Pause();
/// runner.Resume();
/// CSuiteSummary const summary = runner.Wait();
/// ```
///
/// TQUserAbort is one for the process, hence one runner at a time.
///
/// Threads: Pause, Resume and RequestAbort from any; the rest from the owner's.
class CSuiteRunner
{
public:
    /// `observer` must outlive this object.
    CSuiteRunner(CSuiteOptions options, ISuiteObserver& observer);
    CSuiteRunner(CSuiteRunner const&) = delete;
    CSuiteRunner& operator=(CSuiteRunner const&) = delete;
    /// Aborts the suite if it is still running, waits for its end and disarms TQUserAbort.
    ~CSuiteRunner();

    void Pause();
    void Resume();
    /// True when this call made the request. A paused suite is resumed for it,
    /// for no abort is sent while paused.
    bool RequestAbort();

    /// Whether the suite ended within that time.
    bool WaitFor(std::chrono::milliseconds time) const;
    /// Waits for the suite's result; throws what the suite threw.
    CSuiteSummary Wait() const;

private:
    CFileFidelitySuite m_Suite;
    ISuiteObserver& m_Observer;
    CCheckpoint m_Checkpoint;
    std::packaged_task<CSuiteSummary()> m_Task;
    std::shared_future<CSuiteSummary> m_Result;
    std::thread m_Thread;
};
