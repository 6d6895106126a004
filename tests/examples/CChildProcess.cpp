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
#include <csignal>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace
{
// Only a program that hangs is ever waited for so long.
constexpr int hangMilliseconds = 120000;
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

bool CChildProcess::ReadMore()
{
    pollfd waiting = {m_Output, POLLIN, 0};
    if (poll(&waiting, 1, hangMilliseconds) == 0)
        throw std::runtime_error("The program hangs; it has written:\n" + m_Text);
    std::array<char, 4096> block{};
    ssize_t const count = read(m_Output, block.data(), block.size());
    if (count > 0)
        m_Text.append(block.data(), static_cast<std::size_t>(count));
    return count > 0; // a terminal whose program has ended gives EIO
}

bool CChildProcess::ReadUntil(std::string const& text)
{
    while (m_Text.find(text) == std::string::npos)
        if (!ReadMore())
            return false;
    return true;
}

bool CChildProcess::ReadNext(std::string const& text)
{
    std::size_t at = m_Text.find(text, m_Next);
    for (; at == std::string::npos; at = m_Text.find(text, m_Next))
        if (!ReadMore())
            return false;
    m_Next = at + text.size();
    return true;
}

std::string const& CChildProcess::ReadAll()
{
    while (ReadMore()) {
    }
    return m_Text;
}

void CChildProcess::AwaitFullPipe(int line) const
{
    for (int waiting = 0; waiting + line <= pipeSize; std::this_thread::yield())
        if (ioctl(m_Output, FIONREAD, &waiting) != 0)
            Fail("FIONREAD");
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
    while (TerminalIsOrdinary())
        std::this_thread::yield();
}

void CChildProcess::AwaitStop() const
{
    int status = 0;
    if (waitpid(m_Process, &status, WUNTRACED) < 0)
        Fail("waitpid");
    if (!WIFSTOPPED(status))
        throw std::runtime_error("The program has ended; it has written:\n" + m_Text);
}

int CChildProcess::Wait()
{
    int status = 0;
    if (waitpid(m_Process, &status, 0) < 0)
        Fail("waitpid");
    m_Process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
