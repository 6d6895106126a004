#pragma once

#include "ISuiteObserver.h"

// The words that every front end of the suite shows, and its report.

char const* GroupName(ECaseGroup group);
/// "Passed".
char const* VerdictName(TEST_STATUS verdict);
/// "PASS", for columns.
char const* VerdictMark(TEST_STATUS verdict);

/// The question whether to abort, which the suite itself may `suggest`.
char const* AbortQuestion(bool suggested);
inline constexpr char const* abortAccepted = "Abort";
inline constexpr char const* abortRejected = "Go on";
