#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// How a program is started.
struct CLaunch
{
    enum class EOutput { Pipe, Terminal };

    std::vector<std::string> m_Command;
    /// Beside this process's own variables, whose names they take over.
    std::map<std::string, std::string> m_Variables;
    EOutput m_Output = EOutput::Pipe;
    /// Size of the terminal.
    unsigned short m_Columns = 80;
    /// Under a shell, as it were, that continues the program once it is continued
    /// itself. Without one a terminal's program cannot be stopped.
    bool m_UnderShell = false;
    /// Where standard output goes instead; empty for m_Output.
    std::string m_OutputFile;
    /// Ignored by the program from its start; 0 for none.
    int m_IgnoredSignal = 0;
};

/// A running program, its standard output and error read together, by way of a
/// pipe or a terminal of its own. Killed at the latest with this object.
///
/// Whatever waits for the program throws std::runtime_error, which says what it
/// waited for, once the program has hung for two minutes.
class CChildProcess
{
public:
    explicit CChildProcess(CLaunch const& launch);
    CChildProcess(CChildProcess const&) = delete;
    CChildProcess& operator=(CChildProcess const&) = delete;
    ~CChildProcess();

    /// Reads until `text` has appeared; false when the output ended before.
    bool ReadUntil(std::string const& text);
    /// The same, but for what the last call of this kind has not read yet.
    bool ReadNext(std::string const& text);
    /// Reads to the end of the output and returns all of it.
    std::string const& ReadAll();
    /// Waits until the condition holds, whose name is `what`.
    void Await(std::string const& what, std::function<bool()> const& condition) const;
    /// Waits until the program is stuck in its output because nobody reads on.
    /// For pipes, and a program that writes `line` bytes at a time.
    void AwaitFullPipe(int line) const;
    /// Reads no more, as a reader that went away.
    void CloseOutput();
    void Signal(int number) const;
    void Resize(unsigned short columns) const;
    /// Types on the program's terminal.
    void Type(std::string const& keys) const;
    /// Whether the program's terminal is in every respect as it was at first.
    bool TerminalIsOrdinary() const;
    /// Waits until the program has taken the terminal to read single keys.
    void AwaitKeys() const;
    /// Waits until the program is stopped. Under a shell alone.
    void AwaitStop() const;
    /// The exit code, or the negative number of the signal that ended the program.
    int Wait();

private:
    [[noreturn]] void Hangs(std::string const& awaited) const;
    bool ReadMore(std::string const& awaited, std::chrono::steady_clock::time_point end);
    /// What waitpid tells of the next change.
    int AwaitChange(std::string const& what, int options) const;

    pid_t m_Process = -1;
    int m_Output = -1;
    std::string m_Text;
    std::size_t m_Next = 0; // where ReadNext goes on
};
