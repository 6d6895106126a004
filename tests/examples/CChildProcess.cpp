#include "CChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace
{
using Clock = std::chrono::steady_clock;

// Only a program that hangs is ever waited for so long.
constexpr std::chrono::minutes longestWait(2);
constexpr int pipeSize = 4096; // the least that there is

[[noreturn]] void Fail(char const* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

std::vector<std::string> Environment(std::map<std::string, std::string> const& variables)
{
    std::vector<std::string> texts;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        std::string const text = *variable;
        if (variables.count(text.substr(0, text.find('='))) == 0)
            texts.push_back(text);
    }
    for (auto const& [name, value] : variables)
        texts.push_back(name + '=' + value);
    return texts;
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// As terminals are, but for some settings that no program would think of.
termios OrdinaryMode()
{
    int master = -1;
    int slave = -1;
    termios mode = {};
    if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0 || tcgetattr(slave, &mode) != 0)
        Fail("openpty");
    close(master);
    close(slave);
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHOK);
    mode.c_cc[VMIN] = 3;
    mode.c_cc[VTIME] = 7;
    return mode;
}

pid_t ForkWithTerminal(CLaunch const& launch, int& output)
{
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = launch.m_Columns;
    termios const mode = OrdinaryMode();
    return forkpty(&output, nullptr, &mode, &size);
}

// What a shell does for its job: gives it the terminal, stops with it, and
// continues it. Returns in the job alone.
void BecomeJob()
{
    signal(SIGTTOU, SIG_IGN);
    pid_t const job = fork();
    if (job == 0) {
        setpgid(0, 0);
        tcsetpgrp(STDIN_FILENO, getpid());
        signal(SIGTTOU, SIG_DFL);
        return;
    }
    int status = 0;
    while (waitpid(job, &status, WUNTRACED) == job && WIFSTOPPED(status)) {
        raise(SIGSTOP);
        kill(-job, SIGCONT);
    }
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 126);
}

pid_t ForkWithPipe(int& output)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        Fail("pipe2");
    fcntl(ends[1], F_SETPIPE_SZ, pipeSize);
    pid_t const process = fork();
    if (process == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
    }
    close(ends[1]);
    output = ends[0];
    return process;
}

// In the child, between fork and exec: system calls alone.
[[noreturn]] void Execute(CLaunch const& launch, char* const* arguments, char* const* environment)
{
    if (!launch.m_OutputFile.empty())
        dup2(open(launch.m_OutputFile.c_str(), O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
    if (launch.m_UnderShell)
        BecomeJob();
    if (launch.m_IgnoredSignal != 0)
        signal(launch.m_IgnoredSignal, SIG_IGN);
    execve(arguments[0], arguments, environment);
    _exit(127);
}
} // namespace

CChildProcess::CChildProcess(CLaunch const& launch)
{
    std::vector<std::string> command = launch.m_Command;
    std::vector<std::string> variables = Environment(launch.m_Variables);
    std::vector<char*> const arguments = Pointers(command);
    std::vector<char*> const environment = Pointers(variables);

    bool const terminal = launch.m_Output == CLaunch::EOutput::Terminal;
    m_Process = terminal ? ForkWithTerminal(launch, m_Output) : ForkWithPipe(m_Output);
    if (m_Process < 0)
        Fail("fork");
    if (m_Process == 0)
        Execute(launch, arguments.data(), environment.data());
}

CChildProcess::~CChildProcess()
{
    if (m_Process > 0) {
        kill(m_Process, SIGKILL);
        waitpid(m_Process, nullptr, 0);
    }
    CloseOutput();
}

void CChildProcess::Hangs(std::string const& awaited) const
{
    throw std::runtime_error("The program hangs; awaited was " + awaited + ". It has written:\n"
                             + m_Text);
}

void CChildProcess::Await(std::string const& what, std::function<bool()> const& condition) const
{
    for (Clock::time_point const end = Clock::now() + longestWait; !condition();
         std::this_thread::yield())
        if (Clock::now() >= end)
            Hangs(what);
}

bool CChildProcess::ReadMore(std::string const& awaited, Clock::time_point end)
{
    pollfd waiting = {m_Output, POLLIN, 0};
    auto const left =
        std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) == 0)
        Hangs(awaited);
    std::array<char, 4096> block{};
    ssize_t const count = read(m_Output, block.data(), block.size());
    if (count > 0)
        m_Text.append(block.data(), static_cast<std::size_t>(count));
    return count > 0; // a terminal whose program has ended gives EIO
}

bool CChildProcess::ReadUntil(std::string const& text)
{
    Clock::time_point const end = Clock::now() + longestWait;
    while (m_Text.find(text) == std::string::npos)
        if (!ReadMore(text, end))
            return false;
    return true;
}

bool CChildProcess::ReadNext(std::string const& text)
{
    Clock::time_point const end = Clock::now() + longestWait;
    std::size_t at = m_Text.find(text, m_Next);
    for (; at == std::string::npos; at = m_Text.find(text, m_Next))
        if (!ReadMore(text, end))
            return false;
    m_Next = at + text.size();
    return true;
}

std::string const& CChildProcess::ReadAll()
{
    Clock::time_point const end = Clock::now() + longestWait;
    while (ReadMore("the end of its output", end)) {
    }
    return m_Text;
}

void CChildProcess::AwaitFullPipe(int line) const
{
    Await("a full pipe", [&] {
        int waiting = 0;
        if (ioctl(m_Output, FIONREAD, &waiting) != 0)
            Fail("FIONREAD");
        return waiting + line > pipeSize;
    });
}

void CChildProcess::CloseOutput()
{
    if (m_Output >= 0)
        close(m_Output);
    m_Output = -1;
}

void CChildProcess::Signal(int number) const
{
    if (kill(m_Process, number) != 0)
        Fail("kill");
}

void CChildProcess::Resize(unsigned short columns) const
{
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = columns;
    if (ioctl(m_Output, TIOCSWINSZ, &size) != 0)
        Fail("TIOCSWINSZ");
}

void CChildProcess::Type(std::string const& keys) const
{
    if (write(m_Output, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
        Fail("write");
}

bool CChildProcess::TerminalIsOrdinary() const
{
    termios const ordinary = OrdinaryMode();
    termios mode = {};
    return tcgetattr(m_Output, &mode) == 0 && mode.c_iflag == ordinary.c_iflag
           && mode.c_oflag == ordinary.c_oflag && mode.c_cflag == ordinary.c_cflag
           && mode.c_lflag == ordinary.c_lflag
           && std::equal(std::begin(mode.c_cc), std::end(mode.c_cc), ordinary.c_cc);
}

void CChildProcess::AwaitKeys() const
{
    Await("the keys' mode", [this] { return !TerminalIsOrdinary(); });
}

void CChildProcess::AwaitStop() const
{
    if (!WIFSTOPPED(AwaitChange("its stop", WUNTRACED)))
        throw std::runtime_error("The program has ended; it has written:\n" + m_Text);
}

int CChildProcess::AwaitChange(std::string const& what, int options) const
{
    int status = 0;
    Await(what, [&] {
        pid_t const changed = waitpid(m_Process, &status, options | WNOHANG);
        if (changed < 0)
            Fail("waitpid");
        return changed == m_Process;
    });
    return status;
}

int CChildProcess::Wait()
{
    int const status = AwaitChange("its end", 0);
    m_Process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
