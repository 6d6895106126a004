#pragma once

#include <BaseUtilities/UIEnumerations.h>

// This application's meanings of what the library carries to the operator.

enum class EUIMode : int {
    Modal,   ///< to be answered before anything else
    Modeless ///< beside whatever the operator does
};

enum class EUIEmphasis : int { Information, Warning, Error };

/// The value is the base itself.
enum class ENumericBase : int { Octal = 8, Decimal = 10, Hexadecimal = 16 };

enum class EUserInputState : int {
    Idle,   ///< nothing is asked
    Waiting ///< the suite waits for an answer
};

namespace gui
{
enum class EAbortPromptState : int {
    Hidden,
    Shown ///< the request also offers to abort the suite
};
} // namespace gui
