#pragma once

#include <BaseUtilities/CFormatInfo.h>

#include <cstddef>
#include <string>

/// What standard output can show.
struct CTerminal
{
    /// A terminal whose cursor can return to the start of the line.
    bool m_Live = false;
    /// A terminal that wants colours.
    bool m_Colour = false;
    /// The user's locale writes UTF-8.
    bool m_Utf8 = false;

    /// By TERM, NO_COLOR and the locale.
    static CTerminal OfStandardOutput();
    /// Columns right now; 80 where there is no telling.
    static std::size_t Width();
};

/// The escape sequence that shows a format, in the nearest of the eight colours
/// that every terminal has; empty for a format without any.
std::string TerminalCodes(CFormatInfo const& format);
