#pragma once

// What an application writes in a header of its own: the enumerators of what the library only
// carries, here in a test's stead.

#include <BaseUtilities/UIEnumerations.h>

enum class EUIMode : int { Default, Modal, Lowest = -2147483647 - 1, Highest = 2147483647 };

enum class EUIEmphasis : int { None, Warning = 7, Alarm = -7 };

enum class ENumericBase : int { Binary = 2, Decimal = 10, Hexadecimal = 16 };

enum class EUserInputState : int { Idle, Waiting, Answered = 0x7ffffffe };

namespace gui
{
enum class EAbortPromptState : int { Hidden, Shown, Disabled = -1 };
} // namespace gui
