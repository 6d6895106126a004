#include "CKeyboard.h"

#include <BaseUtilities/ConsoleKeyboard.h>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace
{
// All that end a process unless it says otherwise, but for those that the
// program takes as interrupts and those that nobody can catch.
std::vector<int> DeadlySignals()
{
    std::vector<int> signals = {SIGABRT, SIGSEGV, SIGBUS,  SIGFPE,  SIGILL,    SIGTRAP,
                                SIGSYS,  SIGXCPU, SIGXFSZ, SIGALRM, SIGVTALRM, SIGPROF,
                                SIGUSR1, SIGUSR2, SIGIO,   SIGPWR,  SIGSTKFLT};
    for (int number = SIGRTMIN; number <= SIGRTMAX; ++number)
        signals.push_back(number);
    return signals;
}

// The bytes of one key follow each other faster than anybody types, even from afar.
constexpr std::chrono::milliseconds sequencePause(50);

// A signal handler reaches nothing but statics.
termios keptMode;
termios keyMode;
std::atomic<bool> modeApplied = false;
std::atomic<bool> stopping = false;
static_assert(std::atomic<bool>::is_always_lock_free);

// Lest the end of a read put the keys' mode back after Restore.
std::mutex readLock;
bool restored = false;

void Apply(termios const& mode)
{
    tcsetattr(STDIN_FILENO, TCSANOW, &mode);
}

// In the background the terminal is somebody else's: a change would stop this process.
void PutBack()
{
    if (modeApplied.exchange(false))
        Apply(keptMode);
}

extern "C" void OnDeadlySignal(int number)
{
    PutBack();
    static_cast<void>(raise(number)); // at its default again
}

void Handle(int number, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

void (*HandlerOf(int number))(int)
{
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler;
}

// One that is ignored, or that somebody handles already, is left alone.
void Replace(int number, void (*former)(int), void (*handler)(int), int flags)
{
    if (HandlerOf(number) == former)
        Handle(number, handler, flags);
}

// A handler's own signal else waits for its end, as sanitizers have all others wait, too.
void TakeNow(int number)
{
    sigset_t taken;
    sigset_t former;
    sigemptyset(&taken);
    sigaddset(&taken, number);
    pthread_sigmask(SIG_UNBLOCK, &taken, &former);
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

// As the system does it, which lets a process go on that no shell could continue.
extern "C" void OnStop(int number)
{
    int const savedError = errno;
    stopping = true;
    PutBack();
    Handle(number, SIG_DFL, 0);
    static_cast<void>(raise(number));
    TakeNow(number);
    Handle(number, OnStop, SA_RESTART);
    stopping = false;
    errno = savedError;
}

// The shell may have had the terminal meanwhile.
extern "C" void OnContinue(int /*number*/)
{
    modeApplied = false;
}

// Not where the terminal is gone: the end of its input is still to be read.
bool InBackground()
{
    pid_t const foreground = tcgetpgrp(STDIN_FILENO);
    return foreground >= 0 && foreground != getpgrp();
}

bool OwnsTerminal()
{
    return tcgetpgrp(STDIN_FILENO) == getpgrp() && tcgetattr(STDIN_FILENO, &keptMode) == 0;
}

bool ReadyForKeys()
{
    std::lock_guard<std::mutex> const lock(readLock);
    if (restored || stopping)
        return false;
    if (InBackground()) {
        modeApplied = false;
        return false;
    }
    if (!modeApplied.exchange(true))
        Apply(keyMode);
    return true;
}

bool HasInput(std::chrono::milliseconds time)
{
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, static_cast<int>(time.count())) > 0;
}

std::optional<int> NextByte(std::chrono::milliseconds time)
{
    if (!HasInput(time))
        return std::nullopt;
    std::lock_guard<std::mutex> const lock(readLock);
    if (restored)
        return std::nullopt;
    // Something to be read, and yet no byte of it.
    return oss_query_getch().value_or(CKeyboard::EndOfInput);
}

std::optional<int> NamedKey(std::string const& parameters, char final)
{
    constexpr std::string_view finals = "ABCDHF";
    constexpr std::array<int, finals.size()> keys = {CKeyboard::Up,    CKeyboard::Down,
                                                     CKeyboard::Right, CKeyboard::Left,
                                                     CKeyboard::Home,  CKeyboard::End};
    if (std::size_t const at = finals.find(final); at != std::string_view::npos)
        return keys[at];
    if (final != '~')
        return std::nullopt;
    if (parameters == "1" || parameters == "7")
        return CKeyboard::Home;
    if (parameters == "4" || parameters == "8")
        return CKeyboard::End;
    return parameters == "3" ? std::optional<int>(CKeyboard::Delete) : std::nullopt;
}

// What an escape character begins: the key alone, or a whole sequence up to its final byte.
std::optional<int> KeyAfterEscape()
{
    std::optional<int> next = NextByte(sequencePause);
    if (!next || *next == CKeyboard::Escape)
        return CKeyboard::Escape;
    if (*next != '[' && *next != 'O')
        return std::nullopt; // a character with Alt
    std::string parameters;
    while ((next = NextByte(sequencePause)) && *next != CKeyboard::EndOfInput) {
        if (*next >= '@' && *next <= '~')
            return NamedKey(parameters, static_cast<char>(*next));
        parameters += static_cast<char>(*next);
    }
    return std::nullopt;
}
} // namespace

CKeyboard::CKeyboard()
{
    if (!OwnsTerminal())
        return;
    m_Live = true;
    keyMode = keptMode;
    keyMode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG | IEXTEN);
    keyMode.c_cc[VMIN] = 1;
    keyMode.c_cc[VTIME] = 0;
    // Keys that wait in the stream's buffer would be hidden from the poll.
    static_cast<void>(std::setvbuf(stdin, nullptr, _IONBF, 0));
    for (int const number : DeadlySignals())
        Replace(number, SIG_DFL, OnDeadlySignal, static_cast<int>(SA_RESETHAND));
    Replace(SIGTSTP, SIG_DFL, OnStop, SA_RESTART);
    Handle(SIGCONT, OnContinue, SA_RESTART);
    restored = false;
    modeApplied = true;
    Apply(keyMode);
}

CKeyboard::~CKeyboard()
{
    Restore();
}

std::optional<int> CKeyboard::Poll()
{
    return Wait(std::chrono::milliseconds(0));
}

std::optional<int> CKeyboard::Wait(std::chrono::milliseconds time)
{
    if (!Live())
        return std::nullopt;
    if (!ReadyForKeys()) {
        poll(nullptr, 0, static_cast<int>(time.count()));
        return std::nullopt;
    }
    std::optional<int> key = NextByte(time);
    for (; key == Escape; key = NextByte(std::chrono::milliseconds(0)))
        if (std::optional<int> const named = KeyAfterEscape())
            return named;
    m_Ended = key == EndOfInput;
    return key;
}

void CKeyboard::Suspend()
{
    // Whichever thread handles it, and whenever it gets to that.
    stopping = HandlerOf(SIGTSTP) == OnStop;
    kill(0, SIGTSTP); // the whole job, a running command included
}

void CKeyboard::Restore() const
{
    if (!m_Live)
        return;
    std::lock_guard<std::mutex> const lock(readLock);
    restored = true;
    PutBack();
    for (int const number : DeadlySignals())
        Replace(number, OnDeadlySignal, SIG_DFL, 0);
    Replace(SIGTSTP, OnStop, SIG_DFL, 0);
    Handle(SIGCONT, SIG_DFL, 0);
}
