#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

/// Holds threads back until `count` of them have come, then lets all go; may be
/// used again at once.
class CBarrier
{
public:
    explicit CBarrier(unsigned count) : m_Count(count) {}

    void Wait()
    {
        std::unique_lock<std::mutex> lock(m_Mutex);
        unsigned const round = m_Round;
        if (++m_Waiting == m_Count) {
            m_Waiting = 0;
            ++m_Round;
            m_Changed.notify_all();
        }
        m_Changed.wait(lock, [&] { return m_Round != round; });
    }

private:
    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    unsigned const m_Count;
    unsigned m_Waiting = 0;
    unsigned m_Round = 0;
};

/// Calls `work(0)` to `work(count - 1)`, each on a new thread of its own, and
/// returns when all have ended.
template <class Work>
void RunOnThreads(unsigned count, Work const& work)
{
    std::vector<std::thread> threads;
    for (unsigned index = 0; index < count; ++index)
        threads.emplace_back([&work, index] { work(index); });
    for (std::thread& thread : threads)
        thread.join();
}

/// Calls `work` on a new thread, whose buffers are therefore all new.
template <class Work>
void RunOnNewThread(Work const& work)
{
    std::thread(work).join();
}
