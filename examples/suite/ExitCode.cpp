#include "ExitCode.h"

#include <cstdint>

EExitCode ExitCodeOf(TEST_STATUS status)
{
    switch (static_cast<std::uint32_t>(status)) {
    case TEST_STATUS_PASSED:
        return EExitCode::Passed;
    case TEST_STATUS_FAILED:
        return EExitCode::Failed;
    case TEST_STATUS_ABORTED:
        return EExitCode::Aborted;
    case TEST_STATUS_NO_FOLDER:
        return EExitCode::NoFolder;
    case TEST_STATUS_NO_WORK_FOLDER:
        return EExitCode::NoWorkFolder;
    default:
        return EExitCode::BrokenDown;
    }
}
