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
