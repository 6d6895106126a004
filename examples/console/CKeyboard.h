#pragma once

#include <optional>

/// The operator's keys while the suite runs: one by one, without echo and
/// without Enter, also those that would signal (Ctrl-C, Ctrl-\, Ctrl-Z), for a
/// signal would be lost while a command runs.
///
/// Does nothing where standard input is not a terminal with this process in its
/// foreground. The terminal is as it was before once this object is gone, when
/// a signal ends or stops the process, and while it is stopped.
///
/// Threads: one object at a time, polled by one thread; Restore on any.
class CKeyboard
{
public:
    CKeyboard();
    CKeyboard(CKeyboard const&) = delete;
    CKeyboard& operator=(CKeyboard const&) = delete;
    ~CKeyboard();

    /// A key that waits; arrow keys and their like are passed over.
    std::optional<int> Poll();
    /// Stops the process as Ctrl-Z does; returns once it is continued.
    void Suspend();
    /// Puts the terminal back, for a process that is about to end.
    void Restore();

private:
    bool m_Live = false;
};
