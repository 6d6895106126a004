#pragma once

#include <atomic>
#include <chrono>
#include <mutex>
#include <optional>

/// The operator's keys while the suite runs: one by one, without echo and
/// without Enter, also those that would signal (Ctrl-C, Ctrl-\, Ctrl-Z), for a
/// signal would be lost while a command runs.
///
/// Does nothing where standard input is not a terminal with this process in its
/// foreground. The terminal is as it was before once this object is gone, when
/// a signal ends or stops the process, and while it is stopped. That takes a
/// handler of each such signal, but for those that the process ignores or that
/// it handled before this object, as sanitizers do theirs.
///
/// Threads: one object at a time; Poll and Wait by who holds Turn, the rest on any.
class CKeyboard
{
public:
    /// Keys beside the bytes of characters and control characters.
    enum EKey : int {
        EndOfInput = -1, ///< the terminal is gone; comes once
        Enter = '\n',
        Escape = 27,
        Up = 0x100,
        Down = 0x101,
        Right = 0x102,
        Left = 0x103,
        Home = 0x104,
        End = 0x105,
        Delete = 0x106
    };

    CKeyboard();
    CKeyboard(CKeyboard const&) = delete;
    CKeyboard& operator=(CKeyboard const&) = delete;
    ~CKeyboard();

    /// Whether keys can come at all.
    bool Live() const { return m_Live && !m_Ended; }
    /// Held by whoever the keys are for.
    std::mutex& Turn() { return m_Turn; }
    /// A key that waits. One with a longer sequence and no name here is passed over.
    std::optional<int> Poll();
    /// The next key, if it comes within that time.
    std::optional<int> Wait(std::chrono::milliseconds time);
    /// Stops the process as Ctrl-Z does, unless there is no shell to continue it.
    /// Until it is continued there are no keys.
    void Suspend();
    /// Puts the terminal back, for a process that is about to end.
    void Restore() const;

private:
    std::mutex m_Turn;
    bool m_Live = false;
    std::atomic<bool> m_Ended = false;
};
