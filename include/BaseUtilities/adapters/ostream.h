#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <ostream>
#include <string_view>
#include <type_traits>

// Opt-in: the library's text on standard streams, written as std::string is, with width and fill.
// What merely converts to such text is not taken.
//
// Threads: as the stream says.

/// Writes all bytes of a CSafeString, or the characters of a view; nothing for one that is not set.
template <
    class Text,
    std::enable_if_t<
        std::is_same_v<Text, CSafeString> || std::is_same_v<Text, basic_sv_wrapper<char>>, int> = 0>
std::ostream& operator<<(std::ostream& stream, Text const& text)
{
    return stream << std::string_view(text.data(), text.size());
}
