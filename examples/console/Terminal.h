#pragma once

#include <BaseUtilities/CFormatInfo.h>

#include <cstddef>
#include <string>

enum class EColour { None, Green, Red, Yellow, Bold, Dim };

/// What standard output can show.
struct CTerminal
{
    /// A terminal of whatever kind: somebody may be watching.
    bool m_Watched = false;
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
    /// Columns that lines may fill: on a wide terminal not all, for the eye's sake.
    std::size_t LineWidth() const;
    /// The text in that colour, where colours are wanted.
    std::string Painted(EColour colour, std::string const& text) const;
    std::string Painted(CFormatInfo const& format, std::string const& text) const;
};

/// The escape sequence that shows a format, in the nearest of the eight colours
/// that every terminal has; empty for a format without any.
std::string TerminalCodes(CFormatInfo const& format);
