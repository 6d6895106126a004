#pragma once

#include <BaseUtilities/TEST_STATUS.h>

// This application's verdicts and error codes, beside the library's own
// TEST_STATUS_ERROR, which a case gets whose check itself broke down.

inline constexpr TEST_STATUS TEST_STATUS_PASSED = TEST_STATUS(1);
inline constexpr TEST_STATUS TEST_STATUS_FAILED = TEST_STATUS(2);
/// The check could not be made, through no fault of what is tested.
inline constexpr TEST_STATUS TEST_STATUS_SKIPPED = TEST_STATUS(3);
/// The operator ended the suite before its last case.
inline constexpr TEST_STATUS TEST_STATUS_ABORTED = TEST_STATUS(4);

/// The folder to be checked is none.
inline constexpr TEST_STATUS TEST_STATUS_NO_FOLDER = TEST_STATUS(TEST_STATUS_ERROR + 1);
/// No work folder can be made.
inline constexpr TEST_STATUS TEST_STATUS_NO_WORK_FOLDER = TEST_STATUS(TEST_STATUS_ERROR + 2);
/// The report cannot be saved.
inline constexpr TEST_STATUS TEST_STATUS_NO_REPORT = TEST_STATUS(TEST_STATUS_ERROR + 3);
