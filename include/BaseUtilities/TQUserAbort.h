#pragma once

#include <BaseUtilities/Export.h>

/// The process-wide switch through which an operator stops or pauses a running
/// suite, and the type of the exception that carries an abort out of it.
///
/// ```cpp
/// TQUserAbort::EnableUserAbort(true);      // whoever starts the suite
/// TQUserAbort::RequestUserAbort();         // the operator's thread
/// if (TQUserAbort::UserAbortRequested())   // the test's thread, where it may leave
///     TQUserAbort::Send();                 // throws TQUserAbort
/// ```
///
/// The state lives as long as the process and is one for all its libraries (for
/// modules built by clang under the condition that UIHelperBase.h names); all
/// flags are false at load.
///
/// Threads: every operation from any number at once. Locks are taken in the
/// order enable, state, request. An operation whose lock fails throws
/// std::system_error and changes nothing. Reading the flags below directly
/// bypasses the locks.
class BASEUTILITIES_EXPORT TQUserAbort
{
public:
    /// Back to idle: not requested, paused, sent or ok. Enablement is left as it is.
    static void UserAbortReset();

    /// Whether the abort was thrown since the last reset.
    static bool UserAbortSent();
    /// Throws a TQUserAbort, at most once between resets and never while
    /// paused; otherwise does nothing.
    /// Deliberate: does not ask whether an abort was requested; the caller does.
    static void Send();

    /// A flag whose meaning is the application's.
    /// Deliberate: set and read without a lock; it orders nothing between threads.
    static void SetUserAbortOk();
    static bool IsUserAbortOk();

    static bool UserAbortEnabled();
    /// Returns its argument. Enabling resets everything else as well; disabling
    /// clears nothing.
    static bool EnableUserAbort(bool enable);

    /// True only when this call turned a request on: aborts are enabled, none
    /// stands yet and none was sent.
    /// Deliberate: asking while disabled withdraws a request that still stands.
    static bool RequestUserAbort();
    static bool UserAbortRequested();

    static void UserAbortPause();
    static void UserAbortResume();
    static bool IsPaused();

    inline static bool m_UserAbortOk = false;        // no lock
    inline static bool m_UserAbortPaused = false;    // state lock
    inline static bool m_UserAbortSent = false;      // state lock
    inline static bool m_UserAbortRequested = false; // request lock
    inline static bool m_UserAbortEnabled = false;   // enable lock
};
