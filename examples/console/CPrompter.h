#pragma once

#include "Terminal.h"

#include <EReply.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

class CConsoleReport;
class CKeyboard;

/// What a question says and which ways out it offers.
struct CQuestion
{
    char m_Mark = '?';
    EColour m_Colour = EColour::Bold;
    std::string m_Text;
    std::vector<std::string> m_Details;
    std::string m_Accept; ///< no such way out when empty
    std::string m_Reject; ///< no such way out when empty
    std::string m_Abort;  ///< no such way out when empty
    /// In seconds; 0 for no limit.
    std::uint32_t m_Timeout = 0;
};

/// Puts questions to the operator, one at a time, in the place of the progress
/// bar: lines that stay, and below them a row in which the operator answers and
/// sees the time run out.
///
/// Keys typed before a question shows mean what they mean without one. Ctrl-C,
/// Ctrl-\ and Ctrl-Z always do. Where nobody can answer, a question is written
/// and rejected.
///
/// Threads: any; a question waits for the one before. A stream that takes no
/// more makes the questions throw std::ios_base::failure.
class CPrompter
{
public:
    /// Why a line is no answer; empty for one that is.
    using Check = std::function<std::string(std::string const& line)>;

    /// `steer` is given the keys that no question takes.
    CPrompter(std::ostream& stream, CTerminal terminal, CConsoleReport& report, CKeyboard& keyboard,
              std::function<void(int key)> steer);

    /// A single key: Enter or y accepts, Esc or n rejects.
    EReply AskForKey(CQuestion const& question);
    /// A line that passes the check. `line` holds what Enter alone stands for, if
    /// anything, and afterwards what was answered.
    EReply AskForLine(CQuestion const& question, std::string& line, Check const& check);
    /// Writes the question's text, which nobody is to answer.
    void Tell(CQuestion const& question);
    /// Closes the question that shows, if one does; with `all` also those that wait.
    void Close(bool all);

private:
    class CTurn;
    friend class CTurn;

    bool CanAsk() const;
    unsigned long Issue();
    void Begin(unsigned long number);
    bool IsClosed(unsigned long number);

    std::ostream& m_Stream;
    CTerminal const m_Terminal;
    CConsoleReport& m_Report;
    CKeyboard& m_Keyboard;
    std::function<void(int)> m_Steer;

    std::mutex m_Lock; // of all below: numbers of questions
    unsigned long m_Issued = 0;
    unsigned long m_Shown = 0;
    unsigned long m_ClosedThrough = 0;
};
