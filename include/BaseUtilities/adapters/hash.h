#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <cstddef>
#include <functional>
#include <string_view>

// Opt-in: the library's text as a key of std::unordered_map and its like. Texts that are equal have
// equal hashes. A moved-from string has none.
//
// Threads: any number at once.

/// The hash of all bytes.
template <>
struct std::hash<CSafeString>
{
    std::size_t operator()(CSafeString const& text) const noexcept
    {
        return std::hash<std::string_view>()(std::string_view(text.data(), text.size()));
    }
};

/// The hash of all characters, whether the view is set or not.
template <class CharT>
struct std::hash<basic_sv_wrapper<CharT>> // NOLINT(cert-dcl58-cpp): of a type of our own
{
    std::size_t operator()(basic_sv_wrapper<CharT> const& text) const noexcept
    {
        using View = std::basic_string_view<CharT>;
        return std::hash<View>()(static_cast<View>(text));
    }
};
