#pragma once

#include "Verdicts.h"

/// What a front end tells its caller. From 64 on the suite gave no result; the
/// numbers are those of sysexits.h.
enum class EExitCode : int {
    Passed = 0,
    Failed = 1,
    Aborted = 2,
    Usage = 64,        ///< arguments that mean nothing
    NoFolder = 66,     ///< the folder to be checked is none
    BrokenDown = 70,   ///< the suite ended by an exception
    NoWorkFolder = 73, ///< no work folder can be made
    OutputFailed = 74  ///< standard output takes no more
};

/// What a suite's verdict, or the status of the exception that ended it, means to the caller.
EExitCode ExitCodeOf(TEST_STATUS status);
