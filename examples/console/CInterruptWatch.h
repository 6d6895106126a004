#pragma once

#include <functional>
#include <thread>

/// Hands the operator's interrupts (SIGINT, SIGTERM, SIGHUP) to a normal thread.
/// At the second one the process ends by that signal.
///
/// Threads: one object at a time; `onFirst` and `onSecond` are called on a
/// thread of this object's own.
class CInterruptWatch
{
public:
    /// Throws std::system_error.
    CInterruptWatch(std::function<void()> onFirst, std::function<void()> onSecond);
    CInterruptWatch(CInterruptWatch const&) = delete;
    CInterruptWatch& operator=(CInterruptWatch const&) = delete;
    /// The signals mean again what they did before.
    ~CInterruptWatch();

    /// Ends the process by that signal, so that the caller sees how it ended.
    [[noreturn]] static void EndBy(int number);

private:
    void Listen();

    std::function<void()> m_OnFirst;
    std::function<void()> m_OnSecond;
    std::thread m_Thread;
};
