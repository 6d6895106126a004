#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <filesystem>
#include <string>

// Text to path and back, bytes unchanged. By way of std::string, which refuses a
// null view with a length.
inline std::filesystem::path ToPath(basic_sv_wrapper<char> const& text)
{
    return std::string(text.data(), text.size());
}

inline CSafeString ToText(std::filesystem::path const& path)
{
    return basic_sv_wrapper<char>(path.native());
}
