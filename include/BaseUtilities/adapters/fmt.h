#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <fmt/format.h>

// Opt-in: the library's text as an argument of fmt, with the format options of a string.
//
// Threads: any number at once.

/// All bytes of the text.
template <>
struct fmt::formatter<CSafeString> : fmt::formatter<fmt::string_view>
{
    /// Writes the text as the format options say.
    template <class Context>
    auto format(CSafeString const& text, Context& context) const
    {
        return fmt::formatter<fmt::string_view>::format({text.data(), text.size()}, context);
    }
};

/// The characters of the view; nothing for one that is not set.
template <>
struct fmt::formatter<basic_sv_wrapper<char>> : fmt::formatter<fmt::string_view>
{
    /// Writes the text as the format options say.
    template <class Context>
    auto format(basic_sv_wrapper<char> const& text, Context& context) const
    {
        return fmt::formatter<fmt::string_view>::format({text.data(), text.size()}, context);
    }
};
