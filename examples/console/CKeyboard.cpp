#include "CKeyboard.h"

#include <BaseUtilities/ConsoleKeyboard.h>

#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace
{
constexpr std::array<int, 6> deadly = {SIGQUIT, SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL};
constexpr int escape = 27;

// A signal handler reaches nothing but statics.
termios keptMode;
termios keyMode;

void Apply(termios const& mode)
{
    tcsetattr(STDIN_FILENO, TCSANOW, &mode);
}

extern "C" void OnDeadlySignal(int number)
{
    Apply(keptMode);
    raise(number); // at its default again
}

extern "C" void OnStop(int)
{
    int const savedError = errno;
    Apply(keptMode);
    kill(getpid(), SIGSTOP);
    Apply(keyMode); // continued
    errno = savedError;
}

void Handle(int number, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

bool OwnsTerminal()
{
    return isatty(STDIN_FILENO) == 1 && tcgetpgrp(STDIN_FILENO) == getpgrp()
           && tcgetattr(STDIN_FILENO, &keptMode) == 0;
}

// The rest of a sequence such as that of an arrow key, up to its final byte.
void SkipSequence()
{
    std::optional<int> next = oss_query_getch();
    if (!next || (*next != '[' && *next != 'O'))
        return;
    do
        next = oss_query_getch();
    while (next && (*next < '@' || *next > '~'));
}
} // namespace

CKeyboard::CKeyboard()
{
    if (!OwnsTerminal())
        return;
    m_Live = true;
    keyMode = keptMode;
    keyMode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
    // Keys that wait in the stream's buffer would be hidden from the poll.
    static_cast<void>(std::setvbuf(stdin, nullptr, _IONBF, 0));
    for (int const number : deadly)
        Handle(number, OnDeadlySignal, static_cast<int>(SA_RESETHAND));
    Handle(SIGTSTP, OnStop, SA_RESTART);
    Apply(keyMode);
}

CKeyboard::~CKeyboard()
{
    Restore();
}

std::optional<int> CKeyboard::Poll()
{
    if (!m_Live)
        return std::nullopt;
    std::optional<int> key = oss_query_getch();
    while (key == escape) {
        SkipSequence();
        key = oss_query_getch();
    }
    return key;
}

void CKeyboard::Suspend()
{
    kill(0, SIGTSTP); // the whole job, a running command included
}

void CKeyboard::Restore()
{
    if (!m_Live)
        return;
    Apply(keptMode);
    Handle(SIGTSTP, SIG_DFL, 0);
    for (int const number : deadly)
        Handle(number, SIG_DFL, 0);
}
