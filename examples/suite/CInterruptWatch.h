#pragma once

#include <functional>
#include <thread>

#include <csignal>

/// The operator's interrupts (SIGINT, SIGTERM, SIGHUP, SIGQUIT) kept waiting for
/// CInterruptWatch, also while the process ignores them because a command runs.
///
/// Threads: made before any other thread, which it is to hold for.
class CHeldInterrupts
{
public:
    CHeldInterrupts();
    CHeldInterrupts(CHeldInterrupts const&) = delete;
    CHeldInterrupts& operator=(CHeldInterrupts const&) = delete;
    /// The signals mean again what they did before.
    ~CHeldInterrupts();

    /// Without those that the caller has this process ignore, as nohup does.
    sigset_t const& Signals() const { return m_Signals; }

private:
    sigset_t m_Signals;
    sigset_t m_Former;
};

/// Hands held interrupts to a normal thread. At the second one, and at SIGQUIT,
/// the process ends by that signal.
///
/// Threads: `onFirst` and `onLast` are called on a thread of this object's own.
class CInterruptWatch
{
public:
    /// Throws std::system_error.
    CInterruptWatch(CHeldInterrupts const& held, std::function<void()> onFirst,
                    std::function<void()> onLast);
    CInterruptWatch(CInterruptWatch const&) = delete;
    CInterruptWatch& operator=(CInterruptWatch const&) = delete;
    ~CInterruptWatch();

    /// Ends the process by that signal, so that the caller sees how it ended.
    [[noreturn]] static void EndBy(int number);

private:
    void Listen();
    int NextSignal() const;

    std::function<void()> m_OnFirst;
    std::function<void()> m_OnLast;
    int m_Signals = -1;
    int m_Ending = -1;
    std::thread m_Thread;
};
