#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/Export.h>

#include <chrono>

/// `when` as local time in a pattern of `std::put_time` ("%Y-%m-%d %H:%M:%S"),
/// with the names of the global C++ locale. An empty pattern gives empty text.
/// `format` must not be null and the time must be one that `localtime` can
/// represent; neither is checked. Throws std::bad_alloc; a failure while the
/// text is being written, the locale's or one of memory, only ends the text.
///
/// Deliberate: whole seconds, truncated toward zero, so that half a second
/// before 1970 still shows 1970.
///
/// Threads: one at a time, together with every other user of `localtime`, whose
/// result the whole process shares. Where that cannot be kept, use `localtime_r`
/// with `std::put_time`.
BASEUTILITIES_EXPORT CSafeString MakeTimeString(char const* format,
                                                std::chrono::system_clock::time_point const& when);

/// The same for this moment.
BASEUTILITIES_EXPORT CSafeString MakeCurrentTimeString(char const* format);
