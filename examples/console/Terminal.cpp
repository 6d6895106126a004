#include "Terminal.h"

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

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
    terminal.m_Live = isatty(STDOUT_FILENO) == 1 && !kind.empty() && kind != "dumb";
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
