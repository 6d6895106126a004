#include "CSuiteRunner.h"

#include <BaseUtilities/TQUserAbort.h>

#include <utility>

CSuiteRunner::CSuiteRunner(CSuiteOptions options, ISuiteObserver& observer)
    : m_Suite(std::move(options)),
      m_Observer(observer),
      m_Task([this] { return m_Suite.Run(m_Observer, m_Checkpoint); }),
      m_Result(m_Task.get_future())
{
    // Before the thread starts: a request made from here on counts.
    TQUserAbort::EnableUserAbort(true);
    m_Thread = std::thread([this] { m_Task(); });
}

CSuiteRunner::~CSuiteRunner()
{
    // Again and again, for somebody may pause the suite after the request.
    do
        RequestAbort();
    while (!WaitFor(std::chrono::milliseconds(50)));
    m_Thread.join();
    TQUserAbort::EnableUserAbort(false);
}

void CSuiteRunner::Pause()
{
    TQUserAbort::UserAbortPause();
}

void CSuiteRunner::Resume()
{
    TQUserAbort::UserAbortResume();
    m_Checkpoint.Wake();
}

bool CSuiteRunner::RequestAbort()
{
    bool const turnedOn = TQUserAbort::RequestUserAbort();
    Resume();
    return turnedOn;
}

bool CSuiteRunner::WaitFor(std::chrono::milliseconds time) const
{
    return m_Result.wait_for(time) == std::future_status::ready;
}

CSuiteSummary CSuiteRunner::Wait() const
{
    return m_Result.get();
}
