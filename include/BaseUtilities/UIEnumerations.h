#pragma once

// What a request to the operator carries besides text. The library passes these
// through and gives their values no meaning: the application defines the
// enumerators, in a header of its own, with the same underlying type:
//
//     enum class EUIMode : int { Default, Modal };

/// How a request is shown.
enum class EUIMode : int;

/// How strongly an information box is shown.
enum class EUIEmphasis : int;

/// The base in which a number is shown and entered.
enum class ENumericBase : int;

/// Where the operator's input stands.
enum class EUserInputState : int;

namespace gui
{
/// Whether and how a request also offers to abort the suite.
enum class EAbortPromptState : int;
} // namespace gui
