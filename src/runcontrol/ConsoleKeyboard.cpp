#include <BaseUtilities/ConsoleKeyboard.h>

#include <cstdio>

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace
{
// Echo and line buffering off while it lives; no check, for standard input may be no terminal.
class CSingleKeyMode
{
public:
    CSingleKeyMode()
    {
        tcgetattr(STDIN_FILENO, &m_Kept);
        termios changed = m_Kept;
        changed.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &changed);
    }
    CSingleKeyMode(CSingleKeyMode const&) = delete;
    CSingleKeyMode& operator=(CSingleKeyMode const&) = delete;
    ~CSingleKeyMode() { tcsetattr(STDIN_FILENO, TCSANOW, &m_Kept); }

private:
    termios m_Kept{};
};
} // namespace

int oss_getch()
{
    CSingleKeyMode const mode;
    return std::getc(stdin);
}

std::optional<int> oss_query_getch()
{
    CSingleKeyMode const mode;
    int waiting = 0;
    ioctl(STDIN_FILENO, FIONREAD, &waiting);
    if (waiting > 0)
        return oss_getch();
    return std::nullopt;
}

unsigned int oss_get_current_code_page()
{
    return 0;
}

void oss_set_current_code_page(unsigned int) {}

unsigned int oss_utf8_code_page_number()
{
    return 0;
}
