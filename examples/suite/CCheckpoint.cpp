#include "CCheckpoint.h"

#include <BaseUtilities/TQUserAbort.h>

namespace
{
// Code that resumes without Wake, through TQUserAbort alone, is noticed this late.
constexpr std::chrono::milliseconds noticeAnyway(250);
} // namespace

void CCheckpoint::Pass(ISuiteObserver& observer)
{
    do {
        if (TQUserAbort::IsPaused()) {
            observer.SuitePaused();
            WaitForResume();
            observer.SuiteResumed();
        }
        if (TQUserAbort::UserAbortRequested())
            TQUserAbort::Send();
    } while (TQUserAbort::IsPaused()); // paused again: Send has thrown nothing
}

void CCheckpoint::Wake()
{
    // The lock keeps the change from falling between a waiter's look and its wait.
    {
        std::lock_guard<std::mutex> const lock(m_Lock);
    }
    m_Changed.notify_all();
}

void CCheckpoint::WaitForResume()
{
    std::unique_lock<std::mutex> lock(m_Lock);
    while (TQUserAbort::IsPaused())
        m_Changed.wait_for(lock, noticeAnyway);
}
