#pragma once

#include <QObject>
#include <QThread>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

/// What a thread waits for that has handed a call to another.
class CHandOver
{
public:
    CHandOver() { Begin(); }

    /// Everything the caller did before is done, to whoever comes after it in this lock.
    void Begin() { std::lock_guard<std::mutex> const lock(m_Lock); }
    void End()
    {
        std::lock_guard<std::mutex> const lock(m_Lock);
        m_Ended = true;
        m_Changed.notify_all(); // under the lock, for the object may go right after
    }
    void Wait()
    {
        std::unique_lock<std::mutex> lock(m_Lock);
        m_Changed.wait(lock, [this] { return m_Ended; });
    }

private:
    std::mutex m_Lock;
    std::condition_variable m_Changed;
    bool m_Ended = false;
};

/// Calls `call`, which must not throw, in the receiver's thread and waits for its
/// end: directly where that is this thread, for waiting for oneself would never
/// end. Returns without the call when the receiver is destroyed before.
///
/// It does what Qt::BlockingQueuedConnection does, but with a lock that
/// ThreadSanitizer knows, so that it watches what the threads share.
template <class Call>
void CallIn(QObject& receiver, Call const& call)
{
    if (QThread::currentThread() == receiver.thread()) {
        call();
        return;
    }
    CHandOver handOver;
    // Ends the wait when the last of the event is gone, whether it was served or not.
    std::shared_ptr<CHandOver> ticket(&handOver, [](CHandOver* ended) { ended->End(); });
    {
        QObject const messenger; // whose end is the message
        QObject::connect(
            &messenger, &QObject::destroyed, &receiver,
            [&call, ticket = std::move(ticket)] {
                ticket->Begin();
                call();
            },
            Qt::QueuedConnection);
    }
    handOver.Wait();
}
