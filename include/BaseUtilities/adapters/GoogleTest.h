#pragma once

#include <BaseUtilities/CSafeString.h>
#include <BaseUtilities/TQColor.h>
#include <BaseUtilities/basic_sv_wrapper.h>

#include <gtest/gtest-printers.h>

#include <ostream>
#include <string>

// Opt-in: how GoogleTest shows the library's types when an expectation fails. GoogleTest finds
// these functions by itself; nothing calls them by name.

/// The text between quotes, NULs and other characters escaped.
inline void PrintTo(CSafeString const& text, std::ostream* stream)
{
    *stream << testing::PrintToString(std::string(text.data(), text.size()));
}

/// The text between quotes, or "(not set)".
inline void PrintTo(basic_sv_wrapper<char> const& text, std::ostream* stream)
{
    if (text.m_HasValue)
        *stream << testing::PrintToString(std::string(text.data(), text.size()));
    else
        *stream << "(not set)";
}

/// The four channels.
inline void PrintTo(TQColor const& color, std::ostream* stream)
{
    *stream << "rgba(" << color.m_Red << ", " << color.m_Green << ", " << color.m_Blue << ", "
            << color.m_Alpha << ')';
}
