#pragma once

#include <cstdint>

/// The verdict or error code that every exception carries: 32 bits, any value.
///
/// The library names the one member that it uses. An application defines its
/// own verdicts beside it, in a header of its own:
///
/// ```cpp
/// inline constexpr TEST_STATUS TEST_STATUS_PASSED = TEST_STATUS(1);
/// inline constexpr TEST_STATUS TEST_STATUS_FAILED = TEST_STATUS(2);
/// ```
enum TEST_STATUS : std::uint32_t {
    /// Every failure that the library raises, and the default of every exception.
    TEST_STATUS_ERROR = 0x40000000
};
