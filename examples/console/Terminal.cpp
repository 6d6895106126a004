#include "Terminal.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <string_view>

namespace
{
std::string_view Variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

bool LocaleIsUtf8()
{
    locale_t const locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr)
        return false;
    bool const utf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
    freelocale(locale);
    return utf8;
}
} // namespace

CTerminal CTerminal::OfStandardOutput()
{
    std::string_view const kind = Variable("TERM");
    CTerminal terminal;
    terminal.m_Watched = isatty(STDOUT_FILENO) == 1;
    terminal.m_Live = terminal.m_Watched && !kind.empty() && kind != "dumb";
    terminal.m_Colour = terminal.m_Live && Variable("NO_COLOR").empty();
    terminal.m_Utf8 = LocaleIsUtf8();
    return terminal;
}

std::size_t CTerminal::Width()
{
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return 80;
    return size.ws_col;
}

// Without a terminal, lines are as long as on one of 80 columns.
std::size_t CTerminal::LineWidth() const
{
    constexpr std::size_t widestLine = 100;
    return m_Live ? std::min(Width(), widestLine) : 80;
}

std::string CTerminal::Painted(EColour colour, std::string const& text) const
{
    constexpr std::array<char const*, 6> codes = {"", "32", "31;1", "33", "1", "2"};
    if (!m_Colour || colour == EColour::None || text.empty())
        return text;
    return std::string("\x1b[") + codes[static_cast<std::size_t>(colour)] + "m" + text + "\x1b[0m";
}

std::string CTerminal::Painted(CFormatInfo const& format, std::string const& text) const
{
    return m_Colour ? TerminalCodes(format) + text + "\x1b[0m" : text;
}

std::string TerminalCodes(CFormatInfo const& format)
{
    constexpr std::uint32_t bright = 96;
    constexpr std::uint16_t bold = 600;
    TQColor const& color = format.m_Color;
    std::string codes;
    if (format.m_HasColor) {
        int const number = 30 + (color.m_Red >= bright ? 1 : 0) + (color.m_Green >= bright ? 2 : 0)
                           + (color.m_Blue >= bright ? 4 : 0);
        codes += "\x1b[" + std::to_string(number) + "m";
    }
    if (format.m_Weight >= bold)
        codes += "\x1b[1m";
    return codes;
}
